#include "tintwerk/cube_container.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>
#include <system_error>

#include "frame/file.h"
#include "frame/image_file.h"
#include "frame/path.h"
#include "tintwerk/trilinear.h"

namespace tintwerk {
namespace {

/// Larger image files are not read; none that can be decoded is as large.
constexpr std::uintmax_t kMaxImageSize = std::uintmax_t{1} << 28;

/// The picture in a container; without pixels if there is none.
PixelBlock ReadContainer(const std::filesystem::path& path) {
  const FileHandle file = OpenFile(path, "rb");
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  unsigned char prefix[4];
  if (!file || error || std::fread(prefix, 1, 4, file.get()) != 4) return {};
  const auto length = static_cast<std::int32_t>(prefix[0] | prefix[1] << 8 | prefix[2] << 16 |
                                                static_cast<std::uint32_t>(prefix[3]) << 24);
  if (length <= 0) return {};

  // A length beyond the end of the file takes no memory. What is there lies in whole words then:
  // the block is filled up to one, or it would be taken for a tail.
  const std::uintmax_t present =
      std::min<std::uintmax_t>(length, std::max<std::uintmax_t>(size, 4) - 4);
  if (present > kMaxImageSize) return {};
  const std::uintmax_t held = std::min<std::uintmax_t>(length, (present + 3) / 4 * 4);
  const std::unique_ptr<unsigned char[]> bytes(new (std::nothrow) unsigned char[held]());
  if (!bytes) return {};
  const std::size_t read = std::fread(bytes.get(), 1, present, file.get());
  ScrambleCube({bytes.get(), held});
  PixelBlock picture;
  DecodeImage({bytes.get(), read}, picture);
  return picture;
}

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

unsigned char* CTrilinear::LoadCryptFile(CString path, int& width, int& height) try {
  PixelBlock picture = ReadContainer(NativePath(path.Wide()));
  width = picture.width;
  height = picture.height;
  return picture.bytes.release();
} catch (const std::bad_alloc&) {
  width = height = 0;
  return nullptr;
}

void CTrilinear::DeleteValue(unsigned char* block) {
  delete[] block;
}

bool CTrilinear::EnCrypt(unsigned char* bytes, int length) {
  if (!bytes || length < 1) return false;
  ScrambleCube({bytes, static_cast<std::size_t>(length)});
  return true;
}

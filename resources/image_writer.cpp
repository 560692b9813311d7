#include "image_writer.h"

#include <spng.h>
#include <turbojpeg.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>

#include "tintwerk/cube_container.h"

namespace tintwerk::paint {
namespace {

bool IsOpaque(const Pixel& p) {
  return p.alpha == 255;
}
bool IsGrey(const Pixel& p) {
  return p.red == p.green && p.green == p.blue && IsOpaque(p);
}

struct PngLayout {
  spng_color_type type;
  int bytesPerPixel;
};

PngLayout SmallestLayout(const Picture& picture) {
  if (std::all_of(picture.pixels.begin(), picture.pixels.end(), IsGrey))
    return {SPNG_COLOR_TYPE_GRAYSCALE, 1};
  if (std::all_of(picture.pixels.begin(), picture.pixels.end(), IsOpaque))
    return {SPNG_COLOR_TYPE_TRUECOLOR, 3};
  return {SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 4};
}

void CheckPng(int status) {
  if (status != 0) throw std::runtime_error(std::string("PNG encoder: ") + spng_strerror(status));
}

}  // namespace

Bytes EncodePng(const Picture& picture) {
  const PngLayout layout = SmallestLayout(picture);
  Bytes rows;
  rows.reserve(picture.pixels.size() * layout.bytesPerPixel);
  for (const Pixel& p : picture.pixels) {
    const unsigned char channels[] = {p.red, p.green, p.blue, p.alpha};
    rows.insert(rows.end(), channels, channels + layout.bytesPerPixel);
  }

  const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> png(spng_ctx_new(SPNG_CTX_ENCODER),
                                                                spng_ctx_free);
  if (!png) throw std::bad_alloc();
  spng_ihdr header{};
  header.width = picture.width;
  header.height = picture.height;
  header.bit_depth = 8;
  header.color_type = layout.type;
  CheckPng(spng_set_option(png.get(), SPNG_ENCODE_TO_BUFFER, 1));
  CheckPng(spng_set_option(png.get(), SPNG_IMG_COMPRESSION_LEVEL, 9));
  CheckPng(spng_set_ihdr(png.get(), &header));
  CheckPng(
      spng_encode_image(png.get(), rows.data(), rows.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE));
  std::size_t size = 0;
  int status = 0;
  const std::unique_ptr<void, decltype(&std::free)> file(
      spng_get_png_buffer(png.get(), &size, &status), std::free);
  CheckPng(status);
  const auto* first = static_cast<const unsigned char*>(file.get());
  return Bytes(first, first + size);
}

Bytes EncodeJpeg(const Picture& picture) {
  const std::unique_ptr<void, decltype(&tjDestroy)> encoder(tjInitCompress(), tjDestroy);
  if (!encoder) throw std::bad_alloc();
  Bytes file(tjBufSize(picture.width, picture.height, TJSAMP_444));
  unsigned char* target = file.data();
  unsigned long size = file.size();
  // The accurate transform gives the same bytes with every instruction set.
  if (tjCompress2(encoder.get(), &picture.pixels.front().red, picture.width, 0, picture.height,
                  TJPF_RGBX, &target, &size, TJSAMP_444, 92,
                  TJFLAG_ACCURATEDCT | TJFLAG_NOREALLOC) != 0)
    throw std::runtime_error(std::string("JPEG encoder: ") + tjGetErrorStr2(encoder.get()));
  file.resize(size);
  return file;
}

Bytes Encode(std::string_view name, const Painted& painted) {
  if (const auto* bytes = std::get_if<Bytes>(&painted)) return *bytes;
  const auto& picture = std::get<Picture>(painted);
  const std::string_view file = name.substr(name.rfind('/') + 1);
  if (file.ends_with(".png")) return EncodePng(picture);
  if (file.ends_with(".jpg")) return EncodeJpeg(picture);
  if (file.find('.') == file.npos) return PackCube(EncodePng(picture));
  throw std::invalid_argument("no encoder for " + std::string(name));
}

void WriteFile(const std::filesystem::path& path, std::span<const unsigned char> bytes) {
  std::filesystem::create_directories(path.parent_path());
  std::filesystem::path temporary = path;
  temporary += ".part";
  temporary += std::to_string(getpid());
  try {
    errno = 0;
    std::ofstream stream(temporary, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream)
      throw std::filesystem::filesystem_error(
          "cannot write", path, std::error_code(errno ? errno : EIO, std::generic_category()));
    std::filesystem::rename(temporary, path);
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    throw;
  }
}

}  // namespace tintwerk::paint

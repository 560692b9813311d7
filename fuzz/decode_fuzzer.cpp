// Feeds DecodeImage with damaged files.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "frame/image_file.h"
#include "support/image_files.h"

namespace {

using tintwerk::test::Bytes;

void Check(bool condition) {
  if (!condition) std::abort();
}

// Gives the chunks of a PNG valid sums, without which no damage gets past the first of them.
std::size_t RepairSums(std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kSignature = 8, kFrame = 12;
  for (std::size_t at = kSignature; at + kFrame <= size;) {
    const std::size_t most = size - at - kFrame;
    const std::size_t told =
        std::size_t{data[at]} << 24 | data[at + 1] << 16 | data[at + 2] << 8 | data[at + 3];
    const std::uint8_t* const content = data + at + 8;
    const Bytes chunk = tintwerk::test::PngChunk({reinterpret_cast<const char*>(data + at + 4), 4},
                                                 Bytes(content, content + std::min(told, most)));
    std::copy(chunk.begin(), chunk.end(), data + at);
    at += chunk.size();
  }
  return size;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
  size = LLVMFuzzerMutate(data, size, maxSize);
  const bool png = size > 8 && data[0] == 0x89;
  return png && seed % 8 != 0 ? RepairSums(data, size) : size;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tintwerk::PixelBlock picture{-1, -1, nullptr};
  if (tintwerk::DecodeImage({data, size}, picture) != Gdiplus::Ok) {
    Check(picture.width == -1 && picture.height == -1 && !picture.bytes);
    return 0;
  }
  Check(picture.width > 0 && picture.height > 0 && picture.bytes);
  Check(std::int64_t{picture.width} * picture.height <= tintwerk::kMaxDecodedPixels);
  // The far end is there.
  unsigned char last[4];
  std::memcpy(last, picture.bytes.get() + picture.Size() - 4, 4);
  Check(data[0] == 0x89 || last[3] == 255);
  return 0;
}

// Decoding of PNG and JPEG files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "frame/image.h"
#include "tintwerk/platform.h"

namespace tintwerk {

/// Pixels of 4 bytes, blue, green, red, straight alpha, rows packed and top-down.
struct PixelBlock {
  int width = 0;
  int height = 0;
  PixelMemory bytes;

  std::size_t Size() const { return std::size_t{4} * width * height; }
};

/// The largest picture that is decoded. With the working memory of the worst kind of file (a
/// progressive CMYK JPEG) this stays below a gigabyte.
inline constexpr std::int64_t kMaxDecodedPixels = std::int64_t{1} << 26;

/// Decodes a PNG or a JPEG by its content. Samples come out as they stand in the file, as 8 bits:
/// no gamma, no colour profile, no turning; 16-bit samples give their high byte, CMYK is multiplied
/// out to RGB. A file that is damaged, cut short, larger than kMaxDecodedPixels or neither of the
/// two fails and leaves `picture` as it was; its size is checked before memory is taken. So do
/// files that are built to waste time or memory: PNGs wider than 2^20, JPEGs above 128 MiB or of
/// more than 64 scans.
Gdiplus::Status DecodeImage(std::span<const unsigned char> file, PixelBlock& picture);

/// The same from a regular file.
Gdiplus::Status DecodeImageFile(const std::filesystem::path& path, PixelBlock& picture);

}  // namespace tintwerk

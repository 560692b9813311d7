// Loops over the pixels of an image, as the point operations share them.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "frame/image.h"
#include "frame/progress.h"
#include "pixel/tone_curve.h"

namespace tintwerk {

/// Runs body(pixel) for every pixel, rows side by side, with reports.
/// @return false if the host wants the work stopped
template <class Body>
bool ForEachPixel(unsigned char* pixels, int width, int height, const RowProgress& rows,
                  const Body& body) {
  const std::int64_t pitch = 4 * std::int64_t{std::max(width, 0)};
  return ForEachRow(rows, height, [=](std::int64_t y) {
    unsigned char* const row = pixels + pitch * y;
    for (unsigned char* pixel = row; pixel != row + pitch; pixel += 4) body(pixel);
  });
}

/// The same without reports.
template <class Body>
void ForEachPixel(unsigned char* pixels, int width, int height, const Body& body) {
  ForEachPixel(pixels, width, height, RowProgress(), body);
}

/// The same with the pixel as a word, blue in its low byte: word = body(word). The compiler works
/// several words at once where the body is plain arithmetic.
template <class Body>
bool ForEachWord(unsigned char* pixels, int width, int height, const RowProgress& rows,
                 const Body& body) {
  static_assert(std::endian::native == std::endian::little);
  return ForEachRow(rows, height, [=](std::int64_t y) {
    unsigned char* const row = pixels + 4 * std::int64_t{width} * y;
    for (int x = 0; x < width; ++x) {
      std::uint32_t word;
      std::memcpy(&word, row + 4 * std::int64_t{x}, 4);
      word = body(word);
      std::memcpy(row + 4 * std::int64_t{x}, &word, 4);
    }
  });
}

}  // namespace tintwerk

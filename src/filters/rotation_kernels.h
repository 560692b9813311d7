// The inner loop of turning a picture.
#pragma once

#include <cstdint>
#include <cstring>

#include "tintwerk/platform.h"

namespace tintwerk {

/// A picture that is turned about its centre. Clockwise by the angle of the cosine c and sine s.
struct Turn {
  const unsigned char* pixels;
  int width, height;  // at most 1 << 24 each, and no more pixels than an int counts
  float c, s;
  float centreX, centreY;
  bool clamps;  // what lies outside shows the nearest pixel

  /// What the target shows at (u, v) from the centre.
  float X(float u, float v) const { return u * c + v * s + centreX; }
  float Y(float u, float v) const { return v * c - u * s + centreY; }
};

/// Pixels that TurnRow works at once.
constexpr int kTurnGroup = 16;

/// Works a row of the target in whole groups, as far as they lie between pixels of the source, or
/// wherever they lie if the turn clamps.
/// @param u distances from the centre, one a pixel
/// @return the count of pixels that are done
int TurnRow(const Turn& turn, const float* u, float v, int count, unsigned char* out);

// A pixel as four fields of 16 bits, and back from their high bytes. The fields of a sum whose
// weights add up to 256 don't run into each other.
inline std::uint64_t Spread(const unsigned char* pixel) {
  std::uint32_t bytes;
  std::memcpy(&bytes, pixel, 4);
  return (bytes & 0x00FF00FFu) | std::uint64_t{(bytes >> 8) & 0x00FF00FFu} << 32;
}
inline tagRGBQUAD Gather(std::uint64_t fields) {
  const auto bytes =
      static_cast<std::uint32_t>(((fields >> 8) & 0x00FF00FFu) | ((fields >> 32) & 0xFF00FF00u));
  tagRGBQUAD pixel;
  std::memcpy(&pixel, &bytes, 4);
  return pixel;
}

/// Whether a coordinate and its next pixel lie in 0..extent - 1.
inline bool IsBetween(float at, int extent) {
  return at >= 0 && at < static_cast<float>(extent) && static_cast<int>(at) < extent - 1;
}

/// The colour between four pixels that all lie in the image.
inline tagRGBQUAD Between(const unsigned char* pixels, int rowPixels, float x, float y) {
  const int column = static_cast<int>(x), row = static_cast<int>(y);
  const auto wx = static_cast<int>((x - static_cast<float>(column)) * 256.0f);
  const auto wy = static_cast<int>((y - static_cast<float>(row)) * 256.0f);
  const int wd = (wx * wy) >> 8;
  const int wb = wx - wd, wc = wy - wd, wa = 256 - wc - wx;
  const unsigned char* const upper = pixels + 4 * (std::int64_t{row} * rowPixels + column);
  const unsigned char* const lower = upper + std::int64_t{4} * rowPixels;
  const auto part = [](const unsigned char* pixel, int weight) {
    return Spread(pixel) * static_cast<std::uint64_t>(weight);
  };
  return Gather(part(upper, wa) + part(upper + 4, wb) + part(lower, wc) + part(lower + 4, wd));
}

}  // namespace tintwerk

// Masks in files of raw bytes, without a header. Their readers scale them to the image by the
// nearest pixel, so everything in them is smooth.

#include <algorithm>
#include <cmath>

#include "light.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

/// A place in a square mask, from the centre; 1 at the middle of a side.
struct Place {
  Place(int column, int row, int side)
      : x((2 * column + 1.0) / side - 1),
        y((2 * row + 1.0) / side - 1),
        away(std::sqrt(x * x + y * y)) {}
  double x, y, away;
};

/// Two planes of 640 x 640 bytes: how sharp the image stays (255 in the middle, 0 in the corners),
/// then how much light it keeps.
Bytes ToyLensMasks() {
  constexpr int kSide = 640;
  Bytes file;
  file.reserve(2 * kSide * kSide);
  const auto plane = [&](const auto& tone) {
    for (int row = 0; row < kSide; ++row)
      for (int column = 0; column < kSide; ++column)
        file.push_back(RoundToByte(255 * tone(Place(column, row, kSide))));
  };
  plane([](const Place& p) { return 1 - SmoothStep(0.4, 1.1, p.away); });
  plane([](const Place& p) { return 1 - 0.62 * SmoothStep(0.35, 1.5, p.away); });
  return file;
}

/// 240 x 240 pixels of blue, green, red and alpha: the light at the end of a tunnel and its walls
/// in the colours, and in alpha how far the image rushes past, 0 in the middle.
Bytes TunnelMask() {
  constexpr int kSide = 240;
  const Rgb light{1.0, 0.90, 0.70};
  const Rgb inner{0.54, 0.49, 0.47};
  const Rgb wall{0.38, 0.35, 0.38};
  Bytes file;
  file.reserve(4 * kSide * kSide);
  for (int row = 0; row < kSide; ++row)
    for (int column = 0; column < kSide; ++column) {
      const Place p(column, row, kSide);
      // Streaks along the walls: the noise goes by the direction alone and grows with the distance.
      const double streaks = CloudNoise(4 * p.x / p.away, 4 * p.y / p.away, 501, 2);
      const double depth = SmoothStep(0.25, 0.9, p.away);
      const Rgb colour = Lerp(Lerp(light, inner, SmoothStep(0, 0.5, p.away)), wall, depth);
      const double tone = 1 + 0.7 * depth * streaks;
      const double rush = SmoothStep(0.16, 0.62, p.away);
      for (const double v : {tone * colour.blue, tone * colour.green, tone * colour.red, rush})
        file.push_back(RoundToByte(255 * v));
    }
  return file;
}

}  // namespace

std::span<const File> RawMaskFiles() {
  static const File files[] = {
      {"zvkr_cy.eb", TunnelMask},
      {"zvkr_lomo_16.eb", ToyLensMasks},
  };
  return files;
}

}  // namespace tintwerk::paint

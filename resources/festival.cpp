// A festive frame: lamps and glitter around the rim. Upright; alike on all sides, since landscape
// images get it turned.

#include <algorithm>
#include <cmath>

#include "light.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

constexpr int kWidth = 1200;
constexpr int kHeight = 1680;
constexpr double kRight = double(kWidth) / kHeight;

/// How much of the dark rim lies over a place, 0..1: rounded corners and an uneven inner edge.
double Rim(double x, double y) {
  const double dx = std::abs(x - kRight / 2) / (kRight / 2);
  const double dy = std::abs(y - 0.5) / 0.5;
  const double across = dx * dx * dx * dx;
  const double down = dy * dy * dy * dy;
  const double uneven = 0.1 * CloudNoise(4 * x, 4 * y, 401, 2);
  return SmoothStep(0.3, 1.25, std::sqrt(across * across + down * down) + uneven);
}

/// The lamps' light, in the red channel alone.
Canvas Lamps() {
  Canvas canvas(kWidth, kHeight);
  Dice dice(403);
  const auto scatter = [&](int count, double depth, double small, double large, double light,
                           const auto& put) {
    for (int i = 0; i < count; ++i) {
      const double way = dice.Between(0, 2 * (1 + kRight));
      const double far = dice.Between(0, 1);
      const double radius = dice.Between(small, large);
      const double strength = dice.Between(0.4, 1) * light * (1 - 0.7 * far);
      const double in = depth * far * far;
      // Once around: down the left side, along the bottom, up the right side, along the top.
      double x = in, y = way;
      if (way >= 2 + kRight) {
        x = way - 2 - kRight, y = in;
      } else if (way >= 1 + kRight) {
        x = kRight - in, y = way - 1 - kRight;
      } else if (way >= 1) {
        x = way - 1, y = 1 - in;
      }
      put(x, y, radius, {strength, 0, 0});
    }
  };
  scatter(90, 0.12, 0.014, 0.042, 0.55, [&](double x, double y, double radius, const Rgb& light) {
    canvas.Add({x, y, radius, light, dice.Between(0.15, 0.5)});
  });
  // Glitter: points of light with a halo, of which few are bright.
  scatter(300, 0.175, 0, 1, 1, [&](double x, double y, double size, const Rgb& light) {
    const double power = size * size * size;
    canvas.AddBlob(x, y, 0.0026 + 0.0034 * power, (0.6 + 1.6 * power) * light);
    canvas.AddBlob(x, y, 0.007 + 0.016 * power, (0.06 + 0.2 * power) * light);
  });
  return canvas;
}

/// The frame itself, clear in the middle: a dark rim with shining lamps before it.
Picture FestiveFrame() {
  const Canvas lamps = Lamps();
  const Rgb rim{0.30, 0.08, 0.08};
  const Rgb lamp{1.0, 0.86, 0.62};
  Picture picture(kWidth, kHeight);
  for (int row = 0; row < kHeight; ++row)
    for (int column = 0; column < kWidth; ++column) {
      // Half a level either way, so that the soft inner edge has no steps.
      const double dither = Hash(column, row, 407) / 4294967296.0 - 0.5;
      const double dark = 0.9 * Rim((column + 0.5) / kHeight, (row + 0.5) / kHeight);
      const double light = Develop(1.7 * lamps.At(column, row).red);
      const double cover = 1 - (1 - dark) * (1 - light);
      Pixel& pixel = picture.At(column, row);
      pixel.alpha = RoundToByte(255 * cover + (cover > 0 && cover < 1 ? dither : 0));
      if (pixel.alpha == 0) {
        pixel.red = pixel.green = pixel.blue = 0;
        continue;
      }
      const Rgb colour = Lerp(rim, lamp, light / cover);
      pixel.red = RoundToByte(255 * colour.red);
      pixel.green = RoundToByte(255 * colour.green);
      pixel.blue = RoundToByte(255 * colour.blue);
    }
  return picture;
}

/// What gives the whole image its hues: a pale rose gold in the middle, red at the rim, and gold
/// where the frame's lamps shine. Its lightness is not meant to be used.
Picture FestiveColours() {
  const Canvas lamps = Lamps();
  // Each of half lightness.
  const Rgb roseGold{0.64, 0.47, 0.36};
  const Rgb red{0.80, 0.24, 0.20};
  const Rgb gold{0.86, 0.58, 0.14};
  Canvas canvas(kWidth, kHeight);
  canvas.Fill([&](double x, double y) {
    const int column = std::min(int(x * kHeight), kWidth - 1);
    const int row = std::min(int(y * kHeight), kHeight - 1);
    const double light = Develop(1.6 * lamps.At(column, row).red);
    return Lerp(Lerp(roseGold, red, Rim(x, y)), gold, light);
  });
  return canvas.Print(0.006, 408, kNowhere);
}

}  // namespace

std::span<const File> FestivalFiles() {
  static const File files[] = {
      {"zvkr_festival_3.png", FestiveFrame},
      {"zvkr_festival_3b.jpg", FestiveColours},
  };
  return files;
}

}  // namespace tintwerk::paint

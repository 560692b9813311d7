// The comic look: its screen tone, its panel and its caption.
#include <algorithm>
#include <cmath>

#include "light.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

/// Ink that covers a share of a pixel, 0..1, where its outline is a signed distance in pixels:
/// above 0 inside.
double Cover(double inside) {
  return std::clamp(inside + 0.5, 0.0, 1.0);
}

/// Dots on a grid of 45 degrees. The pitch is what survives on a small image, and the square sheet
/// keeps the error of stretching alike both ways.
Picture ScreenTone() {
  constexpr int kSide = 1400;
  constexpr double kPitch = 13, kRadius = 3.9, kSoft = 1.5;  // 28 percent black
  Picture picture(kSide, kSide);
  for (int row = 0; row < kSide; ++row)
    for (int column = 0; column < kSide; ++column) {
      const auto off = [](double v) { return v - std::floor(v + 0.5); };
      const double u = kPitch * off((column + row) / (kPitch * std::sqrt(2.0)));
      const double v = kPitch * off((column - row) / (kPitch * std::sqrt(2.0)));
      picture.At(column, row) = Grey(RoundToByte(255 * Cover((Distance(u, v) - kRadius) / kSoft)));
    }
  return picture;
}

/// A black ink layer: only its alpha is painted.
class InkLayer {
 public:
  InkLayer(int width, int height) : picture_(width, height) {
    for (Pixel& pixel : picture_.pixels) pixel = {0, 0, 0, 0};
  }

  void Put(int x, int y, double alpha) {
    if (x < 0 || y < 0 || x >= picture_.width || y >= picture_.height) return;
    Pixel& pixel = picture_.At(x, y);
    pixel.alpha = std::max(pixel.alpha, RoundToByte(alpha));
  }

  /// A line that tapers from `half` wide on each side at its start to a point.
  void Spike(double x, double y, double tipX, double tipY, double half, double alpha) {
    const double length = Distance(tipX - x, tipY - y);
    const double dx = (tipX - x) / length, dy = (tipY - y) / length;
    const auto [left, right] = std::minmax(x, tipX);
    const auto [top, bottom] = std::minmax(y, tipY);
    const int reach = int(half) + 2;
    for (int row = int(top) - reach; row <= int(bottom) + reach; ++row)
      for (int column = int(left) - reach; column <= int(right) + reach; ++column) {
        const double along = (column - x) * dx + (row - y) * dy;
        if (along < -reach || along > length) continue;
        const double across = std::abs((row - y) * dx - (column - x) * dy);
        const double width = half * (1 - along / length);
        Put(column, row, alpha * std::min(1.0, 2 * width) * Cover(width - across));
      }
  }

  Picture Take() { return std::move(picture_); }

 private:
  Picture picture_;
};

/// An ink frame and lines of speed in uneven groups, from outside toward the subject; they end
/// before the middle, which is clear.
Picture Panel() {
  constexpr int kWidth = 1500, kHeight = 1000;
  constexpr double kFrame = 0.014 * kHeight;
  constexpr double kAlpha = 240;
  InkLayer ink(kWidth, kHeight);
  for (int row = 0; row < kHeight; ++row)
    for (int column = 0; column < kWidth; ++column) {
      const double x = (column + 0.5) / kHeight, y = (row + 0.5) / kHeight;
      const double edge =
          std::min(std::min(column, kWidth - 1 - column), std::min(row, kHeight - 1 - row)) + 0.5;
      const double pen = kFrame * (1 + 0.22 * CloudNoise(5 * x, 5 * y, 1101, 3));
      const double outside = 1 - Calm(x, y, double(kWidth) / kHeight);
      const double tooth = 5 + 9 * CloudNoise(60 * x, 60 * y, 1104, 2);
      ink.Put(column, row,
              std::max(kAlpha * Cover(pen - edge), outside * std::clamp(tooth, 0.0, 10.0)));
    }

  constexpr int kDirections = 480;
  const double centreX = 0.5 * kWidth, centreY = 0.42 * kHeight;
  Dice dice(1106);
  int group = 0;
  bool drawn = false;
  double inward = 0;
  for (int i = 0; i < kDirections; ++i) {
    if (group == 0) {
      drawn = !drawn;
      group = drawn ? int(dice.Between(2, 6)) : int(dice.Between(1, 5));
      inward = dice.Between(0.06, 0.22);
    }
    --group;
    const double jitter = dice.Between(-0.35, 0.35);
    const double depth = std::clamp(inward + dice.Between(-0.08, 0.08), 0.02, 0.30);
    const double half = dice.Between(1.2, 4.2);
    if (!drawn) continue;
    const Direction to = AtAngle(360.0 / kDirections * (i + jitter));
    // Where the direction leaves the sheet.
    const double sideways = to.cosine > 0 ? kWidth - centreX : centreX;
    const double upDown = to.sine > 0 ? kHeight - centreY : centreY;
    const double far = std::min(sideways / std::max(std::abs(to.cosine), 1e-9),
                                upDown / std::max(std::abs(to.sine), 1e-9));
    const double near = far * (1 - depth);
    ink.Spike(centreX + far * to.cosine, centreY + far * to.sine, centreX + near * to.cosine,
              centreY + near * to.sine, half, kAlpha);
  }
  return ink.Take();
}

/// A torn strip of white paper with a dotted shadow and lettering without words: three dots of ink
/// and a stroke, underlined, so that it reads in every language.
Picture Caption() {
  constexpr int kWidth = 1200, kHeight = 200;
  const auto ragged = [](double along, std::uint32_t seed) {
    return 3.5 * CloudNoise(along / 34, 0.5, seed, 3);
  };
  // How far inside the strip a place lies, in pixels. It leans a little.
  const auto strip = [&](double x, double y) {
    const double lean = 0.012 * (x - kWidth / 2.0);
    const double top = y + lean - 38 - ragged(x, 1121);
    const double bottom = 150 - y - lean - ragged(x, 1122);
    const double left = x - 64 - 3 * ragged(y, 1123) - 0.12 * (y - 94);
    const double right = 1130 - x - 3 * ragged(y, 1124) - 0.12 * (y - 94);
    return std::min(std::min(top, bottom), std::min(left, right));
  };
  // A stroke of a brush: fat where it starts, ragged, thin where it ends.
  const auto brush = [&](double x, double y, double from, double to, double at, double half,
                         std::uint32_t seed) {
    const double t = (x - from) / (to - from);
    if (t < -0.02 || t > 1.02) return -9.0;
    const double bow = at - 0.012 * (x - kWidth / 2.0) + 2.5 * CloudNoise(x / 120, 0.5, seed, 2);
    const double ends = std::min(1.0, std::min((t + 0.02) * 18, (1.02 - t) * 3));
    const double thick =
        half * (0.55 + 0.45 * ends) * (1 + 0.25 * CloudNoise(x / 21, 2.5, seed + 3, 3));
    return thick * std::min(1.0, 1.5 * ends) - std::abs(y - bow);
  };
  const auto lettering = [&](double x, double y) {
    double inside = brush(x, y, 150, 1050, 129, 3.6, 1131);
    inside = std::max(inside, brush(x, y, 560, 960, 86, 11, 1135));
    for (const double at : {250.0, 340.0, 430.0}) {
      const double dx = x - at, dy = y - (86 - 0.012 * (at - kWidth / 2.0));
      const double blot = 15 * (1 + 0.16 * CloudNoise(dx / 13, dy / 13, std::uint32_t(at), 2));
      inside = std::max(inside, blot - Distance(dx, 1.08 * dy));
    }
    return inside;
  };
  Picture picture(kWidth, kHeight);
  for (int row = 0; row < kHeight; ++row)
    for (int column = 0; column < kWidth; ++column) {
      const double x = column + 0.5, y = row + 0.5;
      const double paper = Cover(strip(x, y));
      // The shadow's dots shrink toward its outline.
      const double shade = strip(x - 14, y - 16);
      const auto off = [](double v) { return v - std::floor(v + 0.5); };
      const double u = 8 * off((x + y) / 11.314), v = 8 * off((x - y) / 11.314);
      const double dot = std::clamp(0.25 * shade + 1.5, 0.0, 3.1);
      const double shadow = shade > 0 ? Cover(dot - Distance(u, v)) : 0;
      const double outline = Cover(2.2 - std::abs(strip(x, y) - 2.2));
      const double ink = std::max(Cover(lettering(x, y)), outline) * paper;
      const double tone = paper * (1 - 0.92 * ink) * (250 - 7 * CloudNoise(x / 5, y / 5, 1141, 2));
      const double alpha = std::max(paper, shadow);
      // White paper over black dots; straight alpha, and black where nothing is.
      Pixel& pixel = picture.At(column, row);
      pixel = Grey(alpha > 0 ? RoundToByte(tone / alpha) : 0);
      pixel.alpha = RoundToByte(255 * alpha);
    }
  return picture;
}

}  // namespace

std::span<const File> ComicFiles() {
  static const File files[] = {
      {"sucai20.png", Panel},
      {"sucai19.png", ScreenTone},
      {"sucai21.png", Caption},
  };
  return files;
}

}  // namespace tintwerk::paint

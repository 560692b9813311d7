#include "colour_difference.h"

#include <cmath>
#include <numbers>

namespace tintwerk::paint {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

double Square(double x) {
  return x * x;
}

/// sqrt(x^7 / (x^7 + 25^7)), how strongly chroma x counts in the blue and grey corrections.
double ChromaShare(double x) {
  const double seventh = x * Square(x * x * x);
  return std::sqrt(seventh / (seventh + 6103515625.0));
}

/// Degrees, 0 up to 360; 0 for grey.
double Hue(double a, double b) {
  if (a == 0 && b == 0) return 0;
  const double degrees = std::atan2(b, a) / kDegree;
  return degrees < 0 ? degrees + 360 : degrees;
}

}  // namespace

CieLab ToCieLab(const Rgb& encoded) {
  const Rgb c = Linear(encoded);
  // The linear part below the cube root keeps its slope finite at black.
  const auto f = [](double t) {
    return t > 216.0 / 24389 ? CubeRoot(t) : (24389.0 / 27 * t + 16) / 116;
  };
  const double x = f((0.4124564 * c.red + 0.3575761 * c.green + 0.1804375 * c.blue) / 0.95047);
  const double y = f(0.2126729 * c.red + 0.7151522 * c.green + 0.0721750 * c.blue);
  const double z = f((0.0193339 * c.red + 0.1191920 * c.green + 0.9503041 * c.blue) / 1.08883);
  return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double ColourDifference(const CieLab& one, const CieLab& other) {
  // Greys are spread along a, for the eye tells them apart better there.
  const double spread =
      1.5 - 0.5 * ChromaShare((std::hypot(one.a, one.b) + std::hypot(other.a, other.b)) / 2);
  const double chroma1 = std::hypot(spread * one.a, one.b);
  const double chroma2 = std::hypot(spread * other.a, other.b);
  const double hue1 = Hue(spread * one.a, one.b);
  const double hue2 = Hue(spread * other.a, other.b);
  const bool hasHues = chroma1 * chroma2 > 0;

  double turn = hasHues ? hue2 - hue1 : 0;
  if (turn > 180) turn -= 360;
  if (turn < -180) turn += 360;
  double hue = hue1 + hue2;
  if (hasHues) {
    if (std::abs(hue1 - hue2) > 180) hue += hue < 360 ? 360 : -360;
    hue /= 2;
  }

  const double lightness = (one.lightness + other.lightness) / 2;
  const double chroma = (chroma1 + chroma2) / 2;
  const double byHue =
      1 - 0.17 * std::cos((hue - 30) * kDegree) + 0.24 * std::cos(2 * hue * kDegree) +
      0.32 * std::cos((3 * hue + 6) * kDegree) - 0.20 * std::cos((4 * hue - 63) * kDegree);
  const double fromMiddle = Square(lightness - 50);
  const double dl =
      (other.lightness - one.lightness) / (1 + 0.015 * fromMiddle / std::sqrt(20 + fromMiddle));
  const double dc = (chroma2 - chroma1) / (1 + 0.045 * chroma);
  const double dh = 2 * std::sqrt(chroma1 * chroma2) * std::sin(turn / 2 * kDegree) /
                    (1 + 0.015 * chroma * byHue);
  const double blueTurn = 30 * std::exp(-Square((hue - 275) / 25));
  const double rotation = -std::sin(2 * blueTurn * kDegree) * 2 * ChromaShare(chroma);
  return std::sqrt(dl * dl + dc * dc + dh * dh + rotation * dc * dh);
}

}  // namespace tintwerk::paint

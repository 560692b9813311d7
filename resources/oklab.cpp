#include "oklab.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace tintwerk::paint {
namespace {

/// The n-th root by Newton's method, from the exponent divided by n.
template <int n>
double Root(double x) {
  if (x <= 0) return 0;
  constexpr std::uint64_t one = std::bit_cast<std::uint64_t>(1.0);
  double root = std::bit_cast<double>(one - one / n + std::bit_cast<std::uint64_t>(x) / n);
  for (int step = 0; step < 5; ++step) {
    double power = 1;
    for (int i = 1; i < n; ++i) power *= root;
    root += (x / power - root) / n;
  }
  return root;
}

double LinearChannel(double v) {
  if (v <= 0.04045) return v / 12.92;
  const double x = (v + 0.055) / 1.055;
  const double fifth = Root<5>(x);
  return x * x * fifth * fifth;  // x to the power of 2.4
}

double EncodedChannel(double v) {
  if (v <= 0.0031308) return 12.92 * v;
  const double third = CubeRoot(v);
  return 1.055 * third * std::sqrt(std::sqrt(third)) - 0.055;  // v to the power of 5/12
}

}  // namespace

double CubeRoot(double x) {
  return Root<3>(x);
}

Direction AtAngle(double degrees) {
  // The series of e^ix at a quarter of the angle, squared twice.
  const double angle = std::remainder(degrees, 360.0) * (std::numbers::pi / 720);
  double cosine = 1, sine = 0, term = 1;
  for (int n = 1; n < 20; n += 2) {
    term *= angle / n;
    sine += term;
    term *= -angle / (n + 1);
    cosine += term;
  }
  for (int twice = 0; twice < 2; ++twice) {
    const double doubleSine = 2 * sine * cosine;
    cosine = 1 - 2 * sine * sine;
    sine = doubleSine;
  }
  return {cosine, sine};
}

Rgb Linear(const Rgb& c) {
  return {LinearChannel(c.red), LinearChannel(c.green), LinearChannel(c.blue)};
}

Rgb Encoded(const Rgb& c) {
  return {EncodedChannel(c.red), EncodedChannel(c.green), EncodedChannel(c.blue)};
}

OkLab ToOkLab(const Rgb& c) {
  const double l = CubeRoot(0.4122214708 * c.red + 0.5363325363 * c.green + 0.0514459929 * c.blue);
  const double m = CubeRoot(0.2119034982 * c.red + 0.6806995451 * c.green + 0.1073969566 * c.blue);
  const double s = CubeRoot(0.0883024619 * c.red + 0.2817188376 * c.green + 0.6299787005 * c.blue);
  return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
          1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
          0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

Rgb FromOkLab(const OkLab& c) {
  const auto cube = [](double x) { return x * x * x; };
  const double l = cube(c.lightness + 0.3963377774 * c.a + 0.2158037573 * c.b);
  const double m = cube(c.lightness - 0.1055613458 * c.a - 0.0638541728 * c.b);
  const double s = cube(c.lightness - 0.0894841775 * c.a - 1.2914855480 * c.b);
  return {4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
          -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
          -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s};
}

double Chroma(const OkLab& c) {
  return std::sqrt(c.a * c.a + c.b * c.b);
}

OkLab Cusp(const Direction& hue) {
  // The largest share of chroma in lightness that leaves no channel below 0, as light as white lets
  // the brightest channel be.
  const auto light = [&](double share) {
    return FromOkLab({1, share * hue.cosine, share * hue.sine});
  };
  double share = 0;
  for (double step = 0.5; step > 1e-6; step /= 2) {
    const Rgb c = light(share + step);
    if (std::min({c.red, c.green, c.blue}) >= 0) share += step;
  }
  const Rgb c = light(share);
  const double lightness = CubeRoot(1 / std::max({c.red, c.green, c.blue}));
  return {lightness, lightness * share * hue.cosine, lightness * share * hue.sine};
}

}  // namespace tintwerk::paint

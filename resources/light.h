// Light on a dark ground: what leaks, lamps and skies are painted with.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "noise.h"
#include "oklab.h"
#include "picture.h"

namespace tintwerk::paint {

inline Rgb operator+(const Rgb& a, const Rgb& b) {
  return {a.red + b.red, a.green + b.green, a.blue + b.blue};
}
inline Rgb operator*(double factor, const Rgb& c) {
  return {factor * c.red, factor * c.green, factor * c.blue};
}
inline Rgb Lerp(const Rgb& a, const Rgb& b, double t) {
  return (1 - t) * a + t * b;
}

inline double Distance(double dx, double dy) {
  return std::sqrt(dx * dx + dy * dy);
}

/// 1 where `distance` is 0 or less, 0 from `reach` on, bent like the fall of light from an opening:
/// steep at first, then long and level.
inline double FallOff(double distance, double reach) {
  if (distance <= 0) return 1;
  if (distance >= reach) return 0;
  const double left = 1 - distance / reach;
  return left * left * left;
}

/// What light does to colour film: every layer saturates, 0 stays 0 and much light comes near 1.
double Develop(double exposure);

/// The colour of light that reached the film from behind. The red layer lies at the back, so faint
/// light is red; more of it turns orange, yellow, and in the end pale.
struct LeakColour {
  double red;
  double green;
  double blue;

  Rgb operator()(double exposure) const;
};

/// A lamp out of focus.
struct Disc {
  double x, y, radius;  // in heights of the picture
  Rgb colour;           // what it adds
  double rim;           // share of its light that only the outline has, 0..1
};

/// Channel values while a picture is being made: 0 is black, 1 is white, more is clipped at last.
/// Lengths are in heights of the picture, so x runs from 0 to its width over its height.
class Canvas {
 public:
  Canvas(int width, int height);

  double Right() const { return double(width_) / height_; }
  const Rgb& At(int column, int row) const { return light_[std::size_t(row) * width_ + column]; }

  /// Sets every pixel to shade(x, y).
  template <class Shade>
  void Fill(const Shade& shade) {
    for (int row = 0; row < height_; ++row)
      for (int column = 0; column < width_; ++column)
        light_[std::size_t(row) * width_ + column] =
            shade((column + 0.5) / height_, (row + 0.5) / height_);
  }

  /// Adds a disc with a soft outline.
  void Add(const Disc& disc);

  /// Rounds, with a grain that rests where it is black.
  /// @param grain its strength at middle grey, as a share of white
  Picture Print(double grain, std::uint32_t seed) const;

 private:
  int width_;
  int height_;
  std::vector<Rgb> light_;
};

}  // namespace tintwerk::paint

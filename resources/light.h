// Light on a dark ground: what leaks, lamps and skies are painted with.
#pragma once

#include <algorithm>
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

/// A colour told as the bytes of a file, 0..255.
constexpr Rgb Rgb255(double red, double green, double blue) {
  return {red / 255, green / 255, blue / 255};
}
inline Rgb Neutral(double tone) {
  return {tone, tone, tone};
}

/// A colour between neighbours of a row, `place` running from 0 at the first to 1 at the last.
template <std::size_t N>
Rgb Between(const Rgb (&colours)[N], double place) {
  const double scaled = std::clamp(place, 0.0, 1.0) * (N - 1);
  const std::size_t before = std::min(N - 2, std::size_t(scaled));
  return Lerp(colours[before], colours[before + 1], scaled - before);
}

/// The same, resting a little at every colour.
template <std::size_t N>
Rgb Along(const Rgb (&colours)[N], double place) {
  const double scaled = std::clamp(place, 0.0, 1.0) * (N - 1);
  const double before = std::floor(scaled);
  return Between(colours, (before + SmoothStep(0, 1, scaled - before)) / (N - 1));
}

/// The tone that a blend leaves the image alone with: black for Screen, white for Multiply, and
/// middle grey for Overlay and its kin.
inline constexpr double kScreenRest = 0;
inline constexpr double kMultiplyRest = 1;
inline constexpr double kOverlayRest = 128 / 255.0;
inline constexpr double kNowhere = -1;  ///< for pictures without such a ground

/// 1 where `distance` is 0 or less, 0 from `reach` on, bent like the fall of light from an opening:
/// steep at first, then long and level.
inline double FallOff(double distance, double reach) {
  if (distance <= 0) return 1;
  if (distance >= reach) return 0;
  const double left = 1 - distance / reach;
  return left * left * left;
}

/// The same with a gentler slope at first.
inline double Glow(double distance, double reach) {
  if (distance <= 0) return 1;
  if (distance >= reach) return 0;
  const double left = 1 - distance / reach;
  return left * left;
}

/// A blob of light without an outline: 1 in the middle, 0 from a distance of 1 on.
inline double Blob(double square) {
  return square >= 1 ? 0 : (1 - square) * (1 - square);
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

/// The shapes that pictures are painted in. Every reader stretches them to its image.
struct Size {
  int width, height;
};
inline constexpr Size kLandscape = {1500, 1000};
inline constexpr Size kUpright = {1000, 1400};  // turned on a landscape image
/// For readers that stretch by plain bilinear and take another way if the size fits: no photograph
/// has this one. Nothing in such a picture is finer than three pixels, since they skip pixels.
inline constexpr Size kOdd = {1501, 1003};

/// Channel values while a picture is being made: 0 is black, 1 is white, more is clipped at last.
/// Lengths are in heights of the picture, so x runs from 0 to its width over its height.
class Canvas {
 public:
  Canvas(int width, int height);
  explicit Canvas(Size size) : Canvas(size.width, size.height) {}

  double Right() const { return double(width_) / height_; }
  Size Extent() const { return {width_, height_}; }
  Rgb& At(int column, int row) { return light_[std::size_t(row) * width_ + column]; }
  const Rgb& At(int column, int row) const { return light_[std::size_t(row) * width_ + column]; }

  /// Sets every pixel to shade(x, y).
  template <class Shade>
  void Fill(const Shade& shade) {
    for (int row = 0; row < height_; ++row)
      for (int column = 0; column < width_; ++column)
        At(column, row) = shade((column + 0.5) / height_, (row + 0.5) / height_);
  }

  /// Sets every pixel to tone(x, y, pixel).
  template <class Tone>
  void Shade(const Tone& tone) {
    for (int row = 0; row < height_; ++row)
      for (int column = 0; column < width_; ++column) {
        Rgb& pixel = At(column, row);
        pixel = tone((column + 0.5) / height_, (row + 0.5) / height_, pixel);
      }
  }

  /// Calls visit(pixel) for every pixel.
  template <class Visit>
  void Each(const Visit& visit) {
    for (Rgb& pixel : light_) visit(pixel);
  }

  /// Lets visit(pixel, dx, dy) change the pixels up to `reach` from a place, told by how far they
  /// lie from it.
  template <class Visit>
  void Around(double x, double y, double reach, const Visit& visit) {
    const auto first = [&](double at) { return std::max(0, int((at - reach) * height_) - 1); };
    const auto last = [&](double at, int end) {
      return std::min(end, int((at + reach) * height_) + 2);
    };
    for (int row = first(y); row < last(y, height_); ++row)
      for (int column = first(x); column < last(x, width_); ++column)
        visit(At(column, row), (column + 0.5) / height_ - x, (row + 0.5) / height_ - y);
  }

  /// Adds a disc with a soft outline.
  void Add(const Disc& disc);

  /// Adds light without an outline that dies away at `radius`.
  void AddBlob(double x, double y, double radius, const Rgb& colour);

  /// Adds a small irregular thing: three blobs over each other.
  void AddSpeck(Dice& dice, double x, double y, double radius, const Rgb& colour);

  /// Rounds, with a grain that keeps gradients free of bands and rests where nothing is painted.
  /// @param grain its strength as a share of white; JPEG swallows less than 0.006
  /// @param rest the tone of an unpainted ground
  Picture Print(double grain, std::uint32_t seed, double rest = kScreenRest) const;

 private:
  int width_;
  int height_;
  std::vector<Rgb> light_;
};

/// How far a place lies from the middle of a picture that is `right` wide: 1 at the middle of every
/// side, 1.41 in the corners.
inline double Outward(double x, double y, double right) {
  return Distance(2 * x / right - 1, 2 * y - 1);
}

/// 1 in the middle of a picture, where faces are, 0 away from it.
inline double Calm(double x, double y, double right) {
  return 1 - SmoothStep(1, 1.7, Distance((x / right - 0.5) / 0.25, (y - 0.42) / 0.25));
}

}  // namespace tintwerk::paint

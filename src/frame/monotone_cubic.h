// Curves through a few points.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace tintwerk {

/// The new value of every channel value.
using ToneTable = std::array<unsigned char, 256>;

/// A point that a curve passes through; both values 0..255.
struct CurvePoint {
  int x;
  int y;
};

/// The monotone cubic through the points (Fritsch-Butland slopes): it never overshoots, rises or
/// falls just where they do, and hits each of them. Flat before the first and after the last.
/// @param points at least one, in strictly ascending order of x
constexpr ToneTable MonotoneCubic(std::span<const CurvePoint> points) {
  const std::size_t last = points.size() - 1;
  const auto width = [&](std::size_t i) { return double(points[i + 1].x - points[i].x); };
  const auto chord = [&](std::size_t i) { return (points[i + 1].y - points[i].y) / width(i); };
  // At an end a three-point estimate, kept within what stays monotone.
  const auto end = [&](std::size_t nearest, std::size_t next) {
    const double near = chord(nearest), far = chord(next);
    const double nearWidth = width(nearest), farWidth = width(next);
    const double s = ((2 * nearWidth + farWidth) * near - nearWidth * far) / (nearWidth + farWidth);
    if (s * near <= 0) return 0.0;
    return s * s > 9 * near * near ? 3 * near : s;
  };
  // Inside, the weighted harmonic mean of the neighbouring chords.
  const auto slope = [&](std::size_t i) {
    if (last == 1) return chord(0);
    if (i == 0) return end(0, 1);
    if (i == last) return end(last - 1, last - 2);
    const double left = chord(i - 1), right = chord(i);
    if (left * right <= 0) return 0.0;
    const double a = 2 * width(i) + width(i - 1), b = width(i) + 2 * width(i - 1);
    return (a + b) / (a / left + b / right);
  };
  ToneTable table{};
  for (int x = 0; x <= points.front().x; ++x)
    table[x] = static_cast<unsigned char>(points.front().y);
  for (int x = points.back().x; x < 256; ++x)
    table[x] = static_cast<unsigned char>(points.back().y);
  for (std::size_t i = 0; i < last; ++i) {
    const CurvePoint from = points[i], to = points[i + 1];
    const double h = width(i), fromSlope = slope(i), toSlope = slope(i + 1);
    for (int x = from.x + 1; x <= to.x; ++x) {
      const double t = (x - from.x) / h, u = 1 - t;
      const double y = u * u * ((1 + 2 * t) * from.y + t * h * fromSlope) +
                       t * t * ((1 + 2 * u) * to.y - u * h * toSlope);
      table[x] = static_cast<unsigned char>(y + 0.5);
    }
  }
  return table;
}

}  // namespace tintwerk

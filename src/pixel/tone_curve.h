// Tone tables: functions of one byte, and the curves that fill them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <stdexcept>

#include "frame/progress.h"

namespace tintwerk {

/// The new value of every channel value.
using ToneTable = std::array<unsigned char, 256>;

/// One for each channel.
struct ToneTables {
  ToneTable blue, green, red;
};

/// A table of value(i) for every byte i.
template <class Value>
constexpr ToneTable TableOf(const Value& value) {
  ToneTable table{};
  for (int i = 0; i < 256; ++i) table[i] = static_cast<unsigned char>(value(i));
  return table;
}

/// One table after another.
constexpr ToneTable Through(const ToneTable& first, const ToneTable& second) {
  return TableOf([&](int i) { return second[first[i]]; });
}

/// A point that a curve passes through; both values 0..255.
struct CurvePoint {
  int x;
  int y;
};

/// A table baked by the compiler: the monotone cubic through the given samples (Fritsch-Butland
/// slopes: it never overshoots, and rises or falls just where its samples do), flat before the
/// first and after the last. Every sample is hit exactly.
///
///     constexpr ToneTable kWarm = Curve({{0, 8}, {64, 70}, {128, 140}, {255, 250}});
///
/// Samples must ascend in x and lie in 0..255, or the program does not compile.
template <std::size_t N>
consteval ToneTable Curve(const CurvePoint (&samples)[N]) {
  static_assert(N >= 2, "a curve needs two samples");
  double slope[N] = {};
  for (std::size_t i = 0; i < N; ++i) {
    const CurvePoint& s = samples[i];
    if (s.x < 0 || s.x > 255 || s.y < 0 || s.y > 255) throw std::invalid_argument("outside 0..255");
    if (i > 0 && s.x <= samples[i - 1].x) throw std::invalid_argument("x does not ascend");
  }
  auto width = [&](std::size_t i) { return double(samples[i + 1].x - samples[i].x); };
  auto chord = [&](std::size_t i) { return (samples[i + 1].y - samples[i].y) / width(i); };
  // Inside, the weighted harmonic mean of the neighbouring chords; at the ends a three-point
  // estimate that is kept within what stays monotone.
  for (std::size_t i = 1; i + 1 < N; ++i) {
    const double left = chord(i - 1), right = chord(i);
    if (left * right <= 0) continue;
    const double a = 2 * width(i) + width(i - 1), b = width(i) + 2 * width(i - 1);
    slope[i] = (a + b) / (a / left + b / right);
  }
  auto end = [](double near, double far, double nearWidth, double farWidth) {
    double s = ((2 * nearWidth + farWidth) * near - nearWidth * far) / (nearWidth + farWidth);
    if (s * near <= 0) return 0.0;
    if (near * far <= 0 && s * s > 9 * near * near) s = 3 * near;
    return s * s > 9 * near * near ? 3 * near : s;
  };
  if constexpr (N == 2) {
    slope[0] = slope[1] = chord(0);
  } else {
    slope[0] = end(chord(0), chord(1), width(0), width(1));
    slope[N - 1] = end(chord(N - 2), chord(N - 3), width(N - 2), width(N - 3));
  }
  ToneTable table{};
  std::size_t segment = 0;
  for (int x = 0; x < 256; ++x) {
    if (x <= samples[0].x) {
      table[x] = static_cast<unsigned char>(samples[0].y);
      continue;
    }
    if (x >= samples[N - 1].x) {
      table[x] = static_cast<unsigned char>(samples[N - 1].y);
      continue;
    }
    while (x >= samples[segment + 1].x) ++segment;
    const double h = width(segment), t = (x - samples[segment].x) / h, u = 1 - t;
    const double y = u * u * ((1 + 2 * t) * samples[segment].y + t * h * slope[segment]) +
                     t * t * ((1 + 2 * u) * samples[segment + 1].y - u * h * slope[segment + 1]);
    table[x] = static_cast<unsigned char>(y + 0.5);
  }
  return table;
}

/// Smooth curves through a few points, for tables that are computed at run time.
class SFCurve {
 public:
  /// Five tables of 256 bytes, each starting as the identity. A table is null if memory could not
  /// be had.
  SFCurve();
  SFCurve(const SFCurve&) = delete;
  SFCurve& operator=(const SFCurve&) = delete;
  virtual ~SFCurve();

  /// Fills a table with the uniform cubic B-spline through the points, evaluated in Bezier form.
  /// Entries run along the parameter from index 0 on, so x only sets how many of them a segment
  /// takes.
  /// @param points at least 3, of which the first has x = 0 and x ascends; fewer leave the table
  ///               as it is
  void BuildTable(const CurvePoint* points, int count, unsigned char* table);

  unsigned char* table1;
  unsigned char* table2;
  unsigned char* table3;
  unsigned char* table4;
  unsigned char* table5;
};

/// Sends blue, green and red of a run of pixels through a table each.
inline void ApplyTables(unsigned char* pixels, std::int64_t count, const unsigned char* blue,
                        const unsigned char* green, const unsigned char* red) {
  for (unsigned char* end = pixels + 4 * count; pixels != end; pixels += 4) {
    pixels[0] = blue[pixels[0]];
    pixels[1] = green[pixels[1]];
    pixels[2] = red[pixels[2]];
  }
}

/// The same through one table.
inline void ApplyTable(unsigned char* pixels, std::int64_t count, const unsigned char* table) {
  ApplyTables(pixels, count, table, table, table);
}

/// Sends an image through a table for each channel. @return false if the host wants the work
/// stopped
bool RunTables(unsigned char* pixels, int width, int height, const ToneTables& tables,
               const RowProgress& rows = {});

}  // namespace tintwerk

// Tone tables: functions of one byte, and the curves that fill them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "frame/monotone_cubic.h"
#include "frame/progress.h"

namespace tintwerk {

/// One for each channel.
struct ToneTables {
  ToneTable blue, green, red;

  /// That of byte 0, 1 or 2 of a pixel.
  constexpr const ToneTable& operator[](int channel) const {
    return channel == 0 ? blue : channel == 1 ? green : red;
  }
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

/// A table baked by the compiler: the monotone cubic through the given samples.
///
///     constexpr ToneTable kWarm = Curve({{0, 8}, {64, 70}, {128, 140}, {255, 250}});
///
/// Samples must ascend in x and lie in 0..255, or the program does not compile.
template <std::size_t N>
consteval ToneTable Curve(const CurvePoint (&samples)[N]) {
  static_assert(N >= 2, "a curve needs two samples");
  for (std::size_t i = 0; i < N; ++i) {
    const CurvePoint& s = samples[i];
    if (s.x < 0 || s.x > 255 || s.y < 0 || s.y > 255) throw std::invalid_argument("outside 0..255");
    if (i > 0 && s.x <= samples[i - 1].x) throw std::invalid_argument("x does not ascend");
  }
  return MonotoneCubic(samples);
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

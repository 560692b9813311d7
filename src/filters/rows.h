// Loops over the pixels of an image, as the point operations share them.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "frame/material.h"
#include "frame/pixel_memory.h"
#include "frame/progress.h"
#include "pixel/tone_curve.h"

namespace tintwerk {

/// Runs body(pixel) for every pixel, row by row, with reports.
/// @return false if the host wants the work stopped
template <class Body>
bool ForEachPixel(unsigned char* pixels, int width, int height, const RowProgress& rows,
                  const Body& body) {
  const std::int64_t pitch = 4 * std::int64_t{std::max(width, 0)};
  return ForEachRow(rows, height, [=](std::int64_t y) {
    unsigned char* const row = pixels + pitch * y;
    for (unsigned char* pixel = row; pixel != row + pitch; pixel += 4) body(pixel);
  });
}

/// The same in parallel without reports.
template <class Body>
void ForEachPixel(unsigned char* pixels, int width, int height, const Body& body) {
  ForEachPixel(pixels, width, height, RowProgress(nullptr, 0, 0, height), body);
}

/// The same with the pixel as a word, blue in its low byte: word = body(word). The compiler works
/// several words at once where the body is plain arithmetic.
template <class Body>
bool ForEachWord(unsigned char* pixels, int width, int height, const RowProgress& rows,
                 const Body& body) {
  static_assert(std::endian::native == std::endian::little);
  return ForEachRow(rows, height, [=](std::int64_t y) {
    unsigned char* const row = pixels + 4 * std::int64_t{width} * y;
    for (int x = 0; x < width; ++x) {
      std::uint32_t word;
      std::memcpy(&word, row + 4 * std::int64_t{x}, 4);
      word = body(word);
      std::memcpy(row + 4 * std::int64_t{x}, &word, 4);
    }
  });
}

/// A tone table for each channel.
struct ToneTables {
  ToneTable blue, green, red;
};

/// Sends every pixel through tables, with reports. @return false if the host wants the work stopped
inline bool RunTables(unsigned char* pixels, int width, int height, const ToneTables& tables,
                      const RowProgress& rows) {
  const std::int64_t pitch = std::max(width, 0);
  const unsigned char *blue = tables.blue.data(), *green = tables.green.data(),
                      *red = tables.red.data();
  return ForEachRow(rows, height, [=](std::int64_t y) {
    ApplyTables(pixels + 4 * pitch * y, pitch, blue, green, red);
  });
}

/// A table of value(i) for every byte i.
template <class Value>
ToneTable TableOf(const Value& value) {
  ToneTable table;
  for (int i = 0; i < 256; ++i) table[i] = static_cast<unsigned char>(value(i));
  return table;
}

/// A copy of an image; null if memory could not be had.
inline PixelMemory CopyOf(const unsigned char* pixels, std::int64_t count) {
  PixelMemory copy = AllocatePixels(std::size_t{4} * count);
  if (copy) std::memcpy(copy.get(), pixels, 4 * count);
  return copy;
}

/// An image that an operation can work on.
inline bool IsWorkable(const unsigned char* pixels, int width, int height) {
  return pixels && PixelCount(width, height);
}

}  // namespace tintwerk

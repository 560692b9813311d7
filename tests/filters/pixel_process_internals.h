// The private operations that tests look at.
#pragma once

#include "tintwerk/pixel_process.h"

struct PixelProcessInternals : CPixelProcess {
  static void FindConstants(double (*arrays)[5], double deviation) {
    find_constants(arrays[0], arrays[1], arrays[2], arrays[3], arrays[4], arrays[5], deviation);
  }
  static tagRGBQUAD ColorAt(const unsigned char* pixels, int rowPixels, float x, float y, int width,
                            int height, OverflowMethod overflow) {
    return GetPixelColorInterpolated(pixels, rowPixels, x, y, width, height, InterpolationBilinear,
                                     overflow);
  }
  template <class Coordinate>
  static void MoveInside(Coordinate& x, Coordinate& y, OverflowMethod overflow, int width,
                         int height) {
    OverflowCoordinates(x, y, overflow, width, height);
  }
  static void Pack(const unsigned char* source, unsigned char* target, int count) {
    tfbitCopy(source, target, count);
  }
  static void Blend(unsigned char* target, const unsigned char* source, unsigned char alpha) {
    AlphaBlendPixel(target, source, alpha);
  }
  static int Normalize(unsigned char* channel, std::uint64_t count, unsigned char low,
                       unsigned char high, std::uint64_t clipLow, std::uint64_t clipHigh) {
    return normalize_histo_u8(channel, count, low, high, clipLow, clipHigh);
  }
  static int ClippedMinMax(const unsigned char* channel, std::uint64_t count, std::uint64_t clipLow,
                           std::uint64_t clipHigh, unsigned char* min, unsigned char* max) {
    return minmax_histo_u8(channel, count, clipLow, clipHigh, min, max);
  }
  static int MinMax(const unsigned char* channel, std::uint64_t count, unsigned char* min,
                    unsigned char* max) {
    return minmax_u8(channel, count, min, max);
  }
};

// Whole runs of pixels through cubes.
#pragma once

#include <cstdint>

#include "lookup/cube_layout.h"

namespace tintwerk {

/// The nodes of a 16-level cube as the kernel reads them: neighbours along red channel by channel
/// side by side, for each red but the last, green and blue. 30 KiB: they stay in the nearest cache.
struct CubePairs {
  explicit CubePairs(const unsigned char* cube);

  static constexpr int kPair = 8;  // bytes
  static constexpr int kGreen = 16 * kPair;
  static constexpr int kRed = 16 * kGreen;
  unsigned char bytes[15 * kRed];
};

/// Maps `count` pixels, a multiple of kPixelGroup.
inline constexpr int kPixelGroup = 8;
void MapThroughPairs(unsigned char* pixels, std::int64_t count, const CubePairs& cube, float scale);
/// The same through a 64-level cube as it lies in its picture.
void MapThroughCube64(unsigned char* pixels, std::int64_t count, const unsigned char* cube,
                      float scale);

}  // namespace tintwerk

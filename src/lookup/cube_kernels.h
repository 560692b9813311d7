// Runs of pixels through cubes.
#pragma once

#include <cstdint>

#include "lookup/cube_layout.h"

namespace tintwerk {

/// A cube of 16 levels as the kernel reads it: for each red but the last, each green and each blue,
/// the node and its next along red, channel by channel side by side. 30 KiB: most of it stays in
/// the nearest cache.
struct CubePairs {
  static constexpr int kLevels = 16;
  static constexpr int kBlue = 8;  // bytes from one to the next
  static constexpr int kGreen = kLevels * kBlue;
  static constexpr int kRed = kLevels * kGreen;

  explicit CubePairs(const unsigned char* cube);

  alignas(64) unsigned char bytes[(kLevels - 1) * kRed];
};

/// Maps as many whole groups of pixels as there are. The first two take the bytes of CubePairs, the
/// third a cube of 64 levels as it lies in its picture.
/// @return the number of pixels mapped
using CubeKernel = std::int64_t(unsigned char* pixels, std::int64_t count,
                                const unsigned char* nodes);
CubeKernel MapGroups4x4, MapGroupsNew, MapGroups8x8;

}  // namespace tintwerk

// Where the channel values lie in cubes, as the kernel takes it.
#pragma once

#include <algorithm>
#include <cstdint>

#include "lookup/cube_kernels.h"
#include "lookup/cube_layout.h"

namespace tintwerk {

/// Where each channel value lies: offsets of its cell in bytes, and the weights on both sides as
/// the vectors take them. The uppermost level counts as the end of the last cell.
struct CubeSteps {
  std::int32_t red[256];
  std::int32_t redUpper[256];  // pairs of words, see AlongRed
  std::int32_t redLower[256];
  std::int32_t green[256];
  std::int32_t greenWeight[256];
  std::int32_t blue[256];
  std::int32_t nextBlue[256];
  // Of the low blue four times, then of the high.
  alignas(32) std::int32_t blueWeights[256][8];
};

/// @param offset(red, green, blue) of a node's pair in bytes
template <int kLevels, class Offset>
constexpr CubeSteps StepsOf(float scale, Offset offset) {
  constexpr auto words = [](int even, int odd) {
    return static_cast<std::int32_t>((static_cast<std::uint32_t>(even) & 0xffff) |
                                     static_cast<std::uint32_t>(odd) << 16);
  };
  CubeSteps steps{};
  for (int value = 0; value < 256; ++value) {
    const float at = std::min(static_cast<float>(value) * scale, float{kLevels - 1});
    const int low = std::min(static_cast<int>(at), kLevels - 2);
    const auto weight = [=](int unit) {
      return static_cast<int>((at - static_cast<float>(low)) * static_cast<float>(unit));
    };
    const int upper = weight(kRedUnit) >> 10, lower = weight(kRedUnit) & 1023;
    steps.red[value] = offset(low, 0, 0);
    steps.redUpper[value] = words(1023 - upper, upper);
    steps.redLower[value] = words(1024 - lower, lower);
    steps.green[value] = offset(0, low, 0);
    steps.greenWeight[value] = weight(kUnit);
    steps.blue[value] = offset(0, 0, low);
    steps.nextBlue[value] = offset(0, 0, low + 1);
    for (int i = 0; i < 8; ++i)
      steps.blueWeights[value][i] = i < 4 ? kUnit - weight(kUnit) : weight(kUnit);
  }
  return steps;
}

constexpr CubeSteps StepsOfPairs(float scale) {
  return StepsOf<CubePairs::kLevels>(scale, [](int r, int g, int b) {
    return r * CubePairs::kRed + g * CubePairs::kGreen + b * CubePairs::kBlue;
  });
}
inline constexpr CubeSteps k4x4Steps = StepsOfPairs(kSixteenths);
inline constexpr CubeSteps kNewSteps = StepsOfPairs(kSeventeenths);
inline constexpr CubeSteps k8x8Steps = StepsOf<Cube64::kLevels>(kQuarters, Cube64::Node);

}  // namespace tintwerk

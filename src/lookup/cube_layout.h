// How cubes lie in their pictures, and where the channel values lie in cubes.
#pragma once

namespace tintwerk {

/// A cube of kLevelCount nodes an axis as a square picture of tiles, one for each blue; in a tile,
/// red runs along the columns and green down the rows.
template <int kLevelCount, int kTilesPerRow>
struct CubeLayout {
  static constexpr int kLevels = kLevelCount;
  static constexpr int kSide = kTilesPerRow * kLevels;  // of the picture, in pixels

  /// Offset of a node in bytes.
  static constexpr int Node(int red, int green, int blue) {
    const int x = blue % kTilesPerRow * kLevels + red;
    const int y = blue / kTilesPerRow * kLevels + green;
    return 4 * (y * kSide + x);
  }
};
using Cube16 = CubeLayout<16, 4>;
using Cube64 = CubeLayout<64, 8>;

/// From channel values to node indices. The first two lie a little below 1/16 and 1/4, so that a
/// channel that meets a node falls to the very end of the cell before it.
inline constexpr float kSixteenths = 0x1.fffffcp-5f;
inline constexpr float kQuarters = 0x1.fffff8p-3f;
inline constexpr float kSeventeenths = 0x1.e1e1e2p-5f;

/// Weights of the upper node on red, and on green and blue: their unequal scales place the
/// truncations.
inline constexpr int kRedUnit = 1 << 20;
inline constexpr int kUnit = 1 << 10;

}  // namespace tintwerk

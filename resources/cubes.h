// Colour cubes: how a grade is told, worked out and laid out as a picture.
#pragma once

#include <optional>
#include <vector>

#include "oklab.h"
#include "picture.h"

namespace tintwerk::paint {

/// A value that drifts with lightness: given at black, in the middle and at white, a parabola
/// between them that leaves each end towards the middle value.
template <typename T>
struct ByLightness {
  T shadows{};
  T middle{};
  T lights{};
};

/// A colour cast that is laid over everything of one lightness.
struct Cast {
  double hue = 0;     // degrees in OKLab: 30 red, 55 orange, 90 gold, 140 green, 195 cyan, 260 blue
  double chroma = 0;  // 0.01 is hardly seen, 0.05 is strong
};

/// What happens to the colours around a hue; greys take no part. Half way out the effect is half.
struct HueBand {
  double hue;             // degrees
  double reach;           // degrees to either side, at most 180, where the effect has died away
  double shift = 0;       // degrees that the hue turns; pure yellows and greens change lightness
  double saturation = 1;  // factor of the chroma
  double exposure = 0;    // as in Tone
};

/// A tone curve on cube roots of light, which in greys are the lightness: the exposure bends it
/// between its ends, -1..1; then its slope is 1 - toe at black and 1 - shoulder at white, both
/// -2..1. Positive ones make an S-curve, negative ones open shadows and lights.
struct Tone {
  double exposure = 0;
  double toe = 0;
  double shoulder = 0;
};

/// What lightness 0 and 1 become: a lifted black is a faded print.
struct Ends {
  double black = 0;
  double white = 1;
};

/// The recipe of a look. The default one changes nothing. The steps apply in the order of the
/// fields; casts and saturation go by the lightness before the ends are moved.
struct Grade {
  /// The three layers of the film, on encoded channels: a gamma-like bend (above 0 lighter) and a
  /// contrast about the middle, both -1..1, both leaving black and white where they are.
  Rgb bend = {0, 0, 0};
  Rgb contrast = {0, 0, 0};

  /// Black and white through a colour filter: the share that each channel has in the light.
  std::optional<Rgb> filter = std::nullopt;

  std::vector<HueBand> bands = {};

  Tone tone = {};
  /// Darkens colours by their chroma, as dyes do.
  double density = 0;
  Ends ends = {};

  /// Factors of the chroma, from 0; above 1 they spare colours that are strong already.
  ByLightness<double> saturation = {1, 1, 1};
  ByLightness<Cast> cast = {};

  /// How much of the turns, saturation changes and casts skin is spared, 0..1. Pure colours of
  /// the hue of skin are spared half as much.
  double skin = 0.5;
};

/// Where a cube's nodes lie, and how its picture arranges them. Both follow from the reader.
struct CubeLayout {
  int levels;  // nodes along each axis
  int tiles;   // tiles in a row of the picture; a tile holds red by green at one blue
  int step;    // distance of two nodes in channel values

  int Side() const { return levels * tiles; }
};
inline constexpr CubeLayout kCube17{.levels = 16, .tiles = 4, .step = 17};
/// The last node lies at 240, and all above it reads that node.
inline constexpr CubeLayout kCube16{.levels = 16, .tiles = 4, .step = 16};
/// The last node lies at 252, likewise.
inline constexpr CubeLayout kCube4{.levels = 64, .tiles = 8, .step = 4};

/// The channel value, 0..255, whose grade a node holds. Where the last node falls short of 255 it
/// stands for white all the same, or white would be grey; the nodes below lean towards it less and
/// less, so the middle tones are where they should be.
double NodeValue(const CubeLayout& layout, int index);

/// A grade as the picture of a cube.
struct Cube {
  CubeLayout layout;
  Grade grade;

  Picture operator()() const;
};

/// The recipe behind a cube's file.
inline const Cube& CubeOf(const File& file) {
  return *file.paint.target<Cube>();
}

/// One colour through a cube's picture, interpolated between eight nodes and not rounded.
/// @param colour channels 0..255
/// @return channels 0..255
Rgb ThroughCube(const Picture& cube, const CubeLayout& layout, const Rgb& colour);

}  // namespace tintwerk::paint

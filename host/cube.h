// Colour cubes in the formats of other tools.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "picture_io.h"

using Colour = std::array<float, 3>;  ///< red, green, blue; 0 is none, 1 is full

/// A function of colour, given at the nodes of a grid, perhaps with a curve a channel before it.
struct Cube {
  int size = 0;               ///< nodes along each axis, 2..256
  std::vector<Colour> nodes;  ///< size^3, red running fastest, blue slowest
  Colour low{0, 0, 0};        ///< input at the first node of each axis
  Colour high{1, 1, 1};       ///< input at the last

  std::vector<Colour> curve;  ///< outputs that become the grid's input; none if empty
  Colour curveLow{0, 0, 0};   ///< input at the curve's first node
  Colour curveHigh{1, 1, 1};  ///< input at its last
};

enum class Interpolation { Trilinear, Tetrahedral };

/// The value of a cube at a colour. Colours outside the grid are clamped to it.
Colour ValueAt(const Cube& cube, Colour input, Interpolation interpolation);

/// Sends the colours of a picture, of 8 or 16 bits, through a cube; results outside 0..1 are clamped
/// and rounded once. Alpha stays.
void ApplyCube(const Cube& cube, Picture& picture, Interpolation interpolation);

/// Reads a `.cube` text file, of one dimension, of three or of both, or, by its content, a HaldCLUT picture (PNG or TIFF). Throws
/// std::runtime_error that names the line or the reason if the file is neither, damaged,
/// too large, or holds anything but finite numbers.
Cube ReadCube(const std::filesystem::path& path);

/// Writes a `.cube` text file whole or not at all. Throws std::exception if that fails.
void WriteCube(const Cube& cube, const std::string& title, const std::filesystem::path& path);

/// Packs a cube into a container of the library.
/// @param levels nodes along each axis, 16 or 64
/// @param step channel values from node to node: 17 or 16 for 16 levels, 4 for 64. If the last node
///        lies below 255, the library is flat above it. That node then gets the value of white, and
///        the nodes before it are raised towards it, so that white stays white.
std::vector<unsigned char> PackContainer(const Cube& cube, int levels, int step);

// Colour cubes as other tools keep them.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

using Colour = std::array<float, 3>;  ///< red, green, blue; 0..1 is black to full

/// A function of colour by its values at the nodes of a grid.
struct Cube {
  int size = 0;               ///< nodes an axis, 2..256
  std::vector<Colour> nodes;  ///< size^3, red running fastest, blue slowest
  Colour low{0, 0, 0};        ///< input at the first node of each axis
  Colour high{1, 1, 1};       ///< input at the last

  /// The value at a colour, between nodes by trilinear interpolation, held at the faces beyond.
  Colour At(const Colour& input) const;
};

/// Reads a `.cube` text file or, by its content, a HaldCLUT picture (PNG or TIFF). Throws
/// std::runtime_error that names the line or the reason if the file is neither, damaged, a 1-D
/// table, too large, or holds anything but finite numbers.
Cube ReadCube(const std::filesystem::path& path);

/// Writes a `.cube` text file whole or not at all. Throws std::exception if that fails.
void WriteCube(const Cube& cube, const std::string& title, const std::filesystem::path& path);

/// Packs a cube into a container of the library.
/// @param levels 16 or 64 nodes an axis
/// @param step   channel values from node to node: 17 for 16 levels, or 16; 4 for 64. Where the
///               grid ends below 255 the library is flat above it; the last node takes the value
///               of full then, and those before it lean that way, so that white stays white.
std::vector<unsigned char> PackContainer(const Cube& cube, int levels, int step);

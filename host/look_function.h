// Looks as functions of colour.
#pragma once

#include <filesystem>

#include "cube.h"
#include "looks.h"

/// The cube of a look. The look must make of each pixel something that depends on that pixel alone.
/// To find out, it is run twice, on the same colours in another order, and on some of them.
/// @param size nodes along each axis, 2..256
/// @param resources the folder of the support files
/// Throws std::runtime_error with the reason if the look fails or depends on anything else.
Cube CubeOf(const Look& look, int size, const std::filesystem::path& resources);

/// The largest difference between a look and its cube on random colours, in levels of 255.
/// Throws std::runtime_error if the look fails.
int LargestError(const Look& look, const Cube& cube, const std::filesystem::path& resources);

// Looks as functions of colour.
#pragma once

#include <filesystem>

#include "cube.h"
#include "looks.h"

/// The cube of a look that is a function of the pixel alone.
/// @param size      nodes an axis, 2..256
/// @param resources the folder of the support files
/// Throws std::runtime_error with the reason if the look fails or is no such function: it is tried
/// twice, on the same colours in another order, and on some of them alone.
Cube CubeOf(const Look& look, int size, const std::filesystem::path& resources);

// The grades of the film looks and of the three adjustment axes.
#pragma once

#include <span>
#include <string>

#include "cubes.h"

namespace tintwerk::paint {

/// A cube file: its path below the folder `Effects` and what it holds.
struct CubeFile {
  std::string name;
  Cube cube;
};

/// The film looks, each a file of its own.
std::span<const CubeFile> FilmGrades();

/// Twelve steps each of light, contrast and saturation, `style/lig1` to `style/sat12`. The steps
/// are even: 1 to 6 take away and 7 to 12 add, and neutral, which has no file, lies midway between
/// 6 and 7.
std::span<const CubeFile> AdjustmentGrades();

}  // namespace tintwerk::paint

// Paper that pictures are printed on.
#pragma once

#include <cstdint>

#include "picture.h"

namespace tintwerk::paint {

/// The sheet of a photographic print that lay in a drawer for decades: middle grey and clean in the
/// centre, so that a blend which middle grey leaves alone keeps the subject, and towards the edges
/// yellowed, unevenly faded and stained, with fibres, dust, scratches and a folded corner.
struct AgedPaper {
  int width;
  int height;
  std::uint32_t seed;

  Picture operator()() const;
};

}  // namespace tintwerk::paint

// Strips that hold a tone curve per channel.
#pragma once

#include <vector>

#include "frame/monotone_cubic.h"
#include "picture.h"

namespace tintwerk::paint {

/// 256 x `rows`: in each row column v holds the three curves at v. One row is a strip; three rows
/// also serve readers that take each channel from a row of its own.
struct CurveStrip {
  std::vector<CurvePoint> red;
  std::vector<CurvePoint> green;
  std::vector<CurvePoint> blue;
  int rows = 1;

  Picture operator()() const;
};

}  // namespace tintwerk::paint

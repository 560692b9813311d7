// How different two colours look.
#pragma once

#include "oklab.h"

namespace tintwerk::paint {

/// A colour in the CIE 1976 space.
struct CieLab {
  double lightness;  // 0..100
  double a;
  double b;
};

/// @param encoded sRGB, 0..1, white at the daylight D65
CieLab ToCieLab(const Rgb& encoded);

/// The CIEDE2000 difference, all weighting factors 1. About 1 is just seen side by side.
double ColourDifference(const CieLab& one, const CieLab& other);

}  // namespace tintwerk::paint

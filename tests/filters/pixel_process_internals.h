// The private operations that tests look at.
#pragma once

#include "tintwerk/pixel_process.h"

struct PixelProcessInternals : CPixelProcess {
  using CPixelProcess::AlphaBlendPixel;
  using CPixelProcess::find_constants;
  using CPixelProcess::GetPixelColorInterpolated;
  using CPixelProcess::minmax_histo_u8;
  using CPixelProcess::minmax_u8;
  using CPixelProcess::normalize_histo_u8;
  using CPixelProcess::OverflowCoordinates;
  using CPixelProcess::tfbitCopy;
};

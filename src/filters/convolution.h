// Convolution, as looks call it.
#pragma once

#include <cstdint>

#include "tintwerk/progress.h"

namespace tintwerk {

/// CPixelProcess::Filter, which says whether it ran.
/// @return false if the image or the kernel cannot be worked on, or allocation fails; the
///         image is then as it was
bool Convolve(unsigned char* pixels, int width, int height, const std::int32_t* kernel,
              std::int32_t size, std::int32_t divisor, std::int32_t offset, CObjProgress* progress,
              int progressLow, int progressHigh);

}  // namespace tintwerk

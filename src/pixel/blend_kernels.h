// Four-pixel kernels of the blend drivers.
#pragma once

#include <cstdint>

namespace tintwerk {

// Each takes a number of groups of four pixels, 16 bytes of base and of source, and keeps the
// base's alpha.

/// (b + a) - (b x a) / 255, to the nearest.
void KernelScreen4(unsigned char* base, const unsigned char* source, std::int64_t groups);
/// With m = (b x a) / 255: (b + a - (m + m)) x a / 255 + m, in single precision, ties to even.
void KernelSoftLight4(unsigned char* base, const unsigned char* source, std::int64_t groups);
/// With p = source alpha / 255: b x p + a x (1 - p), in single precision, truncated.
void KernelAlphaTrunc4(unsigned char* base, const unsigned char* source, std::int64_t groups);

}  // namespace tintwerk

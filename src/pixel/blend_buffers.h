// Blends over whole buffers.
#pragma once

#include <cstdint>

#include "frame/cpu_level.h"

namespace tintwerk {

/// One form of an operation, on a run of pixels: `count` single pixels for a scalar form, `count`
/// groups of four or eight for a kernel. Buffers need no alignment.
using BlendForm = void (*)(unsigned char* base, const unsigned char* source, std::int64_t count);
using OpacityForm = void (*)(unsigned char* base, const unsigned char* source, std::int64_t count,
                             float opacity);

/// Blends `count` pixels of a source into a base of the same layout, in parallel. The eight-pixel
/// form serves if the processor's wide field is above 0, else the four-pixel form from SIMD level 5
/// up, and the scalar form what is left over; forms other than the scalar one may be null. A count
/// below 1 does nothing.
///
/// The kernels round ties to even where the scalar forms add 0.5 and truncate.
void BlendBuffers(unsigned char* base, const unsigned char* source, int count, BlendForm scalar,
                  BlendForm four, BlendForm eight, const CpuLevelRecord& level = CpuLevel());
void BlendBuffersOpacity(unsigned char* base, const unsigned char* source, int count, float opacity,
                         OpacityForm scalar, OpacityForm four, OpacityForm eight,
                         const CpuLevelRecord& level = CpuLevel());

/// Mixes by the source's alpha / 255 and truncates. Four pixels at once from SIMD level 2 up.
void BlendBuffersAlphaTrunc(unsigned char* base, const unsigned char* source, int count,
                            const CpuLevelRecord& level = CpuLevel());

// The operations that effects run over buffers.
void BlendBuffersHueSat(unsigned char* base, const unsigned char* source, int count);
void BlendBuffersAlphaOver(unsigned char* base, const unsigned char* source, int count);
void BlendBuffersSoftLight(unsigned char* base, const unsigned char* source, int count,
                           const CpuLevelRecord& level = CpuLevel());
void BlendBuffersScreen(unsigned char* base, const unsigned char* source, int count,
                        const CpuLevelRecord& level = CpuLevel());
void BlendBuffersColorHSB(unsigned char* base, const unsigned char* source, int count,
                          float opacity);
void BlendBuffersFixedTint(unsigned char* base, const unsigned char* source, int count,
                           float opacity);

}  // namespace tintwerk

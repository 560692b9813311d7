// The processor level by which the blend drivers choose their kernels.
#pragma once

namespace tintwerk {

/// What the drivers ask about the processor.
struct CpuLevelRecord {
  int wide;  ///< always 0: no wide-vector route is ever taken
  int simd;  ///< 0 none, 1 SSE, 2 SSE2, 3 SSE3, 4 SSSE3, 5 SSE4.1, 6 SSE4.2
};

/// The record of this machine, found out on first use; safe against concurrent first callers.
/// Processors of other families count as level 6: the kernels run on all of them, and give the
/// pixels of any x86 of today, from which the routes without kernels differ in the rounding.
const CpuLevelRecord& CpuLevel();

/// The level that CPUID leaf 1 tells: the first missing flag ends the count.
int SimdLevel(unsigned ecx, unsigned edx);

}  // namespace tintwerk

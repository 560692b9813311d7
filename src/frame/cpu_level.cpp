#include "frame/cpu_level.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#define TINTWERK_HAS_CPUID 1
#endif

namespace tintwerk {

int SimdLevel(unsigned ecx, unsigned edx) {
  const unsigned flags[] = {edx >> 25, edx >> 26, ecx, ecx >> 9, ecx >> 19, ecx >> 20};
  int level = 0;
  for (unsigned flag : flags) {
    if ((flag & 1) == 0) break;
    ++level;
  }
  return level;
}

const CpuLevelRecord& CpuLevel() {
  static const CpuLevelRecord record = [] {
#ifdef TINTWERK_HAS_CPUID
    int simd = 0;
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    if (__get_cpuid(1, &eax, &ebx, &ecx, &edx)) simd = SimdLevel(ecx, edx);
#else
    const int simd = 6;
#endif
    return CpuLevelRecord{0, simd};
  }();
  return record;
}

}  // namespace tintwerk

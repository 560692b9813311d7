#include "frame/random.h"

#include <cstdint>

namespace tintwerk {
namespace {
thread_local std::uint32_t state = 1;
}

void SeedRandom(unsigned seed) {
  state = seed;
}

int Random() {
  // A linear congruential generator modulo 2^32; its upper bits are the ones with a long period.
  state = state * 214013u + 2531011u;
  return static_cast<int>(state >> 16) & kRandomMax;
}

}  // namespace tintwerk

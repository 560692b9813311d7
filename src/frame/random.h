// The 15-bit random numbers of the effects that draw them.
#pragma once

namespace tintwerk {

/// Largest number that Random gives; formulas divide by it, so it is part of their results.
inline constexpr int kRandomMax = 32767;

/// Restarts the calling thread's sequence. Every thread starts as after SeedRandom(1).
void SeedRandom(unsigned seed);

/// The next number of the calling thread's sequence, 0..kRandomMax. The platform's `rand` has other
/// ranges and states.
int Random();

}  // namespace tintwerk

// How much memory an operation takes from the heap.
#pragma once

#include <cstdint>

namespace bench {

/// Bytes that are allocated now, by whatever part of the program, other libraries included.
std::int64_t HeapBytes();
/// The most that were since the last call of RestartHeapPeak.
std::int64_t HeapPeak();
void RestartHeapPeak();

/// The most bytes that a call held at one time beyond what was there before; what it hands over to
/// its caller counts.
template <class Run>
std::int64_t ExtraBytes(const Run& run) {
  RestartHeapPeak();
  const std::int64_t before = HeapBytes();
  run();
  return HeapPeak() - before;
}

}  // namespace bench

// The parallel loops.
#pragma once

#include <cstdint>

namespace tintwerk {

/// Runs body(i) for every i in 0..count - 1 and returns when all are done. Each thread of the
/// OpenMP runtime gets one contiguous chunk, so neighbours stay in one cache. A count below 1 does
/// nothing.
///
/// An iteration writes only what belongs to its own pixel, row or column, so results do not depend
/// on the number of threads; it must not throw and must not call the host.
template <class Body>
void ParallelFor(std::int64_t count, const Body& body) {
#pragma omp parallel
  {
    const Body own(body);
#pragma omp for schedule(static) nowait
    for (std::int64_t i = 0; i < count; ++i) own(i);
  }
}

/// The same for a few tasks of unequal size: each thread takes the next one when it is free, so the
/// large ones had better come first.
template <class Body>
void ParallelTasks(std::int64_t count, const Body& body) {
#pragma omp parallel for schedule(dynamic)
  for (std::int64_t i = 0; i < count; ++i) body(i);
}

}  // namespace tintwerk

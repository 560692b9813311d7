// Runs checks on every instruction set and with several threads.
#pragma once

#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <omp.h>

namespace tintwerk::test {

/// Calls check() under every instruction set of this processor, with one thread and with three.
template <class Check>
void OnEveryMachine(const Check& check) {
  const int before = omp_get_max_threads();
  for (std::int64_t targets = hwy::SupportedTargets(); targets != 0; targets &= targets - 1) {
    hwy::SetSupportedTargetsForTest(targets & -targets);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    for (const int threads : {1, 3}) {
      SCOPED_TRACE(testing::Message() << hwy::TargetName(targets & -targets) << ", " << threads);
      omp_set_num_threads(threads);
      check();
    }
    hwy::SetSupportedTargetsForTest(0);
  }
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  omp_set_num_threads(before);
}

}  // namespace tintwerk::test

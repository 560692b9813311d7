// What fuzzers draw from their input.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>

#include "tintwerk/progress.h"

namespace tintwerk::fuzz {

using Input = FuzzedDataProvider;

inline void Check(bool condition) {
  if (!condition) std::abort();
}

inline int AnyInt(Input& input) {
  switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
      return input.PickValueInArray(
          {0, 1, -1, INT_MIN, INT_MAX, INT_MIN + 1, 255, 256, -256, 65536});
    case 1:
      return input.ConsumeIntegral<int>();
    default:
      return input.ConsumeIntegralInRange(-300, 300);
  }
}

inline double AnyReal(Input& input) {
  switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
      return input.PickValueInArray({0.0, -0.0, 1.0, -1.0, std::numeric_limits<double>::infinity(),
                                     -std::numeric_limits<double>::infinity(),
                                     std::numeric_limits<double>::quiet_NaN(), double{FLT_MAX},
                                     -double{FLT_MAX}, double{FLT_MIN}, 1e-30, 1e9, -1e9});
    case 1:
      return input.ConsumeFloatingPoint<float>();
    default:
      return input.ConsumeFloatingPointInRange(-400.0, 400.0);
  }
}

/// Bytes in a heap block of just their number, so that one beyond is seen.
class Block {
 public:
  Block(Input& input, std::int64_t size)
      : size_(size), bytes_(new unsigned char[static_cast<std::size_t>(size)]) {
    // A short input is drawn out over the block: every byte hangs on it, and no two rows are alike.
    unsigned state = input.ConsumeIntegral<unsigned>();
    const bool even = input.ConsumeBool();
    for (std::int64_t i = 0; i < size; ++i) {
      state = state * 1664525 + 1013904223;
      bytes_[i] = static_cast<unsigned char>(even ? state >> 31 : state >> 24);
    }
  }
  unsigned char* Bytes() const { return bytes_.get(); }
  std::int64_t Size() const { return size_; }

 private:
  std::int64_t size_;
  std::unique_ptr<unsigned char[]> bytes_;
};

/// The sides of an image: mostly small ones, also none and negative ones.
inline int AnySide(Input& input) {
  return input.ConsumeIntegralInRange(0, 15) == 0 ? input.PickValueInArray({0, -1, INT_MIN})
                                                  : input.ConsumeIntegralInRange(0, 64);
}

/// A host that stops after a number of questions.
class Host final : public CObjProgress {
 public:
  explicit Host(Input& input) : left_(input.ConsumeIntegralInRange(-1, 200)) {}
  void ReportPosition(float position) override { Check(!std::isnan(position)); }
  int KeepGoing() override {
    if (left_ > 0) --left_;
    return left_ != 0;
  }

 private:
  int left_;
};

}  // namespace tintwerk::fuzz

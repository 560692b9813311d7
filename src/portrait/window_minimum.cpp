#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "portrait/window_minimum.cpp"
#include "portrait/window_minimum.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::CappedTag<std::uint8_t, 64>;
using Byte = hn::CappedTag<std::uint8_t, 1>;

// out[i] = the least of line[i] to line[i + window - 1]. Overwrites the line: windows are doubled
// until two of them cover the one that is wanted.
void MinAlong(unsigned char* line, std::size_t count, std::size_t window, unsigned char* out) {
  const auto least = [](const unsigned char* a, const unsigned char* b, std::size_t n,
                        unsigned char* to) HWY_ATTR {
    std::size_t i = 0;
    for (; i + hn::Lanes(Bytes()) <= n; i += hn::Lanes(Bytes()))
      hn::StoreU(hn::Min(hn::LoadU(Bytes(), a + i), hn::LoadU(Bytes(), b + i)), Bytes(), to + i);
    for (; i < n; ++i)
      hn::StoreU(hn::Min(hn::LoadU(Byte(), a + i), hn::LoadU(Byte(), b + i)), Byte(), to + i);
  };
  std::size_t have = 1;
  for (; 2 * have < window; have *= 2) least(line, line + have, count + window - 2 * have, line);
  least(line, line + window - have, count, out);
}

// out[i] = the least of rows[0][i] to rows[n - 1][i].
void MinAcross(const unsigned char* const* rows, std::size_t n, std::size_t count,
               unsigned char* out) {
  const auto step = [=](auto lanes, std::size_t i) HWY_ATTR {
    auto least = hn::LoadU(lanes, rows[0] + i);
    for (std::size_t k = 1; k < n; ++k) least = hn::Min(least, hn::LoadU(lanes, rows[k] + i));
    hn::StoreU(least, lanes, out + i);
  };
  std::size_t i = 0;
  for (; i + hn::Lanes(Bytes()) <= count; i += hn::Lanes(Bytes())) step(Bytes(), i);
  for (; i < count; ++i) step(Byte(), i);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "frame/material.h"
#include "frame/parallel.h"

namespace tintwerk {
namespace {

HWY_EXPORT(MinAlong);
HWY_EXPORT(MinAcross);

// A band of rows, which is worked from the top down in place. Rows come into it as the minima along
// them.
class Band {
 public:
  Band(unsigned char* plane, int width, int height, int radius, int from, int to)
      : plane_(plane),
        width_(width),
        radius_(radius),
        from_(from),
        to_(to),
        first_(std::max(from - radius, 0)),
        last_(std::min<std::int64_t>(std::int64_t{to} + radius, height) - 1),
        kept_(static_cast<int>(std::min<std::int64_t>(2 * std::int64_t{radius} + 1, height))),
        line_(std::size_t(width) + 2 * std::size_t(radius)),
        ring_(std::size_t(width) * kept_),
        below_(std::size_t(width) * (last_ + 1 - to)),
        window_(kept_) {}

  // Takes in what belongs to others.
  void ReadNeighbours() {
    for (int y = first_; y < from_; ++y) Load(y, Kept(y));
    for (int y = to_; y <= last_; ++y) Load(y, Below(y));
  }

  void Run() {
    for (int y = from_, next = from_; y < to_; ++y) {
      const int top = std::max(y - radius_, 0);
      const int bottom = static_cast<int>(std::min<std::int64_t>(std::int64_t{y} + radius_, last_));
      for (; next <= bottom; ++next)
        if (next < to_)
          Load(next, Kept(next));
        else
          std::memcpy(Kept(next), Below(next), width_);
      for (int i = top; i <= bottom; ++i) window_[i - top] = Kept(i);
      HWY_DYNAMIC_DISPATCH(MinAcross)(window_.data(), bottom - top + 1, width_, Row(y));
    }
  }

 private:
  unsigned char* Row(int y) { return plane_ + std::size_t(width_) * y; }
  unsigned char* Kept(int y) { return ring_.data() + std::size_t(width_) * (y % kept_); }
  unsigned char* Below(int y) { return below_.data() + std::size_t(width_) * (y - to_); }

  void Load(int y, unsigned char* out) {
    const std::size_t margin = radius_;
    std::memset(line_.data(), 255, margin);
    std::memcpy(line_.data() + margin, Row(y), width_);
    std::memset(line_.data() + margin + width_, 255, margin);
    HWY_DYNAMIC_DISPATCH(MinAlong)(line_.data(), width_, 2 * margin + 1, out);
  }

  unsigned char* plane_;
  int width_, radius_;
  int from_, to_;
  int first_, last_;  // rows that are read
  int kept_;          // rows that the ring holds
  std::vector<unsigned char> line_, ring_, below_;
  std::vector<const unsigned char*> window_;
};

}  // namespace

bool WindowMinimum(unsigned char* plane, int width, int height, int radius) try {
  const auto count = PixelCount(width, height);
  if (!plane || !count) return false;
  if (*count == 0 || radius < 1) return true;
  radius = std::min(radius, std::max(width, height) - 1);
  const int workers = std::min(height, omp_get_max_threads());
  std::vector<Band> bands;
  bands.reserve(workers);
  for (std::int64_t worker = 0; worker < workers; ++worker)
    bands.emplace_back(plane, width, height, radius, static_cast<int>(height * worker / workers),
                       static_cast<int>(height * (worker + 1) / workers));
  ParallelFor(workers, [&](std::int64_t worker) { bands[worker].ReadNeighbours(); });
  ParallelFor(workers, [&](std::int64_t worker) { bands[worker].Run(); });
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace tintwerk
#endif

// The guided filter (He, Sun and Tang) of a plane by itself, in fixed point.
//
// Its box sums are differences of an integral image between four corners. The rows of the integral
// image that bound the windows of a row are never stored: only their difference is, and moves down
// with the windows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "portrait/guided_filter.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

#ifndef TINTWERK_GUIDED_FILTER_TYPES
#define TINTWERK_GUIDED_FILTER_TYPES
namespace tintwerk {
namespace {

/// The windows of a row's samples, for two quantities.
struct WindowRow {
  // By column, sums over all columns before it and the windows' rows. The window of sample x lies
  // between entries x and x + across.
  const std::int64_t* sums[2];
  std::int64_t across;
  // The part of a sample in the mean of its window is perColumn[x] x perRow.
  const double* perColumn;
  double perRow;
};

/// a and b of the line a x guide + b that fits a window: 16 bits of fraction, up to 1, and a byte.
using Line = std::uint32_t;
constexpr int kLineShift = 24;                // of b
constexpr std::uint32_t kLineMask = 0x1FFFF;  // of a

}  // namespace
}  // namespace tintwerk
#endif

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// Kernels work on a sample a lane. D is the tag of double precision.
template <class D>
using Ints = hn::Rebind<std::int32_t, D>;

// The means of windows, truncated.
template <class D>
HWY_INLINE hn::Vec<Ints<D>> GuideBoxMean(D d, const WindowRow& windows, int quantity,
                                         std::int64_t x) {
  const hn::RebindToUnsigned<D> words;
  const std::int64_t* const left = windows.sums[quantity] + x;
  const auto sum =
      hn::Sub(hn::LoadU(words, reinterpret_cast<const std::uint64_t*>(left) + windows.across),
              hn::LoadU(words, reinterpret_cast<const std::uint64_t*>(left)));
  // As the low bits of 2^52 + sum in double precision, from which all but sum + 1/2 is taken away.
  // The half stays far from the next whole number, and the product's error is far less than it.
  const auto real = hn::Sub(hn::BitCast(d, hn::Or(sum, hn::Set(words, 0x4330000000000000))),
                            hn::Set(d, 4503599627370495.5));
  const auto share = hn::Mul(hn::LoadU(d, windows.perColumn + x), hn::Set(d, windows.perRow));
  return hn::DemoteTo(Ints<D>(), hn::Mul(real, share));
}

// Runs step(tag, x) until 0..count - 1 are done.
template <class Step>
HWY_INLINE void ForEachVector(std::int64_t count, const Step& step) {
  const hn::CappedTag<double, 8> many;
  const hn::CappedTag<double, 1> one;
  const auto lanes = static_cast<std::int64_t>(hn::Lanes(many));
  std::int64_t x = 0;
  for (; x + lanes <= count; x += lanes) step(many, x);
  for (; x < count; ++x) step(one, x);
}

// The lines of a row from the windows of its samples and their squares.
void FitLines(const WindowRow& windows, std::int64_t width, int epsilon, Line* lines) {
  ForEachVector(width, [&](auto d, std::int64_t x) HWY_ATTR {
    const Ints<decltype(d)> ints;
    const hn::RebindToFloat<decltype(ints)> reals;
    const auto mean = GuideBoxMean(d, windows, 0, x), squares = GuideBoxMean(d, windows, 1, x);
    const auto variance = hn::Sub(squares, hn::Mul(mean, mean));
    const auto sum = hn::ConvertTo(reals, hn::Add(variance, hn::Set(ints, epsilon)));
    // At least 1, but for a flat window without epsilon.
    const auto share = hn::Div(hn::ConvertTo(reals, variance), hn::Max(sum, hn::Set(reals, 1.0f)));
    const auto a = hn::ConvertTo(ints, hn::Mul(share, hn::Set(reals, 65536.0f)));
    const auto b = hn::ShiftRight<16>(hn::Mul(mean, hn::Sub(hn::Set(ints, 65536), a)));
    const auto line = hn::Or(a, hn::ShiftLeft<kLineShift>(b));
    hn::StoreU(line, ints, reinterpret_cast<std::int32_t*>(lines) + x);
  });
}

// Sends the samples of a row through the means of the lines of their windows.
void ApplyLines(const WindowRow& windows, std::int64_t width, unsigned char* samples) {
  ForEachVector(width, [&](auto d, std::int64_t x) HWY_ATTR {
    const Ints<decltype(d)> ints;
    const hn::Rebind<std::uint8_t, decltype(d)> bytes;
    const auto a = GuideBoxMean(d, windows, 0, x), b = GuideBoxMean(d, windows, 1, x);
    const auto guide = hn::PromoteTo(ints, hn::LoadU(bytes, samples + x));
    const auto result = hn::Add(hn::ShiftRight<16>(hn::Mul(guide, a)), b);
    hn::StoreU(hn::U8FromU32(hn::BitCast(hn::RebindToUnsigned<decltype(ints)>(), result)), bytes,
               samples + x);
  });
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <algorithm>
#include <cstring>

#include "frame/image.h"
#include "frame/material.h"
#include "frame/parallel.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

HWY_EXPORT(FitLines);
HWY_EXPORT(ApplyLines);

// The quantities of which box sums are taken.
std::int64_t First(unsigned char sample) {
  return sample;
}
std::int64_t Second(unsigned char sample) {
  return sample * sample;
}
std::int64_t First(Line line) {
  return line & kLineMask;
}
std::int64_t Second(Line line) {
  return line >> kLineShift;
}

/// Moves sums down by a row: adds the running sums of a row that enters the windows less one that
/// leaves them.
template <class Cell>
void GuideIntegral(const Cell* entering, const Cell* leaving, std::int64_t width,
                   std::int64_t* const sums[2]) {
  std::int64_t first = 0, second = 0;
  for (std::int64_t x = 0; x < width; ++x) {
    first += First(entering[x]) - First(leaving[x]);
    second += Second(entering[x]) - Second(leaving[x]);
    sums[0][x] += first;
    sums[1][x] += second;
  }
}

/// Windows over a plane, in bands of rows that are worked side by side, and memory for them.
class Windows {
 public:
  Windows(int width, int height, int radius)
      : width_(width),
        height_(height),
        reachX_(std::min(radius, width)),
        reachY_(std::min(radius, height)),
        bands_(std::min(omp_get_max_threads(), height)),
        entries_(width + 1 + 2 * reachX_),
        memory_(AllocatePixels(8 * (2 * entries_ * bands_ + 2 * width_))) {
    if (!memory_) return;
    perColumn_ = reinterpret_cast<double*>(memory_.get());
    sums_ = reinterpret_cast<std::int64_t*>(perColumn_ + 2 * width_);
    std::memset(perColumn_ + width_, 0, 8 * width_);
    for (std::int64_t x = 0; x < width_; ++x) perColumn_[x] = 1.0 / Extent(x, reachX_, width_);
  }

  bool IsValid() const { return memory_ != nullptr; }

  /// Runs row(y, windows) for every row, with the sums of what cells hold.
  template <class Cell, class Row>
  void ForEachRow(const Cell* cells, const Row& row) const {
    ParallelFor(bands_, [&](std::int64_t band) {
      std::int64_t* const memory = sums_ + 2 * entries_ * band;
      std::memset(memory, 0, 8 * 2 * entries_);
      // Before the first column nothing is summed up, behind the last one everything.
      std::int64_t* const sums[] = {memory + reachX_ + 1, memory + entries_ + reachX_ + 1};
      const auto* const nothing = reinterpret_cast<const Cell*>(perColumn_ + width_);
      const auto move = [&](std::int64_t entering, std::int64_t leaving) {
        GuideIntegral(entering < height_ ? cells + width_ * entering : nothing,
                      leaving >= 0 ? cells + width_ * leaving : nothing, width_, sums);
      };
      const std::int64_t top = height_ * band / bands_, bottom = height_ * (band + 1) / bands_;
      for (std::int64_t y = std::max<std::int64_t>(top - reachY_, 0); y < top + reachY_; ++y)
        if (y < height_) move(y, -1);
      for (std::int64_t y = top; y < bottom; ++y) {
        move(y + reachY_, y == top ? -1 : y - reachY_ - 1);
        for (std::int64_t* const sum : sums) std::fill_n(sum + width_, reachX_, sum[width_ - 1]);
        row(y, WindowRow{{memory, memory + entries_},
                         2 * reachX_ + 1,
                         perColumn_,
                         1.0 / Extent(y, reachY_, height_)});
      }
    });
  }

 private:
  /// Samples of a window along an axis.
  static std::int64_t Extent(std::int64_t at, std::int64_t reach, std::int64_t size) {
    return std::min(at + reach + 1, size) - std::max<std::int64_t>(at - reach, 0);
  }

  std::int64_t width_, height_, reachX_, reachY_, bands_;
  std::int64_t entries_;  // of the sums of a quantity
  PixelMemory memory_;
  double* perColumn_ = nullptr;  // then a row of cells that are 0
  std::int64_t* sums_ = nullptr;
};

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

void SFDSP::GuideFilter(unsigned char* plane, int width, int height, int radius, int epsilon) {
  const auto count = PixelCount(width, height);
  if (!plane || !count || *count == 0 || radius < 1) return;
  const Windows windows(width, height, radius);
  const PixelMemory memory = AllocatePixels(sizeof(Line) * std::size_t(*count));
  if (!windows.IsValid() || !memory) return;
  auto* const lines = reinterpret_cast<Line*>(memory.get());

  // From here on a is 0 whatever the variance is, and their sum is still an int.
  const int regular = std::clamp(epsilon, 0, 0x7FFF0000);
  windows.ForEachRow(plane, [=](std::int64_t y, const WindowRow& row) {
    HWY_DYNAMIC_DISPATCH(FitLines)(row, width, regular, lines + std::int64_t{width} * y);
  });
  windows.ForEachRow(lines, [=](std::int64_t y, const WindowRow& row) {
    HWY_DYNAMIC_DISPATCH(ApplyLines)(row, width, plane + std::int64_t{width} * y);
  });
}
#endif

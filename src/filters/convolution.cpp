// Convolution with a square kernel of integers.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/convolution.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#ifndef TINTWERK_CONVOLUTION_TYPES
#define TINTWERK_CONVOLUTION_TYPES
namespace tintwerk {
namespace {

// A weight of the kernel that is not 0, and how far its sample lies from the pixel's own, in bytes.
struct Tap {
  std::ptrdiff_t offset;
  std::int32_t weight;
};

// sum * inverse + offset, where all taps are in reach.
struct Taps {
  const Tap* first;
  std::size_t count;
  double inverse;  // of the divisor
  std::int32_t offset;
};

constexpr int kBlock = 16;  // pixels that are worked at once

}  // namespace
}  // namespace tintwerk
#endif

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// The weighted sums of a block's samples, alpha included.
template <class Sum>
HWY_INLINE void SumBlock(const unsigned char* in, const Taps& taps, Sum* sums) {
  const hn::CappedTag<Sum, kBlock> lanes;  // four vectors divide a block evenly
  const hn::Rebind<std::uint8_t, decltype(lanes)> bytes;
  const std::size_t n = hn::Lanes(lanes);
  for (std::size_t from = 0; from < 4 * kBlock; from += 4 * n) {
    auto s0 = hn::Zero(lanes), s1 = s0, s2 = s0, s3 = s0;
    for (const Tap *tap = taps.first, *end = tap + taps.count; tap != end; ++tap) {
      const unsigned char* const at = in + from + tap->offset;
      const auto w = hn::Set(lanes, static_cast<Sum>(tap->weight));
      s0 = hn::Add(s0, hn::Mul(hn::PromoteTo(lanes, hn::LoadU(bytes, at)), w));
      s1 = hn::Add(s1, hn::Mul(hn::PromoteTo(lanes, hn::LoadU(bytes, at + n)), w));
      s2 = hn::Add(s2, hn::Mul(hn::PromoteTo(lanes, hn::LoadU(bytes, at + 2 * n)), w));
      s3 = hn::Add(s3, hn::Mul(hn::PromoteTo(lanes, hn::LoadU(bytes, at + 3 * n)), w));
    }
    hn::StoreU(s0, lanes, sums + from);
    hn::StoreU(s1, lanes, sums + from + n);
    hn::StoreU(s2, lanes, sums + from + 2 * n);
    hn::StoreU(s3, lanes, sums + from + 3 * n);
  }
}

template <class Lanes>
HWY_INLINE auto LoadIntegers(Lanes lanes, const std::int32_t* sums) {
  return hn::LoadU(lanes, sums);
}
template <class Lanes>
HWY_INLINE auto LoadIntegers(Lanes lanes, const std::int16_t* sums) {
  return hn::PromoteTo(lanes, hn::LoadU(hn::Rebind<std::int16_t, Lanes>(), sums));
}

// Divides, with truncation: one half more and the reciprocal give the exact quotient, as long as
// the sum has fewer bits than Real by 2, since a quotient with a half is at least half a divisor's
// part away from any integer.
template <class Sum, class Real>
HWY_INLINE void StoreBlock(const Sum* sums, const Taps& taps, unsigned char* out) {
  const hn::CappedTag<Real, 16> reals;
  const hn::Rebind<std::int32_t, decltype(reals)> integers;
  const hn::Rebind<std::uint8_t, decltype(reals)> bytes;
  constexpr std::uint8_t kAlpha[] = {0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255};
  const auto half = hn::Set(reals, static_cast<Real>(0.5));
  const auto inverse = hn::Set(reals, static_cast<Real>(taps.inverse));
  const auto offset = hn::Set(integers, taps.offset);
  for (std::size_t i = 0; i < 4 * kBlock; i += hn::Lanes(reals)) {
    const auto sum = LoadIntegers(integers, sums + i);
    auto value = hn::Zero(integers);
    if constexpr (sizeof(Real) == 4) {
      const auto s = hn::ConvertTo(reals, sum);
      value = hn::ConvertTo(integers, hn::Mul(hn::Add(s, hn::CopySign(half, s)), inverse));
    } else {
      const auto s = hn::PromoteTo(reals, sum);
      value = hn::DemoteTo(integers, hn::Mul(hn::Add(s, hn::CopySign(half, s)), inverse));
    }
    // Demotion takes what exceeds 16 bits for negative.
    const auto limited = hn::Min(hn::Add(value, offset), hn::Set(integers, 255));
    const auto result = hn::DemoteTo(bytes, limited);
    const auto alpha = hn::LoadU(bytes, kAlpha + i % 4);
    hn::StoreU(hn::IfVecThenElse(alpha, hn::LoadU(bytes, out + i), result), bytes, out + i);
  }
}

// `pixels` pixels of a row, at least kBlock of them; the last block laps over the one before.
template <class Sum, class Real>
HWY_INLINE void ConvolveRun(const unsigned char* in, int pixels, const Taps& taps,
                            unsigned char* out) {
  HWY_ALIGN Sum sums[4 * kBlock];
  for (int x = 0; x < pixels; x += kBlock) {
    const std::size_t at = std::size_t{4} * std::min(x, pixels - kBlock);
    SumBlock(in + at, taps, sums);
    StoreBlock<Sum, Real>(sums, taps, out + at);
  }
}

void ConvolveSmall(const unsigned char* in, int pixels, const Taps& taps, unsigned char* out) {
  ConvolveRun<std::int16_t, float>(in, pixels, taps, out);
}
void ConvolveMedium(const unsigned char* in, int pixels, const Taps& taps, unsigned char* out) {
  ConvolveRun<std::int32_t, float>(in, pixels, taps, out);
}
void ConvolveLarge(const unsigned char* in, int pixels, const Taps& taps, unsigned char* out) {
  ConvolveRun<std::int32_t, double>(in, pixels, taps, out);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <cstdlib>
#include <limits>
#include <new>
#include <vector>

#include "frame/image.h"
#include "frame/progress.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

HWY_EXPORT(ConvolveSmall);
HWY_EXPORT(ConvolveMedium);
HWY_EXPORT(ConvolveLarge);

// Sums and products wrap round at 32 bits.
std::int32_t Wrap(std::int64_t value) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

struct Convolution {
  const unsigned char* in;
  int width;
  int height;
  const std::int32_t* kernel;
  std::int64_t size;
  std::int32_t divisor;
  std::int32_t offset;
  std::int32_t total;  // of all weights

  // Any pixel, whatever taps are in reach.
  void Pixel(std::int64_t x, std::int64_t y, unsigned char* out) const {
    const std::int64_t half = size / 2;
    std::uint32_t sums[3] = {}, reached = 0;
    const std::int64_t left = std::max<std::int64_t>(half - x, 0);
    const std::int64_t right = std::min(size, width + half - x);
    for (std::int64_t j = std::max<std::int64_t>(half - y, 0);
         j < std::min(size, height + half - y); ++j) {
      const std::int32_t* const weights = kernel + size * j;
      const unsigned char* const row = in + 4 * (width * (y + j - half) + x - half);
      for (std::int64_t i = left; i < right; ++i) {
        const auto weight = static_cast<std::uint32_t>(weights[i]);
        for (int c = 0; c < 3; ++c) sums[c] += row[4 * i + c] * weight;
        reached += weight;
      }
    }
    for (int c = 0; c < 3; ++c)
      out[c] = ClampToByte(
          Scaled(static_cast<std::int32_t>(sums[c]), static_cast<std::int32_t>(reached)));
  }

  std::int32_t Scaled(std::int32_t sum, std::int32_t reached) const {
    if (divisor == 0 || reached == 0) return Wrap(std::int64_t{sum} + offset);
    if (reached == total) return Wrap(std::int64_t{sum} / divisor + offset);
    const std::int64_t scaled = Wrap(std::int64_t{sum} * total);
    const std::int32_t by = Wrap(std::int64_t{reached} * divisor);
    return Wrap((by == 0 ? sum : scaled / by) + offset);  // 0: the product left 32 bits
  }
};

using Run = void (*)(const unsigned char*, int, const Taps&, unsigned char*);

// The narrowest lanes that hold what a kernel can sum up to; null if 32 bits may wrap round. A
// pointer from the dispatch itself might be the one that looks for the processor on each call.
Run RunFor(const std::int32_t* kernel, std::int64_t size) {
  std::int64_t largest = 0;
  for (std::int64_t i = 0; i < size * size; ++i) largest += 255 * std::abs(std::int64_t{kernel[i]});
  if (largest <= std::numeric_limits<std::int16_t>::max())
    return [](auto... row) { HWY_DYNAMIC_DISPATCH(ConvolveSmall)(row...); };
  if (largest < 1 << 21) return [](auto... row) { HWY_DYNAMIC_DISPATCH(ConvolveMedium)(row...); };
  if (largest <= std::numeric_limits<std::int32_t>::max())
    return [](auto... row) { HWY_DYNAMIC_DISPATCH(ConvolveLarge)(row...); };
  return nullptr;
}

}  // namespace

bool Convolve(unsigned char* pixels, int width, int height, const std::int32_t* kernel,
              std::int32_t size, std::int32_t divisor, std::int32_t offset, CObjProgress* progress,
              int progressLow, int progressHigh) try {
  if (!IsWorkable(pixels, width, height) || !kernel || size < 1) return false;
  const PixelMemory copy = CopyOf(pixels, *PixelCount(width, height));
  if (!copy) return false;

  Convolution convolution{copy.get(), width, height, kernel, size, divisor, offset, 0};
  for (std::int64_t i = 0; i < std::int64_t{size} * size; ++i)
    convolution.total = Wrap(std::int64_t{convolution.total} + kernel[i]);

  // Inside, all taps are in reach, and the division is the same for all pixels.
  const int before = size / 2, after = size - 1 - before;
  const int inside = width - std::min(size - 1, width);
  std::vector<Tap> taps;
  Run run = nullptr;
  if (inside >= kBlock && height >= size) {
    run = RunFor(kernel, size);
    for (int j = 0; j < size; ++j)
      for (int i = 0; i < size; ++i)
        if (const std::int32_t weight = kernel[std::int64_t{size} * j + i]; weight != 0)
          taps.push_back({4 * (std::ptrdiff_t{width} * (j - before) + i - before), weight});
  }
  const bool divides = divisor != 0 && convolution.total != 0;
  const Taps all{taps.data(), taps.size(), divides ? 1.0 / divisor : 1.0, offset};

  ForEachRow(progress, progressLow, progressHigh, height, [=](std::int64_t y) {
    unsigned char* const row = pixels + std::int64_t{4} * width * y;
    const bool fast = run && before <= y && y < height - after;
    for (int x = 0; x < (fast ? before : width); ++x)
      convolution.Pixel(x, y, row + std::int64_t{4} * x);
    if (!fast) return;
    const std::size_t at = std::size_t{4} * before;
    run(convolution.in + std::int64_t{4} * width * y + at, inside, all, row + at);
    for (int x = before + inside; x < width; ++x)
      convolution.Pixel(x, y, row + std::int64_t{4} * x);
  });
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace tintwerk

void CPixelProcess::Filter(unsigned char* pixels, int width, int height, const std::int32_t* kernel,
                           std::int32_t size, std::int32_t divisor, std::int32_t offset,
                           CObjProgress* progress, int progressLow, int progressHigh) {
  tintwerk::Convolve(pixels, width, height, kernel, size, divisor, offset, progress, progressLow,
                     progressHigh);
}
#endif

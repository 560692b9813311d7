// Sharpening by the difference to a blurred image.
//
// UsmSharp's blur is a Gaussian whose taps are whole numbers, run along the rows and then the
// columns, each pass truncated to bytes. Where the window leaves the line, its taps are left out of
// the divisor too. A pass is a weighted mean of rows of samples: for the columns these are rows of
// the image, for the rows one row that is shifted by a pixel each time. The fast way sums products
// in 16 bits, adds them up in 32 bits before they overflow, and divides by a reciprocal that is
// exact for sums below 2^21; a kernel with larger sums takes the plain way. SFDSP's Sharp has its
// blurred image from the caller and mixes in fixed point.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/unsharp_mask.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

#ifndef TINTWERK_UNSHARP_MASK_TYPES
#define TINTWERK_UNSHARP_MASK_TYPES
namespace tintwerk {
namespace {

// Two rows of samples under one weight.
struct Step {
  const std::uint16_t* a;
  const std::uint16_t* b;
  std::uint16_t weight;
  bool full;  // 16 bits hold the sum up to here, but not with the next step
};

}  // namespace
}  // namespace tintwerk
#endif

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// Samples always come in whole pixels, so that vectors of four are enough for what is left over.

constexpr std::uint8_t kAlphaBytes[] = {0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255};

template <class Lanes>
HWY_INLINE auto LoadReal(Lanes lanes, const unsigned char* at) {
  const hn::Rebind<std::int32_t, Lanes> integers;
  const hn::Rebind<std::uint8_t, Lanes> bytes;
  return hn::ConvertTo(lanes, hn::PromoteTo(integers, hn::LoadU(bytes, at)));
}

// Stores integers as bytes, limited to 0..255, with the alpha that is there.
template <class Integers>
HWY_INLINE void StoreColours(Integers value, unsigned char* out) {
  const hn::Rebind<std::uint8_t, hn::DFromV<Integers>> bytes;
  const auto alpha = hn::LoadU(bytes, kAlphaBytes);
  // Demotion takes what exceeds 16 bits for negative.
  const auto limited = hn::Min(value, hn::Set(hn::DFromV<Integers>(), 255));
  const auto colours = hn::DemoteTo(bytes, limited);
  hn::StoreU(hn::IfVecThenElse(alpha, hn::LoadU(bytes, out), colours), bytes, out);
}

// A sum and a half times the reciprocal of the weights' sum, truncated: the exact quotient as long as
// the sum stays below 2^21, fused or not.
template <class Sum, class Out>
HWY_INLINE void StoreMean(Sum sum, float inverse, Out* out) {
  const hn::RebindToSigned<hn::DFromV<Sum>> integers;
  const hn::RebindToFloat<hn::DFromV<Sum>> reals;
  const hn::Rebind<Out, decltype(integers)> results;
  const auto real = hn::ConvertTo(reals, hn::BitCast(integers, sum));
  const auto mean = hn::MulAdd(real, hn::Set(reals, inverse), hn::Set(reals, 0.5f * inverse));
  hn::StoreU(hn::DemoteTo(results, hn::ConvertTo(integers, mean)), results, out);
}

// (a + b) * weight.
template <class Lanes>
HWY_INLINE auto Weighted(Lanes lanes, const Step& step, hn::Vec<Lanes> weight, std::size_t at) {
  return hn::Mul(hn::Add(hn::LoadU(lanes, step.a + at), hn::LoadU(lanes, step.b + at)), weight);
}

// Four full vectors of 16-bit sums, gathered in 32 bits before they overflow.
template <class Out>
HWY_INLINE void MeanBlock(const Step* steps, const Step* end, float inverse, std::size_t at,
                          Out* out) {
  const hn::CappedTag<std::uint16_t, 16> lanes;
  const hn::Half<decltype(lanes)> half;
  const hn::Rebind<std::uint32_t, decltype(half)> wide;
  const std::size_t n = hn::Lanes(lanes), h = n / 2;
  auto low0 = hn::Zero(wide), low1 = low0, low2 = low0, low3 = low0;
  auto high0 = low0, high1 = low0, high2 = low0, high3 = low0;
  while (steps != end) {
    auto s0 = hn::Zero(lanes), s1 = s0, s2 = s0, s3 = s0;
    do {
      const auto w = hn::Set(lanes, steps->weight);
      s0 = hn::Add(s0, Weighted(lanes, *steps, w, at));
      s1 = hn::Add(s1, Weighted(lanes, *steps, w, at + n));
      s2 = hn::Add(s2, Weighted(lanes, *steps, w, at + 2 * n));
      s3 = hn::Add(s3, Weighted(lanes, *steps, w, at + 3 * n));
    } while (!steps++->full);
    low0 = hn::Add(low0, hn::PromoteTo(wide, hn::LowerHalf(half, s0)));
    low1 = hn::Add(low1, hn::PromoteTo(wide, hn::LowerHalf(half, s1)));
    low2 = hn::Add(low2, hn::PromoteTo(wide, hn::LowerHalf(half, s2)));
    low3 = hn::Add(low3, hn::PromoteTo(wide, hn::LowerHalf(half, s3)));
    high0 = hn::Add(high0, hn::PromoteTo(wide, hn::UpperHalf(half, s0)));
    high1 = hn::Add(high1, hn::PromoteTo(wide, hn::UpperHalf(half, s1)));
    high2 = hn::Add(high2, hn::PromoteTo(wide, hn::UpperHalf(half, s2)));
    high3 = hn::Add(high3, hn::PromoteTo(wide, hn::UpperHalf(half, s3)));
  }
  out += at;
  StoreMean(low0, inverse, out);
  StoreMean(high0, inverse, out + h);
  StoreMean(low1, inverse, out + n);
  StoreMean(high1, inverse, out + n + h);
  StoreMean(low2, inverse, out + 2 * n);
  StoreMean(high2, inverse, out + 2 * n + h);
  StoreMean(low3, inverse, out + 3 * n);
  StoreMean(high3, inverse, out + 3 * n + h);
}

template <class Out>
HWY_INLINE void MeanPixel(const Step* steps, const Step* end, float inverse, std::size_t at,
                          Out* out) {
  const hn::FixedTag<std::uint16_t, 4> pixel;
  const hn::Rebind<std::uint32_t, decltype(pixel)> wide;
  auto sum = hn::Zero(wide);
  while (steps != end) {
    auto part = hn::Zero(pixel);
    do {
      part = hn::Add(part, Weighted(pixel, *steps, hn::Set(pixel, steps->weight), at));
    } while (!steps++->full);
    sum = hn::Add(sum, hn::PromoteTo(wide, part));
  }
  StoreMean(sum, inverse, out + at);
}

// out[i] = the sum of all steps at i, times `inverse`. The last step is a full one.
template <class Out>
HWY_INLINE void WeightedMean(const Step* steps, const Step* end, float inverse, std::size_t samples,
                             Out* out) {
  const std::size_t block = 4 * hn::Lanes(hn::CappedTag<std::uint16_t, 16>());
  std::size_t at = 0;
  for (; at + block <= samples; at += block) MeanBlock(steps, end, inverse, at, out);
  for (; at < samples; at += 4) MeanPixel(steps, end, inverse, at, out);
}
void WeightedMeanBytes(const Step* steps, const Step* end, float inverse, std::size_t samples,
                       unsigned char* out) {
  WeightedMean(steps, end, inverse, samples, out);
}
void WeightedMeanWords(const Step* steps, const Step* end, float inverse, std::size_t samples,
                       std::uint16_t* out) {
  WeightedMean(steps, end, inverse, samples, out);
}

void Widen(const unsigned char* in, std::size_t samples, std::uint16_t* out) {
  const hn::CappedTag<std::uint16_t, 16> lanes;
  const hn::FixedTag<std::uint16_t, 4> pixel;
  const auto widen = [=](auto words, std::size_t at) HWY_ATTR {
    const hn::Rebind<std::uint8_t, decltype(words)> bytes;
    hn::StoreU(hn::PromoteTo(words, hn::LoadU(bytes, in + at)), words, out + at);
  };
  std::size_t i = 0;
  for (; i + hn::Lanes(lanes) <= samples; i += hn::Lanes(lanes)) widen(lanes, i);
  for (; i < samples; i += 4) widen(pixel, i);
}

template <class Lanes>
HWY_INLINE void SharpenStep(Lanes lanes, unsigned char* pixels, const unsigned char* blurred,
                            float amount) {
  const hn::Rebind<std::int32_t, Lanes> integers;
  const auto v = hn::Sub(hn::Mul(LoadReal(lanes, pixels), hn::Set(lanes, amount + 1.0f)),
                         hn::Mul(LoadReal(lanes, blurred), hn::Set(lanes, amount)));
  // What no int holds has no value of its own and counts as 0.
  const auto held = hn::IfThenElseZero(hn::Lt(v, hn::Set(lanes, 2147483648.0f)), v);
  const auto limited = hn::Min(hn::Max(held, hn::Zero(lanes)), hn::Set(lanes, 255.0f));
  StoreColours(hn::ConvertTo(integers, limited), pixels);
}

void Sharpen(unsigned char* pixels, const unsigned char* blurred, std::size_t samples,
             float amount) {
  const hn::CappedTag<float, 16> lanes;
  const hn::FixedTag<float, 4> pixel;
  std::size_t i = 0;
  for (; i + hn::Lanes(lanes) <= samples; i += hn::Lanes(lanes))
    SharpenStep(lanes, pixels + i, blurred + i, amount);
  for (; i < samples; i += 4) SharpenStep(pixel, pixels + i, blurred + i, amount);
}

template <class Lanes>
HWY_INLINE void SharpenFixedStep(Lanes lanes, unsigned char* pixels, const unsigned char* blurred,
                                 std::int32_t own, std::int32_t other) {
  const hn::Rebind<std::uint8_t, Lanes> bytes;
  const auto p = hn::PromoteTo(lanes, hn::LoadU(bytes, pixels));
  const auto b = hn::PromoteTo(lanes, hn::LoadU(bytes, blurred));
  const auto v = hn::Sub(hn::Mul(p, hn::Set(lanes, own)), hn::Mul(b, hn::Set(lanes, other)));
  StoreColours(hn::ShiftRight<14>(v), pixels);
}

// (pixel x own - blurred x other) / 2^14, rounded down.
void SharpenFixed(unsigned char* pixels, const unsigned char* blurred, std::size_t samples,
                  std::int32_t own, std::int32_t other) {
  const hn::CappedTag<std::int32_t, 16> lanes;
  const hn::FixedTag<std::int32_t, 4> pixel;
  std::size_t i = 0;
  for (; i + hn::Lanes(lanes) <= samples; i += hn::Lanes(lanes))
    SharpenFixedStep(lanes, pixels + i, blurred + i, own, other);
  for (; i < samples; i += 4) SharpenFixedStep(pixel, pixels + i, blurred + i, own, other);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <vector>

#include "frame/image.h"
#include "frame/progress.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

HWY_EXPORT(WeightedMeanBytes);
HWY_EXPORT(WeightedMeanWords);
HWY_EXPORT(Widen);
HWY_EXPORT(Sharpen);
HWY_EXPORT(SharpenFixed);

constexpr int kMostTaps = 255;
constexpr float kLargestRadius = 50;

// A Gaussian of whole numbers, scaled so that its outermost taps are about 1.
struct UsmState {
  explicit UsmState(float radius) {
    if (Taps(radius) > kMostTaps) radius = kLargestRadius;
    if (Taps(radius) >= 3) Fill(radius);
    // A tiny radius makes a peak whose sums no int holds; it blurs nothing.
    if (std::int64_t{255} * kernelSum > std::numeric_limits<std::int32_t>::max() || kernelSum < 1)
      *this = UsmState();
  }

  int Half() const { return kernelSize / 2; }

  std::array<std::int32_t, kMostTaps> kernel = {1};
  std::int64_t kernelSum = 1;
  int kernelSize = 1;

 private:
  UsmState() = default;

  static int Taps(float radius) {
    return Truncate(std::min(radius * 5.0f + 1.0f + 0.5f, 1e6f)) | 1;
  }

  void Fill(float radius) {
    kernelSize = Taps(radius);
    const float spread = (radius + radius) * radius;
    const float peak = std::exp(static_cast<float>(Half() * Half()) / spread);
    kernel[Half()] = Truncate(peak + 0.5f);  // what no int holds turns negative
    kernelSum = kernel[Half()];
    for (int i = 1; i <= Half(); ++i) {
      const float tap = std::exp(-static_cast<float>(i * i) / spread) * peak + 0.5f;
      kernel[Half() - i] = kernel[Half() + i] = Truncate(tap);
      kernelSum += std::int64_t{2} * kernel[Half() + i];
    }
  }
};

// What the position i of a line of n samples is the mean of: the samples from `first` on, as many
// as `count`, under the kernel's taps from `tap` on.
struct Window {
  Window(const UsmState& state, int n, int i) : m(std::min(n / 2, state.Half())) {
    if (i < m) {
      count = std::min(n, m + i);
      tap = m - i;
    } else {
      first = std::max(i - m, 0);
      count = i < n - m ? 2 * m + 1 : n - first;
    }
    // In the middle it is the whole kernel that divides, even one that is longer than the line.
    if (m <= i && i < n - m) {
      divisor = state.kernelSum;
    } else {
      for (int k = 0; k < count; ++k) divisor += state.kernel[tap + k];
      divisor = std::max<std::int64_t>(divisor, 1);
    }
  }

  int m;
  int first = 0;
  int count;
  int tap = 0;
  std::int64_t divisor = 0;
};

struct Image {
  const unsigned char* in;
  unsigned char* out;
  int width;
  int height;
};

// Kernels whose sums are too large for the fast way: three taps with an enormous one between.
void BlurPlain(const Image& image, const UsmState& state, bool columns) {
  const int lines = columns ? image.width : image.height;
  const int n = columns ? image.height : image.width;
  const std::int64_t step = columns ? std::int64_t{4} * image.width : 4;
  const std::int64_t lineStep = columns ? 4 : std::int64_t{4} * image.width;
  ParallelFor(lines, [&](std::int64_t line) {
    for (int i = 0; i < n; ++i) {
      const Window window(state, n, i);
      for (int c = 0; c < 3; ++c) {
        const std::int64_t at = lineStep * line + c;
        std::int64_t sum = 0;
        for (int k = 0; k < window.count; ++k)
          sum +=
              std::int64_t{state.kernel[window.tap + k]} * image.in[at + step * (window.first + k)];
        image.out[at + step * i] = static_cast<unsigned char>(sum / window.divisor);
      }
    }
  });
}

bool HasFastSums(const UsmState& state) {
  return 255 * state.kernelSum < 1 << 21;
}

// A window's weighted mean in sums of 16 bits. Weights that are the same from both ends are taken
// together, and one that is too large in parts.
class Mean {
 public:
  // @param nothing a row of zeros
  Mean(const UsmState& state, const std::uint16_t* nothing) : nothing_(nothing) {
    // Each step ends a tap or 16 bits.
    steps_.reserve(state.kernelSize + state.kernelSum / (kRoom - 1) + 2);
  }
  Mean(Mean&&) = default;

  // @param row called as row(k) for the row of sample k
  template <class Row, class Out>
  void Run(const UsmState& state, const Window& window, const Row& row, std::size_t samples,
           Out* out) {
    steps_.clear();
    room_ = kRoom;
    const int first = window.first, last = first + window.count - 1;
    const std::int32_t* const taps = &state.kernel[window.tap];
    if (window.count == state.kernelSize) {
      for (int k = 0; k < state.Half(); ++k) Add(row(first + k), row(last - k), taps[k], 2);
      Add(row(first + state.Half()), nothing_, taps[state.Half()], 1);
    } else {
      for (int k = 0; k < window.count; ++k) Add(row(first + k), nothing_, taps[k], 1);
    }
    steps_.back().full = true;
    const Step* const steps = steps_.data();
    const Step* const end = steps + steps_.size();
    const float inverse = 1.0f / static_cast<float>(window.divisor);
    if constexpr (sizeof(Out) == 1)
      HWY_DYNAMIC_DISPATCH(WeightedMeanBytes)(steps, end, inverse, samples, out);
    else
      HWY_DYNAMIC_DISPATCH(WeightedMeanWords)(steps, end, inverse, samples, out);
  }

 private:
  static constexpr int kRoom = 65535 / 255;  // weights that 16 bits hold the sum of

  void Add(const std::uint16_t* a, const std::uint16_t* b, int weight, int rows) {
    while (weight > 0) {
      const int part = std::min(weight, room_ / rows);
      if (part == 0) {
        steps_.back().full = true;
        room_ = kRoom;
        continue;
      }
      steps_.push_back({a, b, static_cast<std::uint16_t>(part), false});
      room_ -= part * rows;
      weight -= part;
    }
  }

  const std::uint16_t* nothing_;
  std::vector<Step> steps_;
  int room_ = kRoom;
};

// The passes that a channel gets; only a stop leaves one out.
struct PassesOf {
  bool rows = true;
  bool columns = true;
};

// The fast way, a strip of columns of a band of rows at a time: a row goes through its pass when it
// enters the window of the columns. The window's rows lie 16 bits wide in a ring that stays in the
// cache, row y in slot y % kernelSize.
class BlurStrips {
 public:
  BlurStrips(const Image& image, const UsmState& state, PassesOf passes)
      : image_(image),
        state_(state),
        passes_(passes),
        half_(std::min(image.width / 2, state.Half())),
        width_(std::min(image.width,
                        std::max(kRing / 4 / state.kernelSize / kLeast * kLeast, kLeast))),
        strips_((image.width + width_ - 1) / width_),
        // Bands do the rows around their edges twice.
        bands_(std::clamp(image.height / (4 * state.kernelSize), 1, omp_get_max_threads())) {}

  void Run() const {
    const int tasks = strips_ * bands_, workers = std::min(tasks, omp_get_max_threads());
    std::vector<Worker> memory;
    for (int w = 0; w < workers; ++w) memory.emplace_back(*this);
    ParallelFor(workers, [&](std::int64_t w) {
      for (std::int64_t i = tasks * w / workers; i < tasks * (w + 1) / workers; ++i)
        BlurStrip(static_cast<int>(i % strips_), static_cast<int>(i / strips_), memory[w]);
    });
  }

 private:
  static constexpr int kRing = 128 << 10, kLeast = 128;  // samples, pixels

  struct Worker {
    explicit Worker(const BlurStrips& blur)
        : nothing(std::size_t{4} * blur.width_),
          line(std::size_t{4} * (blur.width_ + 2 * blur.half_)),
          ring(nothing.size() * blur.state_.kernelSize),
          mean(blur.state_, nothing.data()) {}
    Worker(Worker&&) = default;

    std::vector<std::uint16_t> nothing;  // zeros
    std::vector<std::uint16_t> line;     // a part of a row of the image, with margins
    std::vector<std::uint16_t> ring;
    Mean mean;
  };

  void BlurStrip(int strip, int band, Worker& own) const {
    const int left = width_ * strip, count = std::min(width_, image_.width - left);
    const int height = image_.height;
    const auto from = static_cast<int>(std::int64_t{height} * band / bands_);
    const auto to = static_cast<int>(std::int64_t{height} * (band + 1) / bands_);
    const std::size_t samples = std::size_t{4} * count, pitch = std::size_t{4} * image_.width;
    unsigned char* const out = image_.out + std::size_t{4} * left;
    if (!passes_.columns) {
      for (int y = from; y < to; ++y) BlurRow(y, left, count, own, out + pitch * y);
      return;
    }
    const auto slot = [&](int y) { return &own.ring[samples * (y % state_.kernelSize)]; };
    int ready = 0;  // rows before this one are in the ring or done with
    for (int y = from; y < to; ++y) {
      const Window window(state_, height, y);
      for (ready = std::max(ready, window.first); ready < window.first + window.count; ++ready) {
        BlurRow(ready, left, count, own, slot(ready));
      }
      own.mean.Run(state_, window, slot, samples, out + pitch * y);
    }
  }

  // The window of one position serves as many of its neighbours as have the same weights.
  template <class Out>
  void BlurRow(int y, int left, int count, Worker& own, Out* out) const {
    const int right = left + count, n = image_.width;
    const int from = std::max(left - half_, 0), to = std::min(right + half_, n);
    const unsigned char* const row = image_.in + std::size_t{4} * n * y;
    if (!passes_.rows) {
      std::copy_n(row + std::size_t{4} * left, std::size_t{4} * count, out);
      return;
    }
    HWY_DYNAMIC_DISPATCH(Widen)
    (row + std::size_t{4} * from, std::size_t{4} * (to - from), own.line.data());
    const auto blur = [&](int x, int pixels) {
      own.mean.Run(
          state_, Window(state_, n, x),
          [&](int k) { return &own.line[std::size_t{4} * (k - from)]; }, std::size_t{4} * pixels,
          out + std::size_t{4} * (x - left));
    };
    int x = left;
    for (; x < std::min(half_, right); ++x) blur(x, 1);
    if (const int end = std::min(n - half_, right); x < end) {
      blur(x, end - x);
      x = end;
    }
    for (; x < right; ++x) blur(x, 1);
  }

  const Image& image_;
  const UsmState& state_;
  const PassesOf passes_;
  const int half_;
  const int width_;
  const int strips_;
  const int bands_;
};

// @return false if allocation fails
bool Blur(const Image& image, const UsmState& state, PassesOf passes) {
  if (HasFastSums(state)) {
    BlurStrips(image, state, passes).Run();
    return true;
  }
  const std::size_t size = std::size_t{4} * image.width * image.height;
  const PixelMemory rows = AllocatePixels(size);
  if (!rows) return false;
  if (passes.rows)
    BlurPlain({image.in, rows.get(), image.width, image.height}, state, false);
  else
    std::copy_n(image.in, size, rows.get());
  if (passes.columns)
    BlurPlain({rows.get(), image.out, image.width, image.height}, state, true);
  else
    std::copy_n(rows.get(), size, image.out);
  return true;
}

// How many channels get a pass: the host is asked after each one whether to go on to the next.
int ChannelsDone(CObjProgress* progress, int position) {
  for (int c = 0; c < 3; ++c) {
    if (!KeepGoing(progress)) return c + 1;
    Report(progress, static_cast<float>(position));
  }
  return 3;
}

// Rows, then columns. The host hears of both after each channel; at a stop the channels that come
// after it go without the pass.
// @return false if allocation fails
bool BlurBoth(const Image& image, const UsmState& state, CObjProgress* progress, int position) {
  const bool hasPixels = HasPixels(image.in, image.width, image.height);
  if (hasPixels && !Blur(image, state, {})) return false;
  const int rows = ChannelsDone(progress, position);
  const int columns = ChannelsDone(progress, position);
  const std::size_t size = std::size_t{4} * image.width * image.height;
  PixelMemory stopped;
  for (int c = std::min(rows, columns); hasPixels && c < 3; ++c) {
    if (!stopped && !(stopped = AllocatePixels(size))) return false;
    if (!Blur({image.in, stopped.get(), image.width, image.height}, state, {c < rows, c < columns}))
      return false;
    for (std::size_t i = c; i < size; i += 4) image.out[i] = stopped[i];
  }
  return true;
}

}  // namespace
}  // namespace tintwerk

unsigned char* CPixelProcess::UsmSharp(unsigned char* pixels, int width, int height, float radius,
                                       float amount, unsigned char** blurred,
                                       CObjProgress* progress, int progressLow,
                                       int progressHigh) try {
  using namespace tintwerk;
  if (!IsWorkable(pixels, width, height) || !blurred) return nullptr;
  width = std::max(width, 0);
  int base = progressLow;
  if (!*blurred) {
    const std::size_t size = std::size_t{4} * *PixelCount(width, height);
    base += Truncate(static_cast<float>(std::int64_t{progressHigh} - progressLow) * 0.4f);
    const UsmState state(radius);
    // Hosts keep it, and may hand in one of their own or free it: a block of the C runtime.
    std::unique_ptr<unsigned char, decltype(&std::free)> both(
        static_cast<unsigned char*>(std::malloc(std::max<std::size_t>(size, 1))), std::free);
    if (!both) return nullptr;
    UseLargePages(both.get(), size);
    if (!BlurBoth({pixels, both.get(), width, height}, state, progress, base)) return nullptr;
    *blurred = both.release();
  }
  const std::size_t samples = std::size_t{4} * width;
  const unsigned char* const soft = *blurred;
  ForEachRow(RowProgress::ReportsOnly(progress, base, progressHigh, height), height,
             [=](std::int64_t y) {
               HWY_DYNAMIC_DISPATCH(Sharpen)
               (pixels + samples * y, soft + samples * y, samples, amount);
             });
  return pixels;
} catch (const std::bad_alloc&) {
  return nullptr;
}

int CPixelProcess::FreeUsmSharp(unsigned char* blurred) {
  std::free(blurred);
  return blurred != nullptr;
}

void SFDSP::Sharp(unsigned char* pixels, const unsigned char* blurred, int width, int height,
                  float amount) {
  using namespace tintwerk;
  if (!IsWorkable(pixels, width, height) || !blurred) return;
  const std::int32_t other = Truncate(amount * 16384.0f + 0.5f);
  const auto own = static_cast<std::int32_t>(static_cast<std::uint32_t>(other) + 16384u);
  const std::size_t samples = std::size_t{4} * std::max(width, 0);
  ParallelFor(height, [=](std::int64_t y) {
    HWY_DYNAMIC_DISPATCH(SharpenFixed)
    (pixels + samples * y, blurred + samples * y, samples, own, other);
  });
}
#endif

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/stack_blur_kernels.cpp"
#include "filters/stack_blur_kernels.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstring>

#include "filters/line_blocks.h"

// A window keeps the weighted sum of its samples and the change of that sum from one position to
// the next; the change itself changes by
//
//     entering sample + leaving sample - 2 x sample that becomes the peak
//
// so a position costs three samples at any radius.
HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// Division of the sums of a window by its weight: (sum + bias) x factor >> (16 + shift).
struct WordDivisor {
  constexpr explicit WordDivisor(int radius) {
    const std::uint32_t weight = (radius + 1) * (radius + 1);
    while ((weight - 1) >> (shift + 1)) ++shift;
    const std::uint32_t scale = 0x10000u << shift;
    const std::uint32_t rest = scale % weight;
    // Whichever way the factor was rounded, the result must not reach the next integer.
    const bool up = weight - rest <= std::uint32_t{1} << shift;
    factor = static_cast<std::uint16_t>(scale / weight + (up ? 1 : 0));
    bias = rest == 0 || up ? 0 : 1;
  }
  constexpr std::uint32_t operator()(std::uint32_t sum) const {
    return ((sum + bias) * factor) >> 16 >> shift;
  }

  int shift = 0;
  std::uint16_t factor = 0;
  std::uint16_t bias = 0;
};

/// The largest radius whose sums fit 16 bits.
constexpr int kWordRadius = 15;

// The quotients step where they should; between the steps they do not fall.
constexpr bool DividesExactly() {
  for (int radius = 1; radius <= kWordRadius; ++radius) {
    const WordDivisor divisor(radius);
    const std::uint32_t weight = (radius + 1) * (radius + 1);
    for (std::uint32_t value = 0; value <= 255; ++value)
      if (divisor(value * weight) != value ||
          (value > 0 && divisor(value * weight - 1) != value - 1))
        return false;
  }
  return true;
}
static_assert(DividesExactly());

// Bytes as two vectors of 16-bit lanes.
template <class Bytes>
struct Words {
  using D = hn::Repartition<std::uint16_t, hn::DFromV<Bytes>>;
  using V = hn::Vec<D>;

  HWY_INLINE explicit Words(Bytes bytes)
      : even(hn::And(hn::BitCast(D(), bytes), hn::Set(D(), 0x00ff))),
        odd(hn::ShiftRight<8>(hn::BitCast(D(), bytes))) {}
  HWY_INLINE Words(V e, V o) : even(e), odd(o) {}
  HWY_INLINE Words operator+(Words b) const { return {hn::Add(even, b.even), hn::Add(odd, b.odd)}; }
  HWY_INLINE Words operator-(Words b) const { return {hn::Sub(even, b.even), hn::Sub(odd, b.odd)}; }

  V even;
  V odd;
};

// Windows in 16-bit sums, of every byte of a vector.
template <class Bytes>
struct WordWindow {
  using D = typename Words<Bytes>::D;
  static constexpr int kStateVectors = 4;

  HWY_INLINE explicit WordWindow(int radius)
      : divisor(radius),
        weight(hn::Set(D(), static_cast<std::uint16_t>((radius + 1) * (radius + 1)))),
        factor(hn::Set(D(), divisor.factor)) {}

  /// Before the line, where all samples are its first one.
  HWY_INLINE void Start(Words<Bytes> first) {
    const auto bias = hn::Set(D(), divisor.bias);
    v[0] = hn::Add(hn::Mul(first.even, weight), bias);
    v[1] = hn::Add(hn::Mul(first.odd, weight), bias);
    v[2] = v[3] = hn::Zero(D());
  }
  HWY_INLINE void Advance(Words<Bytes> step) {
    v[0] = hn::Add(v[0], v[2]);
    v[1] = hn::Add(v[1], v[3]);
    v[2] = hn::Add(v[2], step.even);
    v[3] = hn::Add(v[3], step.odd);
  }
  HWY_INLINE Bytes Mean() const {
    const auto even = hn::ShiftRightSame(hn::MulHigh(v[0], factor), divisor.shift);
    const auto odd = hn::ShiftRightSame(hn::MulHigh(v[1], factor), divisor.shift);
    return hn::BitCast(hn::DFromV<Bytes>(), hn::Or(even, hn::ShiftLeft<8>(odd)));
  }

  WordDivisor divisor;
  hn::Vec<D> weight;
  hn::Vec<D> factor;
  hn::Vec<D> v[kStateVectors];  // sums of even and odd bytes, then changes
};

// Windows in 32-bit sums, of the first kChannels bytes of each group of four.
template <int kChannels, class Bytes>
struct IntWindow {
  using D = hn::Repartition<std::int32_t, hn::DFromV<Bytes>>;
  using Reals = hn::Repartition<float, D>;
  using V = hn::Vec<D>;
  static constexpr int kStateVectors = 2 * kChannels;

  // The reciprocal is a little too large, by more than the errors of the three roundings on the way
  // to a quotient.
  HWY_INLINE explicit IntWindow(int radius)
      : weight(hn::Set(D(), (radius + 1) * (radius + 1))),
        reciprocal(
            hn::Set(Reals(), static_cast<float>((1 + 0x1p-21) / ((radius + 1) * (radius + 1))))) {}

  HWY_INLINE void Start(Words<Bytes> first) {
    V wide[4];
    Widen(first, wide);
    for (int c = 0; c < kChannels; ++c) {
      v[c] = hn::Mul(wide[c], weight);
      v[kChannels + c] = hn::Zero(D());
    }
  }
  HWY_INLINE void Advance(Words<Bytes> step) {
    V wide[4];
    Widen(step, wide);
    for (int c = 0; c < kChannels; ++c) {
      v[c] = hn::Add(v[c], v[kChannels + c]);
      v[kChannels + c] = hn::Add(v[kChannels + c], wide[c]);
    }
  }
  HWY_INLINE Bytes Mean() const {
    auto mean = Quotient(v[0]);
    mean = hn::Or(mean, hn::ShiftLeft<8>(Quotient(v[1])));
    mean = hn::Or(mean, hn::ShiftLeft<16>(Quotient(v[2])));
    if constexpr (kChannels == 4) mean = hn::Or(mean, hn::ShiftLeft<24>(Quotient(v[3])));
    return hn::BitCast(hn::DFromV<Bytes>(), mean);
  }

  static HWY_INLINE void Widen(Words<Bytes> words, V wide[4]) {
    const auto even = hn::BitCast(D(), words.even);
    const auto odd = hn::BitCast(D(), words.odd);
    wide[0] = hn::ShiftRight<16>(hn::ShiftLeft<16>(even));
    wide[1] = hn::ShiftRight<16>(hn::ShiftLeft<16>(odd));
    wide[2] = hn::ShiftRight<16>(even);
    wide[3] = hn::ShiftRight<16>(odd);
  }
  // The product with the reciprocal is the quotient or, just below an integer, one more.
  HWY_INLINE V Quotient(V dividend) const {
    const auto guess = hn::ConvertTo(D(), hn::Mul(hn::ConvertTo(Reals(), dividend), reciprocal));
    return hn::Add(guess, hn::VecFromMask(D(), hn::Gt(hn::Mul(guess, weight), dividend)));
  }

  V weight;
  hn::Vec<Reals> reciprocal;
  V v[kStateVectors];  // sums, then changes
};

template <class Bytes>
using PixelWindow = IntWindow<3, Bytes>;
template <class Bytes>
using PlaneWindow = IntWindow<4, Bytes>;

constexpr hn::CappedTag<std::uint8_t, kBlockBytes> kBytes;
using Bytes = hn::Vec<hn::CappedTag<std::uint8_t, kBlockBytes>>;

HWY_INLINE Words<Bytes> LoadWords(const unsigned char* at) {
  return Words<Bytes>(hn::LoadU(kBytes, at));
}
HWY_INLINE Words<Bytes> Step(Words<Bytes> entering, Words<Bytes> leaving, Words<Bytes> peak) {
  return (entering - peak) + (leaving - peak);
}

// Blurs the lines of a block whose samples lie from element `radius` on, with their ends repeated
// around them: `radius` before, radius + 2 behind. The result of position x lands in element x,
// where the sample that leaves has just been read.
template <template <class> class Window>
void BlurLines(unsigned char* block, std::int64_t count, int radius) {
  for (std::size_t at = 0; at < kBlockBytes; at += hn::Lanes(kBytes)) {
    unsigned char* leaving = block + at;
    const unsigned char* peak = leaving + std::int64_t{kBlockBytes} * radius;
    const auto first = LoadWords(peak);
    Window<Bytes> window(radius);
    window.Start(first);
    for (int i = 1; i <= radius + 1; ++i)
      window.Advance(LoadWords(peak + std::int64_t{kBlockBytes} * i) - first);
    peak += kBlockBytes;
    const unsigned char* entering = peak + std::int64_t{kBlockBytes} * (radius + 1);
    for (std::int64_t x = 0; x < count; ++x) {
      const auto step = Step(LoadWords(entering), LoadWords(leaving), LoadWords(peak));
      hn::StoreU(window.Mean(), kBytes, leaving);
      window.Advance(step);
      leaving += kBlockBytes;
      peak += kBlockBytes;
      entering += kBlockBytes;
    }
  }
}

// One step down a strip of columns for a vector: the windows lie in `state` between the rows.
template <class Window>
HWY_INLINE void StepVector(Window window, const StripRows& rows, std::size_t at,
                           std::uint8_t* state, unsigned char* mean) {
  const auto entering = LoadWords(rows.entering + at);
  const std::size_t lanes = hn::Lanes(kBytes);
  if (rows.isFirst) {
    window.Start(entering);
  } else {
    for (int i = 0; i < Window::kStateVectors; ++i)
      window.v[i] = hn::BitCast(typename Window::D(), hn::Load(kBytes, state + lanes * i));
    if (mean) hn::StoreU(window.Mean(), kBytes, mean + at);
    window.Advance(Step(entering, LoadWords(rows.leaving + at), LoadWords(rows.peak + at)));
  }
  for (int i = 0; i < Window::kStateVectors; ++i)
    hn::Store(hn::BitCast(kBytes, window.v[i]), kBytes, state + lanes * i);
}

template <template <class> class Window>
void StepStrip(const StripRows& rows, int radius, std::size_t count, unsigned char* state,
               unsigned char* mean) {
  const Window<Bytes> window(radius);
  const std::size_t lanes = hn::Lanes(kBytes);
  std::size_t at = 0;
  for (; at + lanes <= count; at += lanes, state += lanes * Window<Bytes>::kStateVectors)
    StepVector(window, rows, at, state, mean);
  if (at == count) return;
  HWY_ALIGN unsigned char ends[3][kBlockBytes] = {};  // what is beyond the strip is not ours
  std::memcpy(ends[0], rows.entering + at, count - at);
  std::memcpy(ends[1], rows.leaving + at, count - at);
  std::memcpy(ends[2], rows.peak + at, count - at);
  StepVector(window, {ends[0], ends[1], ends[2], rows.isFirst}, 0, state, mean ? mean + at : mean);
}

// The portable fallback stays with 32 bits: some compilers get high halves of products wrong.
constexpr bool FitsWords(int radius) {
  return HWY_TARGET != HWY_EMU128 && radius >= 1 && radius <= kWordRadius;
}

void BlockLines(unsigned char* block, std::int64_t count, int radius, bool pixels) {
  (FitsWords(radius) ? BlurLines<WordWindow>
   : pixels          ? BlurLines<PixelWindow>
                     : BlurLines<PlaneWindow>)(block, count, radius);
}

void StripRow(const StripRows& rows, int radius, bool pixels, std::size_t count,
              unsigned char* state, unsigned char* mean) {
  (FitsWords(radius) ? StepStrip<WordWindow>
   : pixels          ? StepStrip<PixelWindow>
                     : StepStrip<PlaneWindow>)(rows, radius, count, state, mean);
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tintwerk {

HWY_EXPORT(BlockLines);
HWY_EXPORT(StripRow);

void BlurBlock(unsigned char* block, std::int64_t count, int radius, bool pixels) {
  HWY_DYNAMIC_DISPATCH(BlockLines)(block, count, radius, pixels);
}

void BlurStripRow(const StripRows& rows, int radius, bool pixels, std::size_t count,
                  unsigned char* state, unsigned char* mean) {
  HWY_DYNAMIC_DISPATCH(StripRow)(rows, radius, pixels, count, state, mean);
}

}  // namespace tintwerk
#endif

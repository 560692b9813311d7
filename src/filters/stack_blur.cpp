// The stack blur: a triangular window along the rows, then along the columns, each truncated to
// bytes.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/stack_blur.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "filters/line_blocks.h"

// A window keeps the weighted sum of its samples and the change of that sum from one position to
// the next; the change itself changes by
//
//     entering sample + leaving sample - 2 x sample that becomes the peak
//
// so a position costs three samples at any radius.
#ifndef TINTWERK_STACK_BLUR_STRIP_ROWS
#define TINTWERK_STACK_BLUR_STRIP_ROWS
namespace tintwerk {

/// The rows of a strip of columns from which a step reads.
struct StripRows {
  const unsigned char* entering;
  const unsigned char* leaving;
  const unsigned char* peak;
  bool isFirst;  // starts the windows on `entering`, and no more
};

}  // namespace tintwerk
#endif

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

void BlurBlock(unsigned char* block, std::int64_t count, int radius, bool pixels) {
  (FitsWords(radius) ? BlurLines<WordWindow>
   : pixels          ? BlurLines<PixelWindow>
                     : BlurLines<PlaneWindow>)(block, count, radius);
}

void BlurStripRow(const StripRows& rows, int radius, bool pixels, std::size_t count,
                  unsigned char* state, unsigned char* mean) {
  (FitsWords(radius) ? StepStrip<WordWindow>
   : pixels          ? StepStrip<PixelWindow>
                     : StepStrip<PlaneWindow>)(rows, radius, count, state, mean);
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <cstdlib>
#if defined(__linux__)
#include <sys/mman.h>
#endif

#include "frame/material.h"
#include "pixel/tone_curve.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

HWY_EXPORT(BlurBlock);
HWY_EXPORT(BlurStripRow);

/// 255 x (radius + 1)^2 must fit an int; larger radii count as this one.
constexpr int kMaxRadius = 2895;

constexpr std::uint32_t kAlpha = 0xFF000000;
constexpr std::uint32_t kAllButRed = 0xFF00FFFF;

// A steep S-curve about 128.
constexpr ToneTable kHighLight = {
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,    //
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,    //
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,    //
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   1,    //
    1,   1,   1,   1,   1,   1,   1,   1,   1,   2,   2,   2,   2,   2,   3,   3,    //
    3,   3,   4,   4,   5,   5,   5,   6,   7,   7,   8,   9,   9,   10,  11,  13,   //
    13,  15,  15,  17,  18,  20,  22,  23,  25,  26,  29,  32,  33,  36,  40,  43,   //
    44,  48,  53,  57,  61,  64,  68,  74,  78,  85,  90,  97,  104, 111, 119, 127,  //
    128, 136, 143, 151, 156, 163, 170, 175, 178, 184, 188, 193, 198, 202, 204, 208,  //
    212, 215, 216, 220, 223, 225, 227, 229, 230, 233, 234, 236, 237, 238, 240, 241,  //
    242, 243, 244, 245, 246, 247, 248, 248, 249, 249, 250, 250, 251, 251, 251, 251,  //
    252, 252, 252, 253, 253, 253, 253, 254, 254, 254, 254, 254, 254, 254, 254, 254,  //
    254, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,  //
    255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,  //
    255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,  //
    255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};

// Repeats the ends of the lines of a block, then blurs them.
void BlurRows(unsigned char* block, std::int64_t count, int radius, bool pixels) {
  unsigned char* const samples = block + std::int64_t{kBlockBytes} * radius;
  unsigned char* const end = samples + kBlockBytes * count;
  for (unsigned char* at = block; at < samples; at += kBlockBytes)
    std::memcpy(at, samples, kBlockBytes);
  for (int i = 0; i < radius + 2; ++i)
    std::memcpy(end + std::int64_t{kBlockBytes} * i, end - kBlockBytes, kBlockBytes);
  HWY_DYNAMIC_DISPATCH(BlurBlock)(block, count, radius, pixels);
}

/// Columns that are blurred together, row by row downward, in place or from one buffer to another.
/// Wide enough for whole cache lines and pages, narrow enough to keep the rows that leave at hand.
struct Strip {
  static std::int64_t Width(int radius) {
    return std::clamp<std::int64_t>((1 << 17) / (radius + 1) / 64 * 64, 512, 2048);
  }
  static std::int64_t MemorySize(int radius) {
    return Width(radius) * (kStateSize + 2 + radius + 1);
  }

  /// @param memory MemorySize bytes, aligned to 64
  template <class Finish>
  void Blur(const unsigned char* from, unsigned char* to, unsigned char* memory,
            const Finish& finish) const {
    const std::int64_t width = Width(radius);
    unsigned char* const state = memory;
    const auto step = [this, state](const StripRows& rows, unsigned char* result) {
      HWY_DYNAMIC_DISPATCH(BlurStripRow)(rows, radius, pixels, bytes, state, result);
    };
    unsigned char* const mean = state + kStateSize * width;
    unsigned char* const first = mean + width;
    unsigned char* const kept = first + width;  // the last radius + 1 rows, in turn
    const auto row = [&](std::int64_t y) { return from + pitch * std::min(y, height - 1); };

    std::memcpy(first, from, bytes);
    step({first, first, first, true}, nullptr);
    for (int i = 1; i <= radius + 1; ++i) step({row(i), first, first, false}, nullptr);
    for (std::int64_t y = 0, slot = 0; y < height; ++y) {
      std::memcpy(kept + width * slot, row(y), bytes);
      slot = slot == radius ? 0 : slot + 1;
      const unsigned char* const leaving = y < radius ? first : kept + width * slot;
      step({row(y + radius + 2), leaving, row(y + 1), false}, mean);
      finish(to + pitch * y, mean, bytes);
    }
  }

  static constexpr std::int64_t kStateSize = 8;  // bytes for each byte of a row, at most
  std::int64_t pitch;
  std::int64_t height;
  std::int64_t bytes;
  int radius;
  bool pixels;
};

/// Stores a run of cells but for the bits of each that stay.
template <class Cell>
struct StoreCells {
  Cell keep;

  void operator()(unsigned char* image, const unsigned char* blurred, std::int64_t bytes) const {
    for (std::int64_t i = 0; i < bytes; i += sizeof(Cell)) {
      Cell old, value;
      std::memcpy(&old, image + i, sizeof(Cell));
      std::memcpy(&value, blurred + i, sizeof(Cell));
      value = Merge(old, value, keep);
      std::memcpy(image + i, &value, sizeof(Cell));
    }
  }
};

unsigned char HighPass(unsigned char source, unsigned char blurred) {
  return static_cast<unsigned char>(std::clamp(source - blurred + 128, 0, 255));
}

/// Blurs the rows of an image, then its columns.
/// @param between the buffer that holds the image between the two; null for the image itself
/// @param keep    bits of a cell that stay
/// @param finish  stores what the second pass gives: finish(image, blurred, bytes), and may spoil
/// `blurred`
/// @return false if memory could not be had; nothing has been changed then
template <class Cell, class Finish>
bool Blur(unsigned char* image, unsigned char* between, int width, int height, int radius,
          Cell keep, CObjProgress* progress, const Finish& finish) {
  constexpr bool kPixels = sizeof(Cell) == 4;
  constexpr int kCell = sizeof(Cell);
  const std::int64_t pitch = std::int64_t{kCell} * width;
  const std::int64_t blockSize = kBlockBytes * (std::int64_t{width} + 2 * radius + 2);
  const WorkerMemory memory(omp_get_max_threads(), std::max(blockSize, Strip::MemorySize(radius)));
  if (!memory.IsValid()) return false;
  if (!between) between = image;

  std::int64_t ready = 0;
  ForEachSpan(RowProgress(progress, 0, 50, height), height,
              [&](std::int64_t top, std::int64_t count) {
                ready = top + count;
                ForEachRun(top, count, kBlockLines<Cell>, memory,
                           [=](std::int64_t row, std::int64_t rows, unsigned char* block) {
                             const std::int64_t samples = std::int64_t{kBlockBytes} * radius;
                             GatherRows<Cell>(image, width, row, rows, block + samples);
                             BlurRows(block, width, radius, kPixels);
                             ScatterRows<Cell>(block, between, width, row, rows, keep);
                           });
              });
  // After a stop the second pass starts all the same, and finds the rest black.
  std::memset(between + pitch * ready, 0, pitch * (height - ready));
  ForEachSpan(RowProgress(progress, 50, 100, width), width,
              [&](std::int64_t left, std::int64_t count) {
                const std::int64_t share = (count + memory.Workers() - 1) / memory.Workers();
                const auto run = static_cast<int>(std::min(Strip::Width(radius) / kCell, share));
                ForEachRun(left, count, run, memory,
                           [=](std::int64_t column, std::int64_t columns, unsigned char* own) {
                             const Strip strip{pitch, height, kCell * columns, radius, kPixels};
                             const std::int64_t at = kCell * column;
                             strip.Blur(between + at, image + at, own, finish);
                           });
              });
  return true;
}

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
using ImageMemory = std::unique_ptr<unsigned char, Free>;

// Memory for an image between the passes. On large pages, as the first touch of small ones costs
// more than a pass.
ImageMemory MakeImageMemory(std::int64_t bytes) {
  constexpr std::size_t kLargePage = std::size_t{2} << 20;
  const std::size_t size = (bytes + kLargePage - 1) / kLargePage * kLargePage;
  void* const memory = std::aligned_alloc(kLargePage, size);
#if defined(__linux__)
  if (memory) madvise(memory, size, MADV_HUGEPAGE);
#endif
  return ImageMemory(static_cast<unsigned char*>(memory));
}

bool HasPixels(const unsigned char* image, int width, int height) {
  return image && PixelCount(width, height).value_or(0) > 0;
}

void BlurInPlace(unsigned char* pixels, int width, int height, int radius, std::uint32_t keep) {
  if (!HasPixels(pixels, width, height) || radius < 1) return;
  Blur<std::uint32_t>(pixels, nullptr, width, height, std::min(radius, kMaxRadius), keep, nullptr,
                      StoreCells<std::uint32_t>{keep});
}

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

bool CPixelProcess::stackBlur(unsigned char* pixels, int width, int height, int radius,
                              CObjProgress* progress, int, int) {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return false;
  if (*count == 0 || radius < 0) return true;
  // A stop shows which rows the first pass had reached, and leaves the rest of the image alone.
  const ImageMemory between = MakeImageMemory(progress ? std::int64_t{4} * *count : 0);
  if (progress && !between) return false;
  return Blur<std::uint32_t>(pixels, progress ? between.get() : nullptr, width, height,
                             std::min(radius, kMaxRadius), kAlpha, progress,
                             StoreCells<std::uint32_t>{kAlpha});
}

void CPixelProcess::BlurOneChannel(unsigned char* plane, int width, int height, int radius) {
  if (!HasPixels(plane, width, height) || radius < 1) return;
  Blur<std::uint8_t>(plane, nullptr, width, height, std::min(radius, kMaxRadius), 0, nullptr,
                     StoreCells<std::uint8_t>{0});
}

void SFDSP::stackBlur(unsigned char* pixels, int width, int height, int radius) {
  BlurInPlace(pixels, width, height, radius, kAlpha);
}

void SFDSP::stackBlurRedChannel(unsigned char* pixels, int width, int height, int radius) {
  BlurInPlace(pixels, width, height, radius, kAllButRed);
}

void SFDSP::stackBlurAndHighPass(unsigned char* pixels, int width, int height, int radius) {
  if (!HasPixels(pixels, width, height) || radius < 1) return;
  const ImageMemory between = MakeImageMemory(std::int64_t{4} * width * height);
  if (!between) return;
  Blur<std::uint32_t>(pixels, between.get(), width, height, std::min(radius, kMaxRadius), kAlpha,
                      nullptr,
                      [](unsigned char* image, unsigned char* blurred, std::int64_t bytes) {
                        for (std::int64_t i = 0; i < bytes; ++i)
                          blurred[i] = HighPass(image[i], blurred[i]);
                        StoreCells<std::uint32_t>{kAlpha}(image, blurred, bytes);
                      });
}

void SFDSP::BlurOneChannel(unsigned char* plane, int width, int height, int radius) {
  CPixelProcess::BlurOneChannel(plane, width, height, radius);
}

void SFDSP::BlurChannelAndHighLight(unsigned char* plane, int width, int height, int radius) {
  if (!HasPixels(plane, width, height) || radius < 0) return;
  const ImageMemory between = MakeImageMemory(std::int64_t{width} * height);
  if (!between) return;
  Blur<std::uint8_t>(plane, between.get(), width, height, std::min(radius, kMaxRadius), 0, nullptr,
                     [](unsigned char* image, const unsigned char* blurred, std::int64_t bytes) {
                       for (std::int64_t i = 0; i < bytes; ++i)
                         image[i] = kHighLight[HighPass(image[i], blurred[i])];
                     });
}

int SFDSP::GetStackBlurRadius(int radius, int width, int height) {
  const std::uint32_t product = static_cast<std::uint32_t>(radius) *
                                static_cast<std::uint32_t>(width) *
                                static_cast<std::uint32_t>(height);
  const auto scaled =
      static_cast<int>(static_cast<float>(static_cast<std::int32_t>(product)) / 307200.0f + 0.5f);
  return std::max(scaled, radius);
}
#endif

// Deriche's fourth-order recursive Gaussian: every line is filtered forward and backward, and the
// two are added.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/recursive_gaussian.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "filters/line_blocks.h"

#ifndef TINTWERK_RECURSIVE_GAUSSIAN_COEFFICIENTS
#define TINTWERK_RECURSIVE_GAUSSIAN_COEFFICIENTS
namespace tintwerk {

/// One direction of the filter: output = sum of input[i] x sample - feedback[i] x output over the
/// last five positions. Before the line's start, edge[i] x its first sample stands for a term.
struct Direction {
  double input[5];
  double feedback[5];
  double edge[5];
};

}  // namespace tintwerk
#endif

// Results are truncated, so sums keep the order of the definition to the last bit: the terms of a
// position one after the other, its own first, and all products apart.
HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// A pixel a lane, each of its channels in a vector of its own.
constexpr hn::CappedTag<double, 4> kReals;
using Reals = hn::Vec<hn::CappedTag<double, 4>>;
constexpr hn::Rebind<std::int32_t, hn::CappedTag<double, 4>> kInts;
using Ints = hn::Vec<hn::Rebind<std::int32_t, hn::CappedTag<double, 4>>>;

HWY_INLINE Ints LoadPixels(const unsigned char* at) {
  const hn::Repartition<std::uint8_t, decltype(kInts)> bytes;
  return hn::BitCast(kInts, hn::LoadU(bytes, at));
}

template <int kChannels>
HWY_INLINE void ToReals(Ints pixels, Reals samples[kChannels]) {
  const auto low = hn::Set(kInts, 255);
  samples[0] = hn::PromoteTo(kReals, hn::And(pixels, low));
  samples[1] = hn::PromoteTo(kReals, hn::And(hn::ShiftRight<8>(pixels), low));
  samples[2] = hn::PromoteTo(kReals, hn::And(hn::ShiftRight<16>(pixels), low));
  if constexpr (kChannels == 4)
    samples[3] = hn::PromoteTo(kReals, hn::And(hn::ShiftRight<24>(pixels), low));
}

template <int kChannels>
HWY_INLINE void StoreTruncated(const Reals values[kChannels], unsigned char* at) {
  const hn::Repartition<std::uint8_t, decltype(kInts)> bytes;
  const auto toByte = [](Reals value) HWY_ATTR {
    const auto number = hn::DemoteTo(kInts, value);
    return hn::Min(hn::Max(number, hn::Zero(kInts)), hn::Set(kInts, 255));
  };
  auto pixels = hn::Or(toByte(values[0]), hn::ShiftLeft<8>(toByte(values[1])));
  pixels = hn::Or(pixels, hn::ShiftLeft<16>(toByte(values[2])));
  if constexpr (kChannels == 4) pixels = hn::Or(pixels, hn::ShiftLeft<24>(toByte(values[3])));
  hn::StoreU(hn::BitCast(bytes, pixels), bytes, at);
}

// One direction along lines side by side. The last five samples and outputs take turns in their
// places, so that nothing has to be moved.
template <int kChannels>
struct Recursion {
  HWY_INLINE Recursion(const Direction& direction, Ints firstPixels) {
    for (int i = 0; i < 5; ++i) {
      input[i] = hn::Set(kReals, direction.input[i]);
      feedback[i] = hn::Set(kReals, direction.feedback[i]);
      edge[i] = hn::Set(kReals, direction.edge[i]);
    }
    ToReals<kChannels>(firstPixels, first);
  }

  /// The output at the next position. @param known how many positions lie before it, at most 4
  HWY_INLINE const Reals* Next(Ints pixels, int turn, int known) {
    ToReals<kChannels>(pixels, sample[turn]);
    for (int c = 0; c < kChannels; ++c) {
      auto sum = hn::Mul(input[0], sample[turn][c]);  // its own feedback is 0
      for (int i = 1; i < 5; ++i) {
        const int past = (turn + 5 - i) % 5;
        sum = hn::Add(sum, i <= known ? hn::Sub(hn::Mul(input[i], sample[past][c]),
                                                hn::Mul(feedback[i], output[past][c]))
                                      : hn::Mul(edge[i], first[c]));
      }
      output[turn][c] = sum;
    }
    return output[turn];
  }

  Reals input[5], feedback[5], edge[5];
  Reals first[kChannels];
  Reals sample[5][kChannels];
  Reals output[5][kChannels];
};

// Runs step(position, turn, known) for every position, with constant turns nearly everywhere.
template <class Step>
HWY_INLINE void ForEachPosition(std::int64_t count, Step step) {
  for (int k = 0; k < 5 && k < count; ++k) step(k, k, k < 4 ? k : 4);
  std::int64_t k = 5;
  for (; k + 5 <= count; k += 5) {
    step(k, 0, 4);
    step(k + 1, 1, 4);
    step(k + 2, 2, 4);
    step(k + 3, 3, 4);
    step(k + 4, 4, 4);
  }
  for (int turn = 0; k < count; ++k, ++turn) step(k, turn, 4);
}

template <int kChannels>
struct Forward {
  HWY_INLINE void operator()(std::int64_t k, int turn, int known) {
    const Reals* const output = recursion.Next(LoadPixels(lines + kBlockBytes * k), turn, known);
    for (int c = 0; c < kChannels; ++c, runs += hn::Lanes(kReals))
      hn::Store(output[c], kReals, runs);
  }

  Recursion<kChannels>& recursion;
  const unsigned char* lines;
  double*& runs;
};

template <int kChannels>
struct Backward {
  HWY_INLINE void operator()(std::int64_t k, int turn, int known) {
    unsigned char* const pixels = end - kBlockBytes * k;
    const Reals* const output = recursion.Next(LoadPixels(pixels), turn, known);
    Reals sum[kChannels];
    for (int c = kChannels; c-- > 0;) {
      runs -= hn::Lanes(kReals);
      sum[c] = hn::Add(hn::Load(kReals, runs), output[c]);
    }
    StoreTruncated<kChannels>(sum, pixels);
  }

  Recursion<kChannels>& recursion;
  unsigned char* end;
  double*& runs;
};

// Filters lines that lie interleaved in a block.
// @param runs room for the forward run: 16 doubles a position
template <int kChannels>
void FilterLines(unsigned char* block, std::int64_t count, const Direction& forward,
                 const Direction& backward, double* runs) {
  for (std::size_t at = 0; at < kBlockBytes; at += 4 * hn::Lanes(kReals)) {
    unsigned char* const lines = block + at;
    unsigned char* const end = lines + kBlockBytes * (count - 1);
    const auto last = LoadPixels(end);
    Recursion<kChannels> ahead(forward, LoadPixels(lines));
    ForEachPosition(count, Forward<kChannels>{ahead, lines, runs});
    Recursion<kChannels> back(backward, last);
    ForEachPosition(count, Backward<kChannels>{back, end, runs});
  }
}

void FilterPixels(unsigned char* block, std::int64_t count, const Direction& forward,
                  const Direction& backward, double* runs) {
  FilterLines<3>(block, count, forward, backward, runs);
}
void FilterBytes(unsigned char* block, std::int64_t count, const Direction& forward,
                 const Direction& backward, double* runs) {
  FilterLines<4>(block, count, forward, backward, runs);
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <cmath>

#include "frame/image.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

HWY_EXPORT(FilterPixels);
HWY_EXPORT(FilterBytes);

/// Both directions for a radius.
struct GaussianFilter {
  Direction forward;
  Direction backward;
};

/// The sigma at which the Gaussian has fallen to 1/255 at radius + 1.
double StandardDeviation(int radius) {
  const double reach = std::max(radius, 2) + 1.0;
  return std::sqrt(-(reach * reach) / (2 * std::log(0.00392156862745098)));
}

/// Working memory for the lines of an image, and the passes over it.
template <class Cell>
struct Passes {
  static constexpr int kCell = sizeof(Cell);

  Passes(unsigned char* pixels, int w, int h)
      : image(pixels),
        width(w),
        height(h),
        blockSize(kBlockBytes * std::int64_t{std::max(w, h)}),
        memory(omp_get_max_threads(),
               kStripBlocks * blockSize + 16 * std::int64_t{sizeof(double)} * std::max(w, h)) {}

  void Run(unsigned char* block, std::int64_t count, const GaussianFilter& filter,
           double* runs) const {
    if constexpr (kCell == 4)
      HWY_DYNAMIC_DISPATCH(FilterPixels)(block, count, filter.forward, filter.backward, runs);
    else
      HWY_DYNAMIC_DISPATCH(FilterBytes)(block, count, filter.forward, filter.backward, runs);
  }
  double* Runs(unsigned char* own) const {
    return reinterpret_cast<double*>(own + kStripBlocks * blockSize);
  }

  bool Columns(const GaussianFilter& filter, const RowProgress& progress) const {
    return ForEachSpan(progress, width, [&](std::int64_t left, std::int64_t count) {
      const std::int64_t pitch = std::int64_t{kCell} * width;
      ForEachRun(left, count, kStripBytes / kCell, memory,
                 [&, pitch](std::int64_t column, std::int64_t columns, unsigned char* own) {
                   unsigned char* const top = image + kCell * column;
                   const std::int64_t bytes = kCell * columns;
                   GatherColumns(top, pitch, height, bytes, own, blockSize);
                   for (std::int64_t b = 0; kBlockBytes * b < bytes; ++b)
                     Run(own + blockSize * b, height, filter, Runs(own));
                   ScatterColumns(own, blockSize, top, pitch, height, bytes, kKeep);
                 });
    });
  }
  bool Rows(const GaussianFilter& filter, const RowProgress& progress) const {
    return ForEachSpan(progress, height, [&](std::int64_t top, std::int64_t count) {
      ForEachRun(top, count, kBlockLines<Cell>, memory,
                 [&](std::int64_t row, std::int64_t rows, unsigned char* own) {
                   GatherRows<Cell>(image, width, row, rows, own);
                   Run(own, width, filter, Runs(own));
                   ScatterRows<Cell>(own, image, width, row, rows, kKeep);
                 });
    });
  }

  static constexpr Cell kKeep = kCell == 4 ? static_cast<Cell>(0xFF000000) : 0;
  unsigned char* image;
  int width;
  int height;
  std::int64_t blockSize;
  WorkerMemory memory;
};

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

namespace tintwerk {
/// The filter for a radius, from the six arrays.
template <class FindConstants>
GaussianFilter MakeFilter(int radius, const FindConstants& findConstants) {
  GaussianFilter filter{};
  double startForward[5], startBackward[5];
  findConstants(filter.forward.input, filter.backward.input, filter.forward.feedback,
                filter.backward.feedback, startForward, startBackward, StandardDeviation(radius));
  for (int i = 0; i < 5; ++i) {
    filter.forward.edge[i] = filter.forward.input[i] - startForward[i];
    filter.backward.edge[i] = filter.backward.input[i] - startBackward[i];
  }
  return filter;
}
}  // namespace tintwerk

void CPixelProcess::find_constants(double* n_p, double* n_m, double* d_p, double* d_m, double* bd_p,
                                   double* bd_m, double standardDeviation) {
  const double s = standardDeviation == 0 ? 1.0 : standardDeviation;
  double div = std::sqrt(6.283185307179586) * standardDeviation;
  if (div == 0) div = 1.0;
  const double A = -1.783 / s, B = -1.723 / s, C = 0.6318 / s, D = 1.997 / s;
  const double p = 1.6803 / div, q = 3.735 / div, u = -0.6803 / div, w = -0.2598 / div;

  n_p[0] = u + p;
  n_p[1] = std::exp(A) * (q * std::sin(C) - (2 * u + p) * std::cos(C)) +
           std::exp(B) * (w * std::sin(D) - (2 * p + u) * std::cos(D));
  n_p[2] = 2 * std::exp(A + B) *
               ((u + p) * std::cos(D) * std::cos(C) - q * std::cos(D) * std::sin(C) -
                w * std::cos(C) * std::sin(D)) +
           u * std::exp(2 * A) + p * std::exp(2 * B);
  n_p[3] = std::exp(A + 2 * B) * (q * std::sin(C) - p * std::cos(C)) +
           std::exp(2 * A + B) * (w * std::sin(D) - u * std::cos(D));
  n_p[4] = 0;

  d_p[0] = 0;
  d_p[1] = -2 * std::exp(B) * std::cos(D) - 2 * std::exp(A) * std::cos(C);
  d_p[2] = 4 * std::cos(D) * std::cos(C) * std::exp(A + B) + std::exp(2 * B) + std::exp(2 * A);
  d_p[3] = -2 * std::cos(C) * std::exp(A + 2 * B) - 2 * std::cos(D) * std::exp(2 * A + B);
  d_p[4] = std::exp(2 * A + 2 * B);

  n_m[0] = 0;
  for (int i = 0; i < 5; ++i) d_m[i] = d_p[i];
  for (int i = 1; i < 5; ++i) n_m[i] = n_p[i] - d_p[i] * n_p[0];

  double sumD = 0, sumP = 0, sumM = 0;
  for (int i = 0; i < 5; ++i) {
    sumD += d_p[i];
    sumP += n_p[i];
    sumM += n_m[i];
  }
  double den = 1 + sumD;
  if (den == 0) den = 1.0;
  const double a = sumP / den, b = sumM / den;
  for (int i = 0; i < 5; ++i) {
    bd_p[i] = d_p[i] * a;
    bd_m[i] = d_m[i] * b;
  }
}

int CPixelProcess::GaussIIRBlurImage(unsigned char* pixels, int width, int height,
                                     int horizontalRadius, int verticalRadius,
                                     CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  if (!HasPixels(pixels, width, height)) return 1;
  const Passes<std::uint32_t> passes(pixels, width, height);
  if (!passes.memory.IsValid()) return 0;

  const auto span = static_cast<float>(std::int64_t{progressHigh} - progressLow);
  Report(progress, static_cast<float>(progressLow));
  const GaussianFilter columns = MakeFilter(verticalRadius, find_constants);
  int base = progressLow + Truncate(span * 0.2f);
  Report(progress, static_cast<float>(base));
  if (!passes.Columns(columns, RowProgress(progress, width, span * 0.4f / width, base))) return 0;
  base += Truncate(span * 0.4f);
  const GaussianFilter rows = MakeFilter(horizontalRadius, find_constants);
  passes.Rows(rows, RowProgress(progress, height, span * 0.4f / height, base));
  return 1;
}

int CPixelProcess::GaussIIRBlurWithOne(unsigned char* plane, int width, int height,
                                       int horizontalRadius, int verticalRadius,
                                       CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(plane, width, height)) return 0;
  if (!HasPixels(plane, width, height)) return 1;
  const Passes<std::uint8_t> passes(plane, width, height);
  if (!passes.memory.IsValid()) return 0;

  const auto span = static_cast<float>(std::int64_t{progressHigh} - progressLow);
  const GaussianFilter columns = MakeFilter(verticalRadius, find_constants);
  if (!passes.Columns(columns, RowProgress(progress, width, span * 0.5f / width, progressLow)))
    return 0;
  const GaussianFilter rows = MakeFilter(horizontalRadius, find_constants);
  passes.Rows(rows, RowProgress(progress, height, span * 0.5f / height, progressLow));
  return 1;
}
#endif

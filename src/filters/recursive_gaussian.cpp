// Deriche's fourth-order recursive Gaussian: every line is filtered forward and backward, and the
// two are added.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/recursive_gaussian.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "filters/line_blocks.h"
#include "filters/line_lanes.h"

#ifndef TINTWERK_RECURSIVE_GAUSSIAN_COEFFICIENTS
#define TINTWERK_RECURSIVE_GAUSSIAN_COEFFICIENTS
namespace tintwerk {

/// One direction of the filter: output = sum of input[i] x sample - feedback[i] x output over the
/// last positions. The forward run takes the samples from the position itself to three before it,
/// the backward run those one to four before it; both take the last four outputs, from feedback[0]
/// on. Before the line's start, edge[i] x its first sample stands for the terms of i + 1 before.
struct Direction {
  double input[4];
  double feedback[4];
  double edge[4];
};

}  // namespace tintwerk
#endif

// Results are truncated, so sums keep the order of the definition to the last bit: the terms of a
// position one after the other, its own first, and all products apart.
HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {

// One direction along lines side by side. The last four samples and outputs take turns in their
// places, so that nothing has to be moved.
// @param kNewest how far back the newest sample is that an output takes
template <class Lanes, int kNewest>
struct Recursion {
  static constexpr int kVectors = Lanes::kVectors;

  HWY_INLINE Recursion(const Direction& d, const unsigned char* firstSamples) : direction(d) {
    for (int i = 0; i < 4; ++i) {
      input[i] = hn::Set(kReals, d.input[i]);
      feedback[i] = hn::Set(kReals, d.feedback[i]);
    }
    Lanes::Load(firstSamples, first);
  }

  /// The outputs at the next position. @param known how many positions lie before it, at most 4
  HWY_INLINE const Reals* Next(const unsigned char* at, int turn, int known) {
    Reals current[kVectors];
    Lanes::Load(at, current);
    for (int v = 0; v < kVectors; ++v) {
      Reals sum = kNewest == 0 ? hn::Mul(input[0], current[v]) : Term(v, 1, turn, known);
      for (int back = 1 + kNewest; back <= 4; ++back)
        sum = hn::Add(sum, Term(v, back, turn, known));
      sample[turn][v] = current[v];
      output[turn][v] = sum;
    }
    return output[turn];
  }

 private:
  HWY_INLINE Reals Term(int v, int back, int turn, int known) const {
    const int past = (turn + 4 - back) % 4, tap = back - kNewest;
    if (back > known) return hn::Mul(hn::Set(kReals, direction.edge[back - 1]), first[v]);
    const auto fed = hn::Mul(feedback[back - 1], output[past][v]);
    return tap < 4 ? hn::Sub(hn::Mul(input[tap], sample[past][v]), fed) : hn::Neg(fed);
  }

  const Direction& direction;
  Reals input[4], feedback[4];
  Reals first[kVectors];
  Reals sample[4][kVectors];
  Reals output[4][kVectors];
};

// Runs step(position, turn, known) for every position, with constant turns nearly everywhere.
template <class Step>
HWY_INLINE void ForEachPosition(std::int64_t count, Step step) {
  for (int k = 0; k < 4 && k < count; ++k) step(k, k, k);
  std::int64_t k = 4;
  for (; k + 4 <= count; k += 4) {
    step(k, 0, 4);
    step(k + 1, 1, 4);
    step(k + 2, 2, 4);
    step(k + 3, 3, 4);
  }
  for (int turn = 0; k < count; ++k, ++turn) step(k, turn, 4);
}

template <class Lanes>
struct Forward {
  HWY_INLINE void operator()(std::int64_t k, int turn, int known) {
    const Reals* const output = recursion.Next(lines + kBlockBytes * k, turn, known);
    for (int v = 0; v < Lanes::kVectors; ++v, runs += hn::Lanes(kReals))
      hn::Store(output[v], kReals, runs);
  }

  Recursion<Lanes, 0>& recursion;
  const unsigned char* lines;
  double*& runs;
};

template <class Lanes>
struct Backward {
  HWY_INLINE void operator()(std::int64_t k, int turn, int known) {
    unsigned char* const at = end - kBlockBytes * k;
    const Reals* const output = recursion.Next(at, turn, known);
    Ints bytes[Lanes::kVectors];
    for (int v = Lanes::kVectors; v-- > 0;) {
      runs -= hn::Lanes(kReals);
      const auto sum = hn::DemoteTo(kInts, hn::Add(hn::Load(kReals, runs), output[v]));
      bytes[v] = hn::Min(hn::Max(sum, hn::Zero(kInts)), hn::Set(kInts, 255));
    }
    Lanes::Store(bytes, at);
  }

  Recursion<Lanes, 1>& recursion;
  unsigned char* end;
  double*& runs;
};

// Filters lines that lie interleaved in a block.
// @param runs room for the forward run: kGaussianRun doubles a position
template <class Lanes>
void FilterLines(unsigned char* block, std::int64_t count, const Direction& forward,
                 const Direction& backward, double* runs) {
  for (std::size_t at = 0; at < kBlockBytes; at += Lanes::Bytes()) {
    unsigned char* const lines = block + at;
    unsigned char* const end = lines + kBlockBytes * (count - 1);
    Recursion<Lanes, 1> back(backward, end);  // takes the last sample before it is overwritten
    Recursion<Lanes, 0> ahead(forward, lines);
    ForEachPosition(count, Forward<Lanes>{ahead, lines, runs});
    ForEachPosition(count, Backward<Lanes>{back, end, runs});
  }
}

void FilterPixels(unsigned char* block, std::int64_t count, const Direction& forward,
                  const Direction& backward, double* runs) {
  FilterLines<PixelLanes>(block, count, forward, backward, runs);
}
void FilterBytes(unsigned char* block, std::int64_t count, const Direction& forward,
                 const Direction& backward, double* runs) {
  FilterLines<ByteLanes>(block, count, forward, backward, runs);
}

}  // namespace
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

/// Doubles that the forward run keeps at a position, at the most: three colours of eight pixels.
constexpr int kGaussianRun = 24;

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
        memory(omp_get_max_threads(), kStripBlocks * blockSize + kGaussianRun *
                                                                     std::int64_t{sizeof(double)} *
                                                                     std::max(w, h)) {}

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
                   ScatterColumns(own, blockSize, top, pitch, height, bytes);
                 });
    });
  }
  bool Rows(const GaussianFilter& filter, const RowProgress& progress) const {
    return ForEachSpan(progress, height, [&](std::int64_t top, std::int64_t count) {
      ForEachRun(top, count, kBlockLines<Cell>, memory,
                 [&](std::int64_t row, std::int64_t rows, unsigned char* own) {
                   GatherRows<Cell>(image, width, row, rows, own);
                   Run(own, width, filter, Runs(own));
                   ScatterRows<Cell>(own, image, width, row, rows, 0);
                 });
    });
  }

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
  double inForward[5], inBackward[5], backForward[5], backBackward[5];
  double startForward[5], startBackward[5];
  findConstants(inForward, inBackward, backForward, backBackward, startForward, startBackward,
                StandardDeviation(radius));
  // The definition's fifth tap forward and first tap backward are 0, as both first feedbacks are.
  GaussianFilter filter{};
  for (int i = 0; i < 4; ++i) {
    filter.forward.input[i] = inForward[i];
    filter.backward.input[i] = inBackward[i + 1];
    filter.forward.feedback[i] = backForward[i + 1];
    filter.backward.feedback[i] = backBackward[i + 1];
    filter.forward.edge[i] = inForward[i + 1] - startForward[i + 1];
    filter.backward.edge[i] = inBackward[i + 1] - startBackward[i + 1];
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

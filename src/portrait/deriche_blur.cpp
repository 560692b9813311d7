// Deriche's second-order recursive Gaussian: every line is filtered forward and backward, and the
// two are added.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "portrait/deriche_blur.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "filters/line_blocks.h"
#include "filters/line_lanes.h"

#ifndef TINTWERK_DERICHE_COEFFICIENTS
#define TINTWERK_DERICHE_COEFFICIENTS
namespace tintwerk {

/// A direction of the filter: output = near x one sample + far x the one before it - feedback1 and
/// feedback2 x the last two outputs. Before the line's start its first sample goes on, which had
/// brought the outputs to edge x that sample.
struct DericheDirection {
  double near, far;
  double feedback1, feedback2;
  double edge;
};

/// Both for a sigma. Forward takes a sample and the one before it; backward the two after it.
struct DericheFilter {
  DericheDirection forward, backward;
};

}  // namespace tintwerk
#endif

// Results are truncated, so sums keep the order of the definition to the last bit.
HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
// What is added to a result before it is truncated. Far above the rounding errors of a line, which
// stay below 2e-9 at the largest sigma: without it half of all flat lines would come out a level
// darker.
constexpr double kRoundingSlack = 1e-7;

HWY_INLINE Ints Truncated(Reals value) {
  return hn::And(hn::DemoteTo(kInts, value), hn::Set(kInts, 255));
}

// One direction along lines side by side.
template <int kVectors>
struct Recursion {
  HWY_INLINE Recursion(const DericheDirection& direction, const Reals* first)
      : near(hn::Set(kReals, direction.near)),
        far(hn::Set(kReals, direction.far)),
        feedback1(hn::Set(kReals, direction.feedback1)),
        feedback2(hn::Set(kReals, direction.feedback2)) {
    for (int v = 0; v < kVectors; ++v)
      last[v] = older[v] = hn::Mul(hn::Set(kReals, direction.edge), first[v]);
  }

  HWY_INLINE Reals Next(int v, Reals nearSample, Reals farSample) {
    auto sum = hn::Add(hn::Mul(near, nearSample), hn::Mul(far, farSample));
    sum = hn::Sub(sum, hn::Mul(feedback1, last[v]));
    sum = hn::Sub(sum, hn::Mul(feedback2, older[v]));
    older[v] = last[v];
    return last[v] = sum;
  }

  Reals near, far, feedback1, feedback2;
  Reals last[kVectors], older[kVectors];
};

// Filters lines that lie interleaved in a block.
// @param runs room for the forward run: kDericheRun doubles a position
template <class Lanes>
void FilterLines(unsigned char* block, std::int64_t count, const DericheFilter& filter,
                 double* runs) {
  constexpr int kVectors = Lanes::kVectors;
  for (std::size_t at = 0; at < kBlockBytes; at += Lanes::Bytes()) {
    unsigned char* const lines = block + at;
    Reals one[kVectors], two[kVectors], sample[kVectors];  // the neighbour, and the one beyond

    Lanes::Load(lines, one);
    Recursion<kVectors> ahead(filter.forward, one);
    double* run = runs;
    for (std::int64_t i = 0; i < count; ++i) {
      Lanes::Load(lines + kBlockBytes * i, sample);
      for (int v = 0; v < kVectors; ++v, run += hn::Lanes(kReals)) {
        hn::Store(ahead.Next(v, sample[v], one[v]), kReals, run);
        one[v] = sample[v];
      }
    }

    Lanes::Load(lines + kBlockBytes * (count - 1), one);
    for (int v = 0; v < kVectors; ++v) two[v] = one[v];
    Recursion<kVectors> back(filter.backward, one);
    const auto slack = hn::Set(kReals, kRoundingSlack);
    for (std::int64_t i = count; i-- > 0;) {
      Lanes::Load(lines + kBlockBytes * i, sample);
      Ints sum[kVectors];
      run -= kVectors * hn::Lanes(kReals);
      for (int v = 0; v < kVectors; ++v) {
        const auto forward = hn::Load(kReals, run + v * hn::Lanes(kReals));
        sum[v] = Truncated(hn::Add(hn::Add(forward, back.Next(v, one[v], two[v])), slack));
        two[v] = one[v];
        one[v] = sample[v];
      }
      Lanes::Store(sum, lines + kBlockBytes * i);
    }
  }
}

void DerichePixels(unsigned char* block, std::int64_t count, const DericheFilter& filter,
                   double* runs) {
  FilterLines<PixelLanes>(block, count, filter, runs);
}
void DericheBytes(unsigned char* block, std::int64_t count, const DericheFilter& filter,
                  double* runs) {
  FilterLines<ByteLanes>(block, count, filter, runs);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <cmath>

#include "frame/image.h"
#include "frame/material.h"
#include "portrait/deriche_blur.h"

namespace tintwerk {
namespace {

HWY_EXPORT(DerichePixels);
HWY_EXPORT(DericheBytes);

constexpr double kLeastSigma = 0.1, kMostSigma = 250;

/// R. Deriche, "Recursively implementing the Gaussian and its derivatives", of the second order.
DericheFilter MakeFilter(double sigma) {
  const double alpha = 1.695 / std::min(sigma, kMostSigma);
  const double e1 = std::exp(-alpha), e2 = std::exp(-2 * alpha);
  const double k = (1 - e1) * (1 - e1) / (1 + 2 * alpha * e1 - e2);
  const double a0 = k, a1 = k * (alpha - 1) * e1, a2 = k * (alpha + 1) * e1, a3 = -k * e2;
  const double b1 = -2 * e1, b2 = e2;
  return {{a0, a1, b1, b2, (a0 + a1) / (1 + b1 + b2)}, {a2, a3, b1, b2, (a2 + a3) / (1 + b1 + b2)}};
}

/// Doubles that the forward run keeps at a position, at the most: three colours of eight pixels.
constexpr int kDericheRun = 24;

/// @param image rows without gaps
/// @return false if allocation fails; nothing has been changed then
template <class Cell>
bool BlurPacked(unsigned char* image, int width, int height, double sigmaX, double sigmaY) {
  constexpr int kCell = sizeof(Cell);
  const bool alongRows = width > 1 && sigmaX >= kLeastSigma;
  const bool alongColumns = height > 1 && sigmaY >= kLeastSigma;
  if (!alongRows && !alongColumns) return true;

  const std::int64_t longest = std::max(width, height);
  const std::int64_t blockSize = kBlockBytes * longest;
  const WorkerMemory memory(omp_get_max_threads(),
                            kStripBlocks * blockSize + kDericheRun * 8 * longest);
  if (!memory.IsValid()) return false;
  const auto filterBlock = [=](unsigned char* block, std::int64_t count,
                               const DericheFilter& filter, unsigned char* own) {
    double* const runs = reinterpret_cast<double*>(own + kStripBlocks * blockSize);
    if constexpr (kCell == 4)
      HWY_DYNAMIC_DISPATCH(DerichePixels)(block, count, filter, runs);
    else
      HWY_DYNAMIC_DISPATCH(DericheBytes)(block, count, filter, runs);
  };

  if (alongRows)
    ForEachRun(
        0, height, kBlockLines<Cell>, memory,
        [=, filter = MakeFilter(sigmaX)](std::int64_t row, std::int64_t rows, unsigned char* own) {
          GatherRows<Cell>(image, width, row, rows, own);
          filterBlock(own, width, filter, own);
          ScatterRows<Cell>(own, image, width, row, rows, 0);
        });
  if (alongColumns)
    ForEachRun(0, width, kStripBytes / kCell, memory,
               [=, filter = MakeFilter(sigmaY)](std::int64_t column, std::int64_t columns,
                                                unsigned char* own) {
                 const std::int64_t pitch = std::int64_t{kCell} * width, bytes = kCell * columns;
                 unsigned char* const top = image + kCell * column;
                 GatherColumns(top, pitch, height, bytes, own, blockSize);
                 for (std::int64_t b = 0; kBlockBytes * b < bytes; ++b)
                   filterBlock(own + blockSize * b, height, filter, own);
                 ScatterColumns(own, blockSize, top, pitch, height, bytes);
               });
  return true;
}

bool BlurPacked(unsigned char* image, int width, int height, int cell, double sigmaX,
                double sigmaY) {
  return cell == 4 ? BlurPacked<std::uint32_t>(image, width, height, sigmaX, sigmaY)
                   : BlurPacked<std::uint8_t>(image, width, height, sigmaX, sigmaY);
}

/// @param stride bytes of a row. @param element bytes from one element to the next
bool Blur(unsigned char* buffer, int width, int height, std::int64_t stride, std::int64_t element,
          double sigmaX, double sigmaY) {
  const auto count = PixelCount(width, height);
  if (!buffer || !count) return false;
  if (*count == 0 || element < 1) return true;
  const int cell = element == 4 ? 4 : 1;
  if (element == cell && stride == element * width)
    return BlurPacked(buffer, width, height, cell, sigmaX, sigmaY);

  const PixelMemory packed = AllocatePixels(std::size_t(cell) * *count);
  if (!packed) return false;
  const auto forEachElement = [=, first = packed.get()](const auto& copy) {
    for (std::int64_t y = 0; y < height; ++y)
      for (std::int64_t x = 0; x < width; ++x)
        copy(buffer + stride * y + element * x, first + cell * (width * y + x));
  };
  forEachElement(
      [=](const unsigned char* from, unsigned char* to) { std::memcpy(to, from, cell); });
  if (!BlurPacked(packed.get(), width, height, cell, sigmaX, sigmaY)) return false;
  forEachElement(
      [=](unsigned char* to, const unsigned char* from) { std::memcpy(to, from, cell); });
  return true;
}

}  // namespace

bool DericheBlur(void* buffer, int width, int height, int stride, double sigmaX, double sigmaY) {
  const int element = width > 0 ? stride / width : 0;
  return Blur(static_cast<unsigned char*>(buffer), width, height, stride, element, sigmaX, sigmaY);
}

bool DericheBlurPass(void* buffer, int width, int height, int bytesPerElement, double sigma,
                     bool horizontal) {
  return Blur(static_cast<unsigned char*>(buffer), width, height,
              std::int64_t{bytesPerElement} * width, bytesPerElement, horizontal ? sigma : 0,
              horizontal ? 0 : sigma);
}

}  // namespace tintwerk
#endif

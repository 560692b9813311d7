#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "portrait/brush_strokes.cpp"
#include "portrait/brush_strokes.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

#ifndef TINTWERK_BRUSH_STROKES_CONSTANTS
#define TINTWERK_BRUSH_STROKES_CONSTANTS
namespace tintwerk {
namespace {

constexpr int kDirections = 8;
constexpr unsigned char kNoDirection = 255;

}  // namespace
}  // namespace tintwerk
#endif

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

using Pixels = hn::CappedTag<std::uint32_t, 16>;
using Pixel = hn::CappedTag<std::uint32_t, 1>;

// Blue + green + red.
template <class Lanes>
HWY_INLINE auto Sum(Lanes lanes, hn::Vec<Lanes> pixels) {
  const auto low = hn::Set(lanes, 255u);
  return hn::Add(hn::And(pixels, low), hn::Add(hn::And(hn::ShiftRight<8>(pixels), low),
                                               hn::And(hn::ShiftRight<16>(pixels), low)));
}

template <class Lanes>
HWY_INLINE auto LoadPixels(Lanes lanes, const unsigned char* at) {
  return hn::BitCast(lanes, hn::LoadU(hn::Repartition<std::uint8_t, Lanes>(), at));
}

template <class Lanes>
HWY_INLINE void GreyStep(Lanes lanes, const unsigned char* pixels, unsigned char* out) {
  const hn::Rebind<std::uint8_t, Lanes> bytes;
  const hn::RebindToSigned<Lanes> integers;
  const auto grey =
      hn::ShiftRight<16>(hn::Mul(Sum(lanes, LoadPixels(lanes, pixels)), hn::Set(lanes, 21846u)));
  hn::StoreU(hn::DemoteTo(bytes, hn::BitCast(integers, grey)), bytes, out);
}

// (blue + green + red) / 3.
void GreyRow(const unsigned char* pixels, std::size_t count, unsigned char* out) {
  std::size_t i = 0;
  for (; i + hn::Lanes(Pixels()) <= count; i += hn::Lanes(Pixels()))
    GreyStep(Pixels(), pixels + 4 * i, out + i);
  for (; i < count; ++i) GreyStep(Pixel(), pixels + 4 * i, out + i);
}

template <class Lanes>
HWY_INLINE void DrawStep(Lanes lanes, unsigned char* pixels, const unsigned char* strokes,
                         const std::int32_t* tones) {
  const hn::Repartition<std::uint8_t, Lanes> bytes;
  const hn::RebindToSigned<Lanes> integers;
  const auto old = LoadPixels(lanes, pixels);
  const auto tone = hn::GatherIndex(integers, tones, hn::BitCast(integers, Sum(lanes, old)));
  const auto stroke = hn::PromoteTo(lanes, hn::LoadU(hn::Rebind<std::uint8_t, Lanes>(), strokes));
  // The division by 255, exact up to 255 x 255.
  const auto value = hn::ShiftRight<23>(
      hn::Mul(hn::Mul(hn::BitCast(lanes, tone), stroke), hn::Set(lanes, 0x8081u)));
  const auto grey = hn::Mul(value, hn::Set(lanes, 0x010101u));
  const auto alpha = hn::And(old, hn::Set(lanes, 0xFF000000u));
  hn::StoreU(hn::BitCast(bytes, hn::Or(alpha, grey)), bytes, pixels);
}

// A row of pixels becomes tone x stroke / 255. @param tones by the sum of blue, green and red
void DrawRow(unsigned char* pixels, std::size_t count, const unsigned char* strokes,
             const std::int32_t* tones) {
  std::size_t i = 0;
  for (; i + hn::Lanes(Pixels()) <= count; i += hn::Lanes(Pixels()))
    DrawStep(Pixels(), pixels + 4 * i, strokes + i, tones);
  for (; i < count; ++i) DrawStep(Pixel(), pixels + 4 * i, strokes + i, tones);
}

// The root of the squares' sum; up to its limit it is exact but for a rounding that no truncation
// sees.
template <class Lanes>
HWY_INLINE void GradientStep(Lanes lanes, const unsigned char* top, const unsigned char* middle,
                             const unsigned char* bottom, unsigned char* out) {
  const hn::Rebind<std::uint8_t, Lanes> bytes;
  const hn::RebindToFloat<Lanes> reals;
  const auto load = [=](const unsigned char* at)
                        HWY_ATTR { return hn::PromoteTo(lanes, hn::LoadU(bytes, at)); };
  const auto twice = [](auto v) HWY_ATTR { return hn::Add(v, v); };
  const auto rising = hn::Sub(load(top), load(bottom + 2));
  const auto falling = hn::Sub(load(bottom), load(top + 2));
  const auto across = twice(hn::Sub(load(middle), load(middle + 2)));
  const auto down = twice(hn::Sub(load(top + 1), load(bottom + 1)));
  const auto gx = hn::ConvertTo(reals, hn::Add(hn::Add(rising, falling), across));
  const auto gy = hn::ConvertTo(reals, hn::Add(hn::Sub(rising, falling), down));
  const auto size = hn::Sqrt(hn::Add(hn::Mul(gx, gx), hn::Mul(gy, gy)));
  const auto limited = hn::Min(size, hn::Set(reals, 255.0f));
  hn::StoreU(hn::DemoteTo(bytes, hn::ConvertTo(lanes, limited)), bytes, out);
}

// @param top,middle,bottom rows with a sample more on each side
void GradientRow(const unsigned char* top, const unsigned char* middle, const unsigned char* bottom,
                 std::size_t count, unsigned char* out) {
  const hn::CappedTag<std::int32_t, 16> lanes;
  std::size_t i = 0;
  for (; i + hn::Lanes(lanes) <= count; i += hn::Lanes(lanes))
    GradientStep(lanes, top + i, middle + i, bottom + i, out + i);
  for (; i < count; ++i)
    GradientStep(hn::CappedTag<std::int32_t, 1>(), top + i, middle + i, bottom + i, out + i);
}

using Bytes = hn::CappedTag<std::uint8_t, 64>;
using Byte = hn::CappedTag<std::uint8_t, 1>;

// The direction of the greatest of eight responses, the first of equals; kNoDirection where all are
// 0. @param responses a plane of `pitch` samples for each direction
void BestDirections(const unsigned char* responses, std::size_t pitch, std::size_t count,
                    unsigned char* out) {
  const auto step = [=](auto lanes, std::size_t i) HWY_ATTR {
    auto best = hn::Zero(lanes), direction = hn::Set(lanes, kNoDirection);
    for (int k = 0; k < kDirections; ++k) {
      const auto response = hn::LoadU(lanes, responses + pitch * k + i);
      const auto greatest = hn::Max(best, response);
      const auto chosen = hn::Set(lanes, static_cast<unsigned char>(k));
      direction = hn::IfThenElse(hn::Eq(greatest, best), direction, chosen);
      best = greatest;
    }
    hn::StoreU(direction, lanes, out + i);
  };
  std::size_t i = 0;
  for (; i + hn::Lanes(Bytes()) <= count; i += hn::Lanes(Bytes())) step(Bytes(), i);
  for (; i < count; ++i) step(Byte(), i);
}

// The gradients of one direction, 0 elsewhere.
void PickDirection(const unsigned char* gradient, const unsigned char* directions,
                   unsigned char direction, std::size_t count, unsigned char* out) {
  const auto step = [=](auto lanes, std::size_t i) HWY_ATTR {
    const auto is = hn::Eq(hn::LoadU(lanes, directions + i), hn::Set(lanes, direction));
    hn::StoreU(hn::IfThenElseZero(is, hn::LoadU(lanes, gradient + i)), lanes, out + i);
  };
  std::size_t i = 0;
  for (; i + hn::Lanes(Bytes()) <= count; i += hn::Lanes(Bytes())) step(Bytes(), i);
  for (; i < count; ++i) step(Byte(), i);
}

// 255 - half of the sum over all directions, which is held to 255 first.
void DarkenPaper(const unsigned char* lines, std::size_t pitch, std::size_t count,
                 unsigned char* out) {
  std::size_t i = 0;
  const auto step = [=](auto lanes, std::size_t at) HWY_ATTR {
    auto sum = hn::LoadU(lanes, lines + at);
    for (int k = 1; k < kDirections; ++k)
      sum = hn::SaturatedAdd(sum, hn::LoadU(lanes, lines + pitch * k + at));
    // Half of it, rounded up, is what the average with 0 gives.
    const auto rest = hn::Sub(sum, hn::AverageRound(sum, hn::Zero(lanes)));
    hn::StoreU(hn::Sub(hn::Set(lanes, 255), rest), lanes, out + at);
  };
  for (; i + hn::Lanes(Bytes()) <= count; i += hn::Lanes(Bytes())) step(Bytes(), i);
  for (; i < count; ++i) step(Byte(), i);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <numeric>
#include <vector>

#include "filters/plane_scaler.h"
#include "frame/material.h"
#include "frame/parallel.h"
#include "portrait/line_response.h"

namespace tintwerk {
namespace {

HWY_EXPORT(GreyRow);
HWY_EXPORT(DrawRow);
HWY_EXPORT(GradientRow);
HWY_EXPORT(BestDirections);
HWY_EXPORT(PickDirection);
HWY_EXPORT(DarkenPaper);

constexpr float kWorkingSide = 800;
constexpr int kSums = 3 * 255 + 1;  // values of blue + green + red

int Workers(int height) {
  return std::min(height, omp_get_max_threads());
}

// Runs body(worker, from, to) for a band of rows each.
template <class Body>
void ForEachBand(int height, const Body& body) {
  const int workers = Workers(height);
  ParallelFor(workers, [&body, height, workers](std::int64_t worker) {
    body(worker, static_cast<int>(std::int64_t{height} * worker / workers),
         static_cast<int>(std::int64_t{height} * (worker + 1) / workers));
  });
}

PixelMemory AllocatePlanes(std::size_t bytes) {
  PixelMemory planes = AllocatePixels(bytes);
  if (!planes) throw std::bad_alloc();
  return planes;
}

// Where a sample has no direction, the one before it has its own; the first of all has 0.
void FillDirections(unsigned char* directions, std::size_t count) {
  unsigned char previous = 0;
  for (std::size_t i = 0; i < count; ++i)
    directions[i] = previous = directions[i] == kNoDirection ? previous : directions[i];
}

// How often each sum of blue, green and red occurs.
std::vector<std::int64_t> CountSums(const unsigned char* pixels, int width, int height) {
  // Neighbours often have the same sum, so they count apart.
  constexpr int kCounters = 4;
  std::vector<std::uint32_t> counts(std::size_t{kCounters} * kSums * Workers(height));
  ForEachBand(height, [&](std::int64_t worker, int from, int to) {
    std::uint32_t* const own = &counts[kCounters * kSums * worker];
    const unsigned char* pixel = pixels + std::size_t{4} * width * from;
    const std::int64_t count = std::int64_t{width} * (to - from);
    for (std::int64_t i = 0; i < count; ++i, pixel += 4)
      ++own[kSums * (i % kCounters) + pixel[0] + pixel[1] + pixel[2]];
  });
  std::vector<std::int64_t> sums(kSums);
  for (std::size_t i = 0; i < counts.size(); ++i) sums[i % kSums] += counts[i];
  return sums;
}

// The grey plane of an image, at another size.
void ShrinkGreys(const unsigned char* pixels, int width, int height, int newWidth, int newHeight,
                 unsigned char* result) {
  const PlaneScaler scaler(width, height, newWidth, newHeight);
  const std::size_t scratch = scaler.ScratchSize();
  std::vector<float> blended(scratch * Workers(newHeight));
  std::vector<unsigned char> greys(std::size_t{2} * width * Workers(newHeight));
  ForEachBand(newHeight, [&](std::int64_t worker, int from, int to) {
    unsigned char* const upper = &greys[std::size_t{2} * width * worker];
    unsigned char* const lower = upper + width;
    for (int y = from; y < to; ++y) {
      const auto row = [&](int at) { return pixels + std::size_t{4} * width * at; };
      HWY_DYNAMIC_DISPATCH(GreyRow)(row(scaler.Upper(y)), width, upper);
      HWY_DYNAMIC_DISPATCH(GreyRow)(row(scaler.Lower(y)), width, lower);
      scaler.ScaleRow(y, upper, lower, &blended[scratch * worker],
                      result + std::size_t(newWidth) * y);
    }
  });
}

// The strokes of an image, at their working size.
struct Strokes {
  Strokes(const unsigned char* pixels, int imageWidth, int imageHeight, int lineHalfLength) {
    const float scale = kWorkingSide / static_cast<float>(std::max(imageWidth, imageHeight));
    width = static_cast<int>(static_cast<float>(imageWidth) * scale);
    height = static_cast<int>(static_cast<float>(imageHeight) * scale);
    if (width < 1 || height < 1) {  // too thin to be drawn: bare paper
      width = height = 1;
      plane.assign(1, 255);
      return;
    }
    plane.resize(std::size_t(width) * height);
    ShrinkGreys(pixels, imageWidth, imageHeight, width, height, plane.data());
    const PixelMemory gradient = AllocatePlanes(plane.size());
    BrushSketchEngine::GradientMap(plane.data(), width, height, gradient.get());
    BrushSketchEngine::StrokeMap(gradient.get(), width, height, plane.data(), lineHalfLength);
  }

  int width;
  int height;
  std::vector<unsigned char> plane;
};

}  // namespace

void BrushSketchEngine::GradientMap(const unsigned char* plane, int width, int height,
                                    unsigned char* result) {
  const std::size_t padded = std::size_t(width) + 2;
  std::vector<unsigned char> scratch(3 * padded * Workers(height));
  ForEachBand(height, [&](std::int64_t worker, int from, int to) {
    unsigned char* const rows = &scratch[3 * padded * worker];
    const auto load = [&](int y) {  // with its ends repeated
      const unsigned char* const row = plane + std::size_t(width) * std::clamp(y, 0, height - 1);
      unsigned char* const out = rows + padded * ((y + 3) % 3);
      out[0] = row[0];
      std::memcpy(out + 1, row, width);
      out[width + 1] = row[width - 1];
    };
    load(from - 1);
    load(from);
    for (int y = from; y < to; ++y) {
      load(y + 1);
      HWY_DYNAMIC_DISPATCH(GradientRow)
      (rows + padded * ((y + 2) % 3), rows + padded * (y % 3), rows + padded * ((y + 1) % 3), width,
       result + std::size_t(width) * y);
    }
  });
}

void BrushSketchEngine::StrokeMap(const unsigned char* gradient, int width, int height,
                                  unsigned char* result, int lineHalfLength) {
  const std::size_t count = std::size_t(width) * height;
  const int workers = std::min(kDirections, omp_get_max_threads());
  std::vector<LineResponses> lines;
  for (int worker = 0; worker < workers; ++worker)
    lines.emplace_back(width, height, lineHalfLength);
  const PixelMemory planes = AllocatePlanes(kDirections * count);
  const PixelMemory directions = AllocatePlanes(count);
  const PixelMemory edges = AllocatePlanes(workers * count);  // of one direction
  const auto forEachDirection = [&](const auto& body) {
    ParallelFor(workers, [&](std::int64_t worker) {
      for (std::int64_t k = kDirections * worker / workers;
           k < kDirections * (worker + 1) / workers; ++k)
        body(static_cast<int>(k), planes.get() + count * k, worker);
    });
  };
  const auto respond = [&](const unsigned char* source, unsigned char* plane, int k,
                           std::int64_t worker) {
    if (k % 2 == 0)
      lines[worker].LineResponse(source, plane, k);
    else
      lines[worker].SkewedLineResponse(source, plane, k);
  };

  forEachDirection([&](int k, unsigned char* plane, std::int64_t worker) {
    if (k % 2 == 0) std::memset(plane, 0, count);  // what is too close to an edge stays
    respond(gradient, plane, k, worker);
  });
  ForEachBand(height, [&](std::int64_t, int from, int to) {
    const std::size_t at = std::size_t(width) * from, n = std::size_t(width) * (to - from);
    HWY_DYNAMIC_DISPATCH(BestDirections)(planes.get() + at, count, n, directions.get() + at);
  });
  FillDirections(directions.get(), count);
  forEachDirection([&](int k, unsigned char* plane, std::int64_t worker) {
    unsigned char* const own = edges.get() + count * worker;
    HWY_DYNAMIC_DISPATCH(PickDirection)
    (gradient, directions.get(), static_cast<unsigned char>(k), count, own);
    if (k % 2 == 0) std::memcpy(plane, own, count);
    respond(own, plane, k, worker);
  });
  ForEachBand(height, [&](std::int64_t, int from, int to) {
    const std::size_t at = std::size_t(width) * from, n = std::size_t(width) * (to - from);
    HWY_DYNAMIC_DISPATCH(DarkenPaper)(planes.get() + at, count, n, result + at);
  });
}

BrushSketchEngine::Histogram BrushSketchEngine::ToneHistogram(const std::int64_t (&counts)[256],
                                                              int width, int height) {
  Histogram histogram;
  for (int i = 0; i < 256; ++i)
    histogram[i] = static_cast<float>(std::min<std::int64_t>(counts[i], 1 << 24)) /
                   static_cast<float>(width * height);
  return histogram;
}

BrushSketchEngine::Bands BrushSketchEngine::ToneBands(const Histogram& tones) {
  const auto sum = [&](int from, int to) {
    return std::accumulate(tones.begin() + from, tones.begin() + to, 0.0f);
  };
  return {sum(0, 68), sum(68, 192), sum(192, 256)};
}

BrushSketchEngine::Histogram BrushSketchEngine::ToneModel(const Bands& bands) {
  const auto weight = [](float share, float factor) {
    return std::clamp(share * factor, 0.5f, 2.0f);
  };
  const float bright = weight(bands.bright, 5), middle = weight(bands.middle, 10),
              dark = weight(bands.dark, 20);
  Histogram model;
  float sum = 0;
  for (int i = 0; i < 256; ++i) {
    const double paper = std::exp((255 - i) / -15.0);
    const double peak = std::exp(-double((i - 70) * (i - 70)) / 242.0);
    const float even = middle * 20.0f * (i >= 85 && i <= 235 ? 0.006666667f : 0.0f);
    model[i] = static_cast<float>(
        (paper * (bright / 15.0) * 76 + even + peak * (dark / std::sqrt(69.11504364013672)) * 4) *
        0.01);
    sum += model[i];
  }
  for (float& share : model) share /= sum;
  return model;
}

ToneTable BrushSketchEngine::MatchTone(const Histogram& source, const Histogram& target) {
  Histogram below;  // shares up to each value
  std::partial_sum(target.begin(), target.end(), below.begin());
  ToneTable table;
  table.fill(255);
  float sum = 0;
  for (int i = 0, j = 0; i < 256 && j < 255; ++i) {
    sum += source[i];
    // Upward as long as the distance does not grow.
    for (float best = 1; j < 256; ++j) {
      const float distance = std::fabs(sum - below[j]);
      if (distance - best >= 1e-8f) break;
      best = distance;
    }
    j = std::max(j - 1, 0);
    table[i] = static_cast<unsigned char>(j);
  }
  for (int i = 1; i < 256; ++i)
    table[i] = static_cast<unsigned char>(std::min<int>(table[i], table[i - 1] + 5));
  return table;
}

bool BrushSketchEngine::Render(unsigned char* pixels, int width, int height,
                               int lineHalfLength) try {
  const auto count = PixelCount(width, height);
  if (!pixels || !count || lineHalfLength < 0 || lineHalfLength > LineResponses::kMaxHalfLength)
    return false;
  if (*count == 0) return true;

  const std::vector<std::int64_t> sums = CountSums(pixels, width, height);
  std::int64_t greys[256];
  for (int grey = 0; grey < 256; ++grey)
    greys[grey] =
        sums[3 * grey] + (grey < 255 ? sums[3 * grey + 1] + sums[3 * grey + 2] : std::int64_t{0});
  const Histogram tones = ToneHistogram(greys, width, height);
  const ToneTable table = MatchTone(tones, ToneModel(ToneBands(tones)));
  std::vector<std::int32_t> toneOfSum(kSums);
  for (int sum = 0; sum < kSums; ++sum) toneOfSum[sum] = table[sum / 3];

  const Strokes strokes(pixels, width, height, lineHalfLength);
  const PlaneScaler scaler(strokes.width, strokes.height, width, height);
  const std::size_t scratch = scaler.ScratchSize();
  std::vector<float> blended(scratch * Workers(height));
  std::vector<unsigned char> stretched(std::size_t(width) * Workers(height));
  ForEachBand(height, [&](std::int64_t worker, int from, int to) {
    unsigned char* const row = &stretched[std::size_t(width) * worker];
    const auto stroke = [&](int y) {
      return strokes.plane.data() + std::size_t(strokes.width) * y;
    };
    for (int y = from; y < to; ++y) {
      scaler.ScaleRow(y, stroke(scaler.Upper(y)), stroke(scaler.Lower(y)),
                      &blended[scratch * worker], row);
      HWY_DYNAMIC_DISPATCH(DrawRow)
      (pixels + std::size_t{4} * width * y, width, row, toneOfSum.data());
    }
  });
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace tintwerk
#endif

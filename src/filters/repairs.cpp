// Repairs: channels are stretched against haze, and red eyes lose their red.
#include <omp.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "frame/image.h"
#include "frame/parallel.h"
#include "pixel/tone_curve.h"
#include "pixel/truncate.h"
#include "tintwerk/math_define.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

// The samples of a channel lie 4 bytes apart.
using Histogram = std::array<std::uint64_t, 256>;

Histogram CountValues(const unsigned char* channel, std::uint64_t count) {
  // Neighbours are often equal: counters of their own save them the wait for one another.
  std::array<Histogram, 4> parts = {};
  std::uint64_t i = 0;
  for (; i + 4 <= count; i += 4)
    for (std::uint64_t k = 0; k < 4; ++k) ++parts[k][channel[4 * (i + k)]];
  for (; i < count; ++i) ++parts[0][channel[4 * i]];
  for (int value = 0; value < 256; ++value)
    for (int k = 1; k < 4; ++k) parts[0][value] += parts[k][value];
  return parts[0];
}

struct Range {
  unsigned char min;
  unsigned char max;
};

Range PlainRange(const Histogram& histogram) {
  Range range{255, 0};
  for (int value = 255; value >= 0; --value)
    if (histogram[value]) range.min = static_cast<unsigned char>(value);
  for (int value = 0; value < 256; ++value)
    if (histogram[value]) range.max = static_cast<unsigned char>(value);
  return range;
}

// Clips that leave nothing both become a little less than half of the samples.
void LimitClips(std::uint64_t count, std::uint64_t& clipLow, std::uint64_t& clipHigh) {
  if (clipLow + clipHigh >= count) clipLow = clipHigh = (count - 1) >> 1;
}

Range ClippedRange(Histogram total, std::uint64_t count, std::uint64_t clipLow,
                   std::uint64_t clipHigh) {
  LimitClips(count, clipLow, clipHigh);
  for (int value = 1; value < 256; ++value) total[value] += total[value - 1];
  int min = 0, max = 255;
  while (min < 255 && total[min] <= clipLow) ++min;
  while (max >= 0 && total[max] > count - clipHigh) --max;
  return {static_cast<unsigned char>(min), static_cast<unsigned char>(std::min(max + 1, 255))};
}

// The table that stretches a channel to low..high.
ToneTable StretchTable(const unsigned char* channel, std::uint64_t count, unsigned char low,
                       unsigned char high, std::uint64_t clipLow, std::uint64_t clipHigh) {
  ToneTable table;
  table.fill(static_cast<unsigned char>((low + high) >> 1));
  if (low == high) return table;
  LimitClips(count, clipLow, clipHigh);
  const Histogram histogram = CountValues(channel, count);
  const auto [min, max] = clipLow == 0 && clipHigh == 0
                              ? PlainRange(histogram)
                              : ClippedRange(histogram, count, clipLow, clipHigh);
  if (max <= min) return table;
  const float scale = static_cast<float>(high - low) / static_cast<float>(max - min);
  for (int i = 0; i < 256; ++i)
    table[i] = i < min ? low
               : i >= max
                   ? high
                   : TruncateToByte(static_cast<float>(i - min) * scale + static_cast<float>(low));
  return table;
}

}  // namespace
}  // namespace tintwerk

int CPixelProcess::minmax_u8(const unsigned char* channel, std::uint64_t count, unsigned char* min,
                             unsigned char* max) {
  if (!channel) return 0;
  const auto range = tintwerk::PlainRange(tintwerk::CountValues(channel, count));
  if (min) *min = range.min;
  if (max) *max = range.max;
  return 1;
}

int CPixelProcess::minmax_histo_u8(const unsigned char* channel, std::uint64_t count,
                                   std::uint64_t clipLow, std::uint64_t clipHigh,
                                   unsigned char* min, unsigned char* max) {
  if (!channel) return 0;
  const auto range =
      tintwerk::ClippedRange(tintwerk::CountValues(channel, count), count, clipLow, clipHigh);
  if (min) *min = range.min;
  if (max) *max = range.max;
  return 1;
}

int CPixelProcess::normalize_histo_u8(unsigned char* channel, std::uint64_t count,
                                      unsigned char low, unsigned char high, std::uint64_t clipLow,
                                      std::uint64_t clipHigh) {
  if (!channel) return 0;
  const tintwerk::ToneTable table =
      tintwerk::StretchTable(channel, count, low, high, clipLow, clipHigh);
  for (std::uint64_t i = 0; i < count; ++i) channel[4 * i] = table[channel[4 * i]];
  return low != high;
}

int CPixelProcess::Dehazing(unsigned char* pixels, int width, int height, CObjProgress*, int, int) {
  using namespace tintwerk;
  if (!IsWorkable(pixels, width, height)) return 0;
  const int count = *PixelCount(width, height);
  const auto clip = static_cast<std::uint64_t>(static_cast<float>(count) * 0.005f);
  // The channels are counted side by side, but rewritten together: their bytes share cache lines.
  ToneTables tables;
  const auto stretch = [&](int channel) {
    return StretchTable(pixels + channel, count, 0, 255, clip, clip);
  };
  // Three threads, unless the host keeps its calls to one.
#pragma omp parallel sections num_threads(omp_get_max_threads() > 1 ? 3 : 1)
  {
#pragma omp section
    tables.red = stretch(2);
#pragma omp section
    tables.green = stretch(1);
#pragma omp section
    tables.blue = stretch(0);
  }
  RunTables(pixels, width, height, tables);
  return 1;
}

int CPixelProcess::RedEyeRemove(unsigned char* pixels, int width, int height, const tagRECT& rect) {
  using namespace tintwerk;
  if (!IsWorkable(pixels, width, height)) return 0;
  const std::int64_t rw = std::int64_t{rect.right} - rect.left;
  const std::int64_t rh = std::int64_t{rect.bottom} - rect.top;
  const tagRECT image{0, 0, width, height};
  tagRECT part;
  if (rw == 0 || rh == 0 || !CMathDefine::InsertsectRect(&part, &rect, &image)) return 0;
  if (part.left == part.right || part.top == part.bottom) return 0;  // it only touches the image

  const float cx = static_cast<float>(std::int64_t{rect.left} + rect.right) * 0.5f;
  const float cy = static_cast<float>(std::int64_t{rect.top} + rect.bottom) * 0.5f;
  const auto area = static_cast<float>(std::uint64_t(rw) * std::uint64_t(rh));
  ParallelFor(part.bottom - part.top, [=](std::int64_t row) {
    const std::int64_t y = part.top + row;
    const float dy = static_cast<float>(y) - cy;
    for (int x = part.left; x < part.right; ++x) {
      unsigned char* const pixel = pixels + 4 * (y * width + x);
      const float dx = static_cast<float>(x) - cx;
      const float t = std::max(1.0f - (dx * dx + dy * dy) * 5.0f / area, 0.0f);
      pixel[2] = TruncateToByte(static_cast<float>(std::min(pixel[0], pixel[1])) * t +
                                (1.0f - t) * static_cast<float>(pixel[2]));
    }
  });
  return 1;
}

// The running maximum: dilation by a square, of three channels or of one.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/running_maximum.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// out[i] = max(a[i], b[i]). `out` may be `a` or `b`, or either may start ahead of it.
HWY_INLINE void Max(const unsigned char* a, const unsigned char* b, std::size_t count,
                    unsigned char* out) {
  const hn::CappedTag<std::uint8_t, 64> lanes;
  const hn::CappedTag<std::uint8_t, 1> single;
  std::size_t i = 0;
  for (; i + hn::Lanes(lanes) <= count; i += hn::Lanes(lanes))
    hn::StoreU(hn::Max(hn::LoadU(lanes, a + i), hn::LoadU(lanes, b + i)), lanes, out + i);
  for (; i < count; ++i)
    hn::StoreU(hn::Max(hn::LoadU(single, a + i), hn::LoadU(single, b + i)), single, out + i);
}

// running = max(running, next), out = max(running, rest).
HWY_INLINE void MaxThrough(const unsigned char* next, const unsigned char* rest, std::size_t count,
                           unsigned char* running, unsigned char* out) {
  const hn::CappedTag<std::uint8_t, 64> lanes;
  const hn::CappedTag<std::uint8_t, 1> single;
  std::size_t i = 0;
  for (; i + hn::Lanes(lanes) <= count; i += hn::Lanes(lanes)) {
    const auto max = hn::Max(hn::LoadU(lanes, next + i), hn::LoadU(lanes, running + i));
    hn::StoreU(max, lanes, running + i);
    hn::StoreU(hn::Max(max, hn::LoadU(lanes, rest + i)), lanes, out + i);
  }
  for (; i < count; ++i) {
    const auto max = hn::Max(hn::LoadU(single, next + i), hn::LoadU(single, running + i));
    hn::StoreU(max, single, running + i);
    hn::StoreU(hn::Max(max, hn::LoadU(single, rest + i)), single, out + i);
  }
}

// Copies blue, green and red; may write 4 bytes too many.
void DropAlpha(const unsigned char* pixels, std::size_t count, unsigned char* out) {
  const hn::FixedTag<std::uint8_t, 16> bytes;
  constexpr std::uint8_t kColours[16] = {0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 3, 3, 3, 3};
  const auto colours = hn::LoadU(bytes, kColours);
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4)
    hn::StoreU(hn::TableLookupBytes(hn::LoadU(bytes, pixels + 4 * i), colours), bytes, out + 3 * i);
  for (; i < count; ++i) std::memcpy(out + 3 * i, pixels + 4 * i, 3);
}

// out[i] = the maximum of the `window` samples of a line from sample i on; samples are `step` bytes
// and `count` is in bytes. Windows are doubled until two of them cover the one that is wanted:
// twelve sweeps at the most, all in the nearest cache and a vector at once, are faster than two
// scans that depend on their neighbour. Overwrites the line.
void MaxWindows(unsigned char* line, std::size_t count, std::size_t step, std::int64_t window,
                unsigned char* out) {
  std::int64_t have = 1;
  for (; 2 * have < window; have *= 2)
    Max(line, line + have * step, count + (window - 2 * have) * step, line);
  Max(line, line + (window - have) * step, count, out);
}

// The columns of a strip `strip` bytes wide, in place, by two scans: `running` goes down the rows
// and starts anew at every block of 2 x radius + 1 of them, `rest` of a row is the maximum from
// there to the block's last row.
// @param scratch 1 + 2 x min(2 x radius + 1, height) rows of the strip
void MaxColumns(unsigned char* pixels, std::size_t rowBytes, std::size_t strip, std::int64_t height,
                std::int64_t radius, unsigned char* scratch) {
  const std::int64_t block = 2 * radius + 1;
  unsigned char* const running = scratch;
  unsigned char* const rests[] = {scratch + strip, scratch + strip * (1 + std::min(block, height))};
  const auto row = [=](std::int64_t y) { return pixels + rowBytes * y; };
  const auto rest = [=](std::int64_t y) { return rests[y / block % 2] + strip * (y % block); };
  for (std::int64_t y = 0; y < height; ++y) {
    // No output has reached this block yet: the rows that it is made of stand there as they were.
    if (y % block == 0) {
      const std::int64_t last = std::min(y + block, height) - 1;
      std::memcpy(rest(last), row(last), strip);
      for (std::int64_t i = last - 1; i >= y; --i) Max(row(i), rest(i + 1), strip, rest(i));
      std::memset(running, 0, strip);
    }
    if (y >= 2 * radius)
      MaxThrough(row(y), rest(y - 2 * radius), strip, running, row(y - radius));
    else
      Max(row(y), running, strip, running);
    if (radius <= y && y < 2 * radius) std::memcpy(row(y - radius), running, strip);
  }
  for (std::int64_t y = std::max<std::int64_t>(height - radius, 0); y < height; ++y)
    std::memcpy(row(y), y < radius ? running : rest(y - radius), strip);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include "frame/image.h"
#include "frame/parallel.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

HWY_EXPORT(DropAlpha);
HWY_EXPORT(MaxWindows);
HWY_EXPORT(MaxColumns);

// Near the end of a line the window ends with the block that holds its first sample, where that is
// not the last block.
// @param pixels the first byte in question of the line's first pixel
void EndWindowsWithTheirBlock(const unsigned char* pixels, int channels, int width, int radius,
                              unsigned char* out) {
  const std::int64_t block = std::int64_t{2} * radius + 1;
  const std::int64_t lastBlock = (width - 1) / block * block;
  const std::int64_t first = std::max<std::int64_t>(width - 2 * std::int64_t{radius}, 0);
  for (int c = 0; c < channels; ++c) {
    unsigned char max = 0;
    for (std::int64_t x = lastBlock - 1; x >= first; --x) {
      max = std::max(max, pixels[4 * x + c]);
      if (x + radius < width) out[channels * (x + radius) + c] = max;
    }
  }
}

// The rows of an image into a buffer of `channels` bytes a pixel, 1 or 3.
// @return false if allocation fails
bool MaxRows(const unsigned char* pixels, int channels, int radius, int width, int height,
             unsigned char* out) {
  if (width <= 0 || height <= 0) return true;
  radius = std::clamp(radius, 0, width - 1);
  const int bands = std::min(height, omp_get_max_threads());
  // A line with nothing but black beyond its ends, and what DropAlpha writes too many.
  const std::size_t margin = std::size_t(channels) * radius;
  const std::size_t samples = std::size_t(channels) * width;
  const std::size_t size = margin + samples + std::max<std::size_t>(margin, 4);
  const PixelMemory scratch = AllocatePixels(size * bands);
  if (!scratch) return false;
  unsigned char* const lines = scratch.get();
  ParallelFor(bands, [=](std::int64_t band) {
    unsigned char* const line = lines + size * band;
    for (std::int64_t y = height * band / bands; y < height * (band + 1) / bands; ++y) {
      const unsigned char* const row = pixels + std::int64_t{4} * width * y;
      if (channels == 3)
        HWY_DYNAMIC_DISPATCH(DropAlpha)(row, width, line + margin);
      else
        for (int x = 0; x < width; ++x) line[margin + x] = row[std::int64_t{4} * x];
      std::memset(line, 0, margin);
      std::memset(line + margin + samples, 0, size - margin - samples);
      unsigned char* const outRow = out + samples * y;
      HWY_DYNAMIC_DISPATCH(MaxWindows)
      (line, samples, channels, std::int64_t{2} * radius + 1, outRow);
      EndWindowsWithTheirBlock(row, channels, width, radius, outRow);
    }
  });
  return true;
}

// The columns of a buffer, in place, in strips whose scratch lines stay in the cache.
bool MaxColumnStrips(unsigned char* pixels, int radius, std::size_t rowBytes, int height) {
  if (rowBytes == 0 || height <= 0) return true;
  radius = std::clamp(radius, 0, height - 1);
  if (radius == 0) return true;
  const std::size_t threads = omp_get_max_threads();
  const std::size_t lines = 1 + 2 * std::min<std::size_t>(2 * std::size_t(radius) + 1, height);
  constexpr std::size_t kScratch = 192 << 10, kLine = 64;  // bytes
  const std::size_t share = (rowBytes + threads - 1) / threads;
  const std::size_t strip =
      std::max(std::min(kScratch / lines, share + kLine - 1) / kLine * kLine, kLine);
  const std::size_t strips = (rowBytes + strip - 1) / strip;
  const std::size_t bands = std::min(threads, strips);
  const PixelMemory scratch = AllocatePixels(bands * strip * lines);
  if (!scratch) return false;
  unsigned char* const own = scratch.get();
  ParallelFor(bands, [=](std::int64_t band) {
    for (std::size_t i = strips * band / bands; i < strips * (band + 1) / bands; ++i)
      HWY_DYNAMIC_DISPATCH(MaxColumns)
    (pixels + strip * i, rowBytes, std::min(strip, rowBytes - strip * i), height, radius,
     own + strip * lines * band);
  });
  return true;
}

}  // namespace
}  // namespace tintwerk

unsigned char* CPixelProcess::BoxHorizonPath(const unsigned char* pixels, int radius, int width,
                                             int height) {
  if (!tintwerk::IsWorkable(pixels, width, height)) return nullptr;
  const int count = *tintwerk::PixelCount(width, height);
  tintwerk::PixelMemory out = tintwerk::AllocatePixels(std::size_t{3} * count);
  if (!out || !tintwerk::MaxRows(pixels, 3, radius, width, height, out.get())) return nullptr;
  return out.release();
}

void CPixelProcess::BoxVerticalPath(unsigned char* buffer, int radius, int width, int height) {
  if (!tintwerk::IsWorkable(buffer, width, height)) return;
  tintwerk::MaxColumnStrips(buffer, radius, std::size_t{3} * std::max(width, 0), height);
}

unsigned char* CPixelProcess::BoxMaxFilters(const unsigned char* pixels, int width, int height,
                                            int radius) {
  tintwerk::PixelMemory out(BoxHorizonPath(pixels, radius, width, height));
  if (!out ||
      !tintwerk::MaxColumnStrips(out.get(), radius, std::size_t{3} * std::max(width, 0), height))
    return nullptr;
  return out.release();
}

unsigned char* CPixelProcess::BoxMaxFilter(const unsigned char* pixels, int width, int height,
                                           int radius, int channel) {
  if (!tintwerk::IsWorkable(pixels, width, height) || channel < 0 || channel > 3) return nullptr;
  tintwerk::PixelMemory out = tintwerk::AllocatePixels(*tintwerk::PixelCount(width, height));
  if (!out || !tintwerk::MaxRows(pixels + channel, 1, radius, width, height, out.get()) ||
      !tintwerk::MaxColumnStrips(out.get(), radius, std::max(width, 0), height))
    return nullptr;
  return out.release();
}
#endif

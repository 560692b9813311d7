// The running maximum: dilation by a square, of three channels or of one.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/running_maximum.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifndef TINTWERK_RUNNING_MAXIMUM_TYPES
#define TINTWERK_RUNNING_MAXIMUM_TYPES
namespace tintwerk {
namespace {

// An image whose rows are to be dilated.
struct Rows {
  const unsigned char* pixels;  // the first byte in question of the first pixel
  std::size_t channels;         // 1, or 3: blue, green and red
  std::int64_t width;
  std::int64_t radius;  // 0..width - 1

  std::size_t Margin() const { return channels * radius; }
  // Bytes that some pixels take with a margin on both sides, and what DropAlpha writes too many.
  std::size_t LineSize(std::size_t count) const { return 2 * Margin() + channels * count + 4; }
};

}  // namespace
}  // namespace tintwerk
#endif

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

// Near the end of a row the window ends with the block that holds its first sample, where that is
// not the last block.
// @param row the first byte in question of the row's first pixel
// @param out the maxima of the pixels from `left` to before `right`
void EndWindowsWithTheirBlock(const Rows& rows, const unsigned char* row, std::int64_t left,
                              std::int64_t right, unsigned char* out) {
  const std::int64_t lastBlock = (rows.width - 1) / (2 * rows.radius + 1) * (2 * rows.radius + 1);
  const std::int64_t first = std::max<std::int64_t>(rows.width - 2 * rows.radius, 0);
  if (right <= first + rows.radius) return;
  for (std::size_t c = 0; c < rows.channels; ++c) {
    unsigned char max = 0;
    for (std::int64_t x = lastBlock - 1; x >= first; --x) {
      max = std::max(max, row[4 * x + c]);
      if (left <= x + rows.radius && x + rows.radius < right)
        out[rows.channels * (x + rows.radius - left) + c] = max;
    }
  }
}

// The maxima of a part of row y.
// @param line room for LineSize(count) bytes
void MaxRow(const Rows& rows, std::int64_t y, std::int64_t left, std::int64_t count,
            unsigned char* line, unsigned char* out) {
  const unsigned char* const row = rows.pixels + 4 * rows.width * y;
  const std::int64_t from = std::max<std::int64_t>(left - rows.radius, 0);
  const std::int64_t to = std::min(left + count + rows.radius, rows.width);
  // Beyond the row's ends all is black.
  const std::size_t before = rows.channels * (from - (left - rows.radius));
  const std::size_t taken = rows.channels * (to - from);
  std::memset(line, 0, before);
  if (rows.channels == 3)
    DropAlpha(row + 4 * from, to - from, line + before);
  else
    for (std::int64_t x = from; x < to; ++x) line[before + x - from] = row[4 * x];
  std::memset(line + before + taken, 0, rows.LineSize(count) - before - taken);
  MaxWindows(line, rows.channels * count, rows.channels, 2 * rows.radius + 1, out);
  EndWindowsWithTheirBlock(rows, row, left, left + count, out);
}

// The columns of a strip `strip` bytes wide by two scans: `running` goes down the rows and starts
// anew at every block of 2 x radius + 1 of them, `rest` of a row is the maximum from there to the
// block's last row.
// @param source  what the strip's rows are made from, a block at a time; null if they stand in
//                `pixels` already
// @param left    where in the source the strip begins, in bytes of the result
// @param begin   the first row that is looked at, of a block; but for the first block, results begin
//                `radius` rows later
// @param end     before which row it ends; but for the last row, results end `radius` rows earlier
// @param scratch 1 + 3 x min(2 x radius + 1, height) rows of the strip, then a line of the source
void MaxColumns(const Rows* source, std::size_t left, unsigned char* pixels, std::size_t rowBytes,
                std::size_t strip, std::int64_t height, std::int64_t radius, std::int64_t begin,
                std::int64_t end, unsigned char* scratch) {
  const std::int64_t block = 2 * radius + 1, lines = std::min(block, height);
  unsigned char* const running = scratch;
  unsigned char* const rests[] = {scratch + strip, scratch + strip * (1 + lines)};
  unsigned char* const made = scratch + strip * (1 + 2 * lines);
  unsigned char* const sourceLine = made + strip * lines;
  const auto out = [=](std::int64_t y) { return pixels + rowBytes * y; };
  // Where they stand in `pixels`, no output has reached their block yet.
  const auto row = [=](std::int64_t y) { return source ? made + strip * (y % block) : out(y); };
  const auto rest = [=](std::int64_t y) { return rests[y / block % 2] + strip * (y % block); };
  for (std::int64_t y = begin; y < end; ++y) {
    if (y % block == 0) {
      const std::int64_t last = std::min(y + block, height) - 1;
      for (std::int64_t i = y; source && i <= last; ++i)
        MaxRow(*source, i, left / source->channels, strip / source->channels, sourceLine, row(i));
      std::memcpy(rest(last), row(last), strip);
      for (std::int64_t i = last - 1; i >= y; --i) Max(row(i), rest(i + 1), strip, rest(i));
      std::memset(running, 0, strip);
    }
    if (y >= begin + 2 * radius)
      MaxThrough(row(y), rest(y - 2 * radius), strip, running, out(y - radius));
    else
      Max(row(y), running, strip, running);
    if (radius <= y && y < 2 * radius) std::memcpy(out(y - radius), running, strip);
  }
  if (end < height) return;
  for (std::int64_t y = std::max<std::int64_t>(height - radius, 0); y < height; ++y)
    std::memcpy(out(y), y < radius ? running : rest(y - radius), strip);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <utility>

#include "frame/image.h"
#include "frame/parallel.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

HWY_EXPORT(MaxRow);
HWY_EXPORT(MaxColumns);

// The rows of an image into a buffer of `channels` bytes a pixel.
// @return false if allocation fails
bool MaxRows(const Rows& rows, int height, unsigned char* out) {
  const int bands = std::min(height, omp_get_max_threads());
  const std::size_t size = rows.LineSize(rows.width);
  const PixelMemory scratch = AllocatePixels(size * bands);
  if (!scratch) return false;
  unsigned char* const lines = scratch.get();
  ParallelFor(bands, [=](std::int64_t band) {
    for (std::int64_t y = height * band / bands; y < height * (band + 1) / bands; ++y)
      HWY_DYNAMIC_DISPATCH(MaxRow)
    (rows, y, 0, rows.width, lines + size * band, out + rows.channels * rows.width * y);
  });
  return true;
}

// The columns of a buffer, in strips whose scratch lines stay in the cache.
struct Columns {
  Columns(int r, std::size_t channels, int width, int h)
      : radius(std::clamp(r, 0, h - 1)),
        block(2 * radius + 1),
        lines(1 + 3 * std::min<std::size_t>(block, h)),
        rowBytes(channels * width),
        height(h) {
    const std::size_t line = 64 * channels;  // whole cache lines of whole pixels
    const std::size_t share = (rowBytes + omp_get_max_threads() - 1) / omp_get_max_threads();
    strip = std::max(std::min(kScratch / lines, share + line - 1) / line * line, line);
  }

  // @param source what the buffer is made from on the way, in bands of rows; null for in place
  // @return false if allocation fails
  bool Run(const Rows* source, unsigned char* pixels) const {
    const std::int64_t strips = (rowBytes + strip - 1) / strip, blocks = height / block;
    // Bands do a block again; in place they would take each other's rows.
    const std::int64_t bands =
        source ? std::clamp<std::int64_t>(blocks / 8, 1, omp_get_max_threads()) : 1;
    const std::int64_t tasks = strips * bands;
    const std::int64_t workers = std::min<std::int64_t>(omp_get_max_threads(), tasks);
    const std::size_t size =
        strip * lines + (source ? source->LineSize(strip / source->channels) : 0);
    const PixelMemory scratch = AllocatePixels(workers * size);
    if (!scratch) return false;
    unsigned char* const own = scratch.get();
    ParallelFor(workers, [=, this](std::int64_t worker) {
      for (std::int64_t i = tasks * worker / workers; i < tasks * (worker + 1) / workers; ++i) {
        const std::int64_t band = i / strips;
        const std::size_t left = strip * (i % strips);
        const std::int64_t next = blocks * (band + 1) / bands * block;
        HWY_DYNAMIC_DISPATCH(MaxColumns)
        (source, left, pixels + left, rowBytes, std::min(strip, rowBytes - left), height, radius,
         blocks * band / bands * block, band + 1 < bands ? next + 2 * radius : height,
         own + size * worker);
      }
    });
    return true;
  }

  static constexpr std::size_t kScratch = 256 << 10;  // bytes
  std::int64_t radius;
  std::int64_t block;
  std::size_t lines;
  std::size_t rowBytes;
  std::size_t strip;
  int height;
};

// Both into a new buffer, in one sweep unless strips are so narrow that they would repeat much of
// their neighbours' work.
PixelMemory MaxFilter(const unsigned char* pixels, int channels, int radius, int width,
                      int height) {
  PixelMemory out = AllocatePixels(std::size_t(channels) * *PixelCount(width, height));
  if (!out || width <= 0 || height <= 0) return out;
  const Rows rows{pixels, std::size_t(channels), width, std::clamp(radius, 0, width - 1)};
  const Columns columns(radius, channels, width, height);
  const bool oneSweep = columns.strip >= std::min(4 * rows.Margin(), columns.rowBytes);
  if (!oneSweep && !MaxRows(rows, height, out.get())) return nullptr;
  return columns.Run(oneSweep ? &rows : nullptr, out.get()) ? std::move(out) : nullptr;
}

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

unsigned char* CPixelProcess::BoxHorizonPath(const unsigned char* pixels, int radius, int width,
                                             int height) {
  if (!IsWorkable(pixels, width, height)) return nullptr;
  PixelMemory out = AllocatePixels(std::size_t{3} * *PixelCount(width, height));
  if (!out || width <= 0 || height <= 0) return out.release();
  const bool done =
      MaxRows({pixels, 3, width, std::clamp(radius, 0, width - 1)}, height, out.get());
  return done ? out.release() : nullptr;
}

void CPixelProcess::BoxVerticalPath(unsigned char* buffer, int radius, int width, int height) {
  if (HasPixels(buffer, width, height)) Columns(radius, 3, width, height).Run(nullptr, buffer);
}

unsigned char* CPixelProcess::BoxMaxFilters(const unsigned char* pixels, int width, int height,
                                            int radius) {
  return IsWorkable(pixels, width, height) ? MaxFilter(pixels, 3, radius, width, height).release()
                                           : nullptr;
}

unsigned char* CPixelProcess::BoxMaxFilter(const unsigned char* pixels, int width, int height,
                                           int radius, int channel) {
  if (!IsWorkable(pixels, width, height) || channel < 0 || channel > 3) return nullptr;
  return MaxFilter(pixels + channel, 1, radius, width, height).release();
}
#endif

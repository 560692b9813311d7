// Turning of pictures by any angle.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "filters/rotation_kernels.h"
#include "frame/material.h"
#include "frame/parallel.h"
#include "pixel/truncate.h"
#include "tintwerk/math_define.h"
#include "tintwerk/pixel_process.h"

using Gdiplus::Bitmap;

namespace tintwerk {
namespace {

// Coordinates of a pixel; no turned point leaves 64 bits.
struct Cell {
  std::int64_t x;
  std::int64_t y;
};

// Toward zero, but one less below 0: -1.0 belongs to the cell of -2.
std::int64_t CellOf(float at) {
  return std::int64_t{Truncate(at)} - (at < 0);
}

std::int32_t Overflow(std::int64_t x, CPixelProcess::OverflowMethod overflow, int extent) {
  switch (overflow) {
    case CPixelProcess::OverflowWrap:
      x %= extent;
      return static_cast<std::int32_t>(x < 0 ? x + extent : x);
    case CPixelProcess::OverflowClamp:
      return static_cast<std::int32_t>(std::clamp<std::int64_t>(x, 0, extent - 1));
    case CPixelProcess::OverflowMirror:
      return static_cast<std::int32_t>(x < 0         ? -x % extent
                                       : x >= extent ? extent - x % extent - 1
                                                     : x);
  }
  return static_cast<std::int32_t>(x);
}

float Overflow(float x, CPixelProcess::OverflowMethod overflow, int extent) {
  const double at = x, size = extent;
  switch (overflow) {
    case CPixelProcess::OverflowWrap: {
      const double rest = std::fmod(at, size);
      return static_cast<float>(rest < 0 ? rest + size : rest);
    }
    case CPixelProcess::OverflowClamp:
      return static_cast<float>(std::min(std::max(at, 0.0), size - 1));
    case CPixelProcess::OverflowMirror:
      return at < 0       ? static_cast<float>(std::fmod(-at, size))
             : at >= size ? static_cast<float>(size - (std::fmod(at, size) + 1.0))
                          : x;
  }
  return x;
}

// Coordinates by repeated addition.
std::vector<float> Steps(float first, int count) {
  std::vector<float> steps(count);
  for (float& step : steps) {
    step = first;
    first += 1.0f;
  }
  return steps;
}

}  // namespace
}  // namespace tintwerk

void CPixelProcess::OverflowCoordinates(std::int32_t& x, std::int32_t& y, OverflowMethod overflow,
                                        int width, int height) {
  if (width <= 0 || height <= 0 || CMathDefine::IsInside(x, y, width, height)) return;
  x = tintwerk::Overflow(std::int64_t{x}, overflow, width);
  y = tintwerk::Overflow(std::int64_t{y}, overflow, height);
}

void CPixelProcess::OverflowCoordinates(float& x, float& y, OverflowMethod overflow, int width,
                                        int height) {
  if (width <= 0 || height <= 0) return;
  if (0 <= x && x < static_cast<float>(width) && 0 <= y && y < static_cast<float>(height)) return;
  x = tintwerk::Overflow(x, overflow, width);
  y = tintwerk::Overflow(y, overflow, height);
}

// A neighbour that no method brings into the image counts as transparent.
tagRGBQUAD CPixelProcess::GetPixelColorInterpolated(const unsigned char* pixels, int rowPixels,
                                                    float x, float y, int width, int height,
                                                    InterpolationMethod, OverflowMethod overflow) {
  using namespace tintwerk;
  if (!pixels || width <= 0 || height <= 0) return {};
  Cell cell{CellOf(x), CellOf(y)};
  if (cell.x < -1 || cell.x >= width || cell.y < -1 || cell.y >= height) {
    OverflowCoordinates(x, y, overflow, width, height);
    cell = {CellOf(x), CellOf(y)};
  }
  if (IsBetween(x, width) && IsBetween(y, height)) return Between(pixels, rowPixels, x, y);

  const float u = x - static_cast<float>(cell.x), v = y - static_cast<float>(cell.y);
  if (!(u >= 0 && u <= 1 && v >= 0 && v <= 1)) return {};  // no int holds such a coordinate
  const float d = u * v, c = v - d, b = u - d, a = 1 - u - c;
  const float weights[] = {a, b, c, d};
  unsigned char sums[4] = {};
  for (int tap = 0; tap < 4; ++tap) {
    const auto limit = [](std::int64_t at) {
      return static_cast<std::int32_t>(std::clamp<std::int64_t>(at, INT32_MIN, INT32_MAX));
    };
    std::int32_t tapX = limit(cell.x + tap % 2), tapY = limit(cell.y + tap / 2);
    OverflowCoordinates(tapX, tapY, overflow, width, height);
    if (!CMathDefine::IsInside(tapX, tapY, width, height)) continue;
    const unsigned char* const pixel = pixels + 4 * (std::int64_t{tapY} * rowPixels + tapX);
    for (int channel = 0; channel < 4; ++channel)
      sums[channel] += static_cast<unsigned char>(static_cast<int>(pixel[channel] * weights[tap]));
  }
  return {sums[0], sums[1], sums[2], sums[3]};
}

void* CPixelProcess::Rotate2(void* bitmap, int width, int height, float angle,
                             InterpolationMethod method, OverflowMethod overflow, bool,
                             bool keepSize) try {
  using namespace tintwerk;
  auto* const source = static_cast<Bitmap*>(bitmap);
  if (!source) return nullptr;
  const double radians = std::acos(0.0) * double{angle} / 90.0;
  const auto c = static_cast<float>(std::cos(radians)), s = static_cast<float>(std::sin(radians));

  constexpr unsigned kReadWrite = Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite;
  const BitmapLock from(source, {0, 0, width, height}, kReadWrite);
  if (!from.Pixels() || !keepSize) return nullptr;
  PixelBlock target{width, height, nullptr};
  target.bytes = RequirePixels(target.Size());

  const float centreX = 0.5f * static_cast<float>(width);
  const float centreY = 0.5f * static_cast<float>(height);
  const Turn turn{from.Pixels(), width, height, c, s, centreX, centreY, overflow == OverflowClamp};
  // Angles without a cosine bring no coordinate into the image; longer sides have pixels between
  // the numbers of a float.
  constexpr int kLongest = 1 << 24;
  const bool inGroups = std::isfinite(c) && std::max(width, height) <= kLongest &&
                        PixelCount(width, height).has_value();
  const std::vector<float> columns = Steps(-centreX, width), rows = Steps(-centreY, height);
  // In tiles whose part of the source stays in the fastest cache.
  constexpr int kTile = 64;
  unsigned char* const pixels = target.bytes.get();
  ParallelFor((height - 1) / kTile + 1, [&](std::int64_t band) {
    const int top = static_cast<int>(band) * kTile, bottom = std::min(height - top, kTile) + top;
    for (int left = 0; left < width; left += kTile)
      for (int y = top; y < bottom; ++y) {
        const int right = std::min(width - left, kTile) + left;
        unsigned char* out = pixels + 4 * (std::int64_t{y} * width + left);
        for (int x = left; x < right;) {
          const int done = inGroups ? TurnRow(turn, &columns[x], rows[y], right - x, out) : 0;
          x += done;
          out += std::ptrdiff_t{4} * done;
          for (const int end = std::min(x + kTurnGroup, right); x < end; ++x, out += 4) {
            const tagRGBQUAD colour = GetPixelColorInterpolated(
                turn.pixels, width, turn.X(columns[x], rows[y]), turn.Y(columns[x], rows[y]), width,
                height, method, overflow);
            std::memcpy(out, &colour, 4);
          }
        }
      }
  });
  return MakeBitmap(std::move(target)).release();
} catch (const std::bad_alloc&) {
  return nullptr;
}

// Scaling and turning of pictures, and parts of them.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "frame/graphics.h"
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

// A pixel as four fields of 16 bits, and back from their high bytes. The fields of a sum whose
// weights add up to 256 don't run into each other.
inline std::uint64_t Spread(const unsigned char* pixel) {
  std::uint32_t bytes;
  std::memcpy(&bytes, pixel, 4);
  return (bytes & 0x00FF00FFu) | std::uint64_t{(bytes >> 8) & 0x00FF00FFu} << 32;
}
inline tagRGBQUAD Gather(std::uint64_t fields) {
  const auto bytes =
      static_cast<std::uint32_t>(((fields >> 8) & 0x00FF00FFu) | ((fields >> 32) & 0xFF00FF00u));
  tagRGBQUAD pixel;
  std::memcpy(&pixel, &bytes, 4);
  return pixel;
}

// The colour between four pixels that all lie in the image.
inline tagRGBQUAD Between(const unsigned char* pixels, int rowPixels, float x, float y) {
  const int column = static_cast<int>(x), row = static_cast<int>(y);
  const auto wx = static_cast<int>((x - static_cast<float>(column)) * 256.0f);
  const auto wy = static_cast<int>((y - static_cast<float>(row)) * 256.0f);
  const int wd = (wx * wy) >> 8;
  const int wb = wx - wd, wc = wy - wd, wa = 256 - wc - wx;
  const unsigned char* const upper = pixels + 4 * (std::int64_t{row} * rowPixels + column);
  const unsigned char* const lower = upper + std::int64_t{4} * rowPixels;
  const auto part = [](const unsigned char* pixel, int weight) {
    return Spread(pixel) * static_cast<std::uint64_t>(weight);
  };
  return Gather(part(upper, wa) + part(upper + 4, wb) + part(lower, wc) + part(lower + 4, wd));
}

// Whether a coordinate and its next pixel lie in 0..extent - 1.
inline bool IsBetween(float at, int extent) {
  return at >= 0 && at < static_cast<float>(extent) && static_cast<int>(at) < extent - 1;
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
  auto target = std::make_unique<Bitmap>(keepSize ? width : 0, keepSize ? height : 0);
  {
    const BitmapLock from(source, {0, 0, width, height}, kReadWrite);
    if (!from.Pixels()) return nullptr;
    const BitmapLock to(target.get(), Gdiplus::ImageLockModeWrite);
    if (!to.Pixels()) return nullptr;

    // Coordinates count from the centre, by repeated addition.
    const float centreX = 0.5f * static_cast<float>(width);
    const float centreY = 0.5f * static_cast<float>(height);
    std::vector<float> rows(height);
    float v = -centreY;
    for (float& row : rows) {
      row = v;
      v += 1.0f;
    }
    const unsigned char* const in = from.Pixels();
    unsigned char* const out = to.Pixels();
    ParallelFor(height, [=, &rows](std::int64_t y) {
      float u = -centreX;
      for (int x = 0; x < width; ++x, u += 1.0f) {
        const float sx = u * c + rows[y] * s + centreX;
        const float sy = rows[y] * c - u * s + centreY;
        const tagRGBQUAD colour =
            IsBetween(sx, width) && IsBetween(sy, height)
                ? Between(in, width, sx, sy)
                : GetPixelColorInterpolated(in, width, sx, sy, width, height, method, overflow);
        std::memcpy(out + 4 * (y * width + x), &colour, 4);
      }
    });
  }
  return target.release();
} catch (const std::bad_alloc&) {
  return nullptr;
}

void* CPixelProcess::Clone(void* bitmap, int left, int top, int width, int height) {
  auto* const source = static_cast<Bitmap*>(bitmap);
  if (!source || std::int64_t{left} + width > source->GetWidth() ||
      std::int64_t{top} + height > source->GetHeight())
    return nullptr;
  std::unique_ptr<Bitmap> target(new (std::nothrow) Bitmap(width, height));
  if (!target) return nullptr;
  tintwerk::Graphics graphics(target.get());
  graphics.SetInterpolationMode(tintwerk::InterpolationModeHighQuality);
  const auto w = static_cast<float>(width), h = static_cast<float>(height);
  const auto status = graphics.DrawImage(source, {0, 0, w, h},
                                         {static_cast<float>(left), static_cast<float>(top), w, h});
  return status == Gdiplus::Ok ? target.release() : nullptr;
}

void* CPixelProcess::RampleBit(void* bitmap, int newWidth, int newHeight) {
  if (!bitmap) return nullptr;
  return tintwerk::ScaleBitmap(static_cast<Bitmap*>(bitmap), newWidth, newHeight).release();
}

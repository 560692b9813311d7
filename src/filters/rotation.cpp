// Turning of pictures by any angle.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/rotation.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

#ifndef TINTWERK_TURN
#define TINTWERK_TURN
namespace tintwerk {
// A picture that is turned. The target pixel at (u, v) from the centre shows the source's
// (u c + v s, v c - u s).
struct Turn {
  const unsigned char* pixels;
  int width, height;
  float c, s;
  float centreX, centreY;
  bool clamps;  // what lies outside shows the nearest pixel

  static constexpr int kGroup = 16;  // pixels that are worked at once

  float X(float u, float v) const { return u * c + v * s + centreX; }
  float Y(float u, float v) const { return v * c - u * s + centreY; }
};
}  // namespace tintwerk
#endif

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

constexpr int kGroup = Turn::kGroup;

// Pixels between four others each: the upper left ones, and weights that add up to 256.
struct Group {
  std::int32_t columns[kGroup], rows[kGroup];
  std::uint16_t upper[2 * kGroup], lower[2 * kGroup];
};

// @return whether all of them lie between pixels of the source
template <class Lanes>
HWY_INLINE bool Locate(Lanes lanes, const Turn& turn, const float* u, float v, int at,
                       Group& group) {
  const hn::Rebind<std::int32_t, Lanes> integers;
  const hn::Repartition<std::uint16_t, Lanes> words;
  const auto zero = hn::Zero(lanes);
  const auto width = hn::Set(integers, turn.width), height = hn::Set(integers, turn.height);
  const auto one = hn::Set(integers, 1);
  const auto c = hn::Set(lanes, turn.c), s = hn::Set(lanes, turn.s), us = hn::LoadU(lanes, u + at);
  auto x =
      hn::Add(hn::Add(hn::Mul(us, c), hn::Set(lanes, v * turn.s)), hn::Set(lanes, turn.centreX));
  auto y =
      hn::Add(hn::Sub(hn::Set(lanes, v * turn.c), hn::Mul(us, s)), hn::Set(lanes, turn.centreY));
  if (turn.clamps) {
    const auto isNear = [&](auto value, auto extent) HWY_ATTR {
      return hn::And(hn::Gt(value, hn::Set(lanes, -1.0f)),
                     hn::RebindMask(lanes, hn::Lt(hn::ConvertTo(integers, value), extent)));
    };
    const auto clamped = [&](auto value, int extent) HWY_ATTR {
      return hn::Min(hn::Max(value, zero), hn::Set(lanes, static_cast<float>(extent - 1)));
    };
    const auto isNearBoth = hn::And(isNear(x, width), isNear(y, height));
    x = hn::IfThenElse(isNearBoth, x, clamped(x, turn.width));
    y = hn::IfThenElse(isNearBoth, y, clamped(y, turn.height));
  }
  const auto column = hn::ConvertTo(integers, x), row = hn::ConvertTo(integers, y);
  const auto isBetween = [&](auto value, auto whole, auto extent) HWY_ATTR {
    return hn::And(hn::Ge(value, zero), hn::RebindMask(lanes, hn::Lt(whole, hn::Sub(extent, one))));
  };
  if (!hn::AllTrue(lanes, hn::And(isBetween(x, column, width), isBetween(y, row, height))))
    return false;

  const auto fraction = [&](auto value, auto whole) HWY_ATTR {
    const auto rest = hn::Sub(value, hn::ConvertTo(lanes, whole));
    return hn::ConvertTo(integers, hn::Mul(rest, hn::Set(lanes, 256.0f)));
  };
  const auto wx = fraction(x, column), wy = fraction(y, row);
  const auto product = hn::Mul(hn::BitCast(words, wx), hn::BitCast(words, wy));
  const auto d = hn::BitCast(integers, hn::ShiftRight<8>(product));
  const auto b = hn::Sub(wx, d), c2 = hn::Sub(wy, d);
  const auto a = hn::Sub(hn::Sub(hn::Set(integers, 256), c2), wx);
  const auto pairs = [&](auto left, auto right, std::uint16_t* to) HWY_ATTR {
    const auto both = hn::Or(left, hn::ShiftLeft<16>(right));
    hn::StoreU(hn::BitCast(words, both), words, to + 2 * at);
  };
  pairs(a, b, group.upper);
  pairs(c2, d, group.lower);
  hn::StoreU(column, integers, group.columns + at);
  hn::StoreU(row, integers, group.rows + at);
  return true;
}

// For each pixel of four: its left weight four times, its right weight four times.
alignas(16) constexpr std::uint8_t kSpread[4][16] = {
    {0, 1, 0, 1, 0, 1, 0, 1, 2, 3, 2, 3, 2, 3, 2, 3},
    {4, 5, 4, 5, 4, 5, 4, 5, 6, 7, 6, 7, 6, 7, 6, 7},
    {8, 9, 8, 9, 8, 9, 8, 9, 10, 11, 10, 11, 10, 11, 10, 11},
    {12, 13, 12, 13, 12, 13, 12, 13, 14, 15, 14, 15, 14, 15, 14, 15}};

HWY_INLINE void MixFour(const Turn& turn, const Group& group, int at, unsigned char* out) {
  const hn::FixedTag<std::uint16_t, 8> words;
  const hn::FixedTag<std::int16_t, 8> signedWords;
  const hn::FixedTag<std::uint8_t, 8> bytes;
  const auto upperWeights = hn::LoadU(words, group.upper + 2 * at);
  const auto lowerWeights = hn::LoadU(words, group.lower + 2 * at);
  // Sums of columns, the left ones in the lower half.
  const auto columns = [&](int k) HWY_ATTR {
    const auto spread = hn::BitCast(words, hn::Load(hn::FixedTag<std::uint8_t, 16>(), kSpread[k]));
    const unsigned char* const upper =
        turn.pixels + 4 * (std::int64_t{group.rows[at + k]} * turn.width + group.columns[at + k]);
    const unsigned char* const lower = upper + std::int64_t{4} * turn.width;
    const auto weighted = [&](const unsigned char* pair, auto weights) HWY_ATTR {
      return hn::Mul(hn::PromoteTo(words, hn::LoadU(bytes, pair)),
                     hn::TableLookupBytes(weights, spread));
    };
    return hn::Add(weighted(upper, upperWeights), weighted(lower, lowerWeights));
  };
  const auto two = [&](int k) HWY_ATTR {
    const auto first = columns(k), second = columns(k + 1);
    const auto sum = hn::Add(hn::ConcatLowerLower(words, second, first),
                             hn::ConcatUpperUpper(words, second, first));
    return hn::DemoteTo(bytes, hn::BitCast(signedWords, hn::ShiftRight<8>(sum)));
  };
  hn::StoreU(two(0), bytes, out);
  hn::StoreU(two(2), bytes, out + 8);
}

// Pixels of a row of the target, as many as lie between four pixels of the source in whole groups.
// @return their count
int TurnRow(const Turn& turn, const float* u, float v, int count, unsigned char* out) {
  const hn::CappedTag<float, kGroup> lanes;
  Group group;
  int done = 0;
  for (; done + kGroup <= count; done += kGroup) {
    for (int at = 0; at < kGroup; at += static_cast<int>(hn::Lanes(lanes)))
      if (!Locate(lanes, turn, u + done, v, at, group)) return done;
    for (int at = 0; at < kGroup; at += 4)
      MixFour(turn, group, at, out + std::size_t{4} * (done + at));
  }
  return done;
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "frame/material.h"
#include "frame/parallel.h"
#include "pixel/truncate.h"
#include "tintwerk/math_define.h"
#include "tintwerk/pixel_process.h"

using Gdiplus::Bitmap;

namespace tintwerk {
namespace {

HWY_EXPORT(TurnRow);

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

  const Turn turn{from.Pixels(),
                  width,
                  height,
                  c,
                  s,
                  0.5f * static_cast<float>(width),
                  0.5f * static_cast<float>(height),
                  overflow == OverflowClamp && std::isfinite(c)};
  const std::vector<float> columns = Steps(-turn.centreX, width);
  const std::vector<float> rows = Steps(-turn.centreY, height);
  // In tiles, since a long row runs across more lines of the source than the fast cache holds.
  constexpr int kTileWidth = 256, kTileHeight = 32;
  ParallelFor(
      (height + kTileHeight - 1) / kTileHeight, [&, out = target.bytes.get()](std::int64_t band) {
        const int top = static_cast<int>(band) * kTileHeight;
        for (int left = 0; left < width; left += kTileWidth)
          for (int y = top; y < std::min(top + kTileHeight, height); ++y) {
            const int right = std::min(left + kTileWidth, width);
            const auto pixel = [&](int x) { return out + 4 * (std::int64_t{y} * width + x); };
            for (int x = left; x < right;) {
              x += HWY_DYNAMIC_DISPATCH(TurnRow)(turn, &columns[x], rows[y], right - x, pixel(x));
              for (const int end = std::min(x + Turn::kGroup, right); x < end; ++x) {
                const tagRGBQUAD colour = GetPixelColorInterpolated(
                    turn.pixels, width, turn.X(columns[x], rows[y]), turn.Y(columns[x], rows[y]),
                    width, height, method, overflow);
                std::memcpy(pixel(x), &colour, 4);
              }
            }
          }
      });
  return MakeBitmap(std::move(target)).release();
} catch (const std::bad_alloc&) {
  return nullptr;
}
#endif

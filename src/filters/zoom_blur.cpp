// Radial zoom blur.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/zoom_blur.cpp"
#include "filters/zoom_blur.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Adds kCount samples to four planes of sums: colours times alpha, and alpha. Pixel i takes column
// columns[i + pitch * k] of row rows[rowPitch * k]. Columns rise by at most one from pixel to pixel,
// so a vector of samples is one load and a permutation.
template <int kCount, class Lanes>
HWY_INLINE void AddSamples(Lanes lanes, const unsigned char* const* rows, int rowPitch,
                           const std::int32_t* columns, std::int64_t pitch, int count,
                           std::int32_t* sums) {
  const hn::Repartition<std::uint8_t, Lanes> bytes;
  const hn::Repartition<std::uint16_t, Lanes> halves;
  const auto low = hn::Set(lanes, 255);
  std::int32_t *const greens = sums + kZoomTile, *const reds = greens + kZoomTile;
  std::int32_t* const weights = reds + kZoomTile;
  for (int i = 0; i < count; i += static_cast<int>(hn::Lanes(lanes))) {
    auto blue = hn::LoadU(lanes, sums + i), green = hn::LoadU(lanes, greens + i);
    auto red = hn::LoadU(lanes, reds + i), weight = hn::LoadU(lanes, weights + i);
    for (int k = 0; k < kCount; ++k) {
      const std::int32_t* const column = columns + pitch * k + i;
      const unsigned char* const nearest = rows[rowPitch * k] + std::ptrdiff_t{4} * *column;
      const auto at = hn::Sub(hn::LoadU(lanes, column), hn::Set(lanes, *column));
      const auto pixel =
          hn::BitCast(hn::Repartition<std::uint32_t, Lanes>(),
                      hn::TableLookupLanes(hn::BitCast(lanes, hn::LoadU(bytes, nearest)),
                                           hn::IndicesFromVec(lanes, at)));
      const auto alpha = hn::BitCast(lanes, hn::ShiftRight<24>(pixel));
      // The upper halves are 0, so products of 16 bits are the whole ones.
      const auto weighted = [=](auto shifted) HWY_ATTR {
        const auto colour = hn::And(hn::BitCast(lanes, shifted), low);
        return hn::BitCast(lanes, hn::Mul(hn::BitCast(halves, colour), hn::BitCast(halves, alpha)));
      };
      blue = hn::Add(blue, weighted(pixel));
      green = hn::Add(green, weighted(hn::ShiftRight<8>(pixel)));
      red = hn::Add(red, weighted(hn::ShiftRight<16>(pixel)));
      weight = hn::Add(weight, alpha);
    }
    hn::StoreU(blue, lanes, sums + i);
    hn::StoreU(green, lanes, greens + i);
    hn::StoreU(red, lanes, reds + i);
    hn::StoreU(weight, lanes, weights + i);
  }
}

// Means of a tile of pixels, `height` rows of `width`: four planes a row, the colours' sums divided
// by the weights', and the weights' sums. Colours without weight are undefined.
// @param rows the rows that each sample of each row of the tile lies in, sample by sample
void TileMeans(const unsigned char* const* rows, const std::int32_t* columns, std::int64_t pitch,
               int width, int height, std::int32_t* sums) {
  const hn::CappedTag<std::int32_t, kZoomVector> lanes;
  const hn::Rebind<float, decltype(lanes)> floats;
  constexpr int kPlanes = 4 * kZoomTile;
  std::fill_n(sums, kPlanes * height, 0);
  for (int y = 0; y < height; ++y)
    AddSamples<1>(lanes, rows + y, height, columns, pitch, width, sums + kPlanes * y);
  // All rows of the tile take the same few samples, which lie in almost the same places.
  for (int k = 1; k < kZoomSamples; k += 4)
    for (int y = 0; y < height; ++y)
      AddSamples<4>(lanes, rows + height * k + y, height, columns + pitch * k, pitch, width,
                    sums + kPlanes * y);
  for (std::int32_t* planes = sums; planes < sums + kPlanes * height; planes += kPlanes)
    for (int i = 0; i < width; i += static_cast<int>(hn::Lanes(lanes))) {
      // Sums are below 2^24 and quotients below 256, so single precision truncates right.
      const auto weight = hn::ConvertTo(floats, hn::LoadU(lanes, planes + 3 * kZoomTile + i));
      for (std::int32_t* at = planes + i; at < planes + 3 * kZoomTile; at += kZoomTile)
        hn::StoreU(
            hn::ConvertTo(lanes, hn::Div(hn::ConvertTo(floats, hn::LoadU(lanes, at)), weight)),
            lanes, at);
    }
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <new>

#include "frame/parallel.h"
#include "pixel/tone_curve.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

HWY_EXPORT(TileMeans);

// An S-curve that keeps the ends and steepens the middle.
constexpr ToneTable kZoomTone = {
    0,   0,   0,   0,   1,   1,   1,   1,   1,   2,   2,   2,   2,   2,   2,   3,    //
    3,   3,   3,   4,   4,   4,   4,   5,   5,   5,   5,   6,   6,   6,   7,   7,    //
    8,   8,   8,   9,   9,   10,  10,  11,  11,  12,  12,  13,  13,  14,  14,  15,   //
    16,  16,  17,  18,  18,  19,  20,  21,  22,  22,  23,  24,  25,  26,  27,  28,   //
    29,  30,  31,  32,  33,  34,  35,  37,  38,  39,  40,  42,  43,  44,  45,  47,   //
    48,  49,  51,  52,  54,  55,  57,  58,  59,  61,  62,  64,  66,  67,  69,  70,   //
    72,  73,  75,  77,  78,  80,  82,  83,  85,  87,  88,  90,  92,  94,  95,  97,   //
    99,  101, 102, 104, 106, 108, 109, 111, 113, 115, 117, 118, 120, 122, 124, 126,  //
    127, 129, 131, 133, 135, 136, 138, 140, 142, 144, 145, 147, 149, 151, 152, 154,  //
    156, 158, 160, 161, 163, 165, 167, 168, 170, 172, 173, 175, 177, 178, 180, 182,  //
    183, 185, 187, 188, 190, 191, 193, 194, 196, 198, 199, 201, 202, 204, 205, 206,  //
    208, 209, 211, 212, 213, 215, 216, 217, 219, 220, 221, 222, 223, 225, 226, 227,  //
    228, 229, 230, 231, 232, 233, 234, 235, 236, 237, 238, 238, 239, 240, 241, 241,  //
    242, 243, 243, 244, 245, 245, 246, 246, 247, 247, 248, 248, 249, 249, 249, 250,  //
    250, 250, 251, 251, 251, 252, 252, 252, 252, 252, 253, 253, 253, 253, 253, 254,  //
    254, 254, 254, 254, 254, 254, 254, 254, 254, 255, 255, 255, 255, 255, 255, 255};

/// Where the samples of a pixel lie on one axis. Each is nearer to the centre by 100/16384 than the
/// one before; positions are in 1/65536 pixel from the centre.
void ZoomPositions(std::int64_t at, std::int64_t size, std::int32_t* positions,
                   std::int64_t pitch) {
  const std::int64_t centre = size << 15;
  std::int64_t offset = (at << 16) - centre;
  positions[0] = static_cast<std::int32_t>(at);
  for (int i = 1; i < kZoomSamples; ++i) {
    offset -= ((offset >> 4) * 100) >> 10;
    positions[pitch * i] = static_cast<std::int32_t>((offset + centre + 32768) >> 16);
  }
}

}  // namespace

// The last row is read by whole vectors.
ZoomBlur::ZoomBlur(int width, int height)
    : width_(width),
      height_(height),
      pitch_(width + kZoomVector),
      weighted_(RequirePixels(4 * (std::size_t(width) * height + kZoomVector))),
      columns_(new std::int32_t[kZoomSamples * pitch_]) {
  std::fill_n(weighted_.get() + std::size_t{4} * width * height, 4 * kZoomVector, 0);
  ParallelFor(pitch_,
              [this](std::int64_t x) { ZoomPositions(x, width_, columns_.get() + x, pitch_); });
}

void ZoomBlur::Run(unsigned char* target, int left, int top, int right, int bottom) const {
  constexpr int kTileRows = 16;
  const std::int64_t tilesAcross = (std::int64_t{right} - left + kZoomTile - 1) / kZoomTile;
  const std::int64_t tilesDown = (std::int64_t{bottom} - top + kTileRows - 1) / kTileRows;
  ParallelFor(tilesAcross * tilesDown, [=, this](std::int64_t tile) {
    const auto x0 = static_cast<int>(left + tile % tilesAcross * kZoomTile);
    const auto y0 = static_cast<int>(top + tile / tilesAcross * kTileRows);
    const int tileWidth = std::min(kZoomTile, right - x0),
              tileHeight = std::min(kTileRows, bottom - y0);
    std::int32_t positions[kZoomSamples * kTileRows];
    for (int y = 0; y < tileHeight; ++y) ZoomPositions(y0 + y, height_, positions + y, tileHeight);
    const unsigned char* rows[kZoomSamples * kTileRows] = {};
    for (int i = 0; i < kZoomSamples * tileHeight; ++i)
      rows[i] = weighted_.get() + std::int64_t{4} * width_ * positions[i];
    std::int32_t means[4 * kZoomTile * kTileRows];
    HWY_DYNAMIC_DISPATCH(TileMeans)
    (rows, columns_.get() + x0, pitch_, tileWidth, tileHeight, means);

    for (int y = 0; y < tileHeight; ++y) {
      const std::int32_t* const mean = means + 4 * kZoomTile * y;
      unsigned char* pixel = target + 4 * (std::int64_t{width_} * (y0 + y) + x0);
      for (int x = 0; x < tileWidth; ++x, pixel += 4) {
        const std::int32_t weight = mean[3 * kZoomTile + x];
        for (int c = 0; c < 3; ++c)
          pixel[c] = kZoomTone[weight ? mean[kZoomTile * c + x] : pixel[c]];
        pixel[3] = static_cast<unsigned char>(weight / kZoomSamples);
      }
    }
  });
}

}  // namespace tintwerk

using namespace tintwerk;

int CPixelProcess::RadiusZoomBlur(unsigned char* target, const unsigned char* colors,
                                  const unsigned char* alphas, int width, int height, CObjProgress*,
                                  int, int) try {
  if (!IsWorkable(target, width, height) || !colors || !alphas) return 0;
  const std::int64_t count = *PixelCount(width, height);
  if (count == 0) return 1;
  ZoomBlur blur(width, height);
  unsigned char* const weighted = blur.Weighted();
  ParallelFor(count, [=](std::int64_t i) {
    std::copy_n(colors + 4 * i, 3, weighted + 4 * i);
    weighted[4 * i + 3] = alphas[4 * i + 3];
  });
  blur.Run(target, 0, 0, width, height);
  return 1;
} catch (const std::bad_alloc&) {
  return 0;
}
#endif

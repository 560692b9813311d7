// Radial zoom blur.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/zoom_blur.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Adds samples of four 16-bit values to the sums of a run of pixels: pixel i takes the entry
// columns[i + pitch * k] of rows[k]. Row after row, as 96 of them at once are too many pages.
// @param samples a multiple of 4
void AddSamples(const std::uint16_t* const* rows, int samples, const std::int32_t* columns,
                std::int64_t pitch, std::int64_t count, std::uint32_t* sums) {
  const hn::FixedTag<std::uint16_t, 4> entry;
  const hn::FixedTag<std::uint32_t, 4> wide;
  for (int k = 0; k < samples; k += 4) {
    const std::uint16_t *a = rows[k], *b = rows[k + 1], *c = rows[k + 2], *d = rows[k + 3];
    const auto at = [=](const std::uint16_t* row, const std::int32_t* column) HWY_ATTR {
      return hn::PromoteTo(wide, hn::LoadU(entry, row + std::ptrdiff_t{4} * *column));
    };
    const std::int32_t* column = columns + pitch * k;
    for (std::int64_t i = 0; i < count; ++i, ++column) {
      const auto left = hn::Add(at(a, column), at(b, column + pitch));
      const auto right = hn::Add(at(c, column + 2 * pitch), at(d, column + 3 * pitch));
      const auto sum = hn::LoadU(wide, sums + 4 * i);
      hn::StoreU(hn::Add(sum, hn::Add(left, right)), wide, sums + 4 * i);
    }
  }
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <algorithm>
#include <memory>
#include <new>

#include "frame/image.h"
#include "frame/parallel.h"
#include "pixel/tone_curve.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

HWY_EXPORT(AddSamples);

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

/// Samples of the zoom blur on the way to the centre, besides the pixel itself.
constexpr int kZoomSamples = 96;

/// Where the samples of a pixel lie on one axis. Each is nearer to the centre by 100/16384 than the
/// one before; positions are in 1/65536 pixel from the centre.
void ZoomPositions(std::int64_t at, std::int64_t size, std::int32_t* positions,
                   std::int64_t pitch) {
  const std::int64_t centre = size << 15;
  std::int64_t offset = (at << 16) - centre;
  for (int i = 0; i < kZoomSamples; ++i) {
    offset -= ((offset >> 4) * 100) >> 10;
    positions[pitch * i] = static_cast<std::int32_t>((offset + centre + 32768) >> 16);
  }
}

/// Colours times alpha, and the alpha.
void Premultiply(const unsigned char* colors, const unsigned char* alphas, std::int64_t count,
                 std::uint16_t* entries) {
  ParallelFor(count, [=](std::int64_t i) {
    const int alpha = alphas[4 * i + 3];
    for (int c = 0; c < 3; ++c)
      entries[4 * i + c] = static_cast<std::uint16_t>(colors[4 * i + c] * alpha);
    entries[4 * i + 3] = static_cast<std::uint16_t>(alpha);
  });
}

void StoreZoomed(const std::uint32_t* sums, unsigned char* pixel) {
  const std::uint32_t alpha = sums[3];
  for (int c = 0; c < 3; ++c)
    pixel[c] = kZoomTone[alpha ? static_cast<unsigned char>(sums[c] / alpha) : pixel[c]];
  pixel[3] = static_cast<unsigned char>(alpha / (kZoomSamples + 1));
}

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

int CPixelProcess::RadiusZoomBlur(unsigned char* target, const unsigned char* colors,
                                  const unsigned char* alphas, int width, int height, CObjProgress*,
                                  int, int) {
  if (!IsWorkable(target, width, height) || !colors || !alphas) return 0;
  const std::int64_t count = *PixelCount(width, height);
  if (count == 0) return 1;
  const PixelMemory entries = AllocatePixels(std::size_t{4} * sizeof(std::uint16_t) * count);
  const std::unique_ptr<std::int32_t[]> columns(
      new (std::nothrow) std::int32_t[std::size_t{kZoomSamples} * width]);
  if (!entries || !columns) return 0;
  auto* const entry = reinterpret_cast<std::uint16_t*>(entries.get());
  Premultiply(colors, alphas, count, entry);
  const std::int64_t pitch = width;
  std::int32_t* const column = columns.get();
  ParallelFor(width, [=](std::int64_t x) { ZoomPositions(x, width, column + x, pitch); });

  // Neighbouring pixels share most of their samples: square tiles keep those in the cache.
  constexpr std::int64_t kTile = 64;
  const std::int64_t tilesAcross = (pitch + kTile - 1) / kTile;
  const std::int64_t tilesDown = (height + kTile - 1) / kTile;
  ParallelFor(tilesAcross * tilesDown, [=](std::int64_t tile) {
    const std::int64_t left = tile % tilesAcross * kTile, top = tile / tilesAcross * kTile;
    const std::int64_t tileWidth = std::min(kTile, pitch - left);
    for (std::int64_t y = top; y < std::min<std::int64_t>(top + kTile, height); ++y) {
      std::int32_t positions[kZoomSamples];
      const std::uint16_t* rows[kZoomSamples];
      ZoomPositions(y, height, positions, 1);
      for (int i = 0; i < kZoomSamples; ++i) rows[i] = entry + 4 * pitch * positions[i];
      std::uint32_t sums[4 * kTile];
      std::copy_n(entry + 4 * (pitch * y + left), 4 * tileWidth, sums);
      HWY_DYNAMIC_DISPATCH(AddSamples)
      (rows, kZoomSamples, column + left, pitch, tileWidth, sums);
      for (std::int64_t x = 0; x < tileWidth; ++x)
        StoreZoomed(sums + 4 * x, target + 4 * (pitch * y + left + x));
    }
  });
  return 1;
}
#endif

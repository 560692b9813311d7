// The time tunnel: the image zoomed and smeared toward its centre, through a painted mask.
#include <cstring>

#include "filters/rows.h"
#include "frame/graphics.h"
#include "frame/material.h"
#include "frame/parallel.h"
#include "maps/plane_file.h"
#include "maps/map_image.h"
#include "pixel/blend_buffers.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

int CEffect::Effect_ShiGuangSuiDao(unsigned char* pixels, int width, int height, void* resourceRoot,
                                   CObjProgress*, int, int) {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return 0;
  RawFile file(FormatPath(L"%s\\Effects\\zvkr_cy.eb", resourceRoot));
  if (!file) return 0;
  constexpr int kSide = 240;
  auto mask = file.Read(std::size_t{4} * kSide * kSide);
  const MapFile<SquareMap> overlayFile(FormatPath(L"%s\\Effects\\ZVOverlay60.png", resourceRoot));
  if (!mask || !overlayFile) return 0;
  if (*count == 0) return 1;
  Gdiplus::Bitmap smeared(width, height), zoomed(width, height);
  unsigned char* over = mask.release();
  const unsigned char* const small = over;
  CPixelProcess::RampleBit(width, height, 1, &over, kSide, kSide);
  mask.reset(over);
  const bool scaled = over != small || (width == kSide && height == kSide);
  if (!scaled || smeared.GetWidth() == 0 || zoomed.GetWidth() == 0) return 0;

  const SquareMap overlay = overlayFile.View();
  ParallelFor(*count, [=](std::int64_t i) {
    for (std::int64_t at = 4 * i; at < 4 * i + 3; ++at)
      pixels[at] = overlay(pixels[at], over[at], kPlaneB);
  });
  {
    const BitmapLock lock(&smeared, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite);
    std::memcpy(lock.Pixels(), pixels, std::size_t{4} * *count);
    if (!CPixelProcess::RadiusZoomBlur(lock.Pixels(), pixels, over, width, height, nullptr, 30, 70))
      return 0;
  }
  mask.reset();

  // The smear is laid back a little enlarged, about the centre.
  const float w = static_cast<float>(width), h = static_cast<float>(height);
  const float w13 = 1.3f * w, h13 = 1.3f * h;
  Graphics(&zoomed).DrawImage(&smeared, {(w - w13) * 0.5f, (h - h13) * 0.5f, w13, h13},
                              {0, 0, w, h});
  // The smear's alpha, which came from the mask, decides the mix.
  BlendBuffersAlphaTrunc(pixels, BitmapLock(&zoomed).Pixels(), *count);
  return 1;
}

// The time tunnel: the image zoomed and smeared toward its centre, through a painted mask.
#include <cstring>

#include "frame/graphics.h"
#include "looks/recipe.h"
#include "pixel/blend_buffers.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

LOOK(Effect_ShiGuangSuiDao) {
  constexpr int kSide = 240;
  const int width = call.width, height = call.height;
  Files files(call);
  const auto overlay = files.Square(L"ZVOverlay60.png", kPlaneB);
  const auto file = files.Raw(L"zvkr_cy.eb", std::size_t{4} * kSide * kSide);
  if (!files) return 0;
  if (call.Count() == 0) return 1;
  Gdiplus::Bitmap smeared(width, height), zoomed(width, height);
  PixelMemory mask = RequirePixels(std::size_t{4} * kSide * kSide);
  std::memcpy(mask.get(), file, std::size_t{4} * kSide * kSide);
  unsigned char* over = mask.release();
  const unsigned char* const small = over;
  CPixelProcess::RampleBit(width, height, 1, &over, kSide, kSide);
  mask.reset(over);
  const bool scaled = over != small || (width == kSide && height == kSide);
  if (!scaled || smeared.GetWidth() == 0 || zoomed.GetWidth() == 0) return 0;

  EachColour(
      call, [=](int v, int, int m) { return overlay(v, m); }, PixelLayer(over, width));
  {
    const BitmapLock lock(&smeared, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite);
    std::memcpy(lock.Pixels(), call.pixels, std::size_t{4} * call.Count());
    if (!CPixelProcess::RadiusZoomBlur(lock.Pixels(), call.pixels, over, width, height, nullptr, 30,
                                       70))
      return 0;
  }
  mask.reset();

  // The smear is laid back a little enlarged, about the centre.
  const float w = static_cast<float>(width), h = static_cast<float>(height);
  const float w13 = 1.3f * w, h13 = 1.3f * h;
  Graphics(&zoomed).DrawImage(&smeared, {(w - w13) * 0.5f, (h - h13) * 0.5f, w13, h13},
                              {0, 0, w, h});
  // The smear's alpha, which came from the mask, decides the mix.
  BlendBuffersAlphaTrunc(call.pixels, BitmapLock(&zoomed).Pixels(), call.Count());
  return 1;
}

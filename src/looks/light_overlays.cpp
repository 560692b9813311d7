// Light over the image: leaks, backlight, beams, stars, a sunset, drops on glass, a soft glow.
#include <algorithm>

#include "looks/recipe.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

// A map of the image against a picture, as it lies.
static int MapOver(const Call& call, const wchar_t* map, const wchar_t* picture) {
  Files files(call);
  const auto& over = files.Picture(picture);
  const auto blend = files.Square(map, kPlaneB);
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int, int m) { return blend(v, m); }, over);
}

LOOK_BY(Effect_XingMang, MapOver(call, L"ZVSoftlight.png", L"xingmang.jpg"))
LOOK_BY(Effect_XiYangJianBian, MapOver(call, L"ZVScreen.png", L"zvtk_071_a.jpg"))

LOOK(Effect_Louguang) {
  Files files(call);
  const auto square = [&files](const wchar_t* name) {
    return files.Square(name, kPlaneB, MapExtent::kFixedRect);
  };
  const auto &rim = files.Picture(L"ZVLouguang1.jpg"), &colours = files.Picture(L"ZVLouguang2.jpg"),
             &leak = files.Picture(L"ZVLouguang3.jpg");
  const auto overlay = square(L"overlayMap.png"), softer = square(L"ZVOverlay60.png"),
             screen = square(L"ZVScreen.png");
  if (!files) return 0;
  return EachColour(
      call,
      [=](int v, int, int m1, int m2, int m3) { return screen(softer(overlay(v, m1), m2), m3); },
      rim, colours, leak);
}

LOOK(Effect_NiGuang) {
  Files files(call);
  const auto& sun = files.Picture(L"zvkr_bl_a.jpg", Turn::Rotate90FlipNone);
  const auto& shade = files.FittedPicture(L"zvkr_bl_b.jpg");
  const auto screen = files.Square(L"ZVScreen.png", kPlaneB);
  const auto overlay = files.Square(L"ZVImageOverlay.png", kPlaneB);
  if (!files) return 0;
  for (const float position : {5, 15, 25, 35}) call.Report(position);  // opened and scaled
  const int right = shade.FittedWidth(), bottom = shade.FittedHeight();
  return EachPixelAt(
      call,
      [=](unsigned char* pixel, int x, int y, const unsigned char* e, const unsigned char* f) {
        const bool fits = x < right && y < bottom;
        for (int c = 0; c < 3; ++c) {
          const int lit = screen(pixel[c], e[c]);
          pixel[c] = static_cast<unsigned char>(fits ? overlay(lit, f[c]) : lit);
        }
      },
      sun, shade);
}

LOOK(Effect_JianGuang) {
  constexpr int kLift = 62;
  Files files(call);
  const auto& beams = files.FittedPicture(L"zvkr_cl_b.jpg");
  const auto& motes = files.Picture(L"zvkr_cl_c.jpg", Turn::Rotate270FlipNone);
  const auto screen = files.Square(L"ZVScreen.png", kPlaneB);
  if (!files) return 0;
  const int right = beams.FittedWidth(), bottom = beams.FittedHeight();
  return EachPixelAt(
      call,
      [=](unsigned char* pixel, int x, int y, const unsigned char* f, const unsigned char* e) {
        const bool fits = x < right && y < bottom;
        for (int c = 0; c < 3; ++c) {
          int lit = screen(pixel[c], kLift);
          if (fits) lit = screen(lit, f[c]);
          pixel[c] = screen(lit, e[c]);
        }
      },
      beams, motes);
}

LOOK(Effect_BoLiShuiZhu) {
  Files files(call);
  const auto& drops = files.Picture(L"zvkr_RainDrop.jpg");
  const auto screen = files.Square(L"ZVScreen.png", kPlaneB);
  if (!files) return 0;
  call.Report(20);
  // The picture is brightened as its rows are laid over the image. Before that the host hears of it
  // as of a pass of its own, in which a stop leaves the rows below as dark as they were.
  unsigned char ramp[4 * 256];
  for (int i = 0; i < 256; ++i) std::fill_n(ramp + 4 * i, 4, static_cast<unsigned char>(i));
  CPixelProcess::PixelBrightness(ramp, 256, 1, 130, nullptr, 0, 100);
  const ToneTable brighter = TableOf([&](int i) { return ramp[4 * i]; });
  const RowProgress rows(call.progress, 20, 60, call.height);
  int bright = 0;
  while (bright < call.height && rows.Finished(bright++)) {
  }
  if (!call.GoesOn()) return 0;
  return EachPixelAt(
      call,
      [=, &brighter](unsigned char* pixel, int, int y, const unsigned char* m) {
        for (int c = 0; c < 3; ++c) pixel[c] = screen(pixel[c], y < bright ? brighter[m[c]] : m[c]);
      },
      drops);
}

LOOK(Effect_RouGuang) {
  Files files(call);
  const auto glow = files.Square(L"ZVPixelSoftGlow.png", kPlaneB);
  const PixelMemory copy = CopyOf(call);
  call.Report(10);
  if (!files) return 0;
  if (call.Count() > 0 &&
      !CPixelProcess::stackBlur(copy.get(), call.width, call.height, 13, nullptr, 0, 100))
    return 0;
  return EachColour(
      call, [=](int v, int, int m) { return glow(v, m); }, PixelLayer(copy.get(), call.width));
}

// Looks built around one map or a pair of strips.
#include "looks/recipe.h"
#include "pixel/truncate.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

static constexpr ToneTables kHudson =
    Tones({36, 71, 123, 185, 254}, {0, 64, 128, 191, 254}, {0, 79, 152, 210, 254});
static constexpr ToneTables kElegant =
    Tones({7, 68, 128, 189, 249}, {20, 73, 124, 177, 198}, {42, 81, 121, 160, 199});

LOOK(Effect_80S) {
  Files files(call);
  const auto tone = files.Strip(L"80smap.png", MapExtent::kFixedRect);
  const auto screen = files.Strip(L"screen30.png", MapExtent::kFixedRect);
  if (!files) return 0;
  return EachColour(call, [=](int v, int c) { return screen(tone(v, c), c); });
}

LOOK(Effect_179InstaHudson) {
  Files files(call);
  const auto& rim = files.Texture(L"179bb.jpg");
  const auto darken = files.Square(L"vignetteMap.png");
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int c, int m) { return kHudson[c][darken(v, m, c)]; }, rim);
}

LOOK(Effect_Hudson) {
  call.Report(static_cast<float>(call.low));
  Files files(call);
  const auto& light = files.Picture(L"style\\sucai42.jpg");
  const auto overlay = files.Square(L"style\\overlayMap.png");
  if (!files) return 0;
  EachColour(
      call, [=](int v, int c, int m) { return kHudson[c][overlay(v, m, c)]; }, light);
  call.Report(static_cast<float>(call.high));
  return 1;
}

LOOK(Effect_175BaiLu) {
  static constexpr ToneTables kTones =
      Tones({30, 95, 146, 193, 240}, {0, 84, 144, 201, 254}, {28, 87, 139, 187, 233});
  Files files(call);
  const auto dew = files.Square(L"175.png");
  if (!files) return 0;
  return EachPixel(call, [=](unsigned char* pixel) {
    const float b = kTones.blue[pixel[0]], g = kTones.green[pixel[1]], r = kTones.red[pixel[2]];
    const int red = ClampToByte(1.1402f * r - 0.1174f * g - 0.0228f * b);
    const int green = ClampToByte(1.0826f * g - 0.0598f * r - 0.0228f * b);
    const int blue = ClampToByte(1.1772f * b - (0.1186f * g + 0.061f * r));
    const int y =
        static_cast<int>(0.3f * static_cast<float>(red) + 0.59f * static_cast<float>(green) +
                         0.11f * static_cast<float>(blue));
    pixel[0] = dew(blue, y, kPlaneB);
    pixel[1] = dew(green, y, kPlaneG);
    pixel[2] = dew(red, y, kPlaneR);
    pixel[3] = 255;
  });
}

LOOK(Effect_286DianYa) {
  Files files(call);
  const auto soft = files.Square(L"ZVSoftLight.png", kPlaneR);
  if (!files) return 0;
  return EachColour(call, [=](int v, int c) { return soft(kElegant[c][v], v); });
}

LOOK(Effect_DanYa) {
  Files files(call);
  const auto soft = files.Square(L"ZVSoftlight.png", kPlaneB);
  if (!files) return 0;
  return EachPixel(call, [=](unsigned char* pixel) {
    const int y = Luma(pixel);
    for (int c = 0; c < 3; ++c) pixel[c] = soft(kElegant[c][pixel[c]], y);
  });
}

LOOK(Effect_MoRan) {
  Files files(call);
  const auto ink = files.ThreeStrips(L"moran1.png", MapExtent::kFixedRect);
  if (!files) return 0;
  return EachPixel(call, [=](unsigned char* pixel) {
    pixel[0] = pixel[1] = pixel[2] = ink(Luma(pixel), kPlaneR);
  });
}

LOOK(Effect_QingLiangNew) {
  static constexpr ToneTables kTones =
      Tones({0, 72, 140, 204, 255}, {0, 55, 133, 209, 255}, {0, 84, 155, 219, 255});
  Files files(call);
  const auto screen = files.Square(L"PSScreen35.png", kPlaneR);
  if (!files) return 0;
  EachPixel(call, [=](unsigned char* pixel) {
    const int y = Luma(pixel);
    for (int c = 0; c < 3; ++c) pixel[c] = screen(pixel[c], y);
  });
  SFDSP::Saturateconst_Faster(call.pixels, call.width, call.height, 20);
  return ThroughTones(call, kTones);
}

// A picture of weather, light or wear, screened onto the image.
#include "looks/recipe.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

// The tables act on the image alone; the picture is screened over them.
static int ScreenOver(const Call& call, const wchar_t* picture, const ToneTables& tones,
                      bool levelled = false) {
  Files files(call);
  const auto& over = files.Texture(picture);
  const auto screen = files.Square(L"PSScreen.png", kPlaneR);
  if (!files) return 0;
  if (levelled)
    CPixelProcess::AutoColorLevel(call.pixels, call.width, call.height, 0, nullptr, 0, 100);
  return EachColour(
      call, [screen, &tones](int v, int c, int m) { return screen(tones[c][v], m); }, over);
}

LOOK(Effect_FeiXue) {
  static constexpr ToneTables kTones =
      Tones({0, 74, 142, 202, 255}, {0, 94, 168, 222, 255}, {0, 106, 184, 234, 255});
  return ScreenOver(call, L"sucai11.jpg", kTones);
}

LOOK(Effect_PingAnYe) {
  static constexpr ToneTables kTones =
      Tones({0, 73, 141, 202, 255}, {0, 93, 167, 222, 255}, {0, 106, 184, 234, 255});
  return ScreenOver(call, L"sucai9.jpg", kTones);
}

LOOK(Effect_LaoZhaoPian) {
  static constexpr ToneTables kTones =
      Tones({7, 65, 170, 229, 248}, {28, 74, 158, 210, 227}, {83, 128, 156, 170, 172});
  return ScreenOver(call, L"sucai17.jpg", kTones);
}

LOOK(Effect_RiGuangHaiAn) {
  static constexpr ToneTables kTones =
      Tones({0, 76, 152, 205, 255}, {0, 61, 134, 195, 255}, {0, 43, 88, 152, 255});
  return ScreenOver(call, L"sucai8.jpg", kTones, true);
}

LOOK(Effect_YeJing) {
  static constexpr ToneTables kTones = Tones({0, 88, 160, 216, 255});
  return ScreenOver(call, L"sucai10.jpg", kTones);
}

// Here the picture lies on the untouched image, and the tables tone both.
LOOK(Effect_LiangHong) {
  static constexpr ToneTables kTones =
      Tones({21, 88, 166, 221, 255}, {0, 69, 154, 218, 255}, {0, 69, 154, 218, 255});
  Files files(call);
  const auto& over = files.Texture(L"sucai7.jpg");
  const auto screen = files.Square(L"PSScreen.png");
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int c, int m) { return kTones[c][screen(v, m, c)]; }, over);
}

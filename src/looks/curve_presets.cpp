// Looks that chain two-key tables: the image against pictures that lie over it.
#include "looks/recipe.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

// One table of the image against one picture.
static int OneTable(const Call& call, const wchar_t* picture, const wchar_t* table) {
  Files files(call);
  const auto& over = files.Picture(picture, Turn::Rotate90FlipNone);
  const auto file = files.Planes(table);
  if (!files) return 0;
  call.Report(10);
  EachColour(
      Pass(call, 10, 90), [a = file[1]](int v, int, int m) { return a(v, m); }, over);
  return 1;
}

LOOK(quxian_3) {
  Files files(call);
  const auto& over = files.Picture(L"zvtk_fzl_3a.jpg", Turn::Rotate90FlipNone);
  const auto file = files.Planes(L"zvkr_quxian_3.eb");
  if (!files) return 0;
  call.Report(10);
  call.Report(20);
  const Plane a = file[1], b = file[2];
  EachColour(
      Pass(call, 20, 80), [=](int v, int, int m) { return b(a(v, m), v); }, over);
  return 1;
}

LOOK_BY(quxian_4, OneTable(call, L"zvtk_fzl_4a.jpg", L"zvkr_quxian_4.eb"))
LOOK_BY(quxian_6, OneTable(call, L"zvtk_fzl_6a.jpg", L"zvkr_quxian_6.eb"))

LOOK(quxian_7) {
  static constexpr ToneTable kWarmRed = Tone({0, 36, 70, 103, 140, 170, 196, 225, 255});
  Files files(call);
  const auto& first = files.Picture(L"zvtk_fzl_7a.jpg");
  const auto& second = files.Picture(L"zvtk_fzl_7b.jpg");
  const auto& third = files.Picture(L"zvtk_fzl_7c.jpg");
  const auto file = files.Planes(L"zvkr_quxian_7.eb");
  const bool opened{files};
  for (const float position : {10, 20, 30}) call.Report(position);  // of the pictures
  if (!opened) return 0;
  call.Report(40);
  const Plane a = file[1], b = file[2], d = file[3];
  EachColour(
      Pass(call, 40, 60),
      [=](int v, int c, int m1, int m2, int m3) {
        const unsigned char t = d(b(a(v, m1), m2), m3);
        return c == kPlaneR ? kWarmRed[t] : t;
      },
      first, second, third);
  return 1;
}

LOOK(quxian_10) {
  static constexpr ToneTable kLift = Tone({0, 37, 73, 109, 143, 172, 200, 228, 255});
  static constexpr ToneTable kFade = Tone({25, 54, 82, 111, 140, 169, 198, 226, 254});
  const PixelMemory copy = CopyOf(call);
  const Call work = Over(call, copy);
  const auto give = [&](int result) {
    LayBack(call, copy);
    return result;
  };
  {
    Files files(call);
    const auto& haze = files.Picture(L"zvkr_jj_001.jpg");
    const auto& grain = files.Picture(L"zvkr_jj_002.jpg");
    const auto file = files.Planes(L"zvkr_quxian_10_0.eb");
    if (!files) return 0;
    call.Report(5);
    const Plane a = file[1], b = file[2];
    if (!EachColour(
            Pass(work, 5, 30), [=](int v, int, int m1, int m2) { return b(kLift[a(v, m1)], m2); },
            haze, grain))
      return give(0);
  }
  CPixelProcess::Saturateconst(work.pixels, work.width, work.height, -9, 1, work.progress, 35, 65);
  if (!call.GoesOn()) return give(0);

  Files files(call);
  const auto& beam = files.Picture(L"zvkr_jj_004.jpg");
  const auto file = files.Planes(L"zvkr_quxian_10_1.eb");
  if (!files) return give(0);
  call.Report(70);
  const Plane a = file[2], b = file[3];
  // The host's stop ends this pass early; what is done counts.
  EachColour(
      Pass(work, 70, 30), [=](int v, int, int o, int m) { return b(a(kFade[v], o), m); },
      PixelLayer(call.pixels, call.width), beam);
  return give(1);
}

LOOK(quxian_14) {
  static constexpr ToneTable kBrighten = Tone({0, 46, 88, 126, 160, 190, 216, 238, 255});
  Files files(call);
  const auto& sun = files.Texture(L"sucai12.jpg");
  const auto light = files.Square(L"ZVQCGYEx.png", kPlaneR);
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int, int m) { return light(kBrighten[v], m); }, sun);
}

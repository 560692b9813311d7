// Old photographs: chains of curves, blends with pictures and vignettes.
#include "looks/recipe.h"
#include "pixel/blend_buffers.h"
#include "pixel/truncate.h"

using namespace tintwerk;

LOOK(Effect_HuiYi) {
  Files files(call);
  const auto& paper = files.Picture(L"huiyi1.jpg");
  const auto blend = files.Square(L"huiyi4.png"), rim = files.Square(L"vignetteMap.png");
  const auto first = files.Strip(L"huiyi2.png"), last = files.Strip(L"huiyi3.png");
  if (!files) return 0;
  return EachColourByRadius(
      call,
      [=](int v, int c, int d, int m) { return last(rim(first(blend(v, m, c), c), d, c), c); },
      paper);
}

// Curves, then a dark rim.
static int CurvesAndRim(const Call& call, const wchar_t* curves) {
  Files files(call);
  const auto tone = files.ThreeStrips(curves);
  const auto rim = files.Square(L"vignetteMap.png");
  if (!files) return 0;
  return EachColourByRadius(call, [=](int v, int c, int d) { return rim(tone(v, c), d, c); });
}

LOOK_BY(Effect_NingXia, CurvesAndRim(call, L"xihu1.png"))
LOOK_BY(Effect_YaoGun, CurvesAndRim(call, L"yaogunMap.png"))

// A wiped blackboard, then curves.
static int BlackboardAndCurves(const Call& call, const wchar_t* curves) {
  Files files(call);
  const auto& board = files.Picture(L"style\\blackboard.jpg");
  const auto overlay = files.Square(L"style\\overlayMap.png");
  const auto tone = files.ThreeStrips(curves);
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int c, int m) { return tone(overlay(v, m, c), c); }, board);
}

LOOK_BY(Effect_LiuNian, BlackboardAndCurves(call, L"style\\qingse1.png"))
LOOK_BY(Effect_YunDuan, BlackboardAndCurves(call, L"style\\chengguang.png"))

LOOK(Effect_Bali) {
  Files files(call);
  const auto &rim = files.Picture(L"vignette640.jpg"), &light = files.Picture(L"blowout2.jpg"),
             &rose = files.Picture(L"zvkr_fhjr3.jpg");
  const auto soft = files.Square(L"CompositeColor.png", kPlaneB);
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int, int m1, int m2, int m3) { return soft(soft(soft(v, m1), m2), m3); },
      rim, light, rose);
}

LOOK(Effect_HouQingChun) {
  static constexpr ToneTables kTones =
      Tones({0, 59, 149, 213, 255}, {0, 45, 158, 217, 255}, {0, 52, 163, 217, 255});
  constexpr float kTint = 0.24f;
  Files files(call);
  const auto &night = files.Picture(L"zvkr_hqc1.jpg"), &light = files.Picture(L"zvkr_hqc2.jpg");
  const auto exclusion = files.Square(L"hqc_Exclusion.png", kPlaneB);
  const auto vivid = files.Square(L"hqc_VividLight.png", kPlaneB);
  const auto soft = files.Strip(L"hqc_SoftLight.png");
  if (!files) return 0;
  return EachRun(
      call,
      [=](unsigned char* pixels, std::int64_t count, const unsigned char* m1,
          const unsigned char* m2) {
        for (std::int64_t i = 0; i < 4 * count; i += 4)
          for (int c = 0; c < 3; ++c)
            pixels[i + c] = vivid(kTones[c][exclusion(pixels[i + c], m1[i + c])], m2[i + c]);
        BlendBuffersFixedTint(pixels, pixels, static_cast<int>(count), kTint);
        for (std::int64_t i = 0; i < 4 * count; i += 4)
          for (int c = 0; c < 3; ++c) pixels[i + c] = soft(pixels[i + c], kPlaneB);
      },
      night, light);
}

LOOK(Effect_YouGe) {
  Files files(call);
  const auto &edge = files.Picture(L"style\\edgeBurn.jpg"),
             &breeze = files.Picture(L"style\\hefeng4.jpg");
  const auto tone = files.ThreeStrips(L"style\\hefeng1.png");
  const auto keys = files.Strip(L"style\\hefeng2.png");
  const auto soft = files.Square(L"style\\hefeng3.png");
  if (!files) return 0;
  return EachPixel(
      call,
      [=](unsigned char* pixel, const unsigned char* e, const unsigned char* n) {
        for (int c = 0; c < 3; ++c) pixel[c] = tone(TruncateToByte(pixel[c] * e[c] * 0.0039215), c);
        const int y = Luma(pixel);
        for (int c = 0; c < 3; ++c) pixel[c] = soft(soft(pixel[c], keys(y, c), c), n[c], c);
      },
      edge, breeze);
}

// Looks that are curves in the first place, some with a step before, between or after them.
#include <cmath>

#include "looks/recipe.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

TONE_LOOK(Effect_164NuanCha, {17, 95, 157, 212, 255}, {12, 80, 148, 208, 255},
          {0, 72, 142, 207, 255})
TONE_LOOK(Effect_173LengDiao, {0, 66, 150, 219, 255}, {0, 66, 150, 219, 255},
          {0, 91, 164, 217, 255})
TONE_LOOK(Effect_GuTongSe, {0, 52, 128, 188, 199}, {0, 52, 128, 200, 239}, {91, 102, 128, 200, 255})
TONE_LOOK(Effect_JiuRiXi, {14, 88, 153, 199, 222}, {21, 103, 170, 214, 240},
          {36, 115, 177, 225, 255})
TONE_LOOK(Effect_LanDiao, {0, 114, 184, 226, 255}, {0, 100, 171, 219, 255}, {0, 107, 181, 228, 254})
TONE_LOOK(Effect_RiXiRenXiang, {16, 91, 155, 200, 223}, {26, 107, 171, 212, 236},
          {48, 121, 174, 214, 239})
TONE_LOOK(Effect_RouGuangNew, {0, 104, 185, 232, 255}, {0, 95, 178, 227, 255},
          {0, 95, 178, 227, 255})
TONE_LOOK(Effect_ZiRan, {0, 88, 164, 217, 255}, {0, 84, 159, 215, 255}, {0, 84, 159, 215, 255})
TONE_LOOK(Effect_BingLing, {0, 74, 142, 202, 255}, {0, 94, 168, 222, 255}, {0, 106, 184, 234, 255})
TONE_LOOK(Effect_Panduola, {54, 81, 125, 186, 255}, {0, 63, 128, 187, 212}, {0, 63, 111, 134, 142})
TONE_LOOK(Effect_ShenLanLeiYu, {0, 68, 155, 217, 253}, {5, 88, 171, 224, 253},
          {34, 128, 195, 234, 252})
TONE_LOOK(Effect_ZiSeHuanXiang, {0, 97, 170, 224, 255}, {0, 63, 160, 217, 255},
          {0, 130, 182, 219, 255})
TONE_LOOK(Effect_ZiSeQingMi, {0, 39, 140, 222, 255}, {0, 0, 134, 220, 255}, {0, 81, 176, 232, 255})
TONE_LOOK(Effect_DuiBiQiangLie, {0, 28, 140, 220, 255}, {0, 30, 150, 227, 255},
          {0, 36, 148, 224, 255})
TONE_LOOK(Effect_FuGuPomelo, {0, 63, 150, 216, 247}, {17, 79, 150, 196, 217},
          {70, 114, 144, 165, 173})
TONE_LOOK(Effect_XinRiXi, {22, 71, 131, 165, 196}, {10, 85, 140, 181, 224}, {0, 54, 141, 201, 246})

// Looks under two names.
#define GOTHIC                                        \
  {12, 77, 158, 197, 211}, {39, 81, 171, 215, 231}, { \
    0, 22, 109, 171, 185                              \
  }
TONE_LOOK(Effect_GeTeFeng, GOTHIC)
TONE_LOOK(Effect_GeTeFengPomelo, GOTHIC)
#undef GOTHIC
#define CINEMA                                        \
  {12, 43, 128, 215, 246}, {20, 59, 150, 217, 237}, { \
    14, 78, 157, 207, 221                             \
  }
TONE_LOOK(Effect_JiaoPian, CINEMA)
TONE_LOOK(Effect_JiaoPianPomelo, CINEMA)
#undef CINEMA
TONE_LOOK(NewStd_6, {0, 88, 160, 215, 255}, {0, 81, 150, 208, 255}, {0, 77, 146, 205, 255})
LOOK_BY(Effect_FenHongJiaRen, Recipe_NewStd_6(call))

// Every channel through its curve at the pixel's grey value.
static int ThroughGrey(const Call& call, const ToneTables& tones) {
  return EachPixel(call, [&tones](unsigned char* pixel) {
    const int grey = Luma(pixel);
    for (int c = 0; c < 3; ++c) pixel[c] = tones[c][grey];
  });
}

LOOK(Effect_Silver) {
  static constexpr ToneTable kIdentity = TableOf([](int i) { return i; });
  static constexpr ToneTables kTones{kIdentity, kIdentity, kIdentity};
  return ThroughGrey(call, kTones);
}

LOOK(Effect_Sliver) {
  static constexpr ToneTables kTones =
      Tones({0, 51, 150, 236, 255}, {0, 51, 150, 236, 255}, {0, 57, 134, 208, 255});
  return ThroughGrey(call, kTones);
}

LOOK(Effect_165WuCha) {
  static constexpr ToneTables kTones =
      Tones({0, 112, 187, 242, 255}, {0, 95, 169, 227, 255}, {41, 110, 163, 202, 235});
  ThroughTones(call, kTones);
  SFDSP::HueSaturationBright(call.pixels, call.width, call.height, 0, 8, 3);
  return 1;
}

LOOK(Effect_FanHuangAnJiao) {
  static constexpr ToneTables kTones =
      Tones({25, 61, 140, 219, 255}, {25, 61, 140, 219, 255}, {0, 35, 115, 194, 229});
  const std::int64_t cx = call.width / 2, cy = call.height / 2;
  const auto reach = static_cast<std::int64_t>(std::sqrt(static_cast<float>(cx * cx + cy * cy)));
  const auto full = static_cast<std::int64_t>(static_cast<double>(reach * 2) * 1.2);
  if (full == 0) return ThroughTones(call, kTones);  // of one pixel
  return EachPixelAt(call, [=](unsigned char* pixel, int x, int y) {
    const std::int64_t dx = x - cx, dy = y - cy;
    const float distance = std::sqrt(static_cast<float>(dy * dy + dx * dx));
    const double kept = 1 - distance / static_cast<double>(full);
    for (int c = 0; c < 3; ++c)
      pixel[c] = static_cast<unsigned char>(static_cast<int>(kTones[c][pixel[c]] * kept));
  });
}

// Curves before and after a change of saturation.
static int CurvesRoundSaturation(const Call& call, const ToneTables& before, int amount,
                                 const ToneTables& after) {
  ThroughTones(call, before);
  CPixelProcess::Saturateconst(call.pixels, call.width, call.height, amount, 1, call.progress, 30,
                               70);
  return call.GoesOn() && ThroughTones(call, after);
}

LOOK(Effect_RiXi) {
  static constexpr ToneTables kBefore = Tones({0, 83, 153, 211, 255});
  static constexpr ToneTables kAfter =
      Tones({25, 68, 147, 214, 235}, {25, 83, 147, 212, 249}, {105, 137, 194, 247, 255});
  return CurvesRoundSaturation(call, kBefore, -20, kAfter);
}

LOOK(Effect_YinXiang) {
  static constexpr ToneTables kBefore =
      Tones({0, 57, 123, 190, 255}, {0, 60, 125, 191, 255}, {0, 53, 120, 188, 255});
  static constexpr ToneTables kAfter =
      Tones({29, 86, 158, 195, 220}, {51, 108, 175, 207, 231}, {81, 115, 164, 204, 225});
  return CurvesRoundSaturation(call, kBefore, 15, kAfter);
}

LOOK(Effect_LengDiaoSe) {
  static constexpr ToneTables kBefore = Tones({0, 52, 128, 203, 255});
  static constexpr ToneTables kAfter =
      Tones({0, 95, 145, 191, 255}, {0, 75, 132, 188, 255}, {0, 59, 146, 228, 255});
  ThroughTones(call, kBefore);
  CPixelProcess::Saturateconst(call.pixels, call.width, call.height, -80, 1, call.progress, 20, 50);
  if (!call.GoesOn()) return 0;
  CPixelProcess::AutoColorLevel(call.pixels, call.width, call.height, 0, call.progress, 50, 80);
  return call.GoesOn() && ThroughTones(call, kAfter);
}

LOOK(Effect_XiaoQingXin) {
  static constexpr ToneTables kTones =
      Tones({0, 69, 149, 198, 255}, {0, 71, 133, 191, 255}, {0, 65, 135, 195, 255});
  struct Balance {
    CPixelProcess::TONE_REGION region;
    int red, green, blue, start;
  };
  for (const auto& [region, red, green, blue, start] :
       {Balance{CPixelProcess::ToneShadow, 13, 0, 21, 10},
        Balance{CPixelProcess::ToneMidtone, 2, 0, 8, 30},
        Balance{CPixelProcess::ToneHighlight, 0, 0, -13, 50}}) {
    CPixelProcess::CColorBalance(1, region, red, green, blue, call.pixels, call.width, call.height,
                                 call.progress, start, start + 10);
    if (!call.GoesOn()) return 0;
    CPixelProcess::AutoColorLevel(call.pixels, call.width, call.height, 0, call.progress,
                                  start + 10, start + 20);
    if (!call.GoesOn()) return 0;
  }
  return ThroughTones(call, kTones);
}

// Each channel as a share of the largest value around it, which is less than full where something
// brighter is near: along the edges. Dark pixels keep their values.
LOOK(Effect_LaBi) {
  static constexpr ToneTable kTone =
      Curve({{0, 0}, {32, 0}, {64, 6}, {128, 39}, {192, 118}, {255, 255}});
  const PixelMemory copy = CopyOf(call);
  // The share in 255ths of every value below each maximum.
  const PixelMemory shares = RequirePixels(256 * 256);
  for (int m = 0; m < 256; ++m)
    for (int v = 0; v < 256; ++v)
      shares[256 * m + v] =
          m == 0 ? 0
                 : static_cast<unsigned char>(static_cast<int>(static_cast<float>(v) / m * 255));
  const int width = call.width, height = call.height;
  const std::int64_t pitch = std::int64_t{4} * width;
  const unsigned char *const source = copy.get(), *const share = shares.get();
  return EachPixelAt(call, [=](unsigned char* pixel, int x, int y) {
    const unsigned char* const centre = source + pitch * y + std::int64_t{4} * x;
    const std::int64_t dx = x > 0 && x + 1 < width ? 4 : 0;
    const std::int64_t dy = y > 0 && y + 1 < height ? pitch : 0;
    const float k = static_cast<float>(std::min(Luma(centre), 57) / 57.0);
    int p[3];
    for (int c = 0; c < 3; ++c) {
      int m = c == 0;  // of blue it starts at 1
      for (const std::int64_t row : {-dy, std::int64_t{0}, dy})
        for (const std::int64_t column : {-dx, std::int64_t{0}, dx})
          m = std::max<int>(m, centre[row + column + c]);
      const float q = share[256 * m + centre[c]];
      p[c] = static_cast<int>(static_cast<double>(q * k) + centre[c] * (1.0 - k));
    }
    const int tone = kTone[(117 * p[0] + 306 * p[2] + 601 * p[1]) >> 10];
    const int blue = centre[0], green = centre[1], red = centre[2];
    const int i = static_cast<int>(0.596 * red - 0.275 * green - 0.321 * blue);
    const int j = static_cast<int>(0.212 * red - 0.523 * green + 0.311 * blue);
    pixel[2] = ClampToByte(0.956 * i + tone + 0.621 * j);
    pixel[1] = ClampToByte(tone - 0.272 * i - 0.647 * j);
    pixel[0] = ClampToByte(tone - 1.106 * i + 1.703 * j);
  });
}

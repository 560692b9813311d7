// Portraits: smoother and fairer skin, and the colourings that go with it.
#include <algorithm>
#include <limits>

#include "looks/recipe.h"
#include "pixel/truncate.h"
#include "portrait/beautify.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/selective_color.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

// Pixels with little detail are lifted; finish(v, L, p) makes the new value of a channel that was v
// and is lifted to p, with L the luma of the lifted pixel.
template <Precision kPrecision, class Finish>
static int Lifted(const Call& call, const ToneTable& lift, const Finish& finish) {
  constexpr double kSigma = 15;
  return ForEachDetail(call.pixels, call.width, call.height, kSigma, kPrecision,
                       [&](unsigned char* pixel, const unsigned char*, float weight) {
                         int p[3];
                         for (int c = 0; c < 3; ++c)
                           p[c] = LiftedBy<kPrecision>(lift, pixel[c], weight);
                         finish(pixel, p);
                       });
}

LOOK(Effect_GuangHuaMeiFu) {
  return Lifted<Precision::kDouble>(call, kSkinLift, [](unsigned char* pixel, const int(&p)[3]) {
    for (int c = 0; c < 3; ++c) pixel[c] = static_cast<unsigned char>(p[c]);
  });
}

// Screened with its own luma, and a fifth of what it was.
LOOK(Effect_ShenDuMeiBai) {
  static constexpr ToneTable kLift = Tone({0, 8, 31, 74, 115, 151, 182, 209, 233, 255});
  return Lifted<Precision::kDouble>(call, kLift, [](unsigned char* pixel, const int(&p)[3]) {
    const auto luma = static_cast<float>(0.2125 * p[2] + 0.7154 * p[1] + 0.0721 * p[0]);
    const float rest = 255 - luma;
    for (int c = 0; c < 3; ++c) {
      const int q = TruncateToByte(static_cast<float>(p[c]) * rest * 0.0039215 + luma);
      pixel[c] = static_cast<unsigned char>(static_cast<int>(q * 0.8 + pixel[c] * 0.2));
    }
  });
}

LOOK(Effect_ZiRanMeiBai) {
  static constexpr ToneTable kLift = Tone({0, 8, 29, 71, 110, 146, 178, 206, 231, 255});
  return Lifted<Precision::kSingle>(call, kLift, [](unsigned char* pixel, const int(&p)[3]) {
    const float b = static_cast<float>(p[0]), g = static_cast<float>(p[1]),
                r = static_cast<float>(p[2]);
    const float luma = 0.7154f * g + 0.2125f * r + 0.0721f * b;
    const float rest = 255 - luma;
    for (int c = 0; c < 3; ++c) {
      const int q = TruncateToByte(static_cast<float>(p[c]) * rest * 0.0039215f + luma);
      pixel[c] = static_cast<unsigned char>((q + pixel[c]) >> 1);
    }
  });
}

namespace {

struct Inks {
  CSelectiveColor::eColorType family;
  int cyan, magenta, yellow, black;
};

void Select(const Call& call, std::initializer_list<Inks> settings) {
  CSelectiveColor selective;
  for (const auto& [family, cyan, magenta, yellow, black] : settings)
    selective.SetSelectiveColor(family, cyan, magenta, yellow, black);
  selective.Execute(call.pixels, call.width, call.height);
}

}  // namespace

LOOK(Effect_TianMeiKeRen) {
  static constexpr ToneTables kFirst = Tones({6, 22, 37, 67, 98, 128, 159, 189, 220, 249},
                                             {18, 32, 46, 73, 101, 128, 156, 183, 211, 237},
                                             {50, 60, 70, 89, 109, 128, 148, 167, 187, 205});
  static constexpr ToneTables kLast = Tones({11, 35, 59, 105, 145, 178, 203, 224, 240, 255},
                                            {13, 33, 54, 93, 130, 163, 192, 216, 237, 255},
                                            {0, 23, 46, 91, 133, 169, 201, 226, 248, 255});
  ThroughTones(call, kFirst);
  Select(call, {{CSelectiveColor::Red, -100, -60, -60, 0},
                {CSelectiveColor::Yellow, 0, -62, -100, 0},
                {CSelectiveColor::Blue, -15, 100, 100, 0},
                {CSelectiveColor::Black, 0, 4, -5, 0}});
  return ThroughTones(call, kLast);
}

LOOK(Effect_NuanYangYang) {
  static constexpr ToneTables kTones = Tones({25, 64, 96, 143, 177, 200, 216, 227, 238, 245},
                                             {25, 38, 72, 123, 158, 187, 210, 227, 241, 246},
                                             {52, 57, 74, 103, 129, 152, 173, 192, 211, 226});
  ThroughTones(call, kTones);
  Select(call, {{CSelectiveColor::Red, 30, 0, 10, -30},
                {CSelectiveColor::White, -100, -25, -45, 0},
                {CSelectiveColor::Black, 0, 0, 0, 10}});
  return 1;
}

LOOK(Effect_ABaoSe) {
  static constexpr ToneTable kGreenBlue = Tone({0, 24, 46, 88, 126, 160, 190, 216, 238, 255});
  static constexpr ToneTables kTones{kGreenBlue, kGreenBlue,
                                     Tone({0, 26, 50, 95, 135, 169, 198, 223, 244, 255})};
  if (call.width > std::numeric_limits<int>::max() / 4) return 0;  // no int holds the stride
  if (const std::size_t count = call.Count(); count > 0) {
    // Blue to yellow becomes what red to green is: two colours are left.
    const PixelMemory planes = RequirePixels(3 * count);
    unsigned char *const l = planes.get(), *const a = l + count;
    const int stride = 4 * call.width;
    SFDSP::DecomposeToLab(call.pixels, call.width, call.height, stride, l, a, a + count);
    SFDSP::RecomposeFromLab(call.pixels, call.width, call.height, stride, l, a, a);
  }
  EachPixel(call, [](unsigned char* pixel) {
    for (int c = 0; c < 3; ++c) pixel[c] = kTones[c][pixel[c]];
    const int blue = pixel[0], green = pixel[1], red = pixel[2];
    const auto [min, max] = std::minmax({red, green, blue});
    const auto between = [min = min, max = max](int v) { return v > min && v < max; };
    const int mid = between(red) ? red : between(green) ? green : between(blue) ? blue : min;
    int delta[3] = {};
    SFDSP::ZVSelectiveColorRed(pixel, min, mid, max, delta, -20, 20, 20);
    SFDSP::ZVSelectiveColorYellow(pixel, min, mid, max, delta, -25, 25, 0);
    SFDSP::ZVSelectiveColorCyan(pixel, min, mid, max, delta, 0, 0, 50);
    SFDSP::ZVSelectiveColorBlue(pixel, min, mid, max, delta, 0, -100, 100);
    SFDSP::ZVSelectiveColorWhite(pixel, min, mid, max, delta, -25, 10, -10);
    for (int c = 0; c < 3; ++c) pixel[c] = ClampToByte(pixel[c] - delta[c]);
  });
  call.Report(static_cast<float>(call.high));
  return 1;
}

LOOK(Effect_FenNenXi) {
  static constexpr ToneTables kTones = {.blue = Tone({0, 20, 41, 82, 120, 154, 185, 211, 234, 255}),
                                        .green = TableOf([](int i) { return i; }),
                                        .red = Tone({0, 18, 37, 74, 109, 141, 170, 206, 233, 255})};
  Files files(call);
  const auto& pink = files.Texture(L"sucai6.jpg");
  const auto screen = files.Square(L"PSScreen50.png", kPlaneR);
  const auto soft = files.Square(L"ZVSoftLight.png", kPlaneR);
  const auto multiply = files.Square(L"ZVMultiple50.png", kPlaneR);
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int c, int m) { return multiply(kTones[c][soft(screen(v, v), m)], v); },
      pink);
}

LOOK(Effect_WeiMei) {
  CPixelProcess::WeiMei(call.pixels, call.width, call.height);
  return 1;
}

// Studio looks: tables of each sharp value against its blurred one.
#include <cstring>

#include "filters/scaled_layers.h"
#include "looks/recipe.h"
#include "pixel/blend_buffers.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

// Blurs the image a little and gives it as it was.
PixelMemory BlurBesideSharp(const Call& call) {
  PixelMemory sharp = CopyOf(call);
  if (call.Count() > 0 &&
      !CPixelProcess::stackBlur(call.pixels, call.width, call.height, 2, nullptr, 0, 100))
    throw std::bad_alloc();
  return sharp;
}

// A plane a channel, red first; the sharp value is the high index.
int SharpAgainstBlurred(const Call& call, const unsigned char* sharp, const wchar_t* table) {
  Files files(call);
  const auto& file = files.Planes(table);
  if (!files) return 0;
  const std::array planes{file[3], file[2], file[1]};
  return EachColour(
      call, [=](int v, int c, int s) { return planes[c](s, v); }, PixelLayer(sharp, call.width));
}

// The common look of the family.
int StdioFunction(const Call& call, const wchar_t* table) {
  const PixelMemory sharp = BlurBesideSharp(call);
  return SharpAgainstBlurred(call, sharp.get(), table);
}

// A byte as a share of 255.
constexpr auto kShare = [] {
  std::array<float, 256> share{};
  for (int i = 0; i < 256; ++i) share[i] = static_cast<float>(i) / 255.0f;
  return share;
}();

}  // namespace

LOOK_BY(Effect_LengLan, StdioFunction(call, L"zvkr_studio_2.eb"))
LOOK_BY(Effect_LengLv, StdioFunction(call, L"zvkr_studio_5.eb"))
LOOK_BY(Effect_NuanHuang, StdioFunction(call, L"zvkr_studio_3.eb"))

LOOK(Effect_JingDianYingLou) {
  const PixelMemory sharp = BlurBesideSharp(call);
  if (!call.GoesOn()) return 0;
  return SharpAgainstBlurred(call, sharp.get(), L"zvkr_studio_0.eb");
}

LOOK(Effect_LengZi) {
  PixelMemory sharp = BlurBesideSharp(call);
  if (!call.GoesOn()) return 0;
  Files files(call);
  const auto& file = files.Planes(L"zvkr_studio_1.eb");
  if (!files) return 0;
  const Plane first = file[1], second = file[2];
  // Here the blurred value is the high index, and one pair of planes serves every channel.
  EachColour(
      call, [=](int v, int, int s) { return second(first(v, s), s); },
      PixelLayer(sharp.get(), call.width));
  sharp.reset();

  CPixelProcess::Saturateconst(call.pixels, call.width, call.height, -45, 1, call.progress, 60, 80);
  if (!call.GoesOn()) return 0;
  const unsigned char *red = file.Tone(1), *green = file.Tone(2), *blue = file.Tone(3);
  return EachRun(call, [=](unsigned char* pixels, std::int64_t count) {
    ApplyTables(pixels, count, blue, green, red);
  });
}

LOOK(Effect_YiZhou) {
  // Contrast of a darkroom print: nothing below 16, almost nothing kept between dark and light.
  static constexpr ToneTable kSteep = Tone({0, 0, 4, 30, 102, 194, 235, 250, 254, 255});
  constexpr int kSide = 640;
  const PixelMemory copy = CopyOf(call);
  EachRun(call, [](unsigned char* pixels, std::int64_t count) {
    ApplyTable(pixels, count, kSteep.data());
  });
  // The colours come back from the untouched image: the curve is to change the brightness.
  BlendBuffersColorHSB(call.pixels, copy.get(), call.Count(), 0.6f);
  std::memcpy(copy.get(), call.pixels, std::size_t{4} * call.Count());
  if (!CPixelProcess::stackBlur(call.pixels, call.width, call.height, 2, nullptr, 0, 100) ||
      !call.GoesOn())
    return 0;

  Files files(call);
  const auto masks = files.Raw(L"zvkr_lomo_16.eb", std::size_t{2} * kSide * kSide);
  if (!files) return 0;
  // Sharpness and light of a place, side by side.
  const PixelMemory mask = RequirePixels(std::size_t{4} * kSide * kSide);
  for (int i = 0; i < kSide * kSide; ++i) {
    mask[4 * i] = masks[i];
    mask[4 * i + 1] = masks[kSide * kSide + i];
  }
  return EachPixel(
      call,
      [](unsigned char* pixel, const unsigned char* crisp, const unsigned char* m) {
        const float focus = kShare[m[0]], light = kShare[m[1]];
        for (int c = 0; c < 3; ++c) {
          const int mixed = static_cast<int>(crisp[c] * focus + pixel[c] * (1 - focus));
          pixel[c] = static_cast<unsigned char>(static_cast<int>(mixed * light));
        }
      },
      PixelLayer(copy.get(), call.width),
      NearestLayer({mask.get(), kSide, kSide}, call.width, call.height));
}

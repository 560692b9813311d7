// Studio looks: tables of each sharp value against its blurred one.
#include "filters/scaled_layers.h"
#include "looks/recipe.h"
#include "pixel/blend_buffers.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

constexpr int kRadius = 2;

// What a look of the family leaves when it stops behind its blur.
int Blurred(const Call& call, const PixelMemory& blurred) {
  LayBack(call, blurred);
  return 0;
}

// A plane a channel, red first; the sharp value is the high index.
int SharpAgainstBlurred(const Call& call, const PixelMemory& blurred, const wchar_t* table) {
  Files files(call);
  const auto file = files.Planes(table);
  if (!files) return Blurred(call, blurred);
  const std::array planes{file[3], file[2], file[1]};
  return EachColour(
      call, [=](int v, int c, int b) { return planes[c](v, b); },
      PixelLayer(blurred.get(), call.width));
}

// The common look of the family.
int StdioFunction(const Call& call, const wchar_t* table) {
  return SharpAgainstBlurred(call, BlurredCopy(call, kRadius), table);
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
  const PixelMemory blurred = BlurredCopy(call, kRadius);
  if (!call.GoesOn()) return Blurred(call, blurred);
  return SharpAgainstBlurred(call, blurred, L"zvkr_studio_0.eb");
}

LOOK(Effect_LengZi) {
  PixelMemory blurred = BlurredCopy(call, kRadius);
  if (!call.GoesOn()) return Blurred(call, blurred);
  Files files(call);
  const auto file = files.Planes(L"zvkr_studio_1.eb");
  if (!files) return Blurred(call, blurred);
  const Plane first = file[1], second = file[2];
  // Here the blurred value is the high index, and one pair of planes serves every channel.
  EachColour(
      call, [=](int v, int, int b) { return second(first(b, v), v); },
      PixelLayer(blurred.get(), call.width));
  blurred.reset();

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
  const PixelMemory sharp = CopyOf(call);
  EachRun(Over(call, sharp), [](unsigned char* pixels, std::int64_t count) {
    ApplyTable(pixels, count, kSteep.data());
  });
  // The colours come back from the untouched image: the curve is to change the brightness.
  BlendBuffersColorHSB(sharp.get(), call.pixels, call.Count(), 0.6f);
  const PixelMemory blurred = BlurredCopy(Over(call, sharp), kRadius);
  if (!call.GoesOn()) return Blurred(call, blurred);

  Files files(call);
  const auto masks = files.Raw(L"zvkr_lomo_16.eb", std::size_t{2} * kSide * kSide);
  if (!files) return Blurred(call, blurred);
  // Sharpness and light of a place, side by side.
  const PixelMemory mask = RequirePixels(std::size_t{4} * kSide * kSide);
  for (int i = 0; i < kSide * kSide; ++i) {
    mask[4 * i] = masks[i];
    mask[4 * i + 1] = masks[kSide * kSide + i];
  }
  return EachPixel(
      call,
      [](unsigned char* pixel, const unsigned char* crisp, const unsigned char* soft,
         const unsigned char* m) {
        const float focus = kShare[m[0]], light = kShare[m[1]];
        for (int c = 0; c < 3; ++c) {
          const int mixed = static_cast<int>(crisp[c] * focus + soft[c] * (1 - focus));
          pixel[c] = static_cast<unsigned char>(static_cast<int>(mixed * light));
        }
      },
      PixelLayer(sharp.get(), call.width), PixelLayer(blurred.get(), call.width),
      NearestLayer({mask.get(), kSide, kSide}, call.width, call.height));
}

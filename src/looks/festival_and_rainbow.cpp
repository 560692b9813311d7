// Looks that compose whole buffers: a festive frame, and a rainbow over grey.
#include <cstring>

#include "looks/recipe.h"
#include "pixel/blend_buffers.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

LOOK(Jieri_3) {
  static constexpr ToneTable kFestive = Curve({{0, 0},
                                               {32, 60},
                                               {64, 112},
                                               {96, 156},
                                               {128, 192},
                                               {160, 220},
                                               {192, 240},
                                               {224, 252},
                                               {240, 255},
                                               {255, 255}});
  Files files(call);
  const auto& frame = files.Picture(L"zvkr_festival_3.png", Turn::Rotate90FlipNone);
  const auto& colour = files.Picture(L"zvkr_festival_3b.jpg", Turn::Rotate90FlipNone);
  if (!files) return 0;
  for (const float position : {5, 15, 20, 30}) call.Report(position);  // opened and scaled
  return EachRun(
      call,
      [](unsigned char* pixels, std::int64_t count, auto* over, auto* hue) {
        const auto pixelCount = static_cast<int>(count);
        ApplyTable(pixels, count, kFestive.data());
        BlendBuffersAlphaOver(pixels, over, pixelCount);
        BlendBuffersHueSat(pixels, hue, pixelCount);
      },
      frame, colour);
}

LOOK(RainbowColor) {
  constexpr tagRGBQUAD kColours[] = {{227, 159, 26, 0}, {55, 210, 255, 0}};
  const std::size_t bytes = std::size_t{4} * call.Count();
  const PixelMemory gradient = RequirePixels(bytes);
  std::memset(gradient.get(), 255, bytes);
  if (!CPixelProcess::CreateGradientImage(gradient.get(), call.width, call.height, kColours,
                                          call.progress, call.low, 10) ||
      !call.GoesOn())
    return 0;
  EachPixel(call, [](unsigned char* pixel) { CPixelProcess::SetGrayScaleEx(pixel); });
  BlendBuffersSoftLight(call.pixels, gradient.get(), call.Count());
  return 1;
}

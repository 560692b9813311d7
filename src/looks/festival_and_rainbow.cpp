// Looks that compose whole buffers: a festive frame, and a rainbow over grey.
#include <cstring>

#include "filters/rows.h"
#include "frame/image.h"
#include "frame/material.h"
#include "frame/parallel.h"
#include "maps/material_over.h"
#include "pixel/blend_buffers.h"
#include "pixel/tone_curve.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

constexpr ToneTable kFestive = Curve({{0, 0},
                                      {32, 60},
                                      {64, 112},
                                      {96, 156},
                                      {128, 192},
                                      {160, 220},
                                      {192, 240},
                                      {224, 252},
                                      {240, 255},
                                      {255, 255}});

}  // namespace

int CEffect::Jieri_3(unsigned char* pixels, int width, int height, void* resourceRoot,
                     CObjProgress* progress, int, int) {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return 0;
  // Decodes, turns and scales a picture, and says so.
  const auto load = [&](const wchar_t* path, float opened, float scaled) {
    const auto picture =
        OpenPicture(FormatPath(path, resourceRoot), width, height, Gdiplus::Rotate90FlipNone);
    Report(progress, opened);
    auto over = ScaleOver(picture.get(), width, height);
    if (over) Report(progress, scaled);
    return over;
  };
  const auto frame = load(L"%s\\Effects\\zvkr_festival_3.png", 5, 15);
  if (!frame) return 0;
  const auto colour = load(L"%s\\Effects\\zvkr_festival_3b.jpg", 20, 30);
  if (!colour) return 0;

  ParallelFor(*count, [=](std::int64_t i) { ApplyTable(pixels + 4 * i, 1, kFestive.data()); });
  BlendBuffersAlphaOver(pixels, BitmapLock(frame.get()).Pixels(), *count);
  BlendBuffersHueSat(pixels, BitmapLock(colour.get()).Pixels(), *count);
  return 1;
}

int CEffect::RainbowColor(unsigned char* pixels, int width, int height, void*,
                          CObjProgress* progress, int progressLow, int) {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return 0;
  const std::size_t bytes = std::size_t{4} * *count;
  const auto gradient = AllocatePixels(bytes);
  if (!gradient) return 0;
  std::memset(gradient.get(), 255, bytes);
  constexpr tagRGBQUAD kColours[] = {{227, 159, 26, 0}, {55, 210, 255, 0}};
  if (!CPixelProcess::CreateGradientImage(gradient.get(), width, height, kColours, progress,
                                          progressLow, 10) ||
      !KeepGoing(progress))
    return 0;
  ForEachPixel(pixels, width, height,
               [](unsigned char* pixel) { CPixelProcess::SetGrayScaleEx(pixel); });
  BlendBuffersSoftLight(pixels, gradient.get(), *count);
  return 1;
}

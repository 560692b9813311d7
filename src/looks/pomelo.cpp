// Curves with a picture laid over them at a strength.
#include <algorithm>

#include "looks/recipe.h"
#include "pixel/blend.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

LOOK(Effect_FenHongJiaRenPomelo) {
  static constexpr ToneTables kTones =
      Tones({27, 120, 179, 214, 238}, {0, 72, 142, 196, 240}, {25, 100, 159, 197, 226});
  Files files(call);
  const auto& rose = files.Picture(L"style\\sucai1.jpg");
  const auto overlay = files.Square(L"style\\PSOverlay60.png");
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int c, int m) { return kTones[c][overlay(v, m, c)]; }, rose);
}

// A copy of the image, blurred by a mask that keeps its proportions: fully where the mask is white
// and beyond its edges, not at all where it is black.
static PixelMemory BlurredOutside(const Call& call, const PictureView& focus) {
  const int width = call.width, height = call.height;
  PixelMemory blurred = BlurredCopy(call, SFDSP::GetStackBlurRadius(2, width, height));
  const float scale = std::min(static_cast<float>(height) / static_cast<float>(focus.height),
                               static_cast<float>(width) / static_cast<float>(focus.width));
  const auto fitted = [=](int size) { return static_cast<int>(scale * static_cast<float>(size)); };
  const int maskWidth = fitted(focus.width), maskHeight = fitted(focus.height);
  const std::size_t bytes = std::size_t{4} * focus.width * focus.height;
  PixelMemory mask = RequirePixels(bytes);
  std::copy_n(focus.pixels, bytes, mask.get());
  unsigned char* scaled = mask.release();
  const unsigned char* const before = scaled;
  CPixelProcess::RampleBit(maskWidth, maskHeight, 2, &scaled, focus.width, focus.height);
  mask.reset(scaled);
  const bool sameSize = maskWidth == focus.width && maskHeight == focus.height;
  if (scaled == before && !sameSize && maskWidth > 0 && maskHeight > 0) throw std::bad_alloc();

  const int left = (width - maskWidth) / 2, top = (height - maskHeight) / 2;
  EachPixelAt(
      Over(call, blurred),
      [=](unsigned char* pixel, int x, int y, const unsigned char* crisp) {
        const int column = x - left, row = y - top;
        const bool inside = column >= 0 && column < maskWidth && row >= 0 && row < maskHeight;
        const int red = inside ? scaled[4 * (std::int64_t{maskWidth} * row + column) + 2] : 255;
        const float k = static_cast<float>(red) * 0.00392157f;
        for (int c = 0; c < 3; ++c)
          pixel[c] = static_cast<unsigned char>(static_cast<int>(
              static_cast<float>(pixel[c]) * k + static_cast<float>(crisp[c]) * (1 - k)));
      },
      PixelLayer(call.pixels, width));
  return blurred;
}

LOOK(Effect_YiZhouPomelo) {
  static constexpr ToneTables kTones =
      Tones({0, 63, 142, 214, 255}, {0, 68, 147, 217, 255}, {0, 79, 157, 225, 255});
  PixelMemory focused;
  {
    Files files(call);
    const auto& focus = files.UnscaledPicture(L"style\\sucai29.jpg");
    if (!files || !focus.View().pixels) return 0;
    if (call.Count() > 0) focused = BlurredOutside(call, focus.View());
  }
  Files files(call);
  const auto& rim = files.RequiredPicture(L"style\\sucai28.jpg");
  const auto overlay = files.Square(L"style\\PSOverlay60.png");
  if (!files) {
    LayBack(call, focused);
    return 0;
  }
  return EachColour(
      call, [=](int, int c, int v, int m) { return overlay(kTones[c][v], m, c); },
      PixelLayer(focused.get(), call.width), rim);
}

LOOK(Effect_FanZhuanSe) {
  static constexpr ToneTables kTones =
      Tones({0, 20, 164, 250, 255}, {0, 20, 163, 250, 255}, {24, 74, 142, 200, 229});
  Files files(call);
  const auto& colours = files.Picture(L"zvkr_fzs.png");
  if (!files) return 0;
  call.Report(10);
  return EachPixel(
      call,
      [](unsigned char* pixel, const unsigned char* m) {
        for (int c = 0; c < 3; ++c) pixel[c] = kTones[c][pixel[c]];
        BlendSoftLightOpacity(pixel, m, m[3] * 0.7f / 255);
      },
      colours);
}

#include "pixel/blend.h"

#include <algorithm>

#include "frame/image.h"
#include "frame/progress.h"
#include "pixel/hls.h"

namespace tintwerk {
namespace {

using Run = void (*)(unsigned char* base, const unsigned char* source, std::int64_t count);

// Blends all four bytes and puts the base's alpha back, so that the loops have no gaps and are
// vectorised.
template <class Mode>
void RunOf(unsigned char* base, const unsigned char* source, std::int64_t count) {
  constexpr int kPixels = 64;
  unsigned char blended[4 * kPixels];
  for (std::int64_t at = 0; at < count; at += kPixels) {
    const int pixels = static_cast<int>(std::min<std::int64_t>(kPixels, count - at));
    for (int i = 0; i < 4 * pixels; ++i)
      blended[i] = static_cast<unsigned char>(Mode::At(base[i], source[i]));
    for (int i = 0; i < 4 * pixels; ++i) base[i] = i % 4 == 3 ? base[i] : blended[i];
    base += 4 * pixels;
    source += 4 * pixels;
  }
}

void RunOfNormal(unsigned char* base, const unsigned char* source, std::int64_t count) {
  for (std::int64_t i = 0; i < count; ++i) BlendNormal(base + 4 * i, source + 4 * i);
}

constexpr Run kRuns[] = {
    RunOf<ScreenMode>,      RunOf<SoftLightMode>,   RunOf<MultiplyMode>,   RunOfNormal,
    RunOf<OverlayMode>,     RunOf<ColorBurnMode>,   RunOf<ColorDodgeMode>, RunOf<ExclusionMode>,
    RunOf<DarkenMode>,      RunOf<LightenMode>,     RunOf<PinLightMode>,   RunOf<LinearBurnMode>,
    RunOf<LinearDodgeMode>, RunOf<LinearLightMode>, RunOf<VividLightMode>, RunOf<OverlayMode>};

double HueToChannel(double low, double high, double hue) {
  if (hue < 0) hue += 1;
  if (hue > 1) hue -= 1;
  if (6 * hue < 1) return low + (high - low) * hue * 6;
  if (2 * hue < 1) return high;
  if (3 * hue < 2) return low + (high - low) * (0.6666666666666666 - hue) * 6;
  return low;
}

}  // namespace

void BlendRun(unsigned char* base, const unsigned char* source, std::int64_t count, int mode) {
  if (mode >= 1 && mode <= 16) kRuns[mode - 1](base, source, count);
}

void BlendPixel(unsigned char* base, const unsigned char* source, int mode) {
  BlendRun(base, source, 1, mode);
}

void BlendHueSatHSL(unsigned char* base, const unsigned char* source, std::int64_t count) {
  constexpr int kPixels = 256;
  unsigned char hsl[4 * kPixels];
  for (std::int64_t at = 0; at < count; at += kPixels) {
    const auto bytes = static_cast<int>(4 * std::min<std::int64_t>(kPixels, count - at));
    std::copy_n(source, bytes, hsl);
    RgbToHsl(hsl, bytes / 4);
    RgbToHsl(base, bytes / 4);
    for (int i = 0; i < bytes; i += 4) std::copy_n(hsl + i + 1, 2, base + i + 1);
    HslToRgb(base, bytes / 4);
    base += bytes;
    source += bytes;
  }
}

void BlendFixedTint(unsigned char* base, const unsigned char*, float opacity) {
  // One hue, and that hue plus and minus a third.
  constexpr double kHues[] = {-0.2348493333333333, 0.098484, 0.43181733333333333};
  const double r = base[2] / 255.0, g = base[1] / 255.0, b = base[0] / 255.0;
  const double lightness = (std::min({r, g, b}) + std::max({r, g, b})) * 0.5;
  const double high =
      lightness <= 0.5 ? lightness * 1.897959 : lightness + 0.897959 - lightness * 0.897959;
  const double low = lightness + lightness - high;
  for (int c = 0; c < 3; ++c)
    base[c] = TruncateToByte(HueToChannel(low, high, kHues[c]) * 255.0 * opacity +
                             double{base[c] * (1 - opacity)} + 0.5);
}

void BlendLumaColor(unsigned char* base, const unsigned char* source) {
  constexpr int kWeight[] = {11, 59, 30};  // percent of blue, green, red
  const int luma = 11 * base[0] + 59 * base[1] + 30 * base[2];

  // The channel numbers of the source in order of size; ties fall one fixed way.
  int max = source[2] < source[1] ? 1 : 2, min = 0;
  const int other = 3 - max;
  if (source[max] < source[0]) {
    min = max;
    max = 0;
  }
  int mid = other;
  if (source[other] < source[min]) std::swap(mid, min);

  const int c = source[max] - source[min];
  const int d = source[mid] - source[min];
  auto store = [&](int high, int middle, int low) {
    base[max] = static_cast<unsigned char>(high);
    base[mid] = static_cast<unsigned char>(middle);
    base[min] = static_cast<unsigned char>(low);
  };
  if (c == 0) {
    store((luma + 50) / 100, (luma + 50) / 100, (luma + 50) / 100);
    return;
  }
  const int half = c >> 1;
  const int colour = kWeight[max] * c + kWeight[mid] * d;
  const int rest = luma - colour;
  if (rest < 0) {  // the minimum would fall below 0
    const int top = ((d - c) * kWeight[mid] + (luma - kWeight[min]) * c + (colour >> 1)) / colour;
    if (top > 0)
      store(top, ((top - 1) * d + half) / c + 1, 1);
    else
      store(0, 0, 0);
    return;
  }
  const int low = (rest + 50) / 100;
  if (low + c < 256) {
    store(low + c, low + d, low);
    return;
  }
  // The maximum would pass 255.
  const int room = kWeight[min] * c + kWeight[mid] * (c - d);
  const int bottom = (c * luma - colour * 255 + (room >> 1)) / room;
  if (bottom > 0)
    store(255, (d * 255 + (c - d) * bottom + half) / c, bottom);
  else
    store(0, 0, 0);
}

void BlendSoftLightTrunc(unsigned char* base, const unsigned char* source) {
  for (int i = 0; i < 3; ++i) {
    const int a = base[i], b = source[i];
    const double m = (a * b) / 255.0;
    const double t = (255.0 - ((255 - b) * (255 - a)) / 255.0 - m) * a / 255.0;
    base[i] = TruncateToByte(t + m);
  }
}

void BlendSoftLightOpacity(unsigned char* base, const unsigned char* source, float opacity) {
  for (int i = 0; i < 3; ++i) {
    const int a = base[i], b = source[i];
    const int m = a * b / 255;
    const int s = (255 - b) * (255 - a) / 255;
    const int v = m + (255 - s - m) * a / 255;
    base[i] = TruncateToByte(v * opacity + a * (1 - opacity));
  }
}

}  // namespace tintwerk

int CEffect::ChannelBlend_X(unsigned char* base, const unsigned char* source, int width, int height,
                            BlendMode mode, CObjProgress* progress, int progressLow,
                            int progressHigh) {
  if (!tintwerk::IsWorkable(base, width, height) || !source) return 0;
  const std::int64_t pitch = std::max(width, 0);
  tintwerk::ForEachRow(progress, progressLow, progressHigh, height, [=](std::int64_t y) {
    tintwerk::BlendRun(base + 4 * pitch * y, source + 4 * pitch * y, pitch, mode);
  });
  return 1;
}

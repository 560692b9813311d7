// Point adjustments that look at all three channels of a pixel.
#include <algorithm>
#include <cmath>

#include "filters/rows.h"
#include "pixel/hls.h"
#include "pixel/hsb.h"
#include "pixel/truncate.h"
#include "tintwerk/color_space.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

namespace {

// Scales the distance from grey of every pixel of a rectangle, in doubles: c x s + the weighted
// grey x (1 - s). Every product is a function of one byte, so the pixels only add.
void SaturateInDouble(unsigned char* pixels, std::int64_t imageWidth, std::int64_t left,
                      std::int64_t top, int width, int height, std::int32_t amount) {
  struct Products {
    double red[256], green[256], blue[256], own[256];
  } products;
  const double s = (amount > 0 ? std::int64_t{amount} * 3 : std::int64_t{amount}) * 0.01 + 1.0;
  const double t = 1.0 - s;
  for (int v = 0; v < 256; ++v) {
    products.red[v] = v * t * 0.30859375;
    products.green[v] = v * t * 0.609375;
    products.blue[v] = v * t * 0.08203125;
    products.own[v] = v * s;
  }
  const Products* p = &products;
  ParallelFor(height, [=](std::int64_t y) {
    unsigned char* pixel = pixels + 4 * (imageWidth * (top + y) + left);
    for (int x = 0; x < width; ++x, pixel += 4) {
      const double common = p->red[pixel[2]] + p->green[pixel[1]] + p->blue[pixel[0]];
      for (int c = 0; c < 3; ++c) pixel[c] = ClampToByte(p->own[pixel[c]] + common);
    }
  });
}

// Runs convert(pixel, a, b, c) over an image, with the outcome in red, green and blue.
using Conversion = int (*)(unsigned char, unsigned char, unsigned char, unsigned char&,
                           unsigned char&, unsigned char&);

void ConvertImage(unsigned char* pixels, int width, int height, Conversion convert) {
  ForEachPixel(pixels, width, height, [=](unsigned char* pixel) {
    unsigned char a, b, c;
    convert(pixel[2], pixel[1], pixel[0], a, b, c);
    pixel[2] = a, pixel[1] = b, pixel[0] = c;
  });
}

// Sends hue, saturation and lightness through tables, which stand under red, green and blue.
bool AdjustHsl(unsigned char* pixels, int width, int height, const ToneTables& tables,
               const RowProgress& rows = {}) {
  const std::int64_t pitch = std::max(width, 0);
  return ForEachRow(rows, height, [=, &tables](std::int64_t y) {
    unsigned char* const row = pixels + 4 * pitch * y;
    RgbToHsl(row, pitch);
    ApplyTables(row, pitch, tables.blue.data(), tables.green.data(), tables.red.data());
    HslToRgb(row, pitch);
  });
}

bool ShiftHsl(unsigned char* pixels, int width, int height, int hue, int saturation, int lightness,
              const RowProgress& rows) {
  const auto shifted = [](int by) {
    return TableOf([=](int i) { return static_cast<unsigned>(i) + static_cast<unsigned>(by); });
  };
  return AdjustHsl(pixels, width, height,
                   {shifted(lightness), shifted(saturation), shifted(std::clamp(hue, -128, 128))},
                   rows);
}

}  // namespace

int CPixelProcess::Saturateconst(unsigned char* pixels, int width, int height, std::int32_t amount,
                                 std::int32_t mode, CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height) || mode < 1 || mode > 2) return 0;
  const ToneTable same = TableOf([](int i) { return i; });
  if (mode == 1) {
    const int held = std::clamp(amount, -255, 255);
    const ToneTable table = TableOf([=](int i) { return ClampToByte(i + held); });
    AdjustHsl(pixels, width, height, {same, table, same});
    return 1;
  }
  const ToneTable table = TableOf([=](int i) {
    const auto scaled = static_cast<float>((i - 128) * (std::int64_t{amount} + 100));
    return ClampToByte(scaled / 100.0f + 128.5f);
  });
  const ToneTables tables = {.blue = table, .green = table, .red = same};
  const std::int64_t pitch = std::max(width, 0);
  ParallelFor(height, [=, &tables](std::int64_t y) {
    unsigned char* const row = pixels + 4 * pitch * y;
    RgbToYuv(row, pitch);
    ApplyTables(row, pitch, tables.blue.data(), tables.green.data(), tables.red.data());
    YuvToRgb(row, pitch);
  });
  return 1;
}

void CPixelProcess::Saturateconst_Faster(unsigned char* pixels, std::int32_t width,
                                         std::int32_t height, std::int32_t amount) {
  if (IsWorkable(pixels, width, height))
    SaturateInDouble(pixels, width, 0, 0, width, height, amount);
}

void SFDSP::Saturateconst_Faster(unsigned char* pixels, std::int32_t imageWidth, std::int32_t left,
                                 std::int32_t top, std::int32_t width, std::int32_t height,
                                 std::int32_t amount) {
  if (IsWorkable(pixels, width, height))
    SaturateInDouble(pixels, imageWidth, left, top, width, height, amount);
}

void SFDSP::Saturateconst_Faster(unsigned char* pixels, std::int32_t width, std::int32_t height,
                                 std::int32_t amount) {
  if (!IsWorkable(pixels, width, height)) return;
  const float s = static_cast<float>(amount) * 0.01f + 1.0f;
  const float t = 1.0f - s;
  const std::int64_t k = Truncate(s * 256.0f);
  const std::int64_t blue = Truncate(t * 21.0f), red = Truncate(t * 79.0f),
                     green = Truncate(t * 156.0f);
  ForEachPixel(pixels, width, height, [=](unsigned char* pixel) {
    const std::int64_t common = pixel[0] * blue + pixel[2] * red + pixel[1] * green;
    for (int c = 0; c < 3; ++c) pixel[c] = ClampToByte((pixel[c] * k + common) >> 8);
  });
}

int CPixelProcess::SetHue(unsigned char* pixels, int width, int height, int hue,
                          CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  return ShiftHsl(pixels, width, height, hue, 0, 0,
                  RowProgress(progress, progressLow, progressHigh, height));
}

int CPixelProcess::SetHSL(unsigned char* pixels, int width, int height, int hue, int saturation,
                          int lightness, CObjProgress* progress, int progressLow,
                          int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  return ShiftHsl(pixels, width, height, hue, saturation, lightness,
                  RowProgress(progress, progressLow, progressHigh, height));
}

void SFDSP::BrightContrastSaturation(unsigned char* pixels, int width, int height, int brightness,
                                     int contrast, int saturation) {
  if (brightness != 0 || contrast != 0) Light(pixels, width, height, brightness, contrast);
  if (saturation != 0) Saturateconst_Faster(pixels, width, height, saturation);
}

void SFDSP::HueSaturationBright(unsigned char* pixels, int width, int height, int hue,
                                int saturation, int brightness) {
  if (!IsWorkable(pixels, width, height)) return;
  const float moreSaturation = static_cast<float>(saturation) * 0.01f;
  const float moreBrightness = static_cast<float>(brightness) * 0.01f;
  const auto turn = static_cast<float>(hue);
  ForEachPixel(pixels, width, height, [=](unsigned char* pixel) {
    float h, s, v;
    RgbToHsb(pixel[2], pixel[1], pixel[0], h, s, v);
    HsbToRgb(std::clamp(h + turn, 0.0f, 360.0f), std::clamp(s + moreSaturation, 0.0f, 1.0f),
             std::clamp(v + moreBrightness, 0.0f, 1.0f), pixel[2], pixel[1], pixel[0]);
  });
}

int CPixelProcess::CColorBalance(int preserveLuminosity, TONE_REGION region, int red, int green,
                                 int blue, unsigned char* pixels, int width, int height,
                                 CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height) || region < ToneShadow || region > ToneHighlight) return 0;
  // Red truncates the whole sum in the highlights, the others the product alone.
  auto response = [=](int amount, bool truncateSum) {
    return TableOf([=](int i) {
      const double x = (i - 127.0) / 127.0;
      const double w =
          region == ToneHighlight ? 1.075 - 1.0 / (i * 0.0625 + 1.0) : (1.0 - x * x) * 0.667;
      const double sum = truncateSum ? amount * w + i : double{1} * Truncate(amount * w) + i;
      return ClampToByte(sum);
    });
  };
  const ToneTables tables = {response(blue, false), response(green, false),
                             response(red, region == ToneHighlight)};
  if (preserveLuminosity != 1) {
    RunTables(pixels, width, height, tables);
    return 1;
  }
  const std::int64_t pitch = std::max(width, 0);
  ParallelFor(height, [&](std::int64_t y) {
    AdjustHls(pixels + 4 * pitch * y, pitch, [&](unsigned char* run, HlsRun& hls) {
      double lightness[HlsRun::kPixels];
      for (int i = 0; i < HlsRun::kPixels; ++i) {
        const unsigned char* const pixel = run + 4 * i;
        lightness[i] =
            (std::min({pixel[0], pixel[1], pixel[2]}) + std::max({pixel[0], pixel[1], pixel[2]})) *
            0.0019601;
      }
      ApplyTables(run, HlsRun::kPixels, tables.blue.data(), tables.green.data(), tables.red.data());
      RgbToHls(run, hls);
      std::copy_n(lightness, HlsRun::kPixels, hls.lightness);
    });
  });
  return 1;
}

int CPixelProcess::SetColor(unsigned char* pixels, int width, int height, int red, int green,
                            int blue, CObjProgress* progress, int progressLow, int progressHigh) {
  return CColorBalance(0, ToneShadow, red, green, blue, pixels, width, height, progress,
                       progressLow, progressHigh);
}

int CPixelProcess::ConvertColorSpace(unsigned char* pixels, int width, int height, std::int32_t to,
                                     std::int32_t from, CObjProgress*, int, int) {
  constexpr Conversion kFromRgb[] = {CColorSpace::RGBtoYIQ, CColorSpace::RGBtoXYZ};
  constexpr Conversion kToRgb[] = {CColorSpace::YIQtoRGB, CColorSpace::XYZtoRGB};
  constexpr void (*kRunFromRgb[])(unsigned char*, std::int64_t) = {RgbToHsl, RgbToYuv};
  constexpr void (*kRunToRgb[])(unsigned char*, std::int64_t) = {HslToRgb, YuvToRgb};
  const int model = std::max(to, from);
  if (!IsWorkable(pixels, width, height) || std::min(to, from) != 0 || model < 1 || model > 4)
    return 0;
  if (model <= 2) {
    const std::int64_t pitch = std::max(width, 0);
    ParallelFor(height, [=, convert = (to != 0 ? kRunFromRgb : kRunToRgb)[model - 1]](
                            std::int64_t y) { convert(pixels + 4 * pitch * y, pitch); });
  } else {
    ConvertImage(pixels, width, height, (to != 0 ? kFromRgb : kToRgb)[model - 3]);
  }
  return 1;
}

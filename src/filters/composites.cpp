// Grey, threshold, composites with a colour or an image, and looks of one pixel alone.
#include <algorithm>
#include <cmath>

#include "filters/rows.h"
#include "pixel/blend.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

int CPixelProcess::Threshold(unsigned char* pixels, int width, int height, int level,
                             CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const int held = std::clamp(level, 0, 255);
  ForEachPixel(pixels, width, height, RowProgress(progress, progressLow, progressHigh, height),
               [=](unsigned char* pixel) {
                 const int luma = (pixel[0] * 11 + pixel[2] * 30 + pixel[1] * 59) / 100;
                 pixel[0] = pixel[1] = pixel[2] = luma > held ? 255 : 0;
               });
  return 1;
}

int CPixelProcess::GrayScale(unsigned char* pixels, int width, int height, CObjProgress*, int,
                             int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  ForEachWord(pixels, width, height, RowProgress(nullptr, 0, 0, height), [](std::uint32_t pixel) {
    const std::uint32_t blue = pixel & 0xFF, green = pixel >> 8 & 0xFF, red = pixel >> 16 & 0xFF;
    const std::uint32_t luma = (blue * 117 + red * 306 + green * 601) >> 10;
    return (pixel & 0xFF000000) | luma << 16 | luma << 8 | luma;
  });
  return 1;
}

int CPixelProcess::SetGrayScale(unsigned char* pixels, int width, int height,
                                CObjProgress* progress, int progressLow, int progressHigh) {
  return GrayScale(pixels, width, height, progress, progressLow, progressHigh);
}

void CPixelProcess::GrayScaleEx(unsigned char* pixel) {
  if (pixel) SFDSP::SetGrayScaleEx(pixel);
}

int CPixelProcess::SetGrayScaleEx(unsigned char* pixel) {
  if (!pixel) return 0;
  GrayScaleEx(pixel);
  return 1;
}

bool CPixelProcess::Color_Channel_Composite(unsigned char* pixels, int width, int height,
                                            unsigned char red, unsigned char green,
                                            unsigned char blue, CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height)) return false;
  ForEachPixel(pixels, width, height, [=](unsigned char* pixel) {
    const unsigned char colour[] = {blue, green, red};
    BlendLumaColor(pixel, colour);
  });
  return true;
}

int CPixelProcess::CompositeColor(unsigned char* pixels, int width, int height, unsigned char red,
                                  unsigned char green, unsigned char blue, CObjProgress*, int,
                                  int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  // Each channel is blended on its own, so the soft light of all values is a table.
  auto blended = [](unsigned char k) {
    return TableOf([=](int a) {
      const auto value = static_cast<unsigned char>(a);
      unsigned char base[] = {value, value, value};
      const unsigned char colour[] = {k, k, k};
      BlendSoftLightTrunc(base, colour);
      return base[0];
    });
  };
  RunTables(pixels, width, height, {blended(blue), blended(green), blended(red)},
            RowProgress(nullptr, 0, 0, height));
  return 1;
}

int CPixelProcess::Multiple(unsigned char* pixels, const unsigned char* source, int width,
                            int height, CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height) || !source) return 0;
  const RowProgress rows(progress, progressLow, progressHigh, height, RowQuestions::kReportsOnly);
  ForEachPixel(pixels, width, height, rows, [=](unsigned char* pixel) {
    const unsigned char* over = source + (pixel - pixels);
    for (int c = 0; c < 3; ++c)
      pixel[c] = over[3] == 255 ? over[c] : static_cast<unsigned char>((pixel[c] * over[c]) >> 8);
    pixel[3] = 255;
  });
  return 1;
}

int CPixelProcess::CreateArray(unsigned char* mask, std::int32_t radius, std::int32_t inner) {
  if (!mask) return 0;
  const std::int64_t columns = 2 * std::int64_t{radius};
  const std::int64_t centre = std::int64_t{radius} - 1;
  const int half = inner / 2;
  for (std::int64_t y = radius; y >= 0; --y) {
    const auto end = static_cast<std::int64_t>(
        std::sqrt(static_cast<double>(std::int64_t{radius} * radius - y * y)));
    for (std::int64_t x = 0; x < end; ++x) {
      const double d = std::sqrt(static_cast<double>(x * x + y * y));
      double value = 0;
      if (d > inner)
        value = (d - inner) / (double{1} * radius - inner) * 127.0 + 128.0;
      else if (d >= half)
        value = (d - half) / half * 128.0;
      const unsigned char byte = ClampToByte(value);
      mask[columns * (centre - y) + centre - x] = byte;
      mask[columns * (centre - y) + centre + x] = byte;
      mask[columns * (centre + y) + centre - x] = byte;
      mask[columns * (centre + y) + centre + x] = byte;
    }
  }
  return 1;
}

// Composites of an image with a colour or with another image.
#include "filters/rows.h"
#include "pixel/blend.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

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
  RunTables(pixels, width, height, {blended(blue), blended(green), blended(red)});
  return 1;
}

bool CPixelProcess::Normal_Channel_Composite(unsigned char* pixels, int width, int height,
                                             unsigned char red, unsigned char green,
                                             unsigned char blue, CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height)) return false;
  auto mix = [](int k) {
    return TableOf([=](int c) { return static_cast<int>(c * 0.5f + k * 0.5f + 0.5f); });
  };
  return RunTables(pixels, width, height, {mix(blue), mix(green), mix(red)});
}

bool CPixelProcess::Overlay_Channel_Composite(unsigned char* pixels, int width, int height,
                                              unsigned char red, unsigned char green,
                                              unsigned char blue, CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height)) return false;
  auto overlay = [](int k) {
    return TableOf([=](int c) {
      const float o = c < 128 ? static_cast<float>(c * k) / 127.5f
                              : 255.0f - static_cast<float>((255 - c) * (255 - k)) / 127.5f;
      const int v = static_cast<int>(o + 0.5f) & 255;
      return static_cast<int>(v * 0.5f + c * 0.5f + 0.5f);
    });
  };
  return RunTables(pixels, width, height, {overlay(blue), overlay(green), overlay(red)});
}

int CPixelProcess::Multiple(unsigned char* pixels, const unsigned char* source, int width,
                            int height, CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height) || !source) return 0;
  const auto rows = RowProgress::ReportsOnly(progress, progressLow, progressHigh, height);
  ForEachPixel(pixels, width, height, rows, [=](unsigned char* pixel) {
    const unsigned char* over = source + (pixel - pixels);
    for (int c = 0; c < 3; ++c)
      pixel[c] = over[3] == 255 ? over[c] : static_cast<unsigned char>((pixel[c] * over[c]) >> 8);
    pixel[3] = 255;
  });
  return 1;
}

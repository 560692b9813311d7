// Point adjustments of each channel by itself, and what makes an image grey.
#include <algorithm>
#include <cmath>

#include "filters/rows.h"
#include "frame/parallel.h"
#include "pixel/hls.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

namespace {

bool RunTable(unsigned char* pixels, int width, int height, const ToneTable& table,
              const RowProgress& rows) {
  return RunTables(pixels, width, height, {table, table, table}, rows);
}

ToneTable LightTable(std::int32_t brightness, std::int32_t contrast) {
  const float factor = static_cast<float>(std::int64_t{contrast} + 100) / 100.0f;
  const auto middle = static_cast<float>(std::int64_t{brightness} + 128);
  return TableOf(
      [=](int i) { return ClampToByte(static_cast<float>(i - 128) * factor + middle + 0.5f); });
}

// The table for the channels that are set, the identity for the others.
ToneTables ForChannels(const ToneTable& table, int channels) {
  const ToneTable identity = TableOf([](int i) { return i; });
  return {channels & CPixelProcess::ChannelBlue ? table : identity,
          channels & CPixelProcess::ChannelGreen ? table : identity,
          channels & CPixelProcess::ChannelRed ? table : identity};
}

ToneTables AddTables(int red, int green, int blue) {
  auto add = [](int amount) {
    const int held = std::clamp(amount, -255, 255);
    return TableOf([=](int i) { return ClampToByte(i + held); });
  };
  return {add(blue), add(green), add(red)};
}

}  // namespace

unsigned char CPixelProcess::InitLUTtable(int value, int brightness) {
  const int room = brightness > 0 ? 255 - value : value;
  return ClampToByte(value + room * brightness / 200);
}

int CPixelProcess::PixelBrightness(unsigned char* pixels, int width, int height, int brightness,
                                   CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const int b = std::clamp(brightness, 0, 200) - 100;
  RunTable(pixels, width, height, TableOf([=](int i) { return InitLUTtable(i, b); }),
           RowProgress(progress, progressLow, progressHigh, height));
  return 1;
}

int CPixelProcess::Light(unsigned char* pixels, int width, int height, std::int32_t brightness,
                         std::int32_t contrast, CObjProgress* progress, int progressLow,
                         int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  RunTable(pixels, width, height, LightTable(brightness, contrast),
           RowProgress(progress, progressLow, progressHigh, height));
  return 1;
}

void SFDSP::Light(unsigned char* pixels, int width, int height, std::int32_t brightness,
                  std::int32_t contrast) {
  CPixelProcess::Light(pixels, width, height, brightness, contrast, nullptr, 0, 100);
}

int CPixelProcess::LightNew(unsigned char* pixels, int width, int height, std::int32_t amount,
                            int radius, CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height) || amount == 0) return 0;
  double a = amount / 10.0;
  if (a < 0) a = a / (1.0 - a);
  a = a / 2.5;
  ToneTable table = TableOf([=](int i) {
    return ClampToByte(std::log(i / 255.0 * a + 1.0) * 255.0 / std::log(3.0) + i);
  });
  // The curve is smoothed as an image: entries 16 apart are neighbours, too.
  if (GaussIIRBlurWithOne(table.data(), 16, 16, radius, radius, nullptr, 0, 100) == 0) return 0;
  return RunTable(pixels, width, height, table,
                  RowProgress(progress, progressLow, progressHigh, height));
}

int CPixelProcess::ExposureFilter(unsigned char* pixels, int width, int height, float exposure,
                                  CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const ToneTable table = TableOf([=](int i) {
    const float x = static_cast<float>(i) / 255.0f * exposure;
    return ClampToByte((1.0f - static_cast<float>(std::exp(-double{x}))) * 255.0f);
  });
  return RunTable(pixels, width, height, table,
                  RowProgress(progress, progressLow, progressHigh, height));
}

int CPixelProcess::Istone_Gamma(unsigned char* pixels, int width, int height, double gamma,
                                IMAGE_CHANNEL channels, CObjProgress* progress, int progressLow,
                                int progressHigh) {
  if (!IsWorkable(pixels, width, height) || !(gamma > 0)) return 0;
  const double e = 1.0 / gamma;
  const double k = std::pow(255.0, e) / 255.0;
  const ToneTable table =
      TableOf([=](int i) { return ClampToByte(std::round(std::pow(double(i), e) / k)); });
  RunTables(pixels, width, height, ForChannels(table, channels),
            RowProgress::ReportsOnly(progress, progressLow, progressHigh, height));
  return 1;
}

int CPixelProcess::Istone_Posterize(unsigned char* pixels, int width, int height, int levels,
                                    IMAGE_CHANNEL channels, CObjProgress* progress, int progressLow,
                                    int progressHigh) {
  if (!IsWorkable(pixels, width, height) || levels < 2) return 0;
  const double step = 255.0 / (levels - 1.0);
  const ToneTable table =
      TableOf([=](int i) { return ClampToByte(std::round(std::round(i / step) * step)); });
  RunTables(pixels, width, height, ForChannels(table, channels),
            RowProgress::ReportsOnly(progress, progressLow, progressHigh, height));
  return 1;
}

int CPixelProcess::Istone_AdjustRGB(unsigned char* pixels, int width, int height, int red,
                                    int green, int blue, CObjProgress* progress, int progressLow,
                                    int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  RunTables(pixels, width, height, AddTables(red, green, blue),
            RowProgress::ReportsOnly(progress, progressLow, progressHigh, height));
  return 1;
}

int CPixelProcess::ShiftRGB(unsigned char* pixels, int width, int height, unsigned char red,
                            unsigned char green, unsigned char blue, CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  RunTables(pixels, width, height, AddTables(red, green, blue));
  return 1;
}

void CPixelProcess::ShiftRGBEx(unsigned char* pixel, unsigned char red, unsigned char green,
                               unsigned char blue) {
  if (!pixel) return;
  pixel[0] = ClampToByte(pixel[0] + blue);
  pixel[1] = ClampToByte(pixel[1] + green);
  pixel[2] = ClampToByte(pixel[2] + red);
}

int CPixelProcess::Negative(unsigned char* pixels, int width, int height, CObjProgress* progress,
                            int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  ForEachWord(pixels, width, height, RowProgress(progress, progressLow, progressHigh, height),
              [](std::uint32_t pixel) { return pixel ^ 0x00FFFFFF; });
  return 1;
}

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
  const std::int64_t pitch = std::max(width, 0);
  ParallelFor(height, [=](std::int64_t y) { RgbToGrey(pixels + 4 * pitch * y, pitch); });
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

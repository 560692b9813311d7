// Looks that are chiefly one filter or a few. They read no support file.
#include <algorithm>
#include <cmath>

#include "filters/convolution.h"
#include "filters/rows.h"
#include "pixel/truncate.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

namespace {

// Three by three, row by row.
int RunFilter(unsigned char* pixels, int width, int height, const std::int32_t (&kernel)[9],
              std::int32_t divisor, std::int32_t offset, CObjProgress* progress, int low,
              int high) {
  return Convolve(pixels, width, height, kernel, 3, divisor, offset, progress, low, high);
}

// Where the reports of an automatic vividness lie, and how much of the room it takes.
struct Vividness {
  int converted, counted, saturating;
  bool reports;
  float percentOfRoom;
};

// Raises the saturation until the chroma would fill its scale.
int RaiseSaturation(unsigned char* pixels, int width, int height, CObjProgress* progress,
                    const Vividness& constants) {
  if (!IsWorkable(pixels, width, height)) return 0;
  auto copy = CopyOf(pixels, *PixelCount(width, height));
  if (!copy) return 0;
  CPixelProcess::ConvertColorSpace(copy.get(), width, height, 2, 0, progress, 0,
                                   constants.converted);
  if (!KeepGoing(progress)) return 0;
  std::int32_t u[256], v[256];  // U lies in green and V in blue
  CPixelProcess::Histogram(copy.get(), width, height, nullptr, u, v, nullptr, 0, progress,
                           constants.converted, constants.counted);
  copy.reset();
  if (!KeepGoing(progress)) return 0;

  int topU = 255, topV = 255, lowU = 0, lowV = 0;
  for (int i = 0; i < 255; ++i) {
    if (u[i] != 0) topU = i;
    if (v[i] != 0) topV = i;
    if (u[255 - i] != 0) lowU = i;
    if (v[255 - i] != 0) lowV = i;
  }
  const int m = std::min(topU, topV), n = std::max(lowU, lowV);
  const float a = m < 128 ? 128.0f / static_cast<float>(128 - m) : 128.0f;
  const float b = n > 128 ? 128.0f / static_cast<float>(n - 128) : 128.0f;
  const int amount = Truncate((std::min(a, b) - 1.0f) * constants.percentOfRoom);
  if (constants.reports) Report(progress, 75.0f);
  return CPixelProcess::Saturateconst(pixels, width, height, amount, 2, progress,
                                      constants.saturating, 100);
}

}  // namespace

int CEffect::Effect_DianShiXian(unsigned char* pixels, int width, int height, void*,
                                CObjProgress* progress, int progressLow, int progressHigh) {
  return CPixelProcess::Blinds(pixels, width, height, 0, 2, 60, 0, 0, 0, progress, progressLow,
                               progressHigh);
}

int CEffect::Effect_FanSe(unsigned char* pixels, int width, int height, void*, CObjProgress*, int,
                          int) {
  return CPixelProcess::Negative(pixels, width, height, nullptr, 0, 100);
}

int CEffect::Effect_HeiBai(unsigned char* pixels, int width, int height, void*, CObjProgress*, int,
                           int) {
  return CPixelProcess::GrayScale(pixels, width, height, nullptr, 0, 100);
}

int CEffect::Effect_NuanHua(unsigned char* pixels, int width, int height, void*, CObjProgress*, int,
                            int) {
  return CPixelProcess::CColorBalance(0, CPixelProcess::ToneMidtone, 100, 50, 0, pixels, width,
                                      height, nullptr, 0, 100);
}

int CEffect::Effect_QuWu(unsigned char* pixels, int width, int height, void*,
                         CObjProgress* progress, int progressLow, int progressHigh) {
  return CPixelProcess::Dehazing(pixels, width, height, progress, progressLow, progressHigh);
}

int CEffect::Effect_RouHe(unsigned char* pixels, int width, int height, void*,
                          CObjProgress* progress, int progressLow, int progressHigh) {
  return RunFilter(pixels, width, height, {1, 1, 1, 1, 8, 1, 1, 1, 1}, 16, 0, progress, progressLow,
                   progressHigh);
}

int CEffect::Effect_RuiHua(unsigned char* pixels, int width, int height, void*,
                           CObjProgress* progress, int progressLow, int progressHigh) {
  return RunFilter(pixels, width, height, {-1, -1, -1, -1, 15, -1, -1, -1, -1}, 7, 0, progress,
                   progressLow, progressHigh);
}

int CEffect::Emboss(unsigned char* pixels, int width, int height, void*, CObjProgress* progress,
                    int progressLow, int progressHigh) {
  return RunFilter(pixels, width, height, {0, 0, -1, 0, 0, 0, 1, 0, 0}, -1, 127, progress,
                   progressLow, progressHigh);
}

int CEffect::Effect_ZaoDian(unsigned char* pixels, int width, int height, void*,
                            CObjProgress* progress, int progressLow, int progressHigh) {
  return CPixelProcess::Noise(pixels, width, height, 10, progress, progressLow, progressHigh);
}

int CEffect::UnColor(unsigned char* pixels, int width, int height, void*, CObjProgress* progress,
                     int progressLow, int progressHigh) {
  return CPixelProcess::Negative(pixels, width, height, progress, progressLow, progressHigh);
}

int CEffect::paper(unsigned char* pixels, int width, int height, void*, CObjProgress* progress,
                   int progressLow, int progressHigh) {
  return CPixelProcess::Threshold(pixels, width, height, 127, progress, progressLow, progressHigh);
}

int CEffect::Effect_HuaiJiu(unsigned char* pixels, int width, int height, void*,
                            CObjProgress* progress, int, int) {
  if (CPixelProcess::Saturateconst(pixels, width, height, -500, 1, progress, 0, 60) == 0) return 0;
  if (!KeepGoing(progress)) return 0;
  // Each thread draws its own noise, so it differs with the number of threads.
  ForEachPixel(pixels, width, height, [](unsigned char* pixel) {
    CPixelProcess::ShiftRGBEx(pixel, 40, 25, 0);
    CPixelProcess::NoiseEx(pixel, 20);
  });
  return 1;
}

int CEffect::Effect_QuanCai(unsigned char* pixels, int width, int height, void*,
                            CObjProgress* progress, int, int) {
  return RaiseSaturation(pixels, width, height, progress, {30, 70, 80, true, 100.0f});
}

int CEffect::Effect_ZhiNengHuiSe(unsigned char* pixels, int width, int height, void*,
                                 CObjProgress* progress, int, int) {
  return RaiseSaturation(pixels, width, height, progress, {20, 60, 60, false, 50.0f});
}

int CEffect::Effect_Hdr(unsigned char* pixels, int width, int height, void*, CObjProgress*, int,
                        int) {
  static constexpr ToneTables kTones = {
      .blue = Curve({{0, 0}, {64, 70}, {128, 139}, {192, 200}, {255, 255}}),
      .green = Curve({{0, 0}, {64, 54}, {128, 140}, {192, 205}, {255, 255}}),
      .red = Curve({{0, 0}, {64, 56}, {128, 144}, {192, 209}, {255, 255}})};
  if (!IsWorkable(pixels, width, height)) return 0;
  CPixelProcess::AutoColorLevel(pixels, width, height, 0, nullptr, 0, 100);
  // The copy comes first, so that an image is left as it was if there is no memory for it.
  const int count = *PixelCount(width, height);
  const std::unique_ptr<unsigned char[]> copy(
      new (std::nothrow) unsigned char[std::size_t{4} * count]);
  if (!copy) return 0;
  RunTables(pixels, width, height, kTones);
  std::copy_n(pixels, std::size_t{4} * count, copy.get());
  const int radius = std::max(static_cast<int>(std::max(width, height) / 640.0 + 0.5), 1);
  if (!CPixelProcess::stackBlur(copy.get(), width, height, radius, nullptr, 0, 100)) return 0;
  SFDSP::Sharp(pixels, copy.get(), width, height, 0.3f);
  return 1;
}

int CEffect::Effect_JingDianHDR(unsigned char* pixels, int width, int height, void*,
                                CObjProgress* progress, int, int) {
  static constexpr ToneTable kShared =
      Curve({{0, 0}, {64, 60}, {128, 132}, {192, 197}, {255, 255}});
  static constexpr ToneTables kFirst = {
      .blue = Curve({{0, 14}, {64, 73}, {128, 134}, {192, 195}, {255, 255}}),
      .green = Curve({{0, 0}, {64, 59}, {128, 135}, {192, 200}, {255, 255}}),
      .red = Curve({{0, 0}, {64, 61}, {128, 139}, {192, 204}, {255, 255}})};
  // These change contrast about the middle, the blue most of all.
  static constexpr ToneTables kSecond = {
      .blue = Curve({{0, 58}, {64, 93}, {128, 128}, {192, 163}, {255, 198}}),
      .green = Curve({{0, 2}, {64, 65}, {128, 128}, {192, 191}, {255, 254}}),
      .red = Curve({{0, 14}, {64, 71}, {128, 128}, {192, 185}, {255, 242}})};
  static constexpr ToneTables kTones = {
      .blue = Through(Through(kShared, kFirst.blue), kSecond.blue),
      .green = Through(Through(kShared, kFirst.green), kSecond.green),
      .red = Through(Through(kShared, kFirst.red), kSecond.red)};
  if (!IsWorkable(pixels, width, height)) return 0;
  CPixelProcess::AutoColorLevel(pixels, width, height, 0, progress, 0, 40);
  RunTables(pixels, width, height, kTones);
  return 1;
}

// Looks that are chiefly one filter or a few. They read no support file.
#include <algorithm>
#include <atomic>
#include <cmath>

#include "filters/convolution.h"
#include "looks/recipe.h"
#include "pixel/hls.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

namespace {

// Three by three, row by row.
int RunFilter(const Call& call, const std::int32_t (&kernel)[9], int divisor, int offset) {
  return Convolve(call.pixels, call.width, call.height, kernel, 3, divisor, offset, call.progress,
                  call.low, call.high);
}

// Where the reports of an automatic vividness lie, and how much of the room it takes.
struct Vividness {
  int converted, counted, saturating;
  bool reports;
  float percentOfRoom;
};

// Marks the values that U and V have anywhere. A stop leaves out what lies below.
void MarkChroma(const Call& call, const Vividness& constants, std::atomic<bool>* hasU,
                std::atomic<bool>* hasV) {
  const auto tenth = static_cast<float>(constants.counted - constants.converted) * 0.1f;
  const RowProgress rows(call.progress, call.height,
                         tenth / static_cast<float>(std::max(call.height, 1)), constants.converted);
  // Threads share the marks, which are only written while they are new.
  const auto mark = [](std::atomic<bool>& has) {
    if (!has.load(std::memory_order_relaxed)) has.store(true, std::memory_order_relaxed);
  };
  ForEachRow(rows, call.height, [=, &call](std::int64_t y) {
    constexpr int kPixels = 256;
    const unsigned char* const row = call.pixels + std::int64_t{4} * call.width * y;
    for (int x = 0; x < call.width; x += kPixels) {
      unsigned char yuv[4 * kPixels];
      const int count = std::min(kPixels, call.width - x);
      std::copy_n(row + std::int64_t{4} * x, 4 * count, yuv);
      RgbToYuv(yuv, count);
      for (int i = 0; i < 4 * count; i += 4) {
        mark(hasU[yuv[i + 1]]);
        mark(hasV[yuv[i]]);
      }
    }
  });
}

// Raises the saturation until the chroma would fill its scale.
int RaiseSaturation(const Call& call, const Vividness& constants) {
  if (!call.GoesOn()) return 0;
  std::atomic<bool> hasU[256] = {}, hasV[256] = {};
  MarkChroma(call, constants, hasU, hasV);
  if (!call.GoesOn()) return 0;

  int topU = 255, topV = 255, lowU = 0, lowV = 0;
  for (int i = 0; i < 255; ++i) {
    if (hasU[i]) topU = i;
    if (hasV[i]) topV = i;
    if (hasU[255 - i]) lowU = i;
    if (hasV[255 - i]) lowV = i;
  }
  const int m = std::min(topU, topV), n = std::max(lowU, lowV);
  const float a = m < 128 ? 128.0f / static_cast<float>(128 - m) : 128.0f;
  const float b = n > 128 ? 128.0f / static_cast<float>(n - 128) : 128.0f;
  const int amount = Truncate((std::min(a, b) - 1.0f) * constants.percentOfRoom);
  if (constants.reports) call.Report(75);
  return CPixelProcess::Saturateconst(call.pixels, call.width, call.height, amount, 2,
                                      call.progress, constants.saturating, 100);
}

}  // namespace

LOOK_BY(Effect_DianShiXian, CPixelProcess::Blinds(call.pixels, call.width, call.height, 0, 2, 60, 0,
                                                  0, 0, call.progress, call.low, call.high))

LOOK_BY(Effect_FanSe,
        CPixelProcess::Negative(call.pixels, call.width, call.height, nullptr, 0, 100))

LOOK_BY(UnColor, CPixelProcess::Negative(call.pixels, call.width, call.height, call.progress,
                                         call.low, call.high))

LOOK_BY(Effect_HeiBai,
        CPixelProcess::GrayScale(call.pixels, call.width, call.height, nullptr, 0, 100))

LOOK_BY(Effect_NuanHua,
        CPixelProcess::CColorBalance(0, CPixelProcess::ToneMidtone, 100, 50, 0, call.pixels,
                                     call.width, call.height, nullptr, 0, 100))

LOOK_BY(Effect_QuWu, CPixelProcess::Dehazing(call.pixels, call.width, call.height, call.progress,
                                             call.low, call.high))

LOOK_BY(Effect_RouHe, RunFilter(call, {1, 1, 1, 1, 8, 1, 1, 1, 1}, 16, 0))
LOOK_BY(Effect_RuiHua, RunFilter(call, {-1, -1, -1, -1, 15, -1, -1, -1, -1}, 7, 0))
LOOK_BY(Emboss, RunFilter(call, {0, 0, -1, 0, 0, 0, 1, 0, 0}, -1, 127))

LOOK_BY(Effect_ZaoDian, CPixelProcess::Noise(call.pixels, call.width, call.height, 10,
                                             call.progress, call.low, call.high))

LOOK_BY(paper, CPixelProcess::Threshold(call.pixels, call.width, call.height, 127, call.progress,
                                        call.low, call.high))

LOOK(Effect_HuaiJiu) {
  if (!CPixelProcess::Saturateconst(call.pixels, call.width, call.height, -500, 1, call.progress, 0,
                                    60) ||
      !call.GoesOn())
    return 0;
  // Each thread draws its own noise, so it differs with the number of threads.
  return EachPixel(call, [](unsigned char* pixel) {
    CPixelProcess::ShiftRGBEx(pixel, 40, 25, 0);
    CPixelProcess::NoiseEx(pixel, 20);
  });
}

LOOK_BY(Effect_QuanCai, RaiseSaturation(call, {30, 70, 80, true, 100.0f}))
LOOK_BY(Effect_ZhiNengHuiSe, RaiseSaturation(call, {20, 60, 60, false, 50.0f}))

LOOK(Effect_Hdr) {
  static constexpr ToneTables kTones =
      Tones({0, 56, 144, 209, 255}, {0, 54, 140, 205, 255}, {0, 70, 139, 200, 255});
  const int radius = std::max(static_cast<int>(std::max(call.width, call.height) / 640.0 + 0.5), 1);
  const auto tone = [](const Call& image) {
    CPixelProcess::AutoColorLevel(image.pixels, image.width, image.height, 0, nullptr, 0, 100);
    ThroughTones(image, kTones);
  };
  // Toned twice, as the image may not be written before the memory for its blur is there.
  const PixelMemory blurred = CopyOf(call);
  tone(Over(call, blurred));
  if (!CPixelProcess::stackBlur(blurred.get(), call.width, call.height, radius, nullptr, 0, 100))
    return 0;
  tone(call);
  SFDSP::Sharp(call.pixels, blurred.get(), call.width, call.height, 0.3f);
  return 1;
}

LOOK(Effect_JingDianHDR) {
  static constexpr ToneTable kShared = Tone({0, 60, 132, 197, 255});
  static constexpr ToneTables kFirst =
      Tones({0, 61, 139, 204, 255}, {0, 59, 135, 200, 255}, {14, 73, 134, 195, 255});
  // These change contrast about the middle, the blue most of all.
  static constexpr ToneTables kSecond =
      Tones({14, 71, 128, 185, 242}, {2, 65, 128, 191, 254}, {58, 93, 128, 163, 198});
  static constexpr ToneTables kTones = {
      .blue = Through(Through(kShared, kFirst.blue), kSecond.blue),
      .green = Through(Through(kShared, kFirst.green), kSecond.green),
      .red = Through(Through(kShared, kFirst.red), kSecond.red)};
  CPixelProcess::AutoColorLevel(call.pixels, call.width, call.height, 0, call.progress, 0, 40);
  return ThroughTones(call, kTones);
}

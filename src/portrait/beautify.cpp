// Skin: a tint under a mask, evening, and two colourings.
#include "portrait/beautify.h"

#include <algorithm>
#include <array>
#include <new>

#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {

DetailWeights::DetailWeights(Precision precision) : table_(new (std::nothrow) float[65536]) {
  if (!table_) return;
  constexpr double kShare = 0.0039215;  // not 1 / 255
  constexpr float kSingleShare = 0.0039215f;
  const bool single = precision == Precision::kSingle;
  ParallelFor(256, [=, table = table_.get()](std::int64_t green) {
    const float own = single ? static_cast<float>(green) * kSingleShare
                             : static_cast<float>(static_cast<double>(green) * kShare);
    for (int i = 0; i < 256; ++i) {
      const float inverse = single ? 1.0f - static_cast<float>(i) * kSingleShare
                                   : static_cast<float>(1.0 - i * kShare);
      const double linear = std::clamp(2.0 * inverse + own - 1.0, 0.0, 1.0);
      float weight = static_cast<float>((own + linear) * 0.5);
      for (int round = 0; round < 3; ++round) {
        const double rest = 1.0 - weight;
        weight =
            static_cast<float>(weight <= 0.5f ? 2.0 * (weight * weight) : 1.0 - 2.0 * rest * rest);
      }
      table[256 * green + i] = weight;
    }
  });
}

namespace {

// How far skin lets a detail weight count: less in dark surroundings and in blue ones.
struct SkinFactor {
  SkinFactor() {
    for (int i = 0; i < 256; ++i) {
      const double share = i * 0.0039215;
      red[i] = share >= 0.5 ? 1.0 : 1.0 - 2.0 * (0.5 - share);
      blue[i] = i * 0.0019608;
    }
  }
  double operator()(const unsigned char* pixel) const {
    return std::max(red[pixel[2]] - blue[pixel[0]], 0.0);
  }

  std::array<double, 256> red, blue;
};

// Soft light of a tint onto a channel, mixed with the channel.
using TintTable = std::array<int, 256>;

TintTable SoftLight(std::int64_t tint, double amount) {
  TintTable table;
  for (int c = 0; c < 256; ++c) {
    const std::int64_t multiplied = c * tint >> 8;
    const std::int64_t screened = 255 - ((255 - c) * (255 - tint) >> 8);
    const auto soft = static_cast<int>(
        std::clamp<std::int64_t>(((screened - multiplied) * c >> 8) + multiplied, 0, 255));
    table[c] = Truncate(soft * amount + c * (1 - amount));
  }
  return table;
}

// Shifts a channel by +shift at 0, nothing in the middle and -shift at 255.
constexpr int Shifted(int value, int shift) {
  return static_cast<int>(static_cast<float>(value + shift) -
                          static_cast<float>(shift * value) / 127.5f + 0.5f);
}

constexpr ToneTable kTianMeiTone1 = Curve({{0, 0},
                                           {16, 18},
                                           {32, 37},
                                           {64, 72},
                                           {96, 105},
                                           {128, 135},
                                           {160, 162},
                                           {192, 188},
                                           {224, 212},
                                           {255, 235}});
constexpr ToneTable kTianMeiTone2 = Curve({{0, 0},
                                           {16, 17},
                                           {32, 34},
                                           {64, 68},
                                           {96, 102},
                                           {128, 136},
                                           {160, 170},
                                           {192, 204},
                                           {224, 238},
                                           {255, 255}});
constexpr ToneTable kTianMeiTone3 = Curve({{0, 0},
                                           {16, 18},
                                           {32, 36},
                                           {64, 72},
                                           {96, 106},
                                           {128, 139},
                                           {160, 170},
                                           {192, 199},
                                           {224, 228},
                                           {255, 255}});
constexpr ToneTable kWeiMeiRedGreen = Curve({{0, 0},
                                             {16, 25},
                                             {32, 45},
                                             {64, 80},
                                             {96, 112},
                                             {128, 143},
                                             {160, 172},
                                             {192, 201},
                                             {224, 229},
                                             {255, 255}});
constexpr ToneTable kWeiMeiBlue = Curve({{0, 0},
                                         {16, 9},
                                         {32, 22},
                                         {64, 49},
                                         {96, 80},
                                         {128, 112},
                                         {160, 146},
                                         {192, 182},
                                         {224, 219},
                                         {255, 255}});

ToneTables TianMeiTables() {
  const auto tone = [](int i, int shift) { return kTianMeiTone1[Shifted(i, shift)]; };
  return {TableOf([=](int i) { return kTianMeiTone3[kTianMeiTone2[tone(i, 50)]]; }),
          TableOf([=](int i) { return kTianMeiTone3[tone(i, 18)]; }),
          TableOf([=](int i) { return kTianMeiTone3[tone(i, 6)]; })};
}

void ColourBy(const ToneTables& tables, unsigned char* pixels, int width, int height) {
  if (IsWorkable(pixels, width, height)) RunTables(pixels, width, height, tables, RowProgress());
}

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

int CPixelProcess::Skinbeautify(unsigned char* pixels, int width, int height, int red, int green,
                                int blue, double amount, const unsigned char* mask,
                                CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const TintTable tints[] = {SoftLight(blue, amount), SoftLight(green, amount),
                             SoftLight(red, amount)};
  const RowProgress rows(progress, progressLow, progressHigh, height);
  if (!mask) {
    const auto bytes = [](const TintTable& tint) {
      return TableOf([&](int i) { return tint[i]; });
    };
    return RunTables(pixels, width, height, {bytes(tints[0]), bytes(tints[1]), bytes(tints[2])},
                     rows);
  }
  return ForEachRow(rows, height, [=, &tints](std::int64_t y) {
    unsigned char* pixel = pixels + 4 * (std::max(width, 0) * y);
    const unsigned char* const shares = mask + std::max(width, 0) * y;
    for (int x = 0; x < width; ++x, pixel += 4) {
      const float share = shares[x] / 255.0f, rest = 1.0f - share;
      for (int c = 0; c < 3; ++c)
        pixel[c] = TruncateToByte(static_cast<float>(tints[c][pixel[c]]) * share +
                                  static_cast<float>(pixel[c]) * rest);
    }
  });
}

void CPixelProcess::SkinBase(unsigned char* pixels, int width, int height, float sigma) {
  const SkinFactor factor;
  ForEachDetail(pixels, width, height, sigma, Precision::kDouble,
                [&](unsigned char* pixel, const unsigned char* blurred, float weight) {
                  const auto kept = static_cast<float>(factor(blurred) * weight);
                  for (int c = 0; c < 3; ++c) {
                    const float own = static_cast<float>(pixel[c]) * kept;
                    const double even = kSkinLift[pixel[c]] * (1.0 - kept) + own;
                    pixel[c] =
                        static_cast<unsigned char>(static_cast<int>(even * 0.7 + pixel[c] * 0.3));
                  }
                });
}

void CPixelProcess::TianMei(unsigned char* pixels, int width, int height) {
  ColourBy(TianMeiTables(), pixels, width, height);
}

void CPixelProcess::WeiMei(unsigned char* pixels, int width, int height) {
  ToneTables tables = TianMeiTables();
  for (int i = 0; i < 256; ++i) {
    tables.blue[i] = kWeiMeiBlue[tables.blue[i]];
    tables.green[i] = kWeiMeiRedGreen[tables.green[i]];
    tables.red[i] = kWeiMeiRedGreen[tables.red[i]];
  }
  ColourBy(tables, pixels, width, height);
}

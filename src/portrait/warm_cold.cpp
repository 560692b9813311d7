// Tints toward warm and cold.
#include "filters/rows.h"
#include "pixel/truncate.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

namespace {

/// Straight lines between samples at the inputs of kAt, which bend near 128 alone.
constexpr int kAt[] = {0, 16, 32, 64, 96, 128, 160, 192, 224, 255};
consteval ToneTable Lines(const int (&samples)[10]) {
  ToneTable table{};
  for (int i = 0; i < 9; ++i)
    for (int x = kAt[i]; x <= kAt[i + 1]; ++x) {
      const double share = static_cast<double>(x - kAt[i]) / (kAt[i + 1] - kAt[i]);
      const double value = samples[i] + share * (samples[i + 1] - samples[i]);
      table[x] = static_cast<unsigned char>(value + 0.5);
    }
  return table;
}

constexpr ToneTables kWarm = {.blue = Lines({0, 13, 26, 51, 77, 103, 141, 179, 218, 255}),
                              .green = Lines({0, 16, 33, 65, 98, 130, 162, 193, 225, 255}),
                              .red = Lines({0, 19, 37, 75, 112, 150, 176, 203, 229, 255})};
constexpr ToneTables kCold = {.blue = Lines({0, 19, 38, 77, 115, 153, 179, 205, 230, 255}),
                              .green = Lines({0, 17, 35, 69, 104, 138, 168, 197, 227, 255}),
                              .red = kWarm.blue};

void Tint(unsigned char* pixels, int width, int height, const ToneTables& tables, float strength) {
  if (!IsWorkable(pixels, width, height)) return;
  const float rest = 1 - strength;
  const auto mix = [=](const ToneTable& table) {
    return TableOf([=, &table](int c) {
      return TruncateToByte(static_cast<float>(table[c]) * strength + static_cast<float>(c) * rest);
    });
  };
  RunTables(pixels, width, height, {mix(tables.blue), mix(tables.green), mix(tables.red)},
            RowProgress());
}

}  // namespace

void SFDSP::WarmFilter(unsigned char* pixels, int width, int height, float strength) {
  Tint(pixels, width, height, kWarm, strength);
}

void SFDSP::ColdFilter(unsigned char* pixels, int width, int height, float strength) {
  Tint(pixels, width, height, kCold, strength);
}

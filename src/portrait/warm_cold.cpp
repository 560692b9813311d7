// Tints toward warm and cold.
#include "filters/rows.h"
#include "pixel/truncate.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

namespace {

constexpr ToneTables kWarm = {.blue = Curve({{0, 0},
                                             {16, 13},
                                             {32, 26},
                                             {64, 51},
                                             {96, 77},
                                             {128, 103},
                                             {160, 141},
                                             {192, 179},
                                             {224, 218},
                                             {255, 255}}),
                              .green = Curve({{0, 0},
                                              {16, 16},
                                              {32, 33},
                                              {64, 65},
                                              {96, 98},
                                              {128, 130},
                                              {160, 162},
                                              {192, 193},
                                              {224, 225},
                                              {255, 255}}),
                              .red = Curve({{0, 0},
                                            {16, 19},
                                            {32, 37},
                                            {64, 75},
                                            {96, 112},
                                            {128, 150},
                                            {160, 176},
                                            {192, 203},
                                            {224, 229},
                                            {255, 255}})};

constexpr ToneTables kCold = {.blue = Curve({{0, 0},
                                             {16, 19},
                                             {32, 38},
                                             {64, 77},
                                             {96, 115},
                                             {128, 153},
                                             {160, 179},
                                             {192, 205},
                                             {224, 230},
                                             {255, 255}}),
                              .green = Curve({{0, 0},
                                              {16, 17},
                                              {32, 35},
                                              {64, 69},
                                              {96, 104},
                                              {128, 138},
                                              {160, 168},
                                              {192, 197},
                                              {224, 227},
                                              {255, 255}}),
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
            RowProgress(nullptr, 0, 0, height));
}

}  // namespace

void SFDSP::WarmFilter(unsigned char* pixels, int width, int height, float strength) {
  Tint(pixels, width, height, kWarm, strength);
}

void SFDSP::ColdFilter(unsigned char* pixels, int width, int height, float strength) {
  Tint(pixels, width, height, kCold, strength);
}

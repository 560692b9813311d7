#include "pixel/truncate.h"
#include "support/operations.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

// Red, green and blue of warm, then of cold, at kInputs.
constexpr int kInputs[] = {0, 16, 32, 64, 96, 128, 160, 192, 224, 255};
constexpr int kSamples[][10] = {
    {0, 19, 37, 75, 112, 150, 176, 203, 229, 255}, {0, 16, 33, 65, 98, 130, 162, 193, 225, 255},
    {0, 13, 26, 51, 77, 103, 141, 179, 218, 255},  {0, 13, 26, 51, 77, 103, 141, 179, 218, 255},
    {0, 17, 35, 69, 104, 138, 168, 197, 227, 255}, {0, 19, 38, 77, 115, 153, 179, 205, 230, 255}};

constexpr auto kFilters = {&SFDSP::WarmFilter, &SFDSP::ColdFilter};

// The tables: what a ramp becomes at full strength.
Bytes Tables(decltype(&SFDSP::WarmFilter) filter) {
  Bytes ramp(1024);
  for (int i = 0; i < 1024; ++i) ramp[i] = Byte(i / 4);
  filter(ramp.data(), 256, 1, 1);
  return ramp;
}

TEST(WarmCold, TablesAreStraightBetweenTheirSamples) {
  const auto* samples = kSamples;
  for (const auto filter : kFilters) {
    const Bytes tables = Tables(filter);
    for (int c : {2, 1, 0}) {
      const auto& table = *samples++;
      for (int i = 0; i < 9; ++i)
        for (int x = kInputs[i]; x <= kInputs[i + 1]; ++x) {
          const double share = double(x - kInputs[i]) / (kInputs[i + 1] - kInputs[i]);
          const double straight = table[i] + share * (table[i + 1] - table[i]);
          EXPECT_NEAR(tables[4 * x + c], straight, 0.5) << c << " at " << x;
        }
    }
  }
}

TEST(WarmCold, MixesInSinglePrecisionAndTruncates) {
  for (const auto filter : kFilters) {
    const Bytes tables = Tables(filter);
    for (float s : {0.0f, 0.1f, 1.0f / 3, 0.5f, 0.77f, 1.0f, -0.4f, 2.5f, NAN})
      ExpectTwin("tint", With(filter, s), [&](Picture& image, int x, int y) {
        std::array<Byte, 3> colour;
        const float rest = 1.0f - s;
        for (int c = 0; c < 3; ++c) {
          const int value = image.At(x, y)[c];
          colour[c] = Byte(Truncate(float(tables[4 * value + c]) * s + float(value) * rest));
        }
        return colour;
      });
  }
  Byte pixel[] = {0, 0, 128, 7};
  SFDSP::WarmFilter(pixel, 1, 1, 0.5f);
  EXPECT_EQ(pixel[2], 139);
  EXPECT_EQ(pixel[3], 7);
}

}  // namespace
}  // namespace tintwerk::test

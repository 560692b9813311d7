#include "blend_maps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace tintwerk::paint {
namespace {

int At(const Picture& map, int row, int column) {
  return map.At(column, row).green;
}

/// numerator / denominator to the nearest, halves up; for numbers from 0 on.
int Divide(int numerator, int denominator) {
  return (2 * numerator + denominator) / (2 * denominator);
}

void ExpectEverywhere(const Picture& map, const std::function<int(int, int)>& expected) {
  ASSERT_EQ(map.width, 256);
  ASSERT_EQ(map.height, 256);
  for (int a = 0; a < 256; ++a)
    for (int b = 0; b < 256; ++b) {
      const Pixel& p = map.At(b, a);
      ASSERT_EQ(p.green, expected(a, b)) << "row " << a << ", column " << b;
      ASSERT_TRUE(p.red == p.green && p.blue == p.green && p.alpha == 255);
    }
}

TEST(BlendMap, IsRoundedOnceFromTheExactValue) {
  // Whole numbers only, so that a half that floating point misses by a hair would show.
  for (const int percent : {25, 30, 35, 40, 50, 60, 100}) {
    SCOPED_TRACE(percent);
    const auto mixed = [percent](int a, int blendTimes255) {
      return Divide(255 * a * (100 - percent) + blendTimes255 * percent, 25500);
    };
    ExpectEverywhere(BlendMap{Multiply, percent}(), [&](int a, int b) { return mixed(a, a * b); });
    ExpectEverywhere(BlendMap{Screen, percent}(),
                     [&](int a, int b) { return mixed(a, 255 * (a + b) - a * b); });
    ExpectEverywhere(BlendMap{Exclusion, percent}(),
                     [&](int a, int b) { return mixed(a, 255 * (a + b) - 2 * a * b); });
    ExpectEverywhere(BlendMap{Overlay, percent}(), [&](int a, int b) {
      return mixed(a, a < 128 ? 2 * a * b : 65025 - 2 * (255 - a) * (255 - b));
    });
  }
}

TEST(BlendMap, RowIsTheBaseAndColumnTheTop) {
  EXPECT_EQ(At(BlendMap{Screen}(), 100, 200), 222);
  EXPECT_EQ(At(BlendMap{Multiply, 50}(), 100, 200), 89);
  EXPECT_EQ(At(BlendMap{Overlay}(), 100, 200), 157);
  EXPECT_EQ(At(BlendMap{Overlay}(), 200, 100), 188);
  EXPECT_EQ(At(BlendMap{SoftLight}(), 100, 200), 135);
  EXPECT_EQ(At(BlendMap{SoftLight}(), 200, 100), 191);
  EXPECT_EQ(At(BlendMap{VividLight}(), 100, 192), 202);
  EXPECT_EQ(At(BlendMap{VividLight}(), 200, 64), 145);
  EXPECT_EQ(At(BlendMap{VividLight, 50}(), 200, 64), 173);
}

TEST(BlendMap, NeutralTopLeavesTheBase) {
  const Picture soft = BlendMap{SoftLight}();
  const Picture vivid = BlendMap{VividLight}();
  const Picture glow = BlendMap{SoftGlow}();
  const Picture print = BlendMap{AgedPrint}();
  for (int a = 0; a < 256; ++a) {
    EXPECT_EQ(At(glow, a, 0), a);
    for (const int grey : {127, 128}) {
      EXPECT_NEAR(At(soft, a, grey), a, 1);
      EXPECT_NEAR(At(vivid, a, grey), a, 1);
      // Bare paper lifts the blacks and dims the whites by a tenth, and leaves the middle.
      EXPECT_NEAR(At(print, a, grey), 0.8 * a + 25.5, 1);
    }
  }
}

TEST(BlendMap, VividLightHasNoHolesWhereItDividesByZero) {
  const Picture map = BlendMap{VividLight}();
  for (int v = 0; v < 256; ++v) {
    EXPECT_EQ(At(map, v, 0), v == 255 ? 255 : 0);
    EXPECT_EQ(At(map, v, 255), v == 0 ? 0 : 255);
    EXPECT_EQ(At(map, 0, v), 0);
    EXPECT_EQ(At(map, 255, v), 255);
  }
}

TEST(BlendMap, RisesWithBaseAndTop) {
  for (const Blend blend :
       {Screen, Multiply, Overlay, SoftLight, VividLight, SoftGlow, AgedPrint, HaloLight})
    for (const int percent : {50, 100}) {
      const Picture map = BlendMap{blend, percent}();
      for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b) {
          ASSERT_GE(At(map, a, b), At(map, std::max(a - 1, 0), b)) << a << " " << b;
          ASSERT_GE(At(map, a, b), At(map, a, std::max(b - 1, 0))) << a << " " << b;
        }
    }
}

TEST(BlendStrip, IsTheDiagonalOfTheMap) {
  for (const Blend blend : {Screen, SoftLight}) {
    const Picture map = BlendMap{blend, 30}();
    const Picture strip = BlendStrip{blend, 30}();
    ASSERT_EQ(strip.width, 256);
    ASSERT_EQ(strip.height, 1);
    for (int v = 0; v < 256; ++v) EXPECT_EQ(At(strip, 0, v), At(map, v, v));
  }
  EXPECT_EQ(At(BlendStrip{Screen, 30}(), 0, 128), 147);
  EXPECT_EQ(At(BlendStrip{SoftLight}(), 0, 64), 40);
}

}  // namespace
}  // namespace tintwerk::paint

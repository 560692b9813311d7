// Curves, vignettes, paper and noise, and what the files of the table promise.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "curves.h"
#include "noise.h"
#include "painting.h"
#include "paper.h"

namespace tintwerk::paint {
namespace {

TEST(CurveStrip, HoldsEachChannelsCurveInEveryRow) {
  const CurveStrip painter{.red = {{0, 0}, {255, 255}},
                           .green = {{0, 255}, {255, 0}},
                           .blue = {{0, 9}, {255, 9}},
                           .rows = 3};
  const Picture strip = painter();
  ASSERT_EQ(strip.width, 256);
  ASSERT_EQ(strip.height, 3);
  for (int row = 0; row < 3; ++row)
    for (int v = 0; v < 256; ++v) {
      const Pixel& p = strip.At(v, row);
      EXPECT_TRUE(p.red == v && p.green == 255 - v && p.blue == 9 && p.alpha == 255) << v;
    }
}

TEST(Vignettes, FallSmoothlyFromTheIdentity) {
  for (const char* name : {"vignetteMap.png", "style/VignetteMap.png"})
    for (const auto channel : {&Pixel::red, &Pixel::green, &Pixel::blue}) {
      SCOPED_TRACE(name);
      const Picture map = Paint(name);
      const auto at = [&](int row, int column) { return int(map.At(column, row).*channel); };
      for (int row = 0; row < 256; ++row) {
        ASSERT_EQ(at(row, 0), row);
        for (int column = 1; column < 256; ++column) {
          ASSERT_LE(at(row, column), at(row, column - 1)) << row << " " << column;
          // Not one level is left out on the way down, or the fall would show bands.
          ASSERT_GE(at(row, column), at(row, column - 1) - 1) << row << " " << column;
          ASSERT_GE(at(row, column), at(std::max(row - 1, 0), column)) << row << " " << column;
        }
        // Level where the last column takes over for everything outside the ellipse.
        ASSERT_LE(at(row, 248) - at(row, 255), 1);
      }
      EXPECT_GT(at(255, 255) / 255.0, at(64, 255) / 64.0 + 0.08);  // highlights hold
      EXPECT_NEAR(at(128, 255) / 128.0, 0.6, 0.1);
    }
}

TEST(Vignettes, SharedOneIsNeutralAndItsBrotherIsSofterAndWarm) {
  const Picture shared = Paint("vignetteMap.png");
  const Picture warm = Paint("style/VignetteMap.png");
  for (const Pixel& p : shared.pixels) ASSERT_TRUE(p.red == p.green && p.green == p.blue);
  for (const Pixel& p : warm.pixels) ASSERT_TRUE(p.red >= p.green && p.green >= p.blue);
  EXPECT_GT(warm.At(255, 128).red, warm.At(255, 128).blue + 5);
  EXPECT_GT(warm.At(255, 128).green, shared.At(255, 128).green);
}

TEST(Table, LookCurvesTintShadowsAndLightsAsNamed) {
  const Picture map = Paint("80smap.png");
  const Picture screen = Paint("screen30.png");
  const auto snapshot = [&](int v, unsigned char Pixel::*channel) {
    return int(screen.At(map.At(v, 0).*channel, 0).*channel);
  };
  for (int v = 1; v < 256; ++v)
    for (const auto channel : {&Pixel::red, &Pixel::green, &Pixel::blue})
      EXPECT_GE(snapshot(v, channel), snapshot(v - 1, channel));
  EXPECT_GT(snapshot(16, &Pixel::red), snapshot(16, &Pixel::green));
  EXPECT_GT(snapshot(16, &Pixel::blue), snapshot(16, &Pixel::green));
  EXPECT_GT(snapshot(240, &Pixel::green), snapshot(240, &Pixel::blue));
  EXPECT_NEAR(snapshot(128, &Pixel::green), 128, 15);  // neither darker nor washed out on the whole

  const Picture faded = Paint("huiyi2.png");
  EXPECT_LT(faded.At(0, 0).red, faded.At(0, 0).green);
  EXPECT_GT(faded.At(255, 0).red, faded.At(255, 0).blue + 20);
}

TEST(Curves, RiseInEveryChannelAndRepeatTheirRows) {
  for (const File& file : CurveFiles()) {
    SCOPED_TRACE(file.name);
    if (file.name == "style/hefeng2.png") continue;  // no tones: the keys of a soft light
    const Picture strip = Paint(file.name);
    for (int v = 0; v < 256; ++v)
      for (const auto channel : {&Pixel::red, &Pixel::green, &Pixel::blue}) {
        ASSERT_GE(strip.At(v, 0).*channel, strip.At(std::max(v - 1, 0), 0).*channel) << v;
        ASSERT_EQ(strip.At(v, strip.height - 1).*channel, strip.At(v, 0).*channel) << v;
      }
  }
}

TEST(Curves, TintAsTheirLooksAreNamed) {
  const auto at = [](const char* name, int v) { return Paint(name).At(v, 0); };
  // The vignette's curve only lightens, and keeps black.
  for (int v = 0; v < 256; v += 5) ASSERT_GE(at("kujiu3.png", v).blue + 5, v);
  EXPECT_EQ(at("kujiu3.png", 0).red, 0);
  EXPECT_GT(at("kujiu3.png", 128).blue, 145);
  // Skin stays short of orange.
  EXPECT_LE(at("yaogunMap.png", 192).red - at("yaogunMap.png", 192).green, 16);
  // Ink wash: diluted ink and much white paper.
  EXPECT_EQ(at("moran1.png", 64).red, 66);
  EXPECT_EQ(at("moran1.png", 192).blue, 230);
  // Of the two after the blackboard the second is the paler and less green.
  const Pixel greenish = at("style/qingse1.png", 128), pale = at("style/chengguang.png", 128);
  EXPECT_EQ(pale.red - greenish.red, 24);
  EXPECT_EQ(pale.green - greenish.green, 6);
  EXPECT_EQ(pale.blue - greenish.blue, 10);
  // Keys of a soft light: bluish shadows, amber lights.
  EXPECT_LT(at("style/hefeng2.png", 0).red + 30, at("style/hefeng2.png", 0).blue);
  EXPECT_GT(at("style/hefeng2.png", 255).red, at("style/hefeng2.png", 255).blue + 30);
}

TEST(AgedPaper, IsNeutralInTheCentreAndWarmAtTheEdge) {
  const Picture paper = AgedPaper{.width = 301, .height = 199, .seed = 1974}();
  struct Mean {
    double red = 0, green = 0, blue = 0, count = 0;
    void Add(const Pixel& p) { red += p.red, green += p.green, blue += p.blue, ++count; }
  } centre, edge;
  for (int y = 0; y < paper.height; ++y)
    for (int x = 0; x < paper.width; ++x) {
      const bool inner = std::abs(x - 150) < 60 && std::abs(y - 99) < 40;
      const bool outer = std::min({x, y, 300 - x, 198 - y}) < 6;
      if (inner) centre.Add(paper.At(x, y));
      if (outer) edge.Add(paper.At(x, y));
    }
  EXPECT_NEAR(centre.red / centre.count, 128, 4);
  EXPECT_NEAR(centre.green / centre.count, 128, 4);
  EXPECT_NEAR(centre.blue / centre.count, 128, 4);
  EXPECT_GT((edge.red - edge.blue) / edge.count, 20);
  EXPECT_LT(edge.green / edge.count, centre.green / centre.count);
}

TEST(AgedPaper, IsTheSameWithEveryCompiler) {
  EXPECT_EQ(Digest(AgedPaper{.width = 90, .height = 60, .seed = 3}()), 225867432u);
}

TEST(Noise, IsTheSameOnEveryMachine) {
  EXPECT_EQ(Hash(1, -2, 3), 1259640824u);
  EXPECT_EQ(CloudNoise(12.34, -5.6, 7, 4), 0.5146975420301049);
  EXPECT_EQ(GradientNoise(-3, 17, 9), 0);
  double low = 0, high = 0, sum = 0;
  for (int i = 0; i < 20000; ++i) {
    const double v = CloudNoise(i * 0.173, i * 0.031, 11, 5);
    low = std::min(low, v);
    high = std::max(high, v);
    sum += v;
  }
  EXPECT_TRUE(low > -1.1 && low < -0.4 && high < 1.1 && high > 0.4) << low << " " << high;
  EXPECT_NEAR(sum / 20000, 0, 0.05);
}

}  // namespace
}  // namespace tintwerk::paint

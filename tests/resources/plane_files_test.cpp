// Plane files: their layout, and what the tables in them do to tones.
#include "plane_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "painting.h"

namespace tintwerk::paint {
namespace {

constexpr std::size_t kPlane = 65536;

/// A file of the table as its reader sees it.
class Planes {
 public:
  explicit Planes(std::string_view name) : bytes_(Paint<Bytes>(name)) {}

  const Bytes& File() const { return bytes_; }
  int operator()(int plane, int high, int low) const {
    return bytes_.at(4 + (plane - 1) * (kPlane + 3) + high * 256 + low);
  }
  int Tone(int table, int value) const {
    return bytes_.at(7 + 2 * kPlane + (table - 1) * 256 + value);
  }

 private:
  Bytes bytes_;
};

/// The plane files, and how many planes each has.
const std::map<std::string_view, int> kFiles = {
    {"zvkr_studio_0.eb", 3},    {"zvkr_studio_1.eb", 2},    {"zvkr_studio_2.eb", 3},
    {"zvkr_studio_3.eb", 3},    {"zvkr_studio_5.eb", 3},    {"zvkr_NewGt_1.eb", 2},
    {"zvkr_NewGt_2.eb", 2},     {"zvkr_NewGt_3.eb", 2},     {"zvkr_quxian_3.eb", 2},
    {"zvkr_quxian_4.eb", 1},    {"zvkr_quxian_6.eb", 1},    {"zvkr_quxian_7.eb", 3},
    {"zvkr_quxian_10_0.eb", 2}, {"zvkr_quxian_10_1.eb", 3},
};

TEST(PlaneFile, LaysPlanesAndTonesOutWithGaps) {
  const Bytes file = PlaneFile{
      {[](double high, double) { return high; }, [](double, double low) { return 1 - low; }},
      {{{0, 7}, {255, 250}}}}();
  ASSERT_EQ(file.size(), 4 + 2 * kPlane + 3 + 256);
  for (const std::size_t gap : {0u, 1u, 2u, 3u, 65540u, 65541u, 65542u}) EXPECT_EQ(file[gap], 0);
  EXPECT_EQ(file[4 + 200 * 256 + 3], 200);
  EXPECT_EQ(file[65543 + 200 * 256 + 3], 252);
  EXPECT_EQ(file[131079], 7);
  EXPECT_EQ(file[131079 + 255], 250);
}

TEST(PlaneFile, OfTheTableHasTheSizeThatItsReaderTakes) {
  for (const auto& [name, planes] : kFiles) {
    SCOPED_TRACE(name);
    const Bytes file = Planes(name).File();
    EXPECT_EQ(file.size(), 1 + planes * (3 + kPlane) + (name == "zvkr_studio_1.eb" ? 768 : 0));
    for (int plane = 0; plane < planes; ++plane)
      for (std::size_t gap = 0; gap < 3; ++gap) EXPECT_EQ(file[1 + plane * (3 + kPlane) + gap], 0);
  }
}

TEST(PlaneFile, OfTheTableIsSmoothAndHardlyClips) {
  for (const auto& [name, planes] : kFiles) {
    const Planes file(name);
    for (int plane = 1; plane <= planes; ++plane) {
      SCOPED_TRACE(std::string(name) + " plane " + std::to_string(plane));
      int clipped = 0;
      for (int high = 0; high < 256; ++high)
        for (int low = 0; low < 256; ++low) {
          const int here = file(plane, high, low);
          ASSERT_LE(std::abs(here - file(plane, std::max(high - 1, 0), low)), 4)
              << high << " " << low;
          ASSERT_LE(std::abs(here - file(plane, high, std::max(low - 1, 0))), 4)
              << high << " " << low;
          // The keys' own ends are no clipping.
          const bool end = std::min(high, low) == 0 || std::max(high, low) == 255;
          clipped += !end && (here == 0 || here == 255);
        }
      EXPECT_LT(clipped, 65536 / 20);  // beside hard edges, in the crisp ones
    }
  }
}

TEST(PlaneFile, OfTheTableRisesWithTheImage) {
  // In the first plane of the violet look the image is the low key.
  for (const auto& [name, planes] : kFiles)
    for (int plane = 1; plane <= planes; ++plane) {
      SCOPED_TRACE(std::string(name) + " plane " + std::to_string(plane));
      const bool reversed = name == "zvkr_studio_1.eb" && plane == 1;
      const Planes file(name);
      for (int other = 0; other < 256; ++other)
        for (int v = 1; v < 256; ++v) {
          const int rise = reversed ? file(plane, other, v) - file(plane, other, v - 1)
                                    : file(plane, v, other) - file(plane, v - 1, other);
          ASSERT_GE(rise, 0) << v << " beside " << other;
        }
    }
}

TEST(StudioPrint, IsTheSharpImageUnlessToldOtherwise) {
  for (const double sharp : {0.0, 0.2, 0.7, 1.0})
    for (const double blurred : {0.0, 0.3, 1.0})
      EXPECT_DOUBLE_EQ(StudioPrint{}(sharp, blurred), sharp);
}

TEST(StudioPrint, SmoothsTextureKeepsEdgesAndSharpensWithinTheScale) {
  const StudioPrint soft{.texture = 0.25};
  EXPECT_NEAR(soft(0.51, 0.5), 0.5 + 0.25 * 0.01, 0.001);
  EXPECT_NEAR(soft(0.8, 0.5), 0.8, 0.01);
  const StudioPrint crisp{.texture = 1.3, .edges = 1.7};
  EXPECT_NEAR(crisp(0.51, 0.5), 0.5 + 1.3 * 0.01, 0.001);
  EXPECT_GT(crisp(0.6, 0.5), 0.64);
  for (int i = 0; i <= 20; ++i)
    for (int k = 0; k <= 20; ++k) {
      const double v = StudioPrint{.texture = 3, .edges = 3}(i / 20.0, k / 20.0);
      EXPECT_TRUE(v >= 0 && v <= 1) << i << " " << k << ": " << v;
      EXPECT_NEAR(v, i / 20.0, 0.126);
    }
}

TEST(StudioPrint, GlowsWhereTheBlurIsBright) {
  const StudioPrint print{.glow = 0.3};
  EXPECT_DOUBLE_EQ(print(0, 0), 0);
  EXPECT_NEAR(print(0.2, 0.8), Screen(0.2, 0.192), 1e-12);
  EXPECT_GT(print(0.2, 0.9), print(0.2, 0.8));
}

/// What a studio file makes of a flat grey.
struct Tint {
  int red, green, blue;
};
Tint Flat(const Planes& file, int v) {
  return {file(1, v, v), file(2, v, v), file(3, v, v)};
}

TEST(StudioFiles, TintAFlatGreyAsNamed) {
  const Tint classic = Flat(Planes("zvkr_studio_0.eb"), 150);
  EXPECT_GT(classic.red, classic.blue + 5);
  EXPECT_GT(classic.green, 150);  // the glow
  for (const int v : {40, 128}) {
    const Tint blue = Flat(Planes("zvkr_studio_2.eb"), v);
    EXPECT_GT(blue.blue, blue.red + 10) << v;
    EXPECT_GE(blue.green, blue.red) << v;
    const Tint green = Flat(Planes("zvkr_studio_5.eb"), v);
    EXPECT_GT(green.green, green.red + 10) << v;
    EXPECT_GE(green.blue, green.red) << v;
  }
  const Tint warm = Flat(Planes("zvkr_studio_3.eb"), 128);
  EXPECT_GT(warm.red, warm.green);
  EXPECT_GT(warm.green, warm.blue + 10);

  const Planes violet("zvkr_studio_1.eb");
  const int tone = violet(2, violet(1, 128, 128), 128);
  EXPECT_GT(violet.Tone(3, tone), violet.Tone(1, tone));
  EXPECT_GT(violet.Tone(1, tone), violet.Tone(2, tone) + 5);
}

/// Output levels of an even ramp, which must rise; fewer levels are broader steps.
int Levels(const std::vector<int>& ramp) {
  EXPECT_TRUE(std::ranges::is_sorted(ramp));
  int levels = 1;
  for (std::size_t i = 1; i < ramp.size(); ++i) {
    levels += ramp[i] != ramp[i - 1];
    EXPECT_LE(ramp[i] - ramp[i - 1], 5) << i;
  }
  return levels;
}

std::vector<int> Ramp(const auto& look) {
  std::vector<int> ramp(256);
  for (int v = 0; v < 256; ++v) ramp[v] = look(v);
  return ramp;
}

TEST(PlaneFile, ChainsOfPlanesDoNotPosterise) {
  const Planes violet("zvkr_studio_1.eb"), bokeh("zvkr_quxian_3.eb"), slide("zvkr_quxian_7.eb"),
      haze("zvkr_quxian_10_0.eb"), faded("zvkr_quxian_10_1.eb");
  EXPECT_GT(Levels(Ramp([&](int v) { return violet(2, violet(1, v, v), v); })), 170);
  for (const int m : {0, 60, 128}) {
    EXPECT_GT(Levels(Ramp([&](int v) { return bokeh(2, bokeh(1, v, m), v); })), 120) << m;
    EXPECT_GT(Levels(Ramp([&](int v) { return slide(3, slide(2, slide(1, v, 240), 128), m); })),
              110)
        << m;
    EXPECT_GT(
        Levels(Ramp([&](int v) { return faded(3, faded(2, haze(2, haze(1, v, m), 130), v), m); })),
        100)
        << m;
    for (const char* name : {"zvkr_NewGt_1.eb", "zvkr_NewGt_2.eb", "zvkr_NewGt_3.eb"}) {
      const Planes gradient(name);
      EXPECT_GT(Levels(Ramp([&](int v) { return gradient(2, gradient(1, v, v), m); })), 160)
          << name;
    }
  }
}

TEST(PlaneMaps, LeaveTheImageAloneWhereTheirPicturesRest) {
  const Picture toyCamera = Paint("jx_123.png"), softLight = Paint("style/hefeng3.png");
  for (int row = 0; row < 256; ++row) {
    EXPECT_NEAR(softLight.At(128, row).red, row, 1);
    EXPECT_NEAR(toyCamera.At(128, row).green, row, 1);
    EXPECT_EQ(toyCamera.At(255, row).blue, row);
    EXPECT_EQ(toyCamera.At(0, row).red, toyCamera.At(255, row).red);  // a curve
  }
  EXPECT_LT(toyCamera.At(0, 128).red, 124);
  EXPECT_GT(toyCamera.At(0, 255).blue, 25);  // the Multiply leaves a little light
}

TEST(PlaneMaps, KeepGreysInOrderAndTellTheSharpImageFromTheBlurred) {
  const Picture dew = Paint("175.png"), crisp = Paint("ZVfugu123.png");
  for (const Picture* map : {&dew, &crisp})
    for (const auto channel : {&Pixel::red, &Pixel::green, &Pixel::blue})
      for (int v = 1; v < 256; ++v)
        ASSERT_GE(map->At(v, v).*channel, map->At(v - 1, v - 1).*channel) << v;
  EXPECT_GT(dew.At(128, 128).blue, dew.At(128, 128).red);
  // A column is a value of the sharp image, so the map rises along a row and hardly down a column.
  EXPECT_GT(crisp.At(200, 128).green, crisp.At(60, 128).green + 100);
  EXPECT_NEAR(crisp.At(128, 200).green, crisp.At(128, 60).green, 40);
}

TEST(GradientFiles, ColourModestly) {
  // Skin under any pure colour of a gradient keeps most of its own.
  for (const char* name : {"zvkr_NewGt_1.eb", "zvkr_NewGt_2.eb", "zvkr_NewGt_3.eb"}) {
    SCOPED_TRACE(name);
    const Planes file(name);
    for (const int v : {120, 160, 220}) {
      const int tone = file(1, v, v);
      EXPECT_GT(file(2, tone, 255), file(2, tone, 0) + 15);
      EXPECT_LT(file(2, tone, 255), file(2, tone, 0) + 72);
    }
  }
}

}  // namespace
}  // namespace tintwerk::paint

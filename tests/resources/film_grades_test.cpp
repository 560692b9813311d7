// What every film look and adjustment step keeps to.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <set>
#include <string>
#include <vector>

#include "charts.h"
#include "colour_difference.h"
#include "cubes.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

struct Look {
  const File* file;
  Picture cube;

  Rgb operator()(const Rgb& colour) const {
    return ThroughCube(cube, CubeOf(*file).layout, colour);
  }
  Rgb operator()(double grey) const { return (*this)({grey, grey, grey}); }
};

std::vector<Look> Paint(std::span<const File> files) {
  std::vector<Look> looks;
  for (const File& file : files) looks.push_back({&file, CubeOf(file)()});
  return looks;
}

const std::vector<Look>& Films() {
  static const std::vector<Look> films = Paint(FilmGradeFiles());
  return films;
}

const std::vector<Look>& Adjustments() {
  static const std::vector<Look> adjustments = Paint(AdjustmentGradeFiles());
  return adjustments;
}

void ForEachLook(const std::function<void(const Look&)>& check) {
  for (const auto* looks : {&Films(), &Adjustments()})
    for (const Look& look : *looks) {
      SCOPED_TRACE(look.file->name);
      check(look);
    }
}

OkLab Perceived(const Rgb& c) {
  return ToOkLab(Linear({c.red / 255, c.green / 255, c.blue / 255}));
}

double Largest(const Rgb& c) {
  return std::max({std::abs(c.red), std::abs(c.green), std::abs(c.blue)});
}

TEST(FilmGrades, AreNamedAsTheLooksReadThem) {
  std::set<std::string> names;
  for (const File& file : FilmGradeFiles()) {
    names.insert(file.name);
    const bool fine = file.name == "style/pomelo3" || file.name == "style/pomelo10";
    const bool numbered = file.name.find('/') == file.name.npos;
    EXPECT_EQ(CubeOf(file).layout.step, fine ? 4 : numbered ? 17 : 16) << file.name;
  }
  std::set<std::string> expected = {"style/H5", "style/gray", "style/pomelo19", "style/pomelo3",
                                    "style/pomelo10"};
  for (const char* suffix :
       {"a2", "a3", "b2", "b4", "c1", "g2",  "h2",  "k1", "m4", "m5", "p1", "p2", "p4",
        "p5", "p6", "p7", "p9", "s4", "se1", "se2", "t1", "t2", "t3", "x3", "x4", "x6"})
    expected.insert("style/" + std::string(suffix));
  for (const int number : {166, 167, 169, 170, 171, 178, 180, 181, 182, 183, 283, 284})
    expected.insert(std::to_string(number));
  EXPECT_EQ(names, expected);
  EXPECT_EQ(names.size(), 43u);
}

TEST(FilmGrades, KeepGreysInOrderWithoutBands) {
  ForEachLook([](const Look& look) {
    double before = -1;
    for (int v = 0; v < 256; ++v) {
      const double lightness = Perceived(look(v)).lightness;
      ASSERT_GE(lightness, before - 1e-9) << v;
      before = lightness;
    }
    // The slope from node to node, in levels a level, bends gently.
    const CubeLayout& layout = CubeOf(*look.file).layout;
    const double step = layout.levels == 16 ? layout.step : 4 * layout.step;
    for (double v = step; v + step < 255; v += step) {
      const Rgb low = look(v - step), here = look(v), high = look(v + step);
      const Rgb bend = {high.red - 2 * here.red + low.red, high.green - 2 * here.green + low.green,
                        high.blue - 2 * here.blue + low.blue};
      EXPECT_LE(Largest(bend) / step, 1.1) << v;
    }
  });
}

TEST(FilmGrades, TurnSmoothlyAroundTheWheel) {
  ForEachLook([](const Look& look) {
    for (const double saturation : {0.15, 0.5, 1.0})
      for (const double value : {0.3, 0.7, 1.0}) {
        // Two hundred places to the full turn of six ramps: the input moves by at most this much.
        const double travel = 255 * saturation * value * 6 / 200;
        Rgb before = look(Wheel(0, saturation, value));
        for (int place = 1; place <= 200; ++place) {
          const Rgb here = look(Wheel(place * 0.03, saturation, value));
          const double moved =
              Largest({here.red - before.red, here.green - before.green, here.blue - before.blue});
          ASSERT_LE(moved, 3.4 * travel + 0.5) << saturation << " " << value << " " << place;
          before = here;
        }
      }
  });
}

TEST(FilmGrades, ClipNoChannelOverAWideRange) {
  ForEachLook([](const Look& look) {
    // Greys reach neither end before their last node, or two of them in the deepest blacks.
    for (int v = 40; v <= 226; ++v) {
      const Rgb c = look(v);
      ASSERT_GT(std::min({c.red, c.green, c.blue}), 0) << v;
      ASSERT_LT(std::max({c.red, c.green, c.blue}), 255) << v;
    }
    // Colours that lie inside the gamut stay inside.
    int clipped = 0, all = 0;
    for (int r = 40; r <= 220; r += 20)
      for (int g = 40; g <= 220; g += 20)
        for (int b = 40; b <= 220; b += 20, ++all) {
          const Rgb c = look({double(r), double(g), double(b)});
          clipped +=
              std::min({c.red, c.green, c.blue}) <= 0 || std::max({c.red, c.green, c.blue}) >= 255;
        }
    EXPECT_LE(clipped, all / 50);
  });
}

TEST(FilmGrades, KeepToTheCharts) {
  for (const File& file : FilmGradeFiles()) {
    SCOPED_TRACE(file.name);
    const ChartReading reading = ReadCharts(CubeOf(file));
    EXPECT_LT(reading.loss, 1.7);
    EXPECT_LT(reading.ring, 15);
    EXPECT_LT(reading.swing, 40);
    EXPECT_LT(reading.greyStep, 2.5);
    EXPECT_LT(reading.lineStep, 4.5);
    EXPECT_LE(reading.crushed, 10);
    EXPECT_LE(reading.burnt, 20);
  }
}

TEST(FilmGrades, KeepSkinTheColourOfSkin) {
  const std::set<std::string> monochrome = {"style/b2", "style/b4",   "style/x3", "style/x4",
                                            "style/x6", "style/gray", "284"};
  for (const Look& look : Films()) {
    if (monochrome.contains(look.file->name)) continue;
    SCOPED_TRACE(look.file->name);
    for (const Rgb& skin : {Rgb{240, 208, 190}, Rgb{210, 160, 130}, Rgb{140, 92, 68}}) {
      const OkLab c = Perceived(look(skin));
      const double hue = std::atan2(c.b, c.a) * 180 / std::numbers::pi;
      EXPECT_GT(hue, 20) << skin.red;
      EXPECT_LT(hue, 95) << skin.red;
      EXPECT_GT(std::hypot(c.a, c.b), 0.015) << skin.red;
    }
  }
}

TEST(FilmGrades, BlackAndWhiteIsNeutralUnlessToned) {
  for (const Look& look : Films()) {
    if (!CubeOf(*look.file).grade.filter) continue;
    const bool toned = look.file->name == "style/x4" || look.file->name == "style/x6";
    for (const Pixel& p : look.cube.pixels)
      ASSERT_EQ(toned, !(p.red == p.green && p.green == p.blue)) << look.file->name;
  }
}

TEST(FilmGrades, AreClearlyDifferent) {
  // Colours as photographs have them, each at four lights.
  const Rgb natural[] = {{128, 128, 128}, {150, 145, 140}, {205, 155, 130}, {140, 95, 70},
                         {120, 150, 70},  {70, 100, 50},   {100, 140, 190}, {70, 90, 130},
                         {190, 60, 45},   {220, 150, 50},  {160, 110, 60},  {110, 160, 160}};
  std::vector<std::vector<CieLab>> graded;
  for (const Look& look : Films()) {
    auto& colours = graded.emplace_back();
    for (const Rgb& colour : natural)
      for (const double light : {0.15, 0.5, 0.85, 1.15}) {
        const Rgb c = look({light * colour.red, light * colour.green, light * colour.blue});
        colours.push_back(ToCieLab({c.red / 255, c.green / 255, c.blue / 255}));
      }
  }
  for (std::size_t i = 0; i < graded.size(); ++i)
    for (std::size_t j = 0; j < i; ++j) {
      double sum = 0;
      for (std::size_t k = 0; k < graded[i].size(); ++k)
        sum += ColourDifference(graded[i][k], graded[j][k]);
      EXPECT_GT(sum / graded[i].size(), 3.0)
          << Films()[i].file->name << " " << Films()[j].file->name;
    }
}

using Measure = std::function<double(const Look&)>;

/// The twelve steps of an axis as `measure` sees them, step 1 at index 0.
std::vector<double> Steps(const std::string& axis, const Measure& measure) {
  std::vector<double> steps;
  for (int step = 1; step <= 12; ++step)
    for (const Look& look : Adjustments())
      if (look.file->name == "style/" + axis + std::to_string(step)) steps.push_back(measure(look));
  return steps;
}

void ExpectEvenThroughNeutral(const std::string& axis, const Measure& measure) {
  SCOPED_TRACE(axis);
  static const File unchanged = {"", Cube{kCube16, {}}};
  const double neutral = measure(Look{&unchanged, CubeOf(unchanged)()});
  const std::vector<double> steps = Steps(axis, measure);
  ASSERT_EQ(steps.size(), 12u);
  const double each = (steps.back() - steps.front()) / 11;
  EXPECT_GT(each, 0.006);
  for (std::size_t i = 0; i < steps.size(); ++i)
    EXPECT_NEAR(steps[i], neutral + (i - 5.5) * each, 0.4 * each) << i + 1;
}

TEST(AdjustmentGrades, StepEvenlyThroughNeutral) {
  EXPECT_EQ(AdjustmentGradeFiles().size(), 36u);
  const auto lightness = [](const Look& look) { return Perceived(look(112)).lightness; };
  ExpectEvenThroughNeutral("lig", lightness);
  ExpectEvenThroughNeutral("con", [](const Look& look) {
    return Perceived(look(160)).lightness - Perceived(look(80)).lightness;
  });
  ExpectEvenThroughNeutral("sat", [](const Look& look) {
    const OkLab sky = Perceived(look({96, 128, 160}));
    return std::hypot(sky.a, sky.b);
  });
}

TEST(AdjustmentGrades, TouchNothingElse) {
  for (const Look& look : Adjustments()) {
    SCOPED_TRACE(look.file->name);
    EXPECT_EQ(Largest(look(0)), 0);
    for (int v = 0; v < 256; v += 16) {
      const Rgb c = look(v);  // greys stay grey
      EXPECT_EQ(c.red, c.green);
      EXPECT_EQ(c.blue, c.green);
    }
    EXPECT_EQ(look(255).green, 255);
  }
  for (const double share : Steps("sat", [](const Look& look) {
         return Perceived(look({96, 128, 160})).lightness;
       }))
    EXPECT_NEAR(share, Perceived({96, 128, 160}).lightness, 0.01);
  for (const Pixel& p : Adjustments().at(2).cube.pixels) {  // sat1 is black and white
    ASSERT_EQ(p.red, p.green);
    ASSERT_EQ(p.blue, p.green);
  }
}

}  // namespace
}  // namespace tintwerk::paint

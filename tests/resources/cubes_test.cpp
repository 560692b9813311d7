// The colour spaces, and what a recipe does to a cube.
#include "cubes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "charts.h"
#include "colour_difference.h"
#include "painting.h"

namespace tintwerk::paint {
namespace {

Rgb Random(Dice& dice, double high) {
  return {dice.Between(0, high), dice.Between(0, high), dice.Between(0, high)};
}

OkLab Perceived(const Rgb& channels) {
  return ToOkLab(Linear({channels.red / 255, channels.green / 255, channels.blue / 255}));
}

Rgb Graded(const Grade& grade, const Rgb& colour) {
  return ThroughCube(Cube{kCube17, grade}(), kCube17, colour);
}

TEST(ColourDifference, MatchesThePublishedPairs) {
  const struct {
    CieLab one, other;
    double difference;
  } pairs[] = {
      {{50, 2.6772, -79.7751}, {50, 0, -82.7485}, 2.0425},
      {{50, 3.1571, -77.2803}, {50, 0, -82.7485}, 2.8615},
      {{50, 2.8361, -74.0200}, {50, 0, -82.7485}, 3.4412},
      {{50, -1.3802, -84.2814}, {50, 0, -82.7485}, 1.0000},
      {{50, 0, 0}, {50, -1, 2}, 2.3669},
      {{50, 2.4900, -0.0010}, {50, -2.4900, 0.0009}, 7.1792},
      {{50, 2.4900, -0.0010}, {50, -2.4900, 0.0011}, 7.2195},
      {{50, -0.0010, 2.4900}, {50, 0.0009, -2.4900}, 4.8045},
      {{50, 2.5, 0}, {50, 0, -2.5}, 4.3065},
      {{50, 2.5, 0}, {73, 25, -18}, 27.1492},
      {{50, 2.5, 0}, {61, -5, 29}, 22.8977},
      {{50, 2.5, 0}, {56, -27, -3}, 31.9030},
      {{50, 2.5, 0}, {58, 24, 15}, 19.4535},
      {{60.2574, -34.0099, 36.2677}, {60.4626, -34.1751, 39.4387}, 1.2644},
      {{6.7747, -0.2908, -2.4247}, {5.8714, -0.0985, -2.2286}, 0.6377},
      {{2.0776, 0.0795, -1.1350}, {0.9033, -0.0636, -0.5514}, 0.9082},
  };
  for (const auto& [one, other, difference] : pairs) {
    EXPECT_NEAR(ColourDifference(one, other), difference, 5e-5);
    EXPECT_NEAR(ColourDifference(other, one), difference, 5e-5);
    EXPECT_EQ(ColourDifference(one, one), 0);
  }
  const CieLab red = ToCieLab({1, 0, 0});
  EXPECT_NEAR(red.lightness, 53.24, 0.01);
  EXPECT_NEAR(red.a, 80.09, 0.01);
  EXPECT_NEAR(red.b, 67.20, 0.01);
  EXPECT_NEAR(ToCieLab({0.5, 0.5, 0.5}).a, 0, 0.01);
}

TEST(OkLab, MatchesTheLibraryFunctionsAndComesBack) {
  for (double x : {1e-12, 1e-4, 0.03, 0.2, 0.999, 1.0, 8.0})
    EXPECT_NEAR(CubeRoot(x), std::cbrt(x), 1e-15 * std::cbrt(x) * 4);
  EXPECT_EQ(CubeRoot(0), 0);
  for (double degrees = -400; degrees <= 400; degrees += 12.5) {
    EXPECT_NEAR(AtAngle(degrees).cosine, std::cos(degrees * std::numbers::pi / 180), 1e-13);
    EXPECT_NEAR(AtAngle(degrees).sine, std::sin(degrees * std::numbers::pi / 180), 1e-13);
  }
  for (int v = 0; v < 256; ++v) {
    const double x = v / 255.0;
    const double linear = Linear({x, 0, 0}).red;
    EXPECT_NEAR(linear, x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4), 1e-14);
    EXPECT_NEAR(Encoded({linear, 0, 0}).red, x, 1e-7);
  }
  const OkLab red = ToOkLab({1, 0, 0});
  EXPECT_NEAR(red.lightness, 0.62796, 1e-5);
  EXPECT_NEAR(red.a, 0.22486, 1e-5);
  EXPECT_NEAR(red.b, 0.12585, 1e-5);
  Dice dice(3);
  for (int round = 0; round < 200; ++round) {
    const Rgb colour = Random(dice, 1);
    const Rgb back = FromOkLab(ToOkLab(colour));
    EXPECT_NEAR(back.red, colour.red, 1e-5);
    EXPECT_NEAR(back.green, colour.green, 1e-5);
    EXPECT_NEAR(back.blue, colour.blue, 1e-5);
  }
}

TEST(OkLab, FindsThePurestColourOfAHue) {
  for (double turn = 0; turn < 6; turn += 0.23) {
    if (turn > 3.5 && turn < 4.1) continue;  // the dent of the blues
    const OkLab pure = Perceived(Wheel(turn, 1, 1));
    const OkLab cusp = Cusp({pure.a / Chroma(pure), pure.b / Chroma(pure)});
    EXPECT_NEAR(cusp.lightness, pure.lightness, 1e-4) << turn;
    EXPECT_NEAR(cusp.a, pure.a, 1e-4) << turn;
    EXPECT_NEAR(cusp.b, pure.b, 1e-4) << turn;
  }
}

TEST(Cube, OfTheDefaultGradeIsTheIdentityInItsLayout) {
  for (const CubeLayout& layout : {kCube16, kCube17, kCube4}) {
    SCOPED_TRACE(layout.step);
    const bool fine = layout.levels == 64;
    const Picture picture = Cube{layout, {}}();
    ASSERT_EQ(picture.width, fine ? 512 : 64);
    ASSERT_EQ(picture.height, fine ? 512 : 64);
    for (int b = 0; b < layout.levels; ++b)
      for (int g = 0; g < layout.levels; ++g)
        for (int r = 0; r < layout.levels; ++r) {
          const Pixel& node = fine ? picture.At((b & 7) * 64 + r, (b >> 3) * 64 + g)
                                   : picture.At((b & 3) * 16 + r, (b >> 2) * 16 + g);
          ASSERT_EQ(node.red, RoundToByte(NodeValue(layout, r)));
          ASSERT_EQ(node.green, RoundToByte(NodeValue(layout, g)));
          ASSERT_EQ(node.blue, RoundToByte(NodeValue(layout, b)));
          ASSERT_EQ(node.alpha, 255);
        }
  }
}

TEST(Cube, ReachesWhiteWithItsLastNodeAndLeavesTheMiddleInPlace) {
  for (int i = 0; i < 16; ++i) EXPECT_EQ(NodeValue(kCube17, i), 17 * i);
  for (const CubeLayout& layout : {kCube16, kCube4}) {
    const int last = layout.levels - 1;
    EXPECT_EQ(NodeValue(layout, 0), 0);
    EXPECT_EQ(NodeValue(layout, last), 255);
    for (int i = 0; i < last; ++i) {
      const double step = NodeValue(layout, i + 1) - NodeValue(layout, i);
      EXPECT_GE(step, layout.step);
      EXPECT_LE(step, 1.26 * layout.step);  // no sudden gain in the lights
    }
    EXPECT_NEAR(NodeValue(layout, (last + 1) / 2), 128, 1.5);
  }
}

TEST(Grade, TonesRiseFromBlackToWhite) {
  const Grade grade = {.tone = {.exposure = -0.2, .toe = 0.9, .shoulder = 0.7},
                       .ends = {.black = 0.2, .white = 0.9}};
  EXPECT_NEAR(Perceived(Graded(grade, {0, 0, 0})).lightness, 0.2, 0.004);
  EXPECT_NEAR(Perceived(Graded(grade, {255, 255, 255})).lightness, 0.9, 0.004);
  const Grade contrast = {.tone = {.toe = 0.5, .shoulder = 0.5}};
  EXPECT_LT(Graded(contrast, {51, 51, 51}).green, 45);
  EXPECT_GT(Graded(contrast, {187, 187, 187}).green, 195);
  EXPECT_GT(Graded({.tone = {.exposure = 0.3}}, {119, 119, 119}).green, 135);
  EXPECT_GT(Graded({.bend = {0.3, 0, 0}}, {119, 119, 119}).red, 130);
  EXPECT_LT(Graded({.contrast = {0, 0, 0.3}}, {51, 51, 51}).blue, 46);
  // Dyes darken what is coloured, not what is grey.
  EXPECT_NEAR(Graded({.density = 1}, {119, 119, 119}).green, 119, 0.5);
  EXPECT_LT(Graded({.density = 1}, {187, 51, 51}).red, 180);
}

TEST(Grade, LeavesBrightColoursPure) {
  // A curve on lightness alone would lift an orange to where sRGB holds little chroma.
  const Grade bright = {.tone = {.exposure = 0.44, .toe = 0.45, .shoulder = 0.4}};
  EXPECT_LT(ReadCharts({kCube17, bright}).loss, 1);
  for (const Rgb& colour : {Rgb{254, 128, 20}, Rgb{255, 210, 0}, Rgb{230, 30, 60}}) {
    const OkLab before = Perceived(colour), after = Perceived(Graded(bright, colour));
    EXPECT_GT(Chroma(after), 0.8 * Chroma(before));
    EXPECT_GT(after.lightness, before.lightness);
    // Channel by channel alone, the hue would turn by up to 13 degrees.
    const double cosine =
        (before.a * after.a + before.b * after.b) / (Chroma(before) * Chroma(after));
    EXPECT_GT(cosine, AtAngle(6).cosine);
  }
}

TEST(Grade, TurnsYellowsToTheLightOfTheirNewHue) {
  const Grade amber = {.bands = {{.hue = 115, .reach = 55, .shift = -40}}};
  const ChartReading reading = ReadCharts({kCube17, amber});
  EXPECT_LT(reading.ring, 15);
  EXPECT_LT(reading.lineStep, 4);
  const OkLab yellow = Perceived({255, 240, 0}), turned = Perceived(Graded(amber, {255, 240, 0}));
  EXPECT_LT(turned.lightness, yellow.lightness - 0.08);
  EXPECT_GT(Chroma(turned), 0.7 * Chroma(yellow));
}

TEST(Grade, CastsFollowLightnessAndFiltersWeighChannels) {
  const Grade split = {.cast = {.shadows = {260, 0.04}, .middle = {}, .lights = {90, 0.04}}};
  EXPECT_LT(Perceived(Graded(split, {51, 51, 51})).b, -0.015);
  EXPECT_GT(Perceived(Graded(split, {204, 204, 204})).b, 0.015);
  EXPECT_NEAR(Perceived(Graded(split, {119, 119, 119})).b, 0, 0.01);

  const Grade redFilter = {.filter = Rgb{1, 0, 0}};
  for (const Rgb& colour : {Rgb{204, 0, 102}, Rgb{51, 255, 0}}) {
    const Rgb grey = Graded(redFilter, colour);
    EXPECT_NEAR(grey.red, colour.red, 0.6);
    EXPECT_EQ(grey.green, grey.red);
    EXPECT_EQ(grey.blue, grey.red);
  }
}

TEST(Grade, BandsTouchTheirHuesAloneAndNoGreys) {
  const Grade band = {.bands = {{.hue = 140, .reach = 50, .shift = 20, .saturation = 0.5}}};
  const Rgb leaf = {68, 136, 34}, sky = {68, 119, 204}, grey = {119, 119, 119};
  const auto hue = [](const OkLab& c) { return std::atan2(c.b, c.a) * 180 / std::numbers::pi; };
  const OkLab before = Perceived(leaf), after = Perceived(Graded(band, leaf));
  EXPECT_LT(Chroma(after), 0.8 * Chroma(before));
  EXPECT_GT(hue(after), hue(before) + 7);
  EXPECT_NEAR(after.lightness, before.lightness, 0.005);
  for (const Rgb& colour : {sky, grey}) {
    const Rgb same = Graded(band, colour);
    EXPECT_NEAR(same.red, colour.red, 0.6);
    EXPECT_NEAR(same.green, colour.green, 0.6);
    EXPECT_NEAR(same.blue, colour.blue, 0.6);
  }
}

TEST(Grade, SparesSkinOfAnyTone) {
  for (const Rgb& skin : {Rgb{238, 204, 187}, Rgb{204, 153, 119}, Rgb{136, 85, 60}}) {
    const auto left = [&](double spared) {
      return Chroma(Perceived(Graded({.saturation = {0, 0, 0}, .skin = spared}, skin)));
    };
    const double before = Chroma(Perceived(skin));
    EXPECT_GT(left(1), (before > 0.06 ? 0.8 : 0.4) * before);  // pale skin is nearly grey
    EXPECT_NEAR(left(0.5), left(1) / 2, 0.05 * before);
    EXPECT_LT(left(0), 0.01);
  }
  const Rgb blue = Graded({.saturation = {0, 0, 0}, .skin = 1}, {51, 102, 204});
  EXPECT_LT(Chroma(Perceived(blue)), 0.01);
}

TEST(Grade, ChangesSkinNoFasterThanACubeFollows) {
  const Grade night = {.saturation = {0.4, 0.4, 0.4},
                       .cast = {{262, 0.045}, {257, 0.05}, {240, 0.03}}};
  constexpr CubeLayout kFine{.levels = 86, .tiles = 10, .step = 3};
  const Picture coarse = Cube{kCube17, night}(), fine = Cube{kFine, night}();
  for (const Rgb& skin : kSkinTones) {
    const Rgb c = ThroughCube(coarse, kCube17, skin);
    const Rgb f = ThroughCube(fine, kFine, skin);
    EXPECT_NEAR(c.red, f.red, 4.5) << skin.red;
    EXPECT_NEAR(c.green, f.green, 4.5) << skin.red;
    EXPECT_NEAR(c.blue, f.blue, 4.5) << skin.red;
  }
}

TEST(Grade, CompressesTheGamutInsteadOfClipping) {
  // Along a ray from grey to the rim colours stay apart, however strong the saturation.
  const Picture cube = Cube{kCube17, {.saturation = {2.5, 2.5, 2.5}, .skin = 0}}();
  for (const Rgb& rim : {Rgb{255, 60, 0}, Rgb{0, 160, 60}, Rgb{40, 80, 255}, Rgb{255, 220, 0}}) {
    CieLab before = ToCieLab({0.4, 0.4, 0.4});
    for (double t = 0; t <= 1; t += 1.0 / 16) {
      const Rgb c = ThroughCube(
          cube, kCube17, {Lerp(128, rim.red, t), Lerp(128, rim.green, t), Lerp(128, rim.blue, t)});
      const CieLab here = ToCieLab({c.red / 255, c.green / 255, c.blue / 255});
      EXPECT_GT(ColourDifference(here, before), 0.1) << rim.red << " " << rim.green << " " << t;
      before = here;
    }
  }
}

TEST(ThroughCube, MeetsNodesAndInterpolatesBetweenThem) {
  Dice dice(8);
  const Picture cube = Cube{kCube17, {.tone = {.exposure = 0.3}, .ends = {.black = 0.1}}}();
  const Rgb node = ThroughCube(cube, kCube17, {3 * 17, 9 * 17, 14 * 17});
  const Pixel& pixel = cube.At((14 & 3) * 16 + 3, (14 >> 2) * 16 + 9);
  EXPECT_EQ(node.red, pixel.red);
  EXPECT_EQ(node.green, pixel.green);
  EXPECT_EQ(node.blue, pixel.blue);
  const Picture identity = Cube{kCube17, {}}();
  for (int round = 0; round < 100; ++round) {
    const Rgb colour = Random(dice, 255);
    const Rgb same = ThroughCube(identity, kCube17, colour);
    EXPECT_NEAR(same.red, colour.red, 1e-9);
    EXPECT_NEAR(same.green, colour.green, 1e-9);
    EXPECT_NEAR(same.blue, colour.blue, 1e-9);
  }
  EXPECT_EQ(ThroughCube(Cube{kCube16, {}}(), kCube16, {250, 255, 240}).red, 255);
}

TEST(Charts, FindWhatIsWrong) {
  const ChartReading same = ReadCharts({kCube17, {}});
  EXPECT_EQ(same.loss, 0);
  EXPECT_EQ(same.ring, 0);
  EXPECT_LT(same.swing, 32);  // those of sRGB itself, which turn in OKLab
  EXPECT_NEAR(same.lineStep, 1, 1e-9);
  EXPECT_NEAR(same.greyStep, 1, 1e-9);
  EXPECT_LE(same.crushed, 4);
  EXPECT_EQ(same.turnedSkin, 0);

  EXPECT_GT(ReadCharts({kCube17, {.tone = {.toe = 0.95, .shoulder = 0.95}}}).crushed, 10);
  EXPECT_GT(ReadCharts({kCube17, {.tone = {.shoulder = 0.95}}}).burnt, same.burnt + 1);
  EXPECT_GT(ReadCharts({kCube17, {.tone = {.toe = -2}}}).greyStep, 2.5);
  const Cast violet = {300, 0.1};
  EXPECT_EQ(ReadCharts({kCube17, {.cast = {violet, violet, violet}, .skin = 0}}).turnedSkin, 18);
  // The purest greens go grey.
  const ChartReading ring =
      ReadCharts({kCube17, {.bands = {{.hue = 142, .reach = 40, .saturation = 0}}}});
  EXPECT_GT(ring.loss, 2);
  EXPECT_GT(ring.ring, 30);
}

TEST(Cube, IsTheSameWithEveryCompiler) {
  const Grade all = {.bend = {0.1, -0.05, 0},
                     .contrast = {0, 0.1, -0.2},
                     .bands = {{.hue = 130, .reach = 60, .shift = -20, .saturation = 1.4},
                               {.hue = 250, .reach = 70, .shift = 15, .exposure = -0.2}},
                     .tone = {.exposure = 0.1, .toe = 0.6, .shoulder = 0.3},
                     .density = 0.4,
                     .ends = {.black = 0.07, .white = 0.97},
                     .saturation = {0.8, 1.3, 1},
                     .cast = {{200, 0.03}, {330, 0.01}, {80, 0.04}},
                     .skin = 0.6};
  EXPECT_EQ(Digest(Cube{kCube16, all}()), 3701715742u);
}

}  // namespace
}  // namespace tintwerk::paint

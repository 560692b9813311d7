// tintwerk filter and tintwerk blend.
#include <cstdlib>
#include <string>
#include <vector>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using vips::VImage;
using Colour = std::vector<int>;

class FilterTest : public HostTest {
 protected:
  // Filters the picture and decodes what was written.
  Decoded Filtered(const std::string& filter, const std::string& picture = "in.png") {
    Expect(0, "filter " + filter + " " + picture + " -o out.png");
    return Decode("out.png");
  }
};
class BlendTest : public HostTest {};

TEST_F(FilterTest, WorksAPictureWithTheOptionsOfTheOperation) {
  Uniform(12, 10, {10, 100, 200}).write_to_file("in.png");
  Expect(0, "filter brightness --amount 200 in.png -o out.png");
  EXPECT_EQ(Decode("out.png").At(5, 5), (Colour{132, 177, 227}));
  Expect(0, "filter blur in.png -o out.png");
  EXPECT_EQ(Decode("out.png").At(0, 9), (Colour{10, 100, 200}));

  for (const char* line : {"filter blur --radius -1 in.png -o none.png",
                           "filter sepia in.png -o none.png", "filter blur in.png -o in.png"})
    EXPECT_EQ(Run(line).code, 2) << line;
  EXPECT_EQ(Run("filter blur none.png -o none.png").code, 2);
}

TEST_F(FilterTest, EveryOperationWritesAPicture) {
  Waves(40, 30).write_to_file("in.png");
  EXPECT_THAT(Run("filter --help").out, testing::HasSubstr("gaussian"));
  for (const std::string name :
       {"gaussian",      "high-pass", "sharpen",   "light",       "exposure",    "saturation",
        "hue",           "balance",   "gamma",     "posterize",   "auto-levels", "auto-contrast",
        "white-balance", "mosaic",    "emboss",    "halftone",    "ripple",      "whirl",
        "noise",         "dehaze",    "skin-mask", "smooth-skin", "tint-skin",   "guided",
        "selective",     "warm",      "cool"}) {
    Expect(0, "filter " + name + " in.png -o " + name + ".png");
    EXPECT_EQ(Decode(name + ".png").width, 40) << name;
  }
}

TEST_F(FilterTest, SkinIsFoundAndTintedAlone) {
  Uniform(40, 40, {200, 150, 130})
      .join(Uniform(40, 40, {40, 80, 160}), VIPS_DIRECTION_HORIZONTAL)
      .write_to_file("in.png");
  const Decoded mask = Filtered("skin-mask");
  EXPECT_EQ(mask.At(5, 20), (Colour{255, 255, 255}));
  EXPECT_EQ(mask.At(75, 20), (Colour{0, 0, 0}));
  EXPECT_THAT(mask.At(39, 20),
              testing::Each(testing::AllOf(mask.At(39, 20)[0], testing::Gt(0), testing::Lt(255))));

  const Decoded white = Filtered("tint-skin --amount 1");
  EXPECT_EQ(white.At(5, 20), (Colour{242, 211, 192}));
  EXPECT_EQ(white.At(75, 20), (Colour{40, 80, 160}));
  const Decoded red = Filtered("tint-skin --green 0 --blue 0 --amount 1");
  EXPECT_EQ(red.At(5, 20)[0], 242);
  EXPECT_LT(red.At(5, 20)[1], 150);
  EXPECT_LT(red.At(5, 20)[2], 130);
  EXPECT_EQ(Filtered("tint-skin --amount 0"), Decode("in.png"));
}

TEST_F(FilterTest, DarkSpotsOfSkinAreLightenedMost) {
  VImage skin = Uniform(60, 60, {200, 150, 130}).copy_memory();
  skin.draw_rect({150, 105, 90}, 27, 27, 6, 6, VImage::option()->set("fill", true));
  skin.write_to_file("in.png");
  const auto gain = [](const Decoded& picture, int x, int from) {
    return picture.At(x, 29)[1] - from;
  };
  const Decoded wide = Filtered("smooth-skin"), narrow = Filtered("smooth-skin --sigma 0.1");
  EXPECT_GT(gain(wide, 29, 105), gain(wide, 5, 150));
  EXPECT_GT(gain(wide, 29, 105), gain(narrow, 29, 105));
}

TEST_F(FilterTest, GuidedSmoothsDetailWithinItsStrengthAndKeepsEdges) {
  // A grid of 6 levels on both sides of an edge of 120.
  const VImage place = VImage::xyz(80, 40);
  const VImage level = (place[0] >= 40) / 255.0 * 120 + (place[0] + place[1]) % 2 * 6;
  VImage picture = level.linear({1, 1, 1}, {60, 70, 80})
                       .cast(VIPS_FORMAT_UCHAR)
                       .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
  picture.write_to_file("in.png");
  const auto detail = [](const Decoded& p, int x) {
    return std::abs(p.At(x, 20)[0] - p.At(x + 1, 20)[0]);
  };
  const Decoded smooth = Filtered("guided --radius 3 --strength 20");
  EXPECT_LE(detail(smooth, 10), 2);
  EXPECT_LE(detail(smooth, 65), 2);
  EXPECT_GT(smooth.At(41, 20)[2] - smooth.At(38, 20)[2], 100);
  EXPECT_GE(detail(Filtered("guided --radius 3 --strength 1"), 10), 5);
  EXPECT_LT(Filtered("guided --radius 3 --strength 255").At(41, 20)[2], smooth.At(41, 20)[2]);
}

TEST_F(FilterTest, InksAndWarmthShiftTheColoursTheyName) {
  Uniform(8, 8, {200, 50, 50}).write_to_file("red.png");
  Uniform(8, 8, {50, 50, 200}).write_to_file("blue.png");
  Uniform(8, 8, {128, 128, 128}).write_to_file("grey.png");
  const auto at = [&](const std::string& filter, const std::string& picture) {
    return Filtered(filter, picture).At(3, 3);
  };
  EXPECT_EQ(at("selective --family red --cyan 100", "red.png"), (Colour{169, 50, 50}));
  EXPECT_EQ(at("selective --cyan 100", "red.png"), (Colour{169, 50, 50}));
  EXPECT_EQ(at("selective --cyan 100", "blue.png"), (Colour{50, 50, 200}));
  EXPECT_EQ(at("selective --family Blue --yellow 100", "blue.png"), (Colour{50, 50, 169}));
  // All three channels lose, and a negative shift adds.
  const Colour darker = at("selective --family grey --black 50", "grey.png");
  const Colour greener = at("selective --family grey --magenta -50", "grey.png");
  EXPECT_THAT(darker, testing::Each(testing::Lt(128)));
  EXPECT_EQ(greener[0], 128);
  EXPECT_GT(greener[1], 128);

  EXPECT_EQ(at("warm --strength 0.5", "grey.png"), (Colour{139, 129, 115}));
  EXPECT_EQ(at("cool --strength 0.5", "grey.png"), (Colour{115, 133, 140}));
  EXPECT_EQ(at("warm --strength 0", "grey.png"), (Colour{128, 128, 128}));
}

TEST_F(FilterTest, ValuesOutOfRangeAreRefused) {
  Waves(8, 8).write_to_file("in.png");
  for (const std::string line :
       {"smooth-skin --sigma 0", "tint-skin --red 256", "tint-skin --amount 1.1",
        "guided --radius 0", "guided --strength 256", "selective --family orange",
        "selective --family 2", "selective --black 101", "warm --strength 1.5",
        "cool --strength -1", "skin-mask --amount 1"})
    EXPECT_EQ(Run("filter " + line + " in.png -o none.png").code, 2) << line;
  EXPECT_THAT(Run("filter selective --help").out,
              AllOf(HasSubstr("magenta"), HasSubstr("=red"), HasSubstr("grey")));
  EXPECT_THAT(NamesIn("."), testing::ElementsAre("in.png"));
}

TEST_F(BlendTest, LaysTheScaledTopOverTheBase) {
  Uniform(20, 10, {100, 50, 200}).write_to_file("base.png");
  Uniform(7, 9, {150, 255, 0, 128}).write_to_file("top.png");
  for (const auto& [mode, colour] : {std::pair<std::string, Colour>{"Screen", {191, 255, 200}},
                                     {"linear-dodge", {250, 255, 200}},
                                     {"SoftLight", {111, 90, 157}},
                                     {"3", {59, 50, 0}},
                                     {"normal", {125, 153, 100}}}) {
    Expect(0, "blend " + mode + " base.png top.png -o out.png");
    const Decoded out = Decode("out.png");
    EXPECT_EQ(out.width, 20);
    EXPECT_EQ(out.At(13, 4), colour) << mode;
  }
  Expect(2, "blend scren base.png top.png -o out.png", {"scren", "did you mean 'screen'"});
  Expect(2, "blend dissolution base.png top.png -o out.png", {"vivid-light"});
  Expect(2, "blend screen base.png none.png -o out.png", {"none.png"});
}

}  // namespace
}  // namespace host_test

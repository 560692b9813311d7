// One picture: its pixels, its colours and its records.
#include <algorithm>
#include <cmath>
#include <sstream>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using vips::VImage;

class ApplyTest : public HostTest {};

void Save(const VImage& picture, const std::string& file, const char* profile = nullptr) {
  picture.write_to_file(file.c_str(),
                        profile ? VImage::option()->set("profile", profile) : nullptr);
}

// 16 bits a sample.
VImage Deep(const VImage& picture, VipsInterpretation model) {
  return (picture * 257.0)
      .cast(VIPS_FORMAT_USHORT)
      .copy(VImage::option()->set("interpretation", model));
}

TEST_F(ApplyTest, StrengthRunsFromTheInputToTheFullLook) {
  Save(Waves(101, 67), "in.png");
  const Decoded input = Decode("in.png"), full = LookOf(input);
  ASSERT_NE(input, full);
  for (const std::string strength : {"0", "30", "100"})
    Expect(0, "apply 80S in.png -o " + strength + ".png --strength " + strength);
  EXPECT_EQ(Decode("0.png"), input);
  EXPECT_EQ(Decode("100.png"), full);
  const Decoded part = Decode("30.png");
  for (std::size_t i = 0; i < input.bytes.size(); ++i)
    ASSERT_EQ(part.bytes[i], static_cast<int>(full.bytes[i] * 0.3 + input.bytes[i] * (1 - 0.3)));
}

TEST_F(ApplyTest, LooksAreFoundByNameAndTitleInAnyCase) {
  Save(Waves(20, 20), "in.png");
  const Decoded full = LookOf(Decode("in.png"));
  for (const std::string name : {"Effect_80S", "EFFECT_80s", "80s", "\"Eighties snapshot\"",
                                 "\"eighties SNAPSHOT\"", "eighties-snapshot"}) {
    Expect(0, "apply " + name + " in.png -o out.png");
    EXPECT_EQ(Decode("out.png"), full) << name;
    fs::remove("out.png");
  }
  Expect(2, "apply huiyu in.png -o none.png", {"huiyu", "did you mean 'Effect_HuiYi'"});
  Expect(2, "apply Effect_8S0 in.png -o none.png", {"'Effect_80S'"});
  Expect(2, "apply \"faded memroy\" in.png -o none.png", {"did you mean 'Faded memory'?"});
  EXPECT_THAT(Run("apply xyzzyplugh in.png -o none.png").err,
              AllOf(Not(HasSubstr("Effect_")), HasSubstr("tintwerk list")));
  EXPECT_FALSE(fs::exists("none.png"));
}

TEST_F(ApplyTest, LargeAndNestedLooksUseOneThreadOrAllAlike) {
  Save(Waves(640, 427), "in.png");
  for (const std::string look : {"80S", "HuiYi"}) {
    for (const std::string count : {"1", "5"})
      Expect(0, "apply " + look + " in.png -o " + count + ".png --threads " + count);
    EXPECT_EQ(Decode("1.png"), Decode("5.png")) << look;
    EXPECT_NE(Decode("1.png"), Decode("in.png")) << look;
  }
}

TEST_F(ApplyTest, APartIsDrawnAsOnTheWholePicture) {
  // On its side, so that the part counts from the corner of the upright picture, 127 pixels wide.
  WriteFile("in.jpg", SidewaysJpeg(Waves(181, 127)));
  Save(Waves(90, 64, 4), "alpha.png");
  struct Case {
    std::string picture, more;
    int x, y, width, height;
  };
  const Case cases[] = {{"in.jpg", "", 31, 40, 60, 77},
                        {"in.jpg", "", 0, 0, 127, 181},
                        {"in.jpg", " --strength 40", 126, 180, 1, 1},
                        {"in.jpg", " --threads 3", 0, 150, 127, 31},
                        {"alpha.png", " --strength 40", 7, 3, 80, 60}};
  for (const std::string look : {"GuDianSuMiaoEx", "XieShengSuMiaoEx"}) {
    for (const auto& [picture, more, x, y, width, height] : cases) {
      std::ostringstream area;
      area << x << ',' << y << ',' << width << ',' << height;
      const std::string line = look + " " + picture + more + " -o ";
      Expect(0, "apply " + line + "whole.png");
      Expect(0, "apply --crop " + area.str() + " " + line + "part.png");
      VImage::new_from_file("whole.png").crop(x, y, width, height).write_to_file("expected.png");
      EXPECT_EQ(Decode("part.png"), Decode("expected.png")) << look << ' ' << area.str();
    }
    // Elsewhere on the paper the same pixels come out otherwise.
    VImage::new_from_file("alpha.png").crop(7, 3, 80, 60).write_to_file("cut.png");
    Expect(0, "apply " + look + " cut.png -o cut.png --overwrite-input --strength 40");
    EXPECT_NE(Decode("cut.png"), Decode("part.png"));
  }
}

TEST_F(ApplyTest, PartsThatCannotBeAreRefused) {
  fs::create_directory("in");
  Save(Waves(40, 30), "in/large.png");
  Save(Waves(20, 30), "in/small.png");
  for (const std::string what : {"80s", "--cube in/large.png"})
    Expect(2, "apply " + what + " in/large.png -o out.png --crop 0,0,9,9",
           {"Effect_GuDianSuMiaoEx", "Effect_XieShengSuMiaoEx"});
  const std::string apply = "apply XieShengSuMiaoEx in/large.png -o out.png --crop ";
  for (const std::string area : {"1,2,3", "1,2,3,4,", "1;2;3;4", "1,2,0,4", "-1,2,3,4", "1,2,3,4.5",
                                 "1,2,3,x", "1,2,3,99999999999"})
    EXPECT_EQ(Run(apply + area).code, 2) << area;
  for (const std::string area : {"31,0,10,10", "0,30,1,1", "1,1,2147483647,1"})
    Expect(1, apply + area, {"in/large.png", "40 x 30"});
  EXPECT_THAT(NamesIn("."), ElementsAre("in"));

  // Of several pictures those are written that hold the part.
  Expect(1, "apply XieShengSuMiaoEx in -o out --crop 20,10,20,20", {"in/small.png", "20 x 30"});
  EXPECT_THAT(NamesIn("out"), ElementsAre("large.png"));
}

TEST_F(ApplyTest, EveryFormatGoesInAndOutWithItsAlpha) {
  fs::create_directory("in");
  for (const std::string format : {"jpg", "png", "webp", "tif", "JPEG"})
    Save(Waves(120, 80), "in/" + format + "." + format);
  fs::copy_file("in/png.png", "in/mislabelled.jpg");  // the content counts, not the name
  for (const std::string format : {"png", "tif"})
    Save(Waves(50, 40, 4), "in/alpha-" + format + "." + format);
  Expect(0, "apply 80S in -o out");
  EXPECT_EQ(NamesIn("out").size(), 8U);
  for (const std::string& name : NamesIn("out")) {
    const Decoded input = Decode("in/" + name), output = Decode("out/" + name);
    const bool lossless = name.ends_with("png") || name.ends_with("tif");
    EXPECT_EQ(output.bands, input.bands) << name;
    EXPECT_LT(MeanDifference(output, LookOf(input)), lossless ? 1e-9 : 3) << name;
  }
  // A format without alpha lays the picture on white.
  Save(Uniform(16, 16, {200, 0, 0, 0}), "clear.png");
  Expect(0, "apply 80S clear.png -o flat.jpg");
  EXPECT_EQ(Decode("flat.jpg").bands, 3);
  EXPECT_THAT(Decode("flat.jpg").bytes, Each(testing::Ge(254)));
}

TEST_F(ApplyTest, OtherDepthsModelsAndProfilesBecomeEightBitSrgb) {
  fs::create_directory("in");
  const VImage grey = Waves(30, 20, 1), waves = Waves(30, 20, 4);
  Save(grey.colourspace(VIPS_INTERPRETATION_B_W), "in/grey.png");
  Save(Deep(grey, VIPS_INTERPRETATION_GREY16), "in/grey16.png");
  Save(waves, "in/flat.png");
  Save(Deep(waves, VIPS_INTERPRETATION_RGB16), "in/deep.png");
  Save(Deep(waves, VIPS_INTERPRETATION_RGB16), "in/deep-p3.png", "p3");
  const std::vector<double> colour = {200, 120, 80};
  Save(Uniform(16, 16, colour), "in/plain.png");
  Save(Uniform(16, 16, colour), "in/p3.png", "p3");
  const VImage inks = Uniform(8, 8, {0, 0, 0, 0})
                          .join(Uniform(8, 8, {255, 255, 255, 255}), VIPS_DIRECTION_HORIZONTAL);
  Save(inks.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_CMYK)), "in/inks.tif");
  Expect(0, "apply 80S in -o out --strength 0 --allow-loss");

  const Decoded output = Decode("out/grey.png"), input = Decode("in/grey.png");
  EXPECT_EQ(output, Decode("out/grey16.png"));
  EXPECT_EQ(output.bands, 3);
  for (std::size_t i = 0; i < input.bytes.size(); ++i)
    ASSERT_EQ(output.bytes[3 * i + 1], input.bytes[i]);
  const Decoded flat = Decode("in/flat.png");
  EXPECT_EQ(Decode("out/deep.png"), flat);
  for (int x = 0; x < 30; ++x) EXPECT_EQ(Decode("out/deep-p3.png").At(x, 7)[3], flat.At(x, 7)[3]);
  // No ink is white, ink of all colours nearly black.
  EXPECT_THAT(Decode("out/inks.tif").At(2, 2), Each(testing::Ge(250)));
  EXPECT_THAT(Decode("out/inks.tif").At(13, 2), Each(testing::Le(40)));

  // Display P3 has the tone curve of sRGB and wider primaries.
  EXPECT_THAT(Decode("out/plain.png").At(8, 8), ElementsAre(200, 120, 80));
  constexpr double matrix[3][3] = {
      {1.22494, -0.22494, 0}, {-0.04206, 1.04206, 0}, {-0.01964, -0.07864, 1.09828}};
  const auto linear = [](double v) {
    return v / 255 <= 0.04045 ? v / 255 / 12.92 : std::pow((v / 255 + 0.055) / 1.055, 2.4);
  };
  const std::vector<int> converted = Decode("out/p3.png").At(8, 8);
  for (int row = 0; row < 3; ++row) {
    double light = 0;
    for (int column = 0; column < 3; ++column)
      light += matrix[row][column] * linear(colour[column]);
    EXPECT_NEAR(converted[row], 255 * (1.055 * std::pow(light, 1 / 2.4) - 0.055), 2.5);
  }
  // What is written does not call itself P3 any more: a second run changes nothing.
  Expect(0, "apply 80S out/p3.png -o again.png --strength 0");
  EXPECT_LT(MeanDifference(Decode("again.png"), Decode("out/p3.png")), 1.01);
}

TEST_F(ApplyTest, OrientationIsAppliedOnceAndTheThumbnailGoes) {
  // On its side the picture has red on top.
  const VImage halves = Uniform(32, 32, {220, 20, 20})
                            .join(Uniform(32, 32, {20, 20, 220}), VIPS_DIRECTION_HORIZONTAL);
  WriteFile("in.jpg", SidewaysJpeg(halves));
  ASSERT_THAT(ReadFile("in.jpg"), HasSubstr("STALE-THUMBNAIL"));
  Expect(0, "apply 80S in.jpg -o once.jpg --strength 0");
  Expect(0, "apply 80S once.jpg -o twice.jpg --strength 0");
  for (const char* name : {"once.jpg", "twice.jpg"}) {
    const Decoded upright = Decode(name);
    ASSERT_EQ(upright.width, 32);
    ASSERT_EQ(upright.height, 64);
    EXPECT_GT(upright.At(16, 8)[0], 200);
    EXPECT_GT(upright.At(16, 56)[2], 200);
    const VImage file = VImage::new_from_file(name);
    EXPECT_EQ(vips_image_get_orientation(file.get_image()), 1);
    EXPECT_THAT(file.get_string("exif-ifd0-Make"), HasSubstr("Testcam"));
    EXPECT_EQ(file.get_typeof("jpeg-thumbnail-data"), 0U);
    EXPECT_THAT(ReadFile(name), Not(HasSubstr("STALE-THUMBNAIL")));
  }
}

TEST_F(ApplyTest, ResolutionSurvives) {
  Save(Waves(40, 30).copy(VImage::option()->set("xres", 11.811)->set("yres", 11.811)), "in.jpg");
  for (const std::string output : {"out.jpg", "out.png", "out.tif"}) {
    Expect(0, "apply 80S in.jpg -o " + output);
    EXPECT_NEAR(VImage::new_from_file(output.c_str()).xres(), 11.811, 0.01) << output;
  }
}

TEST_F(ApplyTest, SupportFilesAreFoundOrNamed) {
  Save(Waves(20, 20), "in.png");
  fs::create_directories("bare/Effects");
  Expect(2, "apply 80s in.png -o out.png --resources nowhere", {"nowhere", "--resources"});
  Expect(1, "apply 80s in.png -o out.png --resources bare", {"Effect_80S", "in.png", "bare"});
  EXPECT_FALSE(fs::exists("out.png"));

  // Wherever the program lies, it looks beside its own folder.
  fs::create_directories("prefix/bin");
  fs::copy_file(TINTWERK_PROGRAM, "prefix/bin/tintwerk");
  const std::string moved = fs::absolute("prefix/bin/tintwerk"), apply = "apply 80s in.png -o ";
  Expect(2, apply + "out.png", {"prefix/share/tintwerk"}, moved);
  fs::create_directories("prefix/share");
  fs::create_directory_symlink(TINTWERK_RESOURCE_DIR, "prefix/share/tintwerk");
  Expect(0, apply + "moved.png", {}, moved);
  Expect(0, apply + "named.png --resources prefix/share/tintwerk");
  for (const char* output : {"moved.png", "named.png"})
    EXPECT_EQ(Decode(output), LookOf(Decode("in.png")));
}

}  // namespace
}  // namespace host_test

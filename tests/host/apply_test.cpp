// One picture: its pixels, its colours and its records.
#include <algorithm>
#include <cmath>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using vips::VImage;

class ApplyTest : public HostTest {
 protected:
  // Applies Effect_80S, at `strength` percent, and expects silence.
  void Apply(const std::string& input, const std::string& output,
             const std::string& strength = "100") {
    const Outcome outcome =
        Run({"apply", "80S", Path(input), "-o", Path(output), "--strength", strength});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
  }
};

TEST_F(ApplyTest, StrengthRunsFromTheInputToTheFullLook) {
  Waves(101, 67).write_to_file(Path("in.png").c_str());
  const Decoded input = Decode(Path("in.png"));
  const Decoded full = LookOf(input);
  ASSERT_NE(input, full);
  Apply("in.png", "0.png", "0");
  Apply("in.png", "100.png", "100");
  Apply("in.png", "30.png", "30");
  EXPECT_EQ(Decode(Path("0.png")), input);
  EXPECT_EQ(Decode(Path("100.png")), full);
  const Decoded part = Decode(Path("30.png"));
  for (std::size_t i = 0; i < input.bytes.size(); ++i)
    ASSERT_EQ(part.bytes[i], static_cast<int>(full.bytes[i] * 0.3 + input.bytes[i] * (1 - 0.3)));
}

TEST_F(ApplyTest, NamesAreFoundWithoutPrefixAndInAnyCase) {
  Waves(20, 20).write_to_file(Path("in.png").c_str());
  for (const char* name : {"Effect_80S", "effect_80s", "EFFECT_80S", "80S", "80s"})
    EXPECT_EQ(Run({"apply", name, Path("in.png"), "-o", Path("out.png")}).code, 0) << name;
  const Outcome misspelt = Run({"apply", "huiyu", Path("in.png"), "-o", Path("none.png")});
  EXPECT_EQ(misspelt.code, 2);
  EXPECT_THAT(misspelt.err, AllOf(HasSubstr("huiyu"), HasSubstr("did you mean Effect_HuiYi")));
  const Outcome swapped = Run({"apply", "Effect_8S0", Path("in.png"), "-o", Path("none.png")});
  EXPECT_THAT(swapped.err, HasSubstr("Effect_80S"));
  const Outcome strange = Run({"apply", "xyzzyplugh", Path("in.png"), "-o", Path("none.png")});
  EXPECT_THAT(strange.err, AllOf(Not(HasSubstr("Effect_")), HasSubstr("tintwerk list")));
  EXPECT_FALSE(fs::exists(Path("none.png")));
}

TEST_F(ApplyTest, EveryFormatGoesInAndOut) {
  const VImage waves = Waves(120, 80);
  for (const std::string format : {"jpg", "png", "webp", "tif", "JPEG"}) {
    waves.write_to_file(Path("in." + format).c_str());
    Apply("in." + format, "out." + format);
    const Decoded output = Decode(Path("out." + format));
    EXPECT_EQ(output.bands, 3);
    EXPECT_LT(MeanDifference(output, LookOf(Decode(Path("in." + format)))), 3) << format;
  }
  // The content counts, not the name.
  fs::copy_file(Path("in.png"), Path("mislabelled.jpg"));
  Apply("mislabelled.jpg", "out.png");
  EXPECT_EQ(Decode(Path("out.png")), LookOf(Decode(Path("in.png"))));
}

TEST_F(ApplyTest, LargeAndNestedLooksUseOneThreadOrAllAlike) {
  Waves(640, 427).write_to_file(Path("in.png").c_str());
  for (const char* look : {"80S", "HuiYi"}) {
    ASSERT_EQ(Run({"apply", look, Path("in.png"), "-o", Path("one.png"), "--threads", "1"}).code,
              0);
    ASSERT_EQ(Run({"apply", look, Path("in.png"), "-o", Path("five.png"), "--threads", "5"}).code,
              0);
    EXPECT_EQ(Decode(Path("one.png")), Decode(Path("five.png"))) << look;
    EXPECT_NE(Decode(Path("one.png")), Decode(Path("in.png"))) << look;
  }
}

TEST_F(ApplyTest, AlphaStaysWhereTheFormatHasIt) {
  Waves(50, 40, 4).write_to_file(Path("in.png").c_str());
  const Decoded input = Decode(Path("in.png"));
  ASSERT_EQ(input.bands, 4);
  for (const std::string format : {"png", "tif"}) {
    Apply("in.png", "out." + format);
    EXPECT_EQ(Decode(Path("out." + format)), LookOf(input)) << format;
  }
  Uniform(16, 16, {200, 0, 0, 0}).write_to_file(Path("clear.png").c_str());
  Apply("clear.png", "flat.jpg");
  const Decoded flat = Decode(Path("flat.jpg"));
  EXPECT_EQ(flat.bands, 3);
  EXPECT_THAT(flat.bytes, Each(testing::Ge(254)));
}

TEST_F(ApplyTest, OtherDepthsAndModelsBecomeEightBitSrgb) {
  const VImage grey = Waves(30, 20, 1);
  grey.colourspace(VIPS_INTERPRETATION_B_W).write_to_file(Path("grey.png").c_str());
  (grey * 257.0)
      .cast(VIPS_FORMAT_USHORT)
      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_GREY16))
      .write_to_file(Path("grey16.png").c_str());
  Apply("grey.png", "grey-out.png", "0");
  Apply("grey16.png", "grey16-out.png", "0");
  const Decoded output = Decode(Path("grey-out.png"));
  EXPECT_EQ(output, Decode(Path("grey16-out.png")));
  EXPECT_EQ(output.bands, 3);
  const Decoded input = Decode(Path("grey.png"));
  for (std::size_t i = 0; i < input.bytes.size(); ++i)
    ASSERT_EQ(output.bytes[3 * i + 1], input.bytes[i]);

  const VImage deep = (Waves(30, 20, 4) * 257.0)
                          .cast(VIPS_FORMAT_USHORT)
                          .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_RGB16));
  deep.write_to_file(Path("deep.png").c_str());
  deep.write_to_file(Path("deep-p3.png").c_str(), VImage::option()->set("profile", "p3"));
  Apply("deep.png", "deep-out.png", "0");
  Apply("deep-p3.png", "deep-p3-out.png", "0");
  Waves(30, 20, 4).write_to_file(Path("flat.png").c_str());
  const Decoded flat = Decode(Path("flat.png"));
  EXPECT_EQ(Decode(Path("deep-out.png")), flat);
  for (int x = 0; x < 30; ++x)
    EXPECT_EQ(Decode(Path("deep-p3-out.png")).At(x, 7)[3], flat.At(x, 7)[3]);

  // No ink is white, ink of all colours nearly black.
  const VImage inks = Uniform(8, 8, {0, 0, 0, 0})
                          .join(Uniform(8, 8, {255, 255, 255, 255}), VIPS_DIRECTION_HORIZONTAL);
  inks.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_CMYK))
      .write_to_file(Path("inks.tif").c_str());
  Apply("inks.tif", "inks.png", "0");
  EXPECT_THAT(Decode(Path("inks.png")).At(2, 2), Each(testing::Ge(250)));
  EXPECT_THAT(Decode(Path("inks.png")).At(13, 2), Each(testing::Le(40)));
}

TEST_F(ApplyTest, TheEmbeddedProfileIsConvertedToSrgb) {
  const std::vector<double> p3 = {200, 120, 80};
  Uniform(16, 16, p3).write_to_file(Path("p3.png").c_str(), VImage::option()->set("profile", "p3"));
  Uniform(16, 16, p3).write_to_file(Path("plain.png").c_str());
  Apply("p3.png", "out.png", "0");
  Apply("plain.png", "plain-out.png", "0");
  EXPECT_THAT(Decode(Path("plain-out.png")).At(8, 8), ElementsAre(200, 120, 80));

  // Display P3 has the tone curve of sRGB and wider primaries.
  constexpr double matrix[3][3] = {
      {1.22494, -0.22494, 0}, {-0.04206, 1.04206, 0}, {-0.01964, -0.07864, 1.09828}};
  const auto linear = [](double v) {
    return v / 255 <= 0.04045 ? v / 255 / 12.92 : std::pow((v / 255 + 0.055) / 1.055, 2.4);
  };
  const std::vector<int> colour = Decode(Path("out.png")).At(8, 8);
  for (int row = 0; row < 3; ++row) {
    double light = 0;
    for (int column = 0; column < 3; ++column) light += matrix[row][column] * linear(p3[column]);
    EXPECT_NEAR(colour[row], 255 * (1.055 * std::pow(light, 1 / 2.4) - 0.055), 2.5);
  }

  // What is written does not call itself P3 any more: a second run changes nothing.
  Apply("out.png", "again.png", "0");
  EXPECT_LT(MeanDifference(Decode(Path("again.png")), Decode(Path("out.png"))), 1.01);
}

TEST_F(ApplyTest, OrientationIsAppliedOnceAndTheThumbnailGoes) {
  // On its side the picture has red on top.
  const VImage halves = Uniform(32, 32, {220, 20, 20})
                            .join(Uniform(32, 32, {20, 20, 220}), VIPS_DIRECTION_HORIZONTAL);
  WriteFile(Path("in.jpg"), SidewaysJpeg(halves));
  ASSERT_THAT(ReadFile(Path("in.jpg")), HasSubstr("STALE-THUMBNAIL"));
  Apply("in.jpg", "once.jpg", "0");
  Apply("once.jpg", "twice.jpg", "0");
  for (const char* name : {"once.jpg", "twice.jpg"}) {
    const Decoded upright = Decode(Path(name));
    ASSERT_EQ(upright.width, 32);
    ASSERT_EQ(upright.height, 64);
    EXPECT_GT(upright.At(16, 8)[0], 200);
    EXPECT_GT(upright.At(16, 56)[2], 200);
    const VImage file = VImage::new_from_file(Path(name).c_str());
    EXPECT_EQ(vips_image_get_orientation(file.get_image()), 1);
    EXPECT_THAT(file.get_string("exif-ifd0-Make"), HasSubstr("Testcam"));
    EXPECT_EQ(file.get_typeof("jpeg-thumbnail-data"), 0U);
    EXPECT_THAT(ReadFile(Path(name)), Not(HasSubstr("STALE-THUMBNAIL")));
  }
}

TEST_F(ApplyTest, RecordsSurvive) {
  const std::string xmp =
      "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF><rdf:Description tiff:Orientation=\"6\" "
      "dc:title=\"Quince\">"
      "<tiff:Orientation>8</tiff:Orientation><xmp:Thumbnails>STALE-THUMBNAIL</xmp:Thumbnails>"
      "</rdf:Description></rdf:RDF></x:xmpmeta>";
  // A list of resources: a caption and, before it, a thumbnail of odd length.
  using namespace std::string_literals;
  const std::string iptc =
      "Photoshop 3.0\0"s
      "8BIM\x04\x0c\0\0\0\0\0\x0fSTALE-THUMBNAIL\0"s
      "8BIM\x04\x04\0\0\0\0\0\x06Quince"s;
  VImage image = Waves(40, 30).copy(VImage::option()->set("xres", 11.811)->set("yres", 11.811));
  const auto set = [&](const char* name, const std::string& bytes) {
    vips_image_set_blob_copy(image.get_image(), name, bytes.data(), bytes.size());
  };
  set(VIPS_META_XMP_NAME, xmp);
  set(VIPS_META_IPTC_NAME, iptc);
  image.write_to_file(Path("in.jpg").c_str());

  for (const std::string output : {"out.jpg", "out.webp", "out.png", "out.tif"}) {
    Apply("in.jpg", output);
    const VImage file = VImage::new_from_file(Path(output).c_str());
    std::size_t size = 0;
    const auto* data = static_cast<const char*>(file.get_blob(VIPS_META_XMP_NAME, &size));
    EXPECT_THAT(std::string(data, size),
                AllOf(HasSubstr("Quince"), HasSubstr("tiff:Orientation=\"1\""),
                      HasSubstr("<tiff:Orientation>1<"), Not(HasSubstr("STALE"))))
        << output;
  }
  const VImage jpeg = VImage::new_from_file(Path("out.jpg").c_str());
  EXPECT_NEAR(jpeg.xres(), 11.811, 0.01);
  std::size_t size = 0;
  const auto* data = static_cast<const char*>(jpeg.get_blob(VIPS_META_IPTC_NAME, &size));
  EXPECT_EQ(std::string(data, size),
            "Photoshop 3.0\0"s
            "8BIM\x04\x04\0\0\0\0\0\x06Quince"s);
}

TEST_F(ApplyTest, SupportFilesAreFoundOrNamed) {
  Waves(20, 20).write_to_file(Path("in.png").c_str());
  const Outcome missing =
      Run({"apply", "80s", Path("in.png"), "-o", Path("out.png"), "--resources", Path("nowhere")});
  EXPECT_EQ(missing.code, 2);
  EXPECT_THAT(missing.err, AllOf(HasSubstr(Path("nowhere")), HasSubstr("--resources")));

  fs::create_directories(Path("bare/Effects"));
  const Outcome bare =
      Run({"apply", "80s", Path("in.png"), "-o", Path("out.png"), "--resources", Path("bare")});
  EXPECT_EQ(bare.code, 1);
  EXPECT_THAT(bare.err,
              AllOf(HasSubstr("Effect_80S"), HasSubstr(Path("in.png")), HasSubstr(Path("bare"))));
  EXPECT_FALSE(fs::exists(Path("out.png")));

  EXPECT_EQ(Run({"apply", "80s", Path("in.png"), "-o", Path("out.png"), "--resources",
                 TINTWERK_RESOURCE_DIR})
                .code,
            0);

  // Wherever the program lies, it looks beside its own folder.
  fs::create_directories(Path("prefix/bin"));
  fs::copy_file(TINTWERK_PROGRAM, Path("prefix/bin/tintwerk"));
  const std::vector<std::string> arguments = {"apply", "80s", Path("in.png"), "-o",
                                              Path("moved.png")};
  const Outcome alone = Wait(Start(arguments, Path("prefix/bin/tintwerk")));
  EXPECT_EQ(alone.code, 2);
  EXPECT_THAT(alone.err, HasSubstr("prefix/share/tintwerk"));
  fs::create_directories(Path("prefix/share"));
  fs::create_directory_symlink(TINTWERK_RESOURCE_DIR, Path("prefix/share/tintwerk"));
  EXPECT_EQ(Wait(Start(arguments, Path("prefix/bin/tintwerk"))).code, 0);
  EXPECT_EQ(Decode(Path("moved.png")), LookOf(Decode(Path("in.png"))));
}

}  // namespace
}  // namespace host_test

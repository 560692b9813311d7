// Cubes of other tools in and out, and looks as cubes.
#include <cmath>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

// A cube of 3 nodes an axis that turns colours into their negative.
std::string Negative(const std::string& end = "\n") {
  std::string text = "TITLE \"Negative\"" + end + "# a note" + end + end + "LUT_3D_SIZE 3" + end +
                     "DOMAIN_MIN 0 0 0" + end + "DOMAIN_MAX 1.0 1.0 1.0" + end;
  for (int i = 0; i < 27; ++i) {
    for (const int node : {i % 3, i / 3 % 3, i / 9})
      text += " \t" + std::string(node == 0 ? "+1e0" : node == 1 ? "0.5" : "0");
    text += end;
  }
  return text;
}

std::string With(const std::string& from, const std::string& to) {
  std::string text = Negative();
  return text.replace(text.find(from), from.size(), to);
}

class CubeTest : public HostTest {
 protected:
  CubeTest() { Waves(80, 60).write_to_file("in.png"); }

  Decoded Apply(const std::string& cube) {
    Expect(0, "apply --cube " + cube + " in.png -o out.png");
    return Decode("out.png");
  }

  // The largest difference to the input's negative.
  static int FromNegative(const Decoded& output) {
    const Decoded input = Decode("in.png");
    int largest = 0;
    for (std::size_t i = 0; i < input.bytes.size(); ++i)
      largest = std::max(largest, std::abs(255 - input.bytes[i] - output.bytes[i]));
    return largest;
  }
};

TEST_F(CubeTest, FilesOfOtherToolsAreTaken) {
  for (const std::string& text :
       {"\xEF\xBB\xBF" + Negative("\r\n"), Negative("\r"),
        With("DOMAIN_MIN 0 0 0", "WRITTEN_BY somebody\nLUT_3D_INPUT_RANGE 0 1")}) {
    WriteFile("n.cube", text);
    EXPECT_EQ(FromNegative(Apply("n.cube")), 0) << text;
    EXPECT_EQ(FromNegative(Apply("n.cube --trilinear")), 0) << text;
  }
  // A domain of twice the range keeps what lies in it in the middle of the cube.
  WriteFile("wide.cube", With("1.0 1.0 1.0", "2.0 2.0 2.0"));
  const Decoded output = Apply("wide.cube"), input = Decode("in.png");
  for (std::size_t i = 0; i < input.bytes.size(); ++i)
    ASSERT_NEAR(output.bytes[i], 255 - input.bytes[i] / 2.0, 0.51);
}

// A cube of two nodes an axis whose channels are products of two others' inputs, so that the two
// interpolations differ: trilinear the product, tetrahedral the smaller one.
TEST_F(CubeTest, InterpolationIsTetrahedralUnlessToldOtherwise) {
  std::string text = "LUT_3D_SIZE 2\n";
  for (int i = 0; i < 8; ++i) {
    const int r = i & 1, g = i >> 1 & 1, b = i >> 2;
    text +=
        std::to_string(r * g) + " " + std::to_string(g * b) + " " + std::to_string(b * r) + "\n";
  }
  WriteFile("p.cube", text);
  const Decoded input = Decode("in.png"), few = Apply("p.cube"), all = Apply("p.cube --trilinear");
  for (std::size_t i = 0; i < input.bytes.size(); ++i) {
    const std::size_t next = i / 3 * 3 + (i + 1) % 3;
    ASSERT_EQ(few.bytes[i], std::min(input.bytes[i], input.bytes[next]));
    ASSERT_EQ(all.bytes[i], std::lround(input.bytes[i] * input.bytes[next] / 255.0));
  }
}

TEST_F(CubeTest, CurvesAndDeepPicturesKeepTheirPrecision) {
  // A curve alone, and one before a cube that turns it round again.
  const std::string curve = "0 0 0\n.25 .25 .25\n1 1 1\n";
  WriteFile("c.cube", "LUT_1D_SIZE 3\n" + curve);
  WriteFile(
      "both.cube",
      "LUT_1D_SIZE 3\n" + With("LUT_3D_SIZE 3", "LUT_3D_SIZE 3")
                              .insert(With("LUT_3D_SIZE 3", "LUT_3D_SIZE 3").find(" \t"), curve));
  const auto bent = [](double v) { return v < 0.5 ? v / 2 : 0.25 + (v - 0.5) * 1.5; };
  const Decoded input = Decode("in.png"), one = Apply("c.cube"), other = Apply("both.cube");
  for (std::size_t i = 0; i < input.bytes.size(); ++i) {
    ASSERT_NEAR(one.bytes[i], 255 * bent(input.bytes[i] / 255.0), 0.51);
    ASSERT_NEAR(other.bytes[i], 255 - 255 * bent(input.bytes[i] / 255.0), 0.51);
  }
  // 16 bits go in and come out, if the format has them.
  (Waves(80, 60) * 256.0 + 77.0)
      .cast(VIPS_FORMAT_USHORT)
      .copy(vips::VImage::option()->set("interpretation", VIPS_INTERPRETATION_RGB16))
      .write_to_file("deep.png");
  WriteFile("n.cube", Negative());
  Expect(0, "apply --cube n.cube deep.png -o negative.png");
  Expect(0, "apply --cube n.cube negative.png -o again.tif");
  const auto samples = [](const char* file) {
    std::size_t size = 0;
    const vips::VImage image = vips::VImage::new_from_file(file);
    EXPECT_EQ(image.format(), VIPS_FORMAT_USHORT) << file;
    const auto* bytes = static_cast<const char*>(image.write_to_memory(&size));
    return std::string(bytes, size);
  };
  EXPECT_EQ(samples("again.tif"), samples("deep.png"));
  Expect(0, "apply --cube n.cube deep.png -o shallow.jpg", {"8 of the 16 bits"});
}

TEST_F(CubeTest, DamageIsNamed) {
  const std::string good = Negative();
  const std::pair<std::string, const char*> damaged[] = {
      {"", "LUT_3D_SIZE"},
      {good.substr(0, good.size() - 20), "25 rows of 27"},
      {good + "0 0 0\n", "more rows"},
      {With("SIZE 3", "SIZE 1"), "line 4"},
      {With("SIZE 3", "SIZE 4"), "27 rows of 64"},
      {With("SIZE 3", "SIZE 3.5"), "line 4"},
      {With("SIZE 3", "SIZE 99999999999"), "line 4"},
      {With("SIZE 3", "SIZE nan"), "not finite"},
      {With("LUT_3D_SIZE 3", "LUT_1D_SIZE 3"), "more rows"},
      {good + "LUT_1D_SIZE 3\n", "a size after"},
      {With("0.5", "inf"), "not finite"},
      {With("0.5", "1e39"), "not finite"},
      {With("MAX 1.0", "MAX 3e38"), "too large"},
      {With("0.5", "+-1"), "line 8"},
      {With("0.5", "0,5"), "line 8"},
      {With("DOMAIN_MAX 1.0", "DOMAIN_MAX 0"), "input range"},
      {std::string("\0\1\2\3", 4), "neither text"},
  };
  for (const auto& [text, reason] : damaged) {
    WriteFile("bad.cube", text);
    Expect(1, "cube pack bad.cube -o out", {"bad.cube", reason});
    EXPECT_FALSE(fs::exists("out"));
  }
  EXPECT_THAT(Run("apply --cube in.png in.png -o out").err, testing::HasSubstr("HaldCLUT"));
  WriteFile("good.cube", good);
  Expect(2, "cube pack good.cube -o good.cube", {"is an input"});
  EXPECT_EQ(ReadFile("good.cube"), good);
  EXPECT_EQ(Run("apply --cube none.cube in.png -o x.png").code, 2);
}

TEST_F(CubeTest, LooksLeaveAsCubesAndComeBack) {
  for (const std::string file : {"80s.cube", "80s.png"}) {
    Expect(0, "cube export 80s -o " + file);
    EXPECT_LT(MeanDifference(Apply(file), LookOf(Decode("in.png"))), 1.0) << file;
  }
  EXPECT_EQ(Decode("80s.png").width, 512);
  Expect(0, "cube export FanSe -o n.cube --size 2");
  EXPECT_EQ(ReadFile("n.cube"),
            "TITLE \"Effect_FanSe\"\nLUT_3D_SIZE 2\n"
            "1.000000 1.000000 1.000000\n0.000000 1.000000 1.000000\n"
            "1.000000 0.000000 1.000000\n0.000000 0.000000 1.000000\n"
            "1.000000 1.000000 0.000000\n0.000000 1.000000 0.000000\n"
            "1.000000 0.000000 0.000000\n0.000000 0.000000 0.000000\n");
  // Looks that see more than the pixel are refused.
  for (const auto& [look, reason] : {std::pair<std::string, const char*>{"HuiYi", "where it lies"},
                                     {"RouHe", "neighbours"},
                                     {"ZaoDian", "run to run"},
                                     {"QuanCai", "other colours"},
                                     {"QuWu", "other colours"}})
    Expect(1, "cube export " + look + " -o out.cube", {look, reason});
  Expect(1, "cube export paper -o out.cube", {"paper", "--tolerance allows 16"});
  EXPECT_EQ(Run("cube export 80s -o out.jpg").code, 2);
  EXPECT_EQ(Run("cube export 79s -o out.cube").code, 2);
  EXPECT_FALSE(fs::exists("out.cube"));
}

TEST_F(CubeTest, ContainersOfEveryLayoutServeTheirLooks) {
  WriteFile("n.cube", Negative());
  fs::create_directories("tree/Effects/style");
  // The last cell of 4x4, in which white is put right, is 16 values wide.
  for (const auto& [layout, file, look, most] :
       {std::tuple<std::string, std::string, std::string, int>{"4x4", "style/a2", "VSCO_A2", 16},
        {"new", "171", "ChenGuang", 4},
        {"8x8", "style/pomelo3", "QingLiang", 4}}) {
    Expect(0, "cube pack n.cube -o tree/Effects/" + file + " --layout " + layout);
    Expect(0, "apply " + look + " in.png -o out.png --resources tree");
    EXPECT_LE(FromNegative(Decode("out.png")), most) << look;
  }
}

TEST_F(CubeTest, ATreeThatMayNotBeWrittenIsCopiedForTheUser) {
  // The program beside a tree of its own, whose one table may not be written.
  const fs::path effects = "app/share/tintwerk/Effects", copy = "data/tintwerk/Effects";
  const std::string table = "zvkr_studio_2.eb";
  fs::create_directories("app/bin");
  fs::create_directories(effects / "style");
  fs::copy_file(TINTWERK_PROGRAM, "app/bin/tintwerk");
  WriteFile(effects / "style/deep", "y");
  const auto apply = [&](int code, const std::string& more, const std::vector<std::string>& told) {
    Expect(code, "apply LengLan in.png -o out.png" + more, told, fs::absolute("app/bin/tintwerk"));
  };
  setenv("XDG_DATA_HOME", fs::absolute("data").c_str(), 1);
  // It follows the tree.
  for (const char content : {'x', 'x', 'z'}) {
    if (fs::exists(effects / table)) fs::permissions(effects / table, fs::perms::owner_all);
    WriteFile(effects / table, std::string(196618, content));
    fs::permissions(effects / table, fs::perms::owner_read);
    apply(0, "", {});
    EXPECT_EQ(ReadFile(copy / table), ReadFile(effects / table));
  }
  EXPECT_EQ(ReadFile(copy / "style/deep"), "y");
  EXPECT_THAT(NamesIn(copy), testing::ElementsAre("style", table));

  // With a list of what looks need, only that is copied, what is damaged is mended, and what is
  // missing is named.
  WriteFile("app/share/tintwerk/looks.tsv",
            "Effect_LengLan\t" + table + "\nEffect_80S\tnone.png\n");
  for (const std::string& damage : {std::string(), std::string("half"), std::string(196618, '?')}) {
    WriteFile(copy / table, damage);
    fs::remove(copy / "style/deep");
    apply(0, "", {});
    EXPECT_EQ(ReadFile(copy / table), ReadFile(effects / table));
    EXPECT_FALSE(fs::exists(copy / "style/deep"));
  }
  Expect(2, "apply 80S in.png -o out.png", {"Effects/none.png", "no such file"},
         fs::absolute("app/bin/tintwerk"));

  // A tree that is named is taken as it is, and so is the other without a place for a copy.
  apply(1, " --resources app/share/tintwerk", {"may not be written"});
  setenv("XDG_DATA_HOME", "/proc/none", 1);
  apply(1, "", {"may not be written"});
  unsetenv("XDG_DATA_HOME");
}

}  // namespace
}  // namespace host_test

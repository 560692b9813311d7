// Cubes of other tools in and out, and looks as cubes.
#include <cmath>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

// A cube of 3 nodes an axis that turns colours into their negative.
std::string Negative(const std::string& end = "\n") {
  std::string text = "TITLE \"Negative\"" + end + "# a note" + end + end + "LUT_3D_SIZE 3" + end +
                     "DOMAIN_MIN 0 0 0" + end + "DOMAIN_MAX 1.0 1.0 1.0" + end;
  for (int b = 0; b < 3; ++b)
    for (int g = 0; g < 3; ++g)
      for (int r = 0; r < 3; ++r) {
        for (const int node : {r, g, b})
          text += " \t" + std::string(node == 0 ? "+1e0" : node == 1 ? "0.5" : "0");
        text += end;
      }
  return text;
}

class CubeTest : public HostTest {
 protected:
  CubeTest() { Waves(80, 60).write_to_file(Path("in.png").c_str()); }

  Decoded Apply(const std::string& cube) {
    const Outcome outcome =
        Run({"apply", "--cube", Path(cube), Path("in.png"), "-o", Path("out.png")});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return Decode(Path("out.png"));
  }

  // The largest difference to the input's negative.
  int FromNegative(const Decoded& output) {
    const Decoded input = Decode(Path("in.png"));
    int largest = 0;
    for (std::size_t i = 0; i < input.bytes.size(); ++i)
      largest = std::max(largest, std::abs(255 - input.bytes[i] - output.bytes[i]));
    return largest;
  }
};

TEST_F(CubeTest, FilesOfOtherToolsAreTaken) {
  WriteFile(Path("unix.cube"), Negative());
  WriteFile(Path("dos.cube"), "\xEF\xBB\xBF" + Negative("\r\n"));
  WriteFile(Path("mac.cube"), Negative("\r"));
  std::string ranged = Negative();
  ranged.replace(ranged.find("DOMAIN_MIN 0 0 0"), 16,
                 "WRITTEN_BY somebody\nLUT_3D_INPUT_RANGE 0 1");
  WriteFile(Path("ranged.cube"), ranged);
  // Truncation, and the last cell in which white is put right.
  for (const char* name : {"unix.cube", "dos.cube", "mac.cube", "ranged.cube"})
    EXPECT_LE(FromNegative(Apply(name)), 4) << name;

  // A domain of twice the range keeps what lies in it in the middle of the cube.
  std::string wide = Negative();
  wide.replace(wide.find("1.0 1.0 1.0"), 11, "2.0 2.0 2.0");
  WriteFile(Path("wide.cube"), wide);
  const Decoded output = Apply("wide.cube");
  const Decoded input = Decode(Path("in.png"));
  for (std::size_t i = 0; i < input.bytes.size(); ++i)
    ASSERT_NEAR(output.bytes[i], 255 - input.bytes[i] / 2, 4);
}

TEST_F(CubeTest, DamageIsNamed) {
  const std::string good = Negative();
  const auto with = [&](const std::string& from, const std::string& to) {
    std::string text = good;
    return text.replace(text.find(from), from.size(), to);
  };
  const std::pair<std::string, const char*> damaged[] = {
      {"", "LUT_3D_SIZE"},
      {good.substr(0, good.size() - 20), "25 rows of 27"},
      {good + "0 0 0\n", "more rows"},
      {with("LUT_3D_SIZE 3", "LUT_3D_SIZE 1"), "line 4"},
      {with("LUT_3D_SIZE 3", "LUT_3D_SIZE 4"), "27 rows of 64"},
      {with("LUT_3D_SIZE 3", "LUT_3D_SIZE 3.5"), "line 4"},
      {with("LUT_3D_SIZE 3", "LUT_3D_SIZE 99999999999"), "line 4"},
      {with("LUT_3D_SIZE 3", "LUT_3D_SIZE nan"), "not finite"},
      {with("LUT_3D_SIZE 3", "LUT_1D_SIZE 3"), "1-D"},
      {with("0.5", "nan"), "not finite"},
      {with("0.5", "inf"), "not finite"},
      {with("0.5", "0,5"), "line 8"},
      {with("DOMAIN_MAX 1.0", "DOMAIN_MAX 0"), "DOMAIN_MIN"},
      {std::string("\0\1\2\3", 4), "neither text"},
  };
  for (const auto& [text, reason] : damaged) {
    WriteFile(Path("bad.cube"), text);
    const Outcome outcome = Run({"cube", "pack", Path("bad.cube"), "-o", Path("out")});
    EXPECT_EQ(outcome.code, 1) << reason;
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("bad.cube"), HasSubstr(reason)));
    EXPECT_FALSE(fs::exists(Path("out")));
  }
  const Outcome picture =
      Run({"apply", "--cube", Path("in.png"), Path("in.png"), "-o", Path("out")});
  EXPECT_THAT(picture.err, HasSubstr("HaldCLUT"));
  EXPECT_EQ(Run({"apply", "--cube", Path("none.cube"), Path("in.png"), "-o", Path("x.png")}).code,
            1);
}

TEST_F(CubeTest, LooksLeaveAsCubesAndComeBack) {
  for (const char* file : {"80s.cube", "80s.png"}) {
    const Outcome outcome = Run({"cube", "export", "80s", "-o", Path(file)});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_LT(MeanDifference(Apply(file), LookOf(Decode(Path("in.png")))), 1.0) << file;
  }
  EXPECT_EQ(Decode(Path("80s.png")).width, 512);
  ASSERT_EQ(Run({"cube", "export", "FanSe", "-o", Path("n.cube"), "--size", "2"}).code, 0);
  EXPECT_EQ(ReadFile(Path("n.cube")),
            "TITLE \"Effect_FanSe\"\nLUT_3D_SIZE 2\n"
            "1.000000 1.000000 1.000000\n0.000000 1.000000 1.000000\n"
            "1.000000 0.000000 1.000000\n0.000000 0.000000 1.000000\n"
            "1.000000 1.000000 0.000000\n0.000000 1.000000 0.000000\n"
            "1.000000 0.000000 0.000000\n0.000000 0.000000 0.000000\n");
}

TEST_F(CubeTest, LooksThatSeeMoreThanThePixelAreRefused) {
  for (const auto& [look, reason] : {std::pair{"HuiYi", "where it lies"},
                                     {"RouHe", "neighbours"},
                                     {"ZaoDian", "run to run"},
                                     {"QuWu", "other colours"}}) {
    const Outcome outcome = Run({"cube", "export", look, "-o", Path("out.cube")});
    EXPECT_EQ(outcome.code, 1) << look;
    EXPECT_THAT(outcome.err, AllOf(HasSubstr(look), HasSubstr(reason)));
  }
  EXPECT_EQ(Run({"cube", "export", "80s", "-o", Path("out.jpg")}).code, 2);
  EXPECT_EQ(Run({"cube", "export", "79s", "-o", Path("out.cube")}).code, 2);
  EXPECT_FALSE(fs::exists(Path("out.cube")));
}

// Files that look A2 reads: every layout serves its entry.
TEST_F(CubeTest, ContainersOfEveryLayoutServeTheirLooks) {
  WriteFile(Path("n.cube"), Negative());
  for (const auto& [layout, file, look] : {std::tuple{"4x4", "style/a2", "VSCO_A2"},
                                           {"new", "171", "ChenGuang"},
                                           {"8x8", "style/pomelo3", "QingLiang"}}) {
    const std::string container = Path("tree/Effects/" + std::string(file));
    fs::create_directories(fs::path(container).parent_path());
    ASSERT_EQ(Run({"cube", "pack", Path("n.cube"), "-o", container, "--layout", layout}).code, 0);
    ASSERT_EQ(
        Run({"apply", look, Path("in.png"), "-o", Path("out.png"), "--resources", Path("tree")})
            .code,
        0);
    // The last cell of 4x4, in which white is put right, is 16 values wide.
    EXPECT_LE(FromNegative(Decode(Path("out.png"))), std::string(layout) == "4x4" ? 16 : 4) << look;
  }
}

TEST_F(CubeTest, ATreeThatMayNotBeWrittenIsCopiedForTheUser) {
  // The program beside a tree of its own, whose one table may not be written.
  const fs::path app = Path("app"), effects = app / "share/tintwerk/Effects";
  const std::string table = "zvkr_studio_2.eb";
  fs::create_directories(app / "bin");
  fs::create_directories(effects / "style");
  fs::copy_file(TINTWERK_PROGRAM, app / "bin/tintwerk");
  WriteFile(effects / table, std::string(196618, 'x'));
  WriteFile(effects / "style/deep", "y");
  fs::permissions(effects / table, fs::perms::owner_read);
  const auto apply = [&](std::vector<std::string> more) {
    more.insert(more.begin(), {"apply", "LengLan", Path("in.png"), "-o", Path("out.png")});
    return Wait(Start(more, (app / "bin/tintwerk").string()));
  };

  setenv("XDG_DATA_HOME", Path("data").c_str(), 1);
  const fs::path copy = fs::path(Path("data")) / "tintwerk/Effects";
  for (int run = 0; run < 2; ++run) EXPECT_EQ(apply({}).code, 0);
  EXPECT_EQ(ReadFile(copy / table), ReadFile(effects / table));
  EXPECT_EQ(ReadFile(copy / "style/deep"), "y");
  // It follows the tree.
  fs::permissions(effects / table, fs::perms::owner_all);
  WriteFile(effects / table, std::string(196618, 'z'));
  fs::permissions(effects / table, fs::perms::owner_read);
  EXPECT_EQ(apply({}).code, 0);
  EXPECT_EQ(ReadFile(copy / table), ReadFile(effects / table));
  EXPECT_THAT(NamesIn(copy), testing::ElementsAre("style", table));

  // A tree that is named is taken as it is.
  const Outcome named = apply({"--resources", (app / "share/tintwerk").string()});
  EXPECT_EQ(named.code, 1);
  EXPECT_THAT(named.err, HasSubstr("may be written"));
  // And so is the other where there is no place for a copy.
  setenv("XDG_DATA_HOME", "/proc/none", 1);
  EXPECT_THAT(apply({}).err, HasSubstr("may be written"));
  unsetenv("XDG_DATA_HOME");
}

}  // namespace
}  // namespace host_test

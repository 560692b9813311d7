// tintwerk filter.
#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class FilterTest : public HostTest {};

TEST_F(FilterTest, WorksAPictureWithTheOptionsOfTheOperation) {
  Uniform(12, 10, {10, 100, 200}).write_to_file(Path("in.png").c_str());
  ASSERT_EQ(
      Run({"filter", "brightness", "--amount", "200", Path("in.png"), "-o", Path("out.png")}).code,
      0);
  EXPECT_EQ(Decode(Path("out.png")).At(5, 5), (std::vector<int>{132, 177, 227}));
  ASSERT_EQ(Run({"filter", "blur", Path("in.png"), "-o", Path("out.png")}).code, 0);
  EXPECT_EQ(Decode(Path("out.png")).At(0, 9), (std::vector<int>{10, 100, 200}));
}

TEST_F(FilterTest, EveryOperationWritesAPicture) {
  Waves(40, 30).write_to_file(Path("in.png").c_str());
  const Outcome help = Run({"filter", "--help"});
  EXPECT_THAT(help.out, AllOf(HasSubstr("gaussian"), HasSubstr("whirl")));
  for (const char* name : {"gaussian",    "high-pass",     "sharpen",       "light",  "exposure",
                           "saturation",  "hue",           "balance",       "gamma",  "posterize",
                           "auto-levels", "auto-contrast", "white-balance", "mosaic", "emboss",
                           "halftone",    "ripple",        "whirl",         "noise",  "dehaze"}) {
    EXPECT_EQ(Run({"filter", name, Path("in.png"), "-o", Path(std::string(name) + ".png")}).code, 0)
        << name;
    EXPECT_EQ(Decode(Path(std::string(name) + ".png")).width, 40) << name;
  }
}

TEST_F(FilterTest, RefusesWhatIsOutOfRangeAndTheInputItself) {
  Uniform(4, 4, {1, 2, 3}).write_to_file(Path("in.png").c_str());
  EXPECT_EQ(Run({"filter", "blur", "--radius", "-1", Path("in.png"), "-o", Path("out.png")}).code,
            2);
  EXPECT_EQ(Run({"filter", "sepia", Path("in.png"), "-o", Path("out.png")}).code, 2);
  EXPECT_EQ(Run({"filter", "blur", Path("in.png"), "-o", Path("in.png")}).code, 2);
  EXPECT_EQ(Run({"filter", "blur", Path("none.png"), "-o", Path("out.png")}).code, 1);
}

}  // namespace
}  // namespace host_test

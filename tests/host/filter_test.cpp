// tintwerk filter and tintwerk blend.
#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using Colour = std::vector<int>;

class FilterTest : public HostTest {};
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
  EXPECT_EQ(Run("filter blur none.png -o none.png").code, 1);
}

TEST_F(FilterTest, EveryOperationWritesAPicture) {
  Waves(40, 30).write_to_file("in.png");
  EXPECT_THAT(Run("filter --help").out, testing::HasSubstr("gaussian"));
  for (const std::string name :
       {"gaussian",    "high-pass",     "sharpen",       "light",  "exposure",
        "saturation",  "hue",           "balance",       "gamma",  "posterize",
        "auto-levels", "auto-contrast", "white-balance", "mosaic", "emboss",
        "halftone",    "ripple",        "whirl",         "noise",  "dehaze"}) {
    Expect(0, "filter " + name + " in.png -o " + name + ".png");
    EXPECT_EQ(Decode(name + ".png").width, 40) << name;
  }
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
  Expect(2, "blend scren base.png top.png -o out.png", {"scren", "vivid-light"});
  Expect(1, "blend screen base.png none.png -o out.png", {"none.png"});
}

}  // namespace
}  // namespace host_test

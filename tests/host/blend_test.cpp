// tintwerk blend.
#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class BlendTest : public HostTest {
 protected:
  BlendTest() {
    Uniform(20, 10, {100, 50, 200}).write_to_file(Path("base.png").c_str());
    Uniform(7, 9, {150, 255, 0, 128}).write_to_file(Path("top.png").c_str());
  }

  Outcome Blend(const std::string& mode) {
    return Run({"blend", mode, Path("base.png"), Path("top.png"), "-o", Path("out.png")});
  }
};

TEST_F(BlendTest, LaysTheScaledTopOverTheBase) {
  using Colour = std::vector<int>;
  for (const auto& [mode, colour] : {std::pair{"Screen", Colour{191, 255, 200}},
                                     {"linear-dodge", Colour{250, 255, 200}},
                                     {"SoftLight", Colour{111, 90, 157}},
                                     {"3", Colour{59, 50, 0}},
                                     {"normal", Colour{125, 153, 100}}}) {
    ASSERT_EQ(Blend(mode).code, 0) << mode;
    const Decoded out = Decode(Path("out.png"));
    EXPECT_EQ(out.width, 20);
    EXPECT_EQ(out.bands, 3);
    EXPECT_EQ(out.At(13, 4), colour) << mode;
  }
}

TEST_F(BlendTest, RefusesUnknownModesAndNamesWhatIsMissing) {
  const Outcome unknown = Blend("scren");
  EXPECT_EQ(unknown.code, 2);
  EXPECT_THAT(unknown.err, AllOf(HasSubstr("scren"), HasSubstr("vivid-light")));
  const Outcome missing =
      Run({"blend", "screen", Path("base.png"), Path("none.png"), "-o", Path("out.png")});
  EXPECT_EQ(missing.code, 1);
  EXPECT_THAT(missing.err, HasSubstr("none.png"));
}

}  // namespace
}  // namespace host_test

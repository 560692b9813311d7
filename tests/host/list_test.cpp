// The subcommands that need no pictures, and how the program takes what is typed.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class ListTest : public HostTest {};
class SceneTest : public HostTest {};

TEST_F(ListTest, JsonAndTextHoldEveryLook) {
  const Outcome json = Run({"list", "--json"});
  const Outcome text = Run({"list"});
  EXPECT_EQ(json.code, 0);
  EXPECT_EQ(text.code, 0);
  std::set<std::string> names;
  for (const auto& look : nlohmann::json::parse(json.out)) {
    const std::string name = look.at("name");
    EXPECT_TRUE(names.insert(name).second) << name;
    EXPECT_THAT(text.out, AllOf(HasSubstr(name), HasSubstr(look.at("family")),
                                HasSubstr(look.at("description"))));
  }
  EXPECT_THAT(names, testing::IsSupersetOf({"Effect_80S", "Effect_HuiYi"}));
  EXPECT_EQ(std::ranges::count(text.out, '\n'), static_cast<long>(names.size()));
}

TEST_F(ListTest, NonsenseIsRefused) {
  EXPECT_EQ(Run({}).code, 2);
  EXPECT_EQ(Run({"lsit"}).code, 2);
  EXPECT_EQ(Run({"apply", "80s"}).code, 2);
  EXPECT_EQ(Run({"apply", "80s", "a.png", "-o", "b.png", "--strength", "101"}).code, 2);
  EXPECT_EQ(Run({"--help"}).code, 0);
  EXPECT_THAT(Run({"--version"}).out, HasSubstr("tintwerk "));
}

TEST_F(SceneTest, HasTheRangeThatLooksNeed) {
  ASSERT_EQ(Run({"scene", "-o", Path("a.png"), "--width", "300", "--height", "200"}).code, 0);
  ASSERT_EQ(Run({"scene", "-o", Path("b.png"), "--width", "300", "--height", "200"}).code, 0);
  EXPECT_EQ(ReadFile(Path("a.png")), ReadFile(Path("b.png")));
  const Decoded scene = Decode(Path("a.png"));
  ASSERT_EQ(scene.width, 300);
  ASSERT_EQ(scene.height, 200);
  ASSERT_EQ(scene.bands, 3);
  int dark = 0, bright = 0, grey = 0, saturated = 0;
  for (int y = 0; y < 200; ++y)
    for (int x = 0; x < 300; ++x) {
      const std::vector<int> colour = scene.At(x, y);
      const auto [low, high] = std::ranges::minmax(colour);
      dark += high < 30;
      bright += low > 215;
      grey += high - low < 12 && high > 40 && high < 200;
      saturated += high > 150 && low < 40;
    }
  for (const int count : {dark, bright, grey, saturated}) EXPECT_GT(count, 60000 / 200);
}

TEST_F(SceneTest, RefusesWhatItCannotWrite) {
  const Outcome format = Run({"scene", "-o", Path("scene.txt")});
  EXPECT_EQ(format.code, 2);
  EXPECT_THAT(format.err, AllOf(HasSubstr("scene.txt"), HasSubstr(".png")));
  const Outcome folder =
      Run({"scene", "-o", Path("none/scene.png"), "--width", "9", "--height", "6"});
  EXPECT_EQ(folder.code, 1);
  EXPECT_THAT(folder.err, HasSubstr(Path("none/scene.png")));
}

}  // namespace
}  // namespace host_test

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
  const std::string text = Run("list").out;
  std::set<std::string> names;
  for (const auto& look : nlohmann::json::parse(Run("list --json").out)) {
    const std::string name = look.at("name");
    EXPECT_TRUE(names.insert(name).second) << name;
    EXPECT_THAT(text, AllOf(HasSubstr(name), HasSubstr(look.at("family")),
                            HasSubstr(look.at("description"))));
  }
  EXPECT_THAT(names, testing::IsSupersetOf({"Effect_80S", "Effect_HuiYi"}));
  EXPECT_EQ(std::ranges::count(text, '\n'), static_cast<long>(names.size()));
}

TEST_F(ListTest, NonsenseIsRefused) {
  for (const char* line : {"", "lsit", "apply 80s", "apply 80s a.png -o b.png --strength 101"})
    EXPECT_EQ(Run(line).code, 2) << line;
  EXPECT_EQ(Run("--help").code, 0);
  EXPECT_THAT(Run("--version").out, HasSubstr("tintwerk "));
}

TEST_F(SceneTest, HasTheRangeThatLooksNeed) {
  Expect(0, "scene -o a.png --width 300 --height 200");
  Expect(0, "scene -o b.png --width 300 --height 200");
  EXPECT_EQ(ReadFile("a.png"), ReadFile("b.png"));
  const Decoded scene = Decode("a.png");
  ASSERT_EQ(scene.bytes.size(), 3U * 300 * 200);
  int dark = 0, bright = 0, grey = 0, saturated = 0;
  for (int i = 0; i < 300 * 200; ++i) {
    const std::vector<int> colour = scene.At(i % 300, i / 300);
    const auto [low, high] = std::ranges::minmax(colour);
    dark += high < 30;
    bright += low > 215;
    grey += high - low < 12 && high > 40 && high < 200;
    saturated += high > 150 && low < 40;
  }
  for (const int count : {dark, bright, grey, saturated}) EXPECT_GT(count, 300 * 200 / 200);

  Expect(2, "scene -o scene.txt", {"scene.txt", ".png"});
  Expect(1, "scene -o none/scene.png --width 9 --height 6", {"none/scene.png"});
}

}  // namespace
}  // namespace host_test

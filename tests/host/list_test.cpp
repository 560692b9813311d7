// The subcommands that need no pictures, and how the program takes what is typed.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class ListTest : public HostTest {};
class SceneTest : public HostTest {};

using Json = nlohmann::json;

TEST_F(ListTest, JsonAndTextHoldEveryLookByCategory) {
  const Json looks = Json::parse(Run("list --json").out);
  std::istringstream text(Run("list").out);
  std::string line, category;
  std::set<std::string> names, categories;
  for (const Json& look : looks) {
    EXPECT_TRUE(names.insert(look.at("name")).second) << look;
    if (look.at("category") != category) {
      category = look.at("category");
      EXPECT_TRUE(categories.insert(category).second) << "stands in two places: " << category;
      if (categories.size() > 1) std::getline(text, line);
      std::getline(text, line);
      EXPECT_THAT(line, testing::Not(testing::StartsWith(" ")));
    }
    std::getline(text, line);
    EXPECT_THAT(line, AllOf(HasSubstr(look.at("name")), HasSubstr(look.at("title")),
                            HasSubstr(look.at("description"))));
  }
  EXPECT_FALSE(std::getline(text, line)) << line;
  EXPECT_THAT(names, testing::IsSupersetOf({"Effect_80S", "Effect_HuiYi"}));
}

TEST_F(ListTest, OneCategoryByIdOrTitle) {
  Json expected = Json::array();
  for (const Json& look : Json::parse(Run("list --json").out))
    if (look.at("category") == "BlackAndWhite") expected.push_back(look);
  ASSERT_FALSE(expected.empty());
  for (const std::string category : {"BlackAndWhite", "blackandwhite", "\"black AND white\""})
    EXPECT_EQ(Json::parse(Run("list --json --category " + category).out), expected) << category;
  const std::string text = Run("list --category black-and-white").out;
  EXPECT_THAT(text, testing::StartsWith("Black and white\n"));
  EXPECT_EQ(std::ranges::count(text, '\n'), static_cast<long>(expected.size()) + 1);
  Expect(2, "list --category sepia", {"'sepia'", "Film", "BlackAndWhite", "Basic"});
}

TEST_F(ListTest, NonsenseIsRefused) {
  for (const auto& [line, told] : {std::pair<std::string, std::string>{"lsit", "'list'"},
                                   {"filter blurr a.png", "'blur'"},
                                   {"cube pakc a.png", "'pack'"},
                                   {"apply 80s", "INPUT"},
                                   {"apply 80s a.png -o b.png --strength 101", "--strength"},
                                   {"apply 80s a.png -o b.png --strength nan", "--strength"},
                                   {"filter blur a.png -o b.png --radius 12.7", "whole"},
                                   {"filter gamma a.png -o b.png --gamma nan", "--gamma"},
                                   {"apply 80s none.png -o b.png", "no such file"}})
    Expect(2, line, {told});
  for (const std::string line : {"", "help", "--help", "-h"})
    EXPECT_THAT(Run(line).out, HasSubstr("Usage: tintwerk ")) << line;
  EXPECT_EQ(Run("help filter blur").out, Run("filter blur --help").out);
  for (const std::string line : {"-V", "--version"})
    EXPECT_THAT(Run(line).out, HasSubstr("tintwerk "));
  Expect(1, "-c \"" TINTWERK_PROGRAM " list > /dev/full\"", {"tintwerk: cannot write"}, "/bin/sh");
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

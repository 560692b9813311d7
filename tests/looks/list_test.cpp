// The list of the effects against the sources.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace {

TEST(EffectList, RowsAreDefinedWhereTheySayAndToldApart) {
  std::set<std::string> categories, titles, descriptions;
  std::string block, source;
  const auto open = [&](const char* name) {
    block = name;
    std::ifstream file(TINTWERK_SOURCE_DIR "/src/looks/" + block + ".cpp");
    source.assign(std::istreambuf_iterator<char>(file), {});
    EXPECT_FALSE(source.empty()) << block;
  };
  const auto check = [&](const std::string& entry, const char* category, std::string title,
                         const char* description) {
    SCOPED_TRACE(entry);
    const auto defined = [&](const char* before, const char* after) {
      return source.find(before + entry + after) != source.npos;
    };
    EXPECT_TRUE(defined("(", ")") || defined("(", ","))
        << block;  // LOOK(entry), TONE_LOOK(entry, ..
    EXPECT_TRUE(categories.contains(category)) << category;
    EXPECT_TRUE(!title.empty() && title.front() != ' ' && title.back() != ' ') << title;
    EXPECT_LE(std::ranges::count(title, ' '), 2) << title;
    for (char& letter : title) letter = char(std::tolower(letter));
    EXPECT_TRUE(titles.insert(title).second) << title;
    EXPECT_TRUE(*description && descriptions.insert(description).second) << description;
  };
#define TINTWERK_CATEGORY(id, title) categories.insert(#id);
#define TINTWERK_EFFECTS_FROM(file) open(#file);
#define TINTWERK_EFFECT(entry, category, title, description) \
  check(#entry, #category, title, description);
#include "tintwerk/effect_list.h"
}

}  // namespace

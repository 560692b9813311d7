// What is made of the declarations of the command line.
#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>
#include <sstream>

#include "program.h"

namespace host_test {
namespace {

using Json = nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class DeclarationsTest : public HostTest {
 protected:
  // The candidates without their meanings.
  std::vector<std::string> Complete(const std::string& words) {
    std::istringstream out(Run("complete -- " + words).out);
    std::vector<std::string> candidates;
    for (std::string line; std::getline(out, line);)
      candidates.push_back(line.substr(0, line.find('\t')));
    return candidates;
  }
};

TEST_F(DeclarationsTest, WhatMayFollowIsOffered) {
  EXPECT_THAT(Complete(""), AllOf(Contains("apply"), Contains("gallery"), Not(Contains("--help"))));
  EXPECT_THAT(Complete("fil"), ElementsAre("filter"));
  EXPECT_THAT(Complete("help fil"), ElementsAre("filter"));
  EXPECT_THAT(Complete("filter blu"), ElementsAre("blur"));
  EXPECT_THAT(Complete("apply faded-m"), ElementsAre("faded-memory"));
  EXPECT_THAT(Complete("apply Effect_HuiYi"), ElementsAre("Effect_HuiYi"));
  EXPECT_THAT(Complete("apply huiyi a.png --ov"), ElementsAre("--overwrite-input"));
  // The value of an option is no positional.
  EXPECT_THAT(Complete("apply --jobs 2 faded-m"), ElementsAre("faded-memory"));
  EXPECT_THAT(Complete("apply huiyi a.png --then faded-m"), ElementsAre("faded-memory"));
  EXPECT_THAT(Complete("blend soft"), ElementsAre("soft-light"));
  EXPECT_THAT(Complete("sheet a.png --category Toy"), ElementsAre("ToyCamera"));
  EXPECT_THAT(Complete("filter selective --family bl"), ElementsAre("blue", "black"));
  EXPECT_THAT(Complete("filter selective --family=bl"),
              ElementsAre("--family=blue", "--family=black"));
  EXPECT_THAT(Complete("filter selective --family = bl"), ElementsAre("blue", "black"));
  // Where files fit, the shell offers them.
  for (const std::string words : {"apply huiyi \"\"", "apply huiyi a.png -o \"\"", "gallery \"\""})
    EXPECT_THAT(Complete(words), IsEmpty()) << words;
  // Each candidate is taken as it is offered.
  for (const Json& look : Json::parse(Run("list --json").out)) {
    std::string slug = look.at("title");
    std::ranges::transform(slug, slug.begin(), [](unsigned char c) {
      return std::isalnum(c) ? static_cast<char>(std::tolower(c)) : '-';
    });
    EXPECT_THAT(Complete("apply " + slug), Contains(slug));
    EXPECT_THAT(Run("apply " + slug + " none.png -o x.png").err, HasSubstr("none.png")) << slug;
  }
}

TEST_F(DeclarationsTest, EveryCommandHasAPage) {
  Expect(0, "manual man");
  std::vector<std::string> pages{"tintwerk.1"};
  for (const std::string& command : Complete("")) pages.push_back("tintwerk-" + command + ".1");
  std::ranges::sort(pages);
  EXPECT_EQ(NamesIn("man"), pages);
  const std::string all = ReadFile("man/tintwerk.1"), apply = ReadFile("man/tintwerk-apply.1"),
                    filter = ReadFile("man/tintwerk-filter.1");
  EXPECT_THAT(all, AllOf(HasSubstr("\\fBtintwerk\\-gallery\\fR(1)"), HasSubstr(".SH EXIT STATUS")));
  for (std::string option : Complete("apply huiyi --")) {
    for (std::size_t at = 0; (at = option.find('-', at)) != std::string::npos; at += 2)
      option.insert(at, 1, '\\');
    EXPECT_THAT(apply, HasSubstr("\\fB" + option + "\\fR"));
  }
  EXPECT_THAT(apply, AllOf(HasSubstr("faded\\-memory"), HasSubstr("\\fIK/N\\fR")));
  // What all filters share is told once.
  const auto count = [&](const std::string& text) {
    int found = 0;
    for (std::size_t at = 0; (at = filter.find(text, at)) != std::string::npos; ++at) ++found;
    return found;
  };
  EXPECT_EQ(count("\\-\\-skip\\-existing"), 1);
  EXPECT_GT(count("\\-\\-radius"), 1);
  EXPECT_EQ(count("\n.SS "), static_cast<int>(Complete("filter \"\"").size()));
  // No line begins by chance with what the formatter takes for a request.
  for (const std::string& page : pages) {
    std::istringstream lines(ReadFile("man/" + page));
    for (std::string line; std::getline(lines, line);) {
      EXPECT_FALSE(line.starts_with("'")) << line;
      if (!line.starts_with('.')) continue;
      EXPECT_THAT(line.substr(0, 3), testing::AnyOf(".TH", ".SH", ".SS", ".TP", ".PP")) << line;
    }
  }
}

}  // namespace
}  // namespace host_test

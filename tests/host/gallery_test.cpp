// Pages and sheets of all looks.
#include <nlohmann/json.hpp>
#include <set>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using Json = nlohmann::json;

class GalleryTest : public HostTest {};

// What a page of the gallery holds between two texts.
Json Between(const std::string& text, const std::string& from, const std::string& to) {
  const std::size_t begin = text.find(from) + from.size();
  return Json::parse(text.substr(begin, text.find(to, begin) - begin));
}

TEST_F(GalleryTest, EveryLookIsPaintedAndListed) {
  const std::string name = "a <photo> & 'more'.png";
  Waves(130, 80).write_to_file(name.c_str());
  Expect(0, "gallery \"" + name + "\" -o deep/page --size 100");
  EXPECT_THAT(NamesIn("deep/page"),
              testing::ElementsAre("index.html", "large", "progress.js", "small"));
  const Json page = Between(ReadFile("deep/page/index.html"), "id=\"data\">", "</script>");
  EXPECT_EQ(page.at("photo"), name);
  EXPECT_EQ(page.at("width"), 100);
  EXPECT_EQ(page.at("height"), 62);
  std::set<std::string> pictures{"before.jpg"}, painted;
  Json looks = Json::array();
  for (const Json& category : page.at("categories"))
    for (const Json& look : category.at("looks")) {
      EXPECT_TRUE(pictures.insert(look.at("slug").get<std::string>() + ".jpg").second);
      looks.push_back({{"name", look.at("name")},
                       {"title", look.at("title")},
                       {"category", category.at("id")},
                       {"description", look.at("description")}});
    }
  EXPECT_EQ(looks, Json::parse(Run("list --json").out));
  for (const std::string folder : {"deep/page/large", "deep/page/small"}) {
    const std::vector<std::string> names = NamesIn(folder);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()), pictures);
  }
  const Json progress = Between(ReadFile("deep/page/progress.js"), "galleryProgress(", ");");
  EXPECT_FALSE(progress.at("running"));
  for (const Json& slug : progress.at("painted")) painted.insert(slug.get<std::string>() + ".jpg");
  painted.insert("before.jpg");
  EXPECT_EQ(painted, pictures);

  // A picture of it is what the name in the line to copy makes of the copy.
  vips::VImage::new_from_file("deep/page/large/before.jpg").write_to_file("copy.png");
  for (const std::string slug : {"eighties-snapshot", "hot-day-instant", "ink-wash"}) {
    EXPECT_EQ(Run("apply " + slug + " copy.png -o look.png").code, 0);
    const Decoded shown = Decode("deep/page/large/" + slug + ".jpg");
    EXPECT_LT(MeanDifference(shown, Decode("look.png")), 4) << slug;
    EXPECT_GT(MeanDifference(shown, Decode("copy.png")), 8) << slug;
  }
}

TEST_F(GalleryTest, WhatIsNotOfAGalleryIsNotReplaced) {
  Waves(40, 30).write_to_file("a.png");
  fs::create_directories("site");
  WriteFile("site/index.html", "<p>another page");
  fs::create_directories("page/large");
  Waves(40, 30).write_to_file("page/large/before.jpg");
  for (const auto& [line, told] :
       {std::pair<std::string, std::string>{"gallery a.png -o site", "another page"},
        {"gallery a.png -o a.png", "is a file"},
        {"gallery none.png -o new", "none.png"},
        {"gallery page/large/before.jpg -o page", "is an input"},
        {"sheet a.png -o a.png", "is an input"},
        {"sheet a.png -o sheet.txt", "formats"},
        {"sheet a.png -o sheet.png --category sepia", "'sepia'"}})
    Expect(2, line, {told});
  EXPECT_EQ(ReadFile("site/index.html"), "<p>another page");
  EXPECT_FALSE(fs::exists("new"));
}

TEST_F(GalleryTest, ASheetShowsEachLookInItsPlace) {
  Waves(120, 90).write_to_file("a.png");
  Expect(0, "sheet a.png -o sheet.png --category film --tile 60 --columns 4");
  const Decoded sheet = Decode("sheet.png");
  EXPECT_EQ(sheet.width, 6 + 4 * 66);
  const Json looks = Json::parse(Run("list --json --category film").out);
  const auto tile = [&](std::size_t index) {
    const int left = 6 + static_cast<int>(index % 4) * 66,
              top = 6 + static_cast<int>(index / 4) * (45 + 24 + 6);
    vips::VImage::new_from_file("sheet.png").crop(left, top, 60, 45).write_to_file("tile.png");
    return Decode("tile.png");
  };
  for (std::size_t i = 0; i <= looks.size(); ++i) {
    const std::string name = i == 0 ? "HuiYi --strength 0" : looks[i - 1].at("name");
    EXPECT_EQ(Run("apply " + name + " a.png -o look.png").code, 0);
    vips::VImage::new_from_file("look.png").resize(0.5).write_to_file("small.png");
    EXPECT_LT(MeanDifference(tile(i), Decode("small.png")), 4) << name;
  }
  // Below each there is a title in dark letters.
  double darkest = 255;
  for (int x = 6; x < 66; ++x)
    for (int y = 52; y < 74; ++y) darkest = std::min<double>(darkest, sheet.At(x, y)[0]);
  EXPECT_LT(darkest, 100);
}

}  // namespace
}  // namespace host_test

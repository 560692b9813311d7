// Every look of maps, plane files, pictures and curves against its recipe, on random files: what it
// makes, reports and leaves at a stop, and what it does without its files.
#include "looks/recipes.h"

#include <climits>
#include <thread>

#include "frame/random.h"

namespace tintwerk::test {
namespace {

using Root = ResourceRoot;
constexpr int kLow = RecipeInterpreter::kLow, kHigh = RecipeInterpreter::kHigh;

void ExpectSame(const Look& look, const Picture& result, const Picture& expected) {
  const auto [is, should] = std::mismatch(result.bytes.begin(), result.bytes.end(),
                                          expected.bytes.begin(), expected.bytes.end());
  if (is == result.bytes.end()) return;
  const std::size_t at = is - result.bytes.begin();
  ADD_FAILURE() << look.name << " on " << result.width << " x " << result.height << ": "
                << "BGRA"[at % 4] << " at (" << at / 4 % result.width << ", "
                << at / 4 / result.width << ") is " << int(*is) << ", not " << int(*should);
}

// Compares a look with its recipe, which runs first and lays out the files: with a host on one
// thread, and without one on three.
// @param stopAt the question that the host answers with a stop
// @return how often the host was asked
int ExpectRecipe(Root& root, const Look& look, const Picture& image, int stopAt = -1) {
  const Threads one(1);
  RecipeInterpreter recipe(root, kWords, image);
  recipe.told.stopAt = stopAt;
  const int code = recipe.Run(look.recipe);
  for (const bool host : {true, false}) {
    if (!host && stopAt >= 0) continue;
    const Threads threads(host ? 1 : 3);
    ProgressRecorder told;
    told.stopAt = stopAt;
    Picture result = image;
    EXPECT_EQ(root.Run(look.run, result, host ? &told : nullptr, kLow, kHigh), code) << look.name;
    ExpectSame(look, result, recipe.now);
    if (!host) continue;
    EXPECT_EQ(told.positions, recipe.told.positions) << look.name;
    EXPECT_EQ(told.questions, recipe.told.questions) << look.name;
  }
  for (std::size_t at = 3; at < image.bytes.size(); at += 4)
    if (look.recipe.find("opaque") > look.recipe.size() && recipe.now.bytes[at] != image.bytes[at])
      ADD_FAILURE() << look.name << " has another alpha at " << at / 4;
  return recipe.told.questions;
}

// The look gives 0 and leaves the image as its stages before the missing file do.
void ExpectFailure(Root& root, const Look& look, const Picture& image, const std::string& file) {
  const std::size_t mention = look.recipe.find(file), stage = look.recipe.rfind('|', mention);
  RecipeInterpreter before(root, kWords, image);
  if (stage < mention) before.Run(look.recipe.substr(0, stage));
  Picture result = image;
  EXPECT_EQ(root.Run(look.run, result), 0) << look.name << " without " << file;
  ExpectSame(look, result, before.now);
}

TEST(Recipes, HoldAtAnyShapeAndThreadCountAndSideBySide) {
  const auto run = [] {
    Root root;
    for (const Look& look : kRecipes)
      // Square, upright, lying, and one as wide as a panel with a stamp may be; pictures are
      // 21 x 30, so the last but one is of their own size.
      for (auto [w, h] :
           {std::pair{41, 41}, {30, 53}, {61, 17}, {51, 17}, {30, 21}, {21, 30}, {1, 1}})
        ExpectRecipe(root, look, TiedPicture(w, h, w));
  };
  const std::jthread other(run);
  run();
}

// Enough pixels for what is rarely rounded in another way, and greys, whose sums are often whole.
TEST(Recipes, HoldOnALargeImageWithGreys) {
  Root root;
  Picture image = TiedPicture(501, 300);
  for (int at = 0; at < 4 * 501 * 100; at += 4)
    image.bytes[at + 1] = image.bytes[at + 2] = image.bytes[at];
  for (const Look& look : kRecipes) ExpectRecipe(root, look, image);
}

TEST(Recipes, HoldWhereAMaskIsAsLargeAsTheImage) {
  Root root;
  for (const Look& look : kRecipes)
    if (look.recipe.find("focus") < look.recipe.size())
      ExpectRecipe(root, look, RandomPicture(640, 640));
    else if (look.recipe.find("tunnel") < look.recipe.size())
      ExpectRecipe(root, look, RandomPicture(240, 240));
}

TEST(Recipes, HoldAtEveryStop) {
  Root root;
  const Picture image = RandomPicture(9, 43);
  for (const Look& look : kRecipes)
    for (int stopAt = ExpectRecipe(root, look, image); stopAt-- > 0;)
      ExpectRecipe(root, look, image, stopAt);
}

TEST(Recipes, FailWithoutATableAndTakeAMissingPictureForBlack) {
  const Threads one(1);
  const Picture image = RandomPicture(12, 9);
  for (const Look& look : kRecipes) {
    Root root;
    RecipeInterpreter recipe(root, kWords, image);
    recipe.Run(look.recipe);
    for (const auto& [file, use] : recipe.uses) {
      const bool raw = root.RawFiles().contains(file);
      const Bytes bytes = raw ? root.Raw(file) : Bytes();
      const Picture picture = raw ? Picture() : root.Shown(file);
      root.Remove(file);
      if (use.needed)
        ExpectFailure(root, look, image, file);
      else
        ExpectRecipe(root, look, image);
      if (use.rows > 0) {
        root.Put(file, RandomPicture(255, 300));
        ExpectFailure(root, look, image, file);
        root.Put(file, RandomPicture(300, 300));
        use.fixed ? void(ExpectRecipe(root, look, image)) : ExpectFailure(root, look, image, file);
      }
      if (use.rows > 1) {
        root.Put(file, RandomPicture(256, use.rows - 1));
        ExpectFailure(root, look, image, file);
      }
      raw ? root.Put(file, bytes) : root.Put(file, picture);
    }
    Picture none = image, huge{65536, 65536, Bytes(4)};
    EXPECT_EQ(look.run(nullptr, 12, 9, root.Path(), nullptr, kLow, kHigh), 0) << look.name;
    EXPECT_EQ(root.Run(look.run, huge), 0) << look.name;
    for (auto [w, h] : {std::pair{0, 7}, {7, 0}, {-4, 4}, {4, -4}}) {
      none.width = w, none.height = h;
      EXPECT_EQ(root.Run(look.run, none), 1) << look.name << " on " << w << " x " << h;
    }
    EXPECT_EQ(none.bytes, image.bytes) << look.name;
  }
}

TEST(Recipes, TakeWhatAShortPlaneFileLacksForZero) {
  Root root;
  for (const std::size_t size : {4, 65540, 70000, 131300, 196000})
    for (const char* file : {"zvkr_studio_1.eb", "zvkr_studio_2.eb"}) {
      root.Put(file, RandomBytes(size, 1));
      for (const Look& look : kRecipes)
        if (look.recipe.find(file) < look.recipe.size())
          ExpectRecipe(root, look, RandomPicture(12, 9));
    }
}

TEST(Recipes, NoiseGoesOnFromWhereItsThreadsGeneratorStands) {
  const std::string tones =
      "tone(v,0/5/18/55/101/149/191/225/246/254,20/33/46/75/107/138/167/193/216/235,"
      "63/72/80/96/112/129/145/161/177/192)";
  Root root;
  EffectEntry* const look = kEntries.at("NewLOMO_3");
  const Picture image = RandomPicture(31, 29);
  RecipeInterpreter toned(root, kWords, image);
  toned.Run(tones);
  Picture noisy = toned.now, result = image;
  SeedRandom(5);
  for (std::size_t at = 0; at < noisy.bytes.size(); at += 4)
    CPixelProcess::NoiseEx(&noisy.bytes[at], 20);
  {
    const Threads one(1);
    SeedRandom(5);
    ProgressRecorder told;
    EXPECT_EQ(root.Run(look, result, &told), 1);
    ExpectSame({"NewLOMO_3", tones, look}, result, noisy);
    EXPECT_TRUE(told.positions.empty() && told.questions == 0);
  }
  const Threads three(3);
  result = image;
  EXPECT_EQ(root.Run(look, result), 1);
  EXPECT_LE(LargestDifference(result.bytes, toned.now.bytes), 10);
  EXPECT_GE(LargestDifference(result.bytes, toned.now.bytes), 8);
  for (std::size_t at = 3; at < image.bytes.size(); at += 4)
    ASSERT_EQ(result.bytes[at], image.bytes[at]);
  EXPECT_EQ(look(nullptr, 4, 4, root.Path(), nullptr, kLow, kHigh), 0);
}

// A sketch, then a tint over it, whatever becomes of either.
TEST(Recipes, TheTintedSketchTakesBothItsStagesAsTheyGo) {
  const Look* stages[2] = {};
  for (const Look& look : kRecipes) {
    if (look.name == "Effect_XieShengSuMiaoEx" && !stages[0]) stages[0] = &look;
    if (look.name == "Effect_CaiQian") stages[1] = &look;
  }
  EffectEntry* const both = kEntries.at("Effect_NewCaiQian");
  const Picture image = RandomPicture(23, 31);
  for (const std::string missing : {"", "sucai13.jpg", "PSScreen.png", "zvkr_caiqian.jpg",
                                    "ZVScreen.png", "ZVImageOverlay.png"}) {
    Root root;
    for (const Look* stage : stages) ExpectRecipe(root, *stage, image);
    if (!missing.empty()) root.Remove(missing);
    Picture expected = image, result = image;
    for (const Look* stage : stages) root.Run(stage->run, expected);
    ProgressRecorder told;
    told.stopAt = 0;
    EXPECT_EQ(root.Run(both, result, &told), 1) << missing;
    EXPECT_TRUE(result == expected) << missing;
    EXPECT_TRUE(told.positions.empty() && told.questions == 0);
    EXPECT_EQ(both(nullptr, 4, 4, root.Path(), nullptr, kLow, kHigh), 0);
  }
}

TEST(Recipes, ACropComesOutAsThatPartOfTheWhole) {
  Root root;
  for (auto [rectLook, allOver] :
       {std::pair<RectLook*, EffectEntry*>{CEffect::Effect_GuDianSuMiaoEx,
                                           OverAll<CEffect::Effect_GuDianSuMiaoEx>},
        {CEffect::Effect_XieShengSuMiaoEx, OverAll<CEffect::Effect_XieShengSuMiaoEx>}})
    for (auto [w, h] : {std::pair{33, 40}, {40, 33}, {21, 30}}) {
      const Look& look = *std::ranges::find(kRecipes, allOver, &Look::run);
      Picture image = RandomPicture(w, h), whole = image;
      ExpectRecipe(root, look, image);
      root.Run(look.run, whole);
      const auto run = [&, rectLook = rectLook, w = w, h = h](Picture& crop, _ZV_2D_RECT rect) {
        return rectLook(crop.bytes.data(), w, h, root.Path(), &rect, nullptr, kLow, kHigh);
      };
      for (const auto& [x, y, cw, ch] :
           {_ZV_2D_RECT{0, 0, w, h}, {3, 5, 17, 9}, {0, h - 1, w, 1}, {w - 1, 0, 1, h}}) {
        Picture crop{cw, ch, {}}, expected{cw, ch, {}};
        for (int row = y; row < y + ch; ++row) {
          crop.bytes.insert(crop.bytes.end(), image.At(x, row), image.At(x, row) + 4 * cw);
          expected.bytes.insert(expected.bytes.end(), whole.At(x, row), whole.At(x, row) + 4 * cw);
        }
        EXPECT_EQ(run(crop, {x, y, cw, ch}), 1);
        ExpectSame(look, crop, expected);
      }
      Picture crop = image;
      for (const _ZV_2D_RECT& outside : {_ZV_2D_RECT{-1, 0, 4, 4},
                                         {0, -1, 4, 4},
                                         {w - 3, 0, 4, 4},
                                         {0, h - 3, 4, 4},
                                         {0, 0, w + 1, 1},
                                         {INT_MAX, 0, 4, 4},
                                         {1, 1, INT_MAX, 4},
                                         {1, 1, 4, INT_MAX}})
        EXPECT_EQ(run(crop, outside), 0) << outside.x << ", " << outside.y;
      EXPECT_EQ(rectLook(nullptr, w, h, root.Path(), nullptr, nullptr, kLow, kHigh), 0);
      EXPECT_EQ(crop, image);
    }
}

TEST(Recipes, TheOneThatReportsItsEndDoesSoWithoutPixelsToo) {
  Root root;
  Picture none{0, 5, Bytes(4)};
  ProgressRecorder told;
  EXPECT_EQ(root.Run(kEntries.at("Effect_ABaoSe"), none, &told), 1);
  EXPECT_EQ(told.positions, std::vector{float(kHigh)});
}

}  // namespace
}  // namespace tintwerk::test

// Every look of the list is tested, and the painted files are those that looks open.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "looks/film_looks.h"
#include "looks/recipes.h"
#include "table.h"

namespace tintwerk::test {
namespace {

TEST(Coverage, EveryLookOfTheListHasARecipeOrACubeOrATestOfItsOwn) {
  std::set<std::string> tested = {"Effect_NewCaiQian", "NewLOMO_3"}, listed;
  for (const Look& look : kRecipes) {
    tested.insert(look.name);
    EXPECT_TRUE(look.run) << look.name;
  }
  for (const FilmLook& look : kFilmLooks) tested.insert(look.name);

  std::string block;
#define TINTWERK_EFFECTS_FROM(file) block = #file;
#define TINTWERK_EFFECT(entry, ...) \
  if (block != "filter_presets") listed.insert(#entry);  // tested with the filters
#include "tintwerk/effect_list.h"
  EXPECT_THAT(tested, testing::ContainerEq(listed));
}

// Pairs of a look and a file that it opens.
std::set<std::pair<std::string, std::string>> FilesOfLooks() {
  std::set<std::pair<std::string, std::string>> files;
  ResourceRoot root;
  for (const Look& look : kRecipes) {
    RecipeInterpreter recipe(root, kWords, RandomPicture(3, 2));
    recipe.Run(look.recipe);
    for (const auto& [file, use] : recipe.uses) files.emplace(look.name, file);
  }
  for (const FilmLook& look : kFilmLooks) files.emplace(look.name, look.file);
  return files;
}

TEST(Coverage, TheListOfFilesThatLooksNeedIsTheirs) {
  std::set<std::pair<std::string, std::string>> listed;
  std::ifstream list(std::filesystem::path(TINTWERK_RESOURCES) / "looks.tsv");
  for (std::string look, file; std::getline(list, look, '\t') && std::getline(list, file);)
    listed.emplace(look, file);
  auto expected = FilesOfLooks();
  // These have a test of their own, and no recipe.
  for (const auto& [look, file] : listed)
    if (look == "Effect_NewCaiQian" || look == "NewLOMO_3") expected.emplace(look, file);
  EXPECT_THAT(listed, testing::ContainerEq(expected));
}

TEST(Coverage, WhatIsPaintedIsWhatLooksOpen) {
  std::set<std::string> opened, painted;
  for (const auto& [look, file] : FilesOfLooks()) opened.insert(file);
  for (const std::string axis : {"lig", "con", "sat"})
    for (int step = 1; step <= 12; ++step) opened.insert("style/" + axis + std::to_string(step));
  for (const paint::File& file : paint::FileTable()) painted.emplace(file.name);
  EXPECT_THAT(painted, testing::ContainerEq(opened));
  EXPECT_EQ(painted.size(), 214u);
}

}  // namespace
}  // namespace tintwerk::test

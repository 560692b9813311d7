// Every look of the list is tested, and the painted files are those that looks open.
#include <gmock/gmock.h>

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

TEST(Coverage, WhatIsPaintedIsWhatLooksOpen) {
  std::set<std::string> opened, painted;
  ResourceRoot root;
  for (const Look& look : kRecipes) {
    RecipeInterpreter recipe(root, kWords, RandomPicture(3, 2));
    recipe.Run(look.recipe);
    for (const auto& [file, use] : recipe.uses) opened.insert(file);
  }
  for (const FilmLook& look : kFilmLooks) opened.insert(look.file);
  for (const std::string axis : {"lig", "con", "sat"})
    for (int step = 1; step <= 12; ++step) opened.insert("style/" + axis + std::to_string(step));
  for (const paint::File& file : paint::FileTable()) painted.emplace(file.name);
  EXPECT_THAT(painted, testing::ContainerEq(opened));
  EXPECT_EQ(painted.size(), 214u);
}

}  // namespace
}  // namespace tintwerk::test

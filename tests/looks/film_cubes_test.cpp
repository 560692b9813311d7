// Every look that is one colour cube, and the steps of adjustment that are one each: file, engine,
// reports and failures.
#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <string>

#include "looks/film_looks.h"
#include "pixel/progress_recorder.h"
#include "support/resource_root.h"

namespace tintwerk::test {
namespace {

const std::map<std::string, EffectEntry*> kEntries = {
#define TINTWERK_EFFECT(entry, ...) {#entry, &CEffect::entry},
#include "tintwerk/effect_list.h"
};

void ExpectFilm(const FilmLook& look) {
  SCOPED_TRACE(look.name);
  EffectEntry* const entry = kEntries.at(look.name);
  const Frame frame = look.frame;
  ResourceRoot root;
  const auto expect = [&](int code, Picture image, const Picture& after, int low, int high) {
    ProgressRecorder told;
    told.stopAt = 0;
    EXPECT_EQ(root.Run(entry, image, &told, low, high), code);
    EXPECT_TRUE(image == after);
    std::vector<float> positions = {float(low), float(high)};
    if (frame == Frame::kGuarded) positions.clear();
    if (frame == Frame::kFinished) positions.erase(positions.begin());
    EXPECT_EQ(told.positions, positions);
    EXPECT_EQ(told.questions, 0);
  };
  const Picture before = RandomPicture(41, 23, 7);
  expect(frame == Frame::kGuarded, before, before, 7, -90);
  Picture cube = RandomCube(*look.kind, 3);
  root.Put(look.file, PackCube(EncodePng(cube)));
  expect(1, before, PlainLookup(*look.kind, cube, before), INT_MIN, 16777217);
  expect(0, {41, 23, {}}, {41, 23, {}}, 0, 100);
  expect(1, {0, 0, {1}}, {0, 0, {1}}, 0, 100);
}

TEST(FilmCubes, EachSendsTheImageThroughItsCubeAndReportsAsItsFrameDoes) {
  for (const FilmLook& look : kFilmLooks) ExpectFilm(look);
}

TEST(AdjustmentSteps, WorkOneAfterTheOtherAndAreLeftOutWhereTheyDoNotExist) {
  ResourceRoot root;
  std::map<std::string, Picture> cubes;
  for (const std::string axis : {"lig", "con", "sat"})
    for (int step = 0; step <= 13; ++step) {
      const std::string file = "style/" + axis + std::to_string(step);
      cubes[file] = RandomCube(kCube4x4, unsigned(cubes.size()));
      root.Put(file, PackCube(EncodePng(cubes[file])));
    }
  root.Remove("style/con5");
  const Picture before = RandomPicture(33, 9, 4);
  struct Case {
    int light, contrast, saturation;
    std::vector<const char*> files;
  };
  for (const auto& [light, contrast, saturation, files] :
       {Case{1, 12, 7, {"style/lig1", "style/con12", "style/sat7"}},
        {2, 5, 6, {"style/lig2", "style/sat6"}},
        {0, 0, 0, {}},
        {-1, 13, 0, {}},
        {13, 0, INT_MIN, {}}}) {
    Picture image = before, expected = before;
    for (const char* file : files) expected = PlainLookup(kCube4x4, cubes[file], expected);
    ProgressRecorder told;
    told.stopAt = 0;
    EXPECT_EQ(CEffect::LSC_Class(image.bytes.data(), 33, 9, light, contrast, saturation,
                                 root.Path(), &told, 20, 70),
              1);
    EXPECT_TRUE(image == expected) << light << ", " << contrast << ", " << saturation;
    EXPECT_EQ(told.positions, (std::vector{50 * 0.33f + 20, 50 * 0.67f + 20, 70.0f}));
    EXPECT_EQ(told.questions, 0);
  }
  ProgressRecorder none;
  EXPECT_EQ(CEffect::LSC_Class(nullptr, 4, 4, 1, 1, 1, root.Path(), &none, 0, 100), 0);
  EXPECT_TRUE(none.positions.empty());
}

}  // namespace
}  // namespace tintwerk::test

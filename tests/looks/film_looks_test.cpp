// Every film look with cubes of its own: file, engine, reports and failures.
#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <map>
#include <string>

#include "lookup/cubes.h"
#include "pixel/progress_recorder.h"
#include "support/resource_root.h"

namespace tintwerk {
namespace {

using test::CubeKind;
using test::kCube4x4;
using test::kCube8x8;
using test::kCubeNew;
using test::Picture;

enum class Frame { kFinished, kReported, kGuarded };

struct Recipe {
  std::string file;
  const CubeKind* kind;
  Frame frame;
};

std::map<std::string, Recipe> Recipes() {
  std::map<std::string, Recipe> recipes = {
      {"Effect_VSCO_H5", {"style/H5", &kCube4x4, Frame::kFinished}},
      {"Effect_VSCO_HeiBai", {"style/gray", &kCube4x4, Frame::kFinished}},
      {"Effect_VSCO_1970", {"style/pomelo19", &kCube4x4, Frame::kFinished}},
      {"Effect_ChenGuang", {"171", &kCubeNew, Frame::kReported}},
      {"Effect_FeiCui", {"181", &kCubeNew, Frame::kReported}},
      {"Effect_LiRi", {"178", &kCubeNew, Frame::kReported}},
      {"Effect_QingLiang", {"style/pomelo3", &kCube8x8, Frame::kReported}},
      {"Effect_WuCha", {"style/pomelo10", &kCube8x8, Frame::kReported}}};
  for (auto [name, file] : {std::pair{"MiDou", "170"},
                            {"NaTie", "167"},
                            {"QuQi", "169"},
                            {"RiChu", "180"},
                            {"RuoKeKe", "283"},
                            {"ShaLou", "183"},
                            {"YangPiJuan", "182"},
                            {"YeCan", "166"},
                            {"YueGuang", "284"}})
    recipes[std::string("Effect_") + name] = {file, &kCubeNew, Frame::kGuarded};
  for (std::string suffix :
       {"A2", "A3", "B2", "B4", "C1", "G2",  "H2",  "K1", "M4", "M5", "P1", "P2", "P4",
        "P5", "P6", "P7", "P9", "S4", "SE1", "SE2", "T1", "T2", "T3", "X3", "X4", "X6"}) {
    std::string file = "style/" + suffix;
    for (char& letter : file) letter = char(std::tolower(letter));
    recipes["Effect_VSCO_" + suffix] = {file, &kCube4x4, Frame::kFinished};
  }
  return recipes;
}

struct Look {
  std::string name;
  EffectEntry* entry;
};
#define TINTWERK_EFFECT(entry, category, title, description) {#entry, &CEffect::entry},
const Look kLooks[] = {
#include "tintwerk/effect_list.h"
};

TEST(FilmLooks, EachSendsTheImageThroughItsCubeAndReportsAsItsFrameDoes) {
  const std::map<std::string, Recipe> recipes = Recipes();
  unsigned count = 0;
  const Picture before = test::RandomPicture(41, 23, 7);
  for (const auto& [name, entry] : kLooks) {
    if (!recipes.contains(name)) continue;
    SCOPED_TRACE(name);
    const auto& [file, kind, frame] = recipes.at(name);
    test::ResourceRoot root;
    const auto expect = [&, entry = entry, frame = frame](int code, Picture image,
                                                          const Picture& after, int low, int high) {
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
    expect(frame == Frame::kGuarded, before, before, 7, -90);
    Picture cube = test::RandomCube(*kind, ++count);
    root.Put(file, PackCube(test::EncodePng(cube)));
    expect(1, before, test::PlainLookup(*kind, cube, before), INT_MIN, 16777217);
    expect(0, {41, 23, {}}, {41, 23, {}}, 0, 100);
    expect(1, {0, 0, {1}}, {0, 0, {1}}, 0, 100);
  }
  EXPECT_EQ(count, 43u);
}

TEST(AdjustmentSteps, WorkOneAfterTheOtherAndAreLeftOutWhereTheyDoNotExist) {
  test::ResourceRoot root;
  std::map<std::string, Picture> cubes;
  for (const std::string axis : {"lig", "con", "sat"})
    for (int step = 0; step <= 13; ++step) {
      const std::string file = "style/" + axis + std::to_string(step);
      cubes[file] = test::RandomCube(kCube4x4, unsigned(cubes.size()));
      root.Put(file, PackCube(test::EncodePng(cubes[file])));
    }
  root.Remove("style/con5");
  const Picture before = test::RandomPicture(33, 9, 4);
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
    for (const char* file : files) expected = test::PlainLookup(kCube4x4, cubes[file], expected);
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
}  // namespace tintwerk

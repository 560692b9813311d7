// Every look that is one colour cube, and the steps of adjustment that are one each: file, engine,
// reports and failures.
#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <map>
#include <string>

#include "lookup/cubes.h"
#include "pixel/progress_recorder.h"
#include "support/resource_root.h"

namespace tintwerk::test {
namespace {

const std::map<std::string, EffectEntry*> kEntries = {
#define TINTWERK_EFFECT(entry, ...) {#entry, &CEffect::entry},
#include "tintwerk/effect_list.h"
};

/// What is reported, and whether a missing file counts.
enum Frame { kFinished, kReported, kGuarded };

void ExpectFilm(const std::string& look, const std::string& file, const CubeKind& kind,
                Frame frame) {
  SCOPED_TRACE(look);
  EffectEntry* const entry = kEntries.at("Effect_" + look);
  ResourceRoot root;
  const auto expect = [&](int code, Picture image, const Picture& after, int low, int high) {
    ProgressRecorder told;
    told.stopAt = 0;
    EXPECT_EQ(root.Run(entry, image, &told, low, high), code);
    EXPECT_TRUE(image == after);
    std::vector<float> positions = {float(low), float(high)};
    if (frame == kGuarded) positions.clear();
    if (frame == kFinished) positions.erase(positions.begin());
    EXPECT_EQ(told.positions, positions);
    EXPECT_EQ(told.questions, 0);
  };
  const Picture before = RandomPicture(41, 23, 7);
  expect(frame == kGuarded, before, before, 7, -90);
  Picture cube = RandomCube(kind, 3);
  root.Put(file, PackCube(EncodePng(cube)));
  expect(1, before, PlainLookup(kind, cube, before), INT_MIN, 16777217);
  expect(0, {41, 23, {}}, {41, 23, {}}, 0, 100);
  expect(1, {0, 0, {1}}, {0, 0, {1}}, 0, 100);
}

TEST(FilmCubes, EachSendsTheImageThroughItsCubeAndReportsAsItsFrameDoes) {
  for (const std::string suffix :
       {"A2", "A3", "B2", "B4", "C1", "G2",  "H2",  "K1", "M4", "M5", "P1", "P2", "P4",
        "P5", "P6", "P7", "P9", "S4", "SE1", "SE2", "T1", "T2", "T3", "X3", "X4", "X6"}) {
    std::string file = "style/" + suffix;
    for (char& letter : file) letter = char(std::tolower(letter));
    ExpectFilm("VSCO_" + suffix, file, kCube4x4, kFinished);
  }
  for (auto [look, file] :
       {std::pair{"H5", "style/H5"}, {"HeiBai", "style/gray"}, {"1970", "style/pomelo19"}})
    ExpectFilm(std::string("VSCO_") + look, file, kCube4x4, kFinished);
  for (auto [look, file] : {std::pair{"ChenGuang", "171"}, {"FeiCui", "181"}, {"LiRi", "178"}})
    ExpectFilm(look, file, kCubeNew, kReported);
  for (auto [look, file] : {std::pair{"QingLiang", "style/pomelo3"}, {"WuCha", "style/pomelo10"}})
    ExpectFilm(look, file, kCube8x8, kReported);
  for (auto [look, file] : {std::pair{"MiDou", "170"},
                            {"NaTie", "167"},
                            {"QuQi", "169"},
                            {"RiChu", "180"},
                            {"RuoKeKe", "283"},
                            {"ShaLou", "183"},
                            {"YangPiJuan", "182"},
                            {"YeCan", "166"},
                            {"YueGuang", "284"}})
    ExpectFilm(look, file, kCubeNew, kGuarded);
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

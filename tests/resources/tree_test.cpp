// The program, end to end: the tree that it writes, and how it fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "../support/sanitized.h"
#include "image_writer.h"
#include "paint.h"
#include "painting.h"
#include "tintwerk/cube_container.h"

namespace tintwerk::paint {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

Bytes Read(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(stream), {});
}

class Tree : public ::testing::Test {
 protected:
  Tree() {
    std::string name = ::testing::TempDir() + "tintwerk-paint-" + std::string(6, 'X');
    root_ = mkdtemp(name.data());
  }
  ~Tree() override { fs::remove_all(root_); }

  /// All files below the folder, by their path below it.
  static std::map<std::string, Bytes> Files(const fs::path& folder) {
    std::map<std::string, Bytes> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
      if (entry.is_regular_file())
        files[fs::relative(entry.path(), folder).string()] = Read(entry.path());
    return files;
  }

  fs::path root_;
};

/// The picture in a cube's container; the container must end where its length says.
Bytes UnpackCube(Bytes file) {
  std::uint32_t length = 0;
  for (int place = 0; place < 4; ++place) length |= std::uint32_t{file.at(place)} << 8 * place;
  EXPECT_EQ(length, file.size() - 4);
  file.erase(file.begin(), file.begin() + 4);
  ScrambleCube(file);
  return file;
}

/// Width and height of a PNG, or of what a cube's container holds.
std::pair<int, int> Shape(std::string_view name) {
  static const std::map<std::string_view, std::pair<int, int>> shapes = {
      {"80smap.png", {256, 1}},        {"hqc_SoftLight.png", {256, 1}},
      {"huiyi2.png", {256, 1}},        {"huiyi3.png", {256, 1}},
      {"kujiu1.png", {256, 1}},        {"kujiu2.png", {256, 1}},
      {"kujiu3.png", {256, 1}},        {"kujiu4.png", {256, 1}},
      {"kujiu5.png", {256, 1}},        {"moran1.png", {256, 3}},
      {"screen30.png", {256, 1}},      {"style/chengguang.png", {256, 3}},
      {"style/hefeng1.png", {256, 3}}, {"style/hefeng2.png", {256, 1}},
      {"style/LL17.png", {1080, 720}}, {"style/pomelo10", {512, 512}},
      {"style/pomelo3", {512, 512}},   {"style/qingse1.png", {256, 3}},
      {"sucai19.png", {1400, 1400}},   {"sucai20.png", {1500, 1000}},
      {"sucai21.png", {1200, 200}},    {"xihu1.png", {256, 3}},
      {"yaogunMap.png", {256, 3}},     {"zvkr_festival_3.png", {1200, 1680}},
      {"zvkr_fzs.png", {1080, 720}}};
  if (const auto found = shapes.find(name); found != shapes.end()) return found->second;
  if (name.find('.') == name.npos) return {64, 64};
  return {256, 256};
}

// The program's tree against a second painting, by one thread.
TEST_F(Tree, HoldsEveryFileOfTheTableInItsShapeAndTheSameOnEveryRun) {
  const Outcome outcome = RunPaint(root_.string() + " --threads 3");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.output, HasSubstr(std::to_string(FileTable().size()) + " support files"));
  const auto written = Files(root_ / "Effects");
  EXPECT_EQ(FileTable().size(), 214u);
  EXPECT_EQ(written.size(), FileTable().size());  // each name once, and no temporary file

  std::size_t place = 0;
  for (const File& file : FileTable()) {
    if (test::kSanitized && place++ % 8 != 0) continue;
    SCOPED_TRACE(file.name);
    const auto found = written.find(std::string(file.name));
    ASSERT_NE(found, written.end());
    const Painted painted = file.paint();
    ASSERT_TRUE(found->second == Encode(file.name, painted));
    const auto* picture = std::get_if<Picture>(&painted);
    if (!picture) continue;
    if (file.name.ends_with(".jpg")) {
      const Picture decoded = Decode(found->second);
      const auto [width, height] = std::pair(decoded.width, decoded.height);
      EXPECT_GE(std::max(width, height), 1000);
      EXPECT_LE(std::max(width, height), 1680);
      continue;
    }
    const bool isCube = file.name.find('.') == file.name.npos;
    const Picture decoded = Decode(isCube ? UnpackCube(found->second) : found->second);
    EXPECT_EQ(std::pair(decoded.width, decoded.height), Shape(file.name));
    ASSERT_EQ(decoded.pixels.size(), picture->pixels.size());
    EXPECT_EQ(
        std::memcmp(decoded.pixels.data(), picture->pixels.data(), 4 * picture->pixels.size()), 0);
  }
}

TEST_F(Tree, PaintsOneFileOverAnOldOne) {
  const fs::path path = root_ / "Effects/style/PSScreen.png";
  for (int run = 0; run < 2; ++run)
    EXPECT_EQ(RunPaint(root_.string() + " --only style/PSScreen.png").exitCode, 0);
  EXPECT_EQ(Files(root_).size(), 1u);
  EXPECT_EQ(Decode(Read(path)).At(200, 100).red, 222);
}

TEST_F(Tree, ReportsWhatItCannotWrite) {
  std::ofstream(root_ / "file") << "in the way";
  const Outcome noFolder = RunPaint((root_ / "file").string() + " --only screen30.png");
  EXPECT_EQ(noFolder.exitCode, 1);
  EXPECT_THAT(noFolder.output, HasSubstr((root_ / "file").string()));

  const fs::path taken = root_ / "Effects/taken.png";
  fs::create_directories(taken / "folder");
  const auto paint = [] { return Picture(1, 1); };
  const File files[] = {{"taken.png", paint}, {"a.png", paint}, {"style/b.png", paint}};
  EXPECT_THROW(PaintFiles(files, root_, 2), fs::filesystem_error);
  // The other files are there all the same, and nothing half written.
  EXPECT_EQ(Files(root_ / "Effects").size(), 2u);
}

TEST_F(Tree, RefusesAWrongCommandLine) {
  for (const char* wrong : {"", "--threads 2", "out --threads 0", "out --threads 2x", "out --only",
                            "out more", "out --other", "out --only none.png"}) {
    const Outcome outcome = RunPaint("--threads 1 " + std::string(wrong));
    EXPECT_EQ(outcome.exitCode, 2) << wrong;
    EXPECT_NE(outcome.output, "") << wrong;
  }
  EXPECT_FALSE(fs::exists("out"));
}

TEST(ImageWriter, KeepsTransparency) {
  Picture picture(2, 1);
  picture.At(0, 0) = {10, 20, 30, 0};
  picture.At(1, 0) = {40, 50, 60, 128};
  const Picture back = Decode(Encode("stamp.png", Painted(picture)));
  EXPECT_EQ(std::memcmp(back.pixels.data(), picture.pixels.data(), 8), 0);
  EXPECT_THROW(Encode("stamp.gif", picture), std::invalid_argument);
}

}  // namespace
}  // namespace tintwerk::paint

// Many pictures, and what must never happen to files.
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class BatchTest : public HostTest {
 protected:
  void SetUp() override {
    fs::create_directory(Path("in"));
    Waves(60, 40).write_to_file(Path("in/a.png").c_str());
    Waves(41, 33).write_to_file(Path("in/b.jpg").c_str());
    WriteFile(Path("in/notes.txt"), "no picture");
    WriteFile(Path("in/.hidden.png"), "no picture");
  }
};

TEST_F(BatchTest, AFolderGoesIntoAFolder) {
  const Outcome outcome = Run({"apply", "80s", Path("in"), "-o", Path("deep/out"), "--jobs", "3"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.err, IsEmpty());
  EXPECT_THAT(NamesIn(Path("deep/out")), ElementsAre("a.png", "b.jpg"));
  EXPECT_EQ(Decode(Path("deep/out/a.png")), LookOf(Decode(Path("in/a.png"))));
  EXPECT_LT(MeanDifference(Decode(Path("deep/out/b.jpg")), LookOf(Decode(Path("in/b.jpg")))), 3);

  // Existing outputs are replaced, unless they are to be skipped.
  WriteFile(Path("deep/out/a.png"), "old");
  fs::remove(Path("deep/out/b.jpg"));
  EXPECT_EQ(Run({"apply", "80s", Path("in"), "-o", Path("deep/out"), "--skip-existing"}).code, 0);
  EXPECT_EQ(ReadFile(Path("deep/out/a.png")), "old");
  EXPECT_TRUE(fs::exists(Path("deep/out/b.jpg")));
  EXPECT_EQ(Run({"apply", "80s", Path("in/a.png"), "-o", Path("deep/out/")}).code, 0);
  EXPECT_EQ(Decode(Path("deep/out/a.png")), LookOf(Decode(Path("in/a.png"))));

  EXPECT_EQ(Run({"apply", "80s", Path("in"), "-o", Path("webp"), "--format", "webp"}).code, 0);
  EXPECT_THAT(NamesIn(Path("webp")), ElementsAre("a.webp", "b.webp"));
}

TEST_F(BatchTest, InputsAreNotOverwrittenByAnyName) {
  const std::string before = ReadFile(Path("in/a.png"));
  fs::create_symlink(Path("in/a.png"), Path("link.png"));
  fs::create_hard_link(Path("in/a.png"), Path("hard.png"));
  fs::create_directory_symlink(Path("in"), Path("same"));
  const std::vector<std::pair<std::string, std::string>> attempts = {{"in/a.png", "in/a.png"},
                                                                     {"in/a.png", "in/../in/a.png"},
                                                                     {"in/a.png", "link.png"},
                                                                     {"in/a.png", "hard.png"},
                                                                     {"link.png", "in/a.png"},
                                                                     {"in", "in"},
                                                                     {"in", "same"}};
  for (const auto& [input, output] : attempts) {
    const Outcome outcome = Run({"apply", "80s", Path(input), "-o", Path(output)});
    EXPECT_EQ(outcome.code, 2) << input << " to " << output;
    EXPECT_THAT(outcome.err, HasSubstr("--overwrite-input"));
    EXPECT_EQ(ReadFile(Path("in/a.png")), before);
  }
  EXPECT_TRUE(fs::is_symlink(Path("link.png")));

  const Decoded expected = LookOf(Decode(Path("in/a.png")));
  fs::permissions(Path("in/a.png"), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(
      Run({"apply", "80s", Path("link.png"), "-o", Path("link.png"), "--overwrite-input"}).code, 0);
  EXPECT_TRUE(fs::is_symlink(Path("link.png")));
  EXPECT_EQ(Decode(Path("in/a.png")), expected);
  EXPECT_EQ(fs::status(Path("in/a.png")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(BatchTest, WhatCannotWorkIsRefusedBeforeAnythingIsWritten) {
  fs::create_directory(Path("other"));
  fs::copy_file(Path("in/a.png"), Path("other/a.png"));
  const std::string before = ReadFile(Path("in/b.jpg"));
  const std::vector<std::pair<std::vector<std::string>, std::string>> attempts = {
      {{Path("in/a.png"), Path("other/a.png"), "-o", Path("out")}, "a.png"},
      {{Path("in/a.png"), Path("in/a.png"), "-o", Path("out")}, "a.png"},
      {{Path("in/a.png"), "-o", Path("out.txt")}, "out.txt"},
      {{Path("in/a.png"), "-o", Path("out")}, "formats"},
      {{Path("in/a.png"), "-o", Path("none/out.png")}, "none"},
      {{Path("in/notes.txt"), Path("in/a.png"), "-o", Path("out")}, "notes.txt"},
      {{Path("in/a.png"), Path("in/b.jpg"), "-o", Path("in/b.jpg")}, "b.jpg"},
      {{Path("in"), "-o", Path("out"), "--format", "xyz"}, "xyz"},
      {{Path("in/a.png"), "-o", Path("out.png"), "--format", "png"}, "--format"}};
  for (const auto& [arguments, named] : attempts) {
    std::vector<std::string> all = {"apply", "80s"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Outcome outcome = Run(all);
    EXPECT_EQ(outcome.code, 2) << named;
    EXPECT_THAT(outcome.err, HasSubstr(named));
    EXPECT_THAT(NamesIn(Path("")), ElementsAre("in", "other")) << named;
  }
  EXPECT_EQ(ReadFile(Path("in/b.jpg")), before);
}

TEST_F(BatchTest, BadPicturesAreNamedAndTheOthersDone) {
  for (const std::string format : {"jpg", "png", "webp", "tif"}) {
    const std::string whole = Path("whole." + format);
    Waves(300, 200).write_to_file(whole.c_str());
    const std::string bytes = ReadFile(whole);
    WriteFile(Path("in/short-" + format + "." + format), bytes.substr(0, bytes.size() * 2 / 3));
  }
  WriteFile(Path("in/empty.png"), "");
  const Outcome outcome =
      Run({"apply", "80s", Path("in"), Path("in/missing.png"), "-o", Path("out"), "--jobs", "2"});
  EXPECT_EQ(outcome.code, 1);
  for (const char* name : {"short-jpg.jpg", "short-png.png", "short-webp.webp", "short-tif.tif",
                           "empty.png", "missing.png"})
    EXPECT_THAT(outcome.err, HasSubstr(Path("in/") + name + "'"));
  EXPECT_THAT(outcome.err,
              AllOf(HasSubstr("6 of 8"), Not(HasSubstr("a.png'")), Not(HasSubstr("b.jpg'"))));
  EXPECT_THAT(NamesIn(Path("out")), ElementsAre("a.png", "b.jpg"));
}

class StopTest : public HostTest, public testing::WithParamInterface<int> {};

TEST_P(StopTest, NothingHalfWrittenIsLeft) {
  constexpr int pictures = 40;
  fs::create_directory(Path("in"));
  Waves(1200, 900).write_to_file(Path("in/00.png").c_str());
  for (int i = 1; i < pictures; ++i)
    fs::copy_file(Path("in/00.png"), Path("in/" + std::to_string(100 + i) + ".png"));
  const pid_t child = Start({"apply", "80s", Path("in"), "-o", Path("out"), "--jobs", "2"});
  for (int wait = 0; wait < 3000 && !fs::exists(Path("out/00.png")); ++wait)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  kill(child, GetParam());
  const Outcome outcome = Wait(child);
  EXPECT_EQ(outcome.code, 128 + GetParam());
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("stopped"), Not(HasSubstr("cannot"))));
  const std::vector<std::string> written = NamesIn(Path("out"));
  EXPECT_GE(written.size(), 1U);
  EXPECT_LT(written.size(), static_cast<std::size_t>(pictures));
  const Decoded expected = LookOf(Decode(Path("in/00.png")));
  for (const std::string& name : written) {
    ASSERT_EQ(fs::path(name).extension(), ".png");
    EXPECT_EQ(Decode(Path("out/" + name)), expected) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Signals, StopTest, testing::Values(SIGINT, SIGTERM));

}  // namespace
}  // namespace host_test

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
using testing::Not;

class BatchTest : public HostTest {
 protected:
  BatchTest() {
    fs::create_directory("in");
    Waves(60, 40).write_to_file("in/a.png");
    Waves(41, 33).write_to_file("in/b.jpg");
    WriteFile("in/notes.txt", "no picture");
    WriteFile("in/.hidden.png", "no picture");
  }
};

TEST_F(BatchTest, AFolderGoesIntoAFolder) {
  const Decoded look = LookOf(Decode("in/a.png"));
  Expect(0, "apply 80s in -o deep/out --jobs 3", {"'in/notes.txt': no picture", "1 file"});
  EXPECT_THAT(NamesIn("deep/out"), ElementsAre("a.png", "b.jpg"));
  EXPECT_EQ(Decode("deep/out/a.png"), look);
  EXPECT_LT(MeanDifference(Decode("deep/out/b.jpg"), LookOf(Decode("in/b.jpg"))), 3);

  // Existing outputs are replaced, unless they are to be skipped.
  WriteFile("deep/out/a.png", "old");
  fs::remove("deep/out/b.jpg");
  EXPECT_EQ(Run("apply 80s in -o deep/out --skip-existing").code, 0);
  EXPECT_EQ(ReadFile("deep/out/a.png"), "old");
  EXPECT_TRUE(fs::exists("deep/out/b.jpg"));
  Expect(0, "apply 80s in/a.png -o deep/out/");
  EXPECT_EQ(Decode("deep/out/a.png"), look);

  Expect(0, "apply 80s in -o webp --format webp", {"in/notes.txt"});
  EXPECT_THAT(NamesIn("webp"), ElementsAre("a.webp", "b.webp"));
}

TEST_F(BatchTest, ShardsShareAFolderWhereverItLies) {
  constexpr int kPictures = 60, kShards = 4;
  fs::create_directory("many");
  std::vector<std::string> all;
  for (int i = 0; i < kPictures; ++i) {
    all.push_back("IMG_" + std::to_string(1000 + i) + ".png");
    fs::copy_file("in/a.png", "many/" + all.back());
  }
  for (int shard = 1; shard <= kShards; ++shard) {
    const std::string part = std::to_string(shard) + "/" + std::to_string(kShards),
                      out = "part" + std::to_string(shard);
    fs::create_directory(out);
    Expect(0, "apply 80s many -o " + out + " --shard " + part);
    // Of 60 about 15 each; a part that is far from it would make the machines wait for one.
    EXPECT_GT(NamesIn(out).size(), 6U);
    Expect(0, "apply 80s many -o whole --skip-existing --shard " + part);
    for (const std::string& name : NamesIn(out)) EXPECT_TRUE(fs::exists("whole/" + name)) << name;
  }
  EXPECT_EQ(NamesIn("whole"), all);
  std::size_t sum = 0;
  for (int shard = 1; shard <= kShards; ++shard)
    sum += NamesIn("part" + std::to_string(shard)).size();
  EXPECT_EQ(sum, all.size()) << "a picture is done twice";

  // The part of a picture depends on its name alone: a call for a few names agrees. It stays so from
  // version to version, as machines need not have the same.
  fs::rename("many", "moved");
  for (const std::string& name : {all[7], all[3], all[40]}) {
    Expect(0, "apply 80s moved/" + name + " in/b.jpg -o few/ --shard 2/4");
    EXPECT_EQ(fs::exists("few/" + name), fs::exists("part2/" + name)) << name;
  }
  EXPECT_THAT(NamesIn("part2"),
              testing::IsSupersetOf({"IMG_1017.png", "IMG_1019.png", "IMG_1020.png"}));
  for (const std::string part : {"0/4", "5/4", "1/0", "1", "1/4x", "/4", "-1/4"})
    Expect(2, "apply 80s in -o out --shard " + part, {"--shard"});
}

TEST_F(BatchTest, InputsAreNotOverwrittenByAnyName) {
  const std::string before = ReadFile("in/a.png");
  const Decoded expected = LookOf(Decode("in/a.png"));
  fs::create_symlink("in/a.png", "link.png");
  fs::create_hard_link("in/a.png", "hard.png");
  fs::create_directory_symlink("in", "same");
  for (const std::string names :
       {"in/a.png -o in/a.png", "in/a.png -o in/../in/a.png", "in/a.png -o link.png",
        "in/a.png -o hard.png", "link.png -o in/a.png", "in -o in", "in -o same"}) {
    Expect(2, "apply 80s " + names, {"--overwrite-input"});
    EXPECT_EQ(ReadFile("in/a.png"), before);
  }
  const auto mode = fs::perms::owner_read | fs::perms::owner_write;
  fs::permissions("in/a.png", mode);
  Expect(0, "apply 80s link.png -o link.png --overwrite-input");
  EXPECT_TRUE(fs::is_symlink("link.png"));
  EXPECT_EQ(Decode("in/a.png"), expected);
  EXPECT_EQ(fs::status("in/a.png").permissions(), mode);
}

TEST_F(BatchTest, WhatCannotWorkIsRefusedBeforeAnythingIsWritten) {
  fs::create_directory("other");
  fs::copy_file("in/a.png", "other/a.png");
  const std::string before = ReadFile("in/b.jpg");
  for (const auto& [arguments, named] :
       {std::pair<std::string, std::string>{"in/a.png other/a.png -o out", "a.png"},
        {"in/a.png in/a.png -o out", "a.png"},
        {"in/a.png -o out.txt", "out.txt"},
        {"in/a.png -o out", "formats"},
        {"in/a.png -o none/out.png", "none"},
        {"in/notes.txt in/a.png -o out", "notes.txt"},
        {"in/a.png in/b.jpg -o in/b.jpg", "b.jpg"},
        {"in -o out --format xyz", "xyz"},
        {"in/a.png -o out.png --format png", "--format"}}) {
    Expect(2, "apply 80s " + arguments, {named});
    EXPECT_THAT(NamesIn("."), ElementsAre("in", "other")) << named;
  }
  EXPECT_EQ(ReadFile("in/b.jpg"), before);
}

TEST_F(BatchTest, BadPicturesAreNamedAndTheOthersDone) {
  std::vector<std::string> told = {"6 of 8", "in/empty.png'", "in/missing.png'"};
  for (const std::string format : {"jpg", "png", "webp", "tif"}) {
    Waves(300, 200).write_to_file(("whole." + format).c_str());
    const std::string bytes = ReadFile("whole." + format), name = "in/short." + format;
    WriteFile(name, bytes.substr(0, bytes.size() * 2 / 3));
    told.push_back(name + "'");
  }
  WriteFile("in/empty.png", "");
  const Outcome outcome = Run("apply 80s in in/missing.png -o out --jobs 2");
  EXPECT_EQ(outcome.code, 1);
  for (const std::string& name : told) EXPECT_THAT(outcome.err, HasSubstr(name));
  EXPECT_THAT(outcome.err, AllOf(Not(HasSubstr("a.png'")), Not(HasSubstr("b.jpg'"))));
  EXPECT_THAT(NamesIn("out"), ElementsAre("a.png", "b.jpg"));
}

class StopTest : public HostTest, public testing::WithParamInterface<int> {};

TEST_P(StopTest, NothingHalfWrittenIsLeft) {
  constexpr int pictures = 40;
  fs::create_directory("in");
  Waves(1200, 900).write_to_file("in/00.png");
  for (int i = 1; i < pictures; ++i)
    fs::create_hard_link("in/00.png", "in/" + std::to_string(100 + i) + ".png");
  const pid_t child = Start("apply 80s in -o out --jobs 2");
  for (int wait = 0; wait < 3000 && !fs::exists("out/00.png"); ++wait)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  kill(child, GetParam());
  const Outcome outcome = Wait(child);
  EXPECT_EQ(outcome.code, 128 + GetParam());
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("stopped"), Not(HasSubstr("cannot"))));
  const std::vector<std::string> written = NamesIn("out");
  EXPECT_GE(written.size(), 1U);
  EXPECT_LT(written.size(), static_cast<std::size_t>(pictures));
  const Decoded expected = LookOf(Decode("in/00.png"));
  for (const std::string& name : written) {
    ASSERT_EQ(fs::path(name).extension(), ".png");
    EXPECT_EQ(Decode("out/" + name), expected) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Signals, StopTest, testing::Values(SIGINT, SIGTERM));

}  // namespace
}  // namespace host_test

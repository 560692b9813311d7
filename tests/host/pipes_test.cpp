// The program between other programs: pipes, and lines for scripts.
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

class PipeTest : public HostTest {
 protected:
  PipeTest() {
    fs::create_directory("in");
    Waves(60, 40).write_to_file("in/a.png");
    Waves(41, 33).write_to_file("in/b.png");
  }

  // A line of a shell, in which $T is the program.
  Outcome Shell(const std::string& line) {
    return Wait(Start("-c \"T=" TINTWERK_PROGRAM "; " + line + "\"", "/bin/sh"));
  }
};

// The lines of a run, by the name of the input.
std::map<std::string, Json> Lines(const std::string& text) {
  std::map<std::string, Json> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    const Json json = Json::parse(line);
    EXPECT_TRUE(
        lines.emplace(fs::path(json.at("input").get<std::string>()).filename(), json).second)
        << line;
  }
  return lines;
}

TEST_F(PipeTest, PicturesGoThroughPipes) {
  const Decoded look = LookOf(Decode("in/a.png"));
  ASSERT_EQ(Shell("cat in/a.png | $T apply 80s - -o - --format png > out.png").err, "");
  EXPECT_EQ(Decode("out.png"), look);
  ASSERT_EQ(Shell("$T apply 80s - -o to.png < in/a.png && $T apply 80s in/a.png -o - --format .tif "
                  "> to.tif")
                .err,
            "");
  EXPECT_EQ(Decode("to.png"), look);
  EXPECT_EQ(Decode("to.tif"), look);
  // Records come along, as from a file.
  WriteFile("side.jpg", SidewaysJpeg(Waves(64, 48)));
  ASSERT_EQ(Shell("$T apply 80s - -o - --format jpg < side.jpg > piped.jpg").code, 0);
  Expect(0, "apply 80s side.jpg -o file.jpg");
  EXPECT_EQ(ReadFile("piped.jpg"), ReadFile("file.jpg"));
  // A file of that name has its own path.
  fs::copy_file("in/b.png", "-");
  Expect(0, "apply 80s ./- -o named.png");
  EXPECT_EQ(Decode("named.png"), LookOf(Decode("in/b.png")));
  EXPECT_THAT(NamesIn("in"), ElementsAre("a.png", "b.png"));
}

TEST_F(PipeTest, WhatIsCutOrFullIsAFailureAndNothingIsSent) {
  const Outcome cut = Shell("head -c 900 in/a.png | $T apply 80s - -o - --format png");
  EXPECT_EQ(cut.code, 1);
  EXPECT_EQ(cut.out, "");
  EXPECT_THAT(cut.err, HasSubstr("cannot read standard input"));
  EXPECT_THAT(Shell("$T apply 80s - -o - --format png < /dev/null").err, HasSubstr("empty file"));
  const Outcome full = Shell("$T apply 80s in/a.png -o - --format png > /dev/full");
  EXPECT_EQ(full.code, 1);
  EXPECT_THAT(full.err, HasSubstr("cannot write standard output"));
  for (const auto& [line, told] : {std::pair<std::string, std::string>{"- -o out/", "no name"},
                                   {"- in/a.png -o out", "single"},
                                   {"in -o - --format png", "single"},
                                   {"in/a.png -o -", "--format"},
                                   {"in/a.png -o - --format xyz", "formats"},
                                   {"in/a.png -o - --format png --json", "not both"}})
    Expect(2, "apply 80s " + line, {told});
  EXPECT_THAT(NamesIn("."), ElementsAre("in"));
}

TEST_F(PipeTest, EachPictureHasALine) {
  WriteFile("in/bad.png", ReadFile("in/a.png").substr(0, 900));
  Waves(40, 30, 3).cast(VIPS_FORMAT_USHORT).write_to_file("in/deep.tif");
  EXPECT_EQ(Run("apply 80s in/a.png -o out/").code, 0);
  const std::string line = "apply 80s in -o out --json --skip-existing --format png";
  std::map<std::string, Json> lines = Lines(Run(line + " --dry-run").out);
  EXPECT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines["a.png"].at("status"), "existed");
  EXPECT_EQ(lines["b.png"].at("status"), "planned");

  const Outcome outcome = Run(line);
  EXPECT_EQ(outcome.code, 1);
  lines = Lines(outcome.out);
  EXPECT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines["a.png"].at("status"), "existed");
  const Json& written = lines["b.png"];
  EXPECT_EQ(written.at("status"), "written");
  EXPECT_EQ(written.at("output"), "out/b.png");
  EXPECT_EQ(written.at("width"), 41);
  EXPECT_EQ(written.at("height"), 33);
  EXPECT_GT(written.at("seconds"), 0.0);
  EXPECT_EQ(lines["bad.png"].at("status"), "failed");
  EXPECT_THAT(lines["bad.png"].at("reason"), HasSubstr("cannot read 'in/bad.png': "));
  EXPECT_THAT(lines["deep.tif"].at("losses").dump(), HasSubstr("8 of the 16 bits"));
}

}  // namespace
}  // namespace host_test

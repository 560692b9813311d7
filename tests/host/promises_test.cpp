// What a hostile user, a full disk and a hurried photographer meet.
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using vips::VImage;

class PromiseTest : public HostTest {
 protected:
  PromiseTest() {
    Waves(60, 40).write_to_file("a.png");
    Waves(60, 40).write_to_file("b.png");
  }

  // Runs the program under a shell that has set limits.
  void ExpectUnder(const std::string& limits, int code, const std::string& line,
                   const std::vector<std::string>& told) {
    Expect(code, "-c \"" + limits + "; exec " TINTWERK_PROGRAM " " + line + "\"", told, "/bin/sh");
  }
};

VImage Sixteen(const VImage& image) {
  return (image * 257.0)
      .cast(VIPS_FORMAT_USHORT)
      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_RGB16));
}

// Three pages, one below another.
VImage Pages(int width, int height) {
  VImage image = Waves(width, 3 * height).copy();
  image.set(VIPS_META_PAGE_HEIGHT, height);
  return image;
}

TEST_F(PromiseTest, EveryVerbKeepsItsInputsAndWhatIsNoFile) {
  fs::create_symlink("a.png", "link.png");
  mkfifo("fifo.png", 0600);
  const std::string a = ReadFile("a.png"), b = ReadFile("b.png");
  for (const std::string verb :
       {"apply 80s a.png", "filter blur a.png", "blend screen a.png b.png"})
    for (const std::string output : {"a.png", "link.png", "./a.png", "fifo.png"})
      EXPECT_EQ(Run(verb + " -o " + output).code, 2) << verb << ' ' << output;
  for (const std::string line :
       {"blend screen a.png b.png -o b.png --overwrite-input",  // the upper one is never replaced
        "scene -o fifo.png", "cube export 80s -o fifo.png"})
    EXPECT_EQ(Run(line).code, 2) << line;
  EXPECT_EQ(ReadFile("a.png"), a);
  EXPECT_EQ(ReadFile("b.png"), b);
  EXPECT_TRUE(fs::is_fifo("fifo.png"));

  // What may not be written is refused; a link to nothing makes what it names.
  fs::permissions("b.png", fs::perms::owner_read);
  Expect(2, "apply 80s a.png -o b.png", {"read-only"});
  fs::create_symlink("later.png", "dangling.png");
  Expect(0, "apply 80s a.png -o dangling.png");
  EXPECT_TRUE(fs::is_symlink("dangling.png"));
  EXPECT_TRUE(fs::is_regular_file("later.png"));
}

TEST_F(PromiseTest, AFailedWriteEndsEveryFormatAtOnce) {
  Waves(700, 500).write_to_file("large.png");
  for (const std::string format :
       {"jpg", "png", "webp", "tif", "gif", "jp2", "jxl", "avif", "heic", "ppm"})
    ExpectUnder("ulimit -f 8", 1, "apply 80s large.png -o out." + format,
                {"out." + format, "file too large"});
  EXPECT_THAT(NamesIn("."), ElementsAre("a.png", "b.png", "large.png"));
}

TEST_F(PromiseTest, TheSecondSignalEndsWhateverHangs) {
  mkfifo("pipe.png", 0600);
  const pid_t child = Start("apply 80s pipe.png -o out.png");
  const auto pause = [] { std::this_thread::sleep_for(std::chrono::milliseconds(300)); };
  pause();
  kill(child, SIGINT);
  pause();
  kill(child, SIGTERM);
  EXPECT_EQ(Wait(child).code, -1);  // by the signal
  EXPECT_FALSE(fs::exists("out.png"));
}

TEST_F(PromiseTest, LeftoversOfDeadRunsGo) {
  fs::create_directory("out");
  VImage::gaussnoise(3000, 2000).write_to_file("large.jpg");
  const pid_t child = Start("apply 80s large.jpg -o out/large.png --effort 9");
  for (int wait = 0; wait < 3000 && NamesIn("out").empty(); ++wait)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  kill(child, SIGKILL);
  Wait(child);
  ASSERT_EQ(NamesIn("out").size(), 1U);
  const std::string dead = NamesIn("out").front(), process = std::to_string(child) + "-";
  ASSERT_THAT(dead, AllOf(StartsWith(".tintwerk-"), HasSubstr(process), EndsWith(".part")));

  // What a living process writes stays, and what another machine has written to of late.
  std::string living = dead, foreign = dead;
  living.replace(living.rfind(process), process.size(), std::to_string(getpid()) + "-");
  char& digit = foreign[std::strlen(".tintwerk-")];
  digit = digit == '0' ? '1' : '0';
  const std::string old = foreign.substr(0, foreign.rfind('-')) + "-old.part";
  for (const std::string& name : {living, foreign, old}) WriteFile("out/" + name, "half");
  fs::last_write_time("out/" + old, fs::file_time_type::clock::now() - std::chrono::hours(25));
  Expect(0, "apply 80s a.png -o out/");
  std::vector<std::string> left{"a.png", living, foreign};
  std::ranges::sort(left);
  EXPECT_EQ(NamesIn("out"), left);
}

TEST_F(PromiseTest, PagesAndFramesAreAllWorked) {
  for (const std::string name : {"p.tif", "p.webp", "p.gif"}) {
    Pages(40, 30).write_to_file(name.c_str());
    Expect(0, "apply 80s " + name + " -o out-" + name);
    const VImage result =
        VImage::new_from_file(("out-" + name).c_str(), VImage::option()->set("n", -1));
    EXPECT_EQ(result.height(), 90) << name;
    EXPECT_EQ(vips_image_get_n_pages(result.get_image()), 3) << name;
  }
  const VImage all = VImage::new_from_file("out-p.tif", VImage::option()->set("n", -1));
  for (int page = 0; page < 3; ++page) {  // each as if it were alone
    VImage::new_from_file("p.tif", VImage::option()->set("page", page)).write_to_file("one.png");
    all.crop(0, 30 * page, 40, 30).write_to_file("other.png");
    EXPECT_EQ(Decode("other.png"), LookOf(Decode("one.png"))) << page;
  }
  Expect(0, "apply 80s p.tif -o first.png", {"all but the first of its 3 pages"});
  VImage::new_from_file("p.tif").write_to_file("one.png");
  EXPECT_EQ(Decode("first.png"), LookOf(Decode("one.png")));
}

TEST_F(PromiseTest, AnOriginalIsNotReplacedByLess) {
  Sixteen(Waves(30, 20)).write_to_file("deep.png");
  const std::string before = ReadFile("deep.png");
  Expect(0, "apply 80s deep.png -o copy.png", {"8 of the 16 bits"});
  Expect(1, "apply 80s deep.png -o deep.png --overwrite-input", {"8 of the 16", "--allow-loss"});
  EXPECT_EQ(ReadFile("deep.png"), before);
  Expect(0, "apply 80s deep.png -o deep.png --overwrite-input --allow-loss");
  EXPECT_EQ(ReadFile("deep.png"), ReadFile("copy.png"));
}

TEST_F(PromiseTest, FiltersAndBlendsTakeManyPictures) {
  fs::create_directory("in");
  for (const char* name : {"in/1.png", "in/2.png"}) Waves(50, 30).write_to_file(name);
  Expect(0, "filter blur in a.png -o blurred --jobs 2");
  EXPECT_THAT(NamesIn("blurred"), ElementsAre("1.png", "2.png", "a.png"));
  Expect(0, "blend multiply in b.png -o blended");
  EXPECT_THAT(NamesIn("blended"), ElementsAre("1.png", "2.png"));
  Expect(0, "filter blur in/1.png -o one.png");
  EXPECT_EQ(Decode("one.png"), Decode("blurred/1.png"));
}

TEST_F(PromiseTest, NamesOfEveryKindAreTaken) {
  for (const std::string folder : {"[2023]", "[a,b]", "with space", "-dash"}) {
    fs::create_directory(folder);
    fs::copy_file("a.png", folder + "/a.png");
    Expect(0, "apply 80s \"" + std::string(folder[0] == '-' ? "./" : "") + folder + "\" -o \"out-" +
                  folder + "\"");
    EXPECT_TRUE(fs::exists("out-" + folder + "/a.png")) << folder;
  }
  Expect(2, "apply 80s \"a\nb.png\" -o c.png", {"'a\\x0ab.png'"});
}

TEST_F(PromiseTest, FormatsWithoutAWriterAreReadAndRawFilesNamed) {
  // 2 x 1 pixels of 24 bits, blue first.
  const unsigned char bitmap[] = {'B', 'M', 62, 0, 0, 0, 0,  0,  0,  0,   54,  0,   0,  0, 40, 0,
                                  0,   0,   2,  0, 0, 0, 1,  0,  0,  0,   1,   0,   24, 0, 0,  0,
                                  0,   0,   8,  0, 0, 0, 0,  0,  0,  0,   0,   0,   0,  0, 0,  0,
                                  0,   0,   0,  0, 0, 0, 10, 20, 30, 200, 150, 100, 0,  0};
  fs::create_directory("in");
  WriteFile("in/x.bmp", {std::begin(bitmap), std::end(bitmap)});
  WriteFile("in/y.dng", ReadFile("a.png"));
  Expect(0, "apply 80s in/x.bmp -o x.png --strength 0");
  EXPECT_THAT(Decode("x.png").bytes, ElementsAre(30, 20, 10, 100, 150, 200));
  Expect(1, "apply 80s in -o out --format png", {"y.dng", "raw", "1 of 2"});
  EXPECT_THAT(NamesIn("out"), ElementsAre("x.png"));
  Expect(2, "apply 80s in -o out2", {"no pictures in the folder"});
}

TEST_F(PromiseTest, ReasonsBelongToTheirPictures) {
  fs::create_directory("in");
  Waves(300, 200).write_to_file("whole.jpg");
  Waves(300, 200).write_to_file("whole.png");
  const std::string jpeg = ReadFile("whole.jpg"), png = ReadFile("whole.png");
  std::vector<std::string> told;
  for (int i = 0; i < 12; ++i) {
    const std::string name = "in/" + std::to_string(100 + i);
    WriteFile(name + ".jpg", jpeg.substr(0, jpeg.size() / 2));
    WriteFile(name + ".png", png.substr(0, png.size() / 2));
    WriteFile(name + ".gif", "");
    told.insert(told.end(),
                {name + ".jpg': VipsJpeg: ", name + ".png': ", name + ".gif': empty file"});
  }
  const Outcome outcome = Run("apply 80s in -o out --jobs 4");
  EXPECT_EQ(outcome.code, 1);
  for (const std::string& line : told) EXPECT_THAT(outcome.err, HasSubstr(line));
  EXPECT_THAT(outcome.err, testing::Not(HasSubstr(".png': VipsJpeg")));
  EXPECT_THAT(outcome.err, testing::Not(HasSubstr("unknown")));
}

TEST_F(PromiseTest, ResultsLieBesideTheirOriginals) {
  fs::create_directory("in");
  fs::copy_file("a.png", "in/a.png");
  EXPECT_THAT(Run("apply 80s in --suffix -toned --dry-run").out,
              HasSubstr("'in/a.png' -> 'in/a-toned.png'"));
  EXPECT_THAT(NamesIn("in"), ElementsAre("a.png"));
  for (int i = 0; i < 2; ++i) Run("apply 80s in --suffix -toned");  // not its own results again
  EXPECT_THAT(NamesIn("in"), ElementsAre("a-toned.png", "a.png"));
  Expect(2, "apply 80s in", {"--suffix"});
}

TEST_F(PromiseTest, LooksFollowOneAnother) {
  Expect(0, "apply 80s a.png -o once.png");
  Expect(0, "apply HuiYi once.png -o twice.png");
  Expect(0, "apply 80s a.png --then HuiYi -o both.png");
  EXPECT_EQ(Decode("both.png"), Decode("twice.png"));
  Expect(2, "apply 80s --then huiyu a.png -o x.png", {"'Effect_HuiYi'"});
}

TEST_F(PromiseTest, SizesTimesAndQualityAreTheUsers) {
  Expect(1, "apply 80s a.png -o x.png --max-pixels 2399", {"60 x 40", "--max-pixels"});
  Waves(400, 300).write_to_file("large.png");
  Expect(0, "apply 80s large.png -o high.jpg");
  Expect(0, "apply 80s large.png -o low.jpg --quality 20 --progressive");
  EXPECT_LT(fs::file_size("low.jpg"), fs::file_size("high.jpg") / 2);
  const auto old = fs::file_time_type::clock::now() - std::chrono::hours(1000);
  fs::last_write_time("a.png", old);
  Expect(0, "apply 80s a.png -o a.png --overwrite-input --keep-times");
  EXPECT_EQ(fs::last_write_time("a.png"), old);
}

}  // namespace
}  // namespace host_test

#include "tintwerk/cube_container.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "lookup/cubes.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::Picture;

// What a container holds, 0 x 0 if nothing; the size that was there before must not stay.
Picture Load(const std::filesystem::path& file) {
  int width = -1, height = -1;
  unsigned char* const block = CTrilinear::LoadCryptFile(test::PathOf(file), width, height);
  Picture picture{width, height, {}};
  if (block) picture.bytes.assign(block, block + std::size_t{4} * width * height);
  CTrilinear::DeleteValue(block);
  return picture;
}
const Picture kEmpty = {0, 0, {}};

void SetLength(Bytes& container, std::size_t length) {
  for (int i = 0; i < 4; ++i) container[i] = static_cast<unsigned char>(length >> 8 * i);
}

TEST(CubeContainer, ScramblesWordsByTheKeyAndTailsByItsHighBytes) {
  for (const Bytes& key : {Bytes{0x5d},
                           {0x7e, 0x5d},
                           {0x7e, 0x5d, 0x21},
                           {0xc6, 0x21, 0x7e, 0x5d},
                           {0xc6, 0x21, 0x7e, 0x5d, 0xc6, 0x21, 0x7e, 0x5d, 0x7e, 0x5d, 0x21}}) {
    const Bytes random = test::RandomBytes(key.size(), 3);
    Bytes bytes = random;
    EXPECT_TRUE(TrilinearInternals::Scramble(bytes.data(), int(bytes.size())));
    for (std::size_t i = 0; i < key.size(); ++i) EXPECT_EQ(bytes[i], random[i] ^ key[i]) << i;
  }
  unsigned char byte = 7;
  EXPECT_FALSE(TrilinearInternals::Scramble(&byte, 0));
  EXPECT_FALSE(TrilinearInternals::Scramble(&byte, -4));
  EXPECT_FALSE(TrilinearInternals::Scramble(nullptr, 4));
  EXPECT_EQ(byte, 7);
}

TEST(CubeContainer, GivesItsPictureWithMoreOrLessBehindIt) {
  const test::TemporaryFolder folder;
  const Picture picture = test::RandomPicture(13, 7);
  Bytes png = test::EncodePng(picture);
  for (int tail = 0; tail < 4; ++tail, png.push_back(0)) {
    Bytes container = PackCube(png);
    EXPECT_EQ(container.size(), png.size() + 4);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(container[i], png.size() >> 8 * i & 255);
    EXPECT_EQ(Load(folder.Write("cube", container)), picture);
    container.resize(container.size() + 5, 1);
    EXPECT_EQ(Load(folder.Write("cube", container)), picture);
    // A length beyond the file takes what is there, scrambled as far as the length has words.
    for (const std::size_t missing : {1, 2, 3, 50, 0x7ffff000}) {
      Bytes payload(png.size() + std::min<std::size_t>(missing, 50));
      std::copy(png.begin(), png.end(), payload.begin());
      container = PackCube(payload);
      container.resize(4 + png.size());
      SetLength(container, png.size() + missing);
      EXPECT_EQ(Load(folder.Write("cube", container)), picture) << tail << " " << missing;
    }
  }
  const Picture smooth = test::SmoothPicture(32, 20);
  const Picture jpeg = Load(folder.Write("cube", PackCube(test::EncodeJpeg(smooth))));
  EXPECT_LE(test::LargestDifference(jpeg.bytes, smooth.bytes), 4);
}

TEST(CubeContainer, DamagedFilesGiveNothing) {
  const test::TemporaryFolder folder;
  const auto load = [&](const Bytes& file) { return Load(folder.Write("cube", file)); };
  const Bytes png = test::EncodePng(test::RandomPicture(6, 6));
  const Bytes container = PackCube(png);
  for (std::size_t size = 0; size < container.size(); ++size) {
    Bytes cut = container;
    cut.resize(size);
    EXPECT_EQ(load(cut), kEmpty) << "cut to " << size;
  }
  for (std::size_t length : {0u, 1u, 4u, unsigned(png.size()) - 1, ~0u, 1u << 31, ~3u}) {
    Bytes file = container;
    SetLength(file, length);
    EXPECT_EQ(load(file), kEmpty) << length;
  }
  for (std::size_t i = 4; i < container.size(); ++i) {
    Bytes file = container;
    file[i] ^= 0x10;
    EXPECT_EQ(load(file), kEmpty) << "at " << i;
  }
  Bytes plain = png;
  plain.insert(plain.begin(), container.begin(), container.begin() + 4);
  EXPECT_EQ(load(plain), kEmpty) << "not scrambled";

  const auto pipe = folder.Path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const auto& path : {folder.Path() / "absent", folder.Path(), pipe})
    EXPECT_EQ(Load(path), kEmpty) << path;
  // What lies behind the picture does not count, but no picture is as large as this length.
  Bytes words = png;
  while (words.size() % 4 != 0) words.push_back(0);
  for (const bool counted : {false, true}) {
    Bytes file = PackCube(words);
    if (counted) SetLength(file, (1u << 28) + 1);
    const auto huge = folder.Write("huge", file);
    std::filesystem::resize_file(huge, std::uintmax_t{3} << 30);  // takes no room on the disk
    EXPECT_EQ(Load(huge) == kEmpty, counted);
  }
}

}  // namespace
}  // namespace tintwerk

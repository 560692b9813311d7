#include "tintwerk/trilinear.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>

#include "lookup/cubes.h"
#include "support/operations.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::CubeKind;
using test::kCube4x4;
using test::kCube8x8;
using test::kCubeNew;
using test::Picture;

constexpr CubeKind kKinds[] = {kCube4x4, kCubeNew, kCube8x8};

bool Map(const CubeKind& kind, const std::filesystem::path& file, Picture& image) {
  return kind.effect(test::PathOf(file), image.bytes.data(), image.width, image.height);
}

// Random pixels among which every value of each channel meets the ends of the others.
Picture ManyColours(int width, int height, unsigned seed) {
  Picture image = test::RandomPicture(width, height, seed);
  for (int i = 0; i < 256 * 12 && i < width * height; ++i) {
    unsigned char* const pixel = &image.bytes[std::size_t{4} * i];
    for (int c = 0; c < 3; ++c) pixel[c] = static_cast<unsigned char>(i / 768 & 1 << c ? 255 : 0);
    pixel[i / 256 % 3] = static_cast<unsigned char>(i);
  }
  return image;
}

TEST(Trilinear, MatchesItsDefinitionAtAnyAlignmentOnEveryMachine) {
  const test::TemporaryFolder folder;
  unsigned seed = 1;
  for (const CubeKind& kind : kKinds) {
    Picture cube = test::RandomCube(kind, ++seed);
    // Steep cells: the largest differences between nodes.
    for (std::size_t i = 0; i < cube.bytes.size() / 2; ++i)
      cube.bytes[i] = cube.bytes[i] & 1 ? 255 : 0;
    const CString file = test::PathOf(test::WriteCube(folder, "cube", cube));
    for (auto [w, h] : {std::pair{1, 1}, {3, 1}, {5, 1}, {8, 1}, {31, 1}, {1, 17}, {131, 77}}) {
      const Picture image = ManyColours(w, h, ++seed);
      const Picture expected = test::PlainLookup(kind, cube, image);
      const std::ptrdiff_t start = 1 + 5 * (w % 7);
      Bytes before(image.bytes.size() + 128, 0xCD), after = before;
      std::copy(image.bytes.begin(), image.bytes.end(), before.begin() + start);
      std::copy(expected.bytes.begin(), expected.bytes.end(), after.begin() + start);
      test::OnEveryMachine([&, w = w, h = h] {
        Bytes memory = before;
        ASSERT_TRUE(kind.effect(file, &memory[std::size_t(start)], w, h));
        EXPECT_TRUE(memory == after) << w << " x " << h << " from " << start;
      });
    }
  }
}

// Nodes that are their index times a step.
TEST(Trilinear, IdentityCubesLeanDownward) {
  using Pins = std::map<int, int>;
  for (const auto& [kind, step, pins] : {std::tuple{kCubeNew, 17, Pins{{100, 99}, {255, 255}}},
                                         {kCube4x4, 16, Pins{{16, 15}, {240, 239}, {255, 240}}},
                                         {kCube8x8, 4, Pins{{4, 3}, {255, 252}}}}) {
    Picture cube = test::RandomCube(kind, 1);
    for (int i = 0; i < kind.levels * kind.levels * kind.levels; ++i) {
      const int node[] = {i % kind.levels, i / kind.levels % kind.levels,
                          i / kind.levels / kind.levels};  // blue, green, red
      for (int c = 0; c < 3; ++c)
        test::NodeOf(kind, cube, node[2], node[1], node[0])[c] =
            static_cast<unsigned char>(step * node[c]);
    }
    const auto lookup = kind.levels == 16 ? TrilinearInternals::Lut16 : TrilinearInternals::Lut64;
    for (auto [value, mapped] : pins) {
      Bytes pixel(4, static_cast<unsigned char>(value)), expected = pixel;
      std::fill_n(expected.begin(), 3, static_cast<unsigned char>(mapped));
      lookup(pixel.data(), cube.bytes.data(), kind.scale, 0, 3);
      EXPECT_EQ(pixel, expected) << "step " << step;
    }
  }
}

TEST(Trilinear, RefusesWhatItCannotWorkOnAndLeavesTheImage) {
  const test::TemporaryFolder folder;
  for (const CubeKind& kind : kKinds) {
    const CString good = test::PathOf(test::WriteCube(folder, "good", test::RandomCube(kind, 1)));
    const Picture pixel = test::RandomPicture(1, 1, 5);
    Picture image = pixel;
    EXPECT_FALSE(kind.effect(good, nullptr, 1, 1));
    EXPECT_FALSE(kind.effect(good, image.bytes.data(), 1 << 16, 1 << 15));
    for (auto [w, h] : {std::pair{0, 0}, {0, 5}, {-1, -1}, {-7, 3}}) {
      EXPECT_TRUE(kind.effect(good, image.bytes.data(), w, h));
      EXPECT_FALSE(kind.effect(CString(L"absent"), image.bytes.data(), w, h));
    }
    EXPECT_FALSE(Map(kind, folder.Path() / "absent", image));
    const int side = kind.Side(), other = 80 - side / 8;  // of the other kind
    for (auto [w, h] : {std::pair{side - 1, side},
                        {side, side - 1},
                        {side + 1, side},
                        {2 * side, side / 2},
                        {other, other}})
      EXPECT_FALSE(Map(kind, test::WriteCube(folder, "bad", test::RandomPicture(w, h)), image));
    EXPECT_TRUE(image == pixel);
  }
}

TEST(Trilinear, SinglePixelsTakeTheChannelsAskedFor) {
  for (const CubeKind& kind : kKinds) {
    const auto lookup = kind.levels == 16 ? TrilinearInternals::Lut16 : TrilinearInternals::Lut64;
    Picture cube = test::RandomCube(kind, 11);
    const Picture image = ManyColours(65, 50, 12);
    const Picture mapped = test::PlainLookup(kind, cube, image);
    for (auto [first, end] : {std::pair{0, 3}, {1, 2}, {2, 3}, {0, 1}, {2, 2}, {3, 1}, {-5, 9}}) {
      Picture result = image, expected = image;
      for (std::size_t i = 0; i < image.bytes.size(); ++i) {
        if (i % 4 == 0) lookup(&result.bytes[i], cube.bytes.data(), kind.scale, first, end);
        if (i % 4 < 3 && int(i % 4) >= first && int(i % 4) < end)
          expected.bytes[i] = mapped.bytes[i];
      }
      EXPECT_TRUE(result == expected) << first << " to " << end;
    }
    // Scales that leave the cube stay on its faces.
    for (float scale : {2.0f, 1e30f, std::numeric_limits<float>::infinity(), -1.0f, NAN}) {
      unsigned char pixel[4] = {255, 0, 200, 9};
      lookup(pixel, cube.bytes.data(), scale, 0, 3);
      const int top = scale > 0 ? kind.levels - 1 : 0;
      for (int c = 0; c < 3; ++c)
        EXPECT_EQ(pixel[c], test::NodeOf(kind, cube, top, 0, top)[c]) << scale;
    }
  }
}

}  // namespace
}  // namespace tintwerk

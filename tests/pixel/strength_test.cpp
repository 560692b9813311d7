#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "maps/map_image.h"
#include "support/image_files.h"
#include "tintwerk/effect.h"

namespace tintwerk {
namespace {

TEST(Maps, ThreeStripsReadEachChannelInItsOwnRow) {
  const test::Picture map = test::RandomPicture(256, 3);
  const TriStripMap strips(map.bytes.data());
  for (int plane : {kPlaneR, kPlaneG, kPlaneB})
    for (int v : {0, 100, 255})
      EXPECT_EQ(strips(v, plane), map.bytes[1024 * (2 - plane) + v * 4 + plane]);
}

TEST(RadialKey, KnownPlaces) {
  struct Place {
    int width, height, x, y, key;
  };
  for (const auto& [width, height, x, y, key] : {Place{400, 300, 200, 150, 0},
                                                 {400, 300, 0, 0, 255},
                                                 {400, 300, 0, 150, 255},
                                                 {400, 300, 100, 150, 63},  // a quarter, truncated
                                                 {1, 5, 0, 2, 255},
                                                 {6, 6, 5, 5, 226},
                                                 {7, 7, 6, 6, 255}}) {
    const RadialKey radial(width, height);
    EXPECT_EQ(radial.At(radial.Row(y), x), key) << width << ": " << x << ", " << y;
  }
}

TEST(Strength, MixesInDoubleAndTruncates) {
  const auto mix = CEffect::Effect_AlphaAdJust;
  // Every pair of values: at whole percents many sums lie at an integer or a hair below it.
  constexpr int kWidth = 257, kHeight = 256;
  test::Picture destination = test::RandomPicture(kWidth, kHeight, 1),
                source = test::RandomPicture(kWidth, kHeight, 2);
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x)
      for (int c = 0; c < 3; ++c) {
        const int i = 4 * (kWidth * y + x) + c;
        destination.bytes[i] = static_cast<unsigned char>(x + 85 * c);
        source.bytes[i] = static_cast<unsigned char>(y);
      }
  std::vector<double> opacities = {-1, 1.0 / 3, 0.999, 1e-300, 2, std::nan("")};
  for (int percent = 0; percent <= 100; ++percent) opacities.push_back(percent / 100.0);
  for (double opacity : opacities) {
    test::Picture mixed = destination, expected = destination;
    const double o = opacity > 0 ? std::fmin(opacity, 1.0) : 0.0;
    for (std::size_t i = 0; i < expected.bytes.size(); ++i)
      if (i % 4 != 3)
        expected.bytes[i] =
            static_cast<unsigned char>(source.bytes[i] * o + destination.bytes[i] * (1 - o));
    ASSERT_EQ(mix(mixed.bytes.data(), source.bytes.data(), kWidth, kHeight, opacity), 1);
    ASSERT_TRUE(mixed.bytes == expected.bytes) << opacity;
  }
  unsigned char pixel[4] = {};
  EXPECT_EQ(mix(nullptr, pixel, 1, 1, 1), 0);
  EXPECT_EQ(mix(pixel, nullptr, 1, 1, 1), 0);
  EXPECT_EQ(mix(pixel, pixel, -1, 4, 1), 1);
  EXPECT_EQ(mix(pixel, pixel, 65536, 65536, 1), 0);
}

}  // namespace
}  // namespace tintwerk

#include <gtest/gtest.h>

#include <cmath>

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
  const test::Picture destination = test::RandomPicture(23, 7, 1),
                      source = test::RandomPicture(23, 7, 2);
  const auto mix = CEffect::Effect_AlphaAdJust;
  for (double opacity : {-1.0, 0.0, 0.1, 1.0 / 3, 0.5, 0.999, 1.0, 2.0, std::nan("")}) {
    test::Picture mixed = destination;
    ASSERT_EQ(mix(mixed.bytes.data(), source.bytes.data(), 23, 7, opacity), 1);
    const double o = opacity > 0 ? std::fmin(opacity, 1.0) : 0.0;
    for (std::size_t i = 0; i < mixed.bytes.size(); ++i) {
      const double sum = source.bytes[i] * o + destination.bytes[i] * (1 - o);
      ASSERT_EQ(mixed.bytes[i], i % 4 == 3 ? destination.bytes[i] : int(sum)) << opacity;
    }
  }
  unsigned char pixel[4] = {};
  EXPECT_EQ(mix(nullptr, pixel, 1, 1, 1), 0);
  EXPECT_EQ(mix(pixel, nullptr, 1, 1, 1), 0);
  EXPECT_EQ(mix(pixel, pixel, -1, 4, 1), 1);
  EXPECT_EQ(mix(pixel, pixel, 65536, 65536, 1), 0);
}

}  // namespace
}  // namespace tintwerk

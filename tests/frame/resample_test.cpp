#include "frame/resample.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/operations.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::Picture;

Picture RandomPicture(int width, int height, bool opaque, unsigned seed) {
  Picture picture = test::RandomPicture(width, height, seed);
  for (std::size_t i = 3; i < picture.bytes.size(); i += 4)
    if (opaque || picture.bytes[i] < 80) picture.bytes[i] = opaque ? 255 : 0;
  return picture;
}

bool Scale(const Picture& source, RectF from, unsigned char* target, int width, int height,
           RectF to) {
  return Resample(ResampleKernel::Bicubic, {source.bytes.data(), source.width, source.height}, from,
                  target, width, height, to);
}

Picture Scaled(const Picture& source, int width, int height) {
  const Bytes blank(std::size_t{4} * width * height);
  return {width, height, test::Guarded(blank, [&](unsigned char* target) {
            EXPECT_TRUE(Scale(source, {0, 0, float(source.width), float(source.height)}, target,
                              width, height, {0, 0, float(width), float(height)}));
          })};
}

double CatmullRom(double x) {
  x = std::abs(x);
  if (x < 1) return 1.5 * x * x * x - 2.5 * x * x + 1;
  return x < 2 ? -0.5 * x * x * x + 2.5 * x * x - 4 * x + 2 : 0;
}

// One pixel by its definition: a sum over both axes at once, in double, edges reflected step by
// step.
std::array<double, 4> PlainPixel(Picture& source, int w, int h, int x, int y) {
  const double rx = double(source.width) / w, ry = double(source.height) / h;
  const double wx = std::max(1.0, rx), wy = std::max(1.0, ry);
  const double cx = (x + 0.5) * rx - 0.5, cy = (y + 0.5) * ry - 0.5;
  const auto reflect = [](int i, int n) {
    while (i < 0 || i >= n) i = i < 0 ? -1 - i : 2 * n - 1 - i;
    return i;
  };
  std::array<double, 4> sums = {};
  double total = 0;
  for (int j = int(std::floor(cy - 2 * wy)); j <= std::ceil(cy + 2 * wy); ++j)
    for (int i = int(std::floor(cx - 2 * wx)); i <= std::ceil(cx + 2 * wx); ++i) {
      const double weight = CatmullRom((i - cx) / wx) * CatmullRom((j - cy) / wy);
      const unsigned char* p = source.At(reflect(i, source.width), reflect(j, source.height));
      for (int c = 0; c < 4; ++c) sums[c] += weight * p[3] * (c < 3 ? p[c] : 1);
      total += weight;
    }
  const double alpha = sums[3] / total;
  for (int c = 0; c < 3; ++c)
    sums[c] = alpha < 0.5 ? 0 : std::clamp(sums[c] / total / alpha, 0.0, 255.0);
  sums[3] = std::clamp(alpha, 0.0, 255.0);
  return sums;
}

TEST(Resample, MatchesItsDefinitionAtOddSizesAndRatios) {
  struct Case {
    int sw, sh, w, h;
  };
  for (bool opaque : {true, false})
    for (const auto& [sw, sh, w, h] : {Case{1, 1, 5, 7},
                                       {2, 3, 9, 4},
                                       {17, 9, 40, 31},
                                       {23, 31, 22, 30},
                                       {64, 48, 7, 5},
                                       {101, 3, 10, 50},
                                       {3, 101, 50, 1},
                                       {300, 2, 1, 1},
                                       {40, 4000, 40, 3}}) {  // many taps make narrow tiles
      Picture source = RandomPicture(sw, sh, opaque, sw * 7 + h);
      Picture scaled = Scaled(source, w, h);
      for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
          const auto plain = PlainPixel(source, w, h, x, y);
          // Where hardly any coverage is left, a colour is a quotient of two small numbers.
          const double tolerance = 0.51 + (plain[3] < 8 ? 0.5 : 0.0);
          for (int c = 0; c < 4; ++c) {
            if (c < 3 && std::abs(plain[3] - 0.5) < 1e-3) continue;
            ASSERT_NEAR(scaled.At(x, y)[c], plain[c], tolerance)
                << sw << "x" << sh << " to " << w << "x" << h << " at " << x << "," << y
                << " channel " << c << " opaque " << opaque;
          }
        }
    }
}

TEST(Resample, GivesTheSameBytesOnEveryMachine) {
  for (bool opaque : {true, false})
    for (auto [w, h] : {std::pair{333, 201}, {31, 19}}) {
      const Picture source = RandomPicture(131, 77, opaque, 5);
      const Picture once = Scaled(source, w, h);
      test::OnEveryMachine([&, w = w, h = h] { EXPECT_TRUE(Scaled(source, w, h) == once); });
    }
}

TEST(Resample, RefusesEmptyAndUnusableRectangles) {
  const Picture source = test::RandomPicture(1, 1);
  unsigned char target[4] = {1, 2, 3, 4};
  constexpr RectF kWhole{0, 0, 1, 1};
  for (const RectF& rect :
       {RectF{0, 0, 0, 1}, {0, 0, 1, -1}, {0, 0, NAN, 1}, {INFINITY, 0, 1, 1}}) {
    EXPECT_FALSE(Scale(source, rect, target, 1, 1, kWhole));
    EXPECT_FALSE(Scale(source, kWhole, target, 1, 1, rect));
  }
  EXPECT_FALSE(Scale(source, kWhole, target, 0, 1, kWhole));
  EXPECT_EQ(target[0], 1);
}

}  // namespace
}  // namespace tintwerk

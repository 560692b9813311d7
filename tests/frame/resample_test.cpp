#include "frame/resample.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <omp.h>

#include <cmath>
#include <random>
#include <vector>

namespace tintwerk {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes RandomPicture(int width, int height, bool opaque, unsigned seed) {
  std::mt19937 random(seed);
  Bytes picture(std::size_t{4} * width * height);
  for (std::size_t i = 0; i < picture.size(); ++i) {
    picture[i] = static_cast<unsigned char>(random());
    if (i % 4 == 3) picture[i] = opaque ? 255 : random() % 3 == 0 ? 0 : picture[i];
  }
  return picture;
}

// Scales whole pictures, with guard bytes behind the target.
Bytes Scale(const Bytes& source, int sourceWidth, int sourceHeight, int width, int height,
            ResampleKernel kernel = ResampleKernel::Bicubic) {
  Bytes target(std::size_t{4} * width * height + 64, 0xCD);
  EXPECT_TRUE(Resample(kernel, {source.data(), sourceWidth, sourceHeight},
                       {0, 0, float(sourceWidth), float(sourceHeight)}, target.data(), width,
                       height, {0, 0, float(width), float(height)}));
  for (std::size_t i = target.size() - 64; i < target.size(); ++i) EXPECT_EQ(target[i], 0xCD);
  target.erase(target.end() - 64, target.end());
  return target;
}

double CatmullRom(double x) {
  x = std::abs(x);
  if (x < 1) return 1.5 * x * x * x - 2.5 * x * x + 1;
  if (x < 2) return -0.5 * x * x * x + 2.5 * x * x - 4 * x + 2;
  return 0;
}

// One pixel by its definition: a sum over both axes at once, in double, edges reflected step by
// step.
void PlainPixel(const Bytes& source, int sw, int sh, int w, int h, int x, int y, double out[4]) {
  const double rx = double(sw) / w, ry = double(sh) / h;
  const double wx = std::max(1.0, rx), wy = std::max(1.0, ry);
  const double cx = (x + 0.5) * rx - 0.5, cy = (y + 0.5) * ry - 0.5;
  auto reflect = [](int i, int n) {
    while (i < 0 || i >= n) i = i < 0 ? -1 - i : 2 * n - 1 - i;
    return i;
  };
  double sums[4] = {}, total = 0;
  for (int j = int(std::floor(cy - 2 * wy)); j <= std::ceil(cy + 2 * wy); ++j)
    for (int i = int(std::floor(cx - 2 * wx)); i <= std::ceil(cx + 2 * wx); ++i) {
      const double weight = CatmullRom((i - cx) / wx) * CatmullRom((j - cy) / wy);
      const unsigned char* p = &source[4 * (std::size_t(reflect(j, sh)) * sw + reflect(i, sw))];
      for (int c = 0; c < 3; ++c) sums[c] += weight * p[c] * p[3];
      sums[3] += weight * p[3];
      total += weight;
    }
  const double alpha = sums[3] / total;
  for (int c = 0; c < 3; ++c)
    out[c] = alpha < 0.5 ? 0 : std::clamp(sums[c] / total / alpha, 0.0, 255.0);
  out[3] = std::clamp(alpha, 0.0, 255.0);
}

TEST(Resample, MatchesItsDefinitionAtOddSizesAndRatios) {
  struct Case {
    int sw, sh, w, h;
  };
  for (bool opaque : {true, false})
    for (const Case& c : {Case{1, 1, 5, 7},
                          {2, 3, 9, 4},
                          {17, 9, 40, 31},
                          {23, 31, 22, 30},
                          {64, 48, 7, 5},
                          {101, 3, 10, 50},
                          {3, 101, 50, 1},
                          {300, 2, 1, 1}}) {
      const Bytes source = RandomPicture(c.sw, c.sh, opaque, c.sw * 7 + c.h);
      const Bytes scaled = Scale(source, c.sw, c.sh, c.w, c.h);
      for (int y = 0; y < c.h; ++y)
        for (int x = 0; x < c.w; ++x) {
          double plain[4];
          PlainPixel(source, c.sw, c.sh, c.w, c.h, x, y, plain);
          // Where hardly any coverage is left, a colour is a quotient of two small numbers.
          const double tolerance = 0.51 + (plain[3] < 8 ? 0.5 : 0.0);
          for (int ch = 0; ch < 4; ++ch) {
            if (ch < 3 && std::abs(plain[3] - 0.5) < 1e-3) continue;
            ASSERT_NEAR(scaled[4 * (y * c.w + x) + ch], plain[ch], tolerance)
                << c.sw << "x" << c.sh << " to " << c.w << "x" << c.h << " at " << x << "," << y
                << " channel " << ch << " opaque " << opaque;
          }
        }
    }
}

TEST(Resample, GivesTheSameBytesOnEveryInstructionSetAndThreadCount) {
  const int before = omp_get_max_threads();
  for (bool opaque : {true, false}) {
    const Bytes source = RandomPicture(131, 77, opaque, 5);
    omp_set_num_threads(1);
    const Bytes larger = Scale(source, 131, 77, 333, 201);
    const Bytes smaller = Scale(source, 131, 77, 31, 19);
    for (int threads : {2, 3, 7}) {
      omp_set_num_threads(threads);
      EXPECT_EQ(Scale(source, 131, 77, 333, 201), larger);
      EXPECT_EQ(Scale(source, 131, 77, 31, 19), smaller);
    }
    for (std::int64_t targets = hwy::SupportedTargets(); targets != 0; targets &= targets - 1) {
      hwy::SetSupportedTargetsForTest(targets & -targets);
      hwy::GetChosenTarget().Update(hwy::SupportedTargets());
      EXPECT_EQ(Scale(source, 131, 77, 333, 201), larger) << hwy::TargetName(targets & -targets);
      EXPECT_EQ(Scale(source, 131, 77, 31, 19), smaller) << hwy::TargetName(targets & -targets);
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }
  omp_set_num_threads(before);
}

TEST(Resample, WideColumnTilesMeetWithoutASeam) {
  // Many taps make narrow tiles; the twin scales each column strip of the target alone.
  const Bytes source = RandomPicture(40, 4000, true, 9);
  Bytes whole(4 * 40 * 3), part(4 * 3);
  const PictureView view{source.data(), 40, 4000};
  ASSERT_TRUE(Resample(ResampleKernel::Bicubic, view, {0, 0, 40, 4000}, whole.data(), 40, 3,
                       {0, 0, 40, 3}));
  for (int x = 0; x < 40; ++x) {
    ASSERT_TRUE(Resample(ResampleKernel::Bicubic, view, {0, 0, 40, 4000}, part.data(), 1, 3,
                         {float(-x), 0, 40, 3}));
    for (int y = 0; y < 3; ++y)
      for (int c = 0; c < 4; ++c) EXPECT_EQ(part[4 * y + c], whole[4 * (40 * y + x) + c]);
  }
}

TEST(Resample, ShrinkingFiltersOutWhatTheTargetCannotHold) {
  Bytes board(4 * 64 * 64);
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x)
      for (int c = 0; c < 4; ++c) board[4 * (64 * y + x) + c] = c == 3 || (x + y) % 2 ? 255 : 0;
  for (unsigned char value : Scale(board, 64, 64, 8, 8)) {
    EXPECT_TRUE(value == 255 || value == 127 || value == 128) << int(value);
  }
}

TEST(Resample, TransparentPixelsBleedNoColour) {
  // Opaque red beside fully transparent green.
  Bytes source;
  for (int i = 0; i < 8 * 8; ++i) {
    const bool red = i % 8 < 4;
    source.insert(source.end(), {0, static_cast<unsigned char>(red ? 0 : 255),
                                 static_cast<unsigned char>(red ? 200 : 0),
                                 static_cast<unsigned char>(red ? 255 : 0)});
  }
  for (int size : {3, 5, 21}) {
    const Bytes scaled = Scale(source, 8, 8, size, size);
    for (std::size_t i = 0; i < scaled.size(); i += 4) {
      EXPECT_EQ(scaled[i + 1], 0);
      EXPECT_EQ(scaled[i + 2], scaled[i + 3] ? 200 : 0);
    }
  }
}

TEST(Resample, RefusesEmptyAndUnusableRectangles) {
  const Bytes source(4, 9);
  unsigned char target[4] = {1, 2, 3, 4};
  const PictureView view{source.data(), 1, 1};
  for (const RectF& rect :
       {RectF{0, 0, 0, 1}, {0, 0, 1, -1}, {0, 0, NAN, 1}, {INFINITY, 0, 1, 1}}) {
    EXPECT_FALSE(Resample(ResampleKernel::Bicubic, view, rect, target, 1, 1, {0, 0, 1, 1}));
    EXPECT_FALSE(Resample(ResampleKernel::Bicubic, view, {0, 0, 1, 1}, target, 1, 1, rect));
  }
  EXPECT_FALSE(Resample(ResampleKernel::Bicubic, view, {0, 0, 1, 1}, target, 0, 1, {0, 0, 1, 1}));
  EXPECT_EQ(target[0], 1);
}

}  // namespace
}  // namespace tintwerk

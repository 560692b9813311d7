#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "filters/machines.h"
#include "filters/pixel_process_internals.h"
#include "support/image_files.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

struct Sizes {
  int w, h, nw, nh;
};
const Sizes kSizes[] = {{1, 1, 5, 3},     {7, 5, 1, 1},    {7, 5, 7, 11},   {3, 2, 40, 33},
                        {50, 30, 11, 7},  {20, 11, 33, 9}, {130, 2, 17, 5}, {2, 130, 9, 200},
                        {37, 41, 36, 40}, {64, 9, 65, 20}};

void PrintTo(const Sizes& s, std::ostream* out) {
  *out << s.w << " x " << s.h << " to " << s.nw << " x " << s.nh;
}

Bytes PlainNearest(const Bytes& source, const Sizes& s, int bytes) {
  Bytes target;
  const float scaleX = float(s.w) / float(s.nw), scaleY = float(s.h) / float(s.nh);
  for (int y = 0; y < s.nh; ++y)
    for (int x = 0; x < s.nw; ++x) {
      const int column = int(float(x) * scaleX), row = int(float(y) * scaleY);
      const auto* pixel = &source[std::size_t(bytes) * (row * s.w + column)];
      target.insert(target.end(), pixel, pixel + bytes);
    }
  return target;
}

Bytes PlainBilinear(const Bytes& source, const Sizes& s) {
  Bytes target;
  const float scaleX = float(s.w) / float(s.nw), scaleY = float(s.h) / float(s.nh);
  for (int y = 0; y < s.nh; ++y)
    for (int x = 0; x < s.nw; ++x) {
      const float fx = float(x) * scaleX, fy = float(y) * scaleY;
      const int ix = int(fx), iy = int(fy);
      const int ix1 = std::min(ix + 1, s.w - 1), iy1 = std::min(iy + 1, s.h - 1);
      const float dx = fx - float(ix), dy = fy - float(iy);
      for (int c = 0; c < 4; ++c) {
        const auto at = [&](int px, int py) { return int(source[4 * (py * s.w + px) + c]); };
        const float left = float(at(ix, iy1) - at(ix, iy)) * dy + float(at(ix, iy));
        const float right = float(at(ix1, iy1) - at(ix1, iy)) * dy + float(at(ix1, iy));
        target.push_back(static_cast<unsigned char>(int((right - left) * dx + left)));
      }
    }
  return target;
}

Bytes PlainSpline(const Bytes& source, const Sizes& s) {
  Bytes target;
  const float scaleX = float(s.w) / float(s.nw), scaleY = float(s.h) / float(s.nh);
  for (int y = 0; y < s.nh; ++y)
    for (int x = 0; x < s.nw; ++x) {
      const float fx = float(x) * scaleX - 0.5f, fy = float(y) * scaleY - 0.5f;
      const int ix = int(std::floor(fx)), iy = int(std::floor(fy));
      const float a = fy - std::floor(fy), b = fx - std::floor(fx);
      float sums[4] = {};
      unsigned char alpha = 0;
      for (int m = -1; m <= 2; ++m)
        for (int n = -1; n <= 2; ++n) {
          const float weight = CPixelProcess::KernelBSpline(b - float(n)) *
                               CPixelProcess::KernelBSpline(float(m) - a);
          const int px = std::clamp(ix + n, 0, s.w - 1), py = std::clamp(iy + m, 0, s.h - 1);
          const auto* pixel = &source[4 * (py * s.w + px)];
          for (int c = 0; c < 3; ++c) sums[c] += float(pixel[c]) * weight;
          alpha = pixel[3];
        }
      for (int c = 0; c < 3; ++c) target.push_back(static_cast<unsigned char>(int(sums[c])));
      target.push_back(alpha);
    }
  return target;
}

// Walks with summed-up coordinates, where one that reaches the extent reads the last row or column.
void PlainReSample(const Bytes& source, const Sizes& s, int channels, Bytes& target) {
  const float scaleX = float(s.w) / float(s.nw), scaleY = float(s.h) / float(s.nh);
  float fy = 0;
  for (int y = 0; y < s.nh; ++y, fy += scaleY) {
    const int iy = std::min(int(fy), s.h - 1), iy1 = std::min(iy + 1, s.h - 1);
    std::vector<float> table(256);
    for (int k = 1; k < 256; ++k) table[k] = table[k - 1] + (fy - float(int(fy)));
    const auto delta = [&](int d) { return d < 0 ? -table[-d] : table[d]; };
    float fx = 0;
    for (int x = 0; x < s.nw; ++x, fx += scaleX) {
      const int ix = std::min(int(fx), s.w - 1), ix1 = std::min(ix + 1, s.w - 1);
      for (int c = 0; c < std::min(channels, 3); ++c) {
        const auto at = [&](int px, int py) { return source[channels * (py * s.w + px) + c]; };
        const float left = float(at(ix, iy)) + delta(at(ix, iy1) - at(ix, iy));
        const float right = float(at(ix1, iy)) + delta(at(ix1, iy1) - at(ix1, iy));
        target[std::size_t(channels) * (y * s.nw + x) + c] =
            static_cast<unsigned char>(int((right - left) * (fx - float(int(fx))) + left));
      }
    }
  }
}

// The array that takes a source's place.
template <class Scale>
Bytes Replaced(const Bytes& source, std::size_t size, const Scale& scale) {
  auto* pixels = new unsigned char[source.size()];
  std::copy(source.begin(), source.end(), pixels);
  scale(&pixels);
  const std::unique_ptr<unsigned char[]> owner(pixels);
  return Bytes(pixels, pixels + size);
}

TEST(RampleBitOnArrays, IsThatOfPlainLoops) {
  for (const Sizes& s : kSizes) {
    SCOPED_TRACE(testing::PrintToString(s));
    const Bytes source = RandomBytes(std::size_t{4} * s.w * s.h, s.w);
    const std::size_t size = std::size_t{4} * s.nw * s.nh;
    const Bytes plain[] = {PlainBilinear(source, s), PlainNearest(source, s, 4),
                           PlainSpline(source, s), PlainBilinear(source, s)};
    OnEveryMachine([&] {
      for (int mode = 0; mode < 4; ++mode)
        ASSERT_EQ(Replaced(source, size,
                           [&](unsigned char** pixels) {
                             CPixelProcess::RampleBit(s.nw, s.nh, mode, pixels, s.w, s.h);
                           }),
                  plain[mode])
            << "mode " << mode;
    });
  }
}

TEST(RampleBitOnArrays, NearestTakesPixelsOfAnySize) {
  for (const Sizes& s : kSizes)
    for (int bytes : {1, 2, 3, 4, 5, 16}) {
      const Bytes source = RandomBytes(std::size_t(bytes) * s.w * s.h, s.w);
      const Bytes plain = PlainNearest(source, s, bytes);
      ASSERT_EQ(Replaced(source, plain.size(),
                         [&](unsigned char** pixels) {
                           EXPECT_EQ(CPixelProcess::RampleBit(s.nw, s.nh, pixels, s.w, s.h, bytes),
                                     1);
                         }),
                plain);
      ASSERT_EQ(Replaced(source, plain.size(),
                         [&](unsigned char** pixels) {
                           SFDSP::RampleBit(s.nw, s.nh, pixels, s.w, s.h, bytes);
                         }),
                plain);
    }
}

TEST(RampleBitOnArrays, LeavesTheArrayWhereThereIsNothingToDo) {
  auto* pixels = new unsigned char[16]();
  unsigned char* const before = pixels;
  const auto same = [&] { return pixels == before; };
  for (auto [w, h] : {std::pair{0, 3}, {3, 0}, {2, 2}, {-1, 3}, {65536, 65536}}) {
    EXPECT_EQ(CPixelProcess::RampleBit(w, h, &pixels, 2, 2, 4), 0);
    for (int mode : {0, 1, 2}) CPixelProcess::RampleBit(w, h, mode, &pixels, 2, 2);
  }
  CPixelProcess::RampleBit(3, -1, 0, &pixels, 2, 2);
  EXPECT_EQ(CPixelProcess::RampleBit(3, 3, &pixels, 2, 0, 4), 0);
  EXPECT_TRUE(same());
  unsigned char* null = nullptr;
  EXPECT_EQ(CPixelProcess::RampleBit(3, 3, &null, 2, 2, 4), 0);
  EXPECT_EQ(CPixelProcess::RampleBit(3, 3, nullptr, 2, 2, 4), 0);
  CPixelProcess::RampleBit(3, 3, 1, nullptr, 2, 2);
  EXPECT_EQ(CPixelProcess::RampleBit(3, -3, &pixels, 2, 2, 4), 1);  // empty, but new
  delete[] pixels;
}

TEST(BilinearReSample, WalksWithSummedUpCoordinates) {
  for (const Sizes& s : kSizes)
    for (int channels : {1, 4}) {
      SCOPED_TRACE(testing::PrintToString(s));
      const Bytes source = RandomBytes(std::size_t(channels) * s.w * s.h, s.h);
      const std::size_t size = std::size_t(channels) * s.nw * s.nh;
      Bytes plain = RandomBytes(size + 64, 9);
      const Bytes blank = plain;
      PlainReSample(source, s, channels, plain);
      OnEveryMachine([&] {
        Bytes target = blank;
        ASSERT_TRUE(
            SFDSP::BilinearReSample(source.data(), s.w, s.h, target.data(), s.nw, s.nh, channels));
        ASSERT_EQ(target, plain);
      });
    }
}

TEST(BilinearReSample, ReadsNothingBeyondALongWalk) {
  // At these sizes the sum of the steps goes past the last column and the last row.
  for (const Sizes& s : {Sizes{3, 3, 100003, 2}, {3, 3, 2, 100003}, {10, 1, 33333, 2}}) {
    const Bytes source = RandomBytes(std::size_t{1} * s.w * s.h, 4);
    Bytes plain(std::size_t(s.nw) * s.nh), target(plain);
    PlainReSample(source, s, 1, plain);
    ASSERT_TRUE(SFDSP::BilinearReSample(source.data(), s.w, s.h, target.data(), s.nw, s.nh, 1));
    ASSERT_TRUE(target == plain);
  }
}

TEST(BilinearReSample, RefusesWhatItCannotScale) {
  const Bytes source(64);
  Bytes target(64, 7);
  const auto scale = [&](int w, int h, int nw, int nh, int channels) {
    return SFDSP::BilinearReSample(source.data(), w, h, target.data(), nw, nh, channels);
  };
  EXPECT_FALSE(scale(4, 4, 4, 4, 4));
  EXPECT_FALSE(scale(4, 4, 0, 2, 4));
  EXPECT_FALSE(scale(4, 4, 2, 0, 4));
  EXPECT_FALSE(scale(4, 4, -2, 2, 4));
  EXPECT_FALSE(scale(4, 4, 2, 2, 3));
  EXPECT_FALSE(scale(0, 4, 2, 2, 1));
  EXPECT_TRUE(scale(4, 4, 2, -2, 4));
  EXPECT_FALSE(SFDSP::BilinearReSample(source.data(), 4, 4, nullptr, 2, 2, 4));
  EXPECT_FALSE(SFDSP::BilinearReSample(nullptr, 4, 4, target.data(), 2, 2, 4));
  EXPECT_EQ(target, Bytes(64, 7));
}

TEST(KernelBSpline, HasItsKnownValues) {
  EXPECT_EQ(CPixelProcess::KernelBSpline(0), 4.0f * 0.16666667f);
  EXPECT_EQ(CPixelProcess::KernelBSpline(1), 0.16666667f);
  EXPECT_EQ(CPixelProcess::KernelBSpline(-1), 0.16666667f);
  EXPECT_EQ(CPixelProcess::KernelBSpline(2.5f), 0);
  EXPECT_EQ(CPixelProcess::KernelBSpline(-2.5f), 0);
}

TEST(SinglePixels, AreCopiedPackedAndBlended) {
  const unsigned char source[8] = {10, 200, 30, 40, 50, 60, 70, 80};
  for (int bytes = 0; bytes <= 8; ++bytes) {
    unsigned char target[8] = {};
    CPixelProcess::CopyPixel(target, source, bytes);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(target[i], i < bytes ? source[i] : 0);
  }
  Bytes packed(7, 9);
  PixelProcessInternals::Pack(source, packed.data(), 2);
  EXPECT_EQ(packed, (Bytes{10, 200, 30, 50, 60, 70, 9}));
  for (auto [alpha, expected] : {std::pair{0, Bytes{100, 100, 100, 100}},
                                 {255, {10, 200, 30, 100}},
                                 {128, {55, 150, 65, 100}}}) {
    Bytes pixel(4, 100);
    PixelProcessInternals::Blend(pixel.data(), source, static_cast<unsigned char>(alpha));
    EXPECT_EQ(pixel, expected);
  }
}

}  // namespace
}  // namespace tintwerk::test

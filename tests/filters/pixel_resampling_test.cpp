#include <cmath>
#include <memory>

#include "filters/pixel_process_internals.h"
#include "support/operations.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using P = CPixelProcess;

struct Sizes {
  int w, h, nw, nh;
};
const Sizes kSizes[] = {{1, 1, 5, 3},     {7, 5, 1, 1},    {7, 5, 7, 11},   {3, 2, 40, 33},
                        {50, 30, 11, 7},  {20, 11, 33, 9}, {130, 2, 17, 5}, {2, 300, 9, 401},
                        {37, 41, 36, 40}, {64, 9, 65, 20}};

void PrintTo(const Sizes& s, std::ostream* out) {
  *out << s.w << " x " << s.h << " to " << s.nw << " x " << s.nh;
}

// The image of pixel(x, y, out) over coordinates of the source.
template <class Pixel>
Bytes Plain(const Sizes& s, int bytes, const Pixel& pixel) {
  Bytes target(std::size_t(bytes) * s.nw * s.nh);
  const float scaleX = float(s.w) / float(s.nw), scaleY = float(s.h) / float(s.nh);
  for (int i = 0; i < s.nw * s.nh; ++i)
    pixel(float(i % s.nw) * scaleX, float(i / s.nw) * scaleY, &target[std::size_t(bytes) * i]);
  return target;
}

Bytes PlainNearest(const Bytes& source, const Sizes& s, int bytes) {
  return Plain(s, bytes, [&](float x, float y, Byte* out) {
    std::copy_n(&source[std::size_t(bytes) * (int(y) * s.w + int(x))], bytes, out);
  });
}

Bytes PlainBilinear(const Bytes& source, const Sizes& s) {
  return Plain(s, 4, [&](float x, float y, Byte* out) {
    const int ix = int(x), iy = int(y);
    for (int c = 0; c < 4; ++c) {
      const auto at = [&](int px, int py) {
        return float(source[4 * (std::min(py, s.h - 1) * s.w + std::min(px, s.w - 1)) + c]);
      };
      const auto down = [&](int px) {
        return (at(px, iy + 1) - at(px, iy)) * (y - float(iy)) + at(px, iy);
      };
      out[c] = Byte(int((down(ix + 1) - down(ix)) * (x - float(ix)) + down(ix)));
    }
  });
}

Bytes PlainSpline(const Bytes& source, const Sizes& s) {
  return Plain(s, 4, [&](float x, float y, Byte* out) {
    const float left = std::floor(x - 0.5f), top = std::floor(y - 0.5f);
    const float a = y - 0.5f - top, b = x - 0.5f - left;
    float sums[3] = {};
    for (int m = -1; m <= 2; ++m)
      for (int n = -1; n <= 2; ++n) {
        const float weight = P::KernelBSpline(b - float(n)) * P::KernelBSpline(float(m) - a);
        const int px = std::clamp(int(left) + n, 0, s.w - 1);
        const int py = std::clamp(int(top) + m, 0, s.h - 1);
        const Byte* const tap = &source[4 * (py * s.w + px)];
        for (int c = 0; c < 3; ++c) sums[c] += float(tap[c]) * weight;
        out[3] = tap[3];
      }
    for (int c = 0; c < 3; ++c) out[c] = Byte(int(sums[c]));
  });
}

// Walks with summed-up coordinates, where one that reaches the extent reads the last row or column.
void PlainReSample(const Bytes& source, const Sizes& s, int channels, Bytes& target) {
  const float scaleX = float(s.w) / float(s.nw), scaleY = float(s.h) / float(s.nh);
  float fy = 0;
  for (int y = 0; y < s.nh; ++y, fy += scaleY) {
    const int iy = std::min(int(fy), s.h - 1), iy1 = std::min(iy + 1, s.h - 1);
    std::vector<float> table(256);
    for (int k = 1; k < 256; ++k) table[k] = table[k - 1] + (fy - float(int(fy)));
    float fx = 0;
    for (int x = 0; x < s.nw; ++x, fx += scaleX) {
      const int ix = std::min(int(fx), s.w - 1), ix1 = std::min(ix + 1, s.w - 1);
      for (int c = 0; c < std::min(channels, 3); ++c) {
        const auto down = [&](int px) {
          const int from = source[channels * (iy * s.w + px) + c];
          const int by = source[channels * (iy1 * s.w + px) + c] - from;
          return float(from) + (by < 0 ? -table[-by] : table[by]);
        };
        target[std::size_t(channels) * (y * s.nw + x) + c] =
            Byte(int((down(ix1) - down(ix)) * (fx - float(int(fx))) + down(ix)));
      }
    }
  }
}

// The array that takes a source's place.
template <class Scale>
Bytes Replaced(const Bytes& source, std::size_t size, const Scale& scale) {
  auto* pixels = new Byte[source.size()];
  std::copy(source.begin(), source.end(), pixels);
  scale(&pixels);
  const std::unique_ptr<Byte[]> owner(pixels);
  return Bytes(pixels, pixels + size);
}

TEST(RampleBitOnArrays, IsThatOfPlainLoops) {
  for (const Sizes& s : kSizes) {
    SCOPED_TRACE(testing::PrintToString(s));
    const Bytes source = RandomBytes(std::size_t{4} * s.w * s.h, s.w);
    const Bytes plain[] = {PlainBilinear(source, s), PlainNearest(source, s, 4),
                           PlainSpline(source, s), PlainBilinear(source, s)};
    OnEveryMachine([&] {
      for (int mode = 0; mode < 4; ++mode) {
        const auto scale = [&](Byte** p) { P::RampleBit(s.nw, s.nh, mode, p, s.w, s.h); };
        ASSERT_EQ(Replaced(source, plain[mode].size(), scale), plain[mode]) << "mode " << mode;
      }
    });
  }
}

TEST(RampleBitOnArrays, NearestTakesPixelsOfAnySize) {
  for (const Sizes& s : kSizes)
    for (int bytes : {1, 2, 3, 4, 5, 16}) {
      const Bytes source = RandomBytes(std::size_t(bytes) * s.w * s.h, s.w);
      const Bytes plain = PlainNearest(source, s, bytes);
      const auto first = [&](Byte** p) {
        EXPECT_EQ(P::RampleBit(s.nw, s.nh, p, s.w, s.h, bytes), 1);
      };
      const auto second = [&](Byte** p) { SFDSP::RampleBit(s.nw, s.nh, p, s.w, s.h, bytes); };
      ASSERT_TRUE(Replaced(source, plain.size(), first) == plain) << testing::PrintToString(s);
      ASSERT_TRUE(Replaced(source, plain.size(), second) == plain) << testing::PrintToString(s);
    }
}

TEST(RampleBitOnArrays, LeavesTheArrayWhereThereIsNothingToDo) {
  auto* pixels = new Byte[16]();
  Byte *const before = pixels, *null = nullptr;
  for (auto [w, h] : {std::pair{0, 3}, {3, 0}, {2, 2}, {-1, 3}, {65536, 65536}}) {
    EXPECT_EQ(P::RampleBit(w, h, &pixels, 2, 2, 4), 0);
    for (int mode : {0, 1, 2}) P::RampleBit(w, h, mode, &pixels, 2, 2);
  }
  P::RampleBit(3, -1, 0, &pixels, 2, 2);
  EXPECT_EQ(P::RampleBit(3, 3, &pixels, 2, 0, 4), 0);
  EXPECT_TRUE(pixels == before);
  EXPECT_EQ(P::RampleBit(3, 3, &null, 2, 2, 4), 0);
  EXPECT_EQ(P::RampleBit(3, 3, nullptr, 2, 2, 4), 0);
  P::RampleBit(3, 3, 1, nullptr, 2, 2);
  EXPECT_EQ(P::RampleBit(3, -3, &pixels, 2, 2, 4), 1);  // empty, but new
  delete[] pixels;
}

TEST(BilinearReSample, WalksWithSummedUpCoordinates) {
  std::vector<Sizes> sizes(std::begin(kSizes), std::end(kSizes));
  // At these sizes the sum of the steps goes past the last column and the last row.
  for (const Sizes& s : {Sizes{3, 3, 100003, 2}, {3, 3, 2, 100003}, {10, 1, 33333, 2}})
    sizes.push_back(s);
  for (const Sizes& s : sizes)
    for (int channels : {1, 4}) {
      SCOPED_TRACE(testing::PrintToString(s));
      const Bytes source = RandomBytes(std::size_t(channels) * s.w * s.h, s.h);
      const Bytes blank = RandomBytes(std::size_t(channels) * s.nw * s.nh, 9);
      Bytes plain = blank;
      PlainReSample(source, s, channels, plain);
      OnEveryMachine([&] {
        ASSERT_TRUE(plain == Guarded(blank, [&](Byte* to) {
                      ASSERT_TRUE(SFDSP::BilinearReSample(source.data(), s.w, s.h, to, s.nw, s.nh,
                                                          channels));
                    }));
      });
    }
}

TEST(BilinearReSample, RefusesWhatItCannotScale) {
  const Bytes source(64);
  Bytes target(64, 7);
  const auto scale = [&](int w, int h, int nw, int nh, int channels) {
    return SFDSP::BilinearReSample(source.data(), w, h, target.data(), nw, nh, channels);
  };
  for (auto [w, h, nw, nh, channels] : {std::array{4, 4, 4, 4, 4},
                                        {4, 4, 0, 2, 4},
                                        {4, 4, 2, 0, 4},
                                        {4, 4, -2, 2, 4},
                                        {4, 4, 2, 2, 3},
                                        {0, 4, 2, 2, 1}})
    EXPECT_FALSE(scale(w, h, nw, nh, channels)) << w << nw << nh << channels;
  EXPECT_TRUE(scale(4, 4, 2, -2, 4));
  EXPECT_FALSE(SFDSP::BilinearReSample(source.data(), 4, 4, nullptr, 2, 2, 4));
  EXPECT_FALSE(SFDSP::BilinearReSample(nullptr, 4, 4, target.data(), 2, 2, 4));
  EXPECT_EQ(target, Bytes(64, 7));
}

TEST(KernelBSpline, HasItsKnownValues) {
  EXPECT_EQ(P::KernelBSpline(0), 4.0f * 0.16666667f);
  for (float x : {-1.0f, 1.0f}) EXPECT_EQ(P::KernelBSpline(x), 0.16666667f);
  for (float x : {-2.5f, 2.5f}) EXPECT_EQ(P::KernelBSpline(x), 0);
}

TEST(SinglePixels, AreCopiedPackedAndBlended) {
  const Byte source[8] = {10, 200, 30, 40, 50, 60, 70, 80};
  for (int bytes = 0; bytes <= 8; ++bytes) {
    Byte target[8] = {};
    P::CopyPixel(target, source, bytes);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(target[i], i < bytes ? source[i] : 0);
  }
  Bytes packed(7, 9);
  PixelProcessInternals::tfbitCopy(source, packed.data(), 2);
  EXPECT_EQ(packed, (Bytes{10, 200, 30, 50, 60, 70, 9}));
  for (auto [alpha, expected] : {std::pair{0, Bytes{100, 100, 100, 100}},
                                 {255, {10, 200, 30, 100}},
                                 {128, {55, 150, 65, 100}}}) {
    Bytes pixel(4, 100);
    PixelProcessInternals::AlphaBlendPixel(pixel.data(), source, Byte(alpha));
    EXPECT_EQ(pixel, expected);
  }
}

}  // namespace
}  // namespace tintwerk::test

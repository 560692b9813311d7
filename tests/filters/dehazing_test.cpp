#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>

#include "filters/pixel_process_internals.h"
#include "support/image_files.h"

namespace tintwerk::test {
namespace {

// Hazy: values of channel c lie in 60 + 9c..199.
Picture HazyPicture(int width, int height) {
  Picture picture = RandomPicture(width, height, width);
  for (std::size_t i = 0; i < picture.bytes.size(); ++i)
    if (i % 4 != 3)
      picture.bytes[i] = static_cast<unsigned char>(
          std::max<int>(60 + 9 * int(i % 4), picture.bytes[i] * picture.bytes[i] / 330));
  return picture;
}

Picture PlainDehazed(Picture picture) {
  const auto n = picture.bytes.size() / 4;
  auto clip = static_cast<std::uint64_t>(float(n) * 0.005f);
  for (int c = 0; c < 3; ++c) {
    Bytes sorted;
    for (std::size_t i = c; i < 4 * n; i += 4) sorted.push_back(picture.bytes[i]);
    std::sort(sorted.begin(), sorted.end());
    const int min = sorted[clip];
    int max = sorted.back();
    if (clip > 0) {  // one above the last value that leaves enough samples over it
      const auto upTo = [&](int value) {
        return std::uint64_t(std::upper_bound(sorted.begin(), sorted.end(), value) -
                             sorted.begin());
      };
      for (max = 255; max > 0 && upTo(max - 1) > n - clip;) --max;
    }
    const float scale = 255.0f / float(max - min);
    for (std::size_t i = c; i < 4 * n; i += 4) {
      const int value = picture.bytes[i];
      picture.bytes[i] =
          static_cast<unsigned char>(max <= min     ? 127
                                     : value < min  ? 0
                                     : value >= max ? 255
                                                    : int(float(value - min) * scale));
    }
  }
  return picture;
}

TEST(Dehazing, StretchesEachChannelBetweenItsClips) {
  const int threads = omp_get_max_threads();
  for (auto [w, h] : {std::pair{1, 1}, {13, 15}, {20, 10}, {101, 97}, {640, 480}}) {
    const Picture picture = HazyPicture(w, h), plain = PlainDehazed(picture);
    for (int count : {1, 3}) {
      omp_set_num_threads(count);
      Picture dehazed = picture;
      EXPECT_EQ(CPixelProcess::Dehazing(dehazed.bytes.data(), w, h, nullptr, 0, 100), 1);
      EXPECT_TRUE(dehazed == plain) << w << " x " << h;
    }
  }
  omp_set_num_threads(threads);
  Picture flat{30, 30, Bytes(3600, 90)};
  CPixelProcess::Dehazing(flat.bytes.data(), 30, 30, nullptr, 0, 100);
  for (int i = 0; i < 3600; ++i) ASSERT_EQ(flat.bytes[i], i % 4 == 3 ? 90 : 127);
  EXPECT_EQ(CPixelProcess::Dehazing(nullptr, 30, 30, nullptr, 0, 100), 0);
  EXPECT_EQ(CPixelProcess::Dehazing(flat.bytes.data(), 65536, 65536, nullptr, 0, 100), 0);
  EXPECT_EQ(CPixelProcess::Dehazing(flat.bytes.data(), -3, 5, nullptr, 0, 100), 1);
}

TEST(Histograms, ClipAsToldAtTheirEnds) {
  Bytes channel(40);
  for (int i = 0; i < 10; ++i) channel[4 * i] = static_cast<unsigned char>(i < 3 ? 20 : 50 + i);
  unsigned char min = 0, max = 0;
  const auto clipped = [&](std::uint64_t low, std::uint64_t high) {
    EXPECT_EQ(PixelProcessInternals::ClippedMinMax(channel.data(), 10, low, high, &min, &max), 1);
    return std::pair(int(min), int(max));
  };
  EXPECT_EQ(clipped(0, 0), std::pair(20, 255));  // every value leaves all ten at or below 255
  EXPECT_EQ(clipped(2, 1), std::pair(20, 59));
  EXPECT_EQ(clipped(3, 2), std::pair(53, 58));
  EXPECT_EQ(clipped(9, 9), std::pair(54, 56));  // both become 4
  EXPECT_EQ(clipped(0, 9), std::pair(20, 20));
  EXPECT_EQ(PixelProcessInternals::MinMax(channel.data(), 10, &min, &max), 1);
  EXPECT_EQ(std::pair(int(min), int(max)), std::pair(20, 59));
  EXPECT_EQ(PixelProcessInternals::MinMax(nullptr, 10, &min, &max), 0);
  EXPECT_EQ(PixelProcessInternals::ClippedMinMax(nullptr, 10, 1, 1, nullptr, nullptr), 0);
  EXPECT_EQ(PixelProcessInternals::ClippedMinMax(channel.data(), 10, 1, 1, nullptr, nullptr), 1);
}

TEST(Histograms, NormalizeBetweenAnyTwoValues) {
  Bytes channel = {10, 1, 1, 1, 20, 1, 1, 1, 30, 1, 1, 1};
  EXPECT_EQ(PixelProcessInternals::Normalize(channel.data(), 3, 200, 100, 0, 0), 1);
  EXPECT_EQ(channel, (Bytes{200, 1, 1, 1, 150, 1, 1, 1, 100, 1, 1, 1}));
  EXPECT_EQ(PixelProcessInternals::Normalize(channel.data(), 3, 7, 7, 0, 0), 0);
  EXPECT_EQ(channel, (Bytes{7, 1, 1, 1, 7, 1, 1, 1, 7, 1, 1, 1}));
  EXPECT_EQ(PixelProcessInternals::Normalize(nullptr, 3, 0, 255, 0, 0), 0);
  EXPECT_EQ(PixelProcessInternals::Normalize(channel.data(), 0, 0, 255, 0, 0), 1);
}

TEST(RedEyeRemove, PullsRedDownAroundTheMiddleOfTheRectangle) {
  const Picture picture = RandomPicture(23, 19);
  for (tagRECT rect :
       {tagRECT{3, 2, 15, 12}, {-8, 5, 9, 40}, {20, 14, 26, 22}, {-100, -100, 99, 99}}) {
    Picture plain = picture, changed = picture;
    const float cx = float(rect.left + rect.right) * 0.5f;
    const float cy = float(rect.top + rect.bottom) * 0.5f;
    const float area = float((rect.right - rect.left) * (rect.bottom - rect.top));
    for (int y = std::max(rect.top, 0); y < std::min(rect.bottom, 19); ++y)
      for (int x = std::max(rect.left, 0); x < std::min(rect.right, 23); ++x) {
        unsigned char* const p = plain.At(x, y);
        const float dx = float(x) - cx, dy = float(y) - cy;
        const float t = std::max(1.0f - (dx * dx + dy * dy) * 5.0f / area, 0.0f);
        p[2] = static_cast<unsigned char>(
            int(float(std::min(p[0], p[1])) * t + (1.0f - t) * float(p[2])));
      }
    EXPECT_EQ(CPixelProcess::RedEyeRemove(changed.bytes.data(), 23, 19, rect), 1);
    EXPECT_TRUE(changed == plain);
    EXPECT_FALSE(changed == picture);
  }
}

TEST(RedEyeRemove, MissesTheImageWithARectangleThatOnlyTouchesIt) {
  Picture picture = RandomPicture(8, 8);
  const Picture before = picture;
  for (tagRECT rect : {tagRECT{3, 2, 3, 12},
                       {3, 2, 9, 2},
                       {8, 0, 12, 8},
                       {-4, 0, 0, 8},
                       {0, -9, 8, 0},
                       {20, 20, 30, 30},
                       {6, 6, 2, 2}})
    EXPECT_EQ(CPixelProcess::RedEyeRemove(picture.bytes.data(), 8, 8, rect), 0);
  EXPECT_EQ(CPixelProcess::RedEyeRemove(nullptr, 8, 8, {0, 0, 4, 4}), 0);
  EXPECT_TRUE(picture == before);
}

}  // namespace
}  // namespace tintwerk::test

#include "filters/pixel_process_internals.h"
#include "support/operations.h"

namespace tintwerk::test {
namespace {

using Internals = PixelProcessInternals;

// Hazy: values of channel c lie in 60 + 9c..199.
Picture HazyPicture(int width, int height) {
  Picture picture = RandomPicture(width, height, width);
  for (std::size_t i = 0; i < picture.bytes.size(); ++i)
    if (i % 4 != 3)
      picture.bytes[i] =
          Byte(std::max<int>(60 + 9 * int(i % 4), picture.bytes[i] * picture.bytes[i] / 330));
  return picture;
}

Bytes PlainDehazed(Bytes bytes) {
  const auto n = std::int64_t(bytes.size() / 4), clip = std::int64_t(float(n) * 0.005f);
  for (int c = 0; c < 3; ++c) {
    Bytes sorted;
    for (std::size_t i = c; i < bytes.size(); i += 4) sorted.push_back(bytes[i]);
    std::sort(sorted.begin(), sorted.end());
    const int min = sorted[clip];
    int max = sorted.back();
    if (clip > 0) {  // one above the last value that leaves enough samples over it
      const auto upTo = [&](int value) {
        return std::upper_bound(sorted.begin(), sorted.end(), value) - sorted.begin();
      };
      for (max = 255; max > 0 && upTo(max - 1) > n - clip;) --max;
    }
    const float scale = 255.0f / float(max - min);
    for (std::size_t i = c; i < bytes.size(); i += 4) {
      const int value = bytes[i];
      bytes[i] = Byte(max <= min     ? 127
                      : value < min  ? 0
                      : value >= max ? 255
                                     : int(float(value - min) * scale));
    }
  }
  return bytes;
}

TEST(Dehazing, StretchesEachChannelBetweenItsClips) {
  for (auto [w, h] : {std::pair{1, 1}, {13, 15}, {20, 10}, {101, 97}, {640, 480}}) {
    const Picture picture = HazyPicture(w, h);
    const Bytes plain = PlainDehazed(picture.bytes);
    for (int count : {1, 3}) {
      const Threads threads(count);
      Bytes bytes = picture.bytes;
      EXPECT_EQ(CPixelProcess::Dehazing(bytes.data(), w, h, nullptr, 0, 100), 1);
      EXPECT_TRUE(bytes == plain) << w << " x " << h;
    }
  }
  Bytes flat(3600, 90);
  CPixelProcess::Dehazing(flat.data(), 30, 30, nullptr, 0, 100);
  for (int i = 0; i < 3600; ++i) ASSERT_EQ(flat[i], i % 4 == 3 ? 90 : 127);
  ExpectRefusals(With(CPixelProcess::Dehazing));
}

TEST(Histograms, ClipAsToldAtTheirEnds) {
  Bytes channel(40);
  for (int i = 0; i < 10; ++i) channel[4 * i] = Byte(i < 3 ? 20 : 50 + i);
  struct Case {
    std::uint64_t low, high;
    int min, max;
  };
  Byte min = 0, max = 0;
  for (const Case& c : {Case{0, 0, 20, 255},  // every value leaves all ten at or below 255
                        {2, 1, 20, 59},
                        {3, 2, 53, 58},
                        {9, 9, 54, 56},  // both become 4
                        {0, 9, 20, 20}}) {
    EXPECT_EQ(Internals::minmax_histo_u8(channel.data(), 10, c.low, c.high, &min, &max), 1);
    EXPECT_EQ(std::pair(min, max), std::pair(Byte(c.min), Byte(c.max))) << c.low << ", " << c.high;
  }
  EXPECT_EQ(Internals::minmax_u8(channel.data(), 10, &min, &max), 1);
  EXPECT_EQ(std::pair(min, max), std::pair(Byte(20), Byte(59)));
  EXPECT_EQ(Internals::minmax_u8(nullptr, 10, &min, &max), 0);
  EXPECT_EQ(Internals::minmax_histo_u8(nullptr, 10, 1, 1, nullptr, nullptr), 0);
  EXPECT_EQ(Internals::minmax_histo_u8(channel.data(), 10, 1, 1, nullptr, nullptr), 1);
}

TEST(Histograms, NormalizeBetweenAnyTwoValues) {
  Bytes channel = {10, 1, 1, 1, 20, 1, 1, 1, 30, 1, 1, 1};
  EXPECT_EQ(Internals::normalize_histo_u8(channel.data(), 3, 200, 100, 0, 0), 1);
  EXPECT_EQ(channel, (Bytes{200, 1, 1, 1, 150, 1, 1, 1, 100, 1, 1, 1}));
  EXPECT_EQ(Internals::normalize_histo_u8(channel.data(), 3, 7, 7, 0, 0), 0);
  EXPECT_EQ(channel, (Bytes{7, 1, 1, 1, 7, 1, 1, 1, 7, 1, 1, 1}));
  EXPECT_EQ(Internals::normalize_histo_u8(nullptr, 3, 0, 255, 0, 0), 0);
  EXPECT_EQ(Internals::normalize_histo_u8(channel.data(), 0, 0, 255, 0, 0), 1);
}

TEST(RedEyeRemove, PullsRedDownAroundTheMiddleOfTheRectangle) {
  const Picture picture = RandomPicture(23, 19);
  const auto removed = [&](tagRECT rect, int expected) {
    Picture p = picture;
    EXPECT_EQ(CPixelProcess::RedEyeRemove(p.bytes.data(), 23, 19, rect), expected);
    return p;
  };
  for (tagRECT rect : {tagRECT{3, 2, 15, 12},
                       {-8, 5, 9, 40},
                       {20, 14, 26, 22},
                       {-100, -100, 99, 99},
                       {INT_MIN, INT_MIN, INT_MAX, INT_MAX}}) {
    Picture plain = picture;
    const double left = rect.left, top = rect.top;
    const float area = float((rect.right - left) * (rect.bottom - top));
    for (int y = std::max(rect.top, 0); y < std::min(rect.bottom, 19); ++y)
      for (int x = std::max(rect.left, 0); x < std::min(rect.right, 23); ++x) {
        Byte* const p = plain.At(x, y);
        const float dx = float(x) - float(left + rect.right) * 0.5f;
        const float dy = float(y) - float(top + rect.bottom) * 0.5f;
        const float t = std::max(1.0f - (dx * dx + dy * dy) * 5.0f / area, 0.0f);
        p[2] = Byte(int(float(std::min(p[0], p[1])) * t + (1.0f - t) * float(p[2])));
      }
    EXPECT_TRUE(removed(rect, 1) == plain);
  }
  // Without pixels, or only touching the image.
  for (tagRECT rect : {tagRECT{3, 2, 3, 12},
                       {3, 2, 9, 2},
                       {23, 0, 30, 8},
                       {-4, 0, 0, 8},
                       {0, -9, 8, 0},
                       {0, 19, 8, 30},
                       {20, 20, 30, 30},
                       {6, 6, 2, 2}})
    EXPECT_TRUE(removed(rect, 0) == picture);
  EXPECT_EQ(CPixelProcess::RedEyeRemove(nullptr, 8, 8, {0, 0, 4, 4}), 0);
}

}  // namespace
}  // namespace tintwerk::test

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "filters/machines.h"
#include "support/image_files.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk::test {
namespace {

// A line by its two scans, or by the plain maximum where the window is longer than the line.
Bytes PlainLine(const Bytes& s, std::int64_t r) {
  const std::int64_t n = std::int64_t(s.size()), k = 2 * r + 1;
  Bytes g(n), h(n), out(n);
  if (k > n) {
    for (std::int64_t i = 0; i < n; ++i)
      out[i] = *std::max_element(&s[std::max<std::int64_t>(i - r, 0)],
                                 s.data() + std::min(i + r + 1, n));
    return out;
  }
  for (std::int64_t i = 0; i < n; ++i) g[i] = i % k == 0 ? s[i] : std::max(s[i], g[i - 1]);
  for (std::int64_t i = n - 1; i >= 0; --i)
    h[i] = i % k == k - 1 || i == n - 1 ? s[i] : std::max(s[i], h[i + 1]);
  for (std::int64_t i = 0; i < n; ++i)
    out[i] = i < r ? g[i + r] : i < n - r ? std::max(g[i + r], h[i - r]) : h[i - r];
  return out;
}

// Lines of `count` samples, `step` bytes apart, in place.
void PlainPass(Bytes& plane, int lines, int lineStep, int count, int step, std::int64_t r) {
  for (int line = 0; line < lines; ++line) {
    Bytes s(count);
    for (int i = 0; i < count; ++i) s[i] = plane[line * lineStep + i * step];
    s = PlainLine(s, r);
    for (int i = 0; i < count; ++i) plane[line * lineStep + i * step] = s[i];
  }
}

Bytes PlainPlane(const Picture& picture, int channel, int radius, bool columns) {
  Bytes plane(picture.bytes.size() / 4);
  for (std::size_t i = 0; i < plane.size(); ++i) plane[i] = picture.bytes[4 * i + channel];
  const int w = picture.width, h = picture.height, r = std::max(radius, 0);
  PlainPass(plane, h, w, w, 1, r);
  if (columns) PlainPass(plane, w, 1, h, w, r);
  return plane;
}

Bytes Taken(unsigned char* buffer, std::size_t size) {
  const std::unique_ptr<unsigned char[]> owner(buffer);
  return buffer ? Bytes(buffer, buffer + size) : Bytes();
}

TEST(RunningMaximum, IsThatOfTwoScansOverEveryLine) {
  for (auto [w, h] : {std::pair{1, 1}, {1, 9}, {9, 1}, {7, 5}, {40, 23}, {131, 67}, {400, 3}}) {
    const Picture picture = RandomPicture(w, h, w * 31 + h);
    for (int radius : {-3, 0, 1, 2, 3, 5, 16, 33, 200, 2147483647}) {
      SCOPED_TRACE(testing::Message() << w << " x " << h << ", radius " << radius);
      Bytes rows(std::size_t(3) * w * h), both(rows.size()), plane;
      for (int c = 0; c < 3; ++c) {
        const Bytes one = PlainPlane(picture, c, radius, false);
        plane = PlainPlane(picture, c, radius, true);
        for (int i = 0; i < w * h; ++i) rows[3 * i + c] = one[i], both[3 * i + c] = plane[i];
      }
      OnEveryMachine([&, w = w, h = h] {
        const unsigned char* const pixels = picture.bytes.data();
        ASSERT_EQ(Taken(CPixelProcess::BoxHorizonPath(pixels, radius, w, h), rows.size()), rows);
        ASSERT_EQ(Taken(CPixelProcess::BoxMaxFilters(pixels, w, h, radius), rows.size()), both);
        ASSERT_EQ(Taken(CPixelProcess::BoxMaxFilter(pixels, w, h, radius, 2), plane.size()), plane);
        Bytes columns = rows;
        columns.resize(columns.size() + 64, 0xCD);
        CPixelProcess::BoxVerticalPath(columns.data(), radius, w, h);
        ASSERT_EQ(Bytes(64, 0xCD), Bytes(columns.end() - 64, columns.end()));
        columns.erase(columns.end() - 64, columns.end());
        ASSERT_EQ(columns, both);
      });
    }
  }
}

TEST(RunningMaximum, TakesAlphaAsAChannelAndRefusesOthers) {
  const Picture picture = RandomPicture(5, 4);
  EXPECT_EQ(Taken(CPixelProcess::BoxMaxFilter(picture.bytes.data(), 5, 4, 1, 3), 20),
            PlainPlane(picture, 3, 1, true));
  for (int channel : {-1, 4})
    EXPECT_EQ(CPixelProcess::BoxMaxFilter(picture.bytes.data(), 5, 4, 1, channel), nullptr);
  EXPECT_EQ(CPixelProcess::BoxMaxFilter(nullptr, 5, 4, 1, 0), nullptr);
  EXPECT_EQ(CPixelProcess::BoxMaxFilters(nullptr, 5, 4, 1), nullptr);
  EXPECT_EQ(CPixelProcess::BoxMaxFilters(picture.bytes.data(), 65536, 65536, 1), nullptr);
  CPixelProcess::BoxVerticalPath(nullptr, 1, 5, 4);
  EXPECT_TRUE(Taken(CPixelProcess::BoxMaxFilters(picture.bytes.data(), -1, 4, 1), 0).empty());
}

}  // namespace
}  // namespace tintwerk::test

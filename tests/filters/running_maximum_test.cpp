#include <memory>

#include "support/operations.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk::test {
namespace {

using P = CPixelProcess;

// A line by its two scans, or by the plain maximum where the window is longer than the line.
Bytes PlainLine(const Bytes& s, std::int64_t r) {
  const std::int64_t n = std::int64_t(s.size()), k = 2 * r + 1;
  Bytes g(n), h(n), out(n);
  for (std::int64_t i = 0; i < n; ++i) g[i] = i % k == 0 ? s[i] : std::max(s[i], g[i - 1]);
  for (std::int64_t i = n - 1; i >= 0; --i)
    h[i] = i % k == k - 1 || i == n - 1 ? s[i] : std::max(s[i], h[i + 1]);
  for (std::int64_t i = 0; i < n; ++i) {
    if (k > n)
      out[i] = *std::max_element(s.begin() + std::max<std::int64_t>(i - r, 0),
                                 s.begin() + std::min(i + r + 1, n));
    else
      out[i] = i < r ? g[i + r] : i < n - r ? std::max(g[i + r], h[i - r]) : h[i - r];
  }
  return out;
}

// Channels `from`..`to` through the rows, and through the columns if told to, without a gap.
Bytes Plain(const Picture& picture, int radius, bool columns, int from, int to) {
  const int n = to - from + 1, w = picture.width, h = picture.height;
  Bytes all;
  for (std::size_t i = 0; i < picture.bytes.size(); i += 4)
    all.insert(all.end(), &picture.bytes[i + from], &picture.bytes[i + to] + 1);
  const auto line = [=](const Bytes& s) { return PlainLine(s, std::max(radius, 0)); };
  for (int c = 0; c < n; ++c) {
    EachLine(&all[c], h, n * w, w, n, line);
    if (columns) EachLine(&all[c], w, n, h, n * w, line);
  }
  return all;
}

Bytes Taken(Byte* buffer, std::size_t size) {
  const std::unique_ptr<Byte[]> owner(buffer);
  return buffer ? Bytes(buffer, buffer + size) : Bytes();
}

TEST(RunningMaximum, IsThatOfTwoScansOverEveryLine) {
  for (auto [width, height] :
       {std::pair{1, 1}, {1, 9}, {9, 1}, {7, 5}, {40, 23}, {131, 67}, {400, 3}}) {
    const int w = width, h = height;
    const Picture picture = RandomPicture(w, h, w * 31 + h);
    const Byte* const pixels = picture.bytes.data();
    for (int radius : {-3, 0, 1, 2, 3, 5, 16, 33, 200, 2147483647}) {
      SCOPED_TRACE(testing::Message() << w << " x " << h << ", radius " << radius);
      const Bytes rows = Plain(picture, radius, false, 0, 2);
      const Bytes both = Plain(picture, radius, true, 0, 2);
      const Bytes red = Plain(picture, radius, true, 2, 2);
      const Bytes alpha = Plain(picture, radius, true, 3, 3);
      OnEveryMachine([&] {
        ASSERT_EQ(Taken(P::BoxHorizonPath(pixels, radius, w, h), rows.size()), rows);
        ASSERT_EQ(Taken(P::BoxMaxFilters(pixels, w, h, radius), both.size()), both);
        ASSERT_EQ(Taken(P::BoxMaxFilter(pixels, w, h, radius, 2), red.size()), red);
        ASSERT_EQ(Taken(P::BoxMaxFilter(pixels, w, h, radius, 3), red.size()), alpha);
        ASSERT_EQ(Guarded(rows, [&](Byte* own) { P::BoxVerticalPath(own, radius, w, h); }), both);
      });
    }
  }
}

TEST(RunningMaximum, RefusesOtherChannelsAndImages) {
  const Bytes pixels = RandomBytes(80, 1);
  for (int channel : {-1, 4}) EXPECT_EQ(P::BoxMaxFilter(pixels.data(), 5, 4, 1, channel), nullptr);
  EXPECT_EQ(P::BoxMaxFilter(nullptr, 5, 4, 1, 0), nullptr);
  EXPECT_EQ(P::BoxMaxFilters(nullptr, 5, 4, 1), nullptr);
  EXPECT_EQ(P::BoxMaxFilters(pixels.data(), 65536, 65536, 1), nullptr);
  P::BoxVerticalPath(nullptr, 1, 5, 4);
  EXPECT_TRUE(Taken(P::BoxMaxFilters(pixels.data(), -1, 4, 1), 0).empty());
}

}  // namespace
}  // namespace tintwerk::test

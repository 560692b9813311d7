#include "support/operations.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using Values = std::vector<std::int64_t>;

// The truncated means of the windows, cut at the edges.
Values PlainMeans(const Values& values, int w, int h, int radius) {
  Values integral(std::size_t(w + 1) * (h + 1)), means(values.size());
  const auto at = [&](std::int64_t x, std::int64_t y) -> std::int64_t& {
    return integral[(w + 1) * y + x];
  };
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      at(x + 1, y + 1) = values[std::size_t(w) * y + x] - at(x, y) + at(x, y + 1) + at(x + 1, y);
  for (std::int64_t y = 0; y < h; ++y)
    for (std::int64_t x = 0; x < w; ++x) {
      const auto x0 = std::max<std::int64_t>(x - radius, 0),
                 y0 = std::max<std::int64_t>(y - radius, 0);
      const auto x1 = std::min<std::int64_t>(x + radius + 1, w),
                 y1 = std::min<std::int64_t>(y + radius + 1, h);
      means[w * y + x] =
          (at(x0, y0) - at(x1, y0) - at(x0, y1) + at(x1, y1)) / ((x1 - x0) * (y1 - y0));
    }
  return means;
}

Bytes PlainGuideFilter(const Bytes& plane, int w, int h, int radius, int epsilon) {
  const std::size_t count = plane.size();
  Values guide(plane.begin(), plane.end()), squares(count), a(count), b(count);
  for (std::size_t i = 0; i < count; ++i) squares[i] = guide[i] * guide[i];
  const Values mean = PlainMeans(guide, w, h, radius);
  const Values meanSquare = PlainMeans(squares, w, h, radius);
  for (std::size_t i = 0; i < count; ++i) {
    const std::int64_t variance = meanSquare[i] - mean[i] * mean[i];
    const std::int64_t sum = variance + epsilon;
    a[i] = sum == 0 ? 0 : std::int64_t(float(variance) / float(sum) * 65536.0f);
    b[i] = Byte((mean[i] * (65536 - a[i])) >> 16);
  }
  const Values meanA = PlainMeans(a, w, h, radius), meanB = PlainMeans(b, w, h, radius);
  Bytes result(count);
  for (std::size_t i = 0; i < count; ++i)
    result[i] = Byte(((guide[i] * meanA[i]) >> 16) + meanB[i]);
  return result;
}

Bytes Filtered(const Bytes& plane, int w, int h, int radius, int epsilon) {
  return Guarded(plane, [=](Byte* p) { SFDSP::GuideFilter(p, w, h, radius, epsilon); });
}

TEST(GuideFilter, IsThatOfPlainIntegralImages) {
  for (auto [w, h] : {std::pair{1, 1}, {1, 9}, {9, 1}, {16, 7}, {61, 43}, {5, 300}, {411, 230}}) {
    Bytes plane = RandomBytes(std::size_t(w) * h, w);
    for (std::size_t i = 0; i < plane.size(); ++i)  // flat, soft and rough parts
      plane[i] = i % w < unsigned(w) / 3   ? plane[i]
                 : i % w < unsigned(w) / 2 ? 77
                                           : 100 + plane[i] / 16;
    for (int radius : {-3, 0, 1, 4, 19, 90, 200, INT_MAX})
      for (int epsilon : {0, 1, 400, 1 << 20, INT_MAX}) {
        const Bytes plain = PlainGuideFilter(plane, w, h, std::clamp(radius, 0, w + h), epsilon);
        const auto check = [&, w = w, h = h] {
          ASSERT_TRUE(plain == Filtered(plane, w, h, radius, epsilon))
              << w << " x " << h << ", radius " << radius << ", epsilon " << epsilon;
        };
        epsilon == 400 ? OnEveryMachine(check) : check();
      }
  }
}

TEST(GuideFilter, KeepsFlatPlanesAndStrongEdges) {
  for (int value : {0, 1, 128, 255})
    for (int epsilon : {-7, 0, 1, 1000}) {
      const Bytes flat(40 * 30, Byte(value));
      EXPECT_EQ(Filtered(flat, 40, 30, 5, epsilon), flat);
    }
  Bytes edge(40 * 30);
  for (std::size_t i = 0; i < edge.size(); ++i) edge[i] = i % 40 < 20 ? 20 : 220;
  EXPECT_LE(LargestDifference(Filtered(edge, 40, 30, 3, 10), edge), 2);
}

TEST(GuideFilter, OneWindowOverAllGivesOneLine) {
  // Mean 100, variance 10000 - 0 less than its square's mean: a is 1/2 at that epsilon, b 50.
  const Bytes checks = {0, 200, 0, 200, 200, 0, 200, 0};
  EXPECT_EQ(Filtered(checks, 4, 2, 9, 10000), (Bytes{50, 150, 50, 150, 150, 50, 150, 50}));
}

TEST(GuideFilter, WhiteNoiseWithinTheWidestWindowDoesNotOverflow) {
  const int size = 1000;
  Bytes plane(std::size_t(size) * size, 255);
  for (std::size_t i = 0; i < plane.size(); i += 97) plane[i] = 254;
  EXPECT_TRUE(Filtered(plane, size, size, 400, 1) == PlainGuideFilter(plane, size, size, 400, 1));
}

TEST(GuideFilter, GivesUpOnWhatIsNoPlane) {
  Bytes bytes(16, 9);
  bytes[3] = 200;
  const Bytes before = bytes;
  SFDSP::GuideFilter(nullptr, 4, 4, 1, 1);
  for (auto [w, h] : {std::pair{0, 4}, {4, 0}, {-4, -4}, {INT_MIN, 1}, {65536, 65536}})
    SFDSP::GuideFilter(bytes.data(), w, h, 1, 100);
  EXPECT_EQ(bytes, before);
}

}  // namespace
}  // namespace tintwerk::test

// Tone tables: curves through points, and their application to images.
#include "pixel/tone_curve.h"

#include <cmath>
#include <random>

#include "support/operations.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using Points = std::vector<CurvePoint>;

// Control values of the spline through the points, in y, which alone are evaluated.
std::vector<int> ControlValues(const Points& q) {
  const int n = int(q.size());
  std::vector<int> p(n), r(n);
  p[0] = q[0].y;
  p[n - 1] = q[n - 1].y;
  if (n == 3) {
    p[1] = (6 * q[1].y - q[0].y - q[2].y) >> 2;
    return p;
  }
  std::vector<double> d(n, 4.0);
  for (int i = 1; i <= n - 2; ++i) r[i] = 6 * q[i].y;
  r[1] -= q[0].y;
  r[n - 2] -= q[n - 1].y;
  for (int i = 2; i <= n - 2; ++i) {
    const double m = 1.0 / d[i - 1];
    d[i] -= m;
    r[i] = int(r[i] - r[i - 1] * m);
  }
  p[n - 2] = int(r[n - 2] / d[n - 2]);
  for (int i = n - 3; i >= 1; --i) p[i] = int((r[i] - p[i + 1]) / d[i]);
  return p;
}

ToneTable Twin(const Points& q) {
  ToneTable table;
  table.fill(0xCD);
  for (int x = 0; x < q.front().x; ++x) table[x] = Byte(q.front().y);
  for (int x = q.back().x; x < 256; ++x) table[x] = Byte(q.back().y);
  const std::vector<int> p = ControlValues(q);
  std::size_t index = 0;
  for (std::size_t i = 1; i < q.size(); ++i) {
    const int dx = std::max(std::abs(q[i].x - q[i - 1].x), 1);
    const int c1 = int((2 * p[i - 1] + p[i]) / 3.0f), c2 = int((p[i - 1] + 2 * p[i]) / 3.0f);
    for (int s = 0; s < dx && index < 256; ++s, ++index) {
      const float t = float(s) / dx, u = 1 - t;
      const float y = std::pow(u, 3.0f) * q[i - 1].y + u * 3 * u * t * c1 + u * 3 * t * t * c2 +
                      std::pow(t, 3.0f) * q[i].y;
      table[index] = Byte(std::clamp(int(y), 0, 255));
    }
  }
  return table;
}

ToneTable Middle(int x, int y) {
  ToneTable table;
  SFDSP::GeneCurveMiddle(table.data(), x, y);
  return table;
}

TEST(SFCurve, ThreePoints) {
  for (int x = 0; x < 256; x += 3)
    for (int y = 0; y < 256; y += 5) {
      const ToneTable table = Middle(x, y);
      ASSERT_EQ(table, Twin({{0, 0}, {x, y}, {255, 255}})) << x << ", " << y;
      EXPECT_EQ(table[x], x == 0 ? 0 : y);
    }
  EXPECT_NEAR(Middle(128, 160)[64], 85, 1);
  EXPECT_EQ(Middle(128, 128)[64], 63);
  for (auto [x, inside] : {std::pair{-1, 0}, {INT_MIN, 0}, {256, 255}, {INT_MAX, 255}}) {
    EXPECT_EQ(Middle(x, 90), Middle(inside, 90));
    EXPECT_EQ(Middle(90, x), Middle(90, inside));
  }
  SFDSP::GeneCurveMiddle(nullptr, 1, 1);
}

TEST(SFCurve, AnyNumberOfPoints) {
  std::mt19937 random(8);
  SFCurve curve;
  ToneTable table;
  for (int i = 0; i < 4000; ++i) {
    Points points(3 + i % 11);
    for (CurvePoint& point : points) point = {int(random() % 256), int(random() % 256)};
    std::sort(points.begin(), points.end(), [](auto& p, auto& q) { return p.x < q.x; });
    if (i % 3) points.front().x = 0;
    if (i % 4) points.back().x = 255;
    table.fill(0xCD);
    curve.BuildTable(points.data(), int(points.size()), table.data());
    ASSERT_EQ(table, Twin(points)) << i;
  }
  const ToneTable before = table;
  const CurvePoint ends[] = {{0, 0}, {255, 255}};
  for (int count : {2, 1, 0, -1, INT_MIN}) curve.BuildTable(ends, count, table.data());
  EXPECT_EQ(table, before);
}

TEST(SFCurve, HasFiveTablesOfItsOwn) {
  SFCurve curve;
  for (Byte** table : {&curve.table1, &curve.table2, &curve.table3, &curve.table4, &curve.table5})
    for (int i = 0; i < 256; ++i) ASSERT_EQ((*table)[i], i);
  std::free(std::exchange(curve.table3, nullptr));
}

// Within a segment no value leaves those of its samples, and none turns back.
template <std::size_t N>
constexpr bool Fits(const CurvePoint (&samples)[N], const ToneTable& table) {
  const CurvePoint first = samples[0], last = samples[N - 1];
  bool fits = true;
  for (int x = 0; x < 256; ++x)
    fits &= (x > first.x || table[x] == first.y) && (x < last.x || table[x] == last.y);
  for (std::size_t i = 1; i < N; ++i) {
    const CurvePoint from = samples[i - 1], to = samples[i];
    fits &= table[from.x] == from.y && table[to.x] == to.y;
    for (int x = from.x; x < to.x; ++x)
      fits &= from.y <= to.y ? table[x] <= table[x + 1] : table[x] >= table[x + 1];
  }
  return fits;
}

TEST(Curve, IsMonotoneThroughItsSamples) {
#define EXPECT_FITS(...)                                \
  {                                                     \
    constexpr CurvePoint samples[] = {__VA_ARGS__};     \
    static_assert(Fits(samples, Curve({__VA_ARGS__}))); \
  }
  EXPECT_FITS({0, 0}, {255, 255})
  EXPECT_FITS({0, 8}, {64, 70}, {128, 140}, {255, 250})
  EXPECT_FITS({20, 250}, {21, 0}, {22, 255}, {200, 254})
  EXPECT_FITS({0, 255}, {1, 0}, {2, 0}, {3, 0}, {100, 1}, {101, 255}, {255, 255})
  EXPECT_FITS({0, 0}, {120, 2}, {126, 240}, {140, 250}, {230, 120}, {255, 0})
  EXPECT_FITS({0, 0}, {10, 200}, {255, 255})
  EXPECT_FITS({100, 7}, {101, 9})
#undef EXPECT_FITS
  constexpr ToneTable identity = Curve({{0, 0}, {31, 31}, {200, 200}, {255, 255}});
  for (int i = 0; i < 256; ++i) EXPECT_EQ(identity[i], i);
}

TEST(Lut, SendsColoursThroughTheTable) {
  const Bytes table = RandomBytes(256, 4), image = RandomBytes(4 * 3 * 399, 5);
  const Byte *const values = table.data(), *const none = nullptr;
  const auto row = [&](Byte* pixels, int, int width) {
    for (int i = 0; i < 4 * width; ++i)
      if (i % 4 != 3) pixels[i] = table[pixels[i]];
  };
  ExpectSerialRows(image, With(CPixelProcess::Lut, values), row);
  const auto plain = [](const Byte* of) {
    return With([of](Byte* p, int w, int h) { SFDSP::Lut(p, of, w, h); });
  };
  Bytes expected = image;
  row(expected.data(), 0, 3 * 399);
  for (const Call& lut : {plain(values), With(CPixelProcess::Lut, values)}) {
    EXPECT_TRUE(expected == Guarded(image, [&](Byte* p) { lut(p, 57, 21, nullptr, 0, 100); }));
    ExpectRefusals(lut);
  }
  for (const Call& lut : {plain(none), With(CPixelProcess::Lut, none)})
    EXPECT_TRUE(image == Guarded(image, [&](Byte* p) { lut(p, 57, 21, nullptr, 0, 100); }));
}

}  // namespace
}  // namespace tintwerk::test

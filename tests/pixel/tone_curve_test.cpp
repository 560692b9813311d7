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

// The table is the natural spline, evaluated along a parameter that starts at index 0. It stands on
// the points; between them its truncations take it less than three levels below the exact values.
void ExpectSpline(const Points& q, const ToneTable& table) {
  std::vector<double> p(q.size());
  p.front() = q.front().y, p.back() = q.back().y;
  for (int sweep = 0; sweep < 40; ++sweep)
    for (std::size_t i = 1; i + 1 < q.size(); ++i) p[i] = (6 * q[i].y - p[i - 1] - p[i + 1]) / 4;
  int x = 0;
  for (std::size_t i = 1; i < q.size(); ++i) {
    const int count = std::max(q[i].x - q[i - 1].x, 1);
    if (x < 256) {
      EXPECT_EQ(table[x], q[i - 1].y);
    }
    for (int s = 0; s < count && x < 256; ++s, ++x) {
      const double t = double(s) / count, u = 1 - t;
      const double y = u * u * u * q[i - 1].y + u * u * t * (2 * p[i - 1] + p[i]) +
                       u * t * t * (p[i - 1] + 2 * p[i]) + t * t * t * q[i].y;
      ASSERT_LE(table[x], std::clamp(y + 1, 0.0, 255.0)) << x;
      ASSERT_GT(table[x] + 3, std::clamp(y, 0.0, 255.0)) << x;
    }
  }
  for (; x < 256; ++x)
    if (x < q.front().x || x >= q.back().x) {
      ASSERT_EQ(table[x], (x < q.front().x ? q.front() : q.back()).y) << x;
    }
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
      SCOPED_TRACE(testing::Message() << x << ", " << y);
      ExpectSpline({{0, 0}, {x, y}, {255, 255}}, table);
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
    SCOPED_TRACE(i);
    curve.BuildTable(points.data(), int(points.size()), table.data());
    ExpectSpline(points, table);
  }
  const auto expect = [&](const Points& points, const Bytes& every15) {
    curve.BuildTable(points.data(), int(points.size()), table.data());
    for (int k = 0; k < 17; ++k) EXPECT_EQ(table[15 * k], every15[k]) << 15 * k;
  };
  // Points at which each truncation of the solution shows.
  expect({{0, 59}, {34, 170}, {94, 52}, {155, 239}, {213, 23}, {255, 177}},
         {59, 140, 174, 147, 103, 63, 48, 77, 135, 198, 236, 223, 163, 88, 29, 19, 79});
  expect({{0, 66}, {34, 80}, {112, 174}, {164, 4}, {215, 188}, {255, 25}},
         {66, 54, 68, 97, 126, 154, 174, 178, 153, 89, 27, 4, 42, 113, 176, 187, 125});
  expect({{0, 0}, {100, 20}, {255, 255}},
         {0, 0, 0, 0, 0, 0, 8, 24, 38, 56, 75, 97, 120, 145, 172, 199, 226});
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

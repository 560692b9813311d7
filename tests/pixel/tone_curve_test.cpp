// Tone tables: curves through points, and their application to images.
#include "pixel/tone_curve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <random>
#include <vector>

#include "progress_recorder.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

using Byte = unsigned char;
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

void TwinTable(const Points& q, ToneTable& table) {
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
}

ToneTable Middle(int x, int y) {
  ToneTable table;
  SFDSP::GeneCurveMiddle(table.data(), x, y);
  return table;
}

TEST(SFCurve, ThreePoints) {
  for (int x = 0; x < 256; x += 3)
    for (int y = 0; y < 256; y += 5) {
      ToneTable expected;
      TwinTable({{0, 0}, {x, y}, {255, 255}}, expected);
      const ToneTable table = Middle(x, y);
      ASSERT_EQ(table, expected) << x << ", " << y;
      EXPECT_EQ(table[x], x == 0 ? 0 : y);
    }
  const ToneTable bright = Middle(128, 160), plain = Middle(128, 128), first = Middle(0, 128);
  EXPECT_EQ(bright[0], 0);
  EXPECT_EQ(bright[128], 160);
  EXPECT_EQ(bright[255], 255);
  EXPECT_NEAR(bright[64], 85, 1);
  EXPECT_EQ(plain[64], 63);
  for (int i = 0; i < 256; ++i) EXPECT_TRUE(plain[i] == i || plain[i] == i - 1) << i;
  EXPECT_NEAR(first[255], 254, 1);

  for (auto [x, inside] : {std::pair{-1, 0}, {INT_MIN, 0}, {256, 255}, {INT_MAX, 255}}) {
    EXPECT_EQ(Middle(x, 90), Middle(inside, 90));
    EXPECT_EQ(Middle(90, x), Middle(90, inside));
  }
  SFDSP::GeneCurveMiddle(nullptr, 1, 1);
}

TEST(SFCurve, AnyNumberOfPoints) {
  std::mt19937 random(8);
  SFCurve curve;
  for (int i = 0; i < 4000; ++i) {
    Points points(3 + i % 11);
    for (CurvePoint& point : points) point = {int(random() % 256), int(random() % 256)};
    std::sort(points.begin(), points.end(), [](auto& p, auto& q) { return p.x < q.x; });
    if (i % 3) points.front().x = 0;
    if (i % 4) points.back().x = 255;
    ToneTable table, expected;
    table.fill(0xCD);
    expected.fill(0xCD);
    TwinTable(points, expected);
    curve.BuildTable(points.data(), int(points.size()), table.data());
    ASSERT_EQ(table, expected) << i;
  }
  // Too few points, or none.
  ToneTable table;
  table.fill(0xCD);
  const CurvePoint ends[] = {{0, 0}, {255, 255}};
  for (int count : {2, 1, 0, -1, INT_MIN}) curve.BuildTable(ends, count, table.data());
  EXPECT_EQ(std::count(table.begin(), table.end(), 0xCD), 256);
}

TEST(SFCurve, HasFiveTablesOfItsOwn) {
  SFCurve curve;
  for (Byte* table : {curve.table1, curve.table2, curve.table3, curve.table4, curve.table5}) {
    ASSERT_NE(table, nullptr);
    for (int i = 0; i < 256; ++i) EXPECT_EQ(table[i], i);
  }
  std::free(curve.table3);
  curve.table3 = nullptr;
}

// Within a segment no value leaves those of its samples, and none turns back.
template <std::size_t N>
constexpr bool Fits(const CurvePoint (&samples)[N], const ToneTable& table) {
  for (int x = 0; x <= samples[0].x; ++x)
    if (table[x] != samples[0].y) return false;
  for (int x = samples[N - 1].x; x < 256; ++x)
    if (table[x] != samples[N - 1].y) return false;
  for (std::size_t i = 1; i < N; ++i) {
    const CurvePoint from = samples[i - 1], to = samples[i];
    if (table[from.x] != from.y || table[to.x] != to.y) return false;
    for (int x = from.x; x < to.x; ++x)
      if (from.y <= to.y ? table[x] > table[x + 1] : table[x] < table[x + 1]) return false;
  }
  return true;
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
  std::mt19937 random(4);
  ToneTable table;
  std::vector<Byte> image(4 * 3 * 399);
  for (Byte& value : table) value = Byte(random());
  for (Byte& value : image) value = Byte(random());
  const auto row = [&](Byte* pixels, int, int width) {
    for (int i = 0; i < 4 * width; ++i)
      if (i % 4 != 3) pixels[i] = table[pixels[i]];
  };
  ExpectSerialRows(
      image,
      [&](Byte* pixels, int width, int height, CObjProgress* progress, int low, int high) {
        CPixelProcess::Lut(pixels, width, height, table.data(), progress, low, high);
      },
      row);
  std::vector<Byte> expected = image, plain = image, silent = image;
  row(expected.data(), 0, 7 * 101);
  SFDSP::Lut(plain.data(), table.data(), 7, 101);
  CPixelProcess::Lut(silent.data(), 7, 101, table.data(), nullptr, 0, 100);
  EXPECT_TRUE(plain == expected);
  EXPECT_TRUE(silent == expected);

  ProgressRecorder recorder;
  for (auto [width, height] : {std::pair{0, 3}, {3, 0}, {-1, 3}, {3, -1}, {-2, -2}, {INT_MIN, 1}}) {
    SFDSP::Lut(plain.data(), table.data(), width, height);
    CPixelProcess::Lut(plain.data(), width, height, table.data(), nullptr, 0, 100);
  }
  SFDSP::Lut(nullptr, table.data(), 3, 3);
  SFDSP::Lut(plain.data(), nullptr, 3, 3);
  CPixelProcess::Lut(nullptr, 3, 3, table.data(), &recorder, 0, 100);
  CPixelProcess::Lut(plain.data(), 3, 3, nullptr, &recorder, 0, 100);
  EXPECT_TRUE(plain == expected);
  EXPECT_EQ(recorder.questions, 0);
}

}  // namespace
}  // namespace tintwerk

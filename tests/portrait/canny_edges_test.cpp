#include "portrait/canny_edges.h"

#include <climits>
#include <cmath>

#include "support/operations.h"

namespace tintwerk::test {
namespace {

int PlainDirection(int gx, int gy) {
  if (gx == 0) return gy != 0 ? kAlongColumn : kAlongRow;
  double angle = std::atan(static_cast<double>(gy) / gx) * 57.29578;
  if (angle < 0) angle += 180;
  if (angle < 22.5 || angle > 157.5) return kAlongRow;
  return angle < 67.6 ? kRisingDiagonal : angle < 112.5 ? kAlongColumn : kFallingDiagonal;
}

struct Plane {
  int width, height;
  Bytes bytes;
};

// The detector in the serial order of its definition: states 0 candidate, 1 none, 2 edge.
Bytes PlainEdges(const Plane& plane, int low, int high) {
  const int w = plane.width, h = plane.height;
  const auto p = [&](int x, int y) { return int{plane.bytes[w * y + x]}; };
  std::vector<int> gx(w * h), gy(w * h);
  std::vector<float> magnitude(w * h);
  for (int y = 1; y < h - 1; ++y)
    for (int x = 1; x < w - 1; ++x) {
      gx[w * y + x] = -p(x - 1, y - 1) + p(x + 1, y - 1) - 2 * p(x - 1, y) + 2 * p(x + 1, y) -
                      p(x - 1, y + 1) + p(x + 1, y + 1);
      gy[w * y + x] = p(x - 1, y - 1) + 2 * p(x, y - 1) + p(x + 1, y - 1) - p(x - 1, y + 1) -
                      2 * p(x, y + 1) - p(x + 1, y + 1);
    }
  for (int i = 0; i < w * h; ++i)
    magnitude[i] = std::sqrt(static_cast<float>(gx[i] * gx[i] + gy[i] * gy[i]));
  const auto isInside = [&](int x, int y) { return x >= 0 && x < w && y >= 0 && y < h; };
  const auto whole = [&](int x, int y) {
    return isInside(x, y) ? static_cast<int>(magnitude[w * y + x]) : 100000;
  };
  Bytes states(w * h);
  std::vector<int> pending;
  bool previousStrong = false;
  for (int i = 0; i < w * h; ++i) {
    constexpr int kSteps[4][2] = {{1, 0}, {1, -1}, {0, 1}, {1, 1}};
    const int x = i % w, y = i / w;
    const float m = magnitude[i];
    const auto [dx, dy] = kSteps[PlainDirection(gx[i], gy[i])];
    if (m <= low || !(m > whole(x + dx, y + dy) && m > whole(x - dx, y - dy))) {
      states[i] = 1;
      previousStrong = false;
    } else if (m > high && !previousStrong && (y == 0 || states[i - w] != 2)) {
      states[i] = 2;
      pending.push_back(i);
      previousStrong = true;
    }
  }
  while (!pending.empty()) {
    const int x = pending.back() % w, y = pending.back() / w;
    pending.pop_back();
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx)
        if (isInside(x + dx, y + dy) && states[w * (y + dy) + x + dx] == 0) {
          states[w * (y + dy) + x + dx] = 2;
          pending.push_back(w * (y + dy) + x + dx);
        }
  }
  for (Byte& state : states) state = state == 2 ? 255 : 0;
  return states;
}

enum Content { kNoise, kFewLevels, kSmooth, kShapes };

Plane MakePlane(int width, int height, Content content) {
  Plane plane{width, height, RandomBytes(std::size_t(width) * height, width + content)};
  for (int i = 0; i < width * height; ++i) {
    const int x = i % width, y = i / width;
    const int noise = plane.bytes[i];
    const double wave = std::sin(x * 0.21) * std::cos(y * 0.17 + x * 0.03);
    if (content == kFewLevels) plane.bytes[i] = Byte(noise / 86 * 127);
    if (content == kSmooth) plane.bytes[i] = Byte(120 + 110 * wave + noise % 16);
    if (content == kShapes) plane.bytes[i] = wave > 0.1 ? 210 + noise % 8 : 30 + noise % 30;
  }
  return plane;
}

TEST(CannyEdges, AreThoseOfTheSerialWalk) {
  for (auto [w, h] : {std::pair{1, 1},
                      {7, 1},
                      {1, 9},
                      {2, 5},
                      {3, 3},
                      {5, 4},
                      {34, 35},
                      {35, 9},
                      {66, 131},
                      {163, 97}})
    for (Content content : {kNoise, kFewLevels, kSmooth, kShapes}) {
      const Plane plane = MakePlane(w, h, content);
      for (auto [low, high] : {std::pair{120, 200},
                               {30, 90},
                               {0, 0},
                               {-7, -9},
                               {200, 60},
                               {100, 900},
                               {700, 1100},
                               {5000, 6000},
                               {40, INT_MAX},
                               {INT_MIN, 500}})
        OnEveryMachine([&, w = w, h = h, low = low, high = high,
                        expected = PlainEdges(plane, low, high)] {
          const auto run = [&](Byte* pixels) { CannyEdges(pixels, pixels, w, h, w, low, high); };
          ASSERT_TRUE(Guarded(plane.bytes, run) == expected)
              << w << " x " << h << ", content " << content << ", " << low << ", " << high;
        });
    }
}

TEST(CannyEdges, JoinsWhatWindsThroughAllBands) {
  // A serpentine of weak edges with one strong spot: a grey line on light ground.
  Plane plane{260, 330, Bytes(260 * 330, 200)};
  for (int y = 4; y < 326; ++y)
    for (int x = 6; x < 254; x += 12) plane.bytes[260 * y + x] = 160;
  for (int x = 6; x < 242; x += 12)
    for (int i = 0; i <= 12; ++i) plane.bytes[260 * (x / 12 % 2 ? 4 : 325) + x + i] = 160;
  plane.bytes[260 * 10 + 6] = 0;
  const Bytes expected = PlainEdges(plane, 100, 400);
  EXPECT_GT(std::count(expected.begin(), expected.end(), 255), 10000);
  OnEveryMachine([&] {
    Bytes result(plane.bytes.size(), 7);
    CannyEdges(plane.bytes.data(), result.data(), 260, 330, 260, 100, 400);
    EXPECT_TRUE(result == expected);
  });
  plane.bytes[260 * 10 + 6] = 160;
  CannyEdges(plane.bytes.data(), plane.bytes.data(), 260, 330, 260, 100, 400);
  EXPECT_EQ(plane.bytes, Bytes(260 * 330, 0));
}

TEST(CannyEdges, TellsEveryGradientsDirectionAsItsAngleDoes) {
  std::vector<std::int16_t> gx, gy, expected;
  for (int y = -1020; y <= 1020; ++y)
    for (int x = -1020; x <= 1020; ++x)
      if (x != 0 || y != 0) {  // no gradient, no edge
        gx.push_back(std::int16_t(x));
        gy.push_back(std::int16_t(y));
        expected.push_back(std::int16_t(PlainDirection(x, y)));
      }
  while (gx.size() % 32 != 0) gx.push_back(1), gy.push_back(0), expected.push_back(kAlongRow);
  OnEveryMachine([&] {
    std::vector<std::int16_t> directions(gx.size());
    GradientDirections(gx.data(), gy.data(), gx.size(), directions.data());
    EXPECT_TRUE(directions == expected);
  });
}

TEST(CannyEdges, KeepsToTheRowsOfAStrideAndRefusesWhatIsNoPlane) {
  const Plane plane = MakePlane(40, 20, kShapes);
  Bytes rows(50 * 20, 9), expected = rows;
  const Bytes edges = PlainEdges(plane, 120, 200);
  for (int y = 0; y < 20; ++y) {
    std::copy_n(&plane.bytes[40 * y], 40, &rows[50 * y]);
    std::copy_n(&edges[40 * y], 40, &expected[50 * y]);
  }
  CannyEdges(rows.data(), rows.data(), 40, 20, 50, 120, 200);
  EXPECT_TRUE(rows == expected);

  Bytes bytes(64, 9);
  CannyEdges(nullptr, bytes.data(), 8, 8, 8, 1, 2);
  CannyEdges(bytes.data(), nullptr, 8, 8, 8, 1, 2);
  CannyEdges(bytes.data(), bytes.data(), 8, 8, 7, 1, 2);
  for (auto [w, h] : {std::pair{0, 8}, {8, 0}, {-8, -8}, {INT_MIN, 1}, {65536, 65536}})
    CannyEdges(bytes.data(), bytes.data(), w, h, 65536, 1, 2);
  EXPECT_EQ(bytes, Bytes(64, 9));
}

}  // namespace
}  // namespace tintwerk::test

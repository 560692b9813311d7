#include "frame/monotone_cubic.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

namespace tintwerk {
namespace {

TEST(MonotoneCubic, RunsThroughItsPointsAndNeverOutsideThem) {
  std::mt19937 random(5);
  const auto below = [&](unsigned end) { return int(random() % end); };
  for (int round = 0; round < 200; ++round) {
    std::vector<CurvePoint> points = {{0, below(256)}};
    while (points.back().x < 240) points.push_back({points.back().x + 1 + below(89), below(256)});
    while (points.back().x > 255) points.pop_back();
    const ToneTable curve = MonotoneCubic(points);
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
      const auto [from, to] = std::pair(points[i], points[i + 1]);
      ASSERT_EQ(curve[from.x], from.y);
      ASSERT_EQ(curve[to.x], to.y);
      for (int v = from.x; v < to.x; ++v) {
        // Downhill, upside down.
        const int step = curve[v + 1] - curve[v];
        ASSERT_GE(from.y <= to.y ? step : -step, 0);
      }
    }
  }
}

TEST(MonotoneCubic, IsSmoothAndFlatBeyondItsEnds) {
  const CurvePoint line[] = {{0, 0}, {37, 37}, {200, 200}, {255, 255}};
  const CurvePoint shortLine[] = {{50, 20}, {150, 220}};
  const ToneTable identity = MonotoneCubic(line);
  const ToneTable clipped = MonotoneCubic(shortLine);
  for (int v = 0; v < 256; ++v) {
    EXPECT_EQ(identity[v], v);
    EXPECT_EQ(clipped[v], v <= 50 ? 20 : v >= 150 ? 220 : 20 + 2 * (v - 50));
  }
  // A bend at 128 is rounded: near it the curve already turns towards the steeper part.
  const CurvePoint bent[] = {{0, 0}, {128, 64}, {255, 255}};
  EXPECT_LT(MonotoneCubic(bent)[64], 32);
  const CurvePoint point[] = {{128, 7}};
  EXPECT_EQ(MonotoneCubic(point)[0], 7);
  EXPECT_EQ(MonotoneCubic(point)[255], 7);
}

}  // namespace
}  // namespace tintwerk

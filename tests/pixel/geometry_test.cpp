#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <limits>
#include <set>

#include "frame/random.h"
#include "tintwerk/math_define.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

using Edges = std::array<float, 4>;
Edges Of(const CxRect2& r) {
  return {r.x1, r.y1, r.x2, r.y2};
}
using IntEdges = std::array<std::int32_t, 4>;
IntEdges Of(const tagRECT& r) {
  return {r.left, r.top, r.right, r.bottom};
}

TEST(CxPoint2, DistanceSumsSquaresInFloat) {
  EXPECT_EQ(CxPoint2(1, 2).Distance(4, 6), 5);
  EXPECT_EQ(CxPoint2().Distance(CxPoint2(-3, 4)), 5);
  EXPECT_EQ(CxPoint2(1e20f, 0).Distance(0, 0), static_cast<float>(kInfinity));
  EXPECT_EQ(CxPoint2(0.1f, 0.2f).Distance(0, 0), 0x1.c9f25ep-3f);
}

TEST(CxRect2, SizesAndOverlap) {
  const CxRect2 rect(1, 2, 4, 8);
  EXPECT_EQ(rect.Width(), 3);
  EXPECT_EQ(rect.Height(), 6);
  EXPECT_EQ(rect.Surface(), 18);
  EXPECT_EQ(rect.Center().x, 2.5f);
  EXPECT_EQ(rect.Center().y, 5);
  EXPECT_EQ(Of(CxRect2(0, 0, 2, 2).CrossSection({2, 2, 3, 3})), (Edges{2, 2, 2, 2}));
  EXPECT_EQ(Of(CxRect2(0, 0, 1, 1).CrossSection({2, 2, 3, 3})), Edges{});
  EXPECT_EQ(Of(CxRect2(0, 0, 9, 1).CrossSection({2, 2, 3, 3})), Edges{});
  EXPECT_EQ(Of(rect.CrossSection({0, 3, 2, 9})), (Edges{1, 3, 2, 8}));
  EXPECT_EQ(Of(rect.CrossSection({0, 0, 9, 9})), Of(rect));
}

TEST(MathDefine, Angles) {
  EXPECT_EQ(CMathDefine::AngleToRadian(180), 3.141592653589793);
  EXPECT_EQ(CMathDefine::AngleToRadian(-30), -30 * 3.141592653589793 / 180.0);
  EXPECT_EQ(CMathDefine::RadianToAngle(3.141592653589793), 180);
  EXPECT_EQ(CMathDefine::RadianToAngle(1.0), 57);
  EXPECT_EQ(CMathDefine::RadianToAngle(-1.0), -57);
  EXPECT_EQ(CMathDefine::RadianToAngle(1e300), INT_MAX);
  EXPECT_EQ(CMathDefine::RadianToAngle(-kInfinity), INT_MIN);
  EXPECT_EQ(CMathDefine::RadianToAngle(kNaN), 0);
}

TEST(MathDefine, AverageRandomSpreadsProductsOfTwoDraws) {
  tintwerk::SeedRandom(5);
  const int product = tintwerk::Random() * tintwerk::Random();
  for (auto [low, high] : {std::pair{-10, 10}, {0, INT_MAX}, {INT_MIN, INT_MAX}, {7, 100007}}) {
    tintwerk::SeedRandom(5);
    EXPECT_EQ(CMathDefine::AverageRandom(low, high), low + product % (std::int64_t{high} - low));
  }
  std::set<int> seen;
  int largest = 0;
  for (int i = 0; i < 1000; ++i) {
    seen.insert(CMathDefine::AverageRandom(-2, 3));
    largest = std::max(largest, CMathDefine::AverageRandom(0, 1 << 30));
  }
  EXPECT_EQ(seen, (std::set{-2, -1, 0, 1, 2}));
  EXPECT_GT(largest, 1 << 28);
  EXPECT_EQ(CMathDefine::AverageRandom(4, 5), 4);
  EXPECT_EQ(CMathDefine::AverageRandom(4, 4), 4);
  EXPECT_EQ(CMathDefine::AverageRandom(INT_MAX, INT_MIN), INT_MAX);
}

TEST(MathDefine, IsInsideCountsFarEdgesOfRectanglesOnly) {
  EXPECT_EQ(CMathDefine::IsInside(10, 5, 10, 10), 0);
  EXPECT_EQ(CMathDefine::IsInside(9, 0, 10, 1), 1);
  EXPECT_EQ(CMathDefine::IsInside(0, 10, 10, 10), 0);
  EXPECT_EQ(CMathDefine::IsInside(-1, 0, 10, 10), 0);
  EXPECT_EQ(CMathDefine::IsInside(0, -1, 10, 10), 0);
  EXPECT_EQ(CMathDefine::IsInside(0, 0, 0, 5), 0);

  const auto inside = [](int x, int y, _ZV_2D_RECT rect) {
    return CMathDefine::IsInside(_ZV_2D_POINT{x, y}, rect);
  };
  EXPECT_EQ(inside(10, 5, {0, 0, 10, 10}), 1);
  EXPECT_EQ(inside(3, 14, {3, 4, 10, 10}), 1);
  EXPECT_EQ(inside(2, 5, {3, 4, 10, 10}), 0);
  EXPECT_EQ(inside(5, 3, {3, 4, 10, 10}), 0);
  EXPECT_EQ(inside(14, 5, {3, 4, 10, 10}), 0);
  EXPECT_EQ(inside(5, 15, {3, 4, 10, 10}), 0);
  EXPECT_EQ(inside(0, 0, {0, 0, -1, 5}), 0);
  EXPECT_EQ(inside(INT_MAX, INT_MAX, {INT_MAX, 1, INT_MAX, INT_MAX}), 1);
}

TEST(MathDefine, InsertsectRect) {
  tagRECT out = {9, 9, 9, 9};
  const tagRECT a = {0, 0, 10, 10}, corner = {10, 10, 20, 20}, beside = {11, 0, 20, 10};
  EXPECT_EQ(CMathDefine::InsertsectRect(nullptr, &a, &a), 0);
  EXPECT_EQ(CMathDefine::InsertsectRect(&out, nullptr, &a), 0);
  EXPECT_EQ(CMathDefine::InsertsectRect(&out, &a, nullptr), 0);
  EXPECT_EQ(Of(out), (IntEdges{9, 9, 9, 9}));
  EXPECT_EQ(CMathDefine::InsertsectRect(&out, &a, &corner), 1);
  EXPECT_EQ(Of(out), (IntEdges{10, 10, 10, 10}));
  EXPECT_EQ(CMathDefine::InsertsectRect(&out, &a, &beside), 0);
  EXPECT_EQ(Of(out), IntEdges{});
  out = {-5, 3, 4, 30};
  EXPECT_EQ(CMathDefine::InsertsectRect(&out, &out, &a), 1);
  EXPECT_EQ(Of(out), (IntEdges{0, 3, 4, 10}));
}

TEST(MathDefine, PtChangeByRotate) {
  const auto turned = [](int x, int y, int centreX, int centreY, double degrees) {
    Gdiplus::Point point{x, y};
    CMathDefine::PtChangeByRotate(point, centreX, centreY, degrees);
    return std::pair{point.X, point.Y};
  };
  EXPECT_EQ(turned(1, 0, 0, 0, 90), (std::pair{0, 1}));
  EXPECT_EQ(turned(15, 10, 10, 10, 90), (std::pair{10, 15}));
  EXPECT_EQ(turned(15, 12, 10, 10, 180), (std::pair{5, 8}));
  EXPECT_EQ(turned(110, 100, 100, 100, 30), (std::pair{109, 105}));
  // Half a pixel is added before the truncation, which below 0 goes upward.
  EXPECT_EQ(turned(-1, -3, 0, 0, 0), (std::pair{0, -2}));
  // The short pi turns by a little less than the half turn.
  EXPECT_EQ(turned(100000000, 0, 0, 0, 180), (std::pair{-99999999, 5}));
  EXPECT_EQ(turned(INT_MAX, INT_MAX, INT_MIN, INT_MIN, 0), (std::pair{INT_MAX, INT_MAX}));
  EXPECT_EQ(turned(INT_MIN, INT_MIN, INT_MAX, INT_MAX, 180), (std::pair{INT_MAX, INT_MAX}));
  EXPECT_EQ(turned(3, 4, 0, 0, kInfinity), (std::pair{0, 0}));
}

TEST(MathDefine, ResizeMainToSuit) {
  struct Case {
    int width, height, targetWidth, targetHeight;
    IntEdges part;
    double scale;
  };
  for (const Case& c :
       {Case{640, 480, 640, 480, {0, 0, 640, 480}, 1.0},
        {1000, 800, 300, 300, {108, 10, 887, 788}, 2.5937424601000023},
        {4000, 3000, 1920, 1080, {128, 446, 3870, 2550}, 1.9487171000000012},
        {100, 400, 640, 480, {2, 164, 97, 235}, 0.14864362802414344},
        {301, 200, 300, 150, {0, 25, 300, 175}, 1.0},
        {50, 50, 50, 20, {0, 15, 50, 35}, 1.0},
        {1, INT_MAX, INT_MAX, 1, {0, 1073741823, 0, 1073741823}, 4.4182791785518251e-10},
        {INT_MAX, INT_MAX, 1, 1, {0, 0, 1055857634, 1055857634}, 1055857634.5160687}}) {
    CRect rect(9, 9, 9, 9);
    double scale = 0;
    EXPECT_EQ(CMathDefine::ResizeMainToSuit(c.width, c.height, c.targetWidth, c.targetHeight, &rect,
                                            scale),
              0);
    EXPECT_EQ(Of(rect), c.part) << c.width << " x " << c.height;
    EXPECT_EQ(scale, c.scale) << c.width << " x " << c.height;
    scale = 0;
    CMathDefine::ResizeMainToSuit(c.width, c.height, c.targetWidth, c.targetHeight, nullptr, scale);
    EXPECT_EQ(scale, c.scale);
  }
  for (std::array<int, 4> size :
       {std::array{0, 5, 5, 5}, {5, -5, 5, 5}, {5, 5, 0, 5}, {5, 5, 5, INT_MIN}}) {
    CRect rect(9, 9, 9, 9);
    double scale = 0;
    EXPECT_EQ(CMathDefine::ResizeMainToSuit(size[0], size[1], size[2], size[3], &rect, scale), 0);
    EXPECT_EQ(Of(rect), IntEdges{});
    EXPECT_EQ(scale, 1.0);
  }
}

// The bounds of the turned rectangle have the shorter side of the frame.
TEST(MathDefine, GetParamsFitATurnedRectangle) {
  for (const auto& size : {std::pair{640, 480}, {480, 641}, {500, 500}, {30, 100}}) {
    const int width = size.first, height = size.second;
    for (int angle = 0; angle <= 90; ++angle) {
      const double radians = CMathDefine::AngleToRadian(angle);
      const auto check = [&](double a, double b, double factor, double slope) {
        EXPECT_NEAR(b / a / slope, 1, 1e-4);
        const bool upright = width < height;
        const double half = upright ? a * std::cos(radians) + b * std::sin(radians)
                                    : a * std::sin(radians) + b * std::cos(radians);
        EXPECT_NEAR(half / (0.5 * std::min(width, height)), 1, 1e-4) << width << ", " << angle;
        EXPECT_NEAR(factor * b / (0.5 * height), 1, 1e-5);
      };
      float a = 0, b = 0;
      const double factor = CMathDefine::GetParam2(angle, width, height, a, b);
      const double slope = double(height) / width;
      check(a, b, factor, slope);
      const float blended = CMathDefine::GetParam(angle, float(width), float(height), a, b);
      check(a, b, blended, angle < 45 ? slope : slope + (1 / slope - slope) / 45 * (angle - 45));
    }
  }
}

TEST(MathDefine, GetParamsRoundWhereTheyAreToldTo) {
  float a = 0, b = 0;
  EXPECT_EQ(CMathDefine::GetParam2(30, 640, 480, a, b), 1.5326921939849854);
  EXPECT_EQ(a, 208.782959f);
  EXPECT_EQ(b, 156.587219f);
  EXPECT_EQ(CMathDefine::GetParam2(-77, 480, 641, a, b), 1.5261410474777222);
  EXPECT_EQ(a, 157.259384f);
  EXPECT_EQ(b, 210.006805f);
  EXPECT_EQ(CMathDefine::GetParam2(33, 100, 156, a, b), 1.6883076429367065);
  EXPECT_EQ(a, 29.6154613f);
  EXPECT_EQ(b, 46.2001114f);
  EXPECT_EQ(CMathDefine::GetParam(-77, 480.25f, 641, a, b), 1.62744927f);
  EXPECT_EQ(a, 214.439774f);
  EXPECT_EQ(b, 196.933945f);
  EXPECT_EQ(CMathDefine::GetParam(60, 1000, 3, a, b), 0.507794023f);
  EXPECT_EQ(a, 0.0265849475f);
  EXPECT_EQ(b, 2.9539535f);
}

TEST(MathDefine, AnglesFoldIntoAQuarterTurn) {
  for (auto [angle, folded] : {std::pair{725, 5},
                               {-725, 5},
                               {270, 90},
                               {100, 80},
                               {91, 89},
                               {360, 0},
                               {361, 1},
                               {720, 0},
                               {181, 1},
                               {INT_MAX, 53},
                               {INT_MIN, 52}}) {
    float a = 0, b = 0, foldedA = 0, foldedB = 0;
    EXPECT_EQ(CMathDefine::GetParam2(angle, 40, 30, a, b),
              CMathDefine::GetParam2(folded, 40, 30, foldedA, foldedB))
        << angle;
    EXPECT_EQ(CMathDefine::GetParam(angle, 40, 30, a, b),
              CMathDefine::GetParam(folded, 40, 30, foldedA, foldedB))
        << angle;
    EXPECT_EQ(a, foldedA);
    EXPECT_EQ(b, foldedB);
  }
}

}  // namespace

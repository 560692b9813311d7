#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <set>

#include "frame/random.h"
#include "tintwerk/math_define.h"

namespace {

using M = CMathDefine;
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
  EXPECT_EQ(CxPoint2(1e20f, 0).Distance(0, 0), float(INFINITY));
  EXPECT_EQ(CxPoint2(0.1f, 0.2f).Distance(0, 0), 0x1.c9f25ep-3f);
}

TEST(CxRect2, SizesAndOverlap) {
  const CxRect2 rect(1, 2, 4, 8);
  EXPECT_EQ((Edges{rect.Surface(), rect.Center().x, rect.Center().y}), (Edges{18, 2.5f, 5}));
  EXPECT_EQ(Of(CxRect2(0, 0, 2, 2).CrossSection({2, 2, 3, 3})), (Edges{2, 2, 2, 2}));
  EXPECT_EQ(Of(CxRect2(0, 0, 9, 1).CrossSection({2, 2, 3, 3})), Edges{});
  EXPECT_EQ(Of(CxRect2(0, 0, 1, 9).CrossSection({2, 2, 3, 3})), Edges{});
  EXPECT_EQ(Of(rect.CrossSection({0, 3, 2, 9})), (Edges{1, 3, 2, 8}));
  EXPECT_EQ(Of(rect.CrossSection({0, 0, 9, 9})), Of(rect));
}

TEST(MathDefine, Angles) {
  for (int degrees : {180, -30})
    EXPECT_EQ(M::AngleToRadian(degrees), degrees * 3.141592653589793 / 180.0);
  for (auto [radians, degrees] : {std::pair{3.141592653589793, 180},
                                  {1.0, 57},
                                  {-1.0, -57},
                                  {1e300, INT_MAX},
                                  {double(-INFINITY), INT_MIN},
                                  {double(NAN), 0}})
    EXPECT_EQ(M::RadianToAngle(radians), degrees);
}

TEST(MathDefine, AverageRandomSpreadsProductsOfTwoDraws) {
  tintwerk::SeedRandom(5);
  const int product = tintwerk::Random() * tintwerk::Random();
  for (auto [low, high] : {std::pair{-10, 10}, {0, INT_MAX}, {INT_MIN, INT_MAX}, {7, 100007}}) {
    tintwerk::SeedRandom(5);
    EXPECT_EQ(M::AverageRandom(low, high), low + product % (std::int64_t{high} - low));
  }
  std::set<int> seen;
  for (int i = 0; i < 1000; ++i) seen.insert(M::AverageRandom(-2, 3));
  EXPECT_EQ(seen, (std::set{-2, -1, 0, 1, 2}));
  EXPECT_EQ(M::AverageRandom(4, 4), 4);
  EXPECT_EQ(M::AverageRandom(INT_MAX, INT_MIN), INT_MAX);
}

TEST(MathDefine, IsInsideCountsFarEdgesOfRectanglesOnly) {
  for (auto [x, y, width, height, inside] : {std::array{10, 5, 10, 10, 0},
                                             {9, 0, 10, 1, 1},
                                             {0, 10, 10, 10, 0},
                                             {-1, 0, 10, 10, 0},
                                             {0, -1, 10, 10, 0},
                                             {0, 0, 0, 5, 0}})
    EXPECT_EQ(M::IsInside(x, y, width, height), inside) << x << ", " << y;
  constexpr int kMax = INT_MAX;
  for (auto [x, y, left, top, width, height, inside] : {std::array{10, 5, 0, 0, 10, 10, 1},
                                                        {3, 14, 3, 4, 10, 10, 1},
                                                        {2, 5, 3, 4, 10, 10, 0},
                                                        {5, 3, 3, 4, 10, 10, 0},
                                                        {14, 5, 3, 4, 10, 10, 0},
                                                        {5, 15, 3, 4, 10, 10, 0},
                                                        {0, 0, 0, 0, -1, 5, 0},
                                                        {kMax, kMax, kMax, 1, kMax, kMax, 1}})
    EXPECT_EQ(M::IsInside(_ZV_2D_POINT{x, y}, _ZV_2D_RECT{left, top, width, height}), inside)
        << x << ", " << y;
}

TEST(MathDefine, InsertsectRect) {
  tagRECT out = {9, 9, 9, 9};
  const tagRECT a = {0, 0, 10, 10}, corner = {10, 10, 20, 20}, beside = {11, 0, 20, 10};
  EXPECT_EQ(M::InsertsectRect(nullptr, &a, &a), 0);
  EXPECT_EQ(M::InsertsectRect(&out, nullptr, &a), 0);
  EXPECT_EQ(M::InsertsectRect(&out, &a, nullptr), 0);
  EXPECT_EQ(Of(out), (IntEdges{9, 9, 9, 9}));
  EXPECT_EQ(M::InsertsectRect(&out, &a, &corner), 1);
  EXPECT_EQ(Of(out), (IntEdges{10, 10, 10, 10}));
  EXPECT_EQ(M::InsertsectRect(&out, &a, &beside), 0);
  EXPECT_EQ(Of(out), IntEdges{});
  out = {-5, 3, 4, 30};
  EXPECT_EQ(M::InsertsectRect(&out, &out, &a), 1);
  EXPECT_EQ(Of(out), (IntEdges{0, 3, 4, 10}));
}

TEST(MathDefine, PtChangeByRotate) {
  struct Case {
    int x, y, centreX, centreY;
    double degrees;
    int turnedX, turnedY;
  };
  for (const Case& c : {Case{1, 0, 0, 0, 90, 0, 1},
                        {15, 10, 10, 10, 90, 10, 15},
                        {15, 12, 10, 10, 180, 5, 8},
                        {110, 100, 100, 100, 30, 109, 105},
                        // Half a pixel is added before the truncation, which below 0 goes upward.
                        {-1, -3, 0, 0, 0, 0, -2},
                        // The short pi turns by a little less than the half turn.
                        {100000000, 0, 0, 0, 180, -99999999, 5},
                        {INT_MAX, INT_MAX, INT_MIN, INT_MIN, 0, INT_MAX, INT_MAX},
                        {INT_MIN, INT_MIN, INT_MAX, INT_MAX, 180, INT_MAX, INT_MAX},
                        {3, 4, 0, 0, INFINITY, 0, 0}}) {
    Gdiplus::Point point{c.x, c.y};
    M::PtChangeByRotate(point, c.centreX, c.centreY, c.degrees);
    EXPECT_EQ(std::pair(point.X, point.Y), std::pair(c.turnedX, c.turnedY)) << c.x << ", " << c.y;
  }
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
        {INT_MAX, INT_MAX, 1, 1, {0, 0, 1055857634, 1055857634}, 1055857634.5160687},
        {0, 5, 5, 5, {}, 1.0},
        {5, -5, 5, 5, {}, 1.0},
        {5, 5, 0, 5, {}, 1.0},
        {5, 5, 5, INT_MIN, {}, 1.0}}) {
    CRect rect(9, 9, 9, 9);
    for (CRect* to : {&rect, static_cast<CRect*>(nullptr)}) {
      double scale = 0;
      EXPECT_EQ(M::ResizeMainToSuit(c.width, c.height, c.targetWidth, c.targetHeight, to, scale),
                0);
      EXPECT_EQ(Of(rect), c.part) << c.width << " x " << c.height;
      EXPECT_EQ(scale, c.scale) << c.width << " x " << c.height;
    }
  }
}

TEST(MathDefine, GetParamsRoundWhereTheyAreToldTo) {
  const auto expect = [](auto get, int angle, auto width, auto height, auto factor, float expectedA,
                         float expectedB) {
    float a = 0, b = 0;
    EXPECT_EQ(get(angle, width, height, a, b), factor);
    EXPECT_EQ(a, expectedA) << width << ", " << angle;
    EXPECT_EQ(b, expectedB) << width << ", " << angle;
  };
  expect(M::GetParam2, 30, 640, 480, 1.5326921939849854, 208.782959f, 156.587219f);
  expect(M::GetParam2, -77, 480, 641, 1.5261410474777222, 157.259384f, 210.006805f);
  expect(M::GetParam2, 33, 100, 156, 1.6883076429367065, 29.6154613f, 46.2001114f);
  // Up to half of a right angle both keep the frame's own proportions.
  expect(M::GetParam, 30, 640.0f, 480.0f, 240 / 156.587219f, 208.782959f, 156.587219f);
  expect(M::GetParam, 33, 100.0f, 156.0f, 78 / 46.2001114f, 29.6154613f, 46.2001114f);
  expect(M::GetParam, -77, 480.25f, 641.0f, 1.62744927f, 214.439774f, 196.933945f);
  expect(M::GetParam, 60, 1000.0f, 3.0f, 0.507794023f, 0.0265849475f, 2.9539535f);
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
    EXPECT_EQ(M::GetParam2(angle, 40, 30, a, b), M::GetParam2(folded, 40, 30, foldedA, foldedB));
    EXPECT_EQ(M::GetParam(angle, 40, 30, a, b), M::GetParam(folded, 40, 30, foldedA, foldedB));
    EXPECT_EQ(std::pair(a, b), std::pair(foldedA, foldedB)) << angle;
  }
}

}  // namespace

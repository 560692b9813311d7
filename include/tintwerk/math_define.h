// Geometry values and helpers.
#pragma once

#include "tintwerk/export.h"
#include "tintwerk/platform.h"

struct _ZV_2D_POINT {
  int x;
  int y;
};

/// A rectangle by its origin and size, in pixels.
struct _ZV_2D_RECT {
  int x;
  int y;
  int width;
  int height;
};

/// A point of the plane.
class TINTWERK_API CxPoint2 {
 public:
  CxPoint2() = default;
  CxPoint2(float x, float y) : x(x), y(y) {}

  /// Euclidean distance to another point.
  float Distance(float toX, float toY) const;
  float Distance(CxPoint2 to) const { return Distance(to.x, to.y); }

  float x = 0;
  float y = 0;
};

/// A rectangle by two corners; (x1, y1) is the upper left one.
class TINTWERK_API CxRect2 {
 public:
  CxRect2() = default;
  CxRect2(float x1, float y1, float x2, float y2) : x1(x1), y1(y1), x2(x2), y2(y2) {}

  float Width() const { return x2 - x1; }
  float Height() const { return y2 - y1; }
  float Surface() const { return Height() * Width(); }
  CxPoint2 Center() const;

  /// The overlap of two rectangles, all zero if there is none. Rectangles that touch overlap.
  CxRect2 CrossSection(CxRect2 other) const;

  float x1 = 0;
  float y1 = 0;
  float x2 = 0;
  float y2 = 0;
};

/// Geometry and random numbers, all static.
class TINTWERK_API CMathDefine {
 public:
  CMathDefine() = default;
  CMathDefine(const CMathDefine&) {}
  virtual ~CMathDefine() = default;
  CMathDefine& operator=(const CMathDefine&) { return *this; }

  static double AngleToRadian(int degrees);
  /// @return whole degrees, truncated toward zero
  static int RadianToAngle(double radians);

  /// A random integer from low to high - 1, from two draws of the calling thread's 15-bit
  /// generator. An empty range gives low.
  static int AverageRandom(int low, int high);

  /// Whether a pixel lies in an image. The right and lower edges are outside.
  /// @return 1 or 0
  static int IsInside(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height);
  /// Whether a point lies in a rectangle. Here all four edges are inside.
  /// @return 1 or 0
  static int IsInside(_ZV_2D_POINT point, _ZV_2D_RECT rect);

  /// Overlap of two rectangles; rectangles that touch overlap.
  /// @return 1 with the overlap in `out`. 0 if there is none, with `out` zeroed, or if a pointer is
  ///         null, with `out` as it was.
  static int InsertsectRect(tagRECT* out, const tagRECT* a, const tagRECT* b);

  /// Turns a point about a centre, in place, clockwise on a picture whose rows run down. Adds half a
  /// pixel to the new coordinates and truncates them, which rounds those above 0.
  static void PtChangeByRotate(Gdiplus::Point& point, int centreX, int centreY, double degrees);

  /// Finds the part of a main picture that has the aspect ratio of a target. The size of the main
  /// picture is changed in steps of 1.1 until it just covers the target.
  /// @param rect receives that part, in pixels of the main picture; null is allowed
  /// @param scale receives the number of main pixels per target pixel
  /// @return 0, always. A size below 1 gives an empty rectangle and scale 1.
  static int ResizeMainToSuit(int width, int height, int targetWidth, int targetHeight, CRect* rect,
                              double& scale);

  /// Half the width and height, a and b, of the rectangle of an image's aspect ratio that just
  /// fits a frame of width x height when it is turned by an angle. From 45 degrees on the ratio is
  /// blended towards its reciprocal.
  /// @param angle degrees, any value
  /// @return the factor by which the frame is larger than that rectangle
  static float GetParam(int angle, float width, float height, float& a, float& b);
  /// The same without the blend, for whole pixel sizes.
  static double GetParam2(int angle, int width, int height, float& a, float& b);
};

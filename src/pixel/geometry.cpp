#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/random.h"
#include "tintwerk/math_define.h"

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kShortPi = 3.1415926;  // the precision that decides where a turned point rounds to

/// Truncation toward zero; what does not fit goes to the nearest end, a NaN to 0.
int TruncateToInt(double value) {
  if (std::isnan(value)) return 0;
  constexpr std::numeric_limits<int> kInt;
  return static_cast<int>(std::clamp(value, double{kInt.min()}, double{kInt.max()}));
}

/// The angle between the axes of a rectangle before and after a turn, 0..90 degrees.
int FoldAngle(int angle) {
  std::int64_t a = std::abs(std::int64_t{angle});
  if (a > 360) a = a - 360 - ((a - 361) / 360) * 360;
  if (a > 180) a = 360 - a;
  if (a > 90) a = 180 - a;
  return static_cast<int>(a);
}

/// Half the diagonal of the rectangle whose diagonal has the given slope and whose bounds, turned
/// by `radians`, have the frame's shorter side.
float HalfDiagonal(float slope, double radians, float width, float height, bool upright) {
  const double toSide = upright ? std::cos(slope - radians) : std::cos(radians + slope - kHalfPi);
  return static_cast<float>(((upright ? width : height) * 0.5) / toSide);
}

}  // namespace

float CxPoint2::Distance(float toX, float toY) const {
  const float dx = x - toX, dy = y - toY;
  const float squares = dx * dx + dy * dy;
  return static_cast<float>(std::sqrt(double{squares}));
}

CxPoint2 CxRect2::Center() const {
  return {(x2 + x1) * 0.5f, (y2 + y1) * 0.5f};
}

CxRect2 CxRect2::CrossSection(CxRect2 other) const {
  const CxRect2 overlap(std::max(x1, other.x1), std::max(y1, other.y1), std::min(x2, other.x2),
                        std::min(y2, other.y2));
  return overlap.x1 <= overlap.x2 && overlap.y1 <= overlap.y2 ? overlap : CxRect2();
}

double CMathDefine::AngleToRadian(int degrees) {
  return degrees * kPi / 180.0;
}

int CMathDefine::RadianToAngle(double radians) {
  return TruncateToInt(radians * 180.0 / kPi);
}

int CMathDefine::AverageRandom(int low, int high) {
  if (high <= low) return low;
  const int product = tintwerk::Random() * tintwerk::Random();  // 30 bits
  return static_cast<int>(low + product % (std::int64_t{high} - low));
}

int CMathDefine::IsInside(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
  return 0 <= x && x < width && 0 <= y && y < height;
}

int CMathDefine::IsInside(_ZV_2D_POINT point, _ZV_2D_RECT rect) {
  return rect.x <= point.x && point.x <= std::int64_t{rect.x} + rect.width && rect.y <= point.y &&
         point.y <= std::int64_t{rect.y} + rect.height;
}

int CMathDefine::InsertsectRect(tagRECT* out, const tagRECT* a, const tagRECT* b) {
  if (!out || !a || !b) return 0;
  const tagRECT overlap = {std::max(a->left, b->left), std::max(a->top, b->top),
                           std::min(a->right, b->right), std::min(a->bottom, b->bottom)};
  const bool overlaps = overlap.left <= overlap.right && overlap.top <= overlap.bottom;
  *out = overlaps ? overlap : tagRECT{};
  return overlaps;
}

void CMathDefine::PtChangeByRotate(Gdiplus::Point& point, int centreX, int centreY,
                                   double degrees) {
  const double radians = degrees / 180.0 * kShortPi;
  const double sine = std::sin(radians), cosine = std::cos(radians);
  const double dx = std::int64_t{point.X} - centreX, dy = std::int64_t{point.Y} - centreY;
  point.X = TruncateToInt(cosine * dx - sine * dy + centreX + 0.5);
  point.Y = TruncateToInt(sine * dx + cosine * dy + centreY + 0.5);
}

int CMathDefine::ResizeMainToSuit(int width, int height, int targetWidth, int targetHeight,
                                  CRect* rect, double& scale) {
  constexpr double kStep = 1.1;
  scale = 1.0;
  CRect part;
  if (std::min({width, height, targetWidth, targetHeight}) >= 1) {
    double w = width, h = height;
    const auto grow = [&] { scale /= kStep, w *= kStep, h *= kStep; };
    const auto shrink = [&] { w /= kStep, h /= kStep, scale *= kStep; };
    // One side may grow past what an int holds.
    const auto whole = [](double size) { return static_cast<std::int64_t>(size); };
    if (width <= targetWidth || height <= targetHeight) {
      while (whole(w) < targetWidth || whole(h) < targetHeight) grow();
    } else {
      while (whole(w) > targetWidth && whole(h) > targetHeight) shrink();
      grow();
    }
    const std::int64_t left = (whole(w) - targetWidth) / 2;
    const std::int64_t top = (whole(h) - targetHeight) / 2;
    const auto inMain = [&](std::int64_t value) {
      return TruncateToInt(static_cast<double>(value) * scale);
    };
    part = {inMain(left), inMain(top), inMain(left + targetWidth), inMain(top + targetHeight)};
  }
  if (rect) *rect = part;
  return 0;
}

float CMathDefine::GetParam(int angle, float width, float height, float& a, float& b) {
  const int folded = FoldAngle(angle);
  float ratio = height / width;
  if (folded >= 45) ratio = ratio + (width / height - ratio) / 45 * (folded - 45);
  const auto slope = static_cast<float>(std::atan(double{ratio}));
  const float r = HalfDiagonal(slope, AngleToRadian(folded), width, height, height > width);
  a = static_cast<float>(std::cos(double{slope}) * r);
  b = static_cast<float>(std::sin(double{slope}) * r);
  return height * 0.5f / b;
}

double CMathDefine::GetParam2(int angle, int width, int height, float& a, float& b) {
  const int folded = FoldAngle(angle);
  const auto w = static_cast<float>(width), h = static_cast<float>(height);
  const auto slope = static_cast<float>(std::atan(double{h / w}));
  const float r = HalfDiagonal(slope, AngleToRadian(folded), w, h, width < height);
  a = static_cast<float>(std::cos(double{slope}) * r);
  b = static_cast<float>(std::sin(double{slope}) * r);
  return (h / b) * 0.5;
}

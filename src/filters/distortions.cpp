// Stylisers that move pixels: ripple, whirl and pinch, illusion.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "filters/rows.h"
#include "pixel/truncate.h"
#include "tintwerk/math_define.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

constexpr double kFloatEpsilon = 1.1920928955078125e-7;
constexpr double kPi = 3.141592653589793;

// An image that is sampled between its pixels. Outside lies white that weighs nothing.
class Sampler {
 public:
  Sampler(const unsigned char* pixels, int width, int height)
      : pixels_(pixels), width_(width), height_(height) {}

  // Writes blue, green and red of the bilinear mean at a point, colours weighted with alpha.
  void SampleBilinear(double x, double y, unsigned char* out) const {
    constexpr double kMost = 2147483392.0;  // leaves room for a neighbour
    x = std::clamp(x, -kMost, kMost);
    y = std::clamp(y, -kMost, kMost);
    const int ix = static_cast<int>(x) - (x < 0), iy = static_cast<int>(y) - (y < 0);
    const double fx = x - ix, fy = y - iy;
    const unsigned char* t[] = {Tap(ix, iy), Tap(ix + 1, iy), Tap(ix, iy + 1), Tap(ix + 1, iy + 1)};
    const bool same = std::memcmp(t[0], t[1], 4) == 0 && std::memcmp(t[0], t[2], 4) == 0 &&
                      std::memcmp(t[0], t[3], 4) == 0;
    if (same || (fx < kFloatEpsilon && fy < kFloatEpsilon)) {
      std::memcpy(out, t[0], 3);
      return;
    }
    auto lerp = [=](int t0, int t1, int t2, int t3) {
      const double top = (t1 - t0) * fx + t0;
      return static_cast<int>(((t3 - t2) * fx + t2 - top) * fy + top);
    };
    if ((t[0][3] & t[1][3] & t[2][3] & t[3][3]) == 255) {
      for (int c = 0; c < 3; ++c)
        out[c] = static_cast<unsigned char>(lerp(t[0][c], t[1][c], t[2][c], t[3][c]));
      return;
    }
    const int alpha = lerp(t[0][3], t[1][3], t[2][3], t[3][3]);
    for (int c = 0; c < 3; ++c) {
      // The truncated alpha may be too small for the quotient to stay a byte.
      const int colour = alpha == 0 ? 255
                                    : lerp(t[0][c] * t[0][3], t[1][c] * t[1][3], t[2][c] * t[2][3],
                                           t[3][c] * t[3][3]) /
                                          alpha;
      out[c] = static_cast<unsigned char>(std::min(colour, 255));
    }
  }

 private:
  const unsigned char* Tap(int x, int y) const {
    static constexpr unsigned char kBorder[] = {255, 255, 255, 0};
    return CMathDefine::IsInside(x, y, width_, height_)
               ? pixels_ + 4 * (std::int64_t{y} * width_ + x)
               : kBorder;
  }

  const unsigned char* pixels_;
  int width_;
  int height_;
};

}  // namespace

int CPixelProcess::Istone_Illusion(unsigned char* pixels, int width, int height, int amount,
                                   CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height) || amount == 0) return 0;
  const auto copy = CopyOf(pixels, *PixelCount(width, height));
  if (!copy) return 0;
  const unsigned char* source = copy.get();
  const double w = width, h = height;
  const double diagonal = std::sqrt(w * w + h * h);
  const int half = Truncate(diagonal * 0.5);
  const double e = kPi / amount;
  ForEachRow(RowProgress::ReportsOnly(progress, progressLow, progressHigh, height), height,
             [=](std::int64_t y) {
               unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
               const double v = (static_cast<double>(y) - h * 0.5) / diagonal;
               double sector = 0, dx = 0,
                      dy = 0;  // the shift of a sector is kept while the row stays in it
               for (int x = 0; x < width; ++x, pixel += 4) {
                 const double u = (x - w * 0.5) / diagonal;
                 const double t = std::floor(std::atan2(v, u) * 0.5 / e);
                 if (x == 0 || t != sector) {
                   sector = t;
                   const double angle = 2 * t * e + e;
                   dx = std::cos(angle) * half;
                   dy = std::sin(angle) * half;
                 }
                 const double r = std::sqrt(u * u + v * v);
                 const int fromX = std::clamp(Truncate(x - dx), 0, width - 1);
                 const int fromY = std::clamp(Truncate(static_cast<double>(y) - dy), 0, height - 1);
                 const unsigned char* from = source + 4 * (std::int64_t{fromY} * width + fromX);
                 for (int c = 0; c < 3; ++c)
                   pixel[c] = ClampToByte(pixel[c] + static_cast<int>((from[c] - pixel[c]) * r));
               }
             });
  return 1;
}

int CPixelProcess::Istone_Ripple(unsigned char* pixels, int width, int height, int wavelength,
                                 int amplitude, bool sine, CObjProgress* progress, int progressLow,
                                 int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const auto copy = CopyOf(pixels, *PixelCount(width, height));
  if (!copy) return 0;
  const Sampler sampler(copy.get(), width, height);
  const int length = std::max(wavelength, 1), most = std::max(amplitude, 1);
  ForEachRow(
      RowProgress::ReportsOnly(progress, progressLow, progressHigh, height), height,
      [=](std::int64_t y) {
        const auto row = static_cast<double>(y);
        const double shift =
            sine ? std::sin(row * 6.283185307179586 / length) * most
                 : std::floor(
                       (std::abs(static_cast<double>(y % length) / length * 4.0 - 2.0) - 1.0) *
                       most);
        unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
        for (int x = 0; x < width; ++x, pixel += 4) {
          const double from = std::fmod(double{1} * x + width + shift, width);
          sampler.SampleBilinear(std::max(std::min(from, width - 1.0), 0.0), row, pixel);
        }
      });
  return 1;
}

int CPixelProcess::Istone_WhirlPinch(unsigned char* pixels, int width, int height, double whirl,
                                     double pinch, CObjProgress* progress, int progressLow,
                                     int progressHigh) {
  if (!IsWorkable(pixels, width, height) || std::isnan(whirl) || std::isnan(pinch)) return 0;
  const auto copy = CopyOf(pixels, *PixelCount(width, height));
  if (!copy) return 0;
  const Sampler sampler(copy.get(), width, height);
  whirl = std::clamp(whirl, -2 * kPi, 2 * kPi);
  pinch = std::clamp(pinch, -1.0, 1.0);
  const double w = width, h = height;
  const double sx = width < height ? h / w : 1, sy = height < width ? w / h : 1;
  const double cx = w * 0.5, cy = h * 0.5, radius = std::max(cx, cy);
  ForEachRow(RowProgress::ReportsOnly(progress, progressLow, progressHigh, height), height,
             [=](std::int64_t y) {
               unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
               const double dy = (static_cast<double>(y) - cy) * sy;
               for (int x = 0; x < width; ++x, pixel += 4) {
                 const double dx = (x - cx) * sx;
                 const double d = std::sqrt(dx * dx + dy * dy);
                 if (d >= radius || d < kFloatEpsilon) continue;
                 const double f = d / radius;
                 const double p = std::pow(std::sin(f * kPi / 2), -pinch);
                 const double a = (1 - f) * (1 - f) * whirl;
                 const double px = dx * p, py = dy * p;
                 const double cosine = std::cos(a), sine = std::sin(a);
                 sampler.SampleBilinear((cosine * px - sine * py) / sx + cx,
                                        (cosine * py + sine * px) / sy + cy, pixel);
               }
             });
  return 1;
}

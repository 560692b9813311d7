// Marks on a sheet: dust, hairs, scratches, folds.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "light.h"
#include "noise.h"

namespace tintwerk::paint {

/// A line that is drawn with soft dabs. Lengths are in pixels of a sheet 1000 pixels high.
struct Line {
  double x, y;    // where it starts
  double dx, dy;  // its first direction, of any length
  double length;
  double radius;      // of a dab
  double bend = 0;    // what each step turns it by, as a slope
  double wander = 0;  // by how much at most the bend changes at each step
};

/// The light of a neutral layer over the sheet, added to its tone; 1 is from black to white.
/// Lengths are in pixels of a sheet 1000 pixels high, whatever the height really is.
class Marks {
 public:
  Marks(int width, int height)
      : width_(width),
        height_(height),
        scale_(height / 1000.0),
        light_(std::size_t(width) * height) {}

  double Right() const { return width_ / scale_; }
  double At(int x, int y) const { return light_[std::size_t(y) * width_ + x]; }

  /// The light at a place that is told in heights of the sheet, as for a Canvas.
  double Here(double x, double y) const {
    return At(std::min(int(x * height_), width_ - 1), std::min(int(y * height_), height_ - 1));
  }

  /// A soft round spot.
  void Dab(double x, double y, double radius, double light) {
    x *= scale_;
    y *= scale_;
    radius = std::max(radius * scale_, 1.0);
    const int top = std::max(0, int(std::ceil(y - radius)));
    const int bottom = std::min(height_ - 1, int(std::floor(y + radius)));
    const int left = std::max(0, int(std::ceil(x - radius)));
    const int right = std::min(width_ - 1, int(std::floor(x + radius)));
    for (int row = top; row <= bottom; ++row)
      for (int column = left; column <= right; ++column) {
        const double dx = column - x;
        const double dy = row - y;
        const double near = 1 - (dx * dx + dy * dy) / (radius * radius);
        if (near > 0) light_[std::size_t(row) * width_ + column] += float(light * near * near);
      }
  }

  /// Draws a line that thins out at both ends; light(t) is its strength at t = 0..1 of the way.
  template <class Light>
  void Stroke(Dice& dice, Line line, const Light& light) {
    const int steps = int(line.length / kStep);
    for (int step = 0; step < steps; ++step) {
      const double norm = 1 / std::sqrt(line.dx * line.dx + line.dy * line.dy);
      line.dx *= norm;
      line.dy *= norm;
      const double t = double(step) / steps;
      const double ends = std::min(1.0, 8 * std::min(t, 1 - t));
      // About radius / kStep dabs lie over each point and add up.
      Dab(line.x, line.y, line.radius, light(t) * ends * kStep / line.radius);
      line.x += line.dx * kStep;
      line.y += line.dy * kStep;
      line.bend += dice.Between(-line.wander, line.wander);
      line.dx -= line.dy * line.bend;
      line.dy += line.dx * line.bend;
    }
  }

 private:
  static constexpr double kStep = 0.7;

  int width_;
  int height_;
  double scale_;
  std::vector<float> light_;
};

/// Hairs and motes that lay on a slide: bright, short and curved.
void LayHairs(Canvas& canvas, Dice& dice, int count);

}  // namespace tintwerk::paint

#include "light.h"

#include <algorithm>
#include <cmath>

namespace tintwerk::paint {

double Develop(double exposure) {
  // Close to 1 - e^-x, without the library's function for it.
  const double x = exposure;
  return 1 - 1 / (1 + x * (1 + x * (0.5 + x / 6)));
}

Rgb LeakColour::operator()(double exposure) const {
  return {Develop(red * exposure), Develop(green * exposure * std::sqrt(exposure)),
          Develop(blue * exposure * exposure)};
}

Canvas::Canvas(int width, int height)
    : width_(width), height_(height), light_(std::size_t(width) * height) {}

void Canvas::Add(const Disc& disc) {
  // The outline is a tenth of the radius wide.
  const auto first = [&](double at) { return std::max(0, int((at - disc.radius) * height_) - 1); };
  const auto last = [&](double at, int end) {
    return std::min(end, int((at + disc.radius) * height_) + 2);
  };
  for (int row = first(disc.y); row < last(disc.y, height_); ++row)
    for (int column = first(disc.x); column < last(disc.x, width_); ++column) {
      const double dx = (column + 0.5) / height_ - disc.x;
      const double dy = (row + 0.5) / height_ - disc.y;
      const double place = std::sqrt(dx * dx + dy * dy) / disc.radius;
      if (place >= 1) continue;
      const double inside = 1 - SmoothStep(0.88, 1, place);
      const double share = 1 - disc.rim * (1 - SmoothStep(0.55, 0.95, place));
      Rgb& light = light_[std::size_t(row) * width_ + column];
      light = light + (inside * share) * disc.colour;
    }
}

Picture Canvas::Print(double grain, std::uint32_t seed) const {
  Picture picture(width_, height_);
  for (int row = 0; row < height_; ++row)
    for (int column = 0; column < width_; ++column) {
      const Rgb& light = light_[std::size_t(row) * width_ + column];
      // The sum of four even numbers, nearly a bell curve of width 1.
      const std::uint32_t random = Hash(column, row, seed);
      int sum = 0;
      for (int byte = 0; byte < 32; byte += 8) sum += random >> byte & 255;
      const double noise = grain * (sum - 510) / 148;
      const auto print = [&](double v) {
        v = std::clamp(v, 0.0, 1.0);
        return RoundToByte(255 * (v + noise * std::min(1.0, 6 * v * (1 - v))));
      };
      picture.At(column, row) = {print(light.red), print(light.green), print(light.blue)};
    }
  return picture;
}

}  // namespace tintwerk::paint

// The relief of oil paint.
#include <algorithm>
#include <cmath>
#include <vector>

#include "light.h"
#include "noise.h"
#include "strokes.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

constexpr double kGrain = 0.004;

/// How thick the paint lies, pixel by pixel.
class Paint {
 public:
  explicit Paint(Size size) : size_(size), height_(std::size_t(size.width) * size.height) {}

  float& At(int column, int row) { return height_[std::size_t(row) * size_.width + column]; }
  float Near(int column, int row) const {
    column = std::clamp(column, 0, size_.width - 1);
    row = std::clamp(row, 0, size_.height - 1);
    return height_[std::size_t(row) * size_.width + column];
  }

  /// A loaded brush: its bristles leave furrows, it pushes paint to its sides and lifts off with a
  /// ridge at the end, and it takes up a part of what lay there.
  void Lay(const Stroke& stroke, double load, std::uint32_t seed) {
    Trace(stroke, size_, [&](int column, int row, double along, double across) {
      const double bristles = 0.65 * GradientNoise(0.7 * along, 3 * across + 0.3, seed) +
                              0.35 * GradientNoise(1.4 * along, 6.5 * across + 0.7, seed + 1);
      const double side = across * across * across * across;
      const double lip = SmoothStep(0.72, 0.92, along);
      const double body = load * (0.7 + 0.36 * bristles + 0.5 * side + 0.5 * lip);
      // The ends follow the bristles, and run dry unevenly.
      const double end = 0.97 - 0.10 * GradientNoise(0.4, 4.5 * across + 0.3, seed + 2);
      const double start = 0.06 + 0.06 * GradientNoise(0.8, 4.5 * across + 0.3, seed + 3);
      const double cover = (1 - SmoothStep(0.82, 1, std::abs(across))) *
                           SmoothStep(start - 0.05, start + 0.02, along) *
                           (1 - SmoothStep(end - 0.07, end, along));
      At(column, row) = float(Lerp(At(column, row), 0.35 * At(column, row) + body, cover));
    });
  }

 private:
  Size size_;
  std::vector<float> height_;
};

/// The weave of the cloth under the paint.
Paint Cloth() {
  Paint paint(kOdd);
  for (int row = 0; row < kOdd.height; ++row)
    for (int column = 0; column < kOdd.width; ++column)  // threads of nine pixels
      paint.At(column, row) = float(0.25 * GradientNoise(column / 9.0, row / 4.5, 961) +
                                    0.25 * GradientNoise(column / 4.5, row / 9.0, 962));
  return paint;
}

/// Strokes that follow a swirl, broad ones first and finer ones over them.
void LayStrokes(Paint& paint) {
  struct Brush {
    int strokes;
    double length, width;
  };
  const double right = double(kOdd.width) / kOdd.height;
  Dice dice(963);
  for (const auto& [strokes, length, width] :
       {Brush{700, 0.17, 0.05}, Brush{800, 0.12, 0.036}, Brush{450, 0.08, 0.022}})
    for (int i = 0; i < strokes; ++i) {
      const double x = dice.Between(-0.05, right + 0.05);
      const double y = dice.Between(-0.05, 1.05);
      const double wayward = dice.Between(-16, 16);
      const double longer = dice.Between(0.7, 1.3);
      const double bow = dice.Between(-0.08, 0.08) * length;
      const double load = dice.Between(0.5, 1.6);
      const double swirl = 150 * CloudNoise(0.9 * x, 0.9 * y, 964, 2) - 35;
      paint.Lay({x, y, AtAngle(swirl + wayward), longer * length, width, bow}, load,
                1000 + 8 * std::uint32_t(dice.Between(0, 1e6)));
    }
}

/// Oil paint on canvas, lit from the upper left.
Picture OilRelief() {
  Paint paint = Cloth();
  LayStrokes(paint);
  const auto mean = [&](int x, int y) {
    double sum = 0;
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx) sum += paint.Near(x + dx, y + dy);
    return sum / 9;
  };
  Canvas canvas(kOdd);
  for (int row = 0; row < kOdd.height; ++row)
    for (int column = 0; column < kOdd.width; ++column) {
      // How much the paint rises from the upper left, over a few pixels; steep borders saturate.
      const double slope = mean(column + 1, row + 1) - mean(column - 1, row - 1);
      const double light = 3.4 * slope / std::sqrt(1 + 7.5 * slope * slope);
      canvas.At(column, row) = Neutral((128 + 34 * light) / 255);
    }
  return canvas.Print(kGrain, 965, kOverlayRest);
}

}  // namespace

std::span<const File> OilFiles() {
  static const File files[] = {{"sucai22.jpg", OilRelief}};
  return files;
}

}  // namespace tintwerk::paint

#include "strokes.h"

#include "sheet.h"

namespace tintwerk::paint {
namespace {

/// Where on the sheet the hand went: 0..1 with soft borders, 1 everywhere for a share of 1.
double Patch(double x, double y, double share, std::uint32_t seed) {
  const double middle = 0.9 * (0.5 - share);
  return share >= 1
             ? 1
             : SmoothStep(middle - 0.25, middle + 0.25, CloudNoise(2.1 * x, 2.1 * y, seed, 3));
}

/// Graphite stays on the hills of the paper, and reaches the hollows only under pressure.
double Deposit(double pressure, double tooth) {
  return SmoothStep(-0.05, 1.05, 1.4 * pressure + 0.55 * tooth - 0.05);
}

void Draw(Canvas& canvas, const Stroke& stroke, double pressure, const Rgb& pencil,
          std::uint32_t seed) {
  Trace(stroke, canvas.Extent(), [&](int column, int row, double along, double across) {
    // Put down firmly, lifted slowly, and never quite steady.
    const double hand = SmoothStep(0, 0.08, along) * (1 - 0.85 * SmoothStep(0.5, 1, along)) *
                        (1 + 0.35 * GradientNoise(5 * along, 0.5, seed));
    const double lead = 1 - SmoothStep(0.3, 0.45 + 0.55 * hand, std::abs(across));
    const double x = (column + 0.5) / canvas.Extent().height;
    const double y = (row + 0.5) / canvas.Extent().height;
    Rgb& pixel = canvas.At(column, row);
    pixel = Lerp(pixel, pencil,
                 0.9 * lead * Deposit(pressure * hand, GradientNoise(230 * x, 230 * y, 17)));
  });
}

}  // namespace

void Hatch::operator()(Canvas& canvas, std::span<const Rgb> pencils) const {
  const double right = canvas.Right();
  const double pitch = 0.72 * length;
  const int rows = int(1 / pitch) + 3, columns = int(right / pitch) + 3;
  Dice dice(seed);
  for (int patch = 0; patch < rows * columns; ++patch) {
    const int row = patch / columns, column = patch % columns;
    const double brick = row % 2 == 0 ? 0.25 : 0.75;  // no gap runs through several rows
    const double x = (column - brick + dice.Between(-0.25, 0.25)) * pitch;
    const double y = (row - 0.5 + dice.Between(-0.25, 0.25)) * pitch;
    const double turn = dice.Between(-7, 7);
    const double bow = dice.Between(-0.02, 0.07) * length;
    const double size = dice.Between(0.75, 1.25);
    const double firm = pressure * dice.Between(0.7, 1.15);
    const Rgb& pencil = pencils[std::size_t(dice.Between(0, double(pencils.size())))];
    const double here = Patch(x, y, share, seed + 1);
    const double chance = dice.Between(0, 1);
    if (chance > here || FromEdges(x, y, right) < margin * (0.75 + 0.5 * chance)) continue;
    const double straight = angle + sway * CloudNoise(1.3 * x, 1.3 * y, seed + 2, 2) + turn;
    const Direction to = AtAngle(straight);
    const int strokes = int(size * length / spacing) + 1;
    for (int i = 0; i < strokes; ++i) {
      const double beside = (i - 0.5 * strokes + dice.Between(-0.3, 0.3)) * spacing;
      const double ahead = dice.Between(-0.12, 0.12) * length;
      const double leaning = dice.Between(-1.5, 1.5);
      const double longer = dice.Between(0.75, 1.2);
      const double press = firm * dice.Between(0.75, 1.1);
      Draw(canvas,
           {.x = x + ahead * to.cosine - beside * to.sine,
            .y = y + ahead * to.sine + beside * to.cosine,
            .to = AtAngle(straight + leaning),
            .length = size * longer * length,
            .width = width,
            .bow = bow},
           press, pencil, seed + 100 + std::uint32_t(patch * 64 + i));
    }
  }
}

}  // namespace tintwerk::paint

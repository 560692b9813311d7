#include "paper.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "marks.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

// Every draw of the dice stands in a statement or in braces of its own, where the order is fixed:
// among the arguments of a call, and in a product, each compiler has its own.

void LayFibres(Marks& marks, Dice& dice) {
  for (int i = 0; i < 1400; ++i) {
    const double sign = dice.Chance(0.6) ? 1 : -1;
    const double light = sign * dice.Between(0.02, 0.055);
    const Line fibre{.x = dice.Between(0, marks.Right()),
                     .y = dice.Between(0, 1000),
                     .dx = dice.Between(-1, 1),
                     .dy = dice.Between(-1, 1),
                     .length = dice.Between(8, 45),
                     .radius = dice.Between(0.9, 1.5),
                     .bend = dice.Between(-0.02, 0.02),
                     .wander = 0.008};
    marks.Stroke(dice, fibre, [&](double) { return light; });
  }
}

/// Dust lay on the negative, so it prints white; a few specks came later and are dark.
void LayDust(Marks& marks, Dice& dice) {
  for (int i = 0; i < 420; ++i) {
    const double sign = dice.Chance(0.75) ? 1 : -0.7;
    const double light = sign * dice.Between(0.05, 0.3);
    const double x = dice.Between(0, marks.Right());
    const double y = dice.Between(0, 1000);
    const double radius = dice.Between(0.8, 2);
    for (int grain = 0; grain < 3; ++grain) {
      const double across = dice.Between(-radius, radius);
      const double down = dice.Between(-radius, radius);
      marks.Dab(x + across, y + down, radius, light / 2);
    }
  }
  for (int i = 0; i < 9; ++i) {
    const double light = dice.Between(0.12, 0.22);
    const Line hair{.x = dice.Between(0, marks.Right()),
                    .y = dice.Between(0, 1000),
                    .dx = dice.Between(-1, 1),
                    .dy = dice.Between(-1, 1),
                    .length = dice.Between(25, 80),
                    .radius = 1.1,
                    .bend = dice.Between(-0.012, 0.012),
                    .wander = 0.004};
    marks.Stroke(dice, hair, [&](double) { return light; });
  }
}

/// Handling scratches the outer quarters: long, nearly upright, and broken where the grit skipped.
void LayScratches(Marks& marks, Dice& dice) {
  for (std::uint32_t i = 0; i < 16; ++i) {
    const double inward = dice.Between(0.01, 0.24) * marks.Right();
    const double depth = dice.Between(0.1, 0.3);
    const Line scratch{.x = dice.Chance(0.5) ? inward : marks.Right() - inward,
                       .y = dice.Between(-100, 850),
                       .dx = dice.Between(-0.3, 0.3),
                       .dy = 1,
                       .length = dice.Between(60, 420),
                       .radius = dice.Between(0.9, 1.3),
                       .wander = 0.0002};
    marks.Stroke(dice, scratch, [&](double t) {
      return depth * SmoothStep(-0.2, 0.5, CloudNoise(t * 9, i, 77, 2));
    });
  }
}

/// The upper right corner was folded once: the emulsion broke along the line, between a dark and a
/// light slope.
void LayFold(Marks& marks, Dice& dice) {
  Line fold{.x = marks.Right() - 213, .y = 0, .dx = 1.15, .dy = 1, .length = 290, .radius = 7};
  marks.Stroke(dice, fold, [](double) { return -0.05; });
  fold.x += 9;
  marks.Stroke(dice, fold, [](double) { return 0.04; });
  fold.x -= 6;
  fold.radius = 1.3;
  fold.wander = 0.00003;
  marks.Stroke(dice, fold, [](double t) {
    return 0.34 * SmoothStep(-0.5, 0.4, CloudNoise(t * 14, 3.5, 78, 3));
  });
}

/// Where a drop dried: slightly darker inside, with the dirt that it carried left along parts of
/// its outline.
struct Stain {
  double x, y, radius, strength;
  std::uint32_t seed;

  /// @return how much is absorbed, 0..about 1
  double At(double px, double py) const {
    const double dx = (px - x) / radius;
    const double dy = (py - y) / radius;
    const double square = dx * dx + dy * dy;
    if (square > 2.5) return 0;
    const double outline = 0.4 * GradientNoise(0.9 * dx + 0.4, 0.9 * dy + 0.3, seed) +
                           0.14 * CloudNoise(2.7 * dx + 0.6, 2.7 * dy + 0.4, seed + 1, 4);
    const double distance = std::sqrt(square) + outline;
    const double inside = 1 - SmoothStep(0.7, 1.05, distance);
    const double rim = 1.3 * SmoothStep(0.35, 0.95, distance) * inside;
    const double dirt =
        SmoothStep(-0.4, 0.5, GradientNoise(1.3 * dx + 0.7, 1.3 * dy + 0.2, seed + 8));
    return strength * (0.35 * inside + 0.65 * rim * dirt);
  }
};

/// Up to four stains beside the subject, none over another.
std::vector<Stain> DropStains(Dice& dice, double right, std::uint32_t seed) {
  std::vector<Stain> stains;
  for (int attempt = 0; attempt < 100 && stains.size() < 4; ++attempt) {
    const Stain stain{dice.Between(0, right), dice.Between(0, 1000), dice.Between(35, 130),
                      dice.Between(0.4, 0.8), seed + std::uint32_t(stains.size()) * 16};
    const bool overAnother = std::ranges::any_of(stains, [&](const Stain& other) {
      const double apart = 1.3 * (stain.radius + other.radius);
      const double dx = stain.x - other.x;
      const double dy = stain.y - other.y;
      return dx * dx + dy * dy < apart * apart;
    });
    const bool beside = std::abs(stain.x - right / 2) > 0.3 * right;
    if (beside && !overAnother) stains.push_back(stain);
  }
  return stains;
}

}  // namespace

Picture AgedPaper::operator()() const {
  Dice dice(seed);
  Marks marks(width, height);
  LayFibres(marks, dice);
  LayDust(marks, dice);
  LayScratches(marks, dice);
  LayFold(marks, dice);
  const double right = marks.Right();
  const std::vector<Stain> stains = DropStains(dice, right, seed + 100);

  Picture sheet(width, height);
  for (int row = 0; row < height; ++row)
    for (int column = 0; column < width; ++column) {
      const double x = (column + 0.5) * 1000 / height;
      const double y = (row + 0.5) * 1000 / height;
      const double dx = (x - right / 2) / (right / 2);
      const double dy = (y - 500) / 500;
      const double outward = SmoothStep(0.15, 1.3, dx * dx + dy * dy);

      // Air reached the sheet from its edges, unevenly; light bleached the side that stuck out.
      const double edge = std::min(std::min(x, right - x), std::min(y, 1000 - y));
      const double reach = edge + 90 * CloudNoise(x / 260, y / 260, seed + 1, 4);
      const double yellowed = 1 - SmoothStep(-60, 330, reach);
      const double patches = CloudNoise(x / 420, y / 420, seed + 2, 4);
      const double bleached = SmoothStep(0.35, 1, -dx + 0.35 * patches) * 0.5;

      const double mottle = CloudNoise(x / 38, y / 38, seed + 3, 3);
      const double grain = CloudNoise(x / 2.3, y / 2.3, seed + 4, 2);
      double absorbed = 0;
      for (const Stain& stain : stains) absorbed += stain.At(x, y);

      const double tone = 0.5 + marks.At(column, row) + 0.05 * grain + 0.014 * mottle +
                          outward * 0.07 * patches + 0.10 * bleached - 0.05 * yellowed -
                          0.13 * absorbed;
      const double warmth = std::max(0.0, 0.1 + 0.7 * yellowed + outward * 0.3 * patches) +
                            0.35 * bleached + 0.5 * absorbed;
      sheet.At(column, row) = {RoundToByte(255 * (tone + 0.055 * warmth)),
                               RoundToByte(255 * (tone + 0.010 * warmth)),
                               RoundToByte(255 * (tone - 0.110 * warmth))};
    }
  return sheet;
}

std::span<const File> PaperFiles() {
  static const File files[] = {
      {"huiyi1.jpg", AgedPaper{.width = 1500, .height = 1000, .seed = 1974}},
  };
  return files;
}

}  // namespace tintwerk::paint

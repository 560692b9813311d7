// What happened to prints: worn and burnt edges, dust, scratches, folds, chalk.
#include <algorithm>
#include <cmath>

#include "light.h"
#include "marks.h"
#include "noise.h"
#include "sheet.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

/// Irregular dust: three dabs over each other. Lengths are those of `Marks`.
void LayDust(Marks& marks, Dice& dice, int count, double faintest, double strongest) {
  for (int i = 0; i < count; ++i) {
    const double x = dice.Between(0, marks.Right());
    const double y = dice.Between(0, 1000);
    const double radius = dice.Between(2.2, 4.5);
    const double light = dice.Between(faintest, strongest) / 255;
    for (int dab = 0; dab < 3; ++dab) {
      const double across = dice.Between(-0.8, 0.8) * radius;
      const double down = dice.Between(-0.8, 0.8) * radius;
      marks.Dab(x + across, y + down, dice.Between(0.6, 1) * radius, light / 2);
    }
  }
}

/// A worn print on black: a rough pale edge, dust, and scratches in the outer quarters that are
/// broken where the grit skipped. What it lies over has bright shadows already, so the middle is
/// nearly black.
Picture WornPrint() {
  Canvas canvas(kOdd);
  Marks marks(kOdd.width, kOdd.height);
  Dice dice(1001);
  LayDust(marks, dice, 140, 40, 130);
  for (std::uint32_t i = 0; i < 9; ++i) {
    const double inward = dice.Between(0.02, 0.23) * marks.Right();
    const double light = dice.Between(60, 90) / 255;
    const Line scratch{.x = dice.Chance(0.5) ? inward : marks.Right() - inward,
                       .y = dice.Between(-80, 600),
                       .dx = dice.Between(-0.12, 0.12),
                       .dy = 1,
                       .length = dice.Between(180, 520),
                       .radius = dice.Between(1.8, 2.4),
                       .wander = 0.0001};
    marks.Stroke(dice, scratch, [&](double t) {
      return light * SmoothStep(-0.1, 0.4, CloudNoise(t * 9, i, 1002, 2));
    });
  }
  const RoughEdge edge{canvas.Right(), 0.09, 0.075, 0.04, 1003};
  canvas.Fill([&](double x, double y) {
    const double worn = edge(x, y) * (0.8 + 0.35 * CloudNoise(9 * x, 9 * y, 1007, 3));
    const double mottle = 6 + 6 * CloudNoise(7 * x, 7 * y, 1011, 3);
    return worn * Rgb255(96, 78, 50) + std::max(0.0, mottle) * Rgb255(1, 0.95, 0.85) +
           marks.Here(x, y) * Rgb{1, 0.97, 0.9};
  });
  return canvas.Print(0.012, 1012);
}

/// A worn baryta print, for a Multiply: it can only darken, so its dust is dark. How its channels
/// differ is the tone of the print.
Picture Baryta() {
  Canvas canvas(kUpright);
  const double right = canvas.Right();
  Marks marks(kUpright.width, kUpright.height);
  Dice dice(1021);
  LayDust(marks, dice, 60, -90, -40);
  // Two folds across corners: a soft dark slope and a thin line where the emulsion broke.
  for (Line fold :
       {Line{.x = marks.Right() - 190, .y = 0, .dx = 1, .dy = 1.1, .length = 300, .radius = 7},
        Line{.x = 0, .y = 780, .dx = 0.9, .dy = 1, .length = 320, .radius = 7}}) {
    marks.Stroke(dice, fold, [](double) { return -0.05; });
    fold.radius = 1.8;
    fold.wander = 0.00003;
    marks.Stroke(dice, fold, [](double t) {
      return -0.22 * SmoothStep(-0.4, 0.4, CloudNoise(t * 12, 3.5, 1022, 3));
    });
  }
  const RoughEdge edge{right, 0.07, 0.06, 0.03, 1023};
  canvas.Fill([&](double x, double y) {
    const double out =
        SmoothStep(0.5, 1.41, Outward(x, y, right) + 0.06 * CloudNoise(2 * x, 2 * y, 1027, 3));
    const double grain = 5 * CloudNoise(140 * x, 140 * y, 1031, 2);
    return Lerp(Rgb255(252, 250, 244), Rgb255(178, 168, 150), out) +
           (-edge(x, y)) * Rgb255(60, 66, 74) + Neutral(grain / 255 + marks.Here(x, y));
  });
  return canvas.Print(0.005, 1032, kMultiplyRest);
}

/// Paper burnt along its edge: brown, and ragged in three sizes of noise.
Picture BurntEdge() {
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double edge = FromEdges(x, y, right);
    const double ragged = 0.055 * CloudNoise(2 * x, 2 * y, 1041, 2) +
                          0.022 * CloudNoise(8 * x, 8 * y, 1044, 2) +
                          0.010 * CloudNoise(28 * x, 28 * y, 1047, 2);
    const double scorched = 1 - SmoothStep(-0.02, 0.15, edge + ragged);
    const double charred = 1 - SmoothStep(-0.03, 0.04, edge + 0.8 * ragged - 0.015);
    const double corners = SmoothStep(0.9, 1.4, Outward(x, y, right));
    const Rgb paper = Lerp(Rgb255(255, 253, 248), Rgb255(150, 116, 88), scorched);
    return Lerp(paper, Rgb255(105, 78, 58), charred) + Neutral(-40 * corners / 255);
  });
  return canvas.Print(0.006, 1049, kMultiplyRest);
}

/// A wiped blackboard: clouds of chalk and the arcs of the cloth toward the rim, in the middle
/// nothing but grain.
Picture Blackboard() {
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double away = Outward(x, y, right);
    const double out = SmoothStep(0.45, 1.1, away);
    const double chalk = CloudNoise(2.3 * x, 2.3 * y, 1051, 4);
    // The arm swings about a shoulder far below: the marks' noise goes by the distance from it, and
    // slowly along the arc.
    const double arm = Distance(x - 0.62 * right, 0.9 * (y - 2.1)) + 0.02 * chalk;
    const double wiped = CloudNoise(26 * arm, 1.2 * x, 1055, 3) *
                         SmoothStep(-0.3, 0.4, CloudNoise(1.3 * x, 2 * y, 1058, 2));
    const double grain = 5 * CloudNoise(130 * x, 130 * y, 1060, 2);
    const double light = out * (10 * chalk + 9 * wiped) + grain;
    return (1.0 / 255) *
           (Lerp(Rgb{150, 150, 146}, Rgb{74, 78, 80}, SmoothStep(0, 1.35, away)) + Neutral(light));
  });
  return canvas.Print(0.004, 1062, kOverlayRest);
}

}  // namespace

std::span<const File> PrintFiles() {
  static const File files[] = {
      {"sucai17.jpg", WornPrint},
      {"zvtk_fzl_8a.jpg", Baryta},
      {"style/edgeBurn.jpg", BurntEdge},
      {"style/blackboard.jpg", Blackboard},
  };
  return files;
}

}  // namespace tintwerk::paint

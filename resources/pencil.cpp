// Grounds of drawings: the tooth of the paper, pencil strokes and the gaps between them, unfinished
// margins, and the relief of oil paint.
#include <algorithm>
#include <cmath>
#include <vector>

#include "light.h"
#include "noise.h"
#include "sheet.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

// Little, for the tooth dithers already.
constexpr double kGrain = 0.004;

/// Where on the sheet there are strokes: `share` of it, 0..1 with soft borders.
double Patch(double x, double y, double share, std::uint32_t seed) {
  const double middle = 0.9 * (0.5 - share);
  return SmoothStep(middle - 0.25, middle + 0.25, CloudNoise(2.1 * x, 2.1 * y, seed, 3));
}

/// Only the upper half of a field, for gaps that just lighten: 0..1.
double Gaps(double field) {
  return SmoothStep(-0.3, 0.85, field);
}

/// White gaps between graphite strokes, to be screened on: the ground makes blacks graphite.
struct PencilGaps {
  Size size;
  double ground, tooth;  // in levels
  PencilField field;
  double light;  // of the widest gaps, in levels
  double share;  // of the sheet that has strokes
  PencilField cross;
  double crossLight;
  double margin;  // mean width of the unfinished border
  std::uint32_t seed;

  Picture operator()() const {
    Canvas canvas(size);
    const RoughEdge edge{canvas.Right(), margin, 0.5 * margin, 0.02, seed};
    canvas.Fill([&](double x, double y) {
      const double strokes = field(x, y);
      const double gaps = light * Patch(x, y, share, seed + 10) * Gaps(strokes) +
                          crossLight * Patch(x, y, share, seed + 20) * Gaps(cross(x, y));
      const double sheet = ground + tooth * Tooth(x, y, seed + 30) + gaps;
      return Neutral(Lerp(sheet, 255, edge(x, y, 0.45 * margin * strokes)) / 255);
    });
    return canvas.Print(kGrain, seed + 40);
  }
};

/// Graphite about middle grey, for a soft light; on the whole exactly that grey.
struct Hatching {
  Size size;
  double tooth;
  PencilField field;
  double depth;
  PencilField cross;
  double crossDepth;
  std::uint32_t seed;

  Picture operator()() const {
    Canvas canvas(size);
    canvas.Fill([&](double x, double y) {
      return Neutral(tooth * Tooth(x, y, seed) +
                     depth * Patch(x, y, 0.65, seed + 10) * 1.6 * field(x, y) +
                     crossDepth * Patch(x, y, 0.45, seed + 20) * 1.6 * cross(x, y));
    });
    double sum = 0;
    canvas.Each([&](Rgb& v) { sum += v.red; });
    const double mean = sum / size.width / size.height;
    canvas.Each([&](Rgb& v) { v = Neutral((128 + v.red - mean) / 255); });
    return canvas.Print(kGrain, seed + 30, kOverlayRest);
  }
};

/// A margin that was left white with broad strokes of a brush; the middle is flat, so that faces
/// keep their modelling.
Picture UnfinishedMargin() {
  Canvas canvas(kOdd);
  const double right = canvas.Right();
  const PencilField brush(-38, 0.5, 0.05, 921), bristles(-38, 0.25, 0.008, 922);
  const RoughEdge edge{right, 0.12, 0.05, 0.022, 923};
  canvas.Fill([&](double x, double y) {
    const double ground = 34 + 40 * SmoothStep(0.75, 1.41, Outward(x, y, right));
    // The strokes of the brush end unevenly, and their bristles do.
    const double push = 0.03 * brush(x, y) + 0.03 * bristles(x, y);
    return Neutral(Lerp(ground, 255, edge(x, y, push)) / 255);
  });
  return canvas.Print(0.006, 924);
}

/// Coloured pencils about the grey that a Screen followed by an Overlay leaves alone. The hues are
/// muted, since skin gets them too.
Picture ColouredPencils() {
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  const PencilField light(-45, 0.04, 0.0028, 931), dark(-49, 0.045, 0.0028, 932);
  const RoughEdge edge{right, 0.06, 0.03, 0.02, 933};
  static constexpr Rgb kHues[] = {
      {12, -8, -3}, {9, 2, -12}, {-8, 10, -6}, {-12, 0, 12}};  // rose, ochre, leaf, sky
  canvas.Fill([&](double x, double y) {
    const double quiet = 1 - 0.5 * Calm(x, y, right);
    const double patch = Patch(x, y, 0.7, 934);
    const double lines = light(x, y);
    const double strokes = 70 * patch * Gaps(lines) - 24 * Gaps(dark(x, y));
    Rgb hue{0, 0, 0};
    for (int i = 0; i < 4; ++i) {
      const double here = CloudNoise(1.9 * x + 3 * i, 1.9 * y, 940 + 10 * i, 2);
      hue = hue + SmoothStep(0, 0.3, here) * kHues[i];
    }
    const auto held = [](double v) { return std::clamp(v, -12.0, 12.0); };
    const Rgb tint{held(hue.red), held(hue.green), held(hue.blue)};
    const double ground = 70 + 8 * Tooth(x, y, 935) + quiet * strokes;
    return (1.0 / 255) * Lerp(Neutral(ground) + tint, Neutral(255), edge(x, y, 0.03 * lines));
  });
  return canvas.Print(kGrain, 936);
}

/// Cream paper with graphite on a quarter of it, for a Multiply.
Picture CreamPaper() {
  Canvas canvas(kOdd);
  const PencilField field(44, 0.05, 0.0032, 951);
  canvas.Fill([&](double x, double y) {
    const double graphite = 65 * Patch(x, y, 0.25, 952) * Gaps(field(x, y));
    const double rough = 10 * Tooth(x, y, 953) + 5 * CloudNoise(6 * x, 6 * y, 954, 2);
    return (1.0 / 255) * (Rgb{238, 235, 229} + Neutral(rough - graphite));
  });
  return canvas.Print(kGrain, 955, kMultiplyRest);
}

/// Oil paint: strokes that follow a swirl, laid over each other on canvas, lit from the upper left.
Picture OilRelief() {
  const Size size = kOdd;
  const double right = double(size.width) / size.height;
  std::vector<float> paint(std::size_t(size.width) * size.height);
  const auto at = [&](int x, int y) -> float& { return paint[std::size_t(y) * size.width + x]; };
  for (int row = 0; row < size.height; ++row)
    for (int column = 0; column < size.width; ++column)  // threads of nine pixels
      at(column, row) = float(0.25 * GradientNoise(column / 9.0, row / 4.5, 961) +
                              0.25 * GradientNoise(column / 4.5, row / 9.0, 962));

  Dice dice(963);
  for (int stroke = 0; stroke < 5000; ++stroke) {
    double x = dice.Between(-0.03, right + 0.03) * size.height;
    double y = dice.Between(-0.03, 1.03) * size.height;
    const double length = dice.Between(0.03, 0.06) * size.height;
    const double half = dice.Between(0.004, 0.009) * size.height;
    const double wayward = dice.Between(-18, 18);
    const double level = dice.Between(0, 0.5);
    const auto seed = std::uint32_t(dice.Between(0, 1e9));
    // The swirl's direction, constant along a stroke.
    const double u = x / size.height, v = y / size.height;
    const Direction to = AtAngle(150 * CloudNoise(0.9 * u, 0.9 * v, 964, 2) - 35 + wayward);
    const double reach = length / 2 + half;
    for (int row = std::max(0, int(y - reach)); row < std::min(size.height, int(y + reach)); ++row)
      for (int column = std::max(0, int(x - reach)); column < std::min(size.width, int(x + reach));
           ++column) {
        const double dx = column - x, dy = row - y;
        const double along = (dx * to.cosine + dy * to.sine) / (length / 2);
        const double bend = 0.12 * half * along * along * (seed % 7 - 3.0);
        const double across = (dy * to.cosine - dx * to.sine + bend) / half;
        if (std::abs(along) >= 1 || std::abs(across) >= 1) continue;
        // Bristles run along; the paint is thick at its borders and where the stroke ends.
        const double bristles = GradientNoise(2.1 * along, 1.6 * across + 9, seed);
        const double border = across * across * across * across;
        const double body = level + 0.55 * bristles + 0.35 * border + 0.35 * along;
        const double cover =
            (1 - SmoothStep(0.75, 1, std::abs(across))) * (1 - SmoothStep(0.8, 1, std::abs(along)));
        at(column, row) = float(Lerp(at(column, row), 1 + body, cover));
      }
  }

  Canvas canvas(size);
  for (int row = 0; row < size.height; ++row)
    for (int column = 0; column < size.width; ++column) {
      // How much the paint rises from the upper left, over a few pixels.
      const auto mean = [&](int x, int y) {
        double sum = 0;
        for (int dy = -1; dy <= 1; ++dy)
          for (int dx = -1; dx <= 1; ++dx)
            sum +=
                at(std::clamp(x + dx, 0, size.width - 1), std::clamp(y + dy, 0, size.height - 1));
        return sum / 9;
      };
      const double slope = mean(column + 1, row + 1) - mean(column - 1, row - 1);
      // Steep borders saturate.
      const double light = 1.9 * slope / std::sqrt(1 + 3.6 * slope * slope);
      canvas.At(column, row) = Neutral((128 + 34 * light) / 255);
    }
  return canvas.Print(kGrain, 965, kOverlayRest);
}

const PencilField kNone(0, 1, 1, 0);

}  // namespace

std::span<const File> PencilFiles() {
  static const File files[] = {
      {"sucai22.jpg", OilRelief},
      {"sucai14.jpg", PencilGaps{kOdd,
                                 34,
                                 12,
                                 {-48, 0.05, 0.0032, 901},
                                 78,
                                 0.7,
                                 {-20, 0.05, 0.0032, 902},
                                 26,
                                 0.07,
                                 903}},
      // Bolder strokes than those, and fewer.
      {"zvkr_LifeSketch_wenli2.jpg",
       PencilGaps{kLandscape, 40, 12, {-38, 0.075, 0.0065, 911}, 60, 0.5, kNone, 0, 0.09, 913}},
      {"sucai15.jpg", UnfinishedMargin},
      {"zvkr_caiqian.jpg", ColouredPencils},
      {"sucai16.jpg", CreamPaper},
      {"sucai13.jpg",
       Hatching{kOdd, 26, {-42, 0.05, 0.0032, 971}, 46, {44, 0.05, 0.0032, 972}, 26, 973}},
      {"zvkr_LifeSketch_wenli1.jpg",
       Hatching{kLandscape, 24, {-52, 0.07, 0.005, 981}, 62, kNone, 0, 983}},
  };
  return files;
}

}  // namespace tintwerk::paint

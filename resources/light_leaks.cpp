// Light leaks: what a camera that does not close well lets onto the film. All are black where no
// light fell, brightest at an edge, and leave the middle to the subject.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "light.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

constexpr int kWidth = 1500;
constexpr int kHeight = 1000;
constexpr double kRight = double(kWidth) / kHeight;

// Faint, since the pictures are stretched over larger images, and their grain with them.
constexpr double kGrain = 0.008;

/// A leak from its exposure alone.
template <class Exposure>
Picture Leak(const LeakColour& colour, std::uint32_t seed, const Exposure& exposure) {
  Canvas canvas(kWidth, kHeight);
  canvas.Fill([&](double x, double y) { return colour(std::max(0.0, exposure(x, y))); });
  return canvas.Print(kGrain, seed);
}

/// Noise about 1: how much of the light gets through.
double Uneven(double x, double y, std::uint32_t seed, double depth) {
  return 1 + depth * CloudNoise(x, y, seed, 2);
}

Picture OrangeEdgeLeak() {
  return Leak({1.9, 0.72, 0.16}, 101, [](double x, double y) {
    // How far the light reaches in changes down the edge, and with it a narrow core.
    const double reach = 0.52 + 0.3 * CloudNoise(1.7 * y, 0.4, 11, 2);
    const double halo = FallOff(x, reach) * Uneven(0.9 * x, 2.2 * y, 12, 0.35);
    const double core = FallOff(x - 0.01, 0.2 + 0.12 * GradientNoise(2.6 * y, 1.5, 13)) *
                        SmoothStep(-0.5, 0.6, CloudNoise(2.1 * y, 3.3, 14, 2));
    return 0.95 * halo + 1.25 * core;
  });
}

Picture GoldenCornerLeak() {
  return Leak({1.7, 1.15, 0.4}, 106, [](double x, double y) {
    const double dx = kRight + 0.06 - x;
    const double dy = y + 0.1;
    const double away = Distance(dx, 1.15 * dy);
    // Beams fan out: their noise goes by the direction alone.
    const double toward = dy / (dx + dy);
    const double beams = Uneven(7 * toward, 0.5, 21, 0.5) * SmoothStep(0.15, 0.5, away);
    const double glow = FallOff(away - 0.12, 1.3) * Uneven(1.3 * x, 1.3 * y, 22, 0.25);
    const double core = FallOff(away - 0.12, 0.6);
    return 1.1 * glow * (0.7 + 0.4 * beams) + 1.2 * core;
  });
}

Picture RedBandLeak() {
  return Leak({1.8, 0.42, 0.1}, 107, [](double x, double y) {
    const double edge = 0.05 * CloudNoise(1.4 * x, 0.7, 31, 2);
    const double band = FallOff(y - 0.03 + edge, 0.36 + 0.22 * GradientNoise(0.9 * x, 2.5, 32));
    // The light ran along the film in thin strands, most of it left of the middle.
    const double strands = Uneven(0.7 * x, 16 * y, 33, 0.45);
    const double along = 0.35 + 0.65 * SmoothStep(-0.35, 0.4, CloudNoise(0.9 * x, 4.5, 34, 2));
    const double core = FallOff(y - 0.01 + edge, 0.13) * along;
    return 1.15 * band * strands * along + 1.3 * core;
  });
}

Picture MagentaDiagonalLeak() {
  Canvas canvas(kWidth, kHeight);
  // A rose halo with an orange heart: two colours of light, which no single exposure gives.
  const LeakColour rose{1.05, 0.16, 0.5};
  const LeakColour amber{1.0, 0.62, 0.3};
  canvas.Fill([&](double x, double y) {
    // The streak runs from the middle of the lower edge to the upper part of the right one.
    const double along = (x - 0.75 + (1 - y)) / 1.4142;
    const double across =
        (x - 0.98 - 0.72 * (1 - y)) / 1.2323 + 0.05 * CloudNoise(1.6 * along, 0.9, 41, 2);
    const double outward =
        SmoothStep(0.12, 0.62, std::max(std::abs(along - 0.5), 0.75 * std::abs(across) + 0.25));
    const double wide = FallOff(std::abs(across) - 0.02, across < 0 ? 0.42 : 0.6);
    const double narrow = FallOff(std::abs(across - 0.07), 0.26);
    const double ends = 0.35 + 0.65 * outward;
    return rose(1.2 * wide * ends * Uneven(1.2 * x, 1.2 * y, 42, 0.3)) + amber(0.6 * narrow * ends);
  });
  return canvas.Print(kGrain, 109);
}

Picture BurntEndLeak() {
  return Leak({1.9, 0.95, 0.5}, 115, [](double x, double y) {
    // The loading light burnt the end of the roll. It crept between the turns of the film, so its
    // edge leans, wavers and is soft in one place and harder in another; fainter, it shows once more
    // where the film was wound on a little.
    const double lean = 0.07 * (y - 0.5);
    const double wave = 0.05 * CloudNoise(1.6 * y, 0.3, 51, 3) + lean;
    const double soft = 0.05 + 0.05 * (1 + GradientNoise(1.9 * y, 2.4, 54));
    const double burnt = SmoothStep(-0.2 * soft, soft, x - (kRight - 0.12) - wave);
    const double again = SmoothStep(-0.05, 0.16, x - (kRight - 0.28) - 1.5 * wave) *
                         SmoothStep(-0.5, 0.5, CloudNoise(1.1 * y, 3.1, 55, 2));
    const double halo = FallOff(kRight - 0.1 - x, 0.62 + 0.3 * CloudNoise(1.5 * y, 1.5, 52, 2));
    return (1.1 * burnt + 0.4 * again) * Uneven(1.5 * x, 1.8 * y, 53, 0.35) + 0.75 * halo;
  });
}

Picture PeachCornerLeak() {
  Canvas canvas(kWidth, kHeight);
  const LeakColour peach{1.25, 0.85, 0.6};
  const LeakColour rose{0.95, 0.22, 0.42};
  canvas.Fill([&](double x, double y) {
    const double away = Distance(0.8 * (x + 0.08), 1.08 - y);
    const double bent = away + 0.1 * CloudNoise(1.5 * x, 1.5 * y, 61, 2);
    const double haze = FallOff(bent - 0.12, 1.25);
    const double heart = FallOff(bent - 0.1, 0.6);
    // What was reflected in the camera lies on the other side, much weaker.
    const double other = Distance(1.25 * (kRight - x), y + 0.05);
    const double reflected = FallOff(other - 0.05 + 0.06 * CloudNoise(2 * x, 2 * y, 62, 2), 0.75);
    return peach(0.85 * haze + 1.0 * heart) + rose(0.9 * reflected + 0.4 * haze);
  });
  return canvas.Print(kGrain, 102);
}

/// A disc whose outer side is cut by the circle of the lens, the more the farther out it lies.
void AddCatsEye(Canvas& canvas, const Disc& disc) {
  const double outX = disc.x - kRight / 2, outY = disc.y - 0.5;
  const double out = std::max(Distance(outX, outY), 1e-6);
  const double shift = 0.75 * disc.radius * std::min(out, 0.9);
  canvas.Around(disc.x, disc.y, disc.radius, [&](Rgb& light, double dx, double dy) {
    const double cut = Distance(dx + shift * outX / out, dy + shift * outY / out);
    const double place = std::max(Distance(dx, dy), cut) / disc.radius;
    if (place >= 1) return;
    const double share = 1 - disc.rim * (1 - SmoothStep(0.5, 0.95, place));
    light = light + ((1 - SmoothStep(0.86, 1, place)) * share) * disc.colour;
  });
}

Picture BokehLeak() {
  Canvas canvas(1080, 720);  // a PNG: lamps have no fine detail, and bytes count
  const LeakColour haze{1.2, 0.6, 0.2};
  canvas.Fill([&](double x, double y) {
    const double right = FallOff(kRight - x, 0.5 + 0.2 * GradientNoise(1.8 * y, 0.6, 71));
    const double below = FallOff(1 - y, 0.34 + 0.14 * GradientNoise(1.5 * x, 1.6, 72));
    return haze(0.5 * right + 0.6 * below * SmoothStep(-0.1, 1.2, x));
  });
  // No two lamps alike: near and far ones, warm and cool, filled or ringed. Beside the middle the
  // lens cuts their discs to cat's eyes, which lie along the rim.
  Dice dice(117);
  for (int i = 0; i < 90; ++i) {
    // Dense at the edges, and thinning out inward.
    const double depth = dice.Between(0, 1);
    const double inward = 0.5 * depth * depth;
    const double place = dice.Between(0, 1);
    const bool onRight = dice.Chance(0.5);
    const double x = onRight ? kRight - inward : kRight * (1 - 0.72 * place);
    const double y = onRight ? place : 1 - 0.72 * inward;
    const double size = dice.Between(0, 1);
    const double radius = 0.012 + 0.085 * size * size * size;
    const double strength = dice.Between(0.12, 0.85) * (1 - 0.7 * depth) * (1 - 7 * radius) + 0.05;
    const Rgb warm = Lerp(Rgb{1, 0.8, 0.46}, Rgb{1, 0.36, 0.22}, dice.Between(0, 1));
    const Rgb colour = dice.Chance(0.14) ? Rgb{0.75, 0.55, 0.9} : warm;
    AddCatsEye(canvas, {x, y, radius, strength * colour, dice.Between(0.05, 0.7)});
  }
  return canvas.Print(0.004, 118);
}

}  // namespace

std::span<const File> LightLeakFiles() {
  static const File files[] = {
      // Lamps out of focus along the right and the lower edge.
      {"style/LL17.png", BokehLeak},
      // Along the left edge, from red over orange to yellow.
      {"style/Leak1.jpg", OrangeEdgeLeak},
      // Golden from the upper right corner, with faint beams.
      {"style/Leak6.jpg", GoldenCornerLeak},
      // A red band along the top, as from the hinge of the back.
      {"style/Leak7.jpg", RedBandLeak},
      // A rose streak across the lower right corner.
      {"style/Leak9.jpg", MagentaDiagonalLeak},
      // The end of the roll: burnt pale on the right, exposed twice.
      {"style/Leak15.jpg", BurntEndLeak},
      // A wide peach haze from the lower left corner, rose above.
      {"style/light-leak-2.jpg", PeachCornerLeak},
  };
  return files;
}

}  // namespace tintwerk::paint

// Leaks, beams and skies that looks screen on or blend about middle grey: smooth light, nothing where
// it does not reach.
#include <algorithm>
#include <cmath>

#include "light.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

constexpr double kGrain = 0.007;

/// Noise about 1.
double Uneven(double x, double y, std::uint32_t seed, double depth) {
  return 1 + depth * CloudNoise(x, y, seed, 3);
}

/// Beams of light, `count` of them between 0 and 1, each of its own place, width and strength.
double Beams(double place, int count, std::uint32_t seed) {
  double light = 0;
  for (int beam = 0; beam < count; ++beam) {
    Dice dice(seed + beam);
    const double at = (beam + dice.Between(0.2, 0.8)) / count;
    const double half = dice.Between(0.45, 1.1) / count;
    const double strength = dice.Between(0.35, 1);
    light += strength * Blob((place - at) * (place - at) / (half * half));
  }
  return light;
}

Picture RedFromTheLeft() {
  Canvas canvas(kOdd);
  canvas.Fill([&](double x, double y) {
    const double left = FallOff(Distance(x, y), 1.5) * Uneven(1.2 * x, 1.2 * y, 701, 0.25);
    const double right =
        Glow(Distance(canvas.Right() - x, 1 - y), 0.95) * Uneven(1.2 * x, 1.2 * y, 704, 0.25);
    return Rgb255(10, 0, 2) + left * Rgb255(165, 36, 30) + right * Rgb255(120, 44, 16);
  });
  return canvas.Print(kGrain, 707);
}

/// The sun just outside the upper right corner. The look turns everything honey-yellow, so this is
/// whiter than it looks right.
Picture CoastSun() {
  Canvas canvas(kOdd);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double dx = right + 0.05 - x;
    const double dy = y + 0.07;
    const double away = Distance(dx, dy);
    const double toward = dy / (dx + dy);
    const double rays = Beams(toward, 8, 711) * SmoothStep(0.15, 0.5, away) *
                        SmoothStep(0.5, 0.68, x / right) * Glow(away, 1.25);
    const double glow = FallOff(away - 0.05, 1.5) * Uneven(1.3 * x, 1.3 * y, 712, 0.12);
    const double core = FallOff(away - 0.04, 0.45);
    return glow * Rgb255(200, 150, 85) + core * Rgb255(140, 130, 110) +
           0.3 * rays * Rgb255(150, 128, 90);
  });
  // Glints on the water, right of the middle alone.
  Dice dice(713);
  for (int i = 0; i < 260; ++i) {
    const double near = dice.Between(0, 1);
    const double x = right * (0.53 + 0.47 * std::sqrt(near));
    const double depth = dice.Between(0, 1);
    const double y = 0.64 + 0.30 * depth;
    const double radius = dice.Between(0.004, 0.006) + 0.004 * depth;
    const double light = dice.Between(40, 150) * (0.4 + 0.6 * near) / 255;
    canvas.Around(x, y, 2.2 * radius, [&](Rgb& pixel, double dx, double dy) {
      const double across = dx / (2.2 * radius), down = dy / radius;
      pixel = pixel + light * Blob(across * across + down * down) * Rgb{1, 0.95, 0.8};
    });
  }
  return canvas.Print(kGrain, 714);
}

Picture OrangeAndRose() {
  Canvas canvas(kOdd);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double orange =
        FallOff(Distance(x, 0.9 * (y - 0.28)), 0.92) * Uneven(1.3 * x, 1.3 * y, 721, 0.2);
    const double rose = Glow(Distance(right - x, 1 - y), 0.9) * Uneven(1.3 * x, 1.3 * y, 724, 0.2);
    return Rgb255(8, 5, 3) + orange * Rgb255(224, 112, 38) + rose * Rgb255(150, 52, 84);
  });
  return canvas.Print(kGrain, 727);
}

/// The sun behind the subject. In the upper left corner, which stays above when a landscape image
/// gets it turned clockwise; the haze on the left is above there.
Picture LowSun() {
  Canvas canvas(kUpright);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double away = Distance(x - 0.05 * right, y - 0.08);
    const double glow = FallOff(away - 0.02, 1.0) * Uneven(1.5 * x, 1.5 * y, 731, 0.12);
    const double core = FallOff(away - 0.02, 0.34);
    const double haze = Glow(x, 0.6);
    return glow * Rgb255(168, 128, 80) + core * Rgb255(86, 110, 120) + haze * Rgb255(30, 20, 12);
  });
  return canvas.Print(kGrain, 734);
}

/// 0 along the right and the lower edge, where the image goes on without the picture; 1 from a good
/// quarter inward. The last pixels are all 0, so that a JPEG's blocks are too.
double FadeToRight(double x, double y, double right) {
  return SmoothStep(0.02, 0.28 * right, right - x) * SmoothStep(0.02, 0.28, 1 - y);
}

Picture FallingBeams() {
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double dx = x - 0.34 * right;
    const double dy = y + 0.28;
    const double away = Distance(dx, dy);
    const double beams = Beams(0.5 + 0.62 * dx / away, 8, 741);
    const double light = FallOff(away - 0.15, 1.45) * beams * Uneven(2 * x, 2 * y, 742, 0.15) *
                         FadeToRight(x, y, right);
    return light * Rgb255(176, 150, 110);
  });
  return canvas.Print(kGrain, 744);
}

/// Motes in a faint glow from the upper right corner. No beams: it is turned, and would cross those
/// of its companion.
Picture Motes() {
  Canvas canvas(kUpright);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double glow = FallOff(Distance(right - x, y), 1.2) * Uneven(1.5 * x, 1.5 * y, 751, 0.2);
    return glow * Rgb255(60, 48, 30);
  });
  Dice dice(752);
  for (int i = 0; i < 150; ++i) {
    const double depth = dice.Between(0, 1);
    const double x = right * (1 - depth * dice.Between(0.5, 1));
    const double y = dice.Between(0, 1) * (0.35 + 0.65 * depth);
    const double size = dice.Between(0, 1);
    const double light = dice.Between(20, 70) * (1 - 0.5 * size) / 255;
    const double quiet = 1 - 0.6 * Calm(x, y, right);
    canvas.AddSpeck(dice, x, y, 0.0035 + 0.0085 * size * size * size,
                    light * quiet * Rgb{1, 0.88, 0.66});
  }
  return canvas.Print(kGrain, 753);
}

Picture Sunset() {
  static constexpr Rgb kSky[] = {Rgb255(44, 26, 74), Rgb255(66, 24, 70), Rgb255(104, 34, 50),
                                 Rgb255(150, 66, 26), Rgb255(168, 96, 34)};
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double bent = y + 0.09 * CloudNoise(1.3 * x, 2.6 * y, 761, 4);
    const double side = SmoothStep(0.1, 0.8, std::abs(2 * x / right - 1));
    const double sun = FallOff(Distance(x - 0.66 * right, 1.2 * (y - 0.86)), 0.7);
    return Lerp(0.62, 1, side) * Between(kSky, bent) + sun * Rgb255(84, 60, 26);
  });
  return canvas.Print(kGrain, 764);
}

Picture LeakAndRose() {
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double reach = 0.62 + 0.25 * CloudNoise(1.6 * y, 0.4, 771, 2);
    const double gate = 1 - SmoothStep(0.25, 0.45, x / right);
    const double halo = FallOff(x, reach) * Uneven(0.9 * x, 2 * y, 772, 0.25) * gate;
    const double core = FallOff(x, 0.16 + 0.05 * GradientNoise(2.2 * y, 1.5, 775));
    const double rose = Glow(Distance(right - x, 1 - y), 0.55);
    return halo * Rgb255(190, 92, 30) + core * Rgb255(90, 110, 70) + rose * Rgb255(70, 24, 40);
  });
  return canvas.Print(kGrain, 776);
}

/// Light from above about middle grey, cool shade below. It lies over a part of the image, too.
Picture LightAboveShade() {
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double fade = FadeToRight(x, y, right);
    const double light =
        FallOff(Distance(x - 0.42 * right, y) * Uneven(1.4 * x, 1.4 * y, 781, 0.1), 0.95);
    const double shade = SmoothStep(0.3, 0.75, y);
    return Neutral(kOverlayRest) + fade * light * Rgb255(86, 62, 30) +
           (-fade * shade) * Rgb255(34, 20, 14);
  });
  return canvas.Print(kGrain, 784, kOverlayRest);
}

}  // namespace

std::span<const File> SunlightFiles() {
  static const File files[] = {
      {"sucai7.jpg", RedFromTheLeft},     {"sucai8.jpg", CoastSun},
      {"sucai23.jpg", OrangeAndRose},     {"zvkr_bl_a.jpg", LowSun},
      {"zvkr_bl_b.jpg", LightAboveShade}, {"zvkr_cl_b.jpg", FallingBeams},
      {"zvkr_cl_c.jpg", Motes},           {"zvtk_071_a.jpg", Sunset},
      {"ZVLouguang3.jpg", LeakAndRose},
  };
  return files;
}

}  // namespace tintwerk::paint

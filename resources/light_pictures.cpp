// Pictures of light and air that looks blend over the whole image.

#include <algorithm>
#include <cmath>
#include <utility>

#include "light.h"
#include "marks.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

Picture RoseBokeh() {
  Canvas canvas(1000, 1400);
  canvas.Fill([&](double x, double y) {
    const double below = FallOff(1 - y, 0.85) * (1 + 0.3 * CloudNoise(2 * x, 2 * y, 201, 2));
    const double above = FallOff(Distance(x, y), 0.6);
    return below * Rgb{0.62, 0.25, 0.24} + above * Rgb{0.34, 0.15, 0.30};
  });
  Dice dice(203);
  for (int i = 0; i < 84; ++i) {
    const double height = dice.Between(0, 1);
    const double x = dice.Between(-0.02, canvas.Right() + 0.02);
    // Many small lamps, few large ones, and the large ones thin: their light is spread.
    const double size = dice.Between(0, 1);
    const double radius = 0.011 + 0.062 * size * size;
    const double strength = dice.Between(0.3, 0.9) * (1 - 0.75 * height) * (1 - 7 * radius);
    const Rgb colour = Lerp(Rgb{1, 0.42, 0.52}, Rgb{1, 0.76, 0.38}, dice.Between(0, 1));
    canvas.Add(
        {x, 1.02 - 0.62 * height * height, radius, strength * colour, dice.Between(0.15, 0.6)});
  }
  return canvas.Print(0.008, 204);
}

Picture WindowLight() {
  Canvas canvas(1000, 1400);
  canvas.Fill([&](double x, double y) {
    // The sun stands low: the window lies on the wall as a leaning parallelogram, three panes high
    // and two wide. Its shadow softens with the distance.
    const double across = (x - 0.08 - 0.22 * (1 - y)) / 0.42;
    const double down = (y - 0.14 + 0.28 * x) / 0.78;
    const double soft = 0.05 + 0.05 * y;
    const auto opening = [&](double at, int panes) {
      const double inside = SmoothStep(-soft, soft, at) * (1 - SmoothStep(1 - soft, 1 + soft, at));
      const double inPane = at * panes - std::floor(at * panes);
      const double bar = std::min(inPane, 1 - inPane) / panes;
      const bool between = at > 0.5 / panes && at < 1 - 0.5 / panes;
      return inside * (between ? 0.35 + 0.65 * SmoothStep(0, 0.8 * soft, bar) : 1);
    };
    const double window = opening(across, 2) * opening(down, 3);
    // Leaves before it move in the wind.
    const double leaves = SmoothStep(-0.1, 0.75, CloudNoise(4.5 * x + 1.5 * y, 5 * y, 211, 3));
    const double light = window * (1 - 0.5 * leaves);
    const double wall = 0.02 * CloudNoise(1.8 * x, 1.8 * y, 212, 3);
    return Lerp(Rgb{0.37, 0.36, 0.41}, Rgb{0.84, 0.71, 0.53}, light) + Neutral(wall);
  });
  return canvas.Print(0.008, 213);
}

Picture DuskSky() {
  static constexpr Rgb kSky[] = {{0.46, 0.42, 0.60},
                                 {0.58, 0.48, 0.61},
                                 {0.72, 0.54, 0.61},
                                 {0.86, 0.62, 0.55},
                                 {0.97, 0.75, 0.52}};
  Canvas canvas(1000, 1400);
  canvas.Fill([&](double x, double y) {
    const double bent = y + 0.05 * CloudNoise(1.1 * x, 1.4 * y, 221, 2);
    const double cloud = SmoothStep(-0.1, 0.7, CloudNoise(1.6 * x + 0.8 * y, 7 * y, 222, 4));
    // Lit from below: the clouds are rose above and gold near the sun.
    const Rgb lit = Lerp(Rgb{0.70, 0.50, 0.62}, Rgb{1.0, 0.82, 0.62}, y);
    const double sun = FallOff(Distance(x - 0.45, 1.4 * (1.02 - y)), 0.6);
    return Lerp(Along(kSky, bent), lit, 0.5 * cloud) + 0.1 * sun * Rgb{1, 0.8, 0.5};
  });
  return canvas.Print(0.006, 223);
}

Picture SlideMount() {
  Canvas canvas(1500, 1000);
  canvas.Fill([&](double x, double y) {
    const double dx = (x - 0.75) / 0.75;
    const double dy = (y - 0.5) / 0.5;
    const double rim = dx * dx * dx * dx + dy * dy * dy * dy;
    const double patches = 0.1 * CloudNoise(1.6 * x, 1.6 * y, 231, 3);
    const double fallen = SmoothStep(0.1, 1.9, rim + patches);
    return Lerp(Rgb{0.97, 0.95, 0.90}, Rgb{0.50, 0.40, 0.37}, fallen);
  });
  return canvas.Print(0.006, 232);
}

Picture CrossFade() {
  static constexpr Rgb kFade[] = {
      {0.74, 0.55, 0.36}, {0.60, 0.53, 0.45}, {0.49, 0.51, 0.52}, {0.34, 0.50, 0.58}};
  Canvas canvas(1500, 1000);
  canvas.Fill([&](double x, double y) {
    const double bent = 0.62 * x + 0.12 * (1 - y) + 0.07 * CloudNoise(1.2 * x, 1.2 * y, 241, 2);
    return Along(kFade, bent);
  });
  return canvas.Print(0.012, 242);
}

Picture FilmDust() {
  Canvas canvas(1500, 1000);
  canvas.Fill([&](double x, double y) {
    const double veil = FallOff(Distance(0.7 * (1.5 - x), 1 - y), 0.8);
    const double run = SmoothStep(0.25, 0.8, CloudNoise(40 * x, 0.4 * y, 251, 2));
    return veil * Rgb{0.26, 0.15, 0.08} + 0.025 * run * Rgb{1, 1, 0.9};
  });
  Dice dice(252);
  for (int i = 0; i < 230; ++i) {
    const double x = dice.Between(0, canvas.Right());
    const double y = dice.Between(0, 1);
    // Most of it fine; a few flakes.
    const double size = dice.Between(0, 1);
    const double radius = 0.0016 + 0.004 * size * size * size * size;
    canvas.AddSpeck(dice, x, y, radius, dice.Between(0.12, 0.55) * Rgb{1, 0.97, 0.9});
  }
  LayHairs(canvas, dice, 14);
  return canvas.Print(0.008, 253);
}

Picture MorningHaze() {
  Canvas canvas(1500, 1000);
  canvas.Fill([&](double x, double y) {
    const double away = Distance(0.75 * (x + 0.05), y + 0.1);
    const double haze =
        FallOff(away - 0.15, 1.9) * (1 + 0.2 * CloudNoise(1.3 * x, 1.8 * y, 261, 3));
    const double low = 0.5 * FallOff(1.05 - y, 0.5);
    return haze * Rgb{1.12, 0.88, 0.56} + low * Rgb{0.2, 0.17, 0.19};
  });
  return canvas.Print(0.006, 262);
}

Picture PrintGrain() {
  Canvas canvas(1500, 1000);
  canvas.Fill([&](double x, double y) {
    const double tooth = CloudNoise(150 * x, 150 * y, 271, 2);
    const double mottle = CloudNoise(5 * x, 5 * y, 272, 2);
    return Rgb{0.525, 0.505, 0.475} + Neutral(0.035 * tooth + 0.012 * mottle);
  });
  return canvas.Print(0.01, 273);
}

Picture DustyBeam() {
  Canvas canvas(1500, 1000);
  canvas.Fill([&](double x, double y) {
    // Beams from beyond the upper right corner.
    const double dx = 1.72 - x;
    const double dy = y + 0.28;
    const double toward = dy / (dx + dy);
    const double beams = SmoothStep(-0.35, 0.6, CloudNoise(6 * toward, 0.5, 281, 2));
    const double reach = FallOff(Distance(dx, dy) - 0.3, 1.6);
    return reach * (0.2 + 0.5 * beams) * Rgb{1, 0.84, 0.6};
  });
  Dice dice(282);
  for (int i = 0; i < 130; ++i) {
    const double x = 1.5 * std::sqrt(dice.Between(0, 1));
    const double y = dice.Between(0, 1);
    const double size = dice.Between(0, 1);
    const double light = dice.Between(0.06, 0.26) * (1 - 0.65 * size) * (0.4 + 0.4 * x);
    canvas.Add({x, y, 0.0025 + 0.014 * size * size * size, light * Rgb{1, 0.9, 0.7}, 0.2});
  }
  return canvas.Print(0.006, 283);
}

Picture SunHalo() {
  Canvas canvas(1500, 1000);
  const double sunX = 0.16, sunY = 0.1;
  canvas.Fill([&](double x, double y) {
    const double dx = x - sunX, dy = y - sunY;
    const double away = Distance(dx, dy);
    // Light that scatters in a lens: a bright point whose glow has no edge, and a veil over all.
    const double core = 1 / (1 + away * away / 0.0012);
    const double glow = 1 / (1 + away * away / 0.03);
    const double veil = FallOff(away, 2.0);
    // The rays' noise goes around the sun without a seam: by the direction as a unit vector.
    const double norm = std::max(away, 1e-6);
    const double ray = CloudNoise(3.2 * dx / norm, 3.2 * dy / norm, 291, 3);
    const double rays = ray * SmoothStep(0.03, 0.2, away) * FallOff(away, 1.1);
    const double ring = SmoothStep(0.5, 0.62, away) * (1 - SmoothStep(0.64, 0.8, away));
    const double cloud = 0.02 * CloudNoise(1.4 * x, 1.4 * y, 293, 2);
    const Rgb ground =
        Lerp(Rgb{0.50, 0.47, 0.46}, Rgb{0.40, 0.37, 0.41}, SmoothStep(0.4, 1.6, away));
    return ground + (veil * (0.8 + cloud)) * Rgb{0.20, 0.13, 0.06} +
           (glow + 0.5 * std::max(0.0, rays)) * Rgb{0.34, 0.26, 0.13} +
           core * Rgb{0.26, 0.30, 0.34} + ring * Rgb{0.03, 0.012, 0.016};
  });
  // Ghosts on the line through the middle of the picture, each a little beside its neighbours in
  // colour.
  struct Ghost {
    double place, radius;
    Rgb colour;
  };
  for (const auto& [place, radius, colour] :
       {Ghost{0.6, 0.03, {0.05, 0.045, 0.02}}, Ghost{1.2, 0.055, {0.045, 0.03, 0.035}},
        Ghost{1.46, 0.022, {0.03, 0.05, 0.045}}, Ghost{1.8, 0.1, {0.04, 0.028, 0.018}}})
    canvas.Add({sunX + place * (0.75 - sunX), sunY + place * (0.5 - sunY), radius, colour, 0.45});
  return canvas.Print(0.006, 292);
}

Picture ColourLights() {
  Canvas canvas(1500, 1000);
  canvas.Fill([&](double x, double y) {
    const double bend = 0.12 * CloudNoise(1.3 * x, 1.3 * y, 301, 2);
    const double violet = FallOff(Distance(0.85 * x, 1.02 - y) - 0.1 + bend, 1.3);
    const double amber = FallOff(Distance(0.85 * (1.5 - x), y + 0.02) - 0.1 - bend, 1.3);
    const double rose = FallOff(Distance(x - 0.1, 0.9 * y) - bend, 0.9);
    return violet * Rgb{0.46, 0.24, 0.66} + amber * Rgb{0.86, 0.52, 0.22} +
           rose * Rgb{0.34, 0.12, 0.22};
  });
  return canvas.Print(0.008, 302);
}

}  // namespace

std::span<const File> LightPictureFiles() {
  static const File files[] = {
      // Upright ones; a landscape image gets them turned clockwise, so what is below lies left.
      // On black: rose and amber lamps out of focus, most below.
      {"zvtk_fzl_3a.jpg", RoseBokeh},
      // About middle grey: the evening sun through a window, on a wall.
      {"zvtk_fzl_4a.jpg", WindowLight},
      // Indigo above, apricot below, with long clouds.
      {"zvtk_fzl_6a.jpg", DuskSky},

      // An old slide. Nearly white: cream with corners that fell dark.
      {"zvtk_fzl_7a.jpg", SlideMount},
      // About middle grey: amber on the left, teal on the right.
      {"zvtk_fzl_7b.jpg", CrossFade},
      // On black: dust, hairs and a faint veil.
      {"zvtk_fzl_7c.jpg", FilmDust},

      // A faded summer print. On black: a wide warm haze from the upper left.
      {"zvkr_jj_001.jpg", MorningHaze},
      // About middle grey: the texture of matt paper.
      {"zvkr_jj_002.jpg", PrintGrain},
      // On black: a beam of light with motes in it.
      {"zvkr_jj_004.jpg", DustyBeam},

      // About middle grey: the sun in the upper left, its rays and ghosts.
      {"sucai12.jpg", SunHalo},
      // On black: soft violet and amber light from two corners.
      {"zvtk_071_b.jpg", ColourLights},
  };
  return files;
}

}  // namespace tintwerk::paint

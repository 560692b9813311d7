// Snow, rain, stars and the lights of the night, to be screened on or blended about middle grey.
#include <algorithm>
#include <cmath>
#include <vector>

#include "light.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

constexpr double kGrain = 0.006;

/// Snow in three depths, falling fifteen degrees off the upright, thin in the middle; below it a
/// mist on the ground.
Picture FlyingSnow() {
  const Rgb snow = Rgb255(245, 252, 255);
  Canvas canvas(kOdd);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double mist = SmoothStep(0.86, 1.02, y + 0.03 * CloudNoise(2 * x, 3 * y, 801, 3));
    return mist * Rgb255(24, 26, 28);
  });
  struct Depth {
    int count;
    double small, large, light, stretch;
  };
  Dice dice(802);
  for (const Depth& depth : {Depth{700, 0.0045, 0.007, 190, 1}, Depth{200, 0.008, 0.015, 130, 1.5},
                             Depth{30, 0.025, 0.06, 55, 1.1}})
    for (int i = 0; i < depth.count; ++i) {
      const double x = dice.Between(0, right);
      const double y = dice.Between(0, 1);
      const double radius = dice.Between(depth.small, depth.large);
      const double light = dice.Between(0.55, 1) * depth.light / 255;
      const double lot = dice.Between(0, 1);
      const double bent = dice.Between(-0.12, 0.12);
      if (lot < 0.67 * Calm(x, y, right)) continue;
      // Each flake is a few blobs, drawn out along its fall.
      const Direction fall = AtAngle(105 + 60 * bent);
      for (int blob = 0; blob < 4; ++blob) {
        const double across = dice.Between(-0.45, 0.45) * radius;
        const double down = dice.Between(-0.45, 0.45) * radius * depth.stretch;
        const double size = dice.Between(0.55, 0.9) * radius;
        canvas.Around(x + across * fall.sine + down * fall.cosine,
                      y - across * fall.cosine + down * fall.sine, size * depth.stretch,
                      [&](Rgb& pixel, double dx, double dy) {
                        const double u = (dx * fall.cosine + dy * fall.sine) / depth.stretch;
                        const double v = dy * fall.cosine - dx * fall.sine;
                        pixel = pixel + 0.45 * light * Blob((u * u + v * v) / (size * size)) * snow;
                      });
      }
    }
  return canvas.Print(kGrain, 803);
}

Picture SilentNight() {
  Canvas canvas(kOdd);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    return FallOff(y + 0.03 * CloudNoise(2 * x, 2 * y, 811, 2), 0.42) * Rgb255(58, 30, 10);
  });
  static constexpr Rgb kGold = Rgb255(255, 196, 96), kEmber = Rgb255(255, 92, 52),
                       kGreen = Rgb255(126, 205, 120), kCream = Rgb255(255, 232, 196);
  Dice dice(812);
  const auto lamp = [&](double x, double y, double radius, double strength) {
    const double lot = dice.Between(0, 1);
    const Rgb colour = lot < 0.42 ? kGold : lot < 0.64 ? kEmber : lot < 0.78 ? kGreen : kCream;
    // Held back above the subject's head.
    const double aside = SmoothStep(0.11, 0.17, std::abs(x / right - 0.5));
    canvas.Add({x, y, radius, Lerp(0.3, 1, aside) * strength / 255 * colour, 0.35});
  };
  for (int i = 0; i < 70; ++i) {
    // An arch: lower at the sides.
    const double x = dice.Between(0, right);
    const double side = 2 * x / right - 1;
    const double depth = dice.Between(0, 1);
    const double radius = dice.Between(0.018, 0.055);
    const double strength = dice.Between(60, 170) * (1 - 6 * (radius - 0.018));
    lamp(x, -0.01 + 0.26 * depth * depth + 0.16 * side * side * depth, radius, strength);
  }
  for (int i = 0; i < 20; ++i) {
    const double x = dice.Between(0, right);
    const double y = dice.Between(0.91, 1.01);
    const double radius = dice.Between(0.018, 0.05);
    lamp(x, y, radius, dice.Between(60, 120));
  }
  for (int i = 0; i < 200; ++i) {
    const double x = dice.Between(0, right);
    const double y = dice.Between(0, 1);
    const double radius = dice.Between(0.0045, 0.0075);
    const double light = dice.Between(60, 150) / 255;
    const double lot = dice.Between(0, 1);
    if (lot > 0.67 * Calm(x, y, right)) canvas.AddSpeck(dice, x, y, radius, light * Rgb{1, 1, 1});
  }
  return canvas.Print(kGrain, 813);
}

Picture CityLights() {
  Canvas canvas(kOdd);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double glow = Glow(std::abs(y - 0.9) + 0.03 * CloudNoise(2.5 * x, 2 * y, 821, 3), 0.24);
    const double night = 1 - SmoothStep(0, 0.7, y);
    return glow * Rgb255(46, 24, 8) + night * Rgb255(10, 14, 34);
  });
  static constexpr Rgb kSodium = Rgb255(255, 178, 84), kEmber = Rgb255(255, 104, 56),
                       kBlue = Rgb255(110, 160, 255), kCream = Rgb255(255, 234, 205),
                       kRed = Rgb255(255, 58, 48);
  Dice dice(822);
  for (int i = 0; i < 120; ++i) {
    const double x = dice.Between(-0.02, right + 0.02);
    const double depth = dice.Between(0, 1);
    // In the middle third, where people stand, only along the edge.
    const bool middle = std::abs(x / right - 0.5) < 0.17;
    const double y = 1.01 - (middle ? 0.16 : 0.37) * depth * std::sqrt(depth);
    const double size = dice.Between(0, 1);
    const double radius = 0.012 + 0.038 * size * size;
    const double strength = dice.Between(70, 165) * (1 - 0.6 * size) / 255;
    const double lot = dice.Between(0, 1);
    const Rgb colour = lot < 0.40   ? kSodium
                       : lot < 0.62 ? kEmber
                       : lot < 0.78 ? kBlue
                       : lot < 0.92 ? kCream
                                    : kRed;
    canvas.Add({x, y, radius, strength * colour, 0.3});
  }
  return canvas.Print(kGrain, 823);
}

/// A drop on a pane by its lights alone, since what is screened on cannot darken: a faint inside, a
/// bright crescent below, where it gathers the sky, and a spark above.
struct Drop {
  double x, y, radius, tall;  // tall: its height over its width

  void Paint(Canvas& canvas, Dice& dice) const {
    const Rgb water = Rgb255(226, 250, 255);
    const auto seed = std::uint32_t(dice.Between(0, 1e6));
    const double soft = std::max(0.1, 0.0016 / radius);
    const double spark = std::max(0.17, 0.0022 / radius);
    canvas.Around(x, y, 1.25 * radius * tall, [&](Rgb& pixel, double dx, double dy) {
      const double u = dx / radius, v = dy / (radius * tall);
      const double norm = std::max(1e-6, Distance(u, v));
      const double uneven = 1 + 0.14 * GradientNoise(1.1 * u / norm + 5.3, 1.1 * v / norm, seed);
      const double away = norm * uneven;
      if (away > 1 + soft) return;
      const double inside = 1 - SmoothStep(1 - soft, 1 + soft, away);
      const double crescent = SmoothStep(0.3, 0.75, away) * SmoothStep(0, 0.7, v);
      const double rim = SmoothStep(0.72, 0.95, away) * (0.55 + 0.45 * v);
      const double glint =
          Blob(((u + 0.36) * (u + 0.36) + (v + 0.42) * (v + 0.42)) / (4 * spark * spark));
      const double light = inside * (8 + 70 * crescent + 46 * rim) + 185 * glint;
      pixel = pixel + light / 255 * water;
    });
  }
};

Picture RainOnGlass() {
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  Dice dice(831);
  std::vector<Drop> drops;
  // Places a drop where it touches no other; large ones come first and keep out of the middle.
  const auto lay = [&](int count, double small, double large, double grown) {
    for (int i = 0; i < count; ++i)
      for (int attempt = 0; attempt < 20; ++attempt) {
        const double x = dice.Between(0, right);
        const double y = dice.Between(0, 1);
        const double size = dice.Between(0, 1);
        const double tall = dice.Between(1, grown);
        const double lot = dice.Between(0, 1);
        const Drop drop{x, y, Lerp(small, large, size * size), tall};
        if (large > 0.01 && lot < 0.8 * Calm(x, y, right)) continue;
        const bool taken = std::ranges::any_of(drops, [&](const Drop& other) {
          const double apart = 1.15 * (drop.radius * drop.tall + other.radius * other.tall);
          const double dx = x - other.x, dy = y - other.y;
          return dx * dx + dy * dy < apart * apart;
        });
        if (taken) continue;
        drops.push_back(drop);
        break;
      }
  };
  lay(30, 0.02, 0.04, 1.25);
  // Three of the large ones ran down: beads in their track, thinning out.
  for (int run = 0; run < 3; ++run) {
    const Drop head = drops.at(5 * run);
    double x = head.x, y = head.y + head.radius * head.tall;
    for (double radius = 0.28 * head.radius; radius > 0.0035; radius *= 0.87) {
      x += dice.Between(-0.3, 0.3) * radius;
      y += dice.Between(2.3, 3.6) * radius;
      drops.push_back({x, y, radius, 1.7});
    }
  }
  lay(170, 0.008, 0.02, 1.15);
  lay(1300, 0.0025, 0.0075, 1.1);
  for (const Drop& drop : drops) drop.Paint(canvas, dice);
  return canvas.Print(kGrain, 832);
}

/// Stars for a soft light, which leaves black alone: over a night sky only their wide halos tell.
Picture Stars() {
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double out = SmoothStep(0.5, 1.4, Outward(x, y, right));
    return Lerp(Neutral(kOverlayRest), Rgb255(106, 108, 118), out);
  });
  static constexpr Rgb kHues[] = {{1, 1, 1}, {0.86, 0.94, 1}, {1, 0.88, 0.92}};
  Dice dice(841);
  for (int laid = 0; laid < 45;) {
    const double x = dice.Between(0, right);
    const double y = dice.Between(0, 1);
    const double lot = dice.Between(0, 1);
    if (lot < 0.85 * Calm(x, y, right)) continue;
    // Few are large.
    const double size = dice.Between(0, 1);
    const double reach = 0.03 + 0.13 * size * size * size * size;
    const int rays = dice.Chance(0.6) ? 4 : 6;
    const double turn = dice.Between(-25, 25);
    const Rgb hue = kHues[int(dice.Between(0, 3))];
    const double core = 0.0045 + 0.03 * reach;
    canvas.Around(x, y, reach, [&](Rgb& pixel, double dx, double dy) {
      const double away = Distance(dx, dy);
      double light = 0.35 * Glow(away, 0.8 * reach) + Blob(away * away / (4 * core * core));
      for (int ray = 0; ray < rays; ++ray) {
        const Direction to = AtAngle(turn + 360.0 / rays * ray);
        const double along = dx * to.cosine + dy * to.sine;
        const double across = std::abs(dy * to.cosine - dx * to.sine);
        if (along <= 0 || along >= reach) continue;
        const double taper = 1 - along / reach;
        const double width = 0.0022 + 0.05 * core * taper;
        light += 0.9 * taper * taper * Blob(across * across / (width * width));
      }
      pixel = pixel + 0.5 * std::min(light, 1.2) * hue;
    });
    ++laid;
  }
  return canvas.Print(kGrain, 842, kOverlayRest);
}

}  // namespace

std::span<const File> WeatherFiles() {
  static const File files[] = {
      {"zvkr_RainDrop.jpg", RainOnGlass}, {"xingmang.jpg", Stars},     {"sucai11.jpg", FlyingSnow},
      {"sucai9.jpg", SilentNight},        {"sucai10.jpg", CityLights},
  };
  return files;
}

}  // namespace tintwerk::paint

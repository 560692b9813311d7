// Overlays that colour or darken towards the rim, and masks of the same shape: all of them smooth.
#include <cmath>

#include "light.h"
#include "noise.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

constexpr double kGrain = 0.006;

/// From one colour in the middle to another at the rim, each in bytes.
struct Tinted {
  Rgb centre;
  Rgb rim;
  double from;        // how far out the middle's colour reaches, as told by Outward
  double to;          // where the rim's colour is whole
  double clouds = 0;  // by how much of itself the distance is bent, irregularly
  Size size = kLandscape;
  double rest = kOverlayRest;
  double chalk = 0;     // strength of a coarse grain, in levels
  double middle = 0.5;  // height of the centre

  Picture operator()() const {
    // Clouds of its own for each.
    const auto seed = std::uint32_t(7 * centre.red + 31 * rim.green + 101 * to);
    Canvas canvas(size);
    const double right = canvas.Right();
    canvas.Fill([&](double x, double y) {
      const double bend = clouds > 0 ? clouds * CloudNoise(1.7 * x, 1.7 * y, seed, 3) : 0;
      const double away = Outward(x, y + 0.5 - middle, right) * (1 + bend);
      const double rough = chalk > 0 ? chalk * CloudNoise(120 * x, 120 * y, seed + 5, 2) : 0;
      return (1.0 / 255) * (Lerp(centre, rim, SmoothStep(from, to, away)) + Neutral(rough));
    });
    return canvas.Print(kGrain, seed + 9, rest);
  }
};

/// Colours around the rim alone, along a diagonal, so that no hue lies across a face.
Picture RimOfColours() {
  static constexpr Rgb kColours[] = {Rgb255(168, 84, 150), Rgb255(190, 120, 96),
                                     Rgb255(150, 150, 92), Rgb255(92, 140, 150),
                                     Rgb255(84, 96, 176)};
  Canvas canvas(kUpright);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double place = (x / right + y) / 2 + 0.04 * CloudNoise(1.5 * x, 1.5 * y, 611, 2);
    const double out = SmoothStep(0.1, 0.95, Outward(x, y, right));
    return Lerp(Neutral(kOverlayRest), Between(kColours, 1.3 * place - 0.15), out);
  });
  return canvas.Print(kGrain, 612, kOverlayRest);
}

/// A rounded frame as the place in a vignette's map, from 0 in the middle to 255 in the corners:
/// what is bright here comes out dark.
Picture RoundedFrame() {
  Canvas canvas(kOdd);
  const double right = canvas.Right();
  // Between the third and the fourth power.
  const auto power = [](double v) {
    v = std::abs(v);
    return v * v * v * std::sqrt(std::sqrt(v));
  };
  canvas.Fill([&](double x, double y) {
    const double way =
        power(2 * x / right - 1) + power(2 * y - 1) + 0.1 * CloudNoise(1.8 * x, 1.8 * y, 621, 2);
    return Neutral(SmoothStep(0.05, 1.4, way));
  });
  return canvas.Print(kGrain, 622);
}

/// White is blurred. Its reader lays it into the image with its proportions kept and takes all
/// around it for white, so its edges are; and it truncates, so there is no grain.
Picture FocusMask() {
  Canvas canvas(1000, 1000);
  canvas.Fill([](double x, double y) { return Neutral(SmoothStep(0.42, 0.96, Outward(x, y, 1))); });
  return canvas.Print(0, 0);
}

/// Amber on the left, teal on the right. They meet right of the middle: faces stay warm.
Picture AmberToTeal() {
  Canvas canvas(kLandscape);
  canvas.Fill([&](double x, double y) {
    const double place =
        x / canvas.Right() - 0.60 + 0.14 * (y - 0.5) + 0.12 * CloudNoise(1.3 * x, 1.3 * y, 631, 3);
    return Lerp(Rgb255(176, 126, 84), Rgb255(86, 122, 140), SmoothStep(-0.5, 0.5, place));
  });
  return canvas.Print(kGrain, 632, kOverlayRest);
}

/// Rose, fading along the diagonal. Green rests throughout, or skin would turn grey or green.
Picture RosyDiagonal() {
  Canvas canvas(kLandscape);
  canvas.Fill([&](double x, double y) {
    const double place = (x / canvas.Right() + y) / 2;
    return Lerp(Rgb255(176, 128, 138), Rgb255(142, 128, 150), SmoothStep(0, 1, place));
  });
  return canvas.Print(kGrain, 641, kOverlayRest);
}

/// A breeze of light from the upper left, and shade, not blue, in the opposite corner.
Picture Breeze() {
  Canvas canvas(kLandscape);
  canvas.Fill([&](double x, double y) {
    const double bend = 0.1 * CloudNoise(1.4 * x, 1.4 * y, 651, 3);
    const double light = FallOff(Distance(x, y) * (1 + bend) - 0.05, 1.5);
    const double shade = Glow(Distance(canvas.Right() - x, 1 - y) * (1 + bend), 1.0);
    return Neutral(kOverlayRest) + light * Rgb255(66, 58, 40) + (-shade) * Rgb255(26, 14, 0);
  });
  return canvas.Print(kGrain, 652, kOverlayRest);
}

/// Tender pink with light from the upper left. A darkening follows, so it is bright as a whole.
Picture TenderPink() {
  Canvas canvas(kOdd);
  const double right = canvas.Right();
  canvas.Fill([&](double x, double y) {
    const double light = Glow(Distance(x, y), 1.3);
    const double corners = SmoothStep(0.6, 1.4, Outward(x, y, right));
    const double bloom = CloudNoise(2.2 * x, 2.2 * y, 661, 3);
    return Rgb255(178, 152, 158) + light * Rgb255(60, 56, 56) +
           Neutral((3 * bloom - 14 * corners) / 255);
  });
  return canvas.Print(kGrain, 662, kOverlayRest);
}

/// Night blue below on the left to plum above on the right, for an Exclusion: that lifts black to
/// this and takes as much off white.
Picture NightAndPlum() {
  Canvas canvas(kLandscape);
  canvas.Fill([&](double x, double y) {
    const double place =
        (x / canvas.Right() + 1 - y) / 2 + 0.2 * CloudNoise(1.4 * x, 1.4 * y, 671, 3);
    return Lerp(Rgb255(10, 14, 44), Rgb255(26, 12, 34), SmoothStep(0, 1, place));
  });
  return canvas.Print(kGrain, 672);
}

/// Teal with amber along the left, laid on by its own alpha. The colour runs on where nothing of it
/// is seen, since scaling mixes it in.
Picture TealAndAmber() {
  constexpr int kWidth = 1080, kHeight = 720;  // a PNG: its gradients have no fine detail
  Canvas colour(kWidth, kHeight), strength(kWidth, kHeight);
  const double right = colour.Right();
  const auto amber = [&](double x, double y) {
    return Glow(x - 0.02 + 0.1 * CloudNoise(0.8 * x, 1.6 * y, 681, 3), 0.7);
  };
  colour.Fill([&](double x, double y) {
    return Lerp(Rgb255(18, 66, 84), Rgb255(255, 176, 96), SmoothStep(0, 0.7, amber(x, y)));
  });
  strength.Fill([&](double x, double y) {
    const double corners = 204 * SmoothStep(0.35, 1.4, Outward(x, y, right));
    return Neutral(Lerp(corners, 190, amber(x, y)) / 255);
  });
  Picture picture = colour.Print(0.004, 682);
  const Picture alpha = strength.Print(0.004, 683);
  for (std::size_t i = 0; i < picture.pixels.size(); ++i)
    picture.pixels[i].alpha = alpha.pixels[i].red;
  return picture;
}

}  // namespace

std::span<const File> TintedFiles() {
  static const File files[] = {
      // For Overlay and Soft Light.
      {"vignette640.jpg", Tinted{{150, 150, 150}, {36, 36, 36}, 0.35, 1.4, 0.05}},
      {"blowout2.jpg",
       Tinted{{196, 190, 180}, {118, 116, 118}, 0, 1.05, 0.05, kLandscape, kOverlayRest, 0, 0.44}},
      {"style/sucai1.jpg", Tinted{{150, 142, 140}, {118, 112, 120}, 0.2, 1.35, 0.1}},
      {"style/sucai2.jpg", Tinted{{150, 146, 132}, {36, 48, 60}, 0.3, 1.35, 0.05, kUpright}},
      {"style/sucai28.jpg", Tinted{{146, 142, 132}, {52, 50, 56}, 0.3, 1.35, 0.05}},
      {"style/sucai42.jpg",
       Tinted{{168, 164, 158}, {58, 66, 80}, 0, 1.3, 0.07, kLandscape, kOverlayRest, 6}},
      {"style/hefeng4.jpg", Breeze},
      {"ZVLouguang1.jpg", Tinted{{150, 140, 126}, {78, 70, 84}, 0, 1.35, 0.07}},
      {"ZVLouguang2.jpg", AmberToTeal},
      {"zvkr_fhjr3.jpg", RosyDiagonal},
      {"zvkr_lomo4.jpg", Tinted{{150, 142, 112}, {96, 118, 138}, 0, 1.25, 0.06, kUpright}},
      {"zvkr_lomo1_1.jpg", RimOfColours},
      {"sucai6.jpg", TenderPink},

      // For Vivid Light, which is steep: near the middle grey everywhere.
      {"zvkr_hqc2.jpg", Tinted{{136, 132, 128}, {112, 110, 116}, 0, 1.35, 0.07}},

      // For Multiply. The second serves upright and landscape images and two looks: it is even.
      {"sucai24.jpg", Tinted{{255, 255, 252}, {104, 88, 82}, 0.6, 1.42, 0.07, kOdd, kMultiplyRest}},
      {"zvkr_lomo1_2.jpg",
       Tinted{{255, 255, 250}, {62, 56, 60}, 0.45, 1.38, 0, kUpright, kMultiplyRest}},

      // Places in a vignette's map. In the second blue falls least, so the rim comes out cold.
      {"174mask.jpg", RoundedFrame},
      {"179bb.jpg", Tinted{{0, 0, 0}, {215, 190, 150}, 0.25, 1.35, 0.06, kOdd, kScreenRest}},

      {"style/sucai29.jpg", FocusMask},
      {"zvkr_hqc1.jpg", NightAndPlum},
      {"zvkr_fzs.png", TealAndAmber},
  };
  return files;
}

}  // namespace tintwerk::paint

// Grounds of drawings: the tooth of the paper, pencil strokes and the gaps between them, and
// unfinished margins.
#include <vector>

#include "light.h"
#include "noise.h"
#include "sheet.h"
#include "strokes.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

// Little, for the tooth dithers already.
constexpr double kGrain = 0.004;

/// A bare sheet, 1, that pencils draw on: 0 is under the densest graphite.
Canvas Drawn(Size size, const std::vector<Hatch>& hatches) {
  Canvas canvas(size);
  canvas.Each([](Rgb& pixel) { pixel = Neutral(1); });
  for (const Hatch& hatch : hatches) hatch(canvas, Neutral(0));
  return canvas;
}

/// How white the paper is, 1 in the margin; the border between runs along the strokes.
class White {
 public:
  White(double right, double margin, const Hatch& hatch, std::uint32_t seed)
      : edge_{right, 1.3 * margin, 0.3 * margin, 0.022, seed},
        strokes_(hatch.angle, hatch.length, 1.5 * hatch.width, seed + 9),
        push_(0.8 * margin) {}

  double operator()(double x, double y) const { return edge_(x, y, push_ * strokes_(x, y)); }

 private:
  RoughEdge edge_;
  PencilField strokes_;
  double push_;
};

/// Paper that shows between strokes of graphite, to be screened on: the ground makes blacks graphite.
/// Toward the edges the gaps grow white, and where the strokes end the picture does.
struct PencilGaps {
  Size size;
  double ground, tooth, light;  // in levels; `light` is what bare paper in the middle has above it
  double margin;                // that the strokes leave white
  std::vector<Hatch> hatches;
  std::uint32_t seed;

  Picture operator()() const {
    Canvas canvas = Drawn(size, hatches);
    const double right = canvas.Right();
    const White white(right, margin, hatches.front(), seed + 2);
    canvas.Shade([&](double x, double y, const Rgb& drawn) {
      const double paper = Lerp(light, 255 - ground, white(x, y));
      const double calm = 1 - 0.3 * Calm(x, y, right);
      const double sheet = ground + tooth * Tooth(x, y, seed) + calm * drawn.red * paper;
      return Neutral(sheet / 255);
    });
    return canvas.Print(kGrain, seed + 1);
  }
};

/// Graphite about middle grey, for a soft light; on the whole exactly that grey.
struct Hatching {
  Size size;
  double tooth, depth;  // in levels
  std::vector<Hatch> hatches;
  std::uint32_t seed;

  Picture operator()() const {
    Canvas canvas = Drawn(size, hatches);
    double sum = 0;
    canvas.Shade([&](double x, double y, const Rgb& drawn) {
      const double tone = tooth * Tooth(x, y, seed) + depth * drawn.red;
      sum += tone;
      return Neutral(tone);
    });
    const double mean = sum / size.width / size.height;
    canvas.Each([&](Rgb& v) { v = Neutral((128 + v.red - mean) / 255); });
    return canvas.Print(kGrain, seed + 1, kOverlayRest);
  }
};

/// Coloured pencils about the grey that a Screen followed by an Overlay leaves alone. Each patch is
/// of another pencil, so that skin, which gets them too, stays skin on the whole.
Picture ColouredPencils() {
  constexpr double kMargin = 0.05, kBare = 96;
  Canvas canvas(kLandscape);
  const double right = canvas.Right();
  canvas.Each([](Rgb& pixel) { pixel = Neutral(kBare); });
  static constexpr Rgb kPencils[] = {{84, 58, 62},  // rose
                                     {81, 67, 46},  // ochre
                                     {55, 74, 57},  // leaf
                                     {52, 65, 86},  // sky
                                     {86, 61, 54},  // brick
                                     {60, 60, 60}};
  Hatch hatch{.angle = -45,
              .sway = 22,
              .length = 0.085,
              .width = 0.006,
              .spacing = 0.0085,
              .pressure = 0.62,
              .margin = kMargin,
              .seed = 931};
  hatch(canvas, kPencils);
  const White white(right, kMargin, hatch, 933);
  hatch.angle = -57;
  hatch.seed = 932;
  hatch(canvas, kPencils);
  canvas.Shade([&](double x, double y, const Rgb& drawn) {
    const double bare = SmoothStep(0.7 * kBare, 0.95 * kBare, drawn.green);
    const Rgb calm = Lerp(drawn, Neutral(75), 0.3 * Calm(x, y, right));
    const Rgb sheet = calm + Neutral(6 * Tooth(x, y, 935) + (255 - kBare) * bare * white(x, y));
    return (1.0 / 255) * sheet;
  });
  return canvas.Print(kGrain, 936);
}

/// Cream paper with graphite on a part of it, for a Multiply.
Picture CreamPaper() {
  Canvas canvas = Drawn(kOdd, {{.angle = 44,
                                .sway = 20,
                                .length = 0.07,
                                .width = 0.0045,
                                .spacing = 0.0085,
                                .pressure = 0.5,
                                .share = 0.3,
                                .seed = 951}});
  canvas.Shade([&](double x, double y, const Rgb& drawn) {
    const double rough = 10 * Tooth(x, y, 953) + 5 * CloudNoise(6 * x, 6 * y, 954, 2);
    return (1.0 / 255) * (Rgb{238, 235, 229} + Neutral(rough - 60 * (1 - drawn.red)));
  });
  return canvas.Print(kGrain, 955, kMultiplyRest);
}

}  // namespace

std::span<const File> PencilFiles() {
  // Two layers at a narrow angle leave the short gaps of shading; long ones look like rain.
  static const File files[] = {
      {"sucai14.jpg", PencilGaps{.size = kOdd,
                                 .ground = 34,
                                 .tooth = 10,
                                 .light = 70,
                                 .margin = 0.055,
                                 .hatches = {{.angle = -48,
                                              .sway = 25,
                                              .length = 0.085,
                                              .width = 0.0056,
                                              .spacing = 0.0078,
                                              .pressure = 0.66,
                                              .margin = 0.055,
                                              .seed = 901},
                                             {.angle = -33,
                                              .sway = 25,
                                              .length = 0.07,
                                              .width = 0.0054,
                                              .spacing = 0.008,
                                              .pressure = 0.58,
                                              .share = 0.65,
                                              .margin = 0.07,
                                              .seed = 902}},
                                 .seed = 903}},
      // Bolder strokes than those, and fewer.
      {"zvkr_LifeSketch_wenli2.jpg", PencilGaps{.size = kLandscape,
                                                .ground = 40,
                                                .tooth = 10,
                                                .light = 66,
                                                .margin = 0.068,
                                                .hatches = {{.angle = -38,
                                                             .sway = 30,
                                                             .length = 0.12,
                                                             .width = 0.0115,
                                                             .spacing = 0.0135,
                                                             .pressure = 0.66,
                                                             .margin = 0.078,
                                                             .seed = 911},
                                                            {.angle = -52,
                                                             .sway = 30,
                                                             .length = 0.1,
                                                             .width = 0.0095,
                                                             .spacing = 0.014,
                                                             .pressure = 0.54,
                                                             .share = 0.5,
                                                             .margin = 0.092,
                                                             .seed = 912}},
                                                .seed = 913}},
      // The broad side of the lead, and a middle without gaps, where faces keep their modelling.
      {"sucai15.jpg", PencilGaps{.size = kOdd,
                                 .ground = 34,
                                 .tooth = 3,
                                 .light = 0,
                                 .margin = 0.075,
                                 .hatches = {{.angle = -38,
                                              .sway = 25,
                                              .length = 0.14,
                                              .width = 0.02,
                                              .spacing = 0.014,
                                              .pressure = 0.8,
                                              .margin = 0.075,
                                              .seed = 921}},
                                 .seed = 923}},
      {"zvkr_caiqian.jpg", ColouredPencils},
      {"sucai16.jpg", CreamPaper},
      {"sucai13.jpg", Hatching{.size = kOdd,
                               .tooth = 22,
                               .depth = 60,
                               .hatches = {{.angle = -42,
                                            .sway = 25,
                                            .length = 0.065,
                                            .width = 0.0048,
                                            .spacing = 0.0075,
                                            .pressure = 0.6,
                                            .share = 0.8,
                                            .seed = 971},
                                           {.angle = 44,
                                            .sway = 25,
                                            .length = 0.06,
                                            .width = 0.0048,
                                            .spacing = 0.0085,
                                            .pressure = 0.45,
                                            .share = 0.5,
                                            .seed = 972}},
                               .seed = 973}},
      {"zvkr_LifeSketch_wenli1.jpg", Hatching{.size = kLandscape,
                                              .tooth = 22,
                                              .depth = 75,
                                              .hatches = {{.angle = -52,
                                                           .sway = 30,
                                                           .length = 0.11,
                                                           .width = 0.008,
                                                           .spacing = 0.012,
                                                           .pressure = 0.65,
                                                           .share = 0.85,
                                                           .seed = 981}},
                                              .seed = 983}},
  };
  return files;
}

}  // namespace tintwerk::paint

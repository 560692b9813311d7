#include "plane_files.h"

#include <cmath>

#include "noise.h"
#include "table.h"

namespace tintwerk::paint {

Bytes PlaneFile::operator()() const {
  Bytes file(1);
  for (const PlaneFunction& plane : planes) {
    file.insert(file.end(), 3, 0);
    for (int high = 0; high < 256; ++high)
      for (int low = 0; low < 256; ++low)
        file.push_back(RoundToByte(255 * plane(high / 255.0, low / 255.0)));
  }
  for (const std::vector<CurvePoint>& points : tones) {
    const ToneTable curve = MonotoneCubic(points);
    file.insert(file.end(), curve.begin(), curve.end());
  }
  return file;
}

Picture PlaneMap::operator()() const {
  Picture map(256, 256);
  for (int row = 0; row < 256; ++row)
    for (int column = 0; column < 256; ++column) {
      const auto byte = [&](const PlaneFunction& plane) {
        return RoundToByte(255 * plane(row / 255.0, column / 255.0));
      };
      map.At(column, row) = {byte(red), byte(green), byte(blue)};
    }
  return map;
}

double ToneBend::operator()(double tone) const {
  const double bent = tone + bend * tone * (1 - tone);
  const double steep = bent + contrast * bent * (1 - bent) * (2 * bent - 1);
  return Lerp(black, white, steep);
}

double StudioPrint::operator()(double sharp, double blurred) const {
  // Texture and noise differ from their surroundings by a few hundredths, outlines by far more.
  constexpr double kEdge = 0.06;
  const double detail = sharp - blurred;
  const double square = detail * detail;
  const double gain = Lerp(texture, edges, square / (square + kEdge * kEdge));
  // Sharpening saturates, so that hard edges get no halo, and dies away towards black and white: an
  // eighth is just so much that it never runs past them.
  constexpr double kMost = 0.125;
  double change = (gain - 1) * detail;
  if (gain > 1) {
    const double reach = change / kMost;
    const double outward = (2 * sharp - 1) * (2 * sharp - 1);
    change = change / std::sqrt(1 + reach * reach) * (1 - outward * outward);
  }
  return tone(Screen(sharp + change, glow * blurred * blurred));
}

double PastelLight(double base, double top) {
  return SoftLight(base, Lerp(0.25, 0.95, top));
}

double PictureBlend::operator()(double image, double picture) const {
  const double blended = Lerp(image, blend(image, picture), strength);
  return tone(Lerp(blended, picture, wash));
}

namespace {

/// White dew: a channel (first key) under the image's grey, paler, with a breath of its own hue in
/// the middle.
struct Dew {
  double hue;

  double operator()(double channel, double grey) const {
    const double soft = SoftLight(channel, 0.30 + 0.52 * grey);
    return 0.82 * soft + 0.18 * (grey + hue * 4 * grey * (1 - grey));
  }
};

/// A studio print in a map whose first key is the blurred image.
struct BlurredFirst {
  StudioPrint print;

  double operator()(double blurred, double sharp) const { return print(sharp, blurred); }
};

double HalfOverlay(double base, double top) {
  return 0.55 * Overlay(base, top) + 0.45 * SoftLight(base, top);
}

/// A Multiply that leaves a little light under black.
double NearlyMultiply(double base, double top) {
  return base * (0.12 + 0.88 * top);
}

}  // namespace

std::span<const File> PlaneFiles() {
  static const File files[] = {
      // Studio looks, red, green and blue plane. The classic print: smooth skin, a slight glow,
      // creamy lights.
      {"zvkr_studio_0.eb",
       PlaneFile{{StudioPrint{.texture = 0.25,
                              .glow = 0.34,
                              .tone = {.bend = 0.06, .contrast = 0.2, .black = 0.035}},
                  StudioPrint{.texture = 0.25,
                              .glow = 0.28,
                              .tone = {.bend = -0.075, .contrast = 0.2, .black = 0.03}},
                  StudioPrint{
                      .texture = 0.25,
                      .glow = 0.2,
                      .tone = {.bend = -0.07, .contrast = 0.12, .black = 0.06, .white = 0.955}}}}},
      // Cool violet: a soft dream of itself, paled, then tinted: violet shadows and lilac lights, but
      // hardly in between, where skin lies. Its planes serve all channels; in the first one the
      // blurred tone is the high key.
      {"zvkr_studio_1.eb",
       PlaneFile{{[](double blurred, double sharp) {
                    return StudioPrint{.texture = 0.4, .edges = 1, .glow = 0.25}(sharp, blurred);
                  },
                  PictureBlend{.blend = SoftLight, .strength = 0.55}},
                 {{{0, 24}, {64, 69}, {128, 132}, {192, 194}, {255, 250}},
                  {{0, 14}, {64, 57}, {128, 124}, {192, 188}, {255, 247}},
                  {{0, 44}, {64, 90}, {128, 141}, {192, 198}, {255, 252}}}}},
      // Cool blue: crisp and clear, blue in the shadows, white lights.
      {"zvkr_studio_2.eb",
       PlaneFile{
           {StudioPrint{.texture = 1.3, .edges = 1.7, .tone = {.bend = -0.12, .contrast = 0.35}},
            StudioPrint{.texture = 1.3,
                        .edges = 1.7,
                        .tone = {.bend = 0.03, .contrast = 0.3, .black = 0.01}},
            StudioPrint{.texture = 1.3,
                        .edges = 1.7,
                        .tone = {.bend = 0.14, .contrast = 0.15, .black = 0.06}}}}},
      // Warm yellow: a soft afternoon, amber lights over brown shadows.
      {"zvkr_studio_3.eb",
       PlaneFile{
           {StudioPrint{.texture = 0.5,
                        .edges = 1.1,
                        .glow = 0.14,
                        .tone = {.bend = 0.16, .contrast = 0.15, .black = 0.06}},
            StudioPrint{.texture = 0.5,
                        .edges = 1.1,
                        .glow = 0.12,
                        .tone = {.bend = 0.04, .contrast = 0.2, .black = 0.03}},
            StudioPrint{.texture = 0.5,
                        .edges = 1.1,
                        .glow = 0.04,
                        .tone = {.bend = -0.26, .contrast = 0.15, .black = 0.04, .white = 0.88}}}}},
      // Cool green: crisp and matt, sea green shadows.
      {"zvkr_studio_5.eb",
       PlaneFile{
           {StudioPrint{.texture = 1.2,
                        .edges = 1.5,
                        .tone = {.bend = -0.14, .contrast = 0.2, .black = 0.03, .white = 0.97}},
            StudioPrint{.texture = 1.2,
                        .edges = 1.5,
                        .tone = {.bend = 0.12, .contrast = 0.15, .black = 0.08, .white = 0.98}},
            StudioPrint{.texture = 1.2,
                        .edges = 1.5,
                        .tone = {.bend = 0.0, .contrast = 0.1, .black = 0.09, .white = 0.93}}}}},

      // Looks of the image (high key) under a picture. The second plane of the first sets what came
      // out (high key) against the image as it was, which gives the contrast back.
      {"zvkr_quxian_3.eb",
       PlaneFile{{PictureBlend{.blend = Screen, .strength = 0.9},
                  PictureBlend{.blend = SoftLight, .strength = 0.22, .tone = {.bend = -0.12}}}}},
      {"zvkr_quxian_4.eb", PlaneFile{{PictureBlend{.blend = SoftLight, .wash = 0.08}}}},
      {"zvkr_quxian_6.eb",
       PlaneFile{{PictureBlend{.blend = SoftLight, .wash = 0.1, .tone = {.contrast = 0.15}}}}},
      {"zvkr_quxian_7.eb",
       PlaneFile{{PictureBlend{.blend = Multiply, .strength = 0.8, .tone = {.bend = 0.1}},
                  PictureBlend{.blend = SoftLight, .strength = 0.8, .wash = 0.05},
                  PictureBlend{.blend = Screen, .tone = {.contrast = 0.3, .black = 0.03}}}}},
      {"zvkr_quxian_10_0.eb",
       PlaneFile{{PictureBlend{.blend = Screen, .strength = 0.6},
                  PictureBlend{.blend = SoftLight, .tone = {.bend = -0.12}}}}},
      // Its first plane is not read. The second sets the faded print against the untouched image.
      {"zvkr_quxian_10_1.eb",
       PlaneFile{{OwnTone{}, PictureBlend{.blend = SoftLight, .strength = 0.2, .wash = 0.15},
                  PictureBlend{
                      .blend = Screen, .strength = 0.75, .tone = {.bend = -0.1, .black = 0.02}}}}},

      // Looks of the image under a gradient of full colours: the first plane, whose diagonal alone
      // is read, is a tone curve, the second one the blend. The third file serves three looks.
      {"zvkr_NewGt_1.eb",
       PlaneFile{{OwnTone{{.bend = 0.03, .contrast = 0.2, .black = 0.03}},
                  PictureBlend{.blend = PastelLight, .strength = 0.24, .wash = 0.035}}}},
      {"zvkr_NewGt_2.eb",
       PlaneFile{{OwnTone{{.bend = 0.05, .contrast = 0.3}},
                  PictureBlend{.blend = Overlay, .strength = 0.18, .wash = 0.08}}}},
      {"zvkr_NewGt_3.eb",
       PlaneFile{{OwnTone{{.contrast = 0.25, .black = 0.02}},
                  PictureBlend{.blend = PastelLight, .strength = 0.56, .wash = 0.04}}}},

      // Maps of three planes.
      {"175.png", PlaneMap{Dew{-0.02}, Dew{0.012}, Dew{0.02}}},
      // Three tables, each for all channels: a curve that darkens the middle, which the look lifts
      // later, then one for either picture.
      {"jx_123.png",
       PlaneMap{OwnTone{{.bend = -0.10, .contrast = 0.55}}, HalfOverlay, NearlyMultiply}},
      // Crisp, with yellow in the lights and blue in the shadows.
      {"ZVfugu123.png",
       PlaneMap{
           BlurredFirst{{.texture = 1.1,
                         .edges = 1.35,
                         .tone = {.bend = 0.10, .contrast = 0.25, .black = 0.05, .white = 0.98}}},
           BlurredFirst{{.texture = 1.1,
                         .edges = 1.35,
                         .tone = {.contrast = 0.22, .black = 0.045, .white = 0.95}}},
           BlurredFirst{
               {.texture = 1.1,
                .edges = 1.35,
                .tone = {.bend = -0.12, .contrast = 0.05, .black = 0.15, .white = 0.82}}}}},
  };
  return files;
}

}  // namespace tintwerk::paint

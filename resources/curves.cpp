#include "curves.h"

#include "table.h"

namespace tintwerk::paint {

Picture CurveStrip::operator()() const {
  const auto r = MonotoneCubic(red);
  const auto g = MonotoneCubic(green);
  const auto b = MonotoneCubic(blue);
  Picture strip(256, rows);
  for (int row = 0; row < rows; ++row)
    for (int v = 0; v < 256; ++v) strip.At(v, row) = {r[v], g[v], b[v]};
  return strip;
}

namespace {

CurveStrip InkWash() {
  const std::vector<CurvePoint> ink = {{0, 18},    {32, 36},   {64, 66},   {96, 112}, {128, 162},
                                       {160, 204}, {192, 230}, {224, 244}, {255, 251}};
  return {.red = ink, .green = ink, .blue = ink, .rows = 3};
}

}  // namespace

std::span<const File> CurveFiles() {
  static const File files[] = {
      // An eighties snapshot, darker than it is meant, because screen30.png follows: magenta in the
      // shadows, yellow in the lights, so red is over green everywhere and blue crosses both.
      {"80smap.png", CurveStrip{.red = {{0, 16}, {64, 51}, {128, 125}, {192, 199}, {255, 249}},
                                .green = {{0, 7}, {64, 47}, {128, 117}, {192, 189}, {255, 244}},
                                .blue = {{0, 21}, {64, 56}, {128, 113}, {192, 170}, {255, 219}}}},

      // A faded print: cyan in the shadows, cream in the lights; then its last curve, which makes
      // the middle glow inside the dark rim.
      {"huiyi2.png", CurveStrip{.red = {{0, 24}, {64, 80}, {128, 150}, {192, 209}, {255, 250}},
                                .green = {{0, 34}, {64, 86}, {128, 143}, {192, 196}, {255, 238}},
                                .blue = {{0, 38}, {64, 85}, {128, 134}, {192, 180}, {255, 214}}}},
      {"huiyi3.png", CurveStrip{.red = {{0, 8}, {64, 68}, {128, 142}, {192, 210}, {255, 254}},
                                .green = {{0, 8}, {64, 68}, {128, 142}, {192, 210}, {255, 254}},
                                .blue = {{0, 8}, {64, 68}, {128, 142}, {192, 210}, {255, 254}}}},

      // Bright in the middle, with teal shadows and rose-cream lights. In the order of use: the first
      // curve; the lift of the middle, fading to nothing at the rim, which leaves black alone; the
      // contrast that this took; one by the grey value, averaged with the channel; and the last, in
      // spite of its number, which alone settles black and white.
      {"kujiu1.png", CurveStrip{.red = {{0, 4}, {64, 60}, {128, 128}, {192, 198}, {255, 253}},
                                .green = {{0, 8}, {64, 64}, {128, 128}, {192, 194}, {255, 248}},
                                .blue = {{0, 12}, {64, 68}, {128, 128}, {192, 188}, {255, 238}}}},
      {"kujiu3.png", CurveStrip{.red = {{0, 0}, {64, 84}, {128, 160}, {192, 214}, {255, 255}},
                                .green = {{0, 0}, {64, 82}, {128, 156}, {192, 210}, {255, 255}},
                                .blue = {{0, 0}, {64, 80}, {128, 150}, {192, 204}, {255, 250}}}},
      {"kujiu4.png", CurveStrip{.red = {{0, 0}, {64, 54}, {128, 126}, {192, 202}, {255, 255}},
                                .green = {{0, 0}, {64, 54}, {128, 126}, {192, 202}, {255, 255}},
                                .blue = {{0, 0}, {64, 56}, {128, 126}, {192, 198}, {255, 252}}}},
      {"kujiu5.png", CurveStrip{.red = {{0, 4}, {64, 66}, {128, 142}, {192, 212}, {255, 253}},
                                .green = {{0, 16}, {64, 78}, {128, 140}, {192, 200}, {255, 240}},
                                .blue = {{0, 26}, {64, 88}, {128, 138}, {192, 188}, {255, 224}}}},
      {"kujiu2.png", CurveStrip{.red = {{0, 10}, {64, 62}, {128, 136}, {192, 208}, {255, 254}},
                                .green = {{0, 18}, {64, 72}, {128, 136}, {192, 202}, {255, 246}},
                                .blue = {{0, 32}, {64, 84}, {128, 138}, {192, 190}, {255, 230}}}},

      // From ink to paper, at the grey value: diluted ink on much white, and no blocked shadows.
      {"moran1.png", InkWash()},

      // Quiet, with cool blue-green shadows; a vignette follows, so it lightens a little.
      {"xihu1.png", CurveStrip{.red = {{0, 10}, {64, 68}, {128, 134}, {192, 200}, {255, 246}},
                               .green = {{0, 22}, {64, 82}, {128, 146}, {192, 206}, {255, 250}},
                               .blue = {{0, 40}, {64, 92}, {128, 146}, {192, 194}, {255, 232}},
                               .rows = 3}},
      // Hard: rust and petrol, but skin stays short of orange.
      {"yaogunMap.png", CurveStrip{.red = {{0, 4}, {64, 40}, {128, 130}, {192, 220}, {255, 255}},
                                   .green = {{0, 6}, {64, 44}, {128, 122}, {192, 206}, {255, 246}},
                                   .blue = {{0, 18}, {64, 56}, {128, 112}, {192, 170}, {255, 214}},
                                   .rows = 3}},
      // Two after the same blackboard: green-blue, and pale, open, faintly violet.
      {"style/qingse1.png",
       CurveStrip{.red = {{0, 16}, {64, 68}, {128, 128}, {192, 192}, {255, 240}},
                  .green = {{0, 26}, {64, 84}, {128, 144}, {192, 204}, {255, 246}},
                  .blue = {{0, 46}, {64, 98}, {128, 150}, {192, 196}, {255, 232}},
                  .rows = 3}},
      {"style/chengguang.png",
       CurveStrip{.red = {{0, 22}, {64, 84}, {128, 152}, {192, 212}, {255, 250}},
                  .green = {{0, 24}, {64, 84}, {128, 150}, {192, 210}, {255, 250}},
                  .blue = {{0, 44}, {64, 100}, {128, 160}, {192, 212}, {255, 246}},
                  .rows = 3}},
      // Open, since two soft lights follow. The first is keyed by the second strip: no colours, but
      // the columns of a soft light at each grey, bluish in the shadows and amber in the lights.
      {"style/hefeng1.png",
       CurveStrip{.red = {{0, 14}, {64, 72}, {128, 140}, {192, 204}, {255, 252}},
                  .green = {{0, 18}, {64, 74}, {128, 138}, {192, 202}, {255, 250}},
                  .blue = {{0, 32}, {64, 84}, {128, 140}, {192, 196}, {255, 240}},
                  .rows = 3}},
      {"style/hefeng2.png",
       CurveStrip{.red = {{0, 104}, {64, 120}, {128, 134}, {192, 146}, {255, 152}},
                  .green = {{0, 120}, {64, 128}, {128, 132}, {192, 136}, {255, 138}},
                  .blue = {{0, 146}, {64, 140}, {128, 130}, {192, 118}, {255, 110}}}},
  };
  return files;
}

}  // namespace tintwerk::paint

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

std::span<const File> CurveFiles() {
  static const File files[] = {
      // An eighties snapshot, darker than it is meant, because screen30.png follows: magenta in the
      // shadows, yellow in the lights, so red is over green everywhere and blue crosses both.
      {"80smap.png", CurveStrip{.red = {{0, 16}, {64, 51}, {128, 125}, {192, 199}, {255, 249}},
                                .green = {{0, 7}, {64, 47}, {128, 117}, {192, 189}, {255, 244}},
                                .blue = {{0, 21}, {64, 56}, {128, 113}, {192, 170}, {255, 219}}}},

      // A faded print: cyan in the shadows, cream in the lights; then its last, gentle S-curve.
      {"huiyi2.png", CurveStrip{.red = {{0, 24}, {64, 80}, {128, 150}, {192, 209}, {255, 250}},
                                .green = {{0, 34}, {64, 86}, {128, 143}, {192, 196}, {255, 238}},
                                .blue = {{0, 38}, {64, 85}, {128, 134}, {192, 180}, {255, 214}}}},
      {"huiyi3.png", CurveStrip{.red = {{0, 6}, {64, 60}, {128, 131}, {192, 200}, {255, 252}},
                                .green = {{0, 6}, {64, 60}, {128, 131}, {192, 200}, {255, 252}},
                                .blue = {{0, 6}, {64, 60}, {128, 131}, {192, 200}, {255, 252}}}},
  };
  return files;
}

}  // namespace tintwerk::paint

// The strength of a look.
#include "frame/material.h"
#include "frame/parallel.h"
#include "tintwerk/effect.h"

int CEffect::Effect_AlphaAdJust(unsigned char* destination, const unsigned char* source, int width,
                                int height, double opacity) {
  const auto count = tintwerk::PixelCount(width, height);
  if (!destination || !source || !count) return 0;
  if (!(opacity > 0)) opacity = 0;  // not a number included
  if (opacity > 1) opacity = 1;
  double sourceShare[256], destinationShare[256];
  for (int v = 0; v < 256; ++v) {
    sourceShare[v] = v * opacity;
    destinationShare[v] = v * (1 - opacity);
  }
  tintwerk::ParallelFor(*count, [&](std::int64_t i) {
    for (int c = 0; c < 3; ++c) {
      unsigned char& value = destination[4 * i + c];
      value = static_cast<unsigned char>(sourceShare[source[4 * i + c]] + destinationShare[value]);
    }
  });
  return 1;
}

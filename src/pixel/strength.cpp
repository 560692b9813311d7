// The strength of a look.
#include "frame/image.h"
#include "frame/parallel.h"
#include "tintwerk/effect.h"

int CEffect::Effect_AlphaAdJust(unsigned char* destination, const unsigned char* source, int width,
                                int height, double opacity) {
  if (!tintwerk::IsWorkable(destination, width, height) || !source) return 0;
  if (!(opacity > 0)) opacity = 0;  // not a number included
  if (opacity > 1) opacity = 1;
  // Every pair of values at once: a table of bytes costs less than sums of doubles.
  unsigned char mixed[256][256];
  for (int d = 0; d < 256; ++d)
    for (int v = 0; v < 256; ++v)
      mixed[d][v] = static_cast<unsigned char>(v * opacity + d * (1 - opacity));
  const auto* const table = mixed;
  tintwerk::ParallelFor(*tintwerk::PixelCount(width, height), [=](std::int64_t i) {
    unsigned char* const pixel = destination + 4 * i;
    const unsigned char* const from = source + 4 * i;
    for (int c = 0; c < 3; ++c) pixel[c] = table[pixel[c]][from[c]];
  });
  return 1;
}

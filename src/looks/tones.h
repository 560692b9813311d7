// The curves of looks, each on a line.
#pragma once

#include "pixel/tone_curve.h"

namespace tintwerk {

/// A curve by its outputs: 5 of them at the inputs 0, 64, 128, 192 and 255; 9 at every 32 and 255;
/// 10 at those and 16.
template <std::size_t N>
consteval ToneTable Tone(const int (&outputs)[N]) {
  static_assert(N == 5 || N == 9 || N == 10, "a curve has 5, 9 or 10 samples");
  CurvePoint samples[N];
  for (int i = 0; i < int{N}; ++i) {
    const int x = N == 5 ? 64 * i : N == 9 ? 32 * i : i < 2 ? 16 * i : 32 * (i - 1);
    samples[i] = {x > 255 ? 255 : x, outputs[i]};
  }
  return Curve(samples);
}

template <std::size_t R, std::size_t G, std::size_t B>
consteval ToneTables Tones(const int (&red)[R], const int (&green)[G], const int (&blue)[B]) {
  return {.blue = Tone(blue), .green = Tone(green), .red = Tone(red)};
}

/// One curve for all channels.
template <std::size_t N>
consteval ToneTables Tones(const int (&all)[N]) {
  return Tones(all, all, all);
}

}  // namespace tintwerk

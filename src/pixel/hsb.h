// Hue, saturation and brightness: the one conversion that CColorSpace and SFDSP share.
#pragma once

#include <algorithm>

#include "pixel/truncate.h"

namespace tintwerk {

inline void RgbToHsb(int R, int G, int B, float& H, float& S, float& brightness) {
  const int max = std::max({R, G, B}), min = std::min({R, G, B});
  brightness = static_cast<float>(max) / 255.0f;
  H = S = 0;
  if (max == min) return;
  const auto d = static_cast<float>(max - min);
  S = d / static_cast<float>(max);
  const float rc = static_cast<float>(max - R) / d;
  const float gc = static_cast<float>(max - G) / d;
  const float bc = static_cast<float>(max - B) / d;
  // On a tie blue wins over green and green over red.
  if (max == R) H = (bc + 6 - gc) * 60;
  if (max == G) H = (rc + 2 - bc) * 60;
  if (max == B) H = (gc + 4 - rc) * 60;
  if (H > 360) H -= 360;
}

inline void HsbToRgb(float H, float S, float brightness, unsigned char& R, unsigned char& G,
                     unsigned char& B) {
  const int value = Truncate(brightness * 255.0f);
  const auto v = static_cast<unsigned char>(value);
  if (H == 0) {
    R = G = B = v;
    return;
  }
  const auto full = static_cast<float>(value);
  const int low = Truncate(full - full * S);
  const auto base = static_cast<float>(low);
  const auto lo = static_cast<unsigned char>(low);
  const float d = full - base;
  auto between = [&](float hue) { return TruncateToByte(hue * d / 60 + base); };
  if (H > 300) {
    R = v, G = lo, B = TruncateToByte(double{(360 - H) * d} / 60.0 + base);
  } else if (H > 240) {
    R = between(H - 240), G = lo, B = v;
  } else if (H > 180) {
    R = lo, G = between(240 - H), B = v;
  } else if (H > 120) {
    R = lo, G = v, B = between(H - 120);
  } else if (H > 60) {
    R = between(120 - H), G = v, B = lo;
  } else {
    R = v, G = TruncateToByte(d * H / 60 + base), B = lo;
  }
}

}  // namespace tintwerk

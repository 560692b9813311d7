// Colour conversions of SFDSP.
#include <algorithm>

#include "pixel/hsb.h"
#include "pixel/truncate.h"
#include "tintwerk/sfdsp.h"

using tintwerk::TruncateToByte;

namespace {

constexpr double kPerByte = 0.0039215;  // stands for 1/255 in this class and is a little less

// hue 0..1; low and high on the scale of bytes
unsigned char HueToByte(float low, float high, float hue) {
  if (hue < 0.166666f) return TruncateToByte((high - low) * hue * 6 + low);
  if (hue < 0.5f) return TruncateToByte(high);
  if (hue < 0.666666f)
    return TruncateToByte(static_cast<float>((double{high} - low) * (0.666666 - hue) * 6 + low));
  return TruncateToByte(low);
}

}  // namespace

void SFDSP::RGBtoHSB(int R, int G, int B, float& H, float& S, float& brightness) {
  tintwerk::RgbToHsb(R, G, B, H, S, brightness);
}

void SFDSP::HSBtoRGB(float H, float S, float brightness, unsigned char& R, unsigned char& G,
                     unsigned char& B) {
  tintwerk::HsbToRgb(H, S, brightness, R, G, B);
}

void SFDSP::RGBtoHSL(unsigned char R, unsigned char G, unsigned char B, unsigned char& H,
                     unsigned char& S, unsigned char& L) {
  const int max = std::max({R, G, B}), min = std::min({R, G, B});
  const int sum = max + min, d = max - min;
  const int lightness = (sum + 1) >> 1;
  int hue = 170, saturation = 0;
  if (d != 0) {
    saturation = d * 255 / (lightness > 127 ? 510 - sum : sum);
    hue = R == max ? (G - B) * 42 / d : G == max ? (B - R) * 42 / d + 85 : (R - G) * 42 / d - 86;
  }
  H = static_cast<unsigned char>(hue);
  S = static_cast<unsigned char>(saturation);
  L = static_cast<unsigned char>(lightness);
}

void SFDSP::HSLtoRGB(unsigned char H, unsigned char S, unsigned char L, unsigned char& R,
                     unsigned char& G, unsigned char& B) {
  if (S == 0) {
    R = G = B = L;
    return;
  }
  const auto high =
      static_cast<float>(L <= 127 ? (S * kPerByte + 1.0) * L : (L + S) - (L * S) * kPerByte);
  const float low = static_cast<float>(2 * L) - high;
  const double hue = H * kPerByte;
  auto red = static_cast<float>(hue + 0.33333);
  if (red > 1) red -= 1;
  auto blue = static_cast<float>(hue - 0.33333);
  if (blue < 0) blue += 1;
  R = HueToByte(low, high, red);
  G = HueToByte(low, high, static_cast<float>(hue));
  B = HueToByte(low, high, blue);
}

#include "tintwerk/color_space.h"

#include <algorithm>
#include <cmath>

#include "pixel/hsb.h"
#include "pixel/truncate.h"

using tintwerk::ClampToByte;
using tintwerk::Truncate;
using tintwerk::TruncateToByte;

int CColorSpace::RGBtoHSB(int R, int G, int B, float& H, float& S, float& brightness) {
  tintwerk::RgbToHsb(R, G, B, H, S, brightness);
  return 1;
}

int CColorSpace::HSBtoRGB(float H, float S, float brightness, unsigned char& R, unsigned char& G,
                          unsigned char& B) {
  tintwerk::HsbToRgb(H, S, brightness, R, G, B);
  return 1;
}

int CColorSpace::RGBtoHSL(unsigned char R, unsigned char G, unsigned char B, unsigned char& H,
                          unsigned char& S, unsigned char& L) {
  const int max = std::max({R, G, B}), min = std::min({R, G, B});
  const int sum = max + min, d = max - min;
  const int lightness = (sum + 1) * 255 / 510;
  int hue = 170, saturation = 0;
  if (d != 0) {
    saturation = lightness > 127 ? (((510 - sum) >> 1) + d * 255) / (510 - sum)
                                 : ((sum >> 1) + d * 255) / sum;
    hue = R == max ? (G - B) * 42 / d : G == max ? (B - R) * 42 / d + 85 : (R - G) * 42 / d - 86;
  }
  H = static_cast<unsigned char>(hue);
  S = static_cast<unsigned char>(saturation);
  L = static_cast<unsigned char>(lightness);
  return 1;
}

float CColorSpace::HueToRGB(float m1, float m2, float hue) {
  if (hue > 360) hue -= 360;
  if (hue < 0) hue += 360;
  if (hue < 60) return (m2 - m1) * hue / 60 + m1;
  if (hue < 180) return m2;
  if (hue < 240) return (m2 - m1) * (240 - hue) / 60 + m1;
  return m1;
}

int CColorSpace::HSLtoRGB(unsigned char H, unsigned char S, unsigned char L, unsigned char& R,
                          unsigned char& G, unsigned char& B) {
  const float h = H * 360.0f / 255.0f, l = L / 255.0f, s = S / 255.0f;
  if (s == 0) {
    R = G = B = TruncateToByte(l * 255.0f);
    return 1;
  }
  const float m2 = l <= 0.5f ? (s + 1) * l : l + s - l * s;
  const float m1 = l + l - m2;
  R = TruncateToByte(HueToRGB(m1, m2, h + 120) * 255.0f);
  G = TruncateToByte(HueToRGB(m1, m2, h) * 255.0f);
  B = TruncateToByte(HueToRGB(m1, m2, h - 120) * 255.0f);
  return 1;
}

void CColorSpace::RGBtoHLS(unsigned char R, unsigned char G, unsigned char B, double& H, double& L,
                           double& S) {
  const int max = std::max({R, G, B}), min = std::min({R, G, B});
  L = (max + min) * 0.0019608;
  H = S = 0;
  if (max == min) return;
  const double d = max - min;
  S = L < 0.5 ? d / (max + min) : d / (510 - min - max);
  double h;
  if (R == max) {
    h = (G - B) / d;
    if (h < 0) h += 6;
  } else if (G == max) {
    h = (B - R) / d + 2;
  } else {
    h = (R - G) / d + 4;
  }
  H = h * 0.16666699945926666;
}

double CColorSpace::HLS_Value(const double& m1, const double& m2, double hue) {
  if (hue > 6)
    hue -= 6;
  else if (hue < 0)
    hue += 6;
  if (hue < 1) return (m2 - m1) * hue + m1;
  if (hue < 3) return m2;
  if (hue < 4) return (m2 - m1) * (4 - hue) + m1;
  return m1;
}

void CColorSpace::HLStoRGB(const double& H, const double& L, const double& S, unsigned char& R,
                           unsigned char& G, unsigned char& B) {
  if (S < 1.1920928955078125e-7) {
    R = G = B = ClampToByte(L * 255);
    return;
  }
  const double m2 = L < 0.5 ? (S + 1) * L : L + S - L * S;
  const double m1 = L + L - m2;
  const double h = H * 6;
  R = ClampToByte(HLS_Value(m1, m2, h + 2) * 255);
  G = ClampToByte(HLS_Value(m1, m2, h) * 255);
  B = ClampToByte(HLS_Value(m1, m2, h - 2) * 255);
}

tagRGBQUAD CColorSpace::HLStoRGB(const double& H, const double& L, const double& S) {
  tagRGBQUAD colour{};
  HLStoRGB(H, L, S, colour.rgbRed, colour.rgbGreen, colour.rgbBlue);
  return colour;
}

void CColorSpace::RGBtoHSV(unsigned char R, unsigned char G, unsigned char B, double& H, double& S,
                           double& V) {
  const double r = R / 255.0, g = G / 255.0, b = B / 255.0;
  V = std::max({r, g, b});
  double d = V - std::min({r, g, b});
  S = V == 0 ? 0 : d / V;
  H = 0;
  if (S == 0) return;
  if (d == 0) d = 1.0;
  const double h = r == V ? (g - b) / d : g == V ? (b - r) / d + 2 : (r - g) / d + 4;
  H = h / 6.0;
  if (H < 0) H += 1;
  if (H > 1) H -= 1;
}

void CColorSpace::HSVtoRGB(double H, double S, double V, unsigned char& R, unsigned char& G,
                           unsigned char& B) {
  double r = V, g = V, b = V;
  if (S != 0) {
    double h = H * 6;
    if (h == 6) h = 0;
    const int i = Truncate(h);
    const double f = h - i;
    const double p = (1 - S) * V, q = (1 - f * S) * V, t = (1 - (1 - f) * S) * V;
    // Hues outside 0..1 name no colour and keep the grey.
    switch (i) {
      case 0:
        r = V, g = t, b = p;
        break;
      case 1:
        r = q, g = V, b = p;
        break;
      case 2:
        r = p, g = V, b = t;
        break;
      case 3:
        r = p, g = q, b = V;
        break;
      case 4:
        r = t, g = p, b = V;
        break;
      case 5:
        r = V, g = p, b = q;
        break;
      default:
        break;
    }
  }
  R = TruncateToByte(r * 255.0 + 0.5);
  G = TruncateToByte(g * 255.0 + 0.5);
  B = TruncateToByte(b * 255.0 + 0.5);
}

int CColorSpace::RGBtoXYZ(unsigned char R, unsigned char G, unsigned char B, unsigned char& X,
                          unsigned char& Y, unsigned char& Z) {
  X = TruncateToByte(R * 0.412453f + G * 0.35758f + B * 0.180423f);
  Y = TruncateToByte(G * 0.71516f + R * 0.212671f + B * 0.072169f);
  // The last factor brings the Z of white to 255; XYZtoRGB undoes it.
  Z = TruncateToByte((R * 0.019334f + G * 0.119193f + B * 0.950227f) * 0.9184837f);
  return 1;
}

int CColorSpace::XYZtoRGB(unsigned char X, unsigned char Y, unsigned char Z, unsigned char& R,
                          unsigned char& G, unsigned char& B) {
  // Brackets in single precision, their sums in double.
  auto sum = [](float xy, float z) { return ClampToByte(xy + z * 1.088751); };
  R = sum(X * 3.240479f - Y * 1.53715f, -(Z * 0.498535f));
  G = sum(Y * 1.875992f - X * 0.969256f, Z * 0.041556f);
  B = sum(X * 0.055648f - Y * 0.204043f, Z * 1.057311f);
  return 1;
}

int CColorSpace::RGBtoYIQ(unsigned char R, unsigned char G, unsigned char B, unsigned char& Y,
                          unsigned char& I, unsigned char& Q) {
  Y = ClampToByte(R * 0.2992f + G * 0.5868f + B * 0.114f);
  I = ClampToByte(R * 0.596f - G * 0.2742f - B * 0.3219f + 128);
  Q = ClampToByte(R * 0.2109f - G * 0.5229f + B * 0.312f + 128);
  return 1;
}

int CColorSpace::YIQtoRGB(unsigned char Y, unsigned char I, unsigned char Q, unsigned char& R,
                          unsigned char& G, unsigned char& B) {
  const int i = I - 128, q = Q - 128;
  R = ClampToByte(i * 0.956f + Y + q * 0.621f);
  G = ClampToByte(Y - i * 0.273f - q * 0.647f);
  B = ClampToByte(Y - i * 1.104f + q * 1.701f);
  return 1;
}

int CColorSpace::RGBtoYUV(unsigned char R, unsigned char G, unsigned char B, unsigned char& Y,
                          unsigned char& U, unsigned char& V) {
  const int y = Truncate(R * 0.299f + G * 0.587f + B * 0.114f);
  Y = ClampToByte(y);
  U = ClampToByte((B - y) * 0.565f + 128);
  V = ClampToByte((R - y) * 0.713f + 128);
  return 1;
}

int CColorSpace::YUVtoRGB(unsigned char Y, unsigned char U, unsigned char V, unsigned char& R,
                          unsigned char& G, unsigned char& B) {
  const int u = U - 128, v = V - 128;
  R = ClampToByte(v * 1.403f + Y);
  G = ClampToByte(Y - u * 0.344f - v * 0.714f);
  B = ClampToByte(u * 1.77f + Y);
  return 1;
}

// Conversions between colour models against plain twins, of bytes over dense grids that hold every
// corner.
#include "tintwerk/color_space.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "filters/machines.h"
#include "pixel/hls.h"
#include "tintwerk/sfdsp.h"

namespace {

using Byte = unsigned char;
using Bytes = std::array<Byte, 3>;
using Floats = std::array<float, 3>;
using Doubles = std::array<double, 3>;

// Makes of a conversion with three out parameters one that returns them.
template <class Out, class Convert>
auto Values(Convert convert) {
  return [=](auto x, auto y, auto z) {
    Out out;
    convert(x, y, z, out[0], out[1], out[2]);
    return out;
  };
}

// Steps 1, 3 and 17 in turns; all divide 255, so that the ends are in.
template <class Check>
void EveryTriple(Check check) {
  for (int x = 0; x < 256; ++x)
    for (int y = 0; y < 256; y += 3)
      for (int z = 0; z < 256; z += 17)
        if (!check(x, y, z) || !check(z, x, y) || !check(y, z, x)) return;
}

template <class Convert, class Twin>
void Same(Convert convert, Twin twin, int line = __builtin_LINE()) {
  EveryTriple([&](int x, int y, int z) {
    const auto result = convert(Byte(x), Byte(y), Byte(z)), expected = twin(x, y, z);
    if (result == expected) return true;
    ADD_FAILURE() << "line " << line << " at " << x << ", " << y << ", " << z << ": "
                  << testing::PrintToString(result) << " for " << testing::PrintToString(expected);
    return false;
  });
}

// The largest change of any channel on a way there and back.
template <class There, class Back>
int WorstRoundTrip(There there, Back back) {
  int worst = 0;
  EveryTriple([&](int r, int g, int b) {
    const auto [x, y, z] = there(Byte(r), Byte(g), Byte(b));
    const Bytes rgb = back(x, y, z);
    worst = std::max({worst, std::abs(rgb[0] - r), std::abs(rgb[1] - g), std::abs(rgb[2] - b)});
    return true;
  });
  return worst;
}

Bytes Low(int r, int g, int b) {
  return {Byte(r), Byte(g), Byte(b)};
}
Bytes Clamped(double r, double g, double b) {
  const auto clamp = [](double value) { return std::clamp(int(value), 0, 255); };
  return Low(clamp(r), clamp(g), clamp(b));
}

Floats Hsb(int r, int g, int b) {
  const auto [m, M] = std::minmax({r, g, b});
  const float brightness = M / 255.0f;
  if (M == m) return {0, 0, brightness};
  const float d = float(M - m), rc = (M - r) / d, gc = (M - g) / d, bc = (M - b) / d;
  float h = 0;
  if (M == r) h = (bc + 6 - gc) * 60;
  if (M == g) h = (rc + 2 - bc) * 60;
  if (M == b) h = (gc + 4 - rc) * 60;
  return {h > 360 ? h - 360 : h, d / M, brightness};
}

Bytes RgbOfHsb(float h, float s, float brightness) {
  const int V = int(brightness * 255);
  if (h == 0) return Low(V, V, V);
  const int lo = int(V - V * s);
  const float d = float(V - lo);
  if (h > 300) return Low(V, lo, int(double((360 - h) * d) / 60.0 + lo));
  if (h > 240) return Low(int((h - 240) * d / 60 + lo), lo, V);
  if (h > 180) return Low(lo, int((240 - h) * d / 60 + lo), V);
  if (h > 120) return Low(lo, V, int((h - 120) * d / 60 + lo));
  if (h > 60) return Low(int((120 - h) * d / 60 + lo), V, lo);
  return Low(V, int(d * h / 60 + lo), lo);
}

TEST(ColorSpace, Hsb) {
  const auto hsb = Values<Floats>(CColorSpace::RGBtoHSB);
  const auto hsbEx = Values<Floats>(SFDSP::RGBtoHSB);
  const auto rgb = Values<Bytes>(CColorSpace::HSBtoRGB);
  const auto rgbEx = Values<Bytes>(SFDSP::HSBtoRGB);
  Same(hsb, Hsb);
  Same(hsbEx, Hsb);
  // Beyond the ends of the model the low bytes are stored.
  for (float h = -1.3f; h<362; h += h> 0 && int(h) % 60 < 2 ? 0.03125f : 0.7f)
    for (float s = -0.05f; s < 1.2f; s += 0.041f)
      for (float b = 0; b < 1.2f; b += 0.013f) {
        ASSERT_EQ(rgb(h, s, b), RgbOfHsb(h, s, b)) << h << " " << s << " " << b;
        ASSERT_EQ(rgbEx(h, s, b), RgbOfHsb(h, s, b)) << h << " " << s << " " << b;
      }
  for (float h : {0.0f, 60.0f, 120.0f, 180.0f, 240.0f, 300.0f, 360.0f})
    EXPECT_EQ(rgb(h, 0.7f, 0.9f), RgbOfHsb(h, 0.7f, 0.9f)) << h;

  EXPECT_EQ(hsb(255, 0, 0), (Floats{360, 1, 1}));
  EXPECT_EQ(rgb(360.0f, 1.0f, 1.0f), (Bytes{255, 0, 0}));
  EXPECT_EQ(hsb(128, 128, 128), (Floats{0, 0, 128 / 255.0f}));
  EXPECT_EQ(rgb(0.0f, 1.0f, 0.5f), (Bytes{127, 127, 127}));
  EXPECT_LE(WorstRoundTrip(hsb, rgb), 1);
}

Bytes Hsl(int r, int g, int b, bool rounds) {
  const auto [m, M] = std::minmax({r, g, b});
  const int sum = M + m, L = (sum + 1) * 255 / 510, d = M - m;
  if (d == 0) return Low(170, 0, L);
  const int range = L > 127 ? 510 - sum : sum;
  const int S = ((rounds ? range >> 1 : 0) + d * 255) / range;
  if (r == M) return Low((g - b) * 42 / d, S, L);
  return g == M ? Low((b - r) * 42 / d + 85, S, L) : Low((r - g) * 42 / d - 86, S, L);
}

Bytes RgbOfHsl(int H, int S, int L) {
  const float h = float(H) * 360 / 255, l = L / 255.0f, s = S / 255.0f;
  if (S == 0) return Low(int(l * 255), int(l * 255), int(l * 255));
  const float m2 = l <= 0.5f ? (s + 1) * l : l + s - l * s, m1 = l + l - m2;
  const auto channel = [=](float hue) {
    if (hue > 360) hue -= 360;
    if (hue < 0) hue += 360;
    if (hue < 60) return int(((m2 - m1) * hue / 60 + m1) * 255);
    if (hue < 180) return int(m2 * 255);
    if (hue < 240) return int(((m2 - m1) * (240 - hue) / 60 + m1) * 255);
    return int(m1 * 255);
  };
  return Low(channel(h + 120), channel(h), channel(h - 120));
}

Bytes RgbOfHslEx(int H, int S, int L) {
  constexpr double k = 0.0039215;
  if (S == 0) return Low(L, L, L);
  const float m2 = float(L <= 127 ? (S * k + 1.0) * L : (L + S) - (L * S) * k), m1 = 2 * L - m2;
  const auto channel = [=](float t) {
    if (t < 0.166666f) return int((m2 - m1) * t * 6 + m1);
    if (t < 0.5f) return int(m2);
    if (t < 0.666666) return int(float((m2 - m1) * (0.666666 - t) * 6 + m1));
    return int(m1);
  };
  const double h = H * k;
  const float red = float(h + 0.33333), blue = float(h - 0.33333);
  return Low(channel(red > 1 ? red - 1 : red), channel(float(h)),
             channel(blue < 0 ? blue + 1 : blue));
}

TEST(ColorSpace, Hsl) {
  const auto hsl = Values<Bytes>(CColorSpace::RGBtoHSL);
  const auto hslEx = Values<Bytes>(SFDSP::RGBtoHSL);
  const auto rgb = Values<Bytes>(CColorSpace::HSLtoRGB);
  const auto rgbEx = Values<Bytes>(SFDSP::HSLtoRGB);
  Same(hsl, [](int r, int g, int b) { return Hsl(r, g, b, true); });
  Same(hslEx, [](int r, int g, int b) { return Hsl(r, g, b, false); });
  Same(rgb, RgbOfHsl);
  Same(rgbEx, RgbOfHslEx);

  EXPECT_EQ(hsl(0, 0, 0), (Bytes{170, 0, 0}));
  EXPECT_EQ(hsl(99, 99, 99), (Bytes{170, 0, 99}));
  EXPECT_EQ(hslEx(255, 255, 255), (Bytes{170, 0, 255}));
  EXPECT_EQ(hsl(255, 0, 1)[0], 0);
  EXPECT_EQ(hsl(255, 0, 7)[0], 255);  // below 0 the hue wraps
  // Hue takes steps of 1.4 degrees and the two directions scale it differently.
  EXPECT_LE(WorstRoundTrip(hsl, rgb), 15);
  EXPECT_LE(WorstRoundTrip(hslEx, rgbEx), 15);
}

Doubles Hls(int r, int g, int b) {
  const auto [m, M] = std::minmax({r, g, b});
  const double l = (M + m) * 0.0019608, d = M - m;
  if (M == m) return {0, l, 0};
  double h = (r - g) / d + 4;
  if (r == M)
    h = (g - b) / d < 0 ? (g - b) / d + 6 : (g - b) / d;
  else if (g == M)
    h = (b - r) / d + 2;
  return {h * 0.16666699945926666, l, d / (l < 0.5 ? M + m : 510 - m - M)};
}

Bytes RgbOfHls(double H, double L, double S) {
  if (S < 1.1920928955078125e-7) {
    const double grey = std::clamp(L * 255, 0.0, 255.0);
    return Clamped(grey, grey, grey);
  }
  const double m2 = L < 0.5 ? (S + 1) * L : L + S - L * S, m1 = L + L - m2;
  const auto channel = [=](double h) {
    if (h > 6)
      h -= 6;
    else if (h < 0)
      h += 6;
    return 255 * (h < 1 ? (m2 - m1) * h + m1 : h < 3 ? m2 : h < 4 ? (m2 - m1) * (4 - h) + m1 : m1);
  };
  return Clamped(channel(H * 6 + 2), channel(H * 6), channel(H * 6 - 2));
}

// Calls a check on hue, the two others and steps beyond their ends of 0 and 1.
template <class Check>
void EveryUnitTriple(Check check) {
  for (int h = 0; h <= 240; ++h)
    for (double y = -0.07; y < 1.2; y += 0.023)
      for (double z = 0; z < 1.2; z += 0.031) check(h / 240.0, y, z);
}

TEST(ColorSpace, Hls) {
  const auto hls = Values<Doubles>(CColorSpace::RGBtoHLS);
  const auto rgb = Values<Bytes>([](double h, double l, double s, Byte& red, Byte& g, Byte& b) {
    CColorSpace::HLStoRGB(h, l, s, red, g, b);
    const tagRGBQUAD quad = CColorSpace::HLStoRGB(h, l, s);
    EXPECT_EQ((Bytes{quad.rgbRed, quad.rgbGreen, quad.rgbBlue}), (Bytes{red, g, b}));
  });
  Same(hls, Hls);
  EveryUnitTriple([&](double h, double l, double s) {
    ASSERT_EQ(rgb(h, l, s), RgbOfHls(h, l, s)) << h << " " << l << " " << s;
  });
  EXPECT_EQ(rgb(0.3, 1.5, 0.0), (Bytes{255, 255, 255}));
  // A saturation below the epsilon of single precision is none.
  EXPECT_EQ(rgb(0.3, 0.2, 1.1e-7), (Bytes{51, 51, 51}));
  EXPECT_EQ(rgb(0.3, 0.2, 1.2e-7), (Bytes{50, 51, 50}));
  EXPECT_LE(WorstRoundTrip(hls, rgb), 1);
}

// Of images, on every instruction set: to the last bit what single colours give.
TEST(ColorSpace, HlsOfRuns) {
  constexpr int kPixels = tintwerk::HlsRun::kPixels;
  tintwerk::test::OnEveryMachine([] {
    tintwerk::HlsRun run;
    Byte pixels[4 * kPixels];
    int filled = 0, differences = 0;
    EveryTriple([&](int r, int g, int b) {
      const Byte pixel[] = {static_cast<Byte>(b), static_cast<Byte>(g), static_cast<Byte>(r), 77};
      std::copy_n(pixel, 4, pixels + 4 * filled);
      if (++filled < kPixels) return true;
      filled = 0;
      tintwerk::RgbToHls(pixels, run);
      for (int i = 0; i < kPixels; ++i) {
        double h, l, s;
        CColorSpace::RGBtoHLS(pixels[4 * i + 2], pixels[4 * i + 1], pixels[4 * i], h, l, s);
        differences += h != run.hue[i] || l != run.lightness[i] || s != run.saturation[i];
        run.hue[i] += (i % 9 - 4) / 12.0;
        run.lightness[i] += (i % 5 - 2) / 4.0;
        if (i % 7 == 0) run.saturation[i] = 1.1e-7;
      }
      tintwerk::HlsToRgb(run, pixels);
      for (int i = 0; i < kPixels; ++i) {
        Byte back[4] = {0, 0, 0, 77};
        CColorSpace::HLStoRGB(run.hue[i], run.lightness[i], run.saturation[i], back[2], back[1],
                              back[0]);
        differences += !std::equal(back, back + 4, pixels + 4 * i);
      }
      return differences == 0;
    });
    EXPECT_EQ(differences, 0);
  });
}

TEST(ColorSpace, HslOfRuns) {
  std::vector<Byte> colours;
  EveryTriple([&](int x, int y, int z) {
    for (const int value : {x, y, z, 77}) colours.push_back(static_cast<Byte>(value));
    return true;
  });
  const std::int64_t count = static_cast<std::int64_t>(colours.size()) / 4;
  std::vector<Byte> hsl = colours, rgb = colours;
  for (std::size_t i = 0; i < colours.size(); i += 4) {
    CColorSpace::RGBtoHSL(colours[i + 2], colours[i + 1], colours[i], hsl[i + 2], hsl[i + 1],
                          hsl[i]);
    CColorSpace::HSLtoRGB(colours[i + 2], colours[i + 1], colours[i], rgb[i + 2], rgb[i + 1],
                          rgb[i]);
  }
  tintwerk::test::OnEveryMachine([&] {
    for (const std::int64_t run : {std::int64_t{3}, std::int64_t{37}, count}) {
      std::vector<Byte> there = colours, back = colours;
      for (std::int64_t i = 0; i < count; i += run) {
        tintwerk::RgbToHsl(&there[4 * i], std::min(run, count - i));
        tintwerk::HslToRgb(&back[4 * i], std::min(run, count - i));
      }
      EXPECT_TRUE(there == hsl) << run;
      EXPECT_TRUE(back == rgb) << run;
    }
  });
}

Doubles Hsv(int R, int G, int B) {
  const double r = R / 255.0, g = G / 255.0, b = B / 255.0;
  const double v = std::max({r, g, b}), d = v - std::min({r, g, b}), s = v == 0 ? 0 : d / v;
  if (s == 0) return {0, 0, v};
  const double h = (r == v ? (g - b) / d : g == v ? (b - r) / d + 2 : (r - g) / d + 4) / 6.0;
  return {h < 0 ? h + 1 : h > 1 ? h - 1 : h, s, v};
}

Bytes RgbOfHsv(double H, double S, double V) {
  const double h = H * 6 == 6 ? 0 : H * 6, f = h - int(h);
  const double p = (1 - S) * V, q = (1 - f * S) * V, t = (1 - (1 - f) * S) * V;
  const Doubles sixths[] = {{V, t, p}, {q, V, p}, {p, V, t}, {p, q, V}, {t, p, V}, {V, p, q}};
  const Doubles c = S == 0 ? Doubles{V, V, V} : sixths[int(h)];
  return Low(int(c[0] * 255.0 + 0.5), int(c[1] * 255.0 + 0.5), int(c[2] * 255.0 + 0.5));
}

TEST(ColorSpace, Hsv) {
  const auto hsv = Values<Doubles>(CColorSpace::RGBtoHSV);
  const auto rgb = Values<Bytes>(CColorSpace::HSVtoRGB);
  Same(hsv, Hsv);
  EveryUnitTriple([&](double h, double s, double v) {
    ASSERT_EQ(rgb(h, s, v), RgbOfHsv(h, s, v)) << h << " " << s << " " << v;
  });
  EXPECT_EQ(rgb(1.0, 0.8, 0.6), rgb(0.0, 0.8, 0.6));
  EXPECT_EQ(WorstRoundTrip(hsv, rgb), 0);
}

TEST(ColorSpace, LinearModels) {
  const auto xyz = Values<Bytes>(CColorSpace::RGBtoXYZ);
  const auto ofXyz = Values<Bytes>(CColorSpace::XYZtoRGB);
  const auto yiq = Values<Bytes>(CColorSpace::RGBtoYIQ);
  const auto ofYiq = Values<Bytes>(CColorSpace::YIQtoRGB);
  const auto yuv = Values<Bytes>(CColorSpace::RGBtoYUV);
  const auto ofYuv = Values<Bytes>(CColorSpace::YUVtoRGB);
  Same(xyz, [](int R, int G, int B) {
    return Low(int(R * 0.412453f + G * 0.35758f + B * 0.180423f),
               int(G * 0.71516f + R * 0.212671f + B * 0.072169f),
               int((R * 0.019334f + G * 0.119193f + B * 0.950227f) * 0.9184837f));
  });
  Same(ofXyz, [](int X, int Y, int Z) {
    return Clamped((X * 3.240479f - Y * 1.53715f) - (Z * 0.498535f) * 1.088751,
                   (Y * 1.875992f - X * 0.969256f) + (Z * 0.041556f) * 1.088751,
                   (X * 0.055648f - Y * 0.204043f) + (Z * 1.057311f) * 1.088751);
  });
  Same(yiq, [](int R, int G, int B) {
    return Clamped(R * 0.2992f + G * 0.5868f + B * 0.114f,
                   R * 0.596f - G * 0.2742f - B * 0.3219f + 128,
                   R * 0.2109f - G * 0.5229f + B * 0.312f + 128);
  });
  Same(ofYiq, [](int Y, int I, int Q) {
    I -= 128, Q -= 128;
    return Clamped(I * 0.956f + Y + Q * 0.621f, Y - I * 0.273f - Q * 0.647f,
                   Y - I * 1.104f + Q * 1.701f);
  });
  Same(yuv, [](int R, int G, int B) {
    const int Y = int(R * 0.299f + G * 0.587f + B * 0.114f);
    return Clamped(Y, (B - Y) * 0.565f + 128, (R - Y) * 0.713f + 128);
  });
  Same(ofYuv, [](int Y, int U, int V) {
    U -= 128, V -= 128;
    return Clamped(V * 1.403f + Y, Y - U * 0.344f - V * 0.714f, U * 1.77f + Y);
  });
  EXPECT_EQ(xyz(255, 255, 255)[2], 255);
  EXPECT_LE(WorstRoundTrip(xyz, ofXyz), 4);
  EXPECT_LE(WorstRoundTrip(yiq, ofYiq), 29);  // pure colours have an I that is limited
  EXPECT_LE(WorstRoundTrip(yuv, ofYuv), 2);
}

}  // namespace

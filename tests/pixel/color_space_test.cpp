// Conversions between colour models against plain twins, of bytes over dense grids that hold every
// corner.
#include "tintwerk/color_space.h"

#include "pixel/hls.h"
#include "support/operations.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using Space = CColorSpace;
using Rgb = std::array<Byte, 3>;
using Floats = std::array<float, 3>;
using Doubles = std::array<double, 3>;

// Steps 1, 3 and 17 in turns; all divide 255, so that the ends are in.
template <class Check>
void EveryTriple(Check check) {
  for (int x = 0; x < 256; ++x)
    for (int y = 0; y < 256; y += 3)
      for (int z = 0; z < 256; z += 17) {
        check(x, y, z), check(z, x, y), check(y, z, x);
        if (testing::Test::HasFailure()) return;
      }
}

template <class Out, class Convert, class Twin>
void Same(Convert convert, Twin twin, int line = __builtin_LINE()) {
  EveryTriple([&](int x, int y, int z) {
    EXPECT_EQ(Values<Out>(convert, Byte(x), Byte(y), Byte(z)), twin(x, y, z))
        << "line " << line << " at " << x << ", " << y << ", " << z;
  });
}

Rgb Low(int r, int g, int b) {
  return {Byte(r), Byte(g), Byte(b)};
}
Rgb Clamped(double r, double g, double b) {
  const auto clamp = [](double value) { return std::clamp(int(value), 0, 255); };
  return Low(clamp(r), clamp(g), clamp(b));
}

Floats Hsb(int r, int g, int b) {
  const auto [m, M] = std::minmax({r, g, b});
  const float brightness = M / 255.0f, d = float(M - m);
  if (M == m) return {0, 0, brightness};
  const float rc = (M - r) / d, gc = (M - g) / d, bc = (M - b) / d;
  const float sixths = M == b ? gc + 4 - rc : M == g ? rc + 2 - bc : bc + 6 - gc, h = sixths * 60;
  return {h > 360 ? h - 360 : h, d / M, brightness};
}

Rgb RgbOfHsb(float h, float s, float brightness) {
  const int V = int(brightness * 255), lo = int(V - V * s);
  if (h == 0) return Low(V, V, V);
  const float d = float(V - lo);
  if (h > 300) return Low(V, lo, int(double((360 - h) * d) / 60.0 + lo));
  if (h > 240) return Low(int((h - 240) * d / 60 + lo), lo, V);
  if (h > 180) return Low(lo, int((240 - h) * d / 60 + lo), V);
  if (h > 120) return Low(lo, V, int((h - 120) * d / 60 + lo));
  if (h > 60) return Low(int((120 - h) * d / 60 + lo), V, lo);
  return Low(V, int(d * h / 60 + lo), lo);
}

TEST(ColorSpace, Hsb) {
  Same<float>(Space::RGBtoHSB, Hsb);
  Same<float>(SFDSP::RGBtoHSB, Hsb);
  const auto same = [](float h, float s, float b) {
    const Rgb expected = RgbOfHsb(h, s, b);
    return Values<Byte>(Space::HSBtoRGB, h, s, b) == expected &&
           Values<Byte>(SFDSP::HSBtoRGB, h, s, b) == expected;
  };
  // Beyond the ends of the model the low bytes are stored.
  const auto step = [](float h) { return h > 0 && int(h) % 60 < 2 ? 0.03125f : 0.7f; };
  for (float h = -1.3f; h < 362; h += step(h))
    for (float s = -0.05f; s < 1.2f; s += 0.041f)
      for (float b = 0; b < 1.2f; b += 0.013f) ASSERT_TRUE(same(h, s, b)) << h << " " << s << b;
  for (int h = 0; h <= 360; h += 60) EXPECT_TRUE(same(float(h), 0.7f, 0.9f)) << h;
  EXPECT_EQ(Hsb(255, 0, 0), (Floats{360, 1, 1}));
  EXPECT_EQ(Hsb(128, 128, 128), (Floats{0, 0, 128 / 255.0f}));
  EXPECT_EQ(RgbOfHsb(360, 1, 1), Low(255, 0, 0));
  EXPECT_EQ(RgbOfHsb(0, 1, 0.5f), Low(127, 127, 127));
}

template <bool rounds>
Rgb Hsl(int r, int g, int b) {
  const auto [m, M] = std::minmax({r, g, b});
  const int sum = M + m, L = (sum + 1) * 255 / 510, d = M - m, range = L > 127 ? 510 - sum : sum;
  if (d == 0) return Low(170, 0, L);
  const int S = ((rounds ? range >> 1 : 0) + d * 255) / range;
  if (r == M) return Low((g - b) * 42 / d, S, L);
  return g == M ? Low((b - r) * 42 / d + 85, S, L) : Low((r - g) * 42 / d - 86, S, L);
}

Rgb RgbOfHsl(int H, int S, int L) {
  const float h = float(H) * 360 / 255, l = L / 255.0f, s = S / 255.0f;
  if (S == 0) return Low(int(l * 255), int(l * 255), int(l * 255));
  const float m2 = l <= 0.5f ? (s + 1) * l : l + s - l * s, m1 = l + l - m2;
  const auto channel = [=](float hue) {
    if (hue > 360) hue -= 360;
    if (hue < 0) hue += 360;
    const float rise = (m2 - m1) * hue / 60 + m1, fall = (m2 - m1) * (240 - hue) / 60 + m1;
    return int((hue < 60 ? rise : hue < 180 ? m2 : hue < 240 ? fall : m1) * 255);
  };
  return Low(channel(h + 120), channel(h), channel(h - 120));
}

Rgb RgbOfHslEx(int H, int S, int L) {
  constexpr double k = 0.0039215;
  if (S == 0) return Low(L, L, L);
  const float m2 = float(L <= 127 ? (S * k + 1.0) * L : (L + S) - (L * S) * k), m1 = 2 * L - m2;
  const auto channel = [=](float t) {
    if (t < 0.166666f) return int((m2 - m1) * t * 6 + m1);
    if (t < 0.5f) return int(m2);
    return int(t < 0.666666 ? float((m2 - m1) * (0.666666 - t) * 6 + m1) : m1);
  };
  const double h = H * k;
  const float red = float(h + 0.33333), blue = float(h - 0.33333);
  return Low(channel(red > 1 ? red - 1 : red), channel(float(h)),
             channel(blue < 0 ? blue + 1 : blue));
}

TEST(ColorSpace, Hsl) {
  Same<Byte>(Space::RGBtoHSL, Hsl<true>);
  Same<Byte>(SFDSP::RGBtoHSL, Hsl<false>);
  Same<Byte>(Space::HSLtoRGB, RgbOfHsl);
  Same<Byte>(SFDSP::HSLtoRGB, RgbOfHslEx);
  EXPECT_EQ(Hsl<true>(0, 0, 0), Low(170, 0, 0));
  EXPECT_EQ(Hsl<true>(99, 99, 99), Low(170, 0, 99));
  EXPECT_EQ(Hsl<false>(255, 255, 255), Low(170, 0, 255));
  EXPECT_EQ(Hsl<true>(255, 0, 1)[0], 0);
  EXPECT_EQ(Hsl<true>(255, 0, 7)[0], 255);  // below 0 the hue wraps
}

Doubles Hls(int r, int g, int b) {
  const auto [m, M] = std::minmax({r, g, b});
  const double l = (M + m) * 0.0019608, d = M - m;
  if (M == m) return {0, l, 0};
  const double toRed = (g - b) / d < 0 ? (g - b) / d + 6 : (g - b) / d;
  const double h = r == M ? toRed : g == M ? (b - r) / d + 2 : (r - g) / d + 4;
  return {h * 0.16666699945926666, l, d / (l < 0.5 ? M + m : 510 - m - M)};
}

Rgb RgbOfHls(double H, double L, double S) {
  const double grey = std::clamp(L * 255, 0.0, 255.0);
  if (S < 1.1920928955078125e-7) return Clamped(grey, grey, grey);
  const double m2 = L < 0.5 ? (S + 1) * L : L + S - L * S, m1 = L + L - m2;
  const auto channel = [=](double turned) {
    const double h = turned > 6 ? turned - 6 : turned < 0 ? turned + 6 : turned;
    return 255 * (h < 1 ? (m2 - m1) * h + m1 : h < 3 ? m2 : h < 4 ? (m2 - m1) * (4 - h) + m1 : m1);
  };
  return Clamped(channel(H * 6 + 2), channel(H * 6), channel(H * 6 - 2));
}

// Compares on hue, the two others and steps beyond their ends of 0 and 1.
template <class Convert, class Twin>
void SameOnUnits(Convert convert, Twin twin) {
  for (int i = 0; i <= 240; ++i)
    for (double y = -0.07, h = i / 240.0; y < 1.2; y += 0.023)
      for (double z = 0; z < 1.2; z += 0.031)
        ASSERT_EQ(Values<Byte>(convert, h, y, z), twin(h, y, z)) << h << " " << y << " " << z;
}

TEST(ColorSpace, Hls) {
  using Number = const double&;
  constexpr void (*kRgb)(Number, Number, Number, Byte&, Byte&, Byte&) = Space::HLStoRGB;
  Same<double>(Space::RGBtoHLS, Hls);
  SameOnUnits(kRgb, RgbOfHls);
  const tagRGBQUAD quad = Space::HLStoRGB(0.3, 0.6, 0.9);
  EXPECT_EQ(Low(quad.rgbRed, quad.rgbGreen, quad.rgbBlue), RgbOfHls(0.3, 0.6, 0.9));
  EXPECT_EQ(RgbOfHls(0.3, 1.5, 0), Low(255, 255, 255));
  // A saturation below the epsilon of single precision is none.
  EXPECT_EQ(Values<Byte>(kRgb, 0.3, 0.2, 1.1e-7), Low(51, 51, 51));
  EXPECT_EQ(Values<Byte>(kRgb, 0.3, 0.2, 1.2e-7), Low(50, 51, 50));
}

// On every instruction set to the last bit what single colours give.
TEST(ColorSpace, HlsOfRuns) {
  const Bytes pixels = TiedPicture(HlsRun::kPixels, 1000).bytes;
  OnEveryMachine([&] {
    HlsRun run;
    int differences = 0;
    for (std::size_t at = 0; at < pixels.size(); at += 4 * HlsRun::kPixels) {
      RgbToHls(&pixels[at], run);
      Byte result[4 * HlsRun::kPixels], expected[4 * HlsRun::kPixels];
      std::copy_n(&pixels[at], sizeof(result), result);
      std::copy_n(&pixels[at], sizeof(result), expected);
      for (int i = 0; i < HlsRun::kPixels; ++i) {
        Byte* const c = expected + 4 * i;
        const Doubles hls = Values<double>(Space::RGBtoHLS, c[2], c[1], c[0]);
        differences += hls != Doubles{run.hue[i], run.lightness[i], run.saturation[i]};
        run.hue[i] += (i % 9 - 4) / 12.0;
        run.lightness[i] += (i % 5 - 2) / 4.0;
        if (i % 7 == 0) run.saturation[i] = 1.1e-7;
        Space::HLStoRGB(run.hue[i], run.lightness[i], run.saturation[i], c[2], c[1], c[0]);
      }
      HlsToRgb(run, result);
      differences += !std::equal(result, std::end(result), expected);
    }
    EXPECT_EQ(differences, 0);
  });
}

Doubles Hsv(int R, int G, int B) {
  const double r = R / 255.0, g = G / 255.0, b = B / 255.0;
  const double v = std::max({r, g, b}), d = v - std::min({r, g, b}), s = v == 0 ? 0 : d / v;
  if (s == 0) return {0, 0, v};
  const double h = (r == v ? (g - b) / d : g == v ? (b - r) / d + 2 : (r - g) / d + 4) / 6.0;
  return {h < 0 ? h + 1 : h > 1 ? h - 1 : h, s, v};
}

Rgb RgbOfHsv(double H, double S, double V) {
  const double h = H * 6 == 6 ? 0 : H * 6, f = h - int(h);
  const double p = (1 - S) * V, q = (1 - f * S) * V, t = (1 - (1 - f) * S) * V;
  const Doubles sixths[] = {{V, t, p}, {q, V, p}, {p, V, t}, {p, q, V}, {t, p, V}, {V, p, q}};
  const Doubles c = S == 0 ? Doubles{V, V, V} : sixths[int(h)];
  return Low(int(c[0] * 255.0 + 0.5), int(c[1] * 255.0 + 0.5), int(c[2] * 255.0 + 0.5));
}

TEST(ColorSpace, Hsv) {
  Same<double>(Space::RGBtoHSV, Hsv);
  SameOnUnits(Space::HSVtoRGB, RgbOfHsv);
}

TEST(ColorSpace, LinearModels) {
  Same<Byte>(Space::RGBtoXYZ, [](int R, int G, int B) {
    return Low(int(R * 0.412453f + G * 0.35758f + B * 0.180423f),
               int(G * 0.71516f + R * 0.212671f + B * 0.072169f),
               int((R * 0.019334f + G * 0.119193f + B * 0.950227f) * 0.9184837f));
  });
  Same<Byte>(Space::XYZtoRGB, [](int X, int Y, int Z) {
    return Clamped((X * 3.240479f - Y * 1.53715f) - (Z * 0.498535f) * 1.088751,
                   (Y * 1.875992f - X * 0.969256f) + (Z * 0.041556f) * 1.088751,
                   (X * 0.055648f - Y * 0.204043f) + (Z * 1.057311f) * 1.088751);
  });
  Same<Byte>(Space::RGBtoYIQ, [](int R, int G, int B) {
    return Clamped(R * 0.2992f + G * 0.5868f + B * 0.114f,
                   R * 0.596f - G * 0.2742f - B * 0.3219f + 128,
                   R * 0.2109f - G * 0.5229f + B * 0.312f + 128);
  });
  Same<Byte>(Space::YIQtoRGB, [](int Y, int I, int Q) {
    I -= 128, Q -= 128;
    return Clamped(I * 0.956f + Y + Q * 0.621f, Y - I * 0.273f - Q * 0.647f,
                   Y - I * 1.104f + Q * 1.701f);
  });
  Same<Byte>(Space::RGBtoYUV, [](int R, int G, int B) {
    const int Y = int(R * 0.299f + G * 0.587f + B * 0.114f);
    return Clamped(Y, (B - Y) * 0.565f + 128, (R - Y) * 0.713f + 128);
  });
  Same<Byte>(Space::YUVtoRGB, [](int Y, int U, int V) {
    U -= 128, V -= 128;
    return Clamped(V * 1.403f + Y, Y - U * 0.344f - V * 0.714f, U * 1.77f + Y);
  });
  EXPECT_EQ(Values<Byte>(Space::RGBtoXYZ, Byte(255), Byte(255), Byte(255))[2], 255);
}

}  // namespace
}  // namespace tintwerk::test

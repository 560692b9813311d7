// Both families of single-pixel blends against plain twins.
#include "pixel/blend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <type_traits>

#include "tintwerk/color_space.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

using Byte = unsigned char;
using Pixel = std::array<Byte, 4>;
using Rgb = std::array<int, 3>;  // red, green, blue

constexpr double kOpacities[] = {0, 0.24, 1 / 3.0, 0.6, 1, -0.7, 1.9, 300};

Byte Low(int value) {
  return static_cast<Byte>(value);
}

// Runs an operation on every pair of bytes in every channel, at opacities that reach beyond 0..1,
// and compares with its twin(a, b, opacity, alpha of the source), of which the low byte counts.
template <class Run, class Twin>
void EveryPair(Run run, Twin twin, int line) {
  for (double p : kOpacities)
    for (int i = 0; i < 65536; ++i) {
      const int a = i & 255, b = i >> 8;
      const Pixel before = {Low(a), Low(b), Low(255 - a), Low(a + b)};
      const Pixel source = {Low(b), Low(255 - a), Low(a ^ b), Low(37 * a + 101 * b + int(64 * p))};
      Pixel pixel = before, expected = before;
      for (int c = 0; c < 3; ++c) expected[c] = Low(twin(before[c], source[c], p, source[3]));
      run(pixel.data(), source.data(), p);
      if (pixel != expected) {
        FAIL() << "operation of line " << line << " at opacity " << p << ": "
               << testing::PrintToString(before) << " with " << testing::PrintToString(source)
               << " gives " << testing::PrintToString(pixel);
      }
    }
}

// Operations without an opacity, or with the source's alpha as one, and with an argument.
using Operation = void(Byte*, const Byte*);
template <class Twin>
void Plain(Operation* run, Twin twin, int line = __builtin_LINE()) {
  EveryPair([=](Byte* base, const Byte* source, double) { run(base, source); },
            [=](int a, int b, double, int alpha) {
              if constexpr (std::is_invocable_v<Twin, int, int>)
                return twin(a, b);
              else
                return twin(a, b, alpha);
            },
            line);
}
template <class Number, class Twin>
void ByOpacity(void (*run)(Byte*, const Byte*, Number), Twin twin, int line = __builtin_LINE()) {
  EveryPair([=](Byte* base, const Byte* source, double p) { run(base, source, Number(p)); },
            [=](int a, int b, double p, int) { return twin(a, b, Number(p)); }, line);
}

template <int mode>
void Mode(Byte* base, const Byte* source) {
  BlendPixel(base, source, mode);
}
// What an operation makes of a pixel of bytes a and one of bytes b.
int Of(Operation* run, int a, int b, int alpha = 9) {
  Pixel base = {Low(a), Low(a), Low(a), 7};
  const Pixel source = {Low(b), Low(b), Low(b), Low(alpha)};
  run(base.data(), source.data());
  EXPECT_TRUE(base[0] == base[1] && base[1] == base[2] && base[3] == 7);
  return base[0];
}

int MixRounded(int a, int b, float p) {
  return int(b * p + a * (1 - p) + 0.5f);
}
int Overlay(int a, int b) {
  const float o = a >= 128 ? 255.0f - ((255 - b) * (255 - a)) / 127.5f : (a * b) / 127.5f;
  return int(o + 0.5f);
}
int PinLight(int a, int b) {
  return a < 2 * b - 255 ? 2 * b - 255 : a > 2 * b ? 2 * b : a;
}
int SoftLightOfInts(int a, int b) {
  const int m = a * b / 255, s = (255 - b) * (255 - a) / 255;
  return m + (255 - s - m) * a / 255;
}
double SoftLightOfDoubles(int a, int b) {
  const double m = (a * b) / 255.0;
  return (255.0 - ((255 - b) * (255 - a)) / 255.0 - m) * a / 255.0 + m;
}

TEST(BlendPixel, EveryModeOnEveryPair) {
  Plain(Mode<1>, [](int a, int b) { return int(float(a + b) - (a * b) / 255.0f + 0.5f); });
  Plain(Mode<2>, [](int a, int b) {
    const float m = (a * b) / 255.0f;
    const float t = (255.0f - ((255 - b) * (255 - a)) / 255.0f - m) * a / 255.0f;
    return int(t + m + 0.5f);
  });
  Plain(Mode<3>, [](int a, int b) { return int((a * b) / 255.0f + 0.5f); });
  Plain(Mode<4>, [](int a, int b, int alpha) { return MixRounded(a, b, alpha * 0.0039215f); });
  Plain(Mode<5>, Overlay);
  Plain(Mode<6>, [](int a, int b) {
    return b == 0 ? 0 : int(std::max(0.0f, 255.0f - (255 - a) * 255.0f / b));
  });
  Plain(Mode<7>, [](int a, int b) {
    return a == 255 ? 255 : int(std::min(255.0f, b * 255.0f / (255 - a)));
  });
  Plain(Mode<8>, [](int a, int b) { return int(float(a + b) - (a * b) / 127.5f + 0.5f); });
  Plain(Mode<9>, [](int a, int b) { return std::min(a, b); });
  Plain(Mode<10>, [](int a, int b) { return std::max(a, b); });
  Plain(Mode<11>, PinLight);
  Plain(Mode<12>, [](int a, int b) { return std::max(0, a + b - 255); });
  Plain(Mode<13>, [](int a, int b) { return std::min(255, a + b); });
  Plain(Mode<14>, [](int a, int b) {
    return b >= 128 ? std::min(255, a + 2 * b - 256) : std::max(0, a + 2 * b - 255);
  });
  Plain(Mode<15>, [](int a, int b) {
    if (b >= 128) return int(std::min(255.0f, a * 255.0f / (511 - 2 * b)));
    return b == 0 ? 0 : int(std::max(0.0f, 255.0f - (255 - a) * 255.0f / (2 * b)));
  });
  Plain(Mode<16>, Overlay);
  for (Operation* other : {Mode<-1>, Mode<0>, Mode<17>}) Plain(other, [](int a, int) { return a; });
}

TEST(BlendUnnumbered, SoftLightsAndAlphaOverOnEveryPair) {
  Plain(BlendAlphaOver, [](int a, int b, int alpha) { return MixRounded(a, b, alpha / 255.0f); });
  Plain(BlendSoftLightTrunc, [](int a, int b) { return int(SoftLightOfDoubles(a, b)); });
  ByOpacity(BlendSoftLightOpacity,
            [](int a, int b, float p) { return int(SoftLightOfInts(a, b) * p + a * (1 - p)); });
}

TEST(BlendEx, EveryOperationOnEveryPair) {
  constexpr double k = 0.0039215;
  Plain(SFDSP::ColorBurnEx,
        [](int a, int b) { return b == 0 ? 0 : std::max((a - 255) * 255 / b + 255, 0); });
  Plain(SFDSP::ColorDodgeEx,
        [](int a, int b) { return b == 255 ? 255 : std::min(255, a * 256 / (255 - b)); });
  const auto softLight = [](int a, int b) {
    return int(((b + 255) - ((255 - b) * (255 - a) + a * b) * k) * a * k);
  };
  Plain(SFDSP::CompositeColorEx, softLight);
  Plain(SFDSP::ImageSoftLightEx, softLight);
  ByOpacity<double>(SFDSP::CompositeColorEx, [](int a, int b, double p) {
    return int(SoftLightOfDoubles(Low(int(a * p)), b));
  });
  Plain(SFDSP::ExclusionEx, [](int a, int b) { return a - ((a * b) >> 7) + b; });
  Plain(SFDSP::ImageDarkenEx, [](int a, int b) { return std::min(a, b); });
  Plain(SFDSP::ImageLightenEx, [](int a, int b) { return std::max(a, b); });
  Plain(SFDSP::MultipleEx, [](int a, int b) { return int(a * b * k); });
  ByOpacity<double>(SFDSP::MultipleEx,
                    [](int a, int b, double p) { return int(b * p * a * k + (1 - p) * a); });
  ByOpacity<double>(SFDSP::NormalEx,
                    [](int a, int b, double p) { return int(a * (1 - p) + b * p); });
  ByOpacity<double>(SFDSP::OverlayEx, [](int a, int b, double p) {
    const int v = a > 127 ? std::clamp(255 + (a - 255) * (255 - b) * 2 / 255, 0, 255)
                          : std::min(2 * a * b / 255, 255);
    return int(v * p + a * (1 - p));
  });
  Plain(SFDSP::PinLightEx, PinLight);
  ByOpacity<float>(SFDSP::PinLightEx, [](int a, int b, float p) {
    return PinLight(a, b) == a ? a : int(PinLight(a, b) * p + a * (1 - p));
  });
  Plain(SFDSP::ScreenEx, [](int a, int b) { return std::clamp(b - ((a * b) >> 8) + a, 0, 255); });
  Plain(SFDSP::SoftLightEx, SoftLightOfInts);
  ByOpacity<double>(SFDSP::SoftLightEx, [](int a, int b, double p) {
    const double m = a * b * k;
    const double v = (255.0 - (255 - b) * (255 - a) * k - m) * a * k + m;
    return int(v * p + a * (1 - p));
  });
}

TEST(Blends, KnownValues) {
  EXPECT_EQ(Of(Mode<BlendModeMultiply>, 255, 255), 255);
  EXPECT_EQ(Of(SFDSP::MultipleEx, 255, 255), 254);
  EXPECT_EQ(Of(Mode<BlendModeScreen>, 16, 15), 30);
  EXPECT_EQ(Of(SFDSP::ScreenEx, 16, 15), 31);
  EXPECT_EQ(Of(SFDSP::ScreenEx, 255, 255), 255);
  EXPECT_EQ(Of(Mode<BlendModeColorDodge>, 254, 1), 255);
  EXPECT_EQ(Of(Mode<BlendModeColorBurn>, 255, 0), 0);
  for (auto [a, b, light] : {Rgb{0, 128, 0}, {255, 0, 0}, {255, 255, 255}})
    EXPECT_EQ(Of(Mode<BlendModeLinearLight>, a, b), light);
  for (int b = 0; b < 256; ++b) {
    EXPECT_EQ(Of(Mode<BlendModeColorDodge>, 255, b), 255);
    EXPECT_EQ(Of(Mode<BlendModeColorDodge>, 0, b), b);
    EXPECT_EQ(Of(Mode<BlendModePinLight>, b, 128), b == 0 ? 1 : b);
    EXPECT_EQ(Of(Mode<BlendModeNormal>, b, 255 - b, 255), 255 - b);
    EXPECT_EQ(Of(Mode<BlendModeNormal>, b, 255 - b, 0), b);
    EXPECT_EQ(Of(BlendLumaColor, 99, b), 99);
  }
}

// Random pixels, in which channels often tie or stand at an end, against a twin that works on
// (base, source) as red, green, blue.
template <class Run, class Twin>
void RandomPixels(Run run, Twin twin) {
  std::mt19937 random(3);
  const auto pixel = [&] {
    Pixel p{};
    for (int c = 0; c < 4; ++c) {
      const unsigned r = random();
      p[c] = r >> 30 == 0 && c > 0 ? p[r % c] : Low(r >> 30 == 1 ? -int(r & 1) : r >> 8);
    }
    return p;
  };
  for (int i = 0; i < 100000; ++i) {
    const Pixel before = pixel(), source = pixel();
    Pixel result = before;
    run(result.data(), source.data());
    const Rgb rgb =
        twin(Rgb{before[2], before[1], before[0]}, Rgb{source[2], source[1], source[0]});
    const Pixel expected = {Byte(rgb[2]), Byte(rgb[1]), Byte(rgb[0]), before[3]};
    ASSERT_EQ(result, expected) << testing::PrintToString(before) << " with "
                                << testing::PrintToString(source);
  }
}

// Hue and saturation of the source at the base's brightness.
Rgb Coloured(const Rgb& base, const Rgb& source) {
  float h, s, b;
  CColorSpace::RGBtoHSB(source[0], source[1], source[2], h, s, b);
  b = *std::max_element(base.begin(), base.end()) / 255.0f;
  Byte red, green, blue;
  CColorSpace::HSBtoRGB(h, s, b, red, green, blue);
  return {red, green, blue};
}

TEST(BlendColor, HueAndSaturationOfTheSource) {
  for (double p : kOpacities) {
    const auto mixed = [=](auto mix) {
      return [=](const Rgb& base, const Rgb& source) {
        Rgb c = Coloured(base, source);
        for (int i = 0; i < 3; ++i) c[i] = mix(base[i], c[i]);
        return c;
      };
    };
    RandomPixels([=](Byte* base, const Byte* source) { BlendColorHSB(base, source, float(p)); },
                 mixed([=](int a, int c) { return MixRounded(a, c, float(p)); }));
    RandomPixels([=](Byte* base, const Byte* source) { SFDSP::ColorHSBEx(base, source, p); },
                 mixed([=](int a, int c) { return int(a * (1 - p) + c * p); }));
  }
  RandomPixels(BlendHueSatHSL, [](const Rgb& base, const Rgb& source) {
    Byte h, s, l, unused;
    CColorSpace::RGBtoHSL(Byte(base[0]), Byte(base[1]), Byte(base[2]), unused, unused, l);
    CColorSpace::RGBtoHSL(Byte(source[0]), Byte(source[1]), Byte(source[2]), h, s, unused);
    Byte red, green, blue;
    CColorSpace::HSLtoRGB(h, s, l, red, green, blue);
    return Rgb{red, green, blue};
  });
}

TEST(BlendColor, FixedTint) {
  for (double opacity : kOpacities) {
    const float p = float(opacity);
    RandomPixels([=](Byte* base, const Byte*) { BlendFixedTint(base, nullptr, p); },
                 [=](const Rgb& base, const Rgb&) {
                   const auto [min, max] = std::minmax({base[0], base[1], base[2]});
                   const double l = (min / 255.0 + max / 255.0) * 0.5;
                   const double high = l <= 0.5 ? l * 1.897959 : l + 0.897959 - l * 0.897959;
                   const double low = l + l - high;
                   // The hue is such that red is the largest channel and blue the smallest.
                   const double c[] = {high, low + (high - low) * 0.098484 * 6, low};
                   Rgb out;
                   for (int i = 0; i < 3; ++i)
                     out[i] = int(c[i] * 255.0 * p + double(base[i] * (1 - p)) + 0.5);
                   return out;
                 });
  }
}

TEST(BlendColor, LumaColor) {
  constexpr int kWeight[] = {30, 59, 11};
  RandomPixels(BlendLumaColor, [&](const Rgb& base, const Rgb& source) {
    const int luma = 30 * base[0] + 59 * base[1] + 11 * base[2];
    int order[] = {0, 1, 2};  // ties do not matter
    std::sort(order, order + 3, [&](int i, int j) { return source[i] < source[j]; });
    const int min = order[0], mid = order[1], max = order[2];
    const int c = source[max] - source[min], d = source[mid] - source[min];
    Rgb out{};
    const auto set = [&](int high, int middle, int low) {
      out[max] = high, out[mid] = middle, out[min] = low;
      return out;
    };
    if (c == 0) return set((luma + 50) / 100, (luma + 50) / 100, (luma + 50) / 100);
    const int t = kWeight[max] * c + kWeight[mid] * d, e = luma - t, m = (e + 50) / 100;
    if (e < 0) {
      const int top = ((d - c) * kWeight[mid] + (luma - kWeight[min]) * c + (t >> 1)) / t;
      return top > 0 ? set(top, ((top - 1) * d + (c >> 1)) / c + 1, 1) : out;
    }
    if (m + c < 256) return set(m + c, m + d, m);
    const int z = kWeight[min] * c + kWeight[mid] * (c - d);
    const int low = (c * luma - t * 255 + (z >> 1)) / z;
    return low > 0 ? set(255, (d * 255 + (c - d) * low + (c >> 1)) / c, low) : out;
  });
}

TEST(BlendColor, SetGrayScaleEx) {
  RandomPixels([](Byte* base, const Byte*) { SFDSP::SetGrayScaleEx(base); },
               [](const Rgb& base, const Rgb&) {
                 const Byte pixel[] = {Byte(base[2]), Byte(base[1]), Byte(base[0]), 1};
                 const int luma = (base[0] * 306 + base[1] * 601 + base[2] * 117) >> 10;
                 EXPECT_EQ(SFDSP::SetGrayScaleEx_Faster(pixel), luma);
                 return Rgb{luma, luma, luma};
               });
}

}  // namespace
}  // namespace tintwerk

// Both families of single-pixel blends against plain twins.
#include "pixel/blend.h"

#include "support/operations.h"
#include "tintwerk/color_space.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using Pixel = std::array<Byte, 4>;
using Rgb = std::array<int, 3>;  // red, green, blue

constexpr double kOpacities[] = {0, 0.24, 1 / 3.0, 0.6, 1, -0.7, 1.9, 300};

// Runs an operation on every pair of bytes in every channel, with opacities that reach beyond 0..1
// if it has one, and compares with the low byte of twin(a, b, opacity, alpha of the source).
template <class... Number, class Twin>
void EveryPair(const char* name, void (*run)(Byte*, const Byte*, Number...), Twin twin) {
  for (double p : kOpacities)
    for (int i = 0; i < 65536; ++i) {
      const int a = i & 255, b = i >> 8, alpha = (37 * a + 101 * b + int(64 * p)) & 255;
      const Pixel before = {Byte(a), Byte(b), Byte(255 - a), Byte(a + b)};
      const Pixel source = {Byte(b), Byte(255 - a), Byte(a ^ b), Byte(alpha)};
      Pixel pixel = before, expected = before;
      const std::tuple opacity(Number(p)..., 0);
      for (int c = 0; c < 3; ++c)
        expected[c] = Byte(int(twin(before[c], source[c], std::get<0>(opacity), alpha)));
      run(pixel.data(), source.data(), Number(p)...);
      ASSERT_EQ(pixel, expected) << name << " of " << testing::PrintToString(before) << " and "
                                 << testing::PrintToString(source) << " at opacity " << p;
    }
}
// The value of each channel by its bytes a and b, the opacity p in the operation's precision, and
// the source's alpha.
#define EXPECT_BLEND(run, value, ...)                                             \
  EveryPair<__VA_ARGS__>(                                                         \
      #run, run,                                                                  \
      []([[maybe_unused]] int a, [[maybe_unused]] int b, [[maybe_unused]] auto p, \
         [[maybe_unused]] int alpha) { return value; })

template <int mode>
void Mode(Byte* base, const Byte* source) {
  BlendPixel(base, source, mode);
}

constexpr double k = 0.0039215;  // stands in for 1/255 in one family

int MixRounded(int a, int b, float p) {
  return int(b * p + a * (1 - p) + 0.5f);
}
template <class Number>  // truncated, in the opacity's precision
int Mix(int a, double b, Number p) {
  return int(Number(b) * p + a * (1 - p));
}
int Overlay(int a, int b) {
  const float o = a >= 128 ? 255.0f - ((255 - b) * (255 - a)) / 127.5f : (a * b) / 127.5f;
  return int(o + 0.5f);
}
int PinLight(int a, int b) {
  return a < 2 * b - 255 ? 2 * b - 255 : a > 2 * b ? 2 * b : a;
}
int Burn(int a, int b) {
  return b == 0 ? 0 : int(std::max(0.0f, 255.0f - (255 - a) * 255.0f / b));
}
template <class Number>
auto SoftLight(int a, int b) {
  const Number m = (a * b) / Number(255), s = ((255 - b) * (255 - a)) / Number(255);
  return (255 - s - m) * a / 255 + m;
}

TEST(BlendPixel, EveryModeOnEveryPair) {
  EXPECT_BLEND(Mode<1>, float(a + b) - (a * b) / 255.0f + 0.5f);
  EXPECT_BLEND(Mode<2>, SoftLight<float>(a, b) + 0.5f);
  EXPECT_BLEND(Mode<3>, (a * b) / 255.0f + 0.5f);
  EXPECT_BLEND(Mode<4>, MixRounded(a, b, alpha * 0.0039215f));
  EXPECT_BLEND(Mode<5>, Overlay(a, b));
  EXPECT_BLEND(Mode<6>, Burn(a, b));
  EXPECT_BLEND(Mode<7>, a == 255 ? 255 : std::min(255.0f, b * 255.0f / (255 - a)));
  EXPECT_BLEND(Mode<8>, float(a + b) - (a * b) / 127.5f + 0.5f);
  EXPECT_BLEND(Mode<9>, std::min(a, b));
  EXPECT_BLEND(Mode<10>, std::max(a, b));
  EXPECT_BLEND(Mode<11>, PinLight(a, b));
  EXPECT_BLEND(Mode<12>, std::max(0, a + b - 255));
  EXPECT_BLEND(Mode<13>, std::min(255, a + b));
  EXPECT_BLEND(Mode<14>, b >= 128 ? std::min(255, a + 2 * b - 256) : std::max(0, a + 2 * b - 255));
  EXPECT_BLEND(Mode<15>, b < 128 ? Burn(a, 2 * b) : std::min(255.0f, a * 255.0f / (511 - 2 * b)));
  EXPECT_BLEND(Mode<16>, Overlay(a, b));
  for (auto* other : {Mode<-1>, Mode<0>, Mode<17>}) EXPECT_BLEND(other, a);
}

TEST(BlendUnnumbered, SoftLightsAndAlphaOverOnEveryPair) {
  EXPECT_BLEND(BlendAlphaOver, MixRounded(a, b, alpha / 255.0f));
  EXPECT_BLEND(BlendSoftLightTrunc, SoftLight<double>(a, b));
  EXPECT_BLEND(BlendSoftLightOpacity, Mix(a, SoftLight<int>(a, b), p));
}

TEST(BlendEx, EveryOperationOnEveryPair) {
  EXPECT_BLEND(SFDSP::ColorBurnEx, b == 0 ? 0 : std::max((a - 255) * 255 / b + 255, 0));
  EXPECT_BLEND(SFDSP::ColorDodgeEx, b == 255 ? 255 : std::min(255, a * 256 / (255 - b)));
  EXPECT_BLEND(SFDSP::CompositeColorEx, ((b + 255) - ((255 - b) * (255 - a) + a * b) * k) * a * k);
  EXPECT_BLEND(SFDSP::ImageSoftLightEx, ((b + 255) - ((255 - b) * (255 - a) + a * b) * k) * a * k);
  EXPECT_BLEND(SFDSP::CompositeColorEx, SoftLight<double>(Byte(int(a * p)), b), double);
  EXPECT_BLEND(SFDSP::ExclusionEx, a - ((a * b) >> 7) + b);
  EXPECT_BLEND(SFDSP::ImageDarkenEx, std::min(a, b));
  EXPECT_BLEND(SFDSP::ImageLightenEx, std::max(a, b));
  EXPECT_BLEND(SFDSP::MultipleEx, a * b * k);
  EXPECT_BLEND(SFDSP::MultipleEx, b * p * a * k + (1 - p) * a, double);
  EXPECT_BLEND(SFDSP::NormalEx, a * (1 - p) + b * p);
  EXPECT_BLEND(SFDSP::OverlayEx,
               Mix(a,
                   a > 127 ? std::clamp(255 + (a - 255) * (255 - b) * 2 / 255, 0, 255)
                           : std::min(2 * a * b / 255, 255),
                   p));
  EXPECT_BLEND(SFDSP::PinLightEx, PinLight(a, b));
  EXPECT_BLEND(SFDSP::PinLightEx, PinLight(a, b) == a ? a : Mix(a, PinLight(a, b), p), float);
  EXPECT_BLEND(SFDSP::ScreenEx, std::clamp(b - ((a * b) >> 8) + a, 0, 255));
  EXPECT_BLEND(SFDSP::SoftLightEx, SoftLight<int>(a, b));
  EXPECT_BLEND(SFDSP::SoftLightEx,
               Mix(a, (255.0 - (255 - b) * (255 - a) * k - a * b * k) * a * k + a * b * k, p),
               double);
}

TEST(Blends, KnownValues) {
  struct Known {
    void (*run)(Byte*, const Byte*);
    int a, b, result;
  };
  for (const Known& known : {Known{Mode<BlendModeMultiply>, 255, 255, 255},
                             {SFDSP::MultipleEx, 255, 255, 254},
                             {Mode<BlendModeScreen>, 16, 15, 30},
                             {SFDSP::ScreenEx, 16, 15, 31},
                             {SFDSP::ScreenEx, 255, 255, 255},
                             {Mode<BlendModeColorDodge>, 254, 1, 255},
                             {Mode<BlendModeColorBurn>, 255, 0, 0},
                             {Mode<BlendModeLinearLight>, 0, 128, 0},
                             {Mode<BlendModeLinearLight>, 255, 0, 0},
                             {Mode<BlendModeLinearLight>, 255, 255, 255}}) {
    Byte base[] = {7, Byte(known.a), 7, 9};
    const Byte source[] = {7, Byte(known.b), 7, 9};
    known.run(base, source);
    EXPECT_EQ(base[1], known.result) << known.a << ", " << known.b;
  }
}

// Compares with a twin that works on (base, source) as red, green, blue.
template <class Run, class Twin>
void RandomPixels(Run run, Twin twin) {
  const Picture bases = TiedPicture(500, 200, 1), sources = TiedPicture(500, 200, 2);
  for (std::size_t i = 0; i < bases.bytes.size(); i += 4) {
    Pixel before, source;
    std::copy_n(&bases.bytes[i], 4, before.begin());
    std::copy_n(&sources.bytes[i], 4, source.begin());
    Pixel result = before;
    run(result.data(), source.data());
    const auto [r, g, b] =
        twin(Rgb{before[2], before[1], before[0]}, Rgb{source[2], source[1], source[0]});
    ASSERT_EQ(result, (Pixel{Byte(b), Byte(g), Byte(r), before[3]}))
        << testing::PrintToString(before) << " with " << testing::PrintToString(source);
  }
}

TEST(BlendColor, HueAndSaturationOfTheSource) {
  for (double p : kOpacities) {
    const float opacity = float(p);
    // Hue and saturation of the source at the base's brightness.
    const auto mixed = [=](auto mix) {
      return [=](const Rgb& base, const Rgb& source) {
        const auto hsb = Values<float>(CColorSpace::RGBtoHSB, source[0], source[1], source[2]);
        const float brightness = std::max({base[0], base[1], base[2]}) / 255.0f;
        const auto c = Values<Byte>(CColorSpace::HSBtoRGB, hsb[0], hsb[1], brightness);
        return Rgb{mix(base[0], c[0]), mix(base[1], c[1]), mix(base[2], c[2])};
      };
    };
    RandomPixels([=](Byte* base, const Byte* source) { BlendColorHSB(base, source, 1, opacity); },
                 mixed([=](int a, int c) { return MixRounded(a, c, opacity); }));
    RandomPixels([=](Byte* base, const Byte* source) { SFDSP::ColorHSBEx(base, source, p); },
                 mixed([=](int a, int c) { return int(a * (1 - p) + c * p); }));
  }
  RandomPixels([](Byte* base, const Byte* source) { BlendHueSatHSL(base, source, 1); },
               [](const Rgb& base, const Rgb& source) {
                 const auto hsl = [](const Rgb& c) {
                   return Values<Byte>(CColorSpace::RGBtoHSL, Byte(c[0]), Byte(c[1]), Byte(c[2]));
                 };
                 const auto [h, s, unused] = hsl(source);
                 const auto c = Values<Byte>(CColorSpace::HSLtoRGB, h, s, hsl(base)[2]);
                 return Rgb{c[0], c[1], c[2]};
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
}  // namespace tintwerk::test

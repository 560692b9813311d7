// Point adjustments and automatic tone against pixel-by-pixel twins.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>
#include <vector>

#include "pixel/progress_recorder.h"
#include "support/image_files.h"
#include "tintwerk/color_space.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace {

using tintwerk::test::Bytes;
using tintwerk::test::Picture;
using tintwerk::test::RandomPicture;
using P = CPixelProcess;

using Rgb = std::tuple<int, int, int>;
struct Case {
  const char* name;
  std::function<void(unsigned char*, int, int)> run;
  std::function<Rgb(int, int, int)> twin;
};

int Clamp(double v) {
  return v < 0 ? 0 : v > 255 ? 255 : int(v);
}

std::function<Rgb(int, int, int)> Each(std::function<int(int)> f) {
  return [=](int r, int g, int b) { return Rgb(f(r), f(g), f(b)); };
}

// Saturation in doubles; a positive amount counts triple.
Rgb SlowSaturate(int r, int g, int b, int amount) {
  const double s = (amount > 0 ? amount * 3 : amount) * 0.01 + 1.0, t = 1.0 - s;
  const double common = r * t * 0.30859375 + g * t * 0.609375 + b * t * 0.08203125;
  return {Clamp(r * s + common), Clamp(g * s + common), Clamp(b * s + common)};
}

Rgb Balance(int region, bool keep, int ar, int ag, int ab, int r, int g, int b) {
  auto entry = [&](int a, int i, bool red) {
    if (region == 2) {
      const double w = 1.075 - 1.0 / (i * 0.0625 + 1.0);
      return red ? Clamp(a * w + i) : Clamp(int(a * w) + i);
    }
    const double q = (i - 127.0) / 127.0;
    return Clamp(int(a * ((1.0 - q * q) * 0.667)) + i);
  };
  const int tr = entry(ar, r, true), tg = entry(ag, g, false), tb = entry(ab, b, false);
  if (!keep) return {tr, tg, tb};
  double h, l, s;
  CColorSpace::RGBtoHLS(static_cast<unsigned char>(tr), static_cast<unsigned char>(tg),
                        static_cast<unsigned char>(tb), h, l, s);
  unsigned char R, G, B;
  CColorSpace::HLStoRGB(h, (std::min({r, g, b}) + std::max({r, g, b})) * 0.0019601, s, R, G, B);
  return {R, G, B};
}

using Bytewise = int (*)(unsigned char, unsigned char, unsigned char, unsigned char&,
                         unsigned char&, unsigned char&);
Rgb Convert(Bytewise convert, int r, int g, int b) {
  unsigned char x, y, z;
  convert(static_cast<unsigned char>(r), static_cast<unsigned char>(g),
          static_cast<unsigned char>(b), x, y, z);
  return {x, y, z};
}

std::vector<Case> Cases() {
  std::vector<Case> cases;
  auto add = [&](const char* name, auto run, auto twin) { cases.push_back({name, run, twin}); };
  for (int v : {-5, 0, 60, 100, 130, 200, 999}) {
    const int b = std::clamp(v, 0, 200) - 100;
    add(
        "PixelBrightness",
        [=](auto* p, int w, int h) { P::PixelBrightness(p, w, h, v, nullptr, 0, 100); },
        Each([=](int i) { return i + (b > 0 ? (255 - i) * b / 200 : i * b / 200); }));
  }
  for (auto [brightness, contrast] :
       {std::pair{0, 0}, {40, -30}, {-70, 90}, {3, -100}, {0, -250}}) {
    const int bright = brightness, hard = contrast;
    auto twin = Each([=](int i) {
      const float factor = float(hard + 100) / 100.0f;
      return Clamp(float(i - 128) * factor + float(bright + 128) + 0.5f);
    });
    add(
        "Light", [=](auto* p, int w, int h) { P::Light(p, w, h, bright, hard, nullptr, 0, 100); },
        twin);
    add(
        "SFDSP::Light", [=](auto* p, int w, int h) { SFDSP::Light(p, w, h, bright, hard); }, twin);
  }
  for (float exposure : {-1.0f, 0.0f, 0.7f, 2.5f})
    add(
        "ExposureFilter",
        [=](auto* p, int w, int h) { P::ExposureFilter(p, w, h, exposure, nullptr, 0, 100); },
        Each([=](int i) {
          const float x = float(i) / 255.0f * exposure;
          return Clamp((1.0f - float(std::exp(double(-x)))) * 255.0f);
        }));
  for (int amount : {-100, -40, 0, 30, 100}) {
    add(
        "Saturateconst_Faster",
        [=](auto* p, int w, int h) { P::Saturateconst_Faster(p, w, h, amount); },
        [=](int r, int g, int b) { return SlowSaturate(r, g, b, amount); });
    add(
        "Saturateconst_Faster in a rectangle that is all",
        [=](auto* p, int w, int h) { SFDSP::Saturateconst_Faster(p, w, 0, 0, w, h, amount); },
        [=](int r, int g, int b) { return SlowSaturate(r, g, b, amount); });
    add(
        "SFDSP::Saturateconst_Faster",
        [=](auto* p, int w, int h) { SFDSP::Saturateconst_Faster(p, w, h, amount); },
        [=](int r, int g, int b) {
          const float s = float(amount) * 0.01f + 1.0f, t = 1.0f - s;
          const int common = b * int(t * 21.0f) + r * int(t * 79.0f) + g * int(t * 156.0f);
          auto channel = [&](int c) {
            const int sum = c * int(s * 256.0f) + common;
            return sum < 256 ? 0 : std::min(sum >> 8, 255);
          };
          return Rgb(channel(r), channel(g), channel(b));
        });
    add(
        "Saturateconst 1",
        [=](auto* p, int w, int h) { P::Saturateconst(p, w, h, amount, 1, nullptr, 0, 100); },
        [=](int r, int g, int b) {
          auto [h, s, l] = Convert(CColorSpace::RGBtoHSL, r, g, b);
          return Convert(CColorSpace::HSLtoRGB, h, std::clamp(s + amount, 0, 255), l);
        });
    add(
        "Saturateconst 2",
        [=](auto* p, int w, int h) { P::Saturateconst(p, w, h, amount, 2, nullptr, 0, 100); },
        [=](int r, int g, int b) {
          auto [y, u, v] = Convert(CColorSpace::RGBtoYUV, r, g, b);
          auto chroma = [=](int i) {
            return Clamp(float((i - 128) * (amount + 100)) / 100.0f + 128.5f);
          };
          return Convert(CColorSpace::YUVtoRGB, y, chroma(u), chroma(v));
        });
  }
  for (int hue : {-300, -20, 77, 128}) {
    add(
        "SetHSL",
        [=](auto* p, int w, int h) { P().SetHSL(p, w, h, hue, 90, -40, nullptr, 0, 100); },
        [=](int r, int g, int b) {
          auto [h, s, l] = Convert(CColorSpace::RGBtoHSL, r, g, b);
          return Convert(CColorSpace::HSLtoRGB, (h + std::clamp(hue, -128, 128)) & 255,
                         (s + 90) & 255, (l - 40) & 255);
        });
    add(
        "HueSaturationBright",
        [=](auto* p, int w, int h) { SFDSP::HueSaturationBright(p, w, h, hue, 20, -10); },
        [=](int r, int g, int b) {
          float h, s, v;
          CColorSpace::RGBtoHSB(r, g, b, h, s, v);
          unsigned char R, G, B;
          SFDSP::HSBtoRGB(std::clamp(h + float(hue), 0.0f, 360.0f),
                          std::clamp(s + 20 * 0.01f, 0.0f, 1.0f),
                          std::clamp(v + -10 * 0.01f, 0.0f, 1.0f), R, G, B);
          return Rgb(R, G, B);
        });
  }
  for (int region : {0, 1, 2})
    for (int keep : {0, 1})
      add(
          "CColorBalance",
          [=](auto* p, int w, int h) {
            P::CColorBalance(keep, P::TONE_REGION(region), 77, -60, -31, p, w, h, nullptr, 0, 100);
          },
          [=](int r, int g, int b) { return Balance(region, keep == 1, 77, -60, -31, r, g, b); });
  for (double gamma : {0.45, 1.0, 2.2})
    add(
        "Istone_Gamma",
        [=](auto* p, int w, int h) {
          P::Istone_Gamma(p, w, h, gamma, P::IMAGE_CHANNEL(P::ChannelRed | P::ChannelBlue), nullptr,
                          0, 100);
        },
        [=](int r, int g, int b) {
          const double e = 1.0 / gamma, k = std::pow(255.0, e) / 255.0;
          auto f = [=](int i) { return Clamp(std::round(std::pow(i, e) / k)); };
          return Rgb(f(r), g, f(b));
        });
  for (int levels : {2, 5, 256})
    add(
        "Istone_Posterize",
        [=](auto* p, int w, int h) {
          P::Istone_Posterize(p, w, h, levels, P::IMAGE_CHANNEL(7), nullptr, 0, 100);
        },
        Each([=](int i) {
          const double step = 255.0 / (levels - 1.0);
          return Clamp(std::round(std::round(i / step) * step));
        }));
  add(
      "Istone_AdjustRGB",
      [](auto* p, int w, int h) {
        P::Istone_AdjustRGB(p, w, h, -300, 20, 2147483647, nullptr, 0, 100);
      },
      [](int, int g, int) { return Rgb(0, Clamp(g + 20), 255); });
  add(
      "ShiftRGB", [](auto* p, int w, int h) { P::ShiftRGB(p, w, h, 200, 0, 9, nullptr, 0, 100); },
      [](int r, int g, int b) { return Rgb(Clamp(r + 200), g, Clamp(b + 9)); });
  add(
      "Threshold", [](auto* p, int w, int h) { P::Threshold(p, w, h, 127, nullptr, 0, 100); },
      [](int r, int g, int b) {
        const int v = (b * 11 + r * 30 + g * 59) / 100 > 127 ? 255 : 0;
        return Rgb(v, v, v);
      });
  add(
      "Negative", [](auto* p, int w, int h) { P::Negative(p, w, h, nullptr, 0, 100); },
      Each([](int i) { return 255 - i; }));
  add(
      "GrayScale", [](auto* p, int w, int h) { P::SetGrayScale(p, w, h, nullptr, 0, 100); },
      [](int r, int g, int b) {
        const int v = (b * 117 + r * 306 + g * 601) >> 10;
        return Rgb(v, v, v);
      });
  add(
      "Normal_Channel_Composite",
      [](auto* p, int w, int h) {
        P::Normal_Channel_Composite(p, w, h, 10, 99, 200, nullptr, 0, 100);
      },
      [](int r, int g, int b) {
        auto mix = [](int c, int k) { return int(c * 0.5f + k * 0.5f + 0.5f); };
        return Rgb(mix(r, 10), mix(g, 99), mix(b, 200));
      });
  add(
      "Overlay_Channel_Composite",
      [](auto* p, int w, int h) {
        P::Overlay_Channel_Composite(p, w, h, 10, 99, 200, nullptr, 0, 100);
      },
      [](int r, int g, int b) {
        auto mix = [](int c, int k) {
          const float o =
              c < 128 ? float(c * k) / 127.5f : 255.0f - float((255 - c) * (255 - k)) / 127.5f;
          return int((int(o + 0.5f) & 255) * 0.5f + c * 0.5f + 0.5f);
        };
        return Rgb(mix(r, 10), mix(g, 99), mix(b, 200));
      });
  add(
      "CompositeColor",
      [](auto* p, int w, int h) { P::CompositeColor(p, w, h, 10, 99, 200, nullptr, 0, 100); },
      [](int r, int g, int b) {
        auto soft = [](int a, int k) {
          const double m = (a * k) / 255.0;
          return int((255.0 - ((255 - k) * (255 - a)) / 255.0 - m) * a / 255.0 + m);
        };
        return Rgb(soft(r, 10), soft(g, 99), soft(b, 200));
      });
  constexpr std::pair<int, Bytewise> kTo[] = {{1, CColorSpace::RGBtoHSL},
                                              {2, CColorSpace::RGBtoYUV},
                                              {3, CColorSpace::RGBtoYIQ},
                                              {4, CColorSpace::RGBtoXYZ}};
  for (auto [to, convert] : kTo) {
    const int model = to;
    const Bytewise forth = convert;
    add(
        "ConvertColorSpace",
        [=](auto* p, int w, int h) { P::ConvertColorSpace(p, w, h, model, 0, nullptr, 0, 100); },
        [=](int r, int g, int b) { return Convert(forth, r, g, b); });
  }
  for (auto [hue, saturation] : {std::pair{100, 100}, {0, 150}, {200, 0}, {130, 999}}) {
    const int shift = (hue - 100) * 180 / 100 * 255 / 360;
    const int gain = std::clamp((std::min(saturation, 200) - 100) * 255 / 100, -255, 255);
    const int h0 = hue, s0 = saturation;
    add(
        "AutoColor", [=](auto* p, int w, int h) { P::AutoColor(p, w, h, h0, s0, nullptr, 0, 100); },
        [=](int r, int g, int b) {
          double h, l, s;
          CColorSpace::RGBtoHLS(static_cast<unsigned char>(r), static_cast<unsigned char>(g),
                                static_cast<unsigned char>(b), h, l, s);
          int t = std::clamp(int(h * 255), 0, 255) + shift;
          t = t < 0 ? t + 255 : t >= 256 ? t - 255 : t;
          const int u = std::clamp(std::clamp(int(s * 255), 0, 255) * (gain + 255) / 255, 0, 255);
          unsigned char R, G, B;
          CColorSpace::HLStoRGB(t / 255.0, l, u / 255.0, R, G, B);
          return Rgb(R, G, B);
        });
  }
  return cases;
}

TEST(Adjustments, MatchTheirTwinsAndKeepAlpha) {
  for (const Case& c : Cases()) {
    const Picture image = RandomPicture(97, 61, 5);
    Picture worked = image;
    c.run(worked.bytes.data(), 97, 61);
    for (std::size_t i = 0; i < image.bytes.size(); i += 4) {
      const auto [r, g, b] = c.twin(image.bytes[i + 2], image.bytes[i + 1], image.bytes[i]);
      const Bytes expected = {static_cast<unsigned char>(b), static_cast<unsigned char>(g),
                              static_cast<unsigned char>(r), image.bytes[i + 3]};
      ASSERT_EQ(Bytes(&worked.bytes[i], &worked.bytes[i] + 4), expected)
          << c.name << " at " << i / 4;
    }
    c.run(nullptr, 4, 4);
    Picture untouched = image;
    for (auto [w, h] : {std::pair{0, 4}, {4, 0}, {-4, 4}, {4, -4}})
      c.run(untouched.bytes.data(), w, h);
    ASSERT_EQ(untouched, image) << c.name;
  }
}

TEST(Adjustments, RefuseWhatHasNoRule) {
  const Picture image = RandomPicture(9, 9, 1);
  Picture p = image;
  unsigned char* px = p.bytes.data();
  EXPECT_EQ(P::Saturateconst(px, 9, 9, 50, 3, nullptr, 0, 100), 0);
  EXPECT_EQ(P::CColorBalance(0, P::TONE_REGION(3), 50, 0, 0, px, 9, 9, nullptr, 0, 100), 0);
  EXPECT_EQ(P::Istone_Gamma(px, 9, 9, 0.0, P::ChannelRed, nullptr, 0, 100), 0);
  EXPECT_EQ(P::Istone_Posterize(px, 9, 9, 1, P::ChannelRed, nullptr, 0, 100), 0);
  EXPECT_EQ(P::ConvertColorSpace(px, 9, 9, 2, 2, nullptr, 0, 100), 0);
  EXPECT_EQ(P::ConvertColorSpace(px, 9, 9, 2, 1, nullptr, 0, 100), 0);
  EXPECT_EQ(P::LightNew(px, 9, 9, 0, 3, nullptr, 0, 100), 0);
  EXPECT_EQ(P::AutoWhiteBalance(px, 9, 9, 255, nullptr, 0, 100), 0);
  EXPECT_EQ(P::AutoColorLevel(px, 9, 9, 0, nullptr, 0, 100), 1);
  EXPECT_EQ(P::Multiple(px, nullptr, 9, 9, nullptr, 0, 100), 0);
  EXPECT_EQ(p, image);
}

TEST(Adjustments, StopWhereTheySay) {
  const Picture image = RandomPicture(4, 40, 2);
  using Run = std::function<int(unsigned char*, CObjProgress*)>;
  struct Row {
    Run run;
    int result;      // after a stop at the first question
    bool untouched;  // by then
    bool asks;
  };
  const Row rows[] = {
      {[](auto* p, auto* o) { return P::PixelBrightness(p, 4, 40, 10, o, 10, 50); }, 1, false,
       true},
      {[](auto* p, auto* o) { return P::ExposureFilter(p, 4, 40, 3, o, 10, 50); }, 0, false, true},
      {[](auto* p, auto* o) { return P::SetHue(p, 4, 40, 30, o, 10, 50); }, 0, false, true},
      {[](auto* p, auto* o) { return P::AutoConstrast(p, 4, 40, o, 10, 50); }, 0, true, true},
      {[](auto* p, auto* o) { return P::Threshold(p, 4, 40, 9, o, 10, 50); }, 1, false, true},
      {[](auto* p, auto* o) { return P::Istone_AdjustRGB(p, 4, 40, 9, 9, 9, o, 10, 50); }, 1, false,
       false},
  };
  for (const Row& row : rows) {
    Picture p = image, whole = image;
    row.run(whole.bytes.data(), nullptr);
    tintwerk::ProgressRecorder stop;
    stop.stopAt = 0;
    EXPECT_EQ(row.run(p.bytes.data(), &stop), row.result);
    if (!row.asks) {
      EXPECT_EQ(stop.questions, 0);
      EXPECT_EQ(p, whole);
      ASSERT_EQ(stop.positions.size(), 20u);
      EXPECT_EQ(stop.positions[1], 2 * 1.0f + 10);
      continue;
    }
    EXPECT_EQ(stop.questions, 1);
    EXPECT_TRUE(stop.positions.empty());
    Picture expected = image;
    if (!row.untouched) std::copy_n(whole.bytes.begin(), 16, expected.bytes.begin());
    EXPECT_EQ(p, expected);
  }
}

TEST(AutoConstrast, StretchesEachChannelAndReportsInTwoHalves) {
  Picture image = RandomPicture(11, 40, 3);
  for (std::size_t i = 0; i < image.bytes.size(); i += 4) {
    image.bytes[i] = 77;                                                             // constant
    image.bytes[i + 1] = static_cast<unsigned char>(40 + image.bytes[i + 1] % 100);  // 40..139
  }
  image.bytes[1] = 40, image.bytes[5] = 139;
  Picture worked = image;
  tintwerk::ProgressRecorder all;
  ASSERT_EQ(P::AutoConstrast(worked.bytes.data(), 11, 40, &all, 0, 100), 1);
  for (std::size_t i = 0; i < image.bytes.size(); i += 4) {
    EXPECT_EQ(worked.bytes[i], 77);
    EXPECT_EQ(worked.bytes[i + 1], (image.bytes[i + 1] - 40) * 255 / 99);
  }
  ASSERT_EQ(all.positions.size(), 40u);
  EXPECT_EQ(all.positions[1], 2 * 1.25f);
  EXPECT_EQ(all.positions[20], 50.0f);
}

TEST(AutoColorLevel, ClipsAboutSixPerMille) {
  // A ramp of 1000 pixels over 50..149 with three strays at each end: the strays clip, the ramp
  // fills the scale.
  Picture image{1006, 1, Bytes(4 * 1006, 9)};
  for (int i = 0; i < 1006; ++i)
    for (int c = 0; c < 3; ++c)
      image.At(i, 0)[c] = static_cast<unsigned char>(i < 3 ? 0 : i < 6 ? 255 : 50 + (i - 6) / 10);
  ASSERT_EQ(P::AutoColorLevel(image.bytes.data(), 1006, 1, 1, nullptr, 0, 100), 1);
  EXPECT_EQ(image.At(0, 0)[0], 0);
  EXPECT_EQ(image.At(4, 0)[1], 255);
  EXPECT_LE(image.At(6, 0)[2], 3);
  EXPECT_GE(image.At(1005, 0)[2], 252);
  EXPECT_NEAR(image.At(506, 0)[1], 128, 3);
  EXPECT_EQ(image.At(506, 0)[3], 9);
}

TEST(AutoWhiteBalance, MakesANearWhiteCastNeutral) {
  Picture image{20, 20, Bytes(1600, 0)};
  for (int i = 0; i < 400; ++i)
    image.bytes[4 * i] = 190, image.bytes[4 * i + 1] = 200, image.bytes[4 * i + 2] = 210;
  ASSERT_EQ(P::AutoWhiteBalance(image.bytes.data(), 20, 20, 100, nullptr, 0, 100), 1);
  EXPECT_EQ(image.bytes[1], 200);
  EXPECT_NEAR(image.bytes[0], 200, 2);
  EXPECT_NEAR(image.bytes[2], 200, 2);
}

TEST(Histogram, CountsWhatIsGiven) {
  const Picture image = RandomPicture(50, 40, 7);
  std::int32_t red[256], gray[256], plain[256] = {}, plainGray[256] = {};
  for (std::size_t i = 0; i < image.bytes.size(); i += 4) {
    ++plain[image.bytes[i + 2]];
    ++plainGray[(601 * image.bytes[i + 1] + 306 * image.bytes[i + 2] + 117 * image.bytes[i]) >> 10];
  }
  tintwerk::ProgressRecorder all;
  const auto largest =
      P::Histogram(image.bytes.data(), 50, 40, red, nullptr, nullptr, gray, 0, &all, 20, 120);
  EXPECT_TRUE(std::equal(red, red + 256, plain));
  EXPECT_TRUE(std::equal(gray, gray + 256, plainGray));
  EXPECT_EQ(largest, std::max(*std::max_element(plain, plain + 256),
                              *std::max_element(plainGray, plainGray + 256)));
  ASSERT_EQ(all.positions.size(), 20u);
  EXPECT_EQ(all.positions[19], 38 * 0.25f + 20);
  tintwerk::ProgressRecorder stop;
  stop.stopAt = 0;
  EXPECT_EQ(
      P::Histogram(image.bytes.data(), 50, 40, red, nullptr, nullptr, nullptr, 0, &stop, 0, 100),
      0);
  EXPECT_EQ(P::Histogram(image.bytes.data(), 50, 40, nullptr, nullptr, nullptr, nullptr, 0, nullptr,
                         0, 100),
            0);
}

TEST(CreateArray, IsRoundAndGrowsOutward) {
  Bytes mask(40 * 40, 7);
  ASSERT_EQ(P::CreateArray(mask.data(), 20, 10), 1);
  auto at = [&](int x, int y) { return mask[40 * (19 + y) + 19 + x]; };
  EXPECT_EQ(at(0, 0), 0);
  EXPECT_EQ(at(4, 0), 0);
  EXPECT_EQ(at(5, 0), 0);
  EXPECT_EQ(at(10, 0), 128);  // the inner radius belongs to the inner rule
  EXPECT_EQ(at(-15, 0), int(5 / 10.0 * 127.0 + 128.0));
  EXPECT_EQ(at(0, 17), at(17, 0));
  EXPECT_EQ(at(-3, -8), at(3, 8));
  EXPECT_EQ(mask[0], 7);
  EXPECT_EQ(P::CreateArray(nullptr, 20, 10), 0);
}

TEST(Multiple, ReplacesUnderOpaqueAndMultipliesElsewhere) {
  unsigned char image[] = {100, 200, 50, 7, 100, 200, 50, 7};
  const unsigned char source[] = {10, 20, 30, 255, 10, 20, 30, 254};
  ASSERT_EQ(P::Multiple(image, source, 2, 1, nullptr, 0, 100), 1);
  EXPECT_EQ(Bytes(image, image + 8),
            (Bytes{10, 20, 30, 255, 1000 >> 8, 4000 >> 8, 1500 >> 8, 255}));
}

}  // namespace

// Point adjustments and automatic tone against pixel-by-pixel twins.
#include <cmath>

#include "support/operations.h"
#include "tintwerk/color_space.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using P = CPixelProcess;
using Rgb = std::array<int, 3>;  // red, green, blue
using Twin = std::function<Rgb(int, int, int)>;

int Clamp(double v) {
  return v < 0 ? 0 : v > 255 ? 255 : int(v);
}
Rgb Grey(int v) {
  return {v, v, v};
}
Twin Each(std::function<int(int)> f) {
  return [=](int r, int g, int b) { return Rgb{f(r), f(g), f(b)}; };
}
Twin Toward(int (*mix)(int, int)) {
  return [=](int r, int g, int b) { return Rgb{mix(r, 10), mix(g, 99), mix(b, 200)}; };
}

using Bytewise = int (*)(Byte, Byte, Byte, Byte&, Byte&, Byte&);
Rgb Convert(Bytewise convert, int x, int y, int z) {
  const auto out = Values<Byte>(convert, Byte(x), Byte(y), Byte(z));
  return {out[0], out[1], out[2]};
}
Rgb OfHls(double h, double l, double s) {
  const auto quad = CColorSpace::HLStoRGB(h, l, s);
  return {quad.rgbRed, quad.rgbGreen, quad.rgbBlue};
}

Twin Saturated(int amount) {
  return [=](int r, int g, int b) {
    const double s = (amount > 0 ? amount * 3 : amount) * 0.01 + 1.0, t = 1.0 - s;
    const double common = r * t * 0.30859375 + g * t * 0.609375 + b * t * 0.08203125;
    return Rgb{Clamp(r * s + common), Clamp(g * s + common), Clamp(b * s + common)};
  };
}
Twin SaturatedInIntegers(int amount) {
  return [=](int r, int g, int b) {
    const float s = float(amount) * 0.01f + 1.0f, t = 1.0f - s;
    const int common = b * int(t * 21.0f) + r * int(t * 79.0f) + g * int(t * 156.0f);
    return Each([=](int c) { return Clamp((c * int(s * 256.0f) + common) / 256.0); })(r, g, b);
  };
}
Twin Balanced(int region, bool keep, Rgb by) {
  return [=](int r, int g, int b) {
    const Rgb before = {r, g, b};
    Rgb c;
    for (int k = 0; k < 3; ++k) {
      const double i = before[k], q = (i - 127.0) / 127.0;
      if (region == 2) {
        const double more = by[k] * (1.075 - 1.0 / (i * 0.0625 + 1.0));
        c[k] = Clamp((k == 0 ? more : int(more)) + i);
      } else {
        c[k] = Clamp(int(by[k] * ((1.0 - q * q) * 0.667)) + i);
      }
    }
    if (!keep) return c;
    const auto hls = Values<double>(CColorSpace::RGBtoHLS, Byte(c[0]), Byte(c[1]), Byte(c[2]));
    return OfHls(hls[0], (std::min({r, g, b}) + std::max({r, g, b})) * 0.0019601, hls[2]);
  };
}
Twin AutoColoured(int hue, int saturation) {
  const int shift = (hue - 100) * 180 / 100 * 255 / 360;
  const int gain = std::clamp((std::min(saturation, 200) - 100) * 255 / 100, -255, 255);
  return [=](int r, int g, int b) {
    const auto [h, l, s] = Values<double>(CColorSpace::RGBtoHLS, Byte(r), Byte(g), Byte(b));
    const int t = Clamp(h * 255) + shift, u = Clamp(Clamp(s * 255) * (gain + 255) / 255);
    return OfHls((t < 0 ? t + 255 : t >= 256 ? t - 255 : t) / 255.0, l, u / 255.0);
  };
}

constexpr void (*kSaturateInIntegers)(Byte*, int, int, int) = SFDSP::Saturateconst_Faster;
void SaturateRectangle(Byte* p, int w, int h, int amount) {
  SFDSP::Saturateconst_Faster(p, w, 0, 0, w, h, amount);
}
void Balance(Byte* p, int w, int h, int keep, int region) {
  P::CColorBalance(keep, P::TONE_REGION(region), 77, -60, -31, p, w, h, nullptr, 0, 100);
}
int ShiftHsl(Byte* p, int w, int h, int hue, CObjProgress* progress, int low, int high) {
  return P().SetHSL(p, w, h, hue, 90, -40, progress, low, high);
}

TEST(Adjustments, MatchTheirTwins) {
  const auto expect = [](const char* name, const Call& run, const Twin& twin) {
    ExpectTwin(name, run, [&](Picture& image, int x, int y) {
      const Byte* const pixel = image.At(x, y);
      const auto [r, g, b] = twin(pixel[2], pixel[1], pixel[0]);
      return Rgb{b, g, r};
    });
  };
  for (int v : {-5, 0, 60, 100, 130, 200, 999}) {
    const int b = std::clamp(v, 0, 200) - 100;
    expect("PixelBrightness", With(P::PixelBrightness, v),
           Each([=](int i) { return i + (b > 0 ? 255 - i : i) * b / 200; }));
  }
  for (auto [bright, hard] : {std::pair{0, 0}, {40, -30}, {-70, 90}, {3, -100}, {0, -250}}) {
    const Twin twin = Each([bright = bright, hard = hard](int i) {
      return Clamp(float(i - 128) * (float(hard + 100) / 100.0f) + float(bright + 128) + 0.5f);
    });
    expect("Light", With(P::Light, bright, hard), twin);
    expect("SFDSP::Light", With(SFDSP::Light, bright, hard), twin);
  }
  for (float exposure : {-1.0f, 0.0f, 0.7f, 2.5f})
    expect("ExposureFilter", With(P::ExposureFilter, exposure), Each([=](int i) {
             const float x = float(i) / 255.0f * exposure;
             return Clamp((1.0f - float(std::exp(double(-x)))) * 255.0f);
           }));
  for (int amount : {-100, -40, 0, 30, 100}) {
    expect("Saturateconst_Faster", With(P::Saturateconst_Faster, amount), Saturated(amount));
    expect("of a rectangle that is all", With(SaturateRectangle, amount), Saturated(amount));
    expect("in integers", With(kSaturateInIntegers, amount), SaturatedInIntegers(amount));
    expect("Saturateconst 1", With(P::Saturateconst, amount, 1), [=](int r, int g, int b) {
      auto [h, s, l] = Convert(CColorSpace::RGBtoHSL, r, g, b);
      return Convert(CColorSpace::HSLtoRGB, h, Clamp(s + amount), l);
    });
    expect("Saturateconst 2", With(P::Saturateconst, amount, 2), [=](int r, int g, int b) {
      auto [y, u, v] = Convert(CColorSpace::RGBtoYUV, r, g, b);
      const auto chroma = [=](int i) {
        return Clamp(float((i - 128) * (amount + 100)) / 100.0f + 128.5f);
      };
      return Convert(CColorSpace::YUVtoRGB, y, chroma(u), chroma(v));
    });
  }
  for (int hue : {-300, -20, 77, 128}) {
    expect("SetHSL", With(ShiftHsl, hue), [=](int r, int g, int b) {
      auto [h, s, l] = Convert(CColorSpace::RGBtoHSL, r, g, b);
      return Convert(CColorSpace::HSLtoRGB, h + std::clamp(hue, -128, 128), s + 90, l - 40);
    });
    const auto turn = float(hue);
    expect("HueSaturationBright", With(SFDSP::HueSaturationBright, hue, 20, -10),
           [=](int r, int g, int b) {
             const auto [h, s, v] = Values<float>(CColorSpace::RGBtoHSB, r, g, b);
             const auto unit = [](float x) { return std::clamp(x, 0.0f, 1.0f); };
             const auto c = Values<Byte>(SFDSP::HSBtoRGB, std::clamp(h + turn, 0.0f, 360.0f),
                                         unit(s + 20 * 0.01f), unit(v + -10 * 0.01f));
             return Rgb{c[0], c[1], c[2]};
           });
  }
  for (int region : {0, 1, 2})
    for (int keep : {0, 1})
      expect("CColorBalance", With(Balance, keep, region), Balanced(region, keep, {77, -60, -31}));
  for (double gamma : {0.45, 1.0, 2.2})
    expect("Istone_Gamma", With(P::Istone_Gamma, gamma, P::IMAGE_CHANNEL(5)),
           [=](int r, int g, int b) {
             const double e = 1.0 / gamma, k = std::pow(255.0, e) / 255.0;
             const auto f = [=](int i) { return Clamp(std::round(std::pow(i, e) / k)); };
             return Rgb{f(r), g, f(b)};
           });
  for (int levels : {2, 5, 256})
    expect("Istone_Posterize", With(P::Istone_Posterize, levels, P::IMAGE_CHANNEL(7)),
           Each([step = 255.0 / (levels - 1.0)](int i) {
             return Clamp(std::round(std::round(i / step) * step));
           }));
  expect("Istone_AdjustRGB", With(P::Istone_AdjustRGB, -300, 20, INT_MAX), [](int, int g, int) {
    return Rgb{0, Clamp(g + 20), 255};
  });
  expect("ShiftRGB", With(P::ShiftRGB, 200, 0, 9), [](int r, int g, int b) {
    return Rgb{Clamp(r + 200), g, Clamp(b + 9)};
  });
  expect("Threshold", With(P::Threshold, 127), [](int r, int g, int b) {
    return Grey((b * 11 + r * 30 + g * 59) / 100 > 127 ? 255 : 0);
  });
  expect("Negative", With(P::Negative), Each([](int i) { return 255 - i; }));
  expect("SetGrayScale", With(P::SetGrayScale),
         [](int r, int g, int b) { return Grey((b * 117 + r * 306 + g * 601) >> 10); });
  expect("Normal_Channel_Composite", With(P::Normal_Channel_Composite, 10, 99, 200),
         Toward([](int c, int k) { return int(c * 0.5f + k * 0.5f + 0.5f); }));
  expect("Overlay_Channel_Composite", With(P::Overlay_Channel_Composite, 10, 99, 200),
         Toward([](int c, int k) {
           const float light = 255.0f - float((255 - c) * (255 - k)) / 127.5f;
           const float o = c < 128 ? float(c * k) / 127.5f : light;
           return int((int(o + 0.5f) & 255) * 0.5f + c * 0.5f + 0.5f);
         }));
  expect("CompositeColor", With(P::CompositeColor, 10, 99, 200), Toward([](int a, int k) {
           const double m = (a * k) / 255.0;
           return int((255.0 - ((255 - k) * (255 - a)) / 255.0 - m) * a / 255.0 + m);
         }));
  constexpr Bytewise kTo[] = {CColorSpace::RGBtoHSL, CColorSpace::RGBtoYUV, CColorSpace::RGBtoYIQ,
                              CColorSpace::RGBtoXYZ};
  constexpr Bytewise kFrom[] = {CColorSpace::HSLtoRGB, CColorSpace::YUVtoRGB, CColorSpace::YIQtoRGB,
                                CColorSpace::XYZtoRGB};
  for (int i = 0; i < 4; ++i) {
    expect("to", With(P::ConvertColorSpace, i + 1, 0), std::bind_front(Convert, kTo[i]));
    expect("from", With(P::ConvertColorSpace, 0, i + 1), std::bind_front(Convert, kFrom[i]));
  }
  for (auto [hue, saturation] : {std::pair{100, 100}, {0, 150}, {200, 0}, {130, 999}})
    expect("AutoColor", With(P::AutoColor, hue, saturation), AutoColoured(hue, saturation));
}

TEST(Adjustments, RefuseWhatHasNoRule) {
  const Bytes image = RandomBytes(4 * 81, 1);
  Bytes bytes = image;
  for (const Call& run :
       {With(P::Saturateconst, 50, 3), With(P::Istone_Gamma, 0.0, P::ChannelRed),
        With(P::Istone_Posterize, 1, P::ChannelRed), With(P::ConvertColorSpace, 2, 2),
        With(P::ConvertColorSpace, 2, 1), With(P::LightNew, 0, 3), With(P::AutoWhiteBalance, 255)})
    EXPECT_EQ(run(bytes.data(), 9, 9, nullptr, 0, 100), 0);
  const auto region = P::TONE_REGION(3);
  EXPECT_EQ(P::CColorBalance(0, region, 50, 0, 0, bytes.data(), 9, 9, nullptr, 0, 100), 0);
  EXPECT_EQ(P::AutoColorLevel(bytes.data(), 9, 9, 0, nullptr, 0, 100), 1);
  EXPECT_EQ(P::Multiple(bytes.data(), nullptr, 9, 9, nullptr, 0, 100), 0);
  EXPECT_EQ(bytes, image);
}

TEST(Adjustments, ReportAndStopRowByRow) {
  struct Case {
    Call run;
    int stopped = 1;  // the result after a stop
    bool asks = true;
  };
  for (const Case& c : {Case{With(P::PixelBrightness, 30)},
                        {With(P::Light, 9, 9)},
                        {With(P::ExposureFilter, 3.0f), 0},
                        {With(P::SetHue, 30), 0},
                        {With(ShiftHsl, 30), 0},
                        {With(P::Threshold, 9)},
                        {With(P::Negative)},
                        {With(P::Istone_Gamma, 2.0, P::ChannelRed), 1, false},
                        {With(P::Istone_Posterize, 4, P::ChannelRed), 1, false},
                        {With(P::Istone_AdjustRGB, 9, 9, 9), 1, false},
                        {With(P::Istone_Emboss, 9), 1, false}})
    ExpectSerialRows(
        RandomBytes(4 * 3 * 399, 2),
        [&](Byte* pixels, int w, int h, ProgressRecorder* host, int low, int high) {
          const int result = c.run(pixels, w, h, host, low, high);
          const bool stops = host->stopAt >= 0 && host->questions > host->stopAt;
          EXPECT_EQ(result, stops ? c.stopped : 1);
        },
        [&](Byte* row, int, int width) { c.run(row, width, 1, nullptr, 0, 100); }, c.asks);
}

TEST(AutoConstrast, StretchesEachChannelAndReportsInTwoHalves) {
  Bytes image = RandomBytes(4 * 11 * 40, 3), whole = image;
  for (std::size_t i = 0; i < image.size(); i += 4) {
    image[i] = whole[i] = 77;                                    // constant
    image[i + 1] = Byte(i < 8 ? 40 + 99 * i / 4 : 41 + i % 98);  // 40..139
    whole[i + 1] = Byte((image[i + 1] - 40) * 255 / 99);
  }
  for (int stopAt : {-1, 0, 20}) {
    ProgressRecorder host;
    host.stopAt = stopAt;
    Bytes bytes = image;
    EXPECT_EQ(P::AutoConstrast(bytes.data(), 11, 40, &host, 0, 100), stopAt < 0);
    const std::size_t told = stopAt < 0 ? 40 : stopAt;  // the first 20 while it looks
    ASSERT_EQ(host.positions.size(), told);
    for (std::size_t i = 0; i < told; ++i) EXPECT_EQ(host.positions[i], i * 2.5f);
    for (std::size_t i = 0; i < image.size(); i += 4) {
      EXPECT_EQ(bytes[i], 77);
      EXPECT_EQ(bytes[i + 1], (stopAt < 0 || (stopAt == 20 && i < 44) ? whole : image)[i + 1]);
    }
  }
}

TEST(AutoColorLevel, ClipsSixPerMilleAtEachEnd) {
  // Of 1000 pixels one has each of the 20 values at either end.
  const auto value = [](int i) { return i < 20 ? i : i < 40 ? 275 - i : 20 + i % 216; };
  Bytes image(4 * 1000, 9);
  for (int i = 0; i < 1000; ++i) std::fill_n(&image[4 * i], 3, Byte(value(i)));
  ASSERT_EQ(P::AutoColorLevel(image.data(), 100, 10, 1, nullptr, 0, 100), 1);
  for (int i = 0; i < 4000; ++i)
    ASSERT_EQ(image[i], i % 4 == 3 ? 9 : Clamp((value(i / 4) - 6) / 243.0 * 255 + 0.5)) << i;
}

TEST(AutoWhiteBalance, MakesANearWhiteCastNeutral) {
  Bytes image;
  for (int i = 0; i < 400; ++i) image.insert(image.end(), {190, 200, 210, 0});
  ASSERT_EQ(P::AutoWhiteBalance(image.data(), 20, 20, 100, nullptr, 0, 100), 1);
  EXPECT_EQ(image[1], 200);
  EXPECT_NEAR(image[0], 200, 2);
  EXPECT_NEAR(image[2], 200, 2);
}

TEST(Histogram, CountsWhatIsGiven) {
  const Bytes image = RandomBytes(4 * 50 * 40, 7);
  std::array<std::int32_t, 256> red, gray, plain = {}, plainGray = {};
  for (std::size_t i = 0; i < image.size(); i += 4) {
    ++plain[image[i + 2]];
    ++plainGray[(601 * image[i + 1] + 306 * image[i + 2] + 117 * image[i]) >> 10];
  }
  ProgressRecorder all, stop;
  stop.stopAt = 0;
  const auto count = [&](std::int32_t* r, std::int32_t* g, CObjProgress* progress) {
    return P::Histogram(image.data(), 50, 40, r, nullptr, nullptr, g, 0, progress, 20, 120);
  };
  EXPECT_EQ(count(red.data(), gray.data(), &all),
            std::max(*std::max_element(plain.begin(), plain.end()),
                     *std::max_element(plainGray.begin(), plainGray.end())));
  EXPECT_EQ(red, plain);
  EXPECT_EQ(gray, plainGray);
  ASSERT_EQ(all.positions.size(), 20u);
  EXPECT_EQ(all.positions[19], 38 * 0.25f + 20);
  EXPECT_EQ(count(red.data(), nullptr, &stop), 0);
  EXPECT_EQ(count(nullptr, nullptr, nullptr), 0);
}

TEST(Multiple, ReplacesUnderOpaqueAndMultipliesElsewhere) {
  Bytes image = {100, 200, 50, 7, 100, 200, 50, 7};
  const Byte source[] = {10, 20, 30, 255, 10, 20, 30, 254};
  ASSERT_EQ(P::Multiple(image.data(), source, 2, 1, nullptr, 0, 100), 1);
  EXPECT_EQ(image, (Bytes{10, 20, 30, 255, 1000 >> 8, 4000 >> 8, 1500 >> 8, 255}));
}

}  // namespace
}  // namespace tintwerk::test

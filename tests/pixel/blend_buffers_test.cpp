// Blends over buffers: routes, kernels, threads, and the progress of the one with a mode.
#include "pixel/blend_buffers.h"

#include <cmath>

#include "pixel/blend.h"
#include "support/operations.h"
#include "tintwerk/color_space.h"
#include "tintwerk/effect.h"

namespace tintwerk::test {
namespace {

float ScreenValue(float a, float b) {
  return (b + a) - (b * a) / 255.0f;
}
float SoftLightValue(float a, float b) {
  const float m = (b * a) / 255.0f;
  return (b + a - (m + m)) * a / 255.0f + m;
}
// The kernels of an operation on one pixel, as plain as can be.
template <float (*value)(float a, float b)>
void Rounded(Byte* base, const Byte* source) {
  for (int c = 0; c < 3; ++c)
    base[c] = Byte(std::clamp(std::nearbyint(value(base[c], source[c])), 0.0f, 255.0f));
}
void AlphaTrunc(Byte* base, const Byte* source) {
  const float p = source[3] / 255.0f;
  for (int c = 0; c < 3; ++c) base[c] = Byte(int(source[c] * p + base[c] * (1 - p)));
}
void HueSat(Byte* base, const Byte* source) {
  Byte hue, saturation, lightness, unused;
  CColorSpace::RGBtoHSL(base[2], base[1], base[0], hue, saturation, lightness);
  CColorSpace::RGBtoHSL(source[2], source[1], source[0], hue, saturation, unused);
  CColorSpace::HSLtoRGB(hue, saturation, lightness, base[2], base[1], base[0]);
}
void ColorHsb(Byte* base, const Byte* source) {
  float hue, saturation, brightness;
  CColorSpace::RGBtoHSB(source[2], source[1], source[0], hue, saturation, brightness);
  brightness = std::max({base[0], base[1], base[2]}) / 255.0f;
  Byte colour[3];
  CColorSpace::HSBtoRGB(hue, saturation, brightness, colour[2], colour[1], colour[0]);
  for (int c = 0; c < 3; ++c) base[c] = Byte(int(base[c] * (1 - 0.6f) + colour[c] * 0.6f + 0.5f));
}

using Pixel = void (*)(Byte* base, const Byte* source);
struct Driver {
  const char* name;
  void (*run)(Byte* base, const Byte* source, int count, const CpuLevelRecord& level);
  Pixel scalar;
  Pixel kernel = nullptr;  // on one of the four pixels
  int kernelLevel = 99;
};

const Driver kDrivers[] = {
    {"Screen", BlendBuffersScreen, BlendScreen, Rounded<ScreenValue>, 5},
    {"SoftLight", BlendBuffersSoftLight, BlendSoftLight, Rounded<SoftLightValue>, 5},
    {"AlphaTrunc", BlendBuffersAlphaTrunc, AlphaTrunc, AlphaTrunc, 2},
    {"AlphaOver", [](Byte* b, const Byte* s, int n, auto&) { BlendBuffersAlphaOver(b, s, n); },
     BlendAlphaOver},
    {"HueSat", [](Byte* b, const Byte* s, int n, auto&) { BlendBuffersHueSat(b, s, n); }, HueSat},
    {"ColorHSB", [](Byte* b, const Byte* s, int n, auto&) { BlendBuffersColorHSB(b, s, n, 0.6f); },
     ColorHsb},
    {"FixedTint",
     [](Byte* b, const Byte* s, int n, auto&) { BlendBuffersFixedTint(b, s, n, 0.24f); },
     [](Byte* b, const Byte* s) { BlendFixedTint(b, s, 0.24f); }}};

// Runs a driver on buffers at the given offsets from an alignment.
void ExpectTwin(const Driver& driver, const Bytes& base, const Bytes& source, int count,
                int baseOffset, int sourceOffset, int simd) {
  Bytes expected = base;
  const int grouped = simd >= driver.kernelLevel ? count / 4 * 4 : 0;
  for (int i = 0; i < count; ++i)
    (i < grouped ? driver.kernel : driver.scalar)(&expected[baseOffset + 4 * i],
                                                  &source[sourceOffset + 4 * i]);
  const Bytes result = Guarded(base, [&](Byte* bytes) {
    driver.run(bytes + baseOffset, source.data() + sourceOffset, count, {0, simd});
  });
  ASSERT_TRUE(result == expected) << driver.name << ", " << count << " pixels at " << baseOffset
                                  << " and " << sourceOffset << ", level " << simd;
}

TEST(BlendBuffers, AnyCountAndAlignmentOnEveryRoute) {
  const Threads threads(1);  // most of these loops are far too short to share
  const Bytes base = RandomBytes(4 * 45, 1), source = RandomBytes(4 * 45, 2);
  for (const Driver& driver : kDrivers)
    for (int simd : {1, 2, 4, 5})
      for (int count = 0; count <= 40; ++count)
        for (int offset = 0; offset < 16; ++offset)
          ExpectTwin(driver, base, source, count, offset, (count + offset * 5) % 16, simd);
}

TEST(BlendBuffers, EveryPairOfBytesOnEveryMachine) {
  Bytes base = RandomBytes(4 * 65536, 1), source = RandomBytes(4 * 65536, 2);
  for (int i = 0; i < 65536; ++i)
    for (int c = 0; c < 3; ++c) {
      base[4 * i + c] = Byte(c == 1 ? i >> 8 : i);
      source[4 * i + c] = Byte(c == 1 ? i : (i >> 8) + 85 * c);
    }
  for (const Driver& driver : kDrivers)
    OnEveryMachine([&] {
      for (int count : {65533, 65536}) ExpectTwin(driver, base, source, count, 0, 0, 6);
    });
}

// Forms that mark the pixels they are given.
template <int pixels>
void Mark(Byte* base, const Byte*, std::int64_t count) {
  for (std::int64_t i = 0; i < pixels * count; ++i) base[4 * i] += pixels;
}
template <int pixels>
void MarkOpacity(Byte* base, const Byte*, std::int64_t count, float opacity) {
  for (std::int64_t i = 0; i < pixels * count; ++i) base[4 * i] += Byte(pixels * opacity);
}

TEST(BlendBuffers, WidestFormThatTheProcessorAllowsTakesTheGroups) {
  struct Route {
    CpuLevelRecord level;
    bool four, eight;
    int group;
  };
  const Threads threads(1);
  const Bytes source(4 * 40);
  for (const Route& route : {Route{{0, 6}, true, true, 4},
                             {{0, 5}, true, false, 4},
                             {{0, 4}, true, true, 1},
                             {{0, 6}, false, true, 1},
                             {{0, 6}, false, false, 1},
                             {{1, 6}, true, true, 8},
                             {{1, 0}, false, true, 8},
                             {{1, 6}, true, false, 4}})
    for (int count : {INT_MIN, -4, -1, 0, 1, 3, 4, 7, 8, 9, 31, 40}) {
      Bytes plain(4 * 40), withOpacity(4 * 40), expected(4 * 40), triple(4 * 40);
      for (int i = 0; i < count; ++i) {
        expected[4 * i] = Byte(i < count / route.group * route.group ? route.group : 1);
        triple[4 * i] = Byte(3 * expected[4 * i]);
      }
      BlendBuffers(plain.data(), source.data(), count, Mark<1>, route.four ? Mark<4> : nullptr,
                   route.eight ? Mark<8> : nullptr, route.level);
      EXPECT_EQ(plain, expected);
      BlendBuffersOpacity(withOpacity.data(), source.data(), count, 3, MarkOpacity<1>,
                          route.four ? MarkOpacity<4> : nullptr,
                          route.eight ? MarkOpacity<8> : nullptr, route.level);
      EXPECT_EQ(withOpacity, triple);
    }
}

TEST(ChannelBlendX, BlendsReportsAndStopsAsSinglePixelsInASerialLoop) {
  const Bytes image = RandomBytes(4 * 3 * 399, 1), source = RandomBytes(4 * 3 * 399, 2);
  const auto blend = [&](int mode) {
    return [&source, mode](Byte* to, int w, int h, CObjProgress* progress, int low, int high) {
      return CEffect::ChannelBlend_X(to, source.data(), w, h, BlendMode(mode), progress, low, high);
    };
  };
  for (int mode = -1; mode <= 18; ++mode) {
    const auto row = [&](Byte* pixels, int first, int width) {
      for (int i = 0; i < width; ++i) BlendPixel(pixels + 4 * i, &source[4 * (first + i)], mode);
    };
    if (mode == 1 || mode == 17) ExpectSerialRows(image, blend(mode), row);
    for (int width : {1, 63, 64, 65, 200}) {
      Bytes expected = image;
      row(expected.data(), 0, 3 * width);
      EXPECT_TRUE(expected == Guarded(image,
                                      [&](Byte* pixels) {
                                        EXPECT_EQ(blend(mode)(pixels, width, 3, nullptr, 0, 9), 1);
                                      }))
          << "mode " << mode << ", width " << width;
    }
  }
  ExpectRefusals(blend(BlendModeLighten));
  Byte base[4] = {};
  EXPECT_EQ(CEffect::ChannelBlend_X(base, nullptr, 1, 1, BlendModeLighten, nullptr, 0, 100), 0);
  ProgressRecorder host;  // rows without pixels are rows
  blend(BlendModeLighten)(base, -1, 2, &host, 0, 100);
  EXPECT_EQ(host.positions, (std::vector<float>{0, 50}));
}

}  // namespace
}  // namespace tintwerk::test

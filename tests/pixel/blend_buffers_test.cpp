// Blends over buffers: routes, kernels, threads, and the progress of the one with a mode.
#include "pixel/blend_buffers.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <omp.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <random>
#include <vector>

#include "pixel/blend.h"
#include "progress_recorder.h"
#include "tintwerk/effect.h"

namespace tintwerk {
namespace {

using Byte = unsigned char;
using Bytes = std::vector<Byte>;

Bytes RandomBytes(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  Bytes bytes(size);
  for (Byte& byte : bytes) byte = Byte(random());
  return bytes;
}

Byte Nearest(float value) {
  return Byte(std::clamp(std::nearbyint(value), 0.0f, 255.0f));
}
float ScreenValue(float a, float b) {
  return (b + a) - (b * a) / 255.0f;
}
float SoftLightValue(float a, float b) {
  const float m = (b * a) / 255.0f;
  return (b + a - (m + m)) * a / 255.0f + m;
}

// The forms of an operation on one pixel, as plain as can be.
template <float (*value)(float a, float b)>
void Rounded(Byte* base, const Byte* source) {
  for (int c = 0; c < 3; ++c) base[c] = Nearest(value(base[c], source[c]));
}
void AlphaTrunc(Byte* base, const Byte* source) {
  const float p = source[3] / 255.0f;
  for (int c = 0; c < 3; ++c) base[c] = Byte(int(source[c] * p + base[c] * (1 - p)));
}
void ColorHSB(Byte* base, const Byte* source) {
  BlendColorHSB(base, source, 0.6f);
}
void FixedTint(Byte* base, const Byte* source) {
  BlendFixedTint(base, source, 0.24f);
}

struct Driver {
  const char* name;
  void (*run)(Byte* base, const Byte* source, int count, const CpuLevelRecord& level);
  void (*scalar)(Byte* base, const Byte* source);
  void (*kernel)(Byte* base, const Byte* source);  // on one of the four pixels
  int kernelLevel;
};

constexpr int kNever = 99;
const Driver kDrivers[] = {
    {"Screen", BlendBuffersScreen, BlendScreen, Rounded<ScreenValue>, 5},
    {"SoftLight", BlendBuffersSoftLight, BlendSoftLight, Rounded<SoftLightValue>, 5},
    {"AlphaTrunc", BlendBuffersAlphaTrunc, AlphaTrunc, AlphaTrunc, 2},
    {"AlphaOver", [](Byte* b, const Byte* s, int n, auto&) { BlendBuffersAlphaOver(b, s, n); },
     BlendAlphaOver, nullptr, kNever},
    {"HueSat", [](Byte* b, const Byte* s, int n, auto&) { BlendBuffersHueSat(b, s, n); },
     BlendHueSatHSL, nullptr, kNever},
    {"ColorHSB", [](Byte* b, const Byte* s, int n, auto&) { BlendBuffersColorHSB(b, s, n, 0.6f); },
     ColorHSB, nullptr, kNever},
    {"FixedTint",
     [](Byte* b, const Byte* s, int n, auto&) { BlendBuffersFixedTint(b, s, n, 0.24f); }, FixedTint,
     nullptr, kNever}};

// Most of these loops are far too short to share: one thread, unless a test wants more.
class Drivers : public testing::Test {
 protected:
  void SetUp() override { omp_set_num_threads(1); }
  void TearDown() override { omp_set_num_threads(before_); }

 private:
  int before_ = omp_get_max_threads();
};

// Runs a driver on buffers at the given offsets from an alignment, with guard bytes behind them.
void ExpectTwin(const Driver& driver, int count, int baseOffset, int sourceOffset, int simd) {
  const std::size_t size = 4 * std::size_t(count);
  const Bytes source = RandomBytes(sourceOffset + size, count + 1);
  Bytes base = RandomBytes(baseOffset + size + 64, count + 2), expected = base;
  const int grouped = simd >= driver.kernelLevel ? count / 4 * 4 : 0;
  for (int i = 0; i < count; ++i)
    (i < grouped ? driver.kernel : driver.scalar)(&expected[baseOffset + 4 * i],
                                                  &source[sourceOffset + 4 * i]);
  driver.run(base.data() + baseOffset, source.data() + sourceOffset, count, {0, simd});
  ASSERT_TRUE(base == expected) << driver.name << ", " << count << " pixels at " << baseOffset
                                << " and " << sourceOffset << ", level " << simd;
}

TEST_F(Drivers, AnyCountAndAlignmentOnEveryRoute) {
  for (const Driver& driver : kDrivers)
    for (int simd : {1, 2, 4, 5}) {
      if (driver.kernelLevel == kNever && simd != 5) continue;
      for (int count = 0; count <= 40; ++count)
        for (int offset = 0; offset < 16; ++offset)
          ExpectTwin(driver, count, offset, (count + offset * 5) % 16, simd);
      ExpectTwin(driver, 100003, 1, 2, simd);
    }
}

// Both bytes of a pair run through all values in every channel; alpha of the source is noise.
struct AllPairs {
  AllPairs() : base(RandomBytes(4 * 65536, 1)), source(RandomBytes(4 * 65536, 2)) {
    for (int i = 0; i < 65536; ++i)
      for (int c = 0; c < 3; ++c) {
        base[4 * i + c] = Byte(c == 1 ? i >> 8 : i);
        source[4 * i + c] = Byte(c == 1 ? i : (i >> 8) + 85 * c);
      }
  }
  Bytes base, source;
};

TEST_F(Drivers, KernelsGiveTheNearestAndScalarFormsDifferAtTiesOnly) {
  const AllPairs pairs;
  float (*const values[])(float, float) = {ScreenValue, SoftLightValue};
  for (int d = 0; d < 2; ++d) {
    Bytes kernel = pairs.base, scalar = pairs.base;
    kDrivers[d].run(kernel.data(), pairs.source.data(), 65536, {0, 5});
    kDrivers[d].run(scalar.data(), pairs.source.data(), 65536, {0, 4});
    for (std::size_t i = 0; i < kernel.size(); ++i) {
      if (i % 4 == 3) continue;
      const float value = values[d](pairs.base[i], pairs.source[i]);
      ASSERT_EQ(kernel[i], Nearest(value)) << kDrivers[d].name << " at " << i;
      if (scalar[i] == kernel[i]) continue;
      ASSERT_EQ(std::abs(scalar[i] - kernel[i]), 1);
      ASSERT_NEAR(value - std::floor(value), 0.5, 1e-4);
    }
  }
}

TEST_F(Drivers, GiveTheSameBytesOnEveryInstructionSetAndThreadCount) {
  const AllPairs pairs;
  for (const Driver& driver : kDrivers) {
    const auto run = [&] {
      Bytes base = pairs.base;
      driver.run(base.data(), pairs.source.data(), 65533, {0, 6});
      return base;
    };
    const Bytes expected = run();
    for (int threads : {2, 3, 7}) {
      omp_set_num_threads(threads);
      EXPECT_TRUE(run() == expected) << driver.name << " with " << threads << " threads";
    }
    for (std::int64_t targets = hwy::SupportedTargets(); targets != 0; targets &= targets - 1) {
      hwy::SetSupportedTargetsForTest(targets & -targets);
      hwy::GetChosenTarget().Update(hwy::SupportedTargets());
      EXPECT_TRUE(run() == expected) << driver.name << ", " << hwy::TargetName(targets & -targets);
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }
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

TEST_F(Drivers, WidestFormThatTheProcessorAllowsTakesTheGroups) {
  struct Route {
    CpuLevelRecord level;
    bool four, eight;
    int group;
  };
  const Bytes source(4 * 40);
  for (const Route& route : {Route{{0, 6}, true, true, 4},
                             {{0, 5}, true, false, 4},
                             {{0, 4}, true, true, 1},
                             {{0, 6}, false, true, 1},
                             {{0, 6}, false, false, 1},
                             {{1, 6}, true, true, 8},
                             {{1, 0}, false, true, 8},
                             {{1, 6}, true, false, 4}})
    for (int count = 0; count <= 40; ++count) {
      Bytes plain(4 * 40), withOpacity(4 * 40), expected(4 * 40);
      for (int i = 0; i < count; ++i)
        expected[4 * i] = Byte(i < count / route.group * route.group ? route.group : 1);
      BlendBuffers(plain.data(), source.data(), count, Mark<1>, route.four ? Mark<4> : nullptr,
                   route.eight ? Mark<8> : nullptr, route.level);
      EXPECT_EQ(plain, expected);
      BlendBuffersOpacity(withOpacity.data(), source.data(), count, 3, MarkOpacity<1>,
                          route.four ? MarkOpacity<4> : nullptr,
                          route.eight ? MarkOpacity<8> : nullptr, route.level);
      for (Byte& byte : expected) byte *= 3;
      EXPECT_EQ(withOpacity, expected);
    }
}

TEST_F(Drivers, CountsBelowOneDoNothing) {
  for (int count : {0, -1, -4, INT_MIN})
    for (const Driver& driver : kDrivers) driver.run(nullptr, nullptr, count, CpuLevel());
}

TEST(ChannelBlendX, ReportsAndStopsAsASerialLoop) {
  const Bytes image = RandomBytes(4 * 3 * 399, 1), source = RandomBytes(4 * 3 * 399, 2);
  for (int mode : {1, 17})
    ExpectSerialRows(
        image,
        [&](Byte* pixels, int width, int height, CObjProgress* progress, int low, int high) {
          EXPECT_EQ(CEffect::ChannelBlend_X(pixels, source.data(), width, height, BlendMode(mode),
                                            progress, low, high),
                    1);
        },
        [&](Byte* row, int first, int width) {
          for (int i = 0; i < width; ++i) BlendPixel(row + 4 * i, &source[4 * (first + i)], mode);
        });
}

TEST(ChannelBlendX, BlendsRowsOfAnyWidthAsSinglePixels) {
  for (int mode = -1; mode <= 18; ++mode)
    for (int width : {1, 63, 64, 65, 200}) {
      Bytes base = RandomBytes(4 * width * 3 + 64, width), expected = base;
      const Bytes source = RandomBytes(4 * width * 3, mode + 1);
      for (std::size_t i = 0; i < source.size(); i += 4) BlendPixel(&expected[i], &source[i], mode);
      CEffect::ChannelBlend_X(base.data(), source.data(), width, 3, BlendMode(mode), nullptr, 0, 9);
      EXPECT_TRUE(base == expected) << "mode " << mode << ", width " << width;
    }
}

TEST(ChannelBlendX, NullsAndEmptySizes) {
  Byte base[] = {1, 2, 3, 4};
  const Byte source[] = {9, 9, 9, 9};
  ProgressRecorder recorder;
  const auto blend = [&](Byte* to, const Byte* from, int width, int height) {
    return CEffect::ChannelBlend_X(to, from, width, height, BlendModeLighten, &recorder, 0, 100);
  };
  EXPECT_EQ(blend(nullptr, source, 1, 1), 0);
  EXPECT_EQ(blend(base, nullptr, 1, 1), 0);
  for (int height : {0, -1, INT_MIN}) EXPECT_EQ(blend(base, source, 1, height), 1);
  EXPECT_EQ(recorder.questions, 0);
  // Rows without pixels are rows.
  for (int width : {0, -1, INT_MIN}) {
    recorder.positions.clear();
    EXPECT_EQ(blend(base, source, width, 2), 1);
    EXPECT_EQ(recorder.positions, (std::vector<float>{0, 50}));
  }
  EXPECT_EQ(base[0], 1);
  EXPECT_EQ(blend(base, source, 1, 1), 1);
  EXPECT_EQ(base[0], 9);
  EXPECT_EQ(base[3], 4);
}

}  // namespace
}  // namespace tintwerk

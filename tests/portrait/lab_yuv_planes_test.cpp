#include <gmock/gmock.h>

#include <cmath>

#include "support/operations.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using Triple = std::array<Byte, 3>;

template <class Real>
Byte Saturated(Real value) {
  return Byte(std::clamp(value, Real(0), Real(255)));
}

Triple PlainLab(const Byte* pixel) {
  const double r = pixel[2] / 255.0, g = pixel[1] / 255.0, b = pixel[0] / 255.0;
  const double X = (0.431 * r + 0.342 * g + 0.178 * b) / 0.951;
  const double Y = 0.222 * r + 0.707 * g + 0.071 * b;
  const double Z = (0.02 * r + 0.13 * g + 0.939 * b) / 1.089;
  const auto f = [](double t) {
    return t > 0.008856 ? std::pow(t, 0.3333333333333333) : 7.78 * t + 0.13793103448275862;
  };
  const double L = Y > 0.008856 ? 116 * f(Y) - 16 : 903.3 * Y;
  return {Saturated(L * 2.5599), Saturated((f(X) - f(Y)) * 635 + 128),
          Saturated((f(Y) - f(Z)) * 254 + 128)};
}

Triple PlainColour(const Triple& lab) {
  const double L = lab[0] / 2.55, A = (lab[1] - 128) / 1.27, B = (lab[2] - 128) / 1.27;
  double fy = (L + 16) / 116, dx = A / 500, dz = B / 200, y = fy * fy * fy;
  if (!(y > 0.008856)) {
    y = L / 903.3;
    fy = std::pow(y, 0.3333333333333333);
    dx /= 7.787;
    dz /= 7.787;
  }
  const double fx = dx + fy, fz = fy - dz;
  const double X = 0.951 * (fx * fx * fx), Z = 1.089 * (fz * fz * fz);
  const auto byte = [](double c) { return Byte(std::min(std::clamp(c, 0., 1.) * 255.999, 255.)); };
  return {byte(0.068 * X - 0.229 * y + 1.069 * Z), byte(-0.969 * X + 1.876 * y + 0.042 * Z),
          byte(3.063 * X - 1.393 * y - 0.476 * Z)};
}

Triple PlainYuv(const Byte* pixel) {
  const float R = pixel[2], G = pixel[1], B = pixel[0];
  const float Y = 0.587f * G + 0.299f * R + 0.114f * B;
  return {Byte(Y + 0.5f), Saturated((B - Y) * 0.492f + 128.0f + 0.5f),
          Saturated((R - Y) * 0.877f + 128.0f + 0.5f)};
}

Triple PlainColourOfYuv(const Triple& yuv) {
  const float Y = yuv[0], U = float(yuv[1]) - 128.0f, V = float(yuv[2]) - 128.0f;
  return {Saturated(U * 2.032f + Y + 0.5f), Saturated(Y - U * 0.395f - V * 0.581f + 0.5f),
          Saturated(V * 1.14f + Y + 0.5f)};
}

// The planes of pixels whose rows lie `stride` bytes apart, one plane behind the other.
using Split = void (*)(const Bytes& pixels, int w, int h, int stride, Byte* planes);
using Join = void (*)(Byte* pixels, int w, int h, int stride, const Bytes& planes);

void SplitLab(const Bytes& pixels, int w, int h, int stride, Byte* planes) {
  SFDSP::DecomposeToLab(pixels.data(), w, h, stride, planes, planes + w * h, planes + 2 * w * h);
}
void JoinLab(Byte* pixels, int w, int h, int stride, const Bytes& planes) {
  const Byte* const p = planes.data();
  SFDSP::RecomposeFromLab(pixels, w, h, stride, p, p + w * h, p + 2 * w * h);
}
void SplitYuv(const Bytes& pixels, int w, int h, int, Byte* planes) {
  SFDSP::rgb_2_yuv(pixels.data(), w, h, planes);
}
void JoinYuv(Byte* pixels, int w, int h, int, const Bytes& planes) {
  SFDSP::yuv_2_rgb(pixels, w, h, planes.data());
}

template <class Plain>
void ExpectSplit(Split split, int gap, const Plain& plain) {
  for (auto [w, h] : {std::pair{1, 1}, {3, 5}, {17, 2}, {97, 61}, {640, 40}}) {
    const int stride = 4 * w + gap, count = w * h;
    Bytes pixels = RandomBytes(std::size_t(stride) * h, w), planes(3 * count);
    for (int i = 0; i < count; ++i) {
      Byte* const pixel = &pixels[stride * (i / w) + 4 * (i % w)];
      if (i % 5 == 0) pixel[0] = pixel[1] = pixel[2];
      if (i % 7 == 0) pixel[i % 3] /= 32;
      const Triple values = plain(pixel);
      for (int c = 0; c < 3; ++c) planes[count * c + i] = values[c];
    }
    OnEveryMachine([&, w = w, h = h] {
      ASSERT_TRUE(planes ==
                  Guarded(Bytes(3 * count), [&](Byte* to) { split(pixels, w, h, stride, to); }))
          << w << " x " << h;
    });
  }
}

template <class Plain>
void ExpectJoin(Join join, int gap, const Plain& plain) {
  for (auto [w, h] : {std::pair{1, 1}, {3, 5}, {17, 2}, {97, 61}, {640, 40}}) {
    const int stride = 4 * w + gap, count = w * h;
    const Bytes before = RandomBytes(std::size_t(stride) * h, 3);
    Bytes planes = RandomBytes(3 * count, w), pixels = before;
    for (int i = 0; i < count; ++i) {
      if (i % 3 == 0) planes[i] /= 8;  // where Lab is dark
      const Triple bgr = plain({planes[i], planes[count + i], planes[2 * count + i]});
      std::copy(bgr.begin(), bgr.end(), &pixels[stride * (i / w) + 4 * (i % w)]);
    }
    OnEveryMachine([&, w = w, h = h] {
      ASSERT_TRUE(pixels == Guarded(before, [&](Byte* to) { join(to, w, h, stride, planes); }))
          << w << " x " << h;
    });
  }
}

TEST(LabPlanes, AreThoseOfTheDefinition) {
  for (int gap : {0, 12}) {
    ExpectSplit(SplitLab, gap, PlainLab);
    ExpectJoin(JoinLab, gap, PlainColour);
  }
}

TEST(YuvPlanes, AreThoseOfTheDefinition) {
  ExpectSplit(SplitYuv, 0, PlainYuv);
  ExpectJoin(JoinYuv, 0, PlainColourOfYuv);
}

// Vectors estimate, so that any colour might come out on the wrong side of a limit.
TEST(LabPlanes, AreThoseOfTheDefinitionForEveryColour) {
  const int side = 1024, count = side * side;
  Bytes colours(4 * count), pixels(4 * count), plainPixels(4 * count);
  Bytes channels(3 * count), planes(3 * count), plainPlanes(3 * count);
  for (int part = 0; part < 16; ++part) {
#pragma omp parallel for
    for (int i = 0; i < count; ++i) {
      const int colour = count * part + i;
      const Triple key = {Byte(colour), Byte(colour >> 8), Byte(colour >> 16)};
      const Triple lab = PlainLab(key.data()), bgr = PlainColour(key);
      for (int c = 0; c < 3; ++c) {
        channels[count * c + i] = colours[4 * i + c] = key[c];
        plainPlanes[count * c + i] = lab[c];
        plainPixels[4 * i + c] = bgr[c];
      }
    }
    for (std::int64_t targets = hwy::SupportedTargets(); targets != 0; targets &= targets - 1) {
      const auto choose = [](std::int64_t target) {
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
      };
      choose(targets & -targets);
      SplitLab(colours, side, side, 4 * side, planes.data());
      JoinLab(pixels.data(), side, side, 4 * side, channels);
      choose(0);
      ASSERT_TRUE(planes == plainPlanes && pixels == plainPixels)
          << hwy::TargetName(targets & -targets) << ", part " << part;
    }
  }
}

TEST(LabPlanes, KnownColours) {
  const Bytes pixels = {0, 0, 0, 1, 255, 255, 255, 2, 255, 0, 0, 3};
  Bytes planes(9);
  SplitLab(pixels, 3, 1, 12, planes.data());
  EXPECT_EQ(planes[0], 0);
  EXPECT_EQ(planes[3], 128);
  EXPECT_EQ(planes[6], 128);
  EXPECT_EQ(planes[1], 255);
  EXPECT_NEAR(planes[4], 128, 1);
  EXPECT_NEAR(planes[7], 128, 1);
  EXPECT_EQ(planes[8], 0);  // blue lies beyond the end
}

TEST(LabPlanes, RowsMayRunUpwards) {
  const Bytes pixels = RandomBytes(4 * 20 * 3, 1);
  Bytes down(180), up(180);
  SplitLab(pixels, 20, 3, 80, down.data());
  SFDSP::DecomposeToLab(&pixels[160], 20, 3, -80, &up[0], &up[60], &up[120]);
  for (int i = 0; i < 180; ++i)
    EXPECT_EQ(up[i], down[i / 60 * 60 + (2 - i / 20 % 3) * 20 + i % 20]);
}

TEST(YuvPlanes, KnownColours) {
  Bytes yuv(3);
  SplitYuv({128, 128, 128, 9}, 1, 1, 0, yuv.data());
  EXPECT_EQ(yuv, Bytes({128, 128, 128}));
  for (int y : {0, 77, 255}) {
    Byte pixel[] = {1, 2, 3, 4};
    JoinYuv(pixel, 1, 1, 0, {Byte(y), 128, 128});
    EXPECT_THAT(pixel, testing::ElementsAre(y, y, y, 4));
  }
}

TEST(Planes, GiveUpOnWhatIsNoImage) {
  Bytes pixels(64, 9), planes(48, 8);
  Byte *const p = pixels.data(), *const q = planes.data();
  const auto all = [&](Byte* p, Byte* l, Byte* a, Byte* b, int w, int h) {
    SFDSP::DecomposeToLab(p, w, h, 16, l, a, b);
    SFDSP::RecomposeFromLab(p, w, h, 16, l, a, b);
    if (a == nullptr || b == nullptr) return;
    SFDSP::rgb_2_yuv(p, w, h, l);
    SFDSP::yuv_2_rgb(p, w, h, l);
  };
  all(nullptr, q, q, q, 4, 4);
  all(p, nullptr, q, q, 4, 4);
  all(p, q, nullptr, q, 4, 4);
  all(p, q, q, nullptr, 4, 4);
  for (auto [w, h] : {std::pair{0, 4}, {4, 0}, {-4, -4}, {INT_MIN, 1}, {65536, 65536}})
    all(p, q, q + 16, q + 32, w, h);
  EXPECT_EQ(pixels, Bytes(64, 9));
  EXPECT_EQ(planes, Bytes(48, 8));
}

}  // namespace
}  // namespace tintwerk::test

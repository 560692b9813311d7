#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <cstring>
#include <memory>

#include "filters/pixel_process_internals.h"
#include "frame/material.h"
#include "pixel/truncate.h"
#include "support/image_files.h"
#include "tintwerk/math_define.h"

namespace tintwerk::test {
namespace {

using Gdiplus::Bitmap;
constexpr auto kBilinear = CPixelProcess::InterpolationBilinear;
constexpr auto kWrap = CPixelProcess::OverflowWrap;
constexpr auto kClamp = CPixelProcess::OverflowClamp;
constexpr auto kMirror = CPixelProcess::OverflowMirror;

std::unique_ptr<Bitmap> MakeBitmap(const Picture& picture) {
  auto bitmap = std::make_unique<Bitmap>(picture.width, picture.height);
  const BitmapLock lock(bitmap.get(), Gdiplus::ImageLockModeWrite);
  std::memcpy(lock.Pixels(), picture.bytes.data(), picture.bytes.size());
  return bitmap;
}

// Takes over what an operation hands out; empty for null.
Picture Taken(void* untyped) {
  const std::unique_ptr<Bitmap> bitmap(static_cast<Bitmap*>(untyped));
  if (!bitmap) return {};
  const BitmapLock lock(bitmap.get());
  const std::size_t size = std::size_t{4} * lock.Width() * lock.Height();
  return {lock.Width(), lock.Height(), Bytes(lock.Pixels(), lock.Pixels() + size)};
}

Picture Turned(const Picture& picture, float angle, CPixelProcess::OverflowMethod overflow) {
  const auto bitmap = MakeBitmap(picture);
  return Taken(CPixelProcess::Rotate2(bitmap.get(), picture.width, picture.height, angle, kBilinear,
                                      overflow, true, true));
}

// A colour by four taps, each path in the plainest arithmetic.
void PlainColour(const Picture& p, float x, float y, CPixelProcess::OverflowMethod overflow,
                 unsigned char* out) {
  const auto cell = [](float at) { return int(at) - (at < 0 ? 1 : 0); };
  int ix = cell(x), iy = cell(y);
  if (!(-1 <= ix && ix < p.width && -1 <= iy && iy < p.height)) {
    PixelProcessInternals::MoveInside(x, y, overflow, p.width, p.height);
    ix = cell(x), iy = cell(y);
  }
  const bool inside = ix + 1 < p.width && ix >= 0 && iy + 1 < p.height && iy >= 0;
  const float u = x - float(ix), v = y - float(iy), d = u * v, c = v - d, b = u - d;
  const float real[] = {1 - u - c, b, c, d};
  const auto wx = std::uint16_t(u * 256.0f), wy = std::uint16_t(v * 256.0f);
  const auto wd = std::uint16_t((wx * wy) >> 8), wb = std::uint16_t(wx - wd),
             wc = std::uint16_t(wy - wd), wa = std::uint16_t(256 - wc - wx);
  const std::uint16_t fixed[] = {wa, wb, wc, wd};
  for (int channel = 0; channel < 4; ++channel) {
    std::uint16_t sum = 0;
    out[channel] = 0;
    for (int tap = 0; tap < 4; ++tap) {
      std::int32_t tx = ix + tap % 2, ty = iy + tap / 2;
      PixelProcessInternals::MoveInside(tx, ty, overflow, p.width, p.height);
      const int value = p.bytes[4 * (ty * p.width + tx) + channel];
      sum = static_cast<std::uint16_t>(sum + fixed[tap] * value);
      out[channel] = static_cast<unsigned char>(out[channel] + int(float(value) * real[tap]));
    }
    if (inside) out[channel] = static_cast<unsigned char>(sum >> 8);
  }
}

Picture PlainTurned(const Picture& p, float angle, CPixelProcess::OverflowMethod overflow) {
  Picture out = p;
  const double radians = std::acos(0.0) * double(angle) / 90.0;
  const float c = float(std::cos(radians)), s = float(std::sin(radians));
  float v = -0.5f * float(p.width > 0 ? p.height : 0);
  for (int y = 0; y < p.height; ++y, v += 1.0f) {
    float u = -0.5f * float(p.width);
    for (int x = 0; x < p.width; ++x, u += 1.0f)
      PlainColour(p, u * c + v * s + 0.5f * float(p.width), v * c - u * s + 0.5f * float(p.height),
                  overflow, out.At(x, y));
  }
  return out;
}

TEST(Rotate2, IsThatOfPlainTapsAtEveryAngle) {
  const int threads = omp_get_max_threads();
  for (auto [w, h] : {std::pair{1, 1}, {1, 7}, {8, 1}, {13, 10}, {64, 37}}) {
    const Picture picture = RandomPicture(w, h, w);
    for (float angle : {0.0f, 3.5f, 45.0f, 90.0f, 180.0f, 200.0f, -30.0f, 360000.0f})
      for (auto overflow : {kWrap, kClamp, kMirror}) {
        const Picture plain = PlainTurned(picture, angle, overflow);
        omp_set_num_threads(angle == 45 ? 1 : 3);
        ASSERT_TRUE(Turned(picture, angle, overflow) == plain)
            << w << " x " << h << " by " << angle << ", method " << overflow;
      }
    EXPECT_TRUE(Turned(picture, 0, kClamp) == picture);
  }
  omp_set_num_threads(threads);
}

TEST(Rotate2, TurnsClockwise) {
  Picture picture{9, 9, Bytes(324)};
  picture.At(4, 1)[2] = 255;  // above the centre
  Picture turned = Turned(picture, 90, kClamp);
  EXPECT_GT(turned.At(8, 4)[2], 250);  // to its right; the centre is the middle of 0..9
}

TEST(Rotate2, GivesNullForWhatItCannotTurn) {
  const auto bitmap = MakeBitmap(RandomPicture(4, 3));
  const auto turn = [&](void* source, int w, int h, bool keep) {
    return CPixelProcess::Rotate2(source, w, h, 10, kBilinear, kClamp, true, keep);
  };
  EXPECT_EQ(turn(nullptr, 4, 3, true), nullptr);
  EXPECT_EQ(turn(bitmap.get(), 5, 3, true), nullptr);
  EXPECT_EQ(turn(bitmap.get(), 0, -3, true), nullptr);
  EXPECT_NE(bitmap->GetLastStatus(), Gdiplus::Ok);
  EXPECT_EQ(turn(bitmap.get(), 4, 3, false), nullptr);
  EXPECT_EQ(Taken(turn(bitmap.get(), 4, 3, true)).width, 4);  // locks have ended
  // Angles without a sine bring no coordinate into the image.
  EXPECT_EQ(Turned(RandomPicture(4, 3), NAN, CPixelProcess::OverflowMethod(0)).bytes, Bytes(48));
}

TEST(OverflowCoordinates, MovesBothAxesOfAPointThatIsOutside) {
  const auto moved = [](auto x, CPixelProcess::OverflowMethod overflow) {
    decltype(x) y = 3;
    PixelProcessInternals::MoveInside(x, y, overflow, 10, 8);
    EXPECT_EQ(y, 3);
    return x;
  };
  EXPECT_EQ(moved(-1, kMirror), 1);
  EXPECT_EQ(moved(10, kMirror), 9);
  EXPECT_EQ(moved(23, kMirror), 6);
  EXPECT_EQ(moved(-3, kWrap), 7);
  EXPECT_EQ(moved(-20, kWrap), 0);
  EXPECT_EQ(moved(25, kWrap), 5);
  EXPECT_EQ(moved(-2147483647 - 1, kClamp), 0);
  EXPECT_EQ(moved(2147483647, kClamp), 9);
  EXPECT_EQ(moved(12, CPixelProcess::OverflowMethod(0)), 12);
  EXPECT_EQ(moved(-1.5f, kMirror), 1.5f);
  EXPECT_EQ(moved(10.25f, kMirror), 8.75f);
  EXPECT_EQ(moved(-0.5f, kWrap), 9.5f);
  EXPECT_EQ(moved(9.5f, kClamp), 9.5f);
  EXPECT_EQ(moved(10.5f, kClamp), 9.0f);
}

TEST(GetPixelColorInterpolated, DefinesEveryCoordinate) {
  const Picture picture = RandomPicture(3, 3);
  for (float x : {-1.0f, -1e30f, 1e30f, float(INFINITY), NAN, 2.5f})
    for (float y : {-1e30f, 2.0f, NAN})
      for (int method = 3; method <= 7; ++method)
        PixelProcessInternals::ColorAt(picture.bytes.data(), 3, x, y, 3, 3,
                                       CPixelProcess::OverflowMethod(method));
  const tagRGBQUAD corner =
      PixelProcessInternals::ColorAt(picture.bytes.data(), 3, -7, -7, 3, 3, kClamp);
  EXPECT_EQ(corner.rgbRed, picture.bytes[2]);
}

TEST(Clone, TakesARectangleThatFits) {
  Picture picture = RandomPicture(9, 7);
  for (std::size_t i = 3; i < picture.bytes.size(); i += 4) picture.bytes[i] |= 1;
  const auto bitmap = MakeBitmap(picture);
  Picture part = Taken(CPixelProcess::Clone(bitmap.get(), 2, 3, 7, 4));
  ASSERT_EQ(part.width, 7);
  ASSERT_EQ(part.height, 4);
  for (int y = 0; y < 4; ++y)
    EXPECT_EQ(std::memcmp(part.At(0, y), picture.At(2, y + 3), 28), 0) << y;
  EXPECT_EQ(CPixelProcess::Clone(bitmap.get(), 2, 3, 8, 4), nullptr);
  EXPECT_EQ(CPixelProcess::Clone(bitmap.get(), 2, 3, 7, 5), nullptr);
  EXPECT_EQ(CPixelProcess::Clone(bitmap.get(), -1, 0, 2, 2), nullptr);
  EXPECT_EQ(CPixelProcess::Clone(bitmap.get(), 0, 0, 0, 2), nullptr);
  EXPECT_EQ(CPixelProcess::Clone(bitmap.get(), 2147483647, 0, 2, 2), nullptr);
  EXPECT_EQ(CPixelProcess::Clone(nullptr, 0, 0, 2, 2), nullptr);
}

}  // namespace
}  // namespace tintwerk::test

// Operations on pictures of the frame: turning, cutting, scaling, gradients.
#include <cmath>
#include <cstring>
#include <memory>

#include "filters/pixel_process_internals.h"
#include "frame/material.h"
#include "support/operations.h"

namespace tintwerk::test {
namespace {

using Gdiplus::Bitmap;
using P = CPixelProcess;
using Internals = PixelProcessInternals;
using Overflow = P::OverflowMethod;
constexpr auto kBilinear = P::InterpolationBilinear;
constexpr auto kWrap = P::OverflowWrap, kClamp = P::OverflowClamp, kMirror = P::OverflowMirror;

std::unique_ptr<Bitmap> MakeBitmap(const Picture& picture) {
  auto bitmap = std::make_unique<Bitmap>(picture.width, picture.height);
  const BitmapLock lock(bitmap.get(), Gdiplus::ImageLockModeWrite);
  std::memcpy(lock.Pixels(), picture.bytes.data(), picture.bytes.size());
  return bitmap;
}

// Takes over what an operation hands out; empty for null and for a bitmap without pixels.
Picture Taken(void* untyped) {
  const std::unique_ptr<Bitmap> bitmap(static_cast<Bitmap*>(untyped));
  if (!bitmap || bitmap->GetWidth() == 0) return {};
  const BitmapLock lock(bitmap.get());
  const std::size_t size = std::size_t{4} * lock.Width() * lock.Height();
  return {lock.Width(), lock.Height(), Bytes(lock.Pixels(), lock.Pixels() + size)};
}

Picture Turned(const Picture& p, float angle, Overflow overflow) {
  const auto bitmap = MakeBitmap(p);
  return Taken(P::Rotate2(bitmap.get(), p.width, p.height, angle, kBilinear, overflow, true, true));
}

// A colour by four taps, each path in the plainest arithmetic.
void PlainColour(const Picture& p, float x, float y, Overflow overflow, Byte* out) {
  const auto cell = [](float at) { return int(at) - (at < 0 ? 1 : 0); };
  int ix = cell(x), iy = cell(y);
  if (!(-1 <= ix && ix < p.width && -1 <= iy && iy < p.height)) {
    Internals::OverflowCoordinates(x, y, overflow, p.width, p.height);
    ix = cell(x), iy = cell(y);
  }
  const bool inside = ix + 1 < p.width && ix >= 0 && iy + 1 < p.height && iy >= 0;
  const float u = x - float(ix), v = y - float(iy), d = u * v, c = v - d, b = u - d;
  const float real[] = {1 - u - c, b, c, d};
  const int wx = int(u * 256.0f), wy = int(v * 256.0f), wd = (wx * wy) >> 8, wc = wy - wd;
  const int fixed[] = {256 - wc - wx, wx - wd, wc, wd};
  for (int channel = 0; channel < 4; ++channel) {
    int sum = 0, parts = 0;
    for (int tap = 0; tap < 4; ++tap) {
      std::int32_t tx = ix + tap % 2, ty = iy + tap / 2;
      Internals::OverflowCoordinates(tx, ty, overflow, p.width, p.height);
      const int value = p.bytes[4 * (ty * p.width + tx) + channel];
      sum += fixed[tap] * value;
      parts += int(float(value) * real[tap]);
    }
    out[channel] = Byte(inside ? (sum & 0xFFFF) >> 8 : parts);
  }
}

Picture PlainTurned(const Picture& p, float angle, Overflow overflow) {
  Picture out = p;
  const double radians = std::acos(0.0) * double(angle) / 90.0;
  const float c = float(std::cos(radians)), s = float(std::sin(radians));
  const float cx = 0.5f * float(p.width), cy = 0.5f * float(p.height);
  for (int y = 0; y < p.height; ++y)
    for (int x = 0; x < p.width; ++x) {
      const float u = float(x) - cx, v = float(y) - cy;
      PlainColour(p, u * c + v * s + cx, v * c - u * s + cy, overflow, out.At(x, y));
    }
  return out;
}

TEST(Rotate2, IsThatOfPlainTapsAtEveryAngle) {
  for (auto [w, h] : {std::pair{1, 1}, {1, 7}, {8, 1}, {19, 10}, {64, 37}, {130, 75}}) {
    const Picture picture = RandomPicture(w, h, w);
    for (float angle : {0.0f, 3.5f, 45.0f, 90.0f, 180.0f, 200.0f, -30.0f, 360000.0f})
      for (auto overflow : {kWrap, kClamp, kMirror}) {
        const Picture plain = PlainTurned(picture, angle, overflow);
        OnEveryMachine([&, w = w, h = h] {
          ASSERT_TRUE(Turned(picture, angle, overflow) == plain)
              << w << " x " << h << " by " << angle << ", method " << overflow;
        });
      }
    EXPECT_TRUE(Turned(picture, 0, kClamp) == picture);
  }
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
    return P::Rotate2(source, w, h, 10, kBilinear, kClamp, true, keep);
  };
  EXPECT_EQ(turn(nullptr, 4, 3, true), nullptr);
  EXPECT_EQ(turn(bitmap.get(), 5, 3, true), nullptr);
  EXPECT_EQ(turn(bitmap.get(), 0, -3, true), nullptr);
  EXPECT_NE(bitmap->GetLastStatus(), Gdiplus::Ok);
  EXPECT_EQ(turn(bitmap.get(), 4, 3, false), nullptr);
  EXPECT_EQ(Taken(turn(bitmap.get(), 4, 3, true)).width, 4);  // locks have ended
  // Angles without a sine bring no coordinate into the image.
  EXPECT_EQ(Turned(RandomPicture(4, 3), NAN, Overflow(0)).bytes, Bytes(48));
}

TEST(OverflowCoordinates, MovesBothAxesOfAPointThatIsOutside) {
  const auto expect = [](auto x, Overflow overflow, auto moved) {
    decltype(x) y = 3;
    Internals::OverflowCoordinates(x, y, overflow, 10, 8);
    EXPECT_EQ(x, moved);
    EXPECT_EQ(y, 3);
  };
  for (auto [x, overflow, moved] : {std::tuple{-1, kMirror, 1},
                                    {10, kMirror, 9},
                                    {23, kMirror, 6},
                                    {-3, kWrap, 7},
                                    {-20, kWrap, 0},
                                    {25, kWrap, 5},
                                    {INT_MIN, kClamp, 0},
                                    {INT_MAX, kClamp, 9},
                                    {12, Overflow(0), 12}})
    expect(std::int32_t{x}, overflow, moved);
  for (auto [x, overflow, moved] : {std::tuple{-1.5f, kMirror, 1.5f},
                                    {10.25f, kMirror, 8.75f},
                                    {-0.5f, kWrap, 9.5f},
                                    {9.5f, kClamp, 9.5f},
                                    {10.5f, kClamp, 9.0f}})
    expect(x, overflow, moved);
}

TEST(GetPixelColorInterpolated, DefinesEveryCoordinate) {
  const Bytes p = RandomBytes(36, 1);
  const auto colour = [&](float x, float y, Overflow overflow) {
    return Internals::GetPixelColorInterpolated(p.data(), 3, x, y, 3, 3, kBilinear, overflow);
  };
  for (float x : {-1.0f, -1e30f, 1e30f, float(INFINITY), NAN, 2.5f})
    for (float y : {-1e30f, 2.0f, NAN})
      for (int method = 3; method <= 7; ++method) colour(x, y, Overflow(method));
  EXPECT_EQ(colour(-7, -7, kClamp).rgbRed, p[2]);
}

TEST(Clone, TakesARectangleThatFits) {
  Picture picture = RandomPicture(9, 7);
  for (std::size_t i = 3; i < picture.bytes.size(); i += 4) picture.bytes[i] |= 1;
  const auto bitmap = MakeBitmap(picture);
  Picture part = Taken(P::Clone(bitmap.get(), 2, 3, 7, 4));
  ASSERT_EQ(part.bytes.size(), 4u * 7 * 4);
  for (int y = 0; y < 4; ++y)
    EXPECT_EQ(std::memcmp(part.At(0, y), picture.At(2, y + 3), 28), 0) << y;
  for (auto [x, y, w, h] :
       {std::array{2, 3, 8, 4}, {2, 3, 7, 5}, {-1, 0, 2, 2}, {0, 0, 0, 2}, {INT_MAX, 0, 2, 2}})
    EXPECT_EQ(P::Clone(bitmap.get(), x, y, w, h), nullptr);
  EXPECT_EQ(P::Clone(nullptr, 0, 0, 2, 2), nullptr);
}

TEST(RampleBit, EqualSizeIsTheSameBytesUnderTransparentPixelsToo) {
  Picture picture = RandomPicture(13, 7);
  for (std::size_t i = 3; i < picture.bytes.size(); i += 8) picture.bytes[i] = 0;
  EXPECT_EQ(Taken(P::RampleBit(MakeBitmap(picture).get(), 13, 7)), picture);
}

TEST(RampleBit, MissingPicturesAreBlankAndBadSizesHaveNoPixels) {
  EXPECT_EQ(P::RampleBit(nullptr, 4, 4), nullptr);
  Bitmap missing(L"no/such/file.jpg"), source(3, 3);
  EXPECT_EQ(Taken(P::RampleBit(&missing, 5, 4)), (Picture{5, 4, Bytes(80)}));
  for (auto [w, h] : {std::pair{0, 4}, {4, 0}, {-1, -1}}) {
    const std::unique_ptr<Bitmap> none(static_cast<Bitmap*>(P::RampleBit(&source, w, h)));
    ASSERT_TRUE(none);
    EXPECT_EQ(none->GetWidth(), 0);
  }
}

TEST(RampleBit, ScaledBordersComeFromThePictureItself) {
  const auto flat = [](int w, int h) {
    Picture picture{w, h, Bytes(4 * w * h, 180)};
    for (std::size_t i = 3; i < picture.bytes.size(); i += 4) picture.bytes[i] = 255;
    return picture;
  };
  for (int size : {1, 2, 9, 31})
    EXPECT_EQ(Taken(P::RampleBit(MakeBitmap(flat(5, 5)).get(), size, size + 1)),
              flat(size, size + 1));
}

Picture Gradient(int width, int height, int direction, std::vector<tagRGBQUAD> colors,
                 std::vector<double> stops) {
  return Taken(P::GetGradientImage(width, height, direction, int(colors.size()), colors.data(),
                                   stops.data(), 0));
}

// The blue of the rows, in each of which all pixels must be alike; -1 where it is not opaque.
std::vector<int> BlueRows(Picture picture) {
  std::vector<int> rows;
  for (int y = 0; y < picture.height; ++y) {
    const Byte* const row = picture.At(0, y);
    for (int x = 1; x < picture.width; ++x) EXPECT_EQ(std::memcmp(row, row + 4 * x, 4), 0);
    rows.push_back(row[3] == 255 ? row[0] : -1);
  }
  return rows;
}

TEST(GetGradientImage, StacksBandsByTheirHeights) {
  using Rows = std::vector<int>;
  const tagRGBQUAD black{}, blue{110, 0, 0, 0}, dark{60, 0, 0, 9};
  // A flat band of 4 rows, 10 rows of gradient, 2 left over.
  EXPECT_EQ(BlueRows(Gradient(3, 16, 1, {black, blue}, {0.25, 0.63, 0.1})),
            (Rows{0, 0, 0, 0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 110}));
  // Two gradients from the top on, and no band at the end: the rest stays empty.
  EXPECT_EQ(BlueRows(Gradient(2, 11, 1, {black, dark, black}, {0, 0.46, 0.46, 0})),
            (Rows{10, 20, 30, 40, 50, 50, 40, 30, 20, 10, -1}));
  EXPECT_EQ(BlueRows(Gradient(2, 4, 1, {dark}, {0.5, 1})), Rows(4, 60));
  EXPECT_EQ(BlueRows(Gradient(2, 3, 0, {black, blue}, {1, 1, 1})), Rows(3, -1));
  EXPECT_EQ(Gradient(0, 3, 1, {black}, {1, 1}), Picture());
  EXPECT_EQ(Gradient(2000000000, 2000000000, 1, {black}, {1, 1}), Picture());
  EXPECT_EQ(Gradient(3, 3, 1, {black, blue}, {-1e300, 1e300, 1e300}).width, 3);
}

}  // namespace
}  // namespace tintwerk::test

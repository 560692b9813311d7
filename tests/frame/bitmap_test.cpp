#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "frame/graphics.h"
#include "frame/material.h"
#include "tintwerk/platform.h"

namespace tintwerk {
namespace {

using Gdiplus::Bitmap;
using Gdiplus::BitmapData;
using Gdiplus::Rect;

constexpr unsigned kRead = 1, kWrite = 2, kReadWrite = 3;
constexpr auto kFormat = Gdiplus::PixelFormat32bppARGB;

// Every pixel tells where it stands.
void Number(Bitmap& bitmap) {
  const BitmapLock lock(&bitmap, kWrite);
  for (int y = 0; y < lock.Height(); ++y)
    for (int x = 0; x < lock.Width(); ++x) {
      const unsigned char pixel[] = {static_cast<unsigned char>(x), static_cast<unsigned char>(y),
                                     7, 200};
      std::memcpy(lock.Pixels() + 4 * (y * lock.Width() + x), pixel, 4);
    }
}

std::vector<unsigned char> Pixels(Bitmap& bitmap) {
  const BitmapLock lock(&bitmap);
  return {lock.Pixels(), lock.Pixels() + 4 * lock.Width() * lock.Height()};
}

TEST(Bitmap, BlankPicturesAreAllZeroAndSizesBelowOneHaveNoPixels) {
  Bitmap bitmap(3, 2);
  EXPECT_EQ(bitmap.GetLastStatus(), Gdiplus::Ok);
  EXPECT_EQ(Pixels(bitmap), std::vector<unsigned char>(24, 0));
  for (auto [w, h] : {std::pair{0, 5}, {5, 0}, {-3, 4}, {-3, -4}}) {
    Bitmap empty(w, h);
    BitmapData data;
    EXPECT_EQ(empty.GetLastStatus(), Gdiplus::InvalidParameter);
    EXPECT_EQ(empty.GetWidth(), 0);
    EXPECT_EQ(empty.LockBits(nullptr, kRead, kFormat, &data), Gdiplus::InvalidParameter);
    EXPECT_EQ(data.Scan0, nullptr);
    EXPECT_EQ(empty.RotateFlip(Gdiplus::Rotate90FlipNone), Gdiplus::InvalidParameter);
  }
  Bitmap missing(L"no/such/file.png");
  EXPECT_EQ(missing.GetLastStatus(), Gdiplus::FileNotFound);
  EXPECT_EQ(missing.GetHeight(), 0);
  EXPECT_NE(Bitmap(nullptr).GetLastStatus(), Gdiplus::Ok);
}

TEST(Bitmap, LocksOnRectanglesArePackedAndWriteBackByTheirMode) {
  for (unsigned mode : {kRead, kWrite, kReadWrite}) {
    Bitmap bitmap(7, 5);
    Number(bitmap);
    auto expected = Pixels(bitmap);
    const Rect rect{2, 1, 3, 4};
    BitmapData data;
    ASSERT_EQ(bitmap.LockBits(&rect, mode, kFormat, &data), Gdiplus::Ok);
    EXPECT_EQ(data.Width, 3u);
    EXPECT_EQ(data.Height, 4u);
    EXPECT_EQ(data.Stride, 12);
    auto* pixels = static_cast<unsigned char*>(data.Scan0);
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 3; ++x) {
        EXPECT_EQ(pixels[4 * (3 * y + x)], 2 + x);
        EXPECT_EQ(pixels[4 * (3 * y + x) + 1], 1 + y);
      }
    pixels[4 * (3 * 3 + 2) + 2] = 99;
    if (mode != kRead) expected[4 * (7 * 4 + 4) + 2] = 99;
    ASSERT_EQ(bitmap.UnlockBits(&data), Gdiplus::Ok);
    EXPECT_EQ(Pixels(bitmap), expected) << "mode " << mode;
  }
}

TEST(Bitmap, RefusedLocksLeaveAStatusAndNoPixels) {
  Bitmap bitmap(4, 4);
  BitmapData data, other;
  for (const Rect& rect : {Rect{-1, 0, 2, 2},
                           {0, 0, 5, 1},
                           {3, 0, 2, 1},
                           {0, 4, 1, 1},
                           {0, 0, 0, 1},
                           {0, 2147483647, 1, 2147483647}})
    EXPECT_EQ(bitmap.LockBits(&rect, kRead, kFormat, &data), Gdiplus::InvalidParameter);
  EXPECT_EQ(bitmap.LockBits(nullptr, 0, kFormat, &data), Gdiplus::InvalidParameter);
  EXPECT_EQ(bitmap.LockBits(nullptr, kRead, 137224, &data), Gdiplus::InvalidParameter);
  EXPECT_EQ(bitmap.LockBits(nullptr, kRead, kFormat, nullptr), Gdiplus::InvalidParameter);
  EXPECT_EQ(bitmap.UnlockBits(&data), Gdiplus::WrongState);
  ASSERT_EQ(bitmap.LockBits(nullptr, kRead, kFormat, &data), Gdiplus::Ok);
  EXPECT_EQ(bitmap.LockBits(nullptr, kRead, kFormat, &other), Gdiplus::WrongState);
  EXPECT_EQ(other.Scan0, nullptr);
  EXPECT_EQ(bitmap.RotateFlip(Gdiplus::Rotate90FlipNone), Gdiplus::WrongState);
  EXPECT_EQ(bitmap.GetLastStatus(), Gdiplus::WrongState);
  EXPECT_EQ(bitmap.UnlockBits(&data), Gdiplus::Ok);
}

TEST(Bitmap, TurnsClockwise) {
  for (auto [w, h] : {std::pair{1, 1}, {5, 3}, {3, 70}, {65, 33}}) {
    Bitmap bitmap(w, h);
    Number(bitmap);
    const auto before = Pixels(bitmap);
    ASSERT_EQ(bitmap.RotateFlip(Gdiplus::Rotate90FlipNone), Gdiplus::Ok);
    ASSERT_EQ(bitmap.GetWidth(), h);
    ASSERT_EQ(bitmap.GetHeight(), w);
    const auto turned = Pixels(bitmap);
    // The left column, read upwards, becomes the top row.
    for (int y = 0; y < w; ++y)
      for (int x = 0; x < h; ++x) {
        ASSERT_EQ(turned[4 * (h * y + x)], y);
        ASSERT_EQ(turned[4 * (h * y + x) + 1], h - 1 - x);
      }
    bitmap.RotateFlip(Gdiplus::Rotate270FlipNone);
    EXPECT_EQ(Pixels(bitmap), before);
    bitmap.RotateFlip(Gdiplus::Rotate180FlipNone);
    EXPECT_EQ(Pixels(bitmap)[0], w - 1);
    bitmap.RotateFlip(Gdiplus::Rotate270FlipNone);
    bitmap.RotateFlip(Gdiplus::Rotate270FlipNone);
    EXPECT_EQ(Pixels(bitmap), before);
  }
}

TEST(Graphics, DrawsEqualSizesByTheByteAndClips) {
  Bitmap source(4, 3), target(6, 6);
  Number(source);
  Graphics graphics(&target);
  ASSERT_EQ(graphics.DrawImage(&source, {-1, 4, 2, 3}, {1, 0, 2, 3}), Gdiplus::Ok);
  const auto pixels = Pixels(target);
  for (int y = 0; y < 6; ++y)
    for (int x = 0; x < 6; ++x) {
      const unsigned char* p = &pixels[4 * (6 * y + x)];
      const bool drawn = x == 0 && y >= 4;
      EXPECT_EQ(p[0], drawn ? 2 : 0);
      EXPECT_EQ(p[1], drawn ? y - 4 : 0);
      EXPECT_EQ(p[3], drawn ? 200 : 0);
    }
  EXPECT_EQ(graphics.DrawImage(&source, {0, 0, 2, 2}, {3, 0, 2, 2}), Gdiplus::InvalidParameter);
  EXPECT_EQ(graphics.DrawImage(nullptr, {0, 0, 2, 2}, {0, 0, 2, 2}), Gdiplus::InvalidParameter);
  EXPECT_EQ(graphics.DrawImage(&target, {0, 0, 2, 2}, {0, 0, 2, 2}), Gdiplus::WrongState);
  EXPECT_NE(Graphics(nullptr).Clear(0), Gdiplus::Ok);
}

TEST(Graphics, LaysTransparencyOverWhatIsThere) {
  Bitmap source(1, 1), target(1, 1);
  Graphics(&target).Clear(0xFF6496C8u);  // opaque: red 100, green 150, blue 200
  Graphics(&source).Clear(0x80FF0000u);
  ASSERT_EQ(Graphics(&target).DrawImage(&source, {0, 0, 1, 1}, {0, 0, 1, 1}), Gdiplus::Ok);
  // 128/255 of the red, the rest from below.
  EXPECT_EQ(Pixels(target), (std::vector<unsigned char>{100, 75, 178, 255}));
  Graphics(&target).Clear(0x40000000u);
  Graphics(&target).DrawImage(&source, {0, 0, 1, 1}, {0, 0, 1, 1});
  EXPECT_EQ(Pixels(target)[3], 160);  // 128 + 64 x 127 / 255
  EXPECT_EQ(Pixels(target)[2], 204);  // 255 x 128 / 160, to the nearest
}

TEST(Graphics, EnlargesAboutTheCentreInEveryMode) {
  // A horizontal ramp stays a ramp, half as steep, whichever kernel draws it.
  Bitmap source(64, 4);
  {
    const BitmapLock lock(&source, kWrite);
    for (int i = 0; i < 64 * 4; ++i)
      for (int c = 0; c < 4; ++c)
        lock.Pixels()[4 * i + c] = c == 3 ? 255 : static_cast<unsigned char>(4 * (i % 64));
  }
  for (auto mode : {InterpolationModeDefault, InterpolationModeHighQuality,
                    InterpolationModeHighQualityBicubic}) {
    Bitmap target(64, 4);
    Graphics graphics(&target);
    ASSERT_EQ(graphics.SetInterpolationMode(mode), Gdiplus::Ok);
    ASSERT_EQ(graphics.DrawImage(&source, {-32, -2, 128, 8}, {0, 0, 64, 4}), Gdiplus::Ok);
    const auto pixels = Pixels(target);
    for (int x = 0; x < 64; ++x) EXPECT_NEAR(pixels[4 * x], 4 * ((x + 32.5) / 2 - 0.5), 1) << mode;
  }
  EXPECT_EQ(Graphics(&source).SetInterpolationMode(InterpolationMode(5)),
            Gdiplus::InvalidParameter);
}

TEST(Graphics, FillsRectanglesWithBrushes) {
  Bitmap target(3, 12);
  Graphics graphics(&target);
  const LinearGradientBrush brush({0, 1}, {0, 11}, 0xFF000000u, 0xFF6432C8u);
  ASSERT_EQ(graphics.FillRectangle(brush, {1, 2, 1, 100}), Gdiplus::Ok);
  ASSERT_EQ(graphics.FillRectangle(SolidBrush(0xFF0102FFu), {-5, -5, 6, 6}), Gdiplus::Ok);
  const auto pixels = Pixels(target);
  auto red = [&](int x, int y) { return pixels[4 * (3 * y + x) + 2]; };
  EXPECT_EQ(red(1, 1), 0);   // above the rectangle
  EXPECT_EQ(red(1, 2), 10);  // one row below the start: one step into the gradient
  EXPECT_EQ(red(1, 10), 90);
  EXPECT_EQ(red(1, 11), 0);  // repeats
  EXPECT_EQ(pixels[4 * (3 * 10 + 1)], 180);
  EXPECT_EQ(pixels[3], 255);  // the solid corner
  EXPECT_EQ(pixels[0], 255);
  EXPECT_EQ(pixels[4 * 3 + 3], 0);  // beside it, row 1
  EXPECT_EQ(red(2, 5), 0);
  // Along rows.
  const LinearGradientBrush across({0, 0}, {10, 0}, 0xFF000000u, 0xFF6432C8u);
  ASSERT_EQ(graphics.FillRectangle(across, {1, 4, 9, 1}), Gdiplus::Ok);
  const auto after = Pixels(target);
  EXPECT_EQ(after[4 * (3 * 4 + 1) + 2], 10);
  EXPECT_EQ(after[4 * (3 * 4 + 2) + 2], 20);
}

}  // namespace
}  // namespace tintwerk

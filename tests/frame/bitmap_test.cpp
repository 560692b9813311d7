#include <gtest/gtest.h>

#include "frame/graphics.h"
#include "support/resource_root.h"

namespace tintwerk {
namespace {

using Gdiplus::Bitmap;
using Gdiplus::BitmapData;
using Gdiplus::Rect;
using test::Bytes;
using test::Picture;
using test::PictureOf;

constexpr unsigned kRead = 1, kWrite = 2, kReadWrite = 3;
constexpr auto kFormat = Gdiplus::PixelFormat32bppARGB;

// Every pixel tells where it stands.
Picture Numbered(int width, int height) {
  Picture picture{width, height, {}};
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      for (int byte : {x, y, 7, 200}) picture.bytes.push_back(static_cast<unsigned char>(byte));
  return picture;
}

TEST(Bitmap, BlankPicturesAreAllZeroAndSizesBelowOneHaveNoPixels) {
  Bitmap bitmap(3, 2);
  EXPECT_EQ(bitmap.GetLastStatus(), Gdiplus::Ok);
  EXPECT_EQ(PictureOf(&bitmap), (Picture{3, 2, Bytes(24)}));
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
    Picture expected = Numbered(7, 5);
    const auto bitmap = test::BitmapOf(expected);
    const Rect rect{2, 1, 3, 4};
    BitmapData data;
    ASSERT_EQ(bitmap->LockBits(&rect, mode, kFormat, &data), Gdiplus::Ok);
    EXPECT_EQ(data.Width, 3u);
    EXPECT_EQ(data.Height, 4u);
    EXPECT_EQ(data.Stride, 12);
    auto* const pixels = static_cast<unsigned char*>(data.Scan0);
    for (int i = 0; i < 12; ++i) {
      EXPECT_EQ(pixels[4 * i], 2 + i % 3);
      EXPECT_EQ(pixels[4 * i + 1], 1 + i / 3);
    }
    pixels[4 * (3 * 3 + 2) + 2] = 99;
    if (mode != kRead) expected.At(4, 4)[2] = 99;
    ASSERT_EQ(bitmap->UnlockBits(&data), Gdiplus::Ok);
    EXPECT_EQ(PictureOf(bitmap.get()), expected) << "mode " << mode;
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
    const Picture before = Numbered(w, h);
    const auto bitmap = test::BitmapOf(before);
    ASSERT_EQ(bitmap->RotateFlip(Gdiplus::Rotate90FlipNone), Gdiplus::Ok);
    // The left column, read upwards, becomes the top row.
    Picture turned{h, w, {}};
    for (int y = 0; y < w; ++y)
      for (int x = 0; x < h; ++x)
        for (int byte : {y, h - 1 - x, 7, 200})
          turned.bytes.push_back(static_cast<unsigned char>(byte));
    EXPECT_EQ(PictureOf(bitmap.get()), turned);
    bitmap->RotateFlip(Gdiplus::Rotate270FlipNone);
    EXPECT_EQ(PictureOf(bitmap.get()), before);
    bitmap->RotateFlip(Gdiplus::Rotate180FlipNone);
    EXPECT_EQ(PictureOf(bitmap.get()).bytes[0], w - 1);
    for (int turn = 0; turn < 2; ++turn) bitmap->RotateFlip(Gdiplus::Rotate270FlipNone);
    EXPECT_EQ(PictureOf(bitmap.get()), before);
  }
}

TEST(Graphics, DrawsEqualSizesByTheByteAndClips) {
  const auto source = test::BitmapOf(Numbered(4, 3));
  Bitmap target(6, 6);
  Graphics graphics(&target);
  ASSERT_EQ(graphics.DrawImage(source.get(), {-1, 4, 2, 3}, {1, 0, 2, 3}), Gdiplus::Ok);
  Picture expected{6, 6, Bytes(4 * 36)};
  for (int y : {0, 1}) std::copy_n(Numbered(4, 3).At(2, y), 4, expected.At(0, 4 + y));
  EXPECT_EQ(PictureOf(&target), expected);
  EXPECT_EQ(graphics.DrawImage(source.get(), {0, 0, 2, 2}, {3, 0, 2, 2}),
            Gdiplus::InvalidParameter);
  EXPECT_EQ(graphics.DrawImage(nullptr, {0, 0, 2, 2}, {0, 0, 2, 2}), Gdiplus::InvalidParameter);
  EXPECT_EQ(graphics.DrawImage(&target, {0, 0, 2, 2}, {0, 0, 2, 2}), Gdiplus::WrongState);
  EXPECT_NE(Graphics(nullptr).Clear(0), Gdiplus::Ok);
}

TEST(Graphics, LaysTransparencyOverWhatIsThere) {
  Bitmap source(1, 1), target(1, 1);
  Graphics(&source).Clear(0x80FF0000u);
  // 128/255 of the red, the rest from below; alpha 128 + 64 x 127 / 255, red 255 x 128 / 160.
  for (const auto& [below, drawn] :
       {std::pair{0xFF6496C8u, Bytes{100, 75, 178, 255}}, {0x40000000u, Bytes{0, 0, 204, 160}}}) {
    Graphics(&target).Clear(below);
    ASSERT_EQ(Graphics(&target).DrawImage(&source, {0, 0, 1, 1}, {0, 0, 1, 1}), Gdiplus::Ok);
    EXPECT_EQ(PictureOf(&target).bytes, drawn);
  }
}

TEST(Graphics, EnlargesAboutTheCentreInEveryMode) {
  // A horizontal ramp stays a ramp, half as steep, whichever kernel draws it.
  Picture ramp{64, 4, Bytes(4 * 64 * 4, 255)};
  for (int i = 0; i < 64 * 4; ++i)
    std::fill_n(&ramp.bytes[std::size_t(4 * i)], 3, static_cast<unsigned char>(4 * (i % 64)));
  const auto source = test::BitmapOf(ramp);
  for (auto mode : {InterpolationModeDefault, InterpolationModeHighQuality,
                    InterpolationModeHighQualityBicubic}) {
    Bitmap target(64, 4);
    Graphics graphics(&target);
    ASSERT_EQ(graphics.SetInterpolationMode(mode), Gdiplus::Ok);
    ASSERT_EQ(graphics.DrawImage(source.get(), {-32, -2, 128, 8}, {0, 0, 64, 4}), Gdiplus::Ok);
    const Bytes pixels = PictureOf(&target).bytes;
    for (int x = 0; x < 64; ++x) EXPECT_NEAR(pixels[4 * x], 4 * ((x + 32.5) / 2 - 0.5), 1) << mode;
  }
  EXPECT_EQ(Graphics(source.get()).SetInterpolationMode(InterpolationMode(5)),
            Gdiplus::InvalidParameter);
}

TEST(Graphics, FillsRectanglesWithBrushes) {
  Bitmap target(3, 12);
  Graphics graphics(&target);
  const LinearGradientBrush down({0, 1}, {0, 11}, 0xFF000000u, 0xFF6432C8u);
  const LinearGradientBrush across({0, 0}, {10, 0}, 0xFF000000u, 0xFF6432C8u);
  ASSERT_EQ(graphics.FillRectangle(down, {1, 2, 1, 100}), Gdiplus::Ok);
  ASSERT_EQ(graphics.FillRectangle(SolidBrush(0xFF0102FFu), {-5, -5, 6, 6}), Gdiplus::Ok);
  ASSERT_EQ(graphics.FillRectangle(across, {1, 4, 9, 1}), Gdiplus::Ok);
  struct Place {
    int x, y;
    Bytes colour;
  };
  Picture filled = PictureOf(&target);
  for (const auto& [x, y, colour] : {Place{0, 0, {255, 2, 1, 255}},
                                     {0, 1, {0, 0, 0, 0}},
                                     {1, 1, {0, 0, 0, 0}},      // above the gradient
                                     {1, 2, {20, 5, 10, 255}},  // one step into it
                                     {1, 10, {180, 45, 90, 255}},
                                     {1, 11, {0, 0, 0, 255}},  // repeats
                                     {2, 5, {0, 0, 0, 0}},
                                     {1, 4, {20, 5, 10, 255}},  // along the row
                                     {2, 4, {40, 10, 20, 255}}})
    EXPECT_EQ(Bytes(filled.At(x, y), filled.At(x, y) + 4), colour) << x << ", " << y;
}

}  // namespace
}  // namespace tintwerk

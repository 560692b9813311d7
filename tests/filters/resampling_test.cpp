#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "frame/material.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/platform.h"

namespace {

using Gdiplus::Bitmap;
using tintwerk::BitmapLock;

std::unique_ptr<Bitmap> Ramp(Bitmap& source, int width, int height) {
  return std::unique_ptr<Bitmap>(
      static_cast<Bitmap*>(CPixelProcess::RampleBit(&source, width, height)));
}

TEST(RampleBit, EqualSizeIsTheSameBytesUnderTransparentPixelsToo) {
  Bitmap source(13, 7);
  std::mt19937 random(1);
  {
    const BitmapLock lock(&source, Gdiplus::ImageLockModeWrite);
    for (int i = 0; i < 13 * 7 * 4; ++i)
      lock.Pixels()[i] = i % 8 == 3 ? 0 : static_cast<unsigned char>(random());
  }
  const auto copy = Ramp(source, 13, 7);
  const BitmapLock a(&source), b(copy.get());
  EXPECT_EQ(std::memcmp(a.Pixels(), b.Pixels(), 13 * 7 * 4), 0);
}

TEST(RampleBit, MissingPicturesAreBlankAndBadSizesHaveNoPixels) {
  EXPECT_EQ(CPixelProcess::RampleBit(nullptr, 4, 4), nullptr);
  Bitmap missing(L"no/such/file.jpg");
  const auto blank = Ramp(missing, 5, 4);
  ASSERT_TRUE(blank);
  const BitmapLock lock(blank.get());
  ASSERT_EQ(lock.Width(), 5);
  EXPECT_EQ(std::vector<unsigned char>(lock.Pixels(), lock.Pixels() + 80),
            std::vector<unsigned char>(80, 0));
  Bitmap source(3, 3);
  for (auto [w, h] : {std::pair{0, 4}, {4, 0}, {-1, -1}}) {
    const auto none = Ramp(source, w, h);
    ASSERT_TRUE(none);
    EXPECT_EQ(none->GetWidth(), 0);
  }
}

TEST(RampleBit, ScaledBordersComeFromThePictureItself) {
  Bitmap source(5, 5);
  {
    const BitmapLock lock(&source, Gdiplus::ImageLockModeWrite);
    std::memset(lock.Pixels(), 180, 100);
    for (int i = 3; i < 100; i += 4) lock.Pixels()[i] = 255;
  }
  for (int size : {1, 2, 9, 31}) {
    const auto scaled = Ramp(source, size, size + 1);
    const BitmapLock lock(scaled.get());
    for (int i = 0; i < 4 * size * (size + 1); ++i)
      ASSERT_EQ(lock.Pixels()[i], i % 4 == 3 ? 255 : 180);
  }
}

}  // namespace

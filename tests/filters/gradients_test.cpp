#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <omp.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "frame/material.h"
#include "pixel/progress_recorder.h"
#include "support/image_files.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::RandomBytes;

// The tone that the zoom blur ends with, learnt from one opaque pixel.
int ZoomTone(unsigned char value) {
  unsigned char target[4] = {}, source[4] = {value, value, value, 255};
  CPixelProcess::RadiusZoomBlur(target, source, source, 1, 1, nullptr, 0, 100);
  EXPECT_EQ(target[3], 255);
  return target[0];
}

Bytes PlainZoom(Bytes target, const Bytes& colors, const Bytes& alphas, int width, int height) {
  int tone[256];
  for (int i = 0; i < 256; ++i) tone[i] = ZoomTone(static_cast<unsigned char>(i));
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      int dx = (x << 16) - (width << 15), dy = (y << 16) - (height << 15);
      unsigned sums[4] = {};
      int column = x, row = y;
      for (int i = 0;; ++i) {
        const std::size_t at = 4 * (std::size_t(row) * width + column);
        for (int c = 0; c < 3; ++c) sums[c] += colors[at + c] * alphas[at + 3];
        sums[3] += alphas[at + 3];
        if (i == 96) break;
        dx -= ((dx >> 4) * 100) >> 10;
        dy -= ((dy >> 4) * 100) >> 10;
        column = (dx + (width << 15) + 32768) >> 16;
        row = (dy + (height << 15) + 32768) >> 16;
      }
      unsigned char* const pixel = &target[4 * (std::size_t(y) * width + x)];
      for (int c = 0; c < 3; ++c)
        pixel[c] = static_cast<unsigned char>(tone[sums[3] ? sums[c] / sums[3] : pixel[c]]);
      pixel[3] = static_cast<unsigned char>(sums[3] / 97);
    }
  return target;
}

TEST(RadiusZoomBlur, MatchesTheDefinition) {
  const int before = omp_get_max_threads();
  for (auto [width, height] : {std::pair{1, 1}, {1, 50}, {37, 1}, {140, 35}, {61, 80}}) {
    const std::size_t count = std::size_t{4} * width * height;
    const Bytes target = RandomBytes(count + 64, 1), colors = RandomBytes(count, 2);
    Bytes alphas = RandomBytes(count, 3);
    for (std::size_t i = 3; i < count; i += 4)  // blank on the left, where nothing may be seen
      if (i / 4 % width < std::size_t(width) / 3 || i % 3 == 0) alphas[i] = 0;
    omp_set_num_threads(1);
    const Bytes expected = PlainZoom(target, colors, alphas, width, height);
    for (std::int64_t targets = hwy::SupportedTargets(); targets != 0; targets &= targets - 1) {
      hwy::SetSupportedTargetsForTest(targets & -targets);
      hwy::GetChosenTarget().Update(hwy::SupportedTargets());
      for (int threads : {1, 3}) {
        omp_set_num_threads(threads);
        Bytes blurred = target;
        EXPECT_EQ(CPixelProcess::RadiusZoomBlur(blurred.data(), colors.data(), alphas.data(), width,
                                                height, nullptr, 0, 100),
                  1);
        EXPECT_TRUE(blurred == expected) << width << " x " << height;
      }
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    omp_set_num_threads(before);
  }
}

TEST(RadiusZoomBlur, ColourGoesThroughAnSCurve) {
  for (auto [in, out] :
       {std::pair{0, 0}, {15, 3}, {64, 29}, {127, 126}, {128, 127}, {192, 228}, {255, 255}})
    EXPECT_EQ(ZoomTone(static_cast<unsigned char>(in)), out);
  unsigned char target[4] = {64, 128, 192, 9};
  const unsigned char clear[4] = {1, 2, 3, 0};
  CPixelProcess::RadiusZoomBlur(target, clear, clear, 1, 1, nullptr, 0, 100);
  EXPECT_EQ(Bytes(target, target + 4), (Bytes{29, 127, 228, 0}));
}

TEST(RadiusZoomBlur, RefusesNulls) {
  unsigned char pixel[4] = {};
  EXPECT_EQ(CPixelProcess::RadiusZoomBlur(nullptr, pixel, pixel, 1, 1, nullptr, 0, 100), 0);
  EXPECT_EQ(CPixelProcess::RadiusZoomBlur(pixel, nullptr, pixel, 1, 1, nullptr, 0, 100), 0);
  EXPECT_EQ(CPixelProcess::RadiusZoomBlur(pixel, pixel, nullptr, 1, 1, nullptr, 0, 100), 0);
  EXPECT_EQ(CPixelProcess::RadiusZoomBlur(pixel, pixel, pixel, 65536, 65536, nullptr, 0, 100), 0);
  EXPECT_EQ(CPixelProcess::RadiusZoomBlur(pixel, pixel, pixel, -1, 4, nullptr, 0, 100), 1);
}

constexpr tagRGBQUAD kTop{10, 250, 31, 77}, kBottom{200, 3, 100, 99}, kThird{90, 91, 92, 1};

TEST(CreateGradientImage, RunsFromTheFirstColourTowardTheSecond) {
  const tagRGBQUAD colors[] = {kTop, kBottom};
  for (int height : {1, 7, 40, 399}) {
    Bytes image = RandomBytes(4 * 3 * height, 4), expected = image;
    for (int i = 0; i < 3 * height; ++i) {
      const double t = double(height - i / 3) / height;
      expected[4 * i] = static_cast<unsigned char>(kBottom.rgbBlue * (1.0 - t) + kTop.rgbBlue * t);
      expected[4 * i + 1] =
          static_cast<unsigned char>(kBottom.rgbGreen * (1.0 - t) + kTop.rgbGreen * t);
      expected[4 * i + 2] =
          static_cast<unsigned char>(kBottom.rgbRed * (1.0 - t) + kTop.rgbRed * t);
    }
    EXPECT_EQ(CPixelProcess::CreateGradientImage(image.data(), 3, height, colors, nullptr, 0, 100),
              1);
    EXPECT_TRUE(image == expected);
    EXPECT_EQ(Bytes(image.begin(), image.begin() + 3), (Bytes{10, 250, 31}));
    ProgressRecorder host;
    host.stopAt = height > 40 ? 2 : 0;
    std::fill(image.begin(), image.end(), static_cast<unsigned char>(5));
    EXPECT_EQ(CPixelProcess::CreateGradientImage(image.data(), 3, height, colors, &host, 0, 100),
              0);
    const std::size_t done = height > 40 ? 2 * (399 / 20) + 1 : 1;
    EXPECT_EQ(host.positions.size(), height > 40 ? 2u : 0u);
    for (std::size_t i = 0; i < image.size(); ++i)
      EXPECT_EQ(image[i], i < 12 * done && i % 4 != 3 ? expected[i] : 5) << i;
  }
  EXPECT_EQ(CPixelProcess::CreateGradientImage(nullptr, 3, 3, colors, nullptr, 0, 100), 0);
}

std::unique_ptr<Gdiplus::Bitmap> Gradient(int width, int height, int direction,
                                          std::vector<tagRGBQUAD> colors,
                                          std::vector<double> stops) {
  return std::unique_ptr<Gdiplus::Bitmap>(static_cast<Gdiplus::Bitmap*>(
      CPixelProcess::GetGradientImage(width, height, direction, static_cast<int>(colors.size()),
                                      colors.data(), stops.data(), 0)));
}

// The blue of a row, all of whose pixels must be alike.
std::vector<int> BlueRows(Gdiplus::Bitmap* bitmap) {
  const BitmapLock lock(bitmap);
  std::vector<int> rows;
  for (int y = 0; y < lock.Height(); ++y) {
    const unsigned char* row = lock.Pixels() + std::size_t{4} * lock.Width() * y;
    for (int x = 1; x < lock.Width(); ++x)
      EXPECT_EQ(Bytes(row, row + 4), Bytes(row + 4 * x, row + 4 * x + 4));
    rows.push_back(row[3] == 255 ? row[0] : -1);
  }
  return rows;
}

TEST(GetGradientImage, StacksBandsByTheirHeights) {
  // A flat band of 4 rows, 10 rows of gradient, 2 left over.
  const auto flat = Gradient(3, 16, 1, {{0, 0, 0, 0}, {110, 0, 0, 0}}, {0.25, 0.63, 0.1});
  ASSERT_TRUE(flat);
  EXPECT_EQ(BlueRows(flat.get()),
            (std::vector<int>{0, 0, 0, 0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 110}));
  // Two gradients from the top on, and no band at the end: the rest stays empty.
  const auto two =
      Gradient(2, 11, 1, {{0, 0, 0, 9}, {60, 0, 0, 9}, {0, 0, 0, 9}}, {0, 0.46, 0.46, 0});
  ASSERT_TRUE(two);
  EXPECT_EQ(BlueRows(two.get()), (std::vector<int>{10, 20, 30, 40, 50, 50, 40, 30, 20, 10, -1}));
  const auto one = Gradient(2, 4, 1, {kThird}, {0.5, 1});
  EXPECT_EQ(BlueRows(one.get()), std::vector<int>(4, 90));
}

TEST(GetGradientImage, OtherDirectionsAreEmptyAndBadSizesFail) {
  EXPECT_EQ(BlueRows(Gradient(2, 3, 0, {kTop, kBottom}, {1, 1, 1}).get()), std::vector<int>(3, -1));
  EXPECT_FALSE(Gradient(0, 3, 1, {kTop}, {1, 1}));
  EXPECT_FALSE(Gradient(2000000000, 2000000000, 1, {kTop}, {1, 1}));
  EXPECT_TRUE(Gradient(3, 3, 1, {kTop, kBottom}, {-1e300, 1e300, 1e300}));
}

}  // namespace
}  // namespace tintwerk

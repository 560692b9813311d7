#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "filters/machines.h"
#include "pixel/progress_recorder.h"
#include "pixel/truncate.h"
#include "support/image_files.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

std::vector<std::int64_t> PlainKernel(float radius) {
  if (radius > 50.5f) radius = 50;
  if (!(radius >= 0.1f)) return {1};
  const int size = int(radius * 5.0f + 1.0f + 0.5f) | 1, half = size / 2;
  const float spread = (radius + radius) * radius;
  const float peak = std::exp(float(half * half) / spread);
  if (255.0 * peak > 2147483647.0) return {1};
  std::vector<std::int64_t> kernel(size);
  kernel[half] = int(peak + 0.5f);
  for (int i = 1; i <= half; ++i)
    kernel[half - i] = kernel[half + i] = int(std::exp(-float(i * i) / spread) * peak + 0.5f);
  return kernel;
}

Bytes PlainLine(const Bytes& s, const std::vector<std::int64_t>& kernel) {
  const int n = int(s.size()), m = std::min(n / 2, int(kernel.size()) / 2);
  std::int64_t kernelSum = 0;
  for (std::int64_t w : kernel) kernelSum += w;
  Bytes out(n);
  for (int i = 0; i < n; ++i) {
    const int first = i < m ? 0 : std::max(i - m, 0);
    const int end = i < m ? std::min(n, m + i) : i < n - m ? i + m + 1 : n;
    std::int64_t sum = 0, weights = 0;
    for (int k = first; k < end; ++k) {
      const std::int64_t w = kernel[(i < m ? m - i : 0) + k - first];
      sum += w * s[k];
      weights += w;
    }
    if (m <= i && i < n - m) weights = kernelSum;
    out[i] = static_cast<unsigned char>(sum / std::max<std::int64_t>(weights, 1));
  }
  return out;
}

void PlainPass(Picture& picture, int c, const std::vector<std::int64_t>& kernel, bool columns) {
  const int n = columns ? picture.height : picture.width;
  for (int line = 0; line < (columns ? picture.width : picture.height); ++line) {
    Bytes s(n);
    const auto at = [&](int i) {
      return columns ? picture.At(line, i) + c : picture.At(i, line) + c;
    };
    for (int i = 0; i < n; ++i) s[i] = *at(i);
    s = PlainLine(s, kernel);
    for (int i = 0; i < n; ++i) *at(i) = s[i];
  }
}

Picture PlainSharpened(Picture picture, const Picture& blurred, float amount) {
  for (std::size_t i = 0; i < picture.bytes.size(); ++i) {
    if (i % 4 == 3) continue;
    const float v = float(picture.bytes[i]) * (amount + 1.0f) - float(blurred.bytes[i]) * amount;
    picture.bytes[i] = static_cast<unsigned char>(std::clamp(Truncate(v), 0, 255));
  }
  return picture;
}

TEST(UsmSharp, IsThatOfPlainLinesAtEveryRadius) {
  for (auto [w, h] : {std::pair{1, 1}, {1, 13}, {13, 1}, {37, 29}, {300, 5}, {9, 270}}) {
    const Picture picture = RandomPicture(w, h, 7 * w + h);
    for (float radius : {-1.0f, 0.0f, 0.05f, 0.1f, 0.16f, 0.17f, 0.2f, 0.3f, 0.5f, 1.0f, 3.3f,
                         20.0f, 50.0f, 1e9f, NAN}) {
      SCOPED_TRACE(testing::Message() << w << " x " << h << ", radius " << radius);
      Picture soft = picture;
      for (int c = 0; c < 3; ++c) PlainPass(soft, c, PlainKernel(radius), false);
      for (int c = 0; c < 3; ++c) PlainPass(soft, c, PlainKernel(radius), true);
      OnEveryMachine([&, w = w, h = h] {
        unsigned char* blurred = nullptr;
        for (float amount : {0.0f, 1.3f, -0.4f, 1e30f}) {  // all but the first use the kept blur
          Picture sharp = picture;
          sharp.bytes.resize(sharp.bytes.size() + 64, 0xCD);
          unsigned char* const pixels = sharp.bytes.data();
          ASSERT_EQ(
              CPixelProcess::UsmSharp(pixels, w, h, radius, amount, &blurred, nullptr, 0, 100),
              pixels);
          ASSERT_EQ(Bytes(sharp.bytes.end() - 64, sharp.bytes.end()), Bytes(64, 0xCD));
          sharp.bytes.erase(sharp.bytes.end() - 64, sharp.bytes.end());
          ASSERT_TRUE(sharp == PlainSharpened(picture, soft, amount)) << amount;
        }
        for (std::size_t i = 0; i < soft.bytes.size(); ++i)
          ASSERT_TRUE(i % 4 == 3 || blurred[i] == soft.bytes[i]) << i;
        EXPECT_EQ(CPixelProcess::FreeUsmSharp(blurred), 1);
      });
    }
  }
}

TEST(UsmSharp, BlursByAKernelOfWholeNumbers) {
  Picture line{15, 15, Bytes(900)};
  for (int y = 0; y < 15; ++y) line.At(7, y)[1] = 226;
  unsigned char* blurred = nullptr;
  CPixelProcess::UsmSharp(line.bytes.data(), 15, 15, 1.0f, 0, &blurred, nullptr, 0, 100);
  const int kernel[] = {0, 1, 12, 55, 90, 55, 12, 1, 0};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(blurred[4 * (15 * 7 + i + 3) + 1], kernel[i]);
  CPixelProcess::FreeUsmSharp(blurred);
  EXPECT_EQ(CPixelProcess::FreeUsmSharp(nullptr), 0);
}

TEST(UsmSharp, AStopLeavesTheChannelsThatItHasNotReached) {
  const int w = 11, h = 45;
  const Picture picture = RandomPicture(w, h, 3);
  const auto kernel = PlainKernel(1.5f);
  for (int stopAt = 0; stopAt <= 6; ++stopAt) {
    // Questions 0..2 follow the channels of the row pass; a stop skips what is left of a pass.
    std::vector<float> positions;
    Picture soft = picture;
    int question = 0;
    for (bool columns : {false, true})
      for (int c = 0; c < 3; ++c) {
        PlainPass(soft, c, kernel, columns);
        if (question++ == stopAt) break;
        positions.push_back(10 + 36);
      }
    for (int y = 0; y < h; y += 2) positions.push_back(float(y) * (54.0f / 45) + 46);
    ProgressRecorder recorder;
    recorder.stopAt = stopAt;
    Picture sharp = picture;
    unsigned char* blurred = nullptr;
    CPixelProcess::UsmSharp(sharp.bytes.data(), w, h, 1.5f, 0.8f, &blurred, &recorder, 10, 100);
    EXPECT_TRUE(sharp == PlainSharpened(picture, soft, 0.8f)) << stopAt;
    EXPECT_EQ(recorder.positions, positions) << stopAt;

    ProgressRecorder again;  // with the blur at hand nobody is asked
    again.stopAt = 0;
    sharp = picture;
    CPixelProcess::UsmSharp(sharp.bytes.data(), w, h, 1.5f, 0.8f, &blurred, &again, 10, 100);
    EXPECT_TRUE(sharp == PlainSharpened(picture, soft, 0.8f)) << stopAt;
    EXPECT_EQ(again.questions, 0);
    EXPECT_EQ(again.positions.front(), 10);
    EXPECT_EQ(again.positions.size(), 23u);
    CPixelProcess::FreeUsmSharp(blurred);
  }
}

TEST(UsmSharp, RefusesWhatItCannotWork) {
  Picture picture = RandomPicture(2, 2);
  unsigned char* blurred = nullptr;
  EXPECT_EQ(CPixelProcess::UsmSharp(nullptr, 2, 2, 1, 1, &blurred, nullptr, 0, 100), nullptr);
  EXPECT_EQ(CPixelProcess::UsmSharp(picture.bytes.data(), 2, 2, 1, 1, nullptr, nullptr, 0, 100),
            nullptr);
  EXPECT_EQ(
      CPixelProcess::UsmSharp(picture.bytes.data(), 65536, 65536, 1, 1, &blurred, nullptr, 0, 100),
      nullptr);
  EXPECT_EQ(blurred, nullptr);
  EXPECT_EQ(CPixelProcess::UsmSharp(picture.bytes.data(), -2, 2, 1, 1, &blurred, nullptr, 0, 100),
            picture.bytes.data());
  EXPECT_EQ(CPixelProcess::FreeUsmSharp(blurred), 1);
}

TEST(Sharp, RoundsDownInFixedPoint) {
  for (auto [w, h] : {std::pair{1, 1}, {5, 3}, {67, 9}}) {
    const Picture picture = RandomPicture(w, h, 1), soft = RandomPicture(w, h, 2);
    for (float amount : {0.0f, 0.3f, -0.5f, 7.0f, 1000.0f, 1e20f}) {
      const std::int32_t s = Truncate(amount * 16384.0f + 0.5f);
      Picture plain = picture;
      for (std::size_t i = 0; i < plain.bytes.size(); ++i) {
        if (i % 4 == 3) continue;
        const std::uint32_t v =
            picture.bytes[i] * (std::uint32_t(s) + 16384u) - soft.bytes[i] * std::uint32_t(s);
        plain.bytes[i] = static_cast<unsigned char>(std::clamp(std::int32_t(v) >> 14, 0, 255));
      }
      OnEveryMachine([&, w = w, h = h] {
        Picture sharp = picture;
        SFDSP::Sharp(sharp.bytes.data(), soft.bytes.data(), w, h, amount);
        ASSERT_TRUE(sharp == plain) << amount;
      });
    }
    Picture same = picture;
    SFDSP::Sharp(same.bytes.data(), picture.bytes.data(), w, h, 0.7f);
    EXPECT_TRUE(same == picture);
  }
  SFDSP::Sharp(nullptr, nullptr, 3, 3, 1);
}

}  // namespace
}  // namespace tintwerk::test

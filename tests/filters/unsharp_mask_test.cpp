#include <cmath>
#include <cstdlib>

#include "pixel/truncate.h"
#include "support/operations.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using P = CPixelProcess;
using Kernel = std::vector<std::int64_t>;

Kernel PlainKernel(float radius) {
  if (radius > 50.5f) radius = 50;
  if (!(radius >= 0.1f)) return {1};
  const int size = int(radius * 5.0f + 1.0f + 0.5f) | 1, half = size / 2;
  const float spread = (radius + radius) * radius;
  const float peak = std::exp(float(half * half) / spread);
  if (255.0 * peak > 2147483647.0) return {1};
  Kernel kernel(size);
  for (int i = -half; i <= half; ++i)
    kernel[half + i] = int(i ? std::exp(-float(i * i) / spread) * peak + 0.5f : peak + 0.5f);
  return kernel;
}

Bytes PlainLine(const Bytes& s, const Kernel& kernel) {
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
    out[i] = Byte(sum / std::max<std::int64_t>(weights, 1));
  }
  return out;
}

void PlainPass(Picture& p, int c, const Kernel& kernel, bool columns) {
  const auto line = [&](const Bytes& samples) { return PlainLine(samples, kernel); };
  if (columns)
    EachLine(&p.bytes[c], p.width, 4, p.height, 4 * p.width, line);
  else
    EachLine(&p.bytes[c], p.height, 4 * p.width, p.width, 4, line);
}

// The colours c of an image with those of its blur b: mix(c, b).
template <class Mix>
Bytes Mixed(Bytes image, const Bytes& blur, const Mix& mix) {
  for (std::size_t i = 0; i < image.size(); ++i)
    if (i % 4 != 3) image[i] = Byte(std::clamp<int>(mix(image[i], blur[i]), 0, 255));
  return image;
}
Bytes PlainSharpened(const Picture& picture, const Picture& blurred, float amount) {
  return Mixed(picture.bytes, blurred.bytes, [=](int c, int b) {
    return Truncate(float(c) * (amount + 1.0f) - float(b) * amount);
  });
}

TEST(UsmSharp, IsThatOfPlainLinesAtEveryRadius) {
  for (auto [w, h] : {std::pair{1, 1}, {1, 13}, {13, 1}, {37, 29}, {300, 5}, {9, 270}}) {
    const Picture picture = RandomPicture(w, h, 7 * w + h);
    for (float radius : {-1.0f, 0.0f, 0.05f, 0.1f, 0.16f, 0.17f, 0.2f, 0.3f, 0.5f, 1.0f, 3.3f,
                         20.0f, 50.0f, 1e9f, NAN}) {
      SCOPED_TRACE(testing::Message() << w << " x " << h << ", radius " << radius);
      Picture soft = picture;
      for (int pass = 0; pass < 6; ++pass) PlainPass(soft, pass % 3, PlainKernel(radius), pass > 2);
      OnEveryMachine([&, w = w, h = h] {
        Byte* blurred = nullptr;
        for (float amount : {0.0f, 1.3f, -0.4f, 1e30f})  // all but the first use the kept blur
          ASSERT_TRUE(PlainSharpened(picture, soft, amount) ==
                      Guarded(picture.bytes,
                              [&](Byte* p) {
                                ASSERT_EQ(
                                    P::UsmSharp(p, w, h, radius, amount, &blurred, nullptr, 0, 100),
                                    p);
                              }))
              << amount;
        for (std::size_t i = 0; i < soft.bytes.size(); ++i)
          ASSERT_TRUE(i % 4 == 3 || blurred[i] == soft.bytes[i]) << i;
        EXPECT_EQ(P::FreeUsmSharp(blurred), 1);
      });
    }
  }
}

TEST(UsmSharp, BlursByAKernelOfWholeNumbers) {
  Picture line{15, 15, Bytes(900)};
  for (int y = 0; y < 15; ++y) line.At(7, y)[1] = 226;
  Byte* blurred = nullptr;
  P::UsmSharp(line.bytes.data(), 15, 15, 1.0f, 0, &blurred, nullptr, 0, 100);
  const int values[] = {0, 1, 12, 55, 90, 55, 12, 1, 0};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(blurred[4 * (15 * 7 + i + 3) + 1], values[i]);
  P::FreeUsmSharp(blurred);
}

TEST(UsmSharp, AStopLeavesTheChannelsThatItHasNotReached) {
  const int w = 11, h = 45;
  const Threads threads(1);
  const Picture picture = RandomPicture(w, h, 3);
  for (int stopAt = 0; stopAt <= 6; ++stopAt) {
    // Questions 0..2 follow the channels of the row pass; a stop skips what is left of a pass.
    std::vector<float> positions;
    Picture soft = picture;
    int question = 0;
    for (bool columns : {false, true})
      for (int c = 0; c < 3; ++c) {
        PlainPass(soft, c, PlainKernel(1.5f), columns);
        if (question++ == stopAt) break;
        positions.push_back(10 + 36);
      }
    for (int y = 0; y < h; y += 2) positions.push_back(float(y) * (54.0f / 45) + 46);
    Byte* blurred = nullptr;
    const auto sharpen = [&, stopAt](ProgressRecorder& host, int at) {
      host.stopAt = at;
      Bytes sharp = picture.bytes;
      P::UsmSharp(sharp.data(), w, h, 1.5f, 0.8f, &blurred, &host, 10, 100);
      EXPECT_TRUE(sharp == PlainSharpened(picture, soft, 0.8f)) << stopAt;
    };
    ProgressRecorder first, again;
    sharpen(first, stopAt);
    EXPECT_EQ(first.positions, positions) << stopAt;
    sharpen(again, 0);  // with the blur at hand nobody is asked
    EXPECT_EQ(again.questions, 0);
    EXPECT_EQ(again.positions.front(), 10);
    EXPECT_EQ(again.positions.size(), 23u);
    P::FreeUsmSharp(blurred);
  }
}

// AddressSanitizer tells if a block is not the C runtime's.
TEST(UsmSharp, HostsFreeAndHandInBlocksOfTheCRuntime) {
  Bytes pixels(4 * 9, 100);
  Byte* blurred = nullptr;
  P::UsmSharp(pixels.data(), 3, 3, 1, 0, &blurred, nullptr, 0, 100);
  ASSERT_NE(blurred, nullptr);
  std::free(blurred);

  blurred = static_cast<Byte*>(std::malloc(pixels.size()));
  std::fill_n(blurred, pixels.size(), Byte(90));
  Byte* const own = blurred;
  P::UsmSharp(pixels.data(), 3, 3, 1, 1, &blurred, nullptr, 0, 100);
  EXPECT_EQ(blurred, own);
  for (std::size_t i = 0; i < pixels.size(); ++i) EXPECT_EQ(pixels[i], i % 4 == 3 ? 100 : 110);
  EXPECT_EQ(P::FreeUsmSharp(blurred), 1);
}

TEST(UsmSharp, RefusesWhatItCannotWork) {
  Byte pixels[16] = {}, *blurred = nullptr;
  const auto sharpen = [&](Byte* p, int w, int h, Byte** kept) {
    return P::UsmSharp(p, w, h, 1, 1, kept, nullptr, 0, 100);
  };
  EXPECT_EQ(sharpen(nullptr, 2, 2, &blurred), nullptr);
  EXPECT_EQ(sharpen(pixels, 2, 2, nullptr), nullptr);
  EXPECT_EQ(sharpen(pixels, 65536, 65536, &blurred), nullptr);
  EXPECT_EQ(blurred, nullptr);
  EXPECT_EQ(sharpen(pixels, -2, 2, &blurred), pixels);
  EXPECT_EQ(P::FreeUsmSharp(blurred), 1);
  EXPECT_EQ(P::FreeUsmSharp(nullptr), 0);
}

TEST(Sharp, RoundsDownInFixedPoint) {
  for (auto [w, h] : {std::pair{1, 1}, {5, 3}, {67, 9}}) {
    const Bytes image = RandomBytes(4 * w * h, 1), soft = RandomBytes(4 * w * h, 2);
    for (float amount : {0.0f, 0.3f, -0.5f, 7.0f, 1000.0f, 1e20f}) {
      const auto s = std::uint32_t(Truncate(amount * 16384.0f + 0.5f));
      const Bytes plain = Mixed(image, soft, [=](std::uint32_t c, std::uint32_t b) {
        return std::int32_t(c * (s + 16384u) - b * s) >> 14;
      });
      OnEveryMachine([&, w = w, h = h] {
        ASSERT_TRUE(
            plain ==
            Guarded(image, [&](Byte* pixels) { SFDSP::Sharp(pixels, soft.data(), w, h, amount); }))
            << amount;
      });
    }
  }
  SFDSP::Sharp(nullptr, nullptr, 3, 3, 1);
}

}  // namespace
}  // namespace tintwerk::test

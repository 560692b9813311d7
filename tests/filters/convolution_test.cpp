#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "filters/machines.h"
#include "pixel/progress_recorder.h"
#include "support/image_files.h"
#include "tintwerk/math_define.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk::test {
namespace {

struct Kernel {
  int size;
  std::vector<std::int32_t> weights;
  std::int32_t divisor;
  std::int32_t offset;
};

void Filter(Picture& picture, const Kernel& kernel) {
  picture.bytes.resize(picture.bytes.size() + 64, 0xCD);
  CPixelProcess::Filter(picture.bytes.data(), picture.width, picture.height, kernel.weights.data(),
                        kernel.size, kernel.divisor, kernel.offset, nullptr, 0, 100);
  ASSERT_EQ(Bytes(picture.bytes.end() - 64, picture.bytes.end()), Bytes(64, 0xCD));
  picture.bytes.erase(picture.bytes.end() - 64, picture.bytes.end());
}

// Tap by tap, wrapping round at 32 bits.
Picture Plain(const Picture& in, const Kernel& kernel) {
  const auto wrap = [](std::int64_t v) { return std::int32_t(std::uint32_t(v)); };
  Picture out = in;
  std::int32_t total = 0;
  for (std::int32_t w : kernel.weights) total = wrap(std::int64_t{total} + w);
  const int half = kernel.size / 2;
  for (int y = 0; y < in.height; ++y)
    for (int x = 0; x < in.width; ++x)
      for (int c = 0; c < 3; ++c) {
        std::int32_t sum = 0, partial = 0;
        for (int j = 0; j < kernel.size; ++j)
          for (int i = 0; i < kernel.size; ++i) {
            const int tx = x + i - half, ty = y + j - half;
            if (!CMathDefine::IsInside(tx, ty, in.width, in.height)) continue;
            const std::int64_t weight = kernel.weights[j * kernel.size + i];
            sum = wrap(sum + weight * in.bytes[4 * (ty * in.width + tx) + c]);
            partial = wrap(partial + weight);
          }
        std::int64_t value = sum;
        const std::int32_t by = wrap(std::int64_t{partial} * kernel.divisor);
        if (kernel.divisor != 0 && partial == total && partial != 0)
          value = sum / std::int64_t{kernel.divisor};
        else if (kernel.divisor != 0 && partial != 0 && by != 0)
          value = wrap(std::int64_t{sum} * total) / std::int64_t{by};
        value = wrap(value + kernel.offset);
        out.bytes[4 * (y * in.width + x) + c] =
            static_cast<unsigned char>(std::clamp<std::int64_t>(value, 0, 255));
      }
  return out;
}

TEST(Filter, IsThatOfPlainTapsForEveryKindOfKernel) {
  std::vector<Kernel> kernels = {
      {1, {3}, 2, -7},
      {2, {1, 2, 3, 4}, 10, 0},
      {3, {1, 1, 1, 1, 8, 1, 1, 1, 1}, 16, 0},
      {3, {-1, -1, -1, -1, 9, -1, -1, -1, -1}, 1, 0},
      {3, {-1, -1, -1, -1, 8, -1, -1, -1, -1}, 3, 128},  // sums to 0
      {3, {0, 0, 0, 0, 5, 0, 0, 0, -2}, -3, 200},
      {3, {1, 2, 1, 2, 4, 2, 1, 2, 1}, 0, -2000},
      {3, {1, 2, 1, 2, 4, 2, 1, 2, 1}, 2147483647, 9},
      {3, {40, 40, 40, 40, 40, 40, 40, 40, 40}, -1, 2147483647},               // 32-bit sums
      {3, {9000, -8000, 1, 1, 90000, 1, 1, 1, 7}, 91003, 1},                   // wide quotients
      {3, {900000, -800000, 1, 1, 7000000, 1, 1, 1, 7}, 7654321, 1},           // more still
      {3, {1 << 30, 1 << 30, 1, 1, 2147483647, 1, 1, 1, -2147483647}, -1, 3},  // wraps round
      {4, std::vector<std::int32_t>(16, 65536), 65536, 0},
      {21, std::vector<std::int32_t>(441, 1), 441, 0},
      {5, std::vector<std::int32_t>(25, 0), 25, 40}};
  kernels[13].weights[3] = 0;
  for (auto [w, h] : {std::pair{1, 1}, {1, 20}, {20, 1}, {17, 9}, {18, 3}, {53, 31}}) {
    const Picture picture = RandomPicture(w, h, w + h);
    for (const Kernel& kernel : kernels) {
      const Picture plain = Plain(picture, kernel);
      OnEveryMachine([&, w = w, h = h] {
        Picture filtered = picture;
        Filter(filtered, kernel);
        ASSERT_TRUE(filtered == plain) << w << " x " << h << ", kernel " << (&kernel - &kernels[0]);
      });
    }
  }
}

TEST(Filter, DividesExactlyAtEverySum) {
  // One tap gives every multiple up to the end of each kind of lanes.
  for (int weight : {1, 128, 129, 4000, 8224, 8225, 100000, 8421504})
    for (int divisor : {1, 2, 3, 7, 127, 255, 1000, 4096, 32767, 99991, -5, -65536}) {
      Picture picture = RandomPicture(64, 4);
      for (int i = 0; i < 1024; ++i) picture.bytes[i] = static_cast<unsigned char>(i / 4);
      const Kernel kernel{1, {weight}, divisor, 0};
      const Picture plain = Plain(picture, kernel);
      Filter(picture, kernel);
      ASSERT_TRUE(picture == plain) << weight << " / " << divisor;
    }
}

TEST(Filter, ReportsAndStopsRowByRow) {
  const std::int32_t half = 1;
  ExpectSerialRows(
      RandomBytes(4 * 3 * 399, 1),
      [&](unsigned char* pixels, int w, int h, CObjProgress* progress, int low, int high) {
        CPixelProcess::Filter(pixels, w, h, &half, 1, 2, 0, progress, low, high);
      },
      [](unsigned char* row, int, int width) {
        for (int i = 0; i < 4 * width; ++i)
          if (i % 4 != 3) row[i] /= 2;
      });
}

TEST(Filter, DoesNothingWithoutAnImageOrAKernel) {
  Picture picture = RandomPicture(20, 4);
  const Picture before = picture;
  const std::int32_t weight = 2;
  ProgressRecorder recorder;
  CPixelProcess::Filter(nullptr, 20, 4, &weight, 1, 1, 0, &recorder, 0, 100);
  CPixelProcess::Filter(picture.bytes.data(), 20, 4, nullptr, 1, 1, 0, &recorder, 0, 100);
  CPixelProcess::Filter(picture.bytes.data(), 20, 4, &weight, 0, 1, 0, &recorder, 0, 100);
  CPixelProcess::Filter(picture.bytes.data(), 20, -4, &weight, 1, 1, 0, &recorder, 0, 100);
  CPixelProcess::Filter(picture.bytes.data(), 65536, 65536, &weight, 1, 1, 0, &recorder, 0, 100);
  EXPECT_TRUE(picture == before);
  EXPECT_EQ(recorder.questions, 0);
}

}  // namespace
}  // namespace tintwerk::test

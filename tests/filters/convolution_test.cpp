#include "support/operations.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk::test {
namespace {

struct Kernel {
  int size;
  std::vector<std::int32_t> weights;
  std::int32_t divisor, offset;
};

Bytes Filtered(const Picture& p, const Kernel& kernel) {
  return Guarded(p.bytes, [&](Byte* pixels) {
    CPixelProcess::Filter(pixels, p.width, p.height, kernel.weights.data(), kernel.size,
                          kernel.divisor, kernel.offset, nullptr, 0, 100);
  });
}

std::int32_t Wrap(std::int64_t value) {
  return std::int32_t(std::uint32_t(value));
}

// Tap by tap, wrapping round at 32 bits.
Bytes Plain(const Picture& in, const Kernel& kernel) {
  Bytes out = in.bytes;
  std::int32_t total = 0;
  for (std::int32_t w : kernel.weights) total = Wrap(std::int64_t{total} + w);
  for (int at = 0; at < int(out.size()); ++at) {
    if (at % 4 == 3) continue;
    const int x = at / 4 % in.width, y = at / 4 / in.width;
    std::int32_t sum = 0, partial = 0;
    for (int k = 0; k < kernel.size * kernel.size; ++k) {
      const int dx = k % kernel.size - kernel.size / 2, dy = k / kernel.size - kernel.size / 2;
      if (x + dx < 0 || x + dx >= in.width || y + dy < 0 || y + dy >= in.height) continue;
      const std::int64_t weight = kernel.weights[k];
      sum = Wrap(sum + weight * in.bytes[at + 4 * (dy * in.width + dx)]);
      partial = Wrap(partial + weight);
    }
    std::int64_t value = sum;
    const std::int32_t by = Wrap(std::int64_t{partial} * kernel.divisor);
    if (kernel.divisor != 0 && partial == total && partial != 0)
      value = sum / std::int64_t{kernel.divisor};
    else if (by != 0)
      value = Wrap(std::int64_t{sum} * total) / std::int64_t{by};
    out[at] = Byte(std::clamp(Wrap(value + kernel.offset), 0, 255));
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
    for (const Kernel& kernel : kernels)
      OnEveryMachine([&, w = w, h = h, plain = Plain(picture, kernel)] {
        ASSERT_TRUE(Filtered(picture, kernel) == plain)
            << w << " x " << h << ", kernel " << (&kernel - &kernels[0]);
      });
  }
}

TEST(Filter, DividesExactlyAtEverySum) {
  Picture every{64, 4, Bytes(1024)};
  for (int i = 0; i < 1024; ++i) every.bytes[i] = Byte(i / 4);
  // One tap gives every multiple up to the end of each kind of lanes.
  for (int weight : {1, 128, 129, 4000, 8224, 8225, 100000, 8421504})
    for (int divisor : {1, 2, 3, 7, 127, 255, 1000, 4096, 32767, 99991, -5, -65536}) {
      const Kernel kernel{1, {weight}, divisor, 0};
      ASSERT_TRUE(Filtered(every, kernel) == Plain(every, kernel)) << weight << " / " << divisor;
    }
}

TEST(Filter, ReportsStopsAndRefuses) {
  constexpr std::int32_t kHalf = 1;
  const Call halve = With(CPixelProcess::Filter, &kHalf, 1, 2, 0);
  ExpectSerialRows(RandomBytes(4 * 3 * 399, 1), halve, [](Byte* row, int, int width) {
    for (int i = 0; i < 4 * width; ++i)
      if (i % 4 != 3) row[i] /= 2;
  });
  ExpectRefusals(halve);
  Bytes bytes(320, 9);
  const std::int32_t* const none = nullptr;
  With(CPixelProcess::Filter, none, 1, 1, 0)(bytes.data(), 20, 4, nullptr, 0, 100);
  With(CPixelProcess::Filter, &kHalf, 0, 1, 0)(bytes.data(), 20, 4, nullptr, 0, 100);
  EXPECT_EQ(bytes, Bytes(320, 9));
}

}  // namespace
}  // namespace tintwerk::test

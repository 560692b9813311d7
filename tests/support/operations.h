// Runs operations on images: over sizes, instruction sets, threads, hosts, and images that are
// none.
#pragma once

#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <omp.h>

#include <array>
#include <functional>
#include <type_traits>

#include "pixel/progress_recorder.h"
#include "support/image_files.h"
#include "support/sanitized.h"

namespace tintwerk::test {

using Byte = unsigned char;

/// Fixes the number of threads for a scope.
class Threads {
 public:
  explicit Threads(int count) { omp_set_num_threads(count); }
  ~Threads() { omp_set_num_threads(before_); }

 private:
  int before_ = omp_get_max_threads();
};

/// Calls check() under every instruction set of this processor that the kernels are built for, with
/// one thread and with three.
template <class Check>
void OnEveryMachine(const Check& check) {
  const auto choose = [](std::int64_t target) {
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  };
  for (std::int64_t targets = hwy::SupportedTargets() & HWY_TARGETS; targets != 0;
       targets &= targets - 1)
    for (const int count : {1, 3}) {
      if (kSanitized && count == 1) continue;
      SCOPED_TRACE(testing::Message() << hwy::TargetName(targets & -targets) << ", " << count);
      const Threads threads(count);
      choose(targets & -targets);
      check();
      choose(0);
    }
}

/// The bytes after run(bytes), which must not write beyond their end.
template <class Run>
Bytes Guarded(Bytes bytes, const Run& run) {
  const std::size_t size = bytes.size();
  bytes.resize(size + 64, 0xCD);
  run(bytes.data());
  EXPECT_EQ(Bytes(bytes.begin() + size, bytes.end()), Bytes(64, 0xCD));
  bytes.resize(size);
  return bytes;
}

/// Sends `count` samples, `step` bytes apart from the first, through line(samples); so for `lines`
/// of them, `lineStep` apart.
template <class Line>
void EachLine(Byte* first, int lines, int lineStep, int count, int step, const Line& line) {
  for (std::int64_t n = 0; n < lines; ++n) {
    Byte* const at = first + lineStep * n;
    Bytes samples(count);
    for (int i = 0; i < count; ++i) samples[i] = at[step * i];
    samples = line(samples);
    for (int i = 0; i < count; ++i) at[step * i] = samples[i];
  }
}

/// The values of a conversion with three out parameters.
template <class Out, class Convert, class In>
std::array<Out, 3> Values(Convert convert, In x, In y, In z) {
  std::array<Out, 3> out;
  convert(x, y, z, out[0], out[1], out[2]);
  return out;
}

/// An operation on an image in place. Without a result it gives kNothing.
using Call = std::function<int(Byte* pixels, int width, int height, CObjProgress*, int, int)>;
constexpr int kNothing = -1;

/// An operation with its own arguments, which stand between the image and the progress, if any.
template <class Function, class... Own>
Call With(Function function, Own... own) {
  return [=](Byte* pixels, int width, int height, [[maybe_unused]] CObjProgress* progress,
             [[maybe_unused]] int low, [[maybe_unused]] int high) -> int {
    const auto call = [&](auto... arguments) -> int {
      if constexpr (!std::is_void_v<std::invoke_result_t<Function, decltype(arguments)...>>)
        return function(arguments...);
      else
        return function(arguments...), kNothing;
    };
    if constexpr (std::is_invocable_v<Function, Byte*, int, int, Own..., CObjProgress*, int, int>)
      return call(pixels, width, height, own..., progress, low, high);
    else
      return call(pixels, width, height, own...);
  };
}

/// No image and one whose pixels no int counts are refused; one without pixels is done at once.
inline void ExpectRefusals(const Call& run) {
  Bytes bytes(64, 9);
  EXPECT_LE(run(nullptr, 4, 4, nullptr, 0, 100), 0);
  EXPECT_LE(run(bytes.data(), 65536, 65536, nullptr, 0, 100), 0);
  for (auto [w, h] : {std::pair{0, 4}, {4, 0}, {-4, 4}, {4, -4}, {-65536, -65536}, {INT_MIN, 1}})
    EXPECT_NE(run(bytes.data(), w, h, nullptr, 0, 100), 0) << w << " x " << h;
  EXPECT_EQ(bytes, Bytes(64, 9));
}

/// A random picture whose channels often tie or stand at an end of the scale; most is opaque.
inline Picture TiedPicture(int width, int height, unsigned seed = 1) {
  Picture picture = RandomPicture(width, height, seed);
  Bytes& bytes = picture.bytes;
  const Bytes dice = RandomBytes(bytes.size(), ~seed);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    if (i % 4 == 3)
      bytes[i] = bytes[i] > 80 ? 255 : bytes[i];
    else if (dice[i] < 32)
      bytes[i] = dice[i] < 16 ? 0 : 255;
    else if (dice[i] < 96)
      bytes[i] = bytes[i / 4 * 4 + dice[i] % 3];
  return picture;
}

/// Compares with twin(picture, x, y), which gives blue, green and red of a pixel, and sees to alpha
/// and refusals.
template <class Twin>
void ExpectTwin(const char* name, const Call& run, const Twin& twin) {
  SCOPED_TRACE(name);
  for (auto [w, h] : {std::pair{1, 1}, {5, 1}, {19, 42}, {97, 61}}) {
    Picture image = TiedPicture(w, h, w);
    Picture expected = image;
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        const auto colour = twin(image, x, y);
        std::copy(colour.begin(), colour.end(), expected.At(x, y));
      }
    OnEveryMachine([&, w = w, h = h] {
      const Bytes result = Guarded(
          image.bytes, [&](Byte* pixels) { EXPECT_NE(run(pixels, w, h, nullptr, 0, 100), 0); });
      const auto at = std::mismatch(result.begin(), result.end(), expected.bytes.begin()).first;
      ASSERT_TRUE(result == expected.bytes)
          << w << " x " << h << ", byte " << at - result.begin() << " is " << int(*at);
    });
  }
  ExpectRefusals(run);
}

}  // namespace tintwerk::test

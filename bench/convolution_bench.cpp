// Running maximum, convolution, sharpening.
#include <cstdlib>
#include <memory>

#include "bench.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using bench::Size;

namespace {

using P = CPixelProcess;

// Makes a new image again and again: run(pixels, width, height) of noise gives an array.
template <class Run>
void FromNoise(benchmark::State& state, const Run& run) {
  const Size size(state.range(0));
  const auto image = bench::Noise(size.Pixels());
  bench::Measure(state, [&] {
    const std::unique_ptr<unsigned char[]> made(run(image.data(), size.width, size.height));
    benchmark::DoNotOptimize(made.get());
  });
}

void Dilate(benchmark::State& state, int radius) {
  FromNoise(state, [=](auto... image) { return P::BoxMaxFilters(image..., radius); });
}
BENCHMARK_CAPTURE(Dilate, 5x5, 2)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Dilate, 201x201, 100)->Apply(bench::SizesAndThreads);

// The passes on their own, and the columns without a new buffer.
void DilateRows(benchmark::State& state) {
  FromNoise(state, [](auto* pixels, int width, int height) {
    return P::BoxHorizonPath(pixels, 2, width, height);
  });
}
BENCHMARK(DilateRows)->Apply(bench::SizesAndThreads);

void DilateColumns(benchmark::State& state) {
  const Size size(state.range(0));
  auto image = bench::Noise(size.Pixels());
  bench::Measure(
      state, [&] { P::BoxVerticalPath(image.data(), 2, size.width, size.height); }, 3);
}
BENCHMARK(DilateColumns)->Apply(bench::SizesAndThreads);

void DilateChannel(benchmark::State& state) {
  FromNoise(state, [](auto... image) { return P::BoxMaxFilter(image..., 2, 1); });
}
BENCHMARK(DilateChannel)->Apply(bench::SizesAndThreads);

// A kernel of ones with a heavier centre; the weights' size decides the width of the sums.
void Convolve(benchmark::State& state, int side, int weight) {
  const Size size(state.range(0));
  auto image = bench::Noise(size.Pixels());
  std::vector<std::int32_t> kernel(side * side, weight);
  kernel[side * side / 2] = 8 * weight;
  bench::Measure(state, [&] {
    P::Filter(image.data(), size.width, size.height, kernel.data(), side,
              (side * side + 7) * weight, 0, nullptr, 0, 100);
  });
}
BENCHMARK_CAPTURE(Convolve, 3x3, 3, 1)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Convolve, 3x3_medium, 3, 100)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Convolve, 3x3_large, 3, 10000)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Convolve, 9x9, 9, 1)->Apply(bench::SizesAndThreads);

void UsmSharp(benchmark::State& state, float radius, bool kept) {
  const Size size(state.range(0));
  auto image = bench::PhotoLike(size);
  unsigned char* blurred = nullptr;
  const auto sharpen = [&] {
    P::UsmSharp(image.data(), size.width, size.height, radius, 0.5f, &blurred, nullptr, 0, 100);
  };
  if (kept) sharpen();
  bench::Measure(state, [&] {
    sharpen();
    if (kept) return;
    P::FreeUsmSharp(blurred);
    blurred = nullptr;
  });
  P::FreeUsmSharp(blurred);
}
BENCHMARK_CAPTURE(UsmSharp, 5_taps, 0.6f, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(UsmSharp, 7_taps, 1.0f, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(UsmSharp, 27_taps, 5.0f, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(UsmSharp, 251_taps, 50.0f, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(UsmSharp, KeptBlur, 5.0f, true)->Apply(bench::SizesAndThreads);

void SharpInFixedPoint(benchmark::State& state) {
  const Size size(state.range(0));
  auto image = bench::Noise(size.Pixels());
  const auto blurred = bench::PhotoLike(size);
  bench::Measure(
      state, [&] { SFDSP::Sharp(image.data(), blurred.data(), size.width, size.height, 0.3f); });
}
BENCHMARK(SharpInFixedPoint)->Apply(bench::SizesAndThreads);

}  // namespace

#include <cstdlib>
#include <memory>

#include "bench.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using bench::Size;
using bench::Threads;

namespace {

void Dilate(benchmark::State& state, int radius) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  const auto image = bench::Noise(size.Pixels());
  for (auto _ : state) {
    const std::unique_ptr<unsigned char[]> grown(
        CPixelProcess::BoxMaxFilters(image.data(), size.width, size.height, radius));
    benchmark::DoNotOptimize(grown.get());
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK_CAPTURE(Dilate, 5x5, 2)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Dilate, 201x201, 100)->Apply(bench::SizesAndThreads);

// The passes on their own, and the columns without a new buffer.
void DilateRows(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  const auto image = bench::Noise(size.Pixels());
  for (auto _ : state) {
    const std::unique_ptr<unsigned char[]> grown(
        CPixelProcess::BoxHorizonPath(image.data(), 2, size.width, size.height));
    benchmark::DoNotOptimize(grown.get());
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(DilateRows)->Apply(bench::SizesAndThreads);

void DilateColumns(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  auto image = bench::Noise(size.Pixels());
  for (auto _ : state) CPixelProcess::BoxVerticalPath(image.data(), 2, size.width, size.height);
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(DilateColumns)->Apply(bench::SizesAndThreads);

void DilateChannel(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  const auto image = bench::Noise(size.Pixels());
  for (auto _ : state) {
    const std::unique_ptr<unsigned char[]> grown(
        CPixelProcess::BoxMaxFilter(image.data(), size.width, size.height, 2, 1));
    benchmark::DoNotOptimize(grown.get());
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(DilateChannel)->Apply(bench::SizesAndThreads);

// A kernel of ones with a heavier centre; the weights' size decides the width of the sums.
void Convolve(benchmark::State& state, int side, int weight) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  auto image = bench::Noise(size.Pixels());
  std::vector<std::int32_t> kernel(side * side, weight);
  kernel[side * side / 2] = 8 * weight;
  for (auto _ : state)
    CPixelProcess::Filter(image.data(), size.width, size.height, kernel.data(), side,
                          (side * side + 7) * weight, 0, nullptr, 0, 100);
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK_CAPTURE(Convolve, 3x3, 3, 1)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Convolve, 3x3_medium, 3, 100)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Convolve, 3x3_large, 3, 10000)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Convolve, 9x9, 9, 1)->Apply(bench::SizesAndThreads);

void UsmSharp(benchmark::State& state, float radius, bool kept) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  auto image = bench::Noise(size.Pixels());
  unsigned char* blurred = nullptr;
  if (kept)
    CPixelProcess::UsmSharp(image.data(), size.width, size.height, radius, 0.5f, &blurred, nullptr,
                            0, 100);
  for (auto _ : state) {
    CPixelProcess::UsmSharp(image.data(), size.width, size.height, radius, 0.5f, &blurred, nullptr,
                            0, 100);
    if (kept) continue;
    CPixelProcess::FreeUsmSharp(blurred);
    blurred = nullptr;
  }
  CPixelProcess::FreeUsmSharp(blurred);
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK_CAPTURE(UsmSharp, 7_taps, 1.0f, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(UsmSharp, 27_taps, 5.0f, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(UsmSharp, 251_taps, 50.0f, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(UsmSharp, KeptBlur, 5.0f, true)->Apply(bench::SizesAndThreads);

void SharpInFixedPoint(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  auto image = bench::Noise(size.Pixels());
  const auto blurred = bench::PhotoLike(size);
  for (auto _ : state) SFDSP::Sharp(image.data(), blurred.data(), size.width, size.height, 0.3f);
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(SharpInFixedPoint)->Apply(bench::SizesAndThreads);

void Dehaze(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  auto image = bench::PhotoLike(size);
  for (auto _ : state)
    CPixelProcess::Dehazing(image.data(), size.width, size.height, nullptr, 0, 100);
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(Dehaze)->Apply(bench::SizesAndThreads);

void RedEye(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  auto image = bench::Noise(size.Pixels());
  for (auto _ : state)
    CPixelProcess::RedEyeRemove(image.data(), size.width, size.height,
                                {0, 0, size.width, size.height});
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(RedEye)->Apply(bench::SizesAndThreads);

}  // namespace

#include <algorithm>
#include <cstring>
#include <memory>

#include "bench.h"
#include "frame/material.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using bench::Size;
using bench::Threads;

namespace {

// From a picture of half the width and height, as enlarging is measured.
void Enlarge(benchmark::State& state, int mode) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  const auto source = bench::Noise(size.Pixels() / 4);
  for (auto _ : state) {
    state.PauseTiming();
    auto* pixels = new unsigned char[source.size()];
    std::copy(source.begin(), source.end(), pixels);
    state.ResumeTiming();
    CPixelProcess::RampleBit(size.width, size.height, mode, &pixels, size.width / 2,
                             size.height / 2);
    delete[] pixels;
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK_CAPTURE(Enlarge, Bilinear, 0)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Enlarge, Nearest, 1)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Enlarge, Spline, 2)->Apply(bench::SizesAndThreads);

// Into a buffer at hand.
void BilinearReSample(benchmark::State& state, int channels) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  const auto source = bench::Noise(size.Pixels() / 4);
  std::vector<unsigned char> target(size.Pixels() * channels);
  for (auto _ : state)
    SFDSP::BilinearReSample(source.data(), size.width / 2, size.height / 2, target.data(),
                            size.width, size.height, channels);
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK_CAPTURE(BilinearReSample, Pixels, 4)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(BilinearReSample, Plane, 1)->Apply(bench::SizesAndThreads);

// To a tenth of the size, and the rates are those of the source.
void BilinearReSampleShrink(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  const auto source = bench::Noise(size.Pixels());
  std::vector<unsigned char> target(size.Pixels());
  for (auto _ : state)
    SFDSP::BilinearReSample(source.data(), size.width, size.height, target.data(), size.width / 10,
                            size.height / 10, 4);
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(BilinearReSampleShrink)->Apply(bench::SizesAndThreads);

void Rotate(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  Gdiplus::Bitmap source(size.width, size.height);
  {
    const tintwerk::BitmapLock lock(&source, Gdiplus::ImageLockModeWrite);
    const auto noise = bench::Noise(size.Pixels());
    std::memcpy(lock.Pixels(), noise.data(), noise.size());
  }
  for (auto _ : state) {
    const std::unique_ptr<Gdiplus::Bitmap> turned(
        static_cast<Gdiplus::Bitmap*>(CPixelProcess::Rotate2(
            &source, size.width, size.height, 20, CPixelProcess::InterpolationBilinear,
            CPixelProcess::OverflowClamp, true, true)));
    benchmark::DoNotOptimize(turned.get());
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(Rotate)->Apply(bench::SizesAndThreads);

}  // namespace

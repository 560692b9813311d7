#include <cstring>
#include <memory>

#include "bench.h"
#include "frame/material.h"
#include "frame/parallel.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

using bench::Size;
using bench::Threads;

namespace {

// What everything else is held against: a copy, and a read-modify-write sweep in place, of the same
// bytes.
void MemoryCopy(benchmark::State& state) {
  const Size size(state.range(0));
  const auto source = bench::Noise(size.Pixels());
  std::vector<unsigned char> target(source.size());
  for (auto _ : state) {
    std::memcpy(target.data(), source.data(), source.size());
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(MemoryCopy)
    ->ArgNames({"MP"})
    ->Arg(1)
    ->Arg(12)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void MemorySweep(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  auto image = bench::Noise(size.Pixels());
  for (auto _ : state) {
    unsigned char* row = image.data();
    const std::int64_t bytes = std::int64_t{4} * size.width;
    tintwerk::ParallelFor(size.height, [=](std::int64_t y) {
      for (std::int64_t i = 0; i < bytes; ++i) row[bytes * y + i] ^= 0x55;
    });
    benchmark::ClobberMemory();
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(MemorySweep)->Apply(bench::SizesAndThreads);

std::unique_ptr<Gdiplus::Bitmap> NoisePicture(int width, int height, bool opaque) {
  auto bitmap = std::make_unique<Gdiplus::Bitmap>(width, height);
  const tintwerk::BitmapLock lock(bitmap.get(), Gdiplus::ImageLockModeWrite);
  const auto noise = bench::Noise(std::int64_t{width} * height, opaque);
  std::memcpy(lock.Pixels(), noise.data(), noise.size());
  return bitmap;
}

// Scaling from a picture of the given width, 3:2, as materials are.
void Scale(benchmark::State& state, int sourceWidth, bool opaque) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  const auto source = NoisePicture(sourceWidth, sourceWidth * 2 / 3, opaque);
  for (auto _ : state) {
    const std::unique_ptr<Gdiplus::Bitmap> scaled(static_cast<Gdiplus::Bitmap*>(
        CPixelProcess::RampleBit(source.get(), size.width, size.height)));
    benchmark::DoNotOptimize(scaled.get());
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK_CAPTURE(Scale, MaterialOverImage, 1500, true)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Scale, TransparentMaterial, 1500, false)->Apply(bench::SizesAndThreads);
// Shrinking costs by the source: 24 megapixels are read.
BENCHMARK_CAPTURE(Scale, Shrink, 6000, true)->Apply(bench::SizesAndThreads);

void RotateFlip(benchmark::State& state) {
  const Size size(state.range(0));
  const auto bitmap = NoisePicture(size.width, size.height, true);
  for (auto _ : state) bitmap->RotateFlip(Gdiplus::Rotate90FlipNone);
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(RotateFlip)
    ->ArgNames({"MP"})
    ->Arg(1)
    ->Arg(12)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void Strength(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  auto image = bench::Noise(size.Pixels());
  const auto before = bench::Noise(size.Pixels());
  for (auto _ : state)
    CEffect::Effect_AlphaAdJust(image.data(), before.data(), size.width, size.height, 0.3);
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(Strength)->Apply(bench::SizesAndThreads);

}  // namespace

#include <cstring>
#include <memory>

#include "bench.h"
#include "frame/material.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

using bench::Size;

namespace {

// What everything else is held against: a copy of the same bytes. The other measure, a sweep in
// place, stands beside every rate.
void MemoryCopy(benchmark::State& state) {
  const auto source = bench::Noise(Size(state.range(0)).Pixels());
  std::vector<unsigned char> target(source.size());
  bench::Measure(state, [&] {
    std::memcpy(target.data(), source.data(), source.size());
    benchmark::DoNotOptimize(target.data());
  });
}
BENCHMARK(MemoryCopy)->Apply(bench::Sizes);

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
  const auto source = NoisePicture(sourceWidth, sourceWidth * 2 / 3, opaque);
  bench::Measure(state, [&] {
    delete static_cast<Gdiplus::Bitmap*>(
        CPixelProcess::RampleBit(source.get(), size.width, size.height));
  });
}
BENCHMARK_CAPTURE(Scale, MaterialOverImage, 1500, true)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Scale, TransparentMaterial, 1500, false)->Apply(bench::SizesAndThreads);
// Shrinking costs by the source: 24 megapixels are read.
BENCHMARK_CAPTURE(Scale, Shrink, 6000, true)->Apply(bench::SizesAndThreads);

void RotateFlip(benchmark::State& state) {
  const Size size(state.range(0));
  const auto bitmap = NoisePicture(size.width, size.height, true);
  bench::Measure(state, [&] { bitmap->RotateFlip(Gdiplus::Rotate90FlipNone); });
}
BENCHMARK(RotateFlip)->Apply(bench::Sizes);

void Strength(benchmark::State& state) {
  const Size size(state.range(0));
  auto image = bench::Noise(size.Pixels());
  const auto before = bench::Noise(size.Pixels());
  bench::Measure(state, [&] {
    CEffect::Effect_AlphaAdJust(image.data(), before.data(), size.width, size.height, 0.3);
  });
}
BENCHMARK(Strength)->Apply(bench::SizesAndThreads);

}  // namespace

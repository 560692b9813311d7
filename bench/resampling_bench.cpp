// Resampling and rotation.
#include <algorithm>
#include <cstring>
#include <memory>

#include "bench.h"
#include "frame/material.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using bench::Size;

namespace {

using P = CPixelProcess;

// From a picture of half the width and height, as enlarging is measured. The old array, which the
// operation deletes, is made before the clock runs.
template <class Run>
void Replace(benchmark::State& state, const Run& run) {
  const Size size(state.range(0));
  const auto source = bench::Noise(size.Pixels() / 4, true);
  std::unique_ptr<unsigned char[]> image;
  bench::Measure(
      state,
      [&] {
        image.reset(new unsigned char[source.size()]);
        std::copy(source.begin(), source.end(), image.get());
      },
      [&] {
        unsigned char* pixels = image.release();
        run(size.width, size.height, &pixels);
        image.reset(pixels);
      });
}

void Enlarge(benchmark::State& state, int mode) {
  Replace(state, [=](int width, int height, unsigned char** pixels) {
    P::RampleBit(width, height, mode, pixels, width / 2, height / 2);
  });
}
BENCHMARK_CAPTURE(Enlarge, Bilinear, 0)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Enlarge, Nearest, 1)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Enlarge, Spline, 2)->Apply(bench::SizesAndThreads);

void EnlargeAnyBytes(benchmark::State& state) {
  Replace(state, [](int width, int height, unsigned char** pixels) {
    P::RampleBit(width, height, pixels, width / 2, height / 2, 4);
  });
}
BENCHMARK(EnlargeAnyBytes)->Apply(bench::SizesAndThreads);

// Into a buffer at hand.
void BilinearReSample(benchmark::State& state, int channels) {
  const Size size(state.range(0));
  const auto source = bench::Noise(size.Pixels() / 4);
  std::vector<unsigned char> target(size.Pixels() * channels);
  bench::Measure(
      state,
      [&] {
        SFDSP::BilinearReSample(source.data(), size.width / 2, size.height / 2, target.data(),
                                size.width, size.height, channels);
      },
      channels);
}
BENCHMARK_CAPTURE(BilinearReSample, Pixels, 4)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(BilinearReSample, Plane, 1)->Apply(bench::SizesAndThreads);

// To a tenth of the size, and the rates are those of the source.
void BilinearReSampleShrink(benchmark::State& state) {
  const Size size(state.range(0));
  const auto source = bench::Noise(size.Pixels());
  std::vector<unsigned char> target(size.Pixels());
  bench::Measure(state, [&] {
    SFDSP::BilinearReSample(source.data(), size.width, size.height, target.data(), size.width / 10,
                            size.height / 10, 4);
  });
}
BENCHMARK(BilinearReSampleShrink)->Apply(bench::SizesAndThreads);

// Makes a picture from one of the size.
template <class Run>
void FromPicture(benchmark::State& state, const Run& run) {
  const Size size(state.range(0));
  Gdiplus::Bitmap source(size.width, size.height);
  {
    const tintwerk::BitmapLock lock(&source, Gdiplus::ImageLockModeWrite);
    const auto photo = bench::PhotoLike(size);
    std::memcpy(lock.Pixels(), photo.data(), photo.size());
  }
  bench::Measure(
      state, [&] { delete static_cast<Gdiplus::Bitmap*>(run(&source, size.width, size.height)); });
}

void Rotate(benchmark::State& state) {
  FromPicture(state, [](auto... picture) {
    return P::Rotate2(picture..., 20, P::InterpolationBilinear, P::OverflowClamp, true, true);
  });
}
BENCHMARK(Rotate)->Apply(bench::SizesAndThreads);

void Clone(benchmark::State& state) {
  FromPicture(state, [](Gdiplus::Bitmap* picture, int width, int height) {
    return P::Clone(picture, 1, 1, width - 1, height - 1);
  });
}
BENCHMARK(Clone)->Apply(bench::Sizes);

}  // namespace

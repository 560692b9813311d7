// Blurs, zoom blur and gradients.
#include "bench.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using bench::Size;

namespace {

using P = CPixelProcess;

/// Runs an operation on an image again and again, which does not change what it costs.
template <class Run>
void OverPixels(benchmark::State& state, Run run, int bytesPerPixel = 4) {
  const Size size(state.range(0));
  auto image = bench::PhotoLike(size);
  bench::Measure(
      state, [&] { run(image.data(), size.width, size.height); }, bytesPerPixel);
}

void StackBlur(benchmark::State& state, int radius) {
  OverPixels(state, [=](auto... image) { SFDSP::stackBlur(image..., radius); });
}
BENCHMARK_CAPTURE(StackBlur, Radius2, 2)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(StackBlur, Radius13, 13)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(StackBlur, Radius60, 60)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(StackBlur, Radius500, 500)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(StackBlur, RadiusMost, 2895)->Apply(bench::SizesAndThreads);

void StackBlurReporting(benchmark::State& state) {
  struct : CObjProgress {
  } host;
  OverPixels(state, [&](auto... image) { P::stackBlur(image..., 2, &host, 0, 100); });
}
BENCHMARK(StackBlurReporting)->Apply(bench::SizesAndThreads);

void StackBlurHighPass(benchmark::State& state) {
  OverPixels(state, [](auto... image) { SFDSP::stackBlurAndHighPass(image..., 2); });
}
BENCHMARK(StackBlurHighPass)->Apply(bench::SizesAndThreads);

void StackBlurRed(benchmark::State& state) {
  OverPixels(state, [](auto... image) { SFDSP::stackBlurRedChannel(image..., 2); });
}
BENCHMARK(StackBlurRed)->Apply(bench::SizesAndThreads);

// Planes: the first quarter of the image's bytes.
void PlaneBlur(benchmark::State& state, int radius) {
  OverPixels(
      state, [=](auto... plane) { SFDSP::BlurOneChannel(plane..., radius); }, 1);
}
BENCHMARK_CAPTURE(PlaneBlur, Radius2, 2)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(PlaneBlur, Radius60, 60)->Apply(bench::SizesAndThreads);

void PlaneHighLight(benchmark::State& state) {
  OverPixels(
      state, [](auto... plane) { SFDSP::BlurChannelAndHighLight(plane..., 4); }, 1);
}
BENCHMARK(PlaneHighLight)->Apply(bench::SizesAndThreads);

void RecursiveGaussian(benchmark::State& state) {
  OverPixels(state, [](auto... image) { P::GaussIIRBlurImage(image..., 16, 16, nullptr, 0, 100); });
}
BENCHMARK(RecursiveGaussian)->Apply(bench::SizesAndThreads);

void PlaneRecursiveGaussian(benchmark::State& state) {
  OverPixels(
      state, [](auto... plane) { P::GaussIIRBlurWithOne(plane..., 16, 16, nullptr, 0, 100); }, 1);
}
BENCHMARK(PlaneRecursiveGaussian)->Apply(bench::SizesAndThreads);

void RadiusZoom(benchmark::State& state) {
  const auto source = bench::PhotoLike(Size(state.range(0)));
  OverPixels(state, [&](unsigned char* target, int width, int height) {
    P::RadiusZoomBlur(target, source.data(), source.data(), width, height, nullptr, 0, 100);
  });
}
BENCHMARK(RadiusZoom)->Apply(bench::SizesAndThreads);

constexpr tagRGBQUAD kColors[] = {{10, 20, 30, 0}, {200, 150, 100, 0}};

void GradientImage(benchmark::State& state) {
  OverPixels(state,
             [](auto... image) { P::CreateGradientImage(image..., kColors, nullptr, 0, 100); });
}
BENCHMARK(GradientImage)->Apply(bench::SizesAndThreads);

void GradientPicture(benchmark::State& state) {
  const double stops[] = {0.1, 0.8, 0.1};
  OverPixels(state, [&](unsigned char*, int width, int height) {
    delete static_cast<Gdiplus::Bitmap*>(
        P::GetGradientImage(width, height, 1, 2, kColors, stops, 0));
  });
}
BENCHMARK(GradientPicture)->Apply(bench::Sizes);

}  // namespace

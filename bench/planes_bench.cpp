// Planes of images, the filter on them, and tints.
#include "bench.h"
#include "tintwerk/sfdsp.h"

using bench::Size;

namespace {

/// Runs an operation on an image and its planes again and again, which does not change what it
/// costs.
template <class Run>
void OverPlanes(benchmark::State& state, Run run) {
  const Size size(state.range(0));
  auto image = bench::PhotoLike(size);
  std::vector<unsigned char> planes(3 * size.Pixels());
  bench::Measure(state, [&] { run(image.data(), size.width, size.height, planes.data()); });
}

void Split(unsigned char* pixels, int width, int height, unsigned char* planes) {
  const std::int64_t count = std::int64_t{width} * height;
  SFDSP::DecomposeToLab(pixels, width, height, 4 * width, planes, planes + count,
                        planes + 2 * count);
}
void Join(unsigned char* pixels, int width, int height, unsigned char* planes) {
  const std::int64_t count = std::int64_t{width} * height;
  SFDSP::RecomposeFromLab(pixels, width, height, 4 * width, planes, planes + count,
                          planes + 2 * count);
}

void LabPlanes(benchmark::State& state, bool there, bool back) {
  OverPlanes(state, [=](auto... all) {
    if (there) Split(all...);
    if (back) Join(all...);
  });
}
BENCHMARK_CAPTURE(LabPlanes, There, true, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(LabPlanes, ThereAndBack, true, true)->Apply(bench::SizesAndThreads);

void LabPlanesOfGrey(benchmark::State& state) {
  const Size size(state.range(0));
  auto image = bench::PhotoLike(size);
  for (std::size_t i = 0; i < image.size(); i += 4) image[i] = image[i + 2] = image[i + 1];
  std::vector<unsigned char> planes(3 * size.Pixels());
  bench::Measure(state, [&] { Split(image.data(), size.width, size.height, planes.data()); });
}
BENCHMARK(LabPlanesOfGrey)->Apply(bench::SizesAndThreads);

void LabPlanesToDark(benchmark::State& state) {
  OverPlanes(state, [](auto... all) { Join(all...); });  // L is 0
}
BENCHMARK(LabPlanesToDark)->Apply(bench::SizesAndThreads);

void YuvPlanes(benchmark::State& state) {
  OverPlanes(state, [](unsigned char* pixels, int width, int height, unsigned char* planes) {
    SFDSP::rgb_2_yuv(pixels, width, height, planes);
    SFDSP::yuv_2_rgb(pixels, width, height, planes);
  });
}
BENCHMARK(YuvPlanes)->Apply(bench::SizesAndThreads);

void GuideFilter(benchmark::State& state, int radius) {
  const Size size(state.range(0));
  const auto photo = bench::PhotoLike(size);
  std::vector<unsigned char> grey(size.Pixels()), plane;
  for (std::size_t i = 0; i < grey.size(); ++i) grey[i] = photo[4 * i + 1];
  bench::Measure(
      state, [&] { plane = grey; },
      [&] { SFDSP::GuideFilter(plane.data(), size.width, size.height, radius, 400); }, 1);
}
BENCHMARK_CAPTURE(GuideFilter, Radius8, 8)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(GuideFilter, Radius60, 60)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(GuideFilter, Radius500, 500)->Apply(bench::SizesAndThreads);

void Warm(benchmark::State& state) {
  OverPlanes(state, [](unsigned char* pixels, int width, int height, unsigned char*) {
    SFDSP::WarmFilter(pixels, width, height, 0.5f);
  });
}
BENCHMARK(Warm)->Apply(bench::SizesAndThreads);

}  // namespace

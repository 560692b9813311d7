// Selective colour and the edge detector.
#include "bench.h"
#include "portrait/canny_edges.h"
#include "tintwerk/selective_color.h"

namespace {

using Setting = CSelectiveColor;

Setting Families(int count) {
  Setting setting;
  for (int i = 0; i < count; ++i)
    setting.SetSelectiveColor(static_cast<Setting::eColorType>((i * 5 + 6) % 9), 40 - 15 * i, -35,
                              15 * i - 50, i % 2 ? 0 : 10);
  return setting;
}

void Selective(benchmark::State& state, int families, bool noise) {
  const bench::Size size(state.range(0));
  const auto before = noise ? bench::Noise(size.Pixels()) : bench::PhotoLike(size);
  auto image = before;
  const Setting setting = Families(families);
  bench::Measure(
      state, [&] { std::copy(before.begin(), before.end(), image.begin()); },
      [&] { setting.Execute(image.data(), size.width, size.height); });
}
BENCHMARK_CAPTURE(Selective, 1_family, 1, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Selective, 4_families, 4, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Selective, 8_families, 8, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Selective, 9_families, 9, false)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Selective, 9_families_of_noise, 9, true)->Apply(bench::SizesAndThreads);

void CannyEdges(benchmark::State& state, std::vector<unsigned char> makePlane(bench::Size)) {
  const bench::Size size(state.range(0));
  const auto plane = makePlane(size);
  auto edges = plane;
  bench::Measure(
      state,
      [&] {
        tintwerk::CannyEdges(plane.data(), edges.data(), size.width, size.height, size.width,
                             bench::kLowThreshold, bench::kHighThreshold);
      },
      1);
}
BENCHMARK_CAPTURE(CannyEdges, Shapes, bench::ShapesPlane)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(CannyEdges, Noise, bench::NoisePlane)->Apply(bench::SizesAndThreads);

}  // namespace

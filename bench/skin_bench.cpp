// The recursive blur of the portrait and drawn looks, skin, and what beautifies it.
#include "bench.h"
#include "portrait/deriche_blur.h"

using bench::Size;

namespace {

/// On its own results, which does not change what it costs.
void Deriche(benchmark::State& state, int element, double sigma) {
  const Size size(state.range(0));
  auto image = bench::PhotoLike(size);
  bench::Measure(
      state,
      [&] {
        tintwerk::DericheBlur(image.data(), size.width, size.height, element * size.width, sigma,
                              sigma);
      },
      element);
}
BENCHMARK_CAPTURE(Deriche, Pixels, 4, 15.0)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Deriche, PixelsSigma200, 4, 200.0)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(Deriche, Plane, 1, 6.67)->Apply(bench::SizesAndThreads);

}  // namespace

// Every public look over a photograph-like image, files and all, as a host calls it.
#include "bench.h"
#include "tintwerk/effect.h"

namespace {

void Look(benchmark::State& state, EffectEntry* look) {
  const bench::Size size(state.range(0));
  const auto photo = bench::PhotoLike(size);
  wchar_t root[] = TINTWERK_RESOURCES;
  auto image = photo;
  bench::Measure(
      state, [&] { std::copy(photo.begin(), photo.end(), image.begin()); },
      [&] {
        if (look(image.data(), size.width, size.height, root, nullptr, 0, 100) != 1)
          state.SkipWithError("the look failed");
      });
}

#define TINTWERK_EFFECT(entry, category, title, description) \
  BENCHMARK_CAPTURE(Look, entry, &CEffect::entry)->Apply(bench::SizesAndThreads);
#include "tintwerk/effect_list.h"

}  // namespace

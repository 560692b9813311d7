// The recursive blur of the portrait and drawn looks, skin, and what beautifies it.
#include "bench.h"
#include "portrait/beautify.h"
#include "portrait/deriche_blur.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

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

void SkinMask(benchmark::State& state) {
  const Size size(state.range(0));
  const auto image = bench::PhotoLike(size);
  std::vector<unsigned char> mask(size.Pixels());
  bench::Measure(state, [&] {
    SFDSP::CreateSkinMask(image.data(), size.width, size.height, mask.data(), false, 0, 0, 0, 0);
  });
}
BENCHMARK(SkinMask)->Apply(bench::SizesAndThreads);

void SkinColour(benchmark::State& state) {
  const Size size(state.range(0));
  const auto image = bench::PhotoLike(size);
  int colour[3];
  bench::Measure(state, [&] {
    SFDSP::InitAvgFaceSkin(colour[0], colour[1], colour[2], image.data(), size.width, size.height,
                           false, 0, 0, 0, 0);
  });
}
BENCHMARK(SkinColour)->Apply(bench::SizesAndThreads);

void MaskedTint(benchmark::State& state) {
  const Size size(state.range(0));
  auto image = bench::PhotoLike(size);
  const auto mask = bench::Noise(size.Pixels() / 4);
  bench::Measure(state, [&] {
    CPixelProcess::Skinbeautify(image.data(), size.width, size.height, 220, 170, 150, 0.5,
                                mask.data(), nullptr, 0, 100);
  });
}
BENCHMARK(MaskedTint)->Apply(bench::SizesAndThreads);

void DetailTables(benchmark::State& state) {
  bench::Measure(
      state, [] { tintwerk::DetailWeights weights(tintwerk::Precision::kDouble); }, 1);
}
BENCHMARK(DetailTables)->Apply(bench::SizesAndThreads);

// What a look of the lift family does to a pixel.
void LiftBesideBlur(unsigned char* pixels, int width, int height) {
  using namespace tintwerk;
  ForEachDetail(pixels, width, height, 15, Precision::kDouble,
                [](unsigned char* pixel, const unsigned char*, float weight) {
                  for (int c = 0; c < 3; ++c)
                    pixel[c] = static_cast<unsigned char>(
                        LiftedBy<Precision::kDouble>(kSkinLift, pixel[c], weight));
                });
}

const bool kRegistered = [] {
  bench::Register("SkinBase", [](auto... image) { CPixelProcess::SkinBase(image..., 15); });
  bench::Register("LiftBesideBlur", LiftBesideBlur);
  bench::Register("TianMei", CPixelProcess::TianMei);
  return true;
}();

}  // namespace

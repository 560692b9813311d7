// The passes of looks that are two-key tables, without their files: a plane of the image against a
// picture, and the map of a light leak.
#include "bench.h"
#include "looks/recipe.h"

namespace {

using bench::Size;

using Image = std::vector<unsigned char>(Size size);
std::vector<unsigned char> Noise(Size size) {
  return bench::Noise(size.Pixels());
}

// A table of smooth grades, which costs the same as any other.
std::vector<unsigned char> Grades(int bytes) {
  std::vector<unsigned char> table(65536 * bytes);
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<unsigned char>(i / 300);
  return table;
}

template <class Body>
void Run(benchmark::State& state, Image* image, const Body& body) {
  const Size size(state.range(0));
  auto pixels = image(size);
  const auto before = pixels, over = bench::PhotoLike(size);
  const auto layer = tintwerk::PixelLayer(over.data(), size.width);
  const tintwerk::Call call{pixels.data(), size.width, size.height, nullptr, nullptr, 0, 100};
  bench::Measure(
      state, [&] { std::copy(before.begin(), before.end(), pixels.begin()); },
      [&] { tintwerk::EachColour(call, body, layer); });
}

void PlanePass(benchmark::State& state, Image* image) {
  const auto table = Grades(1);
  const tintwerk::Plane plane(table.data());
  Run(state, image, [=](int v, int, int m) { return plane(v, m); });
}
BENCHMARK_CAPTURE(PlanePass, Photo, bench::PhotoLike)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(PlanePass, Noise, Noise)->Apply(bench::SizesAndThreads);

void LeakPass(benchmark::State& state, Image* image) {
  const auto table = Grades(4);
  const tintwerk::SquareMap map(table.data());
  Run(state, image, [=](int v, int c, int m) { return map(v, m, c); });
}
BENCHMARK_CAPTURE(LeakPass, Photo, bench::PhotoLike)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(LeakPass, Noise, Noise)->Apply(bench::SizesAndThreads);

}  // namespace

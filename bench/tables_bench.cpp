// The passes of looks that are two-key tables, without their files: a plane of the image against a
// picture, and the map of a light leak.
#include "bench.h"
#include "maps/plane_file.h"
#include "looks/row_pass.h"
#include "maps/map_image.h"

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

template <class Pass>
void Run(benchmark::State& state, Image* image, const Pass& pass) {
  const Size size(state.range(0));
  auto pixels = image(size);
  const auto before = pixels, over = bench::PhotoLike(size);
  bench::Measure(
      state, [&] { std::copy(before.begin(), before.end(), pixels.begin()); },
      [&] { pass(pixels.data(), over.data(), size); });
}

void PlanePass(benchmark::State& state, Image* image) {
  const auto table = Grades(1);
  const tintwerk::Plane plane(table.data());
  Run(state, image, [=](unsigned char* pixels, const unsigned char* over, Size size) {
    tintwerk::ForEachColourByte(nullptr, 0, 100, size.width, size.height,
                                [=](std::int64_t at) { pixels[at] = plane(pixels[at], over[at]); });
  });
}
BENCHMARK_CAPTURE(PlanePass, Photo, bench::PhotoLike)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(PlanePass, Noise, Noise)->Apply(bench::SizesAndThreads);

void LeakPass(benchmark::State& state, Image* image) {
  const auto table = Grades(4);
  const tintwerk::SquareMap map(table.data());
  Run(state, image, [=](unsigned char* pixels, const unsigned char* over, Size size) {
    tintwerk::ParallelFor(size.Pixels(), [=](std::int64_t i) {
      for (int c = 0; c < 3; ++c) pixels[4 * i + c] = map(pixels[4 * i + c], over[4 * i + c], c);
    });
  });
}
BENCHMARK_CAPTURE(LeakPass, Photo, bench::PhotoLike)->Apply(bench::SizesAndThreads);
BENCHMARK_CAPTURE(LeakPass, Noise, Noise)->Apply(bench::SizesAndThreads);

}  // namespace

// Colour cubes: the kernels on a cube that is loaded, and whole calls, which read their file each
// time.
#include <cmath>
#include <string>

#include "bench.h"
#include "lookup/cube_kernels.h"
#include "tintwerk/trilinear.h"

namespace {

using bench::Size;

// Light and shade over the whole range, drifting tints and a little grain. As in photographs, two
// hundred of the 3375 cells hold nearly all pixels, and half of the neighbours lie in the same one.
std::vector<unsigned char> Photo(Size size) {
  std::vector<unsigned char> image = bench::Noise(size.Pixels(), true);
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x) {
      unsigned char* const pixel = &image[4 * (std::int64_t{size.width} * y + x)];
      const double u = static_cast<double>(x) / size.width,
                   v = static_cast<double>(y) / size.height;
      const double light = 120 + 90 * std::sin(7 * u + 3 * v) * std::cos(5 * v - u);
      const double tint[3] = {25 * std::sin(9 * u), 0, 25 * std::cos(11 * v)};
      const int grain = (pixel[1] & 7) - 4;
      for (int c = 0; c < 3; ++c) {
        const double value = light + tint[c] + grain + (pixel[c] & 3) - 2;
        pixel[c] = static_cast<unsigned char>(std::fmin(std::fmax(value, 0), 255));
      }
    }
  return image;
}
std::vector<unsigned char> Noise(Size size) {
  return bench::Noise(size.Pixels());
}
using Image = std::vector<unsigned char>(Size size);

// The nodes of a cube, which cost the same whatever their colours are.
std::vector<unsigned char> NodesOf(int side) {
  return bench::Noise(std::int64_t{side} * side);
}

void Kernel(benchmark::State& state, tintwerk::CubeKernel* kernel, int side, Image* image) {
  const Size size(state.range(0));
  const auto cube = NodesOf(side);
  const tintwerk::CubePairs pairs(cube.data());  // of the wrong shape for the larger cube
  const unsigned char* const nodes = side == tintwerk::Cube16::kSide ? pairs.bytes : cube.data();
  auto pixels = image(size);
  const auto before = pixels;
  bench::Measure(
      state, [&] { std::copy(before.begin(), before.end(), pixels.begin()); },
      [&] { benchmark::DoNotOptimize(kernel(pixels.data(), size.Pixels(), nodes)); });
}

#define TINTWERK_KERNEL(entry, side)                                                \
  BENCHMARK_CAPTURE(Kernel, entry##_Photo, tintwerk::MapGroups##entry, side, Photo) \
      ->Apply(bench::Sizes);                                                        \
  BENCHMARK_CAPTURE(Kernel, entry##_Noise, tintwerk::MapGroups##entry, side, Noise) \
      ->Apply(bench::Sizes);
TINTWERK_KERNEL(4x4, tintwerk::Cube16::kSide)
TINTWERK_KERNEL(New, tintwerk::Cube16::kSide)
TINTWERK_KERNEL(8x8, tintwerk::Cube64::kSide)
#undef TINTWERK_KERNEL

using Entry = bool(tintwerk::CString path, unsigned char* pixels, int width, int height);

void Cube(benchmark::State& state, Entry* entry, const wchar_t* file, Image* image) {
  const Size size(state.range(0));
  const std::wstring path = TINTWERK_RESOURCES + std::wstring(L"/Effects/") + file;
  auto pixels = image(size);
  const auto before = pixels;
  bench::Measure(
      state, [&] { std::copy(before.begin(), before.end(), pixels.begin()); },
      [&] {
        if (!entry(path.c_str(), pixels.data(), size.width, size.height))
          state.SkipWithError("the cube cannot be read");
      });
}

#define TINTWERK_CUBE(entry, file)                                                     \
  BENCHMARK_CAPTURE(Cube, entry##_Photo, CTrilinear::Effect_VSCO_##entry, file, Photo) \
      ->Apply(bench::SizesAndThreads);                                                 \
  BENCHMARK_CAPTURE(Cube, entry##_Noise, CTrilinear::Effect_VSCO_##entry, file, Noise) \
      ->Apply(bench::SizesAndThreads);
TINTWERK_CUBE(4x4, L"style/a2")
TINTWERK_CUBE(New, L"171")
TINTWERK_CUBE(8x8, L"style/pomelo3")
#undef TINTWERK_CUBE

}  // namespace

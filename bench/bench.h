// What the benchmarks share. Rates are megapixels a second of the image that is written, unless
// told otherwise.
#pragma once

#include <benchmark/benchmark.h>
#include <omp.h>

#include <cstdint>
#include <vector>

namespace bench {

/// An image size of the given megapixels, 4:3.
struct Size {
  explicit Size(std::int64_t megapixels)
      : width(megapixels == 12 ? 4000 : 1152), height(megapixels == 12 ? 3000 : 864) {}

  std::int64_t Pixels() const { return std::int64_t{width} * height; }

  int width;
  int height;
};

/// Noise: the hardest input for whatever depends on the content, lookups above all.
inline std::vector<unsigned char> Noise(std::int64_t pixels, bool opaque = false) {
  std::vector<unsigned char> image(4 * pixels);
  std::uint32_t state = 1;
  for (std::size_t i = 0; i < image.size(); ++i) {
    state = state * 1664525u + 1013904223u;
    image[i] = opaque && i % 4 == 3 ? 255 : static_cast<unsigned char>(state >> 24);
  }
  return image;
}

/// Smooth slopes with a little noise: what photographs are to lookups and caches.
inline std::vector<unsigned char> PhotoLike(Size size) {
  std::vector<unsigned char> image = Noise(size.Pixels(), true);
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x)
      for (int c = 0; c < 3; ++c) {
        unsigned char& value = image[4 * (std::int64_t{size.width} * y + x) + c];
        value = static_cast<unsigned char>((value & 7) + 120 +
                                           (x * (c + 1) + y * (3 - c)) * 120 /
                                               (3 * (size.width + size.height)));
      }
  return image;
}

/// Fixes the number of OpenMP threads for a scope; 0 keeps all.
class Threads {
 public:
  explicit Threads(std::int64_t count) : before_(omp_get_max_threads()) {
    if (count > 0) omp_set_num_threads(static_cast<int>(count));
  }
  ~Threads() { omp_set_num_threads(before_); }
  Threads(const Threads&) = delete;
  Threads& operator=(const Threads&) = delete;

 private:
  int before_;
};

inline void CountPixels(benchmark::State& state, std::int64_t pixels) {
  state.counters["MP/s"] =
      benchmark::Counter(pixels * 1e-6, benchmark::Counter::kIsIterationInvariantRate);
}

/// 1 and 12 megapixels, each with 1 thread and with all (0).
inline void SizesAndThreads(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"MP", "threads"})
      ->ArgsProduct({{1, 12}, {1, 0}})
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace bench

// What the benchmarks share. Every line shows
//   MP/s        megapixels a second of the image that is written, unless told otherwise,
//   sweeps      the time in sweeps: plain read-modify-write passes over the same bytes, on as many
//               threads,
//   extraB/px   bytes of heap that a call holds at its peak, a pixel, results that it hands over
//               included.
#pragma once

#include <benchmark/benchmark.h>
#include <omp.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "heap.h"

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

/// A byte plane as edge detectors meet them: shapes of many tones and sizes on slopes, with a
/// little noise.
inline std::vector<unsigned char> ShapesPlane(Size size) {
  std::vector<unsigned char> plane(size.Pixels());
  std::uint32_t state = 1;
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x) {
      const int column = x / 96, row = y / 72, shape = (column * 7 + row * 13) % 61;
      const int dx = x % 96 - 48, dy = y % 72 - 36;
      const bool isInside =
          shape % 3 == 0 ? dx + dy < shape - 30 : dx * dx + dy * dy * (shape % 3) < 30 * shape;
      state = state * 1664525u + 1013904223u;
      const int tone = 40 + (x + y) % 800 / 16 + (isInside ? 20 + 2 * shape : 0);
      plane[std::int64_t{size.width} * y + x] =
          static_cast<unsigned char>(tone + static_cast<int>(state >> 29));
    }
  return plane;
}
/// The hardest plane of all: edges everywhere.
inline std::vector<unsigned char> NoisePlane(Size size) {
  auto plane = Noise(size.Pixels() / 4);
  plane.resize(size.Pixels());
  return plane;
}
/// Lengths of gradients for the edge detectors.
constexpr int kLowThreshold = 120, kHighThreshold = 200;

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

/// Seconds of a sweep over as many bytes on the threads that are set, measured at the first call.
double SweepSeconds(std::int64_t bytes);

/// Adds the rate and the time in sweeps.
inline void CountPixels(benchmark::State& state, std::int64_t pixels, int bytesPerPixel = 4) {
  using benchmark::Counter;
  state.counters["MP/s"] =
      Counter(static_cast<double>(pixels) * 1e-6, Counter::kIsIterationInvariantRate);
  state.counters["sweeps"] = Counter(SweepSeconds(pixels * bytesPerPixel),
                                     Counter::kIsIterationInvariantRate | Counter::kInvert);
}

/// Times run() over an image of the benchmark's size on its threads, each time after prepare(),
/// which is not timed.
template <class Prepare, class Run>
void Measure(benchmark::State& state, const Prepare& prepare, const Run& run,
             int bytesPerPixel = 4) {
  const std::int64_t pixels = Size(state.range(0)).Pixels();
  const Threads threads(state.range(1));
  prepare();
  const std::int64_t extra = ExtraBytes(run);
  for (auto _ : state) {
    state.PauseTiming();
    prepare();
    state.ResumeTiming();
    run();
    benchmark::ClobberMemory();
  }
  CountPixels(state, pixels, bytesPerPixel);
  state.counters["extraB/px"] = static_cast<double>(extra) / static_cast<double>(pixels);
}

/// The same for operations that nothing has to be prepared for: on their own results, say, if
/// those cost no less.
template <class Run>
void Measure(benchmark::State& state, const Run& run, int bytesPerPixel = 4) {
  Measure(
      state, [] {}, run, bytesPerPixel);
}

/// 1 and 12 megapixels, each with 1 thread and with all (0).
inline void SizesAndThreads(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"MP", "threads"})
      ->ArgsProduct({{1, 12}, {1, 0}})
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
}

/// The same for what runs on the calling thread alone.
inline void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"MP", "threads"})
      ->ArgsProduct({{1, 12}, {1}})
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
}

/// Registers an operation that works an image in place, on a fresh one each time.
using Operation = void (*)(unsigned char* pixels, int width, int height);
inline void Register(const char* name, Operation run) {
  benchmark::RegisterBenchmark(name, [=](benchmark::State& state) {
    const Size size(state.range(0));
    const auto photo = PhotoLike(size);
    auto image = photo;
    Measure(
        state, [&] { std::copy(photo.begin(), photo.end(), image.begin()); },
        [&] { run(image.data(), size.width, size.height); });
  })->Apply(SizesAndThreads);
}

}  // namespace bench

// Drawn looks: brush strokes, whole and in parts, and what sketches are made of.
#include "bench.h"
#include "portrait/brush_strokes.h"
#include "portrait/line_response.h"
#include "portrait/window_minimum.h"

namespace {

using Byte = unsigned char;
using tintwerk::BrushSketchEngine;
constexpr int kLineHalfLength = 22;

const bool kRegistered = [] {
  bench::Register("BrushSketch", [](Byte* pixels, int width, int height) {
    BrushSketchEngine::Render(pixels, width, height, kLineHalfLength);
  });
  return true;
}();

// A plane of the size at which strokes are made; rates are those of this plane.
struct Working {
  static constexpr int kWidth = 800, kHeight = 600;
  std::vector<Byte> plane = bench::Noise(kWidth * kHeight / 4);
  std::vector<Byte> result = std::vector<Byte>(kWidth * kHeight);
};

template <class Run>
void Measure(benchmark::State& state, const Run& run) {
  const bench::Threads threads(state.range(0));
  run();
  for (auto _ : state) {
    run();
    benchmark::ClobberMemory();
  }
  bench::CountPixels(state, Working::kWidth * Working::kHeight, 1);
}

void BrushSketchStrokes(benchmark::State& state) {
  Working working;
  Measure(state, [&] {
    BrushSketchEngine::StrokeMap(working.plane.data(), Working::kWidth, Working::kHeight,
                                 working.result.data(), kLineHalfLength);
  });
}
BENCHMARK(BrushSketchStrokes)
    ->ArgNames({"threads"})
    ->Arg(1)
    ->Arg(0)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void LineResponse(benchmark::State& state) {
  Working working;
  tintwerk::LineResponses lines(Working::kWidth, Working::kHeight, kLineHalfLength);
  const auto direction = static_cast<int>(state.range(1));
  Measure(state, [&] {
    if (direction % 2 == 0)
      lines.LineResponse(working.plane.data(), working.result.data(), direction);
    else
      lines.SkewedLineResponse(working.plane.data(), working.result.data(), direction);
  });
}
BENCHMARK(LineResponse)
    ->ArgNames({"threads", "direction"})
    ->ArgsProduct({{1}, {0, 1, 2, 3, 4, 6}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// Of a plane in place, which it leaves a little darker each time.
void WindowMinimum(benchmark::State& state) {
  const bench::Size size(state.range(0));
  auto plane = bench::Noise(size.Pixels() / 4);
  bench::Measure(
      state, [&] { tintwerk::WindowMinimum(plane.data(), size.width, size.height, 2); }, 1);
}
BENCHMARK(WindowMinimum)->Apply(bench::SizesAndThreads);

}  // namespace

#include <string>

#include "bench.h"
#include "pixel/blend_buffers.h"
#include "tintwerk/color_space.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using bench::Size;
using bench::Threads;

namespace {

using Byte = unsigned char;

// Blends run over their own results; none of them is the faster for it.

void Blend(benchmark::State& state, void (*run)(Byte* base, const Byte* source, int count)) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  auto base = bench::Noise(size.Pixels());
  const auto source = bench::PhotoLike(size);
  for (auto _ : state) {
    run(base.data(), source.data(), static_cast<int>(size.Pixels()));
    benchmark::ClobberMemory();
  }
  bench::CountPixels(state, size.Pixels());
}
#define TINTWERK_BENCH_BLEND(name, call)                                     \
  BENCHMARK_CAPTURE(Blend, name, [](Byte* base, const Byte* source, int n) { \
    call;                                                                    \
  })->Apply(bench::SizesAndThreads)
TINTWERK_BENCH_BLEND(Screen, tintwerk::BlendBuffersScreen(base, source, n));
TINTWERK_BENCH_BLEND(SoftLight, tintwerk::BlendBuffersSoftLight(base, source, n));
TINTWERK_BENCH_BLEND(AlphaTrunc, tintwerk::BlendBuffersAlphaTrunc(base, source, n));
TINTWERK_BENCH_BLEND(AlphaOver, tintwerk::BlendBuffersAlphaOver(base, source, n));
TINTWERK_BENCH_BLEND(ColorHSB, tintwerk::BlendBuffersColorHSB(base, source, n, 0.6f));
TINTWERK_BENCH_BLEND(FixedTint, tintwerk::BlendBuffersFixedTint(base, source, n, 0.24f));
TINTWERK_BENCH_BLEND(HueSat, tintwerk::BlendBuffersHueSat(base, source, n));
// The scalar forms, which serve processors below SSE4.1.
TINTWERK_BENCH_BLEND(ScreenScalar, tintwerk::BlendBuffersScreen(base, source, n, {0, 0}));
TINTWERK_BENCH_BLEND(SoftLightScalar, tintwerk::BlendBuffersSoftLight(base, source, n, {0, 0}));
TINTWERK_BENCH_BLEND(AlphaTruncScalar, tintwerk::BlendBuffersAlphaTrunc(base, source, n, {0, 0}));
#undef TINTWERK_BENCH_BLEND

// A mode over a megapixel.
void ChannelBlend(benchmark::State& state) {
  const Size size(1);
  const Threads threads(1);
  auto base = bench::Noise(size.Pixels());
  const auto source = bench::PhotoLike(size);
  for (auto _ : state) {
    CEffect::ChannelBlend_X(base.data(), source.data(), size.width, size.height,
                            static_cast<BlendMode>(state.range(0)), nullptr, 0, 100);
    benchmark::ClobberMemory();
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(ChannelBlend)->ArgName("mode")->DenseRange(1, 16)->Unit(benchmark::kMillisecond);

// Conversions over a megapixel, one after the other on one thread.
template <class In, class Out, class Convert>
void Sweep(const std::vector<In>& from, std::vector<Out>& to, const Convert& convert) {
  for (std::size_t i = 0; i < from.size(); i += 3)
    convert(from[i], from[i + 1], from[i + 2], to[i], to[i + 1], to[i + 2]);
  benchmark::ClobberMemory();
}

std::vector<Byte> Colours() {
  const auto image = bench::Noise(Size(1).Pixels());
  std::vector<Byte> colours;
  for (std::size_t i = 0; i < image.size(); ++i)
    if (i % 4 != 3) colours.push_back(image[i]);
  return colours;
}

// Measures a conversion to a model and the one back.
template <class Model, class Convert, class Back>
void Measure(const std::string& model, Convert convert, Back back) {
  benchmark::RegisterBenchmark(("To" + model).c_str(), [=](benchmark::State& state) {
    const auto colours = Colours();
    std::vector<Model> converted(colours.size());
    for (auto _ : state) Sweep(colours, converted, convert);
    bench::CountPixels(state, Size(1).Pixels());
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark(("From" + model).c_str(), [=](benchmark::State& state) {
    auto colours = Colours();
    std::vector<Model> converted(colours.size());
    Sweep(colours, converted, convert);
    for (auto _ : state) Sweep(converted, colours, back);
    bench::CountPixels(state, Size(1).Pixels());
  })->Unit(benchmark::kMillisecond);
}

const bool kRegistered = [] {
  using S = CColorSpace;
  Measure<float>("Hsb", S::RGBtoHSB, S::HSBtoRGB);
  Measure<Byte>("Hsl", S::RGBtoHSL, S::HSLtoRGB);
  Measure<double>("Hls", S::RGBtoHLS, [](double h, double l, double s, Byte& r, Byte& g, Byte& b) {
    S::HLStoRGB(h, l, s, r, g, b);
  });
  Measure<double>("Hsv", S::RGBtoHSV, S::HSVtoRGB);
  Measure<Byte>("Xyz", S::RGBtoXYZ, S::XYZtoRGB);
  Measure<Byte>("Yiq", S::RGBtoYIQ, S::YIQtoRGB);
  Measure<Byte>("Yuv", S::RGBtoYUV, S::YUVtoRGB);
  Measure<float>("HsbOfSFDSP", SFDSP::RGBtoHSB, SFDSP::HSBtoRGB);
  Measure<Byte>("HslOfSFDSP", SFDSP::RGBtoHSL, SFDSP::HSLtoRGB);
  return true;
}();

std::vector<Byte> Table() {
  std::vector<Byte> table(256);
  SFDSP::GeneCurveMiddle(table.data(), 128, 160);
  return table;
}

void LutSerial(benchmark::State& state) {
  const Size size(state.range(0));
  const auto table = Table();
  auto image = bench::Noise(size.Pixels());
  for (auto _ : state) {
    SFDSP::Lut(image.data(), table.data(), size.width, size.height);
    benchmark::ClobberMemory();
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(LutSerial)->ArgName("MP")->Arg(1)->Arg(12)->Unit(benchmark::kMillisecond);

void Lut(benchmark::State& state) {
  const Size size(state.range(0));
  const Threads threads(state.range(1));
  const auto table = Table();
  auto image = bench::Noise(size.Pixels());
  for (auto _ : state) {
    CPixelProcess::Lut(image.data(), size.width, size.height, table.data(), nullptr, 0, 100);
    benchmark::ClobberMemory();
  }
  bench::CountPixels(state, size.Pixels());
}
BENCHMARK(Lut)->Apply(bench::SizesAndThreads);

}  // namespace

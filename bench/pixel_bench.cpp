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
  auto base = bench::Noise(size.Pixels());
  const auto source = bench::PhotoLike(size);
  bench::Measure(state, [&] { run(base.data(), source.data(), static_cast<int>(size.Pixels())); });
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

void ChannelBlend(benchmark::State& state) {
  const Size size(state.range(0));
  auto base = bench::Noise(size.Pixels());
  const auto source = bench::PhotoLike(size);
  bench::Measure(state, [&] {
    CEffect::ChannelBlend_X(base.data(), source.data(), size.width, size.height,
                            static_cast<BlendMode>(state.range(2)), nullptr, 0, 100);
  });
}
BENCHMARK(ChannelBlend)
    ->ArgNames({"MP", "threads", "mode"})
    ->ArgsProduct({{1, 12}, {1, 0}, benchmark::CreateDenseRange(1, 16, 1)})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// Conversions over a megapixel, one after the other on the calling thread.
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
void Register(const std::string& model, Convert convert, Back back) {
  benchmark::RegisterBenchmark(("To" + model).c_str(), [=](benchmark::State& state) {
    const auto colours = Colours();
    const Threads threads(1);
    std::vector<Model> converted(colours.size());
    for (auto _ : state) Sweep(colours, converted, convert);
    bench::CountPixels(state, Size(1).Pixels());
  })->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark(("From" + model).c_str(), [=](benchmark::State& state) {
    auto colours = Colours();
    std::vector<Model> converted(colours.size());
    const Threads threads(1);
    Sweep(colours, converted, convert);
    for (auto _ : state) Sweep(converted, colours, back);
    bench::CountPixels(state, Size(1).Pixels());
  })->Unit(benchmark::kMillisecond);
}

const bool kRegistered = [] {
  using S = CColorSpace;
  Register<float>("Hsb", S::RGBtoHSB, S::HSBtoRGB);
  Register<Byte>("Hsl", S::RGBtoHSL, S::HSLtoRGB);
  Register<double>("Hls", S::RGBtoHLS, [](double h, double l, double s, Byte& r, Byte& g, Byte& b) {
    S::HLStoRGB(h, l, s, r, g, b);
  });
  Register<double>("Hsv", S::RGBtoHSV, S::HSVtoRGB);
  Register<Byte>("Xyz", S::RGBtoXYZ, S::XYZtoRGB);
  Register<Byte>("Yiq", S::RGBtoYIQ, S::YIQtoRGB);
  Register<Byte>("Yuv", S::RGBtoYUV, S::YUVtoRGB);
  Register<float>("HsbOfSFDSP", SFDSP::RGBtoHSB, SFDSP::HSBtoRGB);
  Register<Byte>("HslOfSFDSP", SFDSP::RGBtoHSL, SFDSP::HSLtoRGB);
  return true;
}();

std::vector<Byte> Table() {
  std::vector<Byte> table(256);
  SFDSP::GeneCurveMiddle(table.data(), 128, 160);
  return table;
}

void Lut(benchmark::State& state) {
  const Size size(state.range(0));
  const auto table = Table();
  auto image = bench::PhotoLike(size);
  bench::Measure(state, [&] {
    CPixelProcess::Lut(image.data(), size.width, size.height, table.data(), nullptr, 0, 100);
  });
}
BENCHMARK(Lut)->Apply(bench::SizesAndThreads);

}  // namespace

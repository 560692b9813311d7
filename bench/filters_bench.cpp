// Automatic tone, point adjustments, stylisers and repairs: one call a line.

#include "bench.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace {

using P = CPixelProcess;
using Byte = unsigned char;

constexpr CObjProgress* kNobody = nullptr;
constexpr auto kAllChannels = static_cast<P::IMAGE_CHANNEL>(7);
constexpr tagRGBQUAD kDark = {10, 20, 30, 0}, kLight = {250, 240, 230, 0};

#define TINTWERK_BENCH(name, ...)                                  \
  {                                                                \
    name, [](Byte* pixels, int width, int height) { __VA_ARGS__; } \
  }
#define IMAGE pixels, width, height
#define NO_REPORTS kNobody, 0, 100

constexpr struct {
  const char* name;
  bench::Operation run;
} kOperations[] = {
    TINTWERK_BENCH("AutoColor", P::AutoColor(IMAGE, 120, 150, NO_REPORTS)),
    TINTWERK_BENCH("AutoColorLevel", P::AutoColorLevel(IMAGE, 1, NO_REPORTS)),
    TINTWERK_BENCH("AutoConstrast", P::AutoConstrast(IMAGE, NO_REPORTS)),
    TINTWERK_BENCH("AutoWhiteBalance", P::AutoWhiteBalance(IMAGE, 100, NO_REPORTS)),
    TINTWERK_BENCH("Histogram", std::int32_t bins[4][256];
                   P::Histogram(IMAGE, bins[0], bins[1], bins[2], bins[3], 0, NO_REPORTS)),
    TINTWERK_BENCH("HistogramOfYuv", std::int32_t bins[256];
                   P::Histogram(IMAGE, bins, nullptr, nullptr, nullptr, 2, NO_REPORTS)),

    TINTWERK_BENCH("PixelBrightness", P::PixelBrightness(IMAGE, 130, NO_REPORTS)),
    TINTWERK_BENCH("Light", P::Light(IMAGE, 10, 20, NO_REPORTS)),
    TINTWERK_BENCH("LightSfdsp", SFDSP::Light(IMAGE, 10, 20)),
    TINTWERK_BENCH("LightNew", P::LightNew(IMAGE, 20, 16, NO_REPORTS)),
    TINTWERK_BENCH("ExposureFilter", P::ExposureFilter(IMAGE, 1.5f, NO_REPORTS)),
    TINTWERK_BENCH("SaturateHsl", P::Saturateconst(IMAGE, 40, 1, NO_REPORTS)),
    TINTWERK_BENCH("SaturateYuv", P::Saturateconst(IMAGE, 40, 2, NO_REPORTS)),
    TINTWERK_BENCH("SaturateFaster", P::Saturateconst_Faster(IMAGE, 40)),
    TINTWERK_BENCH("SaturateFasterSfdsp", SFDSP::Saturateconst_Faster(IMAGE, 40)),
    TINTWERK_BENCH("SaturateRectangle",
                   SFDSP::Saturateconst_Faster(pixels, width, 0, 0, width, height, 40)),
    TINTWERK_BENCH("SetHue", P::SetHue(IMAGE, 40, NO_REPORTS)),
    TINTWERK_BENCH("SetHSL", P().SetHSL(IMAGE, 40, 5, 5, NO_REPORTS)),
    TINTWERK_BENCH("BrightContrastSaturation", SFDSP::BrightContrastSaturation(IMAGE, 10, 20, 40)),
    TINTWERK_BENCH("HueSaturationBright", SFDSP::HueSaturationBright(IMAGE, 40, 10, 10)),
    TINTWERK_BENCH("ColorBalance",
                   P::CColorBalance(0, P::ToneMidtone, 100, 50, 0, IMAGE, NO_REPORTS)),
    TINTWERK_BENCH("ColorBalanceKeepingLightness",
                   P::CColorBalance(1, P::ToneMidtone, 100, 50, 0, IMAGE, NO_REPORTS)),
    TINTWERK_BENCH("Gamma", P::Istone_Gamma(IMAGE, 1.8, kAllChannels, NO_REPORTS)),
    TINTWERK_BENCH("Posterize", P::Istone_Posterize(IMAGE, 5, kAllChannels, NO_REPORTS)),
    TINTWERK_BENCH("AdjustRGB", P::Istone_AdjustRGB(IMAGE, 20, -20, 5, NO_REPORTS)),
    TINTWERK_BENCH("ShiftRGB", P::ShiftRGB(IMAGE, 40, 25, 0, NO_REPORTS)),
    TINTWERK_BENCH("Threshold", P::Threshold(IMAGE, 127, NO_REPORTS)),
    TINTWERK_BENCH("Negative", P::Negative(IMAGE, NO_REPORTS)),
    TINTWERK_BENCH("GrayScale", P::GrayScale(IMAGE, NO_REPORTS)),
    TINTWERK_BENCH("ImageToHsl", P::ConvertColorSpace(IMAGE, 1, 0, NO_REPORTS)),
    TINTWERK_BENCH("ImageToYuv", P::ConvertColorSpace(IMAGE, 2, 0, NO_REPORTS)),
    TINTWERK_BENCH("ImageToYiq", P::ConvertColorSpace(IMAGE, 3, 0, NO_REPORTS)),
    TINTWERK_BENCH("ImageToXyz", P::ConvertColorSpace(IMAGE, 4, 0, NO_REPORTS)),
    TINTWERK_BENCH("ABaoColor", P::ABaoColor(IMAGE, NO_REPORTS)),
    TINTWERK_BENCH("ColorComposite", P::Color_Channel_Composite(IMAGE, 200, 150, 100, NO_REPORTS)),
    TINTWERK_BENCH("NormalComposite",
                   P::Normal_Channel_Composite(IMAGE, 200, 150, 100, NO_REPORTS)),
    TINTWERK_BENCH("OverlayComposite",
                   P::Overlay_Channel_Composite(IMAGE, 200, 150, 100, NO_REPORTS)),
    TINTWERK_BENCH("SoftLightComposite", P::CompositeColor(IMAGE, 200, 150, 100, NO_REPORTS)),
    TINTWERK_BENCH("Multiple", P::Multiple(pixels, pixels, width, height, NO_REPORTS)),

    TINTWERK_BENCH("Blinds", P::Blinds(IMAGE, 0, 20, 60, 0, 0, 0, NO_REPORTS)),
    TINTWERK_BENCH("BlindsFromTop",
                   P::Istone_Blinds(IMAGE, P::BlindVertical, 20, 60, kDark, NO_REPORTS)),
    TINTWERK_BENCH("3DGrid", P::Istone_3DGrid(IMAGE, 20, 40, NO_REPORTS)),
    TINTWERK_BENCH("Emboss", P::Istone_Emboss(IMAGE, 3, NO_REPORTS)),
    TINTWERK_BENCH("FillGrid", P::Istone_FillGrid(IMAGE, kDark, kLight, 16, NO_REPORTS)),
    TINTWERK_BENCH("Halftone", P::Istone_HalftoneM3(IMAGE, NO_REPORTS)),
    TINTWERK_BENCH("Illusion", P::Istone_Illusion(IMAGE, 4, NO_REPORTS)),
    TINTWERK_BENCH("Noisify", P::Istone_Noisify(IMAGE, 30, true, NO_REPORTS)),
    TINTWERK_BENCH("Ripple", P::Istone_Ripple(IMAGE, 40, 10, true, NO_REPORTS)),
    TINTWERK_BENCH("Shift", P::Istone_Shift(IMAGE, 10, NO_REPORTS)),
    TINTWERK_BENCH("Splash", P::Istone_Splash(IMAGE, 10, NO_REPORTS)),
    TINTWERK_BENCH("WhirlPinch", P::Istone_WhirlPinch(IMAGE, 1.5, 0.4, NO_REPORTS)),
    TINTWERK_BENCH("Mosaic", P::Mosaic(IMAGE, 12, NO_REPORTS)),
    TINTWERK_BENCH("NoiseOfColour", P::Noise(IMAGE, 20, NO_REPORTS)),

    TINTWERK_BENCH("Dehaze", P::Dehazing(IMAGE, NO_REPORTS)),
    TINTWERK_BENCH("RedEye", P::RedEyeRemove(IMAGE, {0, 0, width, height})),
};

#undef TINTWERK_BENCH
#undef IMAGE
#undef NO_REPORTS

const bool kRegistered = [] {
  for (const auto& operation : kOperations) bench::Register(operation.name, operation.run);
  return true;
}();

// A round mask that fills the height of the image.
void Mask(benchmark::State& state) {
  const bench::Size size(state.range(0));
  std::vector<Byte> mask(size.Pixels());
  bench::Measure(
      state, [&] { P::CreateArray(mask.data(), size.height / 2, size.height / 8); }, 1);
}
BENCHMARK(Mask)->Apply(bench::Sizes);

}  // namespace

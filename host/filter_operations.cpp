#include "filter_operations.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "tintwerk/tintwerk.h"

namespace {

using P = CPixelProcess;

// The first arguments of every operation.
#define IMAGE picture.pixels.get(), picture.width, picture.height

int Int(double value) {
  return static_cast<int>(value);
}

constexpr Parameter kRadius{"radius", "pixels", 0, 2000, 5};
constexpr Parameter kTint{"strength", "share of the tinted picture, 0..1", 0, 1, 0.5, false};
constexpr Parameter Ink(std::string_view name) {
  return {name, "percent of ink to add", -100, 100, 0};
}

// In the order of CSelectiveColor::eColorType.
constexpr std::string_view kFamilies[] = {"red",     "yellow", "green", "cyan", "blue",
                                          "magenta", "white",  "grey",  "black"};

std::size_t PixelCount(const Picture& picture) {
  return std::size_t{1} * picture.width * picture.height;
}

std::vector<unsigned char> SkinMask(const Picture& picture) {
  std::vector<unsigned char> mask(PixelCount(picture));
  SFDSP::CreateSkinMask(IMAGE, mask.data(), false, 0, 0, 0, 0);
  return mask;
}

// Each channel is its own guide.
void SmoothChannels(const Picture& picture, int radius, int epsilon) {
  std::vector<unsigned char> plane(PixelCount(picture));
  for (int c = 0; c < 3; ++c) {
    for (std::size_t i = 0; i < plane.size(); ++i) plane[i] = picture.pixels[4 * i + c];
    SFDSP::GuideFilter(plane.data(), picture.width, picture.height, radius, epsilon);
    for (std::size_t i = 0; i < plane.size(); ++i) picture.pixels[4 * i + c] = plane[i];
  }
}

const FilterOperation kOperations[] = {
    {"blur",
     "Smooth blur, as fast at any radius (stack blur)",
     {kRadius},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::stackBlur(IMAGE, Int(v[0]), progress, 0, 100);
     }},
    {"gaussian",
     "Gaussian blur with a radius for each axis (Deriche)",
     {{"horizontal", "pixels", 0, 2000, 5}, {"vertical", "pixels", 0, 2000, 5}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::GaussIIRBlurImage(IMAGE, Int(v[0]), Int(v[1]), progress, 0, 100) != 0;
     }},
    {"high-pass",
     "The detail that a blur removes, on grey",
     {kRadius},
     [](const Picture& picture, const double* v, CObjProgress*) {
       SFDSP::stackBlurAndHighPass(IMAGE, Int(v[0]));
       return true;
     }},
    {"sharpen",
     "Unsharp mask",
     {{"radius", "sigma, pixels", 0.2, 50, 1.5, false}, {"amount", "strength", 0, 10, 0.8, false}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       unsigned char* blurred = nullptr;
       const bool done = P::UsmSharp(IMAGE, static_cast<float>(v[0]), static_cast<float>(v[1]),
                                     &blurred, progress, 0, 100) != nullptr;
       P::FreeUsmSharp(blurred);
       return done;
     }},
    {"brightness",
     "Brightens or darkens, less towards the ends of the scale",
     {{"amount", "0..200, 100 neutral", 0, 200, 120}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::PixelBrightness(IMAGE, Int(v[0]), progress, 0, 100) != 0;
     }},
    {"light",
     "Linear brightness and contrast",
     {{"brightness", "levels", -255, 255, 0}, {"contrast", "percent", -100, 400, 20}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Light(IMAGE, Int(v[0]), Int(v[1]), progress, 0, 100) != 0;
     }},
    {"exposure",
     "Exposes like film",
     {{"exposure", "factor", 0, 20, 2, false}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::ExposureFilter(IMAGE, static_cast<float>(v[0]), progress, 0, 100) != 0;
     }},
    {"saturation",
     "Scales the chroma",
     {{"amount", "percent", -100, 400, 30}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Saturateconst(IMAGE, Int(v[0]), 2, progress, 0, 100) != 0;
     }},
    {"hue",
     "Shifts the hue",
     {{"shift", "of a circle of 256", -128, 128, 20}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::SetHue(IMAGE, Int(v[0]), progress, 0, 100) != 0;
     }},
    {"balance",
     "Shifts the colour of a tone region",
     {{"red", "amount", -100, 100, 0},
      {"green", "amount", -100, 100, 0},
      {"blue", "amount", -100, 100, 0},
      {"region", "0 shadows, 1 midtones, 2 highlights", 0, 2, 1}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::CColorBalance(1, P::TONE_REGION(Int(v[3])), Int(v[0]), Int(v[1]), Int(v[2]), IMAGE,
                               progress, 0, 100) != 0;
     }},
    {"gamma",
     "Brightens the middle tones above 1, darkens them below",
     {{"gamma", "exponent", 0.05, 20, 1.4, false}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Istone_Gamma(IMAGE, v[0], P::IMAGE_CHANNEL(7), progress, 0, 100) != 0;
     }},
    {"posterize",
     "Reduces each channel to a few levels",
     {{"levels", "in each channel", 2, 256, 5}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Istone_Posterize(IMAGE, Int(v[0]), P::IMAGE_CHANNEL(7), progress, 0, 100) != 0;
     }},
    {"auto-levels",
     "Stretches each channel, clipping 0.6 percent at each end",
     {},
     [](const Picture& picture, const double*, CObjProgress* progress) {
       return P::AutoColorLevel(IMAGE, 1, progress, 0, 100) != 0;
     }},
    {"auto-contrast",
     "Stretches each channel to the full scale",
     {},
     [](const Picture& picture, const double*, CObjProgress* progress) {
       return P::AutoConstrast(IMAGE, progress, 0, 100) != 0;
     }},
    {"white-balance",
     "Removes a colour cast, measured on nearly white pixels",
     {{"threshold", "how bright and neutral a pixel must be to be measured", 0, 255, 130}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::AutoWhiteBalance(IMAGE, Int(v[0]), progress, 0, 100) != 0;
     }},
    {"mosaic",
     "Averages square cells",
     {{"size", "pixels", 2, 4096, 16}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Mosaic(IMAGE, Int(v[0]), progress, 0, 100) != 0;
     }},
    {"emboss",
     "Grey relief",
     {{"amount", "strength", -100, 100, 3}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Istone_Emboss(IMAGE, Int(v[0]), progress, 0, 100) != 0;
     }},
    {"halftone",
     "Black and white by an ordered dither",
     {},
     [](const Picture& picture, const double*, CObjProgress* progress) {
       return P::Istone_HalftoneM3(IMAGE, progress, 0, 100) != 0;
     }},
    {"ripple",
     "Shifts rows by a sine wave",
     {{"wavelength", "pixels", 1, 10000, 40}, {"amplitude", "pixels", 1, 10000, 8}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Istone_Ripple(IMAGE, Int(v[0]), Int(v[1]), true, progress, 0, 100) != 0;
     }},
    {"whirl",
     "Turns and pinches the picture about its centre",
     {{"angle", "radians at the centre", -6.2831, 6.2831, 1.5, false},
      {"pinch", "-1..1", -1, 1, 0, false}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Istone_WhirlPinch(IMAGE, v[0], v[1], progress, 0, 100) != 0;
     }},
    {"noise",
     "Adds even colour noise",
     {{"amount", "levels from end to end", 0, 510, 40}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Noise(IMAGE, Int(v[0]), progress, 0, 100) != 0;
     }},
    {"dehaze",
     "Removes a grey veil",
     {},
     [](const Picture& picture, const double*, CObjProgress* progress) {
       return P::Dehazing(IMAGE, progress, 0, 100) != 0;
     }},
    {"skin-mask",
     "Shows what counts as skin by its colour: white, the rest black",
     {},
     [](const Picture& picture, const double*, CObjProgress*) {
       const std::vector<unsigned char> mask = SkinMask(picture);
       for (std::size_t i = 0; i < mask.size(); ++i)
         std::fill_n(&picture.pixels[4 * i], 3, mask[i]);
       return true;
     }},
    {"smooth-skin",
     "Evens out skin: lightens what is darker than its surroundings",
     {{"sigma", "of the surroundings, pixels", 0.1, 250, 15, false}},
     [](const Picture& picture, const double* v, CObjProgress*) {
       P::SkinBase(IMAGE, static_cast<float>(v[0]));
       return true;
     }},
    {"tint-skin",
     "Tints the skin by soft light; white, the standard, lightens it",
     {{"red", "of the tint", 0, 255, 255},
      {"green", "of the tint", 0, 255, 255},
      {"blue", "of the tint", 0, 255, 255},
      {"amount", "strength, 0..1", 0, 1, 0.4, false}},
     [](const Picture& picture, const double* v, CObjProgress* progress) {
       return P::Skinbeautify(IMAGE, Int(v[0]), Int(v[1]), Int(v[2]), v[3],
                              SkinMask(picture).data(), progress, 0, 100) != 0;
     }},
    {"guided",
     "Smooths fine detail and keeps edges (guided filter)",
     {{"radius", "half the window, pixels", 1, 2000, 8},
      {"strength", "contrast up to which detail is smoothed, levels", 1, 255, 20, false}},
     [](const Picture& picture, const double* v, CObjProgress*) {
       SmoothChannels(picture, Int(v[0]), Int(v[1] * v[1]));
       return true;
     }},
    {"selective",
     "Shifts the inks of one family of colours",
     {{"family", "the colours to change", 0, std::size(kFamilies) - 1, 0, true, kFamilies},
      Ink("cyan"),
      Ink("magenta"),
      Ink("yellow"),
      Ink("black")},
     [](const Picture& picture, const double* v, CObjProgress*) {
       CSelectiveColor inks;
       inks.SetSelectiveColor(CSelectiveColor::eColorType(Int(v[0])), Int(v[1]), Int(v[2]),
                              Int(v[3]), Int(v[4]));
       inks.Execute(IMAGE);
       return true;
     }},
    {"warm",
     "Lifts red and lowers blue in the middle tones",
     {kTint},
     [](const Picture& picture, const double* v, CObjProgress*) {
       SFDSP::WarmFilter(IMAGE, static_cast<float>(v[0]));
       return true;
     }},
    {"cool",
     "Lifts blue and lowers red in the middle tones",
     {kTint},
     [](const Picture& picture, const double* v, CObjProgress*) {
       SFDSP::ColdFilter(IMAGE, static_cast<float>(v[0]));
       return true;
     }},
};

#undef IMAGE

}  // namespace

std::span<const FilterOperation> AllFilterOperations() {
  return kOperations;
}

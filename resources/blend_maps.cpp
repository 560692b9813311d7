#include "blend_maps.h"

#include <algorithm>

#include "table.h"

namespace tintwerk::paint {

double Screen(double base, double top) {
  return 1 - (1 - base) * (1 - top);
}

double Multiply(double base, double top) {
  return base * top;
}

/// Keyed by the base: Multiply in its shadows, Screen in its lights.
double Overlay(double base, double top) {
  return base < 0.5 ? 2 * base * top : 1 - 2 * (1 - base) * (1 - top);
}

/// Multiply and Screen mixed by the base. Of the forms in use this one has no kink at a middle grey
/// top and no infinite slope at black, so neither a gradient nor noise in the shadows shows a step.
double SoftLight(double base, double top) {
  return (1 - base) * Multiply(base, top) + base * Screen(base, top);
}

/// Colour burn by a dark top, colour dodge by a light one. A white base stays white and a black one
/// black where the formula divides zero by zero, so that rows and columns run on without a hole.
double VividLight(double base, double top) {
  if (base == 0 || base == 1) return base;
  if (top < 0.5) return top == 0 ? 0 : std::max(0.0, 1 - (1 - base) / (2 * top));
  return top == 1 ? 1 : std::min(1.0, base / (2 * (1 - top)));
}

double Exclusion(double base, double top) {
  return base + top - 2 * base * top;
}

/// A bloom: the top is a blurred copy of the base, so screening it in full would wash the picture
/// out. Its square keeps the shadows' depth and lets the lights spill over their edges; the factor
/// makes a flat middle grey a seventh brighter.
double SoftGlow(double base, double top) {
  return Screen(base, 0.55 * top * top);
}

/// A print on aged paper. Soft light lets a middle grey paper leave the mid-tones alone and its
/// tint and stains colour them; it cannot touch black and white, which a fifth of the bare paper
/// does: it lifts the blacks, dims the whites, and lets dust and scratches show on both.
double AgedPrint(double base, double top) {
  return 0.8 * SoftLight(base, top) + 0.2 * top;
}

/// Light that falls in, on an image that was brightened for it. A soft light that leans to the
/// dark: the ground, a dim 0.42, takes the brightening back. The source itself outshines the image.
double HaloLight(double base, double top) {
  const double square = top * top;
  return Screen(SoftLight(base, 0.4 * top + 0.6 * square), square * square * square);
}

namespace {

unsigned char BlendByte(Blend blend, int percent, int base, int top) {
  const double whole = 255 * blend(base / 255.0, top / 255.0);
  return RoundToByte(base + (whole - base) * percent / 100);
}

}  // namespace

Picture BlendMap::operator()() const {
  Picture map(256, 256);
  for (int base = 0; base < 256; ++base)
    for (int top = 0; top < 256; ++top)
      map.At(top, base) = Grey(BlendByte(blend, percent, base, top));
  return map;
}

Picture BlendStrip::operator()() const {
  Picture strip(256, 1);
  for (int value = 0; value < 256; ++value)
    strip.At(value, 0) = Grey(BlendByte(blend, percent, value, value));
  return strip;
}

std::span<const File> BlendMapFiles() {
  static const File files[] = {
      // Blends at a strength in percent. A colour composite is a soft light of the colour, as in
      // the library's own operation of that name. An image overlay is the plain Overlay: its users
      // screen a picture on first, and this has to give back the contrast.
      {"CompositeColor.png", BlendMap{SoftLight}},
      {"hqc_Exclusion.png", BlendMap{Exclusion}},
      {"hqc_VividLight.png", BlendMap{VividLight}},
      {"huiyi4.png", BlendMap{AgedPrint}},
      {"overlayMap.png", BlendMap{Overlay}},
      {"PSMultiple.png", BlendMap{Multiply}},
      {"PSScreen.png", BlendMap{Screen}},
      {"PSScreen35.png", BlendMap{Screen, 35}},
      {"PSScreen50.png", BlendMap{Screen, 50}},
      {"ZVImageOverlay.png", BlendMap{Overlay}},
      {"ZVMultiple50.png", BlendMap{Multiply, 50}},
      {"ZVOverlay25.png", BlendMap{Overlay, 25}},
      {"ZVOverlay60.png", BlendMap{Overlay, 60}},
      {"ZVPixelSoftGlow.png", BlendMap{SoftGlow}},
      {"ZVQCGYEx.png", BlendMap{HaloLight}},
      {"ZVScreen.png", BlendMap{Screen}},
      {"ZVSoftLight.png", BlendMap{SoftLight}},
      {"ZVSoftlight.png", BlendMap{SoftLight}},
      {"ZVSoftLight60.png", BlendMap{SoftLight, 60}},
      {"ZVVividLight50.png", BlendMap{VividLight, 50}},
      {"style/hefeng3.png", BlendMap{SoftLight}},
      {"style/overlayMap.png", BlendMap{Overlay}},
      {"style/PSOverlay30.png", BlendMap{Overlay, 30}},
      {"style/PSOverlay40.png", BlendMap{Overlay, 40}},
      {"style/PSOverlay60.png", BlendMap{Overlay, 60}},
      {"style/PSScreen.png", BlendMap{Screen}},

      // Blends of a value with itself.
      {"hqc_SoftLight.png", BlendStrip{SoftLight}},
      {"screen30.png", BlendStrip{Screen, 30}},
  };
  return files;
}

}  // namespace tintwerk::paint

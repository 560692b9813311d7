// Files of two-key tone tables: what becomes of a tone beside a second one.
#pragma once

#include <functional>
#include <vector>

#include "blend_maps.h"
#include "frame/monotone_cubic.h"
#include "picture.h"

namespace tintwerk::paint {

/// The tone, 0..1, that a plane holds for its high and its low key, 0..1 as well.
using PlaneFunction = std::function<double(double high, double low)>;

/// Whole planes of 256 x 256 bytes, high key by high key, a gap of zeros before each. Files with
/// tone tables have them straight after the last plane.
struct PlaneFile {
  std::vector<PlaneFunction> planes;
  std::vector<std::vector<CurvePoint>> tones = {};

  Bytes operator()() const;
};

/// 256 x 256: row = first key, column = second, each channel by a function of its own.
struct PlaneMap {
  PlaneFunction red, green, blue;

  Picture operator()() const;
};

/// A tone curve that keeps its ends unless it is told to move them.
struct ToneBend {
  double bend = 0;      // -1..1; above 0 lightens the middle
  double contrast = 0;  // -1..1; above 0 is an S-curve about the middle
  double black = 0;     // what black becomes
  double white = 1;     // what white becomes

  double operator()(double tone) const;
};

/// A tone curve on the high key; the low one makes no difference.
struct OwnTone {
  ToneBend tone = {};

  double operator()(double high, double) const { return tone(high); }
};

/// A print of a portrait studio: the sharp image (high key) against its slightly blurred copy (low
/// key). What the two differ by is detail; it is multiplied, faint texture apart from edges.
struct StudioPrint {
  double texture = 1;  // below 1 smooths skin and grain, above 1 sharpens
  double edges = 1;    // likewise for lashes, hair and outlines
  double glow = 0;     // share of the squared blur that is screened on, 0..1
  ToneBend tone = {};

  double operator()(double sharp, double blurred) const;
};

/// A soft light that lightens more than it darkens: pure colours turn pastel, and a face under them
/// keeps its light.
double PastelLight(double base, double top);

/// The image (high key) under a picture or a gradient (low key), then a tone curve.
struct PictureBlend {
  Blend blend;
  double strength = 1;  // 0 leaves the image, 1 is the whole blend
  double wash = 0;      // share of the picture that veils the result
  ToneBend tone = {};

  double operator()(double image, double picture) const;
};

}  // namespace tintwerk::paint

// Colour in a space where equal steps look equal: OKLab, a lightness and two opponent axes. Plain
// arithmetic and square roots throughout, so that every machine computes the same.
#pragma once

namespace tintwerk::paint {

/// sRGB primaries, either encoded as in a file or linear in light; 0..1.
struct Rgb {
  double red;
  double green;
  double blue;
};

struct OkLab {
  double lightness;  // 0 black .. 1 white
  double a;          // green to red
  double b;          // blue to yellow
};

/// The cube root of a number that is not negative.
double CubeRoot(double x);

/// A unit vector at an angle in degrees.
struct Direction {
  double cosine;
  double sine;
};
Direction AtAngle(double degrees);

/// The transfer function of sRGB, channel by channel.
Rgb Linear(const Rgb& encoded);
Rgb Encoded(const Rgb& linear);

OkLab ToOkLab(const Rgb& linear);
/// The colour in linear light; its channels lie outside 0..1 where sRGB does not reach.
Rgb FromOkLab(const OkLab& colour);

double Chroma(const OkLab& colour);

/// Of all the colours of a hue in sRGB, the one with the most chroma; not for blues, at whose side
/// the gamut has a dent.
OkLab Cusp(const Direction& hue);

}  // namespace tintwerk::paint

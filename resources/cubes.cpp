#include "cubes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "noise.h"

namespace tintwerk::paint {
namespace {

/// Weights of the three values that drift with lightness.
struct Drift {
  explicit Drift(double t) : shadows((1 - t) * (1 - t)), middle(2 * t * (1 - t)), lights(t * t) {}

  double shadows, middle, lights;
};

/// Another hue. Between orange and green, where the lightness of the purest colours falls steeply to
/// either side of yellow, strong colours take the lightness and the chroma that their new hue has,
/// or they would turn pale where it holds little chroma.
OkLab Turned(const OkLab& colour, double degrees) {
  const Direction turn = AtAngle(degrees);
  const OkLab turned = {colour.lightness, colour.a * turn.cosine - colour.b * turn.sine,
                        colour.a * turn.sine + colour.b * turn.cosine};
  const double chroma = Chroma(colour);
  static const Direction middle = AtAngle(105), near = AtAngle(20), far = AtAngle(45);
  const double along = colour.a * middle.cosine + colour.b * middle.sine;
  if (degrees == 0 || along <= far.cosine * chroma) return turned;

  const OkLab from = Cusp({colour.a / chroma, colour.b / chroma});
  const OkLab to = Cusp({turned.a / chroma, turned.b / chroma});
  const double share =
      SmoothStep(far.cosine, near.cosine, along / chroma) * std::min(chroma / Chroma(from), 1.0);
  const double scale = Lerp(1, Chroma(to) / Chroma(from), share);
  return {colour.lightness * Lerp(1, to.lightness / from.lightness, share), scale * turned.a,
          scale * turned.b};
}

/// A grade made ready: angles as directions.
class Grader {
 public:
  explicit Grader(const Grade& grade)
      : grade_(grade),
        shadowCast_(Vector(grade.cast.shadows)),
        middleCast_(Vector(grade.cast.middle)),
        lightCast_(Vector(grade.cast.lights)) {
    for (const HueBand& band : grade.bands)
      bands_.push_back({band, AtAngle(band.hue), AtAngle(band.reach).cosine});
  }

  /// @param encoded channels 0..1
  /// @return a colour of lightness 0..1 that may lie outside the gamut
  OkLab operator()(const Rgb& encoded) const {
    const Rgb layers = {Layer(encoded.red, grade_.bend.red, grade_.contrast.red),
                        Layer(encoded.green, grade_.bend.green, grade_.contrast.green),
                        Layer(encoded.blue, grade_.bend.blue, grade_.contrast.blue)};
    Rgb light = Linear(layers);
    if (grade_.filter) {
      const Rgb& share = *grade_.filter;
      const double grey =
          share.red * light.red + share.green * light.green + share.blue * light.blue;
      light = {grey, grey, grey};
    }
    return Develop(light);
  }

 private:
  struct Band {
    HueBand band;
    Direction hue;
    double edge;  // cosine of the reach
  };

  static OkLab Vector(const Cast& cast) {
    const Direction hue = AtAngle(cast.hue);
    return {0, cast.chroma * hue.cosine, cast.chroma * hue.sine};
  }

  /// The power of 3/2: from lightness, a cube root of light, to its square root.
  static double ThreeHalves(double x) { return x * std::sqrt(x); }

  static double Layer(double v, double bend, double contrast) {
    return v + v * (1 - v) * (bend + contrast * (2 * v - 1));
  }

  /// 1 for the hues that skin of any tone has, 0 for greys and for hues 37 degrees away. The ramp is
  /// as wide in every direction, and wider than a cell of a cube, or the cube could not follow it.
  static double SkinLikeness(const OkLab& colour, double chroma) {
    static const Direction skin = AtAngle(55);
    return SmoothStep(0, 0.08, 5 * (colour.a * skin.cosine + colour.b * skin.sine) - 4 * chroma);
  }

  /// Light through the tone curve, half each channel by itself, as film does, and half all of them
  /// by one gain, which keeps the colour. That is the gain of the brightest channel, so that none
  /// leaves the gamut, but smoothly: the channels count by the fourth power of their light. With a
  /// plain maximum, a cube's greys would be too dark between its nodes. Greys get the curve itself.
  /// Of the hue's turn, 60 percent are given back.
  OkLab Toned(const Rgb& light, const OkLab& before, double exposure) const {
    const auto curve = [&, bend = std::clamp(exposure, -1.0, 1.0)](double x) {
      x *= 1 + bend * (1 - x);
      const double gain =
          1 - grade_.tone.toe * (1 - x) * (1 - x) + grade_.tone.shoulder * x * (1 - x);
      return std::clamp(x * gain, 0.0, 1.0);
    };
    double sum = 0, weights = 1e-30;
    for (const double v : {light.red, light.green, light.blue}) {
      const double weight = v * v * v * v;
      sum += weight * CubeRoot(v);
      weights += weight;
    }
    const double brightest = sum / weights;
    const double gain = brightest > 0 ? curve(brightest) / brightest : 0;
    const auto channel = [&](double v) {
      const double x = CubeRoot(v);
      const double toned = (curve(x) + gain * x) / 2;
      return toned * toned * toned;
    };
    const OkLab after = ToOkLab({channel(light.red), channel(light.green), channel(light.blue)});
    const double chroma = Chroma(after), chromaBefore = Chroma(before);
    if (chroma < 1e-5 || chromaBefore < 1e-5) return {after.lightness, 0, 0};
    const auto between = [&](double OkLab::*axis) {
      return Lerp(after.*axis / chroma, before.*axis / chromaBefore, 0.6);
    };
    const OkLab hue = {0, between(&OkLab::a), between(&OkLab::b)};
    const double scale = chroma / Chroma(hue);
    return {after.lightness, scale * hue.a, scale * hue.b};
  }

  OkLab Develop(const Rgb& light) const {
    const OkLab colour = ToOkLab(light);
    const double chroma = Chroma(colour);
    const double cosine = chroma > 0 ? colour.a / chroma : 1;
    const double sine = chroma > 0 ? colour.b / chroma : 0;
    // Pure colours are skin by half, and casts, which are seen in greys, reach them by half: all of a
    // cast would take many out of the gamut.
    const double fading = 1 - 0.5 * SmoothStep(0.1, 0.3, chroma);
    const double changed = 1 - grade_.skin * fading * SkinLikeness(colour, chroma);

    double turn = 0;
    double saturation = 1;
    double exposure = grade_.tone.exposure - grade_.density * chroma;
    for (const Band& band : bands_) {
      const double near = cosine * band.hue.cosine + sine * band.hue.sine;
      const double weight = SmoothStep(band.edge, 1, near) * chroma / (chroma + 0.04);
      turn += weight * band.band.shift;
      saturation *= 1 + weight * (band.band.saturation - 1);
      exposure += weight * band.band.exposure;
    }

    const OkLab toned = Turned(Toned(light, colour, exposure), changed * turn);
    // The ends move in encoded values, nearly: a shift of lightness would steepen the deep shadows.
    const double black = ThreeHalves(grade_.ends.black);
    const double span = ThreeHalves(grade_.ends.white) - black;
    const double moved = CubeRoot(black + span * ThreeHalves(toned.lightness));

    const Drift drift(toned.lightness);
    saturation *= drift.shadows * grade_.saturation.shadows +
                  drift.middle * grade_.saturation.middle + drift.lights * grade_.saturation.lights;
    // Colours that are strong already are not pushed out of the gamut.
    if (saturation > 1) saturation -= (saturation - 1) * SmoothStep(0.1, 0.35, chroma);
    const double scale = (1 + changed * (saturation - 1)) * span;
    const auto cast = [&](double OkLab::*axis) {
      return changed * fading *
             (drift.shadows * shadowCast_.*axis + drift.middle * middleCast_.*axis +
              drift.lights * lightCast_.*axis);
    };
    return {moved * moved, scale * toned.a + cast(&OkLab::a), scale * toned.b + cast(&OkLab::b)};
  }

  const Grade& grade_;
  OkLab shadowCast_, middleCast_, lightCast_;
  std::vector<Band> bands_;
};

/// A colour by its way from a grey to the rim of the gamut. For a pale colour that is the grey of
/// its own lightness, for a strong one a grey nearer to the middle, so that what gives way at the
/// rim is a little of both: bright yellow keeps more of its colour, dark blue more of its light.
/// The way is straight in linear light, where the gamut has no dents.
struct Placed {
  Rgb colour;
  double grey;       // the channels where the way starts
  double reach = 0;  // the colour's place on it: 1 on the rim, above outside
  double room = 0;   // chroma at the rim
};

Placed Place(const OkLab& colour) {
  const Rgb c = FromOkLab(colour);
  const double chroma = std::sqrt(colour.a * colour.a + colour.b * colour.b);
  const double off = colour.lightness - 0.5;
  const double e = 0.5 + std::abs(off) + 1.5 * chroma * chroma;
  const double pull = e - std::sqrt(std::max(0.0, e * e - 2 * std::abs(off)));
  const double start = (1 + (off < 0 ? -pull : pull)) / 2;
  const double grey = start * start * start;
  if (chroma < 1e-5) return {c, grey};

  double reach = 0;
  for (const double channel : {c.red, c.green, c.blue})
    reach = std::max(reach, channel > grey ? (channel - grey) / std::max(1 - grey, 1e-6)
                                           : (grey - channel) / std::max(grey, 1e-6));
  return {c, grey, reach, chroma / reach};
}

/// Brings colours into the gamut: untouched in its inner part, then ever more compressed, so that
/// the farthest colour of the cube ends at the rim. A grade that stays inside is left alone.
class GamutCompressor {
 public:
  explicit GamutCompressor(const std::vector<Placed>& nodes) {
    double farthest = 1;
    // Next to black and white the rim is so close that any cast is far outside; those few nodes do
    // not set the measure for all others.
    for (const Placed& node : nodes)
      if (node.room > 0.04) farthest = std::max(farthest, std::min(node.reach, 3.0));
    if (farthest > 1 + 1e-4) softness_ = (farthest - kKnee) * (1 - kKnee) / (farthest - 1);
  }

  Rgb operator()(const Placed& node) const {
    double reach = node.reach;
    if (softness_ > 0 && reach > kKnee)
      reach = kKnee + (reach - kKnee) / (1 + (reach - kKnee) / softness_);
    const double t = node.reach > 0 ? std::min(reach, 1.0) / node.reach : 1;
    return {Lerp(node.grey, node.colour.red, t), Lerp(node.grey, node.colour.green, t),
            Lerp(node.grey, node.colour.blue, t)};
  }

 private:
  static constexpr double kKnee = 0.65;
  double softness_ = 0;  // 0: there is nothing to compress
};

std::size_t NodePlace(const CubeLayout& layout, int r, int g, int b) {
  const int x = b % layout.tiles * layout.levels + r;
  const int y = b / layout.tiles * layout.levels + g;
  return static_cast<std::size_t>(y) * layout.Side() + x;
}

}  // namespace

double NodeValue(const CubeLayout& layout, int index) {
  const int last = layout.levels - 1;
  const double share = double(index) / last;
  return layout.step * index + (255 - layout.step * last) * share * share * share * share;
}

Picture Cube::operator()() const {
  const Grader grader(grade);
  std::vector<Placed> nodes(static_cast<std::size_t>(layout.Side()) * layout.Side());
  const auto value = [&](int index) { return NodeValue(layout, index) / 255; };
  for (int b = 0; b < layout.levels; ++b)
    for (int g = 0; g < layout.levels; ++g)
      for (int r = 0; r < layout.levels; ++r)
        nodes[NodePlace(layout, r, g, b)] = Place(grader({value(r), value(g), value(b)}));

  const GamutCompressor compress(nodes);
  Picture picture(layout.Side(), layout.Side());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const Rgb c = Encoded(compress(nodes[i]));
    picture.pixels[i] = {RoundToByte(255 * c.red), RoundToByte(255 * c.green),
                         RoundToByte(255 * c.blue)};
  }
  return picture;
}

Rgb ThroughCube(const Picture& cube, const CubeLayout& layout, const Rgb& colour) {
  struct Axis {
    int low, high;
    double share;  // of the higher node
  };
  const auto axis = [&](double value) {
    const double place = std::clamp(value / layout.step, 0.0, layout.levels - 1.0);
    const int low = static_cast<int>(place);
    return Axis{low, std::min(low + 1, layout.levels - 1), place - low};
  };
  const Axis r = axis(colour.red), g = axis(colour.green), b = axis(colour.blue);
  Rgb sum{0, 0, 0};
  for (int corner = 0; corner < 8; ++corner) {
    const auto pick = [&](const Axis& a, int bit) { return corner & bit ? a.high : a.low; };
    const auto weight = [&](const Axis& a, int bit) {
      return corner & bit ? a.share : 1 - a.share;
    };
    const Pixel& node = cube.pixels[NodePlace(layout, pick(r, 1), pick(g, 2), pick(b, 4))];
    const double w = weight(r, 1) * weight(g, 2) * weight(b, 4);
    sum.red += w * node.red;
    sum.green += w * node.green;
    sum.blue += w * node.blue;
  }
  return sum;
}

}  // namespace tintwerk::paint

#include "charts.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "colour_difference.h"
#include "noise.h"

namespace tintwerk::paint {
namespace {

double LargestStep(const Rgb& one, const Rgb& other) {
  return std::max({std::abs(one.red - other.red), std::abs(one.green - other.green),
                   std::abs(one.blue - other.blue)});
}

/// A direction in degrees, -180..180.
double Angle(const OkLab& c) {
  return std::atan2(c.b, c.a) * 180 / std::numbers::pi;
}

OkLab Perceived(const Rgb& channels) {
  return ToOkLab(Linear({channels.red / 255, channels.green / 255, channels.blue / 255}));
}

class Charts {
 public:
  explicit Charts(const Cube& cube) : layout_(cube.layout), picture_(cube()) {
    for (int v = 0; v < 256; ++v) {
      greys_.push_back(Graded({double(v), double(v), double(v)}));
      neutral_.push_back(Perceived(greys_.back()));
    }
  }

  void ReadGreys(ChartReading& worst) const {
    const auto lightness = [](const Rgb& c) {
      return ToCieLab({c.red / 255, c.green / 255, c.blue / 255}).lightness;
    };
    const double black = lightness(greys_.front()), white = lightness(greys_.back());
    for (std::size_t v = 0; v < greys_.size(); ++v) {
      if (v > 0) worst.greyStep = std::max(worst.greyStep, LargestStep(greys_[v], greys_[v - 1]));
      worst.crushed += lightness(greys_[v]) < black + 0.6;
      worst.burnt += lightness(greys_[v]) > white - 0.6;
    }
  }

  void ReadLine(const Rgb& muted, const Rgb& pure, ChartReading& worst) const {
    constexpr double kTint = 5;
    const int steps = static_cast<int>(std::ceil(LargestStep(muted, pure)));
    double peak = 0, first = 0, low = 0, high = 0;
    bool hasHue = false;
    Rgb before = Graded(muted);
    for (int i = 0; i <= steps; ++i) {
      const double t = double(i) / steps;
      const Rgb result = Graded({Lerp(muted.red, pure.red, t), Lerp(muted.green, pure.green, t),
                                 Lerp(muted.blue, pure.blue, t)});
      worst.lineStep = std::max(worst.lineStep, LargestStep(result, before));
      before = result;

      const OkLab colour = FromOwnGrey(result);
      const double chroma = 100 * Chroma(colour);
      peak = std::max(peak, chroma);
      worst.loss = std::max(worst.loss, peak - chroma);
      if (peak > kTint) worst.ring = std::max(worst.ring, 100 * (peak - chroma) / peak);
      if (chroma < kTint) continue;
      if (!hasHue) first = Angle(colour);
      hasHue = true;
      const double turn = std::remainder(Angle(colour) - first, 360.0);
      low = std::min(low, turn);
      high = std::max(high, turn);
    }
    worst.swing = std::max(worst.swing, high - low);
  }

  void ReadSkin(ChartReading& worst) const {
    for (const Rgb& skin : kSkinTones) {
      const OkLab c = Perceived(Graded(skin));
      worst.turnedSkin += Chroma(c) > 0.015 && (Angle(c) < 10 || Angle(c) > 105);
    }
  }

 private:
  Rgb Graded(const Rgb& colour) const { return ThroughCube(picture_, layout_, colour); }

  /// A result as seen against the grey of the cube that is as light.
  OkLab FromOwnGrey(const Rgb& result) const {
    const OkLab colour = Perceived(result);
    const auto above = std::ranges::lower_bound(neutral_.begin() + 1, neutral_.end() - 1,
                                                colour.lightness, {}, &OkLab::lightness);
    const auto below = above - 1;
    const double gap = std::max(above->lightness - below->lightness, 1e-6);
    const double t = std::clamp((colour.lightness - below->lightness) / gap, 0.0, 1.0);
    return {colour.lightness, colour.a - Lerp(below->a, above->a, t),
            colour.b - Lerp(below->b, above->b, t)};
  }

  CubeLayout layout_;
  Picture picture_;
  std::vector<Rgb> greys_;
  std::vector<OkLab> neutral_;
};

}  // namespace

Rgb Wheel(double turn, double saturation, double value) {
  const auto channel = [&](double offset) {
    const double k = std::fmod(turn + offset, 6);
    return 255 * value * (1 - saturation * std::clamp(std::min(k, 4 - k), 0.0, 1.0));
  };
  return {channel(5), channel(3), channel(1)};
}

ChartReading ReadCharts(const Cube& cube) {
  constexpr int kHues = 72;
  const Charts charts(cube);
  ChartReading worst;
  charts.ReadGreys(worst);
  charts.ReadSkin(worst);
  for (int hue = 0; hue < kHues; ++hue) {
    const double turn = 6.0 * hue / kHues;
    charts.ReadLine(Wheel(turn, 0.6, 0.5), Wheel(turn, 1, 1), worst);
    charts.ReadLine(Wheel(turn, 0.2, 1), Wheel(turn, 1, 1), worst);
    charts.ReadLine(Wheel(turn, 0.2, 0.75), Wheel(turn, 1, 0.75), worst);
  }
  return worst;
}

}  // namespace tintwerk::paint

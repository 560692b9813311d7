#include "curves.h"

#include <algorithm>
#include <cstddef>

namespace tintwerk::paint {
namespace {

/// The slope of the curve at each sample: the harmonic mean of its neighbours' slopes, weighted by
/// the intervals, and 0 at a turning point. At the ends the slope of the outer interval holds.
std::vector<double> Tangents(std::span<const Sample> samples) {
  const auto width = [&](std::size_t i) { return double(samples[i + 1].in - samples[i].in); };
  const auto slope = [&](std::size_t i) {
    return (samples[i + 1].out - samples[i].out) / width(i);
  };
  const std::size_t last = samples.size() - 1;
  std::vector<double> tangents(samples.size());
  tangents.front() = slope(0);
  tangents.back() = slope(last - 1);
  for (std::size_t i = 1; i < last; ++i) {
    const double before = slope(i - 1);
    const double after = slope(i);
    if (before * after <= 0) continue;
    const double weight_before = 2 * width(i) + width(i - 1);
    const double weight_after = width(i) + 2 * width(i - 1);
    tangents[i] = (weight_before + weight_after) / (weight_before / before + weight_after / after);
  }
  return tangents;
}

}  // namespace

std::array<unsigned char, 256> MonotoneCurve(std::span<const Sample> samples) {
  std::array<unsigned char, 256> curve;
  std::fill_n(curve.begin(), samples.front().in, static_cast<unsigned char>(samples.front().out));
  std::fill(curve.begin() + samples.back().in, curve.end(),
            static_cast<unsigned char>(samples.back().out));
  if (samples.size() < 2) return curve;

  const std::vector<double> tangents = Tangents(samples);
  for (std::size_t i = 0; i + 1 < samples.size(); ++i) {
    const double width = samples[i + 1].in - samples[i].in;
    for (int in = samples[i].in; in < samples[i + 1].in; ++in) {
      // The four Hermite polynomials at t, the place within the interval.
      const double t = (in - samples[i].in) / width;
      const double rest = 1 - t;
      curve[in] = RoundToByte(
          (1 + 2 * t) * rest * rest * samples[i].out + t * rest * rest * width * tangents[i] +
          t * t * (3 - 2 * t) * samples[i + 1].out - t * t * rest * width * tangents[i + 1]);
    }
  }
  return curve;
}

Picture CurveStrip::operator()() const {
  const auto r = MonotoneCurve(red);
  const auto g = MonotoneCurve(green);
  const auto b = MonotoneCurve(blue);
  Picture strip(256, rows);
  for (int row = 0; row < rows; ++row)
    for (int v = 0; v < 256; ++v) strip.At(v, row) = {r[v], g[v], b[v]};
  return strip;
}

}  // namespace tintwerk::paint

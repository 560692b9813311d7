#include "sheet.h"

#include <algorithm>
#include <cmath>

namespace tintwerk::paint {
namespace {

/// Strands beside each other, a unit wide; along each a value that changes about once in a unit.
/// Where one changes has nothing to do with its neighbours, so no lattice shows.
double Strands(double along, double across, std::uint32_t seed) {
  const auto strand = [&](std::int32_t row) {
    const double at = along + Hash(row, 0, seed) / 67108864.0;
    const double left = std::floor(at);
    const auto value = [&](std::int32_t place) {
      return Hash(place, row, seed + 1) / 2147483648.0 - 1;
    };
    const auto place = static_cast<std::int32_t>(left);
    return Lerp(value(place), value(place + 1), SmoothStep(0, 1, at - left));
  };
  const double row = std::floor(across);
  const auto first = static_cast<std::int32_t>(row);
  return Lerp(strand(first), strand(first + 1), SmoothStep(0, 1, across - row));
}

}  // namespace

double FromEdges(double x, double y, double right) {
  const double across = std::max(1e-9, std::min(x, right - x));
  const double down = std::max(1e-9, std::min(y, 1 - y));
  return across * down / std::sqrt(across * across + down * down);
}

double RoughEdge::operator()(double x, double y, double push) const {
  const double edge = FromEdges(x, y, right) - push;
  if (edge > width + 1.2 * ragged + softness) return 0;
  const double line = width + ragged * CloudNoise(3.5 * x, 3.5 * y, seed, 4);
  return 1 - SmoothStep(line - softness, line + softness, edge);
}

double PencilField::operator()(double x, double y) const {
  // A shift to the side of at most tan 10 degrees times the way it takes.
  const double wander = 0.025 * GradientNoise(3.3 * x, 3.3 * y, seed_ + 9);
  const double along = x * along_.cosine + y * along_.sine;
  const double across = y * along_.cosine - x * along_.sine + wander;
  return (2 * Strands(along / length_, across / width_, seed_) +
          Strands(2 * along / length_, 2 * across / width_ + 0.37, seed_ + 4)) /
         3;
}

}  // namespace tintwerk::paint

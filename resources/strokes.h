// Strokes of pencils and brushes, and the hatching that a hand makes of them.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

#include "light.h"
#include "noise.h"

namespace tintwerk::paint {

/// One movement of the hand. Lengths are in heights of the sheet.
struct Stroke {
  double x, y;  // its middle
  Direction to;
  double length, width;
  double bow;  // by how much its ends lie to the side of its middle
};

/// Calls visit(column, row, along, across) for the pixels under a stroke: `along` runs from 0 where it
/// starts to 1, `across` from -1 to 1.
template <class Visit>
void Trace(const Stroke& stroke, Size size, const Visit& visit) {
  const double x = stroke.x * size.height, y = stroke.y * size.height;
  const double length = stroke.length * size.height, half = stroke.width * size.height / 2;
  const double bow = stroke.bow * size.height, side = half + std::abs(bow);
  const double cosine = stroke.to.cosine, sine = stroke.to.sine;
  const double reachX = std::abs(cosine) * length / 2 + std::abs(sine) * side;
  const double reachY = std::abs(sine) * length / 2 + std::abs(cosine) * side;
  const int left = std::max(0, int(x - reachX)), top = std::max(0, int(y - reachY));
  const int right = std::min(size.width, int(x + reachX) + 1);
  const int bottom = std::min(size.height, int(y + reachY) + 1);
  for (int row = top; row < bottom; ++row)
    for (int column = left; column < right; ++column) {
      const double dx = column + 0.5 - x, dy = row + 0.5 - y;
      const double along = (dx * cosine + dy * sine) / length + 0.5;
      if (along < 0 || along > 1) continue;
      const double bent = bow * (2 * along - 1) * (2 * along - 1);
      const double across = (dy * cosine - dx * sine - bent) / half;
      if (across >= -1 && across <= 1) visit(column, row, along, across);
    }
}

/// How a hand fills a sheet: patch after patch of strokes beside each other. Those of a patch have
/// their angle and their bow in common.
struct Hatch {
  double angle;          // degrees clockwise from the right
  double sway;           // by how many degrees the patches leave it, slowly over the sheet
  double length, width;  // of a stroke
  double spacing;        // of the strokes in a patch
  double pressure;       // 0 hardly touches the tooth of the paper, 1 fills it
  double share = 1;      // of the sheet that is hatched
  double margin = -0.1;  // how far from the edges the patches keep
  std::uint32_t seed;

  /// Draws with the pencils in turn, at random.
  void operator()(Canvas& canvas, std::span<const Rgb> pencils) const;
  void operator()(Canvas& canvas, const Rgb& pencil) const { (*this)(canvas, {&pencil, 1}); }
};

}  // namespace tintwerk::paint

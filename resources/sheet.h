// Grounds of drawings and old prints: a ragged border, pencil strokes, the tooth of paper.
#pragma once

#include <cstdint>

#include "noise.h"
#include "oklab.h"

namespace tintwerk::paint {

/// The border of a sheet that is `right` wide and 1 high: 1 outside, 0 inside, along a noisy line
/// that keeps to the edges.
struct RoughEdge {
  double right;
  double width;     // how far the line lies from the edge on average
  double ragged;    // by how much at most it leaves that
  double softness;  // of the line
  std::uint32_t seed;

  /// @param push moves the line inward here
  double operator()(double x, double y, double push = 0) const;
};

/// How far a place lies from the edges of a sheet that is `right` wide and 1 high; rounded in the
/// corners, where two edges are near.
double FromEdges(double x, double y, double right);

/// Strokes of a pencil, or what is left white between them: noise that is stretched along a
/// direction which wanders by some ten degrees.
class PencilField {
 public:
  /// @param angle of the strokes, in degrees clockwise from the right
  /// @param length,width of a stroke, in heights
  PencilField(double angle, double length, double width, std::uint32_t seed)
      : along_(AtAngle(angle)), length_(length), width_(width), seed_(seed) {}

  /// @return about -1..1, 0 on average
  double operator()(double x, double y) const;

 private:
  Direction along_;
  double length_, width_;
  std::uint32_t seed_;
};

/// The grain of drawing paper, about -1..1, with features of some four pixels on a sheet 1000 high.
inline double Tooth(double x, double y, std::uint32_t seed) {
  return CloudNoise(170 * x, 170 * y, seed, 2);
}

}  // namespace tintwerk::paint

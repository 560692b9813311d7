// Solid things, told by their distance: a function that gives how far a point lies outside.
#pragma once

#include <span>

#include "vec.h"

namespace scene {

/// How a surface answers light.
struct Surface {
  Vec3 albedo = {0.5f, 0.5f, 0.5f};
  float gloss = 0;              ///< strength of the highlight, 0..1
  float polish = 20;            ///< its sharpness
  Vec3 bleed = {0, 0, 0};       ///< how far light creeps round the edge of the shadow, per colour
  float relief = 0, grain = 0;  ///< bumps: their steepness, and how many to the metre
};

struct Solid {
  Vec3 low, high;  ///< opposite corners of a box that holds the solid
  float (*distance)(Vec3 p);
  Surface (*surface)(Vec3 p);
};

std::span<const Solid> StillLife();
std::span<const Solid> Figure();

inline float Sphere(Vec3 p, float radius) {
  return Length(p) - radius;
}

inline float Ellipsoid(Vec3 p, Vec3 radii) {
  const float k = Length(p / radii);
  return k * (k - 1) / std::max(Length(p / (radii * radii)), 1e-6f);
}

inline float Box(Vec3 p, Vec3 half, float rounding) {
  const Vec3 q = {std::abs(p.x) - half.x + rounding, std::abs(p.y) - half.y + rounding,
                  std::abs(p.z) - half.z + rounding};
  const Vec3 out = {std::max(q.x, 0.0f), std::max(q.y, 0.0f), std::max(q.z, 0.0f)};
  return Length(out) + std::min(std::max({q.x, q.y, q.z}), 0.0f) - rounding;
}

/// A rod from `a` to `b` whose thickness runs from `ra` to `rb`.
inline float Rod(Vec3 p, Vec3 a, Vec3 b, float ra, float rb) {
  const Vec3 along = b - a;
  const float t = Saturate(Dot(p - a, along) / Dot(along, along));
  return Length(p - a - along * t) - Mix(ra, rb, t);
}

/// Joins two solids with a fillet of size `k`.
inline float Join(float a, float b, float k) {
  const float h = std::max(k - std::abs(a - b), 0.0f) / k;
  return std::min(a, b) - h * h * k * 0.25f;
}

/// Takes `b` out of `a`, with a fillet of size `k`.
inline float Carve(float a, float b, float k) {
  return -Join(-a, b, k);
}

/// Turns about the upright axis, by the cosine and sine of the angle.
inline Vec3 TurnY(Vec3 p, float c, float s) {
  return {c * p.x - s * p.z, p.y, s * p.x + c * p.z};
}

}  // namespace scene

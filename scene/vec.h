// Vectors of three floats: points in metres, directions, and colours in linear light.
#pragma once

#include <algorithm>
#include <cmath>

namespace scene {

struct Vec3 {
  float x = 0;
  float y = 0;
  float z = 0;

  constexpr Vec3& operator+=(Vec3 b) { return *this = {x + b.x, y + b.y, z + b.z}; }
};

constexpr Vec3 operator+(Vec3 a, Vec3 b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vec3 operator-(Vec3 a, Vec3 b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vec3 operator*(Vec3 a, Vec3 b) {
  return {a.x * b.x, a.y * b.y, a.z * b.z};
}
constexpr Vec3 operator/(Vec3 a, Vec3 b) {
  return {a.x / b.x, a.y / b.y, a.z / b.z};
}
constexpr Vec3 operator*(Vec3 a, float b) {
  return {a.x * b, a.y * b, a.z * b};
}
constexpr float Dot(Vec3 a, Vec3 b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline float Length(Vec3 a) {
  return std::sqrt(Dot(a, a));
}
inline Vec3 Normalised(Vec3 a) {
  return a * (1 / std::sqrt(Dot(a, a)));
}

constexpr float Saturate(float x) {
  return std::clamp(x, 0.0f, 1.0f);
}
constexpr float Mix(float a, float b, float t) {
  return a + (b - a) * t;
}
constexpr Vec3 Mix(Vec3 a, Vec3 b, float t) {
  return a + (b - a) * t;
}
/// 0 below `low`, 1 above `high`, smooth between; `low` may be the greater.
constexpr float SmoothStep(float low, float high, float x) {
  const float t = Saturate((x - low) / (high - low));
  return t * t * (3 - 2 * t);
}

}  // namespace scene

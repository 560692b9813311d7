// The parapet and what stands on it.
#include "noise.h"
#include "solid.h"

namespace scene {

namespace {

constexpr float kTop = 1.20f;  // of the parapet

// Weathered slabs with joints between them.
float Parapet(Vec3 p) {
  constexpr float slab = 0.42f;
  const float shifted = p.x + 0.10f;
  const float x = shifted - slab * std::round(shifted / slab);
  const float plain =
      Box({x, p.y - kTop + 0.25f, p.z - 0.66f}, {slab * 0.4955f, 0.25f, 0.36f}, 0.010f);
  if (plain > 0.010f) return plain - 0.003f;
  const float wear = 0.0035f * Noise(p * 11) + 0.0012f * Noise(p * 47);
  return plain - wear + 0.003f;
}

Surface ParapetSurface(Vec3 p) {
  const int slab = static_cast<int>(std::round((p.x + 0.10f) / 0.42f));
  const float stain = Fractal(p * 7, 4);
  const float speck = Fractal(p * 130, 2);
  const float tone = 0.36f + 0.07f * (Hash(slab, 3) - 0.5f) + 0.13f * stain + 0.10f * speck;
  const float lichen = SmoothStep(0.22f, 0.38f, Fractal(p * 16 + Vec3{7, 0, 0}, 4));
  return {Mix(Vec3{1, 0.99f, 0.97f} * tone, Vec3{0.50f, 0.44f, 0.16f}, lichen * 0.45f),
          0.03f,
          10,
          {},
          0.14f,
          140};
}

// Three stones on one another, light, middle and dark.
struct Stone {
  Vec3 at, radii, colour;
};
constexpr Stone kStones[] = {
    {{0.455f, kTop + 0.034f, 0.56f}, {0.088f, 0.036f, 0.070f}, {0.10f, 0.10f, 0.105f}},
    {{0.450f, kTop + 0.092f, 0.56f}, {0.064f, 0.030f, 0.052f}, {0.30f, 0.30f, 0.30f}},
    {{0.458f, kTop + 0.141f, 0.56f}, {0.042f, 0.024f, 0.037f}, {0.66f, 0.65f, 0.63f}},
};

template <int I>
float StoneDistance(Vec3 p) {
  return (Ellipsoid(p - kStones[I].at, kStones[I].radii) - 0.003f * Noise(p * 26)) * 0.9f;
}

template <int I>
Surface StoneSurface(Vec3 p) {
  const float speck = Fractal(p * 210, 3);
  return {kStones[I].colour * (1 + 0.35f * speck), 0.08f, 18, {}, 0.12f, 200};
}

struct Fruit {
  Vec3 at;
  float radius;
};
constexpr Fruit kOrange = {{-0.245f, kTop + 0.045f, 0.58f}, 0.038f};
constexpr Fruit kOrange2 = {{-0.164f, kTop + 0.043f, 0.55f}, 0.036f};
constexpr Fruit kOrange3 = {{-0.205f, kTop + 0.100f, 0.560f}, 0.036f};
constexpr Fruit kApple = {{-0.070f, kTop + 0.037f, 0.64f}, 0.038f};
constexpr Fruit kPlum = {{-0.320f, kTop + 0.031f, 0.72f}, 0.024f};
constexpr Vec3 kLemon = {-0.175f, kTop + 0.034f, 0.70f};
constexpr float kJugSize = 0.76f;
constexpr Vec3 kJug = {-0.395f, kTop + 0.006f, 0.50f};

float Orange(Vec3 p) {
  return std::min({Sphere(p - kOrange.at, kOrange.radius), Sphere(p - kOrange2.at, kOrange2.radius),
                   Sphere(p - kOrange3.at, kOrange3.radius)});
}
Surface OrangeSurface(Vec3 p) {
  return {Vec3{0.88f, 0.255f, 0.012f} * (1 + 0.10f * Noise(p * 60)),
          0.28f,
          34,
          {0.10f, 0.04f, 0},
          0.10f,
          420};
}

float Apple(Vec3 p) {
  const Vec3 q = p - kApple.at;
  const float across = std::sqrt(q.x * q.x + q.z * q.z);
  const float body = Length({across - 0.012f, q.y * 1.04f, 0}) - (kApple.radius - 0.010f);
  const float stem = Rod(q, {0, 0.022f, 0}, {0.007f, 0.052f, 0.004f}, 0.0018f, 0.0024f);
  return std::min(body, stem);
}
Surface AppleSurface(Vec3 p) {
  const Vec3 q = p - kApple.at;
  if (q.y > 0.031f && q.x * q.x + q.z * q.z < 0.0001f)
    return {{0.10f, 0.06f, 0.03f}, 0.05f, 10, {}, 0, 0};
  const float streak = Noise(Vec3{std::atan2(q.x, q.z) * 9, q.y * 18, 1});
  const float ripe = Saturate(0.30f + streak * 0.45f + q.y * 6);
  return {Mix(Vec3{0.25f, 0.46f, 0.035f}, Vec3{0.45f, 0.60f, 0.06f}, ripe),
          0.45f,
          60,
          {0.03f, 0.05f, 0},
          0,
          0};
}

float Plum(Vec3 p) {
  return std::min(
      Sphere(p - kPlum.at, kPlum.radius),
      Ellipsoid(p - kPlum.at - Vec3{0.050f, -0.002f, 0.024f}, {0.026f, 0.022f, 0.022f}));
}
Surface PlumSurface(Vec3 p) {
  const float bloom = Saturate(0.45f + Fractal(p * 45, 3) * 1.2f);
  return {Mix(Vec3{0.055f, 0.010f, 0.075f}, Vec3{0.17f, 0.13f, 0.30f}, bloom), 0.22f, 30, {}, 0, 0};
}

float Lemon(Vec3 p) {
  const Vec3 q = TurnY(p - kLemon, 0.88f, 0.47f);
  const float body = Ellipsoid(q, {0.040f, 0.029f, 0.029f});
  return Join(body, Rod(q, {0.026f, 0, 0}, {0.049f, 0.002f, 0}, 0.010f, 0.004f), 0.016f);
}
Surface LemonSurface(Vec3) {
  return {{0.90f, 0.66f, 0.030f}, 0.28f, 30, {0.06f, 0.05f, 0}, 0.10f, 380};
}

float Jug(Vec3 p) {
  const Vec3 q = (p - kJug) * (1 / kJugSize);
  const float r = std::sqrt(q.x * q.x + q.z * q.z);
  // The wall is a band along a profile: foot, belly, neck, lip.
  const float y = Saturate(q.y / 0.27f);
  const float belly =
      0.046f + 0.046f * std::sin(std::min(y * 1.45f, 1.0f) * 3.14159f * 0.86f + 0.25f);
  const float profile = belly + 0.020f * SmoothStep(0.80f, 1.0f, y);
  float d = std::max(std::abs(r - profile + 0.005f) - 0.005f, std::abs(q.y - 0.135f) - 0.133f);
  d = std::min(d, std::max(r - profile, std::abs(q.y - 0.02f) - 0.02f));
  const Vec3 h = q - Vec3{0.074f, 0.172f, 0.020f};
  const float ring = Length({std::sqrt(h.x * h.x + h.y * h.y * 0.62f) - 0.045f, h.z, 0}) - 0.0085f;
  return Join(d, std::max(ring, r > profile ? -1.0f : 1.0f - r), 0.010f) * (0.75f * kJugSize);
}
Surface JugSurface(Vec3 p) {
  const float y = (p.y - kJug.y) / (0.27f * kJugSize);
  const float stroke = 0.006f * Noise(p * 40);
  const auto band = [&](float from, float to) {
    return SmoothStep(from - 0.008f, from, y + stroke) * SmoothStep(to + 0.008f, to, y + stroke);
  };
  const float wave = 0.03f * std::sin(std::atan2(p.x - kJug.x, p.z - kJug.z) * 9);
  const float blue = std::max({band(0.30f, 0.325f), band(0.62f, 0.645f),
                               band(0.44f + wave, 0.50f + wave), band(0.955f, 1.0f)});
  return {Mix(Vec3{0.83f, 0.81f, 0.76f}, Vec3{0.025f, 0.075f, 0.42f}, blue), 0.75f, 160, {}, 0, 0};
}

// A white cloth that hangs over the front of the parapet.
float Cloth(Vec3 p) {
  const Vec3 q = p - Vec3{-0.215f, kTop, 0.66f};
  const float near = std::min(Box(q - Vec3{0, 0.006f, 0}, {0.28f, 0.012f, 0.39f}, 0),
                              Box(q - Vec3{0, -0.08f, 0.376f}, {0.28f, 0.115f, 0.020f}, 0));
  if (near > 0.008f) return near;
  const float overhang = SmoothStep(0.30f, 0.36f, q.z);
  const float crease =
      0.0028f * std::sin(q.x * 38 + q.z * 27 + 2.2f * Noise(Vec3{q.x * 8, q.z * 8, 2}));
  const float ripple =
      0.009f * std::sin(q.x * 62 + 1.5f * std::sin(q.x * 19)) * Saturate(-q.y * 12);
  const float edge = 0.012f * Noise(Vec3{q.z * 7, q.y * 7, 4});
  const float top = Box(q - Vec3{edge, 0.0105f + crease * (1 - overhang), 0.015f},
                        {0.262f, 0.0035f, 0.350f}, 0.003f);
  const float hang =
      Box(q - Vec3{edge, -0.09f, 0.370f + ripple}, {0.262f, 0.102f, 0.0035f}, 0.003f);
  return Join(top, hang, 0.014f) * 0.75f;
}
Surface ClothSurface(Vec3) {
  return {{0.86f, 0.85f, 0.82f}, 0.02f, 8, {0.04f, 0.04f, 0.04f}, 0.10f, 900};
}

constexpr Solid Around(Vec3 centre, Vec3 half, float (*distance)(Vec3), Surface (*surface)(Vec3)) {
  return {centre - half, centre + half, distance, surface};
}

template <int I>
constexpr Solid kStone = Around(kStones[I].at, kStones[I].radii + Vec3{0.004f, 0.004f, 0.004f},
                                StoneDistance<I>, StoneSurface<I>);

constexpr Solid kStillLife[] = {
    {{-3, 0.70f, 0.29f}, {3, kTop + 0.003f, 1.03f}, Parapet, ParapetSurface},
    kStone<0>,
    kStone<1>,
    kStone<2>,
    Around({-0.205f, kTop + 0.072f, 0.567f}, {0.080f, 0.068f, 0.056f}, Orange, OrangeSurface),
    Around({-0.070f, kTop + 0.047f, 0.640f}, {0.042f, 0.046f, 0.042f}, Apple, AppleSurface),
    Around({-0.295f, kTop + 0.030f, 0.732f}, {0.054f, 0.027f, 0.040f}, Plum, PlumSurface),
    Around(kLemon, {0.052f, 0.033f, 0.046f}, Lemon, LemonSurface),
    Around({-0.365f, kTop + 0.108f, 0.50f}, {0.115f, 0.108f, 0.080f}, Jug, JugSurface),
    {{-0.50f, kTop - 0.20f, 0.31f}, {0.07f, kTop + 0.021f, 1.052f}, Cloth, ClothSurface},
};

}  // namespace

std::span<const Solid> StillLife() {
  return kStillLife;
}

}  // namespace scene

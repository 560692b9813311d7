#include "landscape.h"

#include "light.h"
#include "noise.h"

namespace scene {

namespace {

constexpr Vec3 kHaze = {0.72f, 0.74f, 0.78f};

Vec3 Sky(float u, float v) {
  const float height = Saturate((v - kHorizon) / 1.15f);
  Vec3 sky =
      Mix(Vec3{0.92f, 0.78f, 0.62f}, Vec3{0.42f, 0.60f, 0.86f}, SmoothStep(0.0f, 0.45f, height));
  sky = Mix(sky, Vec3{0.10f, 0.25f, 0.60f}, SmoothStep(0.25f, 1.1f, height));
  // Brighter and warmer toward the sun, left of the picture.
  const float glow = std::exp(-(u + 1.9f) * 0.9f) * (1 - 0.6f * height);
  return sky + Vec3{0.55f, 0.40f, 0.22f} * Saturate(glow * 0.6f);
}

// Thin high clouds; they flatten toward the horizon as on a ceiling.
float Veil(float u, float v) {
  const float depth = 1 / (v - kHorizon + 0.30f);
  const float x = u * depth * 0.95f;
  const float y = depth * 2.6f;
  const float warp = Fractal(x * 0.8f + 5, y * 0.8f, 3);
  return Fractal(x + 3.1f + warp * 0.7f, y + 1.7f, 5) + 0.04f;
}

// Heaps of cloud with flat bases: thickness, 0 at the rim.
float Cumulus(float u, float v) {
  struct Heap {
    float u, v, width, height;
  };
  static constexpr Heap heaps[] = {
      {-1.05f, 0.24f, 0.44f, 0.30f}, {-0.78f, 0.22f, 0.30f, 0.17f}, {-1.42f, 0.22f, 0.34f, 0.20f},
      {0.02f, 0.22f, 0.26f, 0.13f},  {0.20f, 0.215f, 0.20f, 0.09f}, {0.98f, 0.30f, 0.22f, 0.12f},
  };
  float heap = -1;
  for (const Heap& h : heaps) {
    const float du = (u - h.u) / h.width;
    const float dv = (v - h.v) / (v > h.v ? h.height : h.height * 0.22f);
    heap = std::max(heap, 1 - std::sqrt(du * du + dv * dv));
  }
  if (heap < -0.45f) return heap;
  return heap + 0.75f * Fractal(u * 6.5f + 4, v * 8.5f + 2, 6);
}

Vec3 WithClouds(Vec3 sky, float u, float v) {
  const float veil = SmoothStep(0.0f, 0.36f, Veil(u, v)) * SmoothStep(0.02f, 0.25f, v - kHorizon);
  sky = Mix(sky, Vec3{1.15f, 1.08f, 1.02f}, veil * 0.55f);
  const float thick = Cumulus(u, v);
  if (thick <= 0) return sky;
  // Less cloud on the way to the sun: brighter here.
  const float toSun = Cumulus(u - 0.045f, v + 0.040f);
  const float lit = Saturate(0.45f + (thick - toSun) * 1.5f - thick * 0.25f);
  const Vec3 colour = Mix(Vec3{0.46f, 0.49f, 0.60f}, Vec3{2.05f, 1.74f, 1.38f}, lit);
  return Mix(sky, colour, SmoothStep(0.0f, 0.16f, thick) * 0.96f);
}

// A striped balloon far away.
bool PaintBalloon(float u, float v, Vec3& colour) {
  constexpr float radius = 0.082f;
  const float x = (u + 0.36f) / radius;
  const float y = (v - 0.60f) / radius;
  const Vec3 haze = Vec3{0.34f, 0.47f, 0.68f} * 0.16f;
  // The envelope: a ball above, a cone below that ends at the mouth.
  const float widest =
      y > -0.35f ? std::sqrt(std::max(1 - y * y, 0.0f)) : 0.937f + (y + 0.35f) * 0.82f;
  if (y < 1 && y > -1.25f && std::abs(x) < widest) {
    const float side = x / widest;
    const float gore = std::asin(side) * 10 / 3.14159f;
    static constexpr Vec3 dyes[] = {
        {0.75f, 0.03f, 0.02f}, {0.95f, 0.50f, 0.02f}, {0.85f, 0.80f, 0.70f}};
    const Vec3 dye = dyes[static_cast<int>(std::floor(gore) + 30) % 3];
    const float upward = y > -0.35f ? y : -0.55f;
    const Vec3 n = Normalised({side * 0.95f, upward, std::sqrt(std::max(1 - side * side, 0.0f))});
    const float seam = 1 - 0.25f * SmoothStep(0.12f, 0.0f, std::abs(gore - std::round(gore)));
    colour =
        dye * (kSunlight * (Saturate(Dot(n, kToSun) + 0.15f) * 0.75f) + Ambient(n)) * seam * 0.84f +
        haze;
    return true;
  }
  if (y <= -1.25f && y > -1.55f && std::abs(std::abs(x) - 0.14f) < 0.012f) {
    colour = Vec3{0.05f, 0.04f, 0.04f} + haze;
    return true;
  }
  if (y <= -1.50f && y > -1.72f && std::abs(x) < 0.15f) {
    colour = Mix(Vec3{0.42f, 0.26f, 0.11f}, Vec3{0.08f, 0.05f, 0.03f}, SmoothStep(-0.1f, 0.1f, x)) +
             haze;
    return true;
  }
  return false;
}

// A ridge of round crowns: rows of them, the nearer hiding the farther.
struct Woods {
  float base, roughness, wave;  // the ridge: height, its variation, features per unit
  float size;                   // of a crown
  int rows;
  Vec3 lit, shade;
  float haze;  // share of the air's colour
  int seed;
};

float Ridge(const Woods& woods, float u) {
  return woods.base +
         woods.roughness * Fractal(u * woods.wave + woods.seed * 7.7f, woods.seed * 3.1f, 4);
}

bool PaintWoods(const Woods& woods, float u, float v, Vec3& colour) {
  if (v > Ridge(woods, u) + woods.size * 2.4f) return false;
  const float rough = Fractal(u / woods.size * 2.2f, v / woods.size * 2.2f, 4);
  for (int row = woods.rows - 1; row >= 0; --row) {
    // Rows step down the slope, and their crowns grow toward the viewer.
    const float size = woods.size * (1 + 0.16f * static_cast<float>(row));
    const float drop =
        woods.size * 0.85f * static_cast<float>(row) * (1 + 0.05f * static_cast<float>(row));
    const int cell = static_cast<int>(std::floor(u / size));
    float front = -1;
    float tone = 0;
    Vec3 normal;
    for (int c = cell - 1; c <= cell + 1; ++c) {
      const int seed = woods.seed * 64 + row;
      const float cx = (static_cast<float>(c) + 0.5f + (Hash(c, seed) - 0.5f) * 0.7f) * size;
      const float cy = Ridge(woods, cx) - drop + size * 0.7f * Hash(c, seed, 1);
      const float radius = size * (0.62f + 0.30f * Hash(c, seed, 2)) * (1 + 0.55f * rough);
      const float dx = (u - cx) / radius;
      const float dy = (v - cy) / (radius * (1 + 0.35f * Hash(c, seed, 3)));
      const float inside = 1 - dx * dx - (dy > 0 ? dy * dy : dy * dy * 0.45f);
      if (inside <= front || inside <= 0) continue;
      front = inside;
      tone = Hash(c, seed, 4) - 0.5f;
      normal = Normalised({dx, std::max(dy, -0.75f), std::sqrt(inside) * 0.9f});
    }
    if (front < 0) continue;
    const float leaves = Fractal(u / woods.size * 7, v / woods.size * 7, 3);
    normal = Normalised(normal + Vec3{leaves * 0.9f, leaves * 0.5f, 0});
    const float light = Saturate(Dot(normal, kToSun) * 1.05f) * (0.75f + leaves * 0.9f);
    colour = Mix(woods.shade, woods.lit * (1 + 0.5f * tone), Saturate(light));
    colour = Mix(colour, kHaze, woods.haze);
    return true;
  }
  return false;
}

Vec3 FarHills(Vec3 behind, float u, float v) {
  struct Layer {
    float base, roughness, wave;
    Vec3 colour;
  };
  static constexpr Layer layers[] = {
      {0.10f, 0.22f, 1.1f, {0.47f, 0.56f, 0.72f}},
      {0.02f, 0.16f, 1.5f, {0.30f, 0.41f, 0.56f}},
  };
  int seed = 1;
  for (const Layer& layer : layers) {
    const float x = u * layer.wave + static_cast<float>(seed++) * 9.3f;
    const float ridge = layer.base + layer.roughness * Fractal(x, 0.5f, 5);
    if (v > ridge) continue;
    // Slopes that face the sun are lighter; mist gathers at the foot.
    const float relief = Fractal(x * 5 + (ridge - v) * 9, v * 14, 5);
    const float mist = SmoothStep(0.0f, 0.24f, ridge - v);
    behind = Mix(layer.colour * (1 + 0.55f * relief), kHaze, mist * 0.55f);
  }
  return behind;
}

Vec3 Lake(float u, float v) {
  const float depth = kHorizon + 0.012f - v;  // below the far shore
  const float ripple =
      Noise(u * 26, 2.5f / (depth + 0.012f)) * 0.6f + Noise(u * 70, 6 / (depth + 0.012f)) * 0.4f;
  const float mirror = kHorizon + depth * 2.6f + 0.06f + ripple * 0.03f;
  Vec3 water = WithClouds(Sky(u, mirror), u + ripple * 0.02f, mirror) * 0.72f;
  const float shore = SmoothStep(0.055f, 0.0f, depth + ripple * 0.012f);
  water = Mix(water, Vec3{0.10f, 0.17f, 0.15f}, shore * 0.85f);
  const float glitter = SmoothStep(0.42f, 0.75f, ripple) * SmoothStep(-0.1f, -1.3f, u);
  return water + Vec3{2.2f, 1.8f, 1.3f} * glitter;
}

Vec3 Meadow(float u, float v) {
  const float depth = 1 / (kHorizon + 0.02f - v);
  const float x = u * depth;
  const float patches = Fractal(x * 0.9f, depth * 1.6f, 4);
  const float grass = Fractal(u * 60, v * 22 + Noise(u * 40, v * 3) * 2, 3);
  Vec3 colour = Mix(Vec3{0.20f, 0.27f, 0.06f}, Vec3{0.52f, 0.50f, 0.13f}, Saturate(0.5f + patches));
  colour = colour * (1 + 0.55f * grass);
  // Poppies and daisies.
  const float fx = u * 34;
  const float fy = v * 46;
  const int cx = static_cast<int>(std::floor(fx));
  const int cy = static_cast<int>(std::floor(fy));
  const float dx = fx - static_cast<float>(cx) - 0.25f - 0.5f * Hash(cx, cy, 5);
  const float dy = fy - static_cast<float>(cy) - 0.25f - 0.5f * Hash(cx, cy, 6);
  const float kind = Hash(cx, cy, 7);
  const float dot = SmoothStep(0.20f, 0.12f, std::sqrt(dx * dx + dy * dy));
  if (kind > 0.80f && patches > -0.12f)
    colour = Mix(colour, kind > 0.88f ? Vec3{1.0f, 0.08f, 0.03f} : Vec3{1.3f, 1.2f, 1.0f}, dot);
  return colour;
}

}  // namespace

Vec3 Landscape(float u, float v) {
  static constexpr Woods kFarShore = {
      -0.075f, 0.10f, 2.2f, 0.016f, 4, {0.38f, 0.44f, 0.24f}, {0.10f, 0.17f, 0.19f}, 0.20f, 1};
  static constexpr Woods kNearShore = {
      -0.335f, 0.20f, 1.5f, 0.042f, 7, {0.44f, 0.45f, 0.075f}, {0.014f, 0.038f, 0.024f}, 0.02f, 2};
  Vec3 colour;
  const float bank = -0.47f + 0.06f * Fractal(u * 1.2f, 2, 3);
  if (v < bank) return Meadow(u, v);
  if (PaintWoods(kNearShore, u, v, colour)) return colour;
  if (v < kHorizon + 0.012f) return Lake(u, v);
  if (PaintWoods(kFarShore, u, v, colour)) return colour;
  if (PaintBalloon(u, v, colour)) return colour;
  return FarHills(WithClouds(Sky(u, v), u, v), u, v);
}

}  // namespace scene

// A tree close by: a trunk at the right edge, and leaves in layers that hide one another.
#include "landscape.h"
#include "light.h"
#include "noise.h"

namespace scene {

namespace {

// How thick the leaves stand; below 0 there are none.
float Thickness(float u, float v) {
  // Two boughs come in from beyond the corner.
  const auto bough = [&](float cu, float cv, float ru, float rv) {
    const float du = (u - cu) / ru;
    const float dv = (v - cv) / rv;
    return 1 - std::sqrt(du * du + dv * dv);
  };
  const float mass = std::max({bough(1.62f, 0.92f, 0.95f, 0.42f), bough(1.75f, 0.35f, 0.50f, 0.55f),
                               bough(0.92f, 1.06f, 0.62f, 0.24f)});
  return mass + 0.55f * Fractal(u * 3.4f + 2, v * 3.4f + 8, 3) - 0.05f;
}

float TrunkEdge(float v) {
  return 1.36f - 0.05f * v + 0.05f * v * v + 0.012f * Noise(v * 5, 7);
}

Vec3 Trunk(float u, float v, float edge) {
  const float across = (u - edge) / 0.30f;
  const float bark = Fractal(u * 34 + Noise(v * 7, 3) * 1.5f, v * 6, 4);
  const float facing = Saturate(0.75f - 2.6f * across + 0.9f * bark);
  return Vec3{0.16f, 0.115f, 0.080f} * (0.10f + 1.6f * facing) * (1 + 0.7f * bark);
}

}  // namespace

Vec3 NearTree(float u, float v, Vec3 behind) {
  const float thickness = Thickness(u, v);
  Vec3 colour = behind;
  const float edge = TrunkEdge(v);
  if (u > edge && u < edge + 0.40f) colour = Trunk(u, v, edge);
  if (thickness < -0.12f) return colour;

  const float toSun = Thickness(u - 0.10f, v + 0.06f);
  constexpr int layers = 5;
  for (int layer = 0; layer < layers; ++layer) {
    // Leaves deep in the crown are dark, those outside catch the sun or let it through.
    const float size = 0.034f + 0.003f * static_cast<float>(layer);
    const float outer = static_cast<float>(layer) / (layers - 1);
    const float least = 0.02f + 0.16f * outer * outer;
    const float su = u / size + static_cast<float>(layer) * 7.31f;
    const float sv = v / size + static_cast<float>(layer) * 3.77f;
    const int cu = static_cast<int>(std::floor(su));
    const int cv = static_cast<int>(std::floor(sv));
    for (int y = cv - 1; y <= cv + 1; ++y)
      for (int x = cu - 1; x <= cu + 1; ++x) {
        const auto chance = [&](int seed) { return Hash(x, y, layer * 16 + seed); };
        const float du = su - static_cast<float>(x) - chance(0);
        const float dv = sv - static_cast<float>(y) - chance(1);
        if (du * du + dv * dv > 0.75f) continue;
        if (thickness - (du + dv) * 0.02f < least + 0.10f * (chance(2) - 0.5f)) continue;
        const float angle = 6.2832f * chance(3);
        const float along = du * std::cos(angle) + dv * std::sin(angle);
        const float across = dv * std::cos(angle) - du * std::sin(angle);
        const float blade = 0.30f * (1 - along * along / 0.70f);
        if (std::abs(across) > blade) continue;
        const float lit = Saturate(0.55f + 1.6f * (thickness - toSun) - 0.45f * thickness +
                                   0.5f * (chance(4) - 0.5f)) *
                          outer * outer;
        const float vein = 1 - 0.25f * (across > 0 ? 1.0f : 0.0f);
        const Vec3 shade = Vec3{0.010f, 0.022f, 0.014f} * (0.5f + outer);
        const Vec3 sun =
            Mix(Vec3{0.16f, 0.25f, 0.03f}, Vec3{0.62f, 0.66f, 0.10f}, chance(5) * 0.7f);
        colour = Mix(shade, sun * vein, lit);
      }
  }
  return colour;
}

}  // namespace scene

// A woman who stands behind the parapet with her face to the sun.
#include "noise.h"
#include "solid.h"

namespace scene {

namespace {

constexpr Vec3 kHead = {0.26f, 1.525f, 0.0f};

// Into the frame of the head: origin between the ears, z out of the face, y up.
Vec3 ToHead(Vec3 p) {
  p = p - kHead;
  p = TurnY(p, 0.921f, -0.391f);  // 23 degrees to the left
  p = {p.x, 0.9945f * p.y + 0.1045f * p.z, 0.9945f * p.z - 0.1045f * p.y};  // 6 degrees up
  return p;
}

float Face(Vec3 p) {
  const Vec3 q = {std::abs(p.x), p.y, p.z};  // most of a face comes in pairs
  float d = Ellipsoid(p - Vec3{0, 0.022f, -0.006f}, {0.074f, 0.098f, 0.092f});
  d = Join(d, Ellipsoid(p - Vec3{0, -0.052f, 0.030f}, {0.054f, 0.064f, 0.056f}), 0.050f);
  d = Join(d, Sphere(q - Vec3{0.036f, -0.020f, 0.054f}, 0.026f), 0.035f);  // cheeks
  d = Join(d, Ellipsoid(p - Vec3{0, -0.098f, 0.062f}, {0.020f, 0.016f, 0.018f}), 0.030f);
  d = Join(d, Rod(q, {0.012f, 0.028f, 0.083f}, {0.046f, 0.030f, 0.062f}, 0.008f, 0.006f), 0.022f);
  d = Carve(d, Sphere(q - Vec3{0.031f, 0.010f, 0.102f}, 0.017f), 0.026f);  // sockets
  d = Join(d, Ellipsoid(q - Vec3{0.031f, 0.008f, 0.0695f}, {0.0165f, 0.0125f, 0.0125f}), 0.006f);
  d = Join(d, Rod(p, {0, 0.022f, 0.084f}, {0, -0.026f, 0.110f}, 0.0075f, 0.0095f), 0.016f);
  d = Join(d, Sphere(q - Vec3{0.011f, -0.030f, 0.098f}, 0.0075f), 0.010f);  // nostrils
  d = Carve(d, Sphere(q - Vec3{0.0065f, -0.0385f, 0.1035f}, 0.0025f), 0.006f);
  const float bow = 0.0016f * std::cos(p.x * 260);
  d = Join(d, Ellipsoid(p - Vec3{0, -0.0555f - bow, 0.0865f}, {0.021f, 0.0060f, 0.010f}), 0.006f);
  d = Join(d, Ellipsoid(p - Vec3{0, -0.0660f, 0.0850f}, {0.0175f, 0.0070f, 0.010f}), 0.006f);
  return d;
}

float Skin(Vec3 world) {
  const Vec3 p = ToHead(world);
  // Chest and shoulders down to the shirt.
  float d = Ellipsoid(world - Vec3{0.26f, 1.262f, -0.045f}, {0.150f, 0.070f, 0.085f});
  d = Join(d, Rod(p, {0, -0.050f, -0.022f}, {0, -0.215f, -0.050f}, 0.046f, 0.054f), 0.060f);
  const float head = Sphere(p - Vec3{0, -0.01f, 0.01f}, 0.130f);
  if (head > 0.05f) return std::min(d, head);
  d = Join(d, Face(p), 0.028f);
  const Vec3 ear = Vec3{std::abs(p.x), p.y, p.z} - Vec3{0.075f, -0.004f, -0.008f};
  return Join(d, Ellipsoid(ear, {0.010f, 0.028f, 0.017f}), 0.010f);
}

Surface SkinSurface(Vec3 world) {
  const Vec3 p = ToHead(world);
  const float ax = std::abs(p.x);
  const float blotch = Fractal(p * 55, 3);
  Vec3 colour = Vec3{0.70f, 0.405f, 0.275f} * (1 + 0.06f * blotch);
  const auto near = [&](Vec3 centre, float size) {
    const Vec3 to = Vec3{ax, p.y, p.z} - centre;
    return std::exp(-Dot(to, to) / (size * size));
  };
  // Blood near the surface: cheeks, tip of the nose, ears, chin.
  const float blush = near({0.040f, -0.022f, 0.070f}, 0.026f) * 0.8f +
                      near({0, -0.026f, 0.118f}, 0.016f) * 0.6f +
                      near({0.080f, 0, 0}, 0.03f) * 0.8f + near({0, -0.1f, 0.08f}, 0.02f) * 0.3f;
  colour = colour * Mix(Vec3{1, 1, 1}, {1.04f, 0.78f, 0.74f}, Saturate(blush));
  Surface skin = {colour, 0.16f, 22, {0.20f, 0.10f, 0.07f}, 0.05f, 900};
  if (p.z < 0.04f) return skin;

  const float bow = 0.0016f * std::cos(p.x * 260);
  const float lipX = p.x / 0.0225f;
  const float lipY = (p.y + 0.0605f + bow * 0.5f) / 0.0118f;
  const float lips = SmoothStep(1.05f, 0.80f, lipX * lipX + lipY * lipY);
  skin.albedo = Mix(skin.albedo, Vec3{0.56f, 0.150f, 0.130f}, lips * 0.85f);
  skin.gloss = Mix(skin.gloss, 0.30f, lips);
  const float parting = std::abs(p.y + 0.0607f + bow * 0.8f + 0.5f * p.x * p.x * 20 * 0.1f);
  skin.albedo = skin.albedo * (1 - 0.75f * SmoothStep(0.0014f, 0.0004f, parting) *
                                       SmoothStep(0.024f, 0.018f, ax));
  // Closed lids end in lashes; brows above.
  const float ex = (ax - 0.031f) / 0.0185f;
  const float lash = std::abs(p.y - 0.0035f + 0.0048f * (1 - ex * ex));
  const float lashes = SmoothStep(0.0022f, 0.0008f, lash) * SmoothStep(1.05f, 0.85f, std::abs(ex));
  const float bx = (ax - 0.034f) / 0.022f;
  const float hairs = 0.7f + 0.5f * Noise(Vec3{p.x * 900 + p.y * 700, p.y * 300, 0});
  const float brow = std::abs(p.y - 0.0315f + 0.0045f * bx * bx - 0.002f * bx);
  const float brows =
      SmoothStep(0.0046f, 0.0018f, brow) * SmoothStep(1.05f, 0.70f, std::abs(bx)) * hairs;
  skin.albedo = Mix(skin.albedo, Vec3{0.045f, 0.024f, 0.016f},
                    Saturate(std::max(lashes * 0.95f, brows * 0.75f)));
  return skin;
}

// Hair is combed back from a parting and over the ears into a knot.
float Hair(Vec3 world) {
  const Vec3 p = ToHead(world);
  const Vec3 knot = p - Vec3{0, 0.048f, -0.132f};
  float d = Ellipsoid(p - Vec3{0, 0.030f, -0.024f}, {0.087f, 0.104f, 0.100f});
  d = Join(d,
           Ellipsoid(Vec3{std::abs(p.x), p.y, p.z} - Vec3{0.064f, -0.016f, -0.010f},
                     {0.024f, 0.050f, 0.044f}),
           0.030f);
  d = Carve(d, Ellipsoid(p - Vec3{0, -0.040f, 0.078f}, {0.0665f, 0.107f, 0.088f}), 0.012f);
  d = Carve(d, Ellipsoid(p - Vec3{0, -0.165f, 0.01f}, {0.14f, 0.105f, 0.14f}), 0.020f);
  d = Join(d, Ellipsoid(knot, {0.056f, 0.052f, 0.046f}), 0.014f);
  return d > 0.02f ? d - 0.002f : d * 0.9f;
}

// Which strand of hair a point belongs to, counted across them.
float Strand(Vec3 p) {
  const Vec3 knot = p - Vec3{0, 0.048f, -0.132f};
  if (knot.z < 0.012f) return Length({knot.x, knot.y, 0}) * 130 + std::atan2(knot.y, knot.x) * 1.4f;
  return std::atan2(p.y - 0.048f, p.x - 0.022f) * 5 + std::abs(p.x - 0.022f) * 18 +
         Noise(p * 14) * 0.5f;
}

Surface HairSurface(Vec3 world) {
  const Vec3 p = ToHead(world);
  const float strand = Strand(p);
  const float locks = Noise(strand * 3, p.z * 4);
  const float hairs = Noise(strand * 22, p.z * 9);
  return {Vec3{0.115f, 0.052f, 0.024f} * (1 + 0.55f * locks + 0.55f * hairs),
          0.30f + 0.25f * hairs,
          18,
          {},
          0,
          0};
}

// A linen shirt.
float Shirt(Vec3 p) {
  const Vec3 q = p - Vec3{0.26f, 1.19f, -0.045f};
  const Vec3 m = {std::abs(q.x), q.y, q.z};
  float d = Ellipsoid(q - Vec3{0, -0.10f, 0}, {0.185f, 0.22f, 0.118f});
  d = Join(d, Rod(m, {0.06f, 0.085f, -0.01f}, {0.172f, 0.030f, -0.005f}, 0.050f, 0.062f), 0.06f);
  d = Join(d, Rod(m, {0.172f, 0.030f, -0.005f}, {0.225f, -0.26f, 0.01f}, 0.062f, 0.058f), 0.04f);
  if (d > 0.03f) return d - 0.012f;
  const float pull = Noise(Vec3{q.x * 9 + q.y * 5, q.y * 4, q.z * 6});
  const float fold = std::sin(q.x * 42 + q.y * 30 + pull * 6);
  d -= 0.0040f * fold * SmoothStep(0.14f, -0.02f, q.y) + 0.005f * pull;
  return d * 0.85f;
}

Surface ShirtSurface(Vec3) {
  return {{0.80f, 0.78f, 0.72f}, 0.03f, 10, {0.05f, 0.05f, 0.04f}, 0.10f, 700};
}

// A silk scarf round the neck, knotted on the side, one end over the shoulder.
float Scarf(Vec3 p) {
  const Vec3 q = p - Vec3{0.258f, 1.342f, -0.038f};
  const Vec3 tilted = {q.x, q.y * 0.92f - q.z * 0.39f, q.z * 0.92f + q.y * 0.39f};
  const float out =
      std::sqrt(tilted.x * tilted.x + tilted.z * tilted.z) - 0.074f + tilted.y * 0.35f;
  const float band = std::sqrt(out * out + tilted.y * tilted.y * 0.36f) - 0.021f;
  const Vec3 knot = p - Vec3{0.196f, 1.312f, 0.040f};
  float ends = Ellipsoid(knot, {0.022f, 0.020f, 0.018f});
  // A flat end, wider as it falls.
  const float fall = Saturate(-knot.y / 0.115f);
  const Vec3 end = {knot.x + 0.10f * fall * fall * 0.35f, knot.y + 0.058f, knot.z - 0.030f * fall};
  const float wave = 0.006f * fall * std::sin(end.x * 150 + 2 * fall);
  ends = Join(ends, Box(end + Vec3{0, 0, wave}, {0.012f + 0.026f * fall, 0.058f, 0.006f}, 0.005f),
              0.016f);
  if (std::min(band, ends) > 0.02f) return std::min(band, ends) - 0.010f;
  const float around = std::atan2(tilted.x, tilted.z);
  const float folds = 0.0032f * std::sin(tilted.y * 190 + 2.5f * std::sin(around * 2 + 1)) +
                      0.003f * Noise(Vec3{around * 5, tilted.y * 60, 3});
  return Join(band - folds, ends, 0.012f) * 0.65f;
}

Surface ScarfSurface(Vec3) {
  return {{0.62f, 0.022f, 0.030f}, 0.22f, 18, {0.10f, 0.01f, 0.01f}, 0.04f, 500};
}

constexpr Solid kFigure[] = {
    {{0.10f, 1.18f, -0.15f}, {0.42f, 1.66f, 0.14f}, Skin, SkinSurface},
    {{0.14f, 1.46f, -0.20f}, {0.42f, 1.67f, 0.10f}, Hair, HairSurface},
    {{-0.04f, 1.00f, -0.18f}, {0.56f, 1.32f, 0.10f}, Shirt, ShirtSurface},
    {{0.12f, 1.17f, -0.15f}, {0.38f, 1.41f, 0.10f}, Scarf, ScarfSurface},
};

}  // namespace

std::span<const Solid> Figure() {
  return kFigure;
}

}  // namespace scene

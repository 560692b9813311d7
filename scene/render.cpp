#include <array>
#include <atomic>
#include <cstddef>

#include "landscape.h"
#include "light.h"
#include "noise.h"
#include "scene.h"
#include "solid.h"

namespace scene {

namespace {

constexpr Vec3 kEye = {0, 1.42f, 2.45f};
constexpr float kTangent = 0.194f;  // of half the vertical angle of view
constexpr float kFar = 3.4f;

// The solids whose boxes a ray meets, and where it enters and leaves them.
struct Candidates {
  struct Span {
    const Solid* solid;
    float from, to;
  };
  std::array<Span, 16> spans;
  int count = 0;
  float from = kFar;
  float to = 0;
};

Candidates Along(Vec3 origin, Vec3 direction, float far, float margin) {
  const Vec3 inverse = Vec3{1, 1, 1} / direction;
  const Vec3 grow = {margin, margin, margin};
  Candidates met;
  for (const std::span<const Solid> group : {StillLife(), Figure()})
    for (const Solid& solid : group) {
      const Vec3 a = (solid.low - grow - origin) * inverse;
      const Vec3 b = (solid.high + grow - origin) * inverse;
      const float from =
          std::max({std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z), 0.0f});
      const float to = std::min({std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z), far});
      if (from >= to) continue;
      met.spans[met.count++] = {&solid, from, to};
      met.from = std::min(met.from, from);
      met.to = std::max(met.to, to);
    }
  return met;
}

struct Nearest {
  float distance = kFar;
  const Solid* solid = nullptr;  // null if a box comes first, the solid in it being farther
};

// How far the ray can safely go on from `t`, where it is at `p`.
Nearest At(const Candidates& candidates, float t, Vec3 p) {
  Nearest nearest;
  for (int i = 0; i < candidates.count; ++i) {
    const auto& [solid, from, to] = candidates.spans[i];
    if (t > to || from - t >= nearest.distance) continue;
    if (t < from) {
      nearest = {from - t + 0.0001f, nullptr};
      continue;
    }
    const float distance = solid->distance(p);
    if (distance < nearest.distance) nearest = {distance, solid};
  }
  return nearest;
}

Vec3 Normal(const Solid& solid, Vec3 p) {
  constexpr float e = 0.0006f;
  constexpr Vec3 corners[] = {{1, -1, -1}, {-1, -1, 1}, {-1, 1, -1}, {1, 1, 1}};
  Vec3 n;
  for (const Vec3 corner : corners) n += corner * solid.distance(p + corner * e);
  return Normalised(n);
}

Vec3 Bumped(Vec3 n, Vec3 p, const Surface& surface) {
  if (surface.relief == 0) return n;
  constexpr float e = 0.12f;
  const Vec3 q = p * surface.grain;
  const float here = Noise(q);
  const Vec3 slope = {Noise(q + Vec3{e, 0, 0}) - here, Noise(q + Vec3{0, e, 0}) - here,
                      Noise(q + Vec3{0, 0, e}) - here};
  return Normalised(n - (slope - n * Dot(slope, n)) * (surface.relief / e));
}

// Share of the sun's disc that a point sees.
float SunSeen(Vec3 p) {
  constexpr float softness = 18;
  const Candidates candidates = Along(p, kToSun, 1.2f, 0.02f);
  float seen = 1;
  float t = std::max(candidates.from, 0.006f);
  for (int step = 0; step < 40 && t < candidates.to; ++step) {
    const auto [distance, solid] = At(candidates, t, p + kToSun * t);
    if (solid) seen = std::min(seen, softness * distance / t);
    if (seen < 0.005f) return 0;
    t += solid ? std::clamp(distance, 0.008f, 0.10f) : distance;
  }
  return SmoothStep(0, 1, seen);
}

// Share of the surroundings that a point sees, from how much room it has.
float SkySeen(Vec3 p, Vec3 n) {
  constexpr float reach = 0.12f;
  const Candidates candidates = Along(p, n, reach, 0.05f);
  float hidden = 0;
  float weight = 1;
  for (const float room : {0.012f, 0.040f, reach}) {
    float distance = room;
    for (int i = 0; i < candidates.count; ++i)
      distance = std::min(distance, candidates.spans[i].solid->distance(p + n * room));
    hidden += weight * std::max(room - distance, 0.0f) / room;
    weight *= 0.7f;
  }
  return Saturate(1 - 0.50f * hidden);
}

Vec3 Shade(const Solid& solid, Vec3 p, Vec3 direction) {
  const Surface surface = solid.surface(p);
  const Vec3 smooth = Normal(solid, p);
  const Vec3 n = Bumped(smooth, p, surface);
  const float facing = Dot(n, kToSun);
  // Light that enters the surface comes out a little farther on, behind the edge of the shadow.
  const auto wrapped = [&](float bleed) { return Saturate((facing + bleed) / (1 + bleed)); };
  const Vec3 diffuse = {wrapped(surface.bleed.x), wrapped(surface.bleed.y),
                        wrapped(surface.bleed.z)};
  const float sun =
      std::max({diffuse.x, diffuse.y, diffuse.z}) > 0 ? SunSeen(p + smooth * 0.003f) : 0;
  const float room = SkySeen(p, smooth);
  Vec3 light = surface.albedo * (kSunlight * diffuse * sun + Ambient(n) * room);

  const Vec3 half = Normalised(kToSun - direction);
  const float toEye = Saturate(-Dot(n, direction));
  const float edge = std::pow(1 - toEye, 5.0f);
  const float spot =
      std::pow(Saturate(Dot(n, half)), surface.polish) * (surface.polish + 8) * 0.04f;
  light += kSunlight * (surface.gloss * spot * sun * Saturate(facing * 4) * (0.25f + 0.75f * edge));
  const Vec3 mirrored = direction - n * (2 * Dot(n, direction));
  light += Ambient(mirrored) * (surface.gloss * room * (0.05f + 0.8f * edge));
  return light;
}

Vec3 Trace(float u, float v) {
  const Vec3 direction = Normalised({u * kTangent, (v - kHorizon) * kTangent, -1});
  const Candidates candidates = Along(kEye, direction, kFar, 0.001f);
  float t = candidates.from;
  for (int step = 0; step < 100 && t < candidates.to; ++step) {
    const Vec3 p = kEye + direction * t;
    const Nearest nearest = At(candidates, t, p);
    // A ray that grazes an edge may not get any nearer.
    if (nearest.solid && nearest.distance < (step < 60 ? 0.0003f : 0.002f))
      return Shade(*nearest.solid, p, direction);
    t += nearest.solid ? nearest.distance * 0.95f : nearest.distance;
  }
  return NearTree(u, v, Landscape(u, v));
}

// From light to a value of the picture, 0..1: a film's curve with a soft shoulder, then sRGB.
float Develop(float light) {
  const float x = light * 0.58f;
  const float film = Saturate(x * (2.51f * x + 0.03f) / (x * (2.43f * x + 0.59f) + 0.14f));
  return film <= 0.0031308f ? film * 12.92f : 1.055f * std::pow(film, 1 / 2.4f) - 0.055f;
}

Vec3 Develop(Vec3 light) {
  return {Develop(light.x), Develop(light.y), Develop(light.z)};
}

float Difference(Vec3 a, Vec3 b) {
  return std::max({std::abs(a.x - b.x), std::abs(a.y - b.y), std::abs(a.z - b.z)});
}

}  // namespace

std::vector<unsigned char> RenderScene(int width, int height,
                                       const std::function<bool(double)>& goOn) {
  const float half = 0.5f * static_cast<float>(height);
  const auto trace = [&](float x, float y) {
    return Develop(Trace((x - 0.5f * static_cast<float>(width)) / half, 1 - y / half));
  };
  const auto index = [&](int x, int y) { return static_cast<std::size_t>(y) * width + x; };

  std::atomic<int> rowsDone = 0;
  std::atomic<bool> stopped = false;
  const auto eachRow = [&](const auto& paint) {
#pragma omp parallel for schedule(dynamic, 4)
    for (int y = 0; y < height; ++y) {
      if (stopped) continue;
      for (int x = 0; x < width; ++x) paint(x, y);
      if (!goOn(0.5 * ++rowsDone / height)) stopped = true;
    }
  };

  std::vector<Vec3> samples(index(0, height));
  eachRow([&](int x, int y) {
    samples[index(x, y)] = trace(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
  });

  // Where neighbours differ, four more samples on a turned grid smooth the edge.
  std::vector<unsigned char> pixels(samples.size() * 4);
  eachRow([&](int x, int y) {
    Vec3 colour = samples[index(x, y)];
    const auto differs = [&](int nx, int ny) {
      return nx >= 0 && ny >= 0 && nx < width && ny < height &&
             Difference(colour, samples[index(nx, ny)]) > 0.10f;
    };
    if (differs(x - 1, y) || differs(x + 1, y) || differs(x, y - 1) || differs(x, y + 1)) {
      const auto fx = static_cast<float>(x);
      const auto fy = static_cast<float>(y);
      colour = (trace(fx + 0.375f, fy + 0.125f) + trace(fx + 0.875f, fy + 0.375f) +
                trace(fx + 0.125f, fy + 0.625f) + trace(fx + 0.625f, fy + 0.875f)) *
               0.25f;
    }
    // Less than a step of noise keeps gradients free of bands.
    const float dither = 0.9f * (Hash(x, y) - 0.5f);
    const auto byte = [&](float value) {
      return static_cast<unsigned char>(std::clamp(value * 255 + 0.5f + dither, 0.0f, 255.0f));
    };
    unsigned char* pixel = &pixels[index(x, y) * 4];
    pixel[0] = byte(colour.z);
    pixel[1] = byte(colour.y);
    pixel[2] = byte(colour.x);
    pixel[3] = 255;
  });
  return pixels;
}

}  // namespace scene

// Noise that is the same on every machine: integer hashes, and no function of the mathematical
// library but the square root, which is exact everywhere.
#pragma once

#include <cmath>
#include <cstdint>

namespace tintwerk::paint {

/// Scrambles 32 bits so that neighbouring inputs have nothing in common.
constexpr std::uint32_t Hash(std::uint32_t x) {
  x ^= x >> 16;
  x *= 0x7feb352du;
  x ^= x >> 15;
  x *= 0x846ca68bu;
  x ^= x >> 16;
  return x;
}

constexpr std::uint32_t Hash(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  return Hash(static_cast<std::uint32_t>(x) + Hash(static_cast<std::uint32_t>(y) + Hash(seed)));
}

constexpr double Lerp(double a, double b, double t) {
  return a + (b - a) * t;
}

/// 0 up to `low`, 1 from `high` on, level at both.
constexpr double SmoothStep(double low, double high, double x) {
  const double t = x <= low ? 0 : x >= high ? 1 : (x - low) / (high - low);
  return t * t * (3 - 2 * t);
}

/// Smooth noise with one hill or hollow to the unit square.
/// @return about -1..1, 0 at whole coordinates
inline double GradientNoise(double x, double y, std::uint32_t seed) {
  const double left = std::floor(x);
  const double top = std::floor(y);
  const auto corner = [&](int right, int down) {
    // Sixteen directions around the circle, from a hash of the corner.
    static constexpr double kDirection[20] = {
        1,  0.9238795325112867,  0.7071067811865476,  0.3826834323650898,
        0,  -0.3826834323650898, -0.7071067811865476, -0.9238795325112867,
        -1, -0.9238795325112867, -0.7071067811865476, -0.3826834323650898,
        0,  0.3826834323650898,  0.7071067811865476,  0.9238795325112867,
        1,  0.9238795325112867,  0.7071067811865476,  0.3826834323650898};
    const std::uint32_t pick = Hash(static_cast<std::int32_t>(left) + right,
                                    static_cast<std::int32_t>(top) + down, seed) >>
                               28;
    return kDirection[pick] * (x - left - right) + kDirection[pick + 4] * (y - top - down);
  };
  const auto ease = [](double t) { return t * t * t * (t * (t * 6 - 15) + 10); };
  const double across = ease(x - left);
  return 1.5 * Lerp(Lerp(corner(0, 0), corner(1, 0), across),
                    Lerp(corner(0, 1), corner(1, 1), across), ease(y - top));
}

/// Gradient noise over several octaves, each half as large and half as strong as the one before.
/// @return about -1..1
inline double CloudNoise(double x, double y, std::uint32_t seed, int octaves) {
  double sum = 0;
  double strength = 1;
  for (int octave = 0; octave < octaves; ++octave) {
    sum += strength * GradientNoise(x, y, seed + octave);
    x = 2 * x + 17.3;
    y = 2 * y + 5.7;
    strength /= 2;
  }
  return sum / (2 - 2 * strength);
}

/// A sequence of random numbers that depends on nothing but its seed.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : seed_(seed) {}

  /// Even over [low, high).
  double Between(double low, double high) {
    return Lerp(low, high, Hash(static_cast<std::int32_t>(count_++), 0, seed_) / 4294967296.0);
  }
  bool Chance(double probability) { return Between(0, 1) < probability; }

 private:
  std::uint32_t seed_;
  std::uint32_t count_ = 0;
};

}  // namespace tintwerk::paint

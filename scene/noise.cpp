#include "noise.h"

#include <array>
#include <utility>

namespace scene {

namespace {

// Integer mixing by multiply and shift.
constexpr std::uint32_t Scramble(std::uint32_t h) {
  h ^= h >> 16;
  h *= 0x7feb352du;
  h ^= h >> 15;
  h *= 0x846ca68bu;
  return h ^ h >> 16;
}

// Values of lattice points come from two tables, which is several times faster than to scramble
// their coordinates; the noise repeats after 256 cells.
struct Tables {
  std::array<std::uint8_t, 512> order;  // a shuffled 0..255, twice
  std::array<float, 256> value;         // -1..1
};

constexpr Tables MakeTables() {
  Tables tables{};
  for (int i = 0; i < 256; ++i) tables.order[i] = static_cast<std::uint8_t>(i);
  for (int i = 255; i > 0; --i) {
    const auto other = Scramble(static_cast<std::uint32_t>(i)) % static_cast<std::uint32_t>(i + 1);
    std::swap(tables.order[i], tables.order[other]);
  }
  for (int i = 0; i < 256; ++i) {
    tables.order[i + 256] = tables.order[i];
    tables.value[i] = static_cast<float>(Scramble(static_cast<std::uint32_t>(i) + 999) >> 8) *
                          (2.0f / (1 << 24)) -
                      1;
  }
  return tables;
}

constexpr Tables kTables = MakeTables();

constexpr int Next(int cell) {
  return (cell + 1) & 255;
}

float Value(int place) {
  return kTables.value[kTables.order[place]];
}

// std::floor is a call on processors without a rounding instruction.
int Floor(float x) {
  const int cut = static_cast<int>(x);
  return cut - (x < static_cast<float>(cut));
}

constexpr float Fade(float t) {
  return t * t * t * (t * (t * 6 - 15) + 10);
}

}  // namespace

float Hash(int x, int y, int seed) {
  const std::uint32_t h = Scramble(static_cast<std::uint32_t>(x) * 0x8da6b343u +
                                   static_cast<std::uint32_t>(y) * 0xd8163841u +
                                   static_cast<std::uint32_t>(seed) * 0xcb1ab31fu);
  return static_cast<float>(h >> 8) * (1.0f / (1 << 24));
}

float Noise(float x, float y) {
  const int ix = Floor(x);
  const int iy = Floor(y);
  const float tx = Fade(x - static_cast<float>(ix));
  const int left = kTables.order[ix & 255];
  const int right = kTables.order[Next(ix)];
  const auto row = [&](int cell) { return Mix(Value(left + cell), Value(right + cell), tx); };
  return Mix(row(iy & 255), row(Next(iy)), Fade(y - static_cast<float>(iy)));
}

float Noise(Vec3 p) {
  const int ix = Floor(p.x);
  const int iy = Floor(p.y);
  const int iz = Floor(p.z);
  const float tx = Fade(p.x - static_cast<float>(ix));
  const float ty = Fade(p.y - static_cast<float>(iy));
  const auto& order = kTables.order;
  const int left = order[ix & 255];
  const int right = order[Next(ix)];
  const int row = iy & 255;
  const int nextRow = Next(iy);
  const auto plane = [&](int z) {
    return Mix(Mix(Value(order[left + row] + z), Value(order[right + row] + z), tx),
               Mix(Value(order[left + nextRow] + z), Value(order[right + nextRow] + z), tx), ty);
  };
  return Mix(plane(iz & 255), plane(Next(iz)), Fade(p.z - static_cast<float>(iz)));
}

float Fractal(float x, float y, int octaves) {
  float sum = 0;
  float strength = 0.5f;
  for (int i = 0; i < octaves; ++i, strength *= 0.5f) {
    sum += strength * Noise(x, y);
    x = x * 2.03f + 17.3f;
    y = y * 2.03f + 5.1f;
  }
  return sum;
}

float Fractal(Vec3 p, int octaves) {
  float sum = 0;
  float strength = 0.5f;
  for (int i = 0; i < octaves; ++i, strength *= 0.5f) {
    sum += strength * Noise(p);
    p = p * 2.03f + Vec3{17.3f, 5.1f, 11.7f};
  }
  return sum;
}

}  // namespace scene

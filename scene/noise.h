// Noise that is the same on every run and machine.
#pragma once

#include <cstdint>

#include "vec.h"

namespace scene {

/// A number in 0..1 that belongs to a lattice point.
float Hash(int x, int y, int seed = 0);

/// Smooth value noise, about -1..1, with features of size 1.
float Noise(float x, float y);
float Noise(Vec3 p);

/// Octaves of noise, each of half the size and half the strength of the one before; about -1..1.
float Fractal(float x, float y, int octaves);
float Fractal(Vec3 p, int octaves);

}  // namespace scene

// The light of a late afternoon: a low sun from the left, a blue sky, and what the ground throws
// back.
#pragma once

#include "vec.h"

namespace scene {

inline const Vec3 kToSun = Normalised({-0.84f, 0.46f, 0.30f});
inline constexpr Vec3 kSunlight = {3.3f, 2.55f, 1.75f};
inline constexpr Vec3 kSkylight = {0.30f, 0.42f, 0.62f};
inline constexpr Vec3 kGroundlight = {0.20f, 0.17f, 0.10f};

/// Light from all around that reaches a surface whose normal is `n`.
inline Vec3 Ambient(Vec3 n) {
  return Mix(kGroundlight, kSkylight, n.y * 0.5f + 0.5f);
}

}  // namespace scene

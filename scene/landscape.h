// What lies behind the parapet: sky, clouds, hills, a lake and trees.
#pragma once

#include "vec.h"

namespace scene {

/// The horizon's place in the picture.
inline constexpr float kHorizon = -0.12f;

/// The light from a point of the picture: `u` runs right and `v` up from its centre, in half
/// heights.
Vec3 Landscape(float u, float v);

/// A tree close by that leans in from the right, over `behind`.
Vec3 NearTree(float u, float v, Vec3 behind);

}  // namespace scene

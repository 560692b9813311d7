// The built-in picture.
#pragma once

#include <functional>
#include <vector>

namespace scene {

/// Renders the scene: the same picture at every size and on every run; wider or narrower frames
/// show more or less of its sides.
/// @param width,height pixels, at least 1
/// @param goOn is told now and then, by any thread, which share is done (0..1); false ends the work
/// early
/// @return packed 8-bit pixels, blue, green, red, 255, rows top-down
std::vector<unsigned char> RenderScene(int width, int height,
                                       const std::function<bool(double)>& goOn);

}  // namespace scene

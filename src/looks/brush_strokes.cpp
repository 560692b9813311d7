// A drawing of strokes along the edges of the picture.
#include "portrait/brush_strokes.h"

#include "looks/recipe.h"

using namespace tintwerk;

LOOK(Effect_BrushSketch) {
  constexpr int kLineHalfLength = 22;
  return BrushSketchEngine::Render(call.pixels, call.width, call.height, kLineHalfLength);
}

// The look drawn in brush strokes. It reads no support file.
#include "portrait/brush_strokes.h"

#include "tintwerk/effect.h"

int CEffect::Effect_BrushSketch(unsigned char* pixels, int width, int height, void*, CObjProgress*,
                                int, int) {
  constexpr int kLineHalfLength = 22;
  return tintwerk::BrushSketchEngine::Render(pixels, width, height, kLineHalfLength);
}

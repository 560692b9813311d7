#include <tintwerk/tintwerk.h>

extern "C" int Apply(unsigned char* pixels, int width, int height, void* resourceRoot) {
  return CEffect::Effect_80S(pixels, width, height, resourceRoot, nullptr, 0, 100);
}

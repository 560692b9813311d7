// Looks built around one map or a pair of strips.
#include "looks/recipe.h"

using namespace tintwerk;

LOOK(Effect_80S) {
  Files files(call);
  const auto tone = files.Strip(L"80smap.png", MapExtent::kFixedRect);
  const auto screen = files.Strip(L"screen30.png", MapExtent::kFixedRect);
  if (!files) return 0;
  return EachColour(call, [=](int v, int c) { return screen(tone(v, c), c); });
}

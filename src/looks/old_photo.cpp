// Old photographs: chains of curves, blends with pictures and vignettes.
#include "looks/recipe.h"

using namespace tintwerk;

LOOK(Effect_HuiYi) {
  Files files(call);
  const auto& paper = files.Picture(L"huiyi1.jpg");
  const auto blend = files.Square(L"huiyi4.png"), rim = files.Square(L"vignetteMap.png");
  const auto first = files.Strip(L"huiyi2.png"), last = files.Strip(L"huiyi3.png");
  if (!files) return 0;
  return EachColourByRadius(
      call,
      [=](int v, int c, int d, int m) { return last(rim(first(blend(v, m, c), c), d, c), c); },
      paper);
}

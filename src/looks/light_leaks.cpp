// Light leaks: a picture of stray light, screened onto the image.
#include "looks/recipe.h"

using namespace tintwerk;

static int Leaker(const Call& call, const wchar_t* picture) {
  Files files(call);
  const auto& leak = files.RequiredPicture(picture);
  const auto screen = files.Square(L"style\\PSScreen.png");
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int c, int m) { return screen(v, m, c); }, leak);
}

LOOK_BY(Effect_LEAK_1, Leaker(call, L"style\\Leak1.jpg"))
LOOK_BY(Effect_LEAK_6, Leaker(call, L"style\\Leak6.jpg"))
LOOK_BY(Effect_LEAK_7, Leaker(call, L"style\\Leak7.jpg"))
LOOK_BY(Effect_LEAK_9, Leaker(call, L"style\\Leak9.jpg"))
LOOK_BY(Effect_LEAK_15, Leaker(call, L"style\\Leak15.jpg"))
LOOK_BY(Effect_LEAK_LIGHT_LEAK, Leaker(call, L"style\\light-leak-2.jpg"))
LOOK_BY(Effect_LEAK_LIGHT_LEAK_17, Leaker(call, L"style\\LL17.png"))

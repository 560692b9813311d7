// Light leaks: a picture of stray light, screened onto the image.
#include "frame/material.h"
#include "frame/parallel.h"
#include "maps/map_image.h"
#include "maps/material_over.h"
#include "tintwerk/effect.h"

using namespace tintwerk;

int CEffect::Effect_Leaker(CString material, unsigned char* pixels, int width, int height,
                           void* resourceRoot, CObjProgress*, int, int) {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return 0;
  const MapFile<SquareMap> screenFile(
      FormatPath(L"%s\\Effects\\style\\PSScreen.png", resourceRoot));
  const auto leak = LoadPictureOver(material, width, height);
  if (!screenFile || !leak) return 0;
  const BitmapLock lock(leak.get());

  const unsigned char* over = lock.Pixels();
  const SquareMap screen = screenFile.View();
  ParallelFor(*count, [=](std::int64_t i) {
    for (int c = 0; c < 3; ++c) {
      const std::int64_t at = 4 * i + c;
      pixels[at] = screen(pixels[at], over[at], c);
    }
  });
  return 1;
}

#define TINTWERK_LIGHT_LEAK(entry, file)                                                        \
  int CEffect::entry(unsigned char* pixels, int width, int height, void* resourceRoot,          \
                     CObjProgress* progress, int progressLow, int progressHigh) {               \
    return Effect_Leaker(FormatPath(L"%s\\Effects\\style\\" file, resourceRoot), pixels, width, \
                         height, resourceRoot, progress, progressLow, progressHigh);            \
  }
TINTWERK_LIGHT_LEAK(Effect_LEAK_1, L"Leak1.jpg")
TINTWERK_LIGHT_LEAK(Effect_LEAK_6, L"Leak6.jpg")
TINTWERK_LIGHT_LEAK(Effect_LEAK_7, L"Leak7.jpg")
TINTWERK_LIGHT_LEAK(Effect_LEAK_9, L"Leak9.jpg")
TINTWERK_LIGHT_LEAK(Effect_LEAK_15, L"Leak15.jpg")
TINTWERK_LIGHT_LEAK(Effect_LEAK_LIGHT_LEAK, L"light-leak-2.jpg")
TINTWERK_LIGHT_LEAK(Effect_LEAK_LIGHT_LEAK_17, L"LL17.png")
#undef TINTWERK_LIGHT_LEAK

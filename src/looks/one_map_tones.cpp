// Looks built around one map or a pair of strips.
#include "frame/parallel.h"
#include "maps/map_image.h"
#include "tintwerk/effect.h"

using namespace tintwerk;

int CEffect::Effect_80S(unsigned char* pixels, int width, int height, void* resourceRoot,
                        CObjProgress*, int, int) {
  if (!pixels) return 0;
  const auto count = PixelCount(width, height);
  if (!count) return 0;
  using Strip = MapFile<StripMap>;
  const Strip toneFile(FormatPath(L"%s\\Effects\\80smap.png", resourceRoot), Strip::kFixedRect);
  const Strip screenFile(FormatPath(L"%s\\Effects\\screen30.png", resourceRoot), Strip::kFixedRect);
  if (!toneFile || !screenFile) return 0;

  const StripMap tone = toneFile.View(), screen = screenFile.View();
  ParallelFor(*count, [=](std::int64_t i) {
    unsigned char* pixel = pixels + 4 * i;
    for (int c = 0; c < 3; ++c) pixel[c] = screen(tone(pixel[c], c), c);
  });
  return 1;
}

// Looks that are chains of map lookups with a picture over the image.
#include "frame/parallel.h"
#include "maps/map_image.h"
#include "maps/material_over.h"
#include "tintwerk/effect.h"

using namespace tintwerk;

int CEffect::Effect_HuiYi(unsigned char* pixels, int width, int height, void* resourceRoot,
                          CObjProgress*, int, int) {
  if (!pixels) return 0;
  const auto count = PixelCount(width, height);
  if (!count) return 0;
  const MapFile<StripMap> firstFile(FormatPath(L"%s\\Effects\\huiyi2.png", resourceRoot));
  const MapFile<StripMap> lastFile(FormatPath(L"%s\\Effects\\huiyi3.png", resourceRoot));
  const MapFile<SquareMap> blendFile(FormatPath(L"%s\\Effects\\huiyi4.png", resourceRoot));
  const MapFile<SquareMap> rimFile(FormatPath(L"%s\\Effects\\vignetteMap.png", resourceRoot));
  if (!firstFile || !lastFile || !blendFile || !rimFile) return 0;
  const auto picture =
      LoadPictureOver(FormatPath(L"%s\\Effects\\huiyi1.jpg", resourceRoot), width, height);
  if (!picture) return 0;
  if (*count == 0) return 1;
  const BitmapLock lock(picture.get());

  const unsigned char* material = lock.Pixels();
  const StripMap firstCurve = firstFile.View(), lastCurve = lastFile.View();
  const SquareMap blend = blendFile.View(), rim = rimFile.View();
  const RadialKey key(width, height);
  const std::int64_t row = std::int64_t{4} * width;
  ParallelFor(height, [=](std::int64_t y) {
    const float rowKey = key.Row(y);
    unsigned char* pixel = pixels + row * y;
    const unsigned char* over = material + row * y;
    for (int x = 0; x < width; ++x, pixel += 4, over += 4) {
      const int d = key.At(rowKey, x);
      for (int c = 0; c < 3; ++c)
        pixel[c] = lastCurve(rim(firstCurve(blend(pixel[c], over[c], c), c), d, c), c);
    }
  });
  return 1;
}

// A comic panel: ink outlines, solid blacks, screen tone, speed lines and a caption.
#include <algorithm>

#include "frame/graphics.h"
#include "looks/recipe.h"
#include "pixel/truncate.h"
#include "portrait/canny_edges.h"
#include "portrait/deriche_blur.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

// Draws the caption over the lower right, or along the foot of an upright panel. Very wide panels
// have none.
void Stamp(const Call& call, const PictureView& stamp) {
  const int width = call.width, height = call.height;
  const int ownWidth = stamp.width, ownHeight = stamp.height;
  if (ownWidth == 0 || ownHeight == 0) return;
  int left = 0, targetWidth = width, targetHeight = 0;
  if (width >= height) {
    if (static_cast<float>(width) / static_cast<float>(height) > 3) return;
    const double full = width * 0.625;
    targetWidth = static_cast<int>(full);
    targetHeight = Truncate(ownHeight * (full / ownWidth));
    left = width - targetWidth;
  } else {
    targetHeight = Truncate(ownHeight * (static_cast<double>(width) / ownWidth));
  }
  // Only the rows under the caption are painted on.
  const std::int64_t top = std::int64_t{height} - targetHeight;
  const int firstRow = static_cast<int>(std::max<std::int64_t>(top, 0));
  if (targetWidth <= 0 || firstRow >= height) return;
  Gdiplus::Bitmap foot(width, height - firstRow);
  if (foot.GetWidth() == 0) throw std::bad_alloc();
  const std::size_t bytes = std::size_t{4} * width * (height - firstRow);
  unsigned char* const under = call.pixels + std::size_t{4} * width * firstRow;
  {
    const BitmapLock lock(&foot, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite);
    std::copy_n(under, bytes, lock.Pixels());
  }
  Graphics graphics(&foot);
  graphics.SetInterpolationMode(InterpolationModeHighQualityBicubic);
  const auto status =
      graphics.DrawImage(stamp,
                         {static_cast<float>(left), static_cast<float>(top - firstRow),
                          static_cast<float>(targetWidth), static_cast<float>(targetHeight)},
                         {0, 0, static_cast<float>(ownWidth), static_cast<float>(ownHeight)});
  if (status == Gdiplus::OutOfMemory) throw std::bad_alloc();
  const BitmapLock drawn(&foot);
  for (std::size_t i = 0; i < bytes; i += 4) std::copy_n(drawn.Pixels() + i, 3, under + i);
}

}  // namespace

LOOK(Effect_ManHua) {
  const int width = call.width, height = call.height;
  Files files(call);
  const auto &tone = files.Picture(L"sucai19.png"), &lines = files.Picture(L"sucai20.png");
  if (!files) return 0;
  if (call.Count() == 0) return 1;
  // Outlines, and where the shadows are, with soft edges.
  const std::size_t count = call.Count();
  const PixelMemory planes = RequirePixels(2 * count);
  unsigned char *const edges = planes.get(), *const shadow = edges + count;
  EachRun(call, [=, image = call.pixels](const unsigned char* pixels, std::int64_t run) {
    const std::int64_t at = (pixels - image) / 4;
    for (std::int64_t i = 0; i < run; ++i) {
      const int grey = Luma(pixels + 4 * i);
      edges[at + i] = static_cast<unsigned char>(grey);
      shadow[at + i] = grey > 130 ? 0 : 255;
    }
  });
  if (!CannyEdges(edges, edges, width, height, width, 120, 200) ||
      !DericheBlur(shadow, width, height, width, 3, 3))
    return 0;

  const PixelMemory panel = CopyOf(call);
  const Call work = Over(call, panel);
  EachRun(
      work,
      [=, image = work.pixels](unsigned char* pixels, std::int64_t run, const unsigned char* screen,
                               const unsigned char* over) {
        const std::int64_t at = (pixels - image) / 4;
        for (std::int64_t i = 0; i < run; ++i, pixels += 4, screen += 4, over += 4) {
          const bool solid = Luma(pixels) <= 64;
          const int ink = 255 - edges[at + i];
          const int drawn = solid ? 0 : ink == 255 && shadow[at + i] >= 129 ? screen[0] : ink;
          const float a = static_cast<float>(over[3]) / 255.0f;
          for (int c = 0; c < 3; ++c)
            pixels[c] = static_cast<unsigned char>(static_cast<int>(
                static_cast<float>(over[c]) * a + static_cast<float>(drawn) * (1 - a)));
        }
      },
      tone, lines);
  Files last(call);
  const auto& stamp = last.UnscaledPicture(L"sucai21.png");
  if (!last) return 0;
  Stamp(work, stamp.View());
  LayBack(call, panel);
  return 1;
}

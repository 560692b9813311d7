// Scaling of pictures, and parts of them.
#include <cstdint>
#include <memory>
#include <new>

#include "frame/graphics.h"
#include "frame/material.h"
#include "tintwerk/pixel_process.h"

using Gdiplus::Bitmap;

void* CPixelProcess::Clone(void* bitmap, int left, int top, int width, int height) {
  auto* const source = static_cast<Bitmap*>(bitmap);
  if (!source || std::int64_t{left} + width > source->GetWidth() ||
      std::int64_t{top} + height > source->GetHeight())
    return nullptr;
  std::unique_ptr<Bitmap> target(new (std::nothrow) Bitmap(width, height));
  if (!target) return nullptr;
  tintwerk::Graphics graphics(target.get());
  graphics.SetInterpolationMode(tintwerk::InterpolationModeHighQuality);
  const auto w = static_cast<float>(width), h = static_cast<float>(height);
  const auto status = graphics.DrawImage(source, {0, 0, w, h},
                                         {static_cast<float>(left), static_cast<float>(top), w, h});
  return status == Gdiplus::Ok ? target.release() : nullptr;
}

void* CPixelProcess::RampleBit(void* bitmap, int newWidth, int newHeight) {
  if (!bitmap) return nullptr;
  return tintwerk::ScaleBitmap(static_cast<Bitmap*>(bitmap), newWidth, newHeight).release();
}

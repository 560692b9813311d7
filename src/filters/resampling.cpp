// Scaling and turning of pictures.
#include <cstring>
#include <memory>
#include <new>

#include "frame/material.h"
#include "frame/resample.h"
#include "tintwerk/pixel_process.h"

using Gdiplus::Bitmap;

void* CPixelProcess::RampleBit(void* bitmap, int newWidth, int newHeight) {
  auto* source = static_cast<Bitmap*>(bitmap);
  if (!source) return nullptr;
  const tintwerk::BitmapLock from(source);
  if (!from.Pixels() || newWidth <= 0 || newHeight <= 0) {
    std::unique_ptr<Bitmap> blank(new (std::nothrow) Bitmap(newWidth, newHeight));
    if (!blank || blank->GetLastStatus() == Gdiplus::OutOfMemory) return nullptr;
    return blank.release();
  }
  tintwerk::PixelBlock target{newWidth, newHeight, nullptr};
  target.bytes = tintwerk::AllocatePixels(target.Size());
  if (!target.bytes) return nullptr;
  if (from.Width() == newWidth && from.Height() == newHeight) {
    std::memcpy(target.bytes.get(), from.Pixels(), target.Size());
  } else {
    const tintwerk::RectF sourceRect{0, 0, float(from.Width()), float(from.Height())};
    const tintwerk::RectF targetRect{0, 0, float(newWidth), float(newHeight)};
    if (!tintwerk::Resample(tintwerk::ResampleKernel::Bicubic,
                            {from.Pixels(), from.Width(), from.Height()}, sourceRect,
                            target.bytes.get(), newWidth, newHeight, targetRect))
      return nullptr;
  }
  return tintwerk::MakeBitmap(std::move(target)).release();
}

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
  std::unique_ptr<Bitmap> target(new (std::nothrow) Bitmap(newWidth, newHeight));
  if (!target || target->GetLastStatus() == Gdiplus::OutOfMemory) return nullptr;

  const tintwerk::BitmapLock from(source);
  const tintwerk::BitmapLock to(target.get(), Gdiplus::ImageLockModeWrite);
  if (!from.Pixels() || !to.Pixels()) return target.release();
  if (from.Width() == newWidth && from.Height() == newHeight) {
    std::memcpy(to.Pixels(), from.Pixels(), std::size_t{4} * newWidth * newHeight);
    return target.release();
  }
  const tintwerk::RectF sourceRect{0, 0, float(from.Width()), float(from.Height())};
  const tintwerk::RectF targetRect{0, 0, float(newWidth), float(newHeight)};
  const bool scaled = tintwerk::Resample(tintwerk::ResampleKernel::Bicubic,
                                         {from.Pixels(), from.Width(), from.Height()}, sourceRect,
                                         to.Pixels(), newWidth, newHeight, targetRect);
  return scaled ? target.release() : nullptr;
}

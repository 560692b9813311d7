#include "frame/material.h"

#include <cstring>

#include "frame/resample.h"

namespace tintwerk {

unsigned char* LoadMaterialPixels(CString path, int* width, int* height) {
  Gdiplus::Bitmap bitmap(path.Wide().c_str());
  const BitmapLock lock(&bitmap, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite);
  const std::size_t size = std::size_t{4} * lock.Width() * lock.Height();
  PixelMemory block = AllocatePixels(size);
  const bool loaded = block && lock.Pixels();
  if (loaded) std::memcpy(block.get(), lock.Pixels(), size);
  *width = loaded ? lock.Width() : 0;
  *height = loaded ? lock.Height() : 0;
  return block.release();
}

std::unique_ptr<Gdiplus::Bitmap> ScaleBitmap(Gdiplus::Bitmap* picture, int width, int height) {
  const BitmapLock from(picture);
  if (!from.Pixels() || width <= 0 || height <= 0) {
    std::unique_ptr<Gdiplus::Bitmap> blank(new (std::nothrow) Gdiplus::Bitmap(width, height));
    if (!blank || blank->GetLastStatus() == Gdiplus::OutOfMemory) return nullptr;
    return blank;
  }
  PixelBlock target{width, height, nullptr};
  target.bytes = AllocatePixels(target.Size());
  if (!target.bytes) return nullptr;
  if (from.Width() == width && from.Height() == height) {
    std::memcpy(target.bytes.get(), from.Pixels(), target.Size());
  } else {
    const RectF sourceRect{0, 0, float(from.Width()), float(from.Height())};
    const RectF targetRect{0, 0, float(width), float(height)};
    if (!Resample(ResampleKernel::Bicubic, {from.Pixels(), from.Width(), from.Height()}, sourceRect,
                  target.bytes.get(), width, height, targetRect))
      return nullptr;
  }
  return MakeBitmap(std::move(target));
}

BitmapLock::BitmapLock(Gdiplus::Bitmap* bitmap, unsigned mode) : bitmap_(bitmap) {
  if (bitmap_) bitmap_->LockBits(nullptr, mode, Gdiplus::PixelFormat32bppARGB, &data_);
}

BitmapLock::BitmapLock(Gdiplus::Bitmap* bitmap, const Gdiplus::Rect& rect, unsigned mode)
    : bitmap_(bitmap) {
  if (bitmap_) bitmap_->LockBits(&rect, mode, Gdiplus::PixelFormat32bppARGB, &data_);
}

BitmapLock::~BitmapLock() {
  if (data_.Scan0) bitmap_->UnlockBits(&data_);
}

}  // namespace tintwerk

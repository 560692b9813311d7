#include "frame/material.h"

#include <cstring>

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

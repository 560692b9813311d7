// Reading of support files into pixels.
#pragma once

#include <memory>

#include "frame/image.h"
#include "frame/image_file.h"
#include "frame/path.h"
#include "tintwerk/platform.h"

namespace tintwerk {

/// Decodes a file into a block of its own.
/// @param width,height receive the picture's size
/// @return width x height x 4 bytes that the caller deletes as an array. A file that cannot be
///         decoded gives 0 x 0 and an empty block; null only if allocation fails.
unsigned char* LoadMaterialPixels(CString path, int* width, int* height);

/// A picture of pixels that are there already. @return null if allocation fails
std::unique_ptr<Gdiplus::Bitmap> MakeBitmap(PixelBlock picture);

/// Scales a picture by the high-quality bicubic kernel; one of the new size is copied as it is, and
/// one without pixels, or a new size without, comes out all zero.
/// @return null if allocation fails
std::unique_ptr<Gdiplus::Bitmap> ScaleBitmap(Gdiplus::Bitmap* picture, int width, int height);

/// A lock on a picture that ends with its scope.
class BitmapLock {
 public:
  /// Locks the whole picture. A null picture gives a lock without pixels.
  explicit BitmapLock(Gdiplus::Bitmap* bitmap, unsigned mode = Gdiplus::ImageLockModeRead);
  /// Locks a rectangle.
  BitmapLock(Gdiplus::Bitmap* bitmap, const Gdiplus::Rect& rect, unsigned mode);
  ~BitmapLock();
  BitmapLock(const BitmapLock&) = delete;
  BitmapLock& operator=(const BitmapLock&) = delete;

  /// The first pixel of the rectangle, null if the lock failed. Rows are packed.
  unsigned char* Pixels() const { return static_cast<unsigned char*>(data_.Scan0); }
  int Width() const { return static_cast<int>(data_.Width); }
  int Height() const { return static_cast<int>(data_.Height); }

 private:
  Gdiplus::Bitmap* bitmap_;
  Gdiplus::BitmapData data_;
};

}  // namespace tintwerk

#include <algorithm>
#include <cstring>
#include <new>

#include "frame/image_file.h"
#include "frame/image_service.h"
#include "frame/material.h"
#include "frame/path.h"
#include "tintwerk/platform.h"

namespace Gdiplus {

struct Bitmap::Native {
  tintwerk::PixelBlock picture;
  bool locked = false;
  // A locked rectangle narrower than the picture is a packed copy, written back when a writing lock
  // ends.
  Rect rect;
  unsigned mode = 0;
  std::unique_ptr<unsigned char[]> part;

  unsigned char* Pixel(int x, int y) const {
    return picture.bytes.get() + 4 * (std::size_t(picture.width) * y + x);
  }
};

Bitmap::Bitmap(const wchar_t* path) : native_(new (std::nothrow) Native) {
  Status status = native_ ? Ok : OutOfMemory;
  if (native_ && !path) status = InvalidParameter;
  if (status == Ok && !tintwerk::ImageServiceRuns()) status = GdiplusNotInitialized;
  try {
    if (status == Ok)
      status = tintwerk::DecodeImageFile(tintwerk::NativePath(path), native_->picture);
  } catch (const std::bad_alloc&) {
    status = OutOfMemory;
  }
  if (status == Ok) return;
  Fail(status);
  delete native_;
  native_ = nullptr;
}

Bitmap::Bitmap(int width, int height) {
  if (width <= 0 || height <= 0) {
    Fail(InvalidParameter);
    return;
  }
  native_ = new (std::nothrow) Native;
  if (native_) {
    tintwerk::PixelBlock& picture = native_->picture;
    picture.width = width;
    picture.height = height;
    picture.bytes = tintwerk::AllocatePixels(picture.Size());
    if (picture.bytes) {
      std::memset(picture.bytes.get(), 0, picture.Size());
      return;
    }
  }
  Fail(OutOfMemory);
  delete native_;
  native_ = nullptr;
}

Bitmap::Bitmap(Native& native) : native_(&native) {}

Bitmap::~Bitmap() {
  delete native_;
}

int Bitmap::GetWidth() const {
  return native_ ? native_->picture.width : 0;
}
int Bitmap::GetHeight() const {
  return native_ ? native_->picture.height : 0;
}
Status Bitmap::GetLastStatus() const {
  return lastStatus_;
}

Status Bitmap::Fail(Status status) {
  lastStatus_ = status;
  return status;
}

Status Bitmap::LockBits(const Rect* rect, unsigned mode, PixelFormat format, BitmapData* data) {
  if (!data) return Fail(InvalidParameter);
  *data = {};
  if (!native_ || mode < 1 || mode > 3 || format != PixelFormat32bppARGB)
    return Fail(InvalidParameter);
  if (native_->locked) return Fail(WrongState);
  const int width = native_->picture.width;
  const int height = native_->picture.height;
  const Rect area = rect ? *rect : Rect{0, 0, width, height};
  if (area.X < 0 || area.Y < 0 || area.Width < 1 || area.Height < 1 ||
      area.Width > width - area.X || area.Height > height - area.Y)
    return Fail(InvalidParameter);

  unsigned char* first = native_->Pixel(area.X, area.Y);
  if (area.Width != width) {
    const std::size_t row = std::size_t{4} * area.Width;
    native_->part = tintwerk::AllocatePixels(row * area.Height);
    if (!native_->part) return Fail(OutOfMemory);
    for (int y = 0; y < area.Height; ++y)
      std::memcpy(native_->part.get() + row * y, native_->Pixel(area.X, area.Y + y), row);
    first = native_->part.get();
  }
  native_->locked = true;
  native_->rect = area;
  native_->mode = mode;
  data->Width = area.Width;
  data->Height = area.Height;
  data->Stride = 4 * area.Width;
  data->PixelFormat = PixelFormat32bppARGB;
  data->Scan0 = first;
  return Ok;
}

Status Bitmap::UnlockBits(BitmapData* data) {
  if (!data || !native_) return Fail(InvalidParameter);
  if (!native_->locked) return Fail(WrongState);
  if (native_->part) {
    const Rect& area = native_->rect;
    const std::size_t row = std::size_t{4} * area.Width;
    if (native_->mode & ImageLockModeWrite)
      for (int y = 0; y < area.Height; ++y)
        std::memcpy(native_->Pixel(area.X, area.Y + y), native_->part.get() + row * y, row);
    native_->part.reset();
  }
  native_->locked = false;
  data->Scan0 = nullptr;
  return Ok;
}

Status Bitmap::RotateFlip(RotateFlipType type) {
  if (!native_ || type < RotateNoneFlipNone || type > Rotate270FlipNone)
    return Fail(InvalidParameter);
  if (native_->locked) return Fail(WrongState);
  if (type == RotateNoneFlipNone) return Ok;
  const tintwerk::PixelBlock& from = native_->picture;
  tintwerk::PixelBlock to;
  const bool quarter = type != Rotate180FlipNone;
  to.width = quarter ? from.height : from.width;
  to.height = quarter ? from.width : from.height;
  to.bytes = tintwerk::AllocatePixels(to.Size());
  if (!to.bytes) return Fail(OutOfMemory);

  // The source pixel of target (x, y) lies at origin + x * stepX + y * stepY. Quarter turns walk
  // one of the two pictures down its columns, so both go in square tiles that stay in the cache.
  const std::ptrdiff_t pitch = from.width;
  const std::ptrdiff_t last = pitch * from.height - 1;
  std::ptrdiff_t origin = last, stepX = -1, stepY = -pitch;
  if (type == Rotate90FlipNone) origin = last - pitch + 1, stepX = -pitch, stepY = 1;
  if (type == Rotate270FlipNone) origin = pitch - 1, stepX = pitch, stepY = -1;
  constexpr int kTile = 32;
  for (int top = 0; top < to.height; top += kTile) {
    for (int left = 0; left < to.width; left += kTile) {
      const int bottom = std::min(top + kTile, to.height);
      const int right = std::min(left + kTile, to.width);
      for (int y = top; y < bottom; ++y) {
        const unsigned char* source = from.bytes.get() + 4 * (origin + left * stepX + y * stepY);
        unsigned char* target = to.bytes.get() + 4 * (std::size_t(to.width) * y + left);
        for (int x = left; x < right; ++x, source += 4 * stepX, target += 4)
          std::memcpy(target, source, 4);
      }
    }
  }
  native_->picture = std::move(to);
  return Ok;
}

}  // namespace Gdiplus

namespace tintwerk {

std::unique_ptr<Gdiplus::Bitmap> MakeBitmap(PixelBlock picture) {
  auto* native = new (std::nothrow) Gdiplus::Bitmap::Native;
  if (!native) return nullptr;
  native->picture = std::move(picture);
  std::unique_ptr<Gdiplus::Bitmap> bitmap(new (std::nothrow) Gdiplus::Bitmap(*native));
  if (!bitmap) delete native;
  return bitmap;
}

}  // namespace tintwerk

// Platform records that cross the boundary, and the image-service object.
#pragma once

#include <cstdint>
#include <memory>

#include "tintwerk/export.h"

/// One 32-bit pixel as it lies in memory.
struct tagRGBQUAD {
  unsigned char rgbBlue;
  unsigned char rgbGreen;
  unsigned char rgbRed;
  unsigned char rgbReserved;
};

/// A rectangle by its edges, in pixels; `right` and `bottom` lie one past the last pixel.
struct tagRECT {
  std::int32_t left;
  std::int32_t top;
  std::int32_t right;
  std::int32_t bottom;
};

/// A tagRECT that starts out empty.
class CRect : public tagRECT {
 public:
  CRect() : tagRECT{0, 0, 0, 0} {}
  CRect(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom)
      : tagRECT{left, top, right, bottom} {}
};

namespace Gdiplus {
class Bitmap;
}

namespace tintwerk {
struct PixelBlock;
std::unique_ptr<Gdiplus::Bitmap> MakeBitmap(PixelBlock picture);
}  // namespace tintwerk

namespace Gdiplus {

struct Point {
  int X = 0;
  int Y = 0;
};

/// A rectangle by its origin and extent, in pixels.
struct Rect {
  int X = 0;
  int Y = 0;
  int Width = 0;
  int Height = 0;
};

/// Result of an image-service call.
enum Status {
  Ok = 0,
  GenericError = 1,
  InvalidParameter = 2,       ///< a null, a size below 1, a rectangle outside the image
  OutOfMemory = 3,            ///< allocation failed, or the picture exceeds the size limit
  WrongState = 8,             ///< a lock of a locked image, or an unlock of an unlocked one
  FileNotFound = 10,          ///< no such regular file, or it cannot be read
  UnknownImageFormat = 13,    ///< neither PNG nor JPEG, or damaged
  GdiplusNotInitialized = 18  ///< the image service is stopped
};

using PixelFormat = int;
/// Blue, green, red and straight alpha, a byte each: the one format of this library.
inline constexpr PixelFormat PixelFormat32bppARGB = 2498570;

/// Lock modes; reading and writing is their sum, 3.
enum ImageLockMode : unsigned { ImageLockModeRead = 1, ImageLockModeWrite = 2 };

/// Clockwise turns.
enum RotateFlipType {
  RotateNoneFlipNone = 0,
  Rotate90FlipNone = 1,
  Rotate180FlipNone = 2,
  Rotate270FlipNone = 3
};

/// A locked rectangle: its size in pixels and where its pixels lie.
struct BitmapData {
  unsigned Width = 0;
  unsigned Height = 0;
  int Stride = 0;  ///< bytes from one row to the next; always Width x 4
  int PixelFormat = 0;
  void* Scan0 = nullptr;  ///< first pixel of the rectangle; null while nothing is locked
};

/// A picture in memory: 32-bit pixels with straight alpha, decoded from a PNG or JPEG file or
/// blank.
///
/// A picture that could not be made has no pixels: its size is 0 x 0 and its locks fail. Hosts own
/// the pictures that the library returns as untyped pointers, and delete them as `Gdiplus::Bitmap`.
/// Only one thread at a time may use a picture.
class TINTWERK_API Bitmap {
 public:
  /// Decodes a file of at most 64 megapixels; its content tells the format, not its name. No colour
  /// management, no gamma, no turning: pixel values are those of the file.
  explicit Bitmap(const wchar_t* path);
  /// A blank picture: every byte 0. Sizes below 1 give a picture without pixels.
  Bitmap(int width, int height);
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;
  virtual ~Bitmap();

  /// Pixel size; 0 without pixels.
  int GetWidth() const;
  int GetHeight() const;

  /// Status of the last failed call on this object, `Ok` if none failed.
  Status GetLastStatus() const;

  /// Gives access to a rectangle that must lie inside the picture.
  /// @param rect   the rectangle; null for the whole picture
  /// @param mode   1 to read, 2 to write, 3 for both
  /// @param format PixelFormat32bppARGB
  /// @param data   receives the record; its rows are packed. On failure its Scan0 is null.
  /// One lock at a time.
  Status LockBits(const Rect* rect, unsigned mode, PixelFormat format, BitmapData* data);

  /// Ends the lock; after a writing lock the picture holds what was written.
  Status UnlockBits(BitmapData* data);

  /// Turns the picture in place; a quarter turn swaps width and height.
  Status RotateFlip(RotateFlipType type);

 private:
  struct Native;
  explicit Bitmap(Native& native);
  Status Fail(Status status);

  Native* native_ = nullptr;
  Status lastStatus_ = Ok;

  friend std::unique_ptr<Bitmap> tintwerk::MakeBitmap(tintwerk::PixelBlock picture);
};

}  // namespace Gdiplus

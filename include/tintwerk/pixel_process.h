// Operations on whole images and planes.
#pragma once

#include "tintwerk/export.h"
#include "tintwerk/progress.h"

/// Image operations, all static.
class TINTWERK_API CPixelProcess {
 public:
  CPixelProcess() = default;
  CPixelProcess(const CPixelProcess&) {}
  virtual ~CPixelProcess() = default;
  CPixelProcess& operator=(const CPixelProcess&) { return *this; }

  /// Scales a picture to another size: bicubic (Catmull-Rom), low-pass filtered where it shrinks,
  /// with mirrored edges. Alpha is scaled as coverage, so transparent pixels bleed no colour into
  /// their neighbours. At equal size the result is the source's exact bytes.
  /// @param bitmap a `Gdiplus::Bitmap`; one without pixels counts as an all-zero picture
  /// @param newWidth,newHeight pixels
  /// @return a new `Gdiplus::Bitmap` that the caller deletes; null for a null bitmap or if memory
  /// could
  ///         not be had. A size below 1 gives one without pixels.
  static void* RampleBit(void* bitmap, int newWidth, int newHeight);

  /// Sends blue, green and red of every pixel through one table; alpha stays. Reports and asks
  /// every twentieth of the rows; a stop leaves the rows below as they were.
  /// @param table 256 bytes; a null image or table does nothing
  static void Lut(unsigned char* pixels, int width, int height, const unsigned char* table,
                  CObjProgress* progress, int progressLow, int progressHigh);
};

// 3-D colour lookup.
#pragma once

#include "tintwerk/cstring.h"
#include "tintwerk/export.h"

/// Colour lookups through a cube with trilinear interpolation, all static.
///
/// A cube holds a colour for every node of a grid over red, green and blue. It is stored as a
/// picture of square tiles, one for each level of blue, left to right and top to bottom. Within a
/// tile red grows to the right and green downwards. The picture lies in a container file (see
/// `cube_container.h`).
///
/// Images are flat buffers of 4-byte pixels, blue, green, red, alpha, and are rewritten in
/// place; alpha stays. The arithmetic is fixed-point and truncates, so results are mostly about 1
/// too low.
///
/// The three effects differ in the cube's size and in the channel values of its nodes. A cube made
/// for one of them gives wrong colours in another.
/// @param path   the container
/// @param pixels null gives false
/// @param width,height pixels; an image without pixels gives true if the cube can be read
/// @return true if the image went through the cube. False, with the image as it was, if the file
///         cannot be read or decoded, its picture has not the size that the cube needs, the
///         pixel count exceeds an int, or allocation fails.
class TINTWERK_API CTrilinear {
 public:
  /// 16 levels at 0, 16, .. 240, from a picture of 64 x 64; above 240 the result is flat.
  static bool Effect_VSCO_4x4(tintwerk::CString path, unsigned char* pixels, int width, int height);
  /// 64 levels at 0, 4, .. 252, from a picture of 512 x 512; above 252 the result is flat.
  static bool Effect_VSCO_8x8(tintwerk::CString path, unsigned char* pixels, int width, int height);
  /// 16 levels at 0, 17, .. 255, from a picture of 64 x 64.
  static bool Effect_VSCO_New(tintwerk::CString path, unsigned char* pixels, int width, int height);

  /// Reads the picture in a container, of any size.
  /// @param width,height receive its size in pixels, 0 x 0 if there is none
  /// @return width x height x 4 bytes, which the caller frees with DeleteValue; null if the file cannot
  ///         be read, holds no length above 0 or no picture, or is larger than 256 MiB
  static unsigned char* LoadCryptFile(tintwerk::CString path, int& width, int& height);
  /// Frees a block of LoadCryptFile; null is allowed.
  static void DeleteValue(unsigned char* block);

 private:
  // Scrambles the image file of a container in place, or restores it. Null or a length below 1
  // gives false.
  static bool EnCrypt(unsigned char* bytes, int length);

  // Looks up one pixel and writes its channels first..end - 1; channels are 0..2: blue, green, red.
  // Coordinates beyond the cube are clamped to it.
  static void Lut3D16(unsigned char* pixel, const unsigned char* cube, float scale, int first,
                      int end);
  static void Lut3D64(unsigned char* pixel, const unsigned char* cube, float scale, int first,
                      int end);

  friend struct TrilinearInternals;  // reaches the private operations for the tests
};

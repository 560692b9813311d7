// Map images: blends, curves and vignettes baked into pictures of 256 columns.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/path.h"

namespace tintwerk {

/// The byte of a map pixel that a lookup returns. A chain that reads its OwnPlane takes the plane
/// of the channel that it works on; a channel of an image has the same number as its plane.
enum MapPlane { kPlaneB = 0, kPlaneG = 1, kPlaneR = 2 };

/// Bytes of a row of any map.
inline constexpr std::size_t kMapRow = 1024;

/// A curve, 256 x 1: out = M[v].
class StripMap {
 public:
  static constexpr int kRows = 1;
  explicit StripMap(const unsigned char* pixels) : pixels_(pixels) {}
  unsigned char operator()(int v, int plane) const { return pixels_[v * 4 + plane]; }

 private:
  const unsigned char* pixels_;
};

/// Three curves, 256 x 3: red in row 0, green in row 1, blue in row 2, each in its own plane.
class TriStripMap {
 public:
  static constexpr int kRows = 3;
  explicit TriStripMap(const unsigned char* pixels) : pixels_(pixels) {}
  unsigned char operator()(int v, int plane) const {
    return pixels_[(kPlaneR - plane) * 1024 + v * 4 + plane];
  }

 private:
  const unsigned char* pixels_;
};

/// One plane of a table with two keys.
class SquarePlane {
 public:
  explicit SquarePlane(const unsigned char* bytes) : bytes_(bytes) {}
  unsigned char operator()(int row, int column) const { return bytes_[(row * 256 + column) * 4]; }

 private:
  const unsigned char* bytes_;
};

/// A table with two keys, 256 x 256: out = M[row][column]. The row is the running value of the
/// chain, the column its second operand: a material, a luminance or a RadialKey.
class SquareMap {
 public:
  static constexpr int kRows = 256;
  explicit SquareMap(const unsigned char* pixels) : pixels_(pixels) {}
  unsigned char operator()(int row, int column, int plane) const {
    return pixels_[(row * 256 + column) * 4 + plane];
  }
  SquarePlane Only(MapPlane plane) const { return SquarePlane(pixels_ + plane); }

 private:
  const unsigned char* pixels_;
};

/// Which part of a map file is read.
enum class MapExtent {
  kOwnSize,   ///< it must be 256 pixels wide and have the rows of its shape at least
  kFixedRect  ///< the shape's own rectangle from the top left; the file may be larger
};

/// Reads a map file.
/// @param table receives rows x 256 pixels
/// @return false if the file is missing, unreadable or has another shape
/// @throw std::bad_alloc
bool ReadMap(const CString& path, MapExtent extent, int rows, unsigned char* table);

/// The position key of vignettes: 0 in the centre, growing with the squared distance to 255 on the
/// ellipse inscribed in the image and outside it.
class RadialKey {
 public:
  RadialKey(int width, int height)
      : sx_(static_cast<float>(2.0 / width)), sy_(static_cast<float>(2.0 / height)) {}

  /// The share of a row in the key, to be handed to At for its pixels.
  float Row(std::int64_t y) const {
    const float u = static_cast<float>(y) * sy_ - 1;
    return u * u;
  }

  int At(float row, int x) const {
    const float v = static_cast<float>(x) * sx_ - 1;
    const float d = (row + v * v) * 255;
    return static_cast<int>(d < 255 ? d : 255);
  }

 private:
  float sx_;
  float sy_;
};

}  // namespace tintwerk

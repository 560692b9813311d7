// Scaling of pictures.
#pragma once

namespace tintwerk {

/// A picture that is only read: 4-byte pixels with straight alpha, rows packed.
struct PictureView {
  const unsigned char* pixels;
  int width;
  int height;
};

/// A rectangle with fractional edges, in pixels; pixel i covers i..i + 1.
struct RectF {
  float x = 0;
  float y = 0;
  float width = 0;
  float height = 0;
};

enum class ResampleKernel {
  Bilinear,
  Bicubic,  ///< Catmull-Rom: sharp, interpolating, with a slight overshoot that is clamped
};

/// Scales a part of a picture so that `sourceRect` falls on `targetRect`, and computes the width x
/// height pixels from the origin of the target's grid. Where the picture shrinks the kernel is
/// widened, which filters out what the target cannot hold; beyond its edges the picture is
/// mirrored. Filtering works on colours weighted with their coverage, so transparent pixels bleed
/// no colour. Target pixels without coverage come out as 0.
///
/// Rows are worked in parallel; the bytes do not depend on the number of threads or the processor.
/// @param source   a picture with pixels
/// @param target   width x height pixels, rows packed
/// @return false, with nothing written, for an empty rectangle or if allocation fails
bool Resample(ResampleKernel kernel, const PictureView& source, const RectF& sourceRect,
              unsigned char* target, int width, int height, const RectF& targetRect);

}  // namespace tintwerk

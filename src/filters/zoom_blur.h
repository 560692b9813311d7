// The zoom blur in two steps, for looks that need a part of it.
#pragma once

#include <cstdint>
#include <memory>

#include "frame/image.h"

namespace tintwerk {

constexpr int kZoomSamples = 97;  // of a pixel: itself, and 96 on the way to the centre
constexpr int kZoomTile = 64;     // pixels that are worked side by side
constexpr int kZoomVector = 16;   // the most of them in one vector

/// CPixelProcess::RadiusZoomBlur of an image that has pixels.
class ZoomBlur {
 public:
  /// @throw std::bad_alloc
  ZoomBlur(int width, int height);

  /// The image, to be filled in before it is blurred: colours, with their weights as alphas.
  unsigned char* Weighted() { return weighted_.get(); }

  /// Blurs the columns left..right - 1 of the rows top..bottom - 1. Colours of the target stay where
  /// the weights are all 0.
  /// @param target the whole image, of which that part is written
  void Run(unsigned char* target, int left, int top, int right, int bottom) const;

 private:
  int width_, height_;
  std::int64_t pitch_;  // columns of a sample: the width and a vector
  PixelMemory weighted_;
  std::unique_ptr<std::int32_t[]> columns_;
};

}  // namespace tintwerk

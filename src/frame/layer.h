// Pictures that lie over an image.
#pragma once

#include <memory>

#include "frame/resample.h"

namespace tintwerk {

/// Pixels that lie over those of an image of the same size. They are made a band of rows at a time,
/// by each thread for itself, so that they never fill a memory of the image's size.
class Layer {
 public:
  virtual ~Layer() = default;

  /// One thread's way down the layer.
  class Reader {
   public:
    virtual ~Reader() = default;
    /// Rows from..to - 1, packed, until the next call. No call may begin above the one before.
    virtual const unsigned char* Rows(int from, int to) = 0;
  };
  /// @param bandRows the most rows that are asked for at once
  /// @throw std::bad_alloc
  virtual std::unique_ptr<Reader> NewReader(int bandRows) const = 0;
};

/// Pixels that are there already; they outlive the layer.
/// @throw std::bad_alloc
std::unique_ptr<Layer> PixelLayer(const unsigned char* pixels, int width);

/// All zero. @throw std::bad_alloc
std::unique_ptr<Layer> BlankLayer(int width);

/// A part of another layer, which outlives it: what lies from column `left` and row `top` on.
/// @param layerWidth,width pixels of a row of the other layer and of this one
/// @throw std::bad_alloc
std::unique_ptr<Layer> CropLayer(const Layer& layer, int layerWidth, int left, int top, int width);

/// Another layer in the upper left corner of a wider one, which holds nothing of use elsewhere.
/// @throw std::bad_alloc
std::unique_ptr<Layer> CornerLayer(std::unique_ptr<Layer> layer, int layerWidth, int layerHeight,
                                   int width);

/// A picture scaled to width x height as CPixelProcess::RampleBit scales bitmaps: as it is if it has
/// that size, all zero if it has no pixels. It outlives the layer.
/// @throw std::bad_alloc
std::unique_ptr<Layer> BicubicLayer(const PictureView& picture, int width, int height);

/// A picture that falls on a rectangle which covers the image, scaled as Graphics::DrawImage scales
/// by default. It outlives the layer.
/// @throw std::bad_alloc
std::unique_ptr<Layer> DrawnLayer(const PictureView& picture, int width, int height,
                                  const RectF& rect);

}  // namespace tintwerk

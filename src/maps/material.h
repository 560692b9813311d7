// Pictures that lie over the image.
#pragma once

#include <memory>
#include <optional>

#include "frame/layer.h"
#include "frame/material.h"
#include "frame/path.h"
#include "tintwerk/platform.h"

namespace tintwerk {

using Turn = Gdiplus::RotateFlipType;

/// A picture brought to the image's size: dereferencing gives the layer.
class Material {
 public:
  Material() = default;

  /// Scales as CPixelProcess::RampleBit does bitmaps; one without pixels comes out all zero.
  void LayBicubic(std::unique_ptr<Gdiplus::Bitmap> picture, int width, int height);
  /// Scales as SFDSP::BilinearReSample does. The picture must have pixels.
  void LayBilinear(std::unique_ptr<Gdiplus::Bitmap> picture, int width, int height);

  const Layer& operator*() const { return *layer_; }

 private:
  PictureView Hold(std::unique_ptr<Gdiplus::Bitmap> picture);

  std::unique_ptr<Gdiplus::Bitmap> picture_;
  std::optional<BitmapLock> lock_;
  std::unique_ptr<Layer> layer_;
};

/// Decodes a picture; one that is missing or unreadable has no pixels.
/// @throw std::bad_alloc
std::unique_ptr<Gdiplus::Bitmap> OpenPicture(const CString& path);

}  // namespace tintwerk

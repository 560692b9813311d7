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

  /// Scales as LayBicubic does, into the upper left corner of the image: on a landscape image with
  /// the picture's proportions, otherwise over all of it. Where the picture does not reach, the
  /// layer holds nothing of use.
  void LayFitted(std::unique_ptr<Gdiplus::Bitmap> picture, int width, int height);
  /// The size that the picture was fitted to; 0 x 0 if it vanishes.
  int FittedWidth() const { return fittedWidth_; }
  int FittedHeight() const { return fittedHeight_; }

  /// Takes pixels of the image's size in place of the picture.
  void LayPixels(PixelMemory pixels, int width);

  /// Holds a picture as it is, without a layer.
  PictureView Hold(std::unique_ptr<Gdiplus::Bitmap> picture);
  /// What is held; without pixels if the picture has none.
  PictureView View() const;

  bool HasLayer() const { return layer_ != nullptr; }
  const Layer& operator*() const { return *layer_; }

 private:
  std::unique_ptr<Gdiplus::Bitmap> picture_;
  std::optional<BitmapLock> lock_;
  PixelMemory pixels_;
  std::unique_ptr<Layer> layer_;
  int fittedWidth_ = 0, fittedHeight_ = 0;
};

/// Decodes a picture; one that is missing or unreadable has no pixels.
/// @throw std::bad_alloc, also for one that is too large to be decoded
std::unique_ptr<Gdiplus::Bitmap> OpenPicture(const CString& path);

}  // namespace tintwerk

#include "maps/material.h"

#include <new>

#include "filters/scaled_layers.h"

namespace tintwerk {

PictureView Material::Hold(std::unique_ptr<Gdiplus::Bitmap> picture) {
  layer_.reset();
  lock_.reset();
  picture_ = std::move(picture);
  lock_.emplace(picture_.get());
  return View();
}

PictureView Material::View() const {
  return {lock_->Pixels(), lock_->Width(), lock_->Height()};
}

void Material::LayBicubic(std::unique_ptr<Gdiplus::Bitmap> picture, int width, int height) {
  layer_ = BicubicLayer(Hold(std::move(picture)), width, height);
}

void Material::LayBilinear(std::unique_ptr<Gdiplus::Bitmap> picture, int width, int height) {
  layer_ = BilinearLayer(Hold(std::move(picture)), width, height);
}

void Material::LayFitted(std::unique_ptr<Gdiplus::Bitmap> picture, int width, int height) {
  const PictureView view = Hold(std::move(picture));
  int fitWidth = width, fitHeight = height;
  if (width > height) {
    const float sx = static_cast<float>(width) / static_cast<float>(view.width);
    const float sy = static_cast<float>(height) / static_cast<float>(view.height);
    if (!view.pixels)
      fitWidth = fitHeight = 0;
    else if (sx > sy)
      fitWidth = static_cast<int>(static_cast<double>(view.width) * sy);
    else
      fitHeight = static_cast<int>(static_cast<double>(view.height) * sx);
  }
  if (fitWidth <= 0 || fitHeight <= 0) {
    layer_ = BlankLayer(width);
    return;
  }
  fittedWidth_ = fitWidth;
  fittedHeight_ = fitHeight;
  layer_ = CornerLayer(BicubicLayer(view, fitWidth, fitHeight), fitWidth, fitHeight, width);
}

void Material::LayPixels(PixelMemory pixels, int width) {
  layer_ = PixelLayer(pixels.get(), width);
  pixels_ = std::move(pixels);
  lock_.reset();
  picture_.reset();
}

std::unique_ptr<Gdiplus::Bitmap> OpenPicture(const CString& path) {
  auto picture = std::make_unique<Gdiplus::Bitmap>(path.Wide().c_str());
  if (picture->GetLastStatus() == Gdiplus::OutOfMemory) throw std::bad_alloc();
  return picture;
}

}  // namespace tintwerk

#include "maps/material.h"

#include "filters/scaled_layers.h"

namespace tintwerk {

PictureView Material::Hold(std::unique_ptr<Gdiplus::Bitmap> picture) {
  layer_.reset();
  lock_.reset();
  picture_ = std::move(picture);
  lock_.emplace(picture_.get());
  return {lock_->Pixels(), lock_->Width(), lock_->Height()};
}

void Material::LayBicubic(std::unique_ptr<Gdiplus::Bitmap> picture, int width, int height) {
  layer_ = BicubicLayer(Hold(std::move(picture)), width, height);
}

void Material::LayBilinear(std::unique_ptr<Gdiplus::Bitmap> picture, int width, int height) {
  layer_ = BilinearLayer(Hold(std::move(picture)), width, height);
}

std::unique_ptr<Gdiplus::Bitmap> OpenPicture(const CString& path) {
  return std::make_unique<Gdiplus::Bitmap>(path.Wide().c_str());
}

}  // namespace tintwerk

#include "maps/material_over.h"

#include "tintwerk/pixel_process.h"

namespace tintwerk {

std::unique_ptr<Gdiplus::Bitmap> LoadPictureOver(const CString& path, int width, int height) {
  Gdiplus::Bitmap picture(path.Wide().c_str());
  return std::unique_ptr<Gdiplus::Bitmap>(
      static_cast<Gdiplus::Bitmap*>(CPixelProcess::RampleBit(&picture, width, height)));
}

}  // namespace tintwerk

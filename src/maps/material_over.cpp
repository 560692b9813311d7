#include "maps/material_over.h"

#include <new>

#include "frame/material.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {

std::unique_ptr<Gdiplus::Bitmap> OpenPicture(const CString& path, int width, int height,
                                             Gdiplus::RotateFlipType turn) {
  std::unique_ptr<Gdiplus::Bitmap> picture(new (std::nothrow) Gdiplus::Bitmap(path.Wide().c_str()));
  if (picture && width > height) picture->RotateFlip(turn);
  return picture;
}

std::unique_ptr<Gdiplus::Bitmap> ScaleOver(Gdiplus::Bitmap* picture, int width, int height) {
  return std::unique_ptr<Gdiplus::Bitmap>(
      static_cast<Gdiplus::Bitmap*>(CPixelProcess::RampleBit(picture, width, height)));
}

std::unique_ptr<Gdiplus::Bitmap> LoadPictureOver(const CString& path, int width, int height,
                                                 Gdiplus::RotateFlipType turn) {
  return ScaleOver(OpenPicture(path, width, height, turn).get(), width, height);
}

std::unique_ptr<unsigned char[]> LoadMaterialOver(const CString& path, int width, int height) {
  int ownWidth = 0, ownHeight = 0;
  std::unique_ptr<unsigned char[]> material(LoadMaterialPixels(path, &ownWidth, &ownHeight));
  if (!material || ownWidth == 0) return nullptr;
  const auto count = PixelCount(width, height);
  if (!count || (ownWidth == width && ownHeight == height)) return material;
  std::unique_ptr<unsigned char[]> over(new (std::nothrow) unsigned char[std::size_t{4} * *count]);
  if (over && *count > 0 &&
      !SFDSP::BilinearReSample(material.get(), ownWidth, ownHeight, over.get(), width, height, 4))
    return nullptr;
  return over;
}

}  // namespace tintwerk

// Pictures that lie over the image.
#pragma once

#include <memory>

#include "frame/path.h"
#include "tintwerk/platform.h"

namespace tintwerk {

/// Decodes a picture. One that is missing or unreadable has no pixels.
/// @param turn how it is turned if the image is landscape: pictures with an up and down are stored
///        upright
/// @return null only if memory could not be had
std::unique_ptr<Gdiplus::Bitmap> OpenPicture(
    const CString& path, int width, int height,
    Gdiplus::RotateFlipType turn = Gdiplus::RotateNoneFlipNone);

/// Scales a picture to width x height; one without pixels comes out all zero.
/// @return null for null, or if memory could not be had
std::unique_ptr<Gdiplus::Bitmap> ScaleOver(Gdiplus::Bitmap* picture, int width, int height);

/// Both: the picture that lies over an image of width x height.
std::unique_ptr<Gdiplus::Bitmap> LoadPictureOver(
    const CString& path, int width, int height,
    Gdiplus::RotateFlipType turn = Gdiplus::RotateNoneFlipNone);

/// The bilinear form: width x height pixels of which alpha does not count.
/// @return null if the picture is missing or unreadable, or memory could not be had
std::unique_ptr<unsigned char[]> LoadMaterialOver(const CString& path, int width, int height);

}  // namespace tintwerk

// Pictures that lie over the image.
#pragma once

#include <memory>

#include "frame/path.h"
#include "tintwerk/platform.h"

namespace tintwerk {

/// Decodes a picture and scales it to width x height. One that is missing or unreadable comes out
/// all zero.
/// @return null only if memory could not be had
std::unique_ptr<Gdiplus::Bitmap> LoadPictureOver(const CString& path, int width, int height);

}  // namespace tintwerk

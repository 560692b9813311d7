// Textures and masks over an image.
#pragma once

#include "frame/layer.h"

namespace tintwerk {

// The picture outlives its layer. One of the image's size is taken as it is.

/// A picture scaled to width x height as SFDSP::BilinearReSample scales it. Alpha does not count.
/// @throw std::bad_alloc
std::unique_ptr<Layer> BilinearLayer(const PictureView& picture, int width, int height);

/// A picture scaled to width x height by its nearest pixels, as CPixelProcess::RampleBit does.
/// @throw std::bad_alloc
std::unique_ptr<Layer> NearestLayer(const PictureView& picture, int width, int height);

}  // namespace tintwerk

// What a picture file says besides its pixels: EXIF, XMP, IPTC, colour profile, resolution.
#pragma once

#include <vips/vips8>

/// The records of `image` that hold for its reworked picture too: as upright, as sRGB and without
/// thumbnails.
/// @return an image of one pixel that carries them
vips::VImage KeptMetadata(const vips::VImage& image);

/// Gives `image`, which must be nobody else's, the records that `metadata` carries.
void AttachMetadata(const vips::VImage& metadata, vips::VImage& image);

// What a picture file says besides its pixels: EXIF, XMP, IPTC, colour profile, resolution.
#pragma once

#include <vips/vips8>

/// The records of `image` that stay true when it is edited, turned upright and converted to sRGB.
/// Thumbnails are left out.
/// @return an image of one pixel with these records
vips::VImage KeptMetadata(const vips::VImage& image);

/// Copies the records of `metadata` to `image`, which must not be shared.
void AttachMetadata(const vips::VImage& metadata, vips::VImage& image);

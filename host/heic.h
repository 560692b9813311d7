// HEIC files.
#pragma once

#include <vips/vips8>

/// Writes an image of 8 bits a sample as HEIC. libvips writes it too, but with the slow settings of
/// the encoder alone, which take six times as long for the same picture.
/// @param quality 1..100
/// @param effort 0 fastest .. 9 the most careful search
/// Throws std::exception on failure; what was written then is no picture.
void WriteHeic(const vips::VImage& image, int quality, int effort, int descriptor);

// From the order of channels that libvips takes to that of pictures, and back.
#pragma once

#include <vips/vips8>

// For what libvips calls back from threads of its own: it hands its work to them under locks of GLib,
// which ThreadSanitizer does not see.
#define CALLED_BY_VIPS __attribute__((no_sanitize_thread))

/// An image with its red and blue exchanged, with a full alpha that it had not, or without that which it
/// had.
/// @param image has 3 or 4 bands of 8 or 16 bits
/// @param bands that the result has, 3 or 4
vips::VImage Exchanged(const vips::VImage& image, int bands);

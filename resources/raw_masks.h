// Masks in files of raw bytes, without a header. Their readers scale them to the image by the
// nearest pixel, so everything in them is smooth.
#pragma once

#include "table.h"

namespace tintwerk::paint {

/// Two planes of 640 x 640 bytes: how sharp the image stays (255 in the middle, 0 in the corners),
/// then how much light it keeps.
Bytes ToyLensMasks();

/// 240 x 240 pixels of blue, green, red and alpha: the light at the end of a tunnel and its walls
/// in the colours, and in alpha how far the image rushes past, 0 in the middle.
Bytes TunnelMask();

}  // namespace tintwerk::paint

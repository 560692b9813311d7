// A festive frame: lamps and glitter around the rim. Upright; alike on all sides, since landscape
// images get it turned.
#pragma once

#include "picture.h"

namespace tintwerk::paint {

/// The frame itself, clear in the middle: a dark rim with shining lamps before it.
Picture FestiveFrame();

/// What gives the whole image its hues: a pale rose gold in the middle, red at the rim, and gold
/// where the frame's lamps shine. Its lightness is not meant to be used.
Picture FestiveColors();

}  // namespace tintwerk::paint

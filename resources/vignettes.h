// Maps that darken a tone towards the rim of the image.
#pragma once

#include "picture.h"

namespace tintwerk::paint {

/// 256 x 256: row = tone, column = position, from 0 in the centre to 255 on the ellipse that is
/// inscribed in the image and everywhere outside it, growing with the squared distance. Column 0 is
/// the identity.
struct VignetteMap {
  struct Channels {
    double red;
    double green;
    double blue;
  };
  Channels darkening;     // share of a shadow's light that is lost at the rim, 0..1
  double highlight_hold;  // share of that loss which white is spared, 0..1
  double delay;           // 0: all tones fall alike; 1: white begins to fall much later than black

  Picture operator()() const;
};

}  // namespace tintwerk::paint

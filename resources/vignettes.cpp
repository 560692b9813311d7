#include "vignettes.h"

namespace tintwerk::paint {

Picture VignetteMap::operator()() const {
  Picture map(256, 256);
  for (int row = 0; row < 256; ++row) {
    const double tone = row / 255.0;
    for (int column = 0; column < 256; ++column) {
      // The fall is level at both ends: at the centre, and at the ellipse, beyond which the last
      // column goes on. A slope there would show as a line.
      const double place = column / 255.0;
      const double smooth = place * place * (3 - 2 * place);
      const double fall = smooth * (1 - delay * tone * (1 - smooth));
      const double loss = fall * (1 - highlight_hold * tone * tone);
      const auto darkened = [&](double share) { return RoundToByte(row * (1 - share * loss)); };
      map.At(column, row) = {darkened(darkening.red), darkened(darkening.green),
                             darkened(darkening.blue)};
    }
  }
  return map;
}

}  // namespace tintwerk::paint

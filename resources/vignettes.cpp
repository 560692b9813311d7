// Maps that darken a tone towards the rim of the image.
#include "table.h"

namespace tintwerk::paint {
namespace {

/// 256 x 256: row = tone, column = position, from 0 in the centre to 255 on the ellipse that is
/// inscribed in the image and everywhere outside it, growing with the squared distance. Column 0 is
/// the identity.
struct VignetteMap {
  struct Channels {
    double red;
    double green;
    double blue;
  };
  Channels darkening;    // share of a shadow's light that is lost at the rim, 0..1
  double highlightHold;  // share of that loss which white is spared, 0..1
  double delay;          // 0: all tones fall alike; 1: white begins to fall much later than black

  Picture operator()() const;
};

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
      const double loss = fall * (1 - highlightHold * tone * tone);
      const auto darkened = [&](double share) { return RoundToByte(row * (1 - share * loss)); };
      map.At(column, row) = {darkened(darkening.red), darkened(darkening.green),
                             darkened(darkening.blue)};
    }
  }
  return map;
}

}  // namespace

std::span<const File> VignetteFiles() {
  static const File files[] = {
      // The second is the softer and leaves the rim warm: red falls least, blue most.
      {"vignetteMap.png",
       VignetteMap{.darkening = {0.44, 0.44, 0.44}, .highlightHold = 0.35, .delay = 0.4}},
      {"style/VignetteMap.png",
       VignetteMap{.darkening = {0.36, 0.40, 0.46}, .highlightHold = 0.4, .delay = 0.4}},
  };
  return files;
}

}  // namespace tintwerk::paint

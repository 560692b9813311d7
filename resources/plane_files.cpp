#include "plane_files.h"

#include <cmath>

#include "noise.h"

namespace tintwerk::paint {

Bytes PlaneFile::operator()() const {
  Bytes file(1);
  for (const PlaneFunction& plane : planes) {
    file.insert(file.end(), 3, 0);
    for (int high = 0; high < 256; ++high)
      for (int low = 0; low < 256; ++low)
        file.push_back(RoundToByte(255 * plane(high / 255.0, low / 255.0)));
  }
  for (const std::vector<Sample>& samples : tones) {
    const auto curve = MonotoneCurve(samples);
    file.insert(file.end(), curve.begin(), curve.end());
  }
  return file;
}

double ToneBend::operator()(double tone) const {
  const double bent = tone + bend * tone * (1 - tone);
  const double steep = bent + contrast * bent * (1 - bent) * (2 * bent - 1);
  return Lerp(black, white, steep);
}

double StudioPrint::operator()(double sharp, double blurred) const {
  // Texture and noise differ from their surroundings by a few hundredths, outlines by far more.
  constexpr double kEdge = 0.06;
  const double detail = sharp - blurred;
  const double square = detail * detail;
  const double gain = Lerp(texture, edges, square / (square + kEdge * kEdge));
  // Sharpening saturates, so that hard edges get no halo, and dies away towards black and white: an
  // eighth is just so much that it never runs past them.
  constexpr double kMost = 0.125;
  double change = (gain - 1) * detail;
  if (gain > 1) {
    const double reach = change / kMost;
    const double outward = (2 * sharp - 1) * (2 * sharp - 1);
    change = change / std::sqrt(1 + reach * reach) * (1 - outward * outward);
  }
  return tone(Screen(sharp + change, glow * blurred * blurred));
}

double PastelLight(double base, double top) {
  return SoftLight(base, Lerp(0.25, 0.95, top));
}

double PictureBlend::operator()(double image, double picture) const {
  const double blended = Lerp(image, blend(image, picture), strength);
  return tone(Lerp(blended, picture, wash));
}

}  // namespace tintwerk::paint

// The three adjustment axes: twelve steps each of light, contrast and saturation. The steps are
// even: 1 to 6 take away and 7 to 12 add, and neutral, which has no file, lies midway between 6
// and 7.
#include <string>
#include <vector>

#include "cubes.h"
#include "table.h"

namespace tintwerk::paint {

std::span<const File> AdjustmentGradeFiles() {
  static const std::vector<File> files = [] {
    std::vector<File> steps;
    for (int step = 1; step <= 12; ++step) {
      const double share = (step - 6.5) / 5.5;  // -1..1
      const std::string number = std::to_string(step);
      steps.push_back({"style/lig" + number, Cube{kCube16, {.tone = {.exposure = 0.6 * share}}}});
      // The curve turns about toe / (toe + shoulder), the lightness of middle grey.
      steps.push_back({"style/con" + number,
                       Cube{kCube16, {.tone = {.toe = 0.9 * share, .shoulder = 0.7 * share}}}});
      // The first step is grey to the last hue; the strong ones go easy on skin.
      const double factor = 1 + share;
      steps.push_back(
          {"style/sat" + number,
           Cube{kCube16, {.saturation = {factor, factor, factor}, .skin = share < 0 ? 0 : 0.4}}});
    }
    return steps;
  }();
  return files;
}

}  // namespace tintwerk::paint

#include <vector>

#include "film_grades.h"

namespace tintwerk::paint {

std::span<const CubeFile> AdjustmentGrades() {
  static const std::vector<CubeFile> files = [] {
    std::vector<CubeFile> steps;
    for (int step = 1; step <= 12; ++step) {
      const double share = (step - 6.5) / 5.5;  // -1..1
      const std::string number = std::to_string(step);
      steps.push_back({"style/lig" + number, {kCube16, {.tone = {.exposure = 0.6 * share}}}});
      // The curve turns about toe / (toe + shoulder), the lightness of middle grey.
      steps.push_back({"style/con" + number,
                       {kCube16, {.tone = {.toe = 0.9 * share, .shoulder = 0.7 * share}}}});
      // The first step is grey to the last hue; the strong ones go easy on skin.
      const double factor = 1 + share;
      steps.push_back(
          {"style/sat" + number,
           {kCube16, {.saturation = {factor, factor, factor}, .skin = share < 0 ? 0 : 0.4}}});
    }
    return steps;
  }();
  return files;
}

}  // namespace tintwerk::paint

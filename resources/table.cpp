#include "table.h"

#include <vector>

namespace tintwerk::paint {

std::span<const File> FileTable() {
  static const std::vector<File> table = [] {
    std::vector<File> all;
    for (const auto family : {LightLeakFiles, FestivalFiles, PaperFiles, ComicFiles, OilFiles,
                              PencilFiles, WeatherFiles, PrintFiles, LightPictureFiles, TintedFiles,
                              SunlightFiles, RawMaskFiles, PlaneFiles, BlendMapFiles, VignetteFiles,
                              CurveFiles, FilmGradeFiles, AdjustmentGradeFiles})
      all.insert(all.end(), family().begin(), family().end());
    return all;
  }();
  return table;
}

}  // namespace tintwerk::paint

// The list of all support files.
#pragma once

#include <span>

#include "picture.h"

namespace tintwerk::paint {

/// Every file that is painted, each once. The order is that of painting: the slowest come first.
std::span<const File> FileTable();

// The families, each listed where its painters are.
std::span<const File> AdjustmentGradeFiles();
std::span<const File> BlendMapFiles();
std::span<const File> ComicFiles();
std::span<const File> CurveFiles();
std::span<const File> FestivalFiles();
std::span<const File> FilmGradeFiles();
std::span<const File> LightLeakFiles();
std::span<const File> LightPictureFiles();
std::span<const File> OilFiles();
std::span<const File> PaperFiles();
std::span<const File> PencilFiles();
std::span<const File> PlaneFiles();
std::span<const File> PrintFiles();
std::span<const File> RawMaskFiles();
std::span<const File> SunlightFiles();
std::span<const File> TintedFiles();
std::span<const File> VignetteFiles();
std::span<const File> WeatherFiles();

}  // namespace tintwerk::paint

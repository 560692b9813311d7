// Many looks of one picture.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <string>

#include "looks.h"
#include "picture_io.h"

struct EachLookOptions {
  std::string title;                ///< of the progress bar
  std::filesystem::path resources;  ///< empty for those of the installation
  int jobs = 0;                     ///< looks at a time; 0 for one per processor
};

/// Gives each look to a copy of a picture, and hands the result to `take`, which several threads may
/// call at once. Tells on standard error which looks fail, or of what `take` throws. Throws Refusal,
/// before anything is begun, if support files are missing.
/// @return how many looks are done, which is not all after a failure or a request to stop
std::size_t GiveEachLook(const Picture& picture, std::span<const Look* const> looks,
                         const EachLookOptions& options,
                         const std::function<void(const Look& look, Picture& result)>& take);

/// The first page of a picture, without its records, made smaller if a side has more than `longest`
/// pixels. Throws Refusal if it cannot be read.
Picture LoadCopy(const std::filesystem::path& path, int longest);

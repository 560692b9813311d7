// Painting of the support-file tree.
#pragma once

#include <filesystem>
#include <span>

#include "picture.h"

namespace tintwerk::paint {

/// Paints `files` into root/Effects, several at a time; the bytes do not depend on `threads`.
/// Throws the error of the first file in the list that could not be written, after the others have
/// been tried.
/// @param threads at least 1
void PaintFiles(std::span<const File> files, const std::filesystem::path& root, int threads);

}  // namespace tintwerk::paint

// Painting of the support-file tree.
#pragma once

#include <filesystem>
#include <functional>
#include <span>

#include "table.h"

namespace tintwerk::paint {

/// Paints `files` into root/Effects, several at a time; the bytes do not depend on `threads`.
/// Throws the error of the first file in the list that could not be written, after the others have
/// been tried.
/// @param threads at least 1
/// @param report called with the share of files that are done, 0..1, from any of the threads; may
/// be empty
void PaintFiles(std::span<const File> files, const std::filesystem::path& root, int threads,
                const std::function<void(double)>& report = {});

}  // namespace tintwerk::paint

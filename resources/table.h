// The list of all support files.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "picture.h"

namespace tintwerk::paint {

/// A support file: its path below the folder `Effects`, with the extension that tells its format,
/// and what paints it.
struct File {
  std::string_view name;
  std::function<Picture()> paint;
};

/// Every file that is painted, each once. The order is that of painting: the slowest come first.
std::span<const File> FileTable();

}  // namespace tintwerk::paint

// The list of all support files.
#pragma once

#include <functional>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "picture.h"

namespace tintwerk::paint {

using Bytes = std::vector<unsigned char>;

/// A picture that is encoded as its name tells, or the bytes of a file as they are.
using Painted = std::variant<Picture, Bytes>;

/// A support file: its path below the folder `Effects`, whose extension tells the format, and what
/// paints it.
struct File {
  std::string_view name;
  std::function<Painted()> paint;
};

/// Every file that is painted, each once. The order is that of painting: the slowest come first.
std::span<const File> FileTable();

}  // namespace tintwerk::paint

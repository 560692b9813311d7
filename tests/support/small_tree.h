// The painted tree with its pictures small, so that looks run quickly.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "support/resource_root.h"

namespace tintwerk::test {

/// @param effects the folder Effects of a painted tree
inline ResourceRoot& SmallTree(const std::filesystem::path& effects) {
  static ResourceRoot root;
  [[maybe_unused]] static const bool filled = [&] {
    for (const auto& item : std::filesystem::recursive_directory_iterator(effects)) {
      if (!item.is_regular_file()) continue;
      const std::string name = item.path().lexically_relative(effects).generic_string();
      Gdiplus::Bitmap picture(item.path().wstring().c_str());
      if (picture.GetWidth() == 256) {
        root.Put(name, PictureOf(&picture));
      } else if (picture.GetWidth() > 0) {
        root.Shown(name);
      } else {
        std::ifstream file(item.path(), std::ios::binary);
        root.Put(name, Bytes(std::istreambuf_iterator<char>(file), {}));
      }
    }
    return true;
  }();
  return root;
}

}  // namespace tintwerk::test

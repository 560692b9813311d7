// Forming of support-file paths.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "tintwerk/cstring.h"

namespace tintwerk {

/// A CString formatted in one expression.
template <class... Arguments>
CString FormatPath(std::wstring_view path, const Arguments&... arguments) {
  CString result;
  result.Format(path, arguments...);
  return result;
}

/// The path of a file for the platform's calls, encoded as UTF-8 where names are bytes. Empty,
/// hence a file that does not exist, if the string is no text.
std::filesystem::path NativePath(const std::wstring& path);

}  // namespace tintwerk

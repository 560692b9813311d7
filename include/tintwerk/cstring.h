// The string that carries the path of a support file.
#pragma once

#include <string>
#include <string_view>

#include "tintwerk/export.h"

namespace tintwerk {

/// A wide-character string with printf-style formatting, for the path of a support file. As with any
/// string of the host's, memory that runs out while one is made throws std::bad_alloc.
class TINTWERK_API CString {
 public:
  CString() = default;
  CString(const wchar_t* text) : text_(text ? text : L"") {}

  /// Replaces the string by a path template with its `%s` (wide string) and `%d` (int) filled in,
  /// in order. In the template, `\` becomes the platform's separator and the folder `effects`
  /// becomes `Effects`; arguments stay as they are. A null wide string counts as empty.
  template <class... Arguments>
  void Format(std::wstring_view path, const Arguments&... arguments) {
    text_.clear();
    (FillIn(path, Text(arguments)), ...);
    AppendLiteral(path);
  }

  const std::wstring& Wide() const { return text_; }

 private:
  static std::wstring Text(int number) { return std::to_wstring(number); }
  static std::wstring Text(const wchar_t* text) { return text ? text : L""; }
  static std::wstring Text(const void* resourceRoot) {
    return Text(static_cast<const wchar_t*>(resourceRoot));
  }

  // Takes the template up to and including its next conversion.
  void FillIn(std::wstring_view& path, std::wstring_view argument);
  void AppendLiteral(std::wstring_view text);

  std::wstring text_;
};

}  // namespace tintwerk

#include "frame/path.h"

#include <algorithm>
#include <string>

namespace tintwerk {

void CString::FillIn(std::wstring_view& path, std::wstring_view argument) {
  const std::size_t conversion = path.find(L'%');
  if (conversion == path.npos) return;
  AppendLiteral(path.substr(0, conversion));
  text_ += argument;
  path.remove_prefix(std::min(conversion + 2, path.size()));
}

void CString::AppendLiteral(std::wstring_view text) {
  constexpr std::wstring_view kFolder = L"\\effects\\";
  std::wstring literal(text);
  for (std::size_t at = literal.find(kFolder); at != literal.npos; at = literal.find(kFolder, at))
    literal[at + 1] = L'E';
  for (wchar_t& c : literal)
    if (c == L'\\') c = static_cast<wchar_t>(std::filesystem::path::preferred_separator);
  text_ += literal;
}

std::filesystem::path NativePath(const std::wstring& path) {
#ifdef _WIN32
  return path;
#else
  // Not std::filesystem's own conversion: that one depends on the locale.
  constexpr char32_t kLead[] = {0, 0xC0, 0xE0, 0xF0};  // by the number of following bytes
  std::string utf8;
  for (const wchar_t c : path) {
    const auto code = static_cast<char32_t>(c);
    if (code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return {};
    if (code < 0x80) {
      utf8 += static_cast<char>(code);
      continue;
    }
    const int following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    utf8 += static_cast<char>(kLead[following] | code >> (6 * following));
    for (int i = following - 1; i >= 0; --i)
      utf8 += static_cast<char>(0x80 | (code >> (6 * i) & 0x3F));
  }
  return utf8;
#endif
}

}  // namespace tintwerk

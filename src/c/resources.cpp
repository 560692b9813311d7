#include "c/resources.h"

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "frame/path.h"
#include "tintwerk/c.h"

#ifdef __linux__
#include <dlfcn.h>
#endif

namespace tintwerk {
namespace {

namespace fs = std::filesystem;

// Not a conversion of the standard library: those depend on the locale.
std::optional<std::wstring> Wide(std::string_view utf8) {
  std::wstring wide;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i++]);
    const int following = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    if (lead >= 0x80 && (lead < 0xC2 || lead > 0xF4)) return std::nullopt;
    char32_t code = following == 0 ? lead : lead & (0x3Fu >> following);
    for (int n = 0; n < following; ++n, ++i) {
      if (i >= utf8.size() || (utf8[i] & 0xC0) != 0x80) return std::nullopt;
      code = code << 6 | (utf8[i] & 0x3Fu);
    }
    constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};  // by the number of following bytes
    if (code < kLeast[following] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
      return std::nullopt;
    if (sizeof(wchar_t) > 2 || code < 0x10000) {
      wide += static_cast<wchar_t>(code);
    } else {
      wide += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
      wide += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
    }
  }
  return wide;
}

bool HoldsEffects(const std::wstring& root) {
  std::error_code error;
  return fs::is_directory(NativePath(root) / "Effects", error);
}

// The library lies in lib or, where several architectures share a prefix, in a folder of that.
std::optional<std::wstring> Installed() {
#ifdef __linux__
  Dl_info library;
  std::error_code error;
  if (dladdr(reinterpret_cast<const void*>(&tintwerk_apply), &library) == 0) return std::nullopt;
  fs::path folder = fs::canonical(library.dli_fname, error).parent_path();
  for (int up = 0; up < 2 && !error && folder.has_relative_path(); ++up) {
    folder = folder.parent_path();
    const auto root = Wide((folder / "share" / "tintwerk").native());
    if (root && HoldsEffects(*root)) return root;
  }
#endif
  return std::nullopt;
}

}  // namespace

std::optional<std::wstring> ResourceRoot(const char* folder) {
  if (!folder) return Installed();
  auto root = Wide(folder);
  if (root && (root->empty() || !HoldsEffects(*root))) root.reset();
  return root;
}

}  // namespace tintwerk

#include "frame/file.h"

#include <string>
#include <system_error>

namespace tintwerk {

FileHandle OpenFile(const std::filesystem::path& path, const char* mode) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return nullptr;
#ifdef _WIN32
  return FileHandle(_wfopen(
      path.c_str(), std::wstring(mode, mode + std::char_traits<char>::length(mode)).c_str()));
#else
  return FileHandle(std::fopen(path.c_str(), mode));
#endif
}

}  // namespace tintwerk

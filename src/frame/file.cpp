#include "frame/file.h"

#include <cerrno>
#include <new>
#include <string>
#include <system_error>

namespace tintwerk {

FileHandle OpenFile(const std::filesystem::path& path, const char* mode) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return nullptr;
#ifdef _WIN32
  FileHandle file(_wfopen(path.c_str(),
                          std::wstring(mode, mode + std::char_traits<char>::length(mode)).c_str()));
#else
  FileHandle file(std::fopen(path.c_str(), mode));
#endif
  if (!file && errno == ENOMEM) throw std::bad_alloc();
  // All reads are of whole blocks. A buffer would be memory that may not be there.
  if (file) std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return file;
}

}  // namespace tintwerk

#include "maps/plane_file.h"

#include <algorithm>

namespace tintwerk {

RawFile::RawFile(const CString& path, const char* mode)
    : file_(OpenFile(NativePath(path.Wide()), mode)) {}

void RawFile::Read(unsigned char* to, std::size_t bytes) {
  const std::size_t got = file_ ? std::fread(to, 1, bytes, file_.get()) : 0;
  std::fill(to + got, to + bytes, 0);
}

}  // namespace tintwerk

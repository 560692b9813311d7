#include "maps/plane_file.h"

#include <algorithm>

namespace tintwerk {

RawFile::RawFile(const CString& path) : file_(OpenFile(NativePath(path.Wide()), "rb+")) {}

void RawFile::Read(unsigned char* to, std::size_t bytes) {
  const std::size_t got = file_ ? std::fread(to, 1, bytes, file_.get()) : 0;
  std::fill(to + got, to + bytes, 0);
}

PlaneFile::PlaneFile() : bytes_(new unsigned char[kBytes]) {}

bool PlaneFile::Open(const CString& path) {
  RawFile file(path);
  if (file) file.Read(bytes_.get(), kBytes);
  return bool(file);
}

}  // namespace tintwerk

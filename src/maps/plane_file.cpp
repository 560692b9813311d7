#include "maps/plane_file.h"

#include <algorithm>
#include <new>

namespace tintwerk {

RawFile::RawFile(const CString& path) : file_(OpenFile(NativePath(path.Wide()), "rb+")) {}

void RawFile::Read(unsigned char* to, std::size_t bytes) {
  const std::size_t got = file_ ? std::fread(to, 1, bytes, file_.get()) : 0;
  std::fill(to + got, to + bytes, 0);
}

std::unique_ptr<unsigned char[]> RawFile::Read(std::size_t bytes) {
  std::unique_ptr<unsigned char[]> block(new (std::nothrow) unsigned char[bytes]);
  if (block) Read(block.get(), bytes);
  return block;
}

PlaneFile::PlaneFile(const CString& path) {
  if (RawFile file(path); file) bytes_ = file.Read(10 + 3 * Plane::kBytes);
}

}  // namespace tintwerk

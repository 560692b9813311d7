#include "maps/map_image.h"

#include <cstring>
#include <new>

#include "maps/material.h"

namespace tintwerk {

bool ReadMap(const CString& path, MapExtent extent, int rows, unsigned char* table) {
  const auto map = OpenPicture(path);
  const bool own = extent == MapExtent::kOwnSize;
  const BitmapLock lock(
      map.get(),
      own ? Gdiplus::Rect{0, 0, map->GetWidth(), map->GetHeight()} : Gdiplus::Rect{0, 0, 256, rows},
      Gdiplus::ImageLockModeRead);
  if (map->GetLastStatus() == Gdiplus::OutOfMemory) throw std::bad_alloc();
  if (!lock.Pixels() || lock.Width() != 256 || lock.Height() < rows) return false;
  std::memcpy(table, lock.Pixels(), kMapRow * rows);
  return true;
}

}  // namespace tintwerk

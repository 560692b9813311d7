#include "maps/map_image.h"

#include <cstring>

#include "frame/material.h"

namespace tintwerk {

bool ReadMap(const CString& path, MapExtent extent, int rows, unsigned char* table) {
  Gdiplus::Bitmap map(path.Wide().c_str());
  const bool own = extent == MapExtent::kOwnSize;
  const BitmapLock lock(
      &map,
      own ? Gdiplus::Rect{0, 0, map.GetWidth(), map.GetHeight()} : Gdiplus::Rect{0, 0, 256, rows},
      Gdiplus::ImageLockModeRead);
  if (!lock.Pixels() || lock.Width() != 256 || lock.Height() < rows) return false;
  std::memcpy(table, lock.Pixels(), kMapRow * rows);
  return true;
}

}  // namespace tintwerk

#include "looks/files.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <string>

#include "frame/parallel.h"
#include "frame/path.h"

namespace tintwerk {

const PlaneFile& Files::Planes(const wchar_t* name) {
  PlaneFile& planes = planes_.emplace_back();
  Ask(name, [&planes](const CString& path) { return planes.Open(path); });
  return planes;
}

const unsigned char* Files::Raw(const wchar_t* name, std::size_t bytes) {
  unsigned char* const block = tables_.emplace_back(RequirePixels(bytes)).get();
  Ask(name, [=](const CString& path) {
    RawFile file(path);
    if (file) file.Read(block, bytes);
    return bool(file);
  });
  return block;
}

const Material& Files::Picture(const wchar_t* name, Turn turn) {
  return Lay(name, [&call = call_, turn](const CString& path, Material& material) {
    auto picture = OpenPicture(path);
    if (call.width > call.height && picture->RotateFlip(turn) == Gdiplus::OutOfMemory)
      throw std::bad_alloc();
    material.LayBicubic(std::move(picture), call.width, call.height);
    return true;
  });
}

const Material& Files::RequiredPicture(const wchar_t* name) {
  return Lay(name, [&call = call_](const CString& path, Material& material) {
    auto picture = OpenPicture(path);
    if (picture->GetWidth() == 0) return false;
    material.LayBicubic(std::move(picture), call.width, call.height);
    return true;
  });
}

const Material& Files::FittedPicture(const wchar_t* name) {
  return Lay(name, [&call = call_](const CString& path, Material& material) {
    material.LayFitted(OpenPicture(path), call.width, call.height);
    return true;
  });
}

const Material& Files::Texture(const wchar_t* name) {
  return Lay(name, [&call = call_](const CString& path, Material& material) {
    auto picture = OpenPicture(path);
    if (picture->GetWidth() == 0) return false;
    material.LayBilinear(std::move(picture), call.width, call.height);
    return true;
  });
}

bool Files::Open() {
  std::vector<CString> paths;
  for (const auto& [name, open] : asked_)
    paths.push_back(FormatPath(std::wstring(L"%s\\Effects\\") + name, call_.root));
  std::vector<char> read(asked_.size());
  std::atomic<bool> exhausted = false;
  ParallelTasks(std::ssize(asked_), [&](std::int64_t i) {
    try {
      read[i] = asked_[i].second(paths[i]);
    } catch (const std::bad_alloc&) {
      exhausted = true;
    }
  });
  if (exhausted) throw std::bad_alloc();
  return std::all_of(read.begin(), read.end(), [](char done) { return done != 0; });
}

}  // namespace tintwerk

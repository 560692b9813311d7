#include "looks/files.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <string>
#include <utility>

#include "frame/parallel.h"
#include "frame/path.h"
#include "looks/recipe.h"

namespace tintwerk {

const OpenedFile* FileStore::Find(const Key& key) const {
  for (const auto& [have, file] : files_)
    if (have == key) return &file;
  return nullptr;
}

OpenedFile* FileStore::Add(const Key& key) {
  if (closed_) return nullptr;
  auto& [have, file] = files_.emplace_back();
  have = key;
  return &file;
}

bool FileStore::IsComplete() const {
  return std::none_of(files_.begin(), files_.end(),
                      [](const auto& entry) { return entry.second.absent; });
}

const OpenedFile& Files::Ask(const wchar_t* name, Use use, std::size_t detail, Opening open,
                             std::size_t tableBytes) {
  const FileStore::Key key(name, use, detail);
  if (call_.store)
    if (const OpenedFile* const kept = call_.store->Find(key)) {
      keptServe_ &= kept->serves;
      return *kept;
    }
  OpenedFile* file = call_.store ? call_.store->Add(key) : nullptr;
  if (!file) file = &own_.emplace_back();
  if (tableBytes > 0) file->table = RequirePixels(tableBytes);
  asked_.push_back({name, file, std::move(open)});
  return *file;
}

const unsigned char* Files::Map(const wchar_t* name, MapExtent extent, int rows) {
  const bool fixed = extent == MapExtent::kFixedRect;
  const auto read = [=](const CString& path, OpenedFile& file) {
    return ReadMap(path, extent, rows, file.table.get());
  };
  return Ask(name, kMap, 2 * rows + fixed, read, kMapRow * rows).table.get();
}

const unsigned char* Files::Raw(const wchar_t* name, std::size_t bytes) {
  // What is kept may lie where nobody writes: a store's files are only read.
  const char* const mode = call_.store ? "rb" : "rb+";
  const auto read = [=](const CString& path, OpenedFile& opened) {
    RawFile file(path, mode);
    if (file) file.Read(opened.table.get(), bytes);
    return bool(file);
  };
  return Ask(name, kRaw, bytes, read, bytes).table.get();
}

const ColourCube& Files::Cube(const wchar_t* name, CubeKind kind) {
  const auto read = [=](const CString& path, OpenedFile& file) {
    return file.cube.Open(path, kind);
  };
  return Ask(name, kCube, static_cast<std::size_t>(kind), read).cube;
}

/// @param lay lay(picture, material) gives whether the picture serves
template <class Lay>
const Material& Files::LayPicture(const wchar_t* name, Use use, std::size_t detail,
                                  const Lay& lay) {
  const auto read = [=](const CString& path, OpenedFile& file) {
    auto picture = OpenPicture(path);
    file.absent = picture->GetWidth() == 0;
    return lay(std::move(picture), file.picture);
  };
  return Ask(name, use, detail, read).picture;
}

const Material& Files::Picture(const wchar_t* name, Turn turn) {
  return LayPicture(name, kPicture, turn, [&call = call_, turn](auto picture, Material& material) {
    if (call.width > call.height && picture->RotateFlip(turn) == Gdiplus::OutOfMemory)
      throw std::bad_alloc();
    material.LayBicubic(std::move(picture), call.width, call.height);
    return true;
  });
}

const Material& Files::RequiredPicture(const wchar_t* name) {
  return LayPicture(name, kRequiredPicture, 0, [&call = call_](auto picture, Material& material) {
    if (picture->GetWidth() == 0) return false;
    material.LayBicubic(std::move(picture), call.width, call.height);
    return true;
  });
}

const Material& Files::FittedPicture(const wchar_t* name) {
  return LayPicture(name, kFittedPicture, 0, [&call = call_](auto picture, Material& material) {
    material.LayFitted(std::move(picture), call.width, call.height);
    return true;
  });
}

const Material& Files::Texture(const wchar_t* name) {
  return LayPicture(name, kTexture, 0, [&call = call_](auto picture, Material& material) {
    if (picture->GetWidth() == 0) return false;
    material.LayBilinear(std::move(picture), call.width, call.height);
    return true;
  });
}

const Material& Files::UnscaledPicture(const wchar_t* name) {
  return LayPicture(name, kUnscaled, 0, [](auto picture, Material& material) {
    material.Hold(std::move(picture));
    return true;
  });
}

bool Files::Open() {
  std::vector<CString> paths;
  for (const Asked& asked : asked_)
    paths.push_back(FormatPath(std::wstring(L"%s\\Effects\\") + asked.name, call_.root));
  std::atomic<bool> exhausted = false;
  ParallelTasks(std::ssize(asked_), [&](std::int64_t i) {
    OpenedFile& file = *asked_[i].file;
    try {
      file.serves = asked_[i].open(paths[i], file);
      file.absent |= !file.serves;
    } catch (const std::bad_alloc&) {
      exhausted = true;
    }
  });
  if (exhausted) throw std::bad_alloc();
  if (call_.store && call_.store->KeepsPicturesWhole())
    for (const Asked& asked : asked_)
      if (asked.file->picture.HasLayer()) KeepWhole(asked.file->picture);
  return keptServe_ && std::all_of(asked_.begin(), asked_.end(),
                                   [](const Asked& asked) { return asked.file->serves; });
}

void Files::KeepWhole(Material& picture) const {
  PixelMemory pixels = AllocatePixels(std::size_t{4} * call_.Count());
  if (!pixels) return;  // then it goes on being scaled a band at a time
  EachRun(
      Over(call_, pixels),
      [](unsigned char* to, std::int64_t count, const unsigned char* from) {
        std::copy_n(from, 4 * count, to);
      },
      picture);
  picture.LayPixels(std::move(pixels), call_.width);
}

}  // namespace tintwerk

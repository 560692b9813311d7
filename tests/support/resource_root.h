// A resource root of random files, and pictures to and from the image service.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "frame/material.h"
#include "support/image_files.h"
#include "tintwerk/effect.h"
#include "tintwerk/progress.h"

namespace tintwerk::test {

using BitmapPtr = std::unique_ptr<Gdiplus::Bitmap>;

inline BitmapPtr BitmapOf(const Picture& picture) {
  auto bitmap = std::make_unique<Gdiplus::Bitmap>(picture.width, picture.height);
  const BitmapLock lock(bitmap.get(), Gdiplus::ImageLockModeWrite);
  std::copy(picture.bytes.begin(), picture.bytes.end(), lock.Pixels());
  return bitmap;
}

inline Picture PictureOf(Gdiplus::Bitmap* bitmap) {
  const BitmapLock lock(bitmap);
  const int w = lock.Width(), h = lock.Height();
  return {w, h, Bytes(lock.Pixels(), lock.Pixels() + std::size_t{4} * w * h)};
}

/// Makes its files when they are first asked for, so a twin that runs before its look lays them
/// out.
class ResourceRoot {
 public:
  const Bytes& Raw(const std::string& name, std::size_t size = 230400) {
    if (!raw_.contains(name)) Put(name, RandomBytes(size, ++seed_));
    return raw_[name];
  }
  const Picture& Shown(const std::string& name, int width = 21, int height = 30) {
    if (!pictures_.contains(name)) Put(name, RandomPicture(width, height, ++seed_));
    return pictures_[name];
  }
  void Put(const std::string& name, const Bytes& raw) {
    folder_.Write("Effects/" + name, raw);
    raw_[name] = raw;
  }
  void Put(const std::string& name, const Picture& picture) {
    folder_.Write("Effects/" + name, EncodePng(picture));
    pictures_[name] = picture;
  }
  /// Takes a file away; as a picture it has no pixels then.
  void Remove(const std::string& name) {
    std::filesystem::remove(folder_.Path() / "Effects" / name);
    pictures_[name] = {};
  }

  const std::map<std::string, Bytes>& RawFiles() const { return raw_; }
  const std::map<std::string, Picture>& Pictures() const { return pictures_; }
  void* Path() { return path_.data(); }
  int Run(EffectEntry* look, Picture& image, CObjProgress* progress = nullptr, int low = 7,
          int high = 93) {
    return look(image.bytes.data(), image.width, image.height, Path(), progress, low, high);
  }

 private:
  TemporaryFolder folder_;
  std::wstring path_ = folder_.Path().wstring();
  std::map<std::string, Bytes> raw_;
  std::map<std::string, Picture> pictures_;
  unsigned seed_ = 0;
};

}  // namespace tintwerk::test

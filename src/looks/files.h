// What a look is called with, and the support files that it names.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string_view>
#include <tuple>
#include <vector>

#include "frame/image.h"
#include "frame/progress.h"
#include "lookup/colour_cube.h"
#include "maps/map_image.h"
#include "maps/material.h"
#include "maps/plane_file.h"

namespace tintwerk {

class FileStore;

/// What a host hands to a look.
struct Call {
  unsigned char* pixels;
  int width, height;
  void* root;
  CObjProgress* progress;
  int low, high;
  /// Where opened files go and come from; null for a call that keeps none.
  FileStore* store = nullptr;

  bool IsWorkable() const { return tintwerk::IsWorkable(pixels, width, height); }
  int Count() const { return *PixelCount(width, height); }
  void Report(float position) const { tintwerk::Report(progress, position); }
  bool GoesOn() const { return KeepGoing(progress); }
};

/// A file as a look uses it: one of the three.
struct OpenedFile {
  PixelMemory table;
  ColourCube cube;
  Material picture;

  bool serves = false;  ///< the look can do with what there is
  bool absent = false;  ///< it is missing or unreadable, also if the look does without it
};

/// The support files of one look at one size and root. Calls that name the store put what they open
/// there, until it is closed; from then on they only read it, from any thread.
class FileStore {
 public:
  /// A file's name, and how it is opened.
  using Key = std::tuple<std::wstring_view, int, std::size_t>;

  /// @param whole pictures are scaled once and kept so; otherwise they are scaled as they are read,
  ///        a band at a time
  explicit FileStore(bool whole) : whole_(whole) {}

  bool KeepsPicturesWhole() const { return whole_; }
  /// Null if there is none.
  const OpenedFile* Find(const Key& key) const;
  /// A place for a file; null in a store that is closed. @throw std::bad_alloc
  OpenedFile* Add(const Key& key);
  void Close() { closed_ = true; }
  /// Whether every file was there.
  bool IsComplete() const;

 private:
  std::deque<std::pair<Key, OpenedFile>> files_;  // a handful
  bool whole_;
  bool closed_ = false;
};

/// The support files of a look, by their paths below `Effects`. Each is asked for first, which gives
/// the view or the layer that it will fill; the first test of the object then opens them all, side
/// by side. What the call's store has is taken from there.
class Files {
 public:
  explicit Files(const Call& call) : call_(call) {}
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  StripMap Strip(const wchar_t* name, MapExtent extent = MapExtent::kOwnSize) {
    return StripMap(Map(name, extent, StripMap::kRows));
  }
  TriStripMap ThreeStrips(const wchar_t* name, MapExtent extent = MapExtent::kOwnSize) {
    return TriStripMap(Map(name, extent, TriStripMap::kRows));
  }
  SquareMap Square(const wchar_t* name, MapExtent extent = MapExtent::kOwnSize) {
    return SquareMap(Map(name, extent, SquareMap::kRows));
  }
  /// A square of which one plane serves every channel.
  SquarePlane Square(const wchar_t* name, MapPlane plane, MapExtent extent = MapExtent::kOwnSize) {
    return Square(name, extent).Only(plane);
  }
  PlaneFile Planes(const wchar_t* name) { return PlaneFile(Raw(name, PlaneFile::kBytes)); }
  /// The first bytes of a file without a format; what it lacks is 0.
  const unsigned char* Raw(const wchar_t* name, std::size_t bytes);
  const ColourCube& Cube(const wchar_t* name, CubeKind kind);

  /// A picture over the image; one that is missing is all zero unless it is required.
  /// @param turn how it is turned if the image is landscape: pictures with an up and down are
  ///        stored upright
  const Material& Picture(const wchar_t* name, Turn turn = Turn::RotateNoneFlipNone);
  const Material& RequiredPicture(const wchar_t* name);
  /// A picture in the upper left corner, which keeps its proportions on a landscape image.
  const Material& FittedPicture(const wchar_t* name);
  /// A picture over the image by plain bilinear scaling, of which alpha does not count.
  const Material& Texture(const wchar_t* name);
  /// A picture as it is, without a layer; one that is missing has no pixels.
  const Material& UnscaledPicture(const wchar_t* name);

  /// Whether all of them could be read.
  explicit operator bool() {
    if (!opened_) opened_ = Open();
    return *opened_;
  }

 private:
  enum Use { kMap, kRaw, kCube, kPicture, kRequiredPicture, kFittedPicture, kTexture, kUnscaled };
  using Opening = std::function<bool(const CString& path, OpenedFile& file)>;
  struct Asked {
    const wchar_t* name;
    OpenedFile* file;
    Opening open;
  };

  const unsigned char* Map(const wchar_t* name, MapExtent extent, int rows);
  /// A file that was opened before, or will be.
  /// @param detail tells ways of opening apart that are of one use
  /// @param tableBytes of the file's table, which is there before the file is opened
  const OpenedFile& Ask(const wchar_t* name, Use use, std::size_t detail, Opening open,
                        std::size_t tableBytes = 0);
  template <class Lay>
  const Material& LayPicture(const wchar_t* name, Use use, std::size_t detail, const Lay& lay);
  bool Open();
  void KeepWhole(Material& picture) const;

  const Call& call_;
  std::deque<OpenedFile> own_;
  std::vector<Asked> asked_;
  bool keptServe_ = true;
  std::optional<bool> opened_;
};

}  // namespace tintwerk

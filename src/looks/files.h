// What a look is called with, and the support files that it names.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "frame/image.h"
#include "frame/progress.h"
#include "maps/map_image.h"
#include "maps/material.h"
#include "maps/plane_file.h"

namespace tintwerk {

/// What a host hands to a look.
struct Call {
  unsigned char* pixels;
  int width, height;
  void* root;
  CObjProgress* progress;
  int low, high;

  bool IsWorkable() const { return tintwerk::IsWorkable(pixels, width, height); }
  int Count() const { return *PixelCount(width, height); }
  void Report(float position) const { tintwerk::Report(progress, position); }
  bool GoesOn() const { return KeepGoing(progress); }
};

/// The support files of a look, by their paths below `Effects`. Each is asked for first, which gives
/// the view or the layer that it will fill; the first test of the object then opens them all, side
/// by side.
class Files {
 public:
  explicit Files(const Call& call) : call_(call) {}
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  StripMap Strip(const wchar_t* name, MapExtent extent = MapExtent::kOwnSize) {
    return Map<StripMap>(name, extent);
  }
  TriStripMap ThreeStrips(const wchar_t* name, MapExtent extent = MapExtent::kOwnSize) {
    return Map<TriStripMap>(name, extent);
  }
  SquareMap Square(const wchar_t* name, MapExtent extent = MapExtent::kOwnSize) {
    return Map<SquareMap>(name, extent);
  }
  /// A square of which one plane serves every channel.
  SquarePlane Square(const wchar_t* name, MapPlane plane, MapExtent extent = MapExtent::kOwnSize) {
    return Square(name, extent).Only(plane);
  }
  const PlaneFile& Planes(const wchar_t* name);
  /// The first bytes of a file without a format; what it lacks is 0.
  const unsigned char* Raw(const wchar_t* name, std::size_t bytes);

  /// A picture over the image; one that is missing is all zero unless it is required.
  /// @param turn how it is turned if the image is landscape: pictures with an up and down are
  ///        stored upright
  const Material& Picture(const wchar_t* name, Turn turn = Turn::RotateNoneFlipNone);
  const Material& RequiredPicture(const wchar_t* name);
  /// A picture in the upper left corner, which keeps its proportions on a landscape image.
  const Material& FittedPicture(const wchar_t* name);
  /// A picture over the image by plain bilinear scaling, of which alpha does not count.
  const Material& Texture(const wchar_t* name);

  /// Whether all of them could be read.
  explicit operator bool() {
    if (!opened_) opened_ = Open();
    return *opened_;
  }

 private:
  template <class View>
  View Map(const wchar_t* name, MapExtent extent) {
    unsigned char* const table = tables_.emplace_back(RequirePixels(kMapRow * View::kRows)).get();
    Ask(name, [=](const CString& path) { return ReadMap(path, extent, View::kRows, table); });
    return View(table);
  }
  template <class Read>
  const Material& Lay(const wchar_t* name, const Read& read) {
    Material& material = materials_.emplace_back();
    Ask(name, [&material, read](const CString& path) { return read(path, material); });
    return material;
  }
  void Ask(const wchar_t* name, std::function<bool(const CString&)> open) {
    asked_.emplace_back(name, std::move(open));
  }
  bool Open();

  const Call& call_;
  std::vector<std::pair<const wchar_t*, std::function<bool(const CString&)>>> asked_;
  std::vector<PixelMemory> tables_;
  std::deque<Material> materials_;
  std::deque<PlaneFile> planes_;
  std::optional<bool> opened_;
};

}  // namespace tintwerk

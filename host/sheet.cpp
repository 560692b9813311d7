// tintwerk sheet: one picture that shows every look on a photo.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "each_look.h"
#include "stop.h"

namespace {

constexpr int kGap = 6, kLabel = 24, kHeading = 44;  // pixels
constexpr int kLabelText = 2, kHeadingText = 10;     // the text's top in them
// Looks work on a copy of this size, as in the gallery: on the tiles themselves strokes were coarse.
constexpr int kCopySide = 1200;

// Copies a picture onto another one; its transparent parts show what lies there.
void Paste(Picture& sheet, const Picture& picture, int left, int top) {
  for (int y = 0; y < picture.height; ++y) {
    const unsigned char* from = picture.pixels.get() + std::size_t{4} * y * picture.width;
    unsigned char* to = &sheet.pixels[4 * (std::size_t(top + y) * sheet.width + left)];
    for (int x = 0; x < picture.width; ++x, from += 4, to += 4)
      for (int c = 0; c < 3; ++c)
        to[c] =
            static_cast<unsigned char>((from[c] * from[3] + to[c] * (255 - from[3]) + 127) / 255);
  }
}

// A line of dark text on a clear ground, cut off behind `width`. `top` is where its first row lies
// below the top of all lines in that font, so that lines side by side stand level.
Picture Line(std::string_view text, const std::string& font, int width, int& top) {
  std::string escaped;  // the text may hold what markup begins with
  for (const char c : text)
    c == '&' ? escaped += "&amp;" : c == '<' ? escaped += "&lt;" : escaped += c;
  const vips::VImage mask = vips::VImage::text(
      escaped.c_str(), vips::VImage::option()->set("font", font.c_str())->set("dpi", 96));
  top = mask.yoffset();
  Picture line = NewPicture(std::min(mask.width(), width), mask.height());
  std::size_t size = 0;
  const Picture::Pixels ink(
      static_cast<unsigned char*>(mask.crop(0, 0, line.width, line.height).write_to_memory(&size)));
  for (std::size_t i = 0; i < size; ++i) {
    const unsigned char pixel[] = {34, 34, 34, ink[i]};
    std::memcpy(&line.pixels[4 * i], pixel, 4);
  }
  return line;
}

// Where the pictures of a sheet stand: rows of tiles, those of a category below its title.
class Layout {
 public:
  Layout(const Picture& tile, int columns) : tile_(tile), columns_(columns) {}

  void BeginCategory() {
    top_ = Bottom() + kHeading;
    count_ = 0;
  }
  // The place of the next tile.
  std::pair<int, int> Next() {
    const int index = count_++;
    return {kGap + index % columns_ * (tile_.width + kGap), top_ + index / columns_ * Pitch()};
  }
  int Top() const { return top_; }
  int Bottom() const { return top_ + (count_ + columns_ - 1) / columns_ * Pitch(); }
  int Width() const { return kGap + columns_ * (tile_.width + kGap); }

 private:
  int Pitch() const { return tile_.height + kLabel + kGap; }

  const Picture& tile_;
  int columns_, top_ = kGap, count_ = 0;
};

struct Label {
  std::string_view text;
  int left, top;
  bool isHeading;
};

}  // namespace

int Sheet(const SheetOptions& options) {
  const Category* const only = FindCategory(options.category);
  if (!only && !options.category.empty()) throw Refusal(UnknownCategory(options.category));
  RefuseUnwritable(options.output);
  RefuseToReplace(options.input, options.output);
  const std::vector<const Look*> looks = LooksByCategory(only);
  const Picture copy = LoadCopy(options.input, std::max(kCopySide, options.tile));
  const auto shrink = [&](const Picture& picture) {
    return Shrunk(picture, options.tile, options.tile);
  };
  const Picture original = shrink(copy);

  // Each category begins with the photo as it is.
  Layout layout(original, options.columns);
  std::vector<Label> labels;
  std::vector<std::pair<int, int>> originals;
  std::map<const Look*, std::pair<int, int>> places;
  std::string_view category;
  for (const Look* look : looks) {
    if (look->category != category) {
      if (!only) {
        layout.BeginCategory();
        labels.push_back(
            {FindCategory(look->category)->title, kGap, layout.Top() - kHeading, true});
      }
      originals.push_back(layout.Next());
      labels.push_back(
          {"the picture itself", originals.back().first, originals.back().second, false});
      category = look->category;
    }
    const auto place = places[look] = layout.Next();
    labels.push_back({look->title, place.first, place.second, false});
  }

  Picture sheet = NewPicture(layout.Width(), layout.Bottom());
  std::memset(sheet.pixels.get(), 255, sheet.PageBytes());
  for (const auto& [left, top] : originals) Paste(sheet, original, left, top);
  for (const Label& label : labels) {
    int top = 0;
    const Picture line = Line(label.text, label.isHeading ? "sans bold 15" : "sans 9",
                              label.isHeading ? sheet.width - 2 * kGap : original.width, top);
    if (label.isHeading)
      Paste(sheet, line, label.left, label.top + kHeadingText + top);
    else
      Paste(sheet, line, label.left + (original.width - line.width) / 2,
            label.top + original.height + kLabelText + top);
  }
  const std::size_t done = GiveEachLook(
      copy, looks, {.title = "Sheet", .resources = options.resources, .jobs = options.jobs},
      [&](const Look& look, const Picture& result) {
        const auto& [left, top] = places.at(&look);
        Paste(sheet, shrink(result), left, top);
      });
  if (StopSignal()) return kFailed;
  try {
    SavePicture(sheet, options.output, options.save);
  } catch (const std::exception& error) {
    throw std::runtime_error("cannot write " + Quoted(options.output) + ": " + WordsOf(error));
  }
  return done == looks.size() ? kDone : kFailed;
}

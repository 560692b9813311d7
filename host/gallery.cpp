// tintwerk gallery: a page for the browser that shows every look on a photo.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <mutex>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "each_look.h"
#include "page.h"
#include "stop.h"
#include "temporary_file.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr int kSmallSide = 400;  // pixels of the overview's pictures: a phone's column, sharp

void WriteText(const fs::path& path, std::string_view text) {
  WriteWhole(path, {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
}

// As text of a script in a page, where a "<" could begin the script's end.
std::string ScriptText(const Json& json) {
  const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  std::string safe;
  for (const char c : text) c == '<' ? safe += "\\u003c" : safe += c;
  return safe;
}

Json CategoriesOf(const std::vector<const Look*>& looks) {
  Json categories = Json::array();
  for (const Look* look : looks) {
    if (categories.empty() || categories.back()["id"] != look->category)
      categories.push_back({{"id", look->category},
                            {"title", FindCategory(look->category)->title},
                            {"looks", Json::array()}});
    categories.back()["looks"].push_back({{"name", look->name},
                                          {"slug", Slug(look->title)},
                                          {"title", look->title},
                                          {"description", look->description}});
  }
  return categories;
}

std::string Page(const GalleryOptions& options, const Picture& copy,
                 const std::vector<const Look*>& looks) {
  const fs::path extension = options.input.extension();
  fs::path stem = options.input;
  stem.replace_extension();
  const Json data{{"photo", options.input.filename().string()},
                  {"input", options.input.string()},
                  {"stem", stem.string()},
                  {"extension", IsWritable(options.input) ? extension.string() : ".jpg"},
                  {"width", copy.width},
                  {"height", copy.height},
                  {"categories", CategoriesOf(looks)}};
  std::string page = kGalleryPage;
  constexpr std::string_view kPlace = R"(id="data">{})";
  const std::size_t place = page.find(kPlace);
  if (place == std::string::npos) throw std::logic_error("the page has no place for its data");
  return page.replace(place + kPlace.size() - 2, 2, ScriptText(data));
}

// The page asks for this file again and again while the command works.
class Progress {
 public:
  explicit Progress(fs::path file) : file_(std::move(file)) { Write(true); }
  void Painted(const std::string& slug) {
    const std::scoped_lock lock(mutex_);
    painted_.push_back(slug);
    Write(true);
  }
  void End() { Write(false); }

 private:
  void Write(bool isRunning) {
    const Json state{{"running", isRunning}, {"painted", painted_}};
    WriteText(file_, "galleryProgress(" + state.dump() + ");\n");
  }

  fs::path file_;
  std::mutex mutex_;
  Json painted_ = Json::array();
};

// Only a page that was made by this command is replaced.
void RefuseForeignPage(const fs::path& page) {
  RefuseToReplace({}, page);
  std::ifstream file(page);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!text.empty() && text.find(R"(content="tintwerk gallery")") == std::string::npos)
    throw Refusal(Quoted(page) + " is another page; a gallery needs a folder of its own");
}

}  // namespace

int Gallery(const GalleryOptions& options) {
  const std::vector<const Look*> looks = LooksByCategory();
  const Picture copy = LoadCopy(options.input, options.size);
  const fs::path page = options.output / "index.html", large = options.output / "large",
                 small = options.output / "small";
  if (fs::exists(options.output) && !fs::is_directory(options.output))
    throw Refusal("a gallery needs a folder, and " + Quoted(options.output) + " is a file");
  RefuseForeignPage(page);
  const auto save = [&](const std::string& slug, const Picture& picture) {
    const std::string name = slug + ".jpg";
    RefuseToReplace(options.input, large / name);
    SavePicture(picture, large / name, {.quality = options.quality});
    SavePicture(Shrunk(picture, kSmallSide, kSmallSide), small / name,
                {.quality = std::max(options.quality - 7, 1)});
  };
  for (const fs::path& folder : {options.output, large, small}) {
    fs::create_directories(folder);
    RemoveLeftovers(folder);
  }
  save("before", copy);
  Progress progress(options.output / "progress.js");
  WriteText(page, Page(options, copy, looks));

  const std::size_t done = GiveEachLook(
      copy, looks, {.title = "Gallery", .resources = options.resources, .jobs = options.jobs},
      [&](const Look& look, const Picture& result) {
        save(Slug(look.title), result);
        progress.Painted(Slug(look.title));
      });
  progress.End();
  if (done < looks.size())
    std::fprintf(stderr, "tintwerk: %s%zu of %zu looks not painted\n",
                 StopSignal() ? "stopped; " : "", looks.size() - done, looks.size());
  return done == looks.size() ? kDone : kFailed;
}

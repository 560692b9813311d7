// tintwerk apply: gives pictures looks.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "commands.h"
#include "cube.h"
#include "looks.h"
#include "resources.h"
#include "stop.h"

namespace {

namespace fs = std::filesystem;
using Area = _ZV_2D_RECT;

// A cube that cannot be taken is found before anything is begun.
Cube CubeToApply(const fs::path& path) {
  try {
    return ReadCube(path);
  } catch (const std::exception& error) {
    throw Refusal(error.what());
  }
}

// Leaves of a picture the pixels of an area.
void Crop(Picture& picture, const Area& area) {
  if (area.x > picture.width - area.width || area.y > picture.height - area.height)
    throw std::runtime_error("the part to write leaves the picture, which has " +
                             std::to_string(picture.width) + " x " +
                             std::to_string(picture.height) + " pixels");
  const std::size_t from = std::size_t{4} * picture.width, to = std::size_t{4} * area.width;
  const unsigned char* const first = &picture.pixels[area.y * from + std::size_t{4} * area.x];
  for (int y = 0; y < area.height; ++y) std::memmove(&picture.pixels[y * to], first + y * from, to);
  picture.width = area.width;
  picture.height = area.height;
}

// Hands the positions of one of several looks on as its share of the whole.
class Share final : public CObjProgress {
 public:
  Share(CObjProgress& whole, std::size_t index, std::size_t count)
      : whole_(whole), index_(static_cast<float>(index)), count_(static_cast<float>(count)) {}
  void ReportPosition(float position) override {
    whole_.ReportPosition((100 * index_ + std::clamp(position, 0.0f, 100.0f)) / count_);
  }
  int KeepGoing() override { return whole_.KeepGoing(); }

 private:
  CObjProgress& whole_;
  float index_, count_;
};

// Mixes what a picture was into what it became.
void Weaken(Picture& result, const std::vector<unsigned char>& before, double strength) {
  const double share = strength / 100;
  if (result.depth == 8) {
    std::vector<unsigned char> full(result.pixels.get(), result.pixels.get() + result.PageBytes());
    std::ranges::copy(before, result.pixels.get());
    CEffect::Effect_AlphaAdJust(result.pixels.get(), full.data(), result.width, result.height,
                                share);
    return;
  }
  auto* const samples = reinterpret_cast<std::uint16_t*>(result.pixels.get());
  const auto* const old = reinterpret_cast<const std::uint16_t*>(before.data());
  for (std::size_t i = 0; i < before.size() / 2; ++i)
    samples[i] = static_cast<std::uint16_t>(samples[i] * share + old[i] * (1 - share) + 0.5);
}

// What is done to a page, which may hold a part of a picture; the size is that of the whole.
using Change = std::function<void(Picture& page, int width, int height, CObjProgress& progress)>;

// The change of pages that are cut to a part before and weakened after.
Work WorkOf(const Change& change, const std::string& name, const ApplyOptions& options) {
  const auto run = [change, &options](Picture& page, CObjProgress& progress) {
    const int width = page.width, height = page.height;
    if (options.crop) Crop(page, *options.crop);
    if (options.strength == 100) return change(page, width, height, progress);
    const std::vector<unsigned char> before(page.pixels.get(),
                                            page.pixels.get() + page.PageBytes());
    change(page, width, height, progress);
    Weaken(page, before, options.strength);
  };
  return {.name = name, .run = run};
}

Change ChangeOf(const std::vector<const Look*>& looks, const ApplyOptions& options) {
  const fs::path resources = FindResources(options.resources, looks);
  return [looks, root = resources.wstring(), why = WhyLooksFail(resources), area = options.crop](
             Picture& page, int width, int height, CObjProgress& progress) mutable {
    for (std::size_t i = 0; i < looks.size() && !StopSignal(); ++i) {
      Share share(progress, i, looks.size());
      if (!Give(*looks[i], page.pixels.get(), width, height, root, area ? &*area : nullptr, &share))
        throw std::runtime_error(std::string(looks[i]->name) + " failed; " + why);
    }
  };
}

}  // namespace

int Apply(const ApplyOptions& options) {
  if (!options.cube.empty()) {
    if (options.crop) throw Refusal(CropLooks());
    RunOptions deep = options;
    deep.load.deep = true;
    const auto between = options.trilinear ? Interpolation::Trilinear : Interpolation::Tetrahedral;
    const auto change = [cube = CubeToApply(options.cube), between](Picture& page, int, int,
                                                                    CObjProgress&) {
      ApplyCube(cube, page, between);
    };
    Work work = WorkOf(change, options.cube.filename(), options);
    work.kept = {options.cube};
    return RunWork(deep, work);
  }
  std::vector<const Look*> looks;
  for (const std::string& name : options.looks) {
    looks.push_back(FindLook(name));
    if (!looks.back()) throw Refusal(UnknownLook(name));
  }
  if (options.crop && !(looks.size() == 1 && looks.front()->crop)) throw Refusal(CropLooks());
  return RunWork(options,
                 WorkOf(ChangeOf(looks, options), std::string(looks.front()->name), options));
}

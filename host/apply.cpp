// tintwerk apply: gives pictures a look.
#include <omp.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>
#include <vips/vips8>

#include "batch.h"
#include "commands.h"
#include "cube.h"
#include "looks.h"
#include "picture_io.h"
#include "progress_bar.h"
#include "resources.h"
#include "stop.h"
#include "temporary_file.h"
#include "tintwerk/trilinear.h"

namespace {

namespace fs = std::filesystem;

// A cube that cannot be taken is found before anything is begun.
Cube CubeToApply(const fs::path& path) {
  try {
    return ReadCube(path);
  } catch (const std::exception& error) {
    throw Refusal(error.what());
  }
}

using Area = _ZV_2D_RECT;

// What is done to the pixels of each picture. Those may be a part of it; the size is that of the
// whole.
struct Work {
  std::string name;
  std::string failure;  // what to think of if it fails
  std::function<bool(unsigned char* pixels, int width, int height, CObjProgress*)> run;
};

// A look that can be given to a part of a picture goes the same way for a whole one: its entry
// without an area may draw with other tables.
Work WorkOf(const Look& look, const fs::path& resources, std::optional<Area> crop) {
  return {std::string(look.name), WhyLooksFail(resources),
          [&look, crop, root = resources.wstring()](unsigned char* pixels, int width, int height,
                                                    CObjProgress* progress) mutable {
            if (!look.crop)
              return look.apply(pixels, width, height, root.data(), progress, 0, 100) != 0;
            return look.crop(pixels, width, height, root.data(), crop ? &*crop : nullptr, progress,
                             0, 100) != 0;
          }};
}

// The largest container, at the service of pictures for as long as the object lives.
Work WorkOf(const Cube& cube, const std::string& name) {
  const auto file = std::make_shared<ScratchFile>(PackContainer(cube, 64, 4));
  return {name, "its packed form is gone or memory ran out",
          [file](unsigned char* pixels, int width, int height, CObjProgress*) {
            return CTrilinear::Effect_VSCO_8x8(file->Path().wstring().c_str(), pixels, width,
                                               height);
          }};
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

// Moves the bar by the progress of one picture, and passes the request to stop on to the look.
class PictureProgress final : public CObjProgress {
 public:
  PictureProgress(ProgressBar& bar, std::atomic<double>& done, std::size_t pictures)
      : bar_(bar), done_(done), pictures_(pictures) {}

  // Looks may report any position, so it is held to the span, and the bar never runs back.
  void ReportPosition(float position) override { MoveTo(std::clamp(position / 100.0, 0.0, 1.0)); }
  int KeepGoing() override { return StopSignal() == 0; }

  void Finish() { MoveTo(1); }

 private:
  void MoveTo(double fraction) {
    if (!(fraction > fraction_)) return;
    const double step = fraction - fraction_;
    fraction_ = fraction;
    bar_.Show((done_.fetch_add(step) + step) / static_cast<double>(pictures_));
  }

  ProgressBar& bar_;
  std::atomic<double>& done_;
  std::size_t pictures_;
  double fraction_ = 0;
};

class Run {
 public:
  Run(const ApplyOptions& options, Work work, std::vector<Task> tasks)
      : options_(options), work_(std::move(work)), tasks_(std::move(tasks)), bar_(work_.name) {}

  // Returns how many pictures were not written.
  std::size_t operator()() {
    const int processors = std::max(1, omp_get_num_procs());
    int jobs = options_.jobs ? options_.jobs : std::min(processors, 4);
    jobs = std::clamp(jobs, 1, std::max(1, static_cast<int>(tasks_.size())));
    const int threads = options_.threads ? options_.threads : std::max(1, processors / jobs);
    vips_concurrency_set(threads);

    const auto work = [this, threads] {
      omp_set_num_threads(threads);  // holds for the loops that this thread forks
      for (std::size_t i; !StopSignal() && (i = next_++) < tasks_.size();) Process(tasks_[i]);
      vips_thread_shutdown();
    };
    std::vector<std::jthread> workers;
    for (int i = 1; i < jobs; ++i) workers.emplace_back(work);
    work();
    workers.clear();
    return tasks_.size() - written_;
  }

 private:
  void Process(const Task& task) {
    PictureProgress progress(bar_, done_, tasks_.size());
    const char* doing = "read";
    const fs::path* file = &task.input;
    try {
      Picture picture = LoadPicture(task.input);
      doing = "process";
      Apply(picture, progress);
      if (StopSignal()) return;
      doing = "write";
      file = &task.output;
      SavePicture(picture, task.output);
      ++written_;
    } catch (const std::bad_alloc&) {
      Report(doing, *file, "out of memory");
    } catch (const std::exception& error) {
      Report(doing, *file, error.what());
    }
    progress.Finish();
  }

  void Apply(Picture& picture, PictureProgress& progress) {
    const auto apply = [&, width = picture.width, height = picture.height](unsigned char* pixels) {
      if (!work_.run(pixels, width, height, &progress))
        throw std::runtime_error(work_.name + " failed; " + work_.failure);
    };
    if (options_.crop) Crop(picture, *options_.crop);
    if (options_.strength == 100) return apply(picture.pixels.get());
    std::vector<unsigned char> full(picture.pixels.get(), picture.pixels.get() + picture.Bytes());
    apply(full.data());
    CEffect::Effect_AlphaAdJust(picture.pixels.get(), full.data(), picture.width, picture.height,
                                options_.strength / 100);
  }

  // What a stop breaks off is not a failure of the picture.
  void Report(const char* doing, const fs::path& file, const std::string& reason) {
    if (StopSignal()) return;
    bar_.Print("tintwerk: cannot " + std::string(doing) + " '" + file.string() + "': " + reason);
  }

  const ApplyOptions& options_;
  const Work work_;
  std::vector<Task> tasks_;
  ProgressBar bar_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::size_t> written_ = 0;
  std::atomic<double> done_ = 0;  // pictures, with the fractions of those at work
};

}  // namespace

int Apply(const ApplyOptions& options) {
  const Look* look = FindLook(options.look);
  if (options.cube.empty() && !look) throw Refusal(UnknownLook(options.look));
  if (options.crop && !(look && look->crop)) throw Refusal(CropLooks());
  Work work = options.cube.empty() ? WorkOf(*look, FindResources(options.resources), options.crop)
                                   : WorkOf(CubeToApply(options.cube), options.cube.filename());
  std::vector<Task> tasks = PlanBatch(options.inputs, options.output, options.rules);
  for (const Task& task : tasks) RefuseToReplace(options.cube, task.output);
  const std::size_t count = tasks.size();
  const std::size_t missing = Run(options, std::move(work), std::move(tasks))();
  if (missing > 0 && (count > 1 || StopSignal()))
    std::fprintf(stderr, "tintwerk: %s%zu of %zu pictures not written\n",
                 StopSignal() ? "stopped; " : "", missing, count);
  return missing == 0 ? kDone : kFailed;
}

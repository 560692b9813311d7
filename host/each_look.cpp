#include "each_look.h"

#include <omp.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <thread>
#include <vector>
#include <vips/vips8>

#include "messages.h"
#include "resources.h"
#include "stop.h"
#include "stop_progress.h"

namespace {

// Asks whether to stop. Of many looks the bar counts those that are done.
class Quiet final : public CObjProgress {
 public:
  int KeepGoing() override { return StopSignal() == 0; }
};

}  // namespace

std::size_t GiveEachLook(const Picture& picture, std::span<const Look* const> looks,
                         const EachLookOptions& options,
                         const std::function<void(const Look&, Picture&)>& take) {
  const std::filesystem::path resources = FindResources(options.resources, looks);
  const int processors = std::max(1, omp_get_num_procs());
  const int jobs =
      std::clamp(options.jobs ? options.jobs : processors, 1, static_cast<int>(looks.size()));
  const int threads = std::max(1, processors / jobs);
  vips_concurrency_set(threads);

  ProgressBar bar(options.title);
  bar.Show(0);
  std::atomic<std::size_t> next = 0, done = 0;
  const auto work = [&] {
    omp_set_num_threads(threads);  // holds for the loops that this thread forks
    for (std::size_t i; !StopSignal() && (i = next++) < looks.size();) try {
        Picture result = NewPicture(picture.width, picture.height);
        std::memcpy(result.pixels.get(), picture.pixels.get(), picture.PageBytes());
        result.hasAlpha = picture.hasAlpha;
        Quiet progress;
        if (!Give(*looks[i], result.pixels.get(), result.width, result.height, resources.wstring(),
                  nullptr, &progress))
          throw std::runtime_error("it failed; " + WhyLooksFail(resources));
        if (StopSignal()) return;
        take(*looks[i], result);
        bar.Show(static_cast<double>(++done) / static_cast<double>(looks.size()));
      } catch (const std::exception& error) {
        if (!StopSignal())
          bar.Print("tintwerk: " + std::string(looks[i]->name) + ": " + WordsOf(error));
      }
    vips_thread_shutdown();
  };
  std::vector<std::jthread> workers;
  for (int i = 1; i < jobs; ++i) workers.emplace_back(work);
  work();
  workers.clear();
  return done;
}

Picture LoadCopy(const std::filesystem::path& path, int longest) try {
  Picture picture = LoadPicture(path, {.strip = Metadata::Strip::All});
  picture.pages = 1;
  return Shrunk(picture, longest, longest);
} catch (const std::exception& error) {
  throw Refusal("cannot read " + Quoted(path) + ": " + WordsOf(error));
}

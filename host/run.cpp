#include "run.h"

#include <fcntl.h>
#include <omp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <new>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vips/vips8>

#include "commands.h"
#include "progress_bar.h"
#include "stop.h"
#include "temporary_file.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Json = nlohmann::ordered_json;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// A line for scripts. Names of files that are no UTF-8 have replacements in it.
void PrintJson(const Json& line) {
  static std::mutex mutex;
  const std::scoped_lock lock(mutex);
  std::printf("%s\n", line.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
  std::fflush(stdout);
}

Json JsonOf(const Task& task, const char* status) {
  return {{"input", task.input.string()}, {"output", task.output.string()}, {"status", status}};
}

std::string Named(const fs::path& path, const char* standard) {
  return path == kStandard ? standard : Quoted(path);
}

// Moves the bar by the progress of one picture, and passes the request to stop on to the work.
class PictureProgress final : public CObjProgress {
 public:
  PictureProgress(ProgressBar& bar, std::atomic<double>& done, std::size_t pictures)
      : bar_(bar), done_(done), pictures_(pictures) {}

  // The work on page `page` of `pages` begins.
  void Begin(int page, int pages) {
    from_ = static_cast<double>(page) / pages;
    span_ = 1.0 / pages;
  }
  // Looks may report any position, so it is held to the span, and the bar never runs back.
  void ReportPosition(float position) override {
    MoveTo(from_ + span_ * std::clamp(position / 100.0, 0.0, 1.0));
  }
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
  double fraction_ = 0, from_ = 0, span_ = 1;
};

// A page of a picture on its own.
Picture PageOf(const Picture& picture, int page) {
  Picture one;
  one.width = picture.width;
  one.height = picture.height;
  one.depth = picture.depth;
  one.hasAlpha = picture.hasAlpha;
  one.pixels = AllocatePixels(picture.PageBytes());
  std::memcpy(one.pixels.get(), picture.Page(page), picture.PageBytes());
  return one;
}

// Works every page. Pages are alike in size, so their results are.
void WorkPages(const Work& work, Picture& picture, PictureProgress& progress) {
  if (picture.pages == 1) return work.run(picture, progress);
  const int pages = picture.pages;
  for (int page = 0; page < pages && !StopSignal(); ++page) {
    progress.Begin(page, pages);
    Picture one = PageOf(picture, page);
    work.run(one, progress);
    if (one.PageBytes() > picture.PageBytes()) throw std::logic_error("a page has grown");
    std::memmove(picture.pixels.get() + one.PageBytes() * page, one.pixels.get(), one.PageBytes());
    if (page + 1 < pages) continue;
    picture.width = one.width;
    picture.height = one.height;
  }
}

// The modification time of one file for another.
void KeepTime(const fs::path& from, const fs::path& to, const struct stat& status) {
  const timespec times[] = {{0, UTIME_OMIT}, status.st_mtim};
  if (utimensat(AT_FDCWD, to.c_str(), times, 0) != 0)
    throw std::runtime_error("cannot keep the time of " + Quoted(from));
}

class Run {
 public:
  Run(const RunOptions& options, const Work& work, std::vector<Task> tasks)
      : options_(options), work_(work), tasks_(std::move(tasks)), bar_(work_.name) {}

  struct Counts {
    std::size_t written, existed;
  };

  Counts operator()() {
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
    return {written_, existed_};
  }

 private:
  void Process(const Task& task) {
    const auto start = Clock::now();
    PictureProgress progress(bar_, done_, tasks_.size());
    // Another run may have written it since this one made its plan.
    std::error_code error;
    if (options_.rules.skipExisting && fs::exists(task.output, error)) {
      ++existed_;
      progress.Finish();
      if (options_.json) PrintJson(JsonOf(task, "existed"));
      return;
    }
    Json line = JsonOf(task, "written");
    std::string doing = "read " + Named(task.input, "standard input");
    try {
      struct stat status = {};
      const bool isFile = stat(task.input.c_str(), &status) == 0 && task.input != kStandard;
      Picture picture = LoadPicture(task.input, options_.load);
      TellLosses(picture, task, line);
      doing.replace(0, std::strlen("read"), "process");
      WorkPages(work_, picture, progress);
      if (StopSignal()) return;
      picture.metadata.Update(picture.width, picture.height);
      doing = "write " + Named(task.output, "standard output");
      if (task.output == kStandard)
        SendPicture(picture, options_.rules.format, options_.save);
      else
        SavePicture(picture, task.output, options_.save);
      if (options_.keepTimes && isFile && task.output != kStandard)
        KeepTime(task.input, task.output, status);
      line.update({{"width", picture.width},
                   {"height", picture.height},
                   {"pages", picture.pages},
                   {"seconds", SecondsSince(start)}});
      ++written_;
    } catch (const std::exception& error) {
      Report("cannot " + doing + ": " + WordsOf(error));
      line["status"] = "failed";
      line["reason"] = "cannot " + doing + ": " + WordsOf(error);
    }
    progress.Finish();
    if (options_.json && !(StopSignal() && line["status"] == "failed")) PrintJson(line);
  }

  // An original is not replaced by less; elsewhere a word is enough.
  void TellLosses(const Picture& picture, const Task& task, Json& line) {
    const std::vector<std::string> losses =
        LossesOf(picture, task.output == kStandard ? WithExtension("-", options_.rules.format)
                                                   : task.output);
    if (losses.empty()) return;
    line["losses"] = losses;
    if (options_.allowLoss) return;
    std::string lost;
    for (const std::string& loss : losses) lost += (lost.empty() ? "" : ", ") + loss;
    std::error_code error;
    if (fs::equivalent(task.input, task.output, error))
      throw std::runtime_error("the result would lose " + lost +
                               "; --allow-loss replaces the original all the same");
    Report(Named(task.output, "standard output") + " loses " + lost + " of " +
           Named(task.input, "standard input"));
  }

  // What a stop breaks off is not a failure of the picture.
  void Report(const std::string& line) {
    if (!StopSignal()) bar_.Print("tintwerk: " + line);
  }

  const RunOptions& options_;
  const Work& work_;
  std::vector<Task> tasks_;
  ProgressBar bar_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::size_t> written_ = 0, existed_ = 0;
  std::atomic<double> done_ = 0;  // pictures, with the fractions of those at work
};

}  // namespace

int RunWork(const RunOptions& options, const Work& work) {
  const auto start = Clock::now();
  Plan plan = PlanBatch(options.inputs, options.output, options.rules, work.kept);
  const bool isSent = !plan.tasks.empty() && plan.tasks.front().output == kStandard;
  if (isSent && options.json)
    throw Refusal("standard output takes the picture or --json, not both");
  if (isSent && isatty(STDOUT_FILENO) && !options.dryRun)
    throw Refusal("standard output is a terminal, which shows no pictures");
  if (options.json)
    for (const Task& task : plan.existing) PrintJson(JsonOf(task, "existed"));
  if (options.dryRun) {
    for (const Task& task : plan.tasks)
      if (options.json)
        PrintJson(JsonOf(task, "planned"));
      else
        std::printf("%s -> %s\n", Named(task.input, "standard input").c_str(),
                    Named(task.output, "standard output").c_str());
    return kDone;
  }
  std::set<fs::path> folders;
  for (const Task& task : plan.tasks)
    if (task.output != kStandard) folders.insert(task.output.parent_path());
  for (const fs::path& folder : folders) {
    if (!folder.empty()) fs::create_directories(folder);
    RemoveLeftovers(folder.empty() ? "." : folder);
  }
  for (const std::string& file : plan.skipped)
    std::fprintf(stderr, "tintwerk: skipped %s\n", file.c_str());

  const std::size_t count = plan.tasks.size();
  const Run::Counts counts = Run(options, work, std::move(plan.tasks))();
  const std::size_t missing = count - counts.written - counts.existed;
  const bool isWatched = isatty(STDERR_FILENO) && count + plan.existing.size() > 1;
  if (isWatched) {
    std::fprintf(stderr, "tintwerk: %zu written, %zu existed, %zu failed, %.1f s\n", counts.written,
                 plan.existing.size() + counts.existed, missing, SecondsSince(start));
  } else if (missing > 0 && (count > 1 || StopSignal())) {
    std::fprintf(stderr, "tintwerk: %s%zu of %zu pictures not written\n",
                 StopSignal() ? "stopped; " : "", missing, count);
  }
  if (!plan.skipped.empty())
    std::fprintf(stderr, "tintwerk: %zu file%s of folders skipped\n", plan.skipped.size(),
                 plan.skipped.size() == 1 ? "" : "s");
  return missing == 0 ? kDone : kFailed;
}

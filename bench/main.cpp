// The benchmark program. After the lines of Google Benchmark it lists how our rates stand to those
// of the peers: `OpenCV/X` is what a user would pick for our X.
#include <cstdio>
#include <map>
#include <string>
#include <utility>

#include "bench.h"
#include "frame/parallel.h"

double bench::SweepSeconds(std::int64_t bytes) {
  static std::map<std::pair<std::int64_t, int>, double> known;
  double& best = known[{bytes, omp_get_max_threads()}];
  if (best > 0) return best;
  std::vector<unsigned char> image(bytes);
  constexpr std::int64_t kChunk = 1 << 14;
  for (int run = 0; run < 10; ++run) {
    const double start = omp_get_wtime();
    tintwerk::ParallelFor((bytes + kChunk - 1) / kChunk, [=, first = image.data()](std::int64_t i) {
      const std::int64_t end = std::min(kChunk * (i + 1), bytes);
      for (std::int64_t k = kChunk * i; k < end; ++k) first[k] ^= 0x55;
    });
    benchmark::ClobberMemory();
    const double seconds = omp_get_wtime() - start;
    if (run == 0 || seconds < best) best = seconds;
  }
  return best;
}

namespace {

class Reporter final : public benchmark::ConsoleReporter {
 public:
  Reporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    auto plain = runs;  // without units behind the counters, which Google Benchmark guesses
    for (Run& run : plain)
      for (auto& [name, counter] : run.counters) counter.flags = benchmark::Counter::kDefaults;
    ConsoleReporter::ReportRuns(plain);
    for (const Run& run : runs) {
      const auto rate = run.counters.find("MP/s");
      if (run.run_type != Run::RT_Iteration || rate == run.counters.end()) continue;
      // One thread is measured by the processor's time, which other programs do not stretch.
      const std::string name = run.benchmark_name();
      const bool alone = name.find("threads:1/") != std::string::npos;
      const double share = alone ? run.real_accumulated_time / run.cpu_accumulated_time : 1;
      double& best = best_[name];
      best = std::max<double>(best, rate->second * share);
    }
  }

  void Finalize() override {
    const std::string prefix = "OpenCV/";
    for (const auto& [name, theirs] : best_) {
      if (name.rfind(prefix, 0) != 0) continue;
      const auto ours = best_.find(name.substr(prefix.size()));
      if (ours == best_.end()) continue;
      if (!std::exchange(headed_, true))
        std::printf("\n  ours    OpenCV   ratio   (the run's best MP/s)\n");
      std::printf("%6.0f    %6.0f   %5.2f   %s\n", ours->second, theirs, ours->second / theirs,
                  ours->first.c_str());
    }
  }

 private:
  std::map<std::string, double> best_;  // MP/s
  bool headed_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  Reporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
}

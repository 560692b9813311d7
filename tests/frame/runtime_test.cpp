#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <array>
#include <climits>
#include <string>
#include <thread>
#include <vector>

#include "frame/cpu_level.h"
#include "frame/image_service.h"
#include "frame/parallel.h"
#include "frame/progress.h"
#include "frame/random.h"

namespace tintwerk {
namespace {

TEST(CpuLevel, TheFirstMissingFlagEndsTheCount) {
  constexpr unsigned kAll = ~0u;
  EXPECT_EQ(SimdLevel(kAll, kAll), 6);
  EXPECT_EQ(SimdLevel(0, 0), 0);
  EXPECT_EQ(SimdLevel(kAll, ~(1u << 25)), 0);
  EXPECT_EQ(SimdLevel(kAll, ~(1u << 26)), 1);
  EXPECT_EQ(SimdLevel(~(1u << 0), kAll), 2);
  EXPECT_EQ(SimdLevel(~(1u << 9), kAll), 3);
  EXPECT_EQ(SimdLevel(~(1u << 19), kAll), 4);
  EXPECT_EQ(SimdLevel(~(1u << 20), kAll), 5);
  EXPECT_EQ(SimdLevel(1u << 0 | 1u << 9 | 1u << 19 | 1u << 20, 1u << 25 | 1u << 26), 6);
}

TEST(CpuLevel, IsOneRecordOfThisMachine) {
  std::array<const CpuLevelRecord*, 4> seen = {};
  {
    std::vector<std::jthread> threads;
    for (auto& record : seen) threads.emplace_back([&record] { record = &CpuLevel(); });
  }
  for (const auto* record : seen) EXPECT_EQ(record, &CpuLevel());
  EXPECT_EQ(CpuLevel().wide, 0);
#if defined(__x86_64__)
  EXPECT_GE(CpuLevel().simd, 2);
  EXPECT_EQ(CpuLevel().simd >= 5, __builtin_cpu_supports("sse4.1") != 0);
#endif
}

TEST(Random, HasOneSequencePerThreadOf15BitNumbers) {
  const auto draw = [] {
    std::array<int, 5> numbers;
    std::ranges::generate(numbers, Random);
    return numbers;
  };
  constexpr std::array kFirst = {41, 18467, 6334, 26500, 19169};
  SeedRandom(1);
  EXPECT_EQ(draw(), kFirst);
  std::array<int, 5> other;
  std::jthread([&] { other = draw(); }).join();
  EXPECT_EQ(other, kFirst);
  EXPECT_NE(draw(), kFirst);
  SeedRandom(2);
  EXPECT_NE(draw(), kFirst);

  std::vector<int> counts(kRandomMax + 1);
  for (int i = 0; i < 64 * (kRandomMax + 1); ++i) {
    const int number = Random();
    ASSERT_TRUE(number >= 0 && number <= kRandomMax);
    ++counts[number];
  }
  EXPECT_GT(*std::ranges::min_element(counts), 0);
}

// A host that takes notes and stops after some questions.
class Host : public CObjProgress {
 public:
  explicit Host(int goOn = INT_MAX) : goOn_(goOn) {}

  void ReportPosition(float position) override {
    EXPECT_EQ(asked, int(positions.size()) + 1) << "asked first, then told";
    positions.push_back(position);
  }
  int KeepGoing() override { return asked++ < goOn_ ? -7 : 0; }

  int asked = 0;
  std::vector<float> positions;

 private:
  int goOn_;
};

// The rows that a loop works on.
int RowsDone(CObjProgress* host, int low, int high, int height) {
  const RowProgress rows(host, low, high, height);
  int done = 0;
  for (int y = 0; y < height; ++y) {
    ++done;
    if (!rows.Finished(y)) break;
  }
  return done;
}

TEST(RowProgress, TellsEveryTwentiethOfTheHeight) {
  Host host;
  EXPECT_EQ(RowsDone(&host, 10, 60, 47), 47);  // steps of 2 rows
  ASSERT_EQ(host.positions.size(), 24u);
  const float perRow = 50.0f / 47;
  for (int i = 0; i < 24; ++i) EXPECT_EQ(host.positions[i], 2 * i * perRow + 10);

  Host small;
  EXPECT_EQ(RowsDone(&small, 0, 100, 4), 4);
  EXPECT_EQ(small.positions, (std::vector<float>{0, 25, 50, 75}));

  Host none;
  EXPECT_EQ(RowsDone(&none, 0, 100, 0), 0);
  EXPECT_EQ(RowsDone(&none, 0, 100, -3), 0);
  EXPECT_EQ(none.asked, 0);
  EXPECT_EQ(RowsDone(nullptr, 0, 100, 30), 30);

  Host wide;
  RowsDone(&wide, INT_MIN, INT_MAX, 1);
  EXPECT_EQ(wide.positions, std::vector<float>{static_cast<float>(INT_MIN)});
}

TEST(RowProgress, StopsWhereTheHostSays) {
  Host first(0);
  EXPECT_EQ(RowsDone(&first, 0, 100, 100), 1);
  EXPECT_TRUE(first.positions.empty());
  Host third(2);
  EXPECT_EQ(RowsDone(&third, 0, 100, 100), 11);  // steps of 5 rows: asked at 0, 5 and 10
  EXPECT_EQ(third.positions, (std::vector<float>{0, 5}));
  EXPECT_EQ(third.asked, 3);
}

TEST(ForEachRow, DoesAndReportsWhatTheSerialLoopDoes) {
  for (int height : {-1, 0, 1, 19, 20, 47, 400})
    for (int goOn : {0, 1, 3, INT_MAX}) {
      Host serial(goOn), parallel(goOn);
      const int done = RowsDone(&serial, 5, 90, height);
      std::vector<int> runs(std::max(height, 0));
      const bool finished =
          ForEachRow(&parallel, 5, 90, height, [&](std::int64_t y) { ++runs[y]; });
      EXPECT_EQ(parallel.positions, serial.positions) << height << ", " << goOn;
      EXPECT_EQ(parallel.asked, serial.asked);
      EXPECT_EQ(finished, serial.asked <= goOn);
      for (int y = 0; y < height; ++y) EXPECT_EQ(runs[y], y < done);
    }
  std::vector<int> runs(33);
  EXPECT_TRUE(ForEachRow(nullptr, 0, 100, 33, [&](std::int64_t y) { ++runs[y]; }));
  EXPECT_EQ(runs, std::vector(33, 1));
}

TEST(StageProgress, ANullHostGoesOn) {
  EXPECT_TRUE(KeepGoing(nullptr));
  Report(nullptr, 5);
  Host host(1);
  EXPECT_TRUE(KeepGoing(&host));
  Report(&host, 30);
  EXPECT_FALSE(KeepGoing(&host));
  EXPECT_EQ(host.positions, std::vector<float>{30});
}

TEST(ParallelFor, RunsEveryIndexOnceInOneChunkPerThread) {
  const int threads = omp_get_max_threads();
  for (int count : {1, 2, 3, 1000, 100003})
    for (int team : {1, 2, 7}) {
      omp_set_num_threads(team);
      std::vector<int> runs(count), thread(count);
      ParallelFor(count, [&](std::int64_t i) {
        ++runs[i];
        thread[i] = omp_get_thread_num();
      });
      EXPECT_EQ(std::ranges::count(runs, 1), count);
      EXPECT_TRUE(std::ranges::is_sorted(thread));
    }
  omp_set_num_threads(threads);
  for (std::int64_t count : {std::int64_t{0}, std::int64_t{-1}, INT64_MIN})
    ParallelFor(count, [](std::int64_t) { ADD_FAILURE(); });
}

TEST(ImageService, RunsFromLoadUntilItsTokenStopsIt) {
  ASSERT_TRUE(ImageServiceRuns());
  EXPECT_EQ(GdiplusStartup(nullptr), Gdiplus::InvalidParameter);
  std::uintptr_t token = 0;
  ASSERT_EQ(GdiplusStartup(&token), Gdiplus::Ok);
  GdiplusShutdown(token + 1);
  EXPECT_TRUE(ImageServiceRuns());
  GdiplusShutdown(token);
  EXPECT_FALSE(ImageServiceRuns());
  EXPECT_EQ(Gdiplus::Bitmap(L"none.png").GetLastStatus(), Gdiplus::GdiplusNotInitialized);
  GdiplusShutdown(0);
  ASSERT_EQ(GdiplusStartup(&token), Gdiplus::Ok);
  EXPECT_TRUE(ImageServiceRuns());
}

}  // namespace
}  // namespace tintwerk

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <thread>
#include <vector>

#include "frame/cpu_level.h"
#include "frame/image_service.h"
#include "frame/parallel.h"
#include "frame/progress.h"
#include "frame/random.h"
#include "support/operations.h"

namespace tintwerk {
namespace {

TEST(CpuLevel, TheFirstMissingFlagEndsTheCount) {
  struct Case {
    unsigned ecx, edx;
    int level;
  };
  constexpr unsigned kAll = ~0u;
  for (const auto& [ecx, edx, level] : {Case{kAll, kAll, 6},
                                        {0, 0, 0},
                                        {kAll, ~(1u << 25), 0},
                                        {kAll, ~(1u << 26), 1},
                                        {~(1u << 0), kAll, 2},
                                        {~(1u << 9), kAll, 3},
                                        {~(1u << 19), kAll, 4},
                                        {~(1u << 20), kAll, 5},
                                        {0x180201, 0x6000000, 6}})
    EXPECT_EQ(SimdLevel(ecx, edx), level) << ecx << " " << edx;
}

TEST(CpuLevel, IsOneRecordOfThisMachine) {
  const CpuLevelRecord* seen = nullptr;
  std::jthread([&] { seen = &CpuLevel(); }).join();
  EXPECT_EQ(seen, &CpuLevel());
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
  for (int i = 0; i < 64 * (kRandomMax + 1); ++i) ++counts.at(Random());
  EXPECT_GT(*std::ranges::min_element(counts), 0);
}

TEST(ForEachRow, ReportsAndStopsAsASerialLoop) {
  const auto work = [](unsigned char* row, int width) {
    for (int i = 0; i < 4 * width; ++i) row[i] ^= 0x55;
  };
  const auto run = [&](unsigned char* pixels, int width, int height, CObjProgress* host, int low,
                       int high) {
    return ForEachRow(host, low, high, height,
                      [&](std::int64_t y) { work(pixels + 4 * width * y, width); });
  };
  test::Bytes image = test::RandomBytes(4 * 3 * 399, 1), all = image;
  ExpectSerialRows(image, run, [&](unsigned char* row, int, int width) { work(row, width); });
  ProgressRecorder host;
  for (int height : {0, -3}) EXPECT_TRUE(run(image.data(), 3, height, &host, 0, 100));
  EXPECT_EQ(host.questions, 0);
  host.stopAt = 2;
  EXPECT_FALSE(run(image.data(), 3, 100, &host, 0, 100));
  EXPECT_EQ(host.positions, (std::vector<float>{0, 5}));

  image = all;
  work(all.data(), 3 * 399);
  EXPECT_TRUE(run(image.data(), 3, 399, nullptr, 0, 100));
  EXPECT_TRUE(image == all);
  EXPECT_TRUE(KeepGoing(nullptr));
  Report(nullptr, 5);
}

TEST(ParallelFor, RunsEveryIndexOnceInOneChunkPerThread) {
  for (int count : {1, 2, 3, 1000, 100003})
    for (int team : {1, 2, 7}) {
      const test::Threads threads(team);
      std::vector<int> runs(count), thread(count);
      ParallelFor(count, [&](std::int64_t i) {
        ++runs[i];
        thread[i] = omp_get_thread_num();
      });
      EXPECT_EQ(std::ranges::count(runs, 1), count);
      EXPECT_TRUE(std::ranges::is_sorted(thread));
    }
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

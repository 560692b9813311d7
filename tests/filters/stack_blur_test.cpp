#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <omp.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "pixel/progress_recorder.h"
#include "support/image_files.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::RandomBytes;

struct Size {
  int width, height;
};

// One axis by its definition, on planes of ints; `step` lies between neighbours of a line.
void PlainPass(const std::vector<int>& in, std::vector<int>& out, int lines, int lineStep,
               int count, int step, int radius) {
  const std::int64_t weight = std::int64_t{radius + 1} * (radius + 1);
  for (int line = 0; line < lines; ++line)
    for (int x = 0; x < count; ++x) {
      std::int64_t sum = 0;
      for (int i = -radius; i <= radius; ++i)
        sum += std::int64_t{radius + 1 - std::abs(i)} *
               in[lineStep * line + step * std::clamp(x + i, 0, count - 1)];
      out[lineStep * line + step * x] = static_cast<int>(sum / weight);
    }
}

// Byte `channel` of every `pitch` bytes, blurred; the rows from `rowsDone` on stay 0 in between.
std::vector<int> PlainBlur(const Bytes& image, Size size, int radius, int pitch, int channel,
                           int rowsDone) {
  std::vector<int> plane(std::size_t(size.width) * size.height), between(plane.size());
  for (std::size_t i = 0; i < plane.size(); ++i) plane[i] = image[pitch * i + channel];
  PlainPass(plane, between, rowsDone, size.width, size.width, 1, radius);
  PlainPass(between, plane, size.width, 1, size.height, size.width, radius);
  return plane;
}
// What a member stores, from its source and the blurred values of all bytes of a pixel.
using Store = std::function<int(int source, int blurred)>;
Bytes PlainImage(Bytes image, const std::vector<std::vector<int>>& blurred, const Store& store,
                 int firstChannel = 0) {
  const std::size_t pitch = blurred.size() == 1 ? 1 : 4;
  for (std::size_t c = firstChannel; c < blurred.size(); ++c)
    for (std::size_t i = 0; i < blurred[c].size(); ++i) {
      unsigned char& value = image[pitch * i + c];
      value = static_cast<unsigned char>(store(value, blurred[c][i]));
    }
  return image;
}
int Blurred(int, int blurred) {
  return blurred;
}
int HighPassed(int source, int blurred) {
  return std::clamp(source - blurred + 128, 0, 255);
}

// Fixes the number of threads for a scope. Most images here are too small to share.
class Threads {
 public:
  explicit Threads(int count) : before_(omp_get_max_threads()) { omp_set_num_threads(count); }
  ~Threads() { omp_set_num_threads(before_); }

 private:
  int before_;
};

// Random samples, whole areas of the ends of the scale among them, and guard bytes behind.
constexpr std::size_t kGuard = 64;
Bytes Input(std::size_t bytes, unsigned seed) {
  Bytes image = RandomBytes(bytes + kGuard, seed);
  for (std::size_t i = bytes / 3; i < bytes / 2; ++i) image[i] = i < bytes * 2 / 5 ? 255 : 0;
  return image;
}

constexpr Size kSizes[] = {{1, 1}, {1, 37}, {41, 1}, {7, 5}, {33, 70}, {130, 19}, {257, 35}};

void ExpectAllMembersPlain(Size size, int radius) {
  SCOPED_TRACE(testing::Message() << size.width << " x " << size.height << ", radius " << radius);
  const std::size_t count = std::size_t(size.width) * size.height;
  const Bytes image = Input(4 * count, radius + size.width), plane = Input(count, radius);
  const auto run = [&](Bytes bytes, auto operation) {
    operation(bytes.data(), size.width, size.height, radius);
    return bytes;
  };
  std::vector<std::vector<int>> channels(3);
  for (int c = 0; c < 3; ++c) channels[c] = PlainBlur(image, size, radius, 4, c, size.height);
  const Bytes blurred = PlainImage(image, channels, Blurred);
  EXPECT_TRUE(run(image, SFDSP::stackBlur) == blurred);
  Bytes reported = image;
  ProgressRecorder all;
  EXPECT_TRUE(
      CPixelProcess::stackBlur(reported.data(), size.width, size.height, radius, &all, 7, 9));
  EXPECT_TRUE(reported == blurred);
  EXPECT_TRUE(run(image, SFDSP::stackBlurRedChannel) == PlainImage(image, channels, Blurred, 2));
  EXPECT_TRUE(run(image, SFDSP::stackBlurAndHighPass) ==
              (radius ? PlainImage(image, channels, HighPassed) : image));
  const Bytes blurredPlane =
      PlainImage(plane, {PlainBlur(plane, size, radius, 1, 0, size.height)}, Blurred);
  EXPECT_TRUE(run(plane, SFDSP::BlurOneChannel) == blurredPlane);
  EXPECT_TRUE(run(plane, CPixelProcess::BlurOneChannel) == blurredPlane);
}

TEST(StackBlur, AllMembersMatchTheDefinition) {
  const Threads threads(1);
  for (const Size size : kSizes)
    for (int radius : {0, 1, 2, 4, 13, 15, 16, 61, 300}) ExpectAllMembersPlain(size, radius);
}

TEST(StackBlur, LargestRadiiDivideExactly) {
  const Threads threads(1);
  // A line that is white up to somewhere meets sums just below and at multiples of the weight.
  for (int radius : {159, 160, 1000, 2894, 2895}) ExpectAllMembersPlain({90, 3}, radius);
  Bytes huge = Input(4 * 60, 1), most = huge;
  SFDSP::stackBlur(huge.data(), 20, 3, 2147483647);
  SFDSP::stackBlur(most.data(), 20, 3, 2895);
  EXPECT_EQ(huge, most);
  for (int radius : {15, 100, 2895}) {
    Bytes white(4 * 50 * 40, 255);
    SFDSP::stackBlur(white.data(), 50, 40, radius);
    EXPECT_EQ(white, Bytes(white.size(), 255));
  }
}

TEST(StackBlur, EveryInstructionSetAndThreadCountGivesTheSame) {
  for (std::int64_t targets = hwy::SupportedTargets(); targets != 0; targets &= targets - 1) {
    hwy::SetSupportedTargetsForTest(targets & -targets);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    SCOPED_TRACE(hwy::TargetName(targets & -targets));
    for (int count : {1, 3}) {
      const Threads threads(count);
      for (int radius : {2, 15, 16, 90}) ExpectAllMembersPlain({75, 53}, radius);
    }
  }
  hwy::SetSupportedTargetsForTest(0);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

TEST(StackBlur, ReportsAndStopsAsALoopOverRowsThenColumns) {
  for (const Size size : {Size{45, 63}, {3, 399}, {1, 1}, {39, 2}}) {
    const Threads threads(size.width == 39 ? 3 : 1);
    const Bytes image = Input(std::size_t{4} * size.width * size.height, 5);
    const int rowStep = std::max(size.height / 20, 1), columnStep = std::max(size.width / 20, 1);
    const int rowQuestions = (size.height - 1) / rowStep + 1;
    const int allQuestions = rowQuestions + (size.width - 1) / columnStep + 1;
    for (int stopAt : {-1, 0, 1, rowQuestions - 1, rowQuestions, rowQuestions + 1}) {
      struct : ProgressRecorder {  // once it has said stop, it goes on saying so
        int KeepGoing() override {
          stopped = ProgressRecorder::KeepGoing() == 0 || stopped;
          return !stopped;
        }
        bool stopped = false;
      } host;
      host.stopAt = stopAt;
      const bool inRows = stopAt >= 0 && stopAt < rowQuestions;
      const int rowsDone = inRows ? rowStep * stopAt + 1 : size.height;
      const int columnsDone = inRows ? 1
                              : stopAt >= 0 && stopAt < allQuestions
                                  ? columnStep * (stopAt - rowQuestions) + 1
                                  : size.width;
      std::vector<float> positions;
      const float perRow = 50.0f / size.height, perColumn = 50.0f / size.width;
      for (int i = 0; i < (inRows ? stopAt : rowQuestions); ++i)
        positions.push_back(i * rowStep * perRow);
      const int last = stopAt < 0 ? allQuestions : std::min(stopAt, allQuestions);
      for (int i = 0; i < last - rowQuestions; ++i)
        positions.push_back(i * columnStep * perColumn + 50.0f);
      Bytes expected = image;
      for (int c = 0; c < 3; ++c) {
        const auto blurred = PlainBlur(image, size, 3, 4, c, rowsDone);
        for (int y = 0; y < size.height; ++y)
          for (int x = 0; x < columnsDone; ++x)
            expected[4 * (size.width * y + x) + c] =
                static_cast<unsigned char>(blurred[size.width * y + x]);
      }
      Bytes pixels = image;
      EXPECT_TRUE(
          CPixelProcess::stackBlur(pixels.data(), size.width, size.height, 3, &host, 20, 30));
      EXPECT_EQ(host.positions, positions) << size.width << ", stopped at " << stopAt;
      EXPECT_TRUE(pixels == expected) << size.width << ", stopped at " << stopAt;
    }
  }
}

TEST(StackBlur, HighLightIsTheHighPassThroughASteepCurve) {
  const Size size{37, 21};
  const Bytes plane = Input(37 * 21, 3);
  const Bytes passed = PlainImage(plane, {PlainBlur(plane, size, 4, 1, 0, 21)}, HighPassed);
  Bytes result = plane;
  SFDSP::BlurChannelAndHighLight(result.data(), size.width, size.height, 4);
  int previous = 0;
  std::vector<int> curve(256, -1);
  for (std::size_t i = 0; i < plane.size() - kGuard; ++i) {
    if (curve[passed[i]] < 0) curve[passed[i]] = result[i];
    EXPECT_EQ(curve[passed[i]], result[i]);
  }
  for (int value : curve)
    if (value >= 0) {
      EXPECT_GE(value, previous);
      previous = value;
    }
  for (auto [in, out] : {std::pair{62, 0},
                         {63, 1},
                         {100, 18},
                         {127, 127},
                         {128, 128},
                         {129, 136},
                         {160, 242},
                         {192, 254},
                         {193, 255}}) {
    EXPECT_TRUE(curve[in] < 0 || curve[in] == out) << in;
  }
  SFDSP::BlurChannelAndHighLight(result.data(), size.width, size.height, 0);
  EXPECT_EQ(Bytes(result.begin(), result.end() - kGuard), Bytes(plane.size() - kGuard, 128));
}

TEST(StackBlur, NothingToDoLeavesTheImage) {
  const Bytes image = Input(64, 1);
  Bytes pixels = image;
  EXPECT_FALSE(CPixelProcess::stackBlur(nullptr, 4, 4, 2, nullptr, 0, 100));
  EXPECT_FALSE(CPixelProcess::stackBlur(pixels.data(), 65536, 65536, 2, nullptr, 0, 100));
  for (auto [width, height, radius] :
       {std::tuple{0, 4, 2}, {4, -4, 2}, {-65536, -65536, 2}, {4, 4, -1}}) {
    EXPECT_TRUE(CPixelProcess::stackBlur(pixels.data(), width, height, radius, nullptr, 0, 100));
    SFDSP::stackBlur(pixels.data(), width, height, radius);
    SFDSP::stackBlurRedChannel(pixels.data(), width, height, radius);
    SFDSP::stackBlurAndHighPass(pixels.data(), width, height, radius);
    SFDSP::BlurOneChannel(pixels.data(), width, height, radius);
    SFDSP::BlurChannelAndHighLight(pixels.data(), width, height, radius);
  }
  SFDSP::stackBlurAndHighPass(nullptr, 4, 4, 2);
  SFDSP::BlurChannelAndHighLight(nullptr, 4, 4, 2);
  EXPECT_EQ(pixels, image);
}

TEST(StackBlur, RadiusGrowsWithTheImage) {
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 640, 480), 2);
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 100, 100), 2);
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 640, 600), 3);  // 2.5 is rounded up
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 4000, 3000), 78);
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 40000, 30000), 2);  // the product wraps below 0
}

}  // namespace
}  // namespace tintwerk

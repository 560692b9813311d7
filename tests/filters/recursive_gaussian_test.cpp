#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "filters/pixel_process_internals.h"
#include "pixel/progress_recorder.h"
#include "support/image_files.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::RandomBytes;

double Deviation(int radius) {
  const int reach = std::max(radius, 2) + 1;
  return std::sqrt(-(reach * reach) / (2 * std::log(0.00392156862745098)));
}

// One line, term by term.
void PlainLine(unsigned char* line, std::int64_t step, int count, int radius) {
  double k[6][5];
  PixelProcessInternals::FindConstants(k, Deviation(radius));
  const auto &n_p = k[0], &n_m = k[1], &d_p = k[2], &d_m = k[3], &bd_p = k[4], &bd_m = k[5];
  std::vector<double> vp(count), vm(count);
  const auto S = [=](int i) { return line[step * i]; };
  for (int at = 0; at < count; ++at) {
    const int back = count - 1 - at, t = std::min(at, 4);
    for (int i = 0; i <= t; ++i) {
      vp[at] += n_p[i] * S(at - i) - d_p[i] * vp[at - i];
      vm[back] += n_m[i] * S(back + i) - d_m[i] * vm[back + i];
    }
    for (int j = t + 1; j <= 4; ++j) {
      vp[at] += (n_p[j] - bd_p[j]) * S(0);
      vm[back] += (n_m[j] - bd_m[j]) * S(count - 1);
    }
  }
  for (int i = 0; i < count; ++i)
    line[step * i] = static_cast<unsigned char>(std::clamp(int(vp[i] + vm[i]), 0, 255));
}

// The first `columns` columns, then the first `rows` rows.
Bytes PlainBlur(Bytes image, int width, int height, int horizontal, int vertical, int pitch,
                int columns, int rows) {
  const int channels = pitch == 4 ? 3 : 1;
  for (int x = 0; x < columns; ++x)
    for (int c = 0; c < channels; ++c)
      PlainLine(&image[pitch * x + c], std::int64_t{pitch} * width, height, vertical);
  for (int y = 0; y < rows; ++y)
    for (int c = 0; c < channels; ++c)
      PlainLine(&image[std::size_t(pitch) * width * y + c], pitch, width, horizontal);
  return image;
}

void ExpectPlain(int width, int height, int horizontal, int vertical) {
  SCOPED_TRACE(testing::Message() << width << " x " << height << ", radii " << horizontal << ", "
                                  << vertical);
  for (int pitch : {4, 1}) {
    const Bytes image = RandomBytes(std::size_t(pitch) * width * height + 64, width + horizontal);
    Bytes blurred = image;
    const auto blur =
        pitch == 4 ? CPixelProcess::GaussIIRBlurImage : CPixelProcess::GaussIIRBlurWithOne;
    EXPECT_EQ(blur(blurred.data(), width, height, horizontal, vertical, nullptr, 0, 100), 1);
    EXPECT_TRUE(blurred ==
                PlainBlur(image, width, height, horizontal, vertical, pitch, width, height))
        << pitch << " bytes a pixel";
  }
}

TEST(RecursiveGaussian, MatchesTheDefinitionToTheByte) {
  for (auto [width, height] :
       {std::pair{1, 1}, {1, 30}, {30, 1}, {2, 3}, {4, 5}, {6, 6}, {33, 47}, {130, 71}})
    for (auto [horizontal, vertical] : {std::pair{2, 2}, {0, 16}, {300, 5}})
      ExpectPlain(width, height, horizontal, vertical);
}

TEST(RecursiveGaussian, EveryInstructionSetAndThreadCountGivesTheSame) {
  const int before = omp_get_max_threads();
  for (std::int64_t targets = hwy::SupportedTargets(); targets != 0; targets &= targets - 1) {
    hwy::SetSupportedTargetsForTest(targets & -targets);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    SCOPED_TRACE(hwy::TargetName(targets & -targets));
    for (int threads : {1, 3}) {
      omp_set_num_threads(threads);
      ExpectPlain(75, 53, 7, 16);
    }
  }
  hwy::SetSupportedTargetsForTest(0);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  omp_set_num_threads(before);
}

TEST(RecursiveGaussian, AStepBecomesTheKnownSlope) {
  Bytes line(60, 0);
  std::fill(line.begin() + 30, line.end(), 255);
  Bytes narrow = line;
  CPixelProcess::GaussIIRBlurWithOne(line.data(), 60, 1, 2, 2, nullptr, 0, 100);
  EXPECT_EQ(Bytes(line.begin() + 27, line.begin() + 34), (Bytes{0, 10, 71, 183, 244, 254, 255}));
  CPixelProcess::GaussIIRBlurWithOne(narrow.data(), 60, 1, 0, 2, nullptr, 0, 100);
  EXPECT_EQ(narrow, line);
  EXPECT_NEAR(Deviation(2), 0.9012, 5e-5);
  EXPECT_NEAR(Deviation(10), 3.3043, 5e-5);
}

TEST(RecursiveGaussian, ConstantsOfNoDeviationAreFinite) {
  double k[6][5];
  PixelProcessInternals::FindConstants(k, 0);
  for (const auto& array : k)
    for (double value : array) EXPECT_TRUE(std::isfinite(value));
  EXPECT_EQ(k[0][0], -0.6803 + 1.6803);
}

TEST(RecursiveGaussian, ReportsAndStopsAsALoopOverColumnsThenRows) {
  constexpr int kWidth = 45, kHeight = 63;
  constexpr int kColumnQuestions = 23, kRowQuestions = 21;
  const int threads = omp_get_max_threads();
  for (int pitch : {4, 1})
    for (auto [low, high] : {std::pair{0, 100}, {10, 95}, {60, -7}, {-2147483647, 2147483647}})
      for (int stopAt : {-1, 0, 3, kColumnQuestions - 1, kColumnQuestions, kColumnQuestions + 2}) {
        const Bytes image = RandomBytes(pitch * kWidth * kHeight, 3);
        const float span = static_cast<float>(std::int64_t{high} - low);
        const float share = pitch == 4 ? 0.4f : 0.5f;
        std::vector<float> positions;
        int base = low;
        if (pitch == 4) {
          positions.push_back(static_cast<float>(low));
          base += static_cast<int>(span * 0.2f);
          positions.push_back(static_cast<float>(base));
        }
        const int asked = stopAt < 0 ? kColumnQuestions + kRowQuestions : stopAt;
        for (int i = 0; i < std::min(asked, kColumnQuestions); ++i)
          positions.push_back(2 * i * (span * share / kWidth) + base);
        if (pitch == 4) base += static_cast<int>(span * 0.4f);
        for (int i = 0; i < asked - kColumnQuestions; ++i)
          positions.push_back(3 * i * (span * share / kHeight) + base);
        const bool inColumns = asked < kColumnQuestions;
        const Bytes expected =
            PlainBlur(image, kWidth, kHeight, 3, 9, pitch, inColumns ? 2 * asked + 1 : kWidth,
                      inColumns    ? 0
                      : stopAt < 0 ? kHeight
                                   : 3 * (asked - kColumnQuestions) + 1);
        omp_set_num_threads(stopAt == 3 ? 3 : 1);  // the image is too small to share
        ProgressRecorder host;
        host.stopAt = stopAt;
        Bytes pixels = image;
        const auto blur =
            pitch == 4 ? CPixelProcess::GaussIIRBlurImage : CPixelProcess::GaussIIRBlurWithOne;
        EXPECT_EQ(blur(pixels.data(), kWidth, kHeight, 3, 9, &host, low, high), inColumns ? 0 : 1);
        EXPECT_EQ(host.positions, positions) << low << " to " << high << ", stopped at " << stopAt;
        EXPECT_TRUE(pixels == expected) << "stopped at " << stopAt;
      }
  omp_set_num_threads(threads);
}

TEST(RecursiveGaussian, NothingToDoLeavesTheImage) {
  Bytes pixels(64, 9);
  for (auto blur : {CPixelProcess::GaussIIRBlurImage, CPixelProcess::GaussIIRBlurWithOne}) {
    EXPECT_EQ(blur(nullptr, 4, 4, 2, 2, nullptr, 0, 100), 0);
    EXPECT_EQ(blur(pixels.data(), 65536, 65536, 2, 2, nullptr, 0, 100), 0);
    EXPECT_EQ(blur(pixels.data(), 0, 4, 2, 2, nullptr, 0, 100), 1);
    EXPECT_EQ(blur(pixels.data(), 4, -4, 2, 2, nullptr, 0, 100), 1);
  }
  EXPECT_EQ(pixels, Bytes(64, 9));
}

}  // namespace
}  // namespace tintwerk

// Checks how row loops report and stop.
#pragma once

#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <climits>
#include <utility>
#include <vector>

#include "tintwerk/progress.h"

namespace tintwerk {

/// Writes down what it is told, and stops at the question of the given number, counted from 0.
struct ProgressRecorder : CObjProgress {
  void ReportPosition(float position) override { positions.push_back(position); }
  int KeepGoing() override { return questions++ == stopAt ? 0 : -1; }

  int stopAt = -1;
  int questions = 0;
  std::vector<float> positions;
};

/// Compares an operation on the rows of an image with a serial twin: what it asks and reports, and
/// which rows are done at a stop.
/// @param image at least 3 x 399 pixels
/// @param run   called as run(pixels, width, height, progress, low, high)
/// @param row   the twin, called as row(pixels of the row, index of its first pixel, width)
/// @param asks  false for an operation that only reports
template <class Run, class Row>
void ExpectSerialRows(const std::vector<unsigned char>& image, Run run, Row row, bool asks = true) {
  constexpr int kWidth = 3;
  const int threads = omp_get_max_threads();
  for (int height : {1, 10, 40, 41, 399}) {
    omp_set_num_threads(height == 41 ? 3 : 1);  // such loops are too short to share
    for (auto [low, high] : {std::pair{10, 95}, {60, -7}, {INT_MIN, INT_MAX}})
      for (int stopAt : {-1, 0, 1, 17}) {
        const int step = std::max(height / 20, 1);
        const float scale = float(double(high) - low) / float(height);
        ProgressRecorder told, expected;
        told.stopAt = expected.stopAt = stopAt;
        std::vector<unsigned char> pixels = image, expectedPixels = image;
        for (int y = 0; y < height; ++y) {
          row(&expectedPixels[4 * kWidth * y], kWidth * y, kWidth);
          if (y % step != 0) continue;
          if (asks && !expected.KeepGoing()) break;
          expected.ReportPosition(float(y) * scale + float(low));
        }
        run(pixels.data(), kWidth, height, &told, low, high);
        EXPECT_EQ(told.positions, expected.positions) << height << " rows from " << low;
        EXPECT_EQ(told.questions, expected.questions) << height << " rows, stop at " << stopAt;
        EXPECT_TRUE(pixels == expectedPixels) << height << " rows, stop at " << stopAt;
      }
  }
  omp_set_num_threads(threads);
}

}  // namespace tintwerk

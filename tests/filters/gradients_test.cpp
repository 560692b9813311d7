#include "support/operations.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk::test {
namespace {

using P = CPixelProcess;

TEST(CreateGradientImage, RunsFromTheFirstColourTowardTheSecond) {
  const tagRGBQUAD colors[] = {{10, 250, 31, 77}, {200, 3, 100, 99}};
  const int top[] = {10, 250, 31}, bottom[] = {200, 3, 100};
  const Call paint = With(P::CreateGradientImage, colors);
  for (int height : {1, 7, 40, 399}) {
    Bytes image = RandomBytes(4 * 3 * height, 4), expected = image, stopped(image.size(), 5);
    for (int i = 0; i < 12 * height; ++i) {
      const double t = double(height - i / 12) / height;
      if (i % 4 != 3) expected[i] = Byte(bottom[i % 4] * (1.0 - t) + top[i % 4] * t);
    }
    EXPECT_EQ(paint(image.data(), 3, height, nullptr, 0, 100), 1);
    EXPECT_TRUE(image == expected);
    ProgressRecorder host;
    host.stopAt = height > 40 ? 2 : 0;
    EXPECT_EQ(paint(stopped.data(), 3, height, &host, 0, 100), 0);
    EXPECT_EQ(host.positions.size(), height > 40 ? 2u : 0u);
    const int done = 12 * (height > 40 ? 2 * (399 / 20) + 1 : 1);
    for (int i = 0; i < 12 * height; ++i)
      EXPECT_EQ(stopped[i], i < done && i % 4 != 3 ? expected[i] : 5) << i;
  }
  ExpectRefusals(paint);
}

TEST(CreateArray, IsRoundAndGrowsOutward) {
  Bytes mask(40 * 40, 7);
  ASSERT_EQ(P::CreateArray(mask.data(), 20, 10), 1);
  const auto at = [&](int x, int y) { return mask[40 * (19 + y) + 19 + x]; };
  // The inner radius belongs to the inner rule.
  for (auto [x, value] : {std::pair{0, 0}, {4, 0}, {5, 0}, {6, 25}, {8, 76}, {10, 128}, {-15, 191}})
    EXPECT_EQ(at(x, 0), value) << x;
  EXPECT_EQ(at(0, 17), at(17, 0));
  EXPECT_EQ(at(-3, -8), at(3, 8));
  EXPECT_EQ(mask[0], 7);
  EXPECT_EQ(P::CreateArray(nullptr, 20, 10), 0);
}

}  // namespace
}  // namespace tintwerk::test

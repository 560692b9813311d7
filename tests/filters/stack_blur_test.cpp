#include <map>

#include "support/operations.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

// One line by its definition.
Bytes PlainLine(const Bytes& s, int radius) {
  Bytes out(s.size());
  for (int x = 0, last = int(s.size()) - 1; x <= last; ++x) {
    std::int64_t sum = 0;
    for (int i = -radius; i <= radius; ++i)
      sum += std::int64_t{radius + 1 - std::abs(i)} * s[std::clamp(x + i, 0, last)];
    out[x] = Byte(sum / (std::int64_t{radius + 1} * (radius + 1)));
  }
  return out;
}

// The colours, of which the rows from `rows` on are 0 in between and the columns from `columns` on
// stay.
Bytes PlainBlur(const Bytes& image, int w, int h, int radius, int pitch, int rows, int columns) {
  const auto line = [=](const Bytes& samples) { return PlainLine(samples, radius); };
  Bytes out = image;
  for (int c = 0; c < std::min(pitch, 3); ++c) {
    for (int i = w * rows; i < w * h; ++i) out[pitch * i + c] = 0;
    EachLine(&out[c], rows, pitch * w, w, pitch, line);
    EachLine(&out[c], w, pitch, h, pitch * w, line);
    for (int i = 0; i < w * h; ++i)
      if (i % w >= columns) out[pitch * i + c] = image[pitch * i + c];
  }
  return out;
}
Bytes HighPassed(Bytes image, const Bytes& blurred, int pitch) {
  for (std::size_t i = 0; i < image.size(); ++i)
    if (pitch == 1 || i % 4 != 3) image[i] = Byte(std::clamp(image[i] - blurred[i] + 128, 0, 255));
  return image;
}

// Random samples, whole areas of the ends of the scale among them.
Bytes Input(std::size_t bytes, unsigned seed) {
  Bytes image = RandomBytes(bytes, seed);
  for (std::size_t i = bytes / 3; i < bytes / 2; ++i) image[i] = i < bytes * 2 / 5 ? 255 : 0;
  return image;
}

void ExpectAllMembersPlain(int w, int h, int radius) {
  SCOPED_TRACE(testing::Message() << w << " x " << h << ", radius " << radius);
  const Bytes image = Input(4 * w * h, radius + w), plane = Input(w * h, radius);
  const Bytes blurred = PlainBlur(image, w, h, radius, 4, h, w);
  const Bytes blurredPlane = PlainBlur(plane, w, h, radius, 1, h, w);
  const Bytes passed = radius ? HighPassed(image, blurred, 4) : image;
  Bytes red = image;
  for (std::size_t i = 2; i < red.size(); i += 4) red[i] = blurred[i];
  ProgressRecorder host;
  const auto run = [&](const Bytes& bytes, const Call& blur) {
    return Guarded(bytes, [&](Byte* pixels) { blur(pixels, w, h, &host, 7, 9); });
  };
  EXPECT_TRUE(run(image, With(SFDSP::stackBlur, radius)) == blurred);
  EXPECT_TRUE(run(image, With(CPixelProcess::stackBlur, radius)) == blurred);
  EXPECT_TRUE(run(image, With(SFDSP::stackBlurRedChannel, radius)) == red);
  EXPECT_TRUE(run(image, With(SFDSP::stackBlurAndHighPass, radius)) == passed);
  EXPECT_TRUE(run(plane, With(SFDSP::BlurOneChannel, radius)) == blurredPlane);
  EXPECT_TRUE(run(plane, With(CPixelProcess::BlurOneChannel, radius)) == blurredPlane);
}

TEST(StackBlur, AllMembersMatchTheDefinition) {
  const Threads threads(1);  // most of these images are too small to share
  for (auto [w, h] : {std::pair{1, 1}, {1, 37}, {41, 1}, {7, 5}, {33, 70}, {130, 19}, {257, 35}})
    for (int radius : {0, 1, 2, 4, 13, 15, 16, 61, 300}) ExpectAllMembersPlain(w, h, radius);
  // A line that is white up to somewhere meets sums just below and at multiples of the weight.
  for (int radius : {159, 160, 1000, 2894, 2895}) ExpectAllMembersPlain(90, 3, radius);
}

TEST(StackBlur, EveryInstructionSetAndThreadCountGivesTheSame) {
  OnEveryMachine([] {
    for (int radius : {2, 15, 16, 90}) ExpectAllMembersPlain(75, 53, radius);
  });
}

TEST(StackBlur, LargestRadiiDivideExactly) {
  const Bytes image = Input(4 * 2000, 1);
  const auto blurred = [](Bytes bytes, int w, int h, int radius) {
    SFDSP::stackBlur(bytes.data(), w, h, radius);
    return bytes;
  };
  EXPECT_TRUE(blurred(image, 2000, 1, INT_MAX) == blurred(image, 2000, 1, 2895));
  const Bytes white(4 * 50 * 40, 255);
  for (int radius : {15, 100, 2895}) EXPECT_EQ(blurred(white, 50, 40, radius), white);
}

TEST(StackBlur, ReportsAndStopsAsALoopOverRowsThenColumns) {
  struct : ProgressRecorder {  // once it has said stop, it goes on saying so
    int KeepGoing() override {
      stopped = ProgressRecorder::KeepGoing() == 0 || stopped;
      return !stopped;
    }
    bool stopped = false;
  } const fresh;
  for (auto [w, h] : {std::pair{45, 63}, {3, 399}, {1, 1}, {39, 2}, {1300, 5}}) {
    const Threads threads(w == 39 ? 3 : 1);
    const Bytes image = Input(std::size_t{4} * w * h, 5);
    const int rowStep = std::max(h / 20, 1), columnStep = std::max(w / 20, 1);
    const int rowQuestions = (h - 1) / rowStep + 1;
    const int allQuestions = rowQuestions + (w - 1) / columnStep + 1;
    for (int stopAt :
         {-1, 0, 1, rowQuestions - 1, rowQuestions, rowQuestions + 1, rowQuestions + 9}) {
      const int told = stopAt < 0 ? allQuestions : std::min(stopAt, allQuestions);
      const int inColumns = told - rowQuestions;
      std::vector<float> positions;
      for (int i = 0; i < std::min(told, rowQuestions); ++i)
        positions.push_back(i * rowStep * (50.0f / h));
      for (int i = 0; i < inColumns; ++i) positions.push_back(i * columnStep * (50.0f / w) + 50.0f);
      const int rows = inColumns < 0 ? rowStep * told + 1 : h;
      const int columns = inColumns < 0 ? 1 : std::min(columnStep * inColumns + 1, w);
      auto host = fresh;
      host.stopAt = stopAt;
      Bytes pixels = image;
      EXPECT_TRUE(CPixelProcess::stackBlur(pixels.data(), w, h, 3, &host, 20, 30));
      EXPECT_EQ(host.positions, positions) << w << ", stopped at " << stopAt;
      EXPECT_TRUE(pixels == PlainBlur(image, w, h, 3, 4, rows, columns))
          << w << ", stopped at " << stopAt;
    }
  }
}

TEST(StackBlur, HighLightIsTheHighPassThroughASteepCurve) {
  constexpr int w = 37, h = 21;
  const Bytes plane = Input(w * h, 3);
  const Bytes passed = HighPassed(plane, PlainBlur(plane, w, h, 4, 1, h, w), 1);
  Bytes result = plane;
  SFDSP::BlurChannelAndHighLight(result.data(), w, h, 4);
  std::map<int, int> curve;
  for (int i = 0; i < w * h; ++i)
    EXPECT_EQ(curve.emplace(passed[i], result[i]).first->second, result[i]);
  int previous = 0;
  for (auto [in, out] : curve) EXPECT_GE(out, std::exchange(previous, out)) << in;
  constexpr std::pair<int, int> kKnown[] = {{62, 0},    {63, 1},    {100, 18},
                                            {127, 127}, {128, 128}, {129, 136},
                                            {160, 242}, {192, 254}, {193, 255}};
  for (auto [in, out] : kKnown) EXPECT_TRUE(!curve.contains(in) || curve[in] == out) << in;
  SFDSP::BlurChannelAndHighLight(result.data(), w, h, 0);
  EXPECT_EQ(result, Bytes(w * h, 128));
}

TEST(StackBlur, NothingToDoLeavesTheImage) {
  Bytes pixels(64, 9);
  const auto each = [](int radius) {
    return std::vector{With(CPixelProcess::stackBlur, radius),
                       With(CPixelProcess::BlurOneChannel, radius),
                       With(SFDSP::stackBlur, radius),
                       With(SFDSP::stackBlurRedChannel, radius),
                       With(SFDSP::stackBlurAndHighPass, radius),
                       With(SFDSP::BlurOneChannel, radius),
                       With(SFDSP::BlurChannelAndHighLight, radius)};
  };
  for (const Call& blur : each(2)) ExpectRefusals(blur);
  for (const Call& blur : each(-1)) EXPECT_NE(blur(pixels.data(), 4, 4, nullptr, 0, 100), 0);
  EXPECT_EQ(pixels, Bytes(64, 9));
}

TEST(StackBlur, RadiusGrowsWithTheImage) {
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 640, 480), 2);
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 100, 100), 2);
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 640, 600), 3);  // 2.5 is rounded up
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 4000, 3000), 78);
  EXPECT_EQ(SFDSP::GetStackBlurRadius(2, 40000, 30000), 2);  // the product wraps below 0
}

}  // namespace
}  // namespace tintwerk::test

#include <cmath>

#include "filters/pixel_process_internals.h"
#include "support/operations.h"

namespace tintwerk::test {
namespace {

double Deviation(int radius) {
  const int reach = std::max(radius, 2) + 1;
  return std::sqrt(-(reach * reach) / (2 * std::log(0.00392156862745098)));
}

void FindConstants(double (*k)[5], double deviation) {
  PixelProcessInternals::find_constants(k[0], k[1], k[2], k[3], k[4], k[5], deviation);
}

// One line, term by term.
Bytes PlainLine(const Bytes& s, int radius) {
  double k[6][5];
  FindConstants(k, Deviation(radius));
  const auto &n_p = k[0], &n_m = k[1], &d_p = k[2], &d_m = k[3], &bd_p = k[4], &bd_m = k[5];
  std::vector<double> vp(s.size()), vm(s.size());
  Bytes out(s.size());
  for (int at = 0, back = int(s.size()) - 1; back >= 0; ++at, --back)
    for (int i = 0; i <= 4; ++i)
      if (i <= at) {
        vp[at] += n_p[i] * s[at - i] - d_p[i] * vp[at - i];
        vm[back] += n_m[i] * s[back + i] - d_m[i] * vm[back + i];
      } else {
        vp[at] += (n_p[i] - bd_p[i]) * s.front();
        vm[back] += (n_m[i] - bd_m[i]) * s.back();
      }
  for (std::size_t i = 0; i < s.size(); ++i) out[i] = Byte(std::clamp(int(vp[i] + vm[i]), 0, 255));
  return out;
}

struct Blur {
  int horizontal, vertical;

  int Run(Byte* p, int w, int h, int pitch, CObjProgress* host, int low, int high) const {
    const auto run =
        pitch == 4 ? CPixelProcess::GaussIIRBlurImage : CPixelProcess::GaussIIRBlurWithOne;
    return run(p, w, h, horizontal, vertical, host, low, high);
  }
  // The first `columns` columns, then the first `rows` rows.
  Bytes Plain(Bytes image, int w, int h, int pitch, int columns, int rows) const {
    const auto by = [](int radius) { return [=](auto& line) { return PlainLine(line, radius); }; };
    for (int c = 0; c < std::min(pitch, 3); ++c) {
      EachLine(&image[c], columns, pitch, h, pitch * w, by(vertical));
      EachLine(&image[c], rows, pitch * w, w, pitch, by(horizontal));
    }
    return image;
  }
};

TEST(RecursiveGaussian, MatchesTheDefinitionToTheByte) {
  for (auto [width, height] :
       {std::pair{1, 1}, {1, 30}, {30, 1}, {2, 3}, {4, 5}, {6, 6}, {33, 47}, {130, 71}})
    for (const Blur& blur : {Blur{2, 2}, {0, 16}, {300, 5}})
      for (int pitch : {4, 1}) {
        const int w = width, h = height;
        const Bytes image = RandomBytes(pitch * w * h, w + blur.horizontal);
        const Bytes plain = blur.Plain(image, w, h, pitch, w, h);
        OnEveryMachine([&] {
          EXPECT_TRUE(plain == Guarded(image,
                                       [&](Byte* pixels) {
                                         EXPECT_EQ(blur.Run(pixels, w, h, pitch, nullptr, 0, 100),
                                                   1);
                                       }))
              << w << " x " << h << ", radii " << blur.horizontal << ", " << blur.vertical;
        });
      }
}

TEST(RecursiveGaussian, AStepBecomesTheKnownSlope) {
  Bytes line(60, 0);
  std::fill(line.begin() + 30, line.end(), 255);
  CPixelProcess::GaussIIRBlurWithOne(line.data(), 60, 1, 2, 2, nullptr, 0, 100);
  EXPECT_EQ(Bytes(line.begin() + 27, line.begin() + 34), (Bytes{0, 10, 71, 183, 244, 254, 255}));
  EXPECT_NEAR(Deviation(2), 0.9012, 5e-5);
  EXPECT_NEAR(Deviation(10), 3.3043, 5e-5);
}

TEST(RecursiveGaussian, ConstantsOfNoDeviationAreFinite) {
  double k[6][5];
  FindConstants(k, 0);
  for (const auto& array : k)
    for (double value : array) EXPECT_TRUE(std::isfinite(value));
  EXPECT_EQ(k[0][0], -0.6803 + 1.6803);
}

TEST(RecursiveGaussian, ReportsAndStopsAsALoopOverColumnsThenRows) {
  constexpr int w = 45, h = 63, kColumnQuestions = 23, kRowQuestions = 21;
  const Blur blur{3, 9};
  for (int pitch : {4, 1})
    for (auto [low, high] : {std::pair{0, 100}, {10, 95}, {60, -7}, {-INT_MAX, INT_MAX}})
      for (int stopAt : {-1, 0, 3, kColumnQuestions - 1, kColumnQuestions, kColumnQuestions + 2}) {
        const Bytes image = RandomBytes(pitch * w * h, 3);
        const float span = float(std::int64_t{high} - low), share = pitch == 4 ? 0.4f : 0.5f;
        int base = low;
        std::vector<float> positions;
        if (pitch == 4) {
          base += int(span * 0.2f);
          positions = {float(low), float(base)};
        }
        const int asked = stopAt < 0 ? kColumnQuestions + kRowQuestions : stopAt;
        const int inRows = asked - kColumnQuestions;
        for (int i = 0; i < std::min(asked, kColumnQuestions); ++i)
          positions.push_back(2 * i * (span * share / w) + base);
        if (pitch == 4) base += int(span * 0.4f);
        for (int i = 0; i < inRows; ++i) positions.push_back(3 * i * (span * share / h) + base);
        const Bytes expected = blur.Plain(image, w, h, pitch, inRows < 0 ? 2 * asked + 1 : w,
                                          inRows < 0 ? 0 : std::min(3 * inRows + 1, h));
        const Threads threads(stopAt == 3 ? 3 : 1);  // the image is too small to share
        ProgressRecorder host;
        host.stopAt = stopAt;
        Bytes pixels = image;
        EXPECT_EQ(blur.Run(pixels.data(), w, h, pitch, &host, low, high), inRows < 0 ? 0 : 1);
        EXPECT_EQ(host.positions, positions) << low << " to " << high << ", stopped at " << stopAt;
        EXPECT_TRUE(pixels == expected) << "stopped at " << stopAt;
      }
}

TEST(RecursiveGaussian, RefusesWhatIsNoImage) {
  ExpectRefusals(With(CPixelProcess::GaussIIRBlurImage, 2, 2));
  ExpectRefusals(With(CPixelProcess::GaussIIRBlurWithOne, 2, 2));
}

}  // namespace
}  // namespace tintwerk::test

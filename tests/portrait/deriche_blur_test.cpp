#include "portrait/deriche_blur.h"

#include <cmath>

#include "support/operations.h"

namespace tintwerk::test {
namespace {

// One line, sample by sample. The slack keeps flat lines flat.
Bytes PlainLine(const Bytes& in, double sigma) {
  const double alpha = 1.695 / std::min(sigma, 250.0);
  const double e1 = std::exp(-alpha), e2 = std::exp(-2 * alpha);
  const double k = (1 - e1) * (1 - e1) / (1 + 2 * alpha * e1 - e2);
  const double a0 = k, a1 = k * (alpha - 1) * e1, a2 = k * (alpha + 1) * e1, a3 = -k * e2;
  const double b1 = -2 * e1, b2 = e2;
  const double cp = (a0 + a1) / (1 + b1 + b2), cn = (a2 + a3) / (1 + b1 + b2);
  const int n = int(in.size());
  std::vector<double> f(n);
  double x1 = in[0], y1 = cp * in[0], y2 = y1;
  for (int i = 0; i < n; ++i) {
    const double y = f[i] = a0 * in[i] + a1 * x1 - b1 * y1 - b2 * y2;
    x1 = in[i], y2 = y1, y1 = y;
  }
  Bytes out(n);
  double x2 = x1 = in[n - 1];
  y1 = y2 = cn * in[n - 1];
  for (int i = n - 1; i >= 0; --i) {
    const double y = a2 * x1 + a3 * x2 - b1 * y1 - b2 * y2;
    out[i] = Byte(int(f[i] + y + 1e-7));
    x2 = x1, x1 = in[i], y2 = y1, y1 = y;
  }
  return out;
}

Bytes Plain(Bytes image, int w, int h, int stride, double sigmaX, double sigmaY) {
  const int element = stride / w;
  const auto by = [](double sigma) { return [=](auto& line) { return PlainLine(line, sigma); }; };
  for (int c = 0; c < (element == 4 ? 3 : 1); ++c) {
    if (sigmaX >= 0.1) EachLine(&image[c], h, stride, w, element, by(sigmaX));
    if (sigmaY >= 0.1) EachLine(&image[c], w, element, h, stride, by(sigmaY));
  }
  return image;
}

TEST(DericheBlur, MatchesTheDefinitionToTheByte) {
  for (auto [width, height] : {std::pair{1, 1}, {1, 30}, {30, 1}, {2, 3}, {33, 47}, {131, 70}})
    for (auto [sigmaX, sigmaY] : {std::pair{15.0, 15.0}, {0.1, 2.5}, {6.67, 0.05}, {0.0, 300.0}})
      for (auto [element, gap] : {std::pair{4, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 3}, {1, 7}}) {
        const int w = width, h = height, stride = element * w + (w > 7 ? gap : 0);
        const double x = sigmaX, y = sigmaY;
        const Bytes image = RandomBytes(stride * h, w + element);
        const Bytes plain = Plain(image, w, h, stride, x, y);
        OnEveryMachine([&] {
          const auto run = [&](Byte* p) { EXPECT_TRUE(DericheBlur(p, w, h, stride, x, y)); };
          EXPECT_TRUE(plain == Guarded(image, run))
              << w << " x " << h << ", " << stride << ", sigmas " << x << ", " << y;
        });
      }
}

TEST(DericheBlur, PassesTakeTurns) {
  for (int element : {4, 1, 3}) {
    const Bytes image = RandomBytes(37 * 21 * element, element);
    Bytes both = image, turns = image;
    DericheBlur(both.data(), 37, 21, 37 * element, 4, 9);
    EXPECT_TRUE(DericheBlurPass(turns.data(), 37, 21, element, 4, true));
    EXPECT_TRUE(DericheBlurPass(turns.data(), 37, 21, element, 9, false));
    EXPECT_TRUE(both == turns);
  }
}

TEST(DericheBlur, KeepsFlatImagesFlat) {
  for (double sigma : {0.1, 0.5, 3.0, 6.67, 15.0, 30.0, 250.0}) {
    Bytes plane(256 * 300);
    for (std::size_t i = 0; i < plane.size(); ++i) plane[i] = Byte(i % 256);
    const Bytes levels = plane;
    DericheBlurPass(plane.data(), 256, 300, 1, sigma, false);
    EXPECT_TRUE(plane == levels) << sigma;
  }
}

TEST(DericheBlur, LeavesWhatIsNotToBeBlurred) {
  const Bytes image = RandomBytes(4 * 20 * 10, 1);
  Bytes bytes = image;
  EXPECT_TRUE(DericheBlur(bytes.data(), 20, 10, 80, 0.05, std::nan("")));
  for (auto [w, h, stride] : {std::tuple{0, 9, 0}, {9, 0, 36}, {-2, -9, 8}, {20, 10, 10}})
    EXPECT_TRUE(DericheBlur(bytes.data(), w, h, stride, 5, 5));
  EXPECT_FALSE(DericheBlur(nullptr, 20, 10, 80, 5, 5));
  EXPECT_FALSE(DericheBlur(bytes.data(), 65536, 65536, 65536, 5, 5));
  EXPECT_FALSE(DericheBlurPass(nullptr, 20, 10, 4, 5, true));
  EXPECT_TRUE(bytes == image);
}

}  // namespace
}  // namespace tintwerk::test

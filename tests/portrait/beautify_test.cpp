#include "portrait/beautify.h"

#include "support/operations.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk::test {
namespace {

using P = CPixelProcess;

float PlainWeight(int green, int blurred, bool single) {
  const double q = 0.0039215;
  const float a = single ? green * 0.0039215f : float(green * q);
  const float b = single ? 1 - blurred * 0.0039215f : float(1 - blurred * q);
  double l = 2.0 * b + a - 1;
  if (l < 0) l = 0;
  if (l > 1) l = 1;
  float x = float((a + l) * 0.5);
  for (int i = 0; i < 3; ++i)
    if (x <= 0.5) {
      const float square = x * x;
      x = float(2.0 * square);
    } else {
      const double d = 1.0 - x;
      x = float(1 - 2 * (d * d));
    }
  return x;
}

TEST(DetailWeights, TellDetailByGreen) {
  for (bool single : {false, true}) {
    const DetailWeights weights(single ? Precision::kSingle : Precision::kDouble);
    ASSERT_TRUE(weights);
    int wrong = 0;
    for (int i = 0; i < 65536; ++i)
      wrong += weights(Byte(i >> 8), Byte(i)) != PlainWeight(i >> 8, i & 255, single);
    EXPECT_EQ(wrong, 0);
    for (int i = 0; i < 256; ++i) EXPECT_NEAR(weights(Byte(i), Byte(i)), 0.5f, 1e-5f);
    EXPECT_EQ(weights(0, 255), 0.0f);
    EXPECT_GT(weights(140, 120), 0.8f);
    EXPECT_LT(weights(120, 140), 0.2f);
  }
}

TEST(DetailWeights, LiftsInBothPrecisions) {
  EXPECT_EQ(LiftedBy<Precision::kDouble>(kSkinLift, 128, 0), 156);
  EXPECT_EQ(LiftedBy<Precision::kSingle>(kSkinLift, 128, 1), 128);
  for (int i = 0; i < 256; ++i)
    for (float w : {0.1f, 0.3f, 0.4999f, 0.7f, 0.99999f}) {
      const int t = kSkinLift[i];
      const float kept = i * w;
      EXPECT_EQ(LiftedBy<Precision::kDouble>(kSkinLift, Byte(i), w), int(t * (1.0 - w) + kept));
      EXPECT_EQ(LiftedBy<Precision::kSingle>(kSkinLift, Byte(i), w), int(t * (1.0f - w) + kept));
    }
}

TEST(Beautify, SkinBaseLiftsWhatHoldsNoDetail) {
  for (float sigma : {0.05f, 3.5f, 15.0f, 1e9f})
    for (auto [width, height] : {std::pair{1, 1}, {1, 23}, {40, 1}, {61, 45}}) {
      const int w = width, h = height;
      const Picture image = TiedPicture(w, h, w);
      Bytes blurred = image.bytes, plain = image.bytes;
      DericheBlur(blurred.data(), w, h, 4 * w, sigma, sigma);
      for (std::size_t at = 0; at < plain.size(); at += 4) {
        const float weight = PlainWeight(plain[at + 1], blurred[at + 1], false);
        const double red = blurred[at + 2] * 0.0039215;
        double f = red >= 0.5 ? 1 : 1 - 2 * (0.5 - red);
        f -= blurred[at] * 0.0019608;
        if (f < 0) f = 0;
        const float v = float(f * weight);
        for (int c = 0; c < 3; ++c) {
          const float kept = plain[at + c] * v;
          const int own = plain[at + c];
          plain[at + c] = Byte(int((kSkinLift[own] * (1.0 - v) + kept) * 0.7 + own * 0.3));
        }
      }
      OnEveryMachine([&] {
        EXPECT_TRUE(plain == Guarded(image.bytes, [&](Byte* p) { P::SkinBase(p, w, h, sigma); }))
            << w << " x " << h << ", sigma " << sigma;
      });
    }
  ExpectRefusals(With(P::SkinBase, 15.0f));
}

// A tone table by straight lines through its samples, which stand at 0, 16 and on.
double Tone(const std::array<int, 10>& samples, double value) {
  constexpr double kInputs[] = {0, 16, 32, 64, 96, 128, 160, 192, 224, 255};
  int i = 0;
  while (i < 8 && value > kInputs[i + 1]) ++i;
  const double t = (value - kInputs[i]) / (kInputs[i + 1] - kInputs[i]);
  return samples[i] + t * (samples[i + 1] - samples[i]);
}

TEST(Beautify, ColouringsShiftThenTone) {
  const auto tianMei = [](int c, int value) {
    const int shift[] = {50, 18, 6};
    double tone = value + shift[c] - value * shift[c] / 127.5;
    tone = Tone({0, 18, 37, 72, 105, 135, 162, 188, 212, 235}, tone);
    if (c == 0) tone = Tone({0, 17, 34, 68, 102, 136, 170, 204, 238, 255}, tone);
    return Tone({0, 18, 36, 72, 106, 139, 170, 199, 228, 255}, tone);
  };
  const auto weiMei = [&](int c, int value) {
    const double tone = tianMei(c, value);
    return c == 0 ? Tone({0, 9, 22, 49, 80, 112, 146, 182, 219, 255}, tone)
                  : Tone({0, 25, 45, 80, 112, 143, 172, 201, 229, 255}, tone);
  };
  std::array<Byte, 256> tables[2][3];
  for (int value = 0; value < 256; ++value) {
    Bytes first(4, Byte(value)), second = first;
    P::TianMei(first.data(), 1, 1);
    P::WeiMei(second.data(), 1, 1);
    for (int c = 0; c < 3; ++c) {
      EXPECT_NEAR(tables[0][c][value] = first[c], tianMei(c, value), 2.5) << value;
      EXPECT_NEAR(tables[1][c][value] = second[c], weiMei(c, value), 2.5) << value;
    }
  }
  EXPECT_EQ(tables[0][1][128], tables[0][2][128]);  // in the middle nothing is shifted
  for (int i : {0, 1})
    ExpectTwin(i ? "WeiMei" : "TianMei", With(i ? P::WeiMei : P::TianMei),
               [&, own = tables[i]](const Picture& image, int x, int y) {
                 const Byte* p = &image.bytes[4 * (image.width * y + x)];
                 return std::array{own[0][p[0]], own[1][p[1]], own[2][p[2]]};
               });
}

int SoftLit(int c, int tint, double amount) {
  const int t = (c * tint) >> 8, u = 255 - (((255 - c) * (255 - tint)) >> 8);
  const int s = std::clamp((((u - t) * c) >> 8) + t, 0, 255);
  return int(s * amount + c * (1 - amount));
}

TEST(Beautify, SkinbeautifyTintsWithinItsMask) {
  constexpr int kTint[] = {40, 130, 255};  // blue, green, red
  for (double amount : {0.0, 0.35, 1.0}) {
    const auto tint = [=](const Byte* pixel, auto mix) {
      std::array<Byte, 3> colour;
      for (int c = 0; c < 3; ++c) colour[c] = mix(pixel[c], SoftLit(pixel[c], kTint[c], amount));
      return colour;
    };
    const auto plain = [=](const Picture& image, int x, int y) {
      return tint(&image.bytes[4 * (image.width * y + x)],
                  [](Byte, int mixed) { return Byte(mixed); });
    };
    Byte* const none = nullptr;
    ExpectTwin("all", With(P::Skinbeautify, 255, 130, 40, amount, none), plain);
    const Bytes mask = TiedPicture(97, 61, 5).bytes;  // with many 0 and 255
    EXPECT_NE(std::find(mask.begin(), mask.end(), 0), mask.end());
    EXPECT_NE(std::find(mask.begin(), mask.end(), 255), mask.end());
    ExpectTwin("masked", With(P::Skinbeautify, 255, 130, 40, amount, mask.data()),
               [&](const Picture& image, int x, int y) {
                 const Byte m = mask[image.width * y + x];
                 return tint(&image.bytes[4 * (image.width * y + x)], [=](Byte c, int mixed) {
                   const float w = m / 255.0f;
                   return m == 0 ? c : Byte(int(mixed * w + c * (1 - w)));
                 });
               });
  }
}

TEST(Beautify, SkinbeautifyReportsAndStops) {
  const Bytes mask(4 * 100, 255);
  for (const Byte* m : {static_cast<const Byte*>(nullptr), mask.data()})
    for (int height : {19, 43, 100})
      for (int stopAt : {-1, 0, 2}) {
        const int step = std::max(height / 20, 1);
        std::vector<float> positions;
        for (int row = 0, asked = 0; row < height; row += step, ++asked) {
          if (asked == stopAt) break;
          positions.push_back(float(row) * (float(77 - 7) / float(height)) + 7.0f);
        }
        ProgressRecorder host;
        host.stopAt = stopAt;
        Bytes image(16 * height, 100);
        EXPECT_EQ(P::Skinbeautify(image.data(), 4, height, 200, 200, 200, 1, m, &host, 7, 77),
                  stopAt < 0 ? 1 : 0);
        EXPECT_EQ(host.positions, positions);
        const int done = stopAt < 0 ? height : stopAt * step + 1;
        for (int y = 0; y < height; ++y)
          EXPECT_EQ(image[16 * y], y < done ? SoftLit(100, 200, 1) : 100) << y;
      }
}

}  // namespace
}  // namespace tintwerk::test

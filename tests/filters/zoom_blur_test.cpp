#include "support/operations.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk::test {
namespace {

using P = CPixelProcess;

// What the zoom blur's last step makes of a value, learnt from one opaque pixel.
int ZoomTone(int value) {
  const Byte v = Byte(value), source[4] = {v, v, v, 255};
  Byte target[4] = {};
  P::RadiusZoomBlur(target, source, source, 1, 1, nullptr, 0, 100);
  EXPECT_EQ(target[3], 255);
  return target[0];
}

Bytes PlainZoom(Bytes target, const Bytes& colors, const Bytes& alphas, int width, int height) {
  int tone[256];
  for (int i = 0; i < 256; ++i) tone[i] = ZoomTone(i);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      int dx = (x << 16) - (width << 15), dy = (y << 16) - (height << 15);
      unsigned sums[4] = {};
      int column = x, row = y;
      for (int i = 0; i <= 96; ++i) {
        const int at = 4 * (row * width + column);
        for (int c = 0; c < 3; ++c) sums[c] += colors[at + c] * alphas[at + 3];
        sums[3] += alphas[at + 3];
        dx -= ((dx >> 4) * 100) >> 10;
        dy -= ((dy >> 4) * 100) >> 10;
        column = (dx + (width << 15) + 32768) >> 16;
        row = (dy + (height << 15) + 32768) >> 16;
      }
      Byte* const pixel = &target[4 * (y * width + x)];
      for (int c = 0; c < 3; ++c) pixel[c] = Byte(tone[sums[3] ? sums[c] / sums[3] : pixel[c]]);
      pixel[3] = Byte(sums[3] / 97);
    }
  return target;
}

TEST(RadiusZoomBlur, MatchesTheDefinition) {
  for (auto [width, height] : {std::pair{1, 1}, {1, 50}, {37, 1}, {140, 35}, {61, 80}}) {
    const int w = width, h = height;
    const Bytes target = RandomBytes(4 * w * h, 1), colors = RandomBytes(4 * w * h, 2);
    Bytes alphas = RandomBytes(4 * w * h, 3);
    for (int i = 0; i < w * h; ++i)  // blank on the left, where nothing may be seen
      if (i % w < w / 3 || i % 3 == 0) alphas[4 * i + 3] = 0;
    const Bytes expected = PlainZoom(target, colors, alphas, w, h);
    OnEveryMachine([&] {
      EXPECT_TRUE(expected == Guarded(target,
                                      [&](Byte* to) {
                                        P::RadiusZoomBlur(to, colors.data(), alphas.data(), w, h,
                                                          nullptr, 0, 100);
                                      }))
          << w << " x " << h;
    });
  }
}

TEST(RadiusZoomBlur, ColourGoesThroughAnSCurve) {
  for (auto [in, out] :
       {std::pair{0, 0}, {15, 3}, {64, 29}, {127, 126}, {128, 127}, {192, 228}, {255, 255}})
    EXPECT_EQ(ZoomTone(in), out);
}

TEST(RadiusZoomBlur, RefusesNulls) {
  Byte pixel[64] = {};
  Byte* const none = nullptr;
  ExpectRefusals([&](Byte* target, int w, int h, auto...) {
    return P::RadiusZoomBlur(target, pixel, pixel, w, h, nullptr, 0, 100);
  });
  EXPECT_EQ(P::RadiusZoomBlur(pixel, none, pixel, 1, 1, nullptr, 0, 100), 0);
  EXPECT_EQ(P::RadiusZoomBlur(pixel, pixel, none, 1, 1, nullptr, 0, 100), 0);
}

}  // namespace
}  // namespace tintwerk::test

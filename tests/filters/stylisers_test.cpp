// Stylisers against twins that work one pixel at a time, and the looks that are one filter.
#include <cmath>
#include <set>

#include "frame/random.h"
#include "support/operations.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk::test {
namespace {

using P = CPixelProcess;
using Colour = std::array<int, 3>;  // blue, green, red

int Clamp(double v) {
  return v < 0 ? 0 : v > 255 ? 255 : int(v);
}
Colour Grey(int v) {
  return {v, v, v};
}
Colour At(Picture& image, int x, int y) {
  return {image.At(x, y)[0], image.At(x, y)[1], image.At(x, y)[2]};
}
template <class Change>  // change(value, number of the channel)
Colour Changed(Colour colour, Change change) {
  for (int c = 0; c < 3; ++c) colour[c] = change(colour[c], c);
  return colour;
}

constexpr tagRGBQUAD kInk{10, 200, 90, 0}, kOther{1, 2, 3, 0};
Colour Striped(Picture& image, int x, int y, int size, int opacity, int position) {
  const int period = std::clamp(size, 2, std::max({image.width, image.height, 2}));
  const double step = std::clamp(opacity, 1, 100) * 255.0 / 100.0 / (period - 1.0);
  const int alpha = Clamp(position % period * step), ink[] = {10, 200, 90};
  return Changed(At(image, x, y), [&](int v, int c) { return v + (ink[c] - v) * alpha / 255; });
}

// The bilinear mean with white of no weight outside.
Colour Sample(Picture& image, double sx, double sy) {
  const int ix = int(std::floor(sx)), iy = int(std::floor(sy));
  const double fx = sx - ix, fy = sy - iy;
  std::array<int, 4> taps[4];
  for (int k = 0; k < 4; ++k) {
    const int x = ix + k % 2, y = iy + k / 2;
    const bool inside = x >= 0 && y >= 0 && x < image.width && y < image.height;
    for (int c = 0; c < 4; ++c) taps[k][c] = inside ? image.At(x, y)[c] : c == 3 ? 0 : 255;
  }
  if ((taps[0] == taps[1] && taps[0] == taps[2] && taps[0] == taps[3]) ||
      (fx < 1.1920928955078125e-7 && fy < 1.1920928955078125e-7))
    return {taps[0][0], taps[0][1], taps[0][2]};
  const auto lerp = [&](auto value) {
    const double top = (value(1) - value(0)) * fx + value(0);
    return int(((value(3) - value(2)) * fx + value(2) - top) * fy + top);
  };
  const bool opaque = std::all_of(taps, taps + 4, [](auto& tap) { return tap[3] == 255; });
  const int alpha = lerp([&](int k) { return taps[k][3]; });
  return Changed({}, [&](int, int c) {
    if (opaque) return lerp([&](int k) { return taps[k][c]; });
    if (alpha == 0) return 255;
    return std::min(lerp([&](int k) { return taps[k][c] * taps[k][3]; }) / alpha, 255);
  });
}

int GridShift(int size, int x, int y) {
  const auto divides = [g = std::max(size, 1)](int n) { return n % g == 0; };
  const bool inColumn = !divides(x) && !divides(x + 1), inRow = !divides(y) && !divides(y + 1);
  if (divides(y - 1) && inColumn) return -70;
  if ((divides(y + 2) && inColumn) || (divides(x - 1) && inRow)) return 70;
  return divides(x + 2) && inRow ? -70 : 0;
}

TEST(Stylisers, MatchTheirTwins) {
  for (auto [period, strength] : {std::pair{0, 60}, {7, 100}, {999, -4}}) {
    const int s = period, o = strength;
    ExpectTwin("Blinds down", With(P::Blinds, 0, s, o, 90, 200, 10),
               [=](auto& i, int x, int y) { return Striped(i, x, y, s, o, i.height - y - 1); });
    ExpectTwin("Blinds along", With(P::Blinds, 5, s, o, 90, 200, 10),
               [=](auto& i, int x, int y) { return Striped(i, x, y, s, o, x); });
    ExpectTwin("Istone_Blinds", With(P::Istone_Blinds, P::BlindHorizontal, s, o, kInk),
               [=](auto& i, int x, int y) { return Striped(i, x, y, s, o, y); });
    ExpectTwin("Istone_Blinds along", With(P::Istone_Blinds, P::BlindVertical, s, o, kInk),
               [=](auto& i, int x, int y) { return Striped(i, x, y, s, o, x); });
  }
  for (int size : {-1, 1, 2, 3, 9})
    ExpectTwin("Istone_3DGrid", With(P::Istone_3DGrid, size, 70), [=](auto& i, int x, int y) {
      const int d = GridShift(size, x, y);
      return Changed(At(i, x, y), [=](int v, int) { return Clamp(v + d); });
    });
  for (int amount : {0, 3, -50, INT_MAX})
    ExpectTwin("Istone_Emboss", With(P::Istone_Emboss, amount), [=](auto& i, int x, int y) {
      const auto [b, g, r] = At(i, x, y);
      const auto [b1, g1, r1] = At(i, std::min(x + 1, i.width - 1), y);
      const long d = b + g + r - b1 - g1 - r1;
      return Grey(int(std::clamp(128 + d * amount / 3, 0l, 255l)));
    });
  ExpectTwin("Istone_FillGrid", With(P::Istone_FillGrid, kInk, kOther, 4), [](auto&, int x, int y) {
    return (x / 4 + y / 4) % 2 ? Colour{1, 2, 3} : Colour{10, 200, 90};
  });
  ExpectTwin("Istone_HalftoneM3", With(P::Istone_HalftoneM3), [](auto& i, int x, int y) {
    // Bayer's matrix: bits of x ^ y and y, interleaved from the low end.
    int rank = 0;
    for (int bit = 0; bit < 3; ++bit) rank = rank << 2 | ((x ^ y) >> bit & 1) << 1 | (y >> bit & 1);
    const auto [b, g, r] = At(i, x, y);
    return Grey(rank < ((306 * r + 117 * b + 601 * g) >> 12) ? 255 : 0);
  });
  for (int size : {1, 4, 1000})
    ExpectTwin("Mosaic", With(P::Mosaic, size), [=](auto& i, int x, int y) {
      const int s = std::max(size, 2), left = x / s * s, top = y / s * s;
      const int right = std::min(left + s, i.width);
      const int bottom = std::min(top + s, i.height);
      Colour sums{};
      for (int v = top; v < bottom; ++v)
        for (int u = left; u < right; ++u)
          for (int c = 0; c < 3; ++c) sums[c] += i.At(u, v)[c];
      const int count = (right - left) * (bottom - top);
      return Changed(sums, [=](int sum, int) { return sum / count; });
    });
  for (int amount : {1, 5, -3})
    ExpectTwin("Istone_Illusion", With(P::Istone_Illusion, amount), [=](auto& i, int x, int y) {
      const double w = i.width, h = i.height, D = std::sqrt(w * w + h * h);
      const double e = 3.141592653589793 / amount;
      const double u = (x - w * 0.5) / D, v = (y - h * 0.5) / D;
      const double angle = 2 * std::floor(std::atan2(v, u) * 0.5 / e) * e + e;
      const int half = int(D * 0.5);
      const int px = int(x - std::cos(angle) * half);
      const int py = int(y - std::sin(angle) * half);
      const Colour from = At(i, std::clamp(px, 0, i.width - 1), std::clamp(py, 0, i.height - 1));
      return Changed(At(i, x, y), [&](int k, int c) {
        return Clamp(k + int((from[c] - k) * std::sqrt(u * u + v * v)));
      });
    });
  for (bool sine : {true, false})
    ExpectTwin("Istone_Ripple", With(P::Istone_Ripple, 7, 4, sine), [=](auto& i, int x, int y) {
      const double triangle = std::abs((y % 7) / 7.0 * 4.0 - 2.0) - 1.0;
      const double shift =
          sine ? std::sin(y * 6.283185307179586 / 7) * 4 : std::floor(triangle * 4);
      const double column = std::fmod(x + i.width + shift, i.width);
      return Sample(i, std::clamp(column, 0.0, i.width - 1.0), y);
    });
  for (auto [whirl, pinch] : {std::pair{0.0, 0.0}, {1.5, -0.4}, {-99.0, 0.8}})
    ExpectTwin("Istone_WhirlPinch", With(P::Istone_WhirlPinch, whirl, pinch),
               [turn = std::clamp(whirl, -6.283185307179586, 6.283185307179586), pinch = pinch](
                   auto& i, int x, int y) {
                 const double w = i.width, h = i.height, cx = w * 0.5, cy = h * 0.5;
                 const double sx = w < h ? h / w : 1, sy = h < w ? w / h : 1;
                 const double dx = (x - cx) * sx, dy = (y - cy) * sy;
                 const double d = std::sqrt(dx * dx + dy * dy), f = d / std::max(cx, cy);
                 if (f >= 1 || d < 1.1920928955078125e-7) return At(i, x, y);
                 const double p = std::pow(std::sin(f * 3.141592653589793 / 2), -pinch);
                 const double px = dx * p, py = dy * p, a = (1 - f) * (1 - f) * turn;
                 return Sample(i, (std::cos(a) * px - std::sin(a) * py) / sx + cx,
                               (std::cos(a) * py + std::sin(a) * px) / sy + cy);
               });
}

// The image after an operation or a look.
Bytes After(Picture image, const Call& run) {
  EXPECT_EQ(run(image.bytes.data(), image.width, image.height, nullptr, 0, 100), 1);
  return image.bytes;
}
Bytes After(const Picture& image, EffectEntry* look) {
  return After(image, With(look, nullptr));
}

TEST(Stylisers, NoiseDrawsRedFirst) {
  const Picture image = RandomPicture(30, 4, 1);
  SeedRandom(9);
  const Bytes noisy = After(image, With(P::Noise, 40));
  SeedRandom(9);
  for (int i = 0; i < 120; ++i)
    for (int c : {2, 1, 0}) {
      const int draw = int((float(Random()) / 32767.0f - 0.5) * 40), at = 4 * i + c;
      ASSERT_EQ(noisy[at], Clamp(image.bytes[at] + draw));
    }
}

TEST(Stylisers, RandomOnesStayWithinTheImage) {
  Picture image = RandomPicture(30, 4, 1);
  for (const Call& run :
       {With(P::Noise, 0), With(P::Istone_Shift, 0), With(P::Istone_Noisify, 0, true)})
    EXPECT_EQ(After(image, run), image.bytes);
  const Bytes grey = After({30, 4, Bytes(480, 128)}, With(P::Istone_Noisify, 50, false));
  for (int i = 0; i < 480; i += 4) ASSERT_EQ(Bytes(3, grey[i]), Bytes(&grey[i], &grey[i + 3]));
  EXPECT_GT(std::set<int>(grey.begin(), grey.end()).size(), 10u);
  std::set<Colour> colours;
  for (int i = 0; i < 120; ++i) colours.insert(At(image, i % 30, i / 30));
  for (const Call& run : {With(P::Istone_Splash, 9), With(P::Istone_Shift, 100)}) {
    Picture moved{30, 4, After(image, run)};
    EXPECT_NE(moved, image);
    for (int i = 0; i < 120; ++i) EXPECT_TRUE(colours.contains(At(moved, i % 30, i / 30)));
  }
  for (const Call& run : {With(P::Istone_FillGrid, kInk, kOther, 0), With(P::Istone_Illusion, 0)})
    EXPECT_EQ(run(image.bytes.data(), 30, 4, nullptr, 0, 100), 0);
  EXPECT_EQ(image, RandomPicture(30, 4, 1));
}

TEST(Stylisers, BlindsReportFromZeroAndStop) {
  Picture image = RandomPicture(3, 40, 1);
  ProgressRecorder recorder;
  recorder.stopAt = 2;
  EXPECT_EQ(P::Blinds(image.bytes.data(), 3, 40, 0, 2, 60, 0, 0, 0, &recorder, 50, 90), 1);
  EXPECT_EQ(recorder.positions, (std::vector<float>{0, 2}));
}

TEST(FilterPresets, DoWhatTheyAreNamedFor) {
  const Picture image = RandomPicture(40, 30, 6), flat{9, 7, Bytes(9 * 7 * 4, 90)};
  for (EffectEntry* look : {CEffect::Effect_RouHe, CEffect::Effect_RuiHua})
    EXPECT_EQ(After(flat, look), flat.bytes);
  EXPECT_EQ(After({40, 30, After(image, CEffect::Effect_FanSe)}, CEffect::UnColor), image.bytes);
  const Bytes grey = After(image, CEffect::Effect_HeiBai);
  EXPECT_EQ(grey[0], grey[2]);

  const auto expect = [](EffectEntry* look, const Picture& of, int x, int y, const Bytes& pixel) {
    Picture result{of.width, of.height, After(of, look)};
    EXPECT_EQ(Bytes(result.At(x, y), result.At(x, y) + 4), pixel);
  };
  expect(CEffect::Emboss, flat, 4, 3, {127, 127, 127, 90});
  expect(CEffect::Emboss, flat, 0, 0, {127, 127, 127, 90});
  const Picture middle{2, 1, {127, 127, 127, 5, 128, 128, 128, 5}};
  expect(CEffect::paper, middle, 0, 0, {0, 0, 0, 5});
  expect(CEffect::paper, middle, 1, 0, {255, 255, 255, 5});
  // Every second row from the bottom darkens by 60 percent.
  expect(CEffect::Effect_DianShiXian, flat, 0, 6, {90, 90, 90, 90});
  expect(CEffect::Effect_DianShiXian, flat, 0, 5, {36, 36, 36, 90});
  // A pixel of even tones far from any edge shows the tables alone.
  for (const Bytes& of : {Bytes{64, 70, 54, 56}, {128, 139, 140, 144}, {192, 200, 205, 209}})
    expect(CEffect::Effect_Hdr, {9, 9, Bytes(9 * 9 * 4, of[0])}, 4, 4,
           {of[1], of[2], of[3], of[0]});
  expect(CEffect::Effect_JingDianHDR, {1, 1, {0, 255, 0, 1}}, 0, 0, {66, 254, 14, 1});
  // A grey of each of these levels, which alpha repeats.
  for (const Bytes& of : {Bytes{66, 2, 14, 0},
                          {80, 27, 37, 32},
                          {96, 56, 65, 64},
                          {114, 97, 103, 96},
                          {133, 139, 141, 128},
                          {150, 173, 172, 160},
                          {167, 204, 199, 192},
                          {183, 231, 223, 224},
                          {198, 254, 242, 255}})
    expect(CEffect::Effect_JingDianHDR, {1, 1, Bytes(4, of[3])}, 0, 0, of);

  // An old photograph is brown-toned grey with noise of up to ten levels either way.
  const Bytes old = After(flat, CEffect::Effect_HuaiJiu);
  for (int i = 0; i < 4 * 63; ++i) EXPECT_NEAR(old[i], (Bytes{90, 115, 130, 90})[i % 4], 10);
}

TEST(FilterPresets, VividnessFillsTheRoomThatTheChromaLeaves) {
  Picture dull{64, 64, Bytes(64 * 64 * 4, 255)};
  for (int i = 0; i < 64 * 64; ++i)
    for (int c = 0; c < 3; ++c) dull.bytes[4 * i + c] = Byte(120 + (i * (c + 3)) % 30);
  const auto spread = [](const Bytes& of) {
    int sum = 0;
    for (std::size_t i = 0; i < of.size(); i += 4) sum += std::abs(of[i] - of[i + 2]);
    return sum;
  };
  const int half = spread(After(dull, CEffect::Effect_ZhiNengHuiSe));
  EXPECT_GT(half, 2 * spread(dull.bytes));
  EXPECT_GT(spread(After(dull, CEffect::Effect_QuanCai)), half);
  ProgressRecorder all;
  Bytes pixels = dull.bytes;
  CEffect::Effect_QuanCai(pixels.data(), 64, 64, nullptr, &all, 0, 100);
  ASSERT_FALSE(all.positions.empty());
  EXPECT_EQ(all.positions.back(), 75.0f);
  for (EffectEntry* look : {CEffect::Effect_HuaiJiu, CEffect::Effect_QuanCai}) {
    ProgressRecorder stop;
    stop.stopAt = 0;
    EXPECT_EQ(look(pixels.data(), 64, 64, nullptr, &stop, 0, 100), 0);
  }
}

}  // namespace
}  // namespace tintwerk::test

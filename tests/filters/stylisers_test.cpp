// Stylisers against twins that work one pixel at a time, and the looks that are one filter.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <set>

#include "frame/random.h"
#include "pixel/progress_recorder.h"
#include "support/image_files.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

namespace {

using tintwerk::test::Bytes;
using tintwerk::test::Picture;
using tintwerk::test::RandomPicture;
using P = CPixelProcess;
using Colour = std::array<int, 3>;  // blue, green, red

struct Case {
  const char* name;
  std::function<int(unsigned char*, int, int)> run;
  std::function<Colour(Picture&, int x, int y)> twin;
};

int Clamp(double v) {
  return v < 0 ? 0 : v > 255 ? 255 : int(v);
}
Colour At(Picture& image, int x, int y) {
  return {image.At(x, y)[0], image.At(x, y)[1], image.At(x, y)[2]};
}

Colour Toward(Colour from, Colour to, int alpha) {
  for (int c = 0; c < 3; ++c) from[c] += (to[c] - from[c]) * alpha / 255;
  return from;
}

int Stripe(Picture& image, int size, int opacity, int position) {
  const int period = std::max(std::min(std::max(image.width, image.height), size), 2);
  return Clamp((position % period) *
               (std::clamp(opacity, 1, 100) * 255.0 / 100.0 / (period - 1.0)));
}

// The bilinear mean with white of no weight outside.
Colour Sample(Picture& image, double sx, double sy) {
  const int ix = int(sx) - (sx < 0 ? 1 : 0), iy = int(sy) - (sy < 0 ? 1 : 0);
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
  auto lerp = [&](auto value) {
    const double top = (value(1) - value(0)) * fx + value(0);
    return int(((value(3) - value(2)) * fx + value(2) - top) * fy + top);
  };
  const bool opaque =
      taps[0][3] == 255 && taps[1][3] == 255 && taps[2][3] == 255 && taps[3][3] == 255;
  const int alpha = lerp([&](int k) { return taps[k][3]; });
  Colour result;
  for (int c = 0; c < 3; ++c)
    result[c] = opaque ? lerp([&](int k) { return taps[k][c]; })
                : alpha == 0
                    ? 255
                    : std::min(lerp([&](int k) { return taps[k][c] * taps[k][3]; }) / alpha, 255);
  return result;
}

std::vector<Case> Cases() {
  std::vector<Case> cases;
  const tagRGBQUAD ink{10, 200, 90, 0}, other{1, 2, 3, 0};
  for (auto [size, opacity] : {std::pair{0, 60}, {7, 100}, {999, -4}}) {
    const int s = size, o = opacity;
    cases.push_back({"Blinds down",
                     [=](auto* p, int w, int h) {
                       return P::Blinds(p, w, h, 0, s, o, 90, 200, 10, nullptr, 0, 100);
                     },
                     [=](Picture& i, int x, int y) {
                       return Toward(At(i, x, y), {10, 200, 90}, Stripe(i, s, o, i.height - y - 1));
                     }});
    cases.push_back({"Blinds along",
                     [=](auto* p, int w, int h) {
                       return P::Blinds(p, w, h, 5, s, o, 90, 200, 10, nullptr, 0, 100);
                     },
                     [=](Picture& i, int x, int y) {
                       return Toward(At(i, x, y), {10, 200, 90}, Stripe(i, s, o, x));
                     }});
    cases.push_back({"Istone_Blinds",
                     [=](auto* p, int w, int h) {
                       return P::Istone_Blinds(p, w, h, P::BlindHorizontal, s, o, ink, nullptr, 0,
                                               100);
                     },
                     [=](Picture& i, int x, int y) {
                       return Toward(At(i, x, y), {10, 200, 90}, Stripe(i, s, o, y));
                     }});
  }
  for (int size : {-1, 1, 2, 3, 9})
    cases.push_back({"Istone_3DGrid",
                     [=](auto* p, int w, int h) {
                       return P::Istone_3DGrid(p, w, h, size, 70, nullptr, 0, 100);
                     },
                     [=](Picture& i, int x, int y) {
                       const int g = std::max(size, 1), X = x + 1;
                       int d = 0;
                       if ((y - 1) % g == 0 && (X - 1) % g != 0 && X % g != 0)
                         d = -70;
                       else if (((y + 2) % g == 0 && (X - 1) % g != 0 && X % g != 0) ||
                                ((X - 2) % g == 0 && y % g != 0 && (y + 1) % g != 0))
                         d = 70;
                       else if ((X + 1) % g == 0 && y % g != 0 && (y + 1) % g != 0)
                         d = -70;
                       Colour c = At(i, x, y);
                       for (int& v : c) v = Clamp(v + d);
                       return c;
                     }});
  for (int amount : {0, 3, -50, 2147483647})
    cases.push_back(
        {"Istone_Emboss",
         [=](auto* p, int w, int h) { return P::Istone_Emboss(p, w, h, amount, nullptr, 0, 100); },
         [=](Picture& i, int x, int y) {
           auto sum = [&](int at) {
             const Colour c = At(i, at, y);
             return c[0] + c[1] + c[2];
           };
           const long difference = x + 1 < i.width ? sum(x) - sum(x + 1) : 0;
           const int v = int(std::clamp(128 + difference * amount / 3, 0l, 255l));
           return Colour{v, v, v};
         }});
  cases.push_back({"Istone_FillGrid",
                   [=](auto* p, int w, int h) {
                     return P::Istone_FillGrid(p, w, h, ink, other, 4, nullptr, 0, 100);
                   },
                   [=](Picture&, int x, int y) {
                     return (x / 4 + y / 4) % 2 ? Colour{1, 2, 3} : Colour{10, 200, 90};
                   }});
  cases.push_back(
      {"Istone_HalftoneM3",
       [=](auto* p, int w, int h) { return P::Istone_HalftoneM3(p, w, h, nullptr, 0, 100); },
       [=](Picture& i, int x, int y) {
         // The Bayer matrix from its own rule: bits of x ^ y and y, interleaved from the low end.
         int rank = 0;
         for (int bit = 0; bit < 3; ++bit) {
           const int bx = x >> bit & 1, by = y >> bit & 1;
           rank |= ((bx ^ by) << 1 | by) << (2 * (2 - bit));
         }
         const Colour c = At(i, x, y);
         const int v = rank < ((306 * c[2] + 117 * c[0] + 601 * c[1]) >> 12) ? 255 : 0;
         return Colour{v, v, v};
       }});
  for (int size : {1, 4, 1000})
    cases.push_back(
        {"Mosaic", [=](auto* p, int w, int h) { return P::Mosaic(p, w, h, size, nullptr, 0, 100); },
         [=](Picture& i, int x, int y) {
           const int s = std::max(size, 2), left = x / s * s, top = y / s * s;
           double sums[3] = {}, count = 0;
           for (int v = top; v < std::min(top + s, i.height); ++v)
             for (int u = left; u < std::min(left + s, i.width); ++u, ++count)
               for (int c = 0; c < 3; ++c) sums[c] += i.At(u, v)[c];
           return Colour{int(sums[0] / count), int(sums[1] / count), int(sums[2] / count)};
         }});
  for (int amount : {1, 5, -3})
    cases.push_back({"Istone_Illusion",
                     [=](auto* p, int w, int h) {
                       return P::Istone_Illusion(p, w, h, amount, nullptr, 0, 100);
                     },
                     [=](Picture& i, int x, int y) {
                       const double D =
                           std::sqrt(double(i.width) * i.width + double(i.height) * i.height);
                       const int half = int(D * 0.5);
                       const double e = 3.141592653589793 / amount;
                       const double u = (x - i.width * 0.5) / D, v = (y - i.height * 0.5) / D;
                       const double angle = 2 * std::floor(std::atan2(v, u) * 0.5 / e) * e + e,
                                    r = std::sqrt(u * u + v * v);
                       const Colour from =
                           At(i, std::clamp(int(x - std::cos(angle) * half), 0, i.width - 1),
                              std::clamp(int(y - std::sin(angle) * half), 0, i.height - 1));
                       Colour c = At(i, x, y);
                       for (int k = 0; k < 3; ++k) c[k] = Clamp(c[k] + int((from[k] - c[k]) * r));
                       return c;
                     }});
  for (bool sine : {true, false})
    cases.push_back({"Istone_Ripple",
                     [=](auto* p, int w, int h) {
                       return P::Istone_Ripple(p, w, h, 7, 4, sine, nullptr, 0, 100);
                     },
                     [=](Picture& i, int x, int y) {
                       const double shift =
                           sine ? std::sin(y * 6.283185307179586 / 7) * 4
                                : std::floor((std::abs((y % 7) / 7.0 * 4.0 - 2.0) - 1.0) * 4);
                       const double column = std::fmod(x + i.width + shift, i.width);
                       return Sample(i, std::max(std::min(column, i.width - 1.0), 0.0), y);
                     }});
  for (auto [whirl, pinch] : {std::pair{0.0, 0.0}, {1.5, -0.4}, {-99.0, 0.8}}) {
    const double turn = std::clamp(whirl, -6.283185307179586, 6.283185307179586), squeeze = pinch,
                 raw = whirl;
    cases.push_back(
        {"Istone_WhirlPinch",
         [=](auto* p, int w, int h) {
           return P::Istone_WhirlPinch(p, w, h, raw, squeeze, nullptr, 0, 100);
         },
         [=](Picture& i, int x, int y) {
           const double w = i.width, h = i.height, sx = w < h ? h / w : 1, sy = h < w ? w / h : 1;
           const double cx = w * 0.5, cy = h * 0.5, R = std::max(cx, cy);
           const double dx = (x - cx) * sx, dy = (y - cy) * sy, d = std::sqrt(dx * dx + dy * dy);
           if (d >= R || d < 1.1920928955078125e-7) return At(i, x, y);
           const double f = d / R, p = std::pow(std::sin(f * 3.141592653589793 / 2), -squeeze),
                        a = (1 - f) * (1 - f) * turn;
           const double px = dx * p, py = dy * p;
           return Sample(i, (std::cos(a) * px - std::sin(a) * py) / sx + cx,
                         (std::cos(a) * py + std::sin(a) * px) / sy + cy);
         }});
  }
  return cases;
}

TEST(Stylisers, MatchTheirTwinsAndKeepAlpha) {
  for (const Case& c : Cases())
    for (auto [w, h] : {std::pair{1, 1}, {5, 1}, {33, 20}, {19, 42}}) {
      Picture image = RandomPicture(w, h, w);
      for (std::size_t i = 3; i < image.bytes.size(); i += 4)
        if (image.bytes[i] > 80) image.bytes[i] = 255;
      Picture worked = image;
      ASSERT_EQ(c.run(worked.bytes.data(), w, h), 1) << c.name;
      for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
          ASSERT_EQ(At(worked, x, y), c.twin(image, x, y))
              << c.name << " " << w << "x" << h << " at " << x << "," << y;
          ASSERT_EQ(worked.At(x, y)[3], image.At(x, y)[3]) << c.name;
        }
      Picture untouched = image;
      EXPECT_EQ(c.run(nullptr, w, h), 0) << c.name;
      for (auto [bw, bh] : {std::pair{0, 4}, {4, 0}, {-4, 4}, {4, -4}})
        EXPECT_EQ(c.run(untouched.bytes.data(), bw, bh), 1);
      EXPECT_EQ(untouched, image) << c.name;
    }
}

TEST(Stylisers, RandomOnesDrawInTheirOrder) {
  const Picture image = RandomPicture(30, 4, 1);
  Picture noisy = image;
  tintwerk::SeedRandom(9);
  ASSERT_EQ(P::Noise(noisy.bytes.data(), 30, 4, 40, nullptr, 0, 100), 1);
  tintwerk::SeedRandom(9);
  for (std::size_t i = 0; i < image.bytes.size(); i += 4)
    for (int c : {2, 1, 0}) {
      const int draw = int((float(tintwerk::Random()) / 32767.0f - 0.5) * 40);
      ASSERT_EQ(noisy.bytes[i + c], Clamp(image.bytes[i + c] + draw));
    }
  Picture same = image;
  P::Noise(same.bytes.data(), 30, 4, 0, nullptr, 0, 100);
  P::Istone_Shift(same.bytes.data(), 30, 4, 0, nullptr, 0, 100);
  P::Istone_Noisify(same.bytes.data(), 30, 4, 0, true, nullptr, 0, 100);
  EXPECT_EQ(same, image);

  // Grey noise moves the channels of a pixel alike; scattered and shifted pixels are pixels of the
  // image.
  Picture grey{30, 4, Bytes(480, 128)}, scattered = image, shifted = image;
  P::Istone_Noisify(grey.bytes.data(), 30, 4, 50, false, nullptr, 0, 100);
  for (std::size_t i = 0; i < 480; i += 4)
    ASSERT_TRUE(grey.bytes[i] == grey.bytes[i + 1] && grey.bytes[i] == grey.bytes[i + 2]);
  EXPECT_GT(std::set<int>(grey.bytes.begin(), grey.bytes.end()).size(), 10u);
  P::Istone_Splash(scattered.bytes.data(), 30, 4, 9, nullptr, 0, 100);
  P::Istone_Shift(shifted.bytes.data(), 30, 4, 100, nullptr, 0, 100);
  std::set<Colour> colours;
  Picture source = image;
  for (int i = 0; i < 120; ++i) colours.insert(At(source, i % 30, i / 30));
  for (Picture* moved : {&scattered, &shifted}) {
    EXPECT_NE(*moved, image);
    for (int i = 0; i < 120; ++i) EXPECT_TRUE(colours.contains(At(*moved, i % 30, i / 30)));
  }
  EXPECT_EQ(P::Istone_FillGrid(same.bytes.data(), 30, 4, {}, {}, 0, nullptr, 0, 100), 0);
  EXPECT_EQ(P::Istone_Illusion(same.bytes.data(), 30, 4, 0, nullptr, 0, 100), 0);
  EXPECT_EQ(same, image);
}

TEST(Stylisers, BlindsReportFromZeroAndStop) {
  Picture image = RandomPicture(3, 40, 1);
  tintwerk::ProgressRecorder recorder;
  recorder.stopAt = 2;
  EXPECT_EQ(P::Blinds(image.bytes.data(), 3, 40, 0, 2, 60, 0, 0, 0, &recorder, 50, 90), 1);
  EXPECT_EQ(recorder.positions, (std::vector<float>{0, 2}));
}

TEST(FilterPresets, DoWhatTheyAreNamedFor) {
  auto run = [](EffectEntry* look, Picture& image, CObjProgress* progress = nullptr) {
    return look(image.bytes.data(), image.width, image.height, nullptr, progress, 0, 100);
  };
  const Picture image = RandomPicture(40, 30, 6);
  const Picture flat{9, 7, Bytes(9 * 7 * 4, 90)};
  for (EffectEntry* look : {&CEffect::Effect_RouHe, &CEffect::Effect_RuiHua}) {
    Picture p = flat;
    ASSERT_EQ(run(look, p), 1);
    EXPECT_EQ(p, flat);
  }
  Picture p = flat;
  ASSERT_EQ(run(&CEffect::Emboss, p), 1);
  EXPECT_EQ(At(p, 4, 3), (Colour{127, 127, 127}));
  EXPECT_EQ(At(p, 0, 0), (Colour{127, 127, 127}));
  p = image;
  run(&CEffect::Effect_FanSe, p);
  run(&CEffect::UnColor, p);
  EXPECT_EQ(p, image);
  p = image;
  run(&CEffect::Effect_HeiBai, p);
  EXPECT_EQ(p.bytes[0], p.bytes[2]);
  p = {2, 1, {127, 127, 127, 5, 128, 128, 128, 5}};
  run(&CEffect::paper, p);
  EXPECT_EQ(p.bytes, (Bytes{0, 0, 0, 5, 255, 255, 255, 5}));

  // Every second row from the bottom darkens by 60 percent.
  p = flat;
  run(&CEffect::Effect_DianShiXian, p);
  EXPECT_EQ(p.At(0, 6)[0], 90);
  EXPECT_EQ(p.At(0, 5)[0], 90 - 90 * 153 / 255);

  // A pixel of even tones far from any edge shows the tables alone.
  p = {9, 9, Bytes(9 * 9 * 4, 64)};
  run(&CEffect::Effect_Hdr, p);
  EXPECT_EQ(At(p, 4, 4), (Colour{70, 54, 56}));
  p = {1, 1, {0, 255, 0, 1}};
  run(&CEffect::Effect_JingDianHDR, p);
  EXPECT_EQ(p.bytes[1], 254);

  // An old photograph is brown-toned grey with noise of up to ten levels either way.
  p = flat;
  ASSERT_EQ(run(&CEffect::Effect_HuaiJiu, p), 1);
  for (int i = 0; i < 63; ++i) {
    EXPECT_NEAR(p.bytes[4 * i], 90, 10);
    EXPECT_NEAR(p.bytes[4 * i + 1], 115, 10);
    EXPECT_NEAR(p.bytes[4 * i + 2], 130, 10);
  }
  // Vividness fills the room that the chroma leaves, one look half as much as the other.
  Picture dull{64, 64, Bytes(64 * 64 * 4, 255)};
  for (int i = 0; i < 64 * 64; ++i)
    for (int c = 0; c < 3; ++c)
      dull.bytes[4 * i + c] = static_cast<unsigned char>(120 + (i * (c + 3)) % 30);
  auto spread = [](const Picture& of) {
    int sum = 0;
    for (std::size_t i = 0; i < of.bytes.size(); i += 4)
      sum += std::abs(of.bytes[i] - of.bytes[i + 2]);
    return sum;
  };
  Picture full = dull, half = dull;
  tintwerk::ProgressRecorder all;
  ASSERT_EQ(run(&CEffect::Effect_QuanCai, full, &all), 1);
  ASSERT_EQ(run(&CEffect::Effect_ZhiNengHuiSe, half), 1);
  EXPECT_GT(spread(half), 2 * spread(dull));
  EXPECT_GT(spread(full), spread(half));
  ASSERT_FALSE(all.positions.empty());
  EXPECT_EQ(all.positions.back(), 75.0f);
  for (EffectEntry* look : {&CEffect::Effect_HuaiJiu, &CEffect::Effect_QuanCai}) {
    tintwerk::ProgressRecorder stop;
    stop.stopAt = 0;
    Picture stopped = dull;
    EXPECT_EQ(run(look, stopped, &stop), 0);
  }
}

}  // namespace

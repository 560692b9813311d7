// Painted light: leaks, pictures, the festive frame and the raw masks.
#include "light.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <string_view>
#include <vector>

#include "painting.h"

namespace tintwerk::paint {
namespace {

/// Means over the squares of a grid over the picture, so that grain and single specks do not count.
struct Grid {
  static constexpr int kSide = 40;

  explicit Grid(const Picture& picture) : cells(kSide * kSide) {
    std::vector<int> counts(cells.size());
    for (int y = 0; y < picture.height; ++y)
      for (int x = 0; x < picture.width; ++x) {
        const int cell = y * kSide / picture.height * kSide + x * kSide / picture.width;
        const Pixel& p = picture.At(x, y);
        cells[cell] = cells[cell] + Rgb{double(p.red), double(p.green), double(p.blue)};
        ++counts[cell];
      }
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = (1.0 / counts[i]) * cells[i];
  }

  const Rgb& At(int x, int y) const { return cells[y * kSide + x]; }
  double Light(int x, int y) const {
    return 0.3 * At(x, y).red + 0.6 * At(x, y).green + 0.1 * At(x, y).blue;
  }
  Rgb Mean() const {
    Rgb sum{};
    for (const Rgb& cell : cells) sum = sum + cell;
    return (1.0 / cells.size()) * sum;
  }

  std::vector<Rgb> cells;
};

constexpr const char* kLeaks[] = {"style/Leak1.jpg", "style/Leak6.jpg",  "style/Leak7.jpg",
                                  "style/Leak9.jpg", "style/Leak15.jpg", "style/light-leak-2.jpg",
                                  "style/LL17.png"};

TEST(LightLeaks, AreSoftAndBrightestAtAnEdge) {
  for (const char* name : kLeaks) {
    SCOPED_TRACE(name);
    const Grid leak(Paint(name));
    double middle = 0, brightest = 0;
    int brightX = 0, brightY = 0, dark = 0;
    for (int y = 0; y < Grid::kSide; ++y)
      for (int x = 0; x < Grid::kSide; ++x) {
        const double light = leak.Light(x, y);
        if (light > brightest) brightest = light, brightX = x, brightY = y;
        dark += light < 25;
        if (std::abs(x - 19.5) < 8 && std::abs(y - 19.5) < 8) middle = std::max(middle, light);
      }
    EXPECT_GT(brightest, 90);
    EXPECT_LT(std::min({brightX, 39 - brightX, brightY, 39 - brightY}), 3);
    EXPECT_LT(middle, 60);
    EXPECT_GT(dark, 40 * 40 * 0.55);
    // Warm: on the whole red is the strongest, and blue never far over green.
    EXPECT_GT(leak.Mean().red, leak.Mean().green);
    EXPECT_GT(leak.Mean().red, leak.Mean().blue);
    // The step across a fortieth of the picture. Lamps have an outline, and the burnt end shows the
    // film gate.
    const std::string_view file = name;
    const double most = file == "style/Leak15.jpg" ? 130 : file == "style/LL17.png" ? 125 : 60;
    for (int y = 0; y < Grid::kSide; ++y)
      for (int x = 1; x < Grid::kSide; ++x) {
        ASSERT_LT(std::abs(leak.Light(x, y) - leak.Light(x - 1, y)), most) << x << " " << y;
        ASSERT_LT(std::abs(leak.Light(y, x) - leak.Light(y, x - 1)), most) << y << " " << x;
      }
  }
}

TEST(LightLeaks, DifferClearly) {
  std::vector<Grid> leaks;
  for (const char* name : kLeaks) leaks.emplace_back(Paint(name));
  for (std::size_t a = 0; a < leaks.size(); ++a)
    for (std::size_t b = 0; b < a; ++b) {
      double difference = 0;
      for (int y = 0; y < Grid::kSide; ++y)
        for (int x = 0; x < Grid::kSide; ++x)
          difference += std::abs(leaks[a].Light(x, y) - leaks[b].Light(x, y));
      EXPECT_GT(difference / (40 * 40), 8) << kLeaks[a] << " and " << kLeaks[b];
    }
}

TEST(LightPictures, AreUprightWhereTheirLooksTurnThem) {
  for (const char* name : {"zvtk_fzl_3a.jpg", "zvtk_fzl_4a.jpg", "zvtk_fzl_6a.jpg",
                           "zvkr_festival_3.png", "zvkr_festival_3b.jpg"}) {
    const Picture picture = Paint(name);
    EXPECT_LT(picture.width, picture.height) << name;
  }
}

TEST(LightPictures, KeepTheToneThatTheirBlendExpects) {
  // Means of what is screened on, and of what is blended about middle grey or multiplied.
  const std::map<std::string_view, std::pair<double, double>> tones = {
      {"zvtk_071_b.jpg", {15, 80}},    {"zvtk_fzl_3a.jpg", {10, 70}},
      {"zvtk_fzl_7c.jpg", {1, 40}},    {"zvkr_jj_001.jpg", {20, 90}},
      {"zvkr_jj_004.jpg", {4, 60}},    {"zvtk_fzl_4a.jpg", {95, 160}},
      {"zvtk_fzl_6a.jpg", {120, 175}}, {"zvtk_fzl_7b.jpg", {115, 145}},
      {"zvkr_jj_002.jpg", {120, 136}}, {"sucai12.jpg", {95, 145}},
      {"zvtk_fzl_7a.jpg", {200, 250}}};
  for (const auto& [name, range] : tones) {
    const Rgb mean = Grid(Paint(name)).Mean();
    const double light = 0.3 * mean.red + 0.6 * mean.green + 0.1 * mean.blue;
    EXPECT_GE(light, range.first) << name;
    EXPECT_LE(light, range.second) << name;
  }
}

TEST(Festival, IsClearInTheMiddleAndClosedAtTheRim) {
  const Picture frame = Paint("zvkr_festival_3.png");
  double rim = 0, middle = 0;
  int rimCount = 0, middleCount = 0;
  for (int y = 0; y < frame.height; ++y)
    for (int x = 0; x < frame.width; ++x) {
      const int edge = std::min({x, frame.width - 1 - x, y, frame.height - 1 - y});
      const int alpha = frame.At(x, y).alpha;
      if (edge < 30) rim += alpha, ++rimCount;
      if (edge > 336) {
        ASSERT_EQ(alpha, 0) << x << " " << y;
      }
      if (edge > 240) middle += alpha, ++middleCount;
    }
  EXPECT_GT(rim / rimCount, 180);
  EXPECT_LT(middle / middleCount, 6);
}

TEST(Festival, ColoursThePeopleGentlyAndTheRimStrongly) {
  const Picture colours = Paint("zvkr_festival_3b.jpg");
  const auto saturation = [](const Pixel& p) {
    const double high = std::max({p.red, p.green, p.blue}),
                 low = std::min({p.red, p.green, p.blue});
    return (high - low) / (high + low > 255 ? 510 - high - low : high + low);
  };
  for (const Pixel& p : colours.pixels) ASSERT_TRUE(p.red > p.green && p.green + 12 >= p.blue);
  EXPECT_LT(saturation(colours.At(600, 840)), 0.35);
  EXPECT_GT(saturation(colours.At(4, 840)), 0.5);
}

TEST(RawMasks, ToyLensIsSharpInTheMiddleAndDarkAtTheCorners) {
  const Bytes file = Paint<Bytes>("zvkr_lomo_16.eb");
  ASSERT_EQ(file.size(), 2u * 409600);
  for (int plane = 0; plane < 2; ++plane) {
    const unsigned char* mask = file.data() + plane * 409600;
    EXPECT_EQ(mask[320 * 640 + 320], 255);
    for (int i = 0; i < 320; ++i) {
      // From the centre to a corner and to a side: only down, and a few levels at once.
      for (const int step : {641, 1}) {
        const int fall =
            mask[320 * 640 + 320 + step * i - step * (i > 0)] - mask[320 * 640 + 320 + step * i];
        ASSERT_TRUE(fall >= 0 && fall <= 3) << plane << " " << i;
      }
    }
    for (int i = 0; i < 640 * 640; ++i) ASSERT_EQ(mask[i], mask[640 * 640 - 1 - i]);
  }
  EXPECT_EQ(file[0], 0);        // wholly blurred in the corner
  EXPECT_GT(file[409600], 80);  // and dark, not black
  EXPECT_LT(file[409600], 140);
}

TEST(RawMasks, TunnelIsLightAndStillInTheMiddle) {
  const Bytes file = Paint<Bytes>("zvkr_cy.eb");
  ASSERT_EQ(file.size(), 240u * 240 * 4);
  const auto at = [&](int x, int y, int channel) { return int(file[(y * 240 + x) * 4 + channel]); };
  for (const int channel : {0, 1, 2}) EXPECT_GT(at(120, 120, channel), at(4, 4, channel) + 60);
  EXPECT_GT(at(120, 120, 2), at(120, 120, 0) + 40);  // warm; the bytes are blue, green, red
  EXPECT_EQ(at(120, 120, 3), 0);
  EXPECT_EQ(at(0, 0, 3), 255);
  for (int y = 0; y < 240; ++y)
    for (int x = 1; x < 240; ++x)
      for (int channel = 0; channel < 4; ++channel) {
        ASSERT_LE(std::abs(at(x, y, channel) - at(x - 1, y, channel)), 12) << x << " " << y;
        ASSERT_LE(std::abs(at(y, x, channel) - at(y, x - 1, channel)), 12) << y << " " << x;
      }
}

TEST(Light, LeakIsRedWhenFaintAndPaleWhenStrong) {
  const LeakColour colour{1.8, 0.7, 0.3};
  const Rgb none = colour(0), faint = colour(0.1), strong = colour(4);
  EXPECT_TRUE(none.red == 0 && none.green == 0 && none.blue == 0);
  EXPECT_GT(faint.red, 5 * faint.green);
  EXPECT_GT(faint.green, 3 * faint.blue);
  EXPECT_GT(strong.blue, 0.9);
  EXPECT_LE(strong.red, 1);
}

TEST(Canvas, ClipsDiscsAtItsBorder) {
  Canvas canvas(30, 20);
  for (const double x : {-0.05, 0.75, 1.55})
    for (const double y : {-0.05, 0.5, 1.05}) canvas.Add({x, y, 0.2, {0.5, 0.25, 0}, 0});
  canvas.Add({9, 9, 0.2, {1, 1, 1}, 0});  // far outside
  EXPECT_DOUBLE_EQ(canvas.At(15, 10).red, 0.5);
  EXPECT_DOUBLE_EQ(canvas.At(0, 0).red, 0.5);
  EXPECT_DOUBLE_EQ(canvas.At(29, 19).green, 0.25);
  EXPECT_EQ(canvas.At(7, 5).red, 0);
  const Picture print = canvas.Print(0.05, 1);
  EXPECT_EQ(print.At(7, 5).red, 0);  // no grain on black
  EXPECT_NEAR(print.At(15, 10).red, 128, 60);
}

TEST(Light, IsTheSameWithEveryCompiler) {
  std::uint32_t digest = 0;
  for (const unsigned char byte : Paint<Bytes>("zvkr_cy.eb")) digest = Hash(byte, 0, digest);
  EXPECT_EQ(digest, 2532866400u);
  EXPECT_EQ(Digest(Paint("style/LL17.png")), 1580783427u);
}

}  // namespace
}  // namespace tintwerk::paint

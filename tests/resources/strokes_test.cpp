// Strokes, hatching, and the drawings' grounds that are made of them.
#include "strokes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "painting.h"

namespace tintwerk::paint {
namespace {

constexpr Size kSheet = {150, 100};
constexpr Hatch kHatch{.angle = -45,
                       .sway = 20,
                       .length = 0.3,
                       .width = 0.03,
                       .spacing = 0.05,
                       .pressure = 0.7,
                       .seed = 5};

Canvas Hatched(const Hatch& hatch, Size size = kSheet) {
  Canvas canvas(size);
  canvas.Each([](Rgb& pixel) { pixel = Neutral(1); });
  hatch(canvas, Neutral(0));
  return canvas;
}

double Mean(Canvas canvas) {
  double sum = 0, count = 0;
  canvas.Each([&](Rgb& pixel) { sum += pixel.red, ++count; });
  return sum / count;
}

TEST(Trace, VisitsThePixelsUnderABowedStrokeOnceAndNoneOffTheSheet) {
  for (const double angle : {0.0, 30.0, 90.0, 135.0, -100.0})
    for (const double bow : {-0.1, 0.0, 0.1}) {
      const Stroke stroke{0.75, 0.5, AtAngle(angle), 0.4, 0.06, bow};
      std::set<std::pair<int, int>> seen;
      Trace(stroke, kSheet, [&](int column, int row, double along, double across) {
        EXPECT_TRUE(seen.emplace(column, row).second);
        EXPECT_TRUE(along >= 0 && along <= 1 && across >= -1 && across <= 1);
        // Back from the stroke's own coordinates to the sheet's.
        const double ahead = (along - 0.5) * stroke.length;
        const double bent = bow * (2 * along - 1) * (2 * along - 1);
        const double beside = across * stroke.width / 2 + bent;
        const auto [cosine, sine] = stroke.to;
        EXPECT_NEAR((column + 0.5) / 100, 0.75 + ahead * cosine - beside * sine, 1e-9);
        EXPECT_NEAR((row + 0.5) / 100, 0.5 + ahead * sine + beside * cosine, 1e-9);
      });
      // A bow moves pixels to the side; their number stays.
      EXPECT_NEAR(seen.size(), 40 * 6, 24) << angle << " " << bow;
    }
  for (const auto& [x, y] : {std::pair(0.0, 0.0), {1.5, 1.0}, {-0.1, 0.5}, {0.7, 1.1}, {9.0, 9.0}})
    Trace({x, y, AtAngle(40), 0.5, 0.1, 0.05}, kSheet, [](int column, int row, double, double) {
      EXPECT_TRUE(column >= 0 && column < kSheet.width && row >= 0 && row < kSheet.height);
    });
}

TEST(Hatch, RunsAlongItsAngleAndDarkensWithPressure) {
  for (const double angle : {-45.0, 0.0, 70.0}) {
    Hatch hatch = kHatch;
    hatch.angle = angle;
    hatch.sway = 0;
    const Canvas canvas = Hatched(hatch);
    const Direction to = AtAngle(angle);
    double along = 0, across = 0;
    for (int y = 10; y < 90; ++y)
      for (int x = 10; x < 140; ++x) {
        const auto step = [&](double dx, double dy) {
          const auto& there = canvas.At(int(std::lround(x + 3 * dx)), int(std::lround(y + 3 * dy)));
          return std::abs(there.red - canvas.At(x, y).red);
        };
        along += step(to.cosine, to.sine);
        across += step(-to.sine, to.cosine);
      }
    EXPECT_LT(1.4 * along, across) << angle;
  }
  double before = 1;
  for (const double pressure : {0.2, 0.5, 0.8}) {
    Hatch hatch = kHatch;
    hatch.pressure = pressure;
    const double mean = Mean(Hatched(hatch));
    EXPECT_LT(mean, before - 0.05) << pressure;
    before = mean;
  }
}

TEST(Hatch, LeavesMarginAndRestOfTheSheetBare) {
  Hatch hatch = kHatch;
  hatch.length = 0.1;
  hatch.margin = 0.3;
  const Canvas canvas = Hatched(hatch);
  for (int y = 0; y < 10; ++y)
    for (int x = 0; x < 150; ++x) ASSERT_EQ(canvas.At(x, y).red, 1);
  EXPECT_LT(canvas.At(75, 50).red + canvas.At(76, 52).red + canvas.At(78, 50).red, 2.9);

  Hatch patchy = kHatch;
  patchy.length = 0.05;
  const double whole = 1 - Mean(Hatched(patchy));
  patchy.share = 0.4;
  const double part = 1 - Mean(Hatched(patchy));
  EXPECT_GT(part, 0.1 * whole);
  EXPECT_LT(part, 0.7 * whole);
}

TEST(Hatch, IsTheSameWithEveryCompiler) {
  EXPECT_EQ(Digest(Hatched(kHatch, {60, 40}).Print(0, 1)), 1419990660u);
}

/// The means of squares of 100 pixels in the middle of a ground, where faces are.
std::vector<double> Squares(const Picture& picture) {
  std::vector<double> means;
  for (int top = 250; top < 650; top += 100)
    for (int left = 450; left < 1050; left += 100) {
      double sum = 0;
      for (int y = top; y < top + 100; ++y)
        for (int x = left; x < left + 100; ++x) sum += picture.At(x, y).green;
      means.push_back(sum / 10000);
    }
  return means;
}

TEST(Drawings, AreEvenInTheMiddleAndWhiteAtTheEdge) {
  for (const char* name : {"sucai14.jpg", "sucai15.jpg", "zvkr_LifeSketch_wenli2.jpg"}) {
    SCOPED_TRACE(name);
    const Picture ground = Paint(name);
    const auto [least, most] = std::ranges::minmax(Squares(ground));
    EXPECT_GE(least, 30);
    EXPECT_LE(most - least, 36);
    // But for single strokes that run out over it.
    int white = 0;
    for (const int y : {0, ground.height - 1})
      for (int x = 0; x < ground.width; ++x) white += ground.At(x, y).green > 235;
    EXPECT_GT(white, 0.94 * 2 * ground.width);
  }
}

TEST(Drawings, ColouredPencilsAreNeutralTogether) {
  const Picture pencils = Paint("zvkr_caiqian.jpg");
  double red = 0, green = 0, blue = 0, spread = 0, count = 0;
  for (int y = 250; y < 650; ++y)
    for (int x = 450; x < 1050; ++x, ++count) {
      const Pixel& p = pencils.At(x, y);
      red += p.red, green += p.green, blue += p.blue;
      spread += std::max({p.red, p.green, p.blue}) - std::min({p.red, p.green, p.blue});
    }
  // What a Screen followed by an Overlay leaves alone, and hues about it.
  EXPECT_NEAR(green / count, 75, 5);
  EXPECT_NEAR(red / count, green / count, 4);
  EXPECT_NEAR(blue / count, green / count, 4);
  EXPECT_GT(spread / count, 5);
}

TEST(OilRelief, IsLitPaintWithoutALean) {
  const Picture relief = Paint("sucai22.jpg");
  double sum = 0, squares = 0;
  for (const Pixel& p : relief.pixels) {
    sum += p.green - 128;
    squares += (p.green - 128) * (p.green - 128);
  }
  const double count = double(relief.pixels.size());
  EXPECT_NEAR(sum / count, 0, 1);
  EXPECT_NEAR(std::sqrt(squares / count), 15, 4);
}

}  // namespace
}  // namespace tintwerk::paint

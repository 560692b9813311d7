// Pictures that looks lay over an image: what they leave alone, and what their readers rely on.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "image_writer.h"
#include "light.h"
#include "painting.h"
#include "sheet.h"

namespace tintwerk::paint {
namespace {

Rgb Channels(const Pixel& p) {
  return {double(p.red), double(p.green), double(p.blue)};
}

/// Means over a picture, and over the ellipse in its middle where faces are.
struct Means {
  explicit Means(const Picture& picture) {
    double count = 0;
    for (int y = 0; y < picture.height; ++y)
      for (int x = 0; x < picture.width; ++x) {
        const Rgb pixel = Channels(picture.At(x, y));
        all = all + pixel;
        const double dx = (x + 0.5) / picture.width - 0.5, dy = (y + 0.5) / picture.height - 0.42;
        if (dx * dx + dy * dy > 0.0625) continue;
        calm = calm + pixel;
        ++count;
      }
    all = (1.0 / picture.pixels.size()) * all;
    calm = (1 / count) * calm;
  }

  Rgb all{}, calm{};
};

void ExpectWithin(const Rgb& colour, double low, double high) {
  for (const double v : {colour.red, colour.green, colour.blue}) {
    EXPECT_GE(v, low);
    EXPECT_LE(v, high);
  }
}

TEST(Overlays, KeepTheirShapeAndSpareTheMiddle) {
  constexpr Size kSquare = {1000, 1000};
  const struct {
    const char* name;
    Size size;
    double low, high;  // means of the channels in the middle, in levels
  } pictures[] = {
      // Screened on; the drawings' grounds are grey all over, the sunset and two hazes lighter.
      {"sucai7.jpg", kOdd, 0, 40},
      {"sucai8.jpg", kOdd, 0, 20},
      {"sucai9.jpg", kOdd, 0, 12},
      {"sucai10.jpg", kOdd, 0, 16},
      {"sucai11.jpg", kOdd, 0, 12},
      {"sucai14.jpg", kOdd, 34, 70},
      {"sucai15.jpg", kOdd, 33, 36},
      {"sucai17.jpg", kOdd, 0, 8},
      {"sucai23.jpg", kOdd, 4, 32},
      {"zvkr_bl_a.jpg", kUpright, 0, 40},
      {"zvkr_caiqian.jpg", kLandscape, 67, 83},
      {"zvkr_cl_b.jpg", kLandscape, 0, 26},
      {"zvkr_cl_c.jpg", kUpright, 0, 12},
      {"zvkr_LifeSketch_wenli2.jpg", kLandscape, 40, 62},
      {"zvkr_RainDrop.jpg", kLandscape, 2, 12},
      {"ZVLouguang3.jpg", kLandscape, 0, 1},
      {"zvtk_071_a.jpg", kLandscape, 15, 70},
      // Multiplied on.
      {"style/edgeBurn.jpg", kLandscape, 247, 255},
      {"sucai16.jpg", kOdd, 222, 240},
      {"sucai24.jpg", kOdd, 250, 255},
      {"zvkr_lomo1_2.jpg", kUpright, 246, 255},
      {"zvtk_fzl_8a.jpg", kUpright, 243, 254},
      // Masks.
      {"174mask.jpg", kOdd, 0, 4},
      {"179bb.jpg", kOdd, 0, 16},
      {"style/sucai29.jpg", kSquare, 0, 14},
      // Overlay, Soft Light and Vivid Light; two light up the middle, and what is pink is meant to.
      {"blowout2.jpg", kLandscape, 155, 185},
      {"style/blackboard.jpg", kLandscape, 128, 148},
      {"style/hefeng4.jpg", kLandscape, 128, 142},
      {"style/sucai1.jpg", kLandscape, 132, 150},
      {"style/sucai2.jpg", kUpright, 126, 150},
      {"style/sucai28.jpg", kLandscape, 124, 146},
      {"style/sucai42.jpg", kLandscape, 136, 152},
      {"sucai6.jpg", kOdd, 152, 192},
      {"sucai13.jpg", kOdd, 123, 133},
      {"sucai22.jpg", kOdd, 126, 130},
      {"vignette640.jpg", kLandscape, 140, 152},
      {"xingmang.jpg", kLandscape, 127, 132},
      {"zvkr_bl_b.jpg", kLandscape, 118, 142},
      {"zvkr_fhjr3.jpg", kLandscape, 127, 168},
      {"zvkr_hqc2.jpg", kLandscape, 122, 138},
      {"zvkr_LifeSketch_wenli1.jpg", kLandscape, 123, 133},
      {"zvkr_lomo1_1.jpg", kUpright, 114, 142},
      {"zvkr_lomo4.jpg", kUpright, 112, 144},
      {"ZVLouguang1.jpg", kLandscape, 114, 142},
      {"ZVLouguang2.jpg", kLandscape, 95, 150},
      // Exclusion.
      {"zvkr_hqc1.jpg", kLandscape, 8, 44},
  };
  for (const auto& [name, size, low, high] : pictures) {
    SCOPED_TRACE(name);
    const Picture picture = Paint(name);
    EXPECT_EQ(picture.width, size.width);
    EXPECT_EQ(picture.height, size.height);
    ExpectWithin(Means(picture).calm, low, high);
  }
}

// A file as its reader sees it: JPEG must not carry a light into the edge.
TEST(Overlays, RestExactlyWhereTheImageGoesOnWithoutThem) {
  const struct {
    const char* name;
    int rest;
    bool allSides;  // or just the right and the lower one
  } pictures[] = {
      {"zvkr_cl_b.jpg", 0, false}, {"zvkr_bl_b.jpg", 128, false}, {"style/sucai29.jpg", 255, true}};
  for (const auto& [name, rest, allSides] : pictures) {
    SCOPED_TRACE(name);
    const Picture seen = Decode(EncodeJpeg(Paint(name)));
    const auto expectRest = [&](int x, int y) {
      const Pixel& p = seen.At(x, y);
      ASSERT_TRUE(p.red == rest && p.green == rest && p.blue == rest) << x << " " << y;
    };
    for (int x = 0; x < seen.width; ++x) {
      expectRest(x, seen.height - 1);
      if (allSides) expectRest(x, 0);
    }
    for (int y = 0; y < seen.height; ++y) {
      expectRest(seen.width - 1, y);
      if (allSides) expectRest(0, y);
    }
  }
}

TEST(Overlays, AreGreyWhereAColourWouldStain) {
  for (const char* name : {"174mask.jpg", "style/sucai29.jpg", "sucai13.jpg", "sucai14.jpg",
                           "sucai15.jpg", "sucai19.png", "sucai22.jpg", "vignette640.jpg",
                           "zvkr_LifeSketch_wenli1.jpg", "zvkr_LifeSketch_wenli2.jpg"})
    for (const Pixel& p : Paint(name).pixels)
      ASSERT_TRUE(p.red == p.green && p.blue == p.green) << name;
}

TEST(Overlays, HatchAboutExactlyMiddleGreyAndBurnNothing) {
  for (const char* name : {"sucai13.jpg", "zvkr_LifeSketch_wenli1.jpg"})
    EXPECT_NEAR(Means(Paint(name)).all.green, 128, 0.1) << name;
  // Vivid Light is steep.
  for (const auto& [name, most] : {std::pair("sucai22.jpg", 50), std::pair("zvkr_hqc2.jpg", 24)})
    for (const Pixel& p : Paint(name).pixels)
      ASSERT_LE(std::max({std::abs(p.red - 128), std::abs(p.green - 128), std::abs(p.blue - 128)}),
                most)
          << name;
}

TEST(Overlays, LookAsTheirReadersTakeThem) {
  // Corners dark in the result means bright in the mask, and less so in the middle of the sides.
  const Picture frame = Paint("174mask.jpg");
  EXPECT_GT(frame.At(4, 4).red, 248);
  EXPECT_NEAR(frame.At(4, 501).red, 200, 20);
  EXPECT_NEAR(frame.At(750, 998).red, 200, 20);

  // Green rests, or skin would turn.
  for (const Pixel& p : Paint("zvkr_fhjr3.jpg").pixels) ASSERT_EQ(p.green, 128);

  // The leak ends before the middle; left of it there is light in every row.
  const Picture leak = Paint("ZVLouguang3.jpg");
  for (int y = 0; y < 440; ++y) {
    EXPECT_GT(leak.At(3, y).red, 150);
    for (int x = 675; x < leak.width; ++x) ASSERT_EQ(leak.At(x, y).red, 0) << x << " " << y;
  }

  // Rain: the ground is black, or the brightened image gets a veil.
  const Picture rain = Paint("zvkr_RainDrop.jpg");
  const auto black =
      std::ranges::count_if(rain.pixels, [](const Pixel& p) { return p.green == 0; });
  EXPECT_GT(black, 0.7 * rain.pixels.size());
  EXPECT_GT(std::ranges::max(rain.pixels, {}, &Pixel::green).green, 180);
}

TEST(Overlays, GrowDarkerOrLighterTowardTheRimAsNamed) {
  for (const char* name :
       {"vignette640.jpg", "style/sucai2.jpg", "style/sucai28.jpg", "style/sucai42.jpg",
        "ZVLouguang1.jpg", "sucai24.jpg", "zvkr_lomo1_2.jpg", "style/blackboard.jpg"}) {
    const Picture picture = Paint(name);
    const int x = picture.width / 2, y = picture.height / 2;
    EXPECT_GT(picture.At(x, y).green, picture.At(x / 8, y / 8).green + 40) << name;
    EXPECT_GE(picture.At(x / 8, y / 8).green + 8, picture.At(2, 2).green) << name;
  }
}

TEST(Comic, PanelClearsTheMiddleAndHasNoGreyFringe) {
  const Picture panel = Paint("sucai20.png");
  for (int y = 0; y < panel.height; ++y)
    for (int x = 0; x < panel.width; ++x) {
      const Pixel& p = panel.At(x, y);
      ASSERT_TRUE(p.red == 0 && p.green == 0 && p.blue == 0);
      const double dx = (x + 0.5) / panel.width - 0.5, dy = (y + 0.5) / panel.height - 0.42;
      if (dx * dx + dy * dy < 0.0625) {
        ASSERT_EQ(p.alpha, 0) << x << " " << y;
      }
    }
  for (int x = 0; x < panel.width; ++x) EXPECT_EQ(panel.At(x, 2).alpha, 240);
}

TEST(Comic, ScreenToneIsAnEvenGridOfDots) {
  const Picture tone = Paint("sucai19.png");
  double sum = 0;
  for (const Pixel& p : tone.pixels) sum += p.red;
  EXPECT_NEAR(sum / tone.pixels.size() / 255, 0.72, 0.01);
  const int dot = tone.At(0, 0).red, gap = tone.At(0, 9).red;
  EXPECT_EQ(dot, 0);
  EXPECT_EQ(gap, 255);
}

TEST(Comic, CaptionIsWhiteInkAndNothingAround) {
  const Picture caption = Paint("sucai21.png");
  for (int x = 0; x < caption.width; ++x) {
    EXPECT_EQ(caption.At(x, 0).alpha, 0);
    EXPECT_EQ(caption.At(x, caption.height - 1).alpha, 0);
  }
  EXPECT_EQ(caption.At(250, 90).alpha, 255);
  EXPECT_LT(caption.At(250, 90).red, 40);   // a dot
  EXPECT_GT(caption.At(295, 90).red, 235);  // the paper beside it
}

TEST(TealAndAmber, IsStrengthByAlphaAndColourEverywhere) {
  const Picture picture = Paint("zvkr_fzs.png");
  EXPECT_EQ(picture.At(600, 360).alpha, 0);
  EXPECT_NEAR(picture.At(1077, 2).alpha, 204, 8);
  EXPECT_NEAR(picture.At(2, 360).alpha, 190, 14);
  EXPECT_GT(picture.At(2, 360).red, picture.At(2, 360).blue + 100);
  for (const Pixel& p : picture.pixels) ASSERT_GE(p.green, 55);
}

TEST(Canvas, PrintsNoiseIntoTheTailOfALightAndNoneWhereItRests) {
  Canvas canvas(64, 64);
  for (const double rest : {kScreenRest, kOverlayRest, kMultiplyRest}) {
    const double faint = rest < 1 ? rest + 2.0 / 255 : rest - 2.0 / 255;
    canvas.Fill([&](double x, double) { return Neutral(x < 0.5 ? rest : faint); });
    const Picture print = canvas.Print(0.006, 5, rest);
    std::vector<int> levels;
    for (int y = 0; y < 64; ++y)
      for (int x = 0; x < 64; ++x) {
        const Pixel& p = print.At(x, y);
        ASSERT_TRUE(p.red == p.green && p.blue == p.green);
        if (x >= 32) {
          levels.push_back(p.red);
        } else {
          ASSERT_EQ(p.red, RoundToByte(255 * rest));
        }
      }
    double mean = 0, spread = 0;
    for (const int v : levels) mean += double(v) / levels.size();
    for (const int v : levels) spread += (v - mean) * (v - mean) / levels.size();
    EXPECT_NEAR(mean, 255 * faint, 0.25);
    EXPECT_GT(std::sqrt(spread), 1.1);
  }
}

TEST(RoughEdge, KeepsToTheBorder) {
  const RoughEdge edge{1.5, 0.08, 0.04, 0.02, 3};
  for (double t = 0.005; t < 1; t += 0.01) {
    for (const double inward : {0.0, 0.01}) {
      EXPECT_EQ(edge(inward, t), 1);
      EXPECT_EQ(edge(1.5 - inward, t), 1);
      EXPECT_EQ(edge(1.5 * t, 1 - inward), 1);
    }
    if (t > 0.3 && t < 0.7) {
      EXPECT_EQ(edge(1.5 * t, t), 0);
    }
  }
}

TEST(PencilField, RunsAlongItsAngleAndIsNeutralOnAverage) {
  for (const double angle : {-48.0, 0.0, 44.0}) {
    const PencilField field(angle, 0.05, 0.003, 7);
    const Direction to = AtAngle(angle);
    double sum = 0, along = 0, across = 0;
    int count = 0;
    for (double y = 0.1; y < 0.9; y += 0.0071)
      for (double x = 0.1; x < 0.9; x += 0.0073, ++count) {
        const double here = field(x, y);
        ASSERT_LE(std::abs(here), 1);
        sum += here;
        along += std::abs(field(x + 0.004 * to.cosine, y + 0.004 * to.sine) - here);
        across += std::abs(field(x - 0.004 * to.sine, y + 0.004 * to.cosine) - here);
      }
    EXPECT_NEAR(sum / count, 0, 0.02) << angle;
    EXPECT_LT(3 * along, across) << angle;
  }
}

}  // namespace
}  // namespace tintwerk::paint

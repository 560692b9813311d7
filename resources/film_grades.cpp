// The grades of the film looks, each a file of its own.
#include "cubes.h"
#include "table.h"

namespace tintwerk::paint {
namespace {

// Hues in OKLab, in degrees.
constexpr double kRose = 5;
constexpr double kRed = 29;
constexpr double kOrange = 55;
constexpr double kAmber = 70;
constexpr double kGold = 90;
constexpr double kYellow = 108;
constexpr double kFoliage = 128;
constexpr double kGreen = 145;
constexpr double kTeal = 195;
constexpr double kSky = 240;
constexpr double kBlue = 262;
constexpr double kViolet = 300;
constexpr double kMagenta = 335;

}  // namespace

std::span<const File> FilmGradeFiles() {
  static const File files[] = {
      // A: analogue and warm.
      // A2: a summer roll: golden lights, olive foliage, soft blacks.
      {"style/a2", Cube{kCube16,
                        {.bands = {{.hue = kFoliage, .reach = 50, .shift = -14, .saturation = 0.8},
                                   {.hue = kSky, .reach = 60, .shift = -12, .saturation = 0.85}},
                         .tone = {.exposure = 0.02, .toe = 0.3, .shoulder = 0.35},
                         .ends = {.black = 0.14, .white = 0.97},
                         .saturation = {0.85, 0.9, 0.9},
                         .cast = {{kTeal, 0.02}, {kAmber, 0.022}, {kGold, 0.04}}}}},
      // A3: the same roll left in a drawer: reddish brown shadows, muted colours, dull
      // lights.
      {"style/a3", Cube{kCube16,
                        {.tone = {.exposure = -0.1, .toe = 0.1, .shoulder = 0.3},
                         .ends = {.black = 0.28, .white = 0.92},
                         .saturation = {0.75, 0.75, 0.7},
                         .cast = {{kRed, 0.045}, {kRed, 0.02}, {kOrange, 0.02}}}}},

      // B: black and white.
      // B2: classic, through a yellow filter: long greys, firm blacks.
      {"style/b2", Cube{kCube16,
                        {.filter = Rgb{0.40, 0.52, 0.08},
                         .tone = {.exposure = -0.04, .toe = 0.42, .shoulder = 0.35}}}},
      // B4: dramatic, through a red filter: dark skies, glowing skin.
      {"style/b4", Cube{kCube16,
                        {.filter = Rgb{0.68, 0.26, 0.06},
                         .tone = {.exposure = -0.24, .toe = 0.55, .shoulder = 0.75},
                         .ends = {.black = 0.06}}}},

      // C: vivid.
      // C1: punchy: every hue apart, deep skies, crisp blacks.
      {"style/c1",
       Cube{kCube16,
            {.bands = {{.hue = kRed, .reach = 40, .shift = 6},
                       {.hue = kFoliage, .reach = 45, .shift = 6, .saturation = 1.15},
                       {.hue = kSky, .reach = 70, .saturation = 1.1, .exposure = -0.06}},
             .tone = {.exposure = 0.02, .toe = 0.55, .shoulder = 0.3},
             .density = 0.3,
             .saturation = {1.25, 1.35, 1.2}}}},

      // G: portraits.
      // G2: soft contrast, peach lights, quiet surroundings.
      {"style/g2", Cube{kCube16,
                        {.bands = {{.hue = kFoliage, .reach = 60, .saturation = 0.83},
                                   {.hue = kBlue, .reach = 60, .saturation = 0.6}},
                         .tone = {.exposure = 0.12, .toe = 0.2, .shoulder = 0.3},
                         .ends = {.black = 0.06, .white = 0.98},
                         .saturation = {0.9, 0.95, 0.95},
                         .cast = {{kRose, 0.01}, {kRed, 0.018}, {kOrange, 0.035}},
                         .skin = 0.45}}},

      // H: clean hues.
      // H2: bright and clear with a breath of rose, greens fresh.
      {"style/h2", Cube{kCube16,
                        {.bands = {{.hue = kFoliage, .reach = 45, .shift = 8, .saturation = 1.1}},
                         .tone = {.exposure = 0.18, .toe = 0.35, .shoulder = 0.3},
                         .saturation = {1.05, 1.1, 1.05},
                         .cast = {{kBlue, 0.01}, {kMagenta, 0.012}, {kMagenta, 0.008}}}}},
      // H5: crisp and cool, whites like porcelain.
      {"style/H5", Cube{kCube16,
                        {.bands = {{.hue = kRed, .reach = 60, .saturation = 0.85}},
                         .tone = {.exposure = 0.06, .toe = 0.6, .shoulder = 0.35},
                         .saturation = {0.85, 0.87, 0.88},
                         .cast = {{kBlue, 0.02}, {kSky, 0.024}, {kSky, 0.018}}}}},

      // K: slide film.
      // K1: dense and rich, glowing reds, deep skies, warm whites.
      {"style/k1",
       Cube{kCube16,
            {.bands = {{.hue = kRed, .reach = 40, .shift = 5, .saturation = 1.1},
                       {.hue = kSky, .reach = 75, .saturation = 1.1, .exposure = -0.08}},
             .tone = {.exposure = -0.14, .toe = 0.5, .shoulder = 0.35},
             .density = 0.7,
             .saturation = {1.1, 1.2, 1.1},
             .cast = {{kBlue, 0.008}, {kGold, 0.016}, {kAmber, 0.022}}}}},

      // M: matte and moody.
      // M4: cool matte: slate shadows, colours held back.
      {"style/m4", Cube{kCube16,
                        {.tone = {.exposure = -0.14, .toe = 0.35, .shoulder = 0.25},
                         .ends = {.black = 0.25, .white = 0.92},
                         .saturation = {0.55, 0.62, 0.6},
                         .cast = {{kBlue, 0.03}, {kSky, 0.014}, {kTeal, 0.008}},
                         .skin = 0.6}}},
      // M5: warm matte: brown shadows, dusky lights.
      {"style/m5", Cube{kCube16,
                        {.bands = {{.hue = kFoliage, .reach = 60, .shift = -18, .saturation = 0.6},
                                   {.hue = kBlue, .reach = 70, .saturation = 0.55}},
                         .tone = {.exposure = -0.18, .toe = 0.4, .shoulder = 0.15},
                         .ends = {.black = 0.22, .white = 0.9},
                         .saturation = {0.8, 0.85, 0.8},
                         .cast = {{kOrange, 0.03}, {kAmber, 0.022}, {kAmber, 0.03}}}}},

      // P: instant film.
      // P1: fresh from the camera: creamy whites, blue in the shadows, soft.
      {"style/p1", Cube{kCube16,
                        {.contrast = {0.1, 0.05, -0.3},
                         .tone = {.exposure = 0.08, .toe = 0.25, .shoulder = 0.4},
                         .ends = {.black = 0.18, .white = 0.97},
                         .saturation = {0.85, 0.92, 0.85},
                         .cast = {{kBlue, 0.03}, {kTeal, 0.008}, {kGold, 0.035}}}}},
      // P2: past its date: greenish yellow over everything.
      {"style/p2", Cube{kCube16,
                        {.tone = {.exposure = -0.02, .toe = 0.2, .shoulder = 0.4},
                         .ends = {.black = 0.17, .white = 0.94},
                         .saturation = {0.75, 0.75, 0.8},
                         .cast = {{kGreen, 0.02}, {kYellow, 0.04}, {kYellow, 0.045}}}}},
      // P4: cyan shadows and pink lights.
      {"style/p4", Cube{kCube16,
                        {.bands = {{.hue = kBlue, .reach = 60, .shift = -15, .saturation = 0.85}},
                         .tone = {.exposure = 0.04, .toe = 0.3, .shoulder = 0.4},
                         .ends = {.black = 0.22, .white = 0.97},
                         .saturation = {0.8, 0.85, 0.8},
                         .cast = {{210, 0.05}, {kRose, 0.004}, {kRose, 0.035}},
                         .skin = 0.4}}},
      // P5: a blue veil, as from a cold day.
      {"style/p5", Cube{kCube16,
                        {.tone = {.exposure = 0.02, .toe = 0.1, .shoulder = 0.3},
                         .ends = {.black = 0.28, .white = 0.94},
                         .saturation = {0.6, 0.7, 0.65},
                         .cast = {{242, 0.038}, {255, 0.035}, {kSky, 0.01}},
                         .skin = 0.65}}},
      // P6: taken in the heat: magenta shadows, red mids, yellow lights, strong colours.
      {"style/p6", Cube{kCube16,
                        {.tone = {.exposure = 0.0, .toe = 0.45, .shoulder = 0.4},
                         .ends = {.black = 0.1, .white = 0.97},
                         .saturation = {1.1, 1.1, 0.95},
                         .cast = {{kMagenta, 0.045}, {kRed, 0.03}, {kGold, 0.045}},
                         .skin = 0.4}}},
      // P7: peel-apart: pale colours, pearly lights.
      {"style/p7", Cube{kCube16,
                        {.tone = {.exposure = 0.28, .toe = 0.3, .shoulder = 0.45},
                         .ends = {.black = 0.16, .white = 0.97},
                         .saturation = {0.55, 0.58, 0.5},
                         .cast = {{kViolet, 0.015}, {kRose, 0.008}, {kGold, 0.012}}}}},
      // P9: by night: violet shadows, lamp-gold lights.
      {"style/p9", Cube{kCube16,
                        {.tone = {.exposure = -0.15, .toe = 0.5, .shoulder = 0.3},
                         .ends = {.black = 0.15, .white = 0.95},
                         .saturation = {0.85, 0.95, 1},
                         .cast = {{kViolet, 0.05}, {kViolet, 0.01}, {kGold, 0.06}},
                         .skin = 0.6}}},

      // S: the studio.
      // S4: high key, airy and neutral.
      {"style/s4", Cube{kCube16,
                        {.tone = {.exposure = 0.44, .toe = 0.45, .shoulder = 0.4},
                         .saturation = {0.95, 0.95, 0.85},
                         .cast = {{kBlue, 0.006}, {kBlue, 0.004}, {0, 0}}}}},

      // SE: seasons.
      // SE1: spring: light, young greens, a breath of blossom.
      {"style/se1",
       Cube{kCube16,
            {.bands =
                 {{.hue = kFoliage, .reach = 50, .shift = 8, .saturation = 1.1, .exposure = 0.15},
                  {.hue = kBlue, .reach = 55, .shift = -12, .saturation = 0.9, .exposure = 0.15}},
             .tone = {.exposure = 0.24, .toe = 0.3, .shoulder = 0.2},
             .ends = {.black = 0.14, .white = 0.99},
             .saturation = {0.85, 0.85, 0.85},
             .cast = {{165, 0.018}, {kFoliage, 0.006}, {kRose, 0.018}}}}},
      // SE2: autumn: leaves turned to amber, deep and warm.
      {"style/se2", Cube{kCube16,
                         {.bands = {{.hue = 122, .reach = 55, .shift = -32, .saturation = 1.05},
                                    {.hue = kBlue, .reach = 70, .saturation = 0.65}},
                          .tone = {.exposure = -0.08, .toe = 0.5, .shoulder = 0.25},
                          .density = 0.35,
                          .ends = {.black = 0.04, .white = 0.98},
                          .saturation = {1, 1.1, 1},
                          .cast = {{kRed, 0.012}, {kAmber, 0.025}, {kGold, 0.03}}}}},

      // T: teal and faded.
      // T1: teal shadows against warm skin, as on the big screen.
      {"style/t1",
       Cube{kCube16,
            {.bands = {{.hue = kBlue, .reach = 75, .shift = -6, .saturation = 0.9, .exposure = 0.2},
                       {.hue = kFoliage, .reach = 55, .shift = 14, .saturation = 0.6}},
             .tone = {.exposure = -0.06, .toe = 0.55, .shoulder = 0.35},
             .ends = {.black = 0.08, .white = 0.98},
             .saturation = {1, 1, 1},
             .cast = {{210, 0.05}, {205, 0.014}, {kOrange, 0.03}},
             .skin = 0.7}}},
      // T2: cold water: teal through and through.
      {"style/t2", Cube{kCube16,
                        {.bands = {{.hue = kOrange, .reach = 70, .saturation = 0.88}},
                         .tone = {.exposure = -0.04, .toe = 0.3, .shoulder = 0.35},
                         .ends = {.black = 0.15, .white = 0.95},
                         .saturation = {0.7, 0.7, 0.65},
                         .cast = {{205, 0.036}, {204, 0.055}, {222, 0.018}},
                         .skin = 0.8}}},
      // T3: green-teal fade, nearly bleached.
      {"style/t3", Cube{kCube16,
                        {.tone = {.exposure = 0.02, .toe = 0.25, .shoulder = 0.2},
                         .ends = {.black = 0.32, .white = 0.93},
                         .saturation = {0.4, 0.45, 0.5},
                         .cast = {{184, 0.035}, {170, 0.015}, {kYellow, 0.015}},
                         .skin = 0.6}}},

      // X: faded black and white.
      // X3: neutral, chalk and charcoal.
      {"style/x3", Cube{kCube16,
                        {.filter = Rgb{0.25, 0.60, 0.15},
                         .tone = {.exposure = 0.04, .toe = 0.35, .shoulder = 0.35},
                         .ends = {.black = 0.3, .white = 0.95}}}},
      // X4: a warm print: brown blacks, ivory whites.
      {"style/x4", Cube{kCube16,
                        {.filter = Rgb{0.45, 0.45, 0.10},
                         .tone = {.exposure = 0.03, .toe = 0.4, .shoulder = 0.4},
                         .ends = {.black = 0.22, .white = 0.96},
                         .cast = {{kOrange, 0.03}, {kAmber, 0.03}, {kGold, 0.03}}}}},
      // X6: selenium: dark, violet-blue shadows.
      {"style/x6", Cube{kCube16,
                        {.filter = Rgb{0.15, 0.50, 0.35},
                         .tone = {.exposure = -0.06, .toe = 0.5, .shoulder = 0.35},
                         .ends = {.black = 0.18, .white = 0.94},
                         .cast = {{270, 0.036}, {285, 0.02}, {kBlue, 0.004}}}}},

      // Black and white as an eye sees brightness, luminous and open.
      {"style/gray", Cube{kCube16,
                          {.filter = Rgb{0.2126, 0.7152, 0.0722},
                           .tone = {.exposure = 0.18, .toe = 0.1, .shoulder = 0.1}}}},

      // The seventies: orange-brown, blues gone cyan, blacks faded.
      {"style/pomelo19",
       Cube{
           kCube16,
           {.bend = {0.12, 0, -0.22},
            .bands = {{.hue = kBlue, .reach = 70, .shift = -22, .saturation = 0.8, .exposure = 0.1},
                      {.hue = kFoliage, .reach = 50, .shift = -12, .saturation = 0.75}},
            .tone = {.exposure = -0.06, .toe = 0.25, .shoulder = 0.3},
            .ends = {.black = 0.21, .white = 0.94},
            .saturation = {0.9, 0.95, 0.9},
            .cast = {{kOrange, 0.025}, {65, 0.03}, {kGold, 0.028}},
            .skin = 0.4}}},

      // Times of day and weather.
      // Morning light: pale gold, long soft tones.
      {"171", Cube{kCube17,
                   {.tone = {.exposure = 0.28, .toe = 0.25, .shoulder = 0.35},
                    .ends = {.black = 0.12, .white = 0.98},
                    .saturation = {0.75, 0.8, 0.75},
                    .cast = {{kSky, 0.014}, {kGold, 0.024}, {kGold, 0.05}}}}},
      // Jade: cool green mids, clear and quiet.
      {"181", Cube{kCube17,
                   {.bands = {{.hue = kFoliage, .reach = 60, .shift = 12, .saturation = 0.85},
                              {.hue = kRed, .reach = 50, .saturation = 0.85}},
                    .tone = {.exposure = 0.04, .toe = 0.3, .shoulder = 0.3},
                    .ends = {.black = 0.04, .white = 0.98},
                    .saturation = {0.8, 0.8, 0.8},
                    .cast = {{165, 0.03}, {160, 0.032}, {150, 0.016}}}}},
      // Bright sun: sunlit and warm, colours at their fullest.
      {"178", Cube{kCube17,
                   {.bands = {{.hue = kYellow, .reach = 45, .saturation = 1.1, .exposure = 0.1},
                              {.hue = kSky, .reach = 75, .shift = 4, .saturation = 1.1}},
                    .tone = {.exposure = 0.26, .toe = 0.55, .shoulder = 0.3},
                    .density = 0.25,
                    .saturation = {1.2, 1.28, 1.15},
                    .cast = {{kBlue, 0.008}, {kGold, 0.03}, {kGold, 0.035}}}}},
      // Fresh and cool: as after rain, cyan lights.
      {"style/pomelo3",
       Cube{kCube4,
            {.bands = {{.hue = kFoliage, .reach = 60, .shift = 4, .saturation = 0.8},
                       {.hue = kRed, .reach = 50, .saturation = 0.9}},
             .tone = {.exposure = 0.2, .toe = 0.4, .shoulder = 0.3},
             .ends = {.black = 0.03, .white = 1},
             .saturation = {0.95, 0.92, 0.85},
             .cast = {{kSky, 0.02}, {230, 0.025}, {215, 0.024}},
             .skin = 0.6}}},
      // Moonlight: a blue night, colours asleep.
      {"284", Cube{kCube17,
                   {.bands = {{.hue = kOrange, .reach = 80, .saturation = 0.55}},
                    .tone = {.exposure = -0.3, .toe = 0.4, .shoulder = -0.05},
                    .ends = {.black = 0.08, .white = 0.93},
                    .saturation = {0.4, 0.45, 0.45},
                    .cast = {{kBlue, 0.045}, {257, 0.05}, {kSky, 0.03}},
                    .skin = 0.45}}},
      // Sunrise: violet-blue shadows, orange-pink lights.
      {"180", Cube{kCube17,
                   {.tone = {.exposure = 0.0, .toe = 0.3, .shoulder = 0.35},
                    .ends = {.black = 0.07, .white = 0.98},
                    .saturation = {0.9, 1, 1},
                    .cast = {{280, 0.06}, {0, 0.02}, {52, 0.06}},
                    .skin = 0.4}}},

      // Kitchen and garden.
      // Afternoon tea: amber light through a window, greens gone quiet.
      {"style/pomelo10",
       Cube{kCube4,
            {.bands = {{.hue = kFoliage, .reach = 65, .shift = -10, .saturation = 0.5},
                       {.hue = kBlue, .reach = 75, .saturation = 0.4}},
             .tone = {.exposure = 0.02, .toe = 0.4, .shoulder = 0.35},
             .ends = {.black = 0.05, .white = 0.97},
             .saturation = {0.85, 0.85, 0.8},
             .cast = {{kRed, 0.015}, {58, 0.04}, {kAmber, 0.04}},
             .skin = 0.45}}},
      // Honey bean: golden honey in the lights, bean-paste rose in the shadows.
      {"170", Cube{kCube17,
                   {.tone = {.exposure = 0.06, .toe = 0.2, .shoulder = 0.3},
                    .ends = {.black = 0.17, .white = 0.97},
                    .saturation = {0.8, 0.82, 0.9},
                    .cast = {{kRose, 0.05}, {20, 0.03}, {kGold, 0.06}},
                    .skin = 0.4}}},
      // Latte: beige and milk, little colour.
      {"167", Cube{kCube17,
                   {.tone = {.exposure = 0.16, .toe = 0.1, .shoulder = 0.25},
                    .ends = {.black = 0.23, .white = 0.97},
                    .saturation = {0.45, 0.45, 0.42},
                    .cast = {{kOrange, 0.025}, {kAmber, 0.032}, {kAmber, 0.028}},
                    .skin = 0.3}}},
      // Cookie: golden brown and crisp.
      {"169", Cube{kCube17,
                   {.bands = {{.hue = kBlue, .reach = 75, .saturation = 0.5},
                              {.hue = kFoliage, .reach = 55, .shift = -22}},
                    .tone = {.exposure = -0.1, .toe = 0.5, .shoulder = 0.4},
                    .ends = {.black = 0, .white = 0.98},
                    .saturation = {1, 1, 0.9},
                    .cast = {{kOrange, 0.02}, {78, 0.055}, {kGold, 0.05}},
                    .skin = 0.45}}},
      // Cocoa: dark chocolate, low key.
      {"283", Cube{kCube17,
                   {.bands = {{.hue = kBlue, .reach = 80, .saturation = 0.4}},
                    .tone = {.exposure = -0.26, .toe = 0.45, .shoulder = 0.05},
                    .ends = {.black = 0.11, .white = 0.94},
                    .saturation = {0.7, 0.75, 0.7},
                    .cast = {{40, 0.035}, {50, 0.035}, {kAmber, 0.03}},
                    .skin = 0.45}}},
      // Hourglass: dry sand, bleached by the sun.
      {"183", Cube{kCube17,
                   {.bands = {{.hue = kFoliage, .reach = 60, .shift = -14, .saturation = 0.9}},
                    .tone = {.exposure = 0.14, .toe = 0.35, .shoulder = 0.2},
                    .ends = {.black = 0.06, .white = 0.97},
                    .saturation = {0.42, 0.48, 0.48},
                    .cast = {{kGold, 0.02}, {kGold, 0.05}, {kGold, 0.045}},
                    .skin = 0.3}}},
      // Parchment: almost one colour, yellow-brown, soft as an old map.
      {"182", Cube{kCube17,
                   {.tone = {.exposure = 0.06, .toe = 0.1, .shoulder = 0.3},
                    .ends = {.black = 0.26, .white = 0.94},
                    .saturation = {0.2, 0.22, 0.2},
                    .cast = {{60, 0.05}, {80, 0.06}, {kGold, 0.065}},
                    .skin = 0.2}}},
      // Picnic: lively grass, warm skin, light shadows.
      {"166",
       Cube{kCube17,
            {.bands =
                 {{.hue = kFoliage, .reach = 50, .shift = -4, .saturation = 1.2, .exposure = 0.15},
                  {.hue = kRed, .reach = 40, .saturation = 1.05}},
             .tone = {.exposure = 0.12, .toe = -0.3, .shoulder = 0.3},
             .saturation = {1.05, 1.1, 1.05},
             .cast = {{kGreen, 0.016}, {kYellow, 0.016}, {kGold, 0.02}}}}},
  };
  return files;
}

}  // namespace tintwerk::paint

// What cubes do to charts, where faults can be measured that photographs only show now and then.
#pragma once

#include "cubes.h"

namespace tintwerk::paint {

/// A colour of the wheel of six corners as HSV tells it, channels 0..255.
/// @param turn 0 up to 6
Rgb Wheel(double turn, double saturation, double value);

/// The worst that a cube does to lines from muted to pure colours of all hues, to greys and to
/// skin. Chroma and hues are measured from what the cube makes of greys: so a cast over everything
/// counts neither as colour nor as a hue.
struct ChartReading {
  double loss = 0;      // of chroma, OKLab x 100, below its peak on the line
  double ring = 0;      // the same in percent of the peak, of colours that are more than a tint
  double swing = 0;     // degrees between the outermost hues of a line
  double lineStep = 0;  // levels of the result for a level of the colour
  double greyStep = 0;  // likewise on the ramp of greys
  int crushed = 0;      // levels of grey within 0.6 L* of black
  int burnt = 0;        // and of white
  int turnedSkin = 0;   // tones of kSkinTones that are skin no more: violet, green or blue
};
ChartReading ReadCharts(const Cube& cube);

/// Six depths of skin, each rosy, neutral and olive.
inline constexpr Rgb kSkinTones[] = {
    {250, 224, 214}, {246, 222, 200}, {240, 218, 186}, {236, 196, 180}, {230, 190, 160},
    {222, 186, 148}, {210, 160, 140}, {206, 158, 124}, {198, 156, 114}, {176, 122, 102},
    {170, 120, 88},  {164, 120, 80},  {134, 88, 72},   {128, 84, 60},   {122, 84, 54},
    {88, 56, 46},    {82, 54, 38},    {78, 54, 34}};

}  // namespace tintwerk::paint

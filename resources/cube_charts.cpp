// tintwerk-cube-charts: what the film looks do to charts, where their faults can be measured.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <numbers>
#include <string>
#include <vector>

#include "colour_difference.h"
#include "cubes.h"
#include "noise.h"
#include "table.h"

namespace {

using namespace tintwerk::paint;

/// A colour of the wheel of six corners, as HSV tells it.
Rgb Wheel(double turn, double saturation, double value) {
  const auto channel = [&](double offset) {
    const double k = std::fmod(turn + offset, 6);
    return 255 * value * (1 - saturation * std::clamp(std::min(k, 4 - k), 0.0, 1.0));
  };
  return {channel(5), channel(3), channel(1)};
}

double LargestStep(const Rgb& one, const Rgb& other) {
  return std::max({std::abs(one.red - other.red), std::abs(one.green - other.green),
                   std::abs(one.blue - other.blue)});
}

/// A direction in degrees, -180..180.
double Angle(double a, double b) {
  return std::atan2(b, a) * 180 / std::numbers::pi;
}

OkLab Perceived(const Rgb& channels) {
  return ToOkLab(Linear({channels.red / 255, channels.green / 255, channels.blue / 255}));
}

// Six depths of skin, each rosy, neutral and olive.
constexpr Rgb kSkin[] = {{250, 224, 214}, {246, 222, 200}, {240, 218, 186}, {236, 196, 180},
                         {230, 190, 160}, {222, 186, 148}, {210, 160, 140}, {206, 158, 124},
                         {198, 156, 114}, {176, 122, 102}, {170, 120, 88},  {164, 120, 80},
                         {134, 88, 72},   {128, 84, 60},   {122, 84, 54},   {88, 56, 46},
                         {82, 54, 38},    {78, 54, 34}};

class Look {
 public:
  explicit Look(const File& file) : recipe(CubeOf(file)), cube_(recipe()) {
    for (int v = 0; v < 256; ++v) greys.push_back((*this)(Rgb{double(v), double(v), double(v)}));
    for (const Rgb& grey : greys) neutral_.push_back(Perceived(grey));
  }

  Rgb operator()(const Rgb& colour) const { return ThroughCube(cube_, recipe.layout, colour); }

  /// A colour of the result, measured from what the look makes of the grey that ends up as light:
  /// so a cast over everything counts neither as colour nor as a hue.
  OkLab FromOwnGrey(const Rgb& result) const {
    const OkLab colour = Perceived(result);
    const auto above = std::lower_bound(
        neutral_.begin() + 1, neutral_.end() - 1, colour.lightness,
        [](const OkLab& grey, double lightness) { return grey.lightness < lightness; });
    const auto below = above - 1;
    const double t = std::clamp(
        (colour.lightness - below->lightness) / std::max(above->lightness - below->lightness, 1e-6),
        0.0, 1.0);
    return {colour.lightness, colour.a - Lerp(below->a, above->a, t),
            colour.b - Lerp(below->b, above->b, t)};
  }

  const Cube& recipe;
  std::vector<Rgb> greys;

 private:
  Picture cube_;
  std::vector<OkLab> neutral_;
};

/// The worst over the lines from muted to pure colours.
struct Lines {
  double loss = 0;   // of chroma, OKLab x 100, below its peak on the line
  double ring = 0;   // the same in percent of the peak, of colours that are more than a tint
  double swing = 0;  // degrees between the outermost hues of a line
  double step = 0;   // levels of the result for a level of the colour
};

void Measure(const Look& look, const Rgb& muted, const Rgb& pure, Lines& worst) {
  constexpr double kTint = 5;
  const int steps = static_cast<int>(std::ceil(LargestStep(muted, pure)));
  double peak = 0, first = 0, low = 0, high = 0;
  bool hasHue = false;
  Rgb before = look(muted);
  for (int i = 0; i <= steps; ++i) {
    const double t = double(i) / steps;
    const Rgb result = look({Lerp(muted.red, pure.red, t), Lerp(muted.green, pure.green, t),
                             Lerp(muted.blue, pure.blue, t)});
    worst.step = std::max(worst.step, LargestStep(result, before));
    before = result;
    const OkLab c = look.FromOwnGrey(result);
    const double chroma = 100 * std::hypot(c.a, c.b);
    peak = std::max(peak, chroma);
    worst.loss = std::max(worst.loss, peak - chroma);
    if (peak > kTint) worst.ring = std::max(worst.ring, 100 * (peak - chroma) / peak);
    if (chroma < kTint) continue;
    if (!hasHue) first = Angle(c.a, c.b);
    hasHue = true;
    const double turn = std::remainder(Angle(c.a, c.b) - first, 360.0);
    low = std::min(low, turn);
    high = std::max(high, turn);
  }
  worst.swing = std::max(worst.swing, high - low);
}

Lines MeasureLines(const Look& look) {
  constexpr int kHues = 72;
  Lines worst;
  for (int hue = 0; hue < kHues; ++hue) {
    const double turn = 6.0 * hue / kHues;
    Measure(look, Wheel(turn, 0.6, 0.5), Wheel(turn, 1, 1), worst);
    Measure(look, Wheel(turn, 0.2, 1), Wheel(turn, 1, 1), worst);
    Measure(look, Wheel(turn, 0.2, 0.75), Wheel(turn, 1, 0.75), worst);
  }
  return worst;
}

/// Skin tones that are skin no more: violet, green or blue rather than pink to yellow.
int TurnedSkin(const Look& look) {
  return static_cast<int>(std::ranges::count_if(kSkin, [&](const Rgb& skin) {
    const OkLab c = Perceived(look(skin));
    const double hue = Angle(c.a, c.b);
    return std::hypot(c.a, c.b) > 0.015 && (hue < 10 || hue > 105);
  }));
}

double LStar(const Rgb& channels) {
  return ToCieLab({channels.red / 255, channels.green / 255, channels.blue / 255}).lightness;
}

}  // namespace

int main() {
  std::puts(
      "loss    chroma lost on the way from muted to pure colours, OKLab x 100\n"
      "ring    the same in percent of the peak\n"
      "swing   hues of such a line, degrees\n"
      "grey    largest step on the grey ramp, levels\n"
      "line    largest step on a line of colours, levels\n"
      "black   levels within 0.6 L* of black; white likewise\n"
      "skin    tones of 18 that are skin no more\n\n"
      "look             loss  ring swing  grey  line black white  skin  verdict");
  int faulty = 0;
  for (const File& file : FilmGradeFiles()) {
    const Look look(file);
    const Lines lines = MeasureLines(look);
    double greyStep = 0;
    for (int v = 1; v < 256; ++v)
      greyStep = std::max(greyStep, LargestStep(look.greys[v], look.greys[v - 1]));
    const double black = LStar(look.greys.front()), white = LStar(look.greys.back());
    const auto crushed =
        std::ranges::count_if(look.greys, [&](const Rgb& c) { return LStar(c) < black + 0.6; });
    const auto burnt =
        std::ranges::count_if(look.greys, [&](const Rgb& c) { return LStar(c) > white - 0.6; });
    const int skin = look.recipe.grade.filter ? 0 : TurnedSkin(look);

    // Faded looks may lose chroma; the cells of cubes of 16 nodes that end short of white make a
    // whole cell white.
    const bool fades = look.recipe.grade.ends.black >= 0.15;
    std::string verdict;
    const auto judge = [&](bool fault, const char* name) {
      if (fault) verdict += verdict.empty() ? name : std::string(" ") + name;
    };
    judge(lines.loss > 1.5 && !fades, "loss");
    judge(lines.ring > 15, "ring");
    judge(lines.swing > 40, "swing");
    judge(greyStep > 2.5, "grey");
    judge(lines.step > 4.5, "line");
    judge(crushed > 10, "black");
    judge(burnt > 20, "white");
    judge(skin > 0, "skin");
    faulty += !verdict.empty();
    std::printf("%-15s %5.2f %5.0f %5.0f %5.2f %5.2f %5d %5d %5d  %s\n", file.name.c_str(),
                lines.loss, lines.ring, lines.swing, greyStep, lines.step, int(crushed), int(burnt),
                skin, verdict.empty() ? "good" : verdict.c_str());
  }
  std::printf("\n%d of %zu miss an aim\n", faulty, FilmGradeFiles().size());
}

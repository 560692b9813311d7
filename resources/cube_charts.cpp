// tintwerk-cube-charts: what the film looks do to charts.
#include <cstdio>
#include <string>

#include "charts.h"
#include "table.h"

namespace {

using namespace tintwerk::paint;

std::string Verdict(const Grade& grade, const ChartReading& reading) {
  std::string verdict;
  const auto judge = [&](bool fault, const char* name) {
    if (fault) verdict += verdict.empty() ? name : std::string(" ") + name;
  };
  const bool fades = grade.ends.black >= 0.15;  // and may lose chroma
  judge(reading.loss > 1.5 && !fades, "loss");
  judge(reading.ring > 15, "ring");
  judge(reading.swing > 40, "swing");
  judge(reading.greyStep > 2.5, "grey");
  judge(reading.lineStep > 4.5, "line");
  judge(reading.crushed > 10, "black");
  judge(reading.burnt > 20, "white");  // cubes that end at 240 make 16 levels white
  judge(reading.turnedSkin > 0 && !grade.filter, "skin");
  return verdict;
}

}  // namespace

int main() {
  std::puts(
      "loss   chroma lost on the way from muted to pure colours, OKLab x 100\n"
      "ring   the same in percent of the peak\n"
      "swing  hues of such a line, degrees\n"
      "line   largest step on it, levels\n"
      "grey   largest step on the grey ramp, levels\n"
      "black  levels within 0.6 L* of black; white likewise\n"
      "skin   tones of 18 that are skin no more\n\n"
      "look             loss  ring swing  line  grey black white  skin  verdict");
  int faulty = 0;
  for (const File& file : FilmGradeFiles()) {
    const Cube& cube = CubeOf(file);
    const ChartReading r = ReadCharts(cube);
    const std::string verdict = Verdict(cube.grade, r);
    faulty += !verdict.empty();
    std::printf("%-15s %5.2f %5.0f %5.0f %5.2f %5.2f %5d %5d %5d  %s\n", file.name.c_str(), r.loss,
                r.ring, r.swing, r.lineStep, r.greyStep, r.crushed, r.burnt, r.turnedSkin,
                verdict.empty() ? "good" : verdict.c_str());
  }
  std::printf("\n%d of %zu miss an aim\n", faulty, FilmGradeFiles().size());
}

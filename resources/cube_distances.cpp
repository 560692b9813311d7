// tintwerk-cube-distances: how different the film looks are on photographs.
#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "colour_difference.h"
#include "cubes.h"
#include "table.h"
#include "tintwerk/platform.h"

namespace {

using namespace tintwerk::paint;

/// An even sample of a picture's pixels, row by row and column by column; empty if it cannot be
/// read.
std::vector<Rgb> SamplePicture(const char* path) {
  std::wstring wide(std::mbstowcs(nullptr, path, 0) + 1, L'\0');
  std::mbstowcs(wide.data(), path, wide.size());
  Gdiplus::Bitmap bitmap(wide.c_str());
  Gdiplus::BitmapData data;
  std::vector<Rgb> sample;
  if (bitmap.LockBits(nullptr, Gdiplus::ImageLockModeRead, Gdiplus::PixelFormat32bppARGB, &data) !=
      Gdiplus::Ok)
    return sample;
  constexpr double kWanted = 20000;
  const double pixels = double(data.Width) * data.Height;
  const unsigned step = std::max(1u, unsigned(std::lround(std::sqrt(pixels / kWanted))));
  const auto* first = static_cast<const unsigned char*>(data.Scan0);
  for (unsigned y = step / 2; y < data.Height; y += step)
    for (unsigned x = step / 2; x < data.Width; x += step) {
      const unsigned char* p = first + 4 * (std::size_t(y) * data.Width + x);
      sample.push_back({double(p[2]), double(p[1]), double(p[0])});
    }
  bitmap.UnlockBits(&data);
  return sample;
}

std::vector<CieLab> Graded(const Picture& cube, const CubeLayout& layout,
                           const std::vector<Rgb>& sample) {
  std::vector<CieLab> graded;
  graded.reserve(sample.size());
  for (const Rgb& colour : sample) {
    const Rgb c = ThroughCube(cube, layout, colour);
    graded.push_back(ToCieLab({c.red / 255, c.green / 255, c.blue / 255}));
  }
  return graded;
}

double MeanDifference(const std::vector<CieLab>& one, const std::vector<CieLab>& other) {
  double sum = 0;
  for (std::size_t i = 0; i < one.size(); ++i) sum += ColourDifference(one[i], other[i]);
  return sum / one.size();
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fputs("usage: tintwerk-cube-distances PHOTO...\n", stderr);
    return 2;
  }
  std::setlocale(LC_CTYPE, "");
  const auto files = FilmGradeFiles();
  const std::size_t looks = files.size();
  std::vector<Picture> cubes;
  for (const File& file : files) cubes.push_back(CubeOf(file)());

  // Each photograph has the same weight. The last place of a row is the distance to the original.
  const std::size_t photos = count - 1;
  std::vector<double> distances(looks * (looks + 1));
  for (std::size_t photo = 0; photo < photos; ++photo) {
    const std::vector<Rgb> sample = SamplePicture(arguments[1 + photo]);
    if (sample.empty()) {
      std::fprintf(stderr, "tintwerk-cube-distances: cannot read %s\n", arguments[1 + photo]);
      return 1;
    }
    std::vector<std::vector<CieLab>> graded;
    for (std::size_t i = 0; i < looks; ++i)
      graded.push_back(Graded(cubes[i], CubeOf(files[i]).layout, sample));
    graded.emplace_back();
    for (const Rgb& c : sample)
      graded.back().push_back(ToCieLab({c.red / 255, c.green / 255, c.blue / 255}));
#pragma omp parallel for schedule(dynamic)
    for (std::size_t i = 0; i < looks; ++i)
      for (std::size_t j = i + 1; j <= looks; ++j)
        distances[i * (looks + 1) + j] += MeanDifference(graded[i], graded[j]) / photos;
  }

  struct Pair {
    double distance;
    std::size_t one, other;
  };
  std::vector<Pair> pairs;
  for (std::size_t i = 0; i < looks; ++i)
    for (std::size_t j = i + 1; j < looks; ++j)
      pairs.push_back({distances[i * (looks + 1) + j], i, j});
  std::ranges::sort(pairs, {}, &Pair::distance);
  std::printf("Mean CIEDE2000 over %zu photographs, closest pairs of %zu:\n", photos, pairs.size());
  for (std::size_t i = 0; i < std::min<std::size_t>(20, pairs.size()); ++i)
    std::printf("%6.2f  %s  %s\n", pairs[i].distance, files[pairs[i].one].name.c_str(),
                files[pairs[i].other].name.c_str());
  std::printf("Median %.2f, widest %.2f.\n\nDistance to the original:\n",
              pairs[pairs.size() / 2].distance, pairs.back().distance);
  for (std::size_t i = 0; i < looks; ++i)
    std::printf("%6.2f  %s\n", distances[i * (looks + 1) + looks], files[i].name.c_str());
  std::printf("\nMinimum %.2f\n", pairs.front().distance);
}

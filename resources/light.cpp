#include "light.h"

#include <cmath>

namespace tintwerk::paint {

double Develop(double exposure) {
  // Close to 1 - e^-x, without the library's function for it.
  const double x = exposure;
  return 1 - 1 / (1 + x * (1 + x * (0.5 + x / 6)));
}

Rgb LeakColour::operator()(double exposure) const {
  return {Develop(red * exposure), Develop(green * exposure * std::sqrt(exposure)),
          Develop(blue * exposure * exposure)};
}

Canvas::Canvas(int width, int height)
    : width_(width), height_(height), light_(std::size_t(width) * height) {}

void Canvas::Add(const Disc& disc) {
  Around(disc.x, disc.y, disc.radius, [&](Rgb& light, double dx, double dy) {
    // The outline is a tenth of the radius wide.
    const double place = std::sqrt(dx * dx + dy * dy) / disc.radius;
    if (place >= 1) return;
    const double inside = 1 - SmoothStep(0.88, 1, place);
    const double share = 1 - disc.rim * (1 - SmoothStep(0.55, 0.95, place));
    light = light + (inside * share) * disc.colour;
  });
}

void Canvas::AddBlob(double x, double y, double radius, const Rgb& colour) {
  Around(x, y, radius, [&](Rgb& light, double dx, double dy) {
    light = light + Blob((dx * dx + dy * dy) / (radius * radius)) * colour;
  });
}

void Canvas::AddSpeck(Dice& dice, double x, double y, double radius, const Rgb& colour) {
  for (int blob = 0; blob < 3; ++blob) {
    const double across = dice.Between(-0.5, 0.5) * radius;
    const double down = dice.Between(-0.5, 0.5) * radius;
    AddBlob(x + across, y + down, dice.Between(0.6, 1) * radius, 0.5 * colour);
  }
}

namespace {

/// The sum of four even numbers, nearly a bell curve of width 1 about 0.
double Bell(std::uint32_t random) {
  int sum = -510;
  for (int byte = 0; byte < 32; byte += 8) sum += random >> byte & 255;
  return sum / 148.0;
}

}  // namespace

Picture Canvas::Print(double grain, std::uint32_t seed, double rest) const {
  Picture picture(width_, height_);
  for (int row = 0; row < height_; ++row)
    for (int column = 0; column < width_; ++column) {
      const Rgb& light = At(column, row);
      // What is grey stays grey; the noise of a colour is partly each channel's own, or JPEG would
      // show blocks of hue.
      const std::uint32_t random = Hash(column, row, seed);
      const double shared = Bell(random);
      const bool grey = light.red == light.green && light.green == light.blue;
      const auto print = [&](double v, int channel) {
        v = std::clamp(v, 0.0, 1.0);
        const double noise = grey ? shared : 0.8 * shared + 0.6 * Bell(Hash(random + channel));
        // It is whole a level and a half from the ground, so that the dark tail of a light has it.
        return RoundToByte(255 * (v + grain * noise * std::min(1.0, 170 * std::abs(v - rest))));
      };
      picture.At(column, row) = {print(light.red, 1), print(light.green, 2), print(light.blue, 3)};
    }
  return picture;
}

}  // namespace tintwerk::paint

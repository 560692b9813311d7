// What every painter makes.
#pragma once

#include <cmath>
#include <cstddef>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace tintwerk::paint {

/// One pixel with straight alpha, in the order of a PNG's bytes.
struct Pixel {
  unsigned char red = 0;
  unsigned char green = 0;
  unsigned char blue = 0;
  unsigned char alpha = 255;
};

constexpr Pixel Grey(unsigned char value) {
  return {value, value, value, 255};
}

/// Opaque black until it is painted; rows packed and top-down.
struct Picture {
  Picture(int width, int height)
      : width(width), height(height), pixels(static_cast<std::size_t>(width) * height) {}

  Pixel& At(int x, int y) { return pixels[static_cast<std::size_t>(y) * width + x]; }
  const Pixel& At(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }

  int width;
  int height;
  std::vector<Pixel> pixels;
};

using Bytes = std::vector<unsigned char>;

/// A picture that is encoded as its name tells, or the bytes of a file as they are.
using Painted = std::variant<Picture, Bytes>;

/// A support file: its path below the folder `Effects`, whose extension tells the format, and what
/// paints it.
struct File {
  std::string name;
  std::function<Painted()> paint;
};

/// The nearest byte, halves up, held in 0..255. The allowance puts a half that came out of the
/// arithmetic a hair too low on the side where exact arithmetic has it.
inline unsigned char RoundToByte(double value) {
  if (value <= 0) return 0;
  if (value >= 255) return 255;
  return static_cast<unsigned char>(std::floor(value + 0.5 + 1e-9));
}

}  // namespace tintwerk::paint

#include "look_function.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "resources.h"

namespace {

using Bytes = std::vector<unsigned char>;

class Trial {
 public:
  Trial(const Look& look, const std::filesystem::path& resources)
      : look_(look), resources_(resources), root_(resources.wstring()) {}

  // Colours in rows of `width`, which divides their number, through the look.
  Bytes operator()(Bytes pixels, int width) {
    const int height = static_cast<int>(pixels.size() / 4 / width);
    if (!look_.apply(pixels.data(), width, height, root_.data(), nullptr, 0, 100))
      throw std::runtime_error(std::string(look_.name) + " failed; " + WhyLooksFail(resources_));
    return pixels;
  }

  const std::filesystem::path& Resources() const { return resources_; }

 private:
  const Look& look_;
  const std::filesystem::path& resources_;
  std::wstring root_;
};

// All colours of these channel values, red running fastest.
Bytes Lattice(const std::vector<int>& values) {
  Bytes colours;
  colours.reserve(4 * values.size() * values.size() * values.size());
  for (const int blue : values)
    for (const int green : values)
      for (const int red : values)
        for (const int byte : {blue, green, red, 255})
          colours.push_back(static_cast<unsigned char>(byte));
  return colours;
}

// The pixels of these places, in their order.
Bytes Pick(const Bytes& pixels, const std::vector<std::uint32_t>& places) {
  Bytes picked(4 * places.size());
  for (std::size_t i = 0; i < places.size(); ++i)
    std::copy_n(&pixels[4 * places[i]], 4, &picked[4 * i]);
  return picked;
}

// Tries a look on the same colours in another order and shape, and in other company.
void RequireFunctionOfColour(const Look& look, Trial& trial) {
  const auto refuse = [&](const char* reason) {
    throw std::runtime_error(std::string(look.name) +
                             " cannot become a cube: what it makes of a pixel " + reason);
  };
  constexpr int kSide = 18;
  std::vector<int> values(kSide);
  for (int i = 0; i < kSide; ++i) values[i] = 15 * i;
  const Bytes colours = Lattice(values);
  std::vector<std::uint32_t> shuffled(colours.size() / 4), middle;
  std::iota(shuffled.begin(), shuffled.end(), 0u);
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
  for (const std::uint32_t i : shuffled) {
    const auto* pixel = &colours[4 * std::size_t{i}];
    if (std::all_of(pixel, pixel + 3, [](int value) { return value >= 60 && value <= 195; }))
      middle.push_back(i);
  }
  const Bytes result = trial(colours, kSide * kSide);
  if (trial(colours, kSide * kSide) != result) refuse("differs from run to run");
  if (trial(Pick(colours, shuffled), kSide) != Pick(result, shuffled))
    refuse("depends on where it lies, or on its neighbours");
  if (trial(Pick(colours, middle), 10) != Pick(result, middle))
    refuse("depends on the other colours of the picture");
  if (result == colours)  // some looks leave the picture alone without their file, and call it done
    throw std::runtime_error(std::string(look.name) + " changes nothing; " +
                             WhyLooksFail(trial.Resources()));
}

}  // namespace

Cube CubeOf(const Look& look, int size, const std::filesystem::path& resources) {
  Trial trial(look, resources);
  RequireFunctionOfColour(look, trial);
  // Pixels are bytes: a node between two of them is interpolated.
  std::vector<int> values;
  const auto place = [=](int node) { return node * 255.0 / (size - 1); };
  for (int node = 0; node < size; ++node)
    for (const double value : {std::floor(place(node)), std::ceil(place(node))})
      if (values.empty() || value > values.back()) values.push_back(static_cast<int>(value));

  const int side = static_cast<int>(values.size());
  const Bytes result = trial(Lattice(values), side * side);

  // Each node from the eight byte colours around it.
  const auto index = [&](double value) {
    return std::lower_bound(values.begin(), values.end(), static_cast<int>(value)) - values.begin();
  };
  Cube cube;
  cube.size = size;
  for (int b = 0; b < size; ++b)
    for (int g = 0; g < size; ++g)
      for (int r = 0; r < size; ++r) {
        Colour sum{};
        for (int corner = 0; corner < 8; ++corner) {
          double weight = 1;
          std::size_t at = 0;
          const int node[] = {r, g, b};
          for (int c = 2; c >= 0; --c) {
            const double value = place(node[c]), low = std::floor(value);
            const bool far = corner >> c & 1;
            weight *= far ? value - low : 1 - (value - low);
            at = at * side + index(far ? std::ceil(value) : low);
          }
          for (int c = 0; c < 3; ++c)
            sum[c] += static_cast<float>(weight * result[4 * at + 2 - c] / 255);
        }
        cube.nodes.push_back(sum);
      }
  return cube;
}

int LargestError(const Look& look, const Cube& cube, const std::filesystem::path& resources) {
  constexpr int kSide = 128;
  Bytes colours(4 * kSide * kSide);
  std::mt19937 random(2);
  for (unsigned char& byte : colours) byte = static_cast<unsigned char>(random());
  const Bytes result = Trial(look, resources)(colours, kSide);
  int largest = 0;
  for (std::size_t i = 0; i < colours.size(); i += 4) {
    const auto channel = [&](int c) { return static_cast<float>(colours[i + 2 - c]) / 255; };
    const Colour value =
        ValueAt(cube, {channel(0), channel(1), channel(2)}, Interpolation::Tetrahedral);
    for (int c = 0; c < 3; ++c) {
      const auto level = static_cast<int>(std::lround(std::clamp(value[c], 0.0f, 1.0f) * 255));
      largest = std::max(largest, std::abs(level - result[i + 2 - c]));
    }
  }
  return largest;
}

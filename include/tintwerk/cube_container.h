// The file that holds a colour cube: the length of an image file, then that file, scrambled.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tintwerk {

/// Scrambles the image file of a cube container in place, or restores it: the operation is its own
/// inverse. It is an XOR of every 32-bit word with a key; the one to three bytes left at the end
/// are combined with the high bytes of the key.
inline void ScrambleCube(std::span<unsigned char> image) {
  constexpr std::uint32_t key = 0x5d7e21c6;
  constexpr auto byte = [](int place) { return static_cast<unsigned char>(key >> 8 * place); };
  const std::size_t tail = image.size() % 4;
  const std::size_t words = image.size() - tail;
  for (std::size_t i = 0; i < words; i += 4)
    for (int place = 0; place < 4; ++place) image[i + place] ^= byte(place);
  if (tail == 1) {
    image[words] ^= byte(3);
  } else if (tail > 1) {
    image[words] ^= byte(2);
    image[words + 1] ^= byte(3);
    if (tail == 3) image[words + 2] ^= byte(1);
  }
}

/// Makes the container of a cube.
/// @param image a lossless image file of less than 2^31 bytes
inline std::vector<unsigned char> PackCube(std::span<const unsigned char> image) {
  const auto length = static_cast<std::uint32_t>(image.size());
  std::vector<unsigned char> file(4 + image.size());
  for (int place = 0; place < 4; ++place)
    file[place] = static_cast<unsigned char>(length >> 8 * place);
  std::copy(image.begin(), image.end(), file.begin() + 4);
  ScrambleCube(std::span(file).subspan(4));
  return file;
}

}  // namespace tintwerk

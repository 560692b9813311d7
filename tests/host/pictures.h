// Pictures to run the program on, and what it should make of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>
#include <vips/vips8>

namespace host_test {

// Interleaved bytes of a decoded picture.
struct Decoded {
  int width = 0, height = 0, bands = 0;
  std::vector<std::uint8_t> bytes;

  std::vector<int> At(int x, int y) const;
  bool operator==(const Decoded&) const = default;
};

// Decodes a file as it stands; throws if it is damaged or cut short.
Decoded Decode(const std::string& path);

// Random colours in smooth waves, so that lossy formats keep them about.
vips::VImage Waves(int width, int height, int bands = 3);

vips::VImage Uniform(int width, int height, const std::vector<double>& colour);

// What Effect_80S makes of a picture of 3 or 4 bands, straight from the library.
Decoded LookOf(Decoded picture);

double MeanDifference(const Decoded& a, const Decoded& b);

// A JPEG whose EXIF says that it lies on its side, names its camera "Testcam" and carries a
// thumbnail in which the bytes "STALE-THUMBNAIL" stand.
std::string SidewaysJpeg(const vips::VImage& picture);

}  // namespace host_test

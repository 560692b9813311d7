// What colour the skin of a picture is, and how much of each pixel is skin. Both are decided by red
// and blue alone.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "frame/material.h"
#include "frame/parallel.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

struct Rectangle {
  std::int64_t left, top, width, height;
};

struct ColourSums {
  std::uint64_t blue = 0, green = 0, red = 0, count = 0;
};

// Sums the pixels of a rectangle whose colour counts: accepts(red, blue).
template <class Accepts>
ColourSums SumColours(const unsigned char* pixels, std::int64_t imageWidth, Rectangle area,
                      const Accepts& accepts) {
  constexpr std::int64_t kBands = 64, kRun = 1 << 16;  // 32 bits hold the sums of a run
  std::array<ColourSums, kBands> bands;
  ParallelFor(kBands, [=, sums = bands.data()](std::int64_t band) {
    ColourSums own;
    for (std::int64_t y = area.height * band / kBands; y < area.height * (band + 1) / kBands; ++y)
      for (std::int64_t x = 0; x < area.width; x += kRun) {
        const unsigned char* const run = pixels + 4 * (imageWidth * (area.top + y) + area.left + x);
        const int length = static_cast<int>(std::min(kRun, area.width - x));
        std::uint32_t blueSum = 0, greenSum = 0, redSum = 0, count = 0;
        for (int i = 0; i < length; ++i) {
          std::uint32_t word;
          std::memcpy(&word, run + 4 * i, 4);
          const std::uint32_t blue = word & 255, green = word >> 8 & 255, red = word >> 16 & 255;
          const std::uint32_t all =
              accepts(static_cast<int>(red), static_cast<int>(blue)) ? ~0u : 0;
          blueSum += blue & all;
          greenSum += green & all;
          redSum += red & all;
          count -= all;
        }
        own.blue += blueSum;
        own.green += greenSum;
        own.red += redSum;
        own.count += count;
      }
    sums[band] = own;
  });
  ColourSums total;
  for (const ColourSums& band : bands) {
    total.blue += band.blue;
    total.green += band.green;
    total.red += band.red;
    total.count += band.count;
  }
  return total;
}

int MeanLuminance(const ColourSums& sums) {
  const float luminance =
      (static_cast<float>(sums.red) * 0.3f + static_cast<float>(sums.green) * 0.59f +
       static_cast<float>(sums.blue) * 0.11f) /
      static_cast<float>(sums.count);
  return static_cast<int>(luminance);
}

// Without a face: dark pictures accept nearly any reddish pixel, bright ones only strong red.
int LikenessThreshold(int luminance) {
  return luminance >= 90 ? 170 : luminance >= 65 ? luminance + 70 : luminance;
}

// A rectangle must end before the far edges.
bool IsInside(const Rectangle& face, int width, int height) {
  return face.width >= 1 && face.height >= 1 && face.left >= 0 && face.top >= 0 &&
         face.left + face.width < width && face.top + face.height < height;
}

// How much of a pixel is skin, before softening, by red and blue.
using MaskTable = std::array<unsigned char, 65536>;

MaskTable MakeMaskTable(int averageRed, int averageBlue) {
  MaskTable table;
  for (int red = 0; red < 256; ++red)
    for (int blue = 0; blue < 256; ++blue) {
      const int row = std::clamp(2 * (red + 128 - averageRed), 0, 255);
      const int value = std::max(row - (std::max(blue - averageBlue, 0) >> 1), 0);
      table[256 * red + blue] = static_cast<unsigned char>(value > 160  ? 255
                                                           : value < 90 ? 0
                                                                        : value + 30);
    }
  return table;
}

int MaskRadius(int width, int height) {
  const int side = std::min(width, height);
  return side < 200 ? 7 : side < 500 ? 8 : 10;
}

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

void SFDSP::InitAvgFaceSkin(int& red, int& green, int& blue, const unsigned char* pixels, int width,
                            int height, bool useFaceRect, int faceX, int faceY, int faceWidth,
                            int faceHeight) {
  red = 160, green = 130, blue = 126;
  if (!pixels || PixelCount(width, height).value_or(0) == 0) return;

  const Rectangle all = {0, 0, width, height}, face = {faceX, faceY, faceWidth, faceHeight};
  const int luminance =
      MeanLuminance(SumColours(pixels, width, all, [](int, int) { return true; }));
  const bool hasFace = useFaceRect && IsInside(face, width, height);
  int threshold = hasFace ? luminance : LikenessThreshold(luminance);
  if (threshold == 0) threshold = -255;  // a likeness below 0 counts as 0
  const ColourSums skin = SumColours(pixels, width, hasFace ? face : all, [=](int r, int b) {
    return std::min(2 * r, 255) - (b >> 1) >= threshold;
  });
  if (skin.count == 0) return;
  const auto mean = [&](std::uint64_t sum) {
    return static_cast<int>((sum + skin.count / 2) / skin.count);
  };
  red = mean(skin.red), green = mean(skin.green), blue = mean(skin.blue);
}

void SFDSP::CreateSkinMask(const unsigned char* pixels, int width, int height, unsigned char* mask,
                           bool useFaceRect, int faceX, int faceY, int faceWidth, int faceHeight) {
  if (!pixels || !mask || PixelCount(width, height).value_or(0) == 0) return;
  int red, green, blue;
  InitAvgFaceSkin(red, green, blue, pixels, width, height, useFaceRect, faceX, faceY, faceWidth,
                  faceHeight);
  const MaskTable table = MakeMaskTable(red, blue);
  ParallelFor(height, [=, likeness = table.data()](std::int64_t y) {
    const unsigned char* pixel = pixels + 4 * (width * y);
    unsigned char* const row = mask + width * y;
    for (int x = 0; x < width; ++x, pixel += 4) row[x] = likeness[256 * pixel[2] + pixel[0]];
  });
  BlurOneChannel(mask, width, height, MaskRadius(width, height));
}

void SFDSP::SkinMiddleColor(const unsigned char* pixels, int width, int height, int x, int y,
                            int rectWidth, int rectHeight, unsigned char& red, unsigned char& green,
                            unsigned char& blue) {
  if (!pixels || PixelCount(width, height).value_or(0) == 0 || x < 0 || y < 0) return;
  const auto clipped = [](std::int64_t start, std::int64_t length, std::int64_t end) {
    return start + length < end ? length : end - start - 1;
  };
  const Rectangle area = {x, y, clipped(x, rectWidth, width), clipped(y, rectHeight, height)};
  if (area.width < 1 || area.height < 1) return;
  const ColourSums sums = SumColours(pixels, width, area, [](int, int) { return true; });
  red = static_cast<unsigned char>(sums.red / sums.count);
  green = static_cast<unsigned char>(sums.green / sums.count);
  blue = static_cast<unsigned char>(sums.blue / sums.count);
}

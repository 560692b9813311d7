// Conversions between colour models of many pixels at once.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace tintwerk {

/// CColorSpace::RGBtoHSL of pixels in place, to the last bit: hue, saturation and lightness take
/// the bytes of red, green and blue; alpha stays. And the way back.
void RgbToHsl(unsigned char* pixels, std::int64_t count);
void HslToRgb(unsigned char* pixels, std::int64_t count);

/// CColorSpace::RGBtoYUV of pixels in place, to the last bit: Y, U and V take the bytes of red,
/// green and blue; alpha stays. And the way back.
void RgbToYuv(unsigned char* pixels, std::int64_t count);
void YuvToRgb(unsigned char* pixels, std::int64_t count);

/// The luma (117 blue + 306 red + 601 green) >> 10 into blue, green and red; alpha stays.
void RgbToGrey(unsigned char* pixels, std::int64_t count);

/// Pixels side by side in the model of CColorSpace::RGBtoHLS.
struct HlsRun {
  static constexpr int kPixels = 64;
  alignas(64) double hue[kPixels];
  alignas(64) double lightness[kPixels];
  alignas(64) double saturation[kPixels];
};

/// CColorSpace::RGBtoHLS of HlsRun::kPixels pixels, to the last bit.
void RgbToHls(const unsigned char* pixels, HlsRun& run);
/// CColorSpace::HLStoRGB of as many, for hues of -1/3 to 4/3; alpha stays.
void HlsToRgb(const HlsRun& run, unsigned char* pixels);

/// Sends a row of pixels through the model. adjust(pixels, hls) finds a run of them, has it
/// converted and changes it; behind the row's end the run holds black.
template <class Adjust>
void AdjustHls(unsigned char* row, std::int64_t count, const Adjust& adjust) {
  HlsRun hls;
  for (std::int64_t x = 0; x < count; x += HlsRun::kPixels) {
    unsigned char pixels[4 * HlsRun::kPixels] = {};
    const std::size_t bytes = 4 * std::min<std::int64_t>(HlsRun::kPixels, count - x);
    std::memcpy(pixels, row + 4 * x, bytes);
    adjust(pixels, hls);
    HlsToRgb(hls, pixels);
    std::memcpy(row + 4 * x, pixels, bytes);
  }
}

}  // namespace tintwerk

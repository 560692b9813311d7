// What evens out skin: a blurred copy tells how much detail a pixel holds, and what holds little is
// lifted by a tone table.
#pragma once

#include <cstdint>
#include <memory>

#include "filters/rows.h"
#include "frame/parallel.h"
#include "pixel/tone_curve.h"
#include "portrait/deriche_blur.h"

namespace tintwerk {

/// What the first step of the detail weight and the lift are computed in. Bytes differ.
enum class Precision { kDouble, kSingle };

/// The detail weight of every pair of bytes: from 0, a pixel that is darker than its surroundings,
/// over about 0.5 on flat ground to 1, a brighter one. It is a linear light blend of the inverted
/// blur onto the image, with a steeper middle.
class DetailWeights {
 public:
  /// @param precision of the shares of 255 that bytes are taken for
  explicit DetailWeights(Precision precision);

  /// Whether memory could be had; without it there are no weights.
  explicit operator bool() const { return table_ != nullptr; }

  /// @param green,blurredGreen of a pixel and of its surroundings
  float operator()(unsigned char green, unsigned char blurredGreen) const {
    return table_[256 * green + blurredGreen];
  }

 private:
  std::unique_ptr<float[]> table_;
};

/// Mixes a lifted value with the value that it stands for. @param weight of the latter, 0..1
/// @return the truncated sum
template <Precision kPrecision>
int LiftedBy(const ToneTable& lift, unsigned char value, float weight) {
  const float kept = static_cast<float>(value) * weight;
  if constexpr (kPrecision == Precision::kSingle)
    return static_cast<int>(static_cast<float>(lift[value]) * (1.0f - weight) + kept);
  else
    return static_cast<int>(lift[value] * (1.0 - weight) + kept);
}

/// The lift of CPixelProcess::SkinBase.
inline constexpr ToneTable kSkinLift = Curve({{0, 0},
                                              {10, 0},
                                              {11, 1},
                                              {16, 9},
                                              {32, 32},
                                              {64, 77},
                                              {96, 119},
                                              {128, 156},
                                              {160, 187},
                                              {192, 213},
                                              {224, 235},
                                              {255, 255}});

/// Runs body(pixel, blurred pixel, detail weight) for every pixel of an image, in parallel, beside a
/// blurred copy of it.
/// @param sigma of the blur, pixels, as for DericheBlur
/// @return 0 for what is no image or if allocation fails, with the image as it was
template <class Body>
int ForEachDetail(unsigned char* pixels, int width, int height, double sigma, Precision precision,
                  const Body& body) {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return 0;
  if (*count == 0) return 1;
  const PixelMemory copy = CopyOf(pixels, *count);
  const DetailWeights weights(precision);
  if (!copy || !weights || !DericheBlurPass(copy.get(), width, height, 4, sigma, true) ||
      !DericheBlurPass(copy.get(), width, height, 4, sigma, false))
    return 0;
  ParallelFor(height, [&, pixels, width, blurred = copy.get()](std::int64_t y) {
    const std::int64_t from = 4 * (width * y), end = 4 * (width * (y + 1));
    for (std::int64_t at = from; at < end; at += 4)
      body(pixels + at, blurred + at, weights(pixels[at + 1], blurred[at + 1]));
  });
  return 1;
}

}  // namespace tintwerk

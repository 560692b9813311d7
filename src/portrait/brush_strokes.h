// A drawing made of an image alone: strokes along its edges over its own tones.
#pragma once

#include "pixel/tone_curve.h"

namespace tintwerk {

/// Draws an image in brush strokes, in the way of Lu, Xu and Jia ("Combining sketch and tone for
/// pencil drawing production"): a layer of strokes in eight directions, made at a fixed size
/// whatever the image's, times the image's grey with its histogram moved toward that of a drawing.
class BrushSketchEngine {
 public:
  /// A value for each grey.
  using Histogram = std::array<float, 256>;
  /// How much of the image is dark (greys up to 67), in between, and bright (from 192 on).
  struct Bands {
    float dark, middle, bright;
  };

  /// Draws over the image: blue, green and red become the same value; alpha stays.
  /// @param lineHalfLength of the strokes, 0..127 samples of an image that is 800 long
  /// @return false, and nothing has changed, if there is no image that can be worked on or no
  ///         memory; true for an image without pixels
  static bool Render(unsigned char* pixels, int width, int height, int lineHalfLength);

  /// How large a part of a plane each value is. Counts are floats, and end at 2^24.
  static Histogram ToneHistogram(const std::int64_t (&counts)[256], int width, int height);
  static Bands ToneBands(const Histogram& tones);
  /// The histogram of a drawing: white paper, an even middle and few darks, by the image's bands.
  static Histogram ToneModel(const Bands& bands);
  /// The table that moves the greys of one histogram toward another. It rises by 5 a step at most.
  static ToneTable MatchTone(const Histogram& source, const Histogram& target);

  /// The size of each sample's gradient (Sobel), at most 255.
  static void GradientMap(const unsigned char* plane, int width, int height, unsigned char* result);
  /// Strokes: the lines to which the gradients add up, each in its best direction, from white (255)
  /// halfway to black (128).
  /// @param lineHalfLength 0..127
  /// @throws std::bad_alloc
  static void StrokeMap(const unsigned char* gradient, int width, int height, unsigned char* result,
                        int lineHalfLength);
};

}  // namespace tintwerk

// Canny's edge detector.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tintwerk {

/// Finds the edges of a byte plane (Canny, 1986): Sobel gradients, of which those remain that are
/// larger than both of their neighbours along one of four directions and above the low threshold;
/// edges are the ones above the high threshold and all that hang together with these.
/// @param source        width x height bytes; null does nothing
/// @param result        receives 255 on an edge and 0 elsewhere, always 0 in the outermost ring;
/// may be the source. An allocation that fails leaves it as it was; so does null.
/// @param width,height  pixels; below 1, or a pixel count that no int holds, does nothing
/// @param stride        bytes from row to row of both planes; below the width does nothing
/// @param lowThreshold,highThreshold lengths of gradients, which run 0..1443; both are exceeded
/// @return false if allocation fails
bool CannyEdges(const unsigned char* source, unsigned char* result, int width, int height,
                int stride, int lowThreshold, int highThreshold);

/// The neighbours that a gradient is compared with.
enum GradientDirection : std::int16_t {
  kAlongRow,        // left and right
  kRisingDiagonal,  // below left and above right
  kAlongColumn,     // above and below
  kFallingDiagonal  // above left and below right
};

/// The directions of gradients within -1020..1020, a multiple of 32 of them; gy grows upward.
void GradientDirections(const std::int16_t* gx, const std::int16_t* gy, std::size_t count,
                        std::int16_t* directions);

}  // namespace tintwerk

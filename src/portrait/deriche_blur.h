// Gaussian blur of the second order, which the portrait and drawn looks rest on.
#pragma once

namespace tintwerk {

/// Blurs rows, then columns, in place by Deriche's second-order recursive filter: of the same cost
/// at any sigma. An element of 4 bytes is a pixel, whose alpha stays; of any other size only the
/// first byte is blurred. Results are truncated, after the rows too; a flat line stays flat.
/// @param stride        bytes of a row; stride / width are those of an element
/// @param sigmaX,sigmaY pixels; below 0.1 skips its direction, 250 is the largest that counts
/// @return false for a null buffer, more elements than an int holds, or if allocation fails;
/// nothing has been changed then
bool DericheBlur(void* buffer, int width, int height, int stride, double sigmaX, double sigmaY);

/// The same along the rows or the columns alone, of rows without gaps.
bool DericheBlurPass(void* buffer, int width, int height, int bytesPerElement, double sigma,
                     bool horizontal);

}  // namespace tintwerk

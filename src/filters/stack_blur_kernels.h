// Vector kernels of the stack blur.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tintwerk {

/// Blurs the lines of a block (see line_blocks.h). Its samples lie from element `radius` on, with
/// the ends of the lines repeated around them: `radius` elements before, radius + 2 behind. The
/// results lie from element 0 on.
/// @param count  positions
/// @param pixels blue, green and red are blurred, and the fourth byte comes out as anything; else
/// every byte is a line of its own
void BlurBlock(unsigned char* block, std::int64_t count, int radius, bool pixels);

/// The rows of a strip of columns from which a step down the strip reads.
struct StripRows {
  const unsigned char* entering;
  const unsigned char* leaving;
  const unsigned char* peak;
  bool isFirst;  // starts the windows on `entering`, and no more
};

/// Bytes of state that the windows of a byte take at most.
inline constexpr std::int64_t kWindowState = 8;

/// Stores the means of the windows, then moves them down by a row.
/// @param count bytes of a row
/// @param state kWindowState bytes for each, rounded up to whole blocks, aligned to 64
/// @param mean  room for whole blocks; null moves on without storing
void BlurStripRow(const StripRows& rows, int radius, bool pixels, std::size_t count,
                  unsigned char* state, unsigned char* mean);

}  // namespace tintwerk

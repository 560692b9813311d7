// The pass of looks that report fixed positions.
#pragma once

#include <algorithm>
#include <cstdint>

#include "frame/progress.h"

namespace tintwerk {

/// Runs body(at) for every byte of colour, with `at` its place in the image, row by row. Rows
/// report from `start` over `span`, whatever the host's own range is.
/// @return false if the host wants the work stopped
template <class Body>
bool ForEachColourByte(CObjProgress* progress, int start, int span, int width, int height,
                       const Body& body) {
  const float scale = static_cast<float>(span) / static_cast<float>(std::max(height, 1));
  const std::int64_t pitch = 4 * std::int64_t{std::max(width, 0)};
  return ForEachRow(RowProgress(progress, height, scale, start), height, [=](std::int64_t y) {
    for (std::int64_t at = pitch * y; at < pitch * (y + 1); at += 4)
      for (int c = 0; c < 3; ++c) body(at + c);
  });
}

}  // namespace tintwerk

// Images as buffers: which can be worked on, and the blocks that hold them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace tintwerk {

/// The pixel count of an image. Sizes below 1 count as 0.
/// @return nothing if the count does not fit an int: such an image cannot be worked on
std::optional<int> PixelCount(int width, int height);

/// An image that an operation can work on, perhaps one without pixels.
inline bool IsWorkable(const void* pixels, int width, int height) {
  return pixels && PixelCount(width, height);
}

/// One that has pixels, too.
inline bool HasPixels(const void* pixels, int width, int height) {
  return pixels && PixelCount(width, height).value_or(0) > 0;
}

/// Callers that take over a block delete it as an array.
using PixelMemory = std::unique_ptr<unsigned char[]>;

/// A block for the pixels of an image, not set to anything, in large pages.
/// @return null if allocation fails
PixelMemory AllocatePixels(std::size_t bytes);

/// The same where failing is told by throwing.
/// @throw std::bad_alloc
PixelMemory RequirePixels(std::size_t bytes);

/// A copy of `count` pixels; null if allocation fails.
PixelMemory CopyOf(const unsigned char* pixels, std::int64_t count);

/// Asks for large pages where whole ones fit into a fresh block and the system has them: on first
/// touch, a page fault for every 4 KiB would cost more than most of what is done to the pixels.
void UseLargePages(void* block, std::size_t bytes);

}  // namespace tintwerk

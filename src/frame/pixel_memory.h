// Memory for whole images.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace tintwerk {

struct FreeMemory {
  void operator()(unsigned char* memory) const { std::free(memory); }
};
using PixelMemory = std::unique_ptr<unsigned char[], FreeMemory>;

/// A block for the pixels of an image, not set to anything. Large blocks lie on large pages where
/// the system has them: on first touch, a page fault for every 4 KiB would cost more than most of
/// what is done to the pixels.
/// @return null if memory could not be had
inline PixelMemory AllocatePixels(std::size_t bytes) {
  constexpr std::size_t kLargePage = std::size_t{1} << 21;
  if (bytes < 2 * kLargePage)
    return PixelMemory(static_cast<unsigned char*>(std::malloc(bytes ? bytes : 1)));
  const std::size_t whole = (bytes + kLargePage - 1) / kLargePage * kLargePage;
  PixelMemory memory(static_cast<unsigned char*>(std::aligned_alloc(kLargePage, whole)));
#ifdef __linux__
  if (memory) madvise(memory.get(), whole, MADV_HUGEPAGE);
#endif
  return memory;
}

}  // namespace tintwerk

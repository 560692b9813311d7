// Memory for whole images.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace tintwerk {

/// Callers that take over a block delete it as an array.
using PixelMemory = std::unique_ptr<unsigned char[]>;

/// A block for the pixels of an image, not set to anything. Whole large pages in it are asked for
/// as such where the system has them: on first touch, a page fault for every 4 KiB would cost more
/// than most of what is done to the pixels.
/// @return null if memory could not be had
inline PixelMemory AllocatePixels(std::size_t bytes) {
  PixelMemory memory(new (std::nothrow) unsigned char[bytes]);
#ifdef __linux__
  constexpr std::uintptr_t kLargePage = std::uintptr_t{1} << 21;
  const auto first = reinterpret_cast<std::uintptr_t>(memory.get());
  const std::uintptr_t begin = (first + kLargePage - 1) / kLargePage * kLargePage;
  const std::uintptr_t end = (first + bytes) / kLargePage * kLargePage;
  if (memory && begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
  return memory;
}

/// The same where failing is told by throwing.
/// @throw std::bad_alloc
inline PixelMemory RequirePixels(std::size_t bytes) {
  PixelMemory memory = AllocatePixels(bytes);
  if (!memory) throw std::bad_alloc();
  return memory;
}

}  // namespace tintwerk

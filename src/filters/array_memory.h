// Memory for images that callers delete as arrays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace tintwerk {

using ArrayMemory = std::unique_ptr<unsigned char[]>;

/// An array that is not set to anything. As AllocatePixels does, it asks for large pages, here
/// inside the block: page faults would cost more than most of what is done to the pixels.
/// @return null if memory could not be had
inline ArrayMemory AllocateArray(std::size_t bytes) {
  ArrayMemory memory(new (std::nothrow) unsigned char[bytes]);
#ifdef __linux__
  constexpr std::uintptr_t kLargePage = std::uintptr_t{1} << 21;
  const auto first = reinterpret_cast<std::uintptr_t>(memory.get());
  const std::uintptr_t begin = (first + kLargePage - 1) / kLargePage * kLargePage;
  const std::uintptr_t end = (first + bytes) / kLargePage * kLargePage;
  if (memory && begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
  return memory;
}

}  // namespace tintwerk

#include "frame/image.h"

#include <cstring>
#include <limits>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace tintwerk {

std::optional<int> PixelCount(int width, int height) {
  if (width <= 0 || height <= 0) return 0;
  const std::int64_t count = std::int64_t{width} * height;
  if (count > std::numeric_limits<int>::max()) return std::nullopt;
  return static_cast<int>(count);
}

PixelMemory AllocatePixels(std::size_t bytes) {
  PixelMemory memory(new (std::nothrow) unsigned char[bytes]);
  if (memory) UseLargePages(memory.get(), bytes);
  return memory;
}

PixelMemory RequirePixels(std::size_t bytes) {
  PixelMemory memory = AllocatePixels(bytes);
  if (!memory) throw std::bad_alloc();
  return memory;
}

PixelMemory CopyOf(const unsigned char* pixels, std::int64_t count) {
  PixelMemory copy = AllocatePixels(std::size_t{4} * count);
  if (copy) std::memcpy(copy.get(), pixels, std::size_t{4} * count);
  return copy;
}

void UseLargePages([[maybe_unused]] void* block, [[maybe_unused]] std::size_t bytes) {
#ifdef __linux__
  constexpr std::uintptr_t kLargePage = std::uintptr_t{1} << 21;
  const auto first = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t begin = (first + kLargePage - 1) / kLargePage * kLargePage;
  const std::uintptr_t end = (first + bytes) / kLargePage * kLargePage;
  if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

}  // namespace tintwerk

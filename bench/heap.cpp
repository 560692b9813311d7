// Counts what goes through the C library's allocator, on which new and all else rests: functions
// of a program stand before those of its libraries. Elsewhere than in glibc nothing is counted.
#include "heap.h"

#include <atomic>

#ifdef __GLIBC__
#include <malloc.h>

#include <cerrno>
#include <cstddef>
#endif

namespace {

std::atomic<std::int64_t> now = 0, peak = 0;

}  // namespace

namespace bench {

std::int64_t HeapBytes() {
  return now;
}
std::int64_t HeapPeak() {
  return peak;
}
void RestartHeapPeak() {
  peak = now.load();
}

}  // namespace bench

#ifdef __GLIBC__
namespace {

void* Counted(void* block) {
  const auto bytes = static_cast<std::int64_t>(malloc_usable_size(block));
  const std::int64_t sum = now.fetch_add(bytes, std::memory_order_relaxed) + bytes;
  std::int64_t most = peak.load(std::memory_order_relaxed);
  while (most < sum && !peak.compare_exchange_weak(most, sum, std::memory_order_relaxed)) {
  }
  return block;
}

void Discount(void* block) {
  now.fetch_sub(static_cast<std::int64_t>(malloc_usable_size(block)), std::memory_order_relaxed);
}

}  // namespace

extern "C" {

void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* block, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);
void __libc_free(void* block);

void* malloc(std::size_t bytes) {
  return Counted(__libc_malloc(bytes));
}
void* calloc(std::size_t count, std::size_t bytes) {
  return Counted(__libc_calloc(count, bytes));
}
void* realloc(void* block, std::size_t bytes) {
  const auto before = static_cast<std::int64_t>(malloc_usable_size(block));
  void* const moved = __libc_realloc(block, bytes);
  if (!moved && bytes != 0) return nullptr;  // the old block stays
  now.fetch_sub(before, std::memory_order_relaxed);
  return Counted(moved);
}
void* memalign(std::size_t alignment, std::size_t bytes) {
  return Counted(__libc_memalign(alignment, bytes));
}
void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
  return Counted(__libc_memalign(alignment, bytes));
}
int posix_memalign(void** block, std::size_t alignment, std::size_t bytes) {
  *block = Counted(__libc_memalign(alignment, bytes));
  return *block ? 0 : ENOMEM;
}
void free(void* block) {
  Discount(block);
  __libc_free(block);
}

}  // extern "C"
#endif

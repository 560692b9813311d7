// Replaces the operators of the test program, and thereby of the rooms that are linked into it.
#include "support/failing_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#if defined(__has_feature)
#define TINTWERK_CLANG_SANITIZES \
  (__has_feature(address_sanitizer) || __has_feature(thread_sanitizer))
#else
#define TINTWERK_CLANG_SANITIZES 0
#endif

namespace tintwerk::test {
namespace {

std::atomic<bool> armed = false;
std::atomic<std::int64_t> asked = 0, failing = -1;
std::atomic<bool> forGood = false;
thread_local std::int64_t mallocs = 0, failingMalloc = -1;

[[maybe_unused]] void* Allocate(std::size_t bytes) {
  if (armed) {
    const std::int64_t number = asked++, at = failing;
    if (at >= 0 && (number == at || (number > at && forGood))) return nullptr;
  }
  return std::malloc(bytes > 0 ? bytes : 1);
}

}  // namespace

FailingMemory::FailingMemory(std::int64_t at, Shortage shortage) {
  asked = 0;
  failing = at;
  forGood = shortage == Shortage::kForGood;
  armed = true;
}
FailingMemory::~FailingMemory() {
  armed = false;
}
std::int64_t FailingMemory::Asked() {
  return asked;
}

FailingMalloc::FailingMalloc(std::int64_t at) {
  mallocs = 0;
  failingMalloc = at;
}
FailingMalloc::~FailingMalloc() {
  failingMalloc = -1;
}
std::int64_t FailingMalloc::Asked() {
  return mallocs;
}

}  // namespace tintwerk::test

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && \
    !TINTWERK_CLANG_SANITIZES
extern "C" {
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* block, std::size_t bytes);

static bool Fails() {
  using namespace tintwerk::test;
  return failingMalloc >= 0 && mallocs++ == failingMalloc;
}
__attribute__((visibility("default"))) void* malloc(std::size_t bytes) {
  return Fails() ? nullptr : __libc_malloc(bytes);
}
__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t bytes) {
  return Fails() ? nullptr : __libc_calloc(count, bytes);
}
__attribute__((visibility("default"))) void* realloc(void* block, std::size_t bytes) {
  return Fails() ? nullptr : __libc_realloc(block, bytes);
}
}
#endif

#if !TINTWERK_CLANG_SANITIZES  // which link operators of their own, fixed to the program
void* operator new(std::size_t bytes) {
  void* const block = tintwerk::test::Allocate(bytes);
  if (!block) throw std::bad_alloc();
  return block;
}
void* operator new[](std::size_t bytes) {
  return operator new(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return tintwerk::test::Allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return tintwerk::test::Allocate(bytes);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}
#endif

// Memory that runs out when a test wants it to.
#pragma once

#include <cstdint>

namespace tintwerk::test {

/// How the memory of a scope runs out.
enum class Shortage {
  kOne,     ///< one allocation fails; those after it succeed
  kForGood  ///< so do all after it
};

/// Fails allocations by `new`, of every thread, from its making to its end. One a time. Not under
/// clang's sanitizers, which leave out the tests that need it.
class FailingMemory {
 public:
  /// @param at the allocation that fails, counted from 0; a negative one counts only
  explicit FailingMemory(std::int64_t at, Shortage shortage = Shortage::kForGood);
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  /// Allocations that were asked for so far.
  static std::int64_t Asked();
};

/// Fails one allocation of the C runtime in the calling thread, as decoders make them. Counts only
/// with glibc, and where no sanitizer has functions of its own.
class FailingMalloc {
 public:
  explicit FailingMalloc(std::int64_t at);
  ~FailingMalloc();
  FailingMalloc(const FailingMalloc&) = delete;
  FailingMalloc& operator=(const FailingMalloc&) = delete;

  static std::int64_t Asked();
};

}  // namespace tintwerk::test

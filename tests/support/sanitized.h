// What tests ask about their own build.
#pragma once

namespace tintwerk::test {

/// Whether a sanitizer watches: what is tried on many machines or inputs is then tried on fewer.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
inline constexpr bool kSanitized =
    __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool kSanitized = false;
#endif

}  // namespace tintwerk::test

// Conversion of real numbers to integers and bytes.
#pragma once

#include <algorithm>
#include <concepts>
#include <limits>

namespace tintwerk {

/// Conversion toward zero. Numbers that no int holds, and not-a-number, give the least int, as the
/// processor's own conversion does.
inline int Truncate(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value)
                                                       : std::numeric_limits<int>::min();
}

inline int Truncate(float value) {
  return value >= -2147483648.0f && value < 2147483648.0f ? static_cast<int>(value)
                                                          : std::numeric_limits<int>::min();
}

/// The low 8 bits of the truncated number.
inline unsigned char TruncateToByte(double value) {
  return static_cast<unsigned char>(Truncate(value));
}
inline unsigned char TruncateToByte(float value) {
  return static_cast<unsigned char>(Truncate(value));
}

/// The number, limited to 0..255 and truncated if it is real. Not-a-number gives 0.
inline unsigned char ClampToByte(double value) {
  return value >= 255 ? 255 : value > 0 ? static_cast<unsigned char>(value) : 0;
}
template <std::integral Integer>
constexpr unsigned char ClampToByte(Integer value) {
  return static_cast<unsigned char>(std::clamp<Integer>(value, 0, 255));
}

}  // namespace tintwerk

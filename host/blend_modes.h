// The names of the blend modes.
#pragma once

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

/// In the order of their numbers, from 1 on.
inline constexpr std::string_view kBlendModes[] = {
    "screen",       "soft-light",   "multiply",    "normal",      "overlay",   "color-burn",
    "color-dodge",  "exclusion",    "darken",      "lighten",     "pin-light", "linear-burn",
    "linear-dodge", "linear-light", "vivid-light", "overlay-full"};

/// The number of a mode, given by name, in any case and with or without dashes, or by number.
/// @return 0 if there is none
inline int FindBlendMode(std::string_view name) {
  const auto plain = [](std::string_view text) {
    std::string result;
    for (const char c : text)
      if (c != '-' && c != '_' && c != ' ')
        result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
  };
  int number = 0;
  for (const std::string_view mode : kBlendModes) {
    ++number;
    if (plain(mode) == plain(name) || std::to_string(number) == name) return number;
  }
  return 0;
}

/// All names, for messages.
inline std::vector<std::string> BlendModeNames() {
  return {std::begin(kBlendModes), std::end(kBlendModes)};
}

// The looks that the library offers.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tintwerk/effect.h"

struct Look {
  std::string_view name;  ///< of the entry: "Effect_80S"
  std::string_view family;
  std::string_view description;
  EffectEntry* apply;
};

/// All looks, in the order of the library's list.
std::span<const Look> AllLooks();

/// The look of that name. "Effect_" may be left out, and case does not count unless two names
/// differ by nothing else.
/// @return null if there is none
const Look* FindLook(std::string_view name);

/// Names that someone who typed `name` may have meant, the nearest first; at most three.
std::vector<std::string_view> NearestLooks(std::string_view name);

/// What to tell someone whose look does not exist: the nearest names, or where to find them all.
std::string UnknownLook(std::string_view name);

#include "looks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "messages.h"

namespace {

constexpr Category kCategories[] = {
#define TINTWERK_CATEGORY(id, title) {#id, title},
#include "tintwerk/effect_list.h"
};

// The overload of an effect that takes an area, or null: the effect itself tells whether it has one.
#define CROP_ENTRY(entry)                                                 \
  []<class Effects>(Effects*) -> CropEntry* {                             \
    if constexpr (requires { static_cast<CropEntry*>(&Effects::entry); }) \
      return &Effects::entry;                                             \
    else                                                                  \
      return nullptr;                                                     \
  }(static_cast<CEffect*>(nullptr))

constexpr Look kLooks[] = {
#define TINTWERK_EFFECT(entry, category, title, description) \
  {#entry, title, #category, description, CEffect::entry, CROP_ENTRY(entry)},
#include "tintwerk/effect_list.h"
};

#undef CROP_ENTRY

// What of a name or title counts: letters and digits, in lower case, without the prefix of entries.
std::string Key(std::string_view text) {
  constexpr std::string_view kPrefix = "effect";
  std::string key;
  for (const unsigned char c : text)
    if (std::isalnum(c)) key += static_cast<char>(std::tolower(c));
  return key.starts_with(kPrefix) ? key.substr(kPrefix.size()) : key;
}

}  // namespace

std::span<const Category> AllCategories() {
  return kCategories;
}

std::span<const Look> AllLooks() {
  return kLooks;
}

std::vector<const Look*> LooksByCategory(const Category* only) {
  std::vector<const Look*> looks;
  for (const Category& category : kCategories)
    for (const Look& look : kLooks)
      if (look.category == category.id && (!only || only == &category)) looks.push_back(&look);
  return looks;
}

const Category* FindCategory(std::string_view text) {
  const std::string key = Key(text);
  for (const Category& category : kCategories)
    if (Key(category.id) == key || Key(category.title) == key) return &category;
  return nullptr;
}

const Look* FindLook(std::string_view text) {
  const std::string key = Key(text);
  for (const Look& look : kLooks)
    if (Key(look.name) == key || Key(look.title) == key) return &look;
  return nullptr;
}

std::string Slug(std::string_view title) {
  std::string slug;
  for (const unsigned char c : title)
    slug += std::isalnum(c) ? static_cast<char>(std::tolower(c)) : '-';
  return slug;
}

bool Give(const Look& look, unsigned char* pixels, int width, int height, std::wstring resources,
          _ZV_2D_RECT* area, CObjProgress* progress) {
  return look.crop ? look.crop(pixels, width, height, resources.data(), area, progress, 0, 100) != 0
                   : look.apply(pixels, width, height, resources.data(), progress, 0, 100) != 0;
}

std::string UnknownCategory(std::string_view text) {
  std::string message = "no category is called '" + std::string(text) + "'; there are";
  for (const Category& category : kCategories)
    message += (&category == kCategories ? " " : ", ") + std::string(category.id);
  return message;
}

std::string UnknownLook(std::string_view text) {
  std::string message = "no look is called '" + std::string(text) + "'";
  const std::string key = Key(text);
  const int limit = std::max<int>(1, static_cast<int>(key.size()) / 3);
  const auto distance = [&](std::string_view name) {
    const std::string other = Key(name);
    const bool inside = key.size() >= 3 && other.find(key) != std::string::npos;
    return inside ? 1 : EditDistance(key, other);
  };
  std::vector<std::pair<int, std::string_view>> near;
  for (const Look& look : kLooks) {
    const int byName = distance(look.name), byTitle = distance(look.title);
    if (std::min(byName, byTitle) <= limit)
      near.emplace_back(std::min(byName, byTitle), byTitle < byName ? look.title : look.name);
  }
  if (near.empty()) return message + "; 'tintwerk list' shows all";
  std::ranges::stable_sort(near, {}, &std::pair<int, std::string_view>::first);
  near.resize(std::min<std::size_t>(near.size(), 3));
  message += "; did you mean ";
  for (std::size_t i = 0; i < near.size(); ++i)
    message += (i == 0                 ? "'"
                : i + 1 == near.size() ? " or '"
                                       : ", '") +
               std::string(near[i].second) + "'";
  return message + "?";
}

std::string CropLooks() {
  std::string names;
  for (const Look& look : kLooks)
    if (look.crop) names += (names.empty() ? "" : ", ") + std::string(look.name);
  return "only these looks can be given to a part of a picture: " + names;
}

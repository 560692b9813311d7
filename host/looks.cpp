#include "looks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <numeric>
#include <utility>

namespace {

constexpr Look kLooks[] = {
#define TINTWERK_EFFECT(entry, family, description) {#entry, #family, description, CEffect::entry},
#include "tintwerk/effect_list.h"
};

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
  return lower;
}

// What tells two looks apart: the name without its prefix, in lower case.
std::string Key(std::string_view name) {
  constexpr std::string_view prefix = "effect_";
  std::string key = Lower(name);
  return key.starts_with(prefix) ? key.substr(prefix.size()) : key;
}

// Edit distance: insertions, deletions and replacements, and swaps of neighbours, cost 1 each.
int EditDistance(std::string_view a, std::string_view b) {
  std::vector<int> before(b.size() + 1), row(b.size() + 1), next(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    next[0] = static_cast<int>(i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      next[j] = std::min({row[j] + 1, next[j - 1] + 1, row[j - 1] + (a[i - 1] != b[j - 1])});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        next[j] = std::min(next[j], before[j - 2] + 1);
    }
    std::swap(before, row);
    std::swap(row, next);
  }
  return row[b.size()];
}

}  // namespace

std::span<const Look> AllLooks() {
  return kLooks;
}

const Look* FindLook(std::string_view name) {
  for (const Look& look : kLooks)
    if (look.name == name) return &look;
  const std::string key = Key(name);
  for (const Look& look : kLooks)
    if (Key(look.name) == key) return &look;
  return nullptr;
}

std::vector<std::string_view> NearestLooks(std::string_view name) {
  const std::string key = Key(name);
  const int limit = std::max<int>(1, static_cast<int>(key.size()) / 3);
  std::vector<std::pair<int, std::string_view>> near;
  for (const Look& look : kLooks) {
    const std::string other = Key(look.name);
    int distance = EditDistance(key, other);
    if (key.size() >= 3 && other.find(key) != std::string::npos) distance = std::min(distance, 1);
    if (distance <= limit) near.emplace_back(distance, look.name);
  }
  std::ranges::stable_sort(near, {}, &std::pair<int, std::string_view>::first);
  std::vector<std::string_view> names;
  for (const auto& [distance, look] : near)
    if (names.size() < 3) names.push_back(look);
  return names;
}

std::string UnknownLook(std::string_view name) {
  std::string message = "no look is called '" + std::string(name) + "'";
  const std::vector<std::string_view> nearest = NearestLooks(name);
  if (nearest.empty()) return message + "; 'tintwerk list' shows all";
  message += "; did you mean ";
  for (std::size_t i = 0; i < nearest.size(); ++i)
    message += (i == 0 ? "" : i + 1 == nearest.size() ? " or " : ", ") + std::string(nearest[i]);
  return message + "?";
}

// tintwerk list: which looks there are.
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include "batch.h"
#include "commands.h"
#include "looks.h"

namespace {

using Looks = std::vector<const Look*>;

void PrintJson(const Looks& looks) {
  nlohmann::ordered_json array = nlohmann::ordered_json::array();
  for (const Look* look : looks)
    array.push_back({{"name", look->name},
                     {"title", look->title},
                     {"category", look->category},
                     {"description", look->description}});
  std::cout << array.dump(2) << '\n';
}

int Longest(std::string_view Look::*text) {
  std::size_t size = 0;
  for (const Look& look : AllLooks()) size = std::max(size, (look.*text).size());
  return static_cast<int>(size);
}

// Looks of one category stand together.
void PrintTable(const Looks& looks) {
  const int title = Longest(&Look::title), name = Longest(&Look::name);
  std::string_view category;
  for (const Look* look : looks) {
    if (look->category != category) {
      std::cout << (category.empty() ? "" : "\n") << FindCategory(look->category)->title << '\n';
      category = look->category;
    }
    std::cout << std::left << "  " << std::setw(title) << look->title << "  " << std::setw(name)
              << look->name << "  " << look->description << '\n';
  }
}

}  // namespace

int List(const ListOptions& options) {
  const Category* only = FindCategory(options.category);
  if (!only && !options.category.empty()) throw Refusal(UnknownCategory(options.category));
  const Looks looks = LooksByCategory(only);
  options.json ? PrintJson(looks) : PrintTable(looks);
  return kDone;
}

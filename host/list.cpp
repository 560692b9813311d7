// tintwerk list: which looks there are.
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "commands.h"
#include "looks.h"

namespace {

void PrintJson() {
  nlohmann::ordered_json looks = nlohmann::ordered_json::array();
  for (const Look& look : AllLooks())
    looks.push_back(
        {{"name", look.name}, {"family", look.family}, {"description", look.description}});
  std::puts(looks.dump(2).c_str());
}

void PrintTable() {
  std::size_t name = 0;
  std::size_t family = 0;
  for (const Look& look : AllLooks()) {
    name = std::max(name, look.name.size());
    family = std::max(family, look.family.size());
  }
  for (const Look& look : AllLooks())
    std::printf("%-*s  %-*s  %s\n", static_cast<int>(name), std::string(look.name).c_str(),
                static_cast<int>(family), std::string(look.family).c_str(),
                std::string(look.description).c_str());
}

}  // namespace

int List(const ListOptions& options) {
  options.json ? PrintJson() : PrintTable();
  return kDone;
}

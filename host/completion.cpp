// Completion of command lines in shells.
#include <algorithm>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>

#include "blend_modes.h"
#include "declarations.h"
#include "looks.h"

namespace {

using Candidate = std::pair<std::string, std::string>;  // with its meaning

bool TakesValue(const CLI::Option& option) {
  return option.get_items_expected_max() > 0;
}

// Titles come as one word; names are offered to those who have begun one.
std::vector<Candidate> LookNames(std::string_view begun) {
  std::vector<Candidate> names;
  for (const Look* look : LooksByCategory()) {
    names.emplace_back(Slug(look->title), look->description);
    if (!begun.empty()) names.emplace_back(look->name, look->title);
  }
  return names;
}

// The values of an option or positional, if they have names.
std::vector<Candidate> ValuesOf(const CLI::Option& option, std::string_view begun) {
  const std::string type = option.get_type_name();
  const std::string kind = option.get_positional() ? option.get_name() : type;
  std::vector<Candidate> values;
  if (kind == "LOOK") return LookNames(begun);
  if (kind == "CATEGORY")
    for (const Category& category : AllCategories())
      values.emplace_back(category.id, category.title);
  if (kind == "MODE")
    for (const std::string_view mode : kBlendModes) values.emplace_back(mode, "");
  const std::size_t open = type.find('{'), close = type.find('}');
  if (open != std::string::npos && close != std::string::npos) {
    std::istringstream names(type.substr(open + 1, close - open - 1));
    for (std::string name; std::getline(names, name, ',');) values.emplace_back(name, "");
  }
  return values;
}

// Where in the command line the last word stands.
struct Place {
  const CLI::App* app;
  std::size_t positionals = 0;          // before it
  const CLI::Option* option = nullptr;  // whose value it is
};

Place Follow(const CLI::App& program, const std::vector<std::string>& words) {
  Place place{&program};
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    const std::string& word = words[i];
    if (std::exchange(place.option, nullptr)) continue;
    if (word.size() > 1 && word.starts_with('-')) {
      const CLI::Option* const option = place.app->get_option_no_throw(word);
      if (option && TakesValue(*option)) place.option = option;
      continue;
    }
    const auto inside = place.app->get_subcommands([](const CLI::App*) { return true; });
    const auto next = std::ranges::find(inside, word, &CLI::App::get_name);
    if (next != inside.end())
      place = {*next};
    else
      ++place.positionals;
  }
  return place;
}

std::vector<Candidate> CandidatesAt(const Place& place, const std::string& begun) {
  if (place.option) return ValuesOf(*place.option, begun);
  std::vector<Candidate> candidates;
  std::vector<const CLI::Option*> positionals;
  for (const CLI::Option* option : place.app->get_options()) {
    if (option->get_positional()) positionals.push_back(option);
    if (begun.starts_with('-'))
      for (const std::string& name : option->get_lnames())
        candidates.emplace_back("--" + name, option->get_description());
  }
  if (begun.starts_with('-')) return candidates;
  for (const CLI::App* app : place.app->get_subcommands([](const CLI::App*) { return true; }))
    candidates.emplace_back(app->get_name(), app->get_description());
  if (!positionals.empty()) {
    const auto values =
        ValuesOf(*positionals[std::min(place.positionals, positionals.size() - 1)], begun);
    candidates.insert(candidates.end(), values.begin(), values.end());
  }
  return candidates;
}

}  // namespace

std::vector<std::string> Completions(const CLI::App& program, std::vector<std::string> words) {
  std::erase(words, "=");  // some shells take --name=value apart
  if (!words.empty() && words.front() == "help") words.erase(words.begin());
  if (words.empty()) words.emplace_back();
  std::string& last = words.back();
  std::string before;
  if (const std::size_t equals = last.find('='); last.starts_with("--") && equals < last.size()) {
    before = last.substr(0, equals + 1);
    const std::string value = last.substr(equals + 1);
    last.resize(equals);
    words.push_back(value);
  }
  std::vector<std::string> lines;
  for (const auto& [name, meaning] : CandidatesAt(Follow(program, words), words.back()))
    if (name.starts_with(words.back())) lines.push_back(before + name + "\t" + meaning);
  return lines;
}

// Words for people.
#pragma once

#include <exception>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Thrown before any work is done, if the arguments make no sense or support files are missing.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A path in quotes, its control characters escaped.
std::string Quoted(const std::filesystem::path& path);

/// What an exception says, in lower case and without numbers of errors: "no such file".
std::string WordsOf(const std::exception& error);

/// Edit distance: insertions, deletions and replacements, and swaps of neighbours, cost 1 each.
int EditDistance(std::string_view a, std::string_view b);

/// Says that no `kind` is called `text`, and which name is nearest or, if none is near, all.
std::string NothingIsCalled(std::string_view kind, std::string_view text,
                            std::span<const std::string> names);

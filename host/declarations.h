// What else is made of the declarations of the command line: completion and manual pages.
#pragma once

#include <CLI/App.hpp>
#include <map>
#include <string>
#include <vector>

/// What may stand at the end of a command line: commands, options, names of looks and the like. Where
/// only names of files fit there are none.
/// @param words after the program's name, the last as far as it is typed
/// @return lines of a candidate, a tab and what it means
std::vector<std::string> Completions(const CLI::App& program, std::vector<std::string> words);

/// Manual pages of a program and each of its commands, by the names of their files.
std::map<std::string, std::string> ManualPages(const CLI::App& program);

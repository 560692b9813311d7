// Where the support files of looks lie.
#pragma once

#include <filesystem>
#include <string>

/// The folder to pass to looks. Some looks open their tables for update, although they write
/// nothing, so they fail in a tree that is read-only. If the tree beside the program is, a copy of it
/// in the user's data folder is used. The copy is made anew whenever that tree has changed.
/// @param named the folder to use instead; empty for the tree beside the program
/// Throws Refusal if there are no support files.
std::filesystem::path FindResources(const std::filesystem::path& named);

/// Whether every table in a tree can be opened for update.
bool CanUpdateTables(const std::filesystem::path& resources);

/// What to tell the user when a look fails with these files.
std::string WhyLooksFail(const std::filesystem::path& resources);

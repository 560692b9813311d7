// Where the support files of looks lie.
#pragma once

#include <filesystem>
#include <string>

/// The folder to hand to looks. Some of their tables are opened for update, although nothing is
/// written, so a tree that may not be written does not serve them: of the tree beside the program a
/// copy is kept then in the user's data folder, and made anew when another tree is installed.
/// @param named the folder to use instead; empty for that beside the program
/// Throws Refusal if there are no support files.
std::filesystem::path FindResources(const std::filesystem::path& named);

/// Whether every table in a tree can be opened for update.
bool CanUpdateTables(const std::filesystem::path& resources);

/// What to think of when a look fails with these files.
std::string WhyLooksFail(const std::filesystem::path& resources);

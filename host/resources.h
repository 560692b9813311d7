// Where the support files of looks lie.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "looks.h"

/// The folder to pass to looks. Some looks open their tables for update, although they write
/// nothing, so they fail in a tree that is read-only. If the tree beside the program is, what these
/// looks need of it is copied into the user's data folder. Files of that copy that differ from the
/// originals are copied anew.
/// @param named the folder to use instead; empty for the tree beside the program
/// Throws Refusal if there are no support files, or if one that these looks need is missing, empty
/// or cannot be read.
std::filesystem::path FindResources(const std::filesystem::path& named,
                                    std::span<const Look* const> looks);

/// Whether every table in a tree can be opened for update.
bool CanUpdateTables(const std::filesystem::path& resources);

/// What to tell the user when a look fails with these files.
std::string WhyLooksFail(const std::filesystem::path& resources);

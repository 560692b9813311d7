// Which pictures are read, and which files are written.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "messages.h"

struct Task {
  std::filesystem::path input;
  std::filesystem::path output;
};

/// One of several parts of a batch, for several machines. A picture's name, without its folder, alone
/// tells which part it belongs to, so that parts agree wherever the folder lies and whatever else is
/// in it.
struct Shard {
  int index = 1;  ///< 1..count
  int count = 1;
};

struct BatchRules {
  std::string format;  ///< extension of files in an output folder; empty keeps that of the input
  std::string suffix;  ///< goes between the name of a file and its extension
  bool skipExisting = false;    ///< leave out tasks whose output exists
  bool overwriteInput = false;  ///< let outputs replace inputs
  Shard shard;                  ///< the part to do; refusals are the same for all parts
};

struct Plan {
  std::vector<Task> tasks;
  std::vector<Task> existing;        ///< left out as their output exists
  std::vector<std::string> skipped;  ///< files of folders that are left out, each with the reason
};

/// Makes the list of tasks. A single input is written to the file `output`, unless that is a folder
/// or ends in a separator. Several inputs, or a folder, are written into the folder `output`; if that
/// is empty, results lie beside their originals, told apart by the suffix. From an input folder all
/// visible pictures are taken, in the order of their names; folders in it are ignored. Of all of these
/// the tasks are those of the shard.
/// `kStandard` stands for standard input and output, of a single picture.
/// Throws Refusal if a format cannot be written, if two inputs would become the same file, if an
/// output is an input, by whatever path, or cannot be replaced, or if there are no pictures.
/// @param kept files that are read too and never replaced
Plan PlanBatch(const std::vector<std::filesystem::path>& inputs,
               const std::filesystem::path& output, const BatchRules& rules,
               const std::vector<std::filesystem::path>& kept = {});

/// Throws Refusal if `output` exists and cannot be replaced: it is no regular file, it may not be
/// written, or it is `input`.
/// @param input may be empty
void RefuseToReplace(const std::filesystem::path& input, const std::filesystem::path& output);

/// Throws Refusal unless a picture can be written to a path.
void RefuseUnwritable(const std::filesystem::path& output);

// Which pictures are read, and which files are written.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

/// Thrown before any work is done, if the arguments make no sense or support files are missing.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Task {
  std::filesystem::path input;
  std::filesystem::path output;
};

struct BatchRules {
  std::string format;  ///< extension of files in an output folder; empty keeps that of the input
  bool skipExisting = false;    ///< leave out tasks whose output exists
  bool overwriteInput = false;  ///< let outputs replace inputs
};

/// Makes the list of tasks. A single input is written to the file `output`, unless that is a folder
/// or ends in a separator. Several inputs, or a folder, are written into the folder `output`. From an
/// input folder all visible files with writable extensions are taken, in the order of their names;
/// folders in it are ignored. Throws Refusal if a format cannot be written, if two inputs would
/// become the same file, if an output is an input, by whatever path, or if there are no pictures.
std::vector<Task> PlanBatch(const std::vector<std::filesystem::path>& inputs,
                            const std::filesystem::path& output, const BatchRules& rules);

/// Throws Refusal if `output` exists and cannot be replaced: it is no regular file, or it is `input`.
/// @param input may be empty
void RefuseToReplace(const std::filesystem::path& input, const std::filesystem::path& output);

// Which picture is read, and which file it becomes.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

/// Arguments that cannot be carried out, found before any work is done.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Task {
  std::filesystem::path input;
  std::filesystem::path output;
};

struct BatchRules {
  std::string format;  ///< extension of the files in an output folder; empty for the input's own
  bool skipExisting = false;    ///< leave out tasks whose output is there
  bool overwriteInput = false;  ///< allow outputs that are inputs
};

/// Makes the list of tasks. One input goes to the file `output`, unless that is a folder or ends in
/// a separator; several inputs, or a folder, go into the folder `output`. Of an input folder the
/// visible files with writable extensions are taken, in order of their names, folders in it are not
/// entered. Throws Refusal if a file could not be written in its format, if two inputs would become
/// the same file, if an output is an input, by whatever name, or if there is nothing to do it with.
std::vector<Task> PlanBatch(const std::vector<std::filesystem::path>& inputs,
                            const std::filesystem::path& output, const BatchRules& rules);

/// Throws Refusal if a file cannot be put in the place of `output`: it is `input`, or no file.
/// @param input may be empty
void RefuseToReplace(const std::filesystem::path& input, const std::filesystem::path& output);

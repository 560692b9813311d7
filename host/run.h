// Works many pictures by one operation.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "batch.h"
#include "picture_io.h"
#include "tintwerk/progress.h"

struct RunOptions {
  std::vector<std::filesystem::path> inputs;
  std::filesystem::path output;
  BatchRules rules;
  LoadOptions load;
  SaveOptions save;
  bool allowLoss = false;  ///< let an original be replaced by a result that holds less
  bool keepTimes = false;  ///< results get the modification time of their input
  bool dryRun = false;     ///< only tell what would be done
  bool json = false;       ///< tell of each picture on standard output, in a line of JSON
  int jobs = 0;            ///< pictures at a time; 0 for a number that suits the processors
  int threads = 0;         ///< of each job; 0 for its share of the processors
};

/// What is done to each picture.
struct Work {
  std::string name;
  /// Works one page in place. Throws std::exception with the reason if that fails.
  std::function<void(Picture& page, CObjProgress& progress)> run;
  std::vector<std::filesystem::path> kept = {};  ///< other files that it reads
};

/// Reads, works and writes pictures, several at a time, and tells on standard error what goes wrong.
/// Throws Refusal, before anything is written, if the arguments make no sense.
/// @return the exit code
int RunWork(const RunOptions& options, const Work& work);

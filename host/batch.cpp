#include "batch.h"

#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "picture_io.h"

namespace {

namespace fs = std::filesystem;
using FileId = std::pair<dev_t, ino_t>;  // what a file is, whatever it is called

std::string Quoted(const fs::path& path) {
  return "'" + path.string() + "'";
}

bool Identify(const fs::path& path, FileId& id) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return false;
  id = {status.st_dev, status.st_ino};
  return true;
}

std::vector<fs::path> Expand(const std::vector<fs::path>& inputs) {
  std::vector<fs::path> files;
  for (const fs::path& input : inputs) {
    if (!fs::is_directory(input)) {
      files.push_back(input);
      continue;
    }
    std::vector<fs::path> inside;
    for (const fs::directory_entry& entry : fs::directory_iterator(input))
      if (entry.is_regular_file() && !entry.path().filename().string().starts_with('.') &&
          IsWritable(entry.path()))
        inside.push_back(entry.path());
    if (inside.empty()) throw Refusal("no pictures in the folder " + Quoted(input));
    std::ranges::sort(inside);
    files.insert(files.end(), inside.begin(), inside.end());
  }
  return files;
}

fs::path OutputIn(const fs::path& folder, const fs::path& input, const std::string& format) {
  fs::path name = input.filename();
  if (!format.empty()) name.replace_extension(format);
  return folder / name;
}

void CheckOutput(const fs::path& output) {
  if (!IsWritable(output))
    throw Refusal("cannot write " + Quoted(output) + ": the formats are " + WritableExtensions());
  RefuseToReplace({}, output);
}

}  // namespace

void RefuseToReplace(const fs::path& input, const fs::path& output) {
  if (!fs::exists(output)) return;
  if (!fs::is_regular_file(output))
    throw Refusal("cannot write " + Quoted(output) + ": it is not a file");
  if (fs::exists(input) && fs::equivalent(input, output))
    throw Refusal("the output " + Quoted(output) + " is an input");
}

std::vector<Task> PlanBatch(const std::vector<fs::path>& inputs, const fs::path& output,
                            const BatchRules& rules) {
  const std::vector<fs::path> files = Expand(inputs);
  const bool several = inputs.size() > 1 || fs::is_directory(inputs.front());
  const bool intoFolder = several || fs::is_directory(output) || !output.has_filename();
  if (intoFolder && fs::exists(output) && !fs::is_directory(output))
    throw Refusal("several pictures need a folder, and " + Quoted(output) + " is a file");
  if (!intoFolder && !rules.format.empty())
    throw Refusal("--format is for output folders; " + Quoted(output) + " names its format");
  if (!intoFolder && output.has_parent_path() && !fs::is_directory(output.parent_path()))
    throw Refusal("there is no folder " + Quoted(output.parent_path()));

  std::set<FileId> inputIds;
  for (const fs::path& file : files)
    if (FileId id; Identify(file, id)) inputIds.insert(id);

  std::vector<Task> tasks;
  std::map<fs::path, fs::path> claimed;  // output, followed through links, to its input
  for (const fs::path& file : files) {
    const fs::path target = intoFolder ? OutputIn(output, file, rules.format) : output;
    CheckOutput(target);
    const auto [other, isNew] = claimed.emplace(fs::weakly_canonical(target), file);
    if (!isNew)
      throw Refusal(Quoted(other->second) + " and " + Quoted(file) + " would both become " +
                    Quoted(target));
    FileId id;
    const bool exists = Identify(target, id);
    if (exists && rules.skipExisting) continue;
    if (exists && !rules.overwriteInput && inputIds.contains(id))
      throw Refusal("the output " + Quoted(target) +
                    " is an input; --overwrite-input replaces the originals");
    tasks.push_back({file, target});
  }
  if (intoFolder) fs::create_directories(output);
  return tasks;
}

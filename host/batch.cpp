#include "batch.h"

#include <ctype.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "name_hash.h"
#include "picture_io.h"
#include "temporary_file.h"

namespace {

namespace fs = std::filesystem;
using FileId = std::pair<dev_t, ino_t>;  // what a file is, whatever it is called

bool Identify(const fs::path& path, FileId& id) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return false;
  id = {status.st_dev, status.st_ino};
  return true;
}

bool IsSameFile(const fs::path& a, const fs::path& b) {
  FileId one, other;
  return Identify(a, one) && Identify(b, other) && one == other;
}

std::string Changed(std::string text, int (*change)(int)) {
  for (char& c : text) c = static_cast<char>(change(static_cast<unsigned char>(c)));
  return text;
}

// Whether a file system takes names that differ in case for one: there a folder answers to its own
// name in the other case, too.
bool FoldsCase(fs::path folder) {
  for (; folder.has_filename(); folder = folder.parent_path()) {
    const std::string name = folder.filename();
    std::string other = Changed(name, tolower);
    if (other == name) other = Changed(name, toupper);
    if (other != name && fs::exists(folder))
      return IsSameFile(folder, folder.parent_path() / other);
  }
  return false;
}

// The name that stands for a file among all outputs.
std::string Claim(const fs::path& output) {
  const fs::path path = fs::weakly_canonical(FollowLinks(output));
  return FoldsCase(path.parent_path()) ? Changed(path, tolower) : path.string();
}

// Why a file of a folder is no input; empty if it is one.
std::string WhySkipped(const fs::path& file, const BatchRules& rules, bool besideOriginals) {
  if (besideOriginals && file.stem().string().ends_with(rules.suffix))
    return "it bears the suffix of results";
  if (!IsWritable(file) && !IsReadable(file)) return "no picture that can be read";
  if (!IsWritable(file) && rules.format.empty())
    return "its format cannot be written; --format names another";
  return {};
}

std::vector<fs::path> Expand(const std::vector<fs::path>& inputs, const BatchRules& rules,
                             bool besideOriginals, std::vector<std::string>& skipped) {
  std::vector<fs::path> files;
  for (const fs::path& input : inputs) {
    if (!fs::is_directory(input)) {
      files.push_back(input);
      continue;
    }
    std::vector<fs::path> inside;
    for (const fs::directory_entry& entry : fs::directory_iterator(input))
      if (entry.is_regular_file() && !entry.path().filename().string().starts_with('.'))
        inside.push_back(entry.path());
    std::ranges::sort(inside);
    const std::size_t before = files.size();
    for (const fs::path& file : inside) {
      const std::string why = WhySkipped(file, rules, besideOriginals);
      if (why.empty())
        files.push_back(file);
      else
        skipped.push_back(Quoted(file) + ": " + why);
    }
    if (files.size() == before) throw Refusal("no pictures in the folder " + Quoted(input));
  }
  return files;
}

bool IsIn(const Shard& shard, const fs::path& file) {
  return NameHash(file.filename().string()) % static_cast<unsigned>(shard.count) + 1 ==
         static_cast<unsigned>(shard.index);
}

// The file in a folder that an input becomes.
fs::path OutputIn(const fs::path& folder, const fs::path& input, const BatchRules& rules) {
  fs::path name = input.stem();
  name += rules.suffix;
  return folder /
         WithExtension(name, rules.format.empty() ? input.extension().string() : rules.format);
}

}  // namespace

void RefuseToReplace(const fs::path& input, const fs::path& output) {
  if (!fs::exists(output)) return;
  if (!fs::is_regular_file(output))
    throw Refusal("cannot write " + Quoted(output) + ": it is not a file");
  if (access(output.c_str(), W_OK) != 0)
    throw Refusal("cannot write " + Quoted(output) + ": it is read-only");
  if (IsSameFile(input, output)) throw Refusal("the output " + Quoted(output) + " is an input");
}

void RefuseUnwritable(const fs::path& output) {
  if (!IsWritable(output))
    throw Refusal("cannot write " + Quoted(output) + ": the formats are " + WritableExtensions());
  RefuseToReplace({}, output);
}

Plan PlanBatch(const std::vector<fs::path>& inputs, const fs::path& output, const BatchRules& rules,
               const std::vector<fs::path>& kept) {
  if (output.empty() && rules.suffix.empty())
    throw Refusal("results need a place: --output, or --suffix to lie beside their originals");
  Plan plan;
  const std::vector<fs::path> files = Expand(inputs, rules, output.empty(), plan.skipped);
  if (std::ranges::none_of(
          files, [](const fs::path& file) { return file == kStandard || fs::exists(file); }))
    throw Refusal("cannot read " + Quoted(files.front()) + ": no such file");
  const bool several = inputs.size() > 1 || fs::is_directory(inputs.front());
  const bool isPiped = std::ranges::find(files, kStandard) != files.end();
  if (isPiped && several) throw Refusal("standard input is a single picture");
  if (output == kStandard) {
    if (several) throw Refusal("standard output takes a single picture");
    if (rules.format.empty()) throw Refusal("--format must name the format of standard output");
    RefuseUnwritable(WithExtension("-", rules.format));
    plan.tasks.push_back({files.front(), output});
    return plan;
  }
  const bool intoFolder =
      !output.empty() && (several || fs::is_directory(output) || !output.has_filename());
  if (intoFolder && fs::exists(output) && !fs::is_directory(output))
    throw Refusal("several pictures need a folder, and " + Quoted(output) + " is a file");
  const bool isNamed = !intoFolder && !output.empty();
  if (isPiped && !isNamed) throw Refusal("standard input has no name; --output must name a file");
  if (isNamed && !(rules.format.empty() && rules.suffix.empty()))
    throw Refusal("--format and --suffix are for many results; " + Quoted(output) +
                  " names its own");
  if (isNamed && output.has_parent_path() && !fs::is_directory(output.parent_path()))
    throw Refusal("there is no folder " + Quoted(output.parent_path()));

  std::set<FileId> inputIds, keptIds;
  FileId id;
  for (const fs::path& file : files)
    if (Identify(file, id)) inputIds.insert(id);
  for (const fs::path& file : kept)
    if (Identify(file, id)) keptIds.insert(id);

  std::map<std::string, fs::path> claimed;  // output to its input
  for (const fs::path& file : files) {
    const fs::path target =
        isNamed ? output : OutputIn(intoFolder ? output : file.parent_path(), file, rules);
    RefuseUnwritable(target);
    const auto [other, isNew] = claimed.emplace(Claim(target), file);
    if (!isNew)
      throw Refusal(Quoted(other->second) + " and " + Quoted(file) + " would both become " +
                    Quoted(target));
    if (!IsIn(rules.shard, file)) continue;
    const bool exists = Identify(target, id);
    if (exists && keptIds.contains(id))
      throw Refusal("the output " + Quoted(target) + " is an input");
    if (exists && rules.skipExisting) {
      plan.existing.push_back({file, target});
      continue;
    }
    if (exists && !rules.overwriteInput && inputIds.contains(id))
      throw Refusal("the output " + Quoted(target) +
                    " is an input; --overwrite-input replaces the originals");
    plan.tasks.push_back({file, target});
  }
  return plan;
}

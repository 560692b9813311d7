#include "resources.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <system_error>

#include "messages.h"
#include "temporary_file.h"

namespace {

namespace fs = std::filesystem;

// The support files lie beside the program in the same way in a build and in an installation.
fs::path BesideTheProgram() {
  return fs::canonical("/proc/self/exe").parent_path().parent_path() / "share" / "tintwerk";
}

// The data folder of the XDG base directories; empty if the user has none.
fs::path UserData() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data && fs::path(data).is_absolute()) return fs::path(data) / "tintwerk";
  const char* home = std::getenv("HOME");
  if (home && fs::path(home).is_absolute()) return fs::path(home) / ".local/share/tintwerk";
  return {};
}

// Throws std::system_error if the file cannot be read whole.
std::string ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  if (file && fs::file_size(path) > 0) bytes << file.rdbuf();
  if (!file || !bytes) throw std::system_error(errno ? errno : EIO, std::generic_category());
  return std::move(bytes).str();
}

// The files below Effects that looks need, by the list that is painted with them; nothing for a tree
// without a list.
std::optional<std::set<fs::path>> FilesOf(std::span<const Look* const> looks,
                                          const fs::path& tree) {
  std::ifstream list(tree / "looks.tsv");
  if (!list) return std::nullopt;
  std::set<fs::path> files;
  for (std::string look, file; std::getline(list, look, '\t') && std::getline(list, file);)
    if (std::ranges::find(looks, look, &Look::name) != looks.end()) files.insert(file);
  return files;
}

std::set<fs::path> AllFiles(const fs::path& effects) {
  std::set<fs::path> files;
  for (const auto& entry :
       fs::recursive_directory_iterator(effects, fs::directory_options::follow_directory_symlink))
    if (entry.is_regular_file()) files.insert(entry.path().lexically_relative(effects));
  return files;
}

void RequireFiles(const std::set<fs::path>& files, const fs::path& tree) {
  for (const fs::path& file : files) {
    const fs::path path = tree / "Effects" / file;
    std::error_code error;
    std::string why;
    if (const auto size = fs::file_size(path, error); error)
      why = WordsOf(std::system_error(error));
    else if (size == 0)
      why = "empty file";
    else if (access(path.c_str(), R_OK) != 0)
      why = WordsOf(std::system_error(errno, std::generic_category()));
    if (!why.empty()) throw Refusal("cannot read the support file " + Quoted(path) + ": " + why);
  }
}

bool IsCopy(const fs::path& copy, const std::string& bytes) {
  std::error_code error;
  if (fs::file_size(copy, error) != bytes.size() || error) return false;
  try {
    return ReadAll(copy) == bytes;
  } catch (const std::system_error&) {
    return false;
  }
}

void KeepCopy(const std::set<fs::path>& files, const fs::path& tree, const fs::path& copy) {
  for (const fs::path& file : files) {
    const std::string bytes = ReadAll(tree / file);
    if (IsCopy(copy / file, bytes)) continue;
    fs::create_directories((copy / file).parent_path());
    WriteWhole(copy / file, {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
  }
}

}  // namespace

bool CanUpdateTables(const fs::path& resources) {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(resources / "Effects", error))
    if (entry.path().extension() == ".eb" && access(entry.path().c_str(), W_OK) != 0) return false;
  return !error;
}

fs::path FindResources(const fs::path& named, std::span<const Look* const> looks) {
  const fs::path tree = named.empty() ? BesideTheProgram() : named;
  if (!fs::is_directory(tree / "Effects"))
    throw Refusal("no support files in " + Quoted(tree) +
                  " (it should hold the folder Effects); --resources names another folder");
  const auto needed = FilesOf(looks, tree);
  if (needed) RequireFiles(*needed, tree);
  if (!named.empty() || CanUpdateTables(tree)) return tree;
  const fs::path data = UserData();
  if (data.empty()) return tree;  // looks that need a table will say what is wrong
  try {
    fs::create_directories(data / "Effects");
    const fs::path effects = tree / "Effects";
    KeepCopy(needed ? *needed : AllFiles(effects), effects, data / "Effects");
    return data;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tintwerk: cannot keep a copy of the support files: %s\n",
                 WordsOf(error).c_str());
    return tree;
  }
}

std::string WhyLooksFail(const fs::path& resources) {
  std::string reason = "are its support files in " + resources.string() + "?";
  if (!CanUpdateTables(resources))
    reason += " Tables there may not be written, and looks that read them open them for update";
  return reason;
}

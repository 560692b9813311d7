#include "resources.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <system_error>

#include "batch.h"
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

bool IsCurrent(const fs::path& copy, const fs::directory_entry& original) {
  std::error_code error;
  const auto size = fs::file_size(copy, error);
  if (error || size != original.file_size()) return false;
  return fs::last_write_time(copy, error) == original.last_write_time() && !error &&
         access(copy.c_str(), W_OK) == 0;
}

// Files appear whole, so that programs at work beside this one never meet half a file.
void CopyTree(const fs::path& from, const fs::path& to) {
  for (const auto& entry : fs::recursive_directory_iterator(from)) {
    const fs::path copy = to / fs::relative(entry.path(), from);
    if (entry.is_directory()) fs::create_directories(copy);
    if (!entry.is_regular_file() || IsCurrent(copy, entry)) continue;
    fs::create_directories(copy.parent_path());
    const fs::path part = copy.string() + ".part" + std::to_string(getpid());
    fs::copy_file(entry.path(), part, fs::copy_options::overwrite_existing);
    fs::permissions(part, fs::perms::owner_read | fs::perms::owner_write);
    fs::last_write_time(part, entry.last_write_time());
    fs::rename(part, copy);
  }
}

}  // namespace

bool CanUpdateTables(const fs::path& resources) {
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(resources / "Effects", error))
    if (entry.path().extension() == ".eb" && access(entry.path().c_str(), W_OK) != 0) return false;
  return !error;
}

fs::path FindResources(const fs::path& named) {
  const fs::path tree = named.empty() ? BesideTheProgram() : named;
  if (!fs::is_directory(tree / "Effects"))
    throw Refusal("no support files in '" + tree.string() +
                  "' (it should hold the folder Effects); --resources names another folder");
  if (!named.empty() || CanUpdateTables(tree)) return tree;
  const fs::path copy = UserData();
  if (copy.empty()) return tree;
  try {
    CopyTree(tree / "Effects", copy / "Effects");
    return copy;
  } catch (const fs::filesystem_error&) {
    return tree;  // looks that need a table will say what is wrong
  }
}

#include "resources.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

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

using Files = std::vector<fs::path>;  // relative to their tree, sorted

Files FilesOf(const fs::path& tree) {
  Files files;
  for (const auto& entry :
       fs::recursive_directory_iterator(tree, fs::directory_options::follow_directory_symlink))
    if (entry.is_regular_file()) files.push_back(entry.path().lexically_relative(tree));
  std::ranges::sort(files);
  return files;
}

// What a copy was made of: as long as this stays, the copy does.
std::string Manifest(const fs::path& tree, const Files& files) {
  std::string manifest = TINTWERK_VERSION " " + tree.string() + "\n";
  for (const fs::path& file : files) {
    const auto time = fs::last_write_time(tree / file).time_since_epoch().count();
    manifest += file.string() + " " + std::to_string(fs::file_size(tree / file)) + " " +
                std::to_string(time) + "\n";
  }
  return manifest;
}

std::string ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteText(const fs::path& path, const std::string& text) {
  WriteWhole(path, {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
}

// Makes a copy of a tree, unless it is there. The manifest comes last, so half a copy is made anew.
void KeepCopy(const fs::path& tree, const fs::path& copy) {
  const Files files = FilesOf(tree);
  const std::string manifest = Manifest(tree, files);
  const fs::path record = copy.string() + ".manifest";
  if (ReadAll(record) == manifest) return;
  for (const fs::path& file : files) {
    fs::create_directories((copy / file).parent_path());
    WriteText(copy / file, ReadAll(tree / file));
  }
  WriteText(record, manifest);
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
  const fs::path data = UserData();
  if (data.empty()) return tree;  // looks that need a table will say what is wrong
  try {
    KeepCopy(tree / "Effects", data / "Effects");
    return data;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tintwerk: cannot keep a copy of the support files: %s\n", error.what());
    return tree;
  }
}

std::string WhyLooksFail(const fs::path& resources) {
  std::string reason = "are its support files in " + resources.string() + "?";
  if (!CanUpdateTables(resources))
    reason += " Tables there may not be written, and looks that read them open them for update";
  return reason;
}

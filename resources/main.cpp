// tintwerk-paint: makes the support files.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <span>
#include <string>
#include <thread>

#include "paint.h"
#include "table.h"

namespace {

using tintwerk::paint::File;

int Run(const std::filesystem::path& root, const std::string& only, int threads) {
  std::span<const File> files = tintwerk::paint::FileTable();
  if (!only.empty()) {
    const auto found = std::ranges::find(files, only, &File::name);
    if (found == files.end()) {
      std::fprintf(stderr, "tintwerk-paint: no support file is called %s\n", only.c_str());
      return 2;
    }
    files = {found, 1};
  }
  tintwerk::paint::PaintFiles(files, root, threads);
  std::printf("painted %zu support files below %s\n", files.size(), root.c_str());
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  CLI::App app("Paints the support files into ROOT/Effects.", "tintwerk-paint");
  std::string root, only;
  int threads = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, 1024u));
  app.add_option("ROOT", root, "the folder to paint into")->required();
  app.add_option("--only", only, "just this file, by its path below Effects");
  app.add_option("--threads", threads,
                 "files that are painted at a time; one per processor if not given")
      ->check(CLI::Range(1, 1024));
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  try {
    return Run(root, only, threads);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tintwerk-paint: %s\n", error.what());
    return 1;
  }
}

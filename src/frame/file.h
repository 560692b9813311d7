// Opening of files.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>

namespace tintwerk {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, CloseFile>;

/// Opens a regular file in a mode of fopen. Null for anything else: a pipe, for one, could keep the
/// reader waiting.
/// @throw std::bad_alloc
FileHandle OpenFile(const std::filesystem::path& path, const char* mode);

}  // namespace tintwerk

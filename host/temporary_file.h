// Files that appear whole or not at all.
#pragma once

#include <filesystem>
#include <span>

/// A new file beside the one that it will become. Until `Commit` it goes with the object.
class TemporaryFile {
 public:
  /// @param destination the file to be written; if it is a symbolic link, what that leads to
  /// Throws std::system_error if the folder cannot be written.
  explicit TemporaryFile(const std::filesystem::path& destination);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Open for reading and writing.
  int descriptor() const { return descriptor_; }

  /// Puts the file in the destination's place, with the permissions of what stood there. Throws
  /// std::system_error if the disk did not take all of it.
  void Commit();

 private:
  std::filesystem::path destination_;
  std::filesystem::path path_;
  int descriptor_ = -1;
};

/// A file of some bytes in the folder for temporary files; it goes with the object. Throws
/// std::system_error if it cannot be written.
class ScratchFile {
 public:
  explicit ScratchFile(std::span<const unsigned char> bytes);
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Writes a file that appears whole or not at all. Throws std::runtime_error that names the file.
void WriteWhole(const std::filesystem::path& path, std::span<const unsigned char> bytes);

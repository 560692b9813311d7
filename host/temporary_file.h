// Files that appear whole or not at all.
#pragma once

#include <filesystem>
#include <span>

/// A new file beside its destination. It is deleted with the object, unless `Commit` was called.
class TemporaryFile {
 public:
  /// @param destination the file to write; a symbolic link is followed
  /// Throws std::system_error if the folder cannot be written.
  explicit TemporaryFile(const std::filesystem::path& destination);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Open for reading and writing.
  int descriptor() const { return descriptor_; }

  /// Moves the file to its destination, with the permissions of the file that it replaces. Throws
  /// std::system_error if not everything could be written.
  void Commit();

 private:
  std::filesystem::path destination_;
  std::filesystem::path path_;
  int descriptor_ = -1;
};

/// A file in the folder for temporary files. It is deleted with the object. Throws
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

/// Writes a file that appears whole or not at all. On failure throws std::runtime_error, which names
/// the file.
void WriteWhole(const std::filesystem::path& path, std::span<const unsigned char> bytes);

// Files that appear whole or not at all.
#pragma once

#include <filesystem>

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

// Files that appear whole or not at all.
#pragma once

#include <filesystem>
#include <span>

/// A new file beside its destination. It is deleted with the object, unless `Commit` was called, and
/// by a signal that ends the program.
class TemporaryFile {
 public:
  /// @param destination the file to write; a symbolic link is followed, even to what is not there yet
  /// Throws std::system_error if the folder cannot be written.
  explicit TemporaryFile(const std::filesystem::path& destination);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Open for reading and writing.
  int descriptor() const { return descriptor_; }
  const std::filesystem::path& Path() const { return path_; }

  /// Moves the file to its destination, with the permissions of the file that it replaces. Throws
  /// std::system_error if not everything could be written.
  void Commit();

 private:
  std::filesystem::path destination_;
  std::filesystem::path path_;
  int descriptor_ = -1;
  int slot_ = -1;  // in the list of files that a signal deletes
};

/// A file without a name, which is gone with the object or the program.
class NamelessFile {
 public:
  /// Throws std::system_error if none can be made.
  NamelessFile();
  ~NamelessFile();
  NamelessFile(const NamelessFile&) = delete;
  NamelessFile& operator=(const NamelessFile&) = delete;

  /// Open for reading and writing.
  int descriptor() const { return descriptor_; }
  /// A path by which this program can open it once more, from its begin.
  std::filesystem::path Path() const;

 private:
  int descriptor_ = -1;
};

/// Copies all that comes from one file to another, from where they stand. Throws std::system_error.
void CopyBytes(int from, int to);

/// What a path leads to when all symbolic links are followed, there or not.
std::filesystem::path FollowLinks(std::filesystem::path path);

/// Deletes the temporary files that runs which were killed left in a folder: those of this machine
/// whose process is gone, and those of any that nobody has written to for a day.
void RemoveLeftovers(const std::filesystem::path& folder);

/// Deletes the temporary files of this run. A signal handler may call this.
void DeleteTemporaryFiles();

/// Writes a file that appears whole or not at all. On failure throws std::runtime_error, which names
/// the file.
void WriteWhole(const std::filesystem::path& path, std::span<const unsigned char> bytes);

#include "temporary_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

namespace fs = std::filesystem;

namespace {

[[noreturn]] void Fail() {
  throw std::system_error(errno, std::generic_category());
}

}  // namespace

TemporaryFile::TemporaryFile(const fs::path& destination)
    : destination_(fs::is_symlink(destination) ? fs::weakly_canonical(destination) : destination) {
  static std::atomic<int> counter = 0;
  do {
    path_ = destination_;
    path_.replace_filename(".tintwerk-" + std::to_string(getpid()) + "-" +
                           std::to_string(counter++) + ".part");
    descriptor_ = open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  } while (descriptor_ < 0 && errno == EEXIST);
  if (descriptor_ < 0) Fail();
}

TemporaryFile::~TemporaryFile() {
  if (descriptor_ < 0) return;
  close(descriptor_);
  unlink(path_.c_str());
}

void TemporaryFile::Commit() {
  struct stat previous;
  if (stat(destination_.c_str(), &previous) == 0) fchmod(descriptor_, previous.st_mode & 07777);
  // Some file systems tell only here that the disk is full.
  if (fsync(descriptor_) != 0) Fail();
  if (rename(path_.c_str(), destination_.c_str()) != 0) Fail();
  close(descriptor_);
  descriptor_ = -1;
}

ScratchFile::ScratchFile(std::span<const unsigned char> bytes) {
  std::string name = (fs::temp_directory_path() / "tintwerk-").string() + std::string(6, 'X');
  const int descriptor = mkostemp(name.data(), O_CLOEXEC);
  if (descriptor < 0) Fail();
  close(descriptor);
  path_ = name;
  try {
    WriteWhole(path_, bytes);
  } catch (...) {
    unlink(path_.c_str());
    throw;
  }
}

ScratchFile::~ScratchFile() {
  unlink(path_.c_str());
}

void WriteWhole(const fs::path& path, std::span<const unsigned char> bytes) try {
  TemporaryFile file(path);
  while (!bytes.empty()) {
    const ssize_t written = write(file.descriptor(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail();
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  file.Commit();
} catch (const std::system_error& error) {
  throw std::runtime_error("cannot write '" + path.string() + "': " + error.code().message());
}

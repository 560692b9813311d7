#include "temporary_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "name_hash.h"

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kPrefix = ".tintwerk-", kSuffix = ".part";

// Other machines may write into the same folder, so temporary files bear the number of the machine to
// which the number of their process belongs. Containers of one machine count their own processes.
const std::string& Machine() {
  static const std::string machine = [] {
    char name[256] = {};
    gethostname(name, sizeof name - 1);
    struct stat processes = {};
    stat("/proc/self/ns/pid", &processes);
    char text[17];
    std::snprintf(text, sizeof text, "%016llx",
                  static_cast<unsigned long long>(
                      NameHash(std::string(name) + "/" + std::to_string(processes.st_ino))));
    return std::string(text, 8);
  }();
  return machine;
}

bool IsLeftover(const fs::directory_entry& entry) {
  const std::string file = entry.path().filename();
  std::string_view name = file;
  if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) return false;
  const auto age = fs::file_time_type::clock::now() - entry.last_write_time();
  if (age > std::chrono::hours(24)) return true;
  name.remove_prefix(kPrefix.size());
  if (!name.starts_with(Machine() + "-")) return false;
  name.remove_prefix(Machine().size() + 1);
  pid_t owner = 0;
  std::from_chars(name.data(), name.data() + name.size(), owner);
  return owner > 0 && owner != getpid() && kill(owner, 0) != 0 && errno == ESRCH;
}

[[noreturn]] void Fail() {
  throw std::system_error(errno, std::generic_category());
}

// The names of the temporary files that there are, where a signal handler finds them. More files at
// once than there are slots are just not deleted by a signal.
struct Slot {
  std::atomic<bool> taken = false, ready = false;
  char path[4096];
};
std::array<Slot, 300> slots;

int TakeSlot(const std::string& path) {
  for (std::size_t i = 0; i < slots.size() && path.size() < sizeof slots[i].path; ++i) {
    if (slots[i].taken.exchange(true)) continue;
    path.copy(slots[i].path, path.size());
    slots[i].path[path.size()] = '\0';
    slots[i].ready = true;
    return static_cast<int>(i);
  }
  return -1;
}

void WriteAll(int descriptor, std::span<const unsigned char> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail();
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
}

void FreeSlot(int slot) {
  if (slot < 0) return;
  slots[slot].ready = false;
  slots[slot].taken = false;
}

}  // namespace

fs::path FollowLinks(fs::path path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(path, error); ++i) {
    const fs::path target = fs::read_symlink(path, error);
    path = path.parent_path() / target;
  }
  return path;
}

void RemoveLeftovers(const fs::path& folder) {
  std::error_code error;
  // Files may come and go meanwhile, by the hands of others.
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error))
    try {
      if (IsLeftover(*entry)) unlink(entry->path().c_str());
    } catch (const fs::filesystem_error&) {
    }
}

void DeleteTemporaryFiles() {
  for (Slot& slot : slots)
    if (slot.ready) unlink(slot.path);
}

TemporaryFile::TemporaryFile(const fs::path& destination) : destination_(FollowLinks(destination)) {
  static std::atomic<int> counter = 0;
  do {
    path_ = destination_;
    path_.replace_filename(std::string(kPrefix) + Machine() + "-" + std::to_string(getpid()) + "-" +
                           std::to_string(counter++) + std::string(kSuffix));
    descriptor_ = open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  } while (descriptor_ < 0 && (errno == EEXIST || errno == EINTR));
  if (descriptor_ < 0) Fail();
  slot_ = TakeSlot(path_);
}

TemporaryFile::~TemporaryFile() {
  if (descriptor_ >= 0) {
    close(descriptor_);
    unlink(path_.c_str());
  }
  FreeSlot(slot_);
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

NamelessFile::NamelessFile() {
  std::string name = (fs::temp_directory_path() / "tintwerk-XXXXXX").string();
  descriptor_ = mkostemp(name.data(), O_CLOEXEC);
  if (descriptor_ < 0) Fail();
  unlink(name.c_str());
}

NamelessFile::~NamelessFile() {
  close(descriptor_);
}

fs::path NamelessFile::Path() const {
  return "/dev/fd/" + std::to_string(descriptor_);
}

void CopyBytes(int from, int to) {
  std::array<unsigned char, 1 << 16> buffer;
  for (;;) {
    const ssize_t count = read(from, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) Fail();
    if (count == 0) return;
    WriteAll(to, {buffer.data(), static_cast<std::size_t>(count)});
  }
}

void WriteWhole(const fs::path& path, std::span<const unsigned char> bytes) try {
  TemporaryFile file(path);
  WriteAll(file.descriptor(), bytes);
  file.Commit();
} catch (const std::system_error& error) {
  throw std::runtime_error("cannot write '" + path.string() + "': " + error.code().message());
}

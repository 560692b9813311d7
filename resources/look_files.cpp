// tintwerk-look-files: tells which support files each look reads, by watching it.
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tintwerk/effect.h"

namespace {

namespace fs = std::filesystem;

// The files below a folder that are opened while the object lives.
class Watch {
 public:
  explicit Watch(const fs::path& root) : queue_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (queue_ < 0) throw std::runtime_error("cannot watch files");
    Add(root, "");
    for (const auto& entry : fs::recursive_directory_iterator(root))
      if (entry.is_directory()) Add(entry.path(), entry.path().lexically_relative(root));
  }
  ~Watch() { close(queue_); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  // Those opened since the last call.
  std::set<std::string> Opened() {
    std::set<std::string> files;
    alignas(inotify_event) std::array<char, 1 << 16> events;
    for (ssize_t size; (size = read(queue_, events.data(), events.size())) > 0;)
      for (ssize_t at = 0; at < size;) {
        const auto* const event = reinterpret_cast<const inotify_event*>(&events[at]);
        at += static_cast<ssize_t>(sizeof(inotify_event)) + event->len;
        if (event->mask & IN_Q_OVERFLOW) throw std::runtime_error("too many files at once");
        if (event->len > 0 && !(event->mask & IN_ISDIR))
          files.insert(folders_.at(event->wd) / event->name);
      }
    return files;
  }

 private:
  void Add(const fs::path& folder, const fs::path& name) {
    const int watch = inotify_add_watch(queue_, folder.c_str(), IN_OPEN);
    if (watch < 0) throw std::runtime_error("cannot watch " + folder.string());
    folders_[watch] = name;
  }

  int queue_;
  std::map<int, fs::path> folders_;
};

// The form of a look for a part of a picture, which may read other files.
using CropEntry = int(unsigned char* pixels, int width, int height, void* resourceRoot,
                      _ZV_2D_RECT* area, CObjProgress* progress, int progressLow, int progressHigh);

struct Look {
  const char* name;
  EffectEntry* apply;
  CropEntry* crop;  // null if there is none
};
#define CROP_ENTRY(entry)                                                 \
  []<class Effects>(Effects*) -> CropEntry* {                             \
    if constexpr (requires { static_cast<CropEntry*>(&Effects::entry); }) \
      return &Effects::entry;                                             \
    else                                                                  \
      return nullptr;                                                     \
  }(static_cast<CEffect*>(nullptr))
constexpr Look kLooks[] = {
#define TINTWERK_EFFECT(entry, category, title, description) \
  {#entry, &CEffect::entry, CROP_ENTRY(entry)},
#include "tintwerk/effect_list.h"
};

// One line a look and file: its entry, a tab, the path of the file below Effects.
std::string List(const fs::path& root) {
  Watch watch(root / "Effects");
  std::string list;
  for (const Look& look : kLooks) {
    std::vector<unsigned char> pixels(4 * 3 * 2, 128);
    std::wstring wide = root.wstring();
    int done = look.apply(pixels.data(), 3, 2, wide.data(), nullptr, 0, 100);
    if (look.crop) done &= look.crop(pixels.data(), 3, 2, wide.data(), nullptr, nullptr, 0, 100);
    if (done != 1) throw std::runtime_error(std::string(look.name) + " fails");
    for (const std::string& file : watch.Opened()) list += look.name + ("\t" + file) + "\n";
  }
  return list;
}

}  // namespace

int main(int count, char** arguments) try {
  if (count != 3) {
    std::fprintf(stderr, "usage: tintwerk-look-files ROOT LIST\n");
    return 2;
  }
  const std::string list = List(arguments[1]);
  std::ofstream file(arguments[2], std::ios::binary);
  if (!(file << list).flush())
    throw std::runtime_error("cannot write " + std::string(arguments[2]));
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "tintwerk-look-files: %s\n", error.what());
  return 1;
}

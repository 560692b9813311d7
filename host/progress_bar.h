// A progress bar for the terminal.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <string>
#include <utility>

/// One line on standard error that shows how far long work is. It is drawn only if a person watches
/// (standard error is a terminal), and wiped when the object goes. Calls may come from several
/// threads.
class ProgressBar {
 public:
  explicit ProgressBar(std::string title)
      : title_(std::move(title)), shown_(isatty(STDERR_FILENO)) {}
  ~ProgressBar() { Wipe(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// @param fraction of the work that is done, 0..1
  void Show(double fraction) {
    if (!shown_) return;
    const std::scoped_lock lock(mutex_);
    const int percent = static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 100);
    if (percent > drawn_) Draw(percent);
  }

  /// Prints a line of text on standard error, watched or not, without tearing the bar.
  void Print(const std::string& line) {
    const std::scoped_lock lock(mutex_);
    const int percent = drawn_;
    Wipe();
    std::fprintf(stderr, "%s\n", line.c_str());
    if (percent >= 0) Draw(percent);
  }

 private:
  static constexpr int kWidth = 40;

  void Draw(int percent) {
    const int cells = percent * kWidth / 100;
    std::fprintf(stderr, "\r%s [%s%s] %3d%%", title_.c_str(), std::string(cells, '#').c_str(),
                 std::string(kWidth - cells, ' ').c_str(), percent);
    std::fflush(stderr);
    drawn_ = percent;
  }

  void Wipe() {
    if (drawn_ >= 0) std::fputs("\r\033[K", stderr);
    drawn_ = -1;
  }

  std::string title_;
  bool shown_;
  std::mutex mutex_;
  int drawn_ = -1;  // the percentage on the screen
};

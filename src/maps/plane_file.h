// Files of two-dimensional tone tables, and of raw pixels.
#pragma once

#include <cstddef>

#include "frame/file.h"
#include "frame/path.h"

namespace tintwerk {

/// A table with two keys, 256 x 256: out = P[high][low].
class Plane {
 public:
  static constexpr std::size_t kBytes = 256 * 256;
  explicit Plane(const unsigned char* bytes) : bytes_(bytes) {}
  unsigned char operator()(int high, int low) const { return bytes_[high * 256 + low]; }

 private:
  const unsigned char* bytes_;
};

/// A file that is read from its start, with no format of its own.
class RawFile {
 public:
  /// @param mode of fopen; effects open for update, so a file that may not be written counts as
  /// missing
  explicit RawFile(const CString& path, const char* mode = "rb+");
  explicit operator bool() const { return file_ != nullptr; }

  /// Fills a buffer with the next bytes, and with 0 past the end of the file.
  void Read(unsigned char* to, std::size_t bytes);

 private:
  FileHandle file_;
};

/// The planes of a file, each after a gap of three bytes.
class PlaneFile {
 public:
  /// Bytes that are read of the file; what a short one lacks is 0.
  static constexpr std::size_t kBytes = 10 + 3 * Plane::kBytes;
  explicit PlaneFile(const unsigned char* bytes) : bytes_(bytes) {}

  /// Plane 1, 2 or 3.
  Plane operator[](int number) const {
    return Plane(bytes_ + 1 + number * 3 + (number - 1) * Plane::kBytes);
  }

  /// One of the three 256-byte tables that follow plane 2 without a gap, in files that have them.
  const unsigned char* Tone(int number) const {
    return bytes_ + 7 + 2 * Plane::kBytes + (number - 1) * 256;
  }

 private:
  const unsigned char* bytes_;
};

}  // namespace tintwerk

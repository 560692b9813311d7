// Pictures, image files and folders that tests make for themselves.
#pragma once

#include <spng.h>
#include <turbojpeg.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tintwerk::test {

using Bytes = std::vector<unsigned char>;

inline Bytes RandomBytes(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  Bytes bytes(count);
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
  return bytes;
}

/// Four bytes a pixel: blue, green, red, alpha, or the four inks of a CMYK picture.
struct Picture {
  int width = 0;
  int height = 0;
  Bytes bytes;

  unsigned char* At(int x, int y) { return &bytes[std::size_t{4} * (std::size_t(y) * width + x)]; }
  bool operator==(const Picture&) const = default;
};

inline Picture RandomPicture(int width, int height, unsigned seed = 1) {
  return {width, height, RandomBytes(std::size_t{4} * width * height, seed)};
}

/// An opaque picture without sharp edges, which a JPEG keeps nearly as it is.
inline Picture SmoothPicture(int width, int height) {
  Picture picture{width, height, Bytes(std::size_t{4} * width * height, 255)};
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      unsigned char* const pixel = picture.At(x, y);
      pixel[0] = static_cast<unsigned char>(255 * x / width);
      pixel[1] = static_cast<unsigned char>(255 * y / height);
      pixel[2] = static_cast<unsigned char>(255 - 127 * (x + y) / (width + height));
    }
  return picture;
}

inline int LargestDifference(const Bytes& a, const Bytes& b) {
  if (a.size() != b.size()) return 256;
  int largest = 0;
  for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::abs(a[i] - b[i]));
  return largest;
}

inline void Require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

/// How a PNG stores its pixels. An empty palette or transparency is not written.
struct PngKind {
  int colour = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
  int depth = 8;  // bits of a sample
  bool interlaced = false;
  std::vector<spng_plte_entry> palette = {};
  std::vector<std::uint16_t> transparency = {};  // alphas of a palette, or one key per channel

  int Channels() const { return std::array{1, 0, 3, 1, 2, 0, 4}[colour]; }
  std::size_t RowSize(int width) const { return (std::size_t(width) * Channels() * depth + 7) / 8; }
};

/// @param rows as the file holds them: samples packed from the high bits down, big-endian, no
/// filter
inline Bytes EncodePng(const PngKind& kind, int width, int height, const Bytes& rows) {
  spng_ctx* const context = spng_ctx_new(SPNG_CTX_ENCODER);
  Require(context, "no encoder");
  spng_set_option(context, SPNG_ENCODE_TO_BUFFER, 1);
  spng_ihdr header = {};
  header.width = std::uint32_t(width);
  header.height = std::uint32_t(height);
  header.bit_depth = std::uint8_t(kind.depth);
  header.color_type = std::uint8_t(kind.colour);
  header.interlace_method = kind.interlaced;
  spng_set_ihdr(context, &header);
  if (!kind.palette.empty()) {
    spng_plte palette = {};
    palette.n_entries = std::uint32_t(kind.palette.size());
    std::copy(kind.palette.begin(), kind.palette.end(), palette.entries);
    spng_set_plte(context, &palette);
  }
  if (const auto& values = kind.transparency; !values.empty()) {
    spng_trns transparency = {};
    transparency.n_type3_entries = std::uint32_t(values.size());
    std::copy(values.begin(), values.end(), transparency.type3_alpha);
    transparency.gray = transparency.red = values[0];
    if (values.size() == 3) transparency.green = values[1], transparency.blue = values[2];
    spng_set_trns(context, &transparency);
  }
  int error =
      spng_encode_image(context, rows.data(), rows.size(), SPNG_FMT_RAW, SPNG_ENCODE_FINALIZE);
  std::size_t size = 0;
  void* const buffer = error ? nullptr : spng_get_png_buffer(context, &size, &error);
  const auto* first = static_cast<const unsigned char*>(buffer);
  const Bytes file(first, first + size);
  std::free(buffer);
  spng_ctx_free(context);
  Require(error == 0, spng_strerror(error));
  return file;
}

/// As 8-bit RGBA, which loses nothing.
inline Bytes EncodePng(const Picture& picture) {
  Bytes rows = picture.bytes;
  for (std::size_t i = 0; i < rows.size(); i += 4) std::swap(rows[i], rows[i + 2]);
  return EncodePng(PngKind{}, picture.width, picture.height, rows);
}

/// A PNG chunk with its length and CRC.
/// @param type four letters
inline Bytes PngChunk(std::string_view type, const Bytes& data) {
  Bytes chunk(data.size() + 12);
  const auto put = [&](std::size_t at, std::size_t number) {
    for (int shift : {24, 16, 8, 0}) chunk[at++] = static_cast<unsigned char>(number >> shift);
  };
  put(0, data.size());
  std::copy(type.begin(), type.end(), chunk.begin() + 4);
  std::copy(data.begin(), data.end(), chunk.begin() + 8);
  const std::size_t end = chunk.size() - 4;
  std::uint32_t crc = 0xffffffff;
  for (std::size_t i = 4; i < end; ++i) {
    crc ^= chunk[i];
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320u : 0);
  }
  put(end, ~crc);
  return chunk;
}

/// @param format TJPF_BGRA, or TJPF_CMYK for a picture of inks (stored as YCCK)
/// @param sampling a TJSAMP; TJSAMP_GRAY makes a file of one channel
inline Bytes EncodeJpeg(const Picture& picture, int sampling = TJSAMP_444, int quality = 100,
                        int flags = 0, int format = TJPF_BGRA) {
  const tjhandle encoder = tjInitCompress();
  Require(encoder, "no encoder");
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  const int error =
      tjCompress2(encoder, picture.bytes.data(), picture.width, 0, picture.height, format, &buffer,
                  &size, sampling, quality, flags | TJFLAG_ACCURATEDCT);
  const Bytes file(buffer, buffer + size);
  tjFree(buffer);
  tjDestroy(encoder);
  Require(error == 0, "cannot encode");
  return file;
}

/// One small file of each decoder's paths.
inline std::vector<Bytes> SmallFiles() {
  const Picture smooth = SmoothPicture(19, 11);
  PngKind palette{SPNG_COLOR_TYPE_INDEXED, 2, true};
  palette.palette = {{1, 2, 3, 0}, {40, 50, 60, 0}, {7, 8, 9, 0}, {}};
  palette.transparency = {10, 20};
  const PngKind deep{SPNG_COLOR_TYPE_GRAYSCALE_ALPHA, 16};
  const PngKind keyed{SPNG_COLOR_TYPE_TRUECOLOR, 8, true, {}, {1, 2, 3}};
  return {EncodePng(smooth),
          EncodePng(palette, 9, 7, RandomBytes(palette.RowSize(9) * 7, 1)),
          EncodePng(deep, 5, 4, RandomBytes(deep.RowSize(5) * 4, 2)),
          EncodePng(keyed, 6, 5, RandomBytes(keyed.RowSize(6) * 5, 3)),
          EncodeJpeg(smooth, TJSAMP_420, 80),
          EncodeJpeg(smooth, TJSAMP_GRAY, 80),
          EncodeJpeg(smooth, TJSAMP_444, 80, TJFLAG_PROGRESSIVE),
          EncodeJpeg(smooth, TJSAMP_444, 80, 0, TJPF_CMYK)};
}

/// A folder of its own that goes with its scope.
class TemporaryFolder {
 public:
  TemporaryFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("tintwerk-" + std::to_string(std::random_device()()))) {
    Require(std::filesystem::create_directory(path_), "no temporary folder");
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

  /// Makes a file, and the folders on the way to it.
  std::filesystem::path Write(const std::filesystem::path& name, const Bytes& content) const {
    const std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(content.data()), std::streamsize(content.size()));
    Require(stream.good(), "cannot write");
    return file;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace tintwerk::test

// Picture files to packed pixels and back.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vips/vips8>

/// A picture as the library takes it: 8-bit sRGB, upright, rows top-down without a gap.
struct Picture {
  struct Free {
    void operator()(unsigned char* pixels) const { g_free(pixels); }
  };
  using Pixels = std::unique_ptr<unsigned char[], Free>;

  std::size_t Bytes() const { return std::size_t{4} * width * height; }

  int width = 0;
  int height = 0;
  bool hasAlpha = false;  ///< without, every alpha byte is 255 and none is saved
  Pixels pixels;          ///< blue, green, red, straight alpha
  vips::VImage metadata;  ///< carries the records that a saved file gets
};

/// A picture of zeroed pixels, without alpha and records.
Picture NewPicture(int width, int height);

/// Decodes a file by its content. Any depth and colour model is brought to 8-bit sRGB, through the
/// embedded profile if there is one; the EXIF orientation is applied. Of several pages the first is
/// taken. Throws std::runtime_error if the file is missing, unknown, damaged, cut short or larger
/// than an int counts pixels, or if the program was asked to stop.
Picture LoadPicture(const std::filesystem::path& path);

/// Writes a file in the format of its extension; it appears whole or not at all. Alpha that the
/// format does not hold is laid over white. Throws std::exception on failure, or if the program was
/// asked to stop.
void SavePicture(const Picture& picture, const std::filesystem::path& path);

/// Whether SavePicture knows the extension of a path.
bool IsWritable(const std::filesystem::path& path);

/// The extensions that this machine can write, for people: ".jpg .png ...".
std::string WritableExtensions();

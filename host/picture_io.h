// Picture files to packed pixels and back.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vips/vips8>

/// A picture in the form that the library takes: 8-bit sRGB, upright, rows top-down without gaps.
struct Picture {
  struct Free {
    void operator()(unsigned char* pixels) const { g_free(pixels); }
  };
  using Pixels = std::unique_ptr<unsigned char[], Free>;

  std::size_t Bytes() const { return std::size_t{4} * width * height; }

  int width = 0;
  int height = 0;
  bool hasAlpha = false;  ///< if not, all alpha bytes are 255 and none is saved
  Pixels pixels;          ///< blue, green, red, straight alpha
  vips::VImage metadata;  ///< holds the records for a saved file
};

/// A picture of zeros, without alpha and records.
Picture NewPicture(int width, int height);

/// Decodes a file by its content; of several pages, the first. Converts any depth and colour model
/// to 8-bit sRGB, through the embedded profile if there is one, and applies the EXIF orientation.
/// Throws std::runtime_error if the file is missing, of no known format, damaged or cut short, if its
/// pixel count exceeds an int, or if the program was asked to stop.
Picture LoadPicture(const std::filesystem::path& path);

/// Writes a file in the format of its extension; it appears whole or not at all. If
/// the format has no alpha, the picture is laid over white. Throws std::exception on failure, or if the program was
/// asked to stop.
void SavePicture(const Picture& picture, const std::filesystem::path& path);

/// Whether SavePicture knows the extension of a path.
bool IsWritable(const std::filesystem::path& path);

/// The extensions that can be written on this machine, for messages: ".jpg .png ...".
std::string WritableExtensions();

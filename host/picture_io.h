// Picture files to packed pixels and back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include <vips/vips8>

#include "metadata.h"

/// A picture in the form that the library takes: sRGB, upright, rows top-down without gaps. A file of
/// several pages or frames has them one below another.
struct Picture {
  struct Free {
    void operator()(unsigned char* pixels) const { g_free(pixels); }
  };
  using Pixels = std::unique_ptr<unsigned char[], Free>;

  std::size_t PageBytes() const { return std::size_t{4} * (depth / 8) * width * height; }
  unsigned char* Page(int page) const { return pixels.get() + PageBytes() * page; }

  int width = 0;
  int height = 0;  ///< of one page
  int pages = 1;
  int depth = 8;            ///< bits of a sample; samples of 16 are in the machine's order of bytes
  bool hasAlpha = false;    ///< if not, all alpha samples are full and none is saved
  Pixels pixels;            ///< blue, green, red, straight alpha
  vips::VImage properties;  ///< an image with resolution, times of frames and the like
  Metadata metadata;

  // Of the file that it was read from.
  int sourcePages = 1;
  int sourceDepth = 8;
  bool sourceIsInks = false;  ///< it holds inks (CMYK), not light
};

/// Memory of zeros for pixels; in large pages if they are many, as the first touch of small ones takes a
/// tenth of the time of a photo. Throws std::bad_alloc.
Picture::Pixels AllocatePixels(std::size_t bytes);

/// A picture of zeros with 8 bits a sample, without alpha and records.
Picture NewPicture(int width, int height);

/// A picture in 8 bits and of one page, made smaller to fit into a size; its records stay behind.
Picture Shrunk(const Picture& picture, int width, int height);

struct LoadOptions {
  bool deep = false;                     ///< keep 16 bits a sample where the file has more than 8
  std::int64_t maxPixels = 500'000'000;  ///< of all pages together
  Metadata::Strip strip = Metadata::Strip::Nothing;  ///< records to leave out
};

/// The path that stands for standard input and standard output.
inline constexpr std::string_view kStandard = "-";

/// Decodes a file, or standard input, by its content. Converts any colour model to sRGB of 8 bits a sample, through the
/// embedded profile if there is one, and applies the EXIF orientation. Of pages that differ in size
/// the first is taken.
/// Throws std::runtime_error if the file is missing, empty, of no known format, a camera's raw file,
/// damaged or cut short, if it has too many pixels, or if the program was asked to stop.
Picture LoadPicture(const std::filesystem::path& path, const LoadOptions& options = {});

struct SaveOptions {
  std::optional<int> quality = {};  ///< 1..100, of formats that lose a little
  std::optional<int> effort = {};   ///< 0 fastest .. 9 smallest files
  bool progressive = false;         ///< JPEG and PNG that show coarsely before they are read whole
};

/// Writes a file in the format of its extension; it appears whole or not at all. If the format has
/// no alpha, the picture is laid over white; if it has no pages, the first is written.
/// Throws std::exception on failure, or if the program was asked to stop.
void SavePicture(const Picture& picture, const std::filesystem::path& path,
                 const SaveOptions& options = {});

/// Writes a file to standard output, when all of it is there. As SavePicture.
/// @param format extension that decides the format
void SendPicture(const Picture& picture, const std::string& format,
                 const SaveOptions& options = {});

/// A path that ends in an extension, which may or may not begin with a dot.
std::filesystem::path WithExtension(std::filesystem::path stem, const std::string& extension);

/// What a picture that was read loses when it is written to a path, in words: pages,
/// bits, inks, records.
std::vector<std::string> LossesOf(const Picture& picture, const std::filesystem::path& path);

/// Whether SavePicture knows the extension of a path.
bool IsWritable(const std::filesystem::path& path);

/// The extensions that can be written on this machine, for messages: ".jpg .png ...".
const std::string& WritableExtensions();

/// Whether LoadPicture can be expected to read a file: its content is that of a picture.
bool IsReadable(const std::filesystem::path& path);

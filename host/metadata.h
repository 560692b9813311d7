// What a picture file says besides its pixels.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vips/vips8>

/// EXIF, XMP and IPTC records.
class Metadata {
 public:
  enum Kind { kExif = 1, kXmp = 2, kIptc = 4 };
  enum class Strip { Nothing, Places, All };

  Metadata();
  ~Metadata();
  Metadata(Metadata&&) noexcept;
  Metadata& operator=(Metadata&&) noexcept;

  /// The records of a file. Damaged ones are left out.
  /// @param decoded the same file opened by libvips, for files that can be read only once and for
  ///        formats that only libvips knows
  static Metadata Of(const std::filesystem::path& path, const vips::VImage& decoded);

  /// Makes them true of a picture that is edited, turned upright and in sRGB: orientation, size and
  /// colours are set right, thumbnails go.
  void Update(int width, int height);

  /// Takes out places (GPS), or everything.
  void Remove(Strip what);

  /// The kinds that there are, added up.
  int Kinds() const;

  /// Hands the records to libvips, to be saved with an image that is not shared.
  void AttachTo(vips::VImage& image) const;

  /// Writes the records into a finished picture file, beside what it says of itself.
  /// Throws std::exception if that fails.
  void WriteInto(int descriptor) const;

 private:
  struct Records;
  std::unique_ptr<Records> records_;
};

/// The properties that stay true when `image` is edited: resolution, pages, frames and comments.
/// @return an image of one pixel with them
vips::VImage KeptProperties(const vips::VImage& image);

/// Copies the properties of one image to another, which must not be shared.
void AttachProperties(const vips::VImage& properties, vips::VImage& image);

#include "metadata.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace {

using vips::VImage;
using namespace std::string_view_literals;

// The records of EXIF directory 1 describe the thumbnail.
bool IsKept(std::string_view name) {
  if (name.starts_with("exif-ifd1-")) return false;
  return name.starts_with("exif-") || name.starts_with("png-comment-") ||
         name == VIPS_META_XMP_NAME || name == VIPS_META_IPTC_NAME || name == VIPS_META_ICC_NAME ||
         name == VIPS_META_RESOLUTION_UNIT || name == VIPS_META_N_PAGES ||
         name == VIPS_META_PAGE_HEIGHT || name == "delay" || name == "loop";
}

void CopyFields(VipsImage* from, VipsImage* to) {
  vips_image_map(
      from,
      [](VipsImage*, const char* name, GValue* value, void* a) -> void* {
        if (IsKept(name)) vips_image_set(static_cast<VipsImage*>(a), name, value);
        return nullptr;
      },
      to);
  // The densities are no fields of their own.
  to->Xres = from->Xres;
  to->Yres = from->Yres;
}

std::size_t Byte(const std::string& bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

// EXIF is a TIFF file without its picture. The second of its directories tells of the thumbnail,
// and nothing leads to either once the first one's link is cut.
void TidyExif(std::string& exif) {
  const std::size_t start = exif.starts_with("Exif\0\0"sv) ? 6 : 0;
  const bool bigEndian = exif.compare(start, 2, "MM") == 0;
  const auto number = [&](std::size_t at, std::size_t bytes) {
    std::size_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i)
      value = value << 8 | Byte(exif, at + (bigEndian ? i : bytes - 1 - i));
    return value;
  };
  if (exif.size() < start + 8) return;
  const std::size_t directory = start + number(start + 4, 4);
  if (directory + 2 > exif.size()) return;
  const std::size_t link = directory + 2 + 12 * number(directory, 2);
  if (link + 4 > exif.size()) return;
  for (std::size_t entry = directory + 2; entry < link; entry += 12) {
    constexpr std::size_t orientation = 0x0112;
    if (number(entry, 2) == orientation)
      exif.replace(entry + 8, 2, bigEndian ? "\0\1"sv : "\1\0"sv);
  }
  exif.replace(link, 4, 4, '\0');
}

// XMP repeats the orientation, as an attribute or as an element, and may carry thumbnails of its
// own.
void TidyXmp(std::string& xmp) {
  constexpr std::string_view orientation = "tiff:Orientation";
  for (std::size_t at = 0; (at = xmp.find(orientation, at)) != std::string::npos;) {
    at = std::min(xmp.find_first_not_of(" \t\r\n=>\"'", at + orientation.size()), xmp.size());
    if (at < xmp.size() && xmp[at] >= '1' && xmp[at] <= '8') xmp[at] = '1';
  }
  constexpr std::string_view end = "</xmp:Thumbnails>";
  for (std::size_t from; (from = xmp.find("<xmp:Thumbnails")) != std::string::npos;) {
    const std::size_t to = xmp.find(end, from);
    if (to == std::string::npos) break;
    xmp.erase(from, to + end.size() - from);
  }
}

// IPTC records come in a list of tagged resources, two kinds of which are thumbnails:
// "8BIM", 16-bit kind, name (length byte and text, even in all), 32-bit size, data (padded to
// even).
void TidyIptc(std::string& iptc) {
  constexpr std::string_view signature = "Photoshop 3.0\0"sv;
  if (!iptc.starts_with(signature)) return;
  std::size_t at = signature.size();
  while (at + 12 <= iptc.size() && iptc.compare(at, 4, "8BIM") == 0) {
    const std::size_t kind = Byte(iptc, at + 4) << 8 | Byte(iptc, at + 5);
    const std::size_t size = at + 6 + ((Byte(iptc, at + 6) + 2) & ~std::size_t{1});
    if (size + 4 > iptc.size()) break;
    const std::size_t bytes = Byte(iptc, size) << 24 | Byte(iptc, size + 1) << 16 |
                              Byte(iptc, size + 2) << 8 | Byte(iptc, size + 3);
    const std::size_t next = std::min(size + 4 + bytes + (bytes & 1), iptc.size());
    if (kind == 0x0409 || kind == 0x040c)
      iptc.erase(at, next - at);
    else
      at = next;
  }
}

void EditBlob(VImage& image, const char* name, void (*edit)(std::string&)) {
  if (image.get_typeof(name) != VIPS_TYPE_BLOB) return;
  std::size_t size = 0;
  const auto* data = static_cast<const char*>(image.get_blob(name, &size));
  std::string text(data, size);
  edit(text);
  vips_image_set_blob_copy(image.get_image(), name, text.data(), text.size());
}

}  // namespace

VImage KeptMetadata(const VImage& image) {
  VImage kept = VImage::black(1, 1).copy();
  CopyFields(image.get_image(), kept.get_image());
  EditBlob(kept, VIPS_META_EXIF_NAME, TidyExif);
  EditBlob(kept, VIPS_META_XMP_NAME, TidyXmp);
  EditBlob(kept, VIPS_META_IPTC_NAME, TidyIptc);
  if (kept.get_typeof(VIPS_META_EXIF_NAME) != 0) {
    kept.set("exif-ifd0-Orientation", "1");
    kept.set("exif-ifd2-ColorSpace", "1");
    if (kept.get_typeof("exif-ifd4-InteroperabilityIndex") != 0)
      kept.set("exif-ifd4-InteroperabilityIndex", "R98");
  }
  return kept;
}

void AttachMetadata(const VImage& metadata, VImage& image) {
  CopyFields(metadata.get_image(), image.get_image());
}

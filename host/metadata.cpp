#include "metadata.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <exiv2/exiv2.hpp>
#include <mutex>
#include <string_view>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;
using vips::VImage;

struct Metadata::Records {
  Exiv2::ExifData exif;
  Exiv2::XmpData xmp;
  Exiv2::IptcData iptc;
};

namespace {

// The XMP toolkit keeps global tables, which it locks by this.
void Prepare() {
  static std::once_flag once;
  static std::recursive_mutex tables;
  std::call_once(once, [] {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    Exiv2::XmpParser::initialize(
        [](void* mutex, bool lock) {
          auto* const held = static_cast<std::recursive_mutex*>(mutex);
          lock ? held->lock() : held->unlock();
        },
        &tables);
    Exiv2::enableBMFF(true);
  });
}

// TIFF keeps its own structure and EXIF in the same tables. What tells how pixels are stored, and
// what only points elsewhere, belongs to the file and not to the picture. libvips carries the resolution, and a picture that is
// upright needs no orientation.
bool IsStructure(const Exiv2::Exifdatum& datum) {
  const std::string group = datum.groupName();
  if (group == "Thumbnail" || group.starts_with("SubImage") || group == "Image2" ||
      group == "Image3")
    return true;
  constexpr int kTags[] = {0x00fe, 0x00ff, 0x0100, 0x0101, 0x0102, 0x0103, 0x0106, 0x010a,
                           0x0111, 0x0112, 0x0115, 0x0116, 0x0117, 0x011a, 0x011b, 0x011c,
                           0x0128, 0x0129, 0x013d, 0x0140, 0x0142, 0x0143, 0x0144, 0x0145,
                           0x014a, 0x0152, 0x0153, 0x015b, 0x0201, 0x0202, 0x0211, 0x0212,
                           0x0213, 0x02bc, 0x83bb, 0x8649, 0x8769, 0x8773, 0x8825};
  return group == "Image" && std::ranges::find(kTags, datum.tag()) != std::end(kTags);
}

template <class Data, class Condition>
void EraseIf(Data& data, const Condition& condition) {
  for (auto at = data.begin(); at != data.end();)
    at = condition(*at) ? data.erase(at) : std::next(at);
}

// Only what is there is changed.
template <class Data, class Key, class Value>
void Set(Data& data, const char* key, Value value) {
  if (const auto at = data.findKey(Key(key)); at != data.end()) *at = value;
}

// A record as libvips holds it; empty if there is none.
std::string Blob(const VImage& image, const char* name) {
  if (image.get_typeof(name) != VIPS_TYPE_BLOB) return {};
  std::size_t size = 0;
  const auto* const data = static_cast<const char*>(image.get_blob(name, &size));
  return {data, size};
}

// The XMP record, which HEIF has among others under names of their numbers.
std::string XmpBlob(const VImage& image) {
  std::string xmp = Blob(image, VIPS_META_XMP_NAME);
  for (int i = 0; xmp.empty() && i < 16; ++i) {
    xmp = Blob(image, ("heif-mime-" + std::to_string(i)).c_str());
    if (xmp.find("<x:xmpmeta") == std::string::npos) xmp.clear();
  }
  return xmp;
}

const Exiv2::byte* BytesOf(const std::string& text) {
  return reinterpret_cast<const Exiv2::byte*>(text.data());
}

constexpr std::string_view kExifHead("Exif\0\0", 6);

// Anything that a decoder of damaged records throws leaves out that kind alone.
template <class Read>
void IfReadable(const Read& read) {
  try {
    read();
  } catch (const std::exception&) {
  }
}

bool IsKept(std::string_view name) {
  return name.starts_with("png-comment-") || name == VIPS_META_RESOLUTION_UNIT ||
         name == VIPS_META_N_PAGES || name == VIPS_META_PAGE_HEIGHT || name == "delay" ||
         name == "loop";
}

// Images take over each other's memory under locks of GLib, which ThreadSanitizer does not see.
__attribute__((no_sanitize_thread)) void CopyFields(VipsImage* from, VipsImage* to) {
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

}  // namespace

Metadata::Metadata() : records_(std::make_unique<Records>()) {}
Metadata::~Metadata() = default;
Metadata::Metadata(Metadata&&) noexcept = default;
Metadata& Metadata::operator=(Metadata&&) noexcept = default;

Metadata Metadata::Of(const fs::path& path, const VImage& decoded) {
  Prepare();
  Metadata metadata;
  Records& records = *metadata.records_;
  if (fs::is_regular_file(path)) {
    IfReadable([&] {
      const auto file = Exiv2::ImageFactory::open(path.string());
      file->readMetadata();
      records = {file->exifData(), file->xmpData(), file->iptcData()};
    });
  }
  const auto size = [](const std::string& blob) { return static_cast<std::uint32_t>(blob.size()); };
  IfReadable([&] {
    std::string exif = Blob(decoded, VIPS_META_EXIF_NAME);
    if (exif.starts_with(kExifHead)) exif.erase(0, kExifHead.size());
    if (records.exif.empty() && !exif.empty())
      Exiv2::ExifParser::decode(records.exif, BytesOf(exif), size(exif));
  });
  IfReadable([&] {
    if (records.xmp.empty()) Exiv2::XmpParser::decode(records.xmp, XmpBlob(decoded));
  });
  IfReadable([&] {
    const std::string iptc = Blob(decoded, VIPS_META_IPTC_NAME);
    if (records.iptc.empty() && !iptc.empty())
      Exiv2::IptcParser::decode(records.iptc, BytesOf(iptc), size(iptc));
  });
  EraseIf(records.exif, IsStructure);
  return metadata;
}

void Metadata::Update(int width, int height) {
  auto& [exif, xmp, iptc] = *records_;
  const auto inExif = [&exif = exif](const char* key, auto value) {
    Set<Exiv2::ExifData, Exiv2::ExifKey>(exif, key, value);
  };
  const auto inXmp = [&xmp = xmp](const char* key, const std::string& value) {
    Set<Exiv2::XmpData, Exiv2::XmpKey>(xmp, key, value);
  };
  inExif("Exif.Photo.PixelXDimension", static_cast<std::uint32_t>(width));
  inExif("Exif.Photo.PixelYDimension", static_cast<std::uint32_t>(height));
  inExif("Exif.Photo.ColorSpace", std::uint16_t{1});
  inExif("Exif.Iop.InteroperabilityIndex", std::string("R98"));
  inXmp("Xmp.tiff.Orientation", "1");
  inXmp("Xmp.tiff.ImageWidth", std::to_string(width));
  inXmp("Xmp.tiff.ImageLength", std::to_string(height));
  inXmp("Xmp.exif.PixelXDimension", std::to_string(width));
  inXmp("Xmp.exif.PixelYDimension", std::to_string(height));
  inXmp("Xmp.exif.ColorSpace", "1");
  EraseIf(xmp, [](const Exiv2::Xmpdatum& datum) {
    return datum.key().starts_with("Xmp.xmp.Thumbnails") ||
           datum.key() == "Xmp.photoshop.ICCProfile";
  });
}

void Metadata::Remove(Strip what) {
  if (what == Strip::All) *records_ = {};
  if (what != Strip::Places) return;
  EraseIf(records_->exif,
          [](const Exiv2::Exifdatum& datum) { return datum.groupName() == "GPSInfo"; });
  EraseIf(records_->xmp,
          [](const Exiv2::Xmpdatum& datum) { return datum.key().starts_with("Xmp.exif.GPS"); });
}

int Metadata::Kinds() const {
  return (records_->exif.empty() ? 0 : kExif) | (records_->xmp.empty() ? 0 : kXmp) |
         (records_->iptc.empty() ? 0 : kIptc);
}

void Metadata::AttachTo(VImage& image) const {
  const auto set = [&](const char* name, const auto& bytes, std::size_t size) {
    if (size > 0) vips_image_set_blob_copy(image.get_image(), name, bytes, size);
  };
  if (!records_->exif.empty()) {
    Exiv2::Blob blob(kExifHead.begin(), kExifHead.end()), exif;
    Exiv2::ExifParser::encode(exif, Exiv2::littleEndian, records_->exif);
    blob.insert(blob.end(), exif.begin(), exif.end());
    set(VIPS_META_EXIF_NAME, blob.data(), blob.size());
  }
  if (!records_->xmp.empty()) {
    std::string xmp;
    Exiv2::XmpParser::encode(xmp, records_->xmp);
    set(VIPS_META_XMP_NAME, xmp.data(), xmp.size());
  }
  if (!records_->iptc.empty()) {
    const Exiv2::DataBuf iptc = Exiv2::IptcParser::encode(records_->iptc);
    set(VIPS_META_IPTC_NAME, iptc.pData_, static_cast<std::size_t>(iptc.size_));
  }
}

void Metadata::WriteInto(int descriptor) const {
  Prepare();
  const auto fail = [] { throw std::system_error(errno, std::generic_category()); };
  const off_t size = lseek(descriptor, 0, SEEK_END);
  if (size < 0) fail();
  std::vector<Exiv2::byte> bytes(static_cast<std::size_t>(size));
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t got =
        pread(descriptor, &bytes[done], bytes.size() - done, static_cast<off_t>(done));
    if (got <= 0) fail();
    done += static_cast<std::size_t>(got);
  }
  const auto file = Exiv2::ImageFactory::open(bytes.data(), static_cast<long>(bytes.size()));
  file->readMetadata();
  for (const Exiv2::Exifdatum& datum : records_->exif)
    file->exifData()[datum.key()].setValue(&datum.value());
  file->setXmpData(records_->xmp);
  file->setIptcData(records_->iptc);
  file->writeMetadata();

  Exiv2::BasicIo& io = file->io();
  if (io.open() != 0) fail();
  const Exiv2::byte* const written = io.mmap();
  if (ftruncate(descriptor, 0) != 0) fail();
  for (std::size_t done = 0; done < static_cast<std::size_t>(io.size());) {
    const ssize_t put =
        pwrite(descriptor, written + done, static_cast<std::size_t>(io.size()) - done,
               static_cast<off_t>(done));
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) fail();
    done += static_cast<std::size_t>(put);
  }
}

VImage KeptProperties(const VImage& image) {
  VImage kept = VImage::black(1, 1).copy();
  CopyFields(image.get_image(), kept.get_image());
  return kept;
}

void AttachProperties(const VImage& properties, VImage& image) {
  CopyFields(properties.get_image(), image.get_image());
}

#include "picture_io.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "metadata.h"
#include "stop.h"
#include "temporary_file.h"

namespace {

namespace fs = std::filesystem;
using vips::VImage;

struct Format {
  std::string_view extension;
  const char* saver;  // the format's suffix and the saver's options
  bool alpha;
};

// Losses that nobody sees, and colour at full resolution: strong looks show what chroma subsampling
// costs.
constexpr char kJpeg[] = ".jpg[Q=92,subsample_mode=off,optimize_coding=true]";
constexpr char kTiff[] = ".tif[compression=deflate,predictor=horizontal]";
constexpr char kHeif[] = ".heic[Q=85,subsample_mode=off]";
constexpr Format kFormats[] = {
    {".jpg", kJpeg, false},
    {".jpeg", kJpeg, false},
    {".jpe", kJpeg, false},
    {".jfif", kJpeg, false},
    {".png", ".png", true},
    {".webp", ".webp[Q=92,smart_subsample=true]", true},
    {".tif", kTiff, true},
    {".tiff", kTiff, true},
    {".heic", kHeif, true},
    {".heif", kHeif, true},
    {".avif", ".avif[Q=80,subsample_mode=off]", true},
    {".jxl", ".jxl[Q=92]", true},
    {".jp2", ".jp2[Q=92,subsample_mode=off]", true},
    {".gif", ".gif", true},
    {".ppm", ".ppm", false},
};

// Null for an extension that is unknown, or that libvips was built without.
const Format* FormatOf(const fs::path& path) {
  std::string extension = path.extension().string();
  std::ranges::transform(extension, extension.begin(),
                         [](unsigned char c) { return std::tolower(c); });
  for (const Format& format : kFormats) {
    if (format.extension != extension) continue;
    const char* saver = vips_foreign_find_save_target(format.saver);
    if (!saver) vips_error_clear();
    return saver ? &format : nullptr;
  }
  return nullptr;
}

// Lets a request to stop end the evaluation of `image`, which then throws.
void MakeStoppable(VImage& image) {
  vips_image_set_progress(image.get_image(), TRUE);
  const auto check = +[](VipsImage* evaluated, VipsProgress*, void*) {
    if (StopSignal()) vips_image_set_kill(evaluated, TRUE);
  };
  g_signal_connect(image.get_image(), "eval", G_CALLBACK(check), nullptr);
}

// libvips gathers its messages, one a line, for all threads together; the first names the cause.
std::runtime_error Reason() {
  std::string text = vips_error_buffer();
  vips_error_clear();
  text.resize(std::min(text.find('\n'), text.size()));
  return std::runtime_error(text.empty() ? "unknown failure of libvips" : text);
}

// Throws if the profile does not fit the pixels.
VImage ThroughProfile(const VImage& image) {
  const bool cmyk = image.interpretation() == VIPS_INTERPRETATION_CMYK;
  // The colours alone: alpha of 16 bits would come back unscaled.
  const int colours = image.bands() - (image.has_alpha() ? 1 : 0);
  const VImage converted =
      image.extract_band(0, VImage::option()->set("n", colours))
          .icc_transform("srgb", VImage::option()
                                     ->set("embedded", true)
                                     ->set("input_profile", cmyk ? "cmyk" : "srgb")
                                     ->set("intent", VIPS_INTENT_RELATIVE)
                                     ->set("black_point_compensation", true));
  if (!image.has_alpha()) return converted;
  const VImage alpha = image[colours];
  return converted.bandjoin(alpha.format() == VIPS_FORMAT_USHORT ? alpha >> 8.0 : alpha);
}

// 8-bit sRGB with or without alpha.
VImage ToSrgb(VImage image) {
  if (image.interpretation() == VIPS_INTERPRETATION_CMYK ||
      image.get_typeof(VIPS_META_ICC_NAME) != 0) {
    try {
      image = ThroughProfile(image);
    } catch (const vips::VError&) {
      // The profile is broken or of another colour model, so it says nothing of these pixels.
      vips_error_clear();
      image = image.copy();
      image.remove(VIPS_META_ICC_NAME);
    }
  }
  if (image.interpretation() != VIPS_INTERPRETATION_sRGB)
    image = image.colourspace(VIPS_INTERPRETATION_sRGB);
  if (image.bands() > 4) image = image.extract_band(0, VImage::option()->set("n", 4));
  return image.cast(VIPS_FORMAT_UCHAR);
}

Picture Decode(const fs::path& path) {
  VImage image = VImage::new_from_source(
      vips::VSource::new_from_file(path.c_str()), "",
      VImage::option()->set("fail_on", VIPS_FAIL_ON_ERROR)->set("access", VIPS_ACCESS_SEQUENTIAL));
  if (std::int64_t{image.width()} * image.height() > INT_MAX)
    throw std::runtime_error("the picture has too many pixels");
  image = ToSrgb(image);

  Picture picture;
  picture.hasAlpha = image.bands() == 4;
  picture.metadata = KeptMetadata(image);
  VImage pixels = VImage::bandjoin({image[2], image[1], image[0]});
  pixels = picture.hasAlpha ? pixels.bandjoin(image[3]) : pixels.bandjoin(255.0);
  MakeStoppable(pixels);
  if (vips_image_get_orientation(pixels.get_image()) != 1) {
    // A file is read once, from top to bottom; turning needs all of it.
    pixels = pixels.copy_memory().autorot();
  }
  picture.width = pixels.width();
  picture.height = pixels.height();
  std::size_t size = 0;
  picture.pixels.reset(static_cast<unsigned char*>(pixels.write_to_memory(&size)));
  return picture;
}

void Encode(const Picture& picture, const Format& format, int descriptor) {
  const VImage pixels = VImage::new_from_memory(
      picture.pixels.get(), picture.Bytes(), picture.width, picture.height, 4, VIPS_FORMAT_UCHAR);
  std::vector<VImage> bands{pixels[2], pixels[1], pixels[0]};
  if (picture.hasAlpha) bands.push_back(pixels[3]);
  VImage image = VImage::bandjoin(bands).copy(
      VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
  if (picture.hasAlpha && !format.alpha)
    image = image.flatten(VImage::option()->set("background", std::vector<double>{255, 255, 255}))
                .copy();
  AttachMetadata(picture.metadata, image);
  MakeStoppable(image);
  image.write_to_target(format.saver, vips::VTarget::new_to_descriptor(descriptor));
}

}  // namespace

Picture NewPicture(int width, int height) {
  Picture picture;
  picture.width = width;
  picture.height = height;
  picture.pixels.reset(static_cast<unsigned char*>(g_try_malloc0(picture.Bytes())));
  if (!picture.pixels) throw std::bad_alloc();
  picture.metadata = VImage::black(1, 1);
  return picture;
}

Picture LoadPicture(const fs::path& path) {
  try {
    return Decode(path);
  } catch (const vips::VError&) {
    throw Reason();
  }
}

void SavePicture(const Picture& picture, const fs::path& path) {
  const Format* format = FormatOf(path);
  if (!format) throw std::runtime_error("no format is known for this extension");
  TemporaryFile file(path);
  try {
    Encode(picture, *format, file.descriptor());
  } catch (const vips::VError&) {
    throw Reason();
  }
  if (StopSignal()) throw std::runtime_error("stopped");
  file.Commit();
}

bool IsWritable(const fs::path& path) {
  return FormatOf(path) != nullptr;
}

std::string WritableExtensions() {
  std::string list;
  for (const Format& format : kFormats)
    if (FormatOf(std::string("x").append(format.extension)))
      list.append(list.empty() ? "" : " ").append(format.extension);
  return list;
}

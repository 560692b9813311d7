#include "heic.h"

#include <libheif/heif.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "stop.h"

namespace {

template <auto release>
struct Release {
  void operator()(auto* object) const { release(object); }
};
template <class Object, auto release>
using Owner = std::unique_ptr<Object, Release<release>>;

void Check(const heif_error& error) {
  if (error.code != heif_error_Ok) throw std::runtime_error(error.message);
}

using HeifImage = Owner<heif_image, heif_image_release>;

HeifImage Copy(const vips::VImage& image) {
  const int width = image.width(), height = image.height();
  heif_image* made = nullptr;
  Check(heif_image_create(
      width, height, heif_colorspace_RGB,
      image.bands() == 4 ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, &made));
  HeifImage copy(made);
  Check(heif_image_add_plane(copy.get(), heif_channel_interleaved, width, height, 8));
  int stride = 0;
  std::uint8_t* const plane = heif_image_get_plane(copy.get(), heif_channel_interleaved, &stride);
  const std::size_t rowBytes = std::size_t{1} * image.bands() * width;
  constexpr int kStrip = 64;
  vips::VRegion region = image.region();
  for (int top = 0; top < height; top += kStrip) {
    if (StopSignal()) throw std::runtime_error("stopped");
    const int rows = std::min(kStrip, height - top);
    region.prepare(0, top, width, rows);
    for (int y = top; y < top + rows; ++y)
      std::memcpy(plane + std::ptrdiff_t{stride} * y, region.addr(0, y), rowBytes);
  }
  return copy;
}

// A record that is attached to the image; empty if there is none.
std::pair<const void*, int> Record(const vips::VImage& image, const char* name) {
  std::size_t size = 0;
  if (image.get_typeof(name) == 0) return {nullptr, 0};
  const void* const bytes = image.get_blob(name, &size);
  return {bytes, static_cast<int>(size)};
}

heif_error WriteTo(heif_context*, const void* bytes, std::size_t size, void* descriptor) {
  const char* from = static_cast<const char*>(bytes);
  while (size > 0) {
    const ssize_t written = write(*static_cast<int*>(descriptor), from, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return {heif_error_Encoding_error, heif_suberror_Cannot_write_output_data, ""};
    from += written;
    size -= static_cast<std::size_t>(written);
  }
  return {heif_error_Ok, heif_suberror_Unspecified, ""};
}

}  // namespace

void WriteHeic(const vips::VImage& image, int quality, int effort, int descriptor) {
  const HeifImage pixels = Copy(image);
  const Owner<heif_context, heif_context_free> context(heif_context_alloc());
  heif_encoder* found = nullptr;
  Check(heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &found));
  const Owner<heif_encoder, heif_encoder_release> encoder(found);
  Check(heif_encoder_set_lossy_quality(encoder.get(), quality));
  // Other encoders of HEVC need not know these; they work as well without.
  constexpr const char* kPresets[] = {"ultrafast", "ultrafast", "ultrafast", "superfast",
                                      "veryfast",  "fast",      "medium",    "slow",
                                      "slower",    "veryslow"};
  heif_encoder_set_parameter_string(encoder.get(), "preset", kPresets[std::clamp(effort, 0, 9)]);
  heif_encoder_set_parameter_string(encoder.get(), "chroma", "444");

  heif_image_handle* encoded = nullptr;
  Check(heif_context_encode_image(context.get(), pixels.get(), encoder.get(), nullptr, &encoded));
  const Owner<heif_image_handle, heif_image_handle_release> handle(encoded);
  if (const auto [exif, size] = Record(image, VIPS_META_EXIF_NAME); size > 0)
    Check(heif_context_add_exif_metadata(context.get(), handle.get(), exif, size));
  if (const auto [xmp, size] = Record(image, VIPS_META_XMP_NAME); size > 0)
    Check(heif_context_add_XMP_metadata(context.get(), handle.get(), xmp, size));
  heif_writer writer{1, WriteTo};
  errno = 0;
  const heif_error error = heif_context_write(context.get(), &writer, &descriptor);
  if (error.code != heif_error_Ok && errno) throw std::system_error(errno, std::generic_category());
  Check(error);
}

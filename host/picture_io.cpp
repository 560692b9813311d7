#include "picture_io.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <iterator>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "bands.h"
#include "heic.h"
#include "stop.h"
#include "temporary_file.h"

namespace {

namespace fs = std::filesystem;
using vips::VImage;

struct Format {
  std::string_view extension = {};
  const char* saver = nullptr;  // the format's suffix, as libvips knows it, and its fixed options
  bool alpha = true;
  bool pages = false;
  int depth = 16;   // bits a sample
  int quality = 0;  // what is taken for none given; 0 for formats without losses
  int effort = -1;  // the same; -1 for formats without a choice
  int leastEffort = 0, mostEffort = 9;
  int records = 0;             // the kinds of metadata that it holds
  bool recordsByVips = false;  // libvips writes them with the pixels
};
constexpr int kAllRecords = Metadata::kExif | Metadata::kXmp | Metadata::kIptc;
constexpr int kExifAndXmp = Metadata::kExif | Metadata::kXmp;

// Losses that nobody sees, and colour at full resolution: strong looks show what chroma subsampling
// costs.
constexpr Format kJpeg{.saver = ".jpg[subsample_mode=off",
                       .alpha = false,
                       .depth = 8,
                       .quality = 92,
                       .records = kAllRecords};
constexpr Format kTiff{.saver = ".tif[compression=deflate,predictor=horizontal",
                       .pages = true,
                       .records = kAllRecords};
constexpr Format kPng{.saver = ".png[", .effort = 6, .records = kAllRecords};
constexpr Format kWebp{.saver = ".webp[smart_subsample=true",
                       .pages = true,
                       .depth = 8,
                       .quality = 92,
                       .effort = 4,
                       .mostEffort = 6,
                       .records = kExifAndXmp};
constexpr Format kHeic{.saver = ".heic[",
                       .depth = 8,
                       .quality = 85,
                       .effort = 2,
                       .records = kExifAndXmp,
                       .recordsByVips = true};
constexpr Format kAvif{.saver = ".avif[subsample_mode=off",
                       .depth = 8,
                       .quality = 80,
                       .effort = 2,
                       .records = kExifAndXmp,
                       .recordsByVips = true};
constexpr Format kJxl{.saver = ".jxl[", .quality = 92, .effort = 5, .leastEffort = 3};
constexpr Format kJp2{.saver = ".jp2[subsample_mode=off", .quality = 92, .records = kAllRecords};
constexpr Format kGif{
    .saver = ".gif[", .pages = true, .depth = 8, .effort = 7, .leastEffort = 1, .mostEffort = 10};
constexpr Format kPpm{.saver = ".ppm[", .alpha = false};

constexpr Format Named(std::string_view extension, Format format) {
  format.extension = extension;
  return format;
}
constexpr Format kFormats[] = {Named(".jpg", kJpeg),  Named(".jpeg", kJpeg), Named(".jpe", kJpeg),
                               Named(".jfif", kJpeg), Named(".png", kPng),   Named(".webp", kWebp),
                               Named(".tif", kTiff),  Named(".tiff", kTiff), Named(".heic", kHeic),
                               Named(".heif", kHeic), Named(".avif", kAvif), Named(".jxl", kJxl),
                               Named(".jp2", kJp2),   Named(".gif", kGif),   Named(".ppm", kPpm)};

// The kinds of metadata that a file of several pages holds: into one of those only libvips writes, and
// to TIFF no EXIF.
int RecordsOf(const Format& format, int pages) {
  if (pages == 1 || format.recordsByVips) return format.records;
  return format.depth == 16 ? format.records & ~Metadata::kExif : format.records;
}

std::string LowerExtension(const fs::path& path) {
  std::string extension = path.extension().string();
  std::ranges::transform(extension, extension.begin(),
                         [](unsigned char c) { return std::tolower(c); });
  return extension;
}

std::string Suffix(const Format& format) {
  return std::string(format.saver).substr(0, std::string_view(format.saver).find('['));
}

// Null for an extension that is unknown, or that libvips was built without.
const Format* FormatOf(const fs::path& path) {
  const std::string extension = LowerExtension(path);
  for (const Format& format : kFormats) {
    if (format.extension != extension) continue;
    const char* saver = vips_foreign_find_save_target(Suffix(format).c_str());
    if (!saver) vips_error_clear();
    return saver ? &format : nullptr;
  }
  return nullptr;
}

int EffortOf(const Format& format, const SaveOptions& options) {
  const int range = format.mostEffort - format.leastEffort;
  return options.effort ? format.leastEffort + (*options.effort * range + 4) / 9 : format.effort;
}

// The suffix and all options of a saver.
std::string SaverOf(const Format& format, const SaveOptions& options, const Picture& picture) {
  std::string saver = format.saver;
  const auto add = [&saver](const std::string& name, int value) {
    saver += (saver.ends_with('[') ? "" : ",") + name + "=" + std::to_string(value);
  };
  if (format.quality) add("Q", options.quality.value_or(format.quality));
  if (format.effort >= 0)
    add(Suffix(format) == ".png" ? "compression" : "effort", EffortOf(format, options));
  if (options.progressive && (Suffix(format) == ".jpg" || Suffix(format) == ".png"))
    add("interlace", 1);
  if (picture.pages > 1) add("page_height", picture.height);
  return saver + "]";
}

// Lets a request to stop, or a failure beside it, end the evaluation of `image`, which then throws.
void MakeStoppable(VImage& image, const int* failure = nullptr) {
  vips_image_set_progress(image.get_image(), TRUE);
  const auto check = +[](VipsImage* evaluated, VipsProgress*, const int* failed) CALLED_BY_VIPS {
    if (StopSignal() || (failed && *failed)) vips_image_set_kill(evaluated, TRUE);
  };
  g_signal_connect(image.get_image(), "eval", G_CALLBACK(check), const_cast<int*>(failure));
}

// The first line of what libvips has to say names the cause.
std::runtime_error Reason() {
  std::string text = vips_error_buffer();
  vips_error_clear();
  text.resize(std::min(text.find('\n'), text.size()));
  return std::runtime_error(text.empty() ? "unknown failure of libvips" : text);
}

// Runs work on files with libvips. Its messages go into one buffer for all threads, so work that
// fails is done once more while no other runs, to learn why.
template <class Work>
auto WithReason(const Work& work) {
  static std::shared_mutex alone;
  try {
    const std::shared_lock lock(alone);
    return work();
  } catch (const vips::VError&) {
    if (StopSignal()) throw std::runtime_error("stopped");
  }
  const std::unique_lock lock(alone);
  vips_error_clear();
  try {
    return work();
  } catch (const vips::VError&) {
    throw Reason();
  }
}

// Throws if the profile does not fit the pixels.
VImage ThroughProfile(const VImage& image, int depth) {
  const bool cmyk = image.interpretation() == VIPS_INTERPRETATION_CMYK;
  // The colours alone: alpha of 16 bits would come back unscaled.
  const int colours = image.bands() - (image.has_alpha() ? 1 : 0);
  const VImage converted =
      image.extract_band(0, VImage::option()->set("n", colours))
          .icc_transform("srgb", VImage::option()
                                     ->set("embedded", true)
                                     ->set("input_profile", cmyk ? "cmyk" : "srgb")
                                     ->set("intent", VIPS_INTENT_RELATIVE)
                                     ->set("depth", depth)
                                     ->set("black_point_compensation", true));
  if (!image.has_alpha()) return converted;
  const VImage alpha = image[colours];
  const bool isDeep = alpha.format() == VIPS_FORMAT_USHORT;
  if (depth == 16) return converted.bandjoin(isDeep ? alpha : alpha * 257.0);
  return converted.bandjoin(isDeep ? alpha >> 8.0 : alpha);
}

// sRGB with or without alpha.
VImage ToSrgb(VImage image, int depth) {
  if (image.interpretation() == VIPS_INTERPRETATION_CMYK ||
      image.get_typeof(VIPS_META_ICC_NAME) != 0) {
    try {
      image = ThroughProfile(image, depth);
    } catch (const vips::VError&) {
      // The profile is broken or of another colour model, so it says nothing of these pixels.
      vips_error_clear();
      image = image.copy();
      image.remove(VIPS_META_ICC_NAME);
    }
  }
  const auto model = depth == 16 ? VIPS_INTERPRETATION_RGB16 : VIPS_INTERPRETATION_sRGB;
  if (image.interpretation() != model) image = image.colourspace(model);
  if (image.bands() > 4) image = image.extract_band(0, VImage::option()->set("n", 4));
  return image.cast(depth == 16 ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR);
}

int DepthOf(const VImage& image) {
  return 8 * static_cast<int>(vips_format_sizeof(image.format()));
}

// Cameras' raw files look like other formats, of which only a thumbnail would be read.
bool IsCameraRaw(const fs::path& path) {
  constexpr std::string_view kRaw[] = {".dng", ".cr2", ".cr3", ".crw", ".nef", ".nrw", ".arw",
                                       ".sr2", ".orf", ".rw2", ".raf", ".pef", ".srw", ".3fr"};
  return std::ranges::find(kRaw, LowerExtension(path)) != std::end(kRaw);
}

// The loader of files that libvips reads by name alone; null if there is none. It goes by the
// content but for the formats whose content says nothing.
const char* NamedLoader(const fs::path& path) {
  const char* loader = vips_foreign_find_load(path.c_str());
  if (!loader) vips_error_clear();
  if (loader && std::string_view(loader) == "VipsForeignLoadMagickFile") return "magickload";
  return LowerExtension(path) == ".tga" ? "magickload" : nullptr;
}

VImage Open(const fs::path& path) {
  const auto options = [] {
    return VImage::option()
        ->set("fail_on", VIPS_FAIL_ON_ERROR)
        ->set("access", VIPS_ACCESS_SEQUENTIAL);
  };
  const vips::VSource source = vips::VSource::new_from_file(path.c_str());
  if (!vips_foreign_find_load_source(source.get_source())) {
    if (const char* loader = NamedLoader(path)) {
      vips_error_clear();
      VImage image;
      VImage::call(loader, options()->set("filename", path.c_str())->set("out", &image));
      return image;
    }
  }
  const VImage first = VImage::new_from_source(source, "", options());
  if (vips_image_get_n_pages(first.get_image()) < 2) return first;
  try {
    return VImage::new_from_source(source, "n=-1", options());
  } catch (const vips::VError&) {
    vips_error_clear();  // the pages differ in size
    return VImage::new_from_source(source, "", options());
  }
}

// Every page turned upright by the picture's orientation.
VImage Upright(const VImage& image, int pages) {
  if (vips_image_get_orientation(image.get_image()) == 1) return image;
  // A file is read once, from top to bottom; turning needs all of it.
  const VImage whole = image.copy_memory();
  const int height = whole.height() / pages;
  VImage upright = whole.crop(0, 0, whole.width(), height).autorot();
  for (int page = 1; page < pages; ++page)
    upright = upright.join(whole.crop(0, page * height, whole.width(), height).autorot(),
                           VIPS_DIRECTION_VERTICAL);
  return upright;
}

Picture Decode(const fs::path& path, const LoadOptions& options) {
  VImage image = Open(path);
  Picture picture;
  picture.sourcePages = std::max(vips_image_get_n_pages(image.get_image()), 1);
  picture.pages = std::max(image.height() / vips_image_get_page_height(image.get_image()), 1);
  picture.sourceDepth = DepthOf(image);
  picture.sourceIsInks = image.interpretation() == VIPS_INTERPRETATION_CMYK;
  const std::int64_t count = std::int64_t{image.width()} * image.height();
  if (count / picture.pages > INT_MAX || count > options.maxPixels)
    throw std::runtime_error("the picture has " + std::to_string(image.width()) + " x " +
                             std::to_string(image.height()) +
                             " pixels, which is too many (--max-pixels)");
  picture.depth = options.deep && picture.sourceDepth > 8 ? 16 : 8;
  image = ToSrgb(image, picture.depth);

  picture.hasAlpha = image.bands() == 4;
  picture.properties = KeptProperties(image);
  picture.metadata = Metadata::Of(path, image);
  picture.metadata.Remove(options.strip);
  VImage pixels = Exchanged(image, 4);
  MakeStoppable(pixels);
  pixels = Upright(pixels, picture.pages);
  picture.width = pixels.width();
  picture.height = pixels.height() / picture.pages;
  const std::size_t bytes = picture.PageBytes() * picture.pages;
  picture.pixels = AllocatePixels(bytes);
  pixels.write(VImage::new_from_memory(picture.pixels.get(), bytes, pixels.width(), pixels.height(),
                                       4, pixels.format()));
  return picture;
}

// A file to write to. What fails ends the evaluation of the picture; to the encoder it looks as if
// all went well, as some never end otherwise.
class Sink {
 public:
  explicit Sink(int descriptor) : descriptor_(descriptor) {}

  vips::VTarget Target() {
    VipsTargetCustom* const target = vips_target_custom_new();
    const auto connect = [&](const char* signal, GCallback call) {
      g_signal_connect(target, signal, call, this);
    };
    connect("write", G_CALLBACK(+[](VipsTargetCustom*, const void* bytes, gint64 size, Sink* sink)
                                     CALLED_BY_VIPS {
                                       return sink->Write(static_cast<const char*>(bytes), size);
                                     }));
    connect("read",
            G_CALLBACK(+[](VipsTargetCustom*, void* bytes, gint64 size, Sink* sink) CALLED_BY_VIPS {
              return gint64{read(sink->descriptor_, bytes, static_cast<std::size_t>(size))};
            }));
    connect("seek",
            G_CALLBACK(+[](VipsTargetCustom*, gint64 offset, int from, Sink* sink) CALLED_BY_VIPS {
              return gint64{lseek(sink->descriptor_, offset, from)};
            }));
    return vips::VTarget(VIPS_TARGET(target));
  }

  const int* Failure() const { return &failure_; }
  void Check() const {
    if (failure_) throw std::system_error(failure_, std::generic_category());
  }

 private:
  CALLED_BY_VIPS gint64 Write(const char* bytes, gint64 size) {
    for (gint64 done = 0; done < size && !failure_;) {
      const ssize_t written =
          write(descriptor_, bytes + done, static_cast<std::size_t>(size - done));
      if (written >= 0)
        done += written;
      else if (errno != EINTR)
        failure_ = errno;
    }
    return size;
  }

  int descriptor_;
  int failure_ = 0;
};

void Encode(const Picture& picture, const Format& format, const SaveOptions& options,
            int descriptor) {
  const bool deep = picture.depth == 16, isFitting = format.pages || picture.pages == 1;
  const int height = picture.height * (isFitting ? picture.pages : 1);
  const VImage pixels = VImage::new_from_memory(
      picture.pixels.get(), std::size_t{4} * (picture.depth / 8) * picture.width * height,
      picture.width, height, 4, deep ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR);
  VImage image =
      Exchanged(pixels, picture.hasAlpha ? 4 : 3)
          .copy(VImage::option()->set("interpretation",
                                      deep ? VIPS_INTERPRETATION_RGB16 : VIPS_INTERPRETATION_sRGB));
  if (picture.hasAlpha && !format.alpha) {
    const double white = deep ? 65535 : 255;
    image =
        image.flatten(VImage::option()->set("background", std::vector{white, white, white})).copy();
  }
  if (deep && format.depth == 8)
    image = (image >> 8.0)
                .cast(VIPS_FORMAT_UCHAR)
                .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
  AttachProperties(picture.properties, image);
  const int pages = isFitting ? picture.pages : 1;
  if (pages == 1) image.remove(VIPS_META_PAGE_HEIGHT);
  if (format.recordsByVips || pages > 1) picture.metadata.AttachTo(image);

  if (lseek(descriptor, 0, SEEK_SET) < 0 || ftruncate(descriptor, 0) != 0)
    throw std::system_error(errno, std::generic_category());
  if (Suffix(format) == ".heic")
    return WriteHeic(image, options.quality.value_or(format.quality), EffortOf(format, options),
                     descriptor);
  Sink sink(descriptor);
  MakeStoppable(image, sink.Failure());
  try {
    image.write_to_target(SaverOf(format, options, picture).c_str(), sink.Target());
  } catch (const vips::VError&) {
    sink.Check();
    throw;
  }
  sink.Check();
  if (format.records && !format.recordsByVips && pages == 1 && picture.metadata.Kinds() != 0)
    picture.metadata.WriteInto(descriptor);
}

}  // namespace

Picture::Pixels AllocatePixels(std::size_t bytes) {
  Picture::Pixels pixels(static_cast<unsigned char*>(g_try_malloc0(bytes)));
  if (!pixels) throw std::bad_alloc();
  // What is smaller comes from memory that the allocator uses again.
  constexpr std::size_t kLarge = 8 << 20;
  if (bytes >= kLarge) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(pixels.get()) / page * page + page;
    madvise(reinterpret_cast<void*>(begin), bytes - page, MADV_HUGEPAGE);
  }
  return pixels;
}

Picture NewPicture(int width, int height) {
  Picture picture;
  picture.width = width;
  picture.height = height;
  picture.pixels = AllocatePixels(picture.PageBytes());
  picture.properties = VImage::black(1, 1);
  return picture;
}

Picture Shrunk(const Picture& picture, int width, int height) {
  const std::size_t bytes = picture.PageBytes();
  VImage image = VImage::new_from_memory(picture.pixels.get(), bytes, picture.width, picture.height,
                                         4, VIPS_FORMAT_UCHAR)
                     .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
  const double scale =
      std::min({1.0, double(width) / picture.width, double(height) / picture.height});
  // Without the box filter that goes ahead by default, which costs more than it saves.
  const auto resize = [scale](const VImage& from) {
    return from.resize(scale, VImage::option()->set("gap", 0.0));
  };
  if (picture.hasAlpha)  // transparent colours count by their alpha
    image = resize(image.premultiply()).unpremultiply().rint().cast(VIPS_FORMAT_UCHAR);
  else
    image = resize(image.extract_band(0, VImage::option()->set("n", 3))).bandjoin(255.0);
  Picture shrunk = NewPicture(image.width(), image.height());
  shrunk.hasAlpha = picture.hasAlpha;
  std::size_t size = 0;
  shrunk.pixels.reset(static_cast<unsigned char*>(image.write_to_memory(&size)));
  return shrunk;
}

Picture LoadPicture(const fs::path& path, const LoadOptions& options) {
  if (path == kStandard) {
    NamelessFile all;
    CopyBytes(STDIN_FILENO, all.descriptor());
    return LoadPicture(all.Path(), options);
  }
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (error) throw std::system_error(error);
  if (fs::is_directory(status)) throw std::runtime_error("it is a folder");
  if (fs::is_regular_file(status) && fs::file_size(path, error) == 0 && !error)
    throw std::runtime_error("empty file");
  if (access(path.c_str(), R_OK) != 0) throw std::system_error(errno, std::generic_category());
  if (IsCameraRaw(path))
    throw std::runtime_error("raw files of cameras are not read; develop it first");
  return WithReason([&] { return Decode(path, options); });
}

void SavePicture(const Picture& picture, const fs::path& path, const SaveOptions& options) {
  const Format* format = FormatOf(path);
  if (!format) throw std::runtime_error("no format is known for this extension");
  TemporaryFile file(path);
  WithReason([&] { Encode(picture, *format, options, file.descriptor()); });
  if (StopSignal()) throw std::runtime_error("stopped");
  file.Commit();
}

void SendPicture(const Picture& picture, const std::string& format, const SaveOptions& options) {
  const Format* const known = FormatOf(WithExtension("x", format));
  if (!known) throw std::runtime_error("no format is known for this extension");
  NamelessFile file;
  WithReason([&] { Encode(picture, *known, options, file.descriptor()); });
  if (StopSignal()) throw std::runtime_error("stopped");
  if (lseek(file.descriptor(), 0, SEEK_SET) < 0)
    throw std::system_error(errno, std::generic_category());
  CopyBytes(file.descriptor(), STDOUT_FILENO);
}

fs::path WithExtension(fs::path stem, const std::string& extension) {
  if (!extension.empty() && !extension.starts_with('.')) stem += ".";
  return stem += extension;
}

std::vector<std::string> LossesOf(const Picture& picture, const fs::path& path) {
  const Format* const format = FormatOf(path);
  std::vector<std::string> losses;
  if (!format) return losses;
  const int pages = format->pages ? picture.pages : 1;
  const int depth = std::min(format->depth, picture.depth);
  if (picture.sourcePages > pages)
    losses.push_back("all but " + (pages == 1 ? "the first" : std::to_string(pages)) + " of its " +
                     std::to_string(picture.sourcePages) + " pages");
  if (picture.sourceDepth > depth)
    losses.push_back(std::to_string(picture.sourceDepth - depth) + " of the " +
                     std::to_string(picture.sourceDepth) + " bits of its samples");
  const int records = picture.metadata.Kinds() & ~RecordsOf(*format, pages);
  for (const auto& [kind, name] :
       {std::pair{Metadata::kExif, "EXIF"}, {Metadata::kXmp, "XMP"}, {Metadata::kIptc, "IPTC"}})
    if (records & kind) losses.push_back(std::string("its ") + name + " records");
  if (picture.sourceIsInks) losses.push_back("its inks (CMYK becomes RGB)");
  return losses;
}

bool IsWritable(const fs::path& path) {
  return FormatOf(path) != nullptr;
}

bool IsReadable(const fs::path& path) {
  bool readable = false;
  try {
    readable =
        vips_foreign_find_load_source(vips::VSource::new_from_file(path.c_str()).get_source()) ||
        NamedLoader(path);
  } catch (const vips::VError&) {
  }
  vips_error_clear();
  return readable;
}

const std::string& WritableExtensions() {
  static const std::string extensions = [] {  // the formats are not found in no time
    std::string list;
    for (const Format& format : kFormats)
      if (FormatOf(std::string("x").append(format.extension)))
        list.append(list.empty() ? "" : " ").append(format.extension);
    return list;
  }();
  return extensions;
}

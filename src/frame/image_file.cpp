#include "frame/image_file.h"

#include <spng.h>
#include <turbojpeg.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <system_error>
#include <type_traits>
#include <utility>

#include "frame/file.h"

namespace tintwerk {
namespace {

using Bytes = std::span<const unsigned char>;

/// A C function as the deleter of a unique_ptr.
template <auto kFree>
struct FreeBy {
  void operator()(auto* object) const { kFree(object); }
};

/// Larger files are not read. 64 megapixels of noise as an 8-bit RGBA PNG just fit.
constexpr std::uintmax_t kMaxFileSize = std::uintmax_t{1} << 28;

/// Less for a JPEG, which may need 12 bytes of working memory and picture for each of its pixels.
constexpr std::size_t kMaxJpegSize = std::size_t{1} << 27;

/// libspng holds a few rows at 16 bits a sample, which for the widest pictures would be a gigabyte.
constexpr std::uint32_t kMaxPngWidth = 1 << 20;

/// Every scan of a JPEG can be made to walk over all blocks for next to no bytes. Encoders write
/// about ten.
constexpr int kMaxJpegScans = 64;

constexpr std::array<unsigned char, 8> kPngSignature = {0x89, 'P',  'N',  'G',
                                                        '\r', '\n', 0x1a, '\n'};
constexpr std::array<unsigned char, 4> kPngEndCrc = {0xae, 0x42, 0x60, 0x82};
constexpr std::array<unsigned char, 3> kJpegSignature = {0xff, 0xd8, 0xff};

bool StartsWith(Bytes bytes, Bytes start) {
  // Algorithms of std::ranges are objects that may become unique symbols, and those would keep the
  // library in memory after a host unloads it.
  return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

/// A block for a picture whose size is within the limit.
Gdiplus::Status MakeBlock(std::int64_t width, std::int64_t height, PixelBlock& block) {
  if (width > kMaxDecodedPixels / height) return Gdiplus::OutOfMemory;
  block.width = static_cast<int>(width);
  block.height = static_cast<int>(height);
  block.bytes = AllocatePixels(block.Size());
  return block.bytes ? Gdiplus::Ok : Gdiplus::OutOfMemory;
}

/// Serves a PNG without its ancillary chunks. Of those only transparency makes pixels, and
/// compressed text or profiles could be made to cost minutes.
class PngSource {
 public:
  explicit PngSource(Bytes file) : rest_(file) {}

  static int Read(spng_ctx*, void* source, void* out, std::size_t length) {
    return static_cast<PngSource*>(source)->Take(static_cast<unsigned char*>(out), length)
               ? SPNG_OK
               : SPNG_IO_EOF;
  }

  /// Whether the last chunk that was begun is whole; libspng does not always read the CRC of the
  /// end chunk.
  bool EndsWhole() const { return run_ == 0 || StartsWith(rest_, kPngEndCrc); }

 private:
  bool Take(unsigned char* out, std::size_t length) {
    while (length > 0) {
      if (run_ == 0) SkipToNeededChunk();
      const std::size_t count = std::min({length, run_, rest_.size()});
      if (count == 0) return false;
      std::memcpy(out, rest_.data(), count);
      Advance(count);
      run_ -= count;
      out += count;
      length -= count;
    }
    return true;
  }

  void SkipToNeededChunk() {
    constexpr std::array<unsigned char, 4> kTransparency = {'t', 'R', 'N', 'S'};
    constexpr unsigned kAncillary = 0x20;
    while (rest_.size() >= 8) {
      const Bytes type = rest_.subspan(4, 4);
      // Length, type, data and CRC.
      const std::size_t size = 12 + ((std::size_t{rest_[0]} << 24) | (std::size_t{rest_[1]} << 16) |
                                     (std::size_t{rest_[2]} << 8) | rest_[3]);
      if (!(type[0] & kAncillary) || StartsWith(type, kTransparency)) {
        run_ = size;
        return;
      }
      Advance(std::min(size, rest_.size()));
    }
  }

  void Advance(std::size_t count) { rest_ = rest_.subspan(count); }

  Bytes rest_;
  std::size_t run_ = kPngSignature.size();  // bytes up to the next chunk that is to be judged
};

/// How often libspng was short of memory, in all threads together: it takes failures of zlib for
/// damage. A decoder that runs while memory fails another one may take its own damage for that.
std::atomic<unsigned> pngStarved = 0;

/// An allocation that notes if it fails.
template <auto kAllocate>
void* AllocateForPng(auto... arguments) {
  void* const block = kAllocate(arguments...);
  if (!block) ++pngStarved;
  return block;
}

Gdiplus::Status DecodePng(Bytes file, PixelBlock& block) {
  spng_alloc allocator{AllocateForPng<std::malloc>, AllocateForPng<std::realloc>,
                       AllocateForPng<std::calloc>, std::free};
  const std::unique_ptr<spng_ctx, FreeBy<spng_ctx_free>> context(spng_ctx_new2(&allocator, 0));
  if (!context) return Gdiplus::OutOfMemory;
  const auto status = [before = pngStarved.load()](int error) {
    const bool tooLarge = pngStarved != before || error == SPNG_EMEM || error == SPNG_EUSER_WIDTH ||
                          error == SPNG_EUSER_HEIGHT;
    return tooLarge ? Gdiplus::OutOfMemory : Gdiplus::UnknownImageFormat;
  };

  PngSource source(file);
  spng_set_png_stream(context.get(), PngSource::Read, &source);
  spng_set_crc_action(context.get(), SPNG_CRC_ERROR, SPNG_CRC_ERROR);
  spng_set_image_limits(context.get(), kMaxPngWidth, kMaxDecodedPixels);
  spng_ihdr header;
  if (const int error = spng_get_ihdr(context.get(), &header)) return status(error);
  if (const auto made = MakeBlock(header.width, header.height, block)) return made;
  if (const int error = spng_decode_image(context.get(), block.bytes.get(), block.Size(),
                                          SPNG_FMT_RGBA8, SPNG_DECODE_TRNS)) {
    return status(error);
  }
  if (spng_decode_chunks(context.get()) || !source.EndsWhole()) return Gdiplus::UnknownImageFormat;

  unsigned char* const end = block.bytes.get() + block.Size();
  for (unsigned char* pixel = block.bytes.get(); pixel != end; pixel += 4)
    std::swap(pixel[0], pixel[2]);
  return Gdiplus::Ok;
}

/// What TurboJPEG keeps to itself, read off the segments.
struct JpegSegments {
  bool adobe = false;  // by the writer that stores CMYK inverted
  int scans = 0;
};

JpegSegments ScanJpeg(Bytes file) {
  constexpr std::array<unsigned char, 5> kAdobe = {'A', 'd', 'o', 'b', 'e'};
  constexpr int kRestart0 = 0xd0, kStart = 0xd8, kEnd = 0xd9, kStartOfScan = 0xda, kApp14 = 0xee;
  JpegSegments result;
  // Entropy-coded bytes run from one 0xff to the next as well; there 0 or a restart mark follows.
  for (auto at = std::find(file.begin(), file.end(), 0xff); at != file.end();
       at = std::find(at, file.end(), 0xff)) {
    at = std::find_if(at, file.end(), [](unsigned char byte) { return byte != 0xff; });
    if (at == file.end() || *at == kEnd) break;
    const int marker = *at++;
    if (marker <= 1 || (marker >= kRestart0 && marker <= kStart)) continue;
    const Bytes segment(at, file.end());
    if (segment.size() < 2) break;
    if (marker == kStartOfScan) ++result.scans;
    if (marker == kApp14 && StartsWith(segment.subspan(2), kAdobe)) result.adobe = true;
    const std::size_t size = (std::size_t{segment[0]} << 8) | segment[1];
    at += static_cast<std::ptrdiff_t>(std::min(size, segment.size()));
  }
  return result;
}

/// Multiplies CMYK out to blue, green, red and alpha, in place.
void CmykToPixels(std::span<unsigned char> samples, bool inverted) {
  const int flip = inverted ? 0 : 255;
  for (std::size_t i = 0; i < samples.size(); i += 4) {
    unsigned char* const pixel = &samples[i];
    const int light = pixel[3] ^ flip;
    const auto multiply = [&](int ink) {
      return static_cast<unsigned char>(((ink ^ flip) * light + 127) / 255);
    };
    const unsigned char blue = multiply(pixel[2]);
    pixel[1] = multiply(pixel[1]);
    pixel[2] = multiply(pixel[0]);
    pixel[0] = blue;
    pixel[3] = 255;
  }
}

Gdiplus::Status DecodeJpeg(Bytes file, PixelBlock& block) {
  if (file.size() > kMaxJpegSize) return Gdiplus::OutOfMemory;
  const JpegSegments segments = ScanJpeg(file);
  if (segments.scans > kMaxJpegScans) return Gdiplus::UnknownImageFormat;
  const std::unique_ptr<std::remove_pointer_t<tjhandle>, FreeBy<tjDestroy>> decoder(
      tjInitDecompress());
  if (!decoder) return Gdiplus::OutOfMemory;

  // That memory ran out TurboJPEG tells in words alone.
  const auto status = [&decoder] {
    return std::strstr(tjGetErrorStr2(decoder.get()), "emory") ? Gdiplus::OutOfMemory
                                                               : Gdiplus::UnknownImageFormat;
  };
  // The result is not looked at: it complains of samplings that have no name but can be decoded.
  int width = 0, height = 0, sampling = 0, space = -1;
  tjDecompressHeader3(decoder.get(), file.data(), file.size(), &width, &height, &sampling, &space);
  if (width < 1 || height < 1) return status();
  if (const auto made = MakeBlock(width, height, block)) return made;

  const bool cmyk = space == TJCS_CMYK || space == TJCS_YCCK;
  if (tjDecompress2(decoder.get(), file.data(), file.size(), block.bytes.get(), width, 0, height,
                    cmyk ? TJPF_CMYK : TJPF_BGRA,
                    TJFLAG_ACCURATEDCT | TJFLAG_LIMITSCANS | TJFLAG_STOPONWARNING)) {
    return status();
  }
  if (cmyk) CmykToPixels({block.bytes.get(), block.Size()}, segments.adobe);
  return Gdiplus::Ok;
}

}  // namespace

Gdiplus::Status DecodeImage(std::span<const unsigned char> file, PixelBlock& picture) {
  PixelBlock block;
  Gdiplus::Status status = Gdiplus::UnknownImageFormat;
  if (StartsWith(file, kPngSignature)) status = DecodePng(file, block);
  if (StartsWith(file, kJpegSignature)) status = DecodeJpeg(file, block);
  if (status == Gdiplus::Ok) picture = std::move(block);
  return status;
}

Gdiplus::Status DecodeImageFile(const std::filesystem::path& path, PixelBlock& picture) {
  const FileHandle file = OpenFile(path, "rb");
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (!file || error) return Gdiplus::FileNotFound;
  if (size > kMaxFileSize) return Gdiplus::OutOfMemory;
  const std::unique_ptr<unsigned char[]> bytes(new (std::nothrow) unsigned char[size]);
  if (!bytes) return Gdiplus::OutOfMemory;
  const std::size_t read = std::fread(bytes.get(), 1, size, file.get());
  return DecodeImage({bytes.get(), read}, picture);
}

}  // namespace tintwerk

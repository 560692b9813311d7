// Looks on the pixels of callers of the C interface.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "c/list.h"
#include "c/resources.h"
#include "frame/image.h"
#include "frame/parallel.h"
#include "frame/random.h"
#include "looks/files.h"
#include "tintwerk/c.h"
#include "tintwerk/effect.h"

using namespace tintwerk;

struct tintwerk_prepared {
  const ListedLook& look;
  int width, height;
  std::wstring root;
  mutable FileStore store{true};  // closed: looks only read it
};

namespace {

// The caller's progress function as the looks' host.
class Host final : public CObjProgress {
 public:
  Host(tintwerk_progress progress, void* user) : progress_(progress), user_(user) {}

  void ReportPosition(float position) override {
    at_ = std::max(at_, std::clamp(position / 100, 0.0f, 1.0f));
    KeepGoing();
  }
  int KeepGoing() override {
    if (progress_ && !stopped_) stopped_ = progress_(at_, user_) == 0;
    return !stopped_;
  }

  bool Stopped() const { return stopped_; }
  void Finish() const {
    if (progress_) progress_(1, user_);
  }
  /// What to hand to looks: null if nobody listens.
  CObjProgress* Object() { return progress_ ? this : nullptr; }

 private:
  tintwerk_progress progress_;
  void* user_;
  float at_ = 0;
  bool stopped_ = false;
};

// The caller's picture.
struct Image {
  unsigned char* pixels;
  int width, height;
  std::ptrdiff_t stride;
  int format;

  std::ptrdiff_t Row() const { return std::ptrdiff_t{4} * width; }
  bool IsPacked() const { return stride == Row(); }
  bool IsSwapped() const { return format == TINTWERK_RGBA; }
};

tintwerk_error SizeError(int width, int height) {
  return width < 1 || height < 1 || !PixelCount(width, height) ? TINTWERK_BAD_SIZE : TINTWERK_OK;
}

tintwerk_error ImageError(const Image& image, double strength) {
  if (!image.pixels) return TINTWERK_NULL;
  if (const auto error = SizeError(image.width, image.height)) return error;
  if (image.stride < image.Row() ||
      image.stride > std::numeric_limits<std::ptrdiff_t>::max() / image.height)
    return TINTWERK_BAD_STRIDE;
  if (image.format != TINTWERK_BGRA && image.format != TINTWERK_RGBA) return TINTWERK_BAD_FORMAT;
  return strength >= 0 && strength <= 1 ? TINTWERK_OK : TINTWERK_BAD_STRENGTH;
}

// Copies pixels, with red and blue exchanged if the look takes them in another order than the
// caller has them. In place too.
void CopyRow(unsigned char* to, const unsigned char* from, int width, bool swap) {
  if (!swap) {
    if (to != from) std::memcpy(to, from, std::size_t{4} * width);
    return;
  }
  for (int x = 0; x < width; ++x, to += 4, from += 4) {
    std::uint32_t pixel;
    std::memcpy(&pixel, from, 4);
    constexpr bool kLittle = std::endian::native == std::endian::little;
    const std::uint32_t ends = pixel & (kLittle ? 0x00FF00FF : 0xFF00FF00);  // bytes 0 and 2
    pixel = (pixel ^ ends) | ends << 16 | ends >> 16;
    std::memcpy(to, &pixel, 4);
  }
}

// The picture as looks take it, or back from that.
void Gather(unsigned char* packed, const Image& image) {
  ParallelFor(image.height, [=](std::int64_t y) {
    CopyRow(packed + image.Row() * y, image.pixels + image.stride * y, image.width,
            image.IsSwapped());
  });
}
void Scatter(const Image& image, const unsigned char* packed) {
  ParallelFor(image.height, [=](std::int64_t y) {
    CopyRow(image.pixels + image.stride * y, packed + image.Row() * y, image.width,
            image.IsSwapped());
  });
}
void SwapInPlace(const Image& image) {
  if (image.IsSwapped()) Gather(image.pixels, image);
}

// Each thread that a look will draw on starts a sequence of its own.
void SeedThreads() {
  ParallelFor(omp_get_max_threads(),
              [](std::int64_t thread) { SeedRandom(static_cast<unsigned>(7919 * thread + 1)); });
}

tintwerk_error RunRecipe(const ListedLook& look, const Call& call, const Host& host) {
  const int done = look.recipe(call);
  if (host.Stopped()) return TINTWERK_STOPPED;
  if (!call.store->IsComplete()) return TINTWERK_MISSING_FILE;
  return done ? TINTWERK_OK : TINTWERK_OUT_OF_MEMORY;
}

// Runs a look on a copy, and lays that over the picture if all went well.
tintwerk_error RunOnCopy(const ListedLook& look, const Image& image, Call call, double strength,
                         const Host& host) {
  const std::size_t bytes = std::size_t{4} * call.Count();
  const PixelMemory result = RequirePixels(bytes);
  PixelMemory before;  // as looks take it, for a mix
  if (strength < 1) {
    before = RequirePixels(bytes);
    Gather(before.get(), image);
  }
  Gather(result.get(), image);
  call.pixels = result.get();
  if (const auto error = RunRecipe(look, call, host)) return error;
  if (before)
    CEffect::Effect_AlphaAdJust(before.get(), result.get(), image.width, image.height, strength);
  Scatter(image, before ? before.get() : result.get());
  return TINTWERK_OK;
}

// Runs a look on the picture itself: with its files open and nobody to stop it, it can fail only
// for want of memory, and then it has not written.
tintwerk_error RunInPlace(const ListedLook& look, const Image& image, Call call,
                          const Host& host) try {
  SwapInPlace(image);
  call.pixels = image.pixels;
  const auto error = RunRecipe(look, call, host);
  SwapInPlace(image);
  return error;
} catch (...) {
  SwapInPlace(image);
  throw;
}

// @param prepared whether the files in the store were opened before
tintwerk_error Give(const ListedLook& look, const Image& image, const std::wstring& root,
                    FileStore& store, bool prepared, double strength, Host& host) {
  if (!host.KeepGoing()) return TINTWERK_STOPPED;
  if (strength > 0) {
    const Call call{nullptr,       image.width, image.height, const_cast<wchar_t*>(root.data()),
                    host.Object(), 0,           100,          &store};
    const bool inPlace = prepared && strength == 1 && image.IsPacked() && !host.Object();
    const auto error = inPlace ? RunInPlace(look, image, call, host)
                               : RunOnCopy(look, image, call, strength, host);
    if (error) return error;
  }
  host.Finish();
  return TINTWERK_OK;
}

// Turns what is thrown into errors. Besides memory that runs out, only a progress function that is
// written in another language can do so: it counts as one that stops.
template <class Body>
tintwerk_error Guarded(const Body& body) try {
  return body();
} catch (const std::bad_alloc&) {
  return TINTWERK_OUT_OF_MEMORY;
} catch (...) {
  return TINTWERK_STOPPED;
}

}  // namespace

const char* tintwerk_error_text(int error) {
  switch (error) {
    case TINTWERK_OK:
      return "no error";
    case TINTWERK_STOPPED:
      return "stopped by the progress function";
    case TINTWERK_NULL:
      return "a pointer is null";
    case TINTWERK_BAD_SIZE:
      return "the width or height is below 1, or the picture has too many pixels";
    case TINTWERK_BAD_STRIDE:
      return "the stride is shorter than a row of pixels, or too large";
    case TINTWERK_BAD_FORMAT:
      return "unknown pixel format";
    case TINTWERK_BAD_STRENGTH:
      return "the strength is not a number from 0 to 1";
    case TINTWERK_UNKNOWN_LOOK:
      return "no look has that name or title";
    case TINTWERK_NO_RESOURCES:
      return "no folder Effects with support files was found";
    case TINTWERK_MISSING_FILE:
      return "a support file of the look is missing or cannot be read";
    case TINTWERK_OUT_OF_MEMORY:
      return "not enough memory";
  }
  return "unknown error";
}

tintwerk_error tintwerk_apply(const char* look, void* pixels, int width, int height,
                              ptrdiff_t stride, int format, double strength, const char* resources,
                              tintwerk_progress progress, void* user) {
  return Guarded([&] {
    if (!look) return TINTWERK_NULL;
    const Image image{static_cast<unsigned char*>(pixels), width, height, stride, format};
    if (const auto error = ImageError(image, strength)) return error;
    const ListedLook* const found = FindLook(look);
    if (!found) return TINTWERK_UNKNOWN_LOOK;
    const auto root = ResourceRoot(resources);
    if (!root) return TINTWERK_NO_RESOURCES;
    FileStore store(false);
    Host host(progress, user);
    return Give(*found, image, *root, store, false, strength, host);
  });
}

tintwerk_error tintwerk_prepare(const char* look, int width, int height, const char* resources,
                                tintwerk_prepared** prepared) {
  return Guarded([&] {
    if (!prepared) return TINTWERK_NULL;
    *prepared = nullptr;
    if (!look) return TINTWERK_NULL;
    if (const auto error = SizeError(width, height)) return error;
    const ListedLook* const found = FindLook(look);
    if (!found) return TINTWERK_UNKNOWN_LOOK;
    const auto root = ResourceRoot(resources);
    if (!root) return TINTWERK_NO_RESOURCES;
    std::unique_ptr<tintwerk_prepared> made(new tintwerk_prepared{*found, width, height, *root});

    // A run on a blank picture opens all that any other one will ask for.
    const std::size_t bytes = std::size_t{4} * *PixelCount(width, height);
    const PixelMemory blank = RequirePixels(bytes);
    std::memset(blank.get(), 0, bytes);
    const Call call{blank.get(), width, height, made->root.data(), nullptr, 0, 100, &made->store};
    if (const auto error = RunRecipe(*found, call, Host(nullptr, nullptr))) return error;
    made->store.Close();
    *prepared = made.release();
    return TINTWERK_OK;
  });
}

tintwerk_error tintwerk_prepared_apply(const tintwerk_prepared* prepared, void* pixels,
                                       ptrdiff_t stride, int format, double strength,
                                       tintwerk_progress progress, void* user) {
  return Guarded([&] {
    if (!prepared) return TINTWERK_NULL;
    const Image image{static_cast<unsigned char*>(pixels), prepared->width, prepared->height,
                      stride, format};
    if (const auto error = ImageError(image, strength)) return error;
    if (prepared->look.told.draws_random_numbers) SeedThreads();
    Host host(progress, user);
    return Give(prepared->look, image, prepared->root, prepared->store, true, strength, host);
  });
}

void tintwerk_prepared_free(tintwerk_prepared* prepared) {
  delete prepared;
}

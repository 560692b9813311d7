// The notation of looks. A look reads like its recipe: it names its files, tests them once and runs
// its passes.
//
//     LOOK(Effect_XingMang) {
//       Files files(call);
//       const auto soft = files.Square(L"ZVSoftlight.png", kPlaneB);
//       const auto stars = files.Picture(L"xingmang.jpg");
//       if (!files) return 0;
//       return EachColour(call, [=](int v, int, int m) { return soft(v, m); }, stars);
//     }
#pragma once

#include <omp.h>

#include <algorithm>
#include <array>
#include <new>
#include <tuple>
#include <vector>

#include "frame/layer.h"
#include "frame/progress.h"
#include "looks/files.h"
#include "looks/tones.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {

/// What a look does with a call.
/// @throw std::bad_alloc
using Recipe = int(const Call& call);

#define TINTWERK_EFFECT(entry, category, title, description) Recipe Recipe_##entry;
#include "tintwerk/effect_list.h"

/// Runs a recipe. Memory that runs out gives 0; a call with a store wants to know of it.
inline int Run(Recipe* recipe, const Call& call) try {
  return recipe(call);
} catch (const std::bad_alloc&) {
  if (call.store) throw;
  return 0;
}

/// Defines a recipe as the value of `run`, an expression of a `call`, and its entry.
#define LOOK_ENTRY(entry, run)                                                              \
  int tintwerk::Recipe_##entry(const Call& call) {                                          \
    return run;                                                                             \
  }                                                                                         \
  int CEffect::entry(unsigned char* pixels, int width, int height, void* resourceRoot,      \
                     CObjProgress* progress, int progressLow, int progressHigh) {           \
    return Run(Recipe_##entry,                                                              \
               {pixels, width, height, resourceRoot, progress, progressLow, progressHigh}); \
  }

/// Defines a look; its body follows, has a `call` and returns 1 or 0. Null pixels and a pixel count
/// beyond an int give 0 before it runs.
#define LOOK(entry)                                             \
  static int Body_##entry(const Call& call);                    \
  LOOK_ENTRY(entry, call.IsWorkable() ? Body_##entry(call) : 0) \
  static int Body_##entry([[maybe_unused]] const Call& call)

/// A look that is one expression.
#define LOOK_BY(entry, ...) \
  LOOK(entry) {             \
    return __VA_ARGS__;     \
  }

/// Defines a look that is just its curves, given as samples of red, green and blue.
#define TONE_LOOK(entry, ...)                                \
  LOOK(entry) {                                              \
    static constexpr ToneTables kTones = Tones(__VA_ARGS__); \
    return ThroughTones(call, kTones);                       \
  }

/// A copy of the image as it stands. @throw std::bad_alloc
inline PixelMemory CopyOf(const Call& call) {
  PixelMemory copy = CopyOf(call.pixels, call.Count());
  if (!copy) throw std::bad_alloc();
  return copy;
}

/// The same call over other pixels of the image's size. A look of several steps works on a copy and
/// lays it over the image at its end, so that memory which runs out leaves the image as it was.
inline Call Over(const Call& call, const PixelMemory& pixels) {
  Call over = call;
  over.pixels = pixels.get();
  return over;
}

/// Lays a copy that was worked on over the image.
inline void LayBack(const Call& call, const PixelMemory& copy) {
  std::copy_n(copy.get(), std::size_t{4} * call.Count(), call.pixels);
}

/// A copy of the image, blurred. @throw std::bad_alloc
inline PixelMemory BlurredCopy(const Call& call, int radius) {
  PixelMemory copy = CopyOf(call);
  if (!CPixelProcess::stackBlur(copy.get(), call.width, call.height, radius, nullptr, 0, 100))
    throw std::bad_alloc();
  return copy;
}

/// The image that a pass runs over, and the rows that it reports: none unless told.
struct Pass {
  Pass(const Call& whole) : call(whole) {}  // NOLINT: a call is a pass
  /// Row y reports start + y x span / height, whatever the host's own range is.
  Pass(const Call& whole, int start, int span)
      : call(whole),
        rows(whole.progress, whole.height,
             static_cast<float>(span) / static_cast<float>(std::max(whole.height, 1)), start) {}

  const Call& call;
  RowProgress rows;
};

/// Runs body(pixels, first row, rows, layers' pixels) over bands of rows that fit into a cache. Where
/// nothing is reported all bands but the last hold a whole number of four-pixel groups, so drivers
/// that work such groups give the bytes of the whole image.
/// @return false if the host wants the work stopped
/// @throw std::bad_alloc before the first pixel is written; never without layers
template <std::size_t N, class Body>
bool EachBand(const Pass& pass, const std::array<const Layer*, N>& layers, const Body& body) {
  constexpr std::int64_t kBandBytes = 1 << 16;
  constexpr int kGroup = 4;  // rows
  const std::int64_t pitch = std::int64_t{4} * std::max(pass.call.width, 0);
  const int height = pass.call.height;
  const auto bandRows = static_cast<int>(std::clamp<std::int64_t>(
      kBandBytes / std::max<std::int64_t>(pitch * kGroup, 1) * kGroup, kGroup, 64));
  const int threads = omp_get_max_threads();
  std::vector<std::array<std::unique_ptr<Layer::Reader>, N>> readers(N > 0 ? threads : 0);
  if (pitch > 0 && height > 0)
    for (auto& own : readers)
      for (std::size_t i = 0; i < N; ++i) own[i] = layers[i]->NewReader(std::min(bandRows, height));

  for (int first = 0; first < height;) {
    const int last = pass.rows.NextReport(first, height);
    const std::int64_t groups = (last - first + kGroup) / kGroup;
    const auto team = std::min<std::int64_t>(groups, threads);
    ParallelFor(team, [&](std::int64_t member) {
      const auto begin = [&](std::int64_t m) {
        return static_cast<int>(
            std::min<std::int64_t>(first + kGroup * (groups * m / team), last + 1));
      };
      std::array<const unsigned char*, N> over;
      for (int y = begin(member), end = begin(member + 1); y < end && pitch > 0; y += bandRows) {
        const int below = std::min(y + bandRows, end);
        for (std::size_t i = 0; i < N; ++i) over[i] = readers[member][i]->Rows(y, below);
        body(pass.call.pixels + pitch * y, y, below - y, over);
      }
    });
    if (!pass.rows.Finished(last)) return false;
    first = last + 1;
  }
  return true;
}

/// The same as body(pixels, count, layers' pixels...).
template <class Body, class... Layers>
bool EachRun(const Pass& pass, const Body& body, const Layers&... layers) {
  const std::int64_t width = pass.call.width;
  return EachBand(pass, std::array<const Layer*, sizeof...(Layers)>{&*layers...},
                  [&, width](unsigned char* pixels, int, int rows, const auto& over) {
                    std::apply([&](auto... m) { body(pixels, width * rows, m...); }, over);
                  });
}

/// Every byte of colour becomes body(v, c, m...): its value, the plane of its channel, and what the
/// layers have there.
template <class Body, class... Layers>
bool EachColour(const Pass& pass, const Body& body, const Layers&... layers) {
  return EachRun(
      pass,
      [&body](unsigned char* pixels, std::int64_t count, auto... m) {
        const Body own(body);
        for (std::int64_t i = 0; i < 4 * count; i += 4)
          for (int c = 0; c < 3; ++c)
            pixels[i + c] = static_cast<unsigned char>(own(pixels[i + c], c, m[i + c]...));
      },
      layers...);
}

/// The same as body(v, c, d, m...), with d the RadialKey.
template <class Body, class... Layers>
bool EachColourByRadius(const Pass& pass, const Body& body, const Layers&... layers) {
  const int width = pass.call.width;
  const RadialKey key(width, pass.call.height);
  return EachBand(pass, std::array<const Layer*, sizeof...(Layers)>{&*layers...},
                  [=, &body](unsigned char* pixels, int first, int rows, const auto& over) {
                    std::apply(
                        [=, &body](auto... m) {
                          const Body own(body);
                          std::int64_t i = 0;
                          for (int y = first; y < first + rows; ++y) {
                            const float row = key.Row(y);
                            for (int x = 0; x < width; ++x, i += 4) {
                              const int d = key.At(row, x);
                              for (int c = 0; c < 3; ++c)
                                pixels[i + c] = static_cast<unsigned char>(
                                    own(pixels[i + c], c, d, m[i + c]...));
                            }
                          }
                        },
                        over);
                  });
}

/// Runs body(pixel, layers' pixels...) for every pixel.
template <class Body, class... Layers>
bool EachPixel(const Pass& pass, const Body& body, const Layers&... layers) {
  return EachRun(
      pass,
      [&body](unsigned char* pixels, std::int64_t count, auto... m) {
        const Body own(body);
        for (std::int64_t i = 0; i < 4 * count; i += 4) own(pixels + i, (m + i)...);
      },
      layers...);
}

/// The same as body(pixel, x, y, layers' pixels...).
template <class Body, class... Layers>
bool EachPixelAt(const Pass& pass, const Body& body, const Layers&... layers) {
  const int width = pass.call.width;
  return EachBand(pass, std::array<const Layer*, sizeof...(Layers)>{&*layers...},
                  [=, &body](unsigned char* pixels, int first, int rows, const auto& over) {
                    std::apply(
                        [=, &body](auto... m) {
                          const Body own(body);
                          std::int64_t i = 0;
                          for (int y = first; y < first + rows; ++y)
                            for (int x = 0; x < width; ++x, i += 4)
                              own(pixels + i, x, y, (m + i)...);
                        },
                        over);
                  });
}

/// The luma of a pixel that keys most grey stages, in integers.
inline int Luma(const unsigned char* pixel) {
  return (306 * pixel[2] + 601 * pixel[1] + 117 * pixel[0]) >> 10;
}

/// Sends every pixel through a table a channel.
inline bool ThroughTones(const Pass& pass, const ToneTables& tones) {
  return EachRun(pass, [&tones](unsigned char* pixels, std::int64_t count) {
    ApplyTables(pixels, count, tones.blue.data(), tones.green.data(), tones.red.data());
  });
}

}  // namespace tintwerk

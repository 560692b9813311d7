// The stack blur: a triangular window along the rows, then along the columns, each truncated to
// bytes.
#include <omp.h>

#include "filters/line_blocks.h"
#include "filters/stack_blur_kernels.h"
#include "frame/image.h"
#include "pixel/tone_curve.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

/// 256 x (radius + 1)^2 must fit an int; larger radii count as this one.
constexpr int kMaxRadius = 2895;

constexpr std::uint32_t kAlpha = 0xFF000000;
constexpr std::uint32_t kAllButRed = 0xFF00FFFF;

// A steep S-curve about 128.
constexpr ToneTable kHighLight = {
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,    //
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,    //
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,    //
    0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   1,    //
    1,   1,   1,   1,   1,   1,   1,   1,   1,   2,   2,   2,   2,   2,   3,   3,    //
    3,   3,   4,   4,   5,   5,   5,   6,   7,   7,   8,   9,   9,   10,  11,  13,   //
    13,  15,  15,  17,  18,  20,  22,  23,  25,  26,  29,  32,  33,  36,  40,  43,   //
    44,  48,  53,  57,  61,  64,  68,  74,  78,  85,  90,  97,  104, 111, 119, 127,  //
    128, 136, 143, 151, 156, 163, 170, 175, 178, 184, 188, 193, 198, 202, 204, 208,  //
    212, 215, 216, 220, 223, 225, 227, 229, 230, 233, 234, 236, 237, 238, 240, 241,  //
    242, 243, 244, 245, 246, 247, 248, 248, 249, 249, 250, 250, 251, 251, 251, 251,  //
    252, 252, 252, 253, 253, 253, 253, 254, 254, 254, 254, 254, 254, 254, 254, 254,  //
    254, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,  //
    255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,  //
    255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,  //
    255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};

// Repeats the ends of the lines of a block, then blurs them.
void BlurRows(unsigned char* block, std::int64_t count, int radius, bool pixels) {
  unsigned char* const samples = block + std::int64_t{kBlockBytes} * radius;
  unsigned char* const end = samples + kBlockBytes * count;
  for (unsigned char* at = block; at < samples; at += kBlockBytes)
    std::memcpy(at, samples, kBlockBytes);
  for (int i = 0; i < radius + 2; ++i)
    std::memcpy(end + std::int64_t{kBlockBytes} * i, end - kBlockBytes, kBlockBytes);
  BlurBlock(block, count, radius, pixels);
}

/// Columns that are blurred together, row by row downward, in place or from one buffer to another.
/// Wide enough for whole cache lines and pages, narrow enough to keep the rows that leave at hand.
struct Strip {
  static std::int64_t Width(int radius) {
    return std::clamp<std::int64_t>((1 << 17) / (radius + 1) / 64 * 64, 512, 2048);
  }
  static std::int64_t MemorySize(int radius) {
    return Width(radius) * (kWindowState + 2 + radius + 1);
  }

  /// @param memory MemorySize bytes, aligned to 64
  template <class Finish>
  void Blur(const unsigned char* from, unsigned char* to, unsigned char* memory,
            const Finish& finish) const {
    const std::int64_t width = Width(radius);
    unsigned char* const state = memory;
    const auto step = [this, state](const StripRows& rows, unsigned char* result) {
      BlurStripRow(rows, radius, pixels, bytes, state, result);
    };
    unsigned char* const mean = state + kWindowState * width;
    unsigned char* const first = mean + width;
    unsigned char* const kept = first + width;  // the last radius + 1 rows, in turn
    const auto row = [&](std::int64_t y) { return from + pitch * std::min(y, height - 1); };

    std::memcpy(first, from, bytes);
    step({first, first, first, true}, nullptr);
    for (int i = 1; i <= radius + 1; ++i) step({row(i), first, first, false}, nullptr);
    for (std::int64_t y = 0, slot = 0; y < height; ++y) {
      Prefetch(row(y + radius + 4), bytes);
      std::memcpy(kept + width * slot, row(y), bytes);
      slot = slot == radius ? 0 : slot + 1;
      const unsigned char* const leaving = y < radius ? first : kept + width * slot;
      step({row(y + radius + 2), leaving, row(y + 1), false}, mean);
      finish(to + pitch * y, mean, bytes);
    }
  }

  std::int64_t pitch;
  std::int64_t height;
  std::int64_t bytes;
  int radius;
  bool pixels;
};

/// Stores a run of cells but for the bits of each that stay.
template <class Cell>
struct StoreCells {
  Cell keep;

  void operator()(unsigned char* image, const unsigned char* blurred, std::int64_t bytes) const {
    for (std::int64_t i = 0; i < bytes; i += sizeof(Cell)) {
      Cell old, value;
      std::memcpy(&old, image + i, sizeof(Cell));
      std::memcpy(&value, blurred + i, sizeof(Cell));
      value = Merge(old, value, keep);
      std::memcpy(image + i, &value, sizeof(Cell));
    }
  }
};

unsigned char HighPass(unsigned char source, unsigned char blurred) {
  return ClampToByte(source - blurred + 128);
}

/// Blurs the rows of an image, then its columns.
/// @param between the buffer that holds the image between the two; null for the image itself
/// @param keep    bits of a cell that stay
/// @param finish  stores what the second pass gives: finish(image, blurred, bytes), and may spoil
///                `blurred`
/// @return false if allocation fails; nothing has been changed then
template <class Cell, class Finish>
bool Blur(unsigned char* image, unsigned char* between, int width, int height, int radius,
          Cell keep, CObjProgress* progress, const Finish& finish) {
  constexpr bool kPixels = sizeof(Cell) == 4;
  constexpr int kCell = sizeof(Cell);
  const std::int64_t pitch = std::int64_t{kCell} * width;
  const std::int64_t blockSize = kBlockBytes * (std::int64_t{width} + 2 * radius + 2);
  const WorkerMemory memory(omp_get_max_threads(), std::max(blockSize, Strip::MemorySize(radius)));
  if (!memory.IsValid()) return false;
  if (!between) between = image;

  std::int64_t ready = 0;
  ForEachSpan(RowProgress(progress, 0, 50, height), height,
              [&](std::int64_t top, std::int64_t count) {
                ready = top + count;
                ForEachRun(top, count, kBlockLines<Cell>, memory,
                           [=](std::int64_t row, std::int64_t rows, unsigned char* block) {
                             const std::int64_t samples = std::int64_t{kBlockBytes} * radius;
                             GatherRows<Cell>(image, width, row, rows, block + samples);
                             BlurRows(block, width, radius, kPixels);
                             ScatterRows<Cell>(block, between, width, row, rows, keep);
                           });
              });
  // After a stop the second pass starts all the same, and finds the rest black.
  std::memset(between + pitch * ready, 0, pitch * (height - ready));
  const auto columns = [&](std::int64_t left, std::int64_t count, unsigned char* to,
                           const auto& store) {
    const std::int64_t share = (count + memory.Workers() - 1) / memory.Workers();
    const auto run = static_cast<int>(std::min(Strip::Width(radius) / kCell, share));
    ForEachRun(left, count, run, memory,
               [=](std::int64_t column, std::int64_t some, unsigned char* own) {
                 const Strip strip{pitch, height, kCell * some, radius, kPixels};
                 strip.Blur(between + kCell * column, to + kCell * column, own, store);
               });
  };
  if (!progress) {
    columns(0, width, image, finish);
    return true;
  }
  // The columns between two reports are few: more are blurred ahead, and go to the image only with
  // their report.
  const std::int64_t ahead = Strip::Width(radius) / kCell * memory.Workers();
  std::int64_t blurred = 0;
  ForEachSpan(
      RowProgress(progress, 50, 100, width), width, [&](std::int64_t left, std::int64_t count) {
        if (const std::int64_t end = left + count; end > blurred) {
          const std::int64_t some = std::min(std::max(ahead, end - blurred), width - blurred);
          columns(blurred, some, between, StoreCells<Cell>{0});
          blurred += some;
        }
        ParallelFor(height, [=](std::int64_t y) {
          const std::int64_t at = pitch * y + kCell * left;
          finish(image + at, between + at, kCell * count);
        });
      });
  return true;
}

void BlurInPlace(unsigned char* pixels, int width, int height, int radius, std::uint32_t keep) {
  if (!HasPixels(pixels, width, height) || radius < 1) return;
  Blur<std::uint32_t>(pixels, nullptr, width, height, std::min(radius, kMaxRadius), keep, nullptr,
                      StoreCells<std::uint32_t>{keep});
}

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

bool CPixelProcess::stackBlur(unsigned char* pixels, int width, int height, int radius,
                              CObjProgress* progress, int, int) {
  if (!IsWorkable(pixels, width, height)) return false;
  if (!HasPixels(pixels, width, height) || radius < 0) return true;
  // A stop shows which rows the first pass had reached, and leaves the rest of the image alone.
  const PixelMemory between = progress ? AllocatePixels(std::size_t{4} * width * height) : nullptr;
  if (progress && !between) return false;
  return Blur<std::uint32_t>(pixels, progress ? between.get() : nullptr, width, height,
                             std::min(radius, kMaxRadius), kAlpha, progress,
                             StoreCells<std::uint32_t>{kAlpha});
}

void CPixelProcess::BlurOneChannel(unsigned char* plane, int width, int height, int radius) {
  if (!HasPixels(plane, width, height) || radius < 1) return;
  Blur<std::uint8_t>(plane, nullptr, width, height, std::min(radius, kMaxRadius), 0, nullptr,
                     StoreCells<std::uint8_t>{0});
}

void SFDSP::stackBlur(unsigned char* pixels, int width, int height, int radius) {
  BlurInPlace(pixels, width, height, radius, kAlpha);
}

void SFDSP::stackBlurRedChannel(unsigned char* pixels, int width, int height, int radius) {
  BlurInPlace(pixels, width, height, radius, kAllButRed);
}

void SFDSP::stackBlurAndHighPass(unsigned char* pixels, int width, int height, int radius) {
  if (!HasPixels(pixels, width, height) || radius < 1) return;
  const PixelMemory between = AllocatePixels(std::size_t{4} * width * height);
  if (!between) return;
  Blur<std::uint32_t>(pixels, between.get(), width, height, std::min(radius, kMaxRadius), kAlpha,
                      nullptr,
                      [](unsigned char* image, unsigned char* blurred, std::int64_t bytes) {
                        for (std::int64_t i = 0; i < bytes; ++i)
                          blurred[i] = HighPass(image[i], blurred[i]);
                        StoreCells<std::uint32_t>{kAlpha}(image, blurred, bytes);
                      });
}

void SFDSP::BlurOneChannel(unsigned char* plane, int width, int height, int radius) {
  CPixelProcess::BlurOneChannel(plane, width, height, radius);
}

void SFDSP::BlurChannelAndHighLight(unsigned char* plane, int width, int height, int radius) {
  if (!HasPixels(plane, width, height) || radius < 0) return;
  const PixelMemory between = AllocatePixels(std::size_t{1} * width * height);
  if (!between) return;
  Blur<std::uint8_t>(plane, between.get(), width, height, std::min(radius, kMaxRadius), 0, nullptr,
                     [](unsigned char* image, const unsigned char* blurred, std::int64_t bytes) {
                       for (std::int64_t i = 0; i < bytes; ++i)
                         image[i] = kHighLight[HighPass(image[i], blurred[i])];
                     });
}

int SFDSP::GetStackBlurRadius(int radius, int width, int height) {
  const std::uint32_t product = static_cast<std::uint32_t>(radius) *
                                static_cast<std::uint32_t>(width) *
                                static_cast<std::uint32_t>(height);
  const auto scaled =
      static_cast<int>(static_cast<float>(static_cast<std::int32_t>(product)) / 307200.0f + 0.5f);
  return std::max(scaled, radius);
}

// Stylisers that draw random numbers. They run on the calling thread, as the order of the draws is
// part of the result.
#include <algorithm>
#include <cstring>
#include <ctime>

#include "filters/rows.h"
#include "frame/random.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

void SeedFromClock() {
  SeedRandom(static_cast<unsigned>(std::time(nullptr)));
}

}  // namespace

int CPixelProcess::GenGauss(int amount) {
  // Four uniform draws, scaled to unit variance about 0.
  const int sum = Random() + Random() + Random() + Random();
  return Truncate((sum * 5.28596089837e-5 - 3.46410161514) * amount * 127.0 / 100.0);
}

int CPixelProcess::Istone_Noisify(unsigned char* pixels, int width, int height, int amount,
                                  bool perChannel, CObjProgress* progress, int progressLow,
                                  int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  SeedFromClock();
  const int held = std::clamp(amount, 0, 100);
  const auto rows = RowProgress::ReportsOnly(progress, progressLow, progressHigh, height);
  for (int y = 0; y < height; ++y) {
    unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
    for (int x = 0; x < width; ++x, pixel += 4) {
      int draw = 0;
      for (int c = 0; c < 3; ++c) {
        if (c == 0 || perChannel) draw = GenGauss(held);
        pixel[c] = ClampToByte(pixel[c] + draw);
      }
    }
    rows.Finished(y);
  }
  return 1;
}

int CPixelProcess::Istone_Shift(unsigned char* pixels, int width, int height, int amount,
                                CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  SeedFromClock();
  const std::int64_t most = std::max(amount, 0);
  const auto rows = RowProgress::ReportsOnly(progress, progressLow, progressHigh, height);
  for (int y = 0; y < height; ++y) {
    const auto distance = static_cast<int>(Random() % (most + 1));
    if (distance != 0 && width > 0) {
      unsigned char* const row = pixels + 4 * std::int64_t{width} * y;
      const bool right = Random() % 2 == 1;
      const int freed = std::min(distance, width);
      const std::size_t kept = std::size_t{4} * (width - freed);
      unsigned char edge[4];
      std::memcpy(edge, right ? row : row + std::size_t{4} * (width - 1), 4);
      unsigned char* const inner = row + std::size_t{4} * freed;
      std::memmove(right ? inner : row, right ? row : inner, kept);
      unsigned char* fill = right ? row : row + kept;
      for (int x = 0; x < freed; ++x, fill += 4) std::memcpy(fill, edge, 3);
    }
    rows.Finished(y);
  }
  return 1;
}

int CPixelProcess::Istone_Splash(unsigned char* pixels, int width, int height, int amount,
                                 CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const auto copy = CopyOf(pixels, *PixelCount(width, height));
  if (!copy) return 0;
  SeedFromClock();
  const int a = std::max(amount, 3);
  const auto rows = RowProgress::ReportsOnly(progress, progressLow, progressHigh, height);
  for (int y = 0; y < height; ++y) {
    unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
    for (int x = 0; x < width; ++x, pixel += 4) {
      const int dx = Random() % a - a / 2;
      const int dy = Random() % a - a / 2;
      const std::int64_t fromX = std::clamp<std::int64_t>(std::int64_t{x} + dx, 0, width - 1);
      const std::int64_t fromY = std::clamp<std::int64_t>(std::int64_t{y} + dy, 0, height - 1);
      std::memcpy(pixel, copy.get() + 4 * (fromY * width + fromX), 3);
    }
    rows.Finished(y);
  }
  return 1;
}

void CPixelProcess::NoiseEx(unsigned char* pixel, int amount) {
  if (!pixel) return;
  for (int c = 2; c >= 0; --c) {
    const float uniform = static_cast<float>(Random()) / static_cast<float>(kRandomMax);
    const int draw = Truncate((uniform - 0.5) * amount);
    pixel[c] = ClampToByte(std::int64_t{pixel[c]} + draw);
  }
}

int CPixelProcess::Noise(unsigned char* pixels, int width, int height, int amount,
                         CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const RowProgress rows(progress, progressLow, progressHigh, height);
  for (int y = 0; y < height; ++y) {
    unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
    for (int x = 0; x < width; ++x, pixel += 4) NoiseEx(pixel, amount);
    if (!rows.Finished(y)) break;
  }
  return 1;
}

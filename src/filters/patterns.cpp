// Stylisers that lay a pattern over the image: blinds, grids, relief, dither, mosaic.
#include <algorithm>
#include <array>
#include <memory>
#include <new>

#include "filters/rows.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

// Stripes that fade into a colour over a period. Position along the stripes' axis, opacity in
// percent.
class Stripes {
 public:
  Stripes(int width, int height, int size, int opacity)
      : period_(std::max(std::min(std::max(width, height), size), 2)),
        step_(std::clamp(opacity, 1, 100) * 255.0 / 100.0 / (period_ - 1.0)) {}

  int At(int position) const { return ClampToByte((position % period_) * step_); }

 private:
  int period_;
  double step_;
};

void MoveToward(unsigned char* pixel, tagRGBQUAD color, int alpha) {
  const int target[] = {color.rgbBlue, color.rgbGreen, color.rgbRed};
  for (int c = 0; c < 3; ++c)
    pixel[c] = static_cast<unsigned char>(pixel[c] + (target[c] - pixel[c]) * alpha / 255);
}

}  // namespace

int CPixelProcess::Blinds(unsigned char* pixels, int width, int height, int direction, int size,
                          int opacity, unsigned char red, unsigned char green, unsigned char blue,
                          CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const Stripes stripes(width, height, size, opacity);
  const tagRGBQUAD color{blue, green, red, 0};
  // These blinds report from 0 on, wherever their span begins.
  const float scale = static_cast<float>(std::int64_t{progressHigh} - progressLow) /
                      static_cast<float>(std::max(height, 1));
  ForEachRow(RowProgress(progress, height, scale, 0), height, [=](std::int64_t y) {
    unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
    const int rowAlpha = stripes.At(static_cast<int>(height - y - 1));
    for (int x = 0; x < width; ++x, pixel += 4)
      MoveToward(pixel, color, direction != 0 ? stripes.At(x) : rowAlpha);
  });
  return 1;
}

int CPixelProcess::Istone_Blinds(unsigned char* pixels, int width, int height, BLIND_TYPE type,
                                 int size, int opacity, tagRGBQUAD color, CObjProgress* progress,
                                 int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const Stripes stripes(width, height, size, opacity);
  const auto rows = RowProgress::ReportsOnly(progress, progressLow, progressHigh, height);
  ForEachRow(rows, height, [=](std::int64_t y) {
    unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
    const int rowAlpha = stripes.At(static_cast<int>(y));
    for (int x = 0; x < width; ++x, pixel += 4)
      MoveToward(pixel, color, type == BlindHorizontal ? rowAlpha : stripes.At(x));
  });
  return 1;
}

int CPixelProcess::Istone_3DGrid(unsigned char* pixels, int width, int height, int size, int depth,
                                 CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const int g = std::max(size, 1);
  const int shift = std::clamp(depth, -255, 255);
  auto divides = [g](std::int64_t n) { return n % g == 0; };
  const auto rows = RowProgress::ReportsOnly(progress, progressLow, progressHigh, height);
  ForEachRow(rows, height, [=](std::int64_t y) {
    const bool top = divides(y - 1), bottom = divides(y + 2);
    const bool inRow = !divides(y) && !divides(y + 1);
    unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
    for (int x = 0; x < width; ++x, pixel += 4) {
      const std::int64_t column = std::int64_t{x} + 1;
      const bool inColumn = !divides(column - 1) && !divides(column);
      int d = 0;
      if (top && inColumn)
        d = -shift;
      else if ((bottom && inColumn) || (inRow && divides(column - 2)))
        d = shift;
      else if (inRow && divides(column + 1))
        d = -shift;
      if (d == 0) continue;
      for (int c = 0; c < 3; ++c) pixel[c] = ClampToByte(pixel[c] + d);
    }
  });
  return 1;
}

int CPixelProcess::Istone_Emboss(unsigned char* pixels, int width, int height, int amount,
                                 CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const auto rows = RowProgress::ReportsOnly(progress, progressLow, progressHigh, height);
  ForEachRow(rows, height, [=](std::int64_t y) {
    unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
    for (int x = 0; x < width; ++x, pixel += 4) {
      std::int64_t difference = 0;
      if (x < width - 1)
        difference = pixel[0] + pixel[1] + pixel[2] - (pixel[4] + pixel[5] + pixel[6]);
      pixel[0] = pixel[1] = pixel[2] = ClampToByte(128 + difference * amount / 3);
    }
  });
  return 1;
}

int CPixelProcess::Istone_FillGrid(unsigned char* pixels, int width, int height, tagRGBQUAD color1,
                                   tagRGBQUAD color2, int size, CObjProgress* progress,
                                   int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height) || size < 1) return 0;
  const auto rows = RowProgress::ReportsOnly(progress, progressLow, progressHigh, height);
  ForEachRow(rows, height, [=](std::int64_t y) {
    unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
    for (int x = 0; x < width; ++x, pixel += 4) {
      const tagRGBQUAD& color = (x / size + y / size) % 2 != 0 ? color2 : color1;
      pixel[0] = color.rgbBlue;
      pixel[1] = color.rgbGreen;
      pixel[2] = color.rgbRed;
    }
  });
  return 1;
}

int CPixelProcess::Istone_HalftoneM3(unsigned char* pixels, int width, int height,
                                     CObjProgress* progress, int progressLow, int progressHigh) {
  static constexpr unsigned char kBayer[8][8] = {
      {0, 32, 8, 40, 2, 34, 10, 42},  {48, 16, 56, 24, 50, 18, 58, 26},
      {12, 44, 4, 36, 14, 46, 6, 38}, {60, 28, 52, 20, 62, 30, 54, 22},
      {3, 35, 11, 43, 1, 33, 9, 41},  {51, 19, 59, 27, 49, 17, 57, 25},
      {15, 47, 7, 39, 13, 45, 5, 37}, {63, 31, 55, 23, 61, 29, 53, 21}};
  if (!IsWorkable(pixels, width, height)) return 0;
  const auto rows = RowProgress::ReportsOnly(progress, progressLow, progressHigh, height);
  ForEachRow(rows, height, [=](std::int64_t y) {
    unsigned char* pixel = pixels + 4 * std::int64_t{width} * y;
    for (int x = 0; x < width; ++x, pixel += 4) {
      const int tone = ((306 * pixel[2] + 117 * pixel[0] + 601 * pixel[1]) >> 10) >> 2;
      pixel[0] = pixel[1] = pixel[2] = kBayer[y & 7][x & 7] < tone ? 255 : 0;
    }
  });
  return 1;
}

int CPixelProcess::Mosaic(unsigned char* pixels, int width, int height, int size,
                          CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const int count = *PixelCount(width, height);
  if (count == 0) return 1;
  const int side = std::max(size, 2);
  const int columns = (width - 1) / side + 1, lines = (height - 1) / side + 1;
  using Colour = std::array<unsigned char, 3>;
  const std::unique_ptr<Colour[]> averages(new (std::nothrow) Colour[std::size_t(columns) * lines]);
  if (!averages) return 0;
  Colour* const cells = averages.get();
  ParallelFor(lines, [=](std::int64_t line) {
    const std::int64_t top = line * side, bottom = std::min<std::int64_t>(top + side, height);
    for (int column = 0; column < columns; ++column) {
      const std::int64_t left = std::int64_t{column} * side;
      const std::int64_t right = std::min<std::int64_t>(left + side, width);
      std::int64_t sums[3] = {};
      for (std::int64_t y = top; y < bottom; ++y)
        for (std::int64_t x = left; x < right; ++x)
          for (int c = 0; c < 3; ++c) sums[c] += pixels[4 * (y * width + x) + c];
      for (int c = 0; c < 3; ++c)
        cells[line * columns + column][c] =
            static_cast<unsigned char>(sums[c] / ((bottom - top) * (right - left)));
    }
  });
  ForEachRow(progress, progressLow, progressHigh, height, [=](std::int64_t y) {
    unsigned char* pixel = pixels + 4 * y * width;
    const Colour* cell = cells + y / side * columns;
    for (int left = 0; left < width; left += std::min(side, width - left), ++cell) {
      const Colour colour = *cell;
      const int pixelsOfCell = std::min(side, width - left);
      for (int x = 0; x < pixelsOfCell; ++x, pixel += 4)
        for (int c = 0; c < 3; ++c) pixel[c] = colour[c];
    }
  });
  return 1;
}

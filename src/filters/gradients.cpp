// Gradients: down an image, down a picture, and round.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <new>

#include "frame/graphics.h"
#include "frame/image.h"
#include "frame/progress.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

Argb Opaque(const tagRGBQUAD& color) {
  return 0xFF000000u | Argb{color.rgbRed} << 16 | Argb{color.rgbGreen} << 8 | color.rgbBlue;
}

}  // namespace

int CPixelProcess::CreateGradientImage(unsigned char* pixels, int width, int height,
                                       const tagRGBQUAD* colors, CObjProgress* progress,
                                       int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height) || !colors) return 0;
  const tagRGBQUAD top = colors[0], bottom = colors[1];
  const std::int64_t pitch = 4 * std::int64_t{std::max(width, 0)};
  const bool done = ForEachRow(progress, progressLow, progressHigh, height, [=](std::int64_t y) {
    const double t = static_cast<double>(height - y) / height;
    const auto mix = [=](int from, int to) {
      return static_cast<unsigned char>(static_cast<int>(to * (1.0 - t) + from * t));
    };
    const unsigned char blue = mix(top.rgbBlue, bottom.rgbBlue);
    const unsigned char green = mix(top.rgbGreen, bottom.rgbGreen);
    const unsigned char red = mix(top.rgbRed, bottom.rgbRed);
    unsigned char* const row = pixels + pitch * y;
    for (unsigned char* pixel = row; pixel != row + pitch; pixel += 4) {
      pixel[0] = blue;
      pixel[1] = green;
      pixel[2] = red;
    }
  });
  return done ? 1 : 0;
}

void* CPixelProcess::GetGradientImage(int width, int height, int direction, int count,
                                      const tagRGBQUAD* colors, const double* stops, int) {
  std::unique_ptr<Gdiplus::Bitmap> bitmap(new (std::nothrow) Gdiplus::Bitmap(width, height));
  if (!bitmap || bitmap->GetLastStatus() != Gdiplus::Ok) return nullptr;
  if (direction != 1 || count < 1 || !colors || !stops) return bitmap.release();

  Graphics graphics(bitmap.get());
  int y = 0;
  if (stops[0] > 0) {
    y = Truncate(height * stops[0]);
    graphics.FillRectangle(SolidBrush(Opaque(colors[0])), {0, 0, width, y});
  }
  for (int i = 1; i < count; ++i) {
    const int end = Truncate(height * stops[i] + y);
    // One row early: the first row of a band is a step into its gradient.
    const LinearGradientBrush brush({0, Truncate(y - 1.0)}, {0, end}, Opaque(colors[i - 1]),
                                    Opaque(colors[i]));
    graphics.FillRectangle(brush, {0, y, width, Truncate(height * stops[i])});
    y = end;
  }
  if (stops[count] > 0)
    graphics.FillRectangle(SolidBrush(Opaque(colors[count - 1])), {0, y, width, height});
  return bitmap.release();
}

int CPixelProcess::CreateArray(unsigned char* mask, std::int32_t radius, std::int32_t inner) {
  if (!mask) return 0;
  const std::int64_t columns = 2 * std::int64_t{radius};
  const std::int64_t centre = std::int64_t{radius} - 1;
  const int half = inner / 2;
  for (std::int64_t y = radius; y >= 0; --y) {
    const auto end = static_cast<std::int64_t>(
        std::sqrt(static_cast<double>(std::int64_t{radius} * radius - y * y)));
    for (std::int64_t x = 0; x < end; ++x) {
      const double d = std::sqrt(static_cast<double>(x * x + y * y));
      double value = 0;
      if (d > inner)
        value = (d - inner) / (double{1} * radius - inner) * 127.0 + 128.0;
      else if (d >= half)
        value = (d - half) / half * 128.0;
      const unsigned char byte = ClampToByte(value);
      mask[columns * (centre - y) + centre - x] = byte;
      mask[columns * (centre - y) + centre + x] = byte;
      mask[columns * (centre + y) + centre - x] = byte;
      mask[columns * (centre + y) + centre + x] = byte;
    }
  }
  return 1;
}

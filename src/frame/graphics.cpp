#include "frame/graphics.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "frame/material.h"

namespace tintwerk {
namespace {

using Gdiplus::Rect;
using Gdiplus::Status;

constexpr unsigned kReadWrite = Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite;

// Lays one pixel over another, both with straight alpha, rounded once.
void DrawOver(unsigned char* below, const unsigned char* above) {
  const int alpha = above[3];
  if (alpha == 0) return;
  if (alpha == 255 || below[3] == 0) {
    std::memcpy(below, above, 4);
    return;
  }
  const int aboveShare = alpha * 255;
  const int belowShare = below[3] * (255 - alpha);
  const int total = aboveShare + belowShare;
  for (int c = 0; c < 3; ++c)
    below[c] = static_cast<unsigned char>(
        (above[c] * aboveShare + below[c] * belowShare + total / 2) / total);
  below[3] = static_cast<unsigned char>((total + 127) / 255);
}

void StoreColour(Argb colour, unsigned char* pixel) {
  for (int c = 0; c < 4; ++c) pixel[c] = static_cast<unsigned char>(colour >> (8 * c));
}

// The pixels lo..hi - 1 of 0..size - 1 whose centres lie in start..start + length.
struct Interval {
  Interval(float start, float length, int size)
      : lo(Edge(start, size)), hi(Edge(double{start} + length, size)) {}

  static int Edge(double at, int size) {
    return static_cast<int>(std::clamp(std::ceil(at - 0.5), 0.0, double(size)));
  }

  int lo;
  int hi;
};

bool IsWhole(float value) {
  return value == std::floor(value);
}

}  // namespace

LinearGradientBrush::LinearGradientBrush(Gdiplus::Point start, Gdiplus::Point end, Argb startColour,
                                         Argb endColour)
    : start_(start), startColour_(startColour), endColour_(endColour) {
  const double dx = double{1} * end.X - start.X;
  const double dy = double{1} * end.Y - start.Y;
  const double square = dx * dx + dy * dy;
  if (square > 0) {
    perX_ = dx / square;
    perY_ = dy / square;
  }
}

Argb LinearGradientBrush::At(int x, int y) const {
  double t = (double{1} * x - start_.X) * perX_ + (double{1} * y - start_.Y) * perY_;
  t -= std::floor(t);
  Argb result = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const int from = (startColour_ >> shift) & 255;
    const int to = (endColour_ >> shift) & 255;
    result |= static_cast<Argb>(from + (to - from) * t + 0.5) << shift;
  }
  return result;
}

Status Graphics::SetInterpolationMode(InterpolationMode mode) {
  if (mode != InterpolationModeDefault && mode != InterpolationModeHighQuality &&
      mode != InterpolationModeHighQualityBicubic)
    return Gdiplus::InvalidParameter;
  mode_ = mode;
  return Gdiplus::Ok;
}

Status Graphics::Clear(Argb colour) {
  const BitmapLock lock(target_, kReadWrite);
  if (!lock.Pixels()) return target_ ? target_->GetLastStatus() : Gdiplus::InvalidParameter;
  const std::size_t bytes = std::size_t{4} * lock.Width() * lock.Height();
  for (std::size_t i = 0; i < bytes; i += 4) StoreColour(colour, lock.Pixels() + i);
  return Gdiplus::Ok;
}

Status Graphics::DrawImage(Gdiplus::Bitmap* source, const RectF& targetRect,
                           const RectF& sourceRect) {
  if (!source || !target_) return Gdiplus::InvalidParameter;
  const BitmapLock from(source);
  if (!from.Pixels()) return source->GetLastStatus();
  return DrawImage({from.Pixels(), from.Width(), from.Height()}, targetRect, sourceRect);
}

Gdiplus::Status Graphics::DrawImage(const PictureView& from, const RectF& targetRect,
                                    const RectF& sourceRect) {
  if (!from.pixels || !target_) return Gdiplus::InvalidParameter;
  const BitmapLock to(target_, kReadWrite);
  if (!to.Pixels()) return target_->GetLastStatus();
  const bool inside = sourceRect.x >= 0 && sourceRect.y >= 0 && sourceRect.width > 0 &&
                      sourceRect.height > 0 && sourceRect.x + sourceRect.width <= from.width &&
                      sourceRect.y + sourceRect.height <= from.height;
  if (!inside || !(targetRect.width > 0) || !(targetRect.height > 0))
    return Gdiplus::InvalidParameter;

  const Interval columns(targetRect.x, targetRect.width, to.Width());
  const Interval rows(targetRect.y, targetRect.height, to.Height());
  const int width = columns.hi - columns.lo;
  const int height = rows.hi - rows.lo;
  if (width <= 0 || height <= 0) return Gdiplus::Ok;

  const unsigned char* drawn = from.pixels;
  std::size_t pitch = std::size_t{4} * from.width;
  PixelMemory scaled;
  if (targetRect.width == sourceRect.width && targetRect.height == sourceRect.height &&
      IsWhole(targetRect.x) && IsWhole(targetRect.y) && IsWhole(sourceRect.x) &&
      IsWhole(sourceRect.y)) {
    const auto x = static_cast<std::ptrdiff_t>(sourceRect.x) + columns.lo -
                   static_cast<std::ptrdiff_t>(targetRect.x);
    const auto y = static_cast<std::ptrdiff_t>(sourceRect.y) + rows.lo -
                   static_cast<std::ptrdiff_t>(targetRect.y);
    drawn += pitch * y + 4 * x;
  } else {
    pitch = std::size_t{4} * width;
    scaled = AllocatePixels(pitch * height);
    const auto kernel =
        mode_ == InterpolationModeDefault ? ResampleKernel::Bilinear : ResampleKernel::Bicubic;
    const RectF clipped{targetRect.x - columns.lo, targetRect.y - rows.lo, targetRect.width,
                        targetRect.height};
    if (!scaled || !Resample(kernel, from, sourceRect, scaled.get(), width, height, clipped))
      return Gdiplus::OutOfMemory;
    drawn = scaled.get();
  }
  for (int y = 0; y < height; ++y) {
    unsigned char* below = to.Pixels() + 4 * (std::size_t(to.Width()) * (rows.lo + y) + columns.lo);
    for (int x = 0; x < width; ++x) DrawOver(below + 4 * x, drawn + pitch * y + 4 * x);
  }
  return Gdiplus::Ok;
}

Status Graphics::FillRectangle(const Brush& brush, const Rect& rect) {
  const BitmapLock lock(target_, kReadWrite);
  if (!lock.Pixels()) return target_ ? target_->GetLastStatus() : Gdiplus::InvalidParameter;
  const std::int64_t right =
      std::min<std::int64_t>(lock.Width(), std::int64_t{rect.X} + rect.Width);
  const std::int64_t bottom =
      std::min<std::int64_t>(lock.Height(), std::int64_t{rect.Y} + rect.Height);
  const int left = std::max(rect.X, 0);
  const bool even = brush.IsEvenAlongRows();
  for (int y = std::max(rect.Y, 0); y < bottom; ++y) {
    unsigned char* const row = lock.Pixels() + std::size_t{4} * lock.Width() * y;
    unsigned char colour[4];
    StoreColour(brush.At(left, y), colour);
    for (int x = left; x < right; ++x) {
      if (!even) StoreColour(brush.At(x, y), colour);
      DrawOver(row + std::size_t{4} * x, colour);
    }
  }
  return Gdiplus::Ok;
}

}  // namespace tintwerk

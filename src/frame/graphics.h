// Drawing on pictures.
#pragma once

#include <cstdint>

#include "frame/resample.h"
#include "tintwerk/platform.h"

namespace tintwerk {

/// How a drawing context scales. The default is bilinear, both high-quality modes are bicubic.
enum InterpolationMode {
  InterpolationModeDefault = 0,
  InterpolationModeHighQuality = 2,
  InterpolationModeHighQualityBicubic = 7
};

/// A colour as 0xAARRGGBB, alpha straight.
using Argb = std::uint32_t;

/// What an area is filled with.
class Brush {
 public:
  /// The colour of a pixel of the target.
  virtual Argb At(int x, int y) const = 0;
  /// Whether all pixels of a row get the same.
  virtual bool IsEvenAlongRows() const = 0;

 protected:
  ~Brush() = default;
};

class SolidBrush final : public Brush {
 public:
  explicit SolidBrush(Argb colour) : colour_(colour) {}
  Argb At(int, int) const override { return colour_; }
  bool IsEvenAlongRows() const override { return true; }

 private:
  Argb colour_;
};

/// A brush that runs from one colour to another along a line and repeats beyond its ends. The
/// start's colour stands at the start point itself, not half a pixel beside it.
class LinearGradientBrush final : public Brush {
 public:
  LinearGradientBrush(Gdiplus::Point start, Gdiplus::Point end, Argb startColour, Argb endColour);
  Argb At(int x, int y) const override;
  bool IsEvenAlongRows() const override { return perX_ == 0; }

 private:
  Gdiplus::Point start_;
  double perX_ = 0;  // position on the line, 0..1, per pixel
  double perY_ = 0;
  Argb startColour_;
  Argb endColour_;
};

/// A drawing context on a picture. What is drawn lies over what is there by its alpha, and what
/// falls outside is clipped. Every call answers with its status and leaves the picture alone unless
/// it is `Ok`.
class Graphics {
 public:
  /// @param target the picture, which outlives the context and is not locked while it draws
  explicit Graphics(Gdiplus::Bitmap* target) : target_(target) {}

  Gdiplus::Status SetInterpolationMode(InterpolationMode mode);

  /// Replaces every pixel, alpha included.
  Gdiplus::Status Clear(Argb colour);

  /// Scales a part of a picture so that it falls on a rectangle of the target. At equal size and
  /// whole positions pixels are taken as they are; otherwise edges are mirrored, never blended with
  /// what lies outside the picture.
  /// @param sourceRect must lie inside the picture
  Gdiplus::Status DrawImage(const PictureView& source, const RectF& targetRect,
                            const RectF& sourceRect);
  Gdiplus::Status DrawImage(Gdiplus::Bitmap* source, const RectF& targetRect,
                            const RectF& sourceRect);

  Gdiplus::Status FillRectangle(const Brush& brush, const Gdiplus::Rect& rect);

 private:
  Gdiplus::Bitmap* target_;
  InterpolationMode mode_ = InterpolationModeDefault;
};

}  // namespace tintwerk

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "frame/resample.cpp"
#include "frame/resample.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

// The kernels, built once per instruction set. Products and sums stay apart (no fused operation),
// so all of them give the same bytes.
HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

constexpr float kIsAlpha[] = {0, 0, 0, 1, 0, 0, 0, 1};

// Takes a row of pixels to floats 0..255, colours weighted with alpha unless the picture is opaque.
void RowToFloat(const unsigned char* row, int pixels, bool opaque, float* out) {
  const hn::FixedTag<float, 4> pixel;
  const hn::Rebind<std::int32_t, decltype(pixel)> integers;
  const hn::Rebind<std::uint8_t, decltype(pixel)> bytes;
  const auto alphaLane = hn::Gt(hn::LoadU(pixel, kIsAlpha), hn::Zero(pixel));
  const auto one = hn::Set(pixel, 1.0f);
  const auto toUnit = hn::Set(pixel, 1.0f / 255.0f);
  for (std::size_t i = 0; i < std::size_t{4} * pixels; i += 4) {
    auto value = hn::ConvertTo(pixel, hn::PromoteTo(integers, hn::LoadU(bytes, row + i)));
    if (!opaque) {
      const auto coverage = hn::Mul(hn::Broadcast<3>(value), toUnit);
      value = hn::Mul(value, hn::IfThenElse(alphaLane, one, coverage));
    }
    hn::StoreU(value, pixel, out + i);
  }
}

// Every output pixel is a weighted sum of `taps` neighbours from first[i] on. kTaps fixes the count
// at compile time; 0 takes `taps`.
template <int kTaps>
void HorizontalPass(const float* row, const int* first, const float* weights, int taps, int pixels,
                    float* out) {
  const hn::FixedTag<float, 4> pixel;
  const int count = kTaps ? kTaps : taps;
  for (int i = 0; i < pixels; ++i) {
    const float* in = row + std::size_t{4} * first[i];
    auto sum = hn::Mul(hn::LoadU(pixel, in), hn::Set(pixel, weights[0]));
    for (int k = 1; k < count; ++k)
      sum = hn::Add(sum, hn::Mul(hn::LoadU(pixel, in + 4 * k), hn::Set(pixel, weights[k])));
    hn::StoreU(sum, pixel, out + std::size_t{4} * i);
    weights += count;
  }
}

// Sums `taps` rows of floats, a weight each, and stores bytes with the colours divided by coverage
// again.
template <int kTaps, class Lanes>
HWY_INLINE void VerticalStep(Lanes lanes, const float* const* rows, const float* weights, int taps,
                             bool opaque, std::size_t at, unsigned char* out) {
  const hn::Rebind<std::uint8_t, Lanes> bytes;
  const int count = kTaps ? kTaps : taps;
  const auto zero = hn::Zero(lanes);
  const auto white = hn::Set(lanes, 255.0f);
  auto value = hn::Mul(hn::LoadU(lanes, rows[0] + at), hn::Set(lanes, weights[0]));
  for (int k = 1; k < count; ++k)
    value = hn::Add(value, hn::Mul(hn::LoadU(lanes, rows[k] + at), hn::Set(lanes, weights[k])));
  if (!opaque) {
    const auto alphaLane = hn::Gt(hn::LoadU(lanes, kIsAlpha), zero);
    const auto alpha = hn::Broadcast<3>(value);
    const auto colour = hn::Div(hn::Mul(value, white), alpha);
    // Coverage that rounds to 0 leaves no colour behind.
    const auto visible = hn::Ge(alpha, hn::Set(lanes, 0.5f));
    value = hn::IfThenElse(alphaLane, value, hn::IfThenElse(visible, colour, zero));
  }
  value = hn::Min(hn::Max(value, zero), white);
  hn::StoreU(hn::DemoteTo(bytes, hn::NearestInt(value)), bytes, out + at);
}

template <int kTaps>
void VerticalPass(const float* const* rows, const float* weights, int taps, bool opaque, int pixels,
                  unsigned char* out) {
  const hn::CappedTag<float, 8> lanes;
  const hn::FixedTag<float, 4> pixel;
  const std::size_t samples = std::size_t{4} * pixels;
  const std::size_t step = hn::Lanes(lanes);
  std::size_t at = 0;
  for (; at + step <= samples; at += step)
    VerticalStep<kTaps>(lanes, rows, weights, taps, opaque, at, out);
  for (; at < samples; at += 4) VerticalStep<kTaps>(pixel, rows, weights, taps, opaque, at, out);
}

void Horizontal(const float* row, const int* first, const float* weights, int taps, int pixels,
                float* out) {
  (taps == 4 ? HorizontalPass<4> : HorizontalPass<0>)(row, first, weights, taps, pixels, out);
}

void Vertical(const float* const* rows, const float* weights, int taps, bool opaque, int pixels,
              unsigned char* out) {
  (taps == 4 ? VerticalPass<4> : VerticalPass<0>)(rows, weights, taps, opaque, pixels, out);
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

#include "frame/image.h"
#include "frame/layer.h"
#include "frame/parallel.h"

namespace tintwerk {
namespace {

HWY_EXPORT(RowToFloat);
HWY_EXPORT(Horizontal);
HWY_EXPORT(Vertical);

double Weight(ResampleKernel kernel, double x) {
  x = std::abs(x);
  if (kernel == ResampleKernel::Bilinear) return std::max(0.0, 1 - x);
  if (x < 1) return (1.5 * x - 2.5) * x * x + 1;
  if (x < 2) return ((-0.5 * x + 2.5) * x - 4) * x + 2;
  return 0;
}

// The index that stands in for one beyond the edges, as in ... c b a | a b c ... c | c b a ...
int Mirror(std::int64_t index, int size) {
  const std::int64_t period = std::int64_t{2} * size;
  index = ((index % period) + period) % period;
  return static_cast<int>(index < size ? index : period - 1 - index);
}

// How one axis is scaled: output i is the sum of `taps` source samples from first[i] on, with the
// weights from i * taps on. Mirrored samples are folded into the window. first[i] never falls when
// the axis is not flipped.
struct Axis {
  Axis(ResampleKernel kernel, int sourceSize, double sourceStart, double sourceLength, int size,
       double start, double length) {
    const double ratio = sourceLength / length;
    const double widening = std::max(1.0, ratio);
    const double radius = (kernel == ResampleKernel::Bilinear ? 1 : 2) * widening;
    taps = static_cast<int>(std::min<double>(sourceSize, std::ceil(2 * radius)));
    first.resize(size);
    weights.assign(std::size_t(size) * taps, 0.0f);
    std::vector<double> sums(taps);
    for (int i = 0; i < size; ++i) {
      const double centre = sourceStart + (i + 0.5 - start) * ratio - 0.5;
      const auto from = static_cast<std::int64_t>(std::floor(centre - radius)) + 1;
      const auto to = static_cast<std::int64_t>(std::ceil(centre + radius)) - 1;
      first[i] = static_cast<int>(std::clamp<std::int64_t>(from, 0, sourceSize - taps));
      std::fill(sums.begin(), sums.end(), 0.0);
      double total = 0;
      for (std::int64_t k = from; k <= to; ++k) {
        const double weight = Weight(kernel, (k - centre) / widening);
        const int slot = std::clamp(Mirror(k, sourceSize) - first[i], 0, taps - 1);
        sums[slot] += weight;
        total += weight;
      }
      for (int k = 0; k < taps; ++k)
        weights[std::size_t(i) * taps + k] = static_cast<float>(sums[k] / total);
    }
  }

  int taps = 0;
  std::vector<int> first;
  std::vector<float> weights;
};

bool IsOpaque(const PictureView& picture) {
  const std::size_t pixels = std::size_t(picture.width) * picture.height;
  constexpr std::size_t kBlock = 4096;  // a transparent picture is found out early
  for (std::size_t at = 0; at < pixels; at += kBlock) {
    unsigned char all = 255;
    const std::size_t end = std::min(pixels, at + kBlock);
    for (std::size_t i = at; i < end; ++i) all &= picture.pixels[4 * i + 3];
    if (all != 255) return false;
  }
  return true;
}

// A scaling that is ready to be run.
struct Plan {
  Plan(ResampleKernel kernel, const PictureView& picture, const RectF& sourceRect, int targetWidth,
       int height, const RectF& targetRect)
      : source(picture),
        opaque(IsOpaque(picture)),
        width(targetWidth),
        columns(kernel, source.width, sourceRect.x, sourceRect.width, width, targetRect.x,
                targetRect.width),
        rows(kernel, source.height, sourceRect.y, sourceRect.height, height, targetRect.y,
             targetRect.height) {}

  PictureView source;
  bool opaque;
  int width;
  Axis columns;
  Axis rows;
};

// One thread's way down the target rows. Columns are worked in tiles, so that the window of rows
// that are scaled sideways already stays in the cache; source row r lies in its slot r % taps.
class Band {
 public:
  Band(const Plan& plan, int tileWidth)
      : plan_(plan),
        tileWidth_(tileWidth),
        sourceRow_(std::size_t{4} * plan.source.width),
        window_(std::size_t{4} * tileWidth * plan.rows.taps),
        windowRows_(plan.rows.taps) {}

  // @param target receives the rows from..to - 1
  void Run(int from, int to, unsigned char* target) {
    const auto& [source, opaque, width, columns, rows] = plan_;
    for (int left = 0; left < width; left += tileWidth_) {
      const int tile = std::min(tileWidth_, width - left);
      const int sourceLeft = columns.first[left];
      const int sourceRight = columns.first[left + tile - 1] + columns.taps;
      const std::size_t rowSize = std::size_t{4} * tile;
      // Rows before this one are in the window or done with. A single tile leaves its window to the
      // run below.
      int ready = tileWidth_ < width ? 0 : ready_;
      for (int y = from; y < to; ++y) {
        const int first = rows.first[y];
        for (ready = std::max(ready, first); ready < first + rows.taps; ++ready) {
          const std::size_t at = std::size_t(source.width) * ready + sourceLeft;
          HWY_DYNAMIC_DISPATCH(RowToFloat)
          (source.pixels + 4 * at, sourceRight - sourceLeft, opaque,
           &sourceRow_[std::size_t{4} * sourceLeft]);
          HWY_DYNAMIC_DISPATCH(Horizontal)
          (sourceRow_.data(), &columns.first[left],
           &columns.weights[std::size_t(left) * columns.taps], columns.taps, tile,
           &window_[rowSize * (ready % rows.taps)]);
        }
        for (int k = 0; k < rows.taps; ++k)
          windowRows_[k] = &window_[rowSize * ((first + k) % rows.taps)];
        HWY_DYNAMIC_DISPATCH(Vertical)
        (windowRows_.data(), &rows.weights[std::size_t(y) * rows.taps], rows.taps, opaque, tile,
         target + 4 * (std::size_t(width) * (y - from) + left));
      }
      ready_ = ready;
    }
  }

 private:
  const Plan& plan_;
  int tileWidth_;
  std::vector<float> sourceRow_;
  std::vector<float> window_;
  std::vector<const float*> windowRows_;
  int ready_ = 0;
};

class Scaled final : public Layer {
 public:
  Scaled(ResampleKernel kernel, const PictureView& picture, int width, int height,
         const RectF& rect)
      : plan_(kernel, picture,
              {0, 0, static_cast<float>(picture.width), static_cast<float>(picture.height)}, width,
              height, rect) {}

  std::unique_ptr<Reader> NewReader(int bandRows) const override {
    return std::make_unique<RowReader>(plan_, bandRows);
  }

 private:
  class RowReader final : public Reader {
   public:
    RowReader(const Plan& plan, int bandRows)
        : band_(plan, plan.width), pixels_(RequirePixels(std::size_t{4} * plan.width * bandRows)) {}
    const unsigned char* Rows(int from, int to) override {
      band_.Run(from, to, pixels_.get());
      return pixels_.get();
    }

   private:
    Band band_;
    PixelMemory pixels_;
  };
  Plan plan_;
};

bool IsUsable(const RectF& rect) {
  return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
         std::isfinite(rect.height) && rect.width > 0 && rect.height > 0;
}

}  // namespace

bool Resample(ResampleKernel kernel, const PictureView& source, const RectF& sourceRect,
              unsigned char* target, int width, int height, const RectF& targetRect) {
  if (width <= 0 || height <= 0 || !IsUsable(sourceRect) || !IsUsable(targetRect)) return false;
  try {
    const Plan plan(kernel, source, sourceRect, width, height, targetRect);
    constexpr int kWindowSamples = 1 << 16;  // floats; a quarter of a megabyte
    const int tileWidth = std::min(width, std::max(16, kWindowSamples / 4 / plan.rows.taps));
    const int bands = std::min(height, omp_get_max_threads());
    std::vector<Band> band(bands, Band(plan, tileWidth));
    ParallelFor(bands, [&](std::int64_t i) {
      const int from = static_cast<int>(height * i / bands);
      band[i].Run(from, static_cast<int>(height * (i + 1) / bands),
                  target + std::size_t{4} * width * from);
    });
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

std::unique_ptr<Layer> BicubicLayer(const PictureView& picture, int width, int height) {
  if (!picture.pixels || width <= 0 || height <= 0) return BlankLayer(width);
  if (picture.width == width && picture.height == height) return PixelLayer(picture.pixels, width);
  const RectF all{0, 0, static_cast<float>(width), static_cast<float>(height)};
  return std::make_unique<Scaled>(ResampleKernel::Bicubic, picture, width, height, all);
}

std::unique_ptr<Layer> DrawnLayer(const PictureView& picture, int width, int height,
                                  const RectF& rect) {
  return std::make_unique<Scaled>(ResampleKernel::Bilinear, picture, width, height, rect);
}

}  // namespace tintwerk
#endif

// Scaling of pixel arrays and planes, and helpers on single pixels.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/pixel_resampling.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

template <class Lanes, class Delta>
HWY_INLINE void BlendStep(Lanes lanes, const unsigned char* upper, const unsigned char* lower,
                          const Delta& delta, float* out) {
  const hn::Rebind<std::int32_t, Lanes> integers;
  const hn::Rebind<std::uint8_t, Lanes> bytes;
  const auto a = hn::PromoteTo(integers, hn::LoadU(bytes, upper));
  const auto c = hn::PromoteTo(integers, hn::LoadU(bytes, lower));
  hn::StoreU(hn::Add(hn::ConvertTo(lanes, a), delta(lanes, hn::Sub(c, a))), lanes, out);
}

// upper + delta(lower - upper).
template <class Delta>
HWY_INLINE void Blend(const unsigned char* upper, const unsigned char* lower, std::size_t samples,
                      const Delta& delta, float* out) {
  const hn::CappedTag<float, 16> lanes;
  std::size_t i = 0;
  for (; i + hn::Lanes(lanes) <= samples; i += hn::Lanes(lanes))
    BlendStep(lanes, upper + i, lower + i, delta, out + i);
  for (; i < samples; ++i)
    BlendStep(hn::CappedTag<float, 1>(), upper + i, lower + i, delta, out + i);
}

void BlendRows(const unsigned char* upper, const unsigned char* lower, std::size_t samples,
               float share, float* out) {
  const auto product = [share](auto lanes, auto change) HWY_ATTR {
    return hn::Mul(hn::ConvertTo(lanes, change), hn::Set(lanes, share));
  };
  Blend(upper, lower, samples, product, out);
}

// @param deltas from -255 to 255
void BlendRowsByTable(const unsigned char* upper, const unsigned char* lower, std::size_t samples,
                      const float* deltas, float* out) {
  const auto entry = [deltas](auto lanes, auto change)
                         HWY_ATTR { return hn::GatherIndex(lanes, deltas, change); };
  Blend(upper, lower, samples, entry, out);
}

// A pixel to each block of 16 bytes.
// @param slots where in the row they stand, every fourth
HWY_INLINE auto LoadPixels(hn::FixedTag<float, 4> pixel, const float* row, const int* slots) {
  return hn::LoadU(pixel, row + std::size_t{4} * slots[0]);
}
#if HWY_MAX_BYTES >= 32
template <class Lanes>
HWY_INLINE auto LoadPixels(Lanes lanes, const float* row, const int* slots) {
  const hn::Half<Lanes> half;
  return hn::Combine(lanes, LoadPixels(half, row, slots + hn::Lanes(half)),
                     LoadPixels(half, row, slots));
}
#endif

// (right - left) * share + left: a byte in the lowest bits.
template <class Lanes>
HWY_INLINE auto MixStep(Lanes lanes, const float* row, const int* slots, hn::Vec<Lanes> share) {
  const auto left = LoadPixels(lanes, row, slots), right = LoadPixels(lanes, row + 4, slots);
  const auto value = hn::Add(hn::Mul(hn::Sub(right, left), share), left);
  const auto above = hn::Set(lanes, 8388608.0f);  // 2^23, whose last bit is worth 1
  return hn::BitCast(hn::RebindToUnsigned<Lanes>(), hn::Add(hn::Floor(value), above));
}

// As many pixels as a vector has lanes, every fourth one beside another.
template <class Lanes>
HWY_INLINE void MixSteps(Lanes lanes, const float* row, const int* slots, const float* shares,
                         std::uint32_t keep, unsigned char* out) {
  const hn::RebindToUnsigned<Lanes> pixels;
  const hn::Repartition<std::uint8_t, Lanes> bytes;
  const auto share = hn::LoadU(lanes, shares);
  const auto p0 = MixStep(lanes, row, slots, hn::Broadcast<0>(share));
  const auto p1 = MixStep(lanes, row, slots + 1, hn::Broadcast<1>(share));
  const auto p2 = MixStep(lanes, row, slots + 2, hn::Broadcast<2>(share));
  const auto p3 = MixStep(lanes, row, slots + 3, hn::Broadcast<3>(share));
  const auto low = hn::Or(hn::And(p0, hn::Set(pixels, 255)), hn::ShiftLeft<8>(p1));
  const auto all = hn::Or(low, hn::Or(hn::ShiftLeft<16>(p2), hn::ShiftLeft<24>(p3)));
  // A lane holds one channel of four pixels.
  alignas(16) static constexpr std::uint8_t kTransposed[] = {0, 4, 8,  12, 1, 5, 9,  13,
                                                             2, 6, 10, 14, 3, 7, 11, 15};
  auto mixed = hn::TableLookupBytes(hn::BitCast(bytes, all), hn::LoadDup128(bytes, kTransposed));
  const auto kept = hn::BitCast(bytes, hn::Set(pixels, keep));
  if (keep) mixed = hn::IfVecThenElse(kept, hn::LoadU(bytes, out), mixed);
  hn::StoreU(mixed, bytes, out);
}

// A row of `count` pixels.
// @param slots  where in the row the left one of each pixel's neighbours stands
// @param shares of the right one, which stands next to it
// @param keep   bits that stay as the target has them
void MixPixels(const float* row, const int* slots, const float* shares, int count,
               std::uint32_t keep, unsigned char* out) {
  const hn::CappedTag<float, 16> lanes;
  const std::size_t n = hn::Lanes(lanes), end = count;
  std::size_t i = 0;
  for (; i + n <= end; i += n) MixSteps(lanes, row, slots + i, shares + i, keep, out + 4 * i);
  if (const std::size_t rest = end - i) {
    int lastSlots[16] = {};
    float lastShares[16] = {};
    unsigned char last[64];
    std::memcpy(lastSlots, slots + i, rest * sizeof(int));
    std::memcpy(lastShares, shares + i, rest * sizeof(float));
    std::memcpy(last, out + 4 * i, 4 * rest);
    MixSteps(lanes, row, lastSlots, lastShares, keep, last);
    std::memcpy(out + 4 * i, last, 4 * rest);
  }
}

// A row of `count` bytes.
// @param row   a vector beyond its end may be read, too
// @param slots two a byte, ascending: where in the row its neighbours stand
void MixBytes(const float* row, const int* slots, const float* shares, std::size_t count,
              unsigned char* out) {
  const hn::CappedTag<float, 16> lanes;
  const hn::Rebind<std::int32_t, decltype(lanes)> integers;
  const hn::Rebind<std::uint8_t, decltype(lanes)> bytes;
  const std::size_t n = hn::Lanes(lanes);
  std::size_t i = 0;
  for (; i + n <= count; i += n, slots += 2 * n) {
    auto first = hn::Zero(integers), second = first;
    hn::LoadInterleaved2(integers, slots, first, second);
    auto left = hn::Zero(lanes), right = left;
    // In a row that grows, all of them often stand within a vector.
    if (const auto base = slots[0]; slots[2 * n - 1] - base < static_cast<int>(n)) {
      const auto near = hn::LoadU(lanes, row + base);
      const auto from = hn::Set(integers, base);
      left = hn::TableLookupLanes(near, hn::IndicesFromVec(lanes, hn::Sub(first, from)));
      right = hn::TableLookupLanes(near, hn::IndicesFromVec(lanes, hn::Sub(second, from)));
    } else {
      left = hn::GatherIndex(lanes, row, first);
      right = hn::GatherIndex(lanes, row, second);
    }
    const auto value = hn::Add(hn::Mul(hn::Sub(right, left), hn::LoadU(lanes, shares + i)), left);
    hn::StoreU(hn::DemoteTo(bytes, hn::ConvertTo(integers, value)), bytes, out + i);
  }
  for (; i < count; ++i, slots += 2) {
    const float left = row[slots[0]], right = row[slots[1]];
    out[i] = static_cast<unsigned char>(static_cast<int>((right - left) * shares[i] + left));
  }
}

// Sums of 4 x 4 neighbours, row by row, each under the product of its two weights.
template <class Lanes>
HWY_INLINE void SplineStep(Lanes lanes, const float* const* rows, const float* rowWeights,
                           const int* slots, const float* weights, unsigned char* out) {
  const hn::Rebind<std::int32_t, Lanes> integers;
  const hn::Rebind<std::uint8_t, Lanes> bytes;
  const auto columns = hn::LoadU(lanes, weights);
  auto sum = hn::Zero(lanes);
  for (int m = 0; m < 4; ++m) {
    const float* const row = rows[m];
    const auto w = hn::Mul(columns, hn::Set(lanes, rowWeights[m]));
    sum = hn::Add(sum, hn::Mul(LoadPixels(lanes, row, slots), hn::Broadcast<0>(w)));
    sum = hn::Add(sum, hn::Mul(LoadPixels(lanes, row, slots + 1), hn::Broadcast<1>(w)));
    sum = hn::Add(sum, hn::Mul(LoadPixels(lanes, row, slots + 2), hn::Broadcast<2>(w)));
    sum = hn::Add(sum, hn::Mul(LoadPixels(lanes, row, slots + 3), hn::Broadcast<3>(w)));
  }
  hn::StoreU(hn::DemoteTo(bytes, hn::ConvertTo(integers, sum)), bytes, out);
  for (std::size_t i = 0; i < hn::Lanes(lanes); i += 4)  // alpha of the last neighbour
    out[i + 3] = static_cast<unsigned char>(rows[3][std::size_t{4} * slots[i + 3] + 3]);
}

// @param slots,weights four a pixel
void SplinePixels(const float* const* rows, const float* rowWeights, const int* slots,
                  const float* weights, int count, unsigned char* out) {
  std::size_t i = 0;
  const std::size_t end = std::size_t{4} * count;
#if HWY_MAX_BYTES >= 32
  for (; i + 8 <= end; i += 8)
    SplineStep(hn::FixedTag<float, 8>(), rows, rowWeights, slots + i, weights + i, out + i);
#endif
  for (; i < end; i += 4)
    SplineStep(hn::FixedTag<float, 4>(), rows, rowWeights, slots + i, weights + i, out + i);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <vector>

#include "filters/plane_scaler.h"
#include "filters/scaled_layers.h"
#include "frame/material.h"
#include "frame/parallel.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

HWY_EXPORT(BlendRows);
HWY_EXPORT(BlendRowsByTable);
HWY_EXPORT(MixPixels);
HWY_EXPORT(MixBytes);
HWY_EXPORT(SplinePixels);

struct Sizes {
  int width;
  int height;
  int newWidth;
  int newHeight;

  float ScaleX() const { return static_cast<float>(width) / static_cast<float>(newWidth); }
  float ScaleY() const { return static_cast<float>(height) / static_cast<float>(newHeight); }
  bool AreEqual() const { return width == newWidth && height == newHeight; }
  bool HavePixels() const {
    return PixelCount(width, height).value_or(0) > 0 &&
           PixelCount(newWidth, newHeight).value_or(0) > 0;
  }
};

// Where each target position falls in the source: position x scale...
std::vector<float> Products(int count, float scale, float shift = 0) {
  std::vector<float> at(count);
  for (int i = 0; i < count; ++i) at[i] = static_cast<float>(i) * scale - shift;
  return at;
}

// ... or the scale summed up, which is not the same once it is rounded.
std::vector<float> Sums(int count, float scale) {
  std::vector<float> at(count);
  float sum = 0;
  for (float& position : at) {
    position = sum;
    sum += scale;
  }
  return at;
}

// The source columns that a row of the target reads, `taps` a pixel. Rows are blended before
// columns are, once for each column that is read; a target much narrower than the source reads a
// row in which just those columns are left.
struct Columns {
  // @param first of each target pixel's columns; those beyond the edges count as the edge's
  Columns(int width, int taps, const std::vector<int>& first) : slots(taps * first.size()) {
    std::vector<int> place(width);
    for (std::size_t i = 0; i < slots.size(); ++i) {
      slots[i] = static_cast<int>(
          std::clamp<std::int64_t>(std::int64_t{first[i / taps]} + i % taps, 0, width - 1));
      place[slots[i]] = 1;
    }
    count = width;
    const auto used = std::count(place.begin(), place.end(), 1);
    if (2 * used > width) return;
    for (int x = 0; x < width; ++x)
      if (place[x]) {
        place[x] = static_cast<int>(columns.size());
        columns.push_back(x);
      }
    for (int& slot : slots) slot = place[slot];
    count = static_cast<int>(used);
  }

  // @param scratch count pixels
  const unsigned char* Pick(const unsigned char* row, int channels, unsigned char* scratch) const {
    if (columns.empty()) return row;
    for (int i = 0; i < count; ++i)
      std::memcpy(scratch + std::size_t(channels) * i, row + std::size_t(channels) * columns[i],
                  channels);
    return scratch;
  }

  std::vector<int> slots;
  std::vector<int> columns;  // of the slots; empty if they are the source's own
  int count;                 // of slots that there are
};

// Runs body(band, y) for all rows, each thread's share of them in order and with a band of its own.
template <class Body>
void ForEachBand(int bands, int height, const Body& body) {
  ParallelFor(bands, [=](std::int64_t band) {
    const auto to = static_cast<int>(std::int64_t{height} * (band + 1) / bands);
    for (int y = static_cast<int>(std::int64_t{height} * band / bands); y < to; ++y) body(band, y);
  });
}

int Bands(int height) {
  return std::min(height, omp_get_max_threads());
}

// The whole part of each coordinate, limited to the source, and the fraction.
struct Split {
  Split(const std::vector<float>& at, int extent) : whole(at.size()), fraction(at.size()) {
    for (std::size_t i = 0; i < at.size(); ++i) {
      whole[i] =
          static_cast<int>(std::min<std::int64_t>(static_cast<std::int64_t>(at[i]), extent - 1));
      fraction[i] = at[i] - static_cast<float>(whole[i]);
    }
  }
  std::vector<int> whole;
  std::vector<float> fraction;
};

// A bilinear scaling of pixels that is ready to be run.
struct BilinearPlan {
  BilinearPlan(const unsigned char* pixels, const Sizes& all, const std::vector<float>& columnsAt,
               const std::vector<float>& rowsAt)
      : source(pixels),
        sizes(all),
        x(columnsAt, all.width),
        y(rowsAt, all.height),
        columns(all.width, 2, x.whole),
        samples(std::size_t{4} * columns.count) {
    for (int i = 0; i < all.newWidth; ++i) lefts.push_back(columns.slots[2 * i]);
  }

  const unsigned char* source;
  Sizes sizes;
  Split x, y;
  Columns columns;
  std::vector<int> lefts;  // of the columns' slots; the right neighbour is in the next one
  std::size_t samples;     // of a source row that are read
};

// What one thread works its rows in.
class BilinearRow {
 public:
  explicit BilinearRow(const BilinearPlan& plan)
      : plan_(plan), blended_(plan.samples + 4), picked_(2 * plan.samples) {}

  // @param blend called as blend(upper row, lower row, samples, share of the lower, out)
  // @param keep  bits of pixels that stay as the target has them
  template <class Blend>
  void Run(int row, std::uint32_t keep, const Blend& blend, unsigned char* out) {
    const Sizes& sizes = plan_.sizes;
    const auto pick = [&](int sourceRow, int which) {
      return plan_.columns.Pick(plan_.source + std::size_t{4} * sizes.width * sourceRow, 4,
                                picked_.data() + plan_.samples * which);
    };
    const int upper = plan_.y.whole[row], lower = std::min(upper + 1, sizes.height - 1);
    blend(pick(upper, 0), pick(lower, 1), plan_.samples, plan_.y.fraction[row], blended_.data());
    // The last column is its own right neighbour.
    std::copy_n(blended_.end() - 8, 4, blended_.end() - 4);
    HWY_DYNAMIC_DISPATCH(MixPixels)
    (blended_.data(), plan_.lefts.data(), plan_.x.fraction.data(), sizes.newWidth, keep, out);
  }

 private:
  const BilinearPlan& plan_;
  std::vector<float> blended_;
  std::vector<unsigned char> picked_;
};

template <class Blend>
void Bilinear(const BilinearPlan& plan, std::uint32_t keep, const Blend& blend,
              unsigned char* target) {
  const int bands = Bands(plan.sizes.newHeight);
  std::vector<BilinearRow> rows(bands, BilinearRow(plan));
  ForEachBand(bands, plan.sizes.newHeight, [&, target](std::int64_t band, int row) {
    rows[band].Run(row, keep, blend, target + std::size_t{4} * plan.sizes.newWidth * row);
  });
}

// d x share for d in -255..255 with the rounding of d - 1 additions.
struct Deltas {
  explicit Deltas(float share) {
    table[255] = 0;
    for (int d = 1; d <= 255; ++d) {
      table[255 + d] = table[254 + d] + share;
      table[255 - d] = -table[255 + d];
    }
  }
  float table[511];
};

// The blend of rows of SFDSP's form.
void BlendByDeltas(const unsigned char* upper, const unsigned char* lower, std::size_t samples,
                   float share, float* out) {
  // With 16 bits after the point, 255 times the share fits a float: each sum is the product.
  if (const float steps = share * 65536; steps == std::floor(steps))
    return HWY_DYNAMIC_DISPATCH(BlendRows)(upper, lower, samples, share, out);
  const Deltas deltas(share);
  HWY_DYNAMIC_DISPATCH(BlendRowsByTable)(upper, lower, samples, deltas.table + 255, out);
}

BilinearPlan SummedPlan(const unsigned char* source, const Sizes& sizes) {
  return {source, sizes, Sums(sizes.newWidth, sizes.ScaleX()),
          Sums(sizes.newHeight, sizes.ScaleY())};
}

void Spline(const unsigned char* source, const Sizes& sizes, unsigned char* target) {
  const auto floors = [](const std::vector<float>& at) {
    std::vector<int> first(at.size());
    for (std::size_t i = 0; i < at.size(); ++i)
      first[i] = static_cast<int>(static_cast<std::int64_t>(std::floor(at[i])) - 1);
    return first;
  };
  const std::vector<float> columnsAt = Products(sizes.newWidth, sizes.ScaleX(), 0.5f);
  const std::vector<float> rowsAt = Products(sizes.newHeight, sizes.ScaleY(), 0.5f);
  const std::vector<int> firstRow = floors(rowsAt);
  const Columns columns(sizes.width, 4, floors(columnsAt));
  std::vector<float> weights;
  weights.reserve(std::size_t{4} * sizes.newWidth);
  for (const float at : columnsAt)
    for (const float k : {1.0f, 0.0f, -1.0f, -2.0f})
      weights.push_back(CPixelProcess::KernelBSpline(at - std::floor(at) + k));

  const int bands = Bands(sizes.newHeight);
  const std::size_t samples = std::size_t{4} * columns.count;
  std::vector<float> rings(4 * samples * bands);  // source row r as floats in slot r % 4
  std::vector<unsigned char> picked(samples * bands);
  std::vector<int> ready(bands);  // rows before this one are in the ring or done with
  ForEachBand(bands, sizes.newHeight, [&, target](std::int64_t band, int y) {
    float* const ring = &rings[4 * samples * band];
    const auto clampRow = [&](std::int64_t row) {
      return static_cast<int>(std::clamp<std::int64_t>(row, 0, sizes.height - 1));
    };
    const int last = clampRow(std::int64_t{firstRow[y]} + 3);
    for (int& row = ready[band] = std::max(ready[band], clampRow(firstRow[y])); row <= last; ++row)
      std::copy_n(columns.Pick(source + std::size_t{4} * sizes.width * row, 4,
                               picked.data() + samples * band),
                  samples, ring + samples * (row % 4));
    const float* rows[4];
    float rowWeights[4];
    for (int m = 0; m < 4; ++m) {
      rows[m] = ring + samples * (clampRow(std::int64_t{firstRow[y]} + m) % 4);
      rowWeights[m] = CPixelProcess::KernelBSpline(static_cast<float>(m - 1) -
                                                   (rowsAt[y] - std::floor(rowsAt[y])));
    }
    HWY_DYNAMIC_DISPATCH(SplinePixels)
    (rows, rowWeights, columns.slots.data(), weights.data(), sizes.newWidth,
     target + std::size_t{4} * sizes.newWidth * y);
  });
}

template <int kBytes>
void CopyColumns(const unsigned char* row, const std::vector<int>& columns, int bytes,
                 unsigned char* out) {
  const std::size_t size = kBytes ? kBytes : bytes;
  for (const int column : columns) {
    std::memcpy(out, row + size * column, size);
    out += size;
  }
}

// A scaling by nearest pixels that is ready to be run.
struct NearestPlan {
  NearestPlan(const unsigned char* pixels, const Sizes& sizes, int pixelBytes)
      : source(pixels),
        bytes(pixelBytes),
        rowBytes(std::size_t(bytes) * sizes.width),
        x(Products(sizes.newWidth, sizes.ScaleX()), sizes.width),
        y(Products(sizes.newHeight, sizes.ScaleY()), sizes.height),
        copy(bytes == 4   ? CopyColumns<4>
             : bytes == 3 ? CopyColumns<3>
             : bytes == 2 ? CopyColumns<2>
             : bytes == 1 ? CopyColumns<1>
                          : CopyColumns<0>) {}

  void Run(std::int64_t row, unsigned char* out) const {
    copy(source + rowBytes * y.whole[row], x.whole, bytes, out);
  }

  const unsigned char* source;
  int bytes;
  std::size_t rowBytes;
  Split x, y;
  decltype(&CopyColumns<0>) copy;
};

void Nearest(const unsigned char* source, const Sizes& sizes, int bytes, unsigned char* target) {
  const NearestPlan plan(source, sizes, bytes);
  const std::size_t newRowBytes = std::size_t(bytes) * sizes.newWidth;
  ParallelFor(sizes.newHeight,
              [=, &plan](std::int64_t row) { plan.Run(row, target + newRowBytes * row); });
}

// What one thread works the rows of a layer in.
struct NearestRow {
  explicit NearestRow(const NearestPlan& nearest) : plan(nearest) {}
  void Run(int row, unsigned char* out) { plan.Run(row, out); }
  const NearestPlan& plan;
};
struct TextureRow {
  explicit TextureRow(const BilinearPlan& plan) : row(plan) {}
  void Run(int y, unsigned char* out) { row.Run(y, 0, BlendByDeltas, out); }
  BilinearRow row;
};

// A layer of rows that a plan makes one by one.
template <class Plan, class Row>
class ScaledLayer final : public Layer {
 public:
  ScaledLayer(Plan plan, int width) : plan_(std::move(plan)), width_(width) {}
  std::unique_ptr<Reader> NewReader(int bandRows) const override {
    return std::make_unique<RowReader>(plan_, std::size_t{4} * width_, bandRows);
  }

 private:
  class RowReader final : public Reader {
   public:
    RowReader(const Plan& plan, std::size_t pitch, int bandRows)
        : row_(plan), pitch_(pitch), pixels_(RequirePixels(pitch * bandRows)) {}
    const unsigned char* Rows(int from, int to) override {
      for (int y = from; y < to; ++y) row_.Run(y, pixels_.get() + pitch_ * (y - from));
      return pixels_.get();
    }

   private:
    Row row_;
    std::size_t pitch_;
    PixelMemory pixels_;
  };
  Plan plan_;
  int width_;
};

// Puts `size` new bytes, filled by fill(them), in the place of an array.
template <class Fill>
void Replace(unsigned char** pixels, std::size_t size, const Fill& fill) {
  PixelMemory target = AllocatePixels(size);
  if (!target) throw std::bad_alloc();
  fill(target.get());
  delete[] * pixels;
  *pixels = target.release();
}

}  // namespace

std::unique_ptr<Layer> BilinearLayer(const PictureView& picture, int width, int height) {
  const Sizes sizes{picture.width, picture.height, width, height};
  if (sizes.AreEqual()) return PixelLayer(picture.pixels, width);
  if (!sizes.HavePixels()) return BlankLayer(width);
  return std::make_unique<ScaledLayer<BilinearPlan, TextureRow>>(SummedPlan(picture.pixels, sizes),
                                                                 width);
}

std::unique_ptr<Layer> NearestLayer(const PictureView& picture, int width, int height) {
  const Sizes sizes{picture.width, picture.height, width, height};
  if (sizes.AreEqual()) return PixelLayer(picture.pixels, width);
  if (!sizes.HavePixels()) return BlankLayer(width);
  return std::make_unique<ScaledLayer<NearestPlan, NearestRow>>(
      NearestPlan(picture.pixels, sizes, 4), width);
}

struct PlaneScaler::Plan {
  explicit Plan(const Sizes& sizes)
      : height(sizes.height),
        x(Sums(sizes.newWidth, sizes.ScaleX()), sizes.width),
        y(Sums(sizes.newHeight, sizes.ScaleY()), sizes.height),
        columns(sizes.width, 2, x.whole) {}

  int height;
  Split x, y;
  Columns columns;
};

PlaneScaler::PlaneScaler(int width, int height, int newWidth, int newHeight)
    : plan_(std::make_unique<Plan>(Sizes{width, height, newWidth, newHeight})) {}

PlaneScaler::~PlaneScaler() = default;

int PlaneScaler::Upper(int row) const {
  return plan_->y.whole[row];
}

int PlaneScaler::Lower(int row) const {
  return std::min(Upper(row) + 1, plan_->height - 1);
}

std::size_t PlaneScaler::ScratchSize() const {
  const std::size_t count = plan_->columns.count;
  constexpr std::size_t kVector = 16;
  return count + std::max(kVector, (2 * count + sizeof(float) - 1) / sizeof(float));
}

void PlaneScaler::ScaleRow(int row, const unsigned char* upper, const unsigned char* lower,
                           float* scratch, unsigned char* out) const {
  const Columns& columns = plan_->columns;
  auto* const picked = reinterpret_cast<unsigned char*>(scratch + columns.count);
  BlendByDeltas(columns.Pick(upper, 1, picked), columns.Pick(lower, 1, picked + columns.count),
                columns.count, plan_->y.fraction[row], scratch);
  const std::vector<float>& shares = plan_->x.fraction;
  HWY_DYNAMIC_DISPATCH(MixBytes)
  (scratch, columns.slots.data(), shares.data(), shares.size(), out);
}

namespace {

void ScalePlane(const unsigned char* source, const Sizes& sizes, unsigned char* target) {
  const PlaneScaler scaler(sizes.width, sizes.height, sizes.newWidth, sizes.newHeight);
  const int bands = Bands(sizes.newHeight);
  const std::size_t size = scaler.ScratchSize();
  std::vector<float> scratch(size * bands);
  ForEachBand(bands, sizes.newHeight, [&, target](std::int64_t band, int row) {
    const auto from = [&](int y) { return source + std::size_t(sizes.width) * y; };
    scaler.ScaleRow(row, from(scaler.Upper(row)), from(scaler.Lower(row)), &scratch[size * band],
                    target + std::size_t(sizes.newWidth) * row);
  });
}

}  // namespace
}  // namespace tintwerk

void CPixelProcess::RampleBit(int newWidth, int newHeight, int mode, unsigned char** pixels,
                              int width, std::int32_t height) try {
  using namespace tintwerk;
  const Sizes sizes{width, height, newWidth, newHeight};
  if (!pixels || !*pixels || sizes.AreEqual() || !sizes.HavePixels()) return;
  const unsigned char* const source = *pixels;
  Replace(pixels, std::size_t{4} * newWidth * newHeight, [&](unsigned char* target) {
    if (mode == 1) return Nearest(source, sizes, 4, target);
    if (mode == 2) return Spline(source, sizes, target);
    Bilinear(
        {source, sizes, Products(newWidth, sizes.ScaleX()), Products(newHeight, sizes.ScaleY())}, 0,
        [](auto... row) {
          HWY_DYNAMIC_DISPATCH(BlendRows)
          (row...);
        },
        target);
  });
} catch (const std::bad_alloc&) {
  // The array is as it was.
}

int CPixelProcess::RampleBit(int newWidth, int newHeight, unsigned char** pixels, int width,
                             std::int32_t height, int bytesPerPixel) try {
  using namespace tintwerk;
  const Sizes sizes{width, height, newWidth, newHeight};
  if (!pixels || !*pixels || newWidth <= 0 || newHeight == 0 || sizes.AreEqual()) return 0;
  if (newHeight < 0) {
    Replace(pixels, 0, [](unsigned char*) {});
    return 1;
  }
  if (!sizes.HavePixels() || bytesPerPixel <= 0) return 0;
  const unsigned char* const source = *pixels;
  Replace(pixels, std::size_t(bytesPerPixel) * newWidth * newHeight,
          [&](unsigned char* target) { Nearest(source, sizes, bytesPerPixel, target); });
  return 1;
} catch (const std::bad_alloc&) {
  return 0;
}

void SFDSP::RampleBit(int newWidth, int newHeight, unsigned char** pixels, int width,
                      std::int32_t height, int bytesPerPixel) {
  CPixelProcess::RampleBit(newWidth, newHeight, pixels, width, height, bytesPerPixel);
}

bool SFDSP::BilinearReSample(const unsigned char* source, int width, int height,
                             unsigned char* target, int newWidth, int newHeight, int channels) try {
  using namespace tintwerk;
  const Sizes sizes{width, height, newWidth, newHeight};
  if (!source || !target || (channels != 1 && channels != 4)) return false;
  if (newWidth <= 0 || newHeight == 0 || sizes.AreEqual()) return false;
  if (newHeight < 0) return true;
  if (!sizes.HavePixels()) return false;
  if (channels == 1)
    ScalePlane(source, sizes, target);
  else
    Bilinear(SummedPlan(source, sizes), 0xFF000000, BlendByDeltas, target);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

float CPixelProcess::KernelBSpline(float x) {
  if (x > 2) return 0;
  const auto cube = [](float t) { return t > 0 ? t * t * t : 0.0f; };
  return (cube(x + 2) - 4 * cube(x + 1) + 6 * cube(x) - 4 * cube(x - 1)) * 0.16666667f;
}

void CPixelProcess::CopyPixel(void* target, const void* source, int bytes) {
  if (target && source && bytes > 0) std::memcpy(target, source, bytes);
}

void CPixelProcess::tfbitCopy(const unsigned char* source, unsigned char* target, int count) {
  if (!source || !target) return;
  for (std::int64_t i = 0; i < count; ++i)
    for (int c = 0; c < 3; ++c) target[3 * i + c] = source[4 * i + c];
}

void CPixelProcess::AlphaBlendPixel(unsigned char* target, const unsigned char* source,
                                    unsigned char alpha) {
  if (!target || !source) return;
  for (int c = 0; c < 3; ++c)  // 0 and 255 give the target and the source
    target[c] = static_cast<unsigned char>(target[c] + (source[c] - target[c]) * alpha / 255);
}
#endif

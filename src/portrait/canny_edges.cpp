#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "portrait/canny_edges.cpp"
#include "portrait/canny_edges.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstring>

#ifndef TINTWERK_CANNY_EDGES_TYPES
#define TINTWERK_CANNY_EDGES_TYPES
namespace tintwerk {
namespace {

constexpr int kMostLanes = 32;

// Gradients of the inner pixels of a row, from the second pixel of the image on. A length is kept
// as the sum of its two neighbouring integers, floor + ceil: it is above an integer t where its
// ceil is, and above the floor of another length where 2 ceil is above that sum. Around the inner
// pixels all lengths are 0.
struct GradientRow {
  const std::int16_t* lengths;
  const std::int16_t* directions;
};

}  // namespace
}  // namespace tintwerk
#endif

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

constexpr hn::CappedTag<std::int16_t, kMostLanes> kWords;
constexpr hn::Rebind<std::uint8_t, decltype(kWords)> kBytes;
constexpr hn::Half<decltype(kWords)> kHalfWords;
constexpr hn::Rebind<std::int32_t, decltype(kHalfWords)> kInts;
constexpr hn::Rebind<float, decltype(kHalfWords)> kReals;
using Words = hn::Vec<decltype(kWords)>;
using HalfWords = hn::Vec<decltype(kHalfWords)>;

HWY_INLINE Words LoadBytes(const unsigned char* at) {
  return hn::PromoteTo(kWords, hn::LoadU(kBytes, at));
}

HWY_INLINE Words Twice(Words a) {
  return hn::Add(a, a);
}

// a x factor / 2^16, rounded down.
HWY_INLINE Words Scaled(Words a, Words factor) {
#if HWY_TARGET == HWY_EMU128  // where some compilers get high halves of products wrong
  const auto half = [](HalfWords x, HalfWords y) HWY_ATTR {
    const auto product = hn::Mul(hn::PromoteTo(kInts, x), hn::PromoteTo(kInts, y));
    return hn::DemoteTo(kHalfWords, hn::ShiftRight<16>(product));
  };
  return hn::Combine(kWords, half(hn::UpperHalf(kHalfWords, a), hn::UpperHalf(kHalfWords, factor)),
                     half(hn::LowerHalf(kHalfWords, a), hn::LowerHalf(kHalfWords, factor)));
#else
  return hn::MulHigh(a, factor);
#endif
}

// A gradient lies along the row where |gy| / |gx| < tan(22.5 degrees) = sqrt(2) - 1, and along the
// column where |gx| / |gy| is: with 1 / tan = 2 + tan the fraction is multiplied with the smaller
// side only, where 16 bits are enough. Columns of a rising gradient begin at 67.6 degrees instead
// of 67.5. Exact at all gradients that there are.
HWY_INLINE Words Direction(Words gx, Words gy) {
  const auto x = hn::Abs(gx), y = hn::Abs(gy);
  const auto falls = hn::Lt(hn::Xor(gx, gy), hn::Zero(kWords));
  const auto fraction = hn::Set(kWords, 27146), steeper = hn::Set(kWords, 27930);
  const auto alongRow = hn::Gt(hn::Sub(x, Twice(y)), Scaled(y, fraction));
  const auto alongColumn =
      hn::Gt(hn::Sub(y, Twice(x)), Scaled(x, hn::IfThenElse(falls, fraction, steeper)));
  auto direction =
      hn::IfThenElse(falls, hn::Set(kWords, kFallingDiagonal), hn::Set(kWords, kRisingDiagonal));
  direction = hn::IfThenElse(alongColumn, hn::Set(kWords, kAlongColumn), direction);
  return hn::IfThenElse(alongRow, hn::Set(kWords, kAlongRow), direction);
}

void Directions(const std::int16_t* gx, const std::int16_t* gy, std::size_t count,
                std::int16_t* directions) {
  for (std::size_t i = 0; i < count; i += hn::Lanes(kWords))
    hn::StoreU(Direction(hn::LoadU(kWords, gx + i), hn::LoadU(kWords, gy + i)), kWords,
               directions + i);
}

// Squares stay below 2^24, and the root of one that is no square stays clear of integers.
HWY_INLINE HalfWords HalfLengths(HalfWords gx, HalfWords gy) {
  const auto x = hn::ConvertTo(kReals, hn::PromoteTo(kInts, gx));
  const auto y = hn::ConvertTo(kReals, hn::PromoteTo(kInts, gy));
  const auto length = hn::Sqrt(hn::Add(hn::Mul(x, x), hn::Mul(y, y)));
  const auto floor = hn::ConvertTo(kInts, length);
  const auto isWhole = hn::RebindMask(kInts, hn::Eq(hn::ConvertTo(kReals, floor), length));
  return hn::DemoteTo(
      kHalfWords, hn::Add(hn::Add(floor, floor), hn::IfThenZeroElse(isWhole, hn::Set(kInts, 1))));
}

HWY_INLINE Words Lengths(Words gx, Words gy) {
  return hn::Combine(kWords,
                     HalfLengths(hn::UpperHalf(kHalfWords, gx), hn::UpperHalf(kHalfWords, gy)),
                     HalfLengths(hn::LowerHalf(kHalfWords, gx), hn::LowerHalf(kHalfWords, gy)));
}

// The gradients of `count` pixels, whose upper left neighbours `above` points to. Where none of a
// vector can exceed `low`, none is told from 0.
void FindGradients(const unsigned char* above, const unsigned char* row, const unsigned char* below,
                   std::size_t count, int low, std::int16_t* lengths, std::int16_t* directions) {
  const std::size_t lanes = hn::Lanes(kWords);
  HWY_ALIGN unsigned char ends[3][kMostLanes + 2] = {};
  for (std::size_t i = 0; i < count; i += lanes) {
    const unsigned char *a = above + i, *r = row + i, *b = below + i;
    if (i + lanes > count) {  // what is beyond the row is not ours
      a = static_cast<unsigned char*>(std::memcpy(ends[0], a, count - i + 2));
      r = static_cast<unsigned char*>(std::memcpy(ends[1], r, count - i + 2));
      b = static_cast<unsigned char*>(std::memcpy(ends[2], b, count - i + 2));
    }
    const auto a0 = LoadBytes(a), a1 = LoadBytes(a + 1), a2 = LoadBytes(a + 2);
    const auto b0 = LoadBytes(b), b1 = LoadBytes(b + 1), b2 = LoadBytes(b + 2);
    const auto across = hn::Sub(LoadBytes(r + 2), LoadBytes(r));
    const auto gx = hn::Add(hn::Add(hn::Sub(a2, a0), hn::Sub(b2, b0)), Twice(across));
    const auto gy =
        hn::Sub(hn::Add(hn::Add(a0, a2), Twice(a1)), hn::Add(hn::Add(b0, b2), Twice(b1)));
    const auto most = hn::Add(hn::Abs(gx), hn::Abs(gy));
    if (hn::AllFalse(kWords, hn::Gt(most, hn::Set(kWords, static_cast<std::int16_t>(low))))) {
      hn::StoreU(hn::Zero(kWords), kWords, lengths + i);
      hn::StoreU(hn::Zero(kWords), kWords, directions + i);
    } else {
      hn::StoreU(Lengths(gx, gy), kWords, lengths + i);
      hn::StoreU(Direction(gx, gy), kWords, directions + i);
    }
  }
  std::fill_n(lengths + count, kMostLanes + 1, std::int16_t{0});
}

// Suppresses what is no maximum: a bit for each pixel, of weak and of strong edges.
void Thin(const std::int16_t* above, const GradientRow& row, const std::int16_t* below,
          std::size_t count, int low, int high, std::uint8_t* weak, std::uint8_t* strong) {
  const auto load = [](const std::int16_t* at) HWY_ATTR { return hn::LoadU(kWords, at); };
  const auto is = [](Words directions, GradientDirection direction)
                      HWY_ATTR { return hn::Eq(directions, hn::Set(kWords, direction)); };
  const auto twiceLow = hn::Set(kWords, static_cast<std::int16_t>(2 * low));
  const auto twiceHigh = hn::Set(kWords, static_cast<std::int16_t>(2 * high));
  for (std::size_t i = 0; i < count; i += hn::Lanes(kWords)) {
    const std::int16_t *a = above + i, *r = row.lengths + i, *b = below + i;
    const auto length = load(r);
    const auto twiceCeil = hn::Add(length, hn::And(length, hn::Set(kWords, 1)));
    const auto isOver = hn::Gt(twiceCeil, twiceLow);
    auto isCandidate = isOver, isStrong = isOver;
    if (!hn::AllFalse(kWords, isOver)) {
      const auto directions = load(row.directions + i);
      auto most = hn::Max(load(a - 1), load(b + 1));
      most =
          hn::IfThenElse(is(directions, kRisingDiagonal), hn::Max(load(b - 1), load(a + 1)), most);
      most = hn::IfThenElse(is(directions, kAlongColumn), hn::Max(load(a), load(b)), most);
      most = hn::IfThenElse(is(directions, kAlongRow), hn::Max(load(r - 1), load(r + 1)), most);
      isCandidate = hn::And(isOver, hn::Gt(twiceCeil, most));
      isStrong = hn::And(isCandidate, hn::Gt(twiceCeil, twiceHigh));
    }
    hn::StoreMaskBits(kWords, hn::AndNot(isStrong, isCandidate), weak + i / 8);
    hn::StoreMaskBits(kWords, isStrong, strong + i / 8);
  }
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <omp.h>

#include <array>
#include <bit>
#include <memory>
#include <new>
#include <vector>

#include "frame/image.h"
#include "frame/material.h"
#include "frame/parallel.h"

namespace tintwerk {
namespace {

HWY_EXPORT(Directions);
HWY_EXPORT(FindGradients);
HWY_EXPORT(Thin);

constexpr int kLongest = 1443;  // of a gradient, rounded up

// A bit for each inner pixel of an image, rows in whole words with an empty word on either side.
class BitPlane {
 public:
  static std::int64_t RowWords(int innerWidth) { return (std::int64_t{innerWidth} + 63) / 64 + 2; }

  BitPlane(std::uint64_t* words, std::int64_t rowWords) : words_(words), rowWords_(rowWords) {}

  /// The words of a row, the empty ones included.
  std::uint64_t* Row(int y) const { return words_ + rowWords_ * y; }
  std::uint8_t* RowBytes(int y) const { return reinterpret_cast<std::uint8_t*>(Row(y) + 1); }
  std::int64_t RowWords() const { return rowWords_; }

  /// The bits of x - 1, x and x + 1.
  unsigned Around(int x, int y) const {
    const std::uint64_t* const word = Row(y) + (x + 63) / 64;
    const int shift = (x + 63) % 64;
    return static_cast<unsigned>(word[0] >> shift | word[1] << 1 << (63 - shift)) & 7;
  }
  /// Turns such bits over.
  void Flip(int x, int y, std::uint64_t bits) const {
    std::uint64_t* const word = Row(y) + (x + 63) / 64;
    const int shift = (x + 63) % 64;
    word[0] ^= bits << shift;
    word[1] ^= bits >> 1 >> (63 - shift);
  }

 private:
  std::uint64_t* words_;
  std::int64_t rowWords_;
};

struct Planes {
  BitPlane weak;
  BitPlane edges;
};

// Hysteresis: weak edges beside an edge become edges, and so on.
class Tracker {
 public:
  /// Stays within rows `from`..`to`.
  Tracker(const Planes& planes, int from, int to) : planes_(planes), from_(from), to_(to) {}

  /// From all edges of a row.
  void TrackRow(int y) {
    const int above = std::max(y - 1, from_), below = std::min(y + 1, to_);
    const std::uint64_t* const rows[] = {planes_.weak.Row(above), planes_.weak.Row(y),
                                         planes_.weak.Row(below)};
    const auto weak = [&](std::int64_t k) { return rows[0][k] | rows[1][k] | rows[2][k]; };
    for (std::int64_t k = 1; k + 1 < planes_.edges.RowWords(); ++k) {
      const std::uint64_t near = weak(k);
      const std::uint64_t reached =
          near | near << 1 | near >> 1 | weak(k - 1) >> 63 | weak(k + 1) << 63;
      std::uint64_t starts = planes_.edges.Row(y)[k] & reached;
      for (; starts != 0; starts &= starts - 1)
        Track({static_cast<int>(64 * (k - 1)) + std::countr_zero(starts), y});
    }
  }

 private:
  struct Position {
    int x, y;
  };

  void Track(Position start) {
    pending_.push_back(start);
    while (!pending_.empty()) {
      const auto [x, y] = pending_.back();
      pending_.pop_back();
      for (int row = std::max(y - 1, from_); row <= std::min(y + 1, to_); ++row) {
        unsigned found = planes_.weak.Around(x, row);
        if (found == 0) continue;
        planes_.weak.Flip(x, row, found);
        planes_.edges.Flip(x, row, found);
        for (; found != 0; found &= found - 1)
          pending_.push_back({x - 1 + std::countr_zero(found), row});
      }
    }
  }

  Planes planes_;
  int from_;
  int to_;
  std::vector<Position> pending_;
};

struct Detector {
  const unsigned char* Pixels(int y) const { return source + std::int64_t{stride} * y; }

  // Room for the gradients of three rows, lengths and directions.
  static std::int64_t RowLanes(int innerWidth) { return innerWidth + 2 * kMostLanes + 2; }

  // Finds the edges of rows from..to - 1, as far as they show from within these rows.
  void WorkBand(int from, int to, std::int16_t* room) const {
    const auto lengths = [=, this](int y) { return room + lanes * (y % 3) + 1; };
    const auto directions = [=, this](int y) { return room + lanes * (3 + y % 3); };
    const auto find = [&](int y) {
      if (y == 0 || y == height - 1) return static_cast<void>(std::fill_n(lengths(y), inner, 0));
      HWY_DYNAMIC_DISPATCH(FindGradients)
      (Pixels(y - 1), Pixels(y), Pixels(y + 1), inner, low, lengths(y), directions(y));
    };
    std::fill_n(room, 6 * lanes, std::int16_t{0});
    for (const BitPlane& plane : {planes.weak, planes.edges})
      std::fill(plane.Row(from), plane.Row(to), 0);
    find(from - 1);
    find(from);
    for (int y = from; y < to; ++y) {
      find(y + 1);
      HWY_DYNAMIC_DISPATCH(Thin)
      (lengths(y - 1), {lengths(y), directions(y)}, lengths(y + 1), inner, low, high,
       planes.weak.RowBytes(y), planes.edges.RowBytes(y));
    }
    Tracker tracker(planes, from, to - 1);
    for (int y = from; y < to; ++y) tracker.TrackRow(y);
  }

  const unsigned char* source;
  int height;
  int stride;
  int inner;  // pixels of a row
  int low;
  int high;
  std::int64_t lanes;
  Planes planes;
};

// A byte for each bit, 255 or 0, the lowest bit first.
constexpr auto kSpread = [] {
  std::array<std::array<unsigned char, 8>, 256> spread{};
  for (int bits = 0; bits < 256; ++bits)
    for (int i = 0; i < 8; ++i) spread[bits][i] = bits >> i & 1 ? 255 : 0;
  return spread;
}();

void SpreadRow(const std::uint8_t* bits, int count, unsigned char* row) {
  int x = 0;
  for (; x + 8 <= count; x += 8) std::memcpy(row + x, kSpread[bits[x / 8]].data(), 8);
  std::memcpy(row + x, kSpread[bits[x / 8]].data(), count - x);
}

}  // namespace

void GradientDirections(const std::int16_t* gx, const std::int16_t* gy, std::size_t count,
                        std::int16_t* directions) {
  HWY_DYNAMIC_DISPATCH(Directions)(gx, gy, count, directions);
}

// Which pixels tracking starts from, and in which order it goes, leaves no trace: edges are the
// connected groups that hold a strong one. So bands are worked side by side, then joined.
bool CannyEdges(const unsigned char* source, unsigned char* result, int width, int height,
                int stride, int lowThreshold, int highThreshold) try {
  const auto count = PixelCount(width, height);
  if (!source || !result || !count || *count == 0 || stride < width) return true;
  const int inner = std::max(width - 2, 0), innerRows = std::max(height - 2, 0);
  const int bands = std::clamp(innerRows / 32, 1, omp_get_max_threads());
  const std::int64_t rowWords = BitPlane::RowWords(inner), planeWords = rowWords * height;
  const std::int64_t lanes = Detector::RowLanes(inner);
  const PixelMemory words = AllocatePixels(2 * sizeof(std::uint64_t) * planeWords);
  const PixelMemory room = AllocatePixels(6 * sizeof(std::int16_t) * lanes * bands);
  if (!words || !room) return false;
  auto* const first = reinterpret_cast<std::uint64_t*>(words.get());
  const Planes planes{{first, rowWords}, {first + planeWords, rowWords}};

  if (inner > 0 && innerRows > 0) {
    const Detector detector{source,
                            height,
                            stride,
                            inner,
                            std::clamp(lowThreshold, 0, kLongest),
                            std::clamp(highThreshold, -1, kLongest),
                            lanes,
                            planes};
    const auto firstRow = [=](std::int64_t band) {
      return static_cast<int>(1 + innerRows * band / bands);
    };
    std::vector<char> failed(bands, 0);
    ParallelFor(bands, [&](std::int64_t band) {
      try {
        auto* const own = reinterpret_cast<std::int16_t*>(room.get()) + 6 * lanes * band;
        detector.WorkBand(firstRow(band), firstRow(band + 1), own);
      } catch (const std::bad_alloc&) {
        failed[band] = 1;
      }
    });
    if (std::count(failed.begin(), failed.end(), 1) != 0) return false;
    Tracker tracker(planes, 1, height - 2);
    for (int band = 1; band < bands; ++band) {
      tracker.TrackRow(firstRow(band) - 1);
      tracker.TrackRow(firstRow(band));
    }
  }
  ParallelFor(height, [=](std::int64_t y) {
    unsigned char* const row = result + stride * y;
    std::fill_n(row, width, static_cast<unsigned char>(0));
    if (y > 0 && y < height - 1 && inner > 0)
      SpreadRow(planes.edges.RowBytes(static_cast<int>(y)), inner, row + 1);
  });
  return true;
} catch (const std::bad_alloc&) {
  return false;
}
}  // namespace tintwerk
#endif

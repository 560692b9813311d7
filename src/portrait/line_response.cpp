#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "portrait/line_response.cpp"
#include "portrait/line_response.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

using Words = hn::CappedTag<std::uint16_t, 32>;
using Word = hn::CappedTag<std::uint16_t, 1>;

template <class Lanes>
HWY_INLINE auto LoadWords(Lanes lanes, const unsigned char* at) {
  return hn::PromoteTo(lanes, hn::LoadU(hn::Rebind<std::uint8_t, Lanes>(), at));
}

// sums[i] += row[i].
void AddRow(const unsigned char* row, std::size_t count, std::uint16_t* sums) {
  const auto step = [=](auto lanes, std::size_t i) HWY_ATTR {
    hn::StoreU(hn::Add(hn::LoadU(lanes, sums + i), LoadWords(lanes, row + i)), lanes, sums + i);
  };
  std::size_t i = 0;
  for (; i + hn::Lanes(Words()) <= count; i += hn::Lanes(Words())) step(Words(), i);
  for (; i < count; ++i) step(Word(), i);
}

// sums[i] -= row[i].
void SubtractRow(const unsigned char* row, std::size_t count, std::uint16_t* sums) {
  const auto step = [=](auto lanes, std::size_t i) HWY_ATTR {
    hn::StoreU(hn::Sub(hn::LoadU(lanes, sums + i), LoadWords(lanes, row + i)), lanes, sums + i);
  };
  std::size_t i = 0;
  for (; i + hn::Lanes(Words()) <= count; i += hn::Lanes(Words())) step(Words(), i);
  for (; i < count; ++i) step(Word(), i);
}

template <class Wide, class V>
HWY_INLINE auto Quotients(Wide wide, V sums, hn::Vec<Wide> factor) {
  const hn::Rebind<std::uint8_t, Wide> bytes;
  const hn::RebindToSigned<Wide> integers;
  const auto quotients = hn::ShiftRight<24>(hn::Mul(hn::PromoteTo(wide, sums), factor));
  return hn::DemoteTo(bytes, hn::BitCast(integers, quotients));
}

// out[i] = (sums[i] + row[i]) x factor / 2^24.
void Divide(const std::uint16_t* sums, const unsigned char* row, std::size_t count,
            std::uint32_t factor, unsigned char* out) {
  const hn::Half<Words> half;
  const hn::Rebind<std::uint32_t, decltype(half)> wide;
  const hn::Rebind<std::uint8_t, decltype(half)> bytes;
  const auto factors = hn::Set(wide, factor);
  std::size_t i = 0;
  for (; i + hn::Lanes(half) <= count; i += hn::Lanes(half)) {
    const auto sum = hn::Add(hn::LoadU(half, sums + i), LoadWords(half, row + i));
    hn::StoreU(Quotients(wide, sum, factors), bytes, out + i);
  }
  for (; i < count; ++i)
    out[i] =
        static_cast<unsigned char>(static_cast<std::uint32_t>(sums[i] + row[i]) * factor >> 24);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <algorithm>
#include <cstring>

namespace tintwerk {
namespace {

HWY_EXPORT(AddRow);
HWY_EXPORT(SubtractRow);
HWY_EXPORT(Divide);

constexpr float kTangent = 0.41421f;  // of half of 45 degrees

// How far a position is moved by shearing.
int Sheared(int position) {
  return static_cast<int>(static_cast<float>(position) * kTangent);
}

// What a side grows to.
int Sheared(int side, int other) {
  return static_cast<int>(static_cast<float>(other) * kTangent + static_cast<float>(side));
}

// Copies runs[from]..runs[to] into a row, each from a row of its own, `step` samples apart.
// @param source where the row of run 0 starts
void CopyRuns(const unsigned char* source, std::ptrdiff_t step,
              const std::vector<std::int32_t>& runs, int from, int to, unsigned char* row) {
  // Four bytes at a time, the next run over what was too much. The last run of all is three
  // columns wide, so that one before it has four.
  const int last = static_cast<int>(runs.size()) - 2;
  for (int j = from; j < std::min(to, last); ++j)
    std::memcpy(row + runs[j], source + step * j + runs[j], 4);
  if (to > last)
    std::memcpy(row + runs[last], source + step * last + runs[last], runs[last + 1] - runs[last]);
}

}  // namespace

LineResponses::LineResponses(int width, int height, int halfLength)
    : width_(width), height_(height), halfLength_(halfLength), drop_(Sheared(width - 1)) {
  for (int x = 0, drop = drop_ + 1; x < width; ++x)
    if (Sheared(width - x - 1) < drop) {
      runs_.push_back(x);
      --drop;
    }
  runs_.push_back(width);

  const int fullHeight = Sheared(height, width);
  for (int y = 0; y < fullHeight; ++y) shifts_.push_back(Sheared(y - drop_));
  const std::size_t rows = std::max(fullHeight, height + drop_);
  shearedSource_.resize(rows * width);
  shearedResult_.resize(rows * width);
  sheared_ = {shearedSource_.data(), fullHeight, Sheared(width, height), shifts_.data()};
  // A sheared plane has room for its rows wherever their diagonals put them.
  sums_.resize(std::size_t{4} * (fullHeight + sheared_.fullWidth) + 2 * halfLength + 1);
}

void LineResponses::LineResponse(const unsigned char* source, unsigned char* result,
                                 int direction) {
  Respond({source, height_, width_, nullptr}, result, direction);
}

void LineResponses::SkewedLineResponse(const unsigned char* source, unsigned char* result,
                                       int direction) {
  const int runs = static_cast<int>(runs_.size()) - 1;
  const std::ptrdiff_t pitch = width_;
  for (int y = 0; y < height_ + drop_; ++y) {
    unsigned char* const row = shearedSource_.data() + pitch * y;
    const int from = std::max(drop_ - y, 0), to = std::min(height_ + drop_ - y, runs);
    if (from >= to) continue;
    CopyRuns(source + pitch * (y - drop_), pitch, runs_, from, to, row);
    if (to < runs) std::memset(row + runs_[to], 0, 3);
  }
  Respond(sheared_, shearedResult_.data(), direction);
  for (int y = 0; y < height_; ++y)
    CopyRuns(shearedResult_.data() + pitch * (y + drop_), -pitch, runs_, 0, runs,
             result + pitch * y);
}

void LineResponses::Respond(const Slanted& plane, unsigned char* result, int direction) {
  switch (direction / 2) {
    case 0:
      return RespondAlong(plane, result);
    case 1:
      return RespondAcross(plane, result, 1);
    case 2:
      return RespondAcross(plane, result, 0);
    default:
      return RespondAcross(plane, result, -1);
  }
}

// Lines that come one column further to the right with each row, or `slope` columns. The sum of
// each line moves down by a row at a time.
void LineResponses::RespondAcross(const Slanted& plane, unsigned char* result, int slope) {
  const auto row = [&](int y) { return plane.samples + std::ptrdiff_t{width_} * y; };
  std::uint16_t* const origin =
      sums_.data() + (slope > 0 ? plane.height : 0) - (plane.shifts ? plane.shifts[0] : 0);
  const auto sums = [&](int y) {
    return origin - std::ptrdiff_t{slope} * y + (plane.shifts ? plane.shifts[y] : 0);
  };
  std::fill(sums_.begin(), sums_.end(), std::uint16_t{0});
  const int length = 2 * halfLength_;
  for (int y = 0; y < plane.height; ++y) {
    HWY_DYNAMIC_DISPATCH(AddRow)(row(y), width_, sums(y));
    if (y < length) continue;
    HWY_DYNAMIC_DISPATCH(SubtractRow)(row(y - length), width_, sums(y - length));
    StoreMeans(plane, y - halfLength_, sums(y - halfLength_), result);
  }
}

void LineResponses::RespondAlong(const Slanted& plane, unsigned char* result) {
  std::uint16_t* const sums = sums_.data();
  std::uint16_t* const before = sums + width_;  // the sum of all samples before one, and on
  const int length = 2 * halfLength_;
  for (int y = halfLength_; y < plane.height - halfLength_; ++y) {
    const unsigned char* const row = plane.samples + std::ptrdiff_t{width_} * y;
    std::uint16_t sum = 0;
    std::fill_n(before, halfLength_, sum);
    for (int x = 0; x < width_; ++x) {
      before[halfLength_ + x] = sum;
      sum = static_cast<std::uint16_t>(sum + row[x]);
    }
    std::fill_n(before + halfLength_ + width_, halfLength_ + 1, sum);
    for (int x = 0; x < width_; ++x)
      sums[x] = static_cast<std::uint16_t>(before[x + length + 1] - before[x + 1]);
    StoreMeans(plane, y, sums, result);
  }
}

// Where a line stays within the plane.
void LineResponses::StoreMeans(const Slanted& plane, int y, const std::uint16_t* sums,
                               unsigned char* result) {
  const int shift = plane.shifts ? plane.shifts[y] : 0;
  const int from = std::max(halfLength_ - shift, 0);
  const int to = std::min(plane.fullWidth - halfLength_ - shift, width_);
  if (from >= to) return;
  const std::ptrdiff_t at = std::ptrdiff_t{width_} * y + from;
  // Exact for sums of 16 bits and divisors of 8.
  const std::uint32_t factor = (1u << 24) / (2 * halfLength_ + 1) + 1;
  HWY_DYNAMIC_DISPATCH(Divide)(sums + from, plane.samples + at, to - from, factor, result + at);
}

}  // namespace tintwerk
#endif

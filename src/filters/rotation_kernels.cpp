#include "filters/rotation_kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/rotation_kernels.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// Where pixels of the target lie in the source. For those between four pixels: which is the upper
// left one, and the weights of the upper two and of the lower two, 256 in all.
struct Group {
  float x[kTurnGroup], y[kTurnGroup];
  std::int32_t offsets[kTurnGroup];
  std::uint16_t upper[2 * kTurnGroup], lower[2 * kTurnGroup];
};

// @return whether all of a vector's pixels lie between four
template <class Lanes>
HWY_INLINE bool Locate(Lanes lanes, const Turn& turn, const float* u, float v, int at,
                       Group& group) {
  const hn::Rebind<std::int32_t, Lanes> integers;
  const hn::Repartition<std::uint16_t, Lanes> words;
  const auto zero = hn::Zero(lanes);
  const auto c = hn::Set(lanes, turn.c), s = hn::Set(lanes, turn.s), us = hn::LoadU(lanes, u + at);
  auto x =
      hn::Add(hn::Add(hn::Mul(us, c), hn::Set(lanes, v * turn.s)), hn::Set(lanes, turn.centreX));
  auto y =
      hn::Add(hn::Sub(hn::Set(lanes, v * turn.c), hn::Mul(us, s)), hn::Set(lanes, turn.centreY));
  const auto isBelow = [&](auto value, int extent) HWY_ATTR {
    return hn::RebindMask(lanes, hn::Lt(hn::ConvertTo(integers, value), hn::Set(integers, extent)));
  };
  if (turn.clamps) {
    const auto isNear = [&](auto value, int extent) HWY_ATTR {
      return hn::And(hn::Gt(value, hn::Set(lanes, -1.0f)), isBelow(value, extent));
    };
    const auto clamped = [&](auto value, int extent) HWY_ATTR {
      return hn::Min(hn::Max(value, zero), hn::Set(lanes, static_cast<float>(extent - 1)));
    };
    const auto isNearBoth = hn::And(isNear(x, turn.width), isNear(y, turn.height));
    x = hn::IfThenElse(isNearBoth, x, clamped(x, turn.width));
    y = hn::IfThenElse(isNearBoth, y, clamped(y, turn.height));
  }
  hn::StoreU(x, lanes, group.x + at);
  hn::StoreU(y, lanes, group.y + at);

  const auto column = hn::ConvertTo(integers, x), row = hn::ConvertTo(integers, y);
  const auto offset = hn::Add(hn::Mul(row, hn::Set(integers, turn.width)), column);
  hn::StoreU(offset, integers, group.offsets + at);
  const auto fraction = [&](auto value, auto whole) HWY_ATTR {
    const auto rest = hn::Sub(value, hn::ConvertTo(lanes, whole));
    return hn::ConvertTo(integers, hn::Mul(rest, hn::Set(lanes, 256.0f)));
  };
  const auto wx = fraction(x, column), wy = fraction(y, row);
  const auto product = hn::Mul(hn::BitCast(words, wx), hn::BitCast(words, wy));
  const auto wd = hn::BitCast(integers, hn::ShiftRight<8>(product));
  const auto wb = hn::Sub(wx, wd), wc = hn::Sub(wy, wd);
  const auto wa = hn::Sub(hn::Set(integers, 256), hn::Add(wc, wx));
  const auto storePairs = [&](auto left, auto right, std::uint16_t* to) HWY_ATTR {
    const auto both = hn::Or(left, hn::ShiftLeft<16>(right));
    hn::StoreU(hn::BitCast(words, both), words, to + 2 * at);
  };
  storePairs(wa, wb, group.upper);
  storePairs(wc, wd, group.lower);

  const auto isBetween = [&](auto value, int extent) HWY_ATTR {
    return hn::And(hn::Ge(value, zero), isBelow(value, extent - 1));
  };
  return hn::AllTrue(lanes, hn::And(isBetween(x, turn.width), isBetween(y, turn.height)));
}

// For each of four pixels: the left weight for four channels, the right weight for four channels.
alignas(16) constexpr std::uint8_t kSpread[4][16] = {
    {0, 1, 0, 1, 0, 1, 0, 1, 2, 3, 2, 3, 2, 3, 2, 3},
    {4, 5, 4, 5, 4, 5, 4, 5, 6, 7, 6, 7, 6, 7, 6, 7},
    {8, 9, 8, 9, 8, 9, 8, 9, 10, 11, 10, 11, 10, 11, 10, 11},
    {12, 13, 12, 13, 12, 13, 12, 13, 14, 15, 14, 15, 14, 15, 14, 15}};

// @param ahead pixels from here to where a later row will read; the walk across the rows of the
//              source is none that processors foresee
HWY_INLINE void MixFour(const Turn& turn, const Group& group, int at, std::ptrdiff_t ahead,
                        unsigned char* out) {
  const hn::FixedTag<std::uint16_t, 8> words;
  const hn::FixedTag<std::int16_t, 8> signedWords;
  const hn::FixedTag<std::uint8_t, 8> bytes;
  const hn::FixedTag<std::uint8_t, 16> indices;
  const auto upperWeights = hn::LoadU(words, group.upper + 2 * at);
  const auto lowerWeights = hn::LoadU(words, group.lower + 2 * at);
  const auto weighted = [&](const unsigned char* pair, auto weights, int k) HWY_ATTR {
    const auto spread = hn::BitCast(words, hn::Load(indices, kSpread[k]));
    return hn::Mul(hn::PromoteTo(words, hn::LoadU(bytes, pair)),
                   hn::TableLookupBytes(weights, spread));
  };
  // The left column in the lower half, the right one in the upper half.
  const auto columns = [&](int k) HWY_ATTR {
    const unsigned char* const upper = turn.pixels + std::ptrdiff_t{4} * group.offsets[at + k];
    return hn::Add(weighted(upper, upperWeights, k),
                   weighted(upper + std::ptrdiff_t{4} * turn.width, lowerWeights, k));
  };
  const auto mixTwo = [&](int k) HWY_ATTR {
    hwy::Prefetch(turn.pixels + 4 * (group.offsets[at + k] + ahead));
    const auto first = columns(k), second = columns(k + 1);
    const auto sum = hn::Add(hn::ConcatLowerLower(words, second, first),
                             hn::ConcatUpperUpper(words, second, first));
    return hn::DemoteTo(bytes, hn::BitCast(signedWords, hn::ShiftRight<8>(sum)));
  };
  hn::StoreU(mixTwo(0), bytes, out);
  hn::StoreU(mixTwo(2), bytes, out + 8);
}

// One with neighbours beyond the edges, in the rounding of its own that GetPixelColorInterpolated
// has for these.
HWY_INLINE void MixAtEdge(const Turn& turn, float x, float y, unsigned char* out) {
  const hn::FixedTag<float, 4> lanes;
  const hn::FixedTag<std::int32_t, 4> integers;
  const hn::FixedTag<std::uint8_t, 4> bytes;
  const int column = static_cast<int>(x) - (x < 0), row = static_cast<int>(y) - (y < 0);
  const float u = x - static_cast<float>(column), v = y - static_cast<float>(row);
  const float d = u * v, c = v - d, b = u - d, a = 1 - u - c;
  const int left = std::max(column, 0), right = std::min(column + 1, turn.width - 1);
  const int upper = std::max(row, 0), lower = std::min(row + 1, turn.height - 1);
  const auto part = [&](int tapX, int tapY, float weight) HWY_ATTR {
    const auto pixel = hn::LoadU(bytes, turn.pixels + 4 * (std::int64_t{tapY} * turn.width + tapX));
    const auto value = hn::ConvertTo(lanes, hn::PromoteTo(integers, pixel));
    return hn::ConvertTo(integers, hn::Mul(value, hn::Set(lanes, weight)));
  };
  const auto sum = hn::Add(hn::Add(part(left, upper, a), part(right, upper, b)),
                           hn::Add(part(left, lower, c), part(right, lower, d)));
  hn::StoreU(hn::DemoteTo(bytes, sum), bytes, out);
}

int TurnRow(const Turn& turn, const float* u, float v, int count, unsigned char* out) {
  const hn::CappedTag<float, kTurnGroup> lanes;
  constexpr float kRowsAhead = 8;
  const auto ahead = static_cast<std::ptrdiff_t>(turn.c * kRowsAhead) * turn.width +
                     static_cast<std::ptrdiff_t>(turn.s * kRowsAhead);
  Group group;
  int done = 0;
  for (; done + kTurnGroup <= count; done += kTurnGroup, out += std::size_t{4} * kTurnGroup) {
    bool areBetween = true;
    for (int at = 0; at < kTurnGroup; at += static_cast<int>(hn::Lanes(lanes)))
      areBetween &= Locate(lanes, turn, u + done, v, at, group);
    if (areBetween) {
      for (int at = 0; at < kTurnGroup; at += 4) MixFour(turn, group, at, ahead, out + 4 * at);
      continue;
    }
    if (!turn.clamps) break;
    for (int i = 0; i < kTurnGroup; ++i) {
      const float x = group.x[i], y = group.y[i];
      if (IsBetween(x, turn.width) && IsBetween(y, turn.height)) {
        const tagRGBQUAD colour = Between(turn.pixels, turn.width, x, y);
        std::memcpy(out + 4 * i, &colour, 4);
      } else {
        MixAtEdge(turn, x, y, out + 4 * i);
      }
    }
  }
  return done;
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tintwerk {

HWY_EXPORT(TurnRow);

int TurnRow(const Turn& turn, const float* u, float v, int count, unsigned char* out) {
  return HWY_DYNAMIC_DISPATCH(TurnRow)(turn, u, v, count, out);
}

}  // namespace tintwerk
#endif

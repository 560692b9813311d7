#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lookup/cube_kernels.cpp"
#include "lookup/cube_kernels.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "lookup/cube_steps.h"

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// A block of 128 bits holds the channels of a pixel or of a pair of nodes. Vectors of two blocks
// hold the two blues of a cell, or two pixels that lie four apart.
constexpr int kBlocks = HWY_MAX_BYTES >= 32 ? 2 : 1;
constexpr int kGroup = 4 * kBlocks;  // pixels
constexpr hn::CappedTag<std::int32_t, 4 * kBlocks> kInts;
constexpr hn::CappedTag<std::int16_t, 8 * kBlocks> kWords;
constexpr hn::CappedTag<std::uint8_t, 16 * kBlocks> kBytes;
constexpr hn::CappedTag<std::uint8_t, 8 * kBlocks> kNodes;
using Ints = hn::Vec<decltype(kInts)>;
using Words = hn::Vec<decltype(kWords)>;
using Nodes = hn::Vec<decltype(kNodes)>;

HWY_INLINE Ints SumOfProducts(Words a, Words b) {
  auto odd = hn::Zero(kInts);
  const auto even = hn::ReorderWidenMulAccumulate(kInts, a, b, hn::Zero(kInts), odd);
  return hn::RearrangeToOddPlusEven(even, odd);
}

// The weights of red have 20 bits, more than a word holds. With upper and lower halves u and l of a
// weight w of the second of two nodes, all exact:
//
//     (a (2^20 - w) + b w) >> 10  =  a (1023 - u) + b u  +  ((a (1024 - l) + b l) >> 10)
//
HWY_INLINE Ints AlongRed(Nodes nodes, Ints upper, Ints lower) {
  const auto pairs = hn::PromoteTo(kWords, nodes);
  return hn::Add(SumOfProducts(pairs, hn::BitCast(kWords, upper)),
                 hn::ShiftRight<10>(SumOfProducts(pairs, hn::BitCast(kWords, lower))));
}

// A cube loads the pairs of nodes of a pixel's cell at its low or high green: those of both blues,
// or of one where vectors have a single block.
//
// Slower by a third: weights and offsets computed in vectors and passed through memory, which takes
// as long as the interpolation. No faster: pairs as words, which need no promotion but twice the
// cache.

struct Pairs {
  const unsigned char* bytes;

  HWY_INLINE Nodes Load(const CubeSteps& steps, const unsigned char* pixel, int green,
                        int blue) const {
    const std::int32_t cell = steps.red[pixel[2]] + steps.green[pixel[1]] + steps.blue[pixel[0]];
    return hn::LoadU(kNodes, bytes + cell + CubePairs::kGreen * green + CubePairs::kBlue * blue);
  }
};

struct Picture64 {
  const unsigned char* bytes;

  HWY_INLINE Nodes Load(const CubeSteps& steps, const unsigned char* pixel, int green,
                        int blue) const {
    alignas(16) static constexpr std::uint8_t kSideBySide[] = {0, 4,  1, 5,  2,  6,  3,  7,
                                                               8, 12, 9, 13, 10, 14, 11, 15};
    const hn::Half<decltype(kNodes)> half;
    const std::int32_t slice = steps.red[pixel[2]] + steps.green[pixel[1]];
    const unsigned char* const at = bytes + slice + Cube64::Node(0, 1, 0) * green;
    const unsigned char* const low = at + steps.blue[pixel[0]];
    const unsigned char* const high = at + steps.nextBlue[pixel[0]];
    const auto nodes = kBlocks == 2
                           ? hn::Combine(kNodes, hn::LoadU(half, high), hn::LoadU(half, low))
                           : hn::LoadU(kNodes, blue ? high : low);
    return hn::TableLookupBytes(nodes, hn::Load(kNodes, kSideBySide));
  }
};

template <class Cube>
HWY_INLINE Ints AlongGreen(const Cube& cube, const CubeSteps& steps, const unsigned char* pixel,
                           int blue) {
  const auto upper = hn::Set(kInts, steps.redUpper[pixel[2]]);
  const auto lower = hn::Set(kInts, steps.redLower[pixel[2]]);
  const auto low = AlongRed(cube.Load(steps, pixel, 0, blue), upper, lower);
  const auto high = AlongRed(cube.Load(steps, pixel, 1, blue), upper, lower);
  const auto weight = hn::Set(kInts, steps.greenWeight[pixel[1]]);
  return hn::Add(low, hn::ShiftRight<10>(hn::Mul(hn::Sub(high, low), weight)));
}

/// The colour of a pixel, and of the one that is four further.
template <class Cube>
HWY_INLINE Ints Colours(const Cube& cube, const CubeSteps& steps, const unsigned char* pixel) {
  const std::int32_t* const weights = steps.blueWeights[pixel[0]];
  if constexpr (kBlocks == 2) {
    const std::int32_t* const nextWeights = steps.blueWeights[pixel[16]];
    const auto p = hn::Mul(AlongGreen(cube, steps, pixel, 0), hn::Load(kInts, weights));
    const auto q = hn::Mul(AlongGreen(cube, steps, pixel + 16, 0), hn::Load(kInts, nextWeights));
    const auto sum = hn::Add(hn::ConcatLowerLower(kInts, q, p), hn::ConcatUpperUpper(kInts, q, p));
    return hn::ShiftRight<20>(sum);
  } else {
    const auto low = hn::Mul(AlongGreen(cube, steps, pixel, 0), hn::Load(kInts, weights));
    const auto high = hn::Mul(AlongGreen(cube, steps, pixel, 1), hn::Load(kInts, weights + 4));
    return hn::ShiftRight<20>(hn::Add(low, high));
  }
}

template <class Cube>
HWY_INLINE std::int64_t MapGroups(unsigned char* pixels, std::int64_t count, const Cube& cube,
                                  const CubeSteps& steps) {
  alignas(32) static constexpr std::uint8_t kPixelByPixel[] = {
      0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15,
      0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
  const auto order = hn::Load(kBytes, kPixelByPixel);
  const auto alpha =
      hn::BitCast(kInts, hn::Set(hn::RebindToUnsigned<decltype(kInts)>(), 0xff000000u));
  std::int64_t at = 0;
  for (; at + kGroup <= count; at += kGroup) {
    unsigned char* const group = pixels + 4 * at;
    auto channels = Colours(cube, steps, group);
    channels = hn::Or(channels, hn::ShiftLeft<8>(Colours(cube, steps, group + 4)));
    channels = hn::Or(channels, hn::ShiftLeft<16>(Colours(cube, steps, group + 8)));
    channels = hn::Or(channels, hn::ShiftLeft<24>(Colours(cube, steps, group + 12)));
    const auto mapped = hn::TableLookupBytes(hn::BitCast(kBytes, channels), order);
    hn::StoreU(hn::IfVecThenElse(hn::BitCast(kBytes, alpha), hn::LoadU(kBytes, group), mapped),
               kBytes, group);
  }
  return at;
}

std::int64_t Groups4x4(unsigned char* pixels, std::int64_t count, const unsigned char* pairs) {
  return MapGroups(pixels, count, Pairs{pairs}, k4x4Steps);
}

std::int64_t GroupsNew(unsigned char* pixels, std::int64_t count, const unsigned char* pairs) {
  return MapGroups(pixels, count, Pairs{pairs}, kNewSteps);
}

std::int64_t Groups8x8(unsigned char* pixels, std::int64_t count, const unsigned char* cube) {
  return MapGroups(pixels, count, Picture64{cube}, k8x8Steps);
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tintwerk {

HWY_EXPORT(Groups4x4);
HWY_EXPORT(GroupsNew);
HWY_EXPORT(Groups8x8);

CubePairs::CubePairs(const unsigned char* cube) {
  unsigned char* pair = bytes;
  for (int r = 0; r + 1 < kLevels; ++r)
    for (int g = 0; g < kLevels; ++g)
      for (int b = 0; b < kLevels; ++b)
        for (int c = 0; c < 4; ++c) {
          *pair++ = cube[Cube16::Node(r, g, b) + c];
          *pair++ = cube[Cube16::Node(r + 1, g, b) + c];
        }
}

std::int64_t MapGroups4x4(unsigned char* pixels, std::int64_t count, const unsigned char* pairs) {
  return HWY_DYNAMIC_DISPATCH(Groups4x4)(pixels, count, pairs);
}

std::int64_t MapGroupsNew(unsigned char* pixels, std::int64_t count, const unsigned char* pairs) {
  return HWY_DYNAMIC_DISPATCH(GroupsNew)(pixels, count, pairs);
}

std::int64_t MapGroups8x8(unsigned char* pixels, std::int64_t count, const unsigned char* cube) {
  return HWY_DYNAMIC_DISPATCH(Groups8x8)(pixels, count, cube);
}

}  // namespace tintwerk
#endif

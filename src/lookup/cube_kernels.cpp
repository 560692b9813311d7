#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lookup/cube_kernels.cpp"
#include "lookup/cube_kernels.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// A block of 128 bits holds the channels of one pixel or of one pair of nodes. Vectors of two
// blocks hold both blues of a cell, or two pixels that lie four apart.
constexpr int kBlocks = !HWY_HAVE_SCALABLE && HWY_MAX_BYTES >= 32 ? 2 : 1;
constexpr int kLanes = 4 * kBlocks;
constexpr hn::CappedTag<std::int32_t, kLanes> kInts;
constexpr hn::CappedTag<std::int16_t, 2 * kLanes> kWords;
using Ints = hn::Vec<decltype(kInts)>;
using Words = hn::Vec<decltype(kWords)>;

/// Where the pixels of a strip lie in a cube.
constexpr int kStrip = 128;
struct Places {
  HWY_ALIGN std::int32_t cell[kStrip];      // offset of the cell in bytes
  HWY_ALIGN std::int32_t nextBlue[kStrip];  // and of the next one along blue, if it is looked at
  HWY_ALIGN std::int32_t redUpper[kStrip];  // pairs of words, see AlongRed
  HWY_ALIGN std::int32_t redLower[kStrip];
  HWY_ALIGN std::int32_t green[kStrip];
  HWY_ALIGN std::int32_t blue[kStrip];
};

/// The level below a channel value, and the weight of the level above. The uppermost level counts
/// as the end of the last cell.
template <int kLevels>
HWY_INLINE Ints Locate(Ints value, float scale, int unit, Ints& weight) {
  const hn::RebindToFloat<decltype(kInts)> floats;
  const auto at = hn::Min(hn::Mul(hn::ConvertTo(floats, value), hn::Set(floats, scale)),
                          hn::Set(floats, float{kLevels - 1}));
  const auto low = hn::Min(hn::ConvertTo(kInts, at), hn::Set(kInts, kLevels - 2));
  const auto above = hn::Sub(at, hn::ConvertTo(floats, low));
  weight = hn::ConvertTo(kInts, hn::Mul(above, hn::Set(floats, static_cast<float>(unit))));
  return low;
}

HWY_INLINE Ints WordPairs(Ints even, Ints odd) {
  return hn::BitCast(
      kInts, hn::OddEven(hn::BitCast(kWords, hn::ShiftLeft<16>(odd)), hn::BitCast(kWords, even)));
}

HWY_INLINE Ints SumOfProducts(Words a, Words b) {
  auto odd = hn::Zero(kInts);
  const auto even = hn::ReorderWidenMulAccumulate(kInts, a, b, hn::Zero(kInts), odd);
  return hn::RearrangeToOddPlusEven(even, odd);
}

// The weights of red have 20 bits, more than a word holds. With upper and lower halves u and l of
// a weight, nodes a and b, all exact:
//
//     (a (2^20 - w) + b w) >> 10  =  a (1023 - u) + b u  +  ((a (1024 - l) + b l) >> 10)
//
HWY_INLINE Ints AlongRed(Words nodes, const Places& places, int i) {
  const auto upper = hn::BitCast(kWords, hn::Set(kInts, places.redUpper[i]));
  const auto lower = hn::BitCast(kWords, hn::Set(kInts, places.redLower[i]));
  return hn::Add(SumOfProducts(nodes, upper), hn::ShiftRight<10>(SumOfProducts(nodes, lower)));
}

/// The nodes of a cell, pairs along red, at its low or high green; both blues where a vector has
/// two blocks.
struct Pairs {
  static constexpr int kLevels = 16;
  const unsigned char* bytes;

  static HWY_INLINE void Address(Ints r, Ints g, Ints b, Places& places, int i) {
    const auto cell =
        hn::Add(hn::Add(hn::ShiftLeft<11>(r), hn::ShiftLeft<7>(g)), hn::ShiftLeft<3>(b));
    hn::Store(cell, kInts, places.cell + i);
  }
  HWY_INLINE Words Nodes(const Places& places, int i, int green, int blue) const {
    const hn::Rebind<std::uint8_t, decltype(kWords)> pairs;
    return hn::PromoteTo(kWords,
                         hn::LoadU(pairs, bytes + places.cell[i] + CubePairs::kGreen * green +
                                              CubePairs::kPair * blue));
  }
};

struct Picture64 {
  static constexpr int kLevels = 64;
  const unsigned char* bytes;

  static HWY_INLINE Ints Tile(Ints b) {
    return hn::Add(hn::ShiftLeft<17>(hn::ShiftRight<3>(b)),
                   hn::ShiftLeft<8>(hn::And(b, hn::Set(kInts, 7))));
  }
  static HWY_INLINE void Address(Ints r, Ints g, Ints b, Places& places, int i) {
    const auto inTile = hn::Add(hn::ShiftLeft<11>(g), hn::ShiftLeft<2>(r));
    hn::Store(hn::Add(inTile, Tile(b)), kInts, places.cell + i);
    hn::Store(hn::Add(inTile, Tile(hn::Add(b, hn::Set(kInts, 1)))), kInts, places.nextBlue + i);
  }
  HWY_INLINE Words Nodes(const Places& places, int i, int green, int blue) const {
    const hn::Rebind<std::uint8_t, decltype(kWords)> pairs;
    const hn::Half<decltype(pairs)> half;
    alignas(16) static constexpr std::uint8_t kInterleave[] = {0, 4,  1, 5,  2,  6,  3,  7,
                                                               8, 12, 9, 13, 10, 14, 11, 15};
    const unsigned char* const at = bytes + 2048 * green;
    if constexpr (kBlocks == 2) {
      const auto nodes = hn::Combine(pairs, hn::LoadU(half, at + places.nextBlue[i]),
                                     hn::LoadU(half, at + places.cell[i]));
      return hn::PromoteTo(kWords, hn::TableLookupBytes(nodes, hn::Load(pairs, kInterleave)));
    } else {
      const auto nodes = hn::LoadU(pairs, at + (blue ? places.nextBlue : places.cell)[i]);
      return hn::PromoteTo(kWords, hn::TableLookupBytes(nodes, hn::Load(pairs, kInterleave)));
    }
  }
};

template <class Cube>
HWY_INLINE Ints AlongGreen(const Cube& cube, const Places& places, int i, int blue) {
  const auto low = AlongRed(cube.Nodes(places, i, 0, blue), places, i);
  const auto high = AlongRed(cube.Nodes(places, i, 1, blue), places, i);
  const auto weight = hn::Set(kInts, places.green[i]);
  return hn::Add(low, hn::ShiftRight<10>(hn::Mul(hn::Sub(high, low), weight)));
}

/// Pixel i of each block from pixel `first` on.
template <int i, class Cube>
HWY_INLINE Ints Colour(const Cube& cube, const Places& places, int first, Ints blueWeight) {
  Ints low, high;
  if constexpr (kBlocks == 2) {
    const auto p = AlongGreen(cube, places, first + i, 0),
               q = AlongGreen(cube, places, first + i + 4, 0);
    low = hn::ConcatLowerLower(kInts, q, p);
    high = hn::ConcatUpperUpper(kInts, q, p);
  } else {
    low = AlongGreen(cube, places, first + i, 0);
    high = AlongGreen(cube, places, first + i, 1);
  }
  const auto rise = hn::Mul(hn::Sub(high, low), hn::Broadcast<i>(blueWeight));
  return hn::ShiftRight<20>(hn::Add(hn::ShiftLeft<10>(low), rise));
}

constexpr hn::Repartition<std::uint8_t, decltype(kInts)> kBytes;

template <class Cube>
HWY_NOINLINE void Place(const unsigned char* pixels, int count, float scale, Places& places) {
  const auto byte = hn::Set(kInts, 0xff);
  for (int at = 0; at < count; at += kLanes) {
    const auto pixel = hn::BitCast(kInts, hn::LoadU(kBytes, pixels + 4 * at));
    Ints red, green, blue;
    const auto b = Locate<Cube::kLevels>(hn::And(pixel, byte), scale, kUnit, blue);
    const auto g =
        Locate<Cube::kLevels>(hn::And(hn::ShiftRight<8>(pixel), byte), scale, kUnit, green);
    const auto r =
        Locate<Cube::kLevels>(hn::And(hn::ShiftRight<16>(pixel), byte), scale, kRedUnit, red);
    Cube::Address(r, g, b, places, at);
    const auto upper = hn::ShiftRight<10>(red), lower = hn::And(red, hn::Set(kInts, 1023));
    hn::Store(WordPairs(hn::Sub(hn::Set(kInts, 1023), upper), upper), kInts, places.redUpper + at);
    hn::Store(WordPairs(hn::Sub(hn::Set(kInts, 1024), lower), lower), kInts, places.redLower + at);
    hn::Store(green, kInts, places.green + at);
    hn::Store(blue, kInts, places.blue + at);
  }
}

template <class Cube>
HWY_NOINLINE void Interpolate(unsigned char* pixels, int count, const Cube cube,
                              const Places& places) {
  const hn::Rebind<std::uint32_t, decltype(kInts)> whole;
  alignas(32) static constexpr std::uint8_t kTranspose[] = {0,  4,  8, 12, 1,  5,  9, 13, 2,  6, 10,
                                                            14, 3,  7, 11, 15, 0,  4, 8,  12, 1, 5,
                                                            9,  13, 2, 6,  10, 14, 3, 7,  11, 15};
  const auto transpose = hn::LoadU(kBytes, kTranspose);
  const auto alpha = hn::BitCast(kInts, hn::Set(whole, 0xff000000u));
  for (int at = 0; at < count; at += kLanes) {
    const auto blue = hn::Load(kInts, places.blue + at);
    auto mapped = Colour<0>(cube, places, at, blue);
    mapped = hn::Or(mapped, hn::ShiftLeft<8>(Colour<1>(cube, places, at, blue)));
    mapped = hn::Or(mapped, hn::ShiftLeft<16>(Colour<2>(cube, places, at, blue)));
    mapped = hn::Or(mapped, hn::ShiftLeft<24>(Colour<3>(cube, places, at, blue)));
    const auto colours =
        hn::BitCast(kInts, hn::TableLookupBytes(hn::BitCast(kBytes, mapped), transpose));
    const auto before = hn::BitCast(kInts, hn::LoadU(kBytes, pixels + 4 * at));
    hn::StoreU(hn::BitCast(kBytes, hn::IfVecThenElse(alpha, before, colours)), kBytes,
               pixels + 4 * at);
  }
}

template <class Cube>
void MapRun(unsigned char* pixels, std::int64_t count, const Cube& cube, float scale) {
  Places places;
  for (; count > 0; count -= kStrip, pixels += 4 * kStrip) {
    const int strip = count < kStrip ? static_cast<int>(count) : kStrip;
    Place<Cube>(pixels, strip, scale, places);
    Interpolate(pixels, strip, cube, places);
  }
}

void PairsRun(unsigned char* pixels, std::int64_t count, const unsigned char* pairs, float scale) {
  MapRun(pixels, count, Pairs{pairs}, scale);
}

void Cube64Run(unsigned char* pixels, std::int64_t count, const unsigned char* cube, float scale) {
  MapRun(pixels, count, Picture64{cube}, scale);
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tintwerk {

HWY_EXPORT(PairsRun);
HWY_EXPORT(Cube64Run);

CubePairs::CubePairs(const unsigned char* cube) {
  unsigned char* pair = bytes;
  for (int r = 0; r < 15; ++r)
    for (int g = 0; g < 16; ++g)
      for (int b = 0; b < 16; ++b, pair += kPair)
        for (int c = 0; c < 4; ++c) {
          pair[2 * c] = cube[Cube16::Node(r, g, b) + c];
          pair[2 * c + 1] = cube[Cube16::Node(r + 1, g, b) + c];
        }
}

void MapThroughPairs(unsigned char* pixels, std::int64_t count, const CubePairs& cube,
                     float scale) {
  HWY_DYNAMIC_DISPATCH(PairsRun)(pixels, count, cube.bytes, scale);
}

void MapThroughCube64(unsigned char* pixels, std::int64_t count, const unsigned char* cube,
                      float scale) {
  HWY_DYNAMIC_DISPATCH(Cube64Run)(pixels, count, cube, scale);
}

}  // namespace tintwerk
#endif

// Selective colour: of whole images by tables, and of single pixels.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "portrait/selective_color.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#ifndef TINTWERK_SELECTIVE_COLOR_TYPES
#define TINTWERK_SELECTIVE_COLOR_TYPES
namespace tintwerk {
namespace {

constexpr int kFamilies = 9;

// The shifts of a pass as fractions of 2^15, a column for each family that has any: eight at once
// fit a vector, the ninth takes another.
struct Quotients {
  static constexpr int kColumns = 8;

  Quotients() { std::fill_n(family, 2 * kColumns, kFamilies); }

  // Sets a column of a channel from the map's pairs for it. A shift of 0 leaves it at 0.
  void Add(int shift, const unsigned char* pair, std::size_t pitch, int column, int channel) {
    if (shift == 0) return;
    signs[column / kColumns][channel][column % kColumns] = shift > 0 ? 1 : -1;
    for (int i = 0; i < 256; ++i, pair += pitch) {
      const int numerator = shift > 0 ? pair[0] - 128 : 128 - pair[0];
      sizes[column / kColumns][channel][i][column % kColumns] =
          static_cast<std::uint16_t>(((numerator << 15) + pair[1] - 1) / pair[1]);
    }
  }

  int count = 0;                                        // of columns in use
  unsigned char family[2 * kColumns];                   // of a column in use; of another kFamilies
  alignas(16) std::int16_t signs[2][3][kColumns] = {};  // [part][channel]
  alignas(16) std::uint16_t sizes[2][3][256][kColumns] = {};  // [part][channel][value]
};

}  // namespace
}  // namespace tintwerk
#endif

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_EMU128

std::size_t ExecuteBlocks(unsigned char*, std::size_t, const Quotients&) {
  return 0;  // some compilers get high halves of products wrong here
}

#else

constexpr int kBlock = 16;  // pixels
constexpr hn::CappedTag<std::uint8_t, 16> kBytes;
constexpr hn::CappedTag<std::uint16_t, 8> kWords;
constexpr hn::CappedTag<std::int16_t, 8> kSigned;
constexpr hn::CappedTag<std::int32_t, 4> kInts;
constexpr hn::CappedTag<std::uint8_t, 4> kPixel;
using Bytes = hn::Vec<decltype(kBytes)>;
using Words = hn::Vec<decltype(kWords)>;
using Ints = hn::Vec<decltype(kInts)>;

// How strongly 16 pixels belong to each family. Subtractions stop at 0, which keeps those out that
// do not belong.
HWY_INLINE void Weigh(const unsigned char* pixels, Bytes weights[kFamilies]) {
  Bytes b, g, r, alpha;
  hn::LoadInterleaved4(kBytes, pixels, b, g, r, alpha);
  const auto above = [](Bytes x, Bytes y) HWY_ATTR { return hn::SaturatedSub(x, y); };
  weights[0] = above(r, hn::Max(g, b));
  weights[1] = above(hn::Min(g, r), b);
  weights[2] = above(g, hn::Max(r, b));
  weights[3] = above(hn::Min(g, b), r);
  weights[4] = above(b, hn::Max(g, r));
  weights[5] = above(hn::Min(r, b), g);

  const auto max = hn::Max(hn::Max(r, g), b), min = hn::Min(hn::Min(r, g), b);
  const auto middle = hn::Set(kBytes, 128), most = hn::Set(kBytes, 255);
  const auto fromMiddle = [=](Bytes x)
                              HWY_ATTR { return hn::Or(above(x, middle), above(middle, x)); };
  const auto overMiddle = above(min, middle);
  weights[6] = hn::IfThenZeroElse(hn::Eq(overMiddle, hn::Zero(kBytes)),
                                  hn::Add(hn::Add(overMiddle, overMiddle), hn::Set(kBytes, 1)));
  weights[7] = hn::IfThenZeroElse(hn::Eq(min, most),
                                  above(most, hn::SaturatedAdd(fromMiddle(max), fromMiddle(min))));
  weights[8] = above(most, hn::SaturatedAdd(max, max));
}

// From a vector for each column to one for each two pixels.
HWY_INLINE void Transpose(const Bytes columns[8], Bytes pixels[8]) {
  const hn::Repartition<std::uint16_t, decltype(kBytes)> pairs;
  const hn::Repartition<std::uint32_t, decltype(kBytes)> quads;
  for (int half = 0; half < 2; ++half) {
    const auto zip = [=](auto a, auto b) HWY_ATTR {
      const hn::DFromV<decltype(a)> d;
      return half ? hn::InterleaveUpper(d, a, b) : hn::InterleaveLower(d, a, b);
    };
    Bytes two[4];
    for (int i = 0; i < 4; ++i) two[i] = zip(columns[2 * i], columns[2 * i + 1]);
    const auto a = hn::BitCast(pairs, two[0]), b = hn::BitCast(pairs, two[1]);
    const auto c = hn::BitCast(pairs, two[2]), d = hn::BitCast(pairs, two[3]);
    const auto ab0 = hn::BitCast(quads, hn::InterleaveLower(pairs, a, b));
    const auto ab1 = hn::BitCast(quads, hn::InterleaveUpper(pairs, a, b));
    const auto cd0 = hn::BitCast(quads, hn::InterleaveLower(pairs, c, d));
    const auto cd1 = hn::BitCast(quads, hn::InterleaveUpper(pairs, c, d));
    Bytes* const out = pixels + 4 * half;
    out[0] = hn::BitCast(kBytes, hn::InterleaveLower(quads, ab0, cd0));
    out[1] = hn::BitCast(kBytes, hn::InterleaveUpper(quads, ab0, cd0));
    out[2] = hn::BitCast(kBytes, hn::InterleaveLower(quads, ab1, cd1));
    out[3] = hn::BitCast(kBytes, hn::InterleaveUpper(quads, ab1, cd1));
  }
}

// The sum of a channel's terms, in parts that lie in the four lanes. A size is rounded up by less
// than 2^-15, which over a weight of 255 stays below the 1/100 that a term lies from the next
// integer at least: the products are truncated as the quotients would be.
HWY_INLINE Ints SumTerms(Words weights, const std::uint16_t* sizes, const std::int16_t* signs) {
  const auto terms = hn::BitCast(kSigned, hn::MulHigh(weights, hn::Load(kWords, sizes)));
  auto odd = hn::Zero(kInts);
  const auto even =
      hn::ReorderWidenMulAccumulate(kInts, terms, hn::Load(kSigned, signs), hn::Zero(kInts), odd);
  return hn::Add(even, odd);
}

// [sum of b, sum of g, sum of r, 0]
HWY_INLINE Ints SumLanes(Ints b, Ints g, Ints r) {
  const hn::Repartition<std::int64_t, decltype(kInts)> pairs;
  const auto zero = hn::Zero(kInts);
  const auto bg = hn::BitCast(
      pairs, hn::Add(hn::InterleaveLower(kInts, b, g), hn::InterleaveUpper(kInts, b, g)));
  const auto r0 = hn::BitCast(
      pairs, hn::Add(hn::InterleaveLower(kInts, r, zero), hn::InterleaveUpper(kInts, r, zero)));
  return hn::Add(hn::BitCast(kInts, hn::InterleaveLower(pairs, bg, r0)),
                 hn::BitCast(kInts, hn::InterleaveUpper(pairs, bg, r0)));
}

template <int kParts>
HWY_INLINE void Blocks(unsigned char* pixels, std::size_t count, const Quotients& quotients) {
  constexpr int kColumns = Quotients::kColumns;
  for (std::size_t at = 0; at < count; at += kBlock) {
    unsigned char* const block = pixels + 4 * at;
    Bytes all[kFamilies + 1], columns[kColumns * kParts], weights[kParts][kBlock / 2];
    Weigh(block, all);
    all[kFamilies] = hn::Zero(kBytes);
    for (int i = 0; i < kColumns * kParts; ++i) columns[i] = all[quotients.family[i]];
    for (int part = 0; part < kParts; ++part) Transpose(columns + kColumns * part, weights[part]);
    for (int i = 0; i < kBlock; ++i) {
      unsigned char* const pixel = block + 4 * i;
      Ints sums[3] = {hn::Zero(kInts), hn::Zero(kInts), hn::Zero(kInts)};
      for (int part = 0; part < kParts; ++part) {
        const auto two = weights[part][i / 2];
        const auto own =
            hn::BitCast(kWords, i % 2 ? hn::InterleaveUpper(kBytes, two, hn::Zero(kBytes))
                                      : hn::InterleaveLower(kBytes, two, hn::Zero(kBytes)));
        const auto doubled = hn::Add(own, own);  // high halves of products are of 2^16
        for (int c = 0; c < 3; ++c)
          sums[c] = hn::Add(sums[c], SumTerms(doubled, quotients.sizes[part][c][pixel[c]],
                                              quotients.signs[part][c]));
      }
      const auto before = hn::PromoteTo(kInts, hn::LoadU(kPixel, pixel));
      const auto after = hn::Sub(before, SumLanes(sums[0], sums[1], sums[2]));
      hn::StoreU(hn::DemoteTo(kPixel, after), kPixel, pixel);
    }
  }
}

std::size_t ExecuteBlocks(unsigned char* pixels, std::size_t count, const Quotients& quotients) {
  const std::size_t whole = count / kBlock * kBlock;
  if (quotients.count <= Quotients::kColumns)
    Blocks<1>(pixels, whole, quotients);
  else
    Blocks<2>(pixels, whole, quotients);
  return whole;
}

#endif

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <array>
#include <cstdlib>

#include "frame/material.h"
#include "frame/parallel.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/selective_color.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

HWY_EXPORT(ExecuteBlocks);

using Family = CSelectiveColor::eColorType;

// Bounds of a shift by the value of its channel.
constexpr std::array<int, 256> kSelectiveCapHigh = [] {
  std::array<int, 256> cap{};
  for (int i = 0; i < 256; ++i) cap[i] = i <= 128 ? 100 : 100 * i / (256 - i);
  return cap;
}();
constexpr unsigned char kSelectiveCapLow[129] = {
    0,  1,  1,  1,  2,  2,  2,  3,  3,  4,  4,  4,  5,  5,  6,  6,  7,  7,  8,  8,  8,  9,
    9,  10, 10, 11, 11, 12, 12, 13, 13, 14, 14, 15, 16, 16, 17, 17, 18, 18, 19, 19, 20, 21,
    21, 22, 22, 23, 23, 24, 25, 25, 26, 27, 27, 28, 28, 29, 30, 30, 31, 32, 32, 33, 34, 34,
    35, 36, 36, 37, 38, 38, 39, 40, 41, 41, 42, 43, 44, 44, 45, 46, 47, 48, 49, 49, 50, 51,
    52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62, 63, 64, 65, 66, 67, 69, 70, 71, 72, 73, 75,
    76, 77, 78, 80, 81, 82, 84, 85, 86, 88, 89, 90, 92, 93, 94, 96, 97, 99, 100};

// Products of 32 bits, which wrap round where settings are beyond all sense.
int Product(std::int64_t a, std::int64_t b) {
  return static_cast<int>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

// A shift of black on top of another: two of one sign add up as coverages do, of two opposite ones
// the positive one acts on what the negative one leaves.
int FoldBlack(int value, int black) {
  if (black == 0) return value;
  if (value == 0) return black;
  if (value > 0 && black > 0)
    return Truncate(Product(value, black) * 0.01 + (static_cast<double>(value) + black));
  if (value < 0 && black < 0) {
    const std::int64_t least = std::min(-std::int64_t{value}, -std::int64_t{black});
    const std::int64_t most = std::max(-std::int64_t{value}, -std::int64_t{black});
    return Truncate(-(Product(least, 100 - most) * 0.01 + static_cast<double>(most)));
  }
  const int positive = std::max(value, black), negative = std::min(value, black);
  return Truncate(Product(positive, std::int64_t{negative} + 100) * 0.01 + negative);
}

// Whether a pixel is of a family, but for the greys, of which each form leaves others out.
bool Belongs(Family family, const unsigned char* pixel) {
  const int b = pixel[0], g = pixel[1], r = pixel[2];
  switch (family) {
    case Family::Red:
      return r > std::max(g, b);
    case Family::Yellow:
      return b < std::min(g, r);
    case Family::Green:
      return g > std::max(r, b);
    case Family::Cyan:
      return r < std::min(g, b);
    case Family::Blue:
      return b > std::max(g, r);
    case Family::Magenta:
      return g < std::min(r, b);
    case Family::White:
      return std::min({r, g, b}) > 128;
    case Family::Black:
      return std::max({r, g, b}) < 128;
    case Family::Gray:
      break;
  }
  return true;
}

int Weight(Family family, int min, int mid, int max) {
  switch (family) {
    case Family::Red:
    case Family::Green:
    case Family::Blue:
      return max - mid;
    case Family::Yellow:
    case Family::Cyan:
    case Family::Magenta:
      return mid - min;
    case Family::White:
      return 2 * min - 255;
    case Family::Gray:
      return std::abs(255 - std::abs(max - 128) - std::abs(min - 128));
    case Family::Black:
      return 255 - 2 * max;
  }
  return 0;
}

// What a folded shift takes from a channel of this value, rounded.
int Contribution(int value, int weight, int shift) {
  const int bounded = std::min(shift, kSelectiveCapHigh[value]);
  const int base = (bounded >= 1 && value <= 128 ? value : 256 - value) * weight;
  const int product = base * bounded;
  if (bounded < 1 || value >= 128) return (product + 12800) / 25600;
  const int divisor = std::max<int>(bounded, kSelectiveCapLow[value]) * 256;
  return (divisor / 2 + product) / divisor;
}

void AddFamily(Family family, const unsigned char* pixel, int min, int mid, int max, int* delta,
               int cyan, int magenta, int yellow) {
  if (!pixel || !delta || !Belongs(family, pixel)) return;
  const int weight = Weight(family, min, mid, max);
  if (cyan != 0) delta[2] += Contribution(pixel[2], weight, cyan);
  if (magenta != 0) delta[1] += Contribution(pixel[1], weight, magenta);
  if (yellow != 0) delta[0] += Contribution(pixel[0], weight, yellow);
}

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

int CSelectiveColor::MakeParam(int value, int black) {
  return FoldBlack(value, black);
}

void CSelectiveColor::SetSelectiveColor(eColorType type, int cyan, int magenta, int yellow,
                                        int black) {
  if (type < Red || type > Black) return;
  settings_[type][0] = MakeParam(cyan, black);
  settings_[type][1] = MakeParam(magenta, black);
  settings_[type][2] = MakeParam(yellow, black);
}

void CSelectiveColor::InitMap(int value, MapRow* map, int column) {
  if (value == 0) return;
  const int shift = std::min(value, 100);
  for (int i = 0; i < 256; ++i) {
    const bool rises = i < 128 && shift > 0;
    const int numerator = Product(rises ? i : 255 - i, shift) >> 8;
    const int denominator = rises ? std::max<int>(kSelectiveCapLow[i], shift) : 100;
    map[i][column] = static_cast<unsigned char>(numerator + 128);
    map[i][column + 1] = static_cast<unsigned char>(denominator);
  }
}

void CSelectiveColor::Update(const unsigned char* pixel, eColorType type, int weight, int& red,
                             int& green, int& blue, const MapRow* map) const {
  int* const sums[] = {&red, &green, &blue};
  for (int ink = 0; ink < 3; ++ink) {
    if (settings_[type][ink] == 0) continue;
    const unsigned char* const pair = map[pixel[2 - ink]] + 6 * type + 2 * ink;
    *sums[ink] += (pair[0] - 128) * weight / pair[1];
  }
}

void CSelectiveColor::Execute(unsigned char* pixels, int width, int height) const {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return;
  MapRow map[256];
  Quotients quotients;
  bool inRange = true;
  for (int t = 0; t < kFamilies; ++t) {
    const int* const shifts = settings_[t];
    if (std::all_of(shifts, shifts + 3, [](int shift) { return shift == 0; })) continue;
    const int column = quotients.count++;
    quotients.family[column] = t;
    for (int ink = 0; ink < 3; ++ink) {
      InitMap(shifts[ink], map, 6 * t + 2 * ink);
      quotients.Add(shifts[ink], map[0] + 6 * t + 2 * ink, sizeof(MapRow), column, 2 - ink);
      inRange = inRange && shifts[ink] >= -100;
    }
  }
  if (quotients.count == 0) return;

  const auto workPixel = [&](unsigned char* pixel) {
    const int b = pixel[0], g = pixel[1], r = pixel[2];
    const int max = std::max({r, g, b}), min = std::min({r, g, b}), mid = r + g + b - max - min;
    int red = 0, green = 0, blue = 0;
    for (int i = 0; i < quotients.count; ++i) {
      const auto type = static_cast<eColorType>(quotients.family[i]);
      const bool isGreyEnd = type == Gray && (max == 0 || min == 255);
      if (Belongs(type, pixel) && !isGreyEnd)
        Update(pixel, type, Weight(type, min, mid, max), red, green, blue, map);
    }
    pixel[0] = static_cast<unsigned char>(std::clamp(b - blue, 0, 255));
    pixel[1] = static_cast<unsigned char>(std::clamp(g - green, 0, 255));
    pixel[2] = static_cast<unsigned char>(std::clamp(r - red, 0, 255));
  };
  constexpr std::int64_t kRun = 4096;  // pixels
  ParallelFor((*count + kRun - 1) / kRun, [&, pixels](std::int64_t run) {
    const std::int64_t end = std::min<std::int64_t>(kRun * (run + 1), *count);
    std::int64_t at = kRun * run;
    if (inRange) at += HWY_DYNAMIC_DISPATCH(ExecuteBlocks)(pixels + 4 * at, end - at, quotients);
    for (; at < end; ++at) workPixel(pixels + 4 * at);
  });
}

void SFDSP::__CalcSelectiveValue(int& value, int black) {
  value = FoldBlack(value, black);
}

void SFDSP::ZVSelectiveColorInit(int& cyan, int& magenta, int& yellow, int black) {
  __CalcSelectiveValue(cyan, black);
  __CalcSelectiveValue(magenta, black);
  __CalcSelectiveValue(yellow, black);
}

#define TINTWERK_FAMILY(owner, family)                                                        \
  void owner::ZVSelectiveColor##family(const unsigned char* pixel, int min, int mid, int max, \
                                       int* delta, int cyan, int magenta, int yellow) {       \
    AddFamily(Family::family, pixel, min, mid, max, delta, cyan, magenta, yellow);            \
  }
TINTWERK_FAMILY(SFDSP, Red)
TINTWERK_FAMILY(SFDSP, Yellow)
TINTWERK_FAMILY(SFDSP, Green)
TINTWERK_FAMILY(SFDSP, Cyan)
TINTWERK_FAMILY(SFDSP, Blue)
TINTWERK_FAMILY(SFDSP, Magenta)
TINTWERK_FAMILY(SFDSP, White)
TINTWERK_FAMILY(SFDSP, Black)
TINTWERK_FAMILY(CPixelProcess, Red)
TINTWERK_FAMILY(CPixelProcess, Yellow)
TINTWERK_FAMILY(CPixelProcess, White)
#undef TINTWERK_FAMILY

void SFDSP::ZVSelectiveColorGray(const unsigned char* pixel, int min, int mid, int max, int* delta,
                                 int cyan, int magenta, int yellow) {
  const auto isEnd = [](unsigned char value) { return value == 0 || value == 255; };
  if (pixel && std::none_of(pixel, pixel + 3, isEnd))
    AddFamily(Family::Gray, pixel, min, mid, max, delta, cyan, magenta, yellow);
}

void CPixelProcess::ZVSelectiveColorGray(const unsigned char* pixel, int min, int mid, int max,
                                         int* delta, int cyan, int magenta, int yellow) {
  SFDSP::ZVSelectiveColorGray(pixel, min, mid, max, delta, cyan, magenta, yellow);
}
#endif

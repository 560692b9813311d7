#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/blend_kernels.cpp"
#include "pixel/blend_kernels.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// 16 bytes a group; every vector here holds whole pixels and divides a group evenly.

void ScreenGroups(unsigned char* base, const unsigned char* source, std::int64_t groups) {
  const hn::CappedTag<std::uint16_t, 16> words;
  const hn::Rebind<std::uint8_t, decltype(words)> bytes;
  const hn::RebindToSigned<decltype(words)> signedWords;
  const hn::Repartition<std::uint64_t, decltype(words)> pixels;
  const auto alpha = hn::BitCast(words, hn::Set(pixels, 0xFFFF000000000000u));
  const auto half = hn::Set(words, 128);
  for (std::int64_t at = 0; at < 16 * groups; at += hn::Lanes(words)) {
    const auto a = hn::PromoteTo(words, hn::LoadU(bytes, base + at));
    const auto b = hn::PromoteTo(words, hn::LoadU(bytes, source + at));
    // a x b / 255 to the nearest, in 16 bits. It never lies halfway between two integers, so the
    // single-precision quotient of the definition rounds to the same.
    const auto p = hn::Add(hn::Mul(a, b), half);
    const auto product = hn::ShiftRight<8>(hn::Add(p, hn::ShiftRight<8>(p)));
    const auto screen = hn::Sub(hn::Add(a, b), product);
    const auto result = hn::IfVecThenElse(alpha, a, screen);
    hn::StoreU(hn::DemoteTo(bytes, hn::BitCast(signedWords, result)), bytes, base + at);
  }
}

// A kernel in lanes of single precision: unsigned integers of which the low 8 bits count =
// kernel(a, b).
template <class Kernel>
HWY_INLINE void ForLanes(unsigned char* base, const unsigned char* source, std::int64_t groups,
                         const Kernel& kernel) {
  const hn::CappedTag<float, 8> lanes;
  const hn::Rebind<std::int32_t, decltype(lanes)> integers;
  const hn::Rebind<std::uint32_t, decltype(lanes)> words;
  const hn::Rebind<std::uint8_t, decltype(lanes)> bytes;
  constexpr std::uint32_t kAlpha[] = {0, 0, 0, 0xFF, 0, 0, 0, 0xFF};
  const auto alpha = hn::LoadU(words, kAlpha);
  for (std::int64_t at = 0; at < 16 * groups; at += hn::Lanes(lanes)) {
    const auto a = hn::PromoteTo(integers, hn::LoadU(bytes, base + at));
    const auto b = hn::PromoteTo(integers, hn::LoadU(bytes, source + at));
    const auto blended = kernel(hn::ConvertTo(lanes, a), hn::ConvertTo(lanes, b));
    const auto low = hn::And(blended, hn::Set(words, 0xFF));
    hn::StoreU(hn::U8FromU32(hn::IfVecThenElse(alpha, hn::BitCast(words, a), low)), bytes,
               base + at);
  }
}

struct AlphaTrunc {
  template <class Lanes>
  HWY_INLINE auto operator()(Lanes a, Lanes b) const {
    const hn::DFromV<Lanes> tag;
    const auto p = hn::Div(hn::Broadcast<3>(b), hn::Set(tag, 255.0f));
    const auto mix = hn::Add(hn::Mul(b, p), hn::Mul(a, hn::Sub(hn::Set(tag, 1.0f), p)));
    return hn::BitCast(hn::RebindToUnsigned<decltype(tag)>(),
                       hn::ConvertTo(hn::RebindToSigned<decltype(tag)>(), mix));
  }
};

// The soft light of a over b as one fraction, (2b a(255 - a) + 15a 17a) / 65025. The numerator is
// exact in single precision; the quotient as a product, rounded at 256, gives what the quotients of
// the definition give at every pair of bytes. Added to 2^23, where the steps of single precision
// are whole numbers, it is rounded, ties to even, and its byte lies in the low bits.
template <class Lanes>
HWY_INLINE auto SoftLightQuotient(Lanes numerator) {
  const hn::DFromV<Lanes> tag;
  const auto at256 = hn::Add(hn::Mul(numerator, hn::Set(tag, 1.0f / 65025)), hn::Set(tag, 256.0f));
  return hn::BitCast(hn::RebindToUnsigned<decltype(tag)>(),
                     hn::Add(at256, hn::Set(tag, 8388608.0f)));
}

#if HWY_TARGET == HWY_EMU128 || !HWY_ARCH_X86

struct SoftLight {
  template <class Lanes>
  HWY_INLINE auto operator()(Lanes a, Lanes b) const {
    const hn::DFromV<Lanes> tag;
    const auto full = hn::Set(tag, 255.0f);
    return SoftLightQuotient(hn::Add(hn::Mul(hn::Add(b, b), hn::Mul(a, hn::Sub(full, a))),
                                     hn::Mul(hn::Mul(a, a), full)));
  }
};

void SoftLightGroups(unsigned char* base, const unsigned char* source, std::int64_t groups) {
  ForLanes(base, source, groups, SoftLight());
}

#else

// A vector of pixels; even and odd bytes apart, each widened where it lies. One multiply-add of
// pairs makes a numerator; it pairs neighbours on this architecture only.
template <class Bytes>
HWY_INLINE void SoftLightVector(Bytes bytes, unsigned char* base, const unsigned char* source) {
  const hn::RepartitionToWide<Bytes> words;
  const hn::RebindToSigned<decltype(words)> pairs;
  const hn::RepartitionToWide<decltype(pairs)> wide;
  const hn::RebindToFloat<decltype(wide)> lanes;
  const auto quotient = [=](auto values, auto weights) HWY_ATTR {
    auto none = hn::Zero(wide);
    const auto numerator = hn::ReorderWidenMulAccumulate(wide, hn::BitCast(pairs, values),
                                                         hn::BitCast(pairs, weights), none, none);
    const auto bits = hn::BitCast(wide, SoftLightQuotient(hn::ConvertTo(lanes, numerator)));
    return hn::And(bits, hn::Set(wide, 0xFF));
  };
  const auto blend = [=](auto a, auto b) HWY_ATTR {
    const auto a16 = hn::ShiftLeft<4>(a);
    const auto a15 = hn::Sub(a16, a), a17 = hn::Add(a16, a);
    const auto b2 = hn::Add(b, b);
    const auto hill = hn::Mul(a, hn::Sub(hn::Set(words, 255), a));
    return hn::BitCast(
        words,
        hn::ReorderDemote2To(
            pairs, quotient(hn::InterleaveLower(b2, a15), hn::InterleaveLower(hill, a17)),
            quotient(hn::InterleaveUpper(words, b2, a15), hn::InterleaveUpper(words, hill, a17))));
  };
  const auto a = hn::BitCast(words, hn::LoadU(bytes, base));
  const auto b = hn::BitCast(words, hn::LoadU(bytes, source));
  const auto even = hn::Set(words, 0xFF);
  const auto blended = hn::Or(blend(hn::And(a, even), hn::And(b, even)),
                              hn::ShiftLeft<8>(blend(hn::ShiftRight<8>(a), hn::ShiftRight<8>(b))));
  const auto alpha =
      hn::BitCast(words, hn::Set(hn::Repartition<std::uint32_t, Bytes>(), 0xFF000000u));
  hn::StoreU(hn::BitCast(bytes, hn::IfVecThenElse(alpha, a, blended)), bytes, base);
}

void SoftLightGroups(unsigned char* base, const unsigned char* source, std::int64_t groups) {
  const hn::CappedTag<std::uint8_t, 32> bytes;
  const hn::CappedTag<std::uint8_t, 16> group;
  std::int64_t at = 0;
  for (const auto step = static_cast<std::int64_t>(hn::Lanes(bytes)); at + step <= 16 * groups;
       at += step)
    SoftLightVector(bytes, base + at, source + at);
  for (; at < 16 * groups; at += 16) SoftLightVector(group, base + at, source + at);
}

#endif

void AlphaTruncGroups(unsigned char* base, const unsigned char* source, std::int64_t groups) {
  ForLanes(base, source, groups, AlphaTrunc());
}

// BlendColorHSB of a pixel a lane: RgbToHsb and HsbToRgb with their branches turned into choices.
template <class Lanes>
HWY_INLINE void ColorHsbVector(Lanes lanes, unsigned char* base, const unsigned char* source,
                               float opacity) {
  const hn::Rebind<std::int32_t, Lanes> integers;
  const hn::Repartition<std::uint8_t, decltype(integers)> bytes;
  const auto real = [=](float value) HWY_ATTR { return hn::Set(lanes, value); };
  const auto channel = [=](auto bgra, int shift) HWY_ATTR {
    return hn::ConvertTo(lanes, hn::And(hn::ShiftRightSame(bgra, shift), hn::Set(integers, 255)));
  };
  const auto whole = [=](auto value)
                         HWY_ATTR { return hn::ConvertTo(lanes, hn::ConvertTo(integers, value)); };
  const auto under = hn::BitCast(integers, hn::LoadU(bytes, base));
  const auto over = hn::BitCast(integers, hn::LoadU(bytes, source));

  const auto b = channel(over, 0), g = channel(over, 8), r = channel(over, 16);
  const auto max = hn::Max(hn::Max(r, g), b), min = hn::Min(hn::Min(r, g), b);
  const auto isColour = hn::Gt(max, min);
  const auto spread = hn::Max(hn::Sub(max, min), real(1));  // so that greys divide by something
  const auto saturation = hn::IfThenElseZero(isColour, hn::Div(spread, max));
  const auto rc = hn::Div(hn::Sub(max, r), spread), gc = hn::Div(hn::Sub(max, g), spread);
  const auto bc = hn::Div(hn::Sub(max, b), spread);
  const auto isBlue = hn::Eq(b, max), isGreen = hn::Eq(g, max);
  const auto ahead = hn::IfThenElse(isBlue, gc, hn::IfThenElse(isGreen, rc, bc));
  const auto behind = hn::IfThenElse(isBlue, rc, hn::IfThenElse(isGreen, bc, gc));
  const auto sextant = hn::IfThenElse(isBlue, real(4), hn::IfThenElse(isGreen, real(2), real(6)));
  auto hue = hn::Mul(hn::Sub(hn::Add(ahead, sextant), behind), real(60));
  hue = hn::IfThenElse(hn::Gt(hue, real(360)), hn::Sub(hue, real(360)), hue);

  const auto brightest = hn::Max(hn::Max(channel(under, 16), channel(under, 8)), channel(under, 0));
  const auto high = whole(hn::Mul(hn::Div(brightest, real(255)), real(255)));
  const auto low = whole(hn::Sub(high, hn::Mul(high, saturation)));
  const auto at60 = hn::Gt(hue, real(60)), at120 = hn::Gt(hue, real(120));
  const auto at180 = hn::Gt(hue, real(180)), at240 = hn::Gt(hue, real(240));
  const auto at300 = hn::Gt(hue, real(300));
  const auto choose = [=](auto to60, auto to120, auto to180, auto to240, auto to300,
                          auto beyond) HWY_ATTR {
    const auto lower = hn::IfThenElse(at60, to120, to60);
    const auto middle = hn::IfThenElse(at180, to240, to180);
    const auto upper = hn::IfThenElse(at300, beyond, to300);
    return hn::IfThenElse(at240, upper, hn::IfThenElse(at120, middle, lower));
  };
  const auto from = [=](float degrees) HWY_ATTR { return hn::Sub(hue, real(degrees)); };
  const auto to = [=](float degrees) HWY_ATTR { return hn::Sub(real(degrees), hue); };
  const auto slope =
      hn::Mul(choose(hue, to(120), from(120), to(240), from(240), to(360)), hn::Sub(high, low));
  const auto sixtieth = hn::Div(slope, real(60));
  // Beyond 300 degrees the definition divides in double precision, which never rounds up to a whole
  // number. Single precision may, by one.
  auto floor = whole(sixtieth);
  floor = hn::IfThenElse(hn::Gt(hn::Mul(floor, real(60)), slope), hn::Sub(floor, real(1)), floor);
  const auto mid = whole(hn::Add(hn::IfThenElse(at300, floor, sixtieth), low));

  const auto mixed = [=](auto colour, int shift) HWY_ATTR {
    const auto shown = hn::IfThenElse(isColour, colour, high);
    const auto sum =
        hn::Add(hn::Mul(channel(under, shift), real(1 - opacity)), hn::Mul(shown, real(opacity)));
    const auto number = hn::ConvertTo(integers, hn::Add(sum, real(0.5f)));
    return hn::ShiftLeftSame(hn::And(number, hn::Set(integers, 255)), shift);
  };
  const auto blue = mixed(choose(low, low, mid, high, high, mid), 0);
  const auto green = mixed(choose(mid, high, high, mid, low, low), 8);
  const auto red = mixed(choose(high, mid, low, low, mid, high), 16);
  const auto alpha = hn::AndNot(hn::Set(integers, 0xFFFFFF), under);
  hn::StoreU(hn::BitCast(bytes, hn::Or(hn::Or(blue, green), hn::Or(red, alpha))), bytes, base);
}

void ColorHsb(unsigned char* base, const unsigned char* source, std::int64_t count, float opacity) {
  const hn::ScalableTag<float> lanes;
  std::int64_t at = 0;
  for (const auto step = static_cast<std::int64_t>(hn::Lanes(lanes)); at + step <= count;
       at += step)
    ColorHsbVector(lanes, base + 4 * at, source + 4 * at, opacity);
  for (; at < count; ++at)
    ColorHsbVector(hn::CappedTag<float, 1>(), base + 4 * at, source + 4 * at, opacity);
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "pixel/blend.h"

namespace tintwerk {

HWY_EXPORT(ScreenGroups);
HWY_EXPORT(SoftLightGroups);
HWY_EXPORT(AlphaTruncGroups);
HWY_EXPORT(ColorHsb);

void BlendColorHSB(unsigned char* base, const unsigned char* source, std::int64_t count,
                   float opacity) {
  HWY_DYNAMIC_DISPATCH(ColorHsb)(base, source, count, opacity);
}

void KernelScreen4(unsigned char* base, const unsigned char* source, std::int64_t groups) {
  HWY_DYNAMIC_DISPATCH(ScreenGroups)(base, source, groups);
}

void KernelSoftLight4(unsigned char* base, const unsigned char* source, std::int64_t groups) {
  HWY_DYNAMIC_DISPATCH(SoftLightGroups)(base, source, groups);
}

void KernelAlphaTrunc4(unsigned char* base, const unsigned char* source, std::int64_t groups) {
  HWY_DYNAMIC_DISPATCH(AlphaTruncGroups)(base, source, groups);
}

}  // namespace tintwerk
#endif

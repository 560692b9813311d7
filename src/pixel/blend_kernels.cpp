#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/blend_kernels.cpp"
#include "pixel/blend_kernels.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// 1 / 255, two and one steps of single precision below. Products with these two give what the
// quotients of the soft light give at every pair of bytes, once rounded; the nearest value of 1 /
// 255 misses one pair.
constexpr float kPerByteForProduct = 0x1.0100fep-8f;
constexpr float kPerByteForSum = 0x1.0101p-8f;

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

struct SoftLight {
  template <class Lanes>
  HWY_INLINE auto operator()(Lanes a, Lanes b) const {
    const hn::DFromV<Lanes> tag;
    const auto m = hn::Mul(hn::Mul(b, a), hn::Set(tag, kPerByteForProduct));
    const auto t =
        hn::Mul(hn::Mul(hn::Sub(hn::Add(b, a), hn::Add(m, m)), a), hn::Set(tag, kPerByteForSum));
    // At 2^23 the steps of single precision are whole numbers: the addition rounds, ties to even,
    // and leaves the integer in the low bits.
    return hn::BitCast(hn::RebindToUnsigned<decltype(tag)>(),
                       hn::Add(hn::Add(t, m), hn::Set(tag, 8388608.0f)));
  }
};

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

void SoftLightGroups(unsigned char* base, const unsigned char* source, std::int64_t groups) {
  ForLanes(base, source, groups, SoftLight());
}

void AlphaTruncGroups(unsigned char* base, const unsigned char* source, std::int64_t groups) {
  ForLanes(base, source, groups, AlphaTrunc());
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tintwerk {

HWY_EXPORT(ScreenGroups);
HWY_EXPORT(SoftLightGroups);
HWY_EXPORT(AlphaTruncGroups);

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

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

// A kernel in lanes of single precision: integers = kernel(a, b).
template <class Kernel>
HWY_INLINE void ForLanes(unsigned char* base, const unsigned char* source, std::int64_t groups,
                         const Kernel& kernel) {
  const hn::CappedTag<float, 8> lanes;
  const hn::Rebind<std::int32_t, decltype(lanes)> integers;
  const hn::Rebind<std::uint8_t, decltype(lanes)> bytes;
  constexpr std::int32_t kAlpha[] = {0, 0, 0, -1, 0, 0, 0, -1};
  const auto alpha = hn::LoadU(integers, kAlpha);
  for (std::int64_t at = 0; at < 16 * groups; at += hn::Lanes(lanes)) {
    const auto a = hn::PromoteTo(integers, hn::LoadU(bytes, base + at));
    const auto b = hn::PromoteTo(integers, hn::LoadU(bytes, source + at));
    const auto blended = kernel(hn::ConvertTo(lanes, a), hn::ConvertTo(lanes, b));
    hn::StoreU(hn::DemoteTo(bytes, hn::IfVecThenElse(alpha, a, blended)), bytes, base + at);
  }
}

struct SoftLight {
  template <class Lanes>
  HWY_INLINE auto operator()(Lanes a, Lanes b) const {
    const hn::DFromV<Lanes> tag;
    const auto m = hn::Mul(hn::Mul(b, a), hn::Set(tag, kPerByteForProduct));
    const auto t =
        hn::Mul(hn::Mul(hn::Sub(hn::Add(b, a), hn::Add(m, m)), a), hn::Set(tag, kPerByteForSum));
    return hn::NearestInt(hn::Add(t, m));
  }
};

struct AlphaTrunc {
  template <class Lanes>
  HWY_INLINE auto operator()(Lanes a, Lanes b) const {
    const hn::DFromV<Lanes> tag;
    const auto p = hn::Div(hn::Broadcast<3>(b), hn::Set(tag, 255.0f));
    const auto mix = hn::Add(hn::Mul(b, p), hn::Mul(a, hn::Sub(hn::Set(tag, 1.0f), p)));
    return hn::ConvertTo(hn::RebindToSigned<decltype(tag)>(), mix);
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

// The strength of a look.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/strength.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// A channel of as many pixels as there are lanes, its sum in double as it is told. Fixed point is not
// exact: at most whole percents, sums that should be integers fall a hair below them.
template <class Lanes>
HWY_INLINE void MixStep(Lanes reals, unsigned char* destination, const unsigned char* source,
                        double opacity) {
  const hn::Rebind<std::int32_t, Lanes> ints;
  const hn::Repartition<std::uint8_t, decltype(ints)> bytes;
  const auto share = hn::Set(reals, opacity), rest = hn::Set(reals, 1 - opacity);
  const auto to = hn::BitCast(ints, hn::LoadU(bytes, destination));
  const auto from = hn::BitCast(ints, hn::LoadU(bytes, source));
  const auto mixed = [=](auto d, auto v) HWY_ATTR {
    const auto low = hn::Set(ints, 255);
    return hn::DemoteTo(ints, hn::Add(hn::Mul(hn::PromoteTo(reals, hn::And(v, low)), share),
                                      hn::Mul(hn::PromoteTo(reals, hn::And(d, low)), rest)));
  };
  const auto blue = mixed(to, from);
  const auto green = mixed(hn::ShiftRight<8>(to), hn::ShiftRight<8>(from));
  const auto red = mixed(hn::ShiftRight<16>(to), hn::ShiftRight<16>(from));
  const auto alpha = hn::AndNot(hn::Set(ints, 0xFFFFFF), to);
  const auto pixels =
      hn::Or(hn::Or(blue, hn::ShiftLeft<8>(green)), hn::Or(hn::ShiftLeft<16>(red), alpha));
  hn::StoreU(hn::BitCast(bytes, pixels), bytes, destination);
}

void Mix(unsigned char* destination, const unsigned char* source, std::int64_t count,
         double opacity) {
  const hn::ScalableTag<double> reals;
  const auto lanes = static_cast<std::int64_t>(hn::Lanes(reals));
  std::int64_t i = 0;
  for (; i + lanes <= count; i += lanes)
    MixStep(reals, destination + 4 * i, source + 4 * i, opacity);
  for (; i < count; ++i)
    MixStep(hn::CappedTag<double, 1>(), destination + 4 * i, source + 4 * i, opacity);
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <algorithm>

#include "frame/image.h"
#include "frame/parallel.h"
#include "tintwerk/effect.h"

namespace tintwerk {
namespace {
HWY_EXPORT(Mix);
}  // namespace
}  // namespace tintwerk

int CEffect::Effect_AlphaAdJust(unsigned char* destination, const unsigned char* source, int width,
                                int height, double opacity) {
  using namespace tintwerk;
  if (!IsWorkable(destination, width, height) || !source) return 0;
  if (!(opacity > 0)) opacity = 0;  // not a number included
  if (opacity > 1) opacity = 1;
  const std::int64_t pitch = std::max(width, 0);
  ParallelFor(height, [=](std::int64_t y) {
    HWY_DYNAMIC_DISPATCH(Mix)(destination + 4 * pitch * y, source + 4 * pitch * y, pitch, opacity);
  });
  return 1;
}
#endif

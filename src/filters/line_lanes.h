// Lines of a block (see line_blocks.h) in vectors of doubles, as the recursive filters work them.
// Included once for each instruction set.
#if defined(TINTWERK_LINE_LANES_H) == defined(HWY_TARGET_TOGGLE)
#ifdef TINTWERK_LINE_LANES_H
#undef TINTWERK_LINE_LANES_H
#else
#define TINTWERK_LINE_LANES_H
#endif

#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

constexpr hn::CappedTag<double, 8> kReals;
using Reals = hn::Vec<hn::CappedTag<double, 8>>;
constexpr hn::Rebind<std::int32_t, hn::CappedTag<double, 8>> kInts;
using Ints = hn::Vec<hn::Rebind<std::int32_t, hn::CappedTag<double, 8>>>;

// A byte a lane. Two vectors side by side fill the time that one waits for its own feedback.
struct ByteLanes {
  static constexpr int kVectors = 2;
  static HWY_INLINE std::size_t Bytes() { return kVectors * hn::Lanes(kReals); }

  static HWY_INLINE void Load(const unsigned char* at, Reals* samples) {
    for (int v = 0; v < kVectors; ++v)
      samples[v] = hn::PromoteTo(
          kReals, hn::PromoteTo(kInts, hn::LoadU(Part(), at + hn::Lanes(kReals) * v)));
  }
  // @param values 0..255
  static HWY_INLINE void Store(const Ints* values, unsigned char* at) {
    for (int v = 0; v < kVectors; ++v)
      hn::StoreU(hn::DemoteTo(Part(), values[v]), Part(), at + hn::Lanes(kReals) * v);
  }

 private:
  using Part = hn::Rebind<std::uint8_t, hn::CappedTag<double, 8>>;
};

// A pixel a lane, each of its colours in a vector of its own. The fourth byte stays as it is.
struct PixelLanes {
  static constexpr int kVectors = 3;
  static HWY_INLINE std::size_t Bytes() { return 4 * hn::Lanes(kReals); }

  static HWY_INLINE void Load(const unsigned char* at, Reals* samples) {
    const auto low = hn::Set(kInts, 255);
    const Ints pixels = LoadPixels(at);
    samples[0] = hn::PromoteTo(kReals, hn::And(pixels, low));
    samples[1] = hn::PromoteTo(kReals, hn::And(hn::ShiftRight<8>(pixels), low));
    samples[2] = hn::PromoteTo(kReals, hn::And(hn::ShiftRight<16>(pixels), low));
  }
  // @param values 0..255
  static HWY_INLINE void Store(const Ints* values, unsigned char* at) {
    const Ints alpha = hn::AndNot(hn::Set(kInts, 0xFFFFFF), LoadPixels(at));
    const Ints low = hn::Or(values[0], hn::ShiftLeft<8>(values[1]));
    const Ints high = hn::Or(alpha, hn::ShiftLeft<16>(values[2]));
    hn::StoreU(hn::BitCast(Part(), hn::Or(low, high)), Part(), at);
  }

 private:
  using Part = hn::Repartition<std::uint8_t, hn::Rebind<std::int32_t, hn::CappedTag<double, 8>>>;

  static HWY_INLINE Ints LoadPixels(const unsigned char* at) {
    return hn::BitCast(kInts, hn::LoadU(Part(), at));
  }
};

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif

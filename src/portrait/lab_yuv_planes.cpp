// Images as three planes of bytes: a scaled form of Lab, and analogue YUV.
//
// Lab is defined in double precision with powers, and its bytes are truncated. Vectors estimate
// them in single precision. A colour of which an estimate comes so near to a limit that the
// definition could fall on the other side is converted by the definition.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "portrait/lab_yuv_planes.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

#ifndef TINTWERK_LAB_YUV_PLANES_TYPES
#define TINTWERK_LAB_YUV_PLANES_TYPES
#include <algorithm>
#include <array>
#include <cmath>

#include "pixel/truncate.h"

namespace tintwerk {
namespace {

using Triple = std::array<unsigned char, 3>;

constexpr double kDark = 0.008856;  // of X, Y and Z, up to where the cube root is replaced
constexpr int kLastDarkL = 20;      // the byte of L up to which Y is dark

// How far an estimate may lie from the definition's value before it is truncated: three times what
// the worst of all colours shows, with or without fused products.
constexpr float kErrorL = 0.0003f, kErrorA = 0.0008f, kErrorB = 0.00035f;
constexpr float kErrorColour = 0.0011f;

double CubeRoot(double t) {
  return std::pow(t, 0.3333333333333333);
}

/// The definition of L, a and b.
Triple LabOf(const Triple& bgr) {
  const double r = bgr[2] / 255.0, g = bgr[1] / 255.0, b = bgr[0] / 255.0;
  const double x = (0.431 * r + 0.342 * g + 0.178 * b) / 0.951;
  const double y = 0.222 * r + 0.707 * g + 0.071 * b;
  const double z = (0.02 * r + 0.13 * g + 0.939 * b) / 1.089;
  const auto f = [](double t) { return t > kDark ? CubeRoot(t) : 7.78 * t + 0.13793103448275862; };
  const double fy = f(y);
  const double lightness = y > kDark ? 116 * fy - 16 : 903.3 * y;
  return {ClampToByte(lightness * 2.5599), ClampToByte((f(x) - fy) * 635 + 128),
          ClampToByte((fy - f(z)) * 254 + 128)};
}

/// The definition of blue, green and red; not the inverse, it has other constants.
Triple ColourOf(const Triple& lab) {
  const double lightness = lab[0] / 2.55;
  double dx = (lab[1] - 128) / 1.27 / 500, dz = (lab[2] - 128) / 1.27 / 200;
  double fy = (lightness + 16) / 116;
  double y = fy * fy * fy;
  if (!(y > kDark)) {
    y = lightness / 903.3;
    fy = CubeRoot(y);
    dx /= 7.787;
    dz /= 7.787;
  }
  const double fx = dx + fy, fz = fy - dz;
  const double x = 0.951 * (fx * fx * fx), z = 1.089 * (fz * fz * fz);
  const auto toByte = [](double c) { return ClampToByte(std::clamp(c, 0.0, 1.0) * 255.999); };
  return {toByte(0.068 * x - 0.229 * y + 1.069 * z), toByte(-0.969 * x + 1.876 * y + 0.042 * z),
          toByte(3.063 * x - 1.393 * y - 0.476 * z)};
}

/// Keeps the last results of a conversion: flat areas and greys, many of which lie on a limit, come
/// again and again.
class Memory {
 public:
  template <class Convert>
  Triple operator()(const Triple& key, const Convert& convert) {
    Entry& entry = entries_[key[0]];
    if (!entry.known || entry.key != key) entry = {key, convert(key), true};
    return entry.value;
  }

 private:
  struct Entry {
    Triple key, value;
    bool known;
  };
  std::array<Entry, 256> entries_{};
};

/// Pixels with the three planes of their bytes, rows one below the other.
template <class Pixel, class Sample>
struct Area {
  Pixel* pixels;
  std::int64_t stride, width, height;
  Sample* planes[3];

  Area Rows(std::int64_t from, std::int64_t count) const {
    const std::int64_t at = width * from;
    return {pixels + stride * from,
            stride,
            width,
            count,
            {planes[0] + at, planes[1] + at, planes[2] + at}};
  }
};
using Split = Area<const unsigned char, unsigned char>;
using Joined = Area<unsigned char, const unsigned char>;

}  // namespace
}  // namespace tintwerk
#endif

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// Kernels work on a pixel a lane. D is the tag of its real channels.
template <class D>
using Reals = hn::Vec<D>;
template <class D>
using Ints = hn::Vec<hn::RebindToSigned<D>>;
template <class D>
using Mask = hn::Mask<D>;

template <class D>
HWY_INLINE Ints<D> LoadPixels(D, const unsigned char* at) {
  const hn::RebindToSigned<D> ints;
  const hn::Repartition<std::uint8_t, decltype(ints)> bytes;
  return hn::BitCast(ints, hn::LoadU(bytes, at));
}
template <class D>
HWY_INLINE void StorePixels(D d, Ints<D> blue, Ints<D> green, Ints<D> red, unsigned char* at) {
  const hn::RebindToSigned<D> ints;
  const hn::Repartition<std::uint8_t, decltype(ints)> bytes;
  const auto alpha = hn::AndNot(hn::Set(ints, 0xFFFFFF), LoadPixels(d, at));
  const auto pixels = hn::Or(hn::Or(blue, hn::ShiftLeft<8>(green)),  //
                             hn::Or(hn::ShiftLeft<16>(red), alpha));
  hn::StoreU(hn::BitCast(bytes, pixels), bytes, at);
}
template <int kByte, class D>
HWY_INLINE Reals<D> Channel(D d, Ints<D> pixels) {
  const hn::RebindToSigned<D> ints;
  return hn::ConvertTo(d, hn::And(hn::ShiftRight<8 * kByte>(pixels), hn::Set(ints, 0xFF)));
}
template <class D>
HWY_INLINE Reals<D> LoadSamples(D d, const unsigned char* at) {
  const hn::Rebind<std::uint8_t, D> bytes;
  return hn::ConvertTo(d, hn::PromoteTo(hn::RebindToSigned<D>(), hn::LoadU(bytes, at)));
}
template <class D>
HWY_INLINE void StoreSamples(D, Ints<D> values, unsigned char* at) {
  const hn::Rebind<std::uint8_t, D> bytes;
  hn::StoreU(hn::U8FromU32(hn::BitCast(hn::RebindToUnsigned<D>(), values)), bytes, at);
}

// Runs body(pixels, planes) for every row of an area.
template <class Pixel, class Sample, class Body>
HWY_INLINE void ForEachRow(const Area<Pixel, Sample>& area, const Body& body) {
  for (std::int64_t y = 0; y < area.height; ++y) {
    const auto row = area.Rows(y, 1);
    body(row.pixels, row.planes);
  }
}

// Runs step(tag, x) until 0..count - 1 are done.
template <class Step>
HWY_INLINE void ForEachVector(std::int64_t count, const Step& step) {
  const hn::CappedTag<float, 16> many;
  const hn::CappedTag<float, 1> one;
  const auto lanes = static_cast<std::int64_t>(hn::Lanes(many));
  std::int64_t x = 0;
  for (; x + lanes <= count; x += lanes) step(many, x);
  for (; x < count; ++x) step(one, x);
}

// The cube root of 0..2, good for about 22 bits.
template <class D>
HWY_INLINE Reals<D> EstimateCubeRoot(D d, Reals<D> t) {
  // Of the inverse root: first a third of the exponent, then two steps of its series.
  const hn::RebindToSigned<D> ints;
  const auto exponent = hn::ConvertTo(d, hn::BitCast(ints, t));
  const auto third = hn::Mul(exponent, hn::Set(d, 1.0f / 3));
  auto z = hn::BitCast(d, hn::ConvertTo(ints, hn::Sub(hn::Set(d, 1419967116.0f), third)));
  for (int step = 0; step < 2; ++step) {
    const auto rest = hn::NegMulAdd(hn::Mul(t, z), hn::Mul(z, z), hn::Set(d, 1.0f));
    const auto slope = hn::MulAdd(rest, hn::Set(d, 2.0f / 9), hn::Set(d, 1.0f / 3));
    z = hn::MulAdd(hn::Mul(z, rest), slope, z);
  }
  return hn::Mul(t, hn::Mul(z, z));
}

// Truncates an estimate to a byte. Marks lanes of which it lies within `error` of where the byte
// changes.
template <class D>
HWY_INLINE Ints<D> TruncateWarily(D d, Reals<D> value, float error, Mask<D>& doubtful) {
  const auto half = hn::Set(d, 0.5f);
  value = hn::Min(hn::Max(value, half), hn::Set(d, 255.5f));  // beyond, nothing changes
  const auto whole = hn::ConvertTo(hn::RebindToSigned<D>(), value);
  const auto fromMiddle = hn::Abs(hn::Sub(hn::Sub(value, half), hn::ConvertTo(d, whole)));
  doubtful = hn::Or(doubtful, hn::Gt(fromMiddle, hn::Set(d, 0.5f - error)));
  return whole;
}

// Runs redo(lane) for every lane that is marked.
template <class D, class Redo>
HWY_INLINE void ForEachMarked(D d, Mask<D> marked, const Redo& redo) {
  if (HWY_LIKELY(hn::AllFalse(d, marked))) return;
  std::uint8_t bits[8] = {};
  hn::StoreMaskBits(d, marked, bits);
  for (unsigned rest = bits[0] | bits[1] << 8; rest != 0; rest &= rest - 1)
    redo(hwy::Num0BitsBelowLS1Bit_Nonzero32(rest));
}

// X, Y or Z with f of it, from the weights of its channels.
template <class D>
struct Stimulus {
  HWY_INLINE Stimulus(D d, const Reals<D> bgr[3], double b, double g, double r) {
    t = hn::Mul(bgr[0], hn::Set(d, static_cast<float>(b / 255)));
    t = hn::MulAdd(bgr[1], hn::Set(d, static_cast<float>(g / 255)), t);
    t = hn::MulAdd(bgr[2], hn::Set(d, static_cast<float>(r / 255)), t);
    // No colour comes nearer to the limit than 9e-7, which is 400 times the error of t.
    bright = hn::Gt(t, hn::Set(d, static_cast<float>(kDark)));
    f = hn::IfThenElse(bright, EstimateCubeRoot(d, t),
                       hn::MulAdd(t, hn::Set(d, 7.78f), hn::Set(d, 0.13793103448275862f)));
  }
  Reals<D> t, f;
  Mask<D> bright;
};

void ToLab(const Split& area) {
  Memory memory;
  ForEachRow(area, [&](const unsigned char* pixels, unsigned char* const* planes) HWY_ATTR {
    ForEachVector(area.width, [&](auto d, std::int64_t x) HWY_ATTR {
      using D = decltype(d);
      const auto words = LoadPixels(d, pixels + 4 * x);
      const Reals<D> bgr[] = {Channel<0>(d, words), Channel<1>(d, words), Channel<2>(d, words)};
      const Stimulus<D> X(d, bgr, 0.178 / 0.951, 0.342 / 0.951, 0.431 / 0.951);
      const Stimulus<D> Y(d, bgr, 0.071, 0.707, 0.222);
      const Stimulus<D> Z(d, bgr, 0.939 / 1.089, 0.13 / 1.089, 0.02 / 1.089);
      const auto L = hn::IfThenElse(
          Y.bright, hn::MulAdd(Y.f, hn::Set(d, 116 * 2.5599f), hn::Set(d, -16 * 2.5599f)),
          hn::Mul(Y.t, hn::Set(d, 903.3f * 2.5599f)));
      const auto A = hn::MulAdd(hn::Sub(X.f, Y.f), hn::Set(d, 635.0f), hn::Set(d, 128.0f));
      const auto B = hn::MulAdd(hn::Sub(Y.f, Z.f), hn::Set(d, 254.0f), hn::Set(d, 128.0f));
      auto doubtful = hn::FirstN(d, 0);
      StoreSamples(d, TruncateWarily(d, L, kErrorL, doubtful), planes[0] + x);
      StoreSamples(d, TruncateWarily(d, A, kErrorA, doubtful), planes[1] + x);
      StoreSamples(d, TruncateWarily(d, B, kErrorB, doubtful), planes[2] + x);
      ForEachMarked(d, doubtful, [&](std::int64_t lane) {
        const unsigned char* const pixel = pixels + 4 * (x + lane);
        const Triple lab = memory({pixel[0], pixel[1], pixel[2]}, LabOf);
        for (int i = 0; i < 3; ++i) planes[i][x + lane] = lab[i];
      });
    });
  });
}

void FromLab(const Joined& area) {
  Memory memory;
  ForEachRow(area, [&](unsigned char* pixels, const unsigned char* const* planes) HWY_ATTR {
    ForEachVector(area.width, [&](auto d, std::int64_t x) HWY_ATTR {
      const auto offset = hn::Set(d, 128.0f);
      const auto L = LoadSamples(d, planes[0] + x);
      auto dx = hn::Mul(hn::Sub(LoadSamples(d, planes[1] + x), offset),
                        hn::Set(d, static_cast<float>(1 / 1.27 / 500)));
      auto dz = hn::Mul(hn::Sub(LoadSamples(d, planes[2] + x), offset),
                        hn::Set(d, static_cast<float>(1 / 1.27 / 200)));
      const auto cube = [](auto f) HWY_ATTR { return hn::Mul(hn::Mul(f, f), f); };
      auto fy = hn::MulAdd(L, hn::Set(d, static_cast<float>(1 / 2.55 / 116)),
                           hn::Set(d, static_cast<float>(16.0 / 116)));
      auto Y = cube(fy);
      const auto dark = hn::Lt(L, hn::Set(d, kLastDarkL + 0.5f));
      if (!hn::AllFalse(d, dark)) {
        const auto shrink = hn::IfThenElse(dark, hn::Set(d, 1 / 7.787f), hn::Set(d, 1.0f));
        dx = hn::Mul(dx, shrink);
        dz = hn::Mul(dz, shrink);
        const auto darkY = hn::Mul(L, hn::Set(d, static_cast<float>(1 / 2.55 / 903.3)));
        Y = hn::IfThenElse(dark, darkY, Y);
        fy = hn::IfThenElse(dark, EstimateCubeRoot(d, darkY), fy);
      }
      const auto X = cube(hn::Add(dx, fy)), Z = cube(hn::Sub(fy, dz));
      auto doubtful = hn::FirstN(d, 0);
      const auto channel = [&](double ofX, double ofY, double ofZ) HWY_ATTR {
        const auto factor = [=](double of)
                                HWY_ATTR { return hn::Set(d, static_cast<float>(of * 255.999)); };
        auto sum = hn::Mul(X, factor(ofX * 0.951));
        sum = hn::MulAdd(Y, factor(ofY), sum);
        sum = hn::MulAdd(Z, factor(ofZ * 1.089), sum);
        return TruncateWarily(d, sum, kErrorColour, doubtful);
      };
      const auto blue = channel(0.068, -0.229, 1.069);
      const auto green = channel(-0.969, 1.876, 0.042);
      const auto red = channel(3.063, -1.393, -0.476);
      StorePixels(d, blue, green, red, pixels + 4 * x);
      ForEachMarked(d, doubtful, [&](std::int64_t lane) {
        const std::int64_t at = x + lane;
        const Triple bgr = memory({planes[0][at], planes[1][at], planes[2][at]}, ColourOf);
        std::copy(bgr.begin(), bgr.end(), pixels + 4 * at);
      });
    });
  });
}

// YUV is defined in single precision: these are the definition, to the order of its sums.

template <class D>
HWY_INLINE Ints<D> ClampAndTruncate(D d, Reals<D> value) {
  value = hn::Min(hn::Max(value, hn::Zero(d)), hn::Set(d, 255.0f));
  return hn::ConvertTo(hn::RebindToSigned<D>(), value);
}

void ToYuv(const Split& area) {
  ForEachRow(area, [&](const unsigned char* pixels, unsigned char* const* planes) HWY_ATTR {
    ForEachVector(area.width, [&](auto d, std::int64_t x) HWY_ATTR {
      const auto times = [=](auto value, float by)
                             HWY_ATTR { return hn::Mul(value, hn::Set(d, by)); };
      const auto words = LoadPixels(d, pixels + 4 * x);
      const auto b = Channel<0>(d, words), g = Channel<1>(d, words), r = Channel<2>(d, words);
      const auto y = hn::Add(hn::Add(times(g, 0.587f), times(r, 0.299f)), times(b, 0.114f));
      const auto half = hn::Set(d, 0.5f);
      const auto difference = [=](auto c, float by) HWY_ATTR {
        const auto sum = hn::Add(times(hn::Sub(c, y), by), hn::Set(d, 128.0f));
        return ClampAndTruncate(d, hn::Add(sum, half));
      };
      StoreSamples(d, ClampAndTruncate(d, hn::Add(y, half)), planes[0] + x);
      StoreSamples(d, difference(b, 0.492f), planes[1] + x);
      StoreSamples(d, difference(r, 0.877f), planes[2] + x);
    });
  });
}

void FromYuv(const Joined& area) {
  ForEachRow(area, [&](unsigned char* pixels, const unsigned char* const* planes) HWY_ATTR {
    ForEachVector(area.width, [&](auto d, std::int64_t x) HWY_ATTR {
      const auto times = [=](auto value, float by)
                             HWY_ATTR { return hn::Mul(value, hn::Set(d, by)); };
      const auto offset = hn::Set(d, 128.0f), half = hn::Set(d, 0.5f);
      const auto y = LoadSamples(d, planes[0] + x);
      const auto u = hn::Sub(LoadSamples(d, planes[1] + x), offset);
      const auto v = hn::Sub(LoadSamples(d, planes[2] + x), offset);
      const auto red = hn::Add(hn::Add(times(v, 1.14f), y), half);
      const auto green = hn::Add(hn::Sub(hn::Sub(y, times(u, 0.395f)), times(v, 0.581f)), half);
      const auto blue = hn::Add(hn::Add(times(u, 2.032f), y), half);
      StorePixels(d, ClampAndTruncate(d, blue), ClampAndTruncate(d, green),
                  ClampAndTruncate(d, red), pixels + 4 * x);
    });
  });
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "frame/material.h"
#include "frame/parallel.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

HWY_EXPORT(ToLab);
HWY_EXPORT(FromLab);
HWY_EXPORT(ToYuv);
HWY_EXPORT(FromYuv);

/// Runs body(rows) for blocks of rows side by side.
template <class Area, class Body>
void ForEachBlock(const Area& area, const Body& body) {
  if (!area.pixels || !area.planes[0] || !area.planes[1] || !area.planes[2]) return;
  const auto count = PixelCount(static_cast<int>(area.width), static_cast<int>(area.height));
  if (!count || *count == 0) return;
  const std::int64_t rows = std::max<std::int64_t>(1, 16384 / area.width);
  ParallelFor((area.height + rows - 1) / rows, [=](std::int64_t i) {
    body(area.Rows(rows * i, std::min(rows, area.height - rows * i)));
  });
}

/// The planes of a block of three.
template <class Area, class Pixel, class Sample>
Area YuvArea(Pixel* pixels, std::int64_t width, std::int64_t height, Sample* yuv) {
  const std::int64_t count = width * height;
  if (width < 1 || height < 1 || !yuv) return {};
  return {pixels, 4 * width, width, height, {yuv, yuv + count, yuv + 2 * count}};
}

}  // namespace
}  // namespace tintwerk

using namespace tintwerk;

void SFDSP::DecomposeToLab(const unsigned char* pixels, int width, int height, int stride,
                           unsigned char* planeL, unsigned char* planeA, unsigned char* planeB) {
  ForEachBlock(Split{pixels, stride, width, height, {planeL, planeA, planeB}},
               [](const Split& rows) {
                 HWY_DYNAMIC_DISPATCH(ToLab)
                 (rows);
               });
}

void SFDSP::RecomposeFromLab(unsigned char* pixels, int width, int height, int stride,
                             const unsigned char* planeL, const unsigned char* planeA,
                             const unsigned char* planeB) {
  ForEachBlock(Joined{pixels, stride, width, height, {planeL, planeA, planeB}},
               [](const Joined& rows) {
                 HWY_DYNAMIC_DISPATCH(FromLab)
                 (rows);
               });
}

void SFDSP::rgb_2_yuv(const unsigned char* pixels, int width, int height, unsigned char* yuv) {
  ForEachBlock(YuvArea<Split>(pixels, width, height, yuv), [](const Split& rows) {
    HWY_DYNAMIC_DISPATCH(ToYuv)(rows);
  });
}

void SFDSP::yuv_2_rgb(unsigned char* pixels, int width, int height, const unsigned char* yuv) {
  ForEachBlock(YuvArea<Joined>(pixels, width, height, yuv), [](const Joined& rows) {
    HWY_DYNAMIC_DISPATCH(FromYuv)(rows);
  });
}
#endif

// Conversions between colour models. The members of CColorSpace at the end say what each
// conversion gives, a pixel at a time. HLS, byte HSL and YUV also run over pixels side by side, with the
// same bytes: these kernels come first.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/color_space.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstdint>

#include "pixel/hls.h"

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace {
namespace hn = hwy::HWY_NAMESPACE;

// A pixel a lane. Every operation is that of CColorSpace, its branches turned into choices.
constexpr hn::ScalableTag<double> kReals;
constexpr hn::Rebind<std::int32_t, hn::ScalableTag<double>> kInts;
constexpr hn::Repartition<std::uint8_t, hn::Rebind<std::int32_t, hn::ScalableTag<double>>> kBytes;
using Reals = hn::Vec<hn::ScalableTag<double>>;

// Stores three channels of which the low bytes count; alpha stays.
template <class Ints, class Values>
HWY_INLINE void StoreChannels(Ints ints, Values b, Values g, Values r, Values alphaFrom,
                              unsigned char* out) {
  const hn::Repartition<std::uint8_t, Ints> bytes;
  const auto low = hn::Set(ints, 255);
  const auto alpha = hn::AndNot(hn::Set(ints, 0xFFFFFF), alphaFrom);
  const auto blueGreen = hn::Or(hn::And(b, low), hn::ShiftLeft<8>(hn::And(g, low)));
  const auto pixels = hn::Or(hn::Or(blueGreen, hn::ShiftLeft<16>(hn::And(r, low))), alpha);
  hn::StoreU(hn::BitCast(bytes, pixels), bytes, out);
}

HWY_INLINE auto Real(double value) {
  return hn::Set(kReals, value);
}

void ToHls(const unsigned char* pixels, HlsRun& run) {
  const auto low = hn::Set(kInts, 255);
  for (std::size_t i = 0; i < HlsRun::kPixels; i += hn::Lanes(kReals)) {
    const auto bgra = hn::BitCast(kInts, hn::LoadU(kBytes, pixels + 4 * i));
    const auto b = hn::PromoteTo(kReals, hn::And(bgra, low));
    const auto g = hn::PromoteTo(kReals, hn::And(hn::ShiftRight<8>(bgra), low));
    const auto r = hn::PromoteTo(kReals, hn::And(hn::ShiftRight<16>(bgra), low));
    const auto max = hn::Max(hn::Max(r, g), b), min = hn::Min(hn::Min(r, g), b);
    const auto sum = hn::Add(max, min), d = hn::Sub(max, min);

    const auto lightness = hn::Mul(sum, Real(0.0019608));
    const auto most = hn::IfThenElse(hn::Lt(lightness, Real(0.5)), sum, hn::Sub(Real(510), sum));
    // Greys have 0 above the line, and nothing is divided by 0.
    const auto saturation = hn::Div(d, hn::Max(most, Real(1)));
    const auto isRed = hn::Eq(r, max), isGreen = hn::Eq(g, max);
    const auto difference =
        hn::IfThenElse(isRed, hn::Sub(g, b), hn::IfThenElse(isGreen, hn::Sub(b, r), hn::Sub(r, g)));
    const auto turn =
        hn::IfThenElse(isRed, hn::IfThenElseZero(hn::Lt(difference, Real(0)), Real(6)),
                       hn::IfThenElse(isGreen, Real(2), Real(4)));
    const auto h = hn::Add(hn::Div(difference, hn::Max(d, Real(1))), turn);
    hn::Store(hn::Mul(h, Real(0.16666699945926666)), kReals, run.hue + i);
    hn::Store(lightness, kReals, run.lightness + i);
    hn::Store(saturation, kReals, run.saturation + i);
  }
}

template <class Ints>
HWY_INLINE auto Limited(Ints ints, hn::Vec<Ints> value) {
  return hn::Min(hn::Max(value, hn::Zero(ints)), hn::Set(ints, 255));
}

HWY_INLINE auto ToByte(Reals value) {
  return Limited(kInts, hn::DemoteTo(kInts, hn::Mul(value, Real(255))));
}

HWY_INLINE auto ValueAtHue(Reals m1, Reals m2, Reals hue) {
  hue = hn::IfThenElse(hn::Gt(hue, Real(6)), hn::Sub(hue, Real(6)),
                       hn::IfThenElse(hn::Lt(hue, Real(0)), hn::Add(hue, Real(6)), hue));
  const auto rises = hn::Lt(hue, Real(1));
  const auto share = hn::IfThenElse(rises, hue, hn::Sub(Real(4), hue));
  const auto slope = hn::Add(hn::Mul(hn::Sub(m2, m1), share), m1);
  const auto upper = hn::IfThenElse(rises, slope, m2);
  const auto lower = hn::IfThenElse(hn::Lt(hue, Real(4)), slope, m1);
  return hn::IfThenElse(hn::Lt(hue, Real(3)), upper, lower);
}

void FromHls(const HlsRun& run, unsigned char* pixels) {
  for (std::size_t i = 0; i < HlsRun::kPixels; i += hn::Lanes(kReals)) {
    const auto h = hn::Mul(hn::Load(kReals, run.hue + i), Real(6));
    const auto l = hn::Load(kReals, run.lightness + i), s = hn::Load(kReals, run.saturation + i);
    const auto isGrey = hn::Lt(s, Real(1.1920928955078125e-7));
    const auto colour = hn::IfThenElse(hn::Lt(l, Real(0.5)), hn::Mul(hn::Add(s, Real(1)), l),
                                       hn::Sub(hn::Add(l, s), hn::Mul(l, s)));
    const auto m2 = hn::IfThenElse(isGrey, l, colour);
    const auto m1 = hn::IfThenElse(isGrey, l, hn::Sub(hn::Add(l, l), m2));
    const auto r = ToByte(ValueAtHue(m1, m2, hn::Add(h, Real(2))));
    const auto g = ToByte(ValueAtHue(m1, m2, h));
    const auto b = ToByte(ValueAtHue(m1, m2, hn::Sub(h, Real(2))));
    StoreChannels(kInts, b, g, r, hn::BitCast(kInts, hn::LoadU(kBytes, pixels + 4 * i)),
                  pixels + 4 * i);
  }
}

template <class Lanes>
HWY_INLINE auto Channel(Lanes, hn::Vec<hn::Rebind<std::int32_t, Lanes>> bgra, int shift) {
  const hn::Rebind<std::int32_t, Lanes> ints;
  return hn::And(hn::ShiftRightSame(bgra, shift), hn::Set(ints, 255));
}

struct ToHslStep {
  template <class Lanes>
  HWY_INLINE void operator()(Lanes reals, unsigned char* pixels) const {
    const hn::Rebind<std::int32_t, Lanes> ints;
    const hn::Repartition<std::uint8_t, decltype(ints)> bytes;
    const auto number = [=](int value) HWY_ATTR { return hn::Set(ints, value); };
    // Numerators stay far below 2^24, so quotients of floats are exact when truncated.
    const auto divide = [=](auto over, auto under) HWY_ATTR {
      const auto divisor = hn::ConvertTo(reals, hn::Max(under, number(1)));
      return hn::ConvertTo(ints, hn::Div(hn::ConvertTo(reals, over), divisor));
    };
    const auto bgra = hn::BitCast(ints, hn::LoadU(bytes, pixels));
    const auto b = Channel(reals, bgra, 0), g = Channel(reals, bgra, 8),
               r = Channel(reals, bgra, 16);
    const auto max = hn::Max(hn::Max(r, g), b), min = hn::Min(hn::Min(r, g), b);
    const auto sum = hn::Add(max, min), d = hn::Sub(max, min);
    const auto lightness = hn::ShiftRight<1>(hn::Add(sum, number(1)));
    const auto most =
        hn::IfThenElse(hn::Gt(lightness, number(127)), hn::Sub(number(510), sum), sum);
    const auto isGrey = hn::Eq(d, number(0));
    const auto saturation = hn::IfThenZeroElse(
        isGrey, divide(hn::Add(hn::ShiftRight<1>(most), hn::Mul(d, number(255))), most));
    const auto isRed = hn::Eq(r, max), isGreen = hn::Eq(g, max);
    const auto difference =
        hn::IfThenElse(isRed, hn::Sub(g, b), hn::IfThenElse(isGreen, hn::Sub(b, r), hn::Sub(r, g)));
    const auto turn = hn::IfThenZeroElse(isRed, hn::IfThenElse(isGreen, number(85), number(-86)));
    const auto hue = hn::Add(divide(hn::Mul(difference, number(42)), d), turn);
    StoreChannels(ints, lightness, saturation, hn::IfThenElse(isGrey, number(170), hue), bgra,
                  pixels);
  }
};

struct FromHslStep {
  template <class Lanes>
  HWY_INLINE void operator()(Lanes reals, unsigned char* pixels) const {
    const hn::Rebind<std::int32_t, Lanes> ints;
    const hn::Repartition<std::uint8_t, decltype(ints)> bytes;
    const auto real = [=](float value) HWY_ATTR { return hn::Set(reals, value); };
    const auto hsl = hn::BitCast(ints, hn::LoadU(bytes, pixels));
    const auto l = hn::Div(hn::ConvertTo(reals, Channel(reals, hsl, 0)), real(255));
    const auto s = hn::Div(hn::ConvertTo(reals, Channel(reals, hsl, 8)), real(255));
    const auto h =
        hn::Div(hn::Mul(hn::ConvertTo(reals, Channel(reals, hsl, 16)), real(360)), real(255));
    const auto isGrey = hn::Eq(s, real(0));
    const auto colour = hn::IfThenElse(hn::Le(l, real(0.5f)), hn::Mul(hn::Add(s, real(1)), l),
                                       hn::Sub(hn::Add(l, s), hn::Mul(l, s)));
    const auto m2 = hn::IfThenElse(isGrey, l, colour);
    const auto m1 = hn::IfThenElse(isGrey, l, hn::Sub(hn::Add(l, l), m2));
    const auto channel = [=](auto hue) HWY_ATTR {
      hue = hn::IfThenElse(hn::Gt(hue, real(360)), hn::Sub(hue, real(360)),
                           hn::IfThenElse(hn::Lt(hue, real(0)), hn::Add(hue, real(360)), hue));
      const auto rises = hn::Lt(hue, real(60));
      const auto share = hn::IfThenElse(rises, hue, hn::Sub(real(240), hue));
      const auto slope = hn::Add(hn::Div(hn::Mul(hn::Sub(m2, m1), share), real(60)), m1);
      const auto upper = hn::IfThenElse(rises, slope, m2);
      const auto lower = hn::IfThenElse(hn::Lt(hue, real(240)), slope, m1);
      const auto value = hn::IfThenElse(hn::Lt(hue, real(180)), upper, lower);
      return hn::ConvertTo(ints, hn::Mul(value, real(255)));
    };
    StoreChannels(ints, channel(hn::Sub(h, real(120))), channel(h), channel(hn::Add(h, real(120))),
                  hsl, pixels);
  }
};

struct ToYuvStep {
  template <class Lanes>
  HWY_INLINE void operator()(Lanes reals, unsigned char* pixels) const {
    const hn::Rebind<std::int32_t, Lanes> ints;
    const hn::Repartition<std::uint8_t, decltype(ints)> bytes;
    const auto times = [=](auto value, float factor)
                           HWY_ATTR { return hn::Mul(value, hn::Set(reals, factor)); };
    const auto bgra = hn::BitCast(ints, hn::LoadU(bytes, pixels));
    const auto channel = [=](int shift)
                             HWY_ATTR { return hn::ConvertTo(reals, Channel(reals, bgra, shift)); };
    const auto b = channel(0), g = channel(8), r = channel(16);
    const auto luma =
        hn::ConvertTo(ints, hn::Add(hn::Add(times(r, 0.299f), times(g, 0.587f)), times(b, 0.114f)));
    const auto y = hn::ConvertTo(reals, luma);
    const auto chroma = [=](auto colour, float factor) HWY_ATTR {
      const auto value = hn::Add(times(hn::Sub(colour, y), factor), hn::Set(reals, 128.0f));
      return Limited(ints, hn::ConvertTo(ints, value));
    };
    StoreChannels(ints, chroma(r, 0.713f), chroma(b, 0.565f), luma, bgra, pixels);
  }
};

struct FromYuvStep {
  template <class Lanes>
  HWY_INLINE void operator()(Lanes reals, unsigned char* pixels) const {
    const hn::Rebind<std::int32_t, Lanes> ints;
    const hn::Repartition<std::uint8_t, decltype(ints)> bytes;
    const auto times = [=](auto value, float factor)
                           HWY_ATTR { return hn::Mul(value, hn::Set(reals, factor)); };
    const auto yuv = hn::BitCast(ints, hn::LoadU(bytes, pixels));
    const auto channel = [=](int shift)
                             HWY_ATTR { return hn::ConvertTo(reals, Channel(reals, yuv, shift)); };
    const auto y = channel(16), middle = hn::Set(reals, 128.0f);
    const auto u = hn::Sub(channel(8), middle), v = hn::Sub(channel(0), middle);
    const auto red = hn::Add(times(v, 1.403f), y), blue = hn::Add(times(u, 1.77f), y);
    const auto green = hn::Sub(hn::Sub(y, times(u, 0.344f)), times(v, 0.714f));
    const auto limited = [=](auto value)
                             HWY_ATTR { return Limited(ints, hn::ConvertTo(ints, value)); };
    StoreChannels(ints, limited(blue), limited(green), limited(red), yuv, pixels);
  }
};

struct ToGreyStep {
  template <class Lanes>
  HWY_INLINE void operator()(Lanes reals, unsigned char* pixels) const {
    const hn::Rebind<std::int32_t, Lanes> ints;
    const hn::Repartition<std::uint8_t, decltype(ints)> bytes;
    const auto bgra = hn::BitCast(ints, hn::LoadU(bytes, pixels));
    const auto weighted = [=](int shift, std::int32_t weight) HWY_ATTR {
      return hn::Mul(Channel(reals, bgra, shift), hn::Set(ints, weight));
    };
    const auto luma =
        hn::ShiftRight<10>(hn::Add(hn::Add(weighted(0, 117), weighted(16, 306)), weighted(8, 601)));
    StoreChannels(ints, luma, luma, luma, bgra, pixels);
  }
};

template <class Step>
HWY_INLINE void ForEachPixels(unsigned char* pixels, std::int64_t count, Step step) {
  const hn::ScalableTag<float> reals;
  const auto lanes = static_cast<std::int64_t>(hn::Lanes(reals));
  for (; count >= lanes; count -= lanes, pixels += 4 * lanes) step(reals, pixels);
  for (; count > 0; --count, pixels += 4) step(hn::CappedTag<float, 1>(), pixels);
}

void ToHsl(unsigned char* pixels, std::int64_t count) {
  ForEachPixels(pixels, count, ToHslStep());
}
void FromHsl(unsigned char* pixels, std::int64_t count) {
  ForEachPixels(pixels, count, FromHslStep());
}
void ToYuv(unsigned char* pixels, std::int64_t count) {
  ForEachPixels(pixels, count, ToYuvStep());
}
void FromYuv(unsigned char* pixels, std::int64_t count) {
  ForEachPixels(pixels, count, FromYuvStep());
}
void ToGrey(unsigned char* pixels, std::int64_t count) {
  ForEachPixels(pixels, count, ToGreyStep());
}

}  // namespace
}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <algorithm>
#include <cmath>

#include "pixel/hsb.h"
#include "pixel/truncate.h"
#include "tintwerk/color_space.h"

namespace tintwerk {
namespace {
HWY_EXPORT(ToHls);
HWY_EXPORT(FromHls);
HWY_EXPORT(ToHsl);
HWY_EXPORT(FromHsl);
HWY_EXPORT(ToYuv);
HWY_EXPORT(FromYuv);
HWY_EXPORT(ToGrey);
}  // namespace

void RgbToHls(const unsigned char* pixels, HlsRun& run) {
  HWY_DYNAMIC_DISPATCH(ToHls)(pixels, run);
}
void HlsToRgb(const HlsRun& run, unsigned char* pixels) {
  HWY_DYNAMIC_DISPATCH(FromHls)(run, pixels);
}
void RgbToHsl(unsigned char* pixels, std::int64_t count) {
  HWY_DYNAMIC_DISPATCH(ToHsl)(pixels, count);
}
void HslToRgb(unsigned char* pixels, std::int64_t count) {
  HWY_DYNAMIC_DISPATCH(FromHsl)(pixels, count);
}
void RgbToYuv(unsigned char* pixels, std::int64_t count) {
  HWY_DYNAMIC_DISPATCH(ToYuv)(pixels, count);
}
void YuvToRgb(unsigned char* pixels, std::int64_t count) {
  HWY_DYNAMIC_DISPATCH(FromYuv)(pixels, count);
}
void RgbToGrey(unsigned char* pixels, std::int64_t count) {
  HWY_DYNAMIC_DISPATCH(ToGrey)(pixels, count);
}
}  // namespace tintwerk

using tintwerk::ClampToByte;
using tintwerk::Truncate;
using tintwerk::TruncateToByte;

int CColorSpace::RGBtoHSB(int R, int G, int B, float& H, float& S, float& brightness) {
  tintwerk::RgbToHsb(R, G, B, H, S, brightness);
  return 1;
}

int CColorSpace::HSBtoRGB(float H, float S, float brightness, unsigned char& R, unsigned char& G,
                          unsigned char& B) {
  tintwerk::HsbToRgb(H, S, brightness, R, G, B);
  return 1;
}

int CColorSpace::RGBtoHSL(unsigned char R, unsigned char G, unsigned char B, unsigned char& H,
                          unsigned char& S, unsigned char& L) {
  const int max = std::max({R, G, B}), min = std::min({R, G, B});
  const int sum = max + min, d = max - min;
  const int lightness = (sum + 1) * 255 / 510;
  int hue = 170, saturation = 0;
  if (d != 0) {
    saturation = lightness > 127 ? (((510 - sum) >> 1) + d * 255) / (510 - sum)
                                 : ((sum >> 1) + d * 255) / sum;
    hue = R == max ? (G - B) * 42 / d : G == max ? (B - R) * 42 / d + 85 : (R - G) * 42 / d - 86;
  }
  H = static_cast<unsigned char>(hue);
  S = static_cast<unsigned char>(saturation);
  L = static_cast<unsigned char>(lightness);
  return 1;
}

float CColorSpace::HueToRGB(float m1, float m2, float hue) {
  if (hue > 360) hue -= 360;
  if (hue < 0) hue += 360;
  if (hue < 60) return (m2 - m1) * hue / 60 + m1;
  if (hue < 180) return m2;
  if (hue < 240) return (m2 - m1) * (240 - hue) / 60 + m1;
  return m1;
}

int CColorSpace::HSLtoRGB(unsigned char H, unsigned char S, unsigned char L, unsigned char& R,
                          unsigned char& G, unsigned char& B) {
  const float h = H * 360.0f / 255.0f, l = L / 255.0f, s = S / 255.0f;
  if (s == 0) {
    R = G = B = TruncateToByte(l * 255.0f);
    return 1;
  }
  const float m2 = l <= 0.5f ? (s + 1) * l : l + s - l * s;
  const float m1 = l + l - m2;
  R = TruncateToByte(HueToRGB(m1, m2, h + 120) * 255.0f);
  G = TruncateToByte(HueToRGB(m1, m2, h) * 255.0f);
  B = TruncateToByte(HueToRGB(m1, m2, h - 120) * 255.0f);
  return 1;
}

void CColorSpace::RGBtoHLS(unsigned char R, unsigned char G, unsigned char B, double& H, double& L,
                           double& S) {
  const int max = std::max({R, G, B}), min = std::min({R, G, B});
  L = (max + min) * 0.0019608;
  H = S = 0;
  if (max == min) return;
  const double d = max - min;
  S = L < 0.5 ? d / (max + min) : d / (510 - min - max);
  double h;
  if (R == max) {
    h = (G - B) / d;
    if (h < 0) h += 6;
  } else if (G == max) {
    h = (B - R) / d + 2;
  } else {
    h = (R - G) / d + 4;
  }
  H = h * 0.16666699945926666;
}

double CColorSpace::HLS_Value(const double& m1, const double& m2, double hue) {
  if (hue > 6)
    hue -= 6;
  else if (hue < 0)
    hue += 6;
  if (hue < 1) return (m2 - m1) * hue + m1;
  if (hue < 3) return m2;
  if (hue < 4) return (m2 - m1) * (4 - hue) + m1;
  return m1;
}

void CColorSpace::HLStoRGB(const double& H, const double& L, const double& S, unsigned char& R,
                           unsigned char& G, unsigned char& B) {
  if (S < 1.1920928955078125e-7) {
    R = G = B = ClampToByte(L * 255);
    return;
  }
  const double m2 = L < 0.5 ? (S + 1) * L : L + S - L * S;
  const double m1 = L + L - m2;
  const double h = H * 6;
  R = ClampToByte(HLS_Value(m1, m2, h + 2) * 255);
  G = ClampToByte(HLS_Value(m1, m2, h) * 255);
  B = ClampToByte(HLS_Value(m1, m2, h - 2) * 255);
}

tagRGBQUAD CColorSpace::HLStoRGB(const double& H, const double& L, const double& S) {
  tagRGBQUAD colour{};
  HLStoRGB(H, L, S, colour.rgbRed, colour.rgbGreen, colour.rgbBlue);
  return colour;
}

void CColorSpace::RGBtoHSV(unsigned char R, unsigned char G, unsigned char B, double& H, double& S,
                           double& V) {
  const double r = R / 255.0, g = G / 255.0, b = B / 255.0;
  V = std::max({r, g, b});
  double d = V - std::min({r, g, b});
  S = V == 0 ? 0 : d / V;
  H = 0;
  if (S == 0) return;
  if (d == 0) d = 1.0;
  const double h = r == V ? (g - b) / d : g == V ? (b - r) / d + 2 : (r - g) / d + 4;
  H = h / 6.0;
  if (H < 0) H += 1;
  if (H > 1) H -= 1;
}

void CColorSpace::HSVtoRGB(double H, double S, double V, unsigned char& R, unsigned char& G,
                           unsigned char& B) {
  double r = V, g = V, b = V;
  if (S != 0) {
    double h = H * 6;
    if (h == 6) h = 0;
    const int i = Truncate(h);
    const double f = h - i;
    const double p = (1 - S) * V, q = (1 - f * S) * V, t = (1 - (1 - f) * S) * V;
    // Hues outside 0..1 name no colour and keep the grey.
    switch (i) {
      case 0:
        r = V, g = t, b = p;
        break;
      case 1:
        r = q, g = V, b = p;
        break;
      case 2:
        r = p, g = V, b = t;
        break;
      case 3:
        r = p, g = q, b = V;
        break;
      case 4:
        r = t, g = p, b = V;
        break;
      case 5:
        r = V, g = p, b = q;
        break;
      default:
        break;
    }
  }
  R = TruncateToByte(r * 255.0 + 0.5);
  G = TruncateToByte(g * 255.0 + 0.5);
  B = TruncateToByte(b * 255.0 + 0.5);
}

int CColorSpace::RGBtoXYZ(unsigned char R, unsigned char G, unsigned char B, unsigned char& X,
                          unsigned char& Y, unsigned char& Z) {
  X = TruncateToByte(R * 0.412453f + G * 0.35758f + B * 0.180423f);
  Y = TruncateToByte(G * 0.71516f + R * 0.212671f + B * 0.072169f);
  // The last factor brings the Z of white to 255; XYZtoRGB undoes it.
  Z = TruncateToByte((R * 0.019334f + G * 0.119193f + B * 0.950227f) * 0.9184837f);
  return 1;
}

int CColorSpace::XYZtoRGB(unsigned char X, unsigned char Y, unsigned char Z, unsigned char& R,
                          unsigned char& G, unsigned char& B) {
  // Brackets in single precision, their sums in double.
  auto sum = [](float xy, float z) { return ClampToByte(xy + z * 1.088751); };
  R = sum(X * 3.240479f - Y * 1.53715f, -(Z * 0.498535f));
  G = sum(Y * 1.875992f - X * 0.969256f, Z * 0.041556f);
  B = sum(X * 0.055648f - Y * 0.204043f, Z * 1.057311f);
  return 1;
}

int CColorSpace::RGBtoYIQ(unsigned char R, unsigned char G, unsigned char B, unsigned char& Y,
                          unsigned char& I, unsigned char& Q) {
  Y = ClampToByte(R * 0.2992f + G * 0.5868f + B * 0.114f);
  I = ClampToByte(R * 0.596f - G * 0.2742f - B * 0.3219f + 128);
  Q = ClampToByte(R * 0.2109f - G * 0.5229f + B * 0.312f + 128);
  return 1;
}

int CColorSpace::YIQtoRGB(unsigned char Y, unsigned char I, unsigned char Q, unsigned char& R,
                          unsigned char& G, unsigned char& B) {
  const int i = I - 128, q = Q - 128;
  R = ClampToByte(i * 0.956f + Y + q * 0.621f);
  G = ClampToByte(Y - i * 0.273f - q * 0.647f);
  B = ClampToByte(Y - i * 1.104f + q * 1.701f);
  return 1;
}

int CColorSpace::RGBtoYUV(unsigned char R, unsigned char G, unsigned char B, unsigned char& Y,
                          unsigned char& U, unsigned char& V) {
  const int y = Truncate(R * 0.299f + G * 0.587f + B * 0.114f);
  Y = ClampToByte(y);
  U = ClampToByte((B - y) * 0.565f + 128);
  V = ClampToByte((R - y) * 0.713f + 128);
  return 1;
}

int CColorSpace::YUVtoRGB(unsigned char Y, unsigned char U, unsigned char V, unsigned char& R,
                          unsigned char& G, unsigned char& B) {
  const int u = U - 128, v = V - 128;
  R = ClampToByte(v * 1.403f + Y);
  G = ClampToByte(Y - u * 0.344f - v * 0.714f);
  B = ClampToByte(u * 1.77f + Y);
  return 1;
}
#endif

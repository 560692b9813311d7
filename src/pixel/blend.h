// The numbered blend family on single pixels, and its unnumbered relatives.
//
// Two families of blends exist. The one here computes in single precision, mostly with + 0.5 before
// it truncates, and divides by 255 or 127.5. The other is SFDSP's: integers or double precision,
// mostly without rounding, with shifts by 8 or the constant 0.0039215 in place of the division. The
// same name in both gives different bytes on many inputs:
//
//                               the one here                    SFDSP
//     255 with 255, multiplied  255                             254
//     16 with 15, screened      30                              31
//     dodge                     b x 255 / (255 - a)             a x 256 / (255 - b)
//     soft light                single precision, rounded       three truncated int divisions
//     normal                    by the source's alpha, rounded  by an argument, truncated
#pragma once

#include <algorithm>
#include <cstdint>

#include "pixel/truncate.h"
#include "tintwerk/effect.h"

namespace tintwerk {

/// The modes that are functions of a colour byte `a` of the base and the same byte `b` of the
/// source. Every `At` gives a value whose low byte is stored.
struct ScreenMode {
  static int At(int a, int b) {
    return static_cast<int>((a + b) - static_cast<float>(a * b) / 255.0f + 0.5f);
  }
};
struct SoftLightMode {
  static int At(int a, int b) {
    const float m = static_cast<float>(a * b) / 255.0f;
    const float t = (255 - static_cast<float>((255 - b) * (255 - a)) / 255.0f - m) *
                    static_cast<float>(a) / 255.0f;
    return static_cast<int>(t + m + 0.5f);
  }
};
struct MultiplyMode {
  static int At(int a, int b) {
    return static_cast<int>(static_cast<float>(a * b) / 255.0f + 0.5f);
  }
};
struct OverlayMode {  // at full opacity the two overlays are one
  static int At(int a, int b) {
    const float o = a >= 128 ? 255 - static_cast<float>((255 - b) * (255 - a)) / 127.5f
                             : static_cast<float>(a * b) / 127.5f;
    return static_cast<int>(o + 0.5f);
  }
};
struct ColorBurnMode {
  static int At(int a, int b) {
    const float v = 255 - static_cast<float>((255 - a) * 255) / static_cast<float>(std::max(b, 1));
    return b == 0 ? 0 : static_cast<int>(std::max(0.0f, v));
  }
};
struct ColorDodgeMode {
  static int At(int a, int b) {
    const float v = static_cast<float>(b * 255) / static_cast<float>(std::max(255 - a, 1));
    return a == 255 ? 255 : static_cast<int>(std::min(255.0f, v));
  }
};
struct ExclusionMode {
  static int At(int a, int b) {
    return static_cast<int>((a + b) - static_cast<float>(a * b) / 127.5f + 0.5f);
  }
};
struct DarkenMode {
  static int At(int a, int b) { return std::min(a, b); }
};
struct LightenMode {
  static int At(int a, int b) { return std::max(a, b); }
};
struct PinLightMode {
  static int At(int a, int b) {
    const int t = 2 * b;
    return a < t - 255 ? t - 255 : a > t ? t : a;
  }
};
struct LinearBurnMode {
  static int At(int a, int b) { return std::max(0, a + b - 255); }
};
struct LinearDodgeMode {
  static int At(int a, int b) { return std::min(255, a + b); }
};
struct LinearLightMode {
  static int At(int a, int b) {
    const int s = a + 2 * b;
    return b >= 128 ? std::min(255, s - 256) : std::max(0, s - 255);
  }
};
struct VividLightMode {
  static int At(int a, int b) {
    const float light = static_cast<float>(a * 255) / static_cast<float>(std::max(511 - 2 * b, 1));
    const float dark =
        255 - static_cast<float>((255 - a) * 255) / static_cast<float>(std::max(2 * b, 1));
    return b >= 128 ? static_cast<int>(std::min(255.0f, light))
           : b == 0 ? 0
                    : static_cast<int>(std::max(0.0f, dark));
  }
};

/// Rewrites the colour bytes of one base pixel by a mode.
template <class Mode>
void BlendChannels(unsigned char* base, const unsigned char* source) {
  for (int c = 0; c < 3; ++c) base[c] = static_cast<unsigned char>(Mode::At(base[c], source[c]));
}

inline void BlendScreen(unsigned char* base, const unsigned char* source) {
  BlendChannels<ScreenMode>(base, source);
}
inline void BlendSoftLight(unsigned char* base, const unsigned char* source) {
  BlendChannels<SoftLightMode>(base, source);
}
inline void BlendMultiply(unsigned char* base, const unsigned char* source) {
  BlendChannels<MultiplyMode>(base, source);
}

/// The source over the base at an opacity 0..1.
inline void BlendMix(unsigned char* base, const unsigned char* source, float opacity) {
  for (int c = 0; c < 3; ++c)
    base[c] = TruncateToByte(source[c] * opacity + base[c] * (1 - opacity) + 0.5f);
}
/// The source over the base by its alpha x 0.0039215.
inline void BlendNormal(unsigned char* base, const unsigned char* source) {
  BlendMix(base, source, source[3] * 0.0039215f);
}
/// The source over the base by its alpha / 255.
inline void BlendAlphaOver(unsigned char* base, const unsigned char* source) {
  BlendMix(base, source, source[3] / 255.0f);
}

/// One pixel by a mode 1..16; another mode changes nothing. Both pixels are four bytes: the base's
/// alpha is read and written back as it was.
void BlendPixel(unsigned char* base, const unsigned char* source, int mode);

/// A run of pixels by a mode 1..16, as BlendPixel on each.
void BlendRun(unsigned char* base, const unsigned char* source, std::int64_t count, int mode);

/// Hue and saturation of the source at the base's brightness, mixed in at an opacity, for a run of
/// pixels.
void BlendColorHSB(unsigned char* base, const unsigned char* source, std::int64_t count,
                   float opacity);
/// Hue and saturation of the source at the base's lightness, on the byte model, for a run of pixels.
void BlendHueSatHSL(unsigned char* base, const unsigned char* source, std::int64_t count);

/// Turns the base to one fixed brownish hue and saturation at its own lightness. The source is not
/// read.
void BlendFixedTint(unsigned char* base, const unsigned char* source, float opacity);
/// Gives the base the source's colour at the base's own luma of 30/59/11, clipped to what bytes
/// hold.
void BlendLumaColor(unsigned char* base, const unsigned char* source);
/// Soft light without rounding, in double precision.
void BlendSoftLightTrunc(unsigned char* base, const unsigned char* source);
/// Soft light in integers, mixed in at an opacity without rounding.
void BlendSoftLightOpacity(unsigned char* base, const unsigned char* source, float opacity);

}  // namespace tintwerk

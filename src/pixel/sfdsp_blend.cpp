// Blends of SFDSP.
#include <algorithm>

#include "pixel/truncate.h"
#include "tintwerk/sfdsp.h"

using tintwerk::TruncateToByte;

namespace {

constexpr double k = 0.0039215;  // stands for 1/255 in this class and is a little less

// Rewrites the colour bytes of the base by value = operation(a, b), whose low byte is stored.
template <class Operation>
void Blend(unsigned char* base, const unsigned char* source, const Operation& operation) {
  for (int c = 0; c < 3; ++c) {
    const int a = base[c], b = source[c];
    base[c] = static_cast<unsigned char>(operation(a, b));
  }
}

}  // namespace

void SFDSP::ColorBurnEx(unsigned char* base, const unsigned char* source) {
  Blend(base, source,
        [](int a, int b) { return b == 0 ? 0 : std::max((a - 255) * 255 / b + 255, 0); });
}

void SFDSP::ColorDodgeEx(unsigned char* base, const unsigned char* source) {
  Blend(base, source,
        [](int a, int b) { return b == 255 ? 255 : std::min(255, a * 256 / (255 - b)); });
}

void SFDSP::ColorHSBEx(unsigned char* base, const unsigned char* source, double opacity) {
  float hue, saturation, brightness;
  RGBtoHSB(source[2], source[1], source[0], hue, saturation, brightness);
  brightness = std::max({base[0], base[1], base[2]}) / 255.0f;
  unsigned char colour[3];
  HSBtoRGB(hue, saturation, brightness, colour[2], colour[1], colour[0]);
  Blend(base, colour,
        [=](int a, int c) { return TruncateToByte(a * (1 - opacity) + c * opacity); });
}

void SFDSP::CompositeColorEx(unsigned char* base, const unsigned char* source) {
  Blend(base, source, [](int a, int b) {
    return TruncateToByte(((b + 255) - ((255 - b) * (255 - a) + a * b) * k) * a * k);
  });
}

void SFDSP::CompositeColorEx(unsigned char* base, const unsigned char* source, double opacity) {
  Blend(base, source, [=](int a, int b) {
    const int scaled = TruncateToByte(a * opacity);
    const double m = (scaled * b) / 255.0;
    return TruncateToByte((255.0 - ((255 - scaled) * (255 - b)) / 255.0 - m) * scaled / 255.0 + m);
  });
}

void SFDSP::ExclusionEx(unsigned char* base, const unsigned char* source) {
  Blend(base, source, [](int a, int b) { return a - ((a * b) >> 7) + b; });
}

void SFDSP::ImageDarkenEx(unsigned char* base, const unsigned char* source) {
  Blend(base, source, [](int a, int b) { return std::min(a, b); });
}

void SFDSP::ImageLightenEx(unsigned char* base, const unsigned char* source) {
  Blend(base, source, [](int a, int b) { return std::max(a, b); });
}

void SFDSP::ImageSoftLightEx(unsigned char* base, const unsigned char* source) {
  CompositeColorEx(base, source);
}

void SFDSP::MultipleEx(unsigned char* base, const unsigned char* source) {
  Blend(base, source, [](int a, int b) { return TruncateToByte(a * b * k); });
}

void SFDSP::MultipleEx(unsigned char* base, const unsigned char* source, double opacity) {
  Blend(base, source,
        [=](int a, int b) { return TruncateToByte(b * opacity * a * k + (1 - opacity) * a); });
}

void SFDSP::NormalEx(unsigned char* base, const unsigned char* source, double opacity) {
  Blend(base, source,
        [=](int a, int b) { return TruncateToByte(a * (1 - opacity) + b * opacity); });
}

void SFDSP::OverlayEx(unsigned char* base, const unsigned char* source, double opacity) {
  Blend(base, source, [=](int a, int b) {
    const int v = a > 127 ? std::clamp(255 + (a - 255) * (255 - b) * 2 / 255, 0, 255)
                          : std::min(2 * a * b / 255, 255);
    return TruncateToByte(v * opacity + a * (1 - opacity));
  });
}

void SFDSP::PinLightEx(unsigned char* base, const unsigned char* source) {
  Blend(base, source, [](int a, int b) {
    const int t = 2 * b;
    return a < t - 255 ? t - 255 : std::min(a, t);
  });
}

void SFDSP::PinLightEx(unsigned char* base, const unsigned char* source, float opacity) {
  Blend(base, source, [=](int a, int b) -> int {
    const int t = 2 * b;
    if (a >= t - 255 && a <= t) return a;
    const int target = a < t - 255 ? t - 255 : t;
    return TruncateToByte(target * opacity + a * (1 - opacity));
  });
}

void SFDSP::ScreenEx(unsigned char* base, const unsigned char* source) {
  // A shift by 8 where a division by 255 would be exact.
  Blend(base, source, [](int a, int b) { return std::clamp(b - ((a * b) >> 8) + a, 0, 255); });
}

void SFDSP::SoftLightEx(unsigned char* base, const unsigned char* source) {
  Blend(base, source, [](int a, int b) {
    const int m = a * b / 255;
    const int s = (255 - b) * (255 - a) / 255;
    return m + (255 - s - m) * a / 255;
  });
}

void SFDSP::SoftLightEx(unsigned char* base, const unsigned char* source, double opacity) {
  Blend(base, source, [=](int a, int b) {
    const double m = a * b * k;
    const double v = (255.0 - (255 - b) * (255 - a) * k - m) * a * k + m;
    return TruncateToByte(v * opacity + a * (1 - opacity));
  });
}

void SFDSP::SetGrayScaleEx(unsigned char* pixel) {
  pixel[0] = pixel[1] = pixel[2] = static_cast<unsigned char>(SetGrayScaleEx_Faster(pixel));
}

int SFDSP::SetGrayScaleEx_Faster(const unsigned char* pixel) {
  return (pixel[2] * 306 + pixel[1] * 601 + pixel[0] * 117) >> 10;
}

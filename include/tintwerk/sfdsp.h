// Single-pixel blends, colour conversions and operations on skin, planes and whole images.
#pragma once

#include <cstdint>

#include "tintwerk/export.h"

/// The second of the two families of pixel operations, all static.
///
/// Its blends (the names in `Ex`) rewrite the colour bytes of one base pixel from a source pixel;
/// alpha of neither is read or written. They compute in integers or double precision, mostly
/// truncate, and stand 0.0039215 in for 1/255, so results differ from the numbered blend modes
/// (CEffect::ChannelBlend_X), which compute in single precision and mostly round. `a` is a colour
/// byte of the base and `b` the same of the source; opacities run 0..1, and are not clamped: beyond
/// that the low byte of the result is stored.
///
/// Pixel pointers must not be null; operations on whole images give up quietly on a null image.
class TINTWERK_API SFDSP {
 public:
  SFDSP() = default;
  SFDSP(const SFDSP&) {}
  virtual ~SFDSP() = default;
  SFDSP& operator=(const SFDSP&) { return *this; }

  // Blends.

  static void ColorBurnEx(unsigned char* base, const unsigned char* source);
  /// Scales by 256 / (255 - b): brighter by a hair than a dodge by 255.
  static void ColorDodgeEx(unsigned char* base, const unsigned char* source);
  /// Hue and saturation of the source at the base's brightness.
  static void ColorHSBEx(unsigned char* base, const unsigned char* source, double opacity);
  /// Soft light.
  static void CompositeColorEx(unsigned char* base, const unsigned char* source);
  /// Soft light of a base that is scaled by the opacity first; 0 gives black, not the base.
  static void CompositeColorEx(unsigned char* base, const unsigned char* source, double opacity);
  static void ExclusionEx(unsigned char* base, const unsigned char* source);
  static void ImageDarkenEx(unsigned char* base, const unsigned char* source);
  static void ImageLightenEx(unsigned char* base, const unsigned char* source);
  /// The same as CompositeColorEx without an opacity.
  static void ImageSoftLightEx(unsigned char* base, const unsigned char* source);
  static void MultipleEx(unsigned char* base, const unsigned char* source);
  static void MultipleEx(unsigned char* base, const unsigned char* source, double opacity);
  static void NormalEx(unsigned char* base, const unsigned char* source, double opacity);
  static void OverlayEx(unsigned char* base, const unsigned char* source, double opacity);
  static void PinLightEx(unsigned char* base, const unsigned char* source);
  static void PinLightEx(unsigned char* base, const unsigned char* source, float opacity);
  static void ScreenEx(unsigned char* base, const unsigned char* source);
  static void SoftLightEx(unsigned char* base, const unsigned char* source);
  static void SoftLightEx(unsigned char* base, const unsigned char* source, double opacity);

  /// Makes a pixel grey by its luma, (306 R + 601 G + 117 B) / 1024 truncated.
  static void SetGrayScaleEx(unsigned char* pixel);
  /// That luma, 0..255, without writing it.
  static int SetGrayScaleEx_Faster(const unsigned char* pixel);

  // Colour conversions; CColorSpace has others of the same names.

  /// @param R,G,B 0..255
  /// @param H degrees, above 0 to 360 for colours and exactly 0 for greys; pure red has 360
  /// @param S,B   0..1
  static void RGBtoHSB(int R, int G, int B, float& H, float& S, float& brightness);
  /// The inverse. H = 0 is a grey whatever S is.
  static void HSBtoRGB(float H, float S, float brightness, unsigned char& R, unsigned char& G,
                       unsigned char& B);
  /// All components 0..255. S is truncated, where CColorSpace rounds.
  static void RGBtoHSL(unsigned char R, unsigned char G, unsigned char B, unsigned char& H,
                       unsigned char& S, unsigned char& L);
  static void HSLtoRGB(unsigned char H, unsigned char S, unsigned char L, unsigned char& R,
                       unsigned char& G, unsigned char& B);

  // Tone curves.

  /// The smooth curve through (0, 0), (x, y) and (255, 255).
  /// @param table 256 bytes of the caller's; null does nothing
  /// @param x,y   0..255; values outside are clamped
  static void GeneCurveMiddle(unsigned char* table, int x, int y);
  /// Sends blue, green and red of every pixel through one table; alpha stays.
  /// @param table 256 bytes; null does nothing
  static void Lut(unsigned char* pixels, const unsigned char* table, int width, int height);

  // Blurs and sharpening. Those on pixels work blue, green and red; a plane is one byte a pixel.

  /// The stack blur of CPixelProcess without reports.
  /// @param radius pixels; below 1 changes nothing; the largest that counts is 2895
  static void stackBlur(unsigned char* pixels, int width, int height, int radius);
  /// What the blur takes away: source - blurred + 128. A radius below 1 changes nothing.
  static void stackBlurAndHighPass(unsigned char* pixels, int width, int height, int radius);
  /// Blurs the red channel alone.
  static void stackBlurRedChannel(unsigned char* pixels, int width, int height, int radius);
  static void BlurOneChannel(unsigned char* plane, int width, int height, int radius);
  /// The high pass of a plane through a steep curve that pushes detail to black or white. Radius
  /// 0 leaves no detail, 128 everywhere; one below 0 changes nothing.
  static void BlurChannelAndHighLight(unsigned char* plane, int width, int height, int radius);
  /// Scales a radius that was chosen for an image of 640 x 480 by the pixel count, never down.
  static int GetStackBlurRadius(int radius, int width, int height);
  /// Sharpens by the difference to a blurred image of the caller's.
  /// @param amount strength, 1 doubles the difference
  static void Sharp(unsigned char* pixels, const unsigned char* blurred, int width, int height,
                    float amount);

  // Resampling.

  /// Replaces `*pixels`, an array, by the image at another size, nearest pixel; the old array is
  /// deleted. A new size of 0 or equal to the old one changes nothing.
  static void RampleBit(int newWidth, int newHeight, unsigned char** pixels, int width,
                        std::int32_t height, int bytesPerPixel);
  /// Scales bilinearly into a buffer of the caller's.
  /// @param channels 1 for planes; 4 for pixels, of which alpha stays as the target has it
  /// @return false with nothing written for equal sizes, a new size of 0, a null buffer or other
  /// channels
  static bool BilinearReSample(const unsigned char* source, int width, int height,
                               unsigned char* target, int newWidth, int newHeight, int channels);

  // Point adjustments.

  /// Linear brightness and contrast about the middle; both 0 change nothing.
  /// @param brightness levels that are added
  /// @param contrast   percent, -100 gives grey
  static void Light(unsigned char* pixels, int width, int height, std::int32_t brightness,
                    std::int32_t contrast);
  /// Scales the distance from grey, in integers. @param amount percent
  static void Saturateconst_Faster(unsigned char* pixels, std::int32_t width, std::int32_t height,
                                   std::int32_t amount);
  /// Scales the distance from grey within a rectangle of an image, in double precision.
  /// @param imageWidth pixels of a row of the image. The rectangle must lie inside it.
  /// @param amount     percent; a positive one counts triple
  static void Saturateconst_Faster(unsigned char* pixels, std::int32_t imageWidth,
                                   std::int32_t left, std::int32_t top, std::int32_t width,
                                   std::int32_t height, std::int32_t amount);
  /// Light, then Saturateconst_Faster in integers.
  static void BrightContrastSaturation(unsigned char* pixels, int width, int height, int brightness,
                                       int contrast, int saturation);
  /// Shifts hue, saturation and brightness on the model of RGBtoHSB; none wraps round.
  /// @param hue degrees. @param saturation,brightness percent
  static void HueSaturationBright(unsigned char* pixels, int width, int height, int hue,
                                  int saturation, int brightness);

  // Selective colour, one colour family and one pixel at a time. The families are those of
  // CSelectiveColor, which works whole images and rounds in another way. The caller sorts the three
  // channels, sets delta to 0, calls the families that it wants and takes delta from the channels,
  // saturated to 0..255.

  /// Folds a shift of black into those of cyan, magenta and yellow, as the families want them.
  /// @param cyan,magenta,yellow,black percent, -100..100; the first three come back as -100..300
  static void ZVSelectiveColorInit(int& cyan, int& magenta, int& yellow, int black);
  /// The same for one shift.
  static void __CalcSelectiveValue(int& value, int black);

  /// If the pixel is one of the reds, adds what each ink takes away from its channel.
  /// @param pixel        is only read; null does nothing
  /// @param min,mid,max  the pixel's channels, sorted, 0..255; they say how strongly the pixel
  /// belongs
  /// @param delta        blue, green and red; null does nothing
  /// @param cyan,magenta,yellow folded shifts, -100..300; positive ones take from red, green and
  /// blue
  static void ZVSelectiveColorRed(const unsigned char* pixel, int min, int mid, int max, int* delta,
                                  int cyan, int magenta, int yellow);
  static void ZVSelectiveColorYellow(const unsigned char* pixel, int min, int mid, int max,
                                     int* delta, int cyan, int magenta, int yellow);
  static void ZVSelectiveColorGreen(const unsigned char* pixel, int min, int mid, int max,
                                    int* delta, int cyan, int magenta, int yellow);
  static void ZVSelectiveColorCyan(const unsigned char* pixel, int min, int mid, int max,
                                   int* delta, int cyan, int magenta, int yellow);
  static void ZVSelectiveColorBlue(const unsigned char* pixel, int min, int mid, int max,
                                   int* delta, int cyan, int magenta, int yellow);
  static void ZVSelectiveColorMagenta(const unsigned char* pixel, int min, int mid, int max,
                                      int* delta, int cyan, int magenta, int yellow);
  static void ZVSelectiveColorWhite(const unsigned char* pixel, int min, int mid, int max,
                                    int* delta, int cyan, int magenta, int yellow);
  /// The neutrals: here every pixel without a channel at 0 or 255.
  static void ZVSelectiveColorGray(const unsigned char* pixel, int min, int mid, int max,
                                   int* delta, int cyan, int magenta, int yellow);
  static void ZVSelectiveColorBlack(const unsigned char* pixel, int min, int mid, int max,
                                    int* delta, int cyan, int magenta, int yellow);
};

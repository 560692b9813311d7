// Single-pixel blends, colour conversions and operations on skin, planes and whole images.
#pragma once

#include <cstdint>

#include "tintwerk/export.h"

/// The second of the two families of pixel operations, all static.
///
/// Its blends (the names in `Ex`) rewrite the colour bytes of one base pixel from a source pixel;
/// neither alpha is read or written. They compute in integers or double precision, mostly truncate,
/// and use 0.0039215 for 1/255. So results differ from those of the numbered blend modes
/// (CEffect::ChannelBlend_X), which compute in single precision and mostly round. `a` is a colour
/// byte of the base and `b` that of the source. Opacities are 0..1 and are not clamped: outside, the
/// low byte of the result is stored.
///
/// Pixel pointers must not be null. Operations on whole images do nothing with a null image.
class TINTWERK_API SFDSP {
 public:
  SFDSP() = default;
  SFDSP(const SFDSP&) {}
  virtual ~SFDSP() = default;
  SFDSP& operator=(const SFDSP&) { return *this; }

  // Blends.

  static void ColorBurnEx(unsigned char* base, const unsigned char* source);
  /// Scales by 256 / (255 - b), a little brighter than the usual 255 / (255 - b).
  static void ColorDodgeEx(unsigned char* base, const unsigned char* source);
  /// Hue and saturation of the source at the base's brightness.
  static void ColorHSBEx(unsigned char* base, const unsigned char* source, double opacity);
  /// Soft light.
  static void CompositeColorEx(unsigned char* base, const unsigned char* source);
  /// Soft light on a base that is first scaled by the opacity, so 0 gives black, not the base.
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

  // Colour conversions. Those of the same names in CColorSpace round differently.

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
  /// @param table the caller's 256 bytes; null does nothing
  /// @param x,y   0..255; values outside are clamped
  static void GeneCurveMiddle(unsigned char* table, int x, int y);
  /// Sends blue, green and red of every pixel through one table; alpha stays.
  /// @param table 256 bytes; null does nothing
  static void Lut(unsigned char* pixels, const unsigned char* table, int width, int height);

  // Blurs and sharpening. Those of pixels leave alpha; a plane is one byte per pixel.

  /// The stack blur of CPixelProcess without reports.
  /// @param radius pixels; below 1 changes nothing; the largest that counts is 2895
  static void stackBlur(unsigned char* pixels, int width, int height, int radius);
  /// The detail that the blur removes: source - blurred + 128. A radius below 1 changes nothing.
  static void stackBlurAndHighPass(unsigned char* pixels, int width, int height, int radius);
  /// Blurs the red channel alone.
  static void stackBlurRedChannel(unsigned char* pixels, int width, int height, int radius);
  static void BlurOneChannel(unsigned char* plane, int width, int height, int radius);
  /// The high pass of a plane, then a steep curve that pushes detail to black or white. Radius 0
  /// leaves no detail but 128 everywhere; one below 0 changes nothing.
  static void BlurChannelAndHighLight(unsigned char* plane, int width, int height, int radius);
  /// Scales a radius meant for an image of 640 x 480 to the pixel count of another, never down.
  static int GetStackBlurRadius(int radius, int width, int height);
  /// Sharpens by the difference to the caller's blurred image.
  /// @param amount strength; 1 doubles the difference
  static void Sharp(unsigned char* pixels, const unsigned char* blurred, int width, int height,
                    float amount);

  // Resampling.

  /// Replaces the array `*pixels` by the image at another size, by the nearest pixel; the old array
  /// is deleted. A new size of 0 or equal to the old one changes nothing.
  static void RampleBit(int newWidth, int newHeight, unsigned char** pixels, int width,
                        std::int32_t height, int bytesPerPixel);
  /// Scales bilinearly into the caller's buffer.
  /// @param channels 1 for planes, 4 for pixels; alpha of the target stays
  /// @return false, with nothing written, for equal sizes, a new size of 0, a null buffer or another
  ///         number of channels
  static bool BilinearReSample(const unsigned char* source, int width, int height,
                               unsigned char* target, int newWidth, int newHeight, int channels);

  // Point adjustments.

  /// Linear brightness and contrast about the middle; both 0 change nothing.
  /// @param brightness levels to add
  /// @param contrast   percent, -100 gives grey
  static void Light(unsigned char* pixels, int width, int height, std::int32_t brightness,
                    std::int32_t contrast);
  /// Scales the distance from grey, in integers. @param amount percent
  static void Saturateconst_Faster(unsigned char* pixels, std::int32_t width, std::int32_t height,
                                   std::int32_t amount);
  /// Scales the distance from grey within a rectangle of an image, in double precision.
  /// @param imageWidth pixels of a row of the image; the rectangle must lie inside the image
  /// @param amount     percent; a positive one counts triple
  static void Saturateconst_Faster(unsigned char* pixels, std::int32_t imageWidth,
                                   std::int32_t left, std::int32_t top, std::int32_t width,
                                   std::int32_t height, std::int32_t amount);
  /// Light, then Saturateconst_Faster in integers.
  static void BrightContrastSaturation(unsigned char* pixels, int width, int height, int brightness,
                                       int contrast, int saturation);
  /// Shifts hue, saturation and brightness in the model of RGBtoHSB; none wraps around.
  /// @param hue degrees. @param saturation,brightness percent
  static void HueSaturationBright(unsigned char* pixels, int width, int height, int hue,
                                  int saturation, int brightness);

  // Skin. A pixel's share of skin is decided by its red and blue alone.

  /// Estimates the skin colour of a picture: the mean of what is reddish enough for its brightness.
  /// Nothing that is, or no image, gives (160, 130, 126).
  /// @param red,green,blue receive the colour, 0..255
  /// @param pixels         are only read
  /// @param useFaceRect    looks for skin just inside the face's rectangle, pixels; it must end
  /// before the image's last column and row, or the whole image counts
  static void InitAvgFaceSkin(int& red, int& green, int& blue, const unsigned char* pixels,
                              int width, int height, bool useFaceRect, int faceX, int faceY,
                              int faceWidth, int faceHeight);
  /// Makes a soft-edged mask of what comes near the skin colour of InitAvgFaceSkin.
  /// @param mask receives a byte a pixel, 0 no skin to 255 skin; null does nothing. It stays
  /// hard-edged if allocation fails
  static void CreateSkinMask(const unsigned char* pixels, int width, int height,
                             unsigned char* mask, bool useFaceRect, int faceX, int faceY,
                             int faceWidth, int faceHeight);
  /// The mean colour of a rectangle, truncated. One that reaches the image's last column or row, or
  /// beyond, stops before it; one that starts outside or has no pixels changes nothing.
  static void SkinMiddleColor(const unsigned char* pixels, int width, int height, int x, int y,
                              int rectWidth, int rectHeight, unsigned char& red,
                              unsigned char& green, unsigned char& blue);

  // Byte planes, one byte a pixel without gaps, and tints. A null pointer or a size below 1 does
  // nothing.

  /// Splits an image into lightness and two colour opponents, scaled CIE Lab in double precision:
  /// L 0..255 for 0..100, a and b 128 + 1.27 x their value, limited to 0..255. Not quite the
  /// inverse of RecomposeFromLab.
  /// @param stride bytes from a row of `pixels` to the next, at least 4 x width
  /// @param planeL,planeA,planeB width x height bytes each
  static void DecomposeToLab(const unsigned char* pixels, int width, int height, int stride,
                             unsigned char* planeL, unsigned char* planeA, unsigned char* planeB);
  /// Joins the planes again; colours that the image cannot hold are limited. Alpha stays.
  static void RecomposeFromLab(unsigned char* pixels, int width, int height, int stride,
                               const unsigned char* planeL, const unsigned char* planeA,
                               const unsigned char* planeB);
  /// Splits an image into luma and two colour differences of analogue video, U and V round 128.
  /// @param yuv 3 x width x height bytes: the whole plane of Y, then U, then V, all in full
  /// resolution
  static void rgb_2_yuv(const unsigned char* pixels, int width, int height, unsigned char* yuv);
  /// Joins them again, limited to 0..255. Alpha stays.
  static void yuv_2_rgb(unsigned char* pixels, int width, int height, const unsigned char* yuv);

  /// Smooths a plane and keeps its edges: the guided filter of He, Sun and Tang with the plane as
  /// its own guide, in fixed point. The time does not depend on the radius. Without memory the
  /// plane stays as it is.
  /// @param radius  half the window's width, pixels; windows are cut at the plane's edges; below 1
  /// changes nothing
  /// @param epsilon variance, squared levels, up to which detail counts as noise: the larger, the
  /// smoother; below 0 counts as 0, which changes next to nothing
  static void GuideFilter(unsigned char* plane, int width, int height, int radius, int epsilon);

  /// Lifts red and lowers blue in the middle tones. Alpha stays.
  /// @param strength 0..1, the share of the tinted image, not clamped: beyond that the low byte of
  /// the result is stored
  static void WarmFilter(unsigned char* pixels, int width, int height, float strength);
  /// Lifts blue and lowers red.
  static void ColdFilter(unsigned char* pixels, int width, int height, float strength);

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

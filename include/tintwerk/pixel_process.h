// Operations on whole images and planes.
#pragma once

#include <cstdint>

#include "tintwerk/export.h"
#include "tintwerk/platform.h"
#include "tintwerk/progress.h"

/// Image operations, all static but SetHSL.
///
/// Images are flat buffers of 4-byte pixels, blue, green, red, alpha; planes are buffers of one
/// byte a pixel; both row by row without gaps. They are worked in place, alpha stays, and sizes
/// below 1 are images without pixels, unless an operation says otherwise. A null image gives 0,
/// false or null, or does nothing where there is no result. So does an image whose pixel count no
/// int holds, and memory that could not be had, with the image as it was.
///
/// `progress` may be null; `progressLow` and `progressHigh` span the part of the host's bar that
/// belongs to the call. Operations that report do so about every twentieth of the rows. Where a
/// host's KeepGoing ends one early, the rows below stay as they were.
class TINTWERK_API CPixelProcess {
 public:
  CPixelProcess() = default;
  CPixelProcess(const CPixelProcess&) {}
  virtual ~CPixelProcess() = default;
  CPixelProcess& operator=(const CPixelProcess&) { return *this; }

  // Blurs.

  /// Stack blur: a triangular window, each axis truncated to bytes; about as smooth as a Gaussian
  /// and of the same cost at any radius. Reports on 0..100 whatever the span is.
  /// @param radius pixels; below 1 changes nothing; the largest that counts is 2895
  /// @return true, also after a stop: in the row pass it leaves the columns dark that the column
  /// pass still writes
  ///         (the first), in the column pass the columns to the right unblurred
  static bool stackBlur(unsigned char* pixels, int width, int height, int radius,
                        CObjProgress* progress, int progressLow, int progressHigh);
  /// The same on a plane, without reports.
  static void BlurOneChannel(unsigned char* plane, int width, int height, int radius);

  /// Gaussian blur by Deriche's fourth-order recursive filter: of the same cost at any radius. The
  /// Gaussian has fallen to 1/255 at radius + 1.
  /// @param horizontalRadius,verticalRadius pixels; below 2 counts as 2
  /// @return 1; 0 after a stop in the first pass, which works the columns
  static int GaussIIRBlurImage(unsigned char* pixels, int width, int height, int horizontalRadius,
                               int verticalRadius, CObjProgress* progress, int progressLow,
                               int progressHigh);
  /// The same on a plane; each of its two passes reports on the lower half of the span.
  static int GaussIIRBlurWithOne(unsigned char* plane, int width, int height, int horizontalRadius,
                                 int verticalRadius, CObjProgress* progress, int progressLow,
                                 int progressHigh);

  // Running maximum (van Herk/Gil-Werman), convolution, sharpening.

  // A window that starts within `radius` of its line's end stops with the block of 2 radius + 1
  // samples that it starts in: the last samples are the maximum of what their block holds before
  // them, which need not be a dilation to the letter.

  /// The rows of an image through the running maximum over x - radius..x + radius.
  /// @return a new buffer of three bytes a pixel, blue, green, red, that the caller deletes as an
  /// array
  static unsigned char* BoxHorizonPath(const unsigned char* pixels, int radius, int width,
                                       int height);
  /// The columns of such a three-byte buffer, in place.
  static void BoxVerticalPath(unsigned char* buffer, int radius, int width, int height);
  /// Both: a dilation by a square. @return as BoxHorizonPath
  static unsigned char* BoxMaxFilters(const unsigned char* pixels, int width, int height,
                                      int radius);
  /// A dilation of one byte of every pixel.
  /// @param channel 0..3
  /// @return a new plane that the caller deletes as an array
  static unsigned char* BoxMaxFilter(const unsigned char* pixels, int width, int height, int radius,
                                     int channel);

  /// Convolution with a square kernel of integers. Where taps fall off the image, those in reach
  /// make up for them in proportion.
  /// @param kernel  size x size weights, top row first; null changes nothing
  /// @param size    side; an even one has its centre at size / 2; below 1 changes nothing
  /// @param divisor 0 stands for no division
  /// @param offset  is added to each result before it is clamped
  static void Filter(unsigned char* pixels, int width, int height, const std::int32_t* kernel,
                     std::int32_t size, std::int32_t divisor, std::int32_t offset,
                     CObjProgress* progress, int progressLow, int progressHigh);

  /// Unsharp mask whose blur can be kept: a second call with the same `*blurred` only sharpens, so
  /// that amounts can be tried fast.
  /// Sharpening reports without asking, also after the blur was stopped.
  /// @param radius  sigma of the Gaussian, pixels, up to 50; below 0.1 nothing is blurred
  /// @param amount  strength, 1 doubles differences to the blur
  /// @param blurred the blurred image: made if `*blurred` is null, else used as it is; released
  /// with FreeUsmSharp
  /// @return pixels; null for null pixels or blurred
  static unsigned char* UsmSharp(unsigned char* pixels, int width, int height, float radius,
                                 float amount, unsigned char** blurred, CObjProgress* progress,
                                 int progressLow, int progressHigh);
  /// Releases what UsmSharp keeps. @return 1; 0 for null
  static int FreeUsmSharp(unsigned char* blurred);

  // Resampling and rotation.

  /// The one value that is passed; sampling is bilinear whatever it holds.
  enum InterpolationMethod { InterpolationBilinear = 2 };
  /// What a coordinate outside the image means.
  enum OverflowMethod { OverflowWrap = 4, OverflowClamp = 5, OverflowMirror = 6 };

  /// Scales a picture to another size: bicubic (Catmull-Rom), low-pass filtered where it shrinks,
  /// with mirrored edges. Alpha is scaled as coverage, so transparent pixels bleed no colour into
  /// their neighbours. At equal size the result is the source's exact bytes.
  /// @param bitmap a `Gdiplus::Bitmap`; one without pixels counts as an all-zero picture
  /// @param newWidth,newHeight pixels
  /// @return a new `Gdiplus::Bitmap` that the caller deletes; null for a null bitmap or if memory
  /// could not be had. A
  ///         size below 1 gives one without pixels.
  static void* RampleBit(void* bitmap, int newWidth, int newHeight);
  /// Replaces `*pixels`, an array of 4-byte pixels, by the image at another size; the old array is
  /// deleted. A new size of 0 or equal to the old one changes nothing; a negative one gives an
  /// empty array.
  /// @param mode 1 nearest; 2 cubic B-spline, soft, alpha not filtered; else bilinear
  static void RampleBit(int newWidth, int newHeight, int mode, unsigned char** pixels, int width,
                        std::int32_t height);
  /// The same by the nearest pixel, for pixels of any size.
  /// @return 1 if it was resampled, 0 if it was left as it was
  static int RampleBit(int newWidth, int newHeight, unsigned char** pixels, int width,
                       std::int32_t height, int bytesPerPixel);
  /// Turns a picture about its centre within its own frame, bilinearly.
  /// @param bitmap   a `Gdiplus::Bitmap` of width x height
  /// @param angle    degrees, clockwise
  /// @param keepSize true
  /// @return a new `Gdiplus::Bitmap` that the caller deletes; null for a null bitmap, one that
  /// cannot be locked, or `keepSize` false
  static void* Rotate2(void* bitmap, int width, int height, float angle, InterpolationMethod method,
                       OverflowMethod overflow, bool, bool keepSize);
  /// A rectangle of a picture as a picture of its own.
  /// @return a new `Gdiplus::Bitmap` that the caller deletes; null for a null bitmap or a rectangle
  /// that leaves it
  static void* Clone(void* bitmap, int left, int top, int width, int height);
  /// The cubic B-spline; 0 beyond -2..2.
  static float KernelBSpline(float x);
  /// Copies one pixel of `bytes` bytes.
  static void CopyPixel(void* target, const void* source, int bytes);

  // Automatic tone.

  /// Shifts hue and scales saturation.
  /// @param hue,saturation 0..200, 100 neutral; clamped
  static int AutoColor(unsigned char* pixels, int width, int height, int hue, int saturation,
                       CObjProgress* progress, int progressLow, int progressHigh);
  /// Stretches each channel so that 0.6 percent of the pixels clip at each end.
  /// @param mode 1; any other maps every channel onto itself
  static int AutoColorLevel(unsigned char* pixels, int width, int height, int mode,
                            CObjProgress* progress, int progressLow, int progressHigh);
  /// Stretches each channel from its smallest..largest value to 0..255. @return 0 also after a stop
  static int AutoConstrast(unsigned char* pixels, int width, int height, CObjProgress* progress,
                           int progressLow, int progressHigh);
  /// Takes the cast off what is nearly white.
  /// @param threshold how bright and how neutral a pixel must be to count: luma less both chroma
  /// amounts, 0..255
  /// @return 0 also if no pixel counts
  static int AutoWhiteBalance(unsigned char* pixels, int width, int height, int threshold,
                              CObjProgress* progress, int progressLow, int progressHigh);
  /// Counts the values of an image.
  /// @param red,green,blue,gray arrays of 256 counters, any of them null
  /// @param colorSpace what the pixels hold, converted to RGB first: 1 HSL, 2 YUV, 3 YIQ, 4 XYZ;
  /// else RGB
  /// @return the largest counter; 0 also after a stop. Reports take the first tenth of the span.
  static std::int32_t Histogram(const unsigned char* pixels, int width, int height,
                                std::int32_t* red, std::int32_t* green, std::int32_t* blue,
                                std::int32_t* gray, std::int32_t colorSpace, CObjProgress* progress,
                                int progressLow, int progressHigh);

  // Point adjustments.

  /// Channels of a pixel, as a bit set.
  enum IMAGE_CHANNEL { ChannelRed = 1, ChannelGreen = 2, ChannelBlue = 4 };
  /// Where in the tones CColorBalance acts.
  enum TONE_REGION { ToneShadow = 0, ToneMidtone = 1, ToneHighlight = 2 };

  /// Brightens or darkens, gently toward the far end of the scale.
  /// @param brightness 0..200, 100 neutral; clamped
  static int PixelBrightness(unsigned char* pixels, int width, int height, int brightness,
                             CObjProgress* progress, int progressLow, int progressHigh);
  /// Linear brightness and contrast about the middle.
  /// @param brightness levels that are added
  /// @param contrast   percent, -100 gives grey
  static int Light(unsigned char* pixels, int width, int height, std::int32_t brightness,
                   std::int32_t contrast, CObjProgress* progress, int progressLow,
                   int progressHigh);
  /// Brightens by a logarithmic curve that is smoothed as an image of 16 x 16.
  /// @return 0 also for amount 0 and after a stop
  static int LightNew(unsigned char* pixels, int width, int height, std::int32_t amount, int radius,
                      CObjProgress* progress, int progressLow, int progressHigh);
  /// Exposes like film, 1 - exp(-value x exposure). @return 0 also after a stop
  static int ExposureFilter(unsigned char* pixels, int width, int height, float exposure,
                            CObjProgress* progress, int progressLow, int progressHigh);
  /// Changes saturation.
  /// @param amount levels of HSL saturation in mode 1, percent of the chroma in mode 2
  /// @param mode   1 HSL, 2 YUV; another gives 0
  static int Saturateconst(unsigned char* pixels, int width, int height, std::int32_t amount,
                           std::int32_t mode, CObjProgress* progress, int progressLow,
                           int progressHigh);
  /// Scales the distance from grey.
  /// @param amount percent; a positive one counts triple
  static void Saturateconst_Faster(unsigned char* pixels, std::int32_t width, std::int32_t height,
                                   std::int32_t amount);
  /// Shifts hue. @param hue -128..128 of a circle of 256; clamped. @return 0 also after a stop
  static int SetHue(unsigned char* pixels, int width, int height, int hue, CObjProgress* progress,
                    int progressLow, int progressHigh);
  /// Shifts hue, saturation and lightness; the last two wrap round. @return 0 also after a stop
  int SetHSL(unsigned char* pixels, int width, int height, int hue, int saturation, int lightness,
             CObjProgress* progress, int progressLow, int progressHigh);
  /// Shifts the colour of shadows, midtones or highlights.
  /// @param preserveLuminosity 1 keeps every pixel's lightness
  /// @param region             another value gives 0
  /// @param red,green,blue     -100..100
  static int CColorBalance(int preserveLuminosity, TONE_REGION region, int red, int green, int blue,
                           unsigned char* pixels, int width, int height, CObjProgress* progress,
                           int progressLow, int progressHigh);
  /// CColorBalance of the shadows without keeping lightness.
  static int SetColor(unsigned char* pixels, int width, int height, int red, int green, int blue,
                      CObjProgress* progress, int progressLow, int progressHigh);
  /// @param gamma above 1 brightens; 0 and below give 0
  static int Istone_Gamma(unsigned char* pixels, int width, int height, double gamma,
                          IMAGE_CHANNEL channels, CObjProgress* progress, int progressLow,
                          int progressHigh);
  /// @param levels of each channel, from 2 on; fewer give 0
  static int Istone_Posterize(unsigned char* pixels, int width, int height, int levels,
                              IMAGE_CHANNEL channels, CObjProgress* progress, int progressLow,
                              int progressHigh);
  /// Adds to each channel. @param red,green,blue levels, signed
  static int Istone_AdjustRGB(unsigned char* pixels, int width, int height, int red, int green,
                              int blue, CObjProgress* progress, int progressLow, int progressHigh);
  /// Adds to each channel. @param red,green,blue levels
  static int ShiftRGB(unsigned char* pixels, int width, int height, unsigned char red,
                      unsigned char green, unsigned char blue, CObjProgress* progress,
                      int progressLow, int progressHigh);
  /// The same on one pixel.
  static void ShiftRGBEx(unsigned char* pixel, unsigned char red, unsigned char green,
                         unsigned char blue);
  /// White where the luma is above a level, else black. @param level 0..255; clamped
  static int Threshold(unsigned char* pixels, int width, int height, int level,
                       CObjProgress* progress, int progressLow, int progressHigh);
  static int Negative(unsigned char* pixels, int width, int height, CObjProgress* progress,
                      int progressLow, int progressHigh);
  /// Luma (306 R + 601 G + 117 B) / 1024 in all channels; SetGrayScale is the same.
  static int GrayScale(unsigned char* pixels, int width, int height, CObjProgress* progress,
                       int progressLow, int progressHigh);
  static int SetGrayScale(unsigned char* pixels, int width, int height, CObjProgress* progress,
                          int progressLow, int progressHigh);
  /// The same on one pixel. The second returns 1.
  static void GrayScaleEx(unsigned char* pixel);
  static int SetGrayScaleEx(unsigned char* pixel);
  /// Sends blue, green and red of every pixel through one table.
  /// @param table 256 bytes; null does nothing
  static void Lut(unsigned char* pixels, int width, int height, const unsigned char* table,
                  CObjProgress* progress, int progressLow, int progressHigh);
  /// Converts every pixel between RGB and another model: 0 RGB, 1 HSL, 2 YUV, 3 YIQ, 4 XYZ. The
  /// model's components lie in red, green and blue in their order.
  /// @return 0 also for a pair without RGB, or of equal models
  static int ConvertColorSpace(unsigned char* pixels, int width, int height, std::int32_t to,
                               std::int32_t from, CObjProgress* progress, int progressLow,
                               int progressHigh);
  /// Fills a round mask that grows from its centre.
  /// @param mask   2 x radius columns and rows; bytes outside the circle stay
  /// @param inner  radius at which the mask has reached 128
  static int CreateArray(unsigned char* mask, std::int32_t radius, std::int32_t inner);
  /// A colour look: a contrast curve and one colour axis of Lab tied to the other.
  static int ABaoColor(unsigned char* pixels, int width, int height, CObjProgress* progress,
                       int progressLow, int progressHigh);
  /// Gives the image one colour at each pixel's own luma.
  static bool Color_Channel_Composite(unsigned char* pixels, int width, int height,
                                      unsigned char red, unsigned char green, unsigned char blue,
                                      CObjProgress* progress, int progressLow, int progressHigh);
  /// Mixes the image half and half with one colour.
  static bool Normal_Channel_Composite(unsigned char* pixels, int width, int height,
                                       unsigned char red, unsigned char green, unsigned char blue,
                                       CObjProgress* progress, int progressLow, int progressHigh);
  /// Overlay with one colour, mixed half and half with the image.
  static bool Overlay_Channel_Composite(unsigned char* pixels, int width, int height,
                                        unsigned char red, unsigned char green, unsigned char blue,
                                        CObjProgress* progress, int progressLow, int progressHigh);
  /// Soft light with one colour.
  static int CompositeColor(unsigned char* pixels, int width, int height, unsigned char red,
                            unsigned char green, unsigned char blue, CObjProgress* progress,
                            int progressLow, int progressHigh);
  /// Multiplies with a source; where that is opaque it replaces the image. Alpha becomes 255.
  static int Multiple(unsigned char* pixels, const unsigned char* source, int width, int height,
                      CObjProgress* progress, int progressLow, int progressHigh);

  // Stylisers.

  /// Stripes counted down the rows or along the columns.
  enum BLIND_TYPE { BlindHorizontal = 0, BlindVertical = 1 };

  /// Stripes that fade into a colour. Horizontal ones count from the bottom row. Reports start at
  /// 0, wherever the span lies.
  /// @param direction 0 horizontal, else vertical
  /// @param size      period, pixels
  /// @param opacity   percent, 1..100; clamped
  static int Blinds(unsigned char* pixels, int width, int height, int direction, int size,
                    int opacity, unsigned char red, unsigned char green, unsigned char blue,
                    CObjProgress* progress, int progressLow, int progressHigh);
  /// The same with horizontal stripes counted from the top.
  static int Istone_Blinds(unsigned char* pixels, int width, int height, BLIND_TYPE type, int size,
                           int opacity, tagRGBQUAD color, CObjProgress* progress, int progressLow,
                           int progressHigh);
  /// A grid of bevelled tiles. @param size of a tile, pixels. @param depth levels
  static int Istone_3DGrid(unsigned char* pixels, int width, int height, int size, int depth,
                           CObjProgress* progress, int progressLow, int progressHigh);
  /// Grey relief lit along the rows. @param amount strength; 0 gives grey
  static int Istone_Emboss(unsigned char* pixels, int width, int height, int amount,
                           CObjProgress* progress, int progressLow, int progressHigh);
  /// Paints a checkerboard. @param size of a field, pixels; below 1 gives 0
  static int Istone_FillGrid(unsigned char* pixels, int width, int height, tagRGBQUAD color1,
                             tagRGBQUAD color2, int size, CObjProgress* progress, int progressLow,
                             int progressHigh);
  /// Black and white by an ordered dither of 8 x 8.
  static int Istone_HalftoneM3(unsigned char* pixels, int width, int height, CObjProgress* progress,
                               int progressLow, int progressHigh);
  /// Mixes in copies of the image shifted outward. @param amount sectors; 0 gives 0
  static int Istone_Illusion(unsigned char* pixels, int width, int height, int amount,
                             CObjProgress* progress, int progressLow, int progressHigh);
  /// Adds nearly normal noise, seeded from the clock. @param amount 0..100; clamped
  /// @param perChannel colour noise, else grey
  static int Istone_Noisify(unsigned char* pixels, int width, int height, int amount,
                            bool perChannel, CObjProgress* progress, int progressLow,
                            int progressHigh);
  /// Shifts rows by a wave. @param wavelength,amplitude pixels, from 1 on. @param sine else a
  /// triangle
  static int Istone_Ripple(unsigned char* pixels, int width, int height, int wavelength,
                           int amplitude, bool sine, CObjProgress* progress, int progressLow,
                           int progressHigh);
  /// Shifts rows at random, seeded from the clock; alpha moves along. @param amount pixels at the
  /// most
  static int Istone_Shift(unsigned char* pixels, int width, int height, int amount,
                          CObjProgress* progress, int progressLow, int progressHigh);
  /// Scatters pixels, seeded from the clock. @param amount pixels, from 3 on
  static int Istone_Splash(unsigned char* pixels, int width, int height, int amount,
                           CObjProgress* progress, int progressLow, int progressHigh);
  /// Turns and pinches the image about its centre.
  /// @param whirl radians at the centre, -2 pi..2 pi; clamped. @param pinch -1..1; clamped.
  /// Neither may be NaN: that gives 0
  static int Istone_WhirlPinch(unsigned char* pixels, int width, int height, double whirl,
                               double pinch, CObjProgress* progress, int progressLow,
                               int progressHigh);
  /// Averages square cells. @param size of a cell, pixels, from 2 on
  static int Mosaic(unsigned char* pixels, int width, int height, int size, CObjProgress* progress,
                    int progressLow, int progressHigh);
  /// Adds even colour noise. @param amount levels from end to end
  static int Noise(unsigned char* pixels, int width, int height, int amount, CObjProgress* progress,
                   int progressLow, int progressHigh);
  /// The same on one pixel.
  static void NoiseEx(unsigned char* pixel, int amount);

  // Repairs.

  /// Stretches each channel so that half a percent of the pixels clip at each end, which takes off
  /// grey veils.
  static int Dehazing(unsigned char* pixels, int width, int height, CObjProgress* progress,
                      int progressLow, int progressHigh);
  /// Pulls red down inside a rectangle, most at its centre. @return 0 also if the rectangle is
  /// empty or misses the image
  static int RedEyeRemove(unsigned char* pixels, int width, int height, const tagRECT& rect);

  // Zoom blur and gradients.

  /// Smears an image along the rays from its centre, weighted by another image's alpha, with more
  /// contrast.
  /// @param target is only written, alpha too
  /// @param colors,alphas give colour and weight; all three of one size
  static int RadiusZoomBlur(unsigned char* target, const unsigned char* colors,
                            const unsigned char* alphas, int width, int height,
                            CObjProgress* progress, int progressLow, int progressHigh);
  /// Fills an image with a vertical gradient. @param colors the top and the bottom colour. @return
  /// 0 also after a stop
  static int CreateGradientImage(unsigned char* pixels, int width, int height,
                                 const tagRGBQUAD* colors, CObjProgress* progress, int progressLow,
                                 int progressHigh);
  /// Paints bands of gradients from top to bottom.
  /// @param direction 1; another leaves the picture empty
  /// @param count     of colors
  /// @param stops     count + 1 heights as fractions of the image: a flat band, the gradients, a
  /// flat band to the end
  /// @return a new `Gdiplus::Bitmap` that the caller deletes; null for a size below 1 or if memory
  /// could not be had
  static void* GetGradientImage(int width, int height, int direction, int count,
                                const tagRGBQUAD* colors, const double* stops, int);

  // Selective colour of one pixel: those of SFDSP.

  static void ZVSelectiveColorGray(const unsigned char* pixel, int min, int mid, int max,
                                   int* delta, int cyan, int magenta, int yellow);
  static void ZVSelectiveColorRed(const unsigned char* pixel, int min, int mid, int max, int* delta,
                                  int cyan, int magenta, int yellow);
  static void ZVSelectiveColorWhite(const unsigned char* pixel, int min, int mid, int max,
                                    int* delta, int cyan, int magenta, int yellow);
  static void ZVSelectiveColorYellow(const unsigned char* pixel, int min, int mid, int max,
                                     int* delta, int cyan, int magenta, int yellow);

 private:
  static void find_constants(double* n_p, double* n_m, double* d_p, double* d_m, double* bd_p,
                             double* bd_m, double standardDeviation);
  static tagRGBQUAD GetPixelColorInterpolated(const unsigned char* pixels, int rowPixels, float x,
                                              float y, int width, int height,
                                              InterpolationMethod method, OverflowMethod overflow);
  static void OverflowCoordinates(std::int32_t& x, std::int32_t& y, OverflowMethod overflow,
                                  int width, int height);
  static void OverflowCoordinates(float& x, float& y, OverflowMethod overflow, int width,
                                  int height);
  static void tfbitCopy(const unsigned char* source, unsigned char* target, int count);
  static void AlphaBlendPixel(unsigned char* target, const unsigned char* source,
                              unsigned char alpha);
  static unsigned char InitLUTtable(int value, int brightness);
  static int GenGauss(int amount);
  static int normalize_histo_u8(unsigned char* channel, std::uint64_t count, unsigned char low,
                                unsigned char high, std::uint64_t clipLow, std::uint64_t clipHigh);
  static int minmax_histo_u8(const unsigned char* channel, std::uint64_t count,
                             std::uint64_t clipLow, std::uint64_t clipHigh, unsigned char* min,
                             unsigned char* max);
  static int minmax_u8(const unsigned char* channel, std::uint64_t count, unsigned char* min,
                       unsigned char* max);
  friend struct PixelProcessInternals;  // reaches the private operations for the tests
};

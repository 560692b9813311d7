// Operations on whole images and planes.
#pragma once

#include <cstdint>

#include "tintwerk/export.h"
#include "tintwerk/platform.h"
#include "tintwerk/progress.h"

/// Image operations, all static but SetHSL.
///
/// Images are flat buffers of 4-byte pixels: blue, green, red, alpha. Planes are buffers of one byte
/// per pixel. Both lie row by row without gaps. Unless an operation says otherwise, it rewrites the
/// image in place, alpha stays, and a size below 1 means an image without pixels.
///
/// The result is 0, false or null if the image is null, if its pixel count exceeds an int, or if
/// allocation fails. The image is then as it was.
///
/// `progress` may be null. `progressLow` and `progressHigh` tell which part of the host's progress
/// bar the call fills. Operations that report do so about every twentieth of the rows. If the host
/// stops one, the rows below stay as they were.
class TINTWERK_API CPixelProcess {
 public:
  CPixelProcess() = default;
  CPixelProcess(const CPixelProcess&) {}
  virtual ~CPixelProcess() = default;
  CPixelProcess& operator=(const CPixelProcess&) { return *this; }

  // Blurs.

  /// Stack blur: a triangular window, each axis truncated to bytes. About as smooth as a Gaussian,
  /// and just as fast at any radius. Reports on 0..100 whatever the span is.
  /// @param radius pixels; below 1 changes nothing; the largest that counts is 2895
  /// @return true, also after a stop. A stop in the column pass leaves the columns to the right as
  ///         they were; one in the row pass too, and the first columns then turn dark.
  static bool stackBlur(unsigned char* pixels, int width, int height, int radius,
                        CObjProgress* progress, int progressLow, int progressHigh);
  /// The same on a plane, without reports.
  static void BlurOneChannel(unsigned char* plane, int width, int height, int radius);

  /// Gaussian blur by Deriche's fourth-order recursive filter, as fast at any radius. The
  /// Gaussian has fallen to 1/255 at radius + 1.
  /// @param horizontalRadius,verticalRadius pixels; below 2 counts as 2
  /// @return 1; 0 after a stop in the first pass, that of the columns
  static int GaussIIRBlurImage(unsigned char* pixels, int width, int height, int horizontalRadius,
                               int verticalRadius, CObjProgress* progress, int progressLow,
                               int progressHigh);
  /// The same on a plane; each of its two passes reports on the lower half of the span.
  static int GaussIIRBlurWithOne(unsigned char* plane, int width, int height, int horizontalRadius,
                                 int verticalRadius, CObjProgress* progress, int progressLow,
                                 int progressHigh);

  // Running maximum (van Herk/Gil-Werman), convolution, sharpening.

  // Lines are split into blocks of 2 radius + 1 samples. A window that starts less than `radius`
  // before the end of its line stops at the end of its block, so the last samples of a line may
  // differ from a true dilation.

  /// The maximum over x - radius..x + radius along the rows of an image.
  /// @return a new buffer of three bytes per pixel, blue, green, red, which the caller deletes as an
  ///         array
  static unsigned char* BoxHorizonPath(const unsigned char* pixels, int radius, int width,
                                       int height);
  /// The same along the columns of such a three-byte buffer, in place.
  static void BoxVerticalPath(unsigned char* buffer, int radius, int width, int height);
  /// Both: a dilation by a square. @return as BoxHorizonPath
  static unsigned char* BoxMaxFilters(const unsigned char* pixels, int width, int height,
                                      int radius);
  /// A dilation of one byte of every pixel.
  /// @param channel 0..3
  /// @return a new plane, which the caller deletes as an array
  static unsigned char* BoxMaxFilter(const unsigned char* pixels, int width, int height, int radius,
                                     int channel);

  /// Convolution with a square kernel of integers. Weights that fall outside the image are left out,
  /// and the others are scaled up in proportion.
  /// @param kernel  size x size weights, top row first; null changes nothing
  /// @param size    side; an even one has its centre at size / 2; below 1 changes nothing
  /// @param divisor 0 means no division
  /// @param offset  added to each result before clamping
  static void Filter(unsigned char* pixels, int width, int height, const std::int32_t* kernel,
                     std::int32_t size, std::int32_t divisor, std::int32_t offset,
                     CObjProgress* progress, int progressLow, int progressHigh);

  /// Unsharp mask that keeps its blur: a second call with the same `*blurred` only sharpens, so that
  /// a host can try amounts quickly. Sharpening reports without asking, also after the blur was
  /// stopped.
  /// @param radius  sigma of the Gaussian, pixels, up to 50; below 0.1 nothing is blurred
  /// @param amount  strength; 1 doubles the difference to the blur
  /// @param blurred the blurred image, a block of the C runtime: made if `*blurred` is null, else
  ///        used as it is. FreeUsmSharp or `free` releases it.
  /// @return pixels; null for null pixels or blurred
  static unsigned char* UsmSharp(unsigned char* pixels, int width, int height, float radius,
                                 float amount, unsigned char** blurred, CObjProgress* progress,
                                 int progressLow, int progressHigh);
  /// Releases the blurred image of UsmSharp. @return 1; 0 for null
  static int FreeUsmSharp(unsigned char* blurred);

  // Resampling and rotation.

  /// Sampling is bilinear whatever the value.
  enum InterpolationMethod { InterpolationBilinear = 2 };
  /// How coordinates outside the image are taken back into it.
  enum OverflowMethod { OverflowWrap = 4, OverflowClamp = 5, OverflowMirror = 6 };

  /// Scales a picture to another size: bicubic (Catmull-Rom), low-pass filtered where it shrinks,
  /// with mirrored edges. Alpha is scaled as coverage, so transparent pixels bleed no colour into
  /// their neighbours. At equal size the result is the source's exact bytes.
  /// @param bitmap a `Gdiplus::Bitmap`; one without pixels counts as an all-zero picture
  /// @param newWidth,newHeight pixels
  /// @return a new `Gdiplus::Bitmap`, which the caller deletes; a size below 1 gives one without
  ///         pixels. Null for a null bitmap, or if allocation fails.
  static void* RampleBit(void* bitmap, int newWidth, int newHeight);
  /// Replaces `*pixels`, an array of 4-byte pixels, by the image at another size; the old array is
  /// deleted. A new size below 1 or equal to the old one changes nothing.
  /// @param mode 1 nearest; 2 cubic B-spline, soft, alpha not filtered; else bilinear
  static void RampleBit(int newWidth, int newHeight, int mode, unsigned char** pixels, int width,
                        std::int32_t height);
  /// The same by the nearest pixel, for pixels of any size, and an empty array for a negative new
  /// size.
  /// @return 1 if it was resampled, 0 if it was left as it was
  static int RampleBit(int newWidth, int newHeight, unsigned char** pixels, int width,
                       std::int32_t height, int bytesPerPixel);
  /// Turns a picture about its centre within its own frame, bilinearly.
  /// @param bitmap   a `Gdiplus::Bitmap` of width x height
  /// @param angle    degrees, clockwise
  /// @param keepSize true
  /// @return a new `Gdiplus::Bitmap`, which the caller deletes; null for a null bitmap, one that
  ///         cannot be locked, or `keepSize` false
  static void* Rotate2(void* bitmap, int width, int height, float angle, InterpolationMethod method,
                       OverflowMethod overflow, bool, bool keepSize);
  /// Copies a rectangle of a picture.
  /// @return a new `Gdiplus::Bitmap`, which the caller deletes; null for a null bitmap or a rectangle
  ///         that is not inside it
  static void* Clone(void* bitmap, int left, int top, int width, int height);
  /// The cubic B-spline; 0 outside -2..2.
  static float KernelBSpline(float x);
  /// Copies one pixel of `bytes` bytes.
  static void CopyPixel(void* target, const void* source, int bytes);

  // Automatic tone.

  /// Shifts hue and scales saturation.
  /// @param hue,saturation 0..200, 100 neutral; clamped
  static int AutoColor(unsigned char* pixels, int width, int height, int hue, int saturation,
                       CObjProgress* progress, int progressLow, int progressHigh);
  /// Stretches each channel so that 0.6 percent of the pixels clip at each end.
  /// @param mode 1; any other leaves every channel as it is
  static int AutoColorLevel(unsigned char* pixels, int width, int height, int mode,
                            CObjProgress* progress, int progressLow, int progressHigh);
  /// Stretches each channel from its smallest..largest value to 0..255. @return 0 also after a stop
  static int AutoConstrast(unsigned char* pixels, int width, int height, CObjProgress* progress,
                           int progressLow, int progressHigh);
  /// Removes a colour cast, measured on the nearly white pixels.
  /// @param threshold 0..255; a pixel is nearly white if its luma less both its chroma amounts is
  ///        above it
  /// @return 0 also if no pixel is nearly white
  static int AutoWhiteBalance(unsigned char* pixels, int width, int height, int threshold,
                              CObjProgress* progress, int progressLow, int progressHigh);
  /// Counts the values of an image.
  /// @param red,green,blue,gray arrays of 256 counters; any may be null
  /// @param colorSpace model of the pixels, which are converted to RGB first: 1 HSL, 2 YUV, 3 YIQ,
  ///        4 XYZ, else RGB
  /// @return the largest count; 0 also after a stop. Reports fill the first tenth of the span.
  static std::int32_t Histogram(const unsigned char* pixels, int width, int height,
                                std::int32_t* red, std::int32_t* green, std::int32_t* blue,
                                std::int32_t* gray, std::int32_t colorSpace, CObjProgress* progress,
                                int progressLow, int progressHigh);

  // Point adjustments.

  /// Channels of a pixel, as a bit set.
  enum IMAGE_CHANNEL { ChannelRed = 1, ChannelGreen = 2, ChannelBlue = 4 };
  /// The tones that CColorBalance changes.
  enum TONE_REGION { ToneShadow = 0, ToneMidtone = 1, ToneHighlight = 2 };

  /// Brightens or darkens, less and less towards the end of the scale.
  /// @param brightness 0..200, 100 neutral; clamped
  static int PixelBrightness(unsigned char* pixels, int width, int height, int brightness,
                             CObjProgress* progress, int progressLow, int progressHigh);
  /// Linear brightness and contrast about the middle.
  /// @param brightness levels to add
  /// @param contrast   percent, -100 gives grey
  static int Light(unsigned char* pixels, int width, int height, std::int32_t brightness,
                   std::int32_t contrast, CObjProgress* progress, int progressLow,
                   int progressHigh);
  /// Brightens by a logarithmic curve of 256 values, blurred as if it were an image of 16 x 16.
  /// @return 0 also for amount 0 and after a stop
  static int LightNew(unsigned char* pixels, int width, int height, std::int32_t amount, int radius,
                      CObjProgress* progress, int progressLow, int progressHigh);
  /// Exposes like film: 1 - exp(-value x exposure). @return 0 also after a stop
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
  /// model's components lie, in their order, in red, green and blue.
  /// @return 0 also if neither model is RGB, or if both are
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
  /// Multiplies by a source; where the source is opaque it replaces the image. Alpha becomes 255.
  static int Multiple(unsigned char* pixels, const unsigned char* source, int width, int height,
                      CObjProgress* progress, int progressLow, int progressHigh);

  // Stylisers.

  /// Whether stripes run along the rows or along the columns.
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
  /// Shifts rows by a wave.
  /// @param wavelength,amplitude pixels, from 1 on
  /// @param sine                 else a triangle
  static int Istone_Ripple(unsigned char* pixels, int width, int height, int wavelength,
                           int amplitude, bool sine, CObjProgress* progress, int progressLow,
                           int progressHigh);
  /// Shifts rows at random, seeded from the clock; alpha moves along.
  /// @param amount pixels at the most
  static int Istone_Shift(unsigned char* pixels, int width, int height, int amount,
                          CObjProgress* progress, int progressLow, int progressHigh);
  /// Scatters pixels, seeded from the clock. @param amount pixels, from 3 on
  static int Istone_Splash(unsigned char* pixels, int width, int height, int amount,
                           CObjProgress* progress, int progressLow, int progressHigh);
  /// Turns and pinches the image about its centre.
  /// @param whirl radians at the centre, -2 pi..2 pi; clamped
  /// @param pinch -1..1; clamped
  /// @return 0 also if either is not a number
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

  /// Removes a grey veil: stretches each channel so that half a percent of the pixels clip at each
  /// end.
  static int Dehazing(unsigned char* pixels, int width, int height, CObjProgress* progress,
                      int progressLow, int progressHigh);
  /// Pulls red down inside a rectangle, most at its centre.
  /// @return 0 also if the rectangle is empty or misses the image
  static int RedEyeRemove(unsigned char* pixels, int width, int height, const tagRECT& rect);

  // Zoom blur and gradients.

  /// Smears an image along the rays from its centre, weighted by another image's alpha, and raises
  /// its contrast.
  /// @param target only written, alpha too
  /// @param colors,alphas the image and the one that holds the weights; all three of one size
  static int RadiusZoomBlur(unsigned char* target, const unsigned char* colors,
                            const unsigned char* alphas, int width, int height,
                            CObjProgress* progress, int progressLow, int progressHigh);
  /// Fills an image with a vertical gradient.
  /// @param colors the top and the bottom colour
  /// @return 0 also after a stop
  static int CreateGradientImage(unsigned char* pixels, int width, int height,
                                 const tagRGBQUAD* colors, CObjProgress* progress, int progressLow,
                                 int progressHigh);
  /// Paints bands of gradients from top to bottom.
  /// @param direction 1; another leaves the picture empty
  /// @param count     number of colors
  /// @param stops     count + 1 heights as fractions of the image: a flat band, the gradients, and a
  ///        flat band to the end
  /// @return a new `Gdiplus::Bitmap`, which the caller deletes; null for a size below 1, or if
  ///         allocation fails
  static void* GetGradientImage(int width, int height, int direction, int count,
                                const tagRGBQUAD* colors, const double* stops, int);

  // Skin.

  /// Tints an image by soft light, where a mask has it.
  /// @param red,green,blue the tint, 0..255
  /// @param amount         strength, 0..1
  /// @param mask           a byte a pixel as SFDSP::CreateSkinMask makes it, 0 none to 255 full; null
  /// tints everything
  /// @return 0 also after a stop
  static int Skinbeautify(unsigned char* pixels, int width, int height, int red, int green,
                          int blue, double amount, const unsigned char* mask,
                          CObjProgress* progress, int progressLow, int progressHigh);
  /// Evens out skin: lightens what is darker than its surroundings and spares what stands out, most
  /// where those are bright and not blue.
  /// @param sigma of the blur that tells the surroundings, pixels; 15 suits portraits, 250 is the
  /// largest that counts, and below 0.1 every pixel is its own surroundings
  static void SkinBase(unsigned char* pixels, int width, int height, float sigma);
  /// A sweet colouring: pulls green and blue to the middle, then lightens.
  static void TianMei(unsigned char* pixels, int width, int height);
  /// The same, lighter in red and green and darker in blue.
  static void WeiMei(unsigned char* pixels, int width, int height);

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

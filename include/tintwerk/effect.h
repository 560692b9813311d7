// The named effects.
#pragma once

#include "tintwerk/cstring.h"
#include "tintwerk/export.h"
#include "tintwerk/math_define.h"
#include "tintwerk/progress.h"

/// The shape of every named effect.
///
/// An image is one flat buffer of 4-byte pixels: blue, green, red, alpha. Rows run top-down without
/// gaps, alpha is straight. The buffer belongs to the caller and is rewritten in place. Alpha stays
/// as it is, unless the list says that the effect writes it. Effects keep no state, so calls on
/// different buffers may run at the same time. Each call uses all threads that the OpenMP runtime
/// gives the calling thread.
///
/// @param pixels null gives 0
/// @param width,height in pixels; an image without pixels gives 1 and stays as it was
/// @param resourceRoot null-terminated `wchar_t` string: the folder that holds `Effects`, without a
///        separator at its end
/// @param progress may be null
/// @param progressLow,progressHigh the part of the host's progress bar that this call fills
/// @return 1 on success. 0 if allocation fails or no int holds the pixel count, or if a support file
///         that the effect reads as a table is missing or has the wrong shape: the image is then as
///         it was. A table file (`.eb`) has no shape: what a short one lacks counts as 0. What a
///         stop by the host gives and leaves, its traits in the list say. Nothing is ever thrown.
///
/// `effect_list.h` names the effects that differ, and those that report and ask.
using EffectEntry = int(unsigned char* pixels, int width, int height, void* resourceRoot,
                        CObjProgress* progress, int progressLow, int progressHigh);

/// Blend modes, as editors name them. Overlay and OverlayFull give the same result. Normal takes
/// the source's alpha as opacity. ColorDodge divides by the complement of the base, not of the
/// source.
///
/// They compute in single precision and round; ColorBurn, ColorDodge and VividLight truncate. The
/// operations of SFDSP whose names end in `Ex` are another family and round differently.
enum BlendMode : int {
  BlendModeScreen = 1,
  BlendModeSoftLight = 2,
  BlendModeMultiply = 3,
  BlendModeNormal = 4,
  BlendModeOverlay = 5,
  BlendModeColorBurn = 6,
  BlendModeColorDodge = 7,
  BlendModeExclusion = 8,
  BlendModeDarken = 9,
  BlendModeLighten = 10,
  BlendModePinLight = 11,
  BlendModeLinearBurn = 12,
  BlendModeLinearDodge = 13,
  BlendModeLinearLight = 14,
  BlendModeVividLight = 15,
  BlendModeOverlayFull = 16
};

/// The named effects, all static and of the shape EffectEntry. `effect_list.h` names and describes
/// them.
class TINTWERK_API CEffect {
 public:
#define TINTWERK_EFFECT(entry, category, title, description)                         \
  static int entry(unsigned char* pixels, int width, int height, void* resourceRoot, \
                   CObjProgress* progress, int progressLow, int progressHigh);
#include "tintwerk/effect_list.h"

  /// Blends a source over a base of the same size. Reports, and asks whether to go on, every
  /// twentieth of the rows. A stop leaves the rows below as they were. Alpha of the base stays.
  /// @param base,source null for either gives 0
  /// @param mode a value outside 1..16 changes nothing
  /// @return 1 on success, also after a stop; else 0
  static int ChannelBlend_X(unsigned char* base, const unsigned char* source, int width, int height,
                            BlendMode mode, CObjProgress* progress, int progressLow,
                            int progressHigh);

  /// The forms of two sketches that draw a part of a picture just as on the whole of it.
  /// @param pixels the part, rows without gaps
  /// @param width,height of the whole picture, to which the textures are fitted
  /// @param rect where in the picture the part lies; null for all of it. One that does not lie
  ///        inside the picture gives 0.
  static int Effect_GuDianSuMiaoEx(unsigned char* pixels, int width, int height, void* resourceRoot,
                                   _ZV_2D_RECT* rect, CObjProgress* progress, int progressLow,
                                   int progressHigh);
  static int Effect_XieShengSuMiaoEx(unsigned char* pixels, int width, int height,
                                     void* resourceRoot, _ZV_2D_RECT* rect, CObjProgress* progress,
                                     int progressLow, int progressHigh);

  /// Adjusts light, contrast and saturation, in this order, each by the colour cube of its step.
  /// Reports after each. Alpha stays.
  /// @param pixels null gives 0
  /// @param light,contrast,saturation steps 1..12, from less to more. Any other value skips the
  ///        adjustment, and so does a cube that cannot be read.
  /// @return 1, else 0
  static int LSC_Class(unsigned char* pixels, int width, int height, int light, int contrast,
                       int saturation, void* resourceRoot, CObjProgress* progress, int progressLow,
                       int progressHigh);

  /// Mixes an effect's result with the image as it was: every colour byte of the destination
  /// becomes source x opacity + destination x (1 - opacity), truncated. Alpha of the destination
  /// stays.
  /// @param destination,source images of the same size; null for either gives 0
  /// @param opacity 0 keeps the destination, 1 takes the source; clamped to 0..1
  /// @return 1 on success, else 0
  static int Effect_AlphaAdJust(unsigned char* destination, const unsigned char* source, int width,
                                int height, double opacity);
};

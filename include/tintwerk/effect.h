// The named effects.
#pragma once

#include "tintwerk/cstring.h"
#include "tintwerk/export.h"
#include "tintwerk/progress.h"

/// The shape of every named effect.
///
/// An image is one flat buffer of 4-byte pixels, blue, green, red, alpha; rows run top-down without
/// a gap, alpha is straight. It belongs to the caller and is rewritten in place. Unless an effect
/// says otherwise, alpha stays as it is. Effects keep no state: two calls at the same time on
/// different buffers do not meet, and each call uses all processors of the OpenMP runtime for the
/// calling thread.
///
/// @param pixels       the image; null gives 0
/// @param width,height pixels; an image without pixels gives 1 and stays
/// @param resourceRoot null-terminated `wchar_t` string: the folder in which `Effects` lies,
/// without a
///                     separator at its end
/// @param progress     may be null
/// @param progressLow,progressHigh the span of the host's bar that belongs to this call
/// @return 1 on success. 0 if the image cannot be worked on, a support file that the effect reads
/// as
///         a table is missing or has the wrong shape (found out before the first pixel is written),
///         or memory could not be had: the image is then as it was.
///
/// Looks that differ: the studio tables blur the image before they open their file, so without it
/// they give 0 with a blurred image, as quxian_10 gives 0 with half its work done. Of the film
/// looks MiDou, NaTie, QuQi, RiChu, RuoKeKe, ShaLou, YangPiJuan, YeCan and YueGuang give 1 without
/// theirs, with the image as it was. Looks that ask the host between stages and are stopped there
/// give 0 with what is done by then. The looks quxian_3 to quxian_10, NewGt_1 to NewGt_5 and
/// Jieri_3 report on 0..100, whatever the span is.
using EffectEntry = int(unsigned char* pixels, int width, int height, void* resourceRoot,
                        CObjProgress* progress, int progressLow, int progressHigh);

/// Blend modes. `a` is a colour byte of the base and `b` the same of the source. They are those of
/// any editor; Overlay and OverlayFull give the same. Normal takes the source's alpha as opacity.
/// ColorDodge divides by the base's complement, not the source's.
///
/// They compute in single precision and round, apart from ColorBurn, ColorDodge and VividLight,
/// which truncate. The operations of SFDSP named in `Ex` are another family with other roundings.
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

/// The named effects, all static, each of the shape EffectEntry; `effect_list.h` names and
/// describes them.
class TINTWERK_API CEffect {
 public:
#define TINTWERK_EFFECT(entry, family, description)                                  \
  static int entry(unsigned char* pixels, int width, int height, void* resourceRoot, \
                   CObjProgress* progress, int progressLow, int progressHigh);
#include "tintwerk/effect_list.h"

  /// Blends a source over a base of the same size. Reports and asks every twentieth of the rows; a
  /// stop leaves the rows below as they were. Alpha of the base stays.
  /// @param base,source null for either gives 0
  /// @param mode   one outside 1..16 changes nothing
  /// @return 1 on success, also after a stop; else 0
  static int ChannelBlend_X(unsigned char* base, const unsigned char* source, int width, int height,
                            BlendMode mode, CObjProgress* progress, int progressLow,
                            int progressHigh);

  /// Light, contrast and saturation, one after the other, each by the colour cube of its step.
  /// Reports after a third, after two thirds and at the end. Alpha stays.
  /// @param pixels null gives 0
  /// @param light,contrast,saturation steps 1..12, from less to more; others leave theirs
  ///        out, as does a step whose cube cannot be read
  /// @return 1, else 0
  static int LSC_Class(unsigned char* pixels, int width, int height, int light, int contrast,
                       int saturation, void* resourceRoot, CObjProgress* progress, int progressLow,
                       int progressHigh);

  /// Mixes an effect's result with the image as it was: every colour byte of the destination
  /// becomes source x opacity + destination x (1 - opacity), truncated. Alpha of the destination
  /// stays.
  /// @param destination,source images of the same size; null for either gives 0
  /// @param opacity 0 keeps the destination, 1 takes the source; values outside are clamped
  /// @return 1 on success, else 0
  static int Effect_AlphaAdJust(unsigned char* destination, const unsigned char* source, int width,
                                int height, double opacity);
};

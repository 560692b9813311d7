// The list of the public effects, grouped by family: TINTWERK_EFFECT(entry, family, description).
//
// Define TINTWERK_EFFECT, then include this file; it undefines the macro at its end. CEffect
// declares its entries from it, and a host walks it to list and call them.
#ifndef TINTWERK_EFFECT
#error "define TINTWERK_EFFECT(entry, family, description) before including effect_list.h"
#endif

TINTWERK_EFFECT(Effect_DianShiXian, FilterPresets, "Television lines: every second row darkened")
TINTWERK_EFFECT(Effect_FanSe, FilterPresets, "Negative")
TINTWERK_EFFECT(Effect_HeiBai, FilterPresets, "Plain black and white")
TINTWERK_EFFECT(Effect_NuanHua, FilterPresets, "Warmer midtones")
TINTWERK_EFFECT(Effect_QuWu, FilterPresets, "Takes haze off by stretching each channel")
TINTWERK_EFFECT(Effect_RouHe, FilterPresets, "Slight softening")
TINTWERK_EFFECT(Effect_RuiHua, FilterPresets, "Strong sharpening")
TINTWERK_EFFECT(Effect_ZaoDian, FilterPresets, "Fine colour noise")
TINTWERK_EFFECT(Emboss, FilterPresets, "Grey relief with traces of colour")
TINTWERK_EFFECT(UnColor, FilterPresets, "Negative, with progress")
TINTWERK_EFFECT(paper, FilterPresets, "Ink on paper: black and white without greys")
TINTWERK_EFFECT(Effect_HuaiJiu, FilterPresets, "Brown-toned old photograph with grain")
TINTWERK_EFFECT(Effect_QuanCai, FilterPresets, "Saturation raised to the full scale")
TINTWERK_EFFECT(Effect_ZhiNengHuiSe, FilterPresets, "Saturation raised halfway to the full scale")
TINTWERK_EFFECT(Effect_Hdr, FilterPresets, "Punchy tones and crisp detail")
TINTWERK_EFFECT(Effect_JingDianHDR, FilterPresets, "Classic HDR tones with muted blues")

TINTWERK_EFFECT(Effect_HuiYi, MapOverlays, "Faded print under a dark rim")

TINTWERK_EFFECT(Effect_80S, OneMapTones, "Eighties snapshot: lifted shadows, warm highlights")

#undef TINTWERK_EFFECT

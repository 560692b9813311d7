// The list of the public effects, grouped by family: TINTWERK_EFFECT(entry, family, description).
//
// Define TINTWERK_EFFECT, then include this file; it undefines the macro at its end. CEffect
// declares its entries from it, and a host walks it to list and call them.
#ifndef TINTWERK_EFFECT
#error "define TINTWERK_EFFECT(entry, family, description) before including effect_list.h"
#endif

TINTWERK_EFFECT(Effect_HuiYi, MapOverlays, "Faded print under a dark rim")

TINTWERK_EFFECT(Effect_80S, OneMapTones, "Eighties snapshot: lifted shadows, warm highlights")

#undef TINTWERK_EFFECT

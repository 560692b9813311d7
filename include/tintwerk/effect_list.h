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

TINTWERK_EFFECT(Effect_BrushSketch, BrushStrokes,
                "Stroke drawing: lines along every edge over soft tones")

TINTWERK_EFFECT(Effect_HuiYi, MapOverlays, "Faded print under a dark rim")

TINTWERK_EFFECT(Effect_80S, OneMapTones, "Eighties snapshot: lifted shadows, warm highlights")

TINTWERK_EFFECT(Effect_VSCO_A2, FilmCubes, "Summer film: golden lights, olive greens, soft blacks")
TINTWERK_EFFECT(Effect_VSCO_A3, FilmCubes, "Old summer film: reddish brown fade, muted colours")
TINTWERK_EFFECT(Effect_VSCO_B2, FilmCubes, "Classic black and white: long greys, firm blacks")
TINTWERK_EFFECT(Effect_VSCO_B4, FilmCubes, "Dramatic black and white: dark skies, glowing skin")
TINTWERK_EFFECT(Effect_VSCO_C1, FilmCubes, "Punchy colours, deep skies, crisp blacks")
TINTWERK_EFFECT(Effect_VSCO_G2, FilmCubes, "Warm portrait: soft contrast, peach highlights")
TINTWERK_EFFECT(Effect_VSCO_H2, FilmCubes, "Bright and clear with a breath of rose")
TINTWERK_EFFECT(Effect_VSCO_K1, FilmCubes, "Slide film: dense colours, glowing reds, deep skies")
TINTWERK_EFFECT(Effect_VSCO_M4, FilmCubes, "Cool matte: slate shadows, colours held back")
TINTWERK_EFFECT(Effect_VSCO_M5, FilmCubes, "Warm matte: brown shadows, dusky highlights")
TINTWERK_EFFECT(Effect_VSCO_P1, FilmCubes, "Instant film: creamy whites, blue shadows")
TINTWERK_EFFECT(Effect_VSCO_P2, FilmCubes, "Expired instant film: greenish yellow")
TINTWERK_EFFECT(Effect_VSCO_P4, FilmCubes, "Instant film: cyan shadows, pink highlights")
TINTWERK_EFFECT(Effect_VSCO_P5, FilmCubes, "Instant film under a blue veil")
TINTWERK_EFFECT(Effect_VSCO_P6, FilmCubes,
                "Instant film from a hot day: magenta shadows, yellow highlights")
TINTWERK_EFFECT(Effect_VSCO_P7, FilmCubes, "Pale instant film with pearly highlights")
TINTWERK_EFFECT(Effect_VSCO_P9, FilmCubes, "Instant film by night: violet shadows, lamplight gold")
TINTWERK_EFFECT(Effect_VSCO_S4, FilmCubes, "High-key studio: airy and neutral")
TINTWERK_EFFECT(Effect_VSCO_SE1, FilmCubes, "Spring: light, young greens, a breath of blossom")
TINTWERK_EFFECT(Effect_VSCO_SE2, FilmCubes, "Autumn: leaves turned to amber, deep and warm")
TINTWERK_EFFECT(Effect_VSCO_T1, FilmCubes, "Cinema: teal shadows against warm skin")
TINTWERK_EFFECT(Effect_VSCO_T2, FilmCubes, "Cold water: teal through and through")
TINTWERK_EFFECT(Effect_VSCO_T3, FilmCubes, "Green-teal fade, nearly bleached")
TINTWERK_EFFECT(Effect_VSCO_X3, FilmCubes, "Faded black and white: chalk and charcoal")
TINTWERK_EFFECT(Effect_VSCO_X4, FilmCubes, "Faded black and white: brown blacks, ivory whites")
TINTWERK_EFFECT(Effect_VSCO_X6, FilmCubes, "Faded black and white: dark, with blue-violet shadows")
TINTWERK_EFFECT(Effect_VSCO_H5, FilmCubes, "Crisp and cool, whites like porcelain")
TINTWERK_EFFECT(Effect_VSCO_HeiBai, FilmCubes, "Luminous black and white")
TINTWERK_EFFECT(Effect_VSCO_1970, FilmCubes, "Seventies print: orange-brown, faded blacks")
TINTWERK_EFFECT(Effect_ChenGuang, FilmCubes, "Morning light: pale gold, long soft tones")
TINTWERK_EFFECT(Effect_FeiCui, FilmCubes, "Jade: cool green, clear and quiet")
TINTWERK_EFFECT(Effect_LiRi, FilmCubes, "Bright sun: warm light, full colours")
TINTWERK_EFFECT(Effect_QingLiang, FilmCubes, "Fresh and cool, as after rain")
TINTWERK_EFFECT(Effect_WuCha, FilmCubes, "Afternoon tea: amber window light")
TINTWERK_EFFECT(Effect_MiDou, FilmCubes, "Honey bean: honey highlights, rose shadows")
TINTWERK_EFFECT(Effect_NaTie, FilmCubes, "Latte: beige and milk, little colour")
TINTWERK_EFFECT(Effect_QuQi, FilmCubes, "Cookie: golden brown and crisp")
TINTWERK_EFFECT(Effect_RiChu, FilmCubes, "Sunrise: violet shadows, orange-pink highlights")
TINTWERK_EFFECT(Effect_RuoKeKe, FilmCubes, "Cocoa: dark chocolate, low key")
TINTWERK_EFFECT(Effect_ShaLou, FilmCubes, "Hourglass: dry sand bleached by the sun")
TINTWERK_EFFECT(Effect_YangPiJuan, FilmCubes, "Parchment: nearly one colour, yellow-brown")
TINTWERK_EFFECT(Effect_YeCan, FilmCubes, "Picnic: lively grass, warm skin, light shadows")
TINTWERK_EFFECT(Effect_YueGuang, FilmCubes, "Moonlight: a blue night, colours asleep")

TINTWERK_EFFECT(Effect_JingDianYingLou, StudioTables,
                "Classic portrait studio: smooth skin, a soft glow, creamy lights")
TINTWERK_EFFECT(Effect_LengLan, StudioTables, "Crisp and cool: blue shadows, clear lights")
TINTWERK_EFFECT(Effect_LengLv, StudioTables, "Crisp and matt: sea green shadows")
TINTWERK_EFFECT(Effect_NuanHuang, StudioTables, "Soft afternoon: amber lights over brown shadows")
TINTWERK_EFFECT(Effect_LengZi, StudioTables, "Pale and dreamy under a cool violet")
TINTWERK_EFFECT(Effect_YiZhou, StudioTables, "Hard contrast, soft and dark towards the corners")

TINTWERK_EFFECT(Effect_LEAK_1, LightLeaks, "Light leak: orange along the left edge")
TINTWERK_EFFECT(Effect_LEAK_6, LightLeaks, "Light leak: golden from the upper right corner")
TINTWERK_EFFECT(Effect_LEAK_7, LightLeaks, "Light leak: an uneven red band along the top")
TINTWERK_EFFECT(Effect_LEAK_9, LightLeaks, "Light leak: a rose streak across the lower right")
TINTWERK_EFFECT(Effect_LEAK_15, LightLeaks,
                "Light leak: the burnt end of the roll, pale on the right")
TINTWERK_EFFECT(Effect_LEAK_LIGHT_LEAK, LightLeaks,
                "Light leak: a peach haze from the lower left corner")
TINTWERK_EFFECT(Effect_LEAK_LIGHT_LEAK_17, LightLeaks,
                "Light leak: golden bokeh along the right and lower edge")

TINTWERK_EFFECT(quxian_3, CurvePresets, "Rose bokeh from one side")
TINTWERK_EFFECT(quxian_4, CurvePresets, "Evening sun through a window")
TINTWERK_EFFECT(quxian_6, CurvePresets, "Dusk sky, from violet to apricot")
TINTWERK_EFFECT(quxian_7, CurvePresets, "Old slide: dark corners, amber to teal, dust")
TINTWERK_EFFECT(quxian_10, CurvePresets, "Faded summer print with haze and a dusty beam")
TINTWERK_EFFECT(quxian_14, CurvePresets, "Bright, with the sun in the upper left")

TINTWERK_EFFECT(NewGt_1, GradientPlanes,
                "Pastel gradient from yellow over green and blue to violet")
TINTWERK_EFFECT(NewGt_2, GradientPlanes, "Gradient from blue above to yellow below")
TINTWERK_EFFECT(NewGt_3, GradientPlanes, "Pastel gradient from rose to blue")
TINTWERK_EFFECT(NewGt_5, GradientPlanes, "Pastel rainbow across the image")
TINTWERK_EFFECT(NewGt_7, GradientPlanes, "Soft violet and amber light from two corners")
TINTWERK_EFFECT(Effect_GuangShuJianBian, GradientPlanes,
                "Diagonal beam of light between violet shades")

TINTWERK_EFFECT(Jieri_3, FestivalAndRainbow,
                "Bright rose-gold print in a red frame of golden lamps")
TINTWERK_EFFECT(RainbowColor, FestivalAndRainbow,
                "Black and white, tinted blue above and yellow below")

TINTWERK_EFFECT(Effect_ShiGuangSuiDao, TimeTunnel, "Time tunnel: rushing walls around a warm light")

#undef TINTWERK_EFFECT

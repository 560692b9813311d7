// The list of the public effects: what each is called, and where a menu shows it.
//
// TINTWERK_CATEGORY(id, title)
//     A category of effects. They stand in the order of a menu.
// TINTWERK_EFFECTS_FROM(file)
//     The effects below it are defined in src/looks/file.cpp.
// TINTWERK_EFFECT(entry, category, title, description)
//     An effect: a static member of CEffect, the id of its category, its title of one to three
//     words, and one line on what it shows. No two titles are the same, nor two descriptions.
// TINTWERK_TRAIT(entry, trait)
//     What only some effects do:
//       DrawsRandomNumbers    its results differ from call to call
//       WritesAlpha           alpha does not stay as it is
//       Reports               tells the host positions within the range that it hands in
//       ReportsOwnScale       tells it others, on 0..100, whatever the range is
//       StopKeepsImage        asks the host; a stop gives 0 with the image as it was
//       StopKeepsStages       asks; a stop gives 0, and the image shows the stages that were done
//       StopKeepsRows         asks; a stop ends the work on rows early and gives 1, with the rows
//                             below as they were before that stage
//       SucceedsWithoutFiles  gives 1 without its files, and may do so without memory
//     An effect without a trait that begins with Reports tells the host nothing, and one without
//     any that begins with Stop never asks it. Several of the latter stand for several places.
//
// Define the macros that you need, then include this file. The others are empty. All are undefined
// at its end. A heading says where effects differ from what `effect.h` promises.
#ifndef TINTWERK_CATEGORY
#define TINTWERK_CATEGORY(id, title)
#endif
#ifndef TINTWERK_EFFECTS_FROM
#define TINTWERK_EFFECTS_FROM(file)
#endif
#ifndef TINTWERK_EFFECT
#define TINTWERK_EFFECT(entry, category, title, description)
#endif
#ifndef TINTWERK_TRAIT
#define TINTWERK_TRAIT(entry, trait)
#endif

TINTWERK_CATEGORY(Film, "Film")
TINTWERK_CATEGORY(Instant, "Instant and faded")
TINTWERK_CATEGORY(BlackAndWhite, "Black and white")
TINTWERK_CATEGORY(Warm, "Warm light")
TINTWERK_CATEGORY(Cool, "Cool and blue")
TINTWERK_CATEGORY(Airy, "Bright and airy")
TINTWERK_CATEGORY(Cross, "Cross and contrast")
TINTWERK_CATEGORY(ToyCamera, "Toy camera")
TINTWERK_CATEGORY(OldPrint, "Old prints")
TINTWERK_CATEGORY(Portrait, "Portrait")
TINTWERK_CATEGORY(Drawing, "Drawing and painting")
TINTWERK_CATEGORY(Light, "Light and leaks")
TINTWERK_CATEGORY(WeatherAndNight, "Weather, night and feasts")
TINTWERK_CATEGORY(Gradient, "Colour gradients")
TINTWERK_CATEGORY(Special, "Special effects")
TINTWERK_CATEGORY(Basic, "Basics")

// One colour cube each. The last nine, MiDou to YueGuang, give 1 without their cube or the memory to
// read it, with the image as it was, and report nothing. Of the others those of VSCO report their
// end, the rest both ends, without their cube as well.
TINTWERK_EFFECTS_FROM(film_cubes)
TINTWERK_EFFECT(Effect_VSCO_A2, Film, "Summer film", "Golden lights, olive greens, soft blacks")
TINTWERK_EFFECT(Effect_VSCO_A3, Instant, "Old summer",
                "Old summer film: reddish brown fade, muted colours")
TINTWERK_EFFECT(Effect_VSCO_B2, BlackAndWhite, "Classic monochrome",
                "Classic black and white: long greys, firm blacks")
TINTWERK_EFFECT(Effect_VSCO_B4, BlackAndWhite, "Dramatic monochrome",
                "Dramatic black and white: dark skies, glowing skin")
TINTWERK_EFFECT(Effect_VSCO_C1, Film, "Punchy colour", "Punchy colours, deep skies, crisp blacks")
TINTWERK_EFFECT(Effect_VSCO_G2, Portrait, "Warm portrait", "Soft contrast, peach highlights")
TINTWERK_EFFECT(Effect_VSCO_H2, Airy, "Clear rose", "Bright and clear with a breath of rose")
TINTWERK_EFFECT(Effect_VSCO_K1, Film, "Slide film", "Dense colours, glowing reds, deep skies")
TINTWERK_EFFECT(Effect_VSCO_M4, Instant, "Cool matte", "Slate shadows, colours held back")
TINTWERK_EFFECT(Effect_VSCO_M5, Instant, "Warm matte", "Brown shadows, dusky highlights")
TINTWERK_EFFECT(Effect_VSCO_P1, Instant, "Creamy instant",
                "Instant film: creamy whites, blue shadows")
TINTWERK_EFFECT(Effect_VSCO_P2, Instant, "Expired instant", "Expired instant film: greenish yellow")
TINTWERK_EFFECT(Effect_VSCO_P4, Instant, "Pink instant",
                "Instant film: cyan shadows, pink highlights")
TINTWERK_EFFECT(Effect_VSCO_P5, Instant, "Blue instant", "Instant film under a blue veil")
TINTWERK_EFFECT(Effect_VSCO_P6, Instant, "Hot-day instant",
                "Instant film from a hot day: magenta shadows, yellow highlights")
TINTWERK_EFFECT(Effect_VSCO_P7, Instant, "Pearly instant",
                "Pale instant film with pearly highlights")
TINTWERK_EFFECT(Effect_VSCO_P9, Instant, "Night instant",
                "Instant film by night: violet shadows, lamplight gold")
TINTWERK_EFFECT(Effect_VSCO_S4, Airy, "High-key studio", "Airy and neutral")
TINTWERK_EFFECT(Effect_VSCO_SE1, Film, "Spring", "Light, young greens, a breath of blossom")
TINTWERK_EFFECT(Effect_VSCO_SE2, Film, "Autumn", "Leaves turned to amber, deep and warm")
TINTWERK_EFFECT(Effect_VSCO_T1, Film, "Teal and orange", "Cinema: teal shadows against warm skin")
TINTWERK_EFFECT(Effect_VSCO_T2, Cool, "Cold water", "Teal through and through")
TINTWERK_EFFECT(Effect_VSCO_T3, Instant, "Bleached teal", "Green-teal fade, nearly bleached")
TINTWERK_EFFECT(Effect_VSCO_X3, BlackAndWhite, "Chalk and charcoal",
                "Faded black and white: chalk and charcoal")
TINTWERK_EFFECT(Effect_VSCO_X4, BlackAndWhite, "Ivory and brown",
                "Faded black and white: brown blacks, ivory whites")
TINTWERK_EFFECT(Effect_VSCO_X6, BlackAndWhite, "Violet shadows",
                "Faded black and white: dark, with blue-violet shadows")
TINTWERK_EFFECT(Effect_VSCO_H5, Cool, "Porcelain", "Crisp and cool, whites like porcelain")
TINTWERK_EFFECT(Effect_VSCO_HeiBai, BlackAndWhite, "Luminous monochrome",
                "Luminous black and white")
TINTWERK_EFFECT(Effect_VSCO_1970, Instant, "Seventies print", "Orange-brown, faded blacks")
TINTWERK_EFFECT(Effect_ChenGuang, Warm, "Morning light", "Pale gold, long soft tones")
TINTWERK_EFFECT(Effect_FeiCui, Cool, "Jade", "Cool green, clear and quiet")
TINTWERK_EFFECT(Effect_LiRi, Warm, "Bright sun", "Warm light, full colours")
TINTWERK_EFFECT(Effect_QingLiang, Cool, "After rain", "Fresh and cool, as after rain")
TINTWERK_EFFECT(Effect_WuCha, Warm, "Afternoon tea", "Amber window light")
TINTWERK_EFFECT(Effect_MiDou, Warm, "Honey and rose", "Honey bean: honey highlights, rose shadows")
TINTWERK_EFFECT(Effect_NaTie, Warm, "Latte", "Beige and milk, little colour")
TINTWERK_EFFECT(Effect_QuQi, Warm, "Cookie", "Golden brown and crisp")
TINTWERK_EFFECT(Effect_RiChu, Warm, "Sunrise", "Violet shadows, orange-pink highlights")
TINTWERK_EFFECT(Effect_RuoKeKe, Warm, "Cocoa", "Dark chocolate, low key")
TINTWERK_EFFECT(Effect_ShaLou, Warm, "Dry sand", "Hourglass: dry sand bleached by the sun")
TINTWERK_EFFECT(Effect_YangPiJuan, OldPrint, "Parchment", "Nearly one colour, yellow-brown")
TINTWERK_EFFECT(Effect_YeCan, Film, "Picnic", "Lively grass, warm skin, light shadows")
TINTWERK_EFFECT(Effect_YueGuang, Cool, "Moonlight", "A blue night, colours asleep")
TINTWERK_TRAIT(Effect_VSCO_A2, Reports)
TINTWERK_TRAIT(Effect_VSCO_A3, Reports)
TINTWERK_TRAIT(Effect_VSCO_B2, Reports)
TINTWERK_TRAIT(Effect_VSCO_B4, Reports)
TINTWERK_TRAIT(Effect_VSCO_C1, Reports)
TINTWERK_TRAIT(Effect_VSCO_G2, Reports)
TINTWERK_TRAIT(Effect_VSCO_H2, Reports)
TINTWERK_TRAIT(Effect_VSCO_K1, Reports)
TINTWERK_TRAIT(Effect_VSCO_M4, Reports)
TINTWERK_TRAIT(Effect_VSCO_M5, Reports)
TINTWERK_TRAIT(Effect_VSCO_P1, Reports)
TINTWERK_TRAIT(Effect_VSCO_P2, Reports)
TINTWERK_TRAIT(Effect_VSCO_P4, Reports)
TINTWERK_TRAIT(Effect_VSCO_P5, Reports)
TINTWERK_TRAIT(Effect_VSCO_P6, Reports)
TINTWERK_TRAIT(Effect_VSCO_P7, Reports)
TINTWERK_TRAIT(Effect_VSCO_P9, Reports)
TINTWERK_TRAIT(Effect_VSCO_S4, Reports)
TINTWERK_TRAIT(Effect_VSCO_SE1, Reports)
TINTWERK_TRAIT(Effect_VSCO_SE2, Reports)
TINTWERK_TRAIT(Effect_VSCO_T1, Reports)
TINTWERK_TRAIT(Effect_VSCO_T2, Reports)
TINTWERK_TRAIT(Effect_VSCO_T3, Reports)
TINTWERK_TRAIT(Effect_VSCO_X3, Reports)
TINTWERK_TRAIT(Effect_VSCO_X4, Reports)
TINTWERK_TRAIT(Effect_VSCO_X6, Reports)
TINTWERK_TRAIT(Effect_VSCO_H5, Reports)
TINTWERK_TRAIT(Effect_VSCO_HeiBai, Reports)
TINTWERK_TRAIT(Effect_VSCO_1970, Reports)
TINTWERK_TRAIT(Effect_ChenGuang, Reports)
TINTWERK_TRAIT(Effect_FeiCui, Reports)
TINTWERK_TRAIT(Effect_LiRi, Reports)
TINTWERK_TRAIT(Effect_QingLiang, Reports)
TINTWERK_TRAIT(Effect_WuCha, Reports)
TINTWERK_TRAIT(Effect_MiDou, SucceedsWithoutFiles)
TINTWERK_TRAIT(Effect_NaTie, SucceedsWithoutFiles)
TINTWERK_TRAIT(Effect_QuQi, SucceedsWithoutFiles)
TINTWERK_TRAIT(Effect_RiChu, SucceedsWithoutFiles)
TINTWERK_TRAIT(Effect_RuoKeKe, SucceedsWithoutFiles)
TINTWERK_TRAIT(Effect_ShaLou, SucceedsWithoutFiles)
TINTWERK_TRAIT(Effect_YangPiJuan, SucceedsWithoutFiles)
TINTWERK_TRAIT(Effect_YeCan, SucceedsWithoutFiles)
TINTWERK_TRAIT(Effect_YueGuang, SucceedsWithoutFiles)

// The image against a blurred copy of itself. They blur the image before they open their file, so
// without it they give 0 with a blurred image; that of YiZhou is toned as well. A stop leaves the
// same, the second one of LengZi the image before its curves.
TINTWERK_EFFECTS_FROM(studio_tables)
TINTWERK_EFFECT(Effect_JingDianYingLou, Portrait, "Portrait studio",
                "Classic portrait studio: smooth skin, a soft glow, creamy lights")
TINTWERK_EFFECT(Effect_LengLan, Cool, "Crisp blue", "Crisp and cool: blue shadows, clear lights")
TINTWERK_EFFECT(Effect_LengLv, Cool, "Sea green", "Crisp and matt: sea green shadows")
TINTWERK_EFFECT(Effect_NuanHuang, Warm, "Amber afternoon",
                "Soft afternoon: amber lights over brown shadows")
TINTWERK_EFFECT(Effect_LengZi, Cool, "Dreamy violet", "Pale and dreamy under a cool violet")
TINTWERK_EFFECT(Effect_YiZhou, ToyCamera, "Contrasty soft corners",
                "Hard contrast, soft and dark towards the corners")
TINTWERK_TRAIT(Effect_JingDianYingLou, StopKeepsStages)
TINTWERK_TRAIT(Effect_LengZi, StopKeepsStages)
TINTWERK_TRAIT(Effect_YiZhou, StopKeepsStages)

// A picture of stray light, screened over the image. Without the picture a leak gives 0 with the
// image as it was.
TINTWERK_EFFECTS_FROM(light_leaks)
TINTWERK_EFFECT(Effect_LEAK_1, Light, "Orange edge leak", "Light leak: orange along the left edge")
TINTWERK_EFFECT(Effect_LEAK_6, Light, "Golden corner leak",
                "Light leak: golden from the upper right corner")
TINTWERK_EFFECT(Effect_LEAK_7, Light, "Red band leak",
                "Light leak: an uneven red band along the top")
TINTWERK_EFFECT(Effect_LEAK_9, Light, "Rose streak leak",
                "Light leak: a rose streak across the lower right")
TINTWERK_EFFECT(Effect_LEAK_15, Light, "Burnt roll end",
                "Light leak: the burnt end of the roll, pale on the right")
TINTWERK_EFFECT(Effect_LEAK_LIGHT_LEAK, Light, "Peach haze leak",
                "Light leak: a peach haze from the lower left corner")
TINTWERK_EFFECT(Effect_LEAK_LIGHT_LEAK_17, Light, "Golden bokeh leak",
                "Light leak: golden bokeh along the right and lower edge")

// Tables and pictures. All but quxian_14 report on 0..100, whatever the span is, and go on
// without a missing picture as if it were black. A stop in their rows gives 1. quxian_10 opens its
// second table halfway: without it the result is 0 with half of the work done, and so it is after a
// stop in its first rows or before that table.
TINTWERK_EFFECTS_FROM(curve_presets)
TINTWERK_EFFECT(quxian_3, Light, "Rose bokeh", "Rose bokeh from one side")
TINTWERK_EFFECT(quxian_4, Light, "Evening window", "Evening sun through a window")
TINTWERK_EFFECT(quxian_6, WeatherAndNight, "Dusk sky", "Dusk sky, from violet to apricot")
TINTWERK_EFFECT(quxian_7, OldPrint, "Old slide", "Dark corners, amber to teal, dust")
TINTWERK_EFFECT(quxian_10, OldPrint, "Hazy summer print",
                "Faded summer print with haze and a dusty beam")
TINTWERK_EFFECT(quxian_14, Light, "Sunny corner", "Bright, with the sun in the upper left")
TINTWERK_TRAIT(quxian_3, ReportsOwnScale)
TINTWERK_TRAIT(quxian_3, StopKeepsRows)
TINTWERK_TRAIT(quxian_4, ReportsOwnScale)
TINTWERK_TRAIT(quxian_4, StopKeepsRows)
TINTWERK_TRAIT(quxian_6, ReportsOwnScale)
TINTWERK_TRAIT(quxian_6, StopKeepsRows)
TINTWERK_TRAIT(quxian_7, ReportsOwnScale)
TINTWERK_TRAIT(quxian_7, StopKeepsRows)
TINTWERK_TRAIT(quxian_10, ReportsOwnScale)
TINTWERK_TRAIT(quxian_10, StopKeepsRows)
TINTWERK_TRAIT(quxian_10, StopKeepsStages)

// The image coloured through a gradient. NewGt_1 to NewGt_5 report on 0..100, whatever the span is,
// and a stop in their rows gives 1. NewGt_7 goes on without its picture as if it were black.
TINTWERK_EFFECTS_FROM(gradient_planes)
TINTWERK_EFFECT(NewGt_1, Gradient, "Yellow to violet",
                "Pastel gradient from yellow over green and blue to violet")
TINTWERK_EFFECT(NewGt_2, Gradient, "Blue to yellow", "Gradient from blue above to yellow below")
TINTWERK_EFFECT(NewGt_3, Gradient, "Rose to blue", "Pastel gradient from rose to blue")
TINTWERK_EFFECT(NewGt_5, Gradient, "Pastel rainbow", "A soft rainbow across the image")
TINTWERK_EFFECT(NewGt_7, Gradient, "Violet and amber",
                "Soft violet and amber light from two corners")
TINTWERK_EFFECT(Effect_GuangShuJianBian, Gradient, "Violet beam",
                "Diagonal beam of light between violet shades")
TINTWERK_TRAIT(NewGt_1, ReportsOwnScale)
TINTWERK_TRAIT(NewGt_1, StopKeepsRows)
TINTWERK_TRAIT(NewGt_2, ReportsOwnScale)
TINTWERK_TRAIT(NewGt_2, StopKeepsRows)
TINTWERK_TRAIT(NewGt_3, ReportsOwnScale)
TINTWERK_TRAIT(NewGt_3, StopKeepsRows)
TINTWERK_TRAIT(NewGt_5, ReportsOwnScale)
TINTWERK_TRAIT(NewGt_5, StopKeepsRows)

// Whole buffers laid over the image. Jieri_3 reports on 0..100, whatever the span is, and goes
// on without a missing picture as if all of it were 0, opacity too. RainbowColor asks and reports
// while it paints its gradient, from the low end of the range to 10.
TINTWERK_EFFECTS_FROM(festival_and_rainbow)
TINTWERK_EFFECT(Jieri_3, WeatherAndNight, "Festive lamps",
                "Bright rose-gold print in a red frame of golden lamps")
TINTWERK_EFFECT(RainbowColor, Gradient, "Blue-yellow monochrome",
                "Black and white, tinted blue above and yellow below")
TINTWERK_TRAIT(Jieri_3, ReportsOwnScale)
TINTWERK_TRAIT(RainbowColor, ReportsOwnScale)
TINTWERK_TRAIT(RainbowColor, StopKeepsImage)

// The image zoomed and smeared towards its centre.
TINTWERK_EFFECTS_FROM(time_tunnel)
TINTWERK_EFFECT(Effect_ShiGuangSuiDao, Special, "Time tunnel", "Rushing walls around a warm light")

// Filters with fixed settings. They need no support files. Where they ask in their rows, a stop gives
// 1. DianShiXian reports from 0 over the span. QuanCai and ZhiNengHuiSe report on 0..100, whatever
// the span is: in their rows they count colours, and after a stop there they go by those above it.
// They ask once more then, before they write.
TINTWERK_EFFECTS_FROM(filter_presets)
TINTWERK_EFFECT(Effect_DianShiXian, Special, "Television lines", "Every second row darkened")
TINTWERK_EFFECT(Effect_FanSe, Special, "Negative", "Every colour turned into its opposite")
TINTWERK_EFFECT(Effect_HeiBai, BlackAndWhite, "Plain greys", "Plain black and white")
TINTWERK_EFFECT(Effect_NuanHua, Basic, "Warmer midtones",
                "Middle tones shifted from blue to orange")
TINTWERK_EFFECT(Effect_QuWu, Basic, "Dehaze", "Takes haze off by stretching each channel")
TINTWERK_EFFECT(Effect_RouHe, Basic, "Soften", "Slight softening")
TINTWERK_EFFECT(Effect_RuiHua, Basic, "Sharpen", "Strong sharpening of every edge")
TINTWERK_EFFECT(Effect_ZaoDian, Basic, "Colour noise", "Fine noise in all colours")
TINTWERK_EFFECT(Emboss, Special, "Emboss", "Grey relief with traces of colour")
TINTWERK_EFFECT(UnColor, Special, "Inverted colours", "The negative again, reporting its progress")
TINTWERK_EFFECT(paper, BlackAndWhite, "Ink on paper", "Black and white without greys")
TINTWERK_EFFECT(Effect_HuaiJiu, OldPrint, "Grainy brown print",
                "Brown-toned old photograph with grain")
TINTWERK_EFFECT(Effect_QuanCai, Basic, "Full saturation", "Saturation raised to the full scale")
TINTWERK_EFFECT(Effect_ZhiNengHuiSe, Basic, "Half saturation",
                "Saturation raised halfway to the full scale")
TINTWERK_EFFECT(Effect_Hdr, Basic, "Punchy HDR", "Punchy tones and crisp detail")
TINTWERK_EFFECT(Effect_JingDianHDR, Cross, "Classic HDR", "Classic HDR tones with muted blues")
TINTWERK_TRAIT(Effect_ZaoDian, DrawsRandomNumbers)
TINTWERK_TRAIT(Effect_HuaiJiu, DrawsRandomNumbers)
TINTWERK_TRAIT(Effect_DianShiXian, ReportsOwnScale)
TINTWERK_TRAIT(Effect_DianShiXian, StopKeepsRows)
TINTWERK_TRAIT(Effect_RouHe, Reports)
TINTWERK_TRAIT(Effect_RouHe, StopKeepsRows)
TINTWERK_TRAIT(Effect_RuiHua, Reports)
TINTWERK_TRAIT(Effect_RuiHua, StopKeepsRows)
TINTWERK_TRAIT(Effect_ZaoDian, Reports)
TINTWERK_TRAIT(Effect_ZaoDian, StopKeepsRows)
TINTWERK_TRAIT(Emboss, Reports)
TINTWERK_TRAIT(Emboss, StopKeepsRows)
TINTWERK_TRAIT(UnColor, Reports)
TINTWERK_TRAIT(UnColor, StopKeepsRows)
TINTWERK_TRAIT(paper, Reports)
TINTWERK_TRAIT(paper, StopKeepsRows)
TINTWERK_TRAIT(Effect_HuaiJiu, StopKeepsStages)
TINTWERK_TRAIT(Effect_QuanCai, ReportsOwnScale)
TINTWERK_TRAIT(Effect_QuanCai, StopKeepsImage)
TINTWERK_TRAIT(Effect_QuanCai, StopKeepsRows)
TINTWERK_TRAIT(Effect_ZhiNengHuiSe, ReportsOwnScale)
TINTWERK_TRAIT(Effect_ZhiNengHuiSe, StopKeepsImage)
TINTWERK_TRAIT(Effect_ZhiNengHuiSe, StopKeepsRows)

// Tone curves, and a map of one blend. Hudson reports both ends.
TINTWERK_EFFECTS_FROM(one_map_tones)
TINTWERK_EFFECT(Effect_80S, Instant, "Eighties snapshot", "Lifted shadows, warm highlights")
TINTWERK_EFFECT(Effect_179InstaHudson, Cool, "Wine-dark daylight",
                "Cold daylight: blue middle tones, wine-dark shadows, dim rim")
TINTWERK_EFFECT(Effect_Hudson, Cool, "Cold daylight", "Cold daylight with a bright middle")
TINTWERK_EFFECT(Effect_175BaiLu, Airy, "White dew", "Pale, moist light")
TINTWERK_EFFECT(Effect_286DianYa, Cross, "Deep olive",
                "Elegant: deep contrast, olive greens, cool blacks")
TINTWERK_EFFECT(Effect_DanYa, Cool, "Muted teal", "Quiet: muted colours, dark teal shadows")
TINTWERK_EFFECT(Effect_MoRan, BlackAndWhite, "Ink wash", "Soft greys on clean paper")
TINTWERK_EFFECT(Effect_QingLiangNew, Cool, "Lively blue",
                "Fresh: bright, violet-blue, lively colours")
TINTWERK_TRAIT(Effect_175BaiLu, WritesAlpha)
TINTWERK_TRAIT(Effect_Hudson, Reports)

// Chains of maps with a picture over the image. HuiYi goes on without its picture as if it
// were black.
TINTWERK_EFFECTS_FROM(old_photo)
TINTWERK_EFFECT(Effect_HuiYi, OldPrint, "Faded memory", "Faded print under a dark rim")
TINTWERK_EFFECT(Effect_NingXia, Cool, "Cool summer", "Quiet summer: cool blue-green, dim corners")
TINTWERK_EFFECT(Effect_YaoGun, Cross, "Rust and petrol",
                "Rock: rust and petrol, hard contrast, dark corners")
TINTWERK_EFFECT(Effect_LiuNian, OldPrint, "Chalky corners",
                "Fleeting years: blue-green fade, chalky corners")
TINTWERK_EFFECT(Effect_YunDuan, Airy, "In the clouds", "Pale, faintly violet, even")
TINTWERK_EFFECT(Effect_Bali, Light, "Rosy glow", "Rosy glow from the middle, dim rim")
TINTWERK_EFFECT(Effect_HouQingChun, Cross, "Bleached gold",
                "Bleached golden lights, ink-dark shadows")
TINTWERK_EFFECT(Effect_YouGe, OldPrint, "Burnt edges",
                "Slow song: amber lights, bluish shadows, burnt edges")

// Strokes along edges.
TINTWERK_EFFECTS_FROM(brush_strokes)
TINTWERK_EFFECT(Effect_BrushSketch, Drawing, "Stroke drawing",
                "Lines along every edge over soft tones")

// Tone curves alone; LaBi draws outlines too. RiXi, YinXiang, LengDiaoSe and XiaoQingXin ask between
// their stages, and report nothing.
TINTWERK_EFFECTS_FROM(baked_curves)
TINTWERK_EFFECT(Effect_LaBi, Drawing, "Crayon", "Dark outlines over the picture's colours")
TINTWERK_EFFECT(Effect_164NuanCha, Warm, "Warm tea", "Gently lifted, brown blacks")
TINTWERK_EFFECT(Effect_173LengDiao, Cool, "Blue shadows",
                "Cool tone: clear contrast, blue in the shadows")
TINTWERK_EFFECT(Effect_GeTeFeng, Cross, "Gothic", "Poison green over yellow")
TINTWERK_EFFECT(Effect_GeTeFengPomelo, Cross, "Poison green",
                "The same as Gothic, under its second name")
TINTWERK_EFFECT(Effect_GuTongSe, Cross, "Bronze", "Indigo shadows under olive gold")
TINTWERK_EFFECT(Effect_JiaoPian, Film, "Cinema film", "Deep cyan shadows, cream whites")
TINTWERK_EFFECT(Effect_JiaoPianPomelo, Film, "Cyan and cream",
                "The same as Cinema film, under its second name")
TINTWERK_EFFECT(Effect_JiuRiXi, Airy, "Old Japanese summer",
                "Old summer in Japan: pale, teal grey, low contrast")
TINTWERK_EFFECT(Effect_LanDiao, Airy, "Rosy high key",
                "High key: shadows opened wide, a rosy breath")
TINTWERK_EFFECT(Effect_RiXiRenXiang, Airy, "Japanese portrait", "Soft and faded, cool shadows")
TINTWERK_EFFECT(Effect_RouGuangNew, Airy, "Soft light", "Bright, warm, open shadows")
TINTWERK_EFFECT(Effect_ZiRan, Airy, "Natural light", "Natural: brighter, a touch of warmth")
TINTWERK_EFFECT(Effect_BingLing, Cool, "Ice", "Clear, cold blue")
TINTWERK_EFFECT(Effect_FenHongJiaRen, Airy, "Peach tint", "Bright, with a touch of peach")
TINTWERK_EFFECT(NewStd_6, Airy, "Bright peach", "The same as Peach tint, under its first name")
TINTWERK_EFFECT(Effect_Panduola, Cross, "Wine and lime",
                "Pandora: wine-red blacks, yellow-green lights")
TINTWERK_EFFECT(Effect_ShenLanLeiYu, Cool, "Deep blue rain", "Cold, bright shadows, pale lights")
TINTWERK_EFFECT(Effect_ZiSeHuanXiang, Cross, "Bright violet", "Violet over everything, and bright")
TINTWERK_EFFECT(Effect_ZiSeQingMi, Cross, "Hard violet",
                "Violet passion: violet blacks, hard contrast")
TINTWERK_EFFECT(Effect_DuiBiQiangLie, Cross, "Strong contrast", "Deep shadows, vivid colours")
TINTWERK_EFFECT(Effect_FuGuPomelo, OldPrint, "Navy and cream",
                "Retro print: navy shadows, cream lights, flat contrast")
TINTWERK_EFFECT(Effect_XinRiXi, Airy, "Muted day",
                "Warm blacks, green-grey middle, blue-white lights")
TINTWERK_EFFECT(Effect_Silver, BlackAndWhite, "Silver print", "Plain, even greys")
TINTWERK_EFFECT(Effect_Sliver, BlackAndWhite, "Ivory silver print", "Contrasty greys, ivory lights")
TINTWERK_EFFECT(Effect_165WuCha, Warm, "Rose tea", "Afternoon tea in rose: bright, violet blacks")
TINTWERK_EFFECT(Effect_FanHuangAnJiao, OldPrint, "Yellowed print", "Yellowed, with dark corners")
TINTWERK_EFFECT(Effect_RiXi, Airy, "Milky lavender", "Milky lavender blue, soft and young")
TINTWERK_EFFECT(Effect_YinXiang, Cross, "Petrol and sage",
                "Impression: petrol shadows, sage lights")
TINTWERK_EFFECT(Effect_LengDiaoSe, Cool, "Drained lilac",
                "Nearly colourless: brown shadows, lilac lights")
TINTWERK_EFFECT(Effect_XiaoQingXin, Airy, "Fresh green",
                "Small and fresh: clean whites, a hint of green")
TINTWERK_TRAIT(Effect_RiXi, StopKeepsStages)
TINTWERK_TRAIT(Effect_YinXiang, StopKeepsStages)
TINTWERK_TRAIT(Effect_LengDiaoSe, StopKeepsStages)
TINTWERK_TRAIT(Effect_XiaoQingXin, StopKeepsStages)

// Tone curves, and a picture screened over the image.
TINTWERK_EFFECTS_FROM(material_overlays)
TINTWERK_EFFECT(Effect_FeiXue, WeatherAndNight, "Flying snow", "Flying snow in a clear, cold light")
TINTWERK_EFFECT(Effect_PingAnYe, WeatherAndNight, "Silent night",
                "Golden lights above, snow in the air")
TINTWERK_EFFECT(Effect_LaoZhaoPian, OldPrint, "Worn photograph",
                "Old photograph: violet shadows, cream lights, worn edges")
TINTWERK_EFFECT(Effect_RiGuangHaiAn, WeatherAndNight, "Sunlit coast",
                "Sun from the upper right, honey light")
TINTWERK_EFFECT(Effect_YeJing, WeatherAndNight, "City lights",
                "City lights out of focus along the lower edge")
TINTWERK_EFFECT(Effect_LiangHong, Gradient, "Red light", "Red light from the left, rosy tones")

// Tone curves, and a rim. EarlyBird reports both ends.
TINTWERK_EFFECTS_FROM(early_bird)
TINTWERK_EFFECT(Effect_174EarlyBird, Instant, "Framed early bird",
                "Early morning: gold and brown in a soft dark frame")
TINTWERK_EFFECT(Effect_EarlyBird, Instant, "Early bird",
                "Early morning: gold and brown, dark towards the corners")
TINTWERK_EFFECT(Effect_JiuShiGuang, Instant, "Faded gold", "Brown shadows, dim corners")
TINTWERK_EFFECT(Effect_KuAi, Instant, "Rose and teal",
                "Bright in the middle: teal shadows, rose-cream lights")
TINTWERK_TRAIT(Effect_EarlyBird, Reports)

// Pictures of light laid over the image. NiGuang, BoLiShuiZhu and RouGuang report on 0..100, whatever
// the span is. BoLiShuiZhu asks as if its picture were brightened row by row: after a stop there the
// drops below are darker. It asks once more then, before it writes.
TINTWERK_EFFECTS_FROM(light_overlays)
TINTWERK_EFFECT(Effect_Louguang, Light, "Amber and teal",
                "Leaking light: amber from the left, teal beyond")
TINTWERK_EFFECT(Effect_NiGuang, Light, "Backlight", "Low sun and warm haze")
TINTWERK_EFFECT(Effect_JianGuang, Light, "Light beams", "Beams of light falling through haze")
TINTWERK_EFFECT(Effect_XingMang, WeatherAndNight, "Starry rays", "Points of light with fine rays")
TINTWERK_EFFECT(Effect_XiYangJianBian, WeatherAndNight, "Sunset",
                "Sunset from violet above to orange below")
TINTWERK_EFFECT(Effect_BoLiShuiZhu, WeatherAndNight, "Rainy window", "Raindrops on a window pane")
TINTWERK_EFFECT(Effect_RouGuang, Portrait, "Soft focus", "Lights bloom, shadows keep their depth")
TINTWERK_TRAIT(Effect_NiGuang, ReportsOwnScale)
TINTWERK_TRAIT(Effect_BoLiShuiZhu, ReportsOwnScale)
TINTWERK_TRAIT(Effect_BoLiShuiZhu, StopKeepsImage)
TINTWERK_TRAIT(Effect_BoLiShuiZhu, StopKeepsRows)
TINTWERK_TRAIT(Effect_RouGuang, ReportsOwnScale)

// Colour grades, a mask and an overlay. YiZhouPomelo blurs the image before it opens its last two
// files: without them it gives 0 with a blurred image. FanZhuanSe reports 10 before its pass.
TINTWERK_EFFECTS_FROM(pomelo)
TINTWERK_EFFECT(Effect_FenHongJiaRenPomelo, Portrait, "Rose pink",
                "Rose: bright and pink over everything")
TINTWERK_EFFECT(Effect_YiZhouPomelo, ToyCamera, "Sharp middle",
                "Soft and dark around a middle in focus")
TINTWERK_EFFECT(Effect_FanZhuanSe, Cross, "Amber edge",
                "Blue-black shadows, yellow lights, amber along one edge")
TINTWERK_TRAIT(Effect_FanZhuanSe, ReportsOwnScale)

// Toy cameras and retro prints. XuanCaiLomo reports 10 and 20, whatever the span is, and
// JingdianLomoPomelo both ends.
TINTWERK_EFFECTS_FROM(lomo)
TINTWERK_EFFECT(Effect_JingdianLomo, ToyCamera, "Classic toy camera",
                "Warm middle, blue-green dark corners")
TINTWERK_EFFECT(Effect_XuanCaiLomo, ToyCamera, "Colourful toy camera",
                "Magenta to cyan around dark corners")
TINTWERK_EFFECT(Effect_JingdianLomoPomelo, ToyCamera, "Hard toy camera",
                "Deep blacks, cold dark corners")
TINTWERK_EFFECT(NewLOMO_14, ToyCamera, "Leaky toy camera",
                "Toy camera with an orange leak and blue blacks")
TINTWERK_EFFECT(NewLOMO_3, ToyCamera, "Grainy toy camera",
                "Toy camera: petrol shadows, peach lights, grain")
TINTWERK_EFFECT(Effect_FuGuLomo, ToyCamera, "Cross-processed", "Navy shadows, cream lights")
TINTWERK_EFFECT(Effect_RiXi_Lomo, ToyCamera, "Pale toy camera", "Milky, faintly blue-green")
TINTWERK_EFFECT(Effect_FuGu, OldPrint, "Retro print",
                "Warm lights, faded blue blacks, crisp detail")
TINTWERK_EFFECT(Effect_FuGuHeiBai, BlackAndWhite, "Worn vintage print",
                "Vintage black and white on a worn, toned print")
TINTWERK_TRAIT(NewLOMO_3, DrawsRandomNumbers)
TINTWERK_TRAIT(Effect_XuanCaiLomo, ReportsOwnScale)
TINTWERK_TRAIT(Effect_JingdianLomoPomelo, Reports)

// Skin and portrait looks. ABaoSe reports its end.
TINTWERK_EFFECTS_FROM(portrait)
TINTWERK_EFFECT(Effect_GuangHuaMeiFu, Portrait, "Smooth skin",
                "Shadows on the face filled, edges kept")
TINTWERK_EFFECT(Effect_ShenDuMeiBai, Portrait, "Bright fair skin",
                "Fair skin, strongly: smooth and bright")
TINTWERK_EFFECT(Effect_ZiRanMeiBai, Portrait, "Gentle fair skin", "Fair skin, gently")
TINTWERK_EFFECT(Effect_TianMeiKeRen, Portrait, "Peach skin", "Sweet and bright, softened yellows")
TINTWERK_EFFECT(Effect_NuanYangYang, Warm, "Sunny warmth", "Open shadows, golden light")
TINTWERK_EFFECT(Effect_ABaoSe, Cross, "Coral and cyan",
                "Two colours: coral skin against clear cyan")
TINTWERK_EFFECT(Effect_FenNenXi, Portrait, "Tender pink", "Rosy light, gentle contrast")
TINTWERK_EFFECT(Effect_WeiMei, Portrait, "Dreamy portrait",
                "Navy shadows, cream lights, all softened")
TINTWERK_TRAIT(Effect_ABaoSe, Reports)

// Drawings and paintings. SuMiao asks once, before it draws. NewCaiQian draws twice and gives 1
// whatever comes of it: a drawing whose files or memory are missing is left out.
TINTWERK_EFFECTS_FROM(sketch)
TINTWERK_EFFECT(Effect_SuMiao, Drawing, "Pencil drawing", "Pencil on white paper")
TINTWERK_EFFECT(Effect_GuDianSuMiao, Drawing, "Classic sketch",
                "Pencil on cream paper, with an unfinished margin")
TINTWERK_EFFECT(Effect_GuDianSuMiaoEx, Drawing, "Dark classic sketch",
                "Pencil on cream paper, darker and crisper")
TINTWERK_EFFECT(Effect_XieShengSuMiao, Drawing, "Bold graphite",
                "Sketched from life: cool greys, bold hatching")
TINTWERK_EFFECT(Effect_XieShengSuMiaoEx, Drawing, "Cross-hatched graphite",
                "Sketched from life: fine cross-hatching")
TINTWERK_EFFECT(Effect_CaiQian, Drawing, "Coloured pencil", "The picture's own colours in strokes")
TINTWERK_EFFECT(Effect_NewCaiQian, Drawing, "Tinted graphite",
                "Graphite sketch touched with coloured pencils")
TINTWERK_EFFECT(Effect_YouHua, Drawing, "Oil painting", "Rich colours, brush strokes in relief")
TINTWERK_TRAIT(Effect_SuMiao, StopKeepsImage)
TINTWERK_TRAIT(Effect_NewCaiQian, SucceedsWithoutFiles)

// A comic panel.
TINTWERK_EFFECTS_FROM(comic)
TINTWERK_EFFECT(Effect_ManHua, Drawing, "Comic panel", "Ink outlines, solid blacks, screen tone")

#undef TINTWERK_TRAIT
#undef TINTWERK_EFFECT
#undef TINTWERK_EFFECTS_FROM
#undef TINTWERK_CATEGORY

// What every look does that has support files or curves, in the notation of the interpreter.
#pragma once

#include "looks/recipe_words.h"
#include "tintwerk/math_define.h"

namespace tintwerk::test {

/// The entries of the list by their names.
inline const std::map<std::string, EffectEntry*> kEntries = {
#define TINTWERK_EFFECT(entry, ...) {#entry, &CEffect::entry},
#include "tintwerk/effect_list.h"
};

struct Look {
  std::string name;
  std::string recipe;
  EffectEntry* run = kEntries.contains(name) ? kEntries.at(name) : nullptr;
};

/// A look that works on a crop of the image, without a rectangle.
using RectLook = int(Byte* pixels, int width, int height, void* root, _ZV_2D_RECT* rect,
                     CObjProgress* progress, int low, int high);
template <RectLook* look>
int OverAll(Byte* pixels, int width, int height, void* root, CObjProgress* progress, int low,
            int high) {
  return look(pixels, width, height, root, nullptr, progress, low, high);
}

// What two looks share, and curves that stand for three channels.
inline const std::string kFaded = "tone(v,12/77/158/197/211,39/81/171/215/231,0/22/109/171/185)";
inline const std::string kCinema = "tone(v,12/43/128/215/246,20/59/150/217/237,14/78/157/207/221)";
inline const std::string kRosy = "tone(v,0/88/160/215/255,0/81/150/208/255,0/77/146/205/255)";
inline const std::string kHudson = "tone(v,36/71/123/185/254,0/64/128/191/254,0/79/152/210/254)";
inline const std::string kElegant = "tone(v,7/68/128/189/249,20/73/124/177/198,42/81/121/160/199)";
inline const std::string kEarlyIn = "tone(v,less,less,0/51/102/153/203)";
inline const std::string kEarlyLift = "less,0/57/114/171/227,0/48/96/143/190";
inline const std::string kEarlyCentre = "tone(v,0/90/179/217/254)";
inline const std::string kEarlyOut = "tone(v,29/86/142/198/254,less,17/77/137/195/254)";
inline const std::string kLomo = "tone(v,0/22/44/87/126/160/189/213/235/255)";
inline const std::string kLifeGreen = "0/14/29/59/93/127/161/193/225/255";
inline const std::string kLifeBlue = "0/18/35/67/101/134/167/197/227/255";
inline const std::string kClassic =
    "R:PSScreen.png(y(v),bilinear:sucai14.jpg) R:PSScreen.png(v,bilinear:sucai15.jpg)"
    " R:ZVMultiple50.png(v,bilinear:sucai16.jpg) tone(v,0/8/17/42/76/117/161/198/230/255)";

inline const std::vector<Look> kRecipes = {
    // Studio tables: the sharp value against the blurred one.
    {"Effect_JingDianYingLou", "blur(v,2) ask(v) | zvkr_studio_0.eb#rgb(c,v)"},
    {"Effect_LengLan", "blur(v,2) | zvkr_studio_2.eb#rgb(c,v)"},
    {"Effect_LengLv", "blur(v,2) | zvkr_studio_5.eb#rgb(c,v)"},
    {"Effect_NuanHuang", "blur(v,2) | zvkr_studio_3.eb#rgb(c,v)"},
    {"Effect_LengZi",
     "blur(v,2) ask(v) | zvkr_studio_1.eb#1(v,c) zvkr_studio_1.eb#2(v,c) saturate(v,-45,60,80)"
     " ask(v) zvkr_studio_1.eb#tones(v)"},
    {"Effect_YiZhou",
     "tone(v,0/0/4/30/102/194/235/250/254/255) colourHSB(v,c,0.6) keep(v) blur(v,2) ask(v)"
     " | focus(k,v)"},

    // Light leaks.
    {"Effect_LEAK_1", "style/PSScreen.png(v,needed:style/Leak1.jpg)"},
    {"Effect_LEAK_6", "style/PSScreen.png(v,needed:style/Leak6.jpg)"},
    {"Effect_LEAK_7", "style/PSScreen.png(v,needed:style/Leak7.jpg)"},
    {"Effect_LEAK_9", "style/PSScreen.png(v,needed:style/Leak9.jpg)"},
    {"Effect_LEAK_15", "style/PSScreen.png(v,needed:style/Leak15.jpg)"},
    {"Effect_LEAK_LIGHT_LEAK", "style/PSScreen.png(v,needed:style/light-leak-2.jpg)"},
    {"Effect_LEAK_LIGHT_LEAK_17", "style/PSScreen.png(v,needed:style/LL17.png)"},

    // Curve presets.
    {"quxian_3",
     "at(10) at(20) rows(20,80,zvkr_quxian_3.eb#1(v,90:zvtk_fzl_3a.jpg) zvkr_quxian_3.eb#2(v,c))"},
    {"quxian_4", "at(10) rows(10,90,zvkr_quxian_4.eb#1(v,90:zvtk_fzl_4a.jpg))"},
    {"quxian_6", "at(10) rows(10,90,zvkr_quxian_6.eb#1(v,90:zvtk_fzl_6a.jpg))"},
    {"quxian_7",
     "at(10) at(20) at(30) at(40) rows(40,60,zvkr_quxian_7.eb#1(v,zvtk_fzl_7a.jpg)"
     " zvkr_quxian_7.eb#2(v,zvtk_fzl_7b.jpg) zvkr_quxian_7.eb#3(v,zvtk_fzl_7c.jpg)"
     " tone(v,0/36/70/103/140/170/196/225/255,0/255,0/255))"},
    {"quxian_10",
     "at(5) rows(5,30,zvkr_quxian_10_0.eb#1(v,zvkr_jj_001.jpg)"
     " tone(v,0/37/73/109/143/172/200/228/255) zvkr_quxian_10_0.eb#2(v,zvkr_jj_002.jpg))"
     " saturate(v,-9,35,65) ask(v) | at(70) rows(70,30,tone(v,25/54/82/111/140/169/198/226/254)"
     " zvkr_quxian_10_1.eb#2(v,c) zvkr_quxian_10_1.eb#3(v,zvkr_jj_004.jpg))"},
    {"quxian_14", "tone(v,0/46/88/126/160/190/216/238/255) R:ZVQCGYEx.png(v,bilinear:sucai12.jpg)"},

    // Gradients.
    {"NewGt_1",
     "at(10) at(30) at(50) rows(50,50,zvkr_NewGt_1.eb#1(v,v) zvkr_NewGt_1.eb#2(v,over(turned("
     "bands(0.1/0.3/0.2/0.3/0.1,FF00FF/0000FF/00FF00/FFFF00),135))))"},
    {"NewGt_2",
     "at(20) rows(20,80,zvkr_NewGt_2.eb#1(v,v) zvkr_NewGt_2.eb#2(v,gradient(0000FF/FFFF00,0,0)))"},
    {"NewGt_3",
     "at(10) at(30) at(50) rows(50,50,zvkr_NewGt_3.eb#1(v,v) zvkr_NewGt_3.eb#2(v,over(turned("
     "gradient(EF3E68/0000FF,640,512),-45))))"},
    {"NewGt_5",
     "at(10) at(30) at(40) at(60) rows(60,40,zvkr_NewGt_3.eb#1(v,v) zvkr_NewGt_3.eb#2(v,over(inner("
     "turned(bands(0.01/0.1/0.3/0.2/0.3/0.1/0.01,FF0000/FF00FF/0000FF/00FF00/FFFF00/FF0000),315)"
     "))))"},
    {"Effect_GuangShuJianBian",
     "zvkr_NewGt_3.eb#1(v,v)"
     " zvkr_NewGt_3.eb#2(v,over(turned(bands(0/0.5/0.5/0,28035C/FFFFFF/28035C),135)))"},
    {"NewGt_7", "screen(v,zvtk_071_b.jpg)"},

    // Festival and rainbow, time tunnel.
    {"Jieri_3",
     "at(5) at(15) at(20) at(30) tone(v,0/60/112/156/192/220/240/252/240=255/255)"
     " alphaOver(v,90:zvkr_festival_3.png) hueSat(v,90:zvkr_festival_3b.jpg)"},
    {"RainbowColor", "softLight(y(v),ask(gradient(1A9FE3/FFD237,0,0,7,10)))"},
    {"Effect_ShiGuangSuiDao", "B:ZVOverlay60.png(v,tunnelMask) tunnel(v,tunnelMask)"},

    // Baked curves.
    {"Effect_164NuanCha", "tone(v,17/95/157/212/255,12/80/148/208/255,0/72/142/207/255)"},
    {"Effect_173LengDiao", "tone(v,0/66/150/219/255,0/66/150/219/255,0/91/164/217/255)"},
    {"Effect_GeTeFeng", kFaded},
    {"Effect_GeTeFengPomelo", kFaded},
    {"Effect_GuTongSe", "tone(v,0/52/128/188/199,0/52/128/200/239,91/102/128/200/255)"},
    {"Effect_JiaoPian", kCinema},
    {"Effect_JiaoPianPomelo", kCinema},
    {"Effect_JiuRiXi", "tone(v,14/88/153/199/222,21/103/170/214/240,36/115/177/225/255)"},
    {"Effect_LanDiao", "tone(v,0/114/184/226/255,0/100/171/219/255,0/107/181/228/254)"},
    {"Effect_RiXiRenXiang", "tone(v,16/91/155/200/223,26/107/171/212/236,48/121/174/214/239)"},
    {"Effect_RouGuangNew", "tone(v,0/104/185/232/255,0/95/178/227/255,0/95/178/227/255)"},
    {"Effect_ZiRan", "tone(v,0/88/164/217/255,0/84/159/215/255,0/84/159/215/255)"},
    {"Effect_BingLing", "tone(v,0/74/142/202/255,0/94/168/222/255,0/106/184/234/255)"},
    {"NewStd_6", kRosy},
    {"Effect_FenHongJiaRen", kRosy},
    {"Effect_Panduola", "tone(v,54/81/125/186/255,0/63/128/187/212,0/63/111/134/142)"},
    {"Effect_ShenLanLeiYu", "tone(v,0/68/155/217/253,5/88/171/224/253,34/128/195/234/252)"},
    {"Effect_ZiSeHuanXiang", "tone(v,0/97/170/224/255,0/63/160/217/255,0/130/182/219/255)"},
    {"Effect_ZiSeQingMi", "tone(v,0/39/140/222/255,0/0/134/220/255,0/81/176/232/255)"},
    {"Effect_DuiBiQiangLie", "tone(v,0/28/140/220/255,0/30/150/227/255,0/36/148/224/255)"},
    {"Effect_FuGuPomelo", "tone(v,0/63/150/216/247,17/79/150/196/217,70/114/144/165/173)"},
    {"Effect_XinRiXi", "tone(v,22/71/131/165/196,10/85/140/181/224,0/54/141/201/246)"},
    {"Effect_Silver", "y(v)"},
    {"Effect_Sliver", "tone(y(v),0/51/150/236/255,0/51/150/236/255,0/57/134/208/255)"},
    {"Effect_165WuCha",
     "tone(v,0/112/187/242/255,0/95/169/227/255,41/110/163/202/235) hueSatBright(v,0,8,3)"},
    {"Effect_FanHuangAnJiao",
     "tone(v,25/61/140/219/255,25/61/140/219/255,0/35/115/194/229) vignette(v)"},
    {"Effect_RiXi",
     "tone(v,0/83/153/211/255) saturate(v,-20,30,70) ask(v)"
     " tone(v,25/68/147/214/235,25/83/147/212/249,105/137/194/247/255)"},
    {"Effect_YinXiang",
     "tone(v,0/57/123/190/255,0/60/125/191/255,0/53/120/188/255) saturate(v,15,30,70) ask(v)"
     " tone(v,29/86/158/195/220,51/108/175/207/231,81/115/164/204/225)"},
    {"Effect_LengDiaoSe",
     "tone(v,0/52/128/203/255) saturate(v,-80,20,50) ask(v) autolevel(v) ask(v)"
     " tone(v,0/95/145/191/255,0/75/132/188/255,0/59/146/228/255)"},
    {"Effect_XiaoQingXin",
     "balance(v,0,13,0,21) ask(v) autolevel(v) ask(v)"
     " balance(v,1,2,0,8) ask(v) autolevel(v) ask(v)"
     " balance(v,2,0,0,-13) ask(v) autolevel(v) ask(v)"
     " tone(v,0/69/149/198/255,0/71/133/191/255,0/65/135/195/255)"},
    {"Effect_LaBi", "crayon(v,0/32=0/6/39/118/255)"},

    // Material overlays.
    {"Effect_FeiXue",
     "tone(v,0/74/142/202/255,0/94/168/222/255,0/106/184/234/255)"
     " R:PSScreen.png(v,bilinear:sucai11.jpg)"},
    {"Effect_PingAnYe",
     "tone(v,0/73/141/202/255,0/93/167/222/255,0/106/184/234/255)"
     " R:PSScreen.png(v,bilinear:sucai9.jpg)"},
    {"Effect_LaoZhaoPian",
     "tone(v,7/65/170/229/248,28/74/158/210/227,83/128/156/170/172)"
     " R:PSScreen.png(v,bilinear:sucai17.jpg)"},
    {"Effect_RiGuangHaiAn",
     "autolevel(v) tone(v,0/76/152/205/255,0/61/134/195/255,0/43/88/152/255)"
     " R:PSScreen.png(v,bilinear:sucai8.jpg)"},
    {"Effect_YeJing", "tone(v,0/88/160/216/255) R:PSScreen.png(v,bilinear:sucai10.jpg)"},
    {"Effect_LiangHong",
     "PSScreen.png(v,bilinear:sucai7.jpg)"
     " tone(v,21/88/166/221/255,0/69/154/218/255,0/69/154/218/255)"},

    // Curves, a lift by grey, a colour matrix and a vignette.
    {"Effect_174EarlyBird", kEarlyIn + " half(v,tone(greyDark(v)," + kEarlyLift +
                                ")) matrixWrapped(v)"
                                " vignetteMap.png(v,R:bilinear:174mask.jpg)"
                                " mixByMask(" +
                                kEarlyCentre + ",v,R:bilinear:174mask.jpg) " + kEarlyOut},
    {"Effect_EarlyBird", "at(low) " + kEarlyIn + " half(v,tone(grey16(v)," + kEarlyLift +
                             ")) matrixWrapped(v)"
                             " style/VignetteMap.png(v,r) mixByRadius(" +
                             kEarlyCentre + ",v,r) " + kEarlyOut + " at(high)"},
    {"Effect_JiuShiGuang",
     "tone(v,0/255,0/255,0/51/102/153/203)"
     " liftedMatrix(v,tone(y(v),0/255,0/57/114/171/227,0/48/96/143/190))"
     " mixToCorners(" +
         kEarlyCentre +
         ",v)"
         " tone(v,29/86/142/198/254,0/255,17/77/137/195/254) B:ZVOverlay25.png(v,vignette640.jpg)"},
    {"Effect_KuAi",
     "fixed:kujiu1.png(v) matrixInTurn(v) mixToRim(fixed:kujiu3.png(v),v) fixed:kujiu4.png(v)"
     " half(v,fixed:kujiu5.png(greyDouble(v))) fixed:kujiu2.png(v)"},

    // One-map tones.
    {"Effect_179InstaHudson", "vignetteMap.png(v,bilinear:179bb.jpg) " + kHudson},
    {"Effect_Hudson", "at(low) style/overlayMap.png(v,style/sucai42.jpg) " + kHudson + " at(high)"},
    {"Effect_175BaiLu",
     "tone(v,30/95/146/193/240,0/84/144/201/254,28/87/139/187/233) matrixClamped(v)"
     " 175.png(v,greySingle(v)) opaque(v)"},
    {"Effect_286DianYa", "R:ZVSoftLight.png(" + kElegant + ",v)"},
    {"Effect_DanYa", "B:ZVSoftlight.png(" + kElegant + ",y(v))"},
    {"Effect_80S", "fixed:80smap.png(v) fixed:screen30.png(v)"},
    {"Effect_MoRan", "fixed:tri:R:moran1.png(y(v))"},
    {"Effect_QingLiangNew",
     "R:PSScreen35.png(v,y(v)) saturateFast(v,20)"
     " tone(v,0/72/140/204/255,0/55/133/209/255,0/84/155/219/255)"},

    // Light overlays.
    {"Effect_Louguang",
     "fixed:B:overlayMap.png(v,ZVLouguang1.jpg) fixed:B:ZVOverlay60.png(v,ZVLouguang2.jpg)"
     " fixed:B:ZVScreen.png(v,ZVLouguang3.jpg)"},
    {"Effect_NiGuang",
     "at(5) at(15) at(25) at(35) B:ZVScreen.png(v,90:zvkr_bl_a.jpg)"
     " where(fit:zvkr_bl_b.jpg,B:ZVImageOverlay.png(v,fit:zvkr_bl_b.jpg))"},
    {"Effect_JianGuang",
     "B:ZVScreen.png(v,62) where(fit:zvkr_cl_b.jpg,B:ZVScreen.png(v,fit:zvkr_cl_b.jpg))"
     " B:ZVScreen.png(v,270:zvkr_cl_c.jpg)"},
    {"Effect_XingMang", "B:ZVSoftlight.png(v,xingmang.jpg)"},
    {"Effect_XiYangJianBian", "B:ZVScreen.png(v,zvtk_071_a.jpg)"},
    {"Effect_BoLiShuiZhu", "at(20) B:ZVScreen.png(v,ask(brighten(zvkr_RainDrop.jpg,130,20,60)))"},
    {"Effect_RouGuang", "at(10) B:ZVPixelSoftGlow.png(v,blur(v,13))"},

    // Old photographs.
    {"Effect_HuiYi", "huiyi4.png(v,huiyi1.jpg) huiyi2.png(v) vignetteMap.png(v,r) huiyi3.png(v)"},
    {"Effect_NingXia", "tri:xihu1.png(v) vignetteMap.png(v,r)"},
    {"Effect_YaoGun", "tri:yaogunMap.png(v) vignetteMap.png(v,r)"},
    {"Effect_LiuNian", "style/overlayMap.png(v,style/blackboard.jpg) tri:style/qingse1.png(v)"},
    {"Effect_YunDuan", "style/overlayMap.png(v,style/blackboard.jpg) tri:style/chengguang.png(v)"},
    {"Effect_Bali",
     "B:CompositeColor.png(v,vignette640.jpg) B:CompositeColor.png(v,blowout2.jpg)"
     " B:CompositeColor.png(v,zvkr_fhjr3.jpg)"},
    {"Effect_HouQingChun",
     "B:hqc_Exclusion.png(v,zvkr_hqc1.jpg)"
     " tone(v,0/59/149/213/255,0/45/158/217/255,0/52/163/217/255)"
     " B:hqc_VividLight.png(v,zvkr_hqc2.jpg) tint(v,v,0.24) B:hqc_SoftLight.png(v)"},
    {"Effect_YouGe",
     "burn(v,style/edgeBurn.jpg) tri:style/hefeng1.png(v)"
     " style/hefeng3.png(v,style/hefeng2.png(y(v))) style/hefeng3.png(v,style/hefeng4.jpg)"},

    // Pomelo overlays.
    {"Effect_FenHongJiaRenPomelo",
     "style/PSOverlay60.png(v,style/sucai1.jpg)"
     " tone(v,27/120/179/214/238,0/72/142/196/240,25/100/159/197/226)"},
    {"Effect_YiZhouPomelo",
     "focusByPicture(v,style/sucai29.jpg) | tone(v,0/63/142/214/255,0/68/147/217/255,"
     "0/79/157/225/255) style/PSOverlay60.png(v,needed:style/sucai28.jpg)"},
    {"Effect_FanZhuanSe",
     "at(10) tone(v,0/20/164/250/255,0/20/163/250/255,24/74/142/200/229)"
     " softLightByAlpha(v,zvkr_fzs.png)"},

    // Portraits.
    {"Effect_GuangHuaMeiFu", "lift(v,0/10=0/11=1/9/32/77/119/156/187/213/235/255,plain)"},
    {"Effect_ShenDuMeiBai", "lift(v,0/8/31/74/115/151/182/209/233/255,double)"},
    {"Effect_ZiRanMeiBai", "lift(v,0/8/29/71/110/146/178/206/231/255,single)"},
    {"Effect_TianMeiKeRen",
     "tone(v,6/22/37/67/98/128/159/189/220/249,18/32/46/73/101/128/156/183/211/237,"
     "50/60/70/89/109/128/148/167/187/205)"
     " inks(v,0/-100/-60/-60/0,1/0/-62/-100/0,4/-15/100/100/0,8/0/4/-5/0)"
     " tone(v,11/35/59/105/145/178/203/224/240/255,13/33/54/93/130/163/192/216/237/255,"
     "0/23/46/91/133/169/201/226/248/255)"},
    {"Effect_NuanYangYang",
     "tone(v,25/64/96/143/177/200/216/227/238/245,25/38/72/123/158/187/210/227/241/246,"
     "52/57/74/103/129/152/173/192/211/226)"
     " inks(v,0/30/0/10/-30,6/-100/-25/-45/0,8/0/0/0/10)"},
    {"Effect_ABaoSe",
     "oneOpponent(v) tone(v,0/26/50/95/135/169/198/223/244/255,"
     "0/24/46/88/126/160/190/216/238/255,0/24/46/88/126/160/190/216/238/255) fiveInks(v) at(high)"},
    {"Effect_FenNenXi",
     "R:ZVMultiple50.png(tone(R:ZVSoftLight.png(R:PSScreen50.png(v,v),bilinear:sucai6.jpg),"
     "0/18/37/74/109/141/170/206/233/255,0/255,0/20/41/82/120/154/185/211/234/255),v)"},
    {"Effect_WeiMei", "weiMei(v)"},

    // Drawings.
    {"Effect_SuMiao", "dodge(y(v),ask(smooth(least(minus(y(v))))))"},
    {"Effect_GuDianSuMiao", kClassic},
    {"Effect_GuDianSuMiaoEx", kClassic},
    {"Effect_XieShengSuMiao",
     "B:ZVSoftLight60.png(y(v),zvkr_LifeSketch_wenli1.jpg)"
     " B:ZVScreen.png(v,zvkr_LifeSketch_wenli2.jpg)"
     " tone(v," +
         kLifeGreen + "," + kLifeGreen + "," + kLifeBlue + ")"},
    {"Effect_XieShengSuMiaoEx",
     "R:ZVSoftLight60.png(y(v),bilinear:sucai13.jpg) R:PSScreen.png(v,bilinear:sucai14.jpg)"
     " tone(v,0/14/29/58/92/126/160/192/224/255," +
         kLifeGreen + "," + kLifeBlue + ")"},
    {"Effect_GuDianSuMiaoEx",
     "B:ZVScreen.png(y(v),sucai14.jpg) B:ZVScreen.png(v,sucai15.jpg)"
     " B:ZVMultiple50.png(v,sucai16.jpg) tone(v,0/11/23/49/81/117/154/189/223/255) light(v)",
     OverAll<CEffect::Effect_GuDianSuMiaoEx>},
    {"Effect_XieShengSuMiaoEx",
     "B:ZVSoftLight60.png(y(v),sucai13.jpg) B:ZVScreen.png(v,sucai14.jpg)"
     " tone(v," +
         kLifeGreen + "," + kLifeGreen + "," + kLifeBlue + ")",
     OverAll<CEffect::Effect_XieShengSuMiaoEx>},
    {"Effect_CaiQian",
     "B:ZVScreen.png(v,zvkr_caiqian.jpg) B:ZVImageOverlay.png(v,zvkr_caiqian.jpg)"},
    {"Effect_YouHua", "vivid(v) R:ZVVividLight50.png(v,bilinear:sucai22.jpg)"},
    {"Effect_ManHua", "comic(v,B:sucai19.png) overlaid(v,sucai20.png) stamp(v,sucai21.png)"},
    {"Effect_BrushSketch", "strokes(v,22)"},

    // Toy cameras.
    {"Effect_JingdianLomo",
     "R:jx_123.png(v,v) G:jx_123.png(v,270:zvkr_lomo4.jpg)"
     " B:jx_123.png(v,270:zvkr_lomo1_2.jpg) " +
         kLomo},
    {"Effect_XuanCaiLomo",
     "at(10) at(20) R:jx_123.png(v,v) G:jx_123.png(v,270:zvkr_lomo1_1.jpg)"
     " B:jx_123.png(v,270:zvkr_lomo1_2.jpg) " +
         kLomo},
    {"Effect_JingdianLomoPomelo",
     "at(low) style/PSOverlay30.png(v,270:style/sucai2.jpg)"
     " style/PSOverlay40.png(v,270:style/sucai1.jpg)"
     " tone(v,0/0/7/29/74/124/173/212/241/255) at(high)"},
    {"Effect_FuGuLomo",
     "tone(v,0/13/28/63/105/150/188/216/234/247,17/31/44/79/115/150/177/196/210/217,"
     "70/80/92/114/130/144/156/165/172/173)"},
    {"Effect_RiXi_Lomo",
     "tone(v,16/35/54/91/125/155/181/200/215/223,26/49/69/107/142/171/195/212/227/236,"
     "48/70/87/121/149/174/197/214/228/239)"},
    {"NewLOMO_14",
     "tone(v,7/22/37/67/98/128/158/188/219/248,5/20/36/66/97/128/159/189/220/250,"
     "50/60/69/89/108/128/147/167/186/205)"
     " R:PSScreen.png(v,bilinear:sucai23.jpg) R:PSMultiple.png(v,bilinear:sucai24.jpg)"},
    {"Effect_FuGu", "ZVfugu123.png(blur(v,2),v)"},
    {"Effect_FuGuHeiBai",
     "multiply(reds(v),90:zvtk_fzl_8a.jpg) tone(v,0/10/27/61/94/128/162/195/229/255)"},
};

}  // namespace tintwerk::test

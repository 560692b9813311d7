// What every look of maps, plane files and pictures does, in the notation of the interpreter.
#pragma once

#include "frame/graphics.h"
#include "looks/recipe_interpreter.h"
#include "pixel/blend_buffers.h"
#include "support/operations.h"

namespace tintwerk::test {

struct Look {
  const char* name;
  EffectEntry* run;
  std::string recipe;
};
#define LOOK(entry) #entry, &CEffect::entry

inline const std::vector<Look> kRecipes = {
    // One-map tones and old photographs.
    {LOOK(Effect_80S), "fixed:80smap.png(v) fixed:screen30.png(v)"},
    {LOOK(Effect_HuiYi),
     "huiyi4.png(v,huiyi1.jpg) huiyi2.png(v) vignetteMap.png(v,r) huiyi3.png(v)"},

    // Studio tables: the sharp value against the blurred one.
    {LOOK(Effect_JingDianYingLou), "blur(v,2) ask(v) | zvkr_studio_0.eb#rgb(c,v)"},
    {LOOK(Effect_LengLan), "blur(v,2) | zvkr_studio_2.eb#rgb(c,v)"},
    {LOOK(Effect_LengLv), "blur(v,2) | zvkr_studio_5.eb#rgb(c,v)"},
    {LOOK(Effect_NuanHuang), "blur(v,2) | zvkr_studio_3.eb#rgb(c,v)"},
    {LOOK(Effect_LengZi),
     "blur(v,2) ask(v) | zvkr_studio_1.eb#1(v,c) zvkr_studio_1.eb#2(v,c) saturate(v,-45,60,80)"
     " ask(v) zvkr_studio_1.eb#tones(v)"},
    {LOOK(Effect_YiZhou),
     "tone(v,0/0/4/30/102/194/235/250/254/255) colourHSB(v,c,0.6) keep(v) blur(v,2) ask(v)"
     " | focus(k,v)"},

    // Light leaks.
    {LOOK(Effect_LEAK_1), "style/PSScreen.png(v,needed:style/Leak1.jpg)"},
    {LOOK(Effect_LEAK_6), "style/PSScreen.png(v,needed:style/Leak6.jpg)"},
    {LOOK(Effect_LEAK_7), "style/PSScreen.png(v,needed:style/Leak7.jpg)"},
    {LOOK(Effect_LEAK_9), "style/PSScreen.png(v,needed:style/Leak9.jpg)"},
    {LOOK(Effect_LEAK_15), "style/PSScreen.png(v,needed:style/Leak15.jpg)"},
    {LOOK(Effect_LEAK_LIGHT_LEAK), "style/PSScreen.png(v,needed:style/light-leak-2.jpg)"},
    {LOOK(Effect_LEAK_LIGHT_LEAK_17), "style/PSScreen.png(v,needed:style/LL17.png)"},

    // Curve presets.
    {LOOK(quxian_3),
     "at(10) at(20) rows(20,80,zvkr_quxian_3.eb#1(v,90:zvtk_fzl_3a.jpg) zvkr_quxian_3.eb#2(v,c))"},
    {LOOK(quxian_4), "at(10) rows(10,90,zvkr_quxian_4.eb#1(v,90:zvtk_fzl_4a.jpg))"},
    {LOOK(quxian_6), "at(10) rows(10,90,zvkr_quxian_6.eb#1(v,90:zvtk_fzl_6a.jpg))"},
    {LOOK(quxian_7),
     "at(10) at(20) at(30) at(40) rows(40,60,zvkr_quxian_7.eb#1(v,zvtk_fzl_7a.jpg)"
     " zvkr_quxian_7.eb#2(v,zvtk_fzl_7b.jpg) zvkr_quxian_7.eb#3(v,zvtk_fzl_7c.jpg)"
     " tone(v,0/36/70/103/140/170/196/225/255,0/255,0/255))"},
    {LOOK(quxian_10),
     "at(5) rows(5,30,zvkr_quxian_10_0.eb#1(v,zvkr_jj_001.jpg)"
     " tone(v,0/37/73/109/143/172/200/228/255) zvkr_quxian_10_0.eb#2(v,zvkr_jj_002.jpg))"
     " saturate(v,-9,35,65) ask(v) | at(70) rows(70,30,tone(v,25/54/82/111/140/169/198/226/254)"
     " zvkr_quxian_10_1.eb#2(v,c) zvkr_quxian_10_1.eb#3(v,zvkr_jj_004.jpg))"},
    {LOOK(quxian_14),
     "tone(v,0/46/88/126/160/190/216/238/255) R:ZVQCGYEx.png(v,bilinear:sucai12.jpg)"},

    // Gradients.
    {LOOK(NewGt_1),
     "at(10) at(30) at(50) rows(50,50,zvkr_NewGt_1.eb#1(v,v) zvkr_NewGt_1.eb#2(v,over(turned("
     "bands(0.1/0.3/0.2/0.3/0.1,FF00FF/0000FF/00FF00/FFFF00),135))))"},
    {LOOK(NewGt_2),
     "at(20) rows(20,80,zvkr_NewGt_2.eb#1(v,v) zvkr_NewGt_2.eb#2(v,gradient(0000FF/FFFF00,0,0)))"},
    {LOOK(NewGt_3),
     "at(10) at(30) at(50) rows(50,50,zvkr_NewGt_3.eb#1(v,v) zvkr_NewGt_3.eb#2(v,over(turned("
     "gradient(EF3E68/0000FF,640,512),-45))))"},
    {LOOK(NewGt_5),
     "at(10) at(30) at(40) at(60) rows(60,40,zvkr_NewGt_3.eb#1(v,v) zvkr_NewGt_3.eb#2(v,over(inner("
     "turned(bands(0.01/0.1/0.3/0.2/0.3/0.1/0.01,FF0000/FF00FF/0000FF/00FF00/FFFF00/FF0000),315)"
     "))))"},
    {LOOK(Effect_GuangShuJianBian),
     "zvkr_NewGt_3.eb#1(v,v)"
     " zvkr_NewGt_3.eb#2(v,over(turned(bands(0/0.5/0.5/0,28035C/FFFFFF/28035C),135)))"},
    {LOOK(NewGt_7), "screen(v,zvtk_071_b.jpg)"},

    // Festival and rainbow, time tunnel.
    {LOOK(Jieri_3),
     "at(5) at(15) at(20) at(30) tone(v,0/60/112/156/192/220/240/252/240=255/255)"
     " alphaOver(v,90:zvkr_festival_3.png) hueSat(v,90:zvkr_festival_3b.jpg)"},
    {LOOK(RainbowColor), "softLight(y(v),ask(gradient(1A9FE3/FFD237,0,0,7,10)))"},
    {LOOK(Effect_ShiGuangSuiDao), "B:ZVOverlay60.png(v,tunnelMask) tunnel(v,tunnelMask)"},
};

/// An exported operation as name(picture, amount, low, high).
template <class Operation>
RecipeInterpreter::Word Step(const Operation& operation) {
  return [=](RecipeInterpreter& r, const RecipeInterpreter::Arguments& a) {
    Picture p = r.Value(a[0]);
    std::array<int, 3> numbers{};
    for (std::size_t i = 1; i < a.size(); ++i) numbers[i - 1] = std::stoi(a[i]);
    const auto [amount, low, high] = numbers;
    operation(p.bytes.data(), p.width, p.height, amount, &r.told, low, high);
    return p;
  };
}

/// A blend of whole pictures as name(base, source, opacity).
template <class Blend>
RecipeInterpreter::Word Blended(const Blend& blend) {
  return [=](RecipeInterpreter& r, const RecipeInterpreter::Arguments& a) {
    Picture p = r.Value(a[0]);
    const Picture q = r.Value(a[1]);
    blend(p.bytes.data(), q.bytes.data(), p.width * p.height, a.size() > 2 ? std::stof(a[2]) : 1);
    return p;
  };
}

/// Colours told as RRGGBB/RRGGBB.
inline std::vector<tagRGBQUAD> Colours(const std::string& text) {
  std::vector<tagRGBQUAD> colours;
  for (const std::string& colour : Split(text, '/')) {
    const int rgb = std::stoi(colour, nullptr, 16);
    colours.push_back({Byte(rgb), Byte(rgb >> 8), Byte(rgb >> 16), 0});
  }
  return colours;
}

inline const RecipeInterpreter::Words kWords = [] {
  using P = CPixelProcess;
  using R = RecipeInterpreter;
  using A = R::Arguments;
  return R::Words{
      {"blur", Step([](Byte* p, int w, int h, int radius, auto...) {
         P::stackBlur(p, w, h, radius, nullptr, 0, 100);
       })},
      {"saturate", Step([](Byte* p, int w, int h, int amount, auto... progress) {
         P::Saturateconst(p, w, h, amount, 1, progress...);
       })},
      {"autolevel", Step([](auto... all) { P::AutoColorLevel(all...); })},
      {"opaque", Step([](Byte* p, int w, int h, auto...) {
         for (int i = 0; i < w * h; ++i) p[4 * i + 3] = 255;
       })},
      {"screen",
       Blended([](Byte* p, const Byte* q, int n, float) { BlendBuffersScreen(p, q, n); })},
      {"softLight",
       Blended([](Byte* p, const Byte* q, int n, float) { BlendBuffersSoftLight(p, q, n); })},
      {"alphaOver",
       Blended([](Byte* p, const Byte* q, int n, float) { BlendBuffersAlphaOver(p, q, n); })},
      {"hueSat",
       Blended([](Byte* p, const Byte* q, int n, float) { BlendBuffersHueSat(p, q, n); })},
      {"colourHSB", Blended(BlendBuffersColorHSB)},

      // gradient(top/bottom,width,height,low,high): of the image's own size if that is 0.
      {"gradient",
       [](R& r, const A& a) {
         Picture p = r.entry;
         if (a[1] != "0") p = {std::stoi(a[1]), std::stoi(a[2]), {}};
         p.bytes.assign(std::size_t{4} * p.width * p.height, 255);
         const bool reports = a.size() > 3;
         r.stopped = !P::CreateGradientImage(
             p.bytes.data(), p.width, p.height, Colours(a[0]).data(), reports ? &r.told : nullptr,
             reports ? std::stoi(a[3]) : 0, reports ? std::stoi(a[4]) : 100);
         return p;
       }},
      // bands(heights,colours) of 200 x 200 pixels.
      {"bands",
       [](R&, const A& a) {
         std::vector<double> heights;
         for (const std::string& height : Split(a[0], '/')) heights.push_back(std::stod(height));
         const auto colours = Colours(a[1]);
         return PictureOf(Own(P::GetGradientImage(200, 200, 1, int(colours.size()), colours.data(),
                                                  heights.data(), 0))
                              .get());
       }},
      {"turned",
       [](R& r, const A& a) {
         const Picture p = r.Value(a[0]);
         return PictureOf(Own(P::Rotate2(BitmapOf(p).get(), p.width, p.height, std::stof(a[1]),
                                         P::InterpolationBilinear, P::OverflowClamp, true, true))
                              .get());
       }},
      {"inner",
       [](R& r, const A& a) {
         return PictureOf(Own(P::Clone(BitmapOf(r.Value(a[0])).get(), 20, 20, 180, 180)).get());
       }},
      {"over",
       [](R& r, const A& a) { return Scaled(r.Value(a[0]), r.entry.width, r.entry.height); }},

      // focus(sharp,blurred): masks of 640 x 640 bytes say how sharp and how light the image is.
      {"focus",
       [](R& r, const A& a) {
         const Bytes& masks = r.Raw("zvkr_lomo_16.eb", 819200);
         const Picture sharp = r.Value(a[0]), blurred = r.Value(a[1]);
         const int w = sharp.width, h = sharp.height;
         return r.Each([&](std::size_t at, int) {
           const int x = int(at / 4) % w, y = int(at / 4) / w;
           const int place = 640 * int(y * (640.0f / h)) + int(x * (640.0f / w));
           const float m = masks[place] / 255.0f, light = masks[409600 + place] / 255.0f;
           return int(int(sharp.bytes[at] * m + blurred.bytes[at] * (1 - m)) * light);
         });
       }},
      {"tunnelMask",
       [](R& r, const A&) {
         const Bytes& raw = r.Raw("zvkr_cy.eb", 230400);
         Picture mask = r.entry;
         const float scaleX = 240.0f / mask.width, scaleY = 240.0f / mask.height;
         for (int y = 0; y < mask.height; ++y)
           for (int x = 0; x < mask.width; ++x)
             std::copy_n(&raw[4 * (240 * int(y * scaleY) + int(x * scaleX))], 4, mask.At(x, y));
         return mask;
       }},
      // tunnel(p,mask): the smear of p, enlarged about the centre and laid over p by its alpha.
      {"tunnel", [](R& r, const A& a) {
         Picture p = r.Value(a[0]), smear = p;
         const Picture mask = r.Value(a[1]);
         P::RadiusZoomBlur(smear.bytes.data(), p.bytes.data(), mask.bytes.data(), p.width, p.height,
                           nullptr, 0, 0);
         const float w = float(p.width), h = float(p.height);
         Gdiplus::Bitmap zoomed(p.width, p.height);
         Graphics(&zoomed).DrawImage(
             BitmapOf(smear).get(),
             {(w - 1.3f * w) * 0.5f, (h - 1.3f * h) * 0.5f, 1.3f * w, 1.3f * h}, {0, 0, w, h});
         BlendBuffersAlphaTrunc(p.bytes.data(), BitmapLock(&zoomed).Pixels(), p.width * p.height);
         return p;
       }}};
}();

}  // namespace tintwerk::test

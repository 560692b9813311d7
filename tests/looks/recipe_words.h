// The words of the recipes: operations of the library by name, and short plain twins of what only
// one look does.
#pragma once

#include "frame/graphics.h"
#include "looks/recipe_interpreter.h"
#include "pixel/blend.h"
#include "pixel/blend_buffers.h"
#include "portrait/brush_strokes.h"
#include "portrait/canny_edges.h"
#include "portrait/deriche_blur.h"
#include "support/operations.h"
#include "tintwerk/selective_color.h"

namespace tintwerk::test {

/// An exported operation as name(picture, amount, low, high), of which a span means reports.
template <class Operation>
RecipeInterpreter::Word Step(const Operation& operation) {
  return [=](RecipeInterpreter& r, const RecipeInterpreter::Arguments& a) {
    Picture p = r.Value(a[0]);
    std::array<int, 3> numbers{};
    for (std::size_t i = 1; i < a.size(); ++i) numbers[i - 1] = std::stoi(a[i]);
    const auto [amount, low, high] = numbers;
    operation(p.bytes.data(), p.width, p.height, amount, a.size() > 2 ? &r.told : nullptr, low,
              high);
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

/// Numbers told as 1/2/3.
inline std::vector<int> Numbers(const std::string& text) {
  std::vector<int> numbers;
  for (const std::string& number : Split(text, '/')) numbers.push_back(std::stoi(number));
  return numbers;
}

/// What a word does to one pixel, as name(picture).
template <class Body>
RecipeInterpreter::Word EachPixel(const Body& body) {
  return [=](RecipeInterpreter& r, const RecipeInterpreter::Arguments& a) {
    Picture p = r.Value(a[0]);
    for (std::size_t at = 0; at < p.bytes.size(); at += 4) body(&p.bytes[at]);
    return p;
  };
}

/// A luminance in all channels: luminance(red, green, blue).
template <class Luminance>
RecipeInterpreter::Word Grey(const Luminance& luminance) {
  return EachPixel([=](Byte* p) { p[0] = p[1] = p[2] = Byte(int(luminance(p[2], p[1], p[0]))); });
}

/// Colours of two pictures as name(p, q).
template <class Body>
RecipeInterpreter::Word EachPair(const Body& body) {
  return [=](RecipeInterpreter& r, const RecipeInterpreter::Arguments& a) {
    const Picture p = r.Value(a[0]), q = r.Value(a[1]);
    return r.Each([&](std::size_t at, int) { return int(body(p.bytes[at], q.bytes[at])); });
  };
}

/// Two pictures mixed as name(p, q) by mix(p, q, square), with the square of the distance to the
/// centre, 1 in the middle of an edge; or as name(p, q, k) by the key k.
template <class Mix>
RecipeInterpreter::Word Mixed(const Mix& mix) {
  return [=](RecipeInterpreter& r, const RecipeInterpreter::Arguments& a) {
    const Picture p = r.Value(a[0]), q = r.Value(a[1]), k = a.size() > 2 ? r.Value(a[2]) : p;
    return r.Each([&, w = p.width, h = p.height](std::size_t at, int) {
      const float u = float(int(at / 4) / w) * float(2.0 / h) - 1;
      const float s = float(int(at / 4) % w) * float(2.0 / w) - 1;
      return int(mix(p.bytes[at], q.bytes[at], a.size() > 2 ? k.bytes[at] : u * u + s * s));
    });
  };
}

/// The S of a weight: 0 up to 0, 1 from 1.25 on.
template <class Real>
Real Smooth(Real t) {
  if (t <= 0) return 0;
  if (t >= Real(1.25)) return 1;
  const Real u = std::clamp<Real>(t / Real(1.25), 0, 1);
  return (3 - 2 * u) * u * u;
}

/// More colour out of the red, green and blue of a pixel; each row adds up to 1.
template <class Real>
constexpr Real kVivid[3][3] = {{Real(1.2103), Real(-0.1761), Real(-0.0342)},
                               {Real(-0.0897), Real(1.1239), Real(-0.0342)},
                               {Real(-0.091), Real(-0.1774), Real(1.2658)}};
template <class Real>
Real Vivid(int row, Real red, Real green, Real blue) {
  return kVivid<Real>[row][0] * red + kVivid<Real>[row][1] * green + kVivid<Real>[row][2] * blue;
}

template <class Real>
Byte Clamped(Real value) {
  return Byte(int(std::clamp<Real>(value, 0, 255)));
}

/// An operation on the first plane of a picture, whose result stands in all channels.
template <class Operation>
RecipeInterpreter::Word OnPlane(const Operation& operation) {
  return [=](RecipeInterpreter& r, const RecipeInterpreter::Arguments& a) {
    const Picture p = r.Value(a[0]);
    Bytes plane(p.bytes.size() / 4);
    for (std::size_t i = 0; i < plane.size(); ++i) plane[i] = p.bytes[4 * i];
    plane = operation(plane, p.width, p.height);
    return r.Each([&](std::size_t at, int) { return plane[at / 4]; });
  };
}
inline Bytes Blurred(Bytes plane, int width, int height, double sigma) {
  DericheBlur(plane.data(), width, height, width, sigma, sigma);
  return plane;
}

/// A crayon drawing: colours against the largest around them, through a curve of the luminance.
inline Picture Crayon(const Picture& p, const Bytes& tone) {
  Picture result = p, from = p;
  for (int y = 0; y < p.height; ++y)
    for (int x = 0; x < p.width; ++x) {
      const int dx = x > 0 && x + 1 < p.width, dy = y > 0 && y + 1 < p.height;
      int most[3] = {1, 0, 0};
      for (int b = -dy; b <= dy; ++b)
        for (int a = -dx; a <= dx; ++a)
          for (int c = 0; c < 3; ++c) most[c] = std::max<int>(most[c], from.At(x + a, y + b)[c]);
      const Byte* const pixel = from.At(x, y);
      const int B = pixel[0], G = pixel[1], R = pixel[2];
      const float k = float(std::min((306 * R + 601 * G + 117 * B) >> 10, 57) / 57.0);
      int drawn[3];
      for (int c = 0; c < 3; ++c) {
        const Byte q = most[c] ? Byte(float(pixel[c]) / float(most[c]) * 255.0f) : 0;
        drawn[c] = int(double(float(q) * k) + pixel[c] * (1.0 - k));
      }
      const int Y = tone[(117 * drawn[0] + 306 * drawn[2] + 601 * drawn[1]) >> 10];
      const int I = int(0.596 * R - 0.275 * G - 0.321 * B);
      const int Q = int(0.212 * R - 0.523 * G + 0.311 * B);
      result.At(x, y)[2] = Clamped(0.956 * I + Y + 0.621 * Q);
      result.At(x, y)[1] = Clamped(Y - 0.272 * I - 0.647 * Q);
      result.At(x, y)[0] = Clamped(Y - 1.106 * I + 1.703 * Q);
    }
  return result;
}

/// How much detail a pixel holds against its surroundings, both as shares of 255.
inline float DetailWeight(float green, float inverseBlurred) {
  const double light = std::clamp(2.0 * inverseBlurred + green - 1.0, 0.0, 1.0);
  float x = float((green + light) * 0.5);
  for (int i = 0; i < 3; ++i) {
    const double d = 1.0 - x;
    x = float(x <= 0.5f ? 2.0 * (x * x) : 1.0 - 2.0 * d * d);
  }
  return x;
}

/// Skin without fine shadows: lifted by a curve where there is no detail. `plain` stops there; the
/// others screen the result with its own luminance and mix it with the image.
inline Picture Lifted(const Picture& p, const Bytes& lift, const std::string& form) {
  Picture result = p, soft = p;
  DericheBlur(soft.bytes.data(), p.width, p.height, 4 * p.width, 15, 15);
  const double q = 0.0039215;
  const float f = 0.0039215f;
  for (std::size_t at = 0; at < p.bytes.size(); at += 4) {
    const Byte* const c = &p.bytes[at];
    const int blurred = soft.bytes[at + 1];
    Byte* const out = &result.bytes[at];
    int lifted[3];
    if (form == "single") {
      const float w = DetailWeight(float(c[1]) * f, 1.0f - float(blurred) * f);
      for (int i = 0; i < 3; ++i) lifted[i] = int(float(lift[c[i]]) * (1.0f - w) + float(c[i]) * w);
      const float light =
          0.7154f * float(lifted[1]) + 0.2125f * float(lifted[2]) + 0.0721f * float(lifted[0]);
      for (int i = 0; i < 3; ++i) {
        const Byte screened = Byte(int(float(lifted[i]) * (255.0f - light) * f + light));
        out[i] = Byte((screened + c[i]) / 2);
      }
      continue;
    }
    const float w = DetailWeight(float(c[1] * q), float(1.0 - blurred * q));
    for (int i = 0; i < 3; ++i) lifted[i] = int(lift[c[i]] * (1.0 - w) + float(c[i]) * w);
    const float light = float(0.2125 * lifted[2] + 0.7154 * lifted[1] + 0.0721 * lifted[0]);
    for (int i = 0; i < 3; ++i) {
      const Byte screened = Byte(int(float(lifted[i]) * (255.0f - light) * q + light));
      out[i] = form == "plain" ? Byte(lifted[i]) : Byte(int(screened * 0.8 + c[i] * 0.2));
    }
  }
  return result;
}

/// Inks taken from reds, yellows, cyans, blues and whites. A pixel without a channel between its
/// largest and its smallest one has the latter as its middle.
inline void TakeFiveInks(Byte* p) {
  const int min = std::min({p[0], p[1], p[2]}), max = std::max({p[0], p[1], p[2]});
  int mid = min;
  for (const int c : {0, 1, 2})
    if (p[c] > min && p[c] < max) mid = p[c];
  int delta[3] = {};
  SFDSP::ZVSelectiveColorRed(p, min, mid, max, delta, -20, 20, 20);
  SFDSP::ZVSelectiveColorYellow(p, min, mid, max, delta, -25, 25, 0);
  SFDSP::ZVSelectiveColorCyan(p, min, mid, max, delta, 0, 0, 50);
  SFDSP::ZVSelectiveColorBlue(p, min, mid, max, delta, 0, -100, 100);
  SFDSP::ZVSelectiveColorWhite(p, min, mid, max, delta, -25, 10, -10);
  for (int c = 0; c < 3; ++c) p[c] = Clamped(p[c] - delta[c]);
}

/// Blurred where a picture, fitted into the image and centred, is white, and outside of it.
inline Picture FocusedBy(const Picture& p, Picture mask) {
  Picture soft = p, canvas = p;
  const int w = p.width, h = p.height;
  SFDSP::stackBlur(soft.bytes.data(), w, h, SFDSP::GetStackBlurRadius(2, w, h));
  std::fill(canvas.bytes.begin(), canvas.bytes.end(), 255);
  const float scale = std::min(float(h) / float(mask.height), float(w) / float(mask.width));
  const int fw = int(scale * float(mask.width)), fh = int(scale * float(mask.height));
  auto* fitted = new Byte[mask.bytes.size()];
  std::copy(mask.bytes.begin(), mask.bytes.end(), fitted);
  CPixelProcess::RampleBit(fw, fh, 2, &fitted, mask.width, mask.height);
  for (int y = 0; y < fh; ++y)
    for (int x = 0; x < fw; ++x)
      std::copy_n(fitted + 4 * (fw * y + x), 4, canvas.At((w - fw) / 2 + x, (h - fh) / 2 + y));
  delete[] fitted;
  Picture result = p;
  for (std::size_t at = 0; at < p.bytes.size(); ++at) {
    const float k = float(canvas.bytes[at - at % 4 + 2]) * 0.00392157f;
    if (at % 4 != 3)
      result.bytes[at] = Byte(int(float(soft.bytes[at]) * k + float(p.bytes[at]) * (1 - k)));
  }
  return result;
}

/// Ink along edges, solid black in the shadows, and a tone where they end.
inline Picture Inked(const Picture& p, const Picture& tone) {
  Picture result = p;
  const int w = p.width, h = p.height;
  Bytes grey, shadow;
  for (std::size_t at = 0; at < p.bytes.size(); at += 4) {
    const Byte* const pixel = &p.bytes[at];
    grey.push_back(Byte((306 * pixel[2] + 601 * pixel[1] + 117 * pixel[0]) >> 10));
    shadow.push_back(grey.back() > 130 ? 0 : 255);
  }
  Bytes edges = grey;
  CannyEdges(grey.data(), edges.data(), w, h, w, 120, 200);
  shadow = Blurred(shadow, w, h, 3);
  for (std::size_t at = 0; at < p.bytes.size(); ++at) {
    const std::size_t i = at / 4;
    if (at % 4 == 3) continue;
    result.bytes[at] = grey[i] <= 64                       ? 0
                       : edges[i] == 0 && shadow[i] >= 129 ? tone.bytes[4 * i]
                                                           : Byte(255 - edges[i]);
  }
  return result;
}

/// A stamp in the lower right corner, on an upright image across all of its foot. Very wide images
/// go without. Alpha stays.
inline Picture Stamped(const Picture& p, const Picture& stamp) {
  const int w = p.width, h = p.height, sw = stamp.width, sh = stamp.height;
  if (sw == 0 || sh == 0 || (w >= h && float(w) / float(h) > 3)) return p;
  const double width = w >= h ? w * 0.625 : w;
  const int tw = int(width), th = int(sh * (width / sw));
  const BitmapPtr canvas = BitmapOf(p);
  Graphics graphics(canvas.get());
  graphics.SetInterpolationMode(InterpolationModeHighQualityBicubic);
  graphics.DrawImage(BitmapOf(stamp).get(),
                     {w >= h ? float(w - tw) : 0, float(h - th), float(tw), float(th)},
                     {0, 0, float(sw), float(sh)});
  Picture result = PictureOf(canvas.get());
  for (std::size_t at = 3; at < p.bytes.size(); at += 4) result.bytes[at] = p.bytes[at];
  return result;
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
      {"tunnel",
       [](R& r, const A& a) {
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
       }},

      {"brighten", Step([](auto... all) { P::PixelBrightness(all...); })},
      {"saturateFast", Step([](Byte* p, int w, int h, int amount, auto...) {
         SFDSP::Saturateconst_Faster(p, w, h, amount);
       })},
      {"light",
       Step([](Byte* p, int w, int h, auto...) { P::Light(p, w, h, -9, 20, nullptr, 0, 100); })},
      {"hueSatBright",
       Step([](Byte* p, int w, int h, int hue, CObjProgress*, int saturation, int brightness) {
         SFDSP::HueSaturationBright(p, w, h, hue, saturation, brightness);
       })},
      {"weiMei", Step([](Byte* p, int w, int h, auto...) { P::WeiMei(p, w, h); })},
      {"strokes", Step([](Byte* p, int w, int h, int length, auto...) {
         BrushSketchEngine::Render(p, w, h, length);
       })},
      {"tint", Blended(BlendBuffersFixedTint)},
      // balance(p,region,red,green,blue)
      {"balance",
       [](R& r, const A& a) {
         Picture p = r.Value(a[0]);
         const auto n = [&](int i) { return std::stoi(a[i]); };
         P::CColorBalance(1, P::TONE_REGION(n(1)), n(2), n(3), n(4), p.bytes.data(), p.width,
                          p.height, nullptr, 0, 100);
         return p;
       }},
      // inks(p,family/cyan/magenta/yellow/black,...)
      {"inks",
       [](R& r, const A& a) {
         Picture p = r.Value(a[0]);
         CSelectiveColor inks;
         for (std::size_t i = 1; i < a.size(); ++i) {
           const auto n = Numbers(a[i]);
           inks.SetSelectiveColor(CSelectiveColor::eColorType(n[0]), n[1], n[2], n[3], n[4]);
         }
         inks.Execute(p.bytes.data(), p.width, p.height);
         return p;
       }},

      {"grey16",
       Grey([](int r, int g, int b) { return (19595 * r + 38469 * g + 7472 * b) >> 16; })},
      {"greyDark", Grey([](int r, int g, int b) { return 0.3 * r + 0.59 * g + 0.1 * b; })},
      {"greyDouble", Grey([](int r, int g, int b) { return 0.3 * r + 0.59 * g + 0.11 * b; })},
      {"greySingle",
       Grey([](float r, float g, float b) { return 0.3f * r + 0.59f * g + 0.11f * b; })},
      {"reds", Grey([](int r, int, int) { return r; })},
      {"minus", Grey([](int r, int, int) { return 255 - r; })},
      {"half", EachPair([](int p, int q) { return (p + q) >> 1; })},
      {"burn", EachPair([](int p, int q) { return p * q * 0.0039215; })},
      {"multiply", EachPair([](int p, int q) { return p * q / 255.0; })},
      {"dodge",
       EachPair([](int p, int q) { return q == 255 ? 255 : std::min(p * 256 / (255 - q), 255); })},

      {"matrixWrapped", EachPixel([](Byte* p) {
         const float r = p[2], g = p[1], b = p[0];
         for (int c = 0; c < 3; ++c) p[c] = Byte(int(Vivid(2 - c, r, g, b)));
       })},
      {"matrixClamped", EachPixel([](Byte* p) {
         const float r = p[2], g = p[1], b = p[0];
         p[2] = Clamped(1.1402f * r - 0.1174f * g - 0.0228f * b);
         p[1] = Clamped(1.0826f * g - 0.0598f * r - 0.0228f * b);
         p[0] = Clamped(1.1772f * b - (0.1186f * g + 0.061f * r));
       })},
      // Every line takes what the lines before it made.
      {"matrixInTurn", EachPixel([](Byte* p) {
         p[2] = Clamped(1.10515 * p[2] - 0.08805 * p[1] - 0.0171 * p[0]);
         p[1] = Clamped(1.06195 * p[1] - 0.04485 * p[2] - 0.0171 * p[0]);
         p[0] = Clamped(1.1329 * p[0] - (0.046 * p[2] + 0.0892 * p[1]));
       })},
      // liftedMatrix(p,q): of the means of p and q, which keep their halves.
      {"liftedMatrix",
       [](R& r, const A& a) {
         Picture p = r.Value(a[0]);
         const Picture q = r.Value(a[1]);
         for (std::size_t at = 0; at < p.bytes.size(); at += 4) {
           double mean[3];
           for (int c = 0; c < 3; ++c) mean[c] = (q.bytes[at + c] + p.bytes[at + c]) * 0.5;
           for (int c = 0; c < 3; ++c)
             p.bytes[at + c] = Clamped(Vivid(2 - c, mean[2], mean[1], mean[0]));
         }
         return p;
       }},
      {"mixByMask", Mixed([](int p, int q, float k) {
         const float w = float(Smooth(std::pow(double(k) * 0.0039215, 1.35) / 1.65));
         return p * (1.0 - w) + float(q) * w;
       })},
      {"mixByRadius", Mixed([](float p, float q, float k) {
         const float w = Smooth(std::pow(k * 0.003921f, 1.35f) / 1.65f);
         return p * (1 - w) + q * w;
       })},
      {"mixToCorners", Mixed([](int p, int q, float square) {
         const double k = 1.0 - Smooth(std::pow(square, 1.35f) / 1.65f);
         return p * k + q * (1.0 - k);
       })},
      {"mixToRim", Mixed([](float p, float q, float square) {
         const float k = std::min(square, 1.0f);
         return p * (1 - k) + q * k;
       })},

      // The rim darkens with the distance, by 42 percent at most.
      {"vignette",
       [](R& r, const A& a) {
         const Picture p = r.Value(a[0]);
         const int cx = p.width / 2, cy = p.height / 2;
         const int reach = int(int(std::sqrt(float(cx * cx + cy * cy))) * 2 * 1.2);
         return r.Each([&](std::size_t at, int) {
           const int y = int(at / 4) / p.width - cy, x = int(at / 4) % p.width - cx;
           const double f = reach ? double(std::sqrt(float(y * y + x * x))) / reach : 0;
           return int(p.bytes[at] * (1 - f));
         });
       }},
      {"crayon", [](R& r, const A& a) { return Crayon(r.Value(a[0]), CurveThrough(a[1])); }},
      {"lift", [](R& r, const A& a) { return Lifted(r.Value(a[0]), CurveThrough(a[1]), a[2]); }},
      // Both colour opponents become the first.
      {"oneOpponent",
       [](R& r, const A& a) {
         Picture p = r.Value(a[0]);
         const int w = p.width, h = p.height;
         Bytes light(w * h), first(w * h), second(w * h);
         SFDSP::DecomposeToLab(p.bytes.data(), w, h, 4 * w, light.data(), first.data(),
                               second.data());
         SFDSP::RecomposeFromLab(p.bytes.data(), w, h, 4 * w, light.data(), first.data(),
                                 first.data());
         return p;
       }},
      {"fiveInks", EachPixel(TakeFiveInks)},
      {"smooth",
       OnPlane([](const Bytes& plane, int w, int h) { return Blurred(plane, w, h, 6.67); })},
      // The least of the 5 x 5 samples around, of those that there are.
      {"least", OnPlane([](const Bytes& plane, int w, int h) {
         Bytes result = plane;
         for (int i = 0; i < w * h; ++i)
           for (int y = std::max(i / w - 2, 0); y < std::min(i / w + 3, h); ++y)
             for (int x = std::max(i % w - 2, 0); x < std::min(i % w + 3, w); ++x)
               result[i] = std::min(result[i], plane[w * y + x]);
         return result;
       })},
      {"vivid", EachPixel([](Byte* p) {
         Byte hue, saturation, light;
         SFDSP::RGBtoHSL(p[2], p[1], p[0], hue, saturation, light);
         saturation = Byte(saturation < 230 ? saturation + 25 : 255);
         light = Byte(light > 5 ? light - 5 : 0);
         SFDSP::HSLtoRGB(hue, saturation, light, p[2], p[1], p[0]);
       })},
      {"comic", [](R& r, const A& a) { return Inked(r.Value(a[0]), r.Value(a[1])); }},
      {"overlaid",
       [](R& r, const A& a) {
         const Picture p = r.Value(a[0]), q = r.Value(a[1]);
         return r.Each([&](std::size_t at, int c) {
           const float alpha = float(q.bytes[at - c + 3]) / 255.0f;
           return int(float(q.bytes[at]) * alpha + float(p.bytes[at]) * (1 - alpha));
         });
       }},
      // A stamp and a mask keep their own size, so they stand by their names.
      {"stamp",
       [](R& r, const A& a) {
         r.uses[a[1]] = {false};
         return Stamped(r.Value(a[0]), r.root.Shown(a[1]));
       }},
      {"focusByPicture",
       [](R& r, const A& a) {
         r.uses[a[1]] = {};
         return FocusedBy(r.Value(a[0]), r.root.Shown(a[1]));
       }},
      {"softLightByAlpha",
       [](R& r, const A& a) {
         Picture p = r.Value(a[0]);
         const Picture q = r.Value(a[1]);
         for (std::size_t at = 0; at < p.bytes.size(); at += 4)
           BlendSoftLightOpacity(&p.bytes[at], &q.bytes[at],
                                 float(q.bytes[at + 3]) * 0.7f / 255.0f);
         return p;
       }},
      // where(p,q): q where p, a picture that keeps its proportions, lies over the image.
      {"where", [](R& r, const A& a) {
         const Picture p = r.Value(a[0]), q = r.Value(a[1]);
         return r.Each([&](std::size_t at, int c) {
           return p.bytes[at - c + 3] ? q.bytes[at] : r.now.bytes[at];
         });
       }}};
}();

}  // namespace tintwerk::test

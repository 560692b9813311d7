// Drawings and paintings: the picture's greys or colours in pencil strokes and on paper.
#include "looks/recipe.h"
#include "portrait/deriche_blur.h"
#include "portrait/window_minimum.h"
#include "tintwerk/math_define.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

using namespace tintwerk;

namespace {

// A grey divided by the light around it: what is as bright as its surroundings becomes white.
constexpr int Dodge(int grey, int light) {
  return light == 255 ? 255 : std::min(grey * 256 / (255 - light), 255);
}

// Every grey in each light.
constexpr auto kDodge = [] {
  std::array<std::array<unsigned char, 256>, 256> table{};
  for (int grey = 0; grey < 256; ++grey)
    for (int light = 0; light < 256; ++light)
      table[grey][light] = static_cast<unsigned char>(Dodge(grey, light));
  return table;
}();

constexpr ToneTables kClassic = Tones({0, 8, 17, 42, 76, 117, 161, 198, 230, 255});
constexpr ToneTables kClassicEx = Tones({0, 11, 23, 49, 81, 117, 154, 189, 223, 255});
constexpr ToneTables kLife = Tones({0, 14, 29, 59, 93, 127, 161, 193, 225, 255},
                                   {0, 14, 29, 59, 93, 127, 161, 193, 225, 255},
                                   {0, 18, 35, 67, 101, 134, 167, 197, 227, 255});
constexpr ToneTables kLifeEx = {.blue = kLife.blue,
                                .green = kLife.green,
                                .red = Tone({0, 14, 29, 58, 92, 126, 160, 192, 224, 255})};

// The grey of every pixel through two maps against two textures, then a curve.
template <class Map, class... Textures>
bool LifeSketch(const Call& call, const Map& hatching, const Map& paper, const ToneTables& tones,
                const Textures&... textures) {
  return EachPixel(
      call,
      [=, &tones](unsigned char* pixel, const unsigned char* m1, const unsigned char* m2) {
        const int grey = Luma(pixel);
        for (int c = 0; c < 3; ++c) pixel[c] = tones[c][paper(hatching(grey, m1[c]), m2[c])];
      },
      textures...);
}

// The same through three.
template <class Map, class... Textures>
bool ClassicSketch(const Call& call, const Map& pencil, const Map& margin, const Map& paper,
                   const ToneTables& tones, const Textures&... textures) {
  return EachPixel(
      call,
      [=, &tones](unsigned char* pixel, const unsigned char* m1, const unsigned char* m2,
                  const unsigned char* m3) {
        const int grey = Luma(pixel);
        for (int c = 0; c < 3; ++c)
          pixel[c] = tones[c][paper(margin(pencil(grey, m1[c]), m2[c]), m3[c])];
      },
      textures...);
}

// A part of a picture to be drawn as on the whole of it. The buffer of the call holds the part alone,
// its size is the whole picture's, to which textures are fitted.
class Part {
 public:
  // @param rect null for the whole
  Part(const Call& whole, const _ZV_2D_RECT* rect) : whole_(whole), part_(whole) {
    if (!rect) return;
    left_ = rect->x;
    top_ = rect->y;
    part_.width = rect->width;
    part_.height = rect->height;
    const auto fits = [](int from, int size, int all) {
      return from >= 0 && size >= 0 && size <= all && from <= all - size;
    };
    inside_ = fits(left_, part_.width, whole.width) && fits(top_, part_.height, whole.height);
  }

  bool LiesInside() const { return inside_; }
  const Call& Area() const { return part_; }
  std::unique_ptr<Layer> Of(const Material& texture) const {
    return CropLayer(*texture, whole_.width, left_, top_, part_.width);
  }

 private:
  Call whole_;
  Call part_;
  int left_ = 0, top_ = 0;
  bool inside_ = true;
};

int ClassicSketchEx(const Call& call, const _ZV_2D_RECT* rect) {
  const Part part(call, rect);
  if (!part.LiesInside()) return 0;
  Files files(call);
  const auto &pencil = files.Picture(L"sucai14.jpg"), &margin = files.Picture(L"sucai15.jpg"),
             &paper = files.Picture(L"sucai16.jpg");
  const auto screen = files.Square(L"ZVScreen.png", kPlaneB);
  const auto multiply = files.Square(L"ZVMultiple50.png", kPlaneB);
  if (!files) return 0;
  const Call& area = part.Area();
  ClassicSketch(area, screen, screen, multiply, kClassicEx, part.Of(pencil), part.Of(margin),
                part.Of(paper));
  CPixelProcess::Light(area.pixels, area.width, area.height, -9, 20, nullptr, 0, 100);
  return 1;
}

int LifeSketchEx(const Call& call, const _ZV_2D_RECT* rect) {
  const Part part(call, rect);
  if (!part.LiesInside()) return 0;
  Files files(call);
  const auto &hatching = files.Picture(L"sucai13.jpg"), &paper = files.Picture(L"sucai14.jpg");
  const auto soft = files.Square(L"ZVSoftLight60.png", kPlaneB);
  const auto screen = files.Square(L"ZVScreen.png", kPlaneB);
  if (!files) return 0;
  return LifeSketch(part.Area(), soft, screen, kLife, part.Of(hatching), part.Of(paper));
}

}  // namespace

// The form of a look that draws a part of a picture.
#define PART_LOOK(entry, Draw)                                                                 \
  int CEffect::entry(unsigned char* pixels, int width, int height, void* resourceRoot,         \
                     _ZV_2D_RECT* rect, CObjProgress* progress, int progressLow,               \
                     int progressHigh) try {                                                   \
    const Call call{pixels, width, height, resourceRoot, progress, progressLow, progressHigh}; \
    return call.IsWorkable() ? Draw(call, rect) : 0;                                           \
  } catch (const std::bad_alloc&) {                                                            \
    return 0;                                                                                  \
  }

LOOK(Effect_SuMiao) {
  const int width = call.width, height = call.height;
  const std::size_t count = call.Count();
  const PixelMemory light = RequirePixels(count);
  if (count > 0) {
    unsigned char* const plane = light.get();
    EachRun(call, [plane, image = call.pixels](const unsigned char* pixels, std::int64_t run) {
      unsigned char* const out = plane + (pixels - image) / 4;
      for (std::int64_t i = 0; i < run; ++i)
        out[i] = static_cast<unsigned char>(255 - Luma(pixels + 4 * i));
    });
    if (!WindowMinimum(plane, width, height, 2) ||
        !DericheBlur(plane, width, height, width, 6.67, 6.67))
      return 0;
  }
  if (!call.GoesOn()) return 0;
  return EachRun(
      call, [plane = light.get(), image = call.pixels](unsigned char* pixels, std::int64_t run) {
        const unsigned char* const b = plane + (pixels - image) / 4;
        for (std::int64_t i = 0; i < run; ++i, pixels += 4)
          pixels[0] = pixels[1] = pixels[2] = kDodge[Luma(pixels)][b[i]];
      });
}

LOOK(Effect_GuDianSuMiao) {
  Files files(call);
  const auto &pencil = files.Texture(L"sucai14.jpg"), &margin = files.Texture(L"sucai15.jpg"),
             &paper = files.Texture(L"sucai16.jpg");
  const auto screen = files.Square(L"PSScreen.png", kPlaneR);
  const auto multiply = files.Square(L"ZVMultiple50.png", kPlaneR);
  if (!files) return 0;
  return ClassicSketch(call, screen, screen, multiply, kClassic, pencil, margin, paper);
}

LOOK_BY(Effect_GuDianSuMiaoEx, Recipe_Effect_GuDianSuMiao(call))
PART_LOOK(Effect_GuDianSuMiaoEx, ClassicSketchEx)

LOOK(Effect_XieShengSuMiao) {
  Files files(call);
  const auto& hatching = files.Picture(L"zvkr_LifeSketch_wenli1.jpg");
  const auto& paper = files.Picture(L"zvkr_LifeSketch_wenli2.jpg");
  const auto soft = files.Square(L"ZVSoftLight60.png", kPlaneB);
  const auto screen = files.Square(L"ZVScreen.png", kPlaneB);
  if (!files) return 0;
  return LifeSketch(call, soft, screen, kLife, hatching, paper);
}

LOOK(Effect_XieShengSuMiaoEx) {
  Files files(call);
  const auto &hatching = files.Texture(L"sucai13.jpg"), &paper = files.Texture(L"sucai14.jpg");
  const auto soft = files.Square(L"ZVSoftLight60.png", kPlaneR);
  const auto screen = files.Square(L"PSScreen.png", kPlaneR);
  if (!files) return 0;
  return LifeSketch(call, soft, screen, kLifeEx, hatching, paper);
}
PART_LOOK(Effect_XieShengSuMiaoEx, LifeSketchEx)

LOOK(Effect_CaiQian) {
  Files files(call);
  const auto& strokes = files.Picture(L"zvkr_caiqian.jpg");
  const auto screen = files.Square(L"ZVScreen.png", kPlaneB);
  const auto overlay = files.Square(L"ZVImageOverlay.png", kPlaneB);
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int, int m) { return overlay(screen(v, m), m); }, strokes);
}

LOOK(Effect_NewCaiQian) {
  const auto draw = [](const Call& image) {
    Run(Recipe_Effect_XieShengSuMiaoEx, image);
    Run(Recipe_Effect_CaiQian, image);
  };
  if (!call.store) {
    draw(call);
    return 1;
  }
  // This caller does not take half of a drawing.
  const PixelMemory copy = CopyOf(call);
  draw(Over(call, copy));
  LayBack(call, copy);
  return 1;
}

LOOK(Effect_YouHua) {
  Files files(call);
  const auto& relief = files.Texture(L"sucai22.jpg");
  const auto vivid = files.Square(L"ZVVividLight50.png", kPlaneR);
  if (!files) return 0;
  return EachPixel(
      call,
      [=](unsigned char* pixel, const unsigned char* m) {
        unsigned char h, s, l;
        SFDSP::RGBtoHSL(pixel[2], pixel[1], pixel[0], h, s, l);
        s = static_cast<unsigned char>(s < 230 ? s + 25 : 255);
        l = static_cast<unsigned char>(l > 5 ? l - 5 : 0);
        SFDSP::HSLtoRGB(h, s, l, pixel[2], pixel[1], pixel[0]);
        for (int c = 0; c < 3; ++c) pixel[c] = vivid(pixel[c], m[c]);
      },
      relief);
}

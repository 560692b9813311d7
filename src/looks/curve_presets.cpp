// Looks that chain two-key tables: the image against pictures that lie over it.
#include "filters/rows.h"
#include "frame/material.h"
#include "frame/parallel.h"
#include "maps/plane_file.h"
#include "looks/row_pass.h"
#include "maps/map_image.h"
#include "maps/material_over.h"
#include "pixel/tone_curve.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

constexpr ToneTable kWarmRed = Curve({{0, 0},
                                      {32, 36},
                                      {64, 70},
                                      {96, 103},
                                      {128, 140},
                                      {160, 170},
                                      {192, 196},
                                      {224, 225},
                                      {255, 255}});
constexpr ToneTable kLift = Curve({{0, 0},
                                   {32, 37},
                                   {64, 73},
                                   {96, 109},
                                   {128, 143},
                                   {160, 172},
                                   {192, 200},
                                   {224, 228},
                                   {255, 255}});
constexpr ToneTable kFade = Curve({{0, 25},
                                   {32, 54},
                                   {64, 82},
                                   {96, 111},
                                   {128, 140},
                                   {160, 169},
                                   {192, 198},
                                   {224, 226},
                                   {255, 254}});
constexpr ToneTable kBrighten = Curve({{0, 0},
                                       {32, 46},
                                       {64, 88},
                                       {96, 126},
                                       {128, 160},
                                       {160, 190},
                                       {192, 216},
                                       {224, 238},
                                       {255, 255}});

// A picture that is loaded over the image and held open for reading.
class PictureOver {
 public:
  PictureOver(const wchar_t* path, void* resourceRoot, int width, int height,
              Gdiplus::RotateFlipType turn = Gdiplus::RotateNoneFlipNone)
      : picture_(LoadPictureOver(FormatPath(path, resourceRoot), width, height, turn)),
        lock_(picture_.get()) {}

  // False only if memory could not be had.
  explicit operator bool() const { return picture_ != nullptr; }
  const unsigned char* Pixels() const { return lock_.Pixels(); }

 private:
  std::unique_ptr<Gdiplus::Bitmap> picture_;
  BitmapLock lock_;
};

// One table of the image against one picture.
int OneTable(unsigned char* pixels, int width, int height, void* resourceRoot,
             const wchar_t* picture, const wchar_t* table, CObjProgress* progress) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const PictureOver over(picture, resourceRoot, width, height, Gdiplus::Rotate90FlipNone);
  const PlaneFile file(FormatPath(table, resourceRoot));
  if (!over || !file) return 0;
  Report(progress, 10);
  const unsigned char* m = over.Pixels();
  const Plane a = file[1];
  ForEachColourByte(progress, 10, 90, width, height,
                    [=](std::int64_t at) { pixels[at] = a(pixels[at], m[at]); });
  return 1;
}

}  // namespace

int CEffect::quxian_3(unsigned char* pixels, int width, int height, void* resourceRoot,
                      CObjProgress* progress, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const PictureOver over(L"%s\\Effects\\zvtk_fzl_3a.jpg", resourceRoot, width, height,
                         Gdiplus::Rotate90FlipNone);
  const PlaneFile file(FormatPath(L"%s\\Effects\\zvkr_quxian_3.eb", resourceRoot));
  if (!over || !file) return 0;
  Report(progress, 10);
  Report(progress, 20);
  const unsigned char* m = over.Pixels();
  const Plane a = file[1], b = file[2];
  ForEachColourByte(progress, 20, 80, width, height, [=](std::int64_t at) {
    const unsigned char p = pixels[at];
    pixels[at] = b(a(p, m[at]), p);
  });
  return 1;
}

int CEffect::quxian_4(unsigned char* pixels, int width, int height, void* resourceRoot,
                      CObjProgress* progress, int, int) {
  return OneTable(pixels, width, height, resourceRoot, L"%s\\Effects\\zvtk_fzl_4a.jpg",
                  L"%s\\Effects\\zvkr_quxian_4.eb", progress);
}

int CEffect::quxian_6(unsigned char* pixels, int width, int height, void* resourceRoot,
                      CObjProgress* progress, int, int) {
  return OneTable(pixels, width, height, resourceRoot, L"%s\\Effects\\zvtk_fzl_6a.jpg",
                  L"%s\\Effects\\zvkr_quxian_6.eb", progress);
}

int CEffect::quxian_7(unsigned char* pixels, int width, int height, void* resourceRoot,
                      CObjProgress* progress, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const PictureOver first(L"%s\\Effects\\zvtk_fzl_7a.jpg", resourceRoot, width, height);
  Report(progress, 10);
  const PictureOver second(L"%s\\Effects\\zvtk_fzl_7b.jpg", resourceRoot, width, height);
  Report(progress, 20);
  const PictureOver third(L"%s\\Effects\\zvtk_fzl_7c.jpg", resourceRoot, width, height);
  Report(progress, 30);
  const PlaneFile file(FormatPath(L"%s\\Effects\\zvkr_quxian_7.eb", resourceRoot));
  if (!first || !second || !third || !file) return 0;
  Report(progress, 40);
  const unsigned char *m1 = first.Pixels(), *m2 = second.Pixels(), *m3 = third.Pixels();
  const Plane a = file[1], b = file[2], c = file[3];
  ForEachColourByte(progress, 40, 60, width, height, [=](std::int64_t at) {
    const unsigned char t = c(b(a(pixels[at], m1[at]), m2[at]), m3[at]);
    pixels[at] = at % 4 == 2 ? kWarmRed[t] : t;
  });
  return 1;
}

int CEffect::quxian_10(unsigned char* pixels, int width, int height, void* resourceRoot,
                       CObjProgress* progress, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const auto copy = CopyOf(pixels, *PixelCount(width, height));
  if (!copy) return 0;
  {
    const PictureOver first(L"%s\\Effects\\zvkr_jj_001.jpg", resourceRoot, width, height);
    const PictureOver second(L"%s\\Effects\\zvkr_jj_002.jpg", resourceRoot, width, height);
    const PlaneFile file(FormatPath(L"%s\\Effects\\zvkr_quxian_10_0.eb", resourceRoot));
    if (!first || !second || !file) return 0;
    Report(progress, 5);
    const unsigned char *m1 = first.Pixels(), *m2 = second.Pixels();
    const Plane a = file[1], b = file[2];
    if (!ForEachColourByte(progress, 5, 30, width, height, [=](std::int64_t at) {
          pixels[at] = b(kLift[a(pixels[at], m1[at])], m2[at]);
        }))
      return 0;
  }
  CPixelProcess::Saturateconst(pixels, width, height, -9, 1, progress, 35, 65);
  if (!KeepGoing(progress)) return 0;

  const PictureOver third(L"%s\\Effects\\zvkr_jj_004.jpg", resourceRoot, width, height);
  const PlaneFile file(FormatPath(L"%s\\Effects\\zvkr_quxian_10_1.eb", resourceRoot));
  if (!third || !file) return 0;
  Report(progress, 70);
  const unsigned char *o = copy.get(), *m3 = third.Pixels();
  const Plane c = file[2], d = file[3];
  // The host's stop ends this pass early; what is done counts.
  ForEachColourByte(progress, 70, 30, width, height,
                    [=](std::int64_t at) { pixels[at] = d(c(kFade[pixels[at]], o[at]), m3[at]); });
  return 1;
}

int CEffect::quxian_14(unsigned char* pixels, int width, int height, void* resourceRoot,
                       CObjProgress*, int, int) {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return 0;
  const MapFile<SquareMap> mapFile(FormatPath(L"%s\\Effects\\ZVQCGYEx.png", resourceRoot));
  const auto material =
      LoadMaterialOver(FormatPath(L"%s\\Effects\\sucai12.jpg", resourceRoot), width, height);
  if (!mapFile || !material) return 0;
  const SquareMap map = mapFile.View();
  const unsigned char* m = material.get();
  ParallelFor(*count, [=](std::int64_t i) {
    for (std::int64_t at = 4 * i; at < 4 * i + 3; ++at)
      pixels[at] = map(kBrighten[pixels[at]], m[at], kPlaneR);
  });
  return 1;
}

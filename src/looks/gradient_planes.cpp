// Looks that colour the image through a gradient of their own painting.
#include <algorithm>
#include <cstring>
#include <new>

#include "filters/rows.h"
#include "frame/graphics.h"
#include "frame/material.h"
#include "frame/parallel.h"
#include "looks/row_pass.h"
#include "maps/material_over.h"
#include "maps/plane_file.h"
#include "pixel/blend_buffers.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

using Picture = std::unique_ptr<Gdiplus::Bitmap>;

constexpr tagRGBQUAD Colour(unsigned char red, unsigned char green, unsigned char blue) {
  return {blue, green, red, 0};
}

Picture Own(void* bitmap) {
  return Picture(static_cast<Gdiplus::Bitmap*>(bitmap));
}

// 200 x 200, in bands whose heights are shares of the whole.
template <std::size_t N>
Picture Bands(const tagRGBQUAD (&colours)[N], const double (&heights)[N + 1]) {
  return Own(CPixelProcess::GetGradientImage(200, 200, 1, N, colours, heights, 0));
}

// The picture turned clockwise within its own frame; null stays null.
Picture Turned(const Picture& picture, float degrees) {
  if (!picture) return nullptr;
  return Own(CPixelProcess::Rotate2(picture.get(), picture->GetWidth(), picture->GetHeight(),
                                    degrees, CPixelProcess::InterpolationBilinear,
                                    CPixelProcess::OverflowClamp, true, true));
}

// A value's first lookup is that of the value with itself; its second one is against the gradient.
auto GradientPass(unsigned char* pixels, const unsigned char* gradient, const PlaneFile& file) {
  ToneTable tone;
  const Plane a = file[1], b = file[2];
  for (int i = 0; i < 256; ++i) tone[i] = a(i, i);
  return [=](std::int64_t at) { pixels[at] = b(tone[pixels[at]], gradient[at]); };
}

// Where the host's bar stands before the table is read; the rows take what is left to 100.
int ColourThrough(const Picture& gradient, unsigned char* pixels, int width, int height,
                  const wchar_t* path, void* resourceRoot, CObjProgress* progress, int position) {
  if (!gradient) return 0;
  const Picture over = ScaleOver(gradient.get(), width, height);
  const PlaneFile file(FormatPath(path, resourceRoot));
  if (!over || !file) return 0;
  Report(progress, static_cast<float>(position));
  const BitmapLock lock(over.get());
  ForEachColourByte(progress, position, 100 - position, width, height,
                    GradientPass(pixels, lock.Pixels(), file));
  return 1;
}

}  // namespace

int CEffect::NewGt_1(unsigned char* pixels, int width, int height, void* resourceRoot,
                     CObjProgress* progress, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const Picture gradient =
      Bands({Colour(255, 0, 255), Colour(0, 0, 255), Colour(0, 255, 0), Colour(255, 255, 0)},
            {0.1, 0.3, 0.2, 0.3, 0.1});
  if (!gradient) return 0;
  Report(progress, 10);
  const Picture turned = Turned(gradient, 135);
  if (!turned) return 0;
  Report(progress, 30);
  return ColourThrough(turned, pixels, width, height, L"%s\\Effects\\zvkr_NewGt_1.eb", resourceRoot,
                       progress, 50);
}

int CEffect::NewGt_2(unsigned char* pixels, int width, int height, void* resourceRoot,
                     CObjProgress* progress, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const std::size_t bytes = std::size_t{4} * *PixelCount(width, height);
  const auto gradient = AllocatePixels(bytes);
  if (!gradient) return 0;
  std::memset(gradient.get(), 255, bytes);
  const tagRGBQUAD colours[] = {Colour(0, 0, 255), Colour(255, 255, 0)};
  if (!CPixelProcess::CreateGradientImage(gradient.get(), width, height, colours, nullptr, 0, 100))
    return 0;
  Report(progress, 20);
  const PlaneFile file(FormatPath(L"%s\\Effects\\zvkr_NewGt_2.eb", resourceRoot));
  if (!file) return 0;
  ForEachColourByte(progress, 20, 80, width, height, GradientPass(pixels, gradient.get(), file));
  return 1;
}

int CEffect::NewGt_3(unsigned char* pixels, int width, int height, void* resourceRoot,
                     CObjProgress* progress, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const Picture gradient(new (std::nothrow) Gdiplus::Bitmap(640, 512));
  if (!gradient || Graphics(gradient.get()).Clear(0xFFFFFFFF) != Gdiplus::Ok) return 0;
  {
    const BitmapLock lock(gradient.get(), {0, 0, 640, 512},
                          Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite);
    const tagRGBQUAD colours[] = {Colour(239, 62, 104), Colour(0, 0, 255)};
    CPixelProcess::CreateGradientImage(lock.Pixels(), 640, 512, colours, nullptr, 0, 100);
  }
  Report(progress, 10);
  const Picture turned = Turned(gradient, -45);
  if (!turned) return 0;
  Report(progress, 30);
  return ColourThrough(turned, pixels, width, height, L"%s\\Effects\\zvkr_NewGt_3.eb", resourceRoot,
                       progress, 50);
}

int CEffect::NewGt_5(unsigned char* pixels, int width, int height, void* resourceRoot,
                     CObjProgress* progress, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const Picture gradient = Bands({Colour(255, 0, 0), Colour(255, 0, 255), Colour(0, 0, 255),
                                  Colour(0, 255, 0), Colour(255, 255, 0), Colour(255, 0, 0)},
                                 {0.01, 0.1, 0.3, 0.2, 0.3, 0.1, 0.01});
  if (!gradient) return 0;
  Report(progress, 10);
  const Picture turned = Turned(gradient, 315);
  if (!turned) return 0;
  Report(progress, 30);
  // Without most of what the turn filled by repeating the edge.
  const Picture inner = Own(CPixelProcess::Clone(turned.get(), 20, 20, 180, 180));
  if (!inner) return 0;
  Report(progress, 40);
  return ColourThrough(inner, pixels, width, height, L"%s\\Effects\\zvkr_NewGt_3.eb", resourceRoot,
                       progress, 60);
}

int CEffect::Effect_GuangShuJianBian(unsigned char* pixels, int width, int height,
                                     void* resourceRoot, CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const Picture turned = Turned(
      Bands({Colour(40, 3, 92), Colour(255, 255, 255), Colour(40, 3, 92)}, {0, 0.5, 0.5, 0}), 135);
  return ColourThrough(turned, pixels, width, height, L"%s\\Effects\\zvkr_NewGt_3.eb", resourceRoot,
                       nullptr, 0);
}

int CEffect::NewGt_7(unsigned char* pixels, int width, int height, void* resourceRoot,
                     CObjProgress*, int, int) {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return 0;
  const Picture picture =
      LoadPictureOver(FormatPath(L"%s\\Effects\\zvtk_071_b.jpg", resourceRoot), width, height);
  if (!picture) return 0;
  BlendBuffersScreen(pixels, BitmapLock(picture.get()).Pixels(), *count);
  return 1;
}

// Looks that colour the image through a gradient of their own painting.
#include <cstring>
#include <new>

#include "frame/graphics.h"
#include "looks/recipe.h"
#include "pixel/blend_buffers.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

using Picture = std::unique_ptr<Gdiplus::Bitmap>;

constexpr tagRGBQUAD Colour(unsigned char red, unsigned char green, unsigned char blue) {
  return {blue, green, red, 0};
}

// A picture that an operation made. It makes none only if allocation fails.
Picture Own(void* bitmap) {
  if (!bitmap) throw std::bad_alloc();
  return Picture(static_cast<Gdiplus::Bitmap*>(bitmap));
}

// 200 x 200, in bands whose heights are shares of the whole.
template <std::size_t N>
Picture Bands(const tagRGBQUAD (&colours)[N], const double (&heights)[N + 1]) {
  return Own(CPixelProcess::GetGradientImage(200, 200, 1, N, colours, heights, 0));
}

// The picture turned clockwise within its own frame.
Picture Turned(const Picture& picture, float degrees) {
  return Own(CPixelProcess::Rotate2(picture.get(), picture->GetWidth(), picture->GetHeight(),
                                    degrees, CPixelProcess::InterpolationBilinear,
                                    CPixelProcess::OverflowClamp, true, true));
}

// A value's first lookup is that of the value with itself; its second one is against the gradient.
template <class Gradient>
int ColourThrough(const Pass& pass, const PlaneFile& file, const Gradient& gradient) {
  ToneTable tone;
  const Plane a = file[1], b = file[2];
  for (int i = 0; i < 256; ++i) tone[i] = a(i, i);
  EachColour(
      pass, [b, tone](int v, int, int m) { return b(tone[v], m); }, gradient);
  return 1;
}

// Where the host's bar stands before the table is read; the rows take what is left to 100.
int ColourThrough(const Call& call, Picture picture, const wchar_t* table, int position) {
  Files files(call);
  const auto file = files.Planes(table);
  Material gradient;
  gradient.LayBicubic(std::move(picture), call.width, call.height);
  if (!files) return 0;
  call.Report(static_cast<float>(position));
  return ColourThrough(Pass(call, position, 100 - position), file, gradient);
}

}  // namespace

LOOK(NewGt_1) {
  const Picture gradient =
      Bands({Colour(255, 0, 255), Colour(0, 0, 255), Colour(0, 255, 0), Colour(255, 255, 0)},
            {0.1, 0.3, 0.2, 0.3, 0.1});
  call.Report(10);
  Picture turned = Turned(gradient, 135);
  call.Report(30);
  return ColourThrough(call, std::move(turned), L"zvkr_NewGt_1.eb", 50);
}

LOOK(NewGt_2) {
  constexpr tagRGBQUAD kColours[] = {Colour(0, 0, 255), Colour(255, 255, 0)};
  const std::size_t bytes = std::size_t{4} * call.Count();
  const PixelMemory gradient = RequirePixels(bytes);
  std::memset(gradient.get(), 255, bytes);
  if (!CPixelProcess::CreateGradientImage(gradient.get(), call.width, call.height, kColours,
                                          nullptr, 0, 100))
    return 0;
  call.Report(20);
  Files files(call);
  const auto file = files.Planes(L"zvkr_NewGt_2.eb");
  if (!files) return 0;
  return ColourThrough(Pass(call, 20, 80), file, PixelLayer(gradient.get(), call.width));
}

LOOK(NewGt_3) {
  auto gradient = std::make_unique<Gdiplus::Bitmap>(640, 512);
  if (Graphics(gradient.get()).Clear(0xFFFFFFFF) != Gdiplus::Ok) return 0;
  {
    const BitmapLock lock(gradient.get(), {0, 0, 640, 512},
                          Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite);
    constexpr tagRGBQUAD kColours[] = {Colour(239, 62, 104), Colour(0, 0, 255)};
    CPixelProcess::CreateGradientImage(lock.Pixels(), 640, 512, kColours, nullptr, 0, 100);
  }
  call.Report(10);
  Picture turned = Turned(gradient, -45);
  call.Report(30);
  return ColourThrough(call, std::move(turned), L"zvkr_NewGt_3.eb", 50);
}

LOOK(NewGt_5) {
  const Picture gradient = Bands({Colour(255, 0, 0), Colour(255, 0, 255), Colour(0, 0, 255),
                                  Colour(0, 255, 0), Colour(255, 255, 0), Colour(255, 0, 0)},
                                 {0.01, 0.1, 0.3, 0.2, 0.3, 0.1, 0.01});
  call.Report(10);
  const Picture turned = Turned(gradient, 315);
  call.Report(30);
  // Without most of what the turn filled by repeating the edge.
  Picture inner = Own(CPixelProcess::Clone(turned.get(), 20, 20, 180, 180));
  call.Report(40);
  return ColourThrough(call, std::move(inner), L"zvkr_NewGt_3.eb", 60);
}

LOOK(Effect_GuangShuJianBian) {
  const Picture gradient =
      Bands({Colour(40, 3, 92), Colour(255, 255, 255), Colour(40, 3, 92)}, {0, 0.5, 0.5, 0});
  Call silent = call;
  silent.progress = nullptr;
  return ColourThrough(silent, Turned(gradient, 135), L"zvkr_NewGt_3.eb", 0);
}

LOOK(NewGt_7) {
  Files files(call);
  const auto& lights = files.Picture(L"zvtk_071_b.jpg");
  if (!files) return 0;
  return EachRun(
      call,
      [](unsigned char* pixels, std::int64_t count, auto* m) {
        BlendBuffersScreen(pixels, m, static_cast<int>(count));
      },
      lights);
}

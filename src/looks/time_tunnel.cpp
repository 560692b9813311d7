// The time tunnel: the image zoomed and smeared toward its centre, through a painted mask.
#include <algorithm>

#include "filters/scaled_layers.h"
#include "filters/zoom_blur.h"
#include "looks/recipe.h"
#include "pixel/blend_buffers.h"

using namespace tintwerk;

LOOK(Effect_ShiGuangSuiDao) {
  constexpr int kSide = 240;
  const int width = call.width, height = call.height;
  Files files(call);
  const auto overlay = files.Square(L"ZVOverlay60.png", kPlaneB);
  const auto file = files.Raw(L"zvkr_cy.eb", std::size_t{4} * kSide * kSide);
  if (!files) return 0;
  if (call.Count() == 0) return 1;

  // The mask's colours are laid over the image, and its alpha is how much a pixel smears. The image
  // itself is not written before the end.
  const auto mask = NearestLayer({file, kSide, kSide}, width, height);
  PixelMemory smeared = RequirePixels(std::size_t{4} * call.Count());
  ZoomBlur blur(width, height);
  unsigned char *const toned = blur.Weighted(), *const smear = smeared.get();
  const std::int64_t pitch = std::int64_t{4} * width;
  EachBand(call, std::array<const Layer*, 1>{mask.get()},
           [=](const unsigned char* pixels, int first, int rows, const auto& over) {
             unsigned char* const out = toned + pitch * first;
             for (std::int64_t i = 0; i < pitch * rows; i += 4) {
               for (int c = 0; c < 3; ++c)
                 out[i + c] = static_cast<unsigned char>(overlay(pixels[i + c], over[0][i + c]));
               out[i + 3] = over[0][i + 3];
             }
             std::copy_n(out, pitch * rows, smear + pitch * first);
           });

  // The smear is laid back enlarged by 1.3 about the centre, so its rim is not needed.
  const auto rim = [](int size) { return std::max(static_cast<int>(size * 0.115) - 2, 0); };
  blur.Run(smear, rim(width), rim(height), width - rim(width), height - rim(height));
  const float w = static_cast<float>(width), h = static_cast<float>(height);
  const float w13 = 1.3f * w, h13 = 1.3f * h;
  const auto enlarged = DrawnLayer({smear, width, height}, width, height,
                                   {(w - w13) * 0.5f, (h - h13) * 0.5f, w13, h13});
  // The smear's alpha, which came from the mask, decides the mix.
  return EachBand(call, std::array<const Layer*, 1>{enlarged.get()},
                  [=](unsigned char* pixels, int first, int rows, const auto& over) {
                    const unsigned char* const base = toned + pitch * first;
                    for (std::int64_t i = 0; i < pitch * rows; i += 4)
                      std::copy_n(base + i, 3, pixels + i);
                    BlendBuffersAlphaTrunc(pixels, over[0], width * rows);
                  });
}

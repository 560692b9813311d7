// Toy cameras and what else comes out of them.
#include "looks/recipe.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

// The map of the family holds three tables: a curve on the diagonal of its red plane, and a blend
// with each of the two pictures in the others.
static int LomoOver(const Call& call, const wchar_t* colours,
                    std::initializer_list<float> reports) {
  static constexpr ToneTable kLomo = Tone({0, 22, 44, 87, 126, 160, 189, 213, 235, 255});
  Files files(call);
  const auto& first = files.Picture(colours, Turn::Rotate270FlipNone);
  const auto& second = files.Picture(L"zvkr_lomo1_2.jpg", Turn::Rotate270FlipNone);
  const auto map = files.Square(L"jx_123.png");
  const bool opened{files};
  for (const float position : reports) call.Report(position);  // of the pictures
  if (!opened) return 0;
  return EachColour(
      call,
      [=](int v, int, int m1, int m2) {
        return kLomo[map(map(map(v, v, kPlaneR), m1, kPlaneG), m2, kPlaneB)];
      },
      first, second);
}

LOOK_BY(Effect_JingdianLomo, LomoOver(call, L"zvkr_lomo4.jpg", {}))
LOOK_BY(Effect_XuanCaiLomo, LomoOver(call, L"zvkr_lomo1_1.jpg", {10, 20}))

LOOK(Effect_JingdianLomoPomelo) {
  static constexpr ToneTable kTone = Tone({0, 0, 7, 29, 74, 124, 173, 212, 241, 255});
  call.Report(static_cast<float>(call.low));
  Files files(call);
  const auto& rim = files.Picture(L"style\\sucai2.jpg", Turn::Rotate270FlipNone);
  const auto& light = files.Picture(L"style\\sucai1.jpg", Turn::Rotate270FlipNone);
  const auto first = files.Square(L"style\\PSOverlay30.png");
  const auto second = files.Square(L"style\\PSOverlay40.png");
  if (!files) return 0;
  EachColour(
      call, [=](int v, int c, int m1, int m2) { return kTone[second(first(v, m1, c), m2, c)]; },
      rim, light);
  call.Report(static_cast<float>(call.high));
  return 1;
}

LOOK(NewLOMO_14) {
  static constexpr ToneTables kTones = Tones({7, 22, 37, 67, 98, 128, 158, 188, 219, 248},
                                             {5, 20, 36, 66, 97, 128, 159, 189, 220, 250},
                                             {50, 60, 69, 89, 108, 128, 147, 167, 186, 205});
  Files files(call);
  const auto &leak = files.Texture(L"sucai23.jpg"), &rim = files.Texture(L"sucai24.jpg");
  const auto screen = files.Square(L"PSScreen.png", kPlaneR);
  const auto multiply = files.Square(L"PSMultiple.png", kPlaneR);
  if (!files) return 0;
  return EachColour(
      call, [=](int v, int c, int m1, int m2) { return multiply(screen(kTones[c][v], m1), m2); },
      leak, rim);
}

LOOK(Effect_FuGu) {
  Files files(call);
  const auto map = files.Square(L"ZVfugu123.png");
  if (!files) return 0;
  const PixelMemory blurred = BlurredCopy(call, 2);
  return EachColour(
      call, [=](int v, int c, int b) { return map(b, v, c); },
      PixelLayer(blurred.get(), call.width));
}

LOOK(Effect_FuGuHeiBai) {
  static constexpr ToneTable kTone = Tone({0, 10, 27, 61, 94, 128, 162, 195, 229, 255});
  Files files(call);
  const auto& print = files.Picture(L"zvtk_fzl_8a.jpg", Turn::Rotate90FlipNone);
  if (!files) return 0;
  return EachPixel(
      call,
      [](unsigned char* pixel, const unsigned char* m) {
        const int red = pixel[2];
        for (int c = 0; c < 3; ++c) pixel[c] = kTone[red * m[c] / 255];
      },
      print);
}

TONE_LOOK(Effect_FuGuLomo, {0, 13, 28, 63, 105, 150, 188, 216, 234, 247},
          {17, 31, 44, 79, 115, 150, 177, 196, 210, 217},
          {70, 80, 92, 114, 130, 144, 156, 165, 172, 173})
TONE_LOOK(Effect_RiXi_Lomo, {16, 35, 54, 91, 125, 155, 181, 200, 215, 223},
          {26, 49, 69, 107, 142, 171, 195, 212, 227, 236},
          {48, 70, 87, 121, 149, 174, 197, 214, 228, 239})

LOOK(NewLOMO_3) {
  static constexpr ToneTables kTones = Tones({0, 5, 18, 55, 101, 149, 191, 225, 246, 254},
                                             {20, 33, 46, 75, 107, 138, 167, 193, 216, 235},
                                             {63, 72, 80, 96, 112, 129, 145, 161, 177, 192});
  // Each thread draws its own noise, so it differs with the number of threads.
  return EachPixel(call, [](unsigned char* pixel) {
    for (int c = 0; c < 3; ++c) pixel[c] = kTones[c][pixel[c]];
    CPixelProcess::NoiseEx(pixel, 20);
  });
}

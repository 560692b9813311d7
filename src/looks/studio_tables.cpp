// Studio looks: tables of each sharp value against its blurred one.
#include <cstring>

#include "filters/rows.h"
#include "frame/parallel.h"
#include "maps/plane_file.h"
#include "pixel/blend_buffers.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

// Blurs an image a little and keeps it sharp beside that.
// @return the sharp image; null if memory could not be had, with the image as it was
std::unique_ptr<unsigned char[]> BlurBesideSharp(unsigned char* pixels, int width, int height) {
  const auto count = PixelCount(width, height);
  if (!pixels || !count) return nullptr;
  auto sharp = CopyOf(pixels, *count);
  if (sharp && *count > 0 && !CPixelProcess::stackBlur(pixels, width, height, 2, nullptr, 0, 100))
    return nullptr;
  return sharp;
}

// A plane a channel, red first; the sharp value is the high index.
void LookUpSharpAgainstBlurred(unsigned char* blurred, const unsigned char* sharp,
                               std::int64_t count, const PlaneFile& planes) {
  const Plane red = planes[1], green = planes[2], blue = planes[3];
  ParallelFor(count, [=](std::int64_t i) {
    unsigned char* pixel = blurred + 4 * i;
    const unsigned char* from = sharp + 4 * i;
    pixel[0] = blue(from[0], pixel[0]);
    pixel[1] = green(from[1], pixel[1]);
    pixel[2] = red(from[2], pixel[2]);
  });
}

// The driver's work; `goOn` is asked between the blur and the table.
template <class GoOn>
int StudioLook(unsigned char* pixels, int width, int height, const CString& path,
               const GoOn& goOn) {
  const auto sharp = BlurBesideSharp(pixels, width, height);
  if (!sharp || !goOn()) return 0;
  const PlaneFile planes(path);
  if (!planes) return 0;
  LookUpSharpAgainstBlurred(pixels, sharp.get(), *PixelCount(width, height), planes);
  return 1;
}

// Contrast of a darkroom print: nothing below 16, almost nothing kept between dark and light.
constexpr ToneTable kSteep = Curve({{0, 0},
                                    {16, 0},
                                    {32, 4},
                                    {64, 30},
                                    {96, 102},
                                    {128, 194},
                                    {160, 235},
                                    {192, 250},
                                    {224, 254},
                                    {255, 255}});

// A byte as a share of 255.
constexpr auto kShare = [] {
  std::array<float, 256> share{};
  for (int i = 0; i < 256; ++i) share[i] = static_cast<float>(i) / 255.0f;
  return share;
}();

// The next mask of 640 x 640 bytes, scaled over the image; null if memory could not be had.
std::unique_ptr<unsigned char[]> ReadMaskOver(RawFile& file, int width, int height) {
  constexpr int kSide = 640;
  auto mask = file.Read(std::size_t{kSide} * kSide);
  if (!mask || (width == kSide && height == kSide)) return mask;
  unsigned char* scaled = mask.release();
  const int resampled = CPixelProcess::RampleBit(width, height, &scaled, kSide, kSide, 1);
  mask.reset(scaled);
  return resampled || PixelCount(width, height) == 0 ? std::move(mask) : nullptr;
}

}  // namespace

int CEffect::StdioFunction(unsigned char* pixels, int width, int height, const wchar_t* path,
                           CObjProgress*, int, int) {
  return StudioLook(pixels, width, height, path, [] { return true; });
}

#define TINTWERK_STUDIO_LOOK(entry, file)                                                   \
  int CEffect::entry(unsigned char* pixels, int width, int height, void* resourceRoot,      \
                     CObjProgress* progress, int progressLow, int progressHigh) {           \
    const CString path = FormatPath(L"%s\\Effects\\" file, resourceRoot);                   \
    return StdioFunction(pixels, width, height, path.Wide().c_str(), progress, progressLow, \
                         progressHigh);                                                     \
  }
TINTWERK_STUDIO_LOOK(Effect_LengLan, L"zvkr_studio_2.eb")
TINTWERK_STUDIO_LOOK(Effect_LengLv, L"zvkr_studio_5.eb")
TINTWERK_STUDIO_LOOK(Effect_NuanHuang, L"zvkr_studio_3.eb")
#undef TINTWERK_STUDIO_LOOK

int CEffect::Effect_JingDianYingLou(unsigned char* pixels, int width, int height,
                                    void* resourceRoot, CObjProgress* progress, int, int) {
  return StudioLook(pixels, width, height,
                    FormatPath(L"%s\\Effects\\zvkr_studio_0.eb", resourceRoot),
                    [=] { return KeepGoing(progress); });
}

int CEffect::Effect_LengZi(unsigned char* pixels, int width, int height, void* resourceRoot,
                           CObjProgress* progress, int, int) {
  auto sharp = BlurBesideSharp(pixels, width, height);
  if (!sharp || !KeepGoing(progress)) return 0;
  const PlaneFile file(FormatPath(L"%s\\Effects\\zvkr_studio_1.eb", resourceRoot));
  if (!file) return 0;

  const std::int64_t count = *PixelCount(width, height);
  const Plane first = file[1], second = file[2];
  const unsigned char* kept = sharp.get();
  // Here the blurred value is the high index, and one pair of planes serves every channel.
  ParallelFor(count, [=](std::int64_t i) {
    for (std::int64_t at = 4 * i; at < 4 * i + 3; ++at)
      pixels[at] = second(first(pixels[at], kept[at]), kept[at]);
  });
  sharp.reset();

  CPixelProcess::Saturateconst(pixels, width, height, -45, 1, progress, 60, 80);
  if (!KeepGoing(progress)) return 0;
  const unsigned char *red = file.Tone(1), *green = file.Tone(2), *blue = file.Tone(3);
  ParallelFor(count, [=](std::int64_t i) { ApplyTables(pixels + 4 * i, 1, blue, green, red); });
  return 1;
}

int CEffect::Effect_YiZhou(unsigned char* pixels, int width, int height, void* resourceRoot,
                           CObjProgress* progress, int, int) {
  const auto total = PixelCount(width, height);
  if (!pixels || !total) return 0;
  const std::int64_t count = *total;
  const auto copy = CopyOf(pixels, count);
  if (!copy) return 0;
  ParallelFor(count, [=](std::int64_t i) { ApplyTable(pixels + 4 * i, 1, kSteep.data()); });
  // The colours come back from the untouched image: the curve is to change the brightness.
  BlendBuffersColorHSB(pixels, copy.get(), *total, 0.6f);
  std::memcpy(copy.get(), pixels, std::size_t{4} * *total);
  if (!CPixelProcess::stackBlur(pixels, width, height, 2, nullptr, 0, 100) || !KeepGoing(progress))
    return 0;

  RawFile file(FormatPath(L"%s\\Effects\\zvkr_lomo_16.eb", resourceRoot));
  if (!file) return 0;
  const auto sharpness = ReadMaskOver(file, width, height);
  const auto vignette = ReadMaskOver(file, width, height);
  if (!sharpness || !vignette) return 0;

  const unsigned char *focus = sharpness.get(), *light = vignette.get(), *crisp = copy.get();
  ParallelFor(count, [=](std::int64_t i) {
    const float m = kShare[focus[i]], v = kShare[light[i]];
    for (std::int64_t at = 4 * i; at < 4 * i + 3; ++at) {
      const int mixed = static_cast<int>(crisp[at] * m + pixels[at] * (1 - m));
      pixels[at] = static_cast<unsigned char>(static_cast<int>(mixed * v));
    }
  });
  return 1;
}

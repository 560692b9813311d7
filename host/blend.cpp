// tintwerk blend: lays a picture over others by a blend mode.
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "blend_modes.h"
#include "commands.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

namespace {

// The pixels of a picture at another size.
std::vector<unsigned char> ScaledTo(const Picture& picture, int width, int height) {
  const auto fail = [] { throw std::bad_alloc(); };
  Gdiplus::Bitmap bitmap(picture.width, picture.height);
  Gdiplus::BitmapData data;
  if (bitmap.LockBits(nullptr, 3, Gdiplus::PixelFormat32bppARGB, &data) != Gdiplus::Ok) fail();
  std::memcpy(data.Scan0, picture.pixels.get(), picture.PageBytes());
  bitmap.UnlockBits(&data);
  const std::unique_ptr<Gdiplus::Bitmap> scaled(
      static_cast<Gdiplus::Bitmap*>(CPixelProcess::RampleBit(&bitmap, width, height)));
  if (!scaled || scaled->LockBits(nullptr, 1, Gdiplus::PixelFormat32bppARGB, &data) != Gdiplus::Ok)
    fail();
  const auto* first = static_cast<const unsigned char*>(data.Scan0);
  return {first, first + std::size_t{4} * width * height};
}

}  // namespace

int Blend(const BlendOptions& options) {
  const int mode = FindBlendMode(options.mode);
  if (mode == 0) throw Refusal(NothingIsCalled("blend mode", options.mode, BlendModeNames()));
  Picture top;
  try {
    top = LoadPicture(options.top, options.load);
  } catch (const std::exception& error) {
    throw Refusal("cannot read " + Quoted(options.top) + ": " + WordsOf(error));
  }
  top.pages = 1;  // of several the first
  const auto blend = [&](Picture& page, CObjProgress& progress) {
    const auto over = ScaledTo(top, page.width, page.height);
    CEffect::ChannelBlend_X(page.pixels.get(), over.data(), page.width, page.height,
                            BlendMode(mode), &progress, 0, 100);
  };
  return RunWork(options, {.name = "blend", .run = blend, .kept = {options.top}});
}

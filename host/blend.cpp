// tintwerk blend: lays one picture over another by a blend mode.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>
#include <vips/vips8>

#include "blend_modes.h"
#include "commands.h"
#include "picture_io.h"
#include "stop_progress.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

namespace {

// The pixels of a picture at another size.
std::vector<unsigned char> ScaledTo(const Picture& picture, int width, int height) {
  const auto fail = [] { throw std::bad_alloc(); };
  Gdiplus::Bitmap bitmap(picture.width, picture.height);
  Gdiplus::BitmapData data;
  if (bitmap.LockBits(nullptr, 3, Gdiplus::PixelFormat32bppARGB, &data) != Gdiplus::Ok) fail();
  std::memcpy(data.Scan0, picture.pixels.get(), picture.Bytes());
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
  if (mode == 0)
    throw Refusal("no blend mode is called '" + options.mode + "'; there are: " + BlendModeNames());
  if (!IsWritable(options.output))
    throw Refusal("cannot write '" + options.output.string() + "': the formats are " +
                  WritableExtensions());
  Picture base = LoadPicture(options.base);
  const Picture top = LoadPicture(options.top);
  const auto over = ScaledTo(top, base.width, base.height);
  ProgressBar bar("blend");
  StopProgress progress(bar);
  CEffect::ChannelBlend_X(base.pixels.get(), over.data(), base.width, base.height, BlendMode(mode),
                          &progress, 0, 100);
  if (StopSignal()) return kFailed;
  SavePicture(base, options.output);
  return kDone;
}

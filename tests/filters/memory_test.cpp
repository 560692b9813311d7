// What operations do when memory runs out: nothing is thrown, and what they work on is done or as
// it was.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "frame/random.h"
#include "support/failing_memory.h"
#include "support/operations.h"
#include "support/resource_root.h"
#include "tintwerk/cube_container.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/selective_color.h"
#include "tintwerk/sfdsp.h"
#include "tintwerk/trilinear.h"

namespace tintwerk::test {
namespace {

constexpr int kWidth = 37, kHeight = 43;

/// An operation on kWidth x kHeight pixels. What it makes elsewhere it copies there.
struct Operation {
  const char* name;
  Call run;
};

/// Fails every allocation of an operation in turn.
/// @param run run(pixels), which must not allocate itself
/// @param prepare is called before each run, with memory at hand
/// @param spared what else may come out without memory
/// @return how many allocations there were
template <class Run, class Prepare>
int ExpectSound(const char* name, const Run& run, const Prepare& prepare,
                const Bytes* spared = nullptr) {
  SCOPED_TRACE(name);
  const Bytes image = TiedPicture(kWidth, kHeight).bytes;
  int allocations = 0;
  for (const Shortage shortage : {Shortage::kOne, Shortage::kForGood}) {
    const Threads threads(shortage == Shortage::kOne ? 2 : 1);
    SeedRandom(1);
    Bytes whole = image;
    prepare();
    run(whole.data());
    for (int at = 0;; ++at) {
      Bytes result = image;
      SeedRandom(1);
      prepare();
      bool failed = false;
      try {
        const FailingMemory memory(at, shortage);
        run(result.data());
        failed = FailingMemory::Asked() > at;
      } catch (...) {
        ADD_FAILURE() << "throws after " << at << " allocations";
        failed = true;
      }
      EXPECT_TRUE(result == image || result == whole || (spared && result == *spared))
          << "after " << at << " allocations";
      if (!failed) break;
      allocations = std::max(allocations, at + 1);
    }
  }
  return allocations;
}

// Takes pixels of a picture that an operation made.
void Take(void* made, Byte* pixels) {
  const BitmapPtr bitmap(static_cast<Gdiplus::Bitmap*>(made));
  if (!bitmap) return;
  const BitmapLock lock(bitmap.get());
  if (lock.Pixels())
    std::memcpy(pixels, lock.Pixels(),
                std::min(4 * kWidth * kHeight, 4 * lock.Width() * lock.Height()));
}

TEST(Memory, OperationsOnImagesAreDoneOrNot) {
  using P = CPixelProcess;
  static const std::int32_t kernel[25] = {1, 2, 3, 2, 1, 0, 4};
  static const BitmapPtr picture = BitmapOf(RandomPicture(29, 31));
  static const Bytes other = RandomBytes(4 * kWidth * kHeight, 5);
  static ProgressRecorder host;
  host.positions.reserve(10000);
  const auto plane = [](auto filter) {
    return [=](Byte* pixels, int w, int h, CObjProgress*, int, int) {
      return filter(pixels, w, h), 1;
    };
  };
  const auto replaced = [](auto resample) {  // of an array that the operation may replace
    return [=](Byte* pixels, int w, int h, CObjProgress*, int, int) {
      Byte* block = new (std::nothrow) Byte[4 * kWidth * kHeight];
      if (!block) return 0;
      std::memcpy(block, pixels, 4 * kWidth * kHeight);
      resample(&block, w, h);
      std::memcpy(pixels, block, 4 * 19 * 23);
      delete[] block;
      return 1;
    };
  };
  const std::vector<Operation> operations = {
      {"stackBlur", With(P::stackBlur, 3)},
      {"stackBlur, reporting",
       [](Byte* pixels, int w, int h, CObjProgress*, int, int) {
         return int(P::stackBlur(pixels, w, h, 3, &host, 0, 100));
       }},
      {"GaussIIRBlurImage", With(P::GaussIIRBlurImage, 3, 4)},
      {"Filter", With(P::Filter, kernel, 5, 9, 1)},
      {"LightNew", With(P::LightNew, 20, 3)},
      {"AutoColor", With(P::AutoColor, 10, 20)},
      {"ABaoColor", With(P::ABaoColor)},
      {"Istone_Emboss", With(P::Istone_Emboss, 3)},
      {"Istone_HalftoneM3", With(P::Istone_HalftoneM3)},
      {"Istone_Illusion", With(P::Istone_Illusion, 5)},
      {"Istone_Ripple", With(P::Istone_Ripple, 9, 4, true)},
      {"Istone_Shift", With(P::Istone_Shift, 4)},
      {"Istone_Splash", With(P::Istone_Splash, 4)},
      {"Istone_WhirlPinch", With(P::Istone_WhirlPinch, 1.0, 0.5)},
      {"Mosaic", With(P::Mosaic, 5)},
      {"SkinBase", With(P::SkinBase, 3.0f)},
      {"TianMei", With(P::TianMei)},
      {"WeiMei", With(P::WeiMei)},
      {"SFDSP::stackBlur", With(SFDSP::stackBlur, 3)},
      {"stackBlurAndHighPass", With(SFDSP::stackBlurAndHighPass, 3)},
      {"stackBlurRedChannel", With(SFDSP::stackBlurRedChannel, 3)},
      {"WarmFilter", With(SFDSP::WarmFilter, 0.5f)},
      {"ColdFilter", With(SFDSP::ColdFilter, 0.5f)},
      {"GaussIIRBlurWithOne", With(P::GaussIIRBlurWithOne, 3, 4)},
      {"BlurOneChannel", With(P::BlurOneChannel, 3)},
      {"BlurChannelAndHighLight", With(SFDSP::BlurChannelAndHighLight, 3)},
      {"GuideFilter", With(SFDSP::GuideFilter, 3, 100)},
      {"UsmSharp",
       [](Byte* pixels, int w, int h, CObjProgress*, int, int) {
         Byte* blurred = nullptr;
         P::UsmSharp(pixels, w, h, 2, 1, &blurred, nullptr, 0, 100);
         return P::FreeUsmSharp(blurred);
       }},
      {"BoxMaxFilters", plane([](Byte* pixels, int w, int h) {
         const std::unique_ptr<Byte[]> made(P::BoxMaxFilters(pixels, w, h, 3));
         if (made) std::memcpy(pixels, made.get(), 3 * w * h);
       })},
      {"BoxMaxFilter", plane([](Byte* pixels, int w, int h) {
         const std::unique_ptr<Byte[]> made(P::BoxMaxFilter(pixels, w, h, 3, 1));
         if (made) std::memcpy(pixels, made.get(), w * h);
       })},
      {"RampleBit of a picture",
       plane([](Byte* pixels, int w, int h) { Take(P::RampleBit(picture.get(), w, h), pixels); })},
      {"Rotate2", plane([](Byte* pixels, int, int) {
         Take(P::Rotate2(picture.get(), 29, 31, 30, P::InterpolationBilinear, P::OverflowClamp,
                         true, true),
              pixels);
       })},
      {"Clone",
       plane([](Byte* pixels, int, int) { Take(P::Clone(picture.get(), 2, 3, 20, 20), pixels); })},
      {"GetGradientImage", plane([](Byte* pixels, int w, int h) {
         constexpr tagRGBQUAD kColours[] = {{1, 2, 3, 0}, {200, 100, 50, 0}};
         constexpr double kStops[] = {0.2, 0.5, 0.3};
         Take(P::GetGradientImage(w, h, 1, 2, kColours, kStops, 0), pixels);
       })},
      {"RampleBit by a mode",
       replaced([](Byte** block, int w, int h) { P::RampleBit(19, 23, 2, block, w, h); })},
      {"RampleBit of bytes",
       replaced([](Byte** block, int w, int h) { P::RampleBit(19, 23, block, w, h, 4); })},
      {"BilinearReSample", plane([](Byte* pixels, int w, int h) {
         SFDSP::BilinearReSample(other.data(), 19, 23, pixels, w, h, 4);
       })},
      {"BilinearReSample of a plane", plane([](Byte* pixels, int w, int h) {
         SFDSP::BilinearReSample(other.data(), 19, 23, pixels, w, h, 1);
       })},
      {"RadiusZoomBlur", plane([](Byte* pixels, int w, int h) {
         P::RadiusZoomBlur(pixels, other.data(), other.data(), w, h, nullptr, 0, 100);
       })},
      {"Skinbeautify", With(P::Skinbeautify, 200, 150, 120, 0.5, other.data())},
      {"CSelectiveColor", plane([](Byte* pixels, int w, int h) {
         CSelectiveColor selective;
         selective.SetSelectiveColor(CSelectiveColor::Red, -50, 20, 10, 0);
         selective.Execute(pixels, w, h);
       })},
      {"ChannelBlend_X", plane([](Byte* pixels, int w, int h) {
         CEffect::ChannelBlend_X(pixels, other.data(), w, h, BlendModeOverlay, nullptr, 0, 100);
       })},
      {"Effect_AlphaAdJust", plane([](Byte* pixels, int w, int h) {
         CEffect::Effect_AlphaAdJust(pixels, other.data(), w, h, 0.5);
       })},
  };
  for (const Operation& operation : operations)
    ExpectSound(
        operation.name,
        [&](Byte* pixels) { operation.run(pixels, kWidth, kHeight, nullptr, 0, 100); }, [] {});
}

// Its soft edges are what takes memory.
TEST(Memory, SkinMaskIsHardEdgedWithoutIt) {
  const Bytes picture = SmoothPicture(kWidth, kHeight).bytes;
  const auto mask = [&](Byte* pixels) {
    SFDSP::CreateSkinMask(picture.data(), kWidth, kHeight, pixels, false, 0, 0, 0, 0);
  };
  Bytes hard = TiedPicture(kWidth, kHeight).bytes;
  {
    const FailingMemory memory(0);
    mask(hard.data());
  }
  ExpectSound(
      "CreateSkinMask", mask, [] {}, &hard);
}

TEST(Memory, FilesAreReadOrNot) {
  TemporaryFolder folder;
  const auto picture = folder.Write("picture", EncodePng(RandomPicture(kWidth, kHeight))).wstring();
  const auto jpeg = folder.Write("jpeg", EncodeJpeg(SmoothPicture(kWidth, kHeight))).wstring();
  const auto container =
      folder.Write("cube", PackCube(EncodePng(RandomPicture(64, 64, 3)))).wstring();

  for (const auto& path : {picture, jpeg})
    EXPECT_GT(ExpectSound(
                  "Bitmap",
                  [&](Byte* pixels) {
                    auto* const bitmap = new (std::nothrow) Gdiplus::Bitmap(path.c_str());
                    if (bitmap) bitmap->RotateFlip(Gdiplus::Rotate180FlipNone);
                    if (bitmap && bitmap->GetLastStatus() != Gdiplus::Ok) {
                      delete bitmap;
                      return;
                    }
                    Take(bitmap, pixels);
                  },
                  [] {}),
              3);
  CString path;
  EXPECT_GT(ExpectSound(
                "Effect_VSCO_4x4",
                [&](Byte* pixels) {
                  CTrilinear::Effect_VSCO_4x4(std::move(path), pixels, kWidth, kHeight);
                },
                [&] { path = CString(container.c_str()); }),
            2);
  int width = 0, height = 0;
  ExpectSound(
      "LoadCryptFile",
      [&](Byte* pixels) {
        Byte* const block = CTrilinear::LoadCryptFile(std::move(path), width, height);
        if (block) std::memcpy(pixels, block, std::min(4 * width * height, 4 * kWidth * kHeight));
        CTrilinear::DeleteValue(block);
      },
      [&] { path = CString(container.c_str()); });
}

}  // namespace
}  // namespace tintwerk::test

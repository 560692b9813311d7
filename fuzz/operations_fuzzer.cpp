// Runs public operations with any size and any parameter value, on blocks of just the bytes that they
// may touch.
#include <omp.h>

#include <iterator>
#include <type_traits>
#include <utility>

#include "drawn.h"
#include "tintwerk/tintwerk.h"

using namespace tintwerk;
using fuzz::AnyInt;
using fuzz::AnyReal;
using fuzz::Block;
using fuzz::Input;

namespace {

// An image, or a plane of it: maybe none.
struct Image {
  Image(Input& input, int channels)
      : width(fuzz::AnySide(input)),
        height(fuzz::AnySide(input)),
        block(input, width > 0 && height > 0 ? std::int64_t{channels} * width * height : 0),
        other(input, block.Size()),
        third(input, block.Size()),
        pixels(input.ConsumeIntegralInRange(0, 31) == 0 ? nullptr : block.Bytes()) {}

  int width, height;
  Block block, other, third;
  unsigned char* pixels;
};

// Further parameters, by their types: numbers are anything, pointers to pixels are other images of
// the same size.
class Parameters {
 public:
  Parameters(Input& input, const Image& image) : input_(input), image_(image), host_(input) {}

  template <class T>
  T Next() {
    if constexpr (std::is_same_v<T, bool>) {
      return input_.ConsumeBool();
    } else if constexpr (std::is_same_v<T, BlendMode>) {
      return static_cast<T>(AnyInt(input_));
    } else if constexpr (std::is_enum_v<T>) {  // whose values end with their bits
      constexpr int kLast = std::is_same_v<T, CPixelProcess::BLIND_TYPE>    ? 1
                            : std::is_same_v<T, CPixelProcess::TONE_REGION> ? 3
                                                                            : 7;
      return static_cast<T>(input_.ConsumeIntegralInRange(0, kLast));
    } else if constexpr (std::is_floating_point_v<T>) {
      return static_cast<T>(AnyReal(input_));
    } else if constexpr (std::is_same_v<T, unsigned char>) {
      return input_.ConsumeIntegral<unsigned char>();
    } else if constexpr (std::is_integral_v<T>) {
      return static_cast<T>(AnyInt(input_));
    } else if constexpr (std::is_same_v<T, CObjProgress*>) {
      return input_.ConsumeBool() ? &host_ : nullptr;
    } else if constexpr (std::is_same_v<T, const unsigned char*>) {
      return input_.ConsumeIntegralInRange(0, 31) == 0 ? nullptr : image_.other.Bytes();
    } else if constexpr (std::is_same_v<T, tagRGBQUAD>) {
      return {input_.ConsumeIntegral<unsigned char>(), input_.ConsumeIntegral<unsigned char>(),
              input_.ConsumeIntegral<unsigned char>(), 0};
    } else {
      static_assert(std::is_same_v<T, const tagRECT&>);
      rect_ = {AnyInt(input_), AnyInt(input_), AnyInt(input_), AnyInt(input_)};
      return rect_;
    }
  }

 private:
  Input& input_;
  const Image& image_;
  fuzz::Host host_;
  tagRECT rect_;
};

template <int channels, class R, class... Rest>
void CallWith(R (*operation)(unsigned char*, int, int, Rest...), Input& input) {
  const Image image(input, channels);
  Parameters next(input, image);
  const std::tuple<Rest...> rest{next.Next<Rest>()...};  // in their order
  std::apply(
      [&](auto&&... values) { operation(image.pixels, image.width, image.height, values...); },
      rest);
}
template <int channels, class R, class... Rest>
void CallWith(R (*operation)(unsigned char*, const unsigned char*, int, int, Rest...),
              Input& input) {
  const Image image(input, channels);
  Parameters next(input, image);
  const std::tuple<Rest...> rest{next.Next<Rest>()...};
  std::apply(
      [&](auto&&... values) {
        operation(image.pixels, image.other.Bytes(), image.width, image.height, values...);
      },
      rest);
}
// On one pixel.
template <int, class R, class... Rest>
void CallWith(R (*operation)(unsigned char*, const unsigned char*, Rest...), Input& input) {
  const Block base(input, 4), source(input, 4);
  const std::tuple<Rest...> rest{static_cast<Rest>(AnyReal(input))...};
  std::apply([&](auto... values) { operation(base.Bytes(), source.Bytes(), values...); }, rest);
}

using Operation = void (*)(Input& input);
#define ON_IMAGE(operation) [](Input& input) { CallWith<4>(operation, input); }
#define ON_PLANE(operation) [](Input& input) { CallWith<1>(operation, input); }
#define OF_TYPE(type, operation) \
  [](Input& input) { CallWith<4>(static_cast<std::type_identity_t<type>*>(operation), input); }

using P = CPixelProcess;

// A block that the operation may replace.
template <class Resample>
void Replaced(Input& input, int channels, const Resample& resample) {
  const Image image(input, channels);
  if (image.block.Size() == 0) return;
  auto* pixels = new unsigned char[static_cast<std::size_t>(image.block.Size())];
  std::copy_n(image.block.Bytes(), image.block.Size(), pixels);
  const int width = fuzz::AnySide(input), height = fuzz::AnySide(input);
  resample(image, &pixels, width, height);
  delete[] pixels;
}

template <class Make>
void Made(Input& input, const Make& make) {
  Gdiplus::Bitmap bitmap(input.ConsumeIntegralInRange(0, 64), input.ConsumeIntegralInRange(0, 64));
  delete static_cast<Gdiplus::Bitmap*>(make(&bitmap));
}

const Operation kOperations[] = {
    ON_IMAGE(P::stackBlur),
    ON_PLANE(P::BlurOneChannel),
    ON_IMAGE(P::GaussIIRBlurImage),
    ON_PLANE(P::GaussIIRBlurWithOne),
    ON_IMAGE(P::AutoColor),
    ON_IMAGE(P::AutoColorLevel),
    ON_IMAGE(P::AutoConstrast),
    ON_IMAGE(P::AutoWhiteBalance),
    ON_IMAGE(P::PixelBrightness),
    ON_IMAGE(P::Light),
    ON_IMAGE(P::LightNew),
    ON_IMAGE(P::ExposureFilter),
    ON_IMAGE(P::Saturateconst),
    ON_IMAGE(P::Saturateconst_Faster),
    ON_IMAGE(P::SetHue),
    ON_IMAGE(P::SetColor),
    ON_IMAGE(P::Istone_Gamma),
    ON_IMAGE(P::Istone_Posterize),
    ON_IMAGE(P::Istone_AdjustRGB),
    ON_IMAGE(P::ShiftRGB),
    ON_IMAGE(P::Threshold),
    ON_IMAGE(P::Negative),
    ON_IMAGE(P::GrayScale),
    ON_IMAGE(P::SetGrayScale),
    ON_IMAGE(P::ConvertColorSpace),
    ON_IMAGE(P::ABaoColor),
    ON_IMAGE(P::Color_Channel_Composite),
    ON_IMAGE(P::Normal_Channel_Composite),
    ON_IMAGE(P::Overlay_Channel_Composite),
    ON_IMAGE(P::CompositeColor),
    ON_IMAGE(P::Multiple),
    ON_IMAGE(P::Blinds),
    ON_IMAGE(P::Istone_Blinds),
    ON_IMAGE(P::Istone_3DGrid),
    ON_IMAGE(P::Istone_Emboss),
    ON_IMAGE(P::Istone_FillGrid),
    ON_IMAGE(P::Istone_HalftoneM3),
    ON_IMAGE(P::Istone_Illusion),
    ON_IMAGE(P::Istone_Noisify),
    ON_IMAGE(P::Istone_Ripple),
    ON_IMAGE(P::Istone_Shift),
    ON_IMAGE(P::Istone_Splash),
    ON_IMAGE(P::Istone_WhirlPinch),
    ON_IMAGE(P::Mosaic),
    ON_IMAGE(P::Noise),
    ON_IMAGE(P::Dehazing),
    ON_IMAGE(P::RedEyeRemove),
    ON_IMAGE(P::SkinBase),
    ON_IMAGE(P::TianMei),
    ON_IMAGE(P::WeiMei),
    ON_IMAGE(SFDSP::stackBlur),
    ON_IMAGE(SFDSP::stackBlurAndHighPass),
    ON_IMAGE(SFDSP::stackBlurRedChannel),
    ON_PLANE(SFDSP::BlurOneChannel),
    ON_PLANE(SFDSP::BlurChannelAndHighLight),
    ON_IMAGE(SFDSP::Sharp),
    ON_IMAGE(SFDSP::Light),
    ON_IMAGE(SFDSP::BrightContrastSaturation),
    ON_IMAGE(SFDSP::HueSaturationBright),
    ON_IMAGE(SFDSP::WarmFilter),
    ON_IMAGE(SFDSP::ColdFilter),
    ON_PLANE(SFDSP::GuideFilter),
    ON_IMAGE(CEffect::ChannelBlend_X),
    ON_IMAGE(CEffect::Effect_AlphaAdJust),
    ON_IMAGE(SFDSP::ColorBurnEx),
    ON_IMAGE(SFDSP::ColorDodgeEx),
    ON_IMAGE(SFDSP::ColorHSBEx),
    ON_IMAGE(SFDSP::ExclusionEx),
    ON_IMAGE(SFDSP::NormalEx),
    ON_IMAGE(SFDSP::OverlayEx),
    ON_IMAGE(SFDSP::ScreenEx),
    OF_TYPE(void(unsigned char*, const unsigned char*, double), SFDSP::CompositeColorEx),
    OF_TYPE(void(unsigned char*, const unsigned char*, double), SFDSP::MultipleEx),
    OF_TYPE(void(unsigned char*, const unsigned char*, float), SFDSP::PinLightEx),
    OF_TYPE(void(unsigned char*, const unsigned char*, double), SFDSP::SoftLightEx),
    OF_TYPE(void(unsigned char*, int, int, int), SFDSP::Saturateconst_Faster),

    [](Input& input) {
      const Image image(input, 4);
      Parameters next(input, image);
      P::CColorBalance(AnyInt(input), next.Next<P::TONE_REGION>(), AnyInt(input), AnyInt(input),
                       AnyInt(input), image.pixels, image.width, image.height,
                       next.Next<CObjProgress*>(), AnyInt(input), AnyInt(input));
    },
    [](Input& input) {
      const Image image(input, 4);
      Parameters next(input, image);
      P().SetHSL(image.pixels, image.width, image.height, AnyInt(input), AnyInt(input),
                 AnyInt(input), next.Next<CObjProgress*>(), AnyInt(input), AnyInt(input));
    },
    [](Input& input) {  // a part, which lies in the image
      const Image image(input, 4);
      const int left = input.ConsumeIntegralInRange(0, std::max(image.width, 0)),
                top = input.ConsumeIntegralInRange(0, std::max(image.height, 0)),
                width = input.ConsumeIntegralInRange(-1, std::max(image.width, 0) - left),
                height = input.ConsumeIntegralInRange(-1, std::max(image.height, 0) - top);
      SFDSP::Saturateconst_Faster(image.pixels, image.width, left, top, width, height,
                                  AnyInt(input));
    },
    [](Input& input) {
      const Image image(input, 4);
      const Block table(input, 256);
      P::Lut(image.pixels, image.width, image.height, table.Bytes(), nullptr, 0, 100);
      SFDSP::Lut(image.pixels, table.Bytes(), image.width, image.height);
    },
    [](Input& input) {
      const Image image(input, 4);
      std::int32_t counts[4][256];
      P::Histogram(image.pixels, image.width, image.height, counts[0], counts[1], counts[2],
                   counts[3], AnyInt(input), nullptr, 0, 100);
    },
    [](Input& input) {
      const Image image(input, 4);
      std::int32_t kernel[81];
      for (std::int32_t& weight : kernel) weight = AnyInt(input);
      P::Filter(image.pixels, image.width, image.height, kernel,
                input.PickValueInArray({-1, 0, 1, 2, 3, 4, 5, 7, 9}), AnyInt(input), AnyInt(input),
                nullptr, 0, 100);
    },
    [](Input& input) {
      const Image image(input, 4);
      const auto radius = static_cast<float>(AnyReal(input)),
                 amount = static_cast<float>(AnyReal(input));
      unsigned char* blurred = nullptr;
      P::UsmSharp(image.pixels, image.width, image.height, radius, amount, &blurred, nullptr, 0,
                  100);
      P::FreeUsmSharp(blurred);
    },
    [](Input& input) {
      const Image image(input, 4);
      const int radius = AnyInt(input);
      delete[] P::BoxMaxFilters(image.pixels, image.width, image.height, radius);
      delete[] P::BoxMaxFilter(image.pixels, image.width, image.height, radius,
                               input.ConsumeIntegralInRange(0, 2));
    },
    [](Input& input) {
      const int mode = AnyInt(input);
      Replaced(input, 4, [=](const Image& image, unsigned char** pixels, int width, int height) {
        P::RampleBit(width, height, mode, pixels, image.width, image.height);
      });
    },
    [](Input& input) {
      const int channels = input.PickValueInArray({1, 3, 4});
      Replaced(input, channels,
               [=](const Image& image, unsigned char** pixels, int width, int height) {
                 P::RampleBit(width, height, pixels, image.width, image.height, channels);
               });
    },
    [](Input& input) {
      const int channels = input.PickValueInArray({1, 3, 4});
      Replaced(input, channels,
               [=](const Image& image, unsigned char** pixels, int width, int height) {
                 SFDSP::RampleBit(width, height, pixels, image.width, image.height, channels);
               });
    },
    [](Input& input) {
      const int channels = input.PickValueInArray({1, 4});
      const Image source(input, channels), target(input, channels);
      SFDSP::BilinearReSample(source.pixels, source.width, source.height, target.pixels,
                              target.width, target.height, channels);
    },
    [](Input& input) {
      Made(input, [&](void* bitmap) {
        const int width = fuzz::AnySide(input);
        return P::RampleBit(bitmap, width, fuzz::AnySide(input));
      });
    },
    [](Input& input) {
      Made(input, [&](void* bitmap) {
        const int width = fuzz::AnySide(input), height = fuzz::AnySide(input);
        const auto angle = static_cast<float>(AnyReal(input));
        return P::Rotate2(
            bitmap, width, height, angle, P::InterpolationBilinear,
            input.PickValueInArray({P::OverflowWrap, P::OverflowClamp, P::OverflowMirror}),
            input.ConsumeBool(), input.ConsumeBool());
      });
    },
    [](Input& input) {
      Made(input, [&](void* bitmap) {
        const int left = AnyInt(input), top = AnyInt(input), width = AnyInt(input);
        return P::Clone(bitmap, left, top, width, AnyInt(input));
      });
    },
    [](Input& input) {
      Made(input, [&](void*) {
        tagRGBQUAD colors[4] = {{1, 2, 3, 0}, {200, 100, 50, 0}, {9, 250, 0, 0}, {}};
        double stops[5];
        for (double& stop : stops) stop = AnyReal(input);
        const int width = fuzz::AnySide(input), height = fuzz::AnySide(input);
        return P::GetGradientImage(width, height, AnyInt(input),
                                   input.ConsumeIntegralInRange(-1, 4), colors, stops,
                                   AnyInt(input));
      });
    },
    [](Input& input) {
      const Image image(input, 4);
      const tagRGBQUAD colors[2] = {{1, 2, 3, 0}, {200, 100, 50, 0}};
      P::CreateGradientImage(image.pixels, image.width, image.height, colors, nullptr, 0, 100);
    },
    [](Input& input) {
      const Image image(input, 4);
      P::RadiusZoomBlur(image.pixels, image.other.Bytes(), image.third.Bytes(), image.width,
                        image.height, nullptr, 0, 100);
    },
    [](Input& input) {
      const Image image(input, 4);
      const Block mask(input, image.block.Size() / 4);
      P::Skinbeautify(image.pixels, image.width, image.height, AnyInt(input), AnyInt(input),
                      AnyInt(input), AnyReal(input), mask.Bytes(), nullptr, 0, 100);
    },
    [](Input& input) {
      const Image image(input, 4);
      const Block mask(input, image.block.Size() / 4);
      int red = 0, green = 0, blue = 0;
      unsigned char r = 0, g = 0, b = 0;
      const bool useFace = input.ConsumeBool();
      const int x = AnyInt(input), y = AnyInt(input), width = AnyInt(input), height = AnyInt(input);
      SFDSP::InitAvgFaceSkin(red, green, blue, image.pixels, image.width, image.height, useFace, x,
                             y, width, height);
      SFDSP::CreateSkinMask(image.pixels, image.width, image.height, mask.Bytes(), useFace, x, y,
                            width, height);
      SFDSP::SkinMiddleColor(image.pixels, image.width, image.height, x, y, width, height, r, g, b);
    },
    [](Input& input) {
      const Image image(input, 4);
      const std::int64_t plane = image.block.Size() / 4;
      const Block l(input, plane), a(input, plane), b(input, plane), yuv(input, 3 * plane);
      const int stride = 4 * std::max(image.width, 0);
      SFDSP::DecomposeToLab(image.pixels, image.width, image.height, stride, l.Bytes(), a.Bytes(),
                            b.Bytes());
      SFDSP::RecomposeFromLab(image.pixels, image.width, image.height, stride, l.Bytes(), a.Bytes(),
                              b.Bytes());
      SFDSP::rgb_2_yuv(image.pixels, image.width, image.height, yuv.Bytes());
      SFDSP::yuv_2_rgb(image.pixels, image.width, image.height, yuv.Bytes());
    },
    [](Input& input) {
      const Image image(input, 4);
      CSelectiveColor selective;
      for (int family = input.ConsumeIntegralInRange(0, 9); family < 9; ++family)
        selective.SetSelectiveColor(static_cast<CSelectiveColor::eColorType>(family), AnyInt(input),
                                    AnyInt(input), AnyInt(input), AnyInt(input));
      selective.Execute(image.pixels, image.width, image.height);
    },
    [](Input& input) {
      const Block table(input, 256);
      SFDSP::GeneCurveMiddle(table.Bytes(), AnyInt(input), AnyInt(input));
      P::KernelBSpline(static_cast<float>(AnyReal(input)));
      SFDSP::GetStackBlurRadius(AnyInt(input), AnyInt(input), AnyInt(input));
    },
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool one = (omp_set_num_threads(1), true);
  Input input(data, size);
  const auto number = input.ConsumeIntegralInRange<std::size_t>(0, std::size(kOperations) - 1);
  if (one) kOperations[number](input);
  return 0;
}

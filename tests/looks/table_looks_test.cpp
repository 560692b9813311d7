// Looks of maps, plane files, leaks and gradients against plain twins on random files, and how
// they report, stop and fail.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <set>
#include <string>
#include <thread>

#include "frame/graphics.h"
#include "pixel/blend_buffers.h"
#include "pixel/tone_curve.h"
#include "support/operations.h"
#include "support/resource_root.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

using namespace std::string_literals;
using test::BitmapOf;
using test::Bytes;
using test::Picture;
using test::PictureOf;
using test::RandomPicture;
using Root = test::ResourceRoot;
using Twin = std::function<Picture(Root&, const Picture&)>;

// Runs value = body(value, place, channel) over all bytes of colour.
template <class Body>
Picture Each(Picture image, const Body& body) {
  for (std::size_t at = 0; at < image.bytes.size(); ++at)
    if (at % 4 != 3)
      image.bytes[at] = static_cast<unsigned char>(body(image.bytes[at], at, int(at % 4)));
  return image;
}

// A plane file as value(plane, high, low); what it lacks is zero.
auto Planes(Root& root, const std::string& file) {
  return [&raw = root.Raw(file + ".eb")](int plane, int high, int low) -> int {
    const std::size_t at = 1 + 3 * plane + 65536 * (plane - 1) + 256 * high + low;
    return at < raw.size() ? raw[at] : 0;
  };
}

// A map as value(row, column, plane); a strip has one row.
auto Map(Root& root, const char* file, int width = 256, int height = 256) {
  return [&map = root.Shown(file, width, height)](int row, int column, int plane) -> int {
    return map.bytes[std::size_t{4} * (map.width * row + column) + plane];
  };
}

test::BitmapPtr Own(void* bitmap) {
  return test::BitmapPtr(static_cast<Gdiplus::Bitmap*>(bitmap));
}

Picture Scaled(const Picture& picture, int width, int height) {
  const auto scaled = Own(CPixelProcess::RampleBit(BitmapOf(picture).get(), width, height));
  return PictureOf(scaled.get());
}

Picture Over(Root& root, const char* name, const Picture& image) {
  return Scaled(root.Shown(name), image.width, image.height);
}

// Turned by 90 degrees clockwise on a landscape image.
Picture TurnedOver(Root& root, const char* name, const Picture& image) {
  Picture upright = root.Shown(name);
  if (image.width <= image.height) return Scaled(upright, image.width, image.height);
  Picture lying{upright.height, upright.width, Bytes(upright.bytes.size())};
  for (int y = 0; y < lying.height; ++y)
    for (int x = 0; x < lying.width; ++x)
      std::copy_n(upright.At(y, upright.height - 1 - x), 4, lying.At(x, y));
  return Scaled(lying, image.width, image.height);
}

Picture Blurred(Picture image) {
  CPixelProcess::stackBlur(image.bytes.data(), image.width, image.height, 2, nullptr, 0, 100);
  return image;
}
Picture Saturated(Picture image, int amount) {
  CPixelProcess::Saturateconst(image.bytes.data(), image.width, image.height, amount, 1, nullptr, 0,
                               100);
  return image;
}

template <std::size_t N>
consteval ToneTable Through(const int (&x)[N], const int (&y)[N]) {
  CurvePoint samples[N];
  for (std::size_t i = 0; i < N; ++i) samples[i] = {x[i], y[i]};
  return Curve(samples);
}
constexpr int kEvery32[] = {0, 32, 64, 96, 128, 160, 192, 224, 255};
constexpr ToneTable kT7 = Through(kEvery32, {0, 36, 70, 103, 140, 170, 196, 225, 255});
constexpr ToneTable kT10a = Through(kEvery32, {0, 37, 73, 109, 143, 172, 200, 228, 255});
constexpr ToneTable kT10b = Through(kEvery32, {25, 54, 82, 111, 140, 169, 198, 226, 254});
constexpr ToneTable kT14 = Through(kEvery32, {0, 46, 88, 126, 160, 190, 216, 238, 255});
constexpr ToneTable kYiZhou = Through({0, 16, 32, 64, 96, 128, 160, 192, 224, 255},
                                      {0, 0, 4, 30, 102, 194, 235, 250, 254, 255});
constexpr ToneTable kJieri = Through({0, 32, 64, 96, 128, 160, 192, 224, 240, 255},
                                     {0, 60, 112, 156, 192, 220, 240, 252, 255, 255});

Picture Eighties(Root& root, const Picture& image) {
  const auto tone = Map(root, "80smap.png", 300, 2), screen = Map(root, "screen30.png", 256, 1);
  return Each(image, [&](int v, std::size_t, int c) { return screen(0, tone(0, v, c), c); });
}

Picture HuiYi(Root& root, const Picture& image) {
  const Picture material = Over(root, "huiyi1.jpg", image);
  const auto first = Map(root, "huiyi2.png", 256, 1), last = Map(root, "huiyi3.png", 256, 2);
  const auto blend = Map(root, "huiyi4.png"), rim = Map(root, "vignetteMap.png", 256, 257);
  // The square of the distance from the centre, in single precision.
  const float sx = float(2.0 / image.width), sy = float(2.0 / image.height);
  return Each(image, [&](int value, std::size_t at, int c) {
    const int x = int(at / 4) % image.width, y = int(at / 4) / image.width;
    const float u = float(y) * sy - 1.0f, v = float(x) * sx - 1.0f;
    const int key = int(std::fmin((u * u + v * v) * 255.0f, 255.0f));
    return last(0, rim(first(0, blend(value, material.bytes[at], c), c), key, c), c);
  });
}

Twin Studio(const char* file) {
  return [=](Root& root, const Picture& image) {
    const auto p = Planes(root, file);
    const Picture blurred = Blurred(image);
    return Each(image,
                [&](int v, std::size_t at, int c) { return p(3 - c, v, blurred.bytes[at]); });
  };
}

Picture LengZi(Root& root, const Picture& image) {
  const auto p = Planes(root, "zvkr_studio_1");
  const Picture blurred = Blurred(image);
  const Picture looked =
      Each(image, [&](int v, std::size_t at, int) { return p(2, p(1, blurred.bytes[at], v), v); });
  return Each(Saturated(looked, -45), [&](int v, std::size_t, int c) {
    return root.Raw("zvkr_studio_1.eb")[131079 + 256 * (2 - c) + v];
  });
}

Picture YiZhou(Root& root, const Picture& image) {
  const Bytes& masks = root.Raw("zvkr_lomo_16.eb", 819200);
  Picture sharp = Each(image, [](int value, std::size_t, int) { return kYiZhou[value]; });
  BlendBuffersColorHSB(sharp.bytes.data(), image.bytes.data(), image.width * image.height, 0.6f);
  const Picture blurred = Blurred(sharp);
  const float scaleX = 640.0f / float(image.width), scaleY = 640.0f / float(image.height);
  return Each(sharp, [&](int value, std::size_t at, int) {
    const int x = int(at / 4) % image.width, y = int(at / 4) / image.width;
    const std::size_t place = 640u * int(float(y) * scaleY) + int(float(x) * scaleX);
    const float m = masks[place] / 255.0f, v = masks[409600 + place] / 255.0f;
    return int(int(value * m + blurred.bytes[at] * (1 - m)) * v);
  });
}

Twin Leak(const char* name) {
  return [=](Root& root, const Picture& image) {
    const auto screen = Map(root, "style/PSScreen.png");
    const Picture over = Over(root, name, image);
    return Each(image, [&](int v, std::size_t at, int c) { return screen(v, over.bytes[at], c); });
  };
}

// A chain of lookups with pictures over the image.
// @param body called as body(planes, value, m, channel), with m(i) what picture i shows there
template <class Body>
Twin Chain(const std::string& file, Picture (*over)(Root&, const char*, const Picture&),
           std::vector<const char*> pictures, Body body) {
  return [=](Root& root, const Picture& image) {
    const auto p = Planes(root, file);
    std::vector<Picture> shown;
    for (const char* name : pictures) shown.push_back(over(root, name, image));
    return Each(image, [&](int value, std::size_t at, int c) {
      return body(
          p, value, [&](std::size_t i) -> int { return shown[i].bytes[at]; }, c);
    });
  };
}
Twin OneTable(const char* picture, const char* file) {
  return Chain(file, TurnedOver, {picture},
               [](const auto& p, int v, const auto& m, int) { return p(1, v, m(0)); });
}

Picture Quxian10(Root& root, const Picture& image) {
  const Twin first = Chain(
      "zvkr_quxian_10_0", Over, {"zvkr_jj_001.jpg", "zvkr_jj_002.jpg"},
      [](const auto& p, int v, const auto& m, int) { return p(2, kT10a[p(1, v, m(0))], m(1)); });
  const auto p = Planes(root, "zvkr_quxian_10_1");
  const Picture m3 = Over(root, "zvkr_jj_004.jpg", image);
  return Each(Saturated(first(root, image), -9), [&](int v, std::size_t at, int) {
    return p(3, p(2, kT10b[v], image.bytes[at]), m3.bytes[at]);
  });
}

Picture Quxian14(Root& root, const Picture& image) {
  const auto map = Map(root, "ZVQCGYEx.png");
  Picture m = root.Shown("sucai12.jpg");
  if (m.width != image.width || m.height != image.height) {
    Picture scaled = image;
    SFDSP::BilinearReSample(m.bytes.data(), m.width, m.height, scaled.bytes.data(), image.width,
                            image.height, 4);
    m = scaled;
  }
  return Each(image, [&](int v, std::size_t at, int) { return map(kT14[v], m.bytes[at], 2); });
}

// Colours are given as blue, green, red.
template <std::size_t N>
auto Bands(const tagRGBQUAD (&colours)[N], const double (&stops)[N + 1]) {
  const auto bands = Own(CPixelProcess::GetGradientImage(200, 200, 1, N, colours, stops, 0));
  return PictureOf(bands.get());
}

// @param degrees how far the gradient is turned before it is scaled
Twin Gradient(const char* file, const Picture& gradient, float degrees, bool inner = false) {
  return [=](Root& root, const Picture& image) {
    const auto p = Planes(root, file);
    auto turned = BitmapOf(gradient);
    turned = Own(CPixelProcess::Rotate2(turned.get(), gradient.width, gradient.height, degrees,
                                        CPixelProcess::InterpolationBilinear,
                                        CPixelProcess::OverflowClamp, true, true));
    if (inner) turned = Own(CPixelProcess::Clone(turned.get(), 20, 20, 180, 180));
    const Picture over = Scaled(PictureOf(turned.get()), image.width, image.height);
    return Each(image,
                [&](int v, std::size_t at, int) { return p(2, p(1, v, v), int(over.bytes[at])); });
  };
}

Picture NewGt2(Root& root, const Picture& image) {
  const auto p = Planes(root, "zvkr_NewGt_2");
  return Each(image, [&](int value, std::size_t at, int c) {
    // From blue at the top to yellow, one step short at the last row.
    const double t = double(image.height - int(at / 4) / image.width) / image.height;
    return p(2, p(1, value, value), c == 0 ? int(255 * t) : int(255 * (1.0 - t)));
  });
}

Picture TwoColours(int width, int height, const tagRGBQUAD (&colours)[2]) {
  Picture gradient{width, height, Bytes(std::size_t{4} * width * height, 255)};
  CPixelProcess::CreateGradientImage(gradient.bytes.data(), width, height, colours, nullptr, 0,
                                     100);
  return gradient;
}

Picture NewGt7(Root& root, Picture image) {
  BlendBuffersScreen(image.bytes.data(), Over(root, "zvtk_071_b.jpg", image).bytes.data(),
                     image.width * image.height);
  return image;
}

Picture Jieri3(Root& root, const Picture& image) {
  Picture result = Each(image, [](int value, std::size_t, int) { return kJieri[value]; });
  const int count = image.width * image.height;
  BlendBuffersAlphaOver(result.bytes.data(),
                        TurnedOver(root, "zvkr_festival_3.png", image).bytes.data(), count);
  BlendBuffersHueSat(result.bytes.data(),
                     TurnedOver(root, "zvkr_festival_3b.jpg", image).bytes.data(), count);
  return result;
}

Picture Rainbow(Root&, Picture image) {
  const int count = image.width * image.height;
  const Picture gradient =
      TwoColours(image.width, image.height, {{227, 159, 26, 0}, {55, 210, 255, 0}});
  for (int i = 0; i < count; ++i) CPixelProcess::SetGrayScaleEx(&image.bytes[4 * i]);
  BlendBuffersSoftLight(image.bytes.data(), gradient.bytes.data(), count);
  return image;
}

Picture TimeTunnel(Root& root, const Picture& image) {
  const int w = image.width, h = image.height;
  const float fw = float(w), fh = float(h);
  const Bytes& raw = root.Raw("zvkr_cy.eb");
  const auto overlay = Map(root, "ZVOverlay60.png");
  Picture mask = image;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      std::copy_n(&raw[4 * (240 * int(float(y) * (240.0f / fh)) + int(float(x) * (240.0f / fw)))],
                  4, mask.At(x, y));
  Picture result =
      Each(image, [&](int v, std::size_t at, int) { return overlay(v, mask.bytes[at], 0); });
  Picture smear = result;
  CPixelProcess::RadiusZoomBlur(smear.bytes.data(), result.bytes.data(), mask.bytes.data(), w, h,
                                nullptr, 0, 0);
  Gdiplus::Bitmap zoomed(w, h);
  Graphics(&zoomed).DrawImage(
      BitmapOf(smear).get(),
      {(fw - 1.3f * fw) * 0.5f, (fh - 1.3f * fh) * 0.5f, 1.3f * fw, 1.3f * fh}, {0, 0, fw, fh});
  BlendBuffersAlphaTrunc(result.bytes.data(), BitmapLock(&zoomed).Pixels(), w * h);
  return result;
}

// Positions of a pass over 40 rows, of which every second one reports, after those of the work
// before it, which end where it starts.
std::vector<float> Rows(std::vector<float> positions, float start, float span) {
  if (!positions.empty() && positions.back() != start) positions.push_back(start);
  for (int row = 0; row < 40; row += 2) positions.push_back(float(row) * (span / 40.0f) + start);
  return positions;
}

struct Look {
  std::string name;
  EffectEntry* run;
  Twin twin;
  std::vector<float> positions = {};  // on an image of 40 rows
};
#define LOOK(entry) #entry, &CEffect::entry

const std::vector<Look>& Looks() {
  static const std::vector<Look> looks = {
      {LOOK(Effect_80S), Eighties},
      {LOOK(Effect_HuiYi), HuiYi},
      {LOOK(Effect_JingDianYingLou), Studio("zvkr_studio_0")},
      {LOOK(Effect_LengLan), Studio("zvkr_studio_2")},
      {LOOK(Effect_LengLv), Studio("zvkr_studio_5")},
      {LOOK(Effect_NuanHuang), Studio("zvkr_studio_3")},
      {LOOK(Effect_LengZi), LengZi},
      {LOOK(Effect_YiZhou), YiZhou},
      {LOOK(Effect_LEAK_1), Leak("style/Leak1.jpg")},
      {LOOK(Effect_LEAK_6), Leak("style/Leak6.jpg")},
      {LOOK(Effect_LEAK_7), Leak("style/Leak7.jpg")},
      {LOOK(Effect_LEAK_9), Leak("style/Leak9.jpg")},
      {LOOK(Effect_LEAK_15), Leak("style/Leak15.jpg")},
      {LOOK(Effect_LEAK_LIGHT_LEAK), Leak("style/light-leak-2.jpg")},
      {LOOK(Effect_LEAK_LIGHT_LEAK_17), Leak("style/LL17.png")},
      {LOOK(quxian_3),
       Chain("zvkr_quxian_3", TurnedOver, {"zvtk_fzl_3a.jpg"},
             [](const auto& p, int v, const auto& m, int) { return p(2, p(1, v, m(0)), v); }),
       Rows({10}, 20, 80)},
      {LOOK(quxian_4), OneTable("zvtk_fzl_4a.jpg", "zvkr_quxian_4"), Rows({10}, 10, 90)},
      {LOOK(quxian_6), OneTable("zvtk_fzl_6a.jpg", "zvkr_quxian_6"), Rows({10}, 10, 90)},
      {LOOK(quxian_7),
       Chain("zvkr_quxian_7", Over, {"zvtk_fzl_7a.jpg", "zvtk_fzl_7b.jpg", "zvtk_fzl_7c.jpg"},
             [](const auto& p, int v, const auto& m, int c) {
               const int t = p(3, p(2, p(1, v, m(0)), m(1)), m(2));
               return c == 2 ? kT7[t] : t;
             }),
       Rows({10, 20, 30}, 40, 60)},
      {LOOK(quxian_10), Quxian10, Rows(Rows({5}, 5, 30), 70, 30)},
      {LOOK(quxian_14), Quxian14},
      {LOOK(NewGt_1),
       Gradient("zvkr_NewGt_1",
                Bands({{255, 0, 255, 0}, {255, 0, 0, 0}, {0, 255, 0, 0}, {0, 255, 255, 0}},
                      {0.1, 0.3, 0.2, 0.3, 0.1}),
                135),
       Rows({10, 30}, 50, 50)},
      {LOOK(NewGt_2), NewGt2, Rows({20}, 20, 80)},
      {LOOK(NewGt_3),
       Gradient("zvkr_NewGt_3", TwoColours(640, 512, {{104, 62, 239, 0}, {255, 0, 0, 0}}), -45),
       Rows({10, 30}, 50, 50)},
      {LOOK(NewGt_5),
       Gradient("zvkr_NewGt_3",
                Bands({{0, 0, 255, 0},
                       {255, 0, 255, 0},
                       {255, 0, 0, 0},
                       {0, 255, 0, 0},
                       {0, 255, 255, 0},
                       {0, 0, 255, 0}},
                      {0.01, 0.1, 0.3, 0.2, 0.3, 0.1, 0.01}),
                315, true),
       Rows({10, 30, 40}, 60, 40)},
      {LOOK(Effect_GuangShuJianBian),
       Gradient("zvkr_NewGt_3",
                Bands({{92, 3, 40, 0}, {255, 255, 255, 0}, {92, 3, 40, 0}}, {0, 0.5, 0.5, 0}),
                135)},
      {LOOK(NewGt_7), NewGt7},
      {LOOK(Jieri_3), Jieri3, {5, 15, 20, 30}},
      {LOOK(RainbowColor), Rainbow, Rows({}, 7, 3)},
      {LOOK(Effect_ShiGuangSuiDao), TimeTunnel}};
  return looks;
}

// Runs the twin first, which lays out the files.
void ExpectTwin(Root& root, EffectEntry* look, const Twin& twin, const Picture& image) {
  const Picture expected = twin(root, image);
  Picture result = image;
  EXPECT_EQ(root.Run(look, result), 1);
  EXPECT_TRUE(result == expected) << image.width << " x " << image.height;
}

TEST(TableLooks, MatchTheirTwinsAtAnyShapeAndThreadCount) {
  Root root;
  for (const Look& look : Looks()) {
    SCOPED_TRACE(look.name);
    // Square, upright and lying; the fourth is as large as the pictures, and 1 x 1.
    for (auto [w, h] : {std::pair{41, 41}, {30, 53}, {61, 17}, {21, 30}, {1, 1}}) {
      const test::Threads threads(w == 61 ? 3 : omp_get_max_threads());
      ExpectTwin(root, look.run, look.twin, RandomPicture(w, h, w));
    }
  }
  // Raw masks of the image's own size are not scaled.
  ExpectTwin(root, CEffect::Effect_YiZhou, YiZhou, RandomPicture(640, 640));
  ExpectTwin(root, CEffect::Effect_ShiGuangSuiDao, TimeTunnel, RandomPicture(240, 240));
}

TEST(TableLooks, RunSideBySideOnDifferentBuffers) {
  Root root;
  const Picture image = RandomPicture(33, 48);
  std::vector<Picture> expected;
  for (const Look& look : Looks()) expected.push_back(look.twin(root, image));
  const auto run = [&](std::size_t first) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const std::size_t turn = (first + i) % expected.size();
      Picture result = image;
      EXPECT_EQ(root.Run(Looks()[turn].run, result), 1);
      EXPECT_TRUE(result == expected[turn]) << Looks()[turn].name;
    }
  };
  const std::jthread other(run, 1);
  run(0);
}

TEST(TableLooks, ReportFixedPositionsAndLeaveTheRowsBelowAStop) {
  Root root;
  const Picture image = RandomPicture(9, 40);
  for (const auto& [name, run, twin, positions] : Looks()) {
    SCOPED_TRACE(name);
    Picture expected = twin(root, image), stopped = image, whole = image;
    ProgressRecorder told, asked;
    root.Run(run, whole, &told);
    EXPECT_EQ(told.positions, positions);
    // These have one pass, which is asked at each report of a row.
    if (positions.size() < 20 || name == "quxian_10" || name == "RainbowColor") continue;
    asked.stopAt = 0;
    EXPECT_EQ(root.Run(run, stopped, &asked), 1);
    std::copy(image.bytes.begin() + 36, image.bytes.end(), expected.bytes.begin() + 36);
    EXPECT_TRUE(stopped == expected);
  }
}

TEST(TableLooks, StopBetweenStages) {
  Root root;
  const Picture image = RandomPicture(9, 40);
  for (const Look& look : Looks()) look.twin(root, image);
  const auto run = [&](EffectEntry* look, int stopAt) {
    ProgressRecorder told;
    told.stopAt = stopAt;
    Picture result = image;
    return std::pair(root.Run(look, result, &told), result);
  };
  // Asked once after the blur.
  for (auto* look : {CEffect::Effect_JingDianYingLou, CEffect::Effect_LengZi})
    EXPECT_EQ(run(look, 0), std::pair(0, Blurred(image)));
  EXPECT_EQ(run(CEffect::Effect_YiZhou, 0).first, 0);
  EXPECT_EQ(run(CEffect::Effect_LengZi, 1).first, 0);  // before the tables that come last
  // The first pass, between the passes, the second.
  for (auto [stopAt, code] : {std::pair{0, 0}, {20, 0}, {21, 1}})
    EXPECT_EQ(run(CEffect::quxian_10, stopAt).first, code);
  const Picture half = run(CEffect::quxian_10, 21).second, full = Quxian10(root, image);
  EXPECT_TRUE(std::equal(half.bytes.begin(), half.bytes.begin() + 36, full.bytes.begin()));
  EXPECT_FALSE(half == full);
  // In the gradient, and after it.
  for (int stopAt : {0, 20}) EXPECT_EQ(run(CEffect::RainbowColor, stopAt), std::pair(0, image));
}

TEST(TableLooks, FailWithoutATableAndTakeAMissingPictureForBlack) {
  const Picture image = RandomPicture(12, 9);
  std::set<std::string> reshaped;  // once is enough for a map of several looks
  for (const auto& [name, run, twin, positions] : Looks()) {
    Root root;
    twin(root, image);
    Picture huge{65536, 65536, Bytes(4)};
    EXPECT_EQ(root.Run(run, huge), 0) << name;
    const auto raws = root.RawFiles();
    const auto pictures = root.Pictures();
    const bool studio = !raws.empty() && raws.begin()->first.starts_with("zvkr_studio");
    const auto expectFailure = [&, name = name, run = run] {
      Picture result = image;
      EXPECT_EQ(root.Run(run, result), 0);
      if (name == "Effect_YiZhou" || name == "quxian_10") return;  // half of the work is done
      EXPECT_TRUE(result == (studio ? Blurred(image) : image));
    };
    for (const auto& [file, bytes] : raws) {
      SCOPED_TRACE(name + " without " + file);
      root.Remove(file);
      expectFailure();
      root.Put(file, bytes);
    }
    for (const auto& [file, picture] : pictures) {
      SCOPED_TRACE(name + " without " + file);
      root.Remove(file);
      const bool map = picture.width >= 256;
      if (map || file == "sucai12.jpg")
        expectFailure();
      else
        ExpectTwin(root, run, twin, image);
      for (auto [w, h] : {std::pair{255, 300}, {512, 256}, {256, 255}}) {
        const bool fits = w == 512 ? name == "Effect_80S" : h == 255 && picture.height < 256;
        if (!map || fits || reshaped.contains(file)) continue;
        root.Put(file, RandomPicture(w, h));
        expectFailure();
      }
      reshaped.insert(file);
      root.Put(file, picture);
    }
  }
}

TEST(TableLooks, TakeWhatAShortPlaneFileLacksForZero) {
  Root root;
  for (const std::size_t size : {4, 65540, 70000, 196000}) {
    root.Put("zvkr_studio_2.eb", test::RandomBytes(size, 1));
    ExpectTwin(root, CEffect::Effect_LengLan, Studio("zvkr_studio_2"), RandomPicture(12, 9));
  }
}

}  // namespace
}  // namespace tintwerk

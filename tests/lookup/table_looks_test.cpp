// Looks of plane files, leaks and gradients against plain twins on random files, and how they
// report, stop and fail.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "frame/graphics.h"
#include "frame/material.h"
#include "pixel/blend_buffers.h"
#include "pixel/progress_recorder.h"
#include "pixel/tone_curve.h"
#include "support/image_files.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::Picture;
using test::RandomBytes;
using test::RandomPicture;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// A resource root with random files under every name, and what a twin reads in them.
struct Root {
  Root() {
    for (const char* name :
         {"zvkr_studio_0", "zvkr_studio_1", "zvkr_studio_2", "zvkr_studio_3", "zvkr_studio_5",
          "zvkr_quxian_3", "zvkr_quxian_4", "zvkr_quxian_6", "zvkr_quxian_7", "zvkr_quxian_10_0",
          "zvkr_quxian_10_1", "zvkr_NewGt_1", "zvkr_NewGt_2", "zvkr_NewGt_3", "zvkr_lomo_16",
          "zvkr_cy"})
      PutRaw(std::string(name) + ".eb",
             RandomBytes(name == std::string("zvkr_lomo_16") ? 819200 : 230400, ++seed));
    for (const char* name : {"style/Leak1.jpg",     "style/Leak6.jpg",     "style/Leak7.jpg",
                             "style/Leak9.jpg",     "style/Leak15.jpg",    "style/light-leak-2.jpg",
                             "style/LL17.png",      "zvtk_fzl_3a.jpg",     "zvtk_fzl_4a.jpg",
                             "zvtk_fzl_6a.jpg",     "zvtk_fzl_7a.jpg",     "zvtk_fzl_7b.jpg",
                             "zvtk_fzl_7c.jpg",     "zvkr_jj_001.jpg",     "zvkr_jj_002.jpg",
                             "zvkr_jj_004.jpg",     "sucai12.jpg",         "zvtk_071_b.jpg",
                             "zvkr_festival_3.png", "zvkr_festival_3b.jpg"})
      PutPicture(name, RandomPicture(21, 30, ++seed));
    for (const char* name : {"style/PSScreen.png", "ZVQCGYEx.png", "ZVOverlay60.png"})
      PutPicture(name, RandomPicture(256, 256, ++seed));
  }

  void PutRaw(const std::string& name, Bytes bytes) {
    folder.Write("Effects/" + name, bytes);
    raw[name] = std::move(bytes);
  }
  void PutPicture(const std::string& name, const Picture& picture) {
    folder.Write("Effects/" + name, test::EncodePng(picture));
    pictures[name] = picture;
  }
  void Remove(const std::string& name) const {
    std::filesystem::remove(folder.Path() / "Effects" / name);
  }
  int Run(EffectEntry* look, Picture& image, CObjProgress* progress = nullptr) const {
    std::wstring root = folder.Path().wstring();
    return look(image.bytes.data(), image.width, image.height, root.data(), progress, 7, 93);
  }

  int P(const std::string& file, int plane, int high, int low) const {
    return raw.at(file + ".eb")[1 + 3 * plane + 65536 * (plane - 1) + 256 * high + low];
  }
  int Map(const std::string& file, int row, int column, int plane) const {
    return pictures.at(file).bytes[4 * (256 * row + column) + plane];
  }

  test::TemporaryFolder folder;
  std::map<std::string, Bytes> raw;
  std::map<std::string, Picture> pictures;
  unsigned seed = 0;
};

const Root& Files() {
  static const Root root;
  return root;
}

Picture Scaled(const Picture& picture, int width, int height) {
  Gdiplus::Bitmap source(picture.width, picture.height);
  {
    const BitmapLock lock(&source, Gdiplus::ImageLockModeWrite);
    std::copy(picture.bytes.begin(), picture.bytes.end(), lock.Pixels());
  }
  const std::unique_ptr<Gdiplus::Bitmap> scaled(
      static_cast<Gdiplus::Bitmap*>(CPixelProcess::RampleBit(&source, width, height)));
  const BitmapLock lock(scaled.get());
  return {width, height, Bytes(lock.Pixels(), lock.Pixels() + 4 * width * height)};
}

Picture Over(const char* name, const Picture& image) {
  return Scaled(Files().pictures.at(name), image.width, image.height);
}

// Turned by 90 degrees clockwise on a landscape image.
Picture TurnedOver(const char* name, const Picture& image) {
  Picture upright = Files().pictures.at(name);
  if (image.width <= image.height) return Scaled(upright, image.width, image.height);
  Picture lying{upright.height, upright.width, Bytes(upright.bytes.size())};
  for (int y = 0; y < lying.height; ++y)
    for (int x = 0; x < lying.width; ++x)
      std::copy_n(upright.At(y, upright.height - 1 - x), 4, lying.At(x, y));
  return Scaled(lying, image.width, image.height);
}

// Runs value = body(value, place, channel) over all bytes of colour.
template <class Body>
Picture Each(Picture image, const Body& body) {
  for (std::size_t at = 0; at < image.bytes.size(); ++at)
    if (at % 4 != 3)
      image.bytes[at] = static_cast<unsigned char>(body(image.bytes[at], at, int(at % 4)));
  return image;
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

constexpr ToneTable kT7 = Curve({{0, 0},
                                 {32, 36},
                                 {64, 70},
                                 {96, 103},
                                 {128, 140},
                                 {160, 170},
                                 {192, 196},
                                 {224, 225},
                                 {255, 255}});
constexpr ToneTable kT10a = Curve({{0, 0},
                                   {32, 37},
                                   {64, 73},
                                   {96, 109},
                                   {128, 143},
                                   {160, 172},
                                   {192, 200},
                                   {224, 228},
                                   {255, 255}});
constexpr ToneTable kT10b = Curve({{0, 25},
                                   {32, 54},
                                   {64, 82},
                                   {96, 111},
                                   {128, 140},
                                   {160, 169},
                                   {192, 198},
                                   {224, 226},
                                   {255, 254}});
constexpr ToneTable kT14 = Curve({{0, 0},
                                  {32, 46},
                                  {64, 88},
                                  {96, 126},
                                  {128, 160},
                                  {160, 190},
                                  {192, 216},
                                  {224, 238},
                                  {255, 255}});

Picture Studio(const char* file, const Picture& image) {
  const Picture blurred = Blurred(image);
  return Each(image, [&](int sharp, std::size_t at, int c) {
    return Files().P(file, 3 - c, sharp, blurred.bytes[at]);
  });
}

Picture LengZi(const Picture& image) {
  const Picture blurred = Blurred(image);
  const char* const file = "zvkr_studio_1";
  const Picture looked = Each(image, [&](int sharp, std::size_t at, int) {
    return Files().P(file, 2, Files().P(file, 1, blurred.bytes[at], sharp), sharp);
  });
  return Each(Saturated(looked, -45), [&](int value, std::size_t, int c) {
    return Files().raw.at("zvkr_studio_1.eb")[131079 + 256 * (2 - c) + value];
  });
}

Picture YiZhou(const Picture& image) {
  constexpr ToneTable kTone = Curve({{0, 0},
                                     {16, 0},
                                     {32, 4},
                                     {64, 30},
                                     {96, 102},
                                     {128, 194},
                                     {160, 235},
                                     {192, 250},
                                     {224, 254},
                                     {255, 255}});
  Picture sharp = Each(image, [&](int value, std::size_t, int) { return kTone[value]; });
  BlendBuffersColorHSB(sharp.bytes.data(), image.bytes.data(), image.width * image.height, 0.6f);
  const Picture blurred = Blurred(sharp);
  const Bytes& masks = Files().raw.at("zvkr_lomo_16.eb");
  const float scaleX = 640.0f / float(image.width), scaleY = 640.0f / float(image.height);
  return Each(sharp, [&](int value, std::size_t at, int) {
    const int x = int(at / 4) % image.width, y = int(at / 4) / image.width;
    const std::size_t place = 640u * int(float(y) * scaleY) + int(float(x) * scaleX);
    const float m = masks[place] / 255.0f, v = masks[409600 + place] / 255.0f;
    return int(int(value * m + blurred.bytes[at] * (1 - m)) * v);
  });
}

Picture Leak(const char* name, const Picture& image) {
  const Picture over = Over(name, image);
  return Each(image, [&](int value, std::size_t at, int c) {
    return Files().Map("style/PSScreen.png", value, over.bytes[at], c);
  });
}

Picture OneTable(const char* picture, const char* file, const Picture& image) {
  const Picture over = TurnedOver(picture, image);
  return Each(image, [&](int value, std::size_t at, int) {
    return Files().P(file, 1, value, over.bytes[at]);
  });
}

Picture Quxian3(const Picture& image) {
  const Picture over = TurnedOver("zvtk_fzl_3a.jpg", image);
  return Each(image, [&](int value, std::size_t at, int) {
    const int t = Files().P("zvkr_quxian_3", 1, value, over.bytes[at]);
    return Files().P("zvkr_quxian_3", 2, t, value);
  });
}

Picture Quxian7(const Picture& image) {
  const Picture m1 = Over("zvtk_fzl_7a.jpg", image), m2 = Over("zvtk_fzl_7b.jpg", image),
                m3 = Over("zvtk_fzl_7c.jpg", image);
  return Each(image, [&](int value, std::size_t at, int c) {
    int t = Files().P("zvkr_quxian_7", 1, value, m1.bytes[at]);
    t = Files().P("zvkr_quxian_7", 2, t, m2.bytes[at]);
    t = Files().P("zvkr_quxian_7", 3, t, m3.bytes[at]);
    return c == 2 ? kT7[t] : t;
  });
}

Picture Quxian10(const Picture& image) {
  const Picture m1 = Over("zvkr_jj_001.jpg", image), m2 = Over("zvkr_jj_002.jpg", image),
                m3 = Over("zvkr_jj_004.jpg", image);
  const Picture first = Each(image, [&](int value, std::size_t at, int) {
    const int t = kT10a[Files().P("zvkr_quxian_10_0", 1, value, m1.bytes[at])];
    return Files().P("zvkr_quxian_10_0", 2, t, m2.bytes[at]);
  });
  return Each(Saturated(first, -9), [&](int value, std::size_t at, int) {
    const int t = Files().P("zvkr_quxian_10_1", 2, kT10b[value], image.bytes[at]);
    return Files().P("zvkr_quxian_10_1", 3, t, m3.bytes[at]);
  });
}

Picture Quxian14(const Picture& image) {
  Picture m = Files().pictures.at("sucai12.jpg");
  if (m.width != image.width || m.height != image.height) {
    Picture scaled{image.width, image.height, Bytes(image.bytes.size())};
    SFDSP::BilinearReSample(m.bytes.data(), m.width, m.height, scaled.bytes.data(), image.width,
                            image.height, 4);
    m = scaled;
  }
  return Each(image, [&](int value, std::size_t at, int) {
    return Files().Map("ZVQCGYEx.png", kT14[value], m.bytes[at], 2);
  });
}

// @param degrees how far the gradient is turned before it is scaled
Picture Gradient(const char* file, std::unique_ptr<Gdiplus::Bitmap> gradient, float degrees,
                 bool inner, const Picture& image) {
  gradient.reset(static_cast<Gdiplus::Bitmap*>(CPixelProcess::Rotate2(
      gradient.get(), gradient->GetWidth(), gradient->GetHeight(), degrees,
      CPixelProcess::InterpolationBilinear, CPixelProcess::OverflowClamp, true, true)));
  if (inner)
    gradient.reset(
        static_cast<Gdiplus::Bitmap*>(CPixelProcess::Clone(gradient.get(), 20, 20, 180, 180)));
  gradient.reset(static_cast<Gdiplus::Bitmap*>(
      CPixelProcess::RampleBit(gradient.get(), image.width, image.height)));
  const BitmapLock lock(gradient.get());
  return Each(image, [&](int value, std::size_t at, int) {
    return Files().P(file, 2, Files().P(file, 1, value, value), lock.Pixels()[at]);
  });
}

// Colours are given as blue, green, red.
template <std::size_t N>
std::unique_ptr<Gdiplus::Bitmap> Bands(const tagRGBQUAD (&colours)[N],
                                       const double (&stops)[N + 1]) {
  return std::unique_ptr<Gdiplus::Bitmap>(static_cast<Gdiplus::Bitmap*>(
      CPixelProcess::GetGradientImage(200, 200, 1, N, colours, stops, 0)));
}

Picture NewGt1(const Picture& image) {
  return Gradient("zvkr_NewGt_1",
                  Bands({{255, 0, 255, 0}, {255, 0, 0, 0}, {0, 255, 0, 0}, {0, 255, 255, 0}},
                        {0.1, 0.3, 0.2, 0.3, 0.1}),
                  135, false, image);
}

Picture NewGt2(const Picture& image) {
  return Each(image, [&](int value, std::size_t at, int c) {
    // From blue at the top to yellow, one step short at the last row.
    const double t = double(image.height - int(at / 4) / image.width) / image.height;
    const int g = c == 0 ? int(0 * (1.0 - t) + 255 * t) : int(255 * (1.0 - t) + 0 * t);
    return Files().P("zvkr_NewGt_2", 2, Files().P("zvkr_NewGt_2", 1, value, value), g);
  });
}

Picture NewGt3(const Picture& image) {
  auto gradient = std::make_unique<Gdiplus::Bitmap>(640, 512);
  {
    const BitmapLock lock(gradient.get(), Gdiplus::ImageLockModeWrite);
    std::fill_n(lock.Pixels(), 4 * 640 * 512, static_cast<unsigned char>(255));
    const tagRGBQUAD colours[] = {{104, 62, 239, 0}, {255, 0, 0, 0}};
    CPixelProcess::CreateGradientImage(lock.Pixels(), 640, 512, colours, nullptr, 0, 100);
  }
  return Gradient("zvkr_NewGt_3", std::move(gradient), -45, false, image);
}

Picture NewGt5(const Picture& image) {
  return Gradient("zvkr_NewGt_3",
                  Bands({{0, 0, 255, 0},
                         {255, 0, 255, 0},
                         {255, 0, 0, 0},
                         {0, 255, 0, 0},
                         {0, 255, 255, 0},
                         {0, 0, 255, 0}},
                        {0.01, 0.1, 0.3, 0.2, 0.3, 0.1, 0.01}),
                  315, true, image);
}

Picture GuangShu(const Picture& image) {
  return Gradient("zvkr_NewGt_3",
                  Bands({{92, 3, 40, 0}, {255, 255, 255, 0}, {92, 3, 40, 0}}, {0, 0.5, 0.5, 0}),
                  135, false, image);
}

Picture NewGt7(Picture image) {
  BlendBuffersScreen(image.bytes.data(), Over("zvtk_071_b.jpg", image).bytes.data(),
                     image.width * image.height);
  return image;
}

Picture Jieri3(const Picture& image) {
  constexpr ToneTable kTone = Curve({{0, 0},
                                     {32, 60},
                                     {64, 112},
                                     {96, 156},
                                     {128, 192},
                                     {160, 220},
                                     {192, 240},
                                     {224, 252},
                                     {240, 255},
                                     {255, 255}});
  Picture result = Each(image, [&](int value, std::size_t, int) { return kTone[value]; });
  const int count = image.width * image.height;
  BlendBuffersAlphaOver(result.bytes.data(), TurnedOver("zvkr_festival_3.png", image).bytes.data(),
                        count);
  BlendBuffersHueSat(result.bytes.data(), TurnedOver("zvkr_festival_3b.jpg", image).bytes.data(),
                     count);
  return result;
}

Picture Rainbow(Picture image) {
  Picture gradient = image;
  const tagRGBQUAD colours[] = {{227, 159, 26, 0}, {55, 210, 255, 0}};
  CPixelProcess::CreateGradientImage(gradient.bytes.data(), image.width, image.height, colours,
                                     nullptr, 0, 100);
  const int count = image.width * image.height;
  for (int i = 0; i < count; ++i) CPixelProcess::SetGrayScaleEx(&image.bytes[4 * i]);
  BlendBuffersSoftLight(image.bytes.data(), gradient.bytes.data(), count);
  return image;
}

Picture TimeTunnel(const Picture& image) {
  const int w = image.width, h = image.height;
  const Bytes& raw = Files().raw.at("zvkr_cy.eb");
  Picture mask = image;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      std::copy_n(&raw[4 * (240 * int(float(y) * (240.0f / float(h))) +
                            int(float(x) * (240.0f / float(w))))],
                  4, mask.At(x, y));
  Picture result = Each(image, [&](int value, std::size_t at, int) {
    return Files().Map("ZVOverlay60.png", value, mask.bytes[at], 0);
  });
  Gdiplus::Bitmap smeared(w, h), zoomed(w, h);
  {
    const BitmapLock lock(&smeared, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeWrite);
    std::copy(result.bytes.begin(), result.bytes.end(), lock.Pixels());
    CPixelProcess::RadiusZoomBlur(lock.Pixels(), result.bytes.data(), mask.bytes.data(), w, h,
                                  nullptr, 0, 0);
  }
  const float fw = float(w), fh = float(h);
  Graphics(&zoomed).DrawImage(
      &smeared, {(fw - 1.3f * fw) * 0.5f, (fh - 1.3f * fh) * 0.5f, 1.3f * fw, 1.3f * fh},
      {0, 0, fw, fh});
  BlendBuffersAlphaTrunc(result.bytes.data(), BitmapLock(&zoomed).Pixels(), w * h);
  return result;
}

struct Look {
  const char* name;
  EffectEntry* run;
  std::function<Picture(const Picture&)> twin;
};

std::vector<Look> Looks() {
  using E = CEffect;
  const auto studio = [](const char* file) {
    return [=](const Picture& image) { return Studio(file, image); };
  };
  const auto leak = [](const char* name) {
    return [=](const Picture& image) { return Leak(name, image); };
  };
  const auto table = [](const char* picture, const char* file) {
    return [=](const Picture& image) { return OneTable(picture, file, image); };
  };
  return {{"JingDianYingLou", E::Effect_JingDianYingLou, studio("zvkr_studio_0")},
          {"LengLan", E::Effect_LengLan, studio("zvkr_studio_2")},
          {"LengLv", E::Effect_LengLv, studio("zvkr_studio_5")},
          {"NuanHuang", E::Effect_NuanHuang, studio("zvkr_studio_3")},
          {"LengZi", E::Effect_LengZi, LengZi},
          {"YiZhou", E::Effect_YiZhou, YiZhou},
          {"LEAK_1", E::Effect_LEAK_1, leak("style/Leak1.jpg")},
          {"LEAK_6", E::Effect_LEAK_6, leak("style/Leak6.jpg")},
          {"LEAK_7", E::Effect_LEAK_7, leak("style/Leak7.jpg")},
          {"LEAK_9", E::Effect_LEAK_9, leak("style/Leak9.jpg")},
          {"LEAK_15", E::Effect_LEAK_15, leak("style/Leak15.jpg")},
          {"LIGHT_LEAK", E::Effect_LEAK_LIGHT_LEAK, leak("style/light-leak-2.jpg")},
          {"LIGHT_LEAK_17", E::Effect_LEAK_LIGHT_LEAK_17, leak("style/LL17.png")},
          {"quxian_3", E::quxian_3, Quxian3},
          {"quxian_4", E::quxian_4, table("zvtk_fzl_4a.jpg", "zvkr_quxian_4")},
          {"quxian_6", E::quxian_6, table("zvtk_fzl_6a.jpg", "zvkr_quxian_6")},
          {"quxian_7", E::quxian_7, Quxian7},
          {"quxian_10", E::quxian_10, Quxian10},
          {"quxian_14", E::quxian_14, Quxian14},
          {"NewGt_1", E::NewGt_1, NewGt1},
          {"NewGt_2", E::NewGt_2, NewGt2},
          {"NewGt_3", E::NewGt_3, NewGt3},
          {"NewGt_5", E::NewGt_5, NewGt5},
          {"NewGt_7", E::NewGt_7, NewGt7},
          {"GuangShuJianBian", E::Effect_GuangShuJianBian, GuangShu},
          {"Jieri_3", E::Jieri_3, Jieri3},
          {"RainbowColor", E::RainbowColor, Rainbow},
          {"ShiGuangSuiDao", E::Effect_ShiGuangSuiDao, TimeTunnel}};
}

TEST(TableLooks, MatchTheirTwinsAtAnyShapeAndThreadCount) {
  const int before = omp_get_max_threads();
  // Square, upright and lying; the fourth is as large as the pictures, and 1 x 1.
  for (auto [w, h] : {std::pair{41, 41}, {30, 53}, {61, 17}, {21, 30}, {1, 1}}) {
    const Picture image = RandomPicture(w, h, w);
    omp_set_num_threads(w == 61 ? 3 : before);
    for (const Look& look : Looks()) {
      Picture result = image;
      EXPECT_EQ(Files().Run(look.run, result), 1);
      EXPECT_TRUE(result == look.twin(image)) << look.name << " at " << w << " x " << h;
    }
  }
  omp_set_num_threads(before);
}

TEST(TableLooks, ScaleTheRawMasksOnlyIfTheyMust) {
  for (auto [look, side, twin] : {std::tuple{&CEffect::Effect_YiZhou, 640, &YiZhou},
                                  {&CEffect::Effect_ShiGuangSuiDao, 240, &TimeTunnel}}) {
    const Picture image = RandomPicture(side, side, 3);
    Picture result = image;
    EXPECT_EQ(Files().Run(look, result), 1);
    EXPECT_TRUE(result == twin(image)) << side;
  }
}

// Positions of a pass over 40 rows, of which every second one reports.
std::vector<float> Rows(std::vector<float> positions, float start, float span) {
  for (int row = 0; row < 40; row += 2) positions.push_back(float(row) * (span / 40.0f) + start);
  return positions;
}

TEST(TableLooks, ReportTheirFixedPositions) {
  const std::map<std::string, std::vector<float>> expected = {
      {"quxian_3", Rows({10, 20}, 20, 80)},
      {"quxian_4", Rows({10}, 10, 90)},
      {"quxian_6", Rows({10}, 10, 90)},
      {"quxian_7", Rows({10, 20, 30, 40}, 40, 60)},
      {"NewGt_1", Rows({10, 30, 50}, 50, 50)},
      {"NewGt_2", Rows({20}, 20, 80)},
      {"NewGt_3", Rows({10, 30, 50}, 50, 50)},
      {"NewGt_5", Rows({10, 30, 40, 60}, 60, 40)},
      {"Jieri_3", {5, 15, 20, 30}},
      {"RainbowColor", Rows({}, 7, 3)},
  };
  for (const Look& look : Looks()) {
    ProgressRecorder told;
    Picture image = RandomPicture(5, 40);
    Files().Run(look.run, image, &told);
    if (std::string(look.name) == "quxian_10") {
      std::vector<float> positions = Rows(Rows({5}, 5, 30), 70, 30);
      positions.insert(positions.begin() + 21, 70);
      EXPECT_THAT(told.positions, ElementsAreArray(positions));
      EXPECT_EQ(told.questions, 41);
      continue;
    }
    const auto found = expected.find(look.name);
    if (found == expected.end())
      EXPECT_TRUE(told.positions.empty()) << look.name;
    else
      EXPECT_THAT(told.positions, ElementsAreArray(found->second)) << look.name;
  }
}

TEST(TableLooks, LeaveTheRowsBelowAStopAsTheyWere) {
  for (const Look& look : Looks()) {
    const std::string name = look.name;
    if (!name.starts_with("quxian_") && !name.starts_with("NewGt_")) continue;
    if (name == "quxian_10" || name == "quxian_14" || name == "NewGt_7") continue;
    const Picture image = RandomPicture(9, 40);
    Picture stopped = image, expected = image;
    ProgressRecorder told;
    told.stopAt = 0;
    EXPECT_EQ(Files().Run(look.run, stopped, &told), 1) << name;
    std::copy_n(look.twin(image).bytes.begin(), 4 * 9, expected.bytes.begin());
    EXPECT_TRUE(stopped == expected) << name;
  }
}

TEST(TableLooks, StopBetweenStages) {
  const Picture image = RandomPicture(9, 40);
  const auto run = [&](EffectEntry* look, int stopAt) {
    ProgressRecorder told;
    told.stopAt = stopAt;
    Picture result = image;
    return std::pair(Files().Run(look, result, &told), result);
  };
  // Asked once after the blur.
  for (auto* look : {CEffect::Effect_JingDianYingLou, CEffect::Effect_LengZi})
    EXPECT_EQ(run(look, 0), std::pair(0, Blurred(image)));
  EXPECT_EQ(run(CEffect::Effect_YiZhou, 0).first, 0);
  // Before the tables that come last.
  const auto [zero, violet] = run(CEffect::Effect_LengZi, 1);
  EXPECT_EQ(zero, 0);
  EXPECT_FALSE(violet == LengZi(image));
  EXPECT_FALSE(violet == Blurred(image));
  // The first pass, between the passes, the second.
  EXPECT_EQ(run(CEffect::quxian_10, 0).first, 0);
  EXPECT_EQ(run(CEffect::quxian_10, 20).first, 0);
  const auto [one, half] = run(CEffect::quxian_10, 21);
  EXPECT_EQ(one, 1);
  EXPECT_TRUE(
      std::equal(half.bytes.begin(), half.bytes.begin() + 36, Quxian10(image).bytes.begin()));
  EXPECT_FALSE(half == Quxian10(image));
  // In the gradient, and after it.
  for (int stopAt : {0, 20}) EXPECT_EQ(run(CEffect::RainbowColor, stopAt), std::pair(0, image));
}

TEST(TableLooks, FailWithoutTheirTables) {
  Root root;
  for (const auto& [name, bytes] : root.raw) root.Remove(name);
  for (const char* map : {"style/PSScreen.png", "ZVQCGYEx.png"}) root.Remove(map);
  for (const Look& look : Looks()) {
    const std::string name = look.name;
    if (name == "NewGt_7" || name == "Jieri_3" || name == "RainbowColor") continue;
    const Picture image = RandomPicture(12, 9);
    Picture result = image;
    EXPECT_EQ(root.Run(look.run, result), 0) << name;
    if (name == "YiZhou") continue;  // toned and blurred by then
    const bool blurred =
        name.starts_with("Leng") || name == "NuanHuang" || name == "JingDianYingLou";
    EXPECT_TRUE(result == (blurred ? Blurred(image) : image)) << name;
  }
  root.PutRaw("zvkr_cy.eb", RandomBytes(100, 1));
  root.PutPicture("ZVOverlay60.png", RandomPicture(255, 256));
  root.PutPicture("ZVQCGYEx.png", RandomPicture(256, 255));
  root.PutPicture("style/PSScreen.png", RandomPicture(257, 256));
  for (auto* look : {CEffect::Effect_ShiGuangSuiDao, CEffect::quxian_14, CEffect::Effect_LEAK_1}) {
    const Picture image = RandomPicture(12, 9);
    Picture result = image;
    EXPECT_EQ(root.Run(look, result), 0) << "a map of another shape";
    EXPECT_TRUE(result == image);
  }
}

TEST(TableLooks, TakeAMissingPictureForBlackAndAMissingMaterialForAFault) {
  Root root;
  const Picture image = RandomPicture(12, 9);
  root.Remove("style/Leak1.jpg");
  Picture result = image;
  EXPECT_EQ(root.Run(CEffect::Effect_LEAK_1, result), 1);
  EXPECT_TRUE(result == Each(image, [&](int value, std::size_t, int c) {
                return root.Map("style/PSScreen.png", value, 0, c);
              }));
  root.Remove("sucai12.jpg");
  result = image;
  EXPECT_EQ(root.Run(CEffect::quxian_14, result), 0);
  EXPECT_TRUE(result == image);
}

TEST(TableLooks, TakeWhatAShortPlaneFileLacksForZero) {
  Root root;
  root.PutRaw("zvkr_studio_2.eb", Bytes(4, 200));
  Picture result = RandomPicture(12, 9);
  EXPECT_EQ(root.Run(CEffect::Effect_LengLan, result), 1);
  EXPECT_TRUE(result == Each(RandomPicture(12, 9), [](int, std::size_t, int) { return 0; }));
  // High index: the sharp image. One plane only, so that the rest is 0.
  Bytes sharp(65540);
  for (int i = 0; i < 65536; ++i) sharp[4 + i] = static_cast<unsigned char>(i / 256);
  root.PutRaw("zvkr_studio_2.eb", sharp);
  result = RandomPicture(12, 9);
  EXPECT_EQ(root.Run(CEffect::Effect_LengLan, result), 1);
  EXPECT_TRUE(result == Each(RandomPicture(12, 9),
                             [](int value, std::size_t, int c) { return c == 2 ? value : 0; }));
}

TEST(TableLooks, WorkOnNothing) {
  for (const Look& look : Looks()) {
    Picture none{0, 7, Bytes(4)};
    EXPECT_EQ(Files().Run(look.run, none), 1) << look.name;
    none = {-3, -2, Bytes(4)};
    EXPECT_EQ(Files().Run(look.run, none), 1) << look.name;
    std::wstring root = Files().folder.Path().wstring();
    EXPECT_EQ(look.run(nullptr, 4, 4, root.data(), nullptr, 0, 100), 0) << look.name;
    EXPECT_EQ(look.run(none.bytes.data(), 1 << 20, 1 << 20, root.data(), nullptr, 0, 100), 0)
        << look.name;
  }
}

}  // namespace
}  // namespace tintwerk

// The looks that are chains of map lookups, against plain twins on random maps.
#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <thread>

#include "frame/material.h"
#include "maps/map_image.h"
#include "support/image_files.h"
#include "tintwerk/effect.h"
#include "tintwerk/pixel_process.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::Picture;
using test::RandomPicture;

// A resource root with random files, and the maps as a twin reads them.
struct Root {
  Root() {
    Put("80smap.png", tone);
    Put("screen30.png", screen);
    Put("huiyi1.jpg", material);  // a PNG: files are told by their content
    Put("huiyi2.png", first);
    Put("huiyi3.png", last);
    Put("huiyi4.png", blend);
    Put("vignetteMap.png", rim);
  }

  void Put(const char* name, const Picture& picture) {
    folder.Write(std::filesystem::path("Effects") / name, test::EncodePng(picture));
  }
  void Remove(const char* name) { std::filesystem::remove(folder.Path() / "Effects" / name); }

  void* Get() {
    wide = folder.Path().wstring();
    return wide.data();
  }

  int Run80S(Picture& image) {
    return CEffect::Effect_80S(image.bytes.data(), image.width, image.height, Get(), nullptr, 0,
                               100);
  }
  int RunHuiYi(Picture& image) {
    return CEffect::Effect_HuiYi(image.bytes.data(), image.width, image.height, Get(), nullptr, 0,
                                 100);
  }

  test::TemporaryFolder folder;
  std::wstring wide;
  Picture tone = RandomPicture(300, 2, 1), screen = RandomPicture(256, 1, 2);
  Picture material = RandomPicture(40, 30, 3);
  Picture first = RandomPicture(256, 1, 4), last = RandomPicture(256, 2, 5);
  Picture blend = RandomPicture(256, 256, 6), rim = RandomPicture(256, 257, 7);
};

// The position key as the square of the distance from the centre, in single precision.
int PlainKey(int x, int y, int width, int height) {
  const float sx = float(2.0 / width), sy = float(2.0 / height);
  const float u = float(y) * sy - 1.0f, v = float(x) * sx - 1.0f;
  return int(std::fmin((u * u + v * v) * 255.0f, 255.0f));
}

Picture Plain80S(Root& root, Picture image) {
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x)
      for (int c = 0; c < 3; ++c) {
        unsigned char& value = image.At(x, y)[c];
        value = root.screen.At(root.tone.At(value, 0)[c], 0)[c];
      }
  return image;
}

Picture PlainHuiYi(Root& root, Picture image) {
  Gdiplus::Bitmap source(root.material.width, root.material.height);
  {
    const BitmapLock lock(&source, Gdiplus::ImageLockModeWrite);
    std::copy(root.material.bytes.begin(), root.material.bytes.end(), lock.Pixels());
  }
  const std::unique_ptr<Gdiplus::Bitmap> over(
      static_cast<Gdiplus::Bitmap*>(CPixelProcess::RampleBit(&source, image.width, image.height)));
  const BitmapLock material(over.get());
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x)
      for (int c = 0; c < 3; ++c) {
        unsigned char& value = image.At(x, y)[c];
        const int m = material.Pixels()[4 * (y * image.width + x) + c];
        const int a = root.blend.At(m, value)[c];  // row: the pixel, column: the material
        const int b = root.first.At(a, 0)[c];
        const int e = root.rim.At(PlainKey(x, y, image.width, image.height), b)[c];
        value = root.last.At(e, 0)[c];
      }
  return image;
}

TEST(MapLooks, MatchTheirTwinsOnRandomMapsAtAnySizeAndThreadCount) {
  Root root;
  const int before = omp_get_max_threads();
  for (auto [w, h] : {std::pair{1, 1}, {1, 9}, {40, 30}, {37, 53}, {200, 3}}) {
    for (int threads : {1, before, 5}) {
      omp_set_num_threads(threads);
      const Picture image = RandomPicture(w, h, w + h);
      Picture eighties = image, memory = image;
      ASSERT_EQ(root.Run80S(eighties), 1);
      EXPECT_EQ(eighties, Plain80S(root, image)) << w << "x" << h;
      ASSERT_EQ(root.RunHuiYi(memory), 1);
      EXPECT_EQ(memory, PlainHuiYi(root, image)) << w << "x" << h;
    }
  }
  omp_set_num_threads(before);
}

TEST(MapLooks, AMissingPictureIsAllZero) {
  Root root;
  root.Remove("huiyi1.jpg");
  root.material = Picture{1, 1, Bytes(4, 0)};
  const Picture image = RandomPicture(21, 13, 1);
  Picture painted = image;
  ASSERT_EQ(root.RunHuiYi(painted), 1);
  EXPECT_EQ(painted, PlainHuiYi(root, image));
}

TEST(MapLooks, MissingOrMisshapenMapsChangeNothing) {
  const Picture image = RandomPicture(9, 5, 8);
  const Picture narrow = RandomPicture(255, 300, 1), shallow = RandomPicture(256, 255, 2),
                wide = RandomPicture(512, 256, 3);
  auto refused = [&](const char* name, const Picture* replacement, int (Root::*look)(Picture&)) {
    Root root;
    if (replacement)
      root.Put(name, *replacement);
    else
      root.Remove(name);
    Picture painted = image;
    EXPECT_EQ((root.*look)(painted), 0) << name;
    EXPECT_EQ(painted, image) << name;
  };
  for (const char* name : {"80smap.png", "screen30.png"}) {
    refused(name, nullptr, &Root::Run80S);
    refused(name, &narrow, &Root::Run80S);
  }
  for (const char* name : {"huiyi2.png", "huiyi3.png", "huiyi4.png", "vignetteMap.png"}) {
    refused(name, nullptr, &Root::RunHuiYi);
    refused(name, &narrow, &Root::RunHuiYi);
    refused(name, &wide, &Root::RunHuiYi);
  }
  refused("huiyi4.png", &shallow, &Root::RunHuiYi);
  refused("vignetteMap.png", &shallow, &Root::RunHuiYi);

  // A damaged file is as good as none.
  Root root;
  Bytes file = test::EncodePng(root.blend);
  file.resize(file.size() / 2);
  root.folder.Write("Effects/huiyi4.png", file);
  Picture painted = image;
  EXPECT_EQ(root.RunHuiYi(painted), 0);
  EXPECT_EQ(painted, image);
}

TEST(MapLooks, NullEmptyAndOversizedImages) {
  Root root;
  unsigned char pixel[4] = {1, 2, 3, 4};
  for (EffectEntry* look : {&CEffect::Effect_80S, &CEffect::Effect_HuiYi}) {
    EXPECT_EQ(look(nullptr, 1, 1, root.Get(), nullptr, 0, 100), 0);
    for (auto [w, h] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {5, -1}, {-3, -3}})
      EXPECT_EQ(look(pixel, w, h, root.Get(), nullptr, 0, 100), 1) << w << "x" << h;
    EXPECT_EQ(look(pixel, 65536, 65536, root.Get(), nullptr, 0, 100), 0);
    EXPECT_EQ(look(pixel, 1, 1, nullptr, nullptr, 0, 100), 0);
    wchar_t nowhere[] = L"/no/such/root";
    EXPECT_EQ(look(pixel, 1, 1, nowhere, nullptr, 0, 100), 0);
  }
  EXPECT_EQ(Bytes(pixel, pixel + 4), (Bytes{1, 2, 3, 4}));
}

TEST(MapLooks, RunSideBySideOnDifferentBuffers) {
  Root root;
  void* path = root.Get();
  const Picture image = RandomPicture(64, 48, 4);
  const Picture eighties = Plain80S(root, image), memory = PlainHuiYi(root, image);
  auto repeat = [&](EffectEntry* look, const Picture& expected, int& wrong) {
    for (int i = 0; i < 10; ++i) {
      Picture painted = image;
      if (look(painted.bytes.data(), 64, 48, path, nullptr, 0, 100) != 1 || painted != expected)
        ++wrong;
    }
  };
  int wrong[2] = {};
  std::thread other([&] { repeat(&CEffect::Effect_80S, eighties, wrong[0]); });
  repeat(&CEffect::Effect_HuiYi, memory, wrong[1]);
  other.join();
  EXPECT_EQ(wrong[0] + wrong[1], 0);
}

TEST(MapImage, ReadsOneByteByShapeAndPlane) {
  const Picture map = RandomPicture(256, 256, 3);
  const StripMap strip(map.bytes.data());
  const TriStripMap triStrip(map.bytes.data());
  const SquareMap square(map.bytes.data());
  for (int v : {0, 1, 100, 255}) {
    EXPECT_EQ(strip(v, kPlaneG), map.bytes[v * 4 + 1]);
    EXPECT_EQ(triStrip(v, kPlaneR), map.bytes[v * 4 + 2]);
    EXPECT_EQ(triStrip(v, kPlaneG), map.bytes[1024 + v * 4 + 1]);
    EXPECT_EQ(triStrip(v, kPlaneB), map.bytes[2048 + v * 4]);
    EXPECT_EQ(square(v, 7, kPlaneR), map.bytes[(v * 256 + 7) * 4 + 2]);
    EXPECT_EQ(square(v, v, kPlaneB), map.bytes[v * 257 * 4]);
  }
}

TEST(RadialKey, KnownPlaces) {
  auto key = [](int width, int height, int x, int y) {
    const RadialKey radial(width, height);
    return radial.At(radial.Row(y), x);
  };
  EXPECT_EQ(key(400, 300, 200, 150), 0);
  EXPECT_EQ(key(400, 300, 0, 0), 255);
  EXPECT_EQ(key(400, 300, 0, 150), 255);   // the middle of an edge
  EXPECT_EQ(key(400, 300, 100, 150), 63);  // half the way out: a quarter of 255, truncated
  for (int y = 0; y < 5; ++y) EXPECT_EQ(key(1, 5, 0, y), 255);
  EXPECT_LT(key(6, 6, 5, 5), 255);
  EXPECT_EQ(key(7, 7, 6, 6), 255);
}

TEST(Strength, MixesInDoubleAndTruncates) {
  const Picture destination = RandomPicture(23, 7, 1), source = RandomPicture(23, 7, 2);
  for (double opacity : {-1.0, 0.0, 0.1, 1.0 / 3, 0.5, 0.999, 1.0, 2.0, std::nan("")}) {
    Picture mixed = destination;
    ASSERT_EQ(CEffect::Effect_AlphaAdJust(mixed.bytes.data(), source.bytes.data(), 23, 7, opacity),
              1);
    const double o = opacity > 0 ? std::fmin(opacity, 1.0) : 0.0;
    for (std::size_t i = 0; i < mixed.bytes.size(); ++i) {
      const double sum = source.bytes[i] * o + destination.bytes[i] * (1 - o);
      ASSERT_EQ(mixed.bytes[i], i % 4 == 3 ? destination.bytes[i] : int(sum)) << opacity;
    }
  }
  unsigned char pixel[4] = {};
  EXPECT_EQ(CEffect::Effect_AlphaAdJust(nullptr, pixel, 1, 1, 1), 0);
  EXPECT_EQ(CEffect::Effect_AlphaAdJust(pixel, nullptr, 1, 1, 1), 0);
  EXPECT_EQ(CEffect::Effect_AlphaAdJust(pixel, pixel, -1, 4, 1), 1);
  EXPECT_EQ(CEffect::Effect_AlphaAdJust(pixel, pixel, 65536, 65536, 1), 0);
}

}  // namespace
}  // namespace tintwerk

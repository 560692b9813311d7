#include <array>

#include "support/operations.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using Colour = std::array<int, 3>;  // red, green, blue
constexpr Colour kDefault = {160, 130, 126};

struct Face {
  bool used = false;
  int x = 0, y = 0, width = 0, height = 0;
};

Colour Skin(const Picture& image, const Face& f) {
  Colour c = {-1, -1, -1};
  SFDSP::InitAvgFaceSkin(c[0], c[1], c[2], image.bytes.data(), image.width, image.height, f.used,
                         f.x, f.y, f.width, f.height);
  return c;
}

Colour PlainSkin(const Picture& image, Face f) {
  const int w = image.width, h = image.height;
  int sums[3] = {};
  for (std::size_t i = 0; i < image.bytes.size(); ++i)
    if (i % 4 < 3) sums[i % 4] += image.bytes[i];
  const int mean =
      int((float(sums[2]) * 0.3f + float(sums[1]) * 0.59f + float(sums[0]) * 0.11f) / float(w * h));
  if (f.width < 1 || f.height < 1 || f.x < 0 || f.y < 0 || f.x + f.width >= w ||
      f.y + f.height >= h)
    f.used = false;
  const int threshold = f.used || mean < 65 ? mean : mean < 90 ? mean + 70 : 170;
  if (!f.used) f = {false, 0, 0, w, h};
  int total[3] = {}, count = 0;
  for (int y = f.y; y < f.y + f.height; ++y)
    for (int x = f.x; x < f.x + f.width; ++x) {
      const Byte* p = &image.bytes[4 * (w * y + x)];
      const int likeness = (p[2] < 128 ? 2 * p[2] : 255) - (p[0] >> 1);
      if (std::max(likeness, 0) < threshold) continue;
      for (int c = 0; c < 3; ++c) total[c] += p[2 - c];
      ++count;
    }
  if (count == 0) return kDefault;
  for (int& t : total) t = (t + count / 2) / count;
  return {total[0], total[1], total[2]};
}

// @param light of the picture: its mean decides the threshold
Picture Shaded(int width, int height, int light) {
  Picture picture = TiedPicture(width, height, light);
  for (Byte& byte : picture.bytes) byte = Byte(byte * light / 255);
  return picture;
}

TEST(Skin, ItsColourIsTheMeanOfWhatIsReddishEnough) {
  for (auto [w, h] : {std::pair{1, 1}, {2, 2}, {37, 29}, {300, 211}})
    for (int light : {0, 20, 120, 140, 160, 255})
      for (const Face& face : {Face{},
                               {true, 0, 0, w - 1, h - 1},
                               {true, w / 3, h / 3, w / 2, h / 2},
                               {true, 0, 0, w, h - 1},
                               {true, 1, 1, w - 2, h - 1},
                               {true, -1, 0, 1, 1},
                               {true, 0, 0, 0, 1},
                               {true, 1, 1, INT_MAX, 1}}) {
        const Picture image = Shaded(w, h, light);
        const auto valid = face.width == INT_MAX ? Face{} : face;
        OnEveryMachine([&, w = w, h = h] {
          EXPECT_EQ(Skin(image, face), PlainSkin(image, valid))
              << w << " x " << h << ", light " << light << ", face " << face.width;
        });
      }
}

TEST(Skin, WithoutSkinTheColourIsADefault) {
  Picture blue = RandomPicture(20, 10, 1);
  for (std::size_t i = 0; i < blue.bytes.size(); i += 4) {
    blue.bytes[i] = 255, blue.bytes[i + 1] = 200, blue.bytes[i + 2] = 90;
  }
  EXPECT_EQ(Skin(blue, {}), kDefault);
  Colour c = {};
  for (auto [w, h] : {std::pair{0, 9}, {9, 0}, {-3, -3}, {65536, 65536}}) {
    SFDSP::InitAvgFaceSkin(c[0], c[1], c[2], blue.bytes.data(), w, h, true, 0, 0, 1, 1);
    EXPECT_EQ(std::exchange(c, {}), kDefault);
  }
  SFDSP::InitAvgFaceSkin(c[0], c[1], c[2], nullptr, 9, 9, false, 0, 0, 0, 0);
  EXPECT_EQ(c, kDefault);
}

TEST(Skin, TheMaskShowsWhatComesNearItsColour) {
  // Every radius, and both sides of where it changes.
  for (auto [w, h, radius] :
       {std::tuple{1, 1, 7}, {199, 260, 7}, {200, 200, 8}, {520, 499, 8}, {501, 500, 10}})
    for (const Face& face : {Face{}, {true, w / 4, h / 4, w / 2, h / 2}}) {
      const Picture image = Shaded(w, h, 255);
      const Colour skin = PlainSkin(image, face);
      Bytes plain(w * h);
      for (int i = 0; i < w * h; ++i) {
        const int t = image.bytes[4 * i + 2] + 128 - skin[0];
        const int row = t < 0 ? 0 : t < 128 ? 2 * t : 255;
        const int v = std::max(row - (std::max(image.bytes[4 * i] - skin[2], 0) >> 1), 0);
        plain[i] = Byte(v > 160 ? 255 : v < 90 ? 0 : v + 30);
      }
      SFDSP::BlurOneChannel(plain.data(), w, h, radius);
      for (int count : {1, 3}) {
        const Threads threads(count);
        EXPECT_TRUE(plain == Guarded(Bytes(w * h, 77),
                                     [&, w = w, h = h](Byte* mask) {
                                       SFDSP::CreateSkinMask(image.bytes.data(), w, h, mask,
                                                             face.used, face.x, face.y, face.width,
                                                             face.height);
                                     }))
            << w << " x " << h;
      }
    }
  Bytes mask(16, 5), pixels(64, 200);
  SFDSP::CreateSkinMask(nullptr, 4, 4, mask.data(), false, 0, 0, 0, 0);
  SFDSP::CreateSkinMask(pixels.data(), 4, 4, nullptr, false, 0, 0, 0, 0);
  for (auto [w, h] : {std::pair{0, 4}, {-4, -4}, {65536, 65536}})
    SFDSP::CreateSkinMask(pixels.data(), w, h, mask.data(), false, 0, 0, 0, 0);
  EXPECT_EQ(mask, Bytes(16, 5));
}

TEST(Skin, TheMeanOfARectangleStopsBeforeTheFarEdges) {
  const Picture image = RandomPicture(17, 11, 3);
  const auto mean = [&](int x, int y, int width, int height) {
    std::array<Byte, 3> c = {1, 2, 3};
    SFDSP::SkinMiddleColor(image.bytes.data(), 17, 11, x, y, width, height, c[0], c[1], c[2]);
    return c;
  };
  const auto plain = [&](int x, int y, int right, int bottom) {
    int sums[3] = {};
    for (int j = y; j < bottom; ++j)
      for (int i = x; i < right; ++i)
        for (int c = 0; c < 3; ++c) sums[c] += image.bytes[4 * (17 * j + i) + 2 - c];
    const int area = (right - x) * (bottom - y);
    return std::array{Byte(sums[0] / area), Byte(sums[1] / area), Byte(sums[2] / area)};
  };
  EXPECT_EQ(mean(3, 2, 4, 5), plain(3, 2, 7, 7));
  EXPECT_EQ(mean(0, 0, 16, 10), plain(0, 0, 16, 10));
  EXPECT_EQ(mean(0, 0, 17, 11), plain(0, 0, 16, 10));
  EXPECT_EQ(mean(9, 9, INT_MAX, INT_MAX), plain(9, 9, 16, 10));
  const std::array<Byte, 3> untouched = {1, 2, 3};
  for (auto [x, y, w, h] :
       {std::tuple{16, 0, 1, 1}, {0, 0, 0, 1}, {0, 0, 4, -4}, {-1, 0, 3, 3}, {40, 40, 1, 1}})
    EXPECT_EQ(mean(x, y, w, h), untouched);
  std::array<Byte, 3> c = untouched;
  SFDSP::SkinMiddleColor(nullptr, 17, 11, 0, 0, 3, 3, c[0], c[1], c[2]);
  EXPECT_EQ(c, untouched);
}

}  // namespace
}  // namespace tintwerk::test

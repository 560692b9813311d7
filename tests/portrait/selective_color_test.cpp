#include "tintwerk/selective_color.h"

#include <cstdlib>

#include "support/operations.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using Colour = std::array<Byte, 3>;  // blue, green, red
using Family = CSelectiveColor::eColorType;
using Shifts = std::array<int, 3>;  // cyan, magenta, yellow

constexpr Family kGray = CSelectiveColor::Gray;
constexpr int kCapLow[129] = {
    0,  1,  1,  1,  2,  2,  2,  3,  3,  4,  4,  4,  5,  5,  6,  6,  7,  7,  8,  8,  8,  9,
    9,  10, 10, 11, 11, 12, 12, 13, 13, 14, 14, 15, 16, 16, 17, 17, 18, 18, 19, 19, 20, 21,
    21, 22, 22, 23, 23, 24, 25, 25, 26, 27, 27, 28, 28, 29, 30, 30, 31, 32, 32, 33, 34, 34,
    35, 36, 36, 37, 38, 38, 39, 40, 41, 41, 42, 43, 44, 44, 45, 46, 47, 48, 49, 49, 50, 51,
    52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62, 63, 64, 65, 66, 67, 69, 70, 71, 72, 73, 75,
    76, 77, 78, 80, 81, 82, 84, 85, 86, 88, 89, 90, 92, 93, 94, 96, 97, 99, 100};

struct Sorted {
  explicit Sorted(const Byte* p)
      : min(std::min({p[0], p[1], p[2]})),
        max(std::max({p[0], p[1], p[2]})),
        mid(p[0] + p[1] + p[2] - min - max) {}
  int min, max, mid;
};

bool Belongs(int family, const Byte* pixel) {
  const int b = pixel[0], g = pixel[1], r = pixel[2];
  const bool tests[] = {
      r > g && r > b,           b < g && b<r, g> r && g > b, r < g && r<b, b> g && b > r,
      g < r && g < b,           std::min({r, g, b}) >= 129,  r + g + b != 0 && r + g + b != 765,
      std::max({r, g, b}) < 128};
  return tests[family];
}

int Weight(int family, int min, int mid, int max) {
  if (family == 6) return 2 * min - 255;
  if (family == 7) return std::abs(255 - std::abs(max - 128) - std::abs(min - 128));
  if (family == 8) return 255 - 2 * max;
  return family % 2 ? mid - min : max - mid;
}

// Each term with its own division.
Colour Plain(const std::array<Shifts, 9>& folded, const Byte* pixel) {
  const Sorted sorted(pixel);
  int sums[3] = {};
  for (int t = 0; t < 9; ++t)
    for (int c = 0; c < 3 && Belongs(t, pixel); ++c) {
      const int i = pixel[c], r = std::min(folded[t][2 - c], 100);
      const int n = i < 128 && r > 0 ? i * r >> 8 : (255 - i) * r >> 8;
      const int d = i < 128 && r > 0 ? std::max(kCapLow[i], r) : 100;
      if (r != 0)
        sums[c] += (Byte(n + 128) - 128) * Weight(t, sorted.min, sorted.mid, sorted.max) / d;
    }
  Colour out;
  for (int c = 0; c < 3; ++c) out[c] = Byte(std::clamp(pixel[c] - sums[c], 0, 255));
  return out;
}

CSelectiveColor Setting(const std::array<Shifts, 9>& folded) {
  CSelectiveColor setting;
  for (int t = 0; t < 9; ++t)
    setting.SetSelectiveColor(Family(t), folded[t][0], folded[t][1], folded[t][2], 0);
  return setting;
}

Call Execute(const CSelectiveColor& setting) {
  return [=](Byte* pixels, int width, int height, CObjProgress*, int, int) {
    setting.Execute(pixels, width, height);
    return kNothing;
  };
}

TEST(SelectiveColor, IsThatOfPlainDivisionsWhateverFamiliesAreSet) {
  const Bytes dice = RandomBytes(1000, 5);
  const Byte* die = dice.data();
  for (int families = 1; families <= 9; ++families)
    for (const int reach : {100, 300, 700}) {  // settings as they come, folded, and beyond sense
      std::array<Shifts, 9> folded{};
      for (int i = 0; i < families; ++i)
        for (int& shift : folded[(i * 4 + reach) % 9]) {
          shift = *die++ % 5 ? (*die - 128) * reach / 128 : 0;
          if (reach == 300) shift = std::max(shift, -100);
          ++die;
        }
      folded[reach % 9][families % 3] = reach % 7 - 100;
      ExpectTwin("Execute", Execute(Setting(folded)),
                 [&](Picture& picture, int x, int y) { return Plain(folded, picture.At(x, y)); });
    }
}

TEST(SelectiveColor, DividesExactlyForEveryValueAndWeight) {
  Picture image{256 * 8, 256, Bytes(4 * 8 * 65536, 77)};
  for (int i = 0; i < 8 * 65536; ++i) {
    image.bytes[4 * i] = Byte(i / 65536 * 36);
    image.bytes[4 * i + 1] = Byte(i / 256);
    image.bytes[4 * i + 2] = Byte(i);
  }
  for (const int shift : {-100, -99, -37, -1, 1, 3, 50, 77, 100}) {
    std::array<Shifts, 9> folded{};
    folded[(shift + 100) % 6] = folded[6] = folded[8] = {shift, -shift / 2, shift};
    folded[7] = {-shift, shift, std::min(100, 3 * shift)};
    folded[7][2] = std::max(folded[7][2], -100);
    Picture expected = image;
    for (std::size_t i = 0; i < image.bytes.size(); i += 4)
      std::ranges::copy(Plain(folded, &image.bytes[i]), &expected.bytes[i]);
    OnEveryMachine([&] {
      Bytes result = image.bytes;
      Setting(folded).Execute(result.data(), image.width, image.height);
      ASSERT_TRUE(result == expected.bytes) << shift;
    });
  }
}

TEST(SelectiveColor, FoldsBlackIntoTheOtherInks) {
  const struct {
    int value, black, folded;
  } cases[] = {{40, 0, 40},     {0, -30, -30},   {50, 50, 125},   {100, 100, 300},    {7, 3, 10},
               {-50, -50, -75}, {-30, -80, -86}, {-80, -30, -86}, {-100, -100, -100}, {30, -30, -9},
               {-30, 30, -9},   {33, -10, 19},   {-10, 33, 19},   {100, -100, -100}};
  const Picture image = RandomPicture(40, 40);
  for (const auto& c : cases) {
    int cyan = c.value, magenta = c.value, yellow = 0;
    SFDSP::ZVSelectiveColorInit(cyan, magenta, yellow, c.black);
    EXPECT_EQ(cyan, c.folded) << c.value << " with " << c.black;
    EXPECT_EQ(magenta, c.folded);
    EXPECT_EQ(yellow, c.black);

    CSelectiveColor folds, folded;
    folds.SetSelectiveColor(kGray, 1, 2, 3, 4);  // makes way for the next
    folds.SetSelectiveColor(kGray, c.value, c.value, 0, c.black);
    folded.SetSelectiveColor(kGray, c.folded, c.folded, c.black, 0);
    Bytes a = image.bytes, b = a;
    folds.Execute(a.data(), 40, 40);
    folded.Execute(b.data(), 40, 40);
    EXPECT_EQ(a, b) << c.value << " with " << c.black;
  }
}

TEST(SelectiveColor, LeavesAloneWhatIsNotSet) {
  const Picture image = TiedPicture(50, 20);
  CSelectiveColor setting;
  setting.SetSelectiveColor(static_cast<Family>(9), 10, 20, 30, 40);
  Bytes bytes = image.bytes;
  setting.Execute(bytes.data(), 50, 20);
  EXPECT_EQ(bytes, image.bytes);
  setting.SetSelectiveColor(CSelectiveColor::Red, 10, 20, 30, 40);
  CSelectiveColor copy = setting;
  setting.Init();
  setting.Execute(bytes.data(), 50, 20);
  EXPECT_EQ(bytes, image.bytes);
  copy.Execute(bytes.data(), 50, 20);
  EXPECT_NE(bytes, image.bytes);

  // Each pixel is a family's own or none of it.
  const struct {
    Family family;
    Colour pixel, result;  // with every shift at -100, which adds
  } cases[] = {{kGray, {0, 0, 0}, {0, 0, 0}},
               {kGray, {255, 255, 255}, {255, 255, 255}},
               {kGray, {0, 128, 200}, {55, 155, 212}},
               {CSelectiveColor::White, {128, 255, 255}, {128, 255, 255}},
               {CSelectiveColor::White, {129, 129, 129}, {130, 130, 130}},
               {CSelectiveColor::Black, {128, 0, 0}, {128, 0, 0}},
               {CSelectiveColor::Black, {0, 0, 127}, {1, 1, 127}},
               {CSelectiveColor::Yellow, {0, 255, 255}, {255, 255, 255}},
               {CSelectiveColor::Red, {0, 255, 255}, {0, 255, 255}},
               {CSelectiveColor::Green, {0, 255, 255}, {0, 255, 255}}};
  for (const auto& c : cases) {
    CSelectiveColor one;
    one.SetSelectiveColor(c.family, -100, -100, -100, 0);
    Byte pixel[] = {c.pixel[0], c.pixel[1], c.pixel[2], 9};
    one.Execute(pixel, 1, 1);
    EXPECT_EQ(Bytes(pixel, pixel + 4), (Bytes{c.result[0], c.result[1], c.result[2], 9}))
        << c.family << ": " << int(c.pixel[0]) << " " << int(c.pixel[1]);
  }
}

using OfPixel = void (*)(const Byte*, int, int, int, int*, int, int, int);
constexpr OfPixel kOfPixel[9] = {
    SFDSP::ZVSelectiveColorRed,   SFDSP::ZVSelectiveColorYellow, SFDSP::ZVSelectiveColorGreen,
    SFDSP::ZVSelectiveColorCyan,  SFDSP::ZVSelectiveColorBlue,   SFDSP::ZVSelectiveColorMagenta,
    SFDSP::ZVSelectiveColorWhite, SFDSP::ZVSelectiveColorGray,   SFDSP::ZVSelectiveColorBlack};
constexpr OfPixel kTwins[9] = {CPixelProcess::ZVSelectiveColorRed,
                               CPixelProcess::ZVSelectiveColorYellow,
                               nullptr,
                               nullptr,
                               nullptr,
                               nullptr,
                               CPixelProcess::ZVSelectiveColorWhite,
                               CPixelProcess::ZVSelectiveColorGray,
                               nullptr};

int PlainContribution(int c, int w, int a) {
  if (a == 0) return 0;
  const int m = std::min(a, c <= 128 ? 100 : 100 * c / (256 - c));
  const int product = (m >= 1 && c <= 128 ? c : 256 - c) * w * m;
  if (m < 1 || c >= 128) return (product + 12800) / 25600;
  const int d = std::max(m, kCapLow[c]) * 256;
  return (d / 2 + product) / d;
}

TEST(SelectiveColorOfPixel, AddsToDeltaWhatEachFamilyTakes) {
  const Picture image = TiedPicture(120, 100);
  const Bytes dice = RandomBytes(image.bytes.size(), 3);
  for (std::size_t i = 0; i < image.bytes.size(); i += 4) {
    const Byte* const pixel = &image.bytes[i];
    const Sorted sorted(pixel);
    const int mid = dice[i] % 4 ? sorted.mid : sorted.min;  // callers may sort ties their own way
    const bool isInside = sorted.min > 0 && sorted.max < 255;
    Shifts shifts;  // -100..300
    for (int k = 0; k < 3; ++k) shifts[k] = dice[i + k] % 8 ? dice[i + k] * 400 / 255 - 100 : 0;
    for (int t = 0; t < 9; ++t) {
      int expected[3] = {5, -6, 7}, delta[3] = {5, -6, 7};
      if (Belongs(t, pixel) && (t != 7 || isInside))
        for (int c = 0; c < 3; ++c)
          expected[c] +=
              PlainContribution(pixel[c], Weight(t, sorted.min, mid, sorted.max), shifts[2 - c]);
      for (OfPixel run : {kOfPixel[t], kTwins[t]}) {
        if (!run) continue;
        std::copy_n(std::array{5, -6, 7}.begin(), 3, delta);
        run(pixel, sorted.min, mid, sorted.max, delta, shifts[0], shifts[1], shifts[2]);
        ASSERT_TRUE(std::equal(delta, delta + 3, expected)) << "family " << t << ", pixel " << i;
      }
    }
  }
}

TEST(SelectiveColorOfPixel, RoundsByItsOwnRules) {
  const struct {
    Family family;
    Byte value;  // of all channels but those of Red, of which red is 4 above
    int shift, taken;
  } cases[] = {{kGray, 128, 100, 128},
               {kGray, 127, 100, 126},
               {CSelectiveColor::Black, 127, 100, 0},
               {CSelectiveColor::White, 129, 100, 1},
               {CSelectiveColor::White, 129, 300, 2},
               {CSelectiveColor::Red, 192, 100, 1},
               {CSelectiveColor::Red, 192, -100, 0}};
  for (const auto& c : cases) {
    const bool isRed = c.family == CSelectiveColor::Red;
    const Byte low = Byte(isRed ? c.value - 4 : c.value), pixel[] = {low, low, c.value};
    int delta[3] = {};
    kOfPixel[c.family](pixel, low, low, c.value, delta, c.shift, 0, 0);
    EXPECT_EQ(delta[2], c.taken) << c.family << ", " << c.shift;
    EXPECT_EQ(delta[1], 0);
  }
  for (OfPixel run : kOfPixel) {
    const Byte pixel[] = {9, 8, 7};
    int delta[3] = {1, 2, 3};
    run(nullptr, 7, 8, 9, delta, 50, 50, 50);
    run(pixel, 7, 8, 9, nullptr, 50, 50, 50);
    EXPECT_EQ(delta[2], 3);
  }
}

}  // namespace
}  // namespace tintwerk::test

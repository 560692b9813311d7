// Every public look from end to end on the painted support files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "support/image_files.h"
#include "support/traits.h"
#include "tintwerk/effect.h"

namespace {

using tintwerk::test::Bytes;
using tintwerk::test::Picture;
using enum tintwerk::test::Trait;
using tintwerk::test::Trait;

struct Look {
  const char* name;
  EffectEntry* entry;
};

void PrintTo(const Look& look, std::ostream* out) {
  *out << look.name;
}

bool Has(const Look& look, Trait trait) {
  return tintwerk::test::Has(look.entry, trait);
}

class Looks : public testing::TestWithParam<Look> {};

TEST_P(Looks, PaintsOnRealFilesWithNoMoreThanItsTraits) {
  wchar_t root[] = TINTWERK_RESOURCES;
  for (auto [w, h] : {std::pair{160, 90}, {90, 161}}) {
    Picture image = tintwerk::test::SmoothPicture(w, h);
    for (int i = 3; i < 4 * w * h; i += 4) image.bytes[i] = static_cast<unsigned char>(i / 4);
    Picture first = image, second = image;
    ASSERT_EQ(GetParam().entry(first.bytes.data(), w, h, root, nullptr, 0, 100), 1);
    ASSERT_EQ(GetParam().entry(second.bytes.data(), w, h, root, nullptr, 0, 100), 1);
    EXPECT_TRUE(first == second || Has(GetParam(), DrawsRandomNumbers));
    int colour = 0, alpha = 0;  // bytes that changed
    for (std::size_t i = 0; i < image.bytes.size(); ++i)
      (i % 4 == 3 ? alpha : colour) += first.bytes[i] != image.bytes[i];
    EXPECT_GT(colour, 0);
    EXPECT_EQ(alpha > 0, Has(GetParam(), WritesAlpha));
  }
}

TEST_P(Looks, NullAndEmptyImages) {
  wchar_t root[] = TINTWERK_RESOURCES;
  unsigned char pixel[4] = {9, 9, 9, 9};
  EXPECT_EQ(GetParam().entry(nullptr, 4, 4, root, nullptr, 0, 100), 0);
  for (auto [w, h] : {std::pair{0, 7}, {7, 0}, {-4, 4}, {4, -4}, {-65536, -65536}})
    EXPECT_EQ(GetParam().entry(pixel, w, h, root, nullptr, 0, 100), 1);
  for (auto [w, h] : {std::pair{65536, 65536}, {46341, 46341}})  // no int counts their pixels
    EXPECT_EQ(GetParam().entry(pixel, w, h, root, nullptr, 0, 100), 0);
  EXPECT_EQ(pixel[0], 9);
}

#define TINTWERK_EFFECT(entry, category, title, description) Look{#entry, &CEffect::entry},
constexpr Look kLooks[] = {
#include "tintwerk/effect_list.h"
};

INSTANTIATE_TEST_SUITE_P(All, Looks, testing::ValuesIn(kLooks),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace

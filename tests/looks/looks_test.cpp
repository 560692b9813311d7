// Every public look from end to end on the painted support files.
#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>

#include "support/image_files.h"
#include "tintwerk/effect.h"

namespace {

using tintwerk::test::Bytes;
using tintwerk::test::Picture;

struct Look {
  const char* name;
  EffectEntry* entry;
};

void PrintTo(const Look& look, std::ostream* out) {
  *out << look.name;
}

bool DrawsRandomNumbers(std::string_view look) {
  return look == "Effect_HuaiJiu" || look == "Effect_ZaoDian";
}

class Looks : public testing::TestWithParam<Look> {};

TEST_P(Looks, PaintsOnRealFilesTheSameEachTimeAndKeepsAlpha) {
  wchar_t root[] = TINTWERK_RESOURCES;
  for (auto [w, h] : {std::pair{160, 90}, {90, 161}}) {
    Picture image = tintwerk::test::SmoothPicture(w, h);
    for (int i = 3; i < 4 * w * h; i += 4) image.bytes[i] = static_cast<unsigned char>(i / 4);
    Picture first = image, second = image;
    ASSERT_EQ(GetParam().entry(first.bytes.data(), w, h, root, nullptr, 0, 100), 1);
    ASSERT_EQ(GetParam().entry(second.bytes.data(), w, h, root, nullptr, 0, 100), 1);
    EXPECT_TRUE(first == second || DrawsRandomNumbers(GetParam().name));
    std::int64_t change = 0;
    for (std::size_t i = 0; i < image.bytes.size(); ++i) {
      if (i % 4 == 3) {
        ASSERT_EQ(first.bytes[i], image.bytes[i]);
      }
      change += std::abs(first.bytes[i] - image.bytes[i]);
    }
    EXPECT_GT(change, 0);
  }
}

TEST_P(Looks, NullAndEmptyImages) {
  wchar_t root[] = TINTWERK_RESOURCES;
  unsigned char pixel[4] = {9, 9, 9, 9};
  EXPECT_EQ(GetParam().entry(nullptr, 4, 4, root, nullptr, 0, 100), 0);
  for (auto [w, h] : {std::pair{0, 7}, {7, 0}, {-4, 4}, {4, -4}, {-65536, -65536}})
    EXPECT_EQ(GetParam().entry(pixel, w, h, root, nullptr, 0, 100), 1);
  EXPECT_EQ(pixel[0], 9);
}

#define TINTWERK_EFFECT(entry, family, description) Look{#entry, &CEffect::entry},
constexpr Look kLooks[] = {
#include "tintwerk/effect_list.h"
};

INSTANTIATE_TEST_SUITE_P(All, Looks, testing::ValuesIn(kLooks),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace

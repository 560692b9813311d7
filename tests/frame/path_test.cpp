#include "frame/path.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

#include "frame/material.h"
#include "support/image_files.h"

namespace tintwerk {
namespace {

TEST(FormatPath, FillsInTheRootAndMapsTheTemplate) {
  const void* root = L"/opt/host";
  EXPECT_EQ(FormatPath(L"%s\\Effects\\80smap.png", root).Wide(), L"/opt/host/Effects/80smap.png");
  EXPECT_EQ(FormatPath(L"%s\\Effects\\style\\%s", root, L"sucai29.jpg").Wide(),
            L"/opt/host/Effects/style/sucai29.jpg");
  EXPECT_EQ(FormatPath(L"%s\\effects\\%s", root, L"Pen.png").Wide(), L"/opt/host/Effects/Pen.png");
  EXPECT_EQ(FormatPath(L"%s\\Effects\\style\\lig%d", root, 12).Wide(),
            L"/opt/host/Effects/style/lig12");
  EXPECT_EQ(FormatPath(L"%d%s%d", INT_MIN, L"-", 0).Wide(), L"-2147483648-0");
}

TEST(FormatPath, WhatIsFilledInStaysAsItIs) {
  EXPECT_EQ(FormatPath(L"%s", L"C:\\effects\\%s\\%d.eb").Wide(), L"C:\\effects\\%s\\%d.eb");
  EXPECT_EQ(FormatPath(L"%s\\effects\\%s", L"a\\effects\\b%s", L"\\effects\\").Wide(),
            L"a\\effects\\b%s/Effects/\\effects\\");
  EXPECT_EQ(FormatPath(L"%s\\Effects\\170", static_cast<const void*>(nullptr)).Wide(),
            L"/Effects/170");
  EXPECT_EQ(CString(nullptr).Wide(), L"");
  // Only whole folder names are changed.
  EXPECT_EQ(FormatPath(L"%s\\effects2\\myeffects\\effects", L"r").Wide(),
            L"r/effects2/myeffects/effects");

  CString path(L"before");
  path.Format(L"%s\\a", L"after");
  EXPECT_EQ(path.Wide(), L"after/a");
}

TEST(NativePath, IsUtf8WhateverTheLocale) {
  EXPECT_EQ(NativePath(L"/a b/\u00e9\u753b\U0001F3A8.png").native(),
            "/a b/\xc3\xa9\xe7\x94\xbb\xf0\x9f\x8e\xa8.png");
  for (int noCharacter : {0x110000, 0xd800, 0xdfff, -1})
    EXPECT_TRUE(NativePath({static_cast<wchar_t>(noCharacter)}).empty());
  EXPECT_EQ(NativePath(L"\x7f\u0080\u07ff\u0800\uffff\U00010000\U0010ffff").native(),
            "\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf");
}

TEST(LoadMaterialPixels, ReadsFilesOfARootThatIsNotAscii) {
  const test::TemporaryFolder folder;
  const auto picture = test::RandomPicture(5, 3);
  folder.Write(u8"\u753b/Effects/strip.png", test::EncodePng(picture));
  const std::wstring root = folder.Path().wstring() + L"/\u753b";
  int width = -1, height = -1;
  std::unique_ptr<unsigned char[]> block(
      LoadMaterialPixels(FormatPath(L"%s\\effects\\strip.png", root.c_str()), &width, &height));
  ASSERT_EQ(width, 5);
  ASSERT_EQ(height, 3);
  EXPECT_EQ(test::Bytes(block.get(), block.get() + 60), picture.bytes);

  block.reset(
      LoadMaterialPixels(FormatPath(L"%s\\Effects\\none.png", root.c_str()), &width, &height));
  EXPECT_TRUE(block);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
}

}  // namespace
}  // namespace tintwerk

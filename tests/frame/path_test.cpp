#include "frame/path.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

#include "frame/material.h"
#include "support/image_files.h"

namespace tintwerk {
namespace {

TEST(FormatPath, MapsTheTemplateAndLeavesWhatIsFilledIn) {
  const void* root = L"/opt/host";
  const void* null = nullptr;
  for (const auto& [path, expected] :
       {std::pair{FormatPath(L"%s\\Effects\\style\\%s", root, L"sucai29.jpg"),
                  L"/opt/host/Effects/style/sucai29.jpg"},
        {FormatPath(L"%s\\effects\\style\\lig%d", root, 12), L"/opt/host/Effects/style/lig12"},
        {FormatPath(L"%d%s%d", INT_MIN, L"-", 0), L"-2147483648-0"},
        {FormatPath(L"%s", L"C:\\effects\\%s\\%d.eb"), L"C:\\effects\\%s\\%d.eb"},
        {FormatPath(L"%s\\effects\\%s", L"a\\effects\\b%s", L"\\effects\\"),
         L"a\\effects\\b%s/Effects/\\effects\\"},
        {FormatPath(L"%s\\Effects\\170", null), L"/Effects/170"},
        // Only whole folder names are changed.
        {FormatPath(L"%s\\effects2\\myeffects\\effects", L"r"), L"r/effects2/myeffects/effects"},
        {CString(nullptr), L""}})
    EXPECT_EQ(path.Wide(), expected);
  CString path(L"before");
  path.Format(L"%s\\a", L"after");
  EXPECT_EQ(path.Wide(), L"after/a");
}

TEST(NativePath, IsUtf8WhateverTheLocale) {
  EXPECT_EQ(NativePath(L"/a b/\x7f\u0080\u07ff\u0800\uffff\U00010000\U0010ffff").native(),
            "/a b/\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf");
  for (int noCharacter : {0x110000, 0xd800, 0xdfff, -1})
    EXPECT_TRUE(NativePath({static_cast<wchar_t>(noCharacter)}).empty());
}

TEST(LoadMaterialPixels, ReadsFilesOfARootThatIsNotAscii) {
  const test::TemporaryFolder folder;
  const auto picture = test::RandomPicture(5, 3);
  folder.Write(u8"\u753b/Effects/strip.png", test::EncodePng(picture));
  const std::wstring root = folder.Path().wstring() + L"/\u753b";
  const auto load = [&](const wchar_t* path) {
    test::Picture loaded{-1, -1, {}};
    const std::unique_ptr<unsigned char[]> block(
        LoadMaterialPixels(FormatPath(path, root.c_str()), &loaded.width, &loaded.height));
    EXPECT_TRUE(block);
    loaded.bytes.assign(block.get(), block.get() + 4 * loaded.width * loaded.height);
    return loaded;
  };
  EXPECT_EQ(load(L"%s\\effects\\strip.png"), picture);
  EXPECT_EQ(load(L"%s\\Effects\\none.png"), (test::Picture{0, 0, {}}));
}

}  // namespace
}  // namespace tintwerk

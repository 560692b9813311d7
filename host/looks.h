// The looks that the library offers.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tintwerk/effect.h"
#include "tintwerk/math_define.h"

struct Category {
  std::string_view id;     ///< "BlackAndWhite"
  std::string_view title;  ///< "Black and white"
};

/// A look that can be given to a part of a picture as to the whole. `pixels` holds the pixels of `area`
/// alone, or of the whole picture if that is null; width and height are those of the whole.
using CropEntry = int(unsigned char* pixels, int width, int height, void* resourceRoot,
                      _ZV_2D_RECT* area, CObjProgress* progress, int progressLow, int progressHigh);

struct Look {
  std::string_view name;      ///< of the entry: "Effect_HuiYi"
  std::string_view title;     ///< "Faded memory"
  std::string_view category;  ///< its id
  std::string_view description;
  EffectEntry* apply;
  CropEntry* crop;  ///< null if the look needs the whole picture
};

/// All categories, in the order of a menu.
std::span<const Category> AllCategories();

/// All looks, in the order of the library's list.
std::span<const Look> AllLooks();

/// The looks of one category, or of all of them if that is null, in the order of a menu: those of a
/// category stand together.
std::vector<const Look*> LooksByCategory(const Category* only = nullptr);

/// Finds a category by id or title. Only letters and digits count, in either case.
/// @return null if there is none
const Category* FindCategory(std::string_view text);

/// Finds a look by name or title. Only letters and digits count, in either case, and "Effect_" may
/// be left out.
/// @return null if there is none
const Look* FindLook(std::string_view text);

/// A title as one word, by which FindLook finds its look: "faded-memory".
std::string Slug(std::string_view title);

/// Gives pixels a look. One that can be given to a part of a picture goes the same way for a whole
/// one: its entry without an area may draw with other tables.
/// @param area the part that the pixels are of a picture of this size; null for the whole
bool Give(const Look& look, unsigned char* pixels, int width, int height, std::wstring resources,
          _ZV_2D_RECT* area, CObjProgress* progress);

/// Says that no category is called `text`, and lists all.
std::string UnknownCategory(std::string_view text);

/// Says that no look is called `text`, and suggests the nearest names and titles, three at most.
std::string UnknownLook(std::string_view text);

/// Says which looks can be given to a part of a picture.
std::string CropLooks();

// Selective colour.
#pragma once

#include "tintwerk/export.h"

/// Settings of a selective-colour adjustment: for each of nine colour families the shift of cyan,
/// magenta and yellow. Objects are copied memberwise and own nothing.
class TINTWERK_API CSelectiveColor {
 public:
  /// The colour families in their fixed order.
  enum eColorType { Red, Yellow, Green, Cyan, Blue, Magenta, White, Gray, Black };

  /// All settings start at 0.
  CSelectiveColor() { Init(); }

  /// Sets all settings to 0.
  void Init() {
    for (auto& family : settings_)
      for (int& shift : family) shift = 0;
  }

 private:
  int settings_[9][3];  // [eColorType][cyan, magenta, yellow]
};

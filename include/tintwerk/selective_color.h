// Selective colour.
#pragma once

#include "tintwerk/export.h"

/// Shifts the cyan, magenta, yellow and black of single families of colours: the inks of the reds,
/// say, with all other colours as they were.
///
/// A pixel belongs to a family by how its channels compare, the more strongly the further they lie
/// apart:
///
/// | family               | pixels                            | weight                           |
/// |----------------------|-----------------------------------|----------------------------------|
/// | Red, Green, Blue     | of which it is the one largest    | max - mid                        |
/// | Cyan, Magenta, Yellow| of which their channel is least   | mid - min                        |
/// | White                | with all channels above 128       | 2 min - 255                      |
/// | Black                | with all channels below 128       | 255 - 2 max                      |
/// | Gray                 | all but pure black and pure white | 255 - |max - 128| - |min - 128|  |
///
/// A pixel can belong to several. Cyan acts on the red channel, magenta on green, yellow on blue.
/// Objects hold the settings and nothing else; copies copy them.
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

  /// Sets the shifts of a family in place of those before; another type changes nothing.
  /// @param cyan,magenta,yellow,black percent of ink to add, -100..100. Black counts for all three
  /// others.
  void SetSelectiveColor(eColorType type, int cyan, int magenta, int yellow, int black);

  /// Applies the settings, which stay, to an image in place; alpha stays.
  /// @param pixels 4 bytes each, blue, green, red, alpha; null does nothing
  /// @param width,height pixels; below 1, or a pixel count that no int holds, does nothing
  void Execute(unsigned char* pixels, int width, int height) const;

 private:
  // For every value of a channel the shifts as fractions of a weight: nine families of three pairs,
  // of a numerator + 128 and a denominator, for cyan on red, magenta on green and yellow on blue.
  using MapRow = unsigned char[54];

  static int MakeParam(int value, int black);
  static void InitMap(int value, MapRow* map, int column);
  void Update(const unsigned char* pixel, eColorType type, int weight, int& red, int& green,
              int& blue, const MapRow* map) const;

  int settings_[9][3];  // [eColorType][cyan, magenta, yellow]
};

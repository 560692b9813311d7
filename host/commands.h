// The subcommands of the program: one file each.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "filter_operations.h"
#include "run.h"
#include "tintwerk/math_define.h"

/// Exit codes. After a signal the exit code is 128 + its number.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;  ///< at least one picture was not written
inline constexpr int kRefused =
    2;  ///< nothing was begun: wrong arguments, no input, or no support files

struct ListOptions {
  std::string category;  ///< id or title; empty for all
  bool json = false;
};

/// Prints the looks on standard output, category by category. Throws Refusal if there is no such
/// category.
int List(const ListOptions& options);

struct ApplyOptions : RunOptions {
  std::vector<std::string> looks;   ///< one after another
  std::filesystem::path cube;       ///< of another tool, instead of looks, unless empty
  bool trilinear = false;           ///< between the cube's nodes, instead of tetrahedral
  double strength = 100;            ///< percent
  std::optional<_ZV_2D_RECT> crop;  ///< the part to write; only some looks can
  std::filesystem::path resources;  ///< empty for those of the installation
};

/// Gives pictures looks, or the colours of a cube. Throws Refusal, before anything is written, if
/// the arguments make no sense.
int Apply(const ApplyOptions& options);

struct GalleryOptions {
  std::filesystem::path input, output;
  int size = 1200;                  ///< pixels of the longer side, at most
  int quality = 85;                 ///< of the pictures, 1..100
  int jobs = 0;                     ///< looks at a time; 0 for one per processor
  std::filesystem::path resources;  ///< empty for those of the installation
};

/// Writes a page for the browser that shows every look on a photo, and its pictures, into a folder.
/// Throws Refusal if the photo cannot be read or the folder holds another page.
int Gallery(const GalleryOptions& options);

struct SheetOptions {
  std::filesystem::path input, output;
  std::string category;  ///< id or title; empty for all
  int tile = 200;        ///< pixels of a picture's longer side
  int columns = 5;
  SaveOptions save;
  int jobs = 0;                     ///< looks at a time; 0 for one per processor
  std::filesystem::path resources;  ///< empty for those of the installation
};

/// Writes one picture that shows a photo with every look, or those of a category, and their titles.
/// Throws Refusal if the photo cannot be read, or there is no such category or format.
int Sheet(const SheetOptions& options);

struct BlendOptions : RunOptions {
  std::string mode;
  std::filesystem::path top;
};

/// Blends a picture over others, scaled to their sizes if they differ. Throws Refusal if the mode or
/// the format is unknown, and std::exception if the upper picture cannot be read.
int Blend(const BlendOptions& options);

struct CubePackOptions {
  std::filesystem::path input, output;
  std::string layout = "new";  ///< "4x4", "new" or "8x8"
};

/// Packs a cube of another tool into a container of the library. Throws std::exception if a file
/// cannot be read or written.
int PackCubeFile(const CubePackOptions& options);

struct CubeExportOptions {
  std::string look;
  std::filesystem::path output;
  int size = 33;                    ///< nodes along each axis of a .cube file
  int level = 8;                    ///< of a HaldCLUT; its square is the nodes along each axis
  int tolerance = 16;               ///< levels of 255 by which the cube may differ from the look
  std::filesystem::path resources;  ///< empty for those of the installation
};

/// Writes a look as a cube for other tools. Throws Refusal if the look or the format is unknown, and
/// std::exception if the look depends on more than the pixel, the cube is too far from it or the
/// file cannot be written.
int ExportCube(const CubeExportOptions& options);

struct FilterOptions : RunOptions {
  const FilterOperation* operation = nullptr;
  std::vector<double> values;  ///< of its parameters
};

/// Applies one operation to pictures. Throws Refusal, before anything is written, if the arguments
/// make no sense.
int Filter(const FilterOptions& options);

struct SceneOptions {
  std::filesystem::path output;
  int width = 1200;  ///< pixels
  int height = 800;
};

/// Writes the built-in picture. Throws Refusal if the format cannot be written.
int Scene(const SceneOptions& options);

// The subcommands of the program: one file each.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "batch.h"
#include "filter_operations.h"
#include "tintwerk/math_define.h"

/// Exit codes. After a signal the exit code is 128 + its number.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;   ///< at least one picture was not written
inline constexpr int kRefused = 2;  ///< nothing was started: wrong arguments, or no support files

struct ListOptions {
  std::string category;  ///< id or title; empty for all
  bool json = false;
};

/// Prints the looks on standard output, category by category. Throws Refusal if there is no such
/// category.
int List(const ListOptions& options);

struct ApplyOptions {
  std::string look;
  std::filesystem::path cube;  ///< of another tool, instead of a look, unless empty
  std::vector<std::filesystem::path> inputs;
  std::filesystem::path output;
  BatchRules rules;
  double strength = 100;            ///< percent
  std::optional<_ZV_2D_RECT> crop;  ///< the part to write; only some looks can
  std::filesystem::path resources;  ///< empty for those of the installation
  int jobs = 0;                     ///< 0 for a number that suits the processors
  int threads = 0;                  ///< of each job; 0 for its share of the processors
};

/// Gives pictures a look, or the colours of a cube. Throws Refusal, before anything is written, if
/// the arguments make no sense.
int Apply(const ApplyOptions& options);

struct BlendOptions {
  std::string mode;
  std::filesystem::path base, top, output;
};

/// Blends a picture over another, scaled to its size if they differ. Throws Refusal if the mode or
/// the format is unknown, and std::exception if a picture cannot be read or written.
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
  std::filesystem::path resources;  ///< empty for those of the installation
};

/// Writes a look as a cube for other tools. Throws Refusal if the look or the format is unknown, and
/// std::exception if the look depends on more than the pixel or the file cannot be written.
int ExportCube(const CubeExportOptions& options);

struct FilterOptions {
  const FilterOperation* operation = nullptr;
  std::vector<double> values;  ///< of its parameters
  std::filesystem::path input, output;
  bool overwriteInput = false;
};

/// Applies one operation to a picture. Throws Refusal if the output cannot be written, and
/// std::exception if the operation fails.
int Filter(const FilterOptions& options);

struct SceneOptions {
  std::filesystem::path output;
  int width = 1200;  ///< pixels
  int height = 800;
};

/// Writes the built-in picture. Throws Refusal if the format cannot be written.
int Scene(const SceneOptions& options);

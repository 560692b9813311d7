// tintwerk cube: colour cubes in and out.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <string_view>

#include "commands.h"
#include "cube.h"
#include "look_function.h"
#include "looks.h"
#include "picture_io.h"
#include "resources.h"
#include "temporary_file.h"

namespace {

namespace fs = std::filesystem;

bool EndsIn(const fs::path& path, std::string_view extension) {
  return std::ranges::equal(path.extension().string(), extension,
                            [](unsigned char a, char b) { return std::tolower(a) == b; });
}

// A HaldCLUT takes its nodes as they lie.
Picture HaldOf(const Cube& cube) {
  const int side = static_cast<int>(std::lround(std::pow(cube.size, 1.5)));
  Picture picture = NewPicture(side, side);
  for (std::size_t i = 0; i < cube.nodes.size(); ++i) {
    for (int c = 0; c < 3; ++c)
      picture.pixels[4 * i + 2 - c] =
          static_cast<unsigned char>(std::lround(cube.nodes[i][c] * 255));
    picture.pixels[4 * i + 3] = 255;
  }
  return picture;
}

}  // namespace

int PackCubeFile(const CubePackOptions& options) {
  RefuseToReplace(options.input, options.output);
  const Cube cube = ReadCube(options.input);
  WriteWhole(options.output, PackContainer(cube, options.layout == "8x8" ? 64 : 16,
                                           options.layout == "8x8"   ? 4
                                           : options.layout == "4x4" ? 16
                                                                     : 17));
  return kDone;
}

int ExportCube(const CubeExportOptions& options) {
  const Look* look = FindLook(options.look);
  if (!look) throw Refusal(UnknownLook(options.look));
  const bool hald = EndsIn(options.output, ".png");
  if (!hald && !EndsIn(options.output, ".cube"))
    throw Refusal("'" + options.output.string() + "' ends neither in .cube nor in .png");
  RefuseToReplace({}, options.output);
  const fs::path resources = FindResources(options.resources, {{look}});
  const Cube cube = CubeOf(*look, hald ? options.level * options.level : options.size, resources);
  const int error = LargestError(*look, cube, resources);
  if (error > options.tolerance)
    throw std::runtime_error(std::string(look->name) +
                             " becomes no cube: it would be off by up to " + std::to_string(error) +
                             " levels of 255, and --tolerance allows " +
                             std::to_string(options.tolerance));
  if (hald)
    SavePicture(HaldOf(cube), options.output);
  else
    WriteCube(cube, std::string(look->name), options.output);
  return kDone;
}

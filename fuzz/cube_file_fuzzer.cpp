// Feeds the command's reader of `.cube` texts and HaldCLUT pictures.
#include <exception>

#include "cube.h"
#include "drawn.h"
#include "support/image_files.h"

extern "C" int LLVMFuzzerInitialize(int*, char*** arguments) {
  return VIPS_INIT((*arguments)[0]);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const tintwerk::test::TemporaryFolder folder;
  const auto path = folder.Write("file.cube", tintwerk::test::Bytes(data, data + size));
  try {
    const Cube cube = ReadCube(path);
    tintwerk::fuzz::Check(cube.size >= 2 || !cube.curve.empty());
    for (const Interpolation way : {Interpolation::Trilinear, Interpolation::Tetrahedral}) {
      const Colour value = ValueAt(cube, {0.3f, 0.99f, -1}, way);
      tintwerk::fuzz::Check(std::isfinite(value[0] + value[1] + value[2]));
    }
  } catch (const std::exception&) {
  }
  return 0;
}

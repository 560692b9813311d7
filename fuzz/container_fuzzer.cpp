// Feeds cube containers, map images, and files of planes to those who read them.
#include <omp.h>

#include "drawn.h"
#include "maps/map_image.h"
#include "maps/plane_file.h"
#include "support/image_files.h"
#include "tintwerk/cube_container.h"
#include "tintwerk/trilinear.h"

using namespace tintwerk;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::TemporaryFolder folder;
  static const bool one = (omp_set_num_threads(1), true);
  if (size < 1 || !one) return 0;
  // Half of them with a proper head and scrambling, which no damage gets past otherwise.
  const test::Bytes rest(data + 1, data + size);
  const auto path = folder.Write("file", data[0] & 8 ? PackCube(rest) : rest).wstring();
  const CString name(path.c_str());
  test::Bytes pixels = test::RandomBytes(4 * 7 * 5, 1);
  switch (data[0] & 7) {
    case 0:
      CTrilinear::Effect_VSCO_4x4(name, pixels.data(), 7, 5);
      break;
    case 1:
      CTrilinear::Effect_VSCO_8x8(name, pixels.data(), 7, 5);
      break;
    case 2:
      CTrilinear::Effect_VSCO_New(name, pixels.data(), 7, 5);
      break;
    case 3: {
      int width = -1, height = -1;
      unsigned char* const block = CTrilinear::LoadCryptFile(name, width, height);
      fuzz::Check(!block || (width >= 0 && height >= 0));
      CTrilinear::DeleteValue(block);
      break;
    }
    case 4: {
      const std::unique_ptr<unsigned char[]> table(new unsigned char[kMapRow * 256]);
      ReadMap(name, MapExtent::kOwnSize, 256, table.get());
      break;
    }
    case 5: {
      const std::unique_ptr<unsigned char[]> table(new unsigned char[kMapRow * 3]);
      ReadMap(name, MapExtent::kOwnSize, 3, table.get());
      break;
    }
    default: {
      const std::unique_ptr<unsigned char[]> bytes(new unsigned char[PlaneFile::kBytes]);
      RawFile file(name, "rb");
      if (file) file.Read(bytes.get(), PlaneFile::kBytes);
    }
  }
  return 0;
}

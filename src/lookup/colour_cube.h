// Cubes, ready to map pixels.
#pragma once

#include <cstdint>
#include <memory>

#include "frame/image.h"
#include "frame/path.h"
#include "lookup/cube_kernels.h"

namespace tintwerk {

/// The engines of CTrilinear, by the cubes that they take.
enum class CubeKind { k4x4, k8x8, kNew };

/// A cube that was read from its container. It is only read by what it maps, so that threads may
/// share it.
class ColourCube {
 public:
  /// Takes the place of the cube with that of a container.
  /// @return false if it cannot be read or decoded, or its picture has not the size of the kind
  /// @throw std::bad_alloc
  bool Open(const CString& path, CubeKind kind);

  /// Sends pixels through a cube that was opened.
  void Map(unsigned char* pixels, std::int64_t count) const;

 private:
  CubeKind kind_ = CubeKind::k4x4;
  PixelMemory picture_;
  std::unique_ptr<CubePairs> pairs_;  // of 64 levels they would overflow the caches
};

}  // namespace tintwerk

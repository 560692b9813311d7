#include "tintwerk/trilinear.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#include "frame/image.h"
#include "frame/parallel.h"
#include "frame/path.h"
#include "lookup/colour_cube.h"
#include "lookup/cube_kernels.h"
#include "lookup/cube_layout.h"

namespace tintwerk {
namespace {

/// A channel value between two levels of a cube.
struct Position {
  int low;
  int high;
  int weight;  // of `high`, in parts of a unit
};

template <class Cube>
Position Locate(unsigned char value, float scale, int unit) {
  constexpr int kTop = Cube::kLevels - 1;
  const float product = value * scale;
  const float at = product > 0 ? std::min(product, float{kTop}) : 0.0f;  // not a number: 0
  const int low = static_cast<int>(at);
  return {low, std::min(low + 1, kTop), static_cast<int>((at - low) * unit)};
}

template <class Cube>
void MapPixel(unsigned char* pixel, const unsigned char* cube, float scale, int first, int end) {
  const Position b = Locate<Cube>(pixel[0], scale, kUnit);
  const Position g = Locate<Cube>(pixel[1], scale, kUnit);
  const Position r = Locate<Cube>(pixel[2], scale, kRedUnit);
  for (int c = std::max(first, 0); c < std::min(end, 3); ++c) {
    const auto alongRed = [&](int green, int blue) {
      const int low = cube[Cube::Node(r.low, green, blue) + c];
      const int high = cube[Cube::Node(r.high, green, blue) + c];
      return (low * (kRedUnit - r.weight) + high * r.weight) >> 10;
    };
    const auto alongGreen = [&](int blue) {
      return (alongRed(g.low, blue) * (kUnit - g.weight) + alongRed(g.high, blue) * g.weight) >> 10;
    };
    const int mapped = alongGreen(b.high) * b.weight + alongGreen(b.low) * (kUnit - b.weight);
    pixel[c] = static_cast<unsigned char>(mapped >> 20);
  }
}

/// @param nodes the cube as the kernel takes it
template <class Cube>
void MapRuns(unsigned char* pixels, std::int64_t count, const unsigned char* cube, float scale,
             CubeKernel* kernel, const unsigned char* nodes) {
  constexpr std::int64_t kRun = 4096;
  ParallelFor((count + kRun - 1) / kRun, [=](std::int64_t i) {
    unsigned char* const run = pixels + 4 * kRun * i;
    const std::int64_t length = std::min(kRun, count - kRun * i);
    for (std::int64_t at = kernel(run, length, nodes); at < length; ++at)
      MapPixel<Cube>(run + 4 * at, cube, scale, 0, 3);
  });
}

bool MapImage(const CString& path, CubeKind kind, unsigned char* pixels, int width,
              int height) try {
  ColourCube cube;
  if (!IsWorkable(pixels, width, height) || !cube.Open(path, kind)) return false;
  cube.Map(pixels, *PixelCount(width, height));
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace

bool ColourCube::Open(const CString& path, CubeKind kind) {
  int width = 0, height = 0;
  kind_ = kind;
  picture_.reset(CTrilinear::LoadCryptFile(path, width, height));
  const int side = kind == CubeKind::k8x8 ? Cube64::kSide : Cube16::kSide;
  if (!picture_ || width != side || height != side) return false;
  if (kind != CubeKind::k8x8) pairs_ = std::make_unique<CubePairs>(picture_.get());
  return true;
}

void ColourCube::Map(unsigned char* pixels, std::int64_t count) const {
  const unsigned char* const cube = picture_.get();
  switch (kind_) {
    case CubeKind::k4x4:
      return MapRuns<Cube16>(pixels, count, cube, kSixteenths, MapGroups4x4, pairs_->bytes);
    case CubeKind::k8x8:
      return MapRuns<Cube64>(pixels, count, cube, kQuarters, MapGroups8x8, cube);
    case CubeKind::kNew:
      return MapRuns<Cube16>(pixels, count, cube, kSeventeenths, MapGroupsNew, pairs_->bytes);
  }
}

}  // namespace tintwerk

using namespace tintwerk;

bool CTrilinear::Effect_VSCO_4x4(CString path, unsigned char* pixels, int width, int height) {
  return MapImage(path, CubeKind::k4x4, pixels, width, height);
}

bool CTrilinear::Effect_VSCO_8x8(CString path, unsigned char* pixels, int width, int height) {
  return MapImage(path, CubeKind::k8x8, pixels, width, height);
}

bool CTrilinear::Effect_VSCO_New(CString path, unsigned char* pixels, int width, int height) {
  return MapImage(path, CubeKind::kNew, pixels, width, height);
}

void CTrilinear::Lut3D16(unsigned char* pixel, const unsigned char* cube, float scale, int first,
                         int end) {
  MapPixel<Cube16>(pixel, cube, scale, first, end);
}

void CTrilinear::Lut3D64(unsigned char* pixel, const unsigned char* cube, float scale, int first,
                         int end) {
  MapPixel<Cube64>(pixel, cube, scale, first, end);
}

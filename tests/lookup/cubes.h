// Cubes that tests make for themselves, and a plain twin of the lookup.
#pragma once

#include <algorithm>
#include <filesystem>

#include "frame/path.h"
#include "support/image_files.h"
#include "tintwerk/cube_container.h"
#include "tintwerk/trilinear.h"

/// The private operations that tests look at.
struct TrilinearInternals : CTrilinear {
  static constexpr auto Scramble = &EnCrypt;
  static constexpr auto Lut16 = &Lut3D16, Lut64 = &Lut3D64;
};

namespace tintwerk::test {

/// One of the three effects, and what its cubes look like.
struct CubeKind {
  bool (*effect)(CString path, unsigned char* pixels, int width, int height);
  int levels;
  int tiles;  // in a row of the picture
  float scale;

  int Side() const { return levels * tiles; }
};
inline constexpr CubeKind kCube4x4 = {CTrilinear::Effect_VSCO_4x4, 16, 4, 0.062499993f};
inline constexpr CubeKind kCubeNew = {CTrilinear::Effect_VSCO_New, 16, 4, 0.05882353f};
inline constexpr CubeKind kCube8x8 = {CTrilinear::Effect_VSCO_8x8, 64, 8, 0.24999994f};

inline unsigned char* NodeOf(const CubeKind& kind, Picture& cube, int r, int g, int b) {
  return cube.At(b % kind.tiles * kind.levels + r, b / kind.tiles * kind.levels + g);
}

inline Picture RandomCube(const CubeKind& kind, unsigned seed) {
  return RandomPicture(kind.Side(), kind.Side(), seed);
}

/// One pixel by the definition of the lookup, in 64 bits.
inline void PlainLookup(const CubeKind& kind, Picture& cube, unsigned char* pixel) {
  const float fb = pixel[0] * kind.scale, fg = pixel[1] * kind.scale, fr = pixel[2] * kind.scale;
  const int b0 = int(fb), g0 = int(fg), r0 = int(fr);
  const int b1 = std::min(b0 + 1, kind.levels - 1), g1 = std::min(g0 + 1, kind.levels - 1),
            r1 = std::min(r0 + 1, kind.levels - 1);
  const std::int64_t wr = std::int64_t((double(fr) - r0) * 1048576.0),
                     wg = std::int64_t((double(fg) - g0) * 1024.0),
                     wb = std::int64_t((double(fb) - b0) * 1024.0);
  for (int c = 0; c < 3; ++c) {
    const auto a = [&](int g, int b) {
      return (NodeOf(kind, cube, r0, g, b)[c] * (1048576 - wr) +
              NodeOf(kind, cube, r1, g, b)[c] * wr) >>
             10;
    };
    const std::int64_t c0 = (a(g0, b0) * (1024 - wg) + a(g1, b0) * wg) >> 10;
    const std::int64_t c1 = (a(g0, b1) * (1024 - wg) + a(g1, b1) * wg) >> 10;
    pixel[c] = static_cast<unsigned char>((c1 * wb + c0 * (1024 - wb)) >> 20);
  }
}

inline Picture PlainLookup(const CubeKind& kind, Picture& cube, Picture image) {
  for (std::size_t i = 0; i < image.bytes.size(); i += 4) PlainLookup(kind, cube, &image.bytes[i]);
  return image;
}

inline CString PathOf(const std::filesystem::path& file) {
  return CString(file.wstring().c_str());
}

inline std::filesystem::path WriteCube(const TemporaryFolder& folder,
                                       const std::filesystem::path& name, const Picture& cube) {
  return folder.Write(name, PackCube(EncodePng(cube)));
}

}  // namespace tintwerk::test

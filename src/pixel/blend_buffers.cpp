#include "pixel/blend_buffers.h"

#include <algorithm>

#include "frame/parallel.h"
#include "pixel/blend.h"
#include "pixel/blend_kernels.h"

namespace tintwerk {
namespace {

// Pixels of one iteration: some cache lines, many kernel groups.
constexpr std::int64_t kChunk = 4096;

// Runs groups of `size` pixels through a form, in chunks, in parallel.
template <class Form, class... Opacity>
void RunGroups(unsigned char* base, const unsigned char* source, std::int64_t groups, int size,
               Form form, Opacity... opacity) {
  const std::int64_t perChunk = kChunk / size;
  ParallelFor((groups + perChunk - 1) / perChunk, [=](std::int64_t chunk) {
    const std::int64_t first = chunk * perChunk;
    const std::int64_t at = 4 * size * first;
    form(base + at, source + at, std::min(perChunk, groups - first), opacity...);
  });
}

template <class Form, class... Opacity>
void Drive(unsigned char* base, const unsigned char* source, int count, Form scalar, Form four,
           Form eight, const CpuLevelRecord& level, int simdForFour, Opacity... opacity) {
  if (count <= 0) return;
  int size = 1;
  Form form = scalar;
  if (eight && level.wide > 0) {
    size = 8;
    form = eight;
  } else if (four && level.simd >= simdForFour) {
    size = 4;
    form = four;
  }
  const int groups = count / size;
  RunGroups(base, source, groups, size, form, opacity...);
  const std::int64_t done = std::int64_t{groups} * size;
  if (done < count) scalar(base + 4 * done, source + 4 * done, count - done, opacity...);
}

// The scalar form of an operation on single pixels.
template <void (*Operation)(unsigned char*, const unsigned char*)>
void Each(unsigned char* base, const unsigned char* source, std::int64_t count) {
  for (std::int64_t i = 0; i < count; ++i) Operation(base + 4 * i, source + 4 * i);
}
template <void (*Operation)(unsigned char*, const unsigned char*, float)>
void EachAt(unsigned char* base, const unsigned char* source, std::int64_t count, float opacity) {
  for (std::int64_t i = 0; i < count; ++i) Operation(base + 4 * i, source + 4 * i, opacity);
}

void AlphaTrunc(unsigned char* base, const unsigned char* source) {
  const float p = source[3] / 255.0f;
  for (int c = 0; c < 3; ++c)
    base[c] = static_cast<unsigned char>(static_cast<int>(source[c] * p + base[c] * (1 - p)));
}

void ScreenRun(unsigned char* base, const unsigned char* source, std::int64_t count) {
  BlendRun(base, source, count, BlendModeScreen);
}
void SoftLightRun(unsigned char* base, const unsigned char* source, std::int64_t count) {
  BlendRun(base, source, count, BlendModeSoftLight);
}

constexpr BlendForm kNone = nullptr;
constexpr OpacityForm kNoneAt = nullptr;

}  // namespace

void BlendBuffers(unsigned char* base, const unsigned char* source, int count, BlendForm scalar,
                  BlendForm four, BlendForm eight, const CpuLevelRecord& level) {
  Drive(base, source, count, scalar, four, eight, level, 5);
}

void BlendBuffersOpacity(unsigned char* base, const unsigned char* source, int count, float opacity,
                         OpacityForm scalar, OpacityForm four, OpacityForm eight,
                         const CpuLevelRecord& level) {
  Drive(base, source, count, scalar, four, eight, level, 5, opacity);
}

void BlendBuffersAlphaTrunc(unsigned char* base, const unsigned char* source, int count,
                            const CpuLevelRecord& level) {
  Drive<BlendForm>(base, source, count, Each<AlphaTrunc>, KernelAlphaTrunc4, kNone, level, 2);
}

void BlendBuffersHueSat(unsigned char* base, const unsigned char* source, int count) {
  BlendBuffers(base, source, count, BlendHueSatHSL, kNone, kNone);
}

void BlendBuffersAlphaOver(unsigned char* base, const unsigned char* source, int count) {
  BlendBuffers(base, source, count, Each<BlendAlphaOver>, kNone, kNone);
}

void BlendBuffersSoftLight(unsigned char* base, const unsigned char* source, int count,
                           const CpuLevelRecord& level) {
  BlendBuffers(base, source, count, SoftLightRun, KernelSoftLight4, kNone, level);
}

void BlendBuffersScreen(unsigned char* base, const unsigned char* source, int count,
                        const CpuLevelRecord& level) {
  BlendBuffers(base, source, count, ScreenRun, KernelScreen4, kNone, level);
}

void BlendBuffersColorHSB(unsigned char* base, const unsigned char* source, int count,
                          float opacity) {
  BlendBuffersOpacity(base, source, count, opacity, BlendColorHSB, kNoneAt, kNoneAt);
}

void BlendBuffersFixedTint(unsigned char* base, const unsigned char* source, int count,
                           float opacity) {
  BlendBuffersOpacity(base, source, count, opacity, EachAt<BlendFixedTint>, kNoneAt, kNoneAt);
}

}  // namespace tintwerk

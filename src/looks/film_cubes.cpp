// Film looks: one colour cube each.
#include <cstdint>
#include <utility>

#include "frame/path.h"
#include "looks/recipe.h"
#include "tintwerk/trilinear.h"

using namespace tintwerk;

namespace {

// Without its cube, or the memory for it, the image stays as it was.
bool Through(const Call& call, CubeKind kind, const wchar_t* name) try {
  if (!call.IsWorkable()) return false;
  Files files(call);
  const ColourCube& cube = files.Cube(name, kind);
  if (!files) return false;
  cube.Map(call.pixels, call.Count());
  return true;
} catch (const std::bad_alloc&) {
  if (call.store) throw;
  return false;
}

// Reports its end only.
int Finished(const Call& call, CubeKind kind, const wchar_t* name) {
  const bool mapped = Through(call, kind, name);
  call.Report(static_cast<float>(call.high));
  return mapped;
}

int Reported(const Call& call, CubeKind kind, const wchar_t* name) {
  call.Report(static_cast<float>(call.low));
  return Finished(call, kind, name);
}

// Succeeds without its file too.
int Guarded(const Call& call, CubeKind kind, const wchar_t* name) {
  if (!call.IsWorkable()) return 0;
  Through(call, kind, name);
  return 1;
}

// One of twelve steps of an adjustment; others do nothing.
void Step(const Call& call, int step, CString path) {
  if (step >= 1 && step <= 12)
    CTrilinear::Effect_VSCO_4x4(std::move(path), call.pixels, call.width, call.height);
}

}  // namespace

#define FILM_LOOK(entry, Frame, kind, file) LOOK_ENTRY(entry, Frame(call, CubeKind::kind, file))
#define STYLE_LOOK(entry, file) FILM_LOOK(entry, Finished, k4x4, L"style\\" file)

STYLE_LOOK(Effect_VSCO_A2, L"a2")
STYLE_LOOK(Effect_VSCO_A3, L"a3")
STYLE_LOOK(Effect_VSCO_B2, L"b2")
STYLE_LOOK(Effect_VSCO_B4, L"b4")
STYLE_LOOK(Effect_VSCO_C1, L"c1")
STYLE_LOOK(Effect_VSCO_G2, L"g2")
STYLE_LOOK(Effect_VSCO_H2, L"h2")
STYLE_LOOK(Effect_VSCO_K1, L"k1")
STYLE_LOOK(Effect_VSCO_M4, L"m4")
STYLE_LOOK(Effect_VSCO_M5, L"m5")
STYLE_LOOK(Effect_VSCO_P1, L"p1")
STYLE_LOOK(Effect_VSCO_P2, L"p2")
STYLE_LOOK(Effect_VSCO_P4, L"p4")
STYLE_LOOK(Effect_VSCO_P5, L"p5")
STYLE_LOOK(Effect_VSCO_P6, L"p6")
STYLE_LOOK(Effect_VSCO_P7, L"p7")
STYLE_LOOK(Effect_VSCO_P9, L"p9")
STYLE_LOOK(Effect_VSCO_S4, L"s4")
STYLE_LOOK(Effect_VSCO_SE1, L"se1")
STYLE_LOOK(Effect_VSCO_SE2, L"se2")
STYLE_LOOK(Effect_VSCO_T1, L"t1")
STYLE_LOOK(Effect_VSCO_T2, L"t2")
STYLE_LOOK(Effect_VSCO_T3, L"t3")
STYLE_LOOK(Effect_VSCO_X3, L"x3")
STYLE_LOOK(Effect_VSCO_X4, L"x4")
STYLE_LOOK(Effect_VSCO_X6, L"x6")
STYLE_LOOK(Effect_VSCO_H5, L"H5")
STYLE_LOOK(Effect_VSCO_HeiBai, L"gray")
STYLE_LOOK(Effect_VSCO_1970, L"pomelo19")

FILM_LOOK(Effect_ChenGuang, Reported, kNew, L"171")
FILM_LOOK(Effect_FeiCui, Reported, kNew, L"181")
FILM_LOOK(Effect_LiRi, Reported, kNew, L"178")
FILM_LOOK(Effect_QingLiang, Reported, k8x8, L"style\\pomelo3")
FILM_LOOK(Effect_WuCha, Reported, k8x8, L"style\\pomelo10")
FILM_LOOK(Effect_MiDou, Guarded, kNew, L"170")
FILM_LOOK(Effect_NaTie, Guarded, kNew, L"167")
FILM_LOOK(Effect_QuQi, Guarded, kNew, L"169")
FILM_LOOK(Effect_RiChu, Guarded, kNew, L"180")
FILM_LOOK(Effect_RuoKeKe, Guarded, kNew, L"283")
FILM_LOOK(Effect_ShaLou, Guarded, kNew, L"183")
FILM_LOOK(Effect_YangPiJuan, Guarded, kNew, L"182")
FILM_LOOK(Effect_YeCan, Guarded, kNew, L"166")
FILM_LOOK(Effect_YueGuang, Guarded, kNew, L"284")

#undef STYLE_LOOK
#undef FILM_LOOK

int CEffect::LSC_Class(unsigned char* pixels, int width, int height, int light, int contrast,
                       int saturation, void* resourceRoot, CObjProgress* progress, int progressLow,
                       int progressHigh) try {
  if (!IsWorkable(pixels, width, height)) return 0;
  const Call call{pixels, width, height, resourceRoot, progress, progressLow, progressHigh};
  const auto path = [&](const wchar_t* name, int step) {
    return FormatPath(name, resourceRoot, step);
  };
  // Before the first step, lest memory runs out between them.
  CString lightPath = path(L"%s\\Effects\\style\\lig%d", light);
  CString contrastPath = path(L"%s\\Effects\\style\\con%d", contrast);
  CString saturationPath = path(L"%s\\Effects\\style\\sat%d", saturation);
  const auto span = static_cast<float>(std::int64_t{progressHigh} - progressLow);
  Step(call, light, std::move(lightPath));
  call.Report(span * 0.33f + progressLow);
  Step(call, contrast, std::move(contrastPath));
  call.Report(span * 0.67f + progressLow);
  Step(call, saturation, std::move(saturationPath));
  call.Report(static_cast<float>(progressHigh));
  return 1;
} catch (const std::bad_alloc&) {
  return 0;
}

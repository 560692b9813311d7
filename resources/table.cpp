#include "table.h"

#include "blend_maps.h"
#include "curves.h"
#include "festival.h"
#include "film_grades.h"
#include "light_leaks.h"
#include "light_pictures.h"
#include "paper.h"
#include "plane_files.h"
#include "raw_masks.h"
#include "vignettes.h"

namespace tintwerk::paint {
namespace {

std::vector<File> AllFiles() {
  std::vector<File> table = {
      // Pictures.
      {"style/LL17.png", BokehLeak},
      {"zvkr_festival_3.png", FestiveFrame},
      {"huiyi1.jpg", AgedPaper{.width = 1500, .height = 1000, .seed = 1974}},
      {"sucai12.jpg", SunHalo},
      {"zvkr_festival_3b.jpg", FestiveColors},
      {"zvkr_jj_001.jpg", MorningHaze},
      {"zvkr_jj_002.jpg", PrintGrain},
      {"zvkr_jj_004.jpg", DustyBeam},
      {"zvtk_071_b.jpg", ColorLights},
      {"zvtk_fzl_3a.jpg", RoseBokeh},
      {"zvtk_fzl_4a.jpg", WindowLight},
      {"zvtk_fzl_6a.jpg", DuskSky},
      {"zvtk_fzl_7a.jpg", SlideMount},
      {"zvtk_fzl_7b.jpg", CrossFade},
      {"zvtk_fzl_7c.jpg", FilmDust},
      {"style/Leak1.jpg", OrangeEdgeLeak},
      {"style/Leak6.jpg", GoldenCornerLeak},
      {"style/Leak7.jpg", RedBandLeak},
      {"style/Leak9.jpg", MagentaDiagonalLeak},
      {"style/Leak15.jpg", BurntEndLeak},
      {"style/light-leak-2.jpg", PeachCornerLeak},

      // Raw masks.
      {"zvkr_cy.eb", TunnelMask},
      {"zvkr_lomo_16.eb", ToyLensMasks},

      // Studio looks, red, green and blue plane. The classic print: smooth skin, a slight glow,
      // creamy lights.
      {"zvkr_studio_0.eb",
       PlaneFile{
           {StudioPrint{.texture = 0.25,
                        .glow = 0.34,
                        .tone = {.bend = 0.03, .contrast = 0.2, .black = 0.035}},
            StudioPrint{.texture = 0.25,
                        .glow = 0.29,
                        .tone = {.bend = -0.06, .contrast = 0.2, .black = 0.03}},
            StudioPrint{.texture = 0.25,
                        .glow = 0.2,
                        .tone = {.bend = -0.09, .contrast = 0.12, .black = 0.06, .white = 0.97}}}}},
      // Cool violet: a soft dream of itself, paled, then tinted. Its planes serve all channels; in
      // the first one the blurred tone is the high key.
      {"zvkr_studio_1.eb",
       PlaneFile{{[](double blurred, double sharp) {
                    return StudioPrint{.texture = 0.4, .edges = 1, .glow = 0.25}(sharp, blurred);
                  },
                  PictureBlend{.blend = SoftLight, .strength = 0.55}},
                 {{{0, 22}, {64, 70}, {128, 134}, {192, 195}, {255, 250}},
                  {{0, 14}, {64, 58}, {128, 121}, {192, 188}, {255, 248}},
                  {{0, 38}, {64, 88}, {128, 148}, {192, 203}, {255, 252}}}}},
      // Cool blue: crisp and clear, blue in the shadows, white lights.
      {"zvkr_studio_2.eb",
       PlaneFile{
           {StudioPrint{.texture = 1.3, .edges = 1.7, .tone = {.bend = -0.12, .contrast = 0.35}},
            StudioPrint{.texture = 1.3,
                        .edges = 1.7,
                        .tone = {.bend = 0.03, .contrast = 0.3, .black = 0.01}},
            StudioPrint{.texture = 1.3,
                        .edges = 1.7,
                        .tone = {.bend = 0.14, .contrast = 0.15, .black = 0.06}}}}},
      // Warm yellow: a soft afternoon, amber lights over brown shadows.
      {"zvkr_studio_3.eb",
       PlaneFile{
           {StudioPrint{.texture = 0.5,
                        .edges = 1.1,
                        .glow = 0.14,
                        .tone = {.bend = 0.16, .contrast = 0.15, .black = 0.06}},
            StudioPrint{.texture = 0.5,
                        .edges = 1.1,
                        .glow = 0.12,
                        .tone = {.bend = 0.04, .contrast = 0.2, .black = 0.03}},
            StudioPrint{.texture = 0.5,
                        .edges = 1.1,
                        .glow = 0.04,
                        .tone = {.bend = -0.26, .contrast = 0.15, .black = 0.04, .white = 0.88}}}}},
      // Cool green: crisp and matt, sea green shadows.
      {"zvkr_studio_5.eb",
       PlaneFile{
           {StudioPrint{.texture = 1.2,
                        .edges = 1.5,
                        .tone = {.bend = -0.14, .contrast = 0.2, .black = 0.03, .white = 0.97}},
            StudioPrint{.texture = 1.2,
                        .edges = 1.5,
                        .tone = {.bend = 0.12, .contrast = 0.15, .black = 0.08, .white = 0.98}},
            StudioPrint{.texture = 1.2,
                        .edges = 1.5,
                        .tone = {.bend = 0.0, .contrast = 0.1, .black = 0.09, .white = 0.93}}}}},

      // Looks of the image (high key) under a picture. The second plane of the first sets what came
      // out (high key) against the image as it was, which gives the contrast back.
      {"zvkr_quxian_3.eb",
       PlaneFile{{PictureBlend{.blend = Screen, .strength = 0.9},
                  PictureBlend{.blend = SoftLight, .strength = 0.22, .tone = {.bend = -0.12}}}}},
      {"zvkr_quxian_4.eb", PlaneFile{{PictureBlend{.blend = SoftLight, .wash = 0.08}}}},
      {"zvkr_quxian_6.eb",
       PlaneFile{{PictureBlend{.blend = SoftLight, .wash = 0.1, .tone = {.contrast = 0.15}}}}},
      {"zvkr_quxian_7.eb",
       PlaneFile{{PictureBlend{.blend = Multiply, .strength = 0.8, .tone = {.bend = 0.1}},
                  PictureBlend{.blend = SoftLight, .strength = 0.8, .wash = 0.05},
                  PictureBlend{.blend = Screen, .tone = {.contrast = 0.3, .black = 0.03}}}}},
      {"zvkr_quxian_10_0.eb",
       PlaneFile{{PictureBlend{.blend = Screen, .strength = 0.6},
                  PictureBlend{.blend = SoftLight, .tone = {.bend = -0.12}}}}},
      // Its first plane is not read. The second sets the faded print against the untouched image.
      {"zvkr_quxian_10_1.eb",
       PlaneFile{{OwnTone{}, PictureBlend{.blend = SoftLight, .strength = 0.2, .wash = 0.15},
                  PictureBlend{
                      .blend = Screen, .strength = 0.75, .tone = {.bend = -0.1, .black = 0.02}}}}},

      // Looks of the image under a gradient of full colours: the first plane, whose diagonal alone
      // is read, is a tone curve, the second one the blend. The third file serves three looks.
      {"zvkr_NewGt_1.eb",
       PlaneFile{{OwnTone{{.bend = 0.03, .contrast = 0.2, .black = 0.03}},
                  PictureBlend{.blend = PastelLight, .strength = 0.24, .wash = 0.035}}}},
      {"zvkr_NewGt_2.eb",
       PlaneFile{{OwnTone{{.bend = 0.05, .contrast = 0.3}},
                  PictureBlend{.blend = Overlay, .strength = 0.18, .wash = 0.08}}}},
      {"zvkr_NewGt_3.eb",
       PlaneFile{{OwnTone{{.contrast = 0.25, .black = 0.02}},
                  PictureBlend{.blend = PastelLight, .strength = 0.45, .wash = 0.04}}}},

      // Blends at a strength in percent. A colour composite is a soft light of the colour, as in
      // the library's own operation of that name. An image overlay is the plain Overlay: its users
      // screen a picture on first, and this has to give back the contrast.
      {"CompositeColor.png", BlendMap{SoftLight}},
      {"hqc_Exclusion.png", BlendMap{Exclusion}},
      {"hqc_VividLight.png", BlendMap{VividLight}},
      {"huiyi4.png", BlendMap{AgedPrint}},
      {"overlayMap.png", BlendMap{Overlay}},
      {"PSMultiple.png", BlendMap{Multiply}},
      {"PSScreen.png", BlendMap{Screen}},
      {"PSScreen35.png", BlendMap{Screen, 35}},
      {"PSScreen50.png", BlendMap{Screen, 50}},
      {"ZVImageOverlay.png", BlendMap{Overlay}},
      {"ZVMultiple50.png", BlendMap{Multiply, 50}},
      {"ZVOverlay25.png", BlendMap{Overlay, 25}},
      {"ZVOverlay60.png", BlendMap{Overlay, 60}},
      {"ZVPixelSoftGlow.png", BlendMap{SoftGlow}},
      {"ZVQCGYEx.png", BlendMap{HaloLight}},
      {"ZVScreen.png", BlendMap{Screen}},
      {"ZVSoftLight.png", BlendMap{SoftLight}},
      {"ZVSoftlight.png", BlendMap{SoftLight}},
      {"ZVSoftLight60.png", BlendMap{SoftLight, 60}},
      {"ZVVividLight50.png", BlendMap{VividLight, 50}},
      {"style/overlayMap.png", BlendMap{Overlay}},
      {"style/PSOverlay30.png", BlendMap{Overlay, 30}},
      {"style/PSOverlay40.png", BlendMap{Overlay, 40}},
      {"style/PSOverlay60.png", BlendMap{Overlay, 60}},
      {"style/PSScreen.png", BlendMap{Screen}},

      // Blends of a value with itself.
      {"hqc_SoftLight.png", BlendStrip{SoftLight}},
      {"screen30.png", BlendStrip{Screen, 30}},

      // Vignettes. The second is the softer and leaves the rim warm: red falls least, blue most.
      {"vignetteMap.png",
       VignetteMap{.darkening = {0.44, 0.44, 0.44}, .highlight_hold = 0.35, .delay = 0.4}},
      {"style/VignetteMap.png",
       VignetteMap{.darkening = {0.36, 0.40, 0.46}, .highlight_hold = 0.4, .delay = 0.4}},

      // An eighties snapshot, darker than it is meant, because screen30.png follows: magenta in the
      // shadows, yellow in the lights, so red is over green everywhere and blue crosses both.
      {"80smap.png", CurveStrip{.red = {{0, 16}, {64, 51}, {128, 125}, {192, 199}, {255, 249}},
                                .green = {{0, 7}, {64, 47}, {128, 117}, {192, 189}, {255, 244}},
                                .blue = {{0, 21}, {64, 56}, {128, 113}, {192, 170}, {255, 219}}}},

      // A faded print: cyan in the shadows, cream in the lights; then its last, gentle S-curve.
      {"huiyi2.png", CurveStrip{.red = {{0, 24}, {64, 80}, {128, 150}, {192, 209}, {255, 250}},
                                .green = {{0, 34}, {64, 86}, {128, 143}, {192, 196}, {255, 238}},
                                .blue = {{0, 38}, {64, 85}, {128, 134}, {192, 180}, {255, 214}}}},
      {"huiyi3.png", CurveStrip{.red = {{0, 6}, {64, 60}, {128, 131}, {192, 200}, {255, 252}},
                                .green = {{0, 6}, {64, 60}, {128, 131}, {192, 200}, {255, 252}},
                                .blue = {{0, 6}, {64, 60}, {128, 131}, {192, 200}, {255, 252}}}},
  };
  // Colour cubes, each of which tells its recipe where it stands.
  for (const std::span<const CubeFile> cubes : {FilmGrades(), AdjustmentGrades()})
    for (const CubeFile& file : cubes) table.push_back({file.name, file.cube});
  return table;
}

}  // namespace

std::span<const File> FileTable() {
  static const std::vector<File> table = AllFiles();
  return table;
}

}  // namespace tintwerk::paint

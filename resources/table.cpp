#include "table.h"

#include "blend_maps.h"
#include "curves.h"
#include "paper.h"
#include "vignettes.h"

namespace tintwerk::paint {

std::span<const File> FileTable() {
  static const File table[] = {
      // Pictures.
      {"huiyi1.jpg", AgedPaper{.width = 1500, .height = 1000, .seed = 1974}},

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
  return table;
}

}  // namespace tintwerk::paint

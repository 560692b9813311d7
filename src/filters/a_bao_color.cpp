// A look through Lab with its second colour axis tied to the first.
#include <cmath>

#include "filters/rows.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

// Lifts the middle of every channel before the colour is changed.
constexpr ToneTable kLift = {
    0,   1,   2,   3,   4,   5,   7,   8,   9,   10,  11,  12,  14,  15,  16,  17,  18,  19,  21,
    22,  23,  24,  25,  26,  28,  29,  30,  31,  32,  33,  35,  36,  37,  38,  39,  40,  42,  43,
    44,  45,  46,  47,  48,  50,  51,  52,  53,  54,  55,  57,  58,  59,  60,  61,  62,  63,  65,
    66,  67,  68,  69,  70,  71,  72,  74,  75,  76,  77,  78,  79,  80,  82,  83,  84,  85,  86,
    87,  88,  89,  90,  92,  93,  94,  95,  96,  97,  98,  99,  100, 101, 103, 104, 105, 106, 107,
    108, 109, 110, 111, 112, 113, 114, 115, 117, 118, 119, 120, 121, 122, 123, 124, 125, 126, 127,
    128, 129, 130, 131, 132, 133, 134, 135, 136, 137, 138, 139, 140, 141, 143, 143, 144, 145, 146,
    147, 148, 149, 150, 151, 152, 153, 154, 155, 156, 157, 158, 159, 160, 161, 162, 163, 164, 165,
    166, 167, 167, 168, 169, 170, 171, 172, 173, 174, 175, 176, 177, 178, 179, 179, 180, 181, 182,
    183, 184, 185, 186, 187, 188, 188, 189, 190, 191, 192, 193, 194, 195, 195, 196, 197, 198, 199,
    200, 201, 202, 202, 203, 204, 205, 206, 207, 208, 208, 209, 210, 211, 212, 213, 214, 214, 215,
    216, 217, 218, 219, 220, 220, 221, 222, 223, 224, 225, 225, 226, 227, 228, 229, 230, 230, 231,
    232, 233, 234, 235, 235, 236, 237, 238, 239, 240, 240, 241, 242, 243, 244, 245, 245, 246, 247,
    248, 249, 250, 250, 251, 252, 253, 254, 255,
};

// Lightness of the Lab model, on the scale of bytes.
double LabCurve(double t) {
  return t >= 0.008856 ? std::cbrt(t) : t * 7.787 + 0.137931;
}

void Recolour(unsigned char* pixel) {
  const double r = kLift[pixel[2]], g = kLift[pixel[1]], b = kLift[pixel[0]];
  const double fy = LabCurve(0.212671 * r + 0.71516 * g + 0.072169 * b);
  const double fx = LabCurve((0.412453 * r + 0.35758 * g + 0.180423 * b) / 0.950456);
  const double a = (fx - fy) * 500.0;
  const double y = fy >= 0.206893 ? fy * fy * fy : (fy - 0.137931) / 7.787;
  const double c = std::cbrt(y);
  const double p = a / 500.0 + c;
  const double q = c - a / 200.0;
  const double x = p * 0.950456 * p * p;
  const double z = q * 1.088754 * q * q;
  pixel[2] = ClampToByte(3.240479 * x - 1.53715 * y - 0.498535 * z);
  pixel[1] = ClampToByte(1.875992 * y - 0.969256 * x + 0.041556 * z);
  pixel[0] = ClampToByte(0.055648 * x - 0.204043 * y + 1.057311 * z);
}

}  // namespace

int CPixelProcess::ABaoColor(unsigned char* pixels, int width, int height, CObjProgress* progress,
                             int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  ForEachPixel(pixels, width, height, RowProgress(progress, progressLow, progressHigh, height),
               Recolour);
  return 1;
}

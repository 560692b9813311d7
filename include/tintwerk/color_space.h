// Colour conversions.
#pragma once

#include "tintwerk/export.h"
#include "tintwerk/platform.h"

/// Conversions between red, green, blue bytes and other colour models, all static. Arguments come
/// in the order red, green, blue. The two directions are not exact inverses. SFDSP has the first
/// four too, with other rounding.
class TINTWERK_API CColorSpace {
 public:
  CColorSpace() = default;
  CColorSpace(const CColorSpace&) {}
  virtual ~CColorSpace() = default;
  CColorSpace& operator=(const CColorSpace&) { return *this; }

  /// Hue, saturation, brightness.
  /// @param R,G,B 0..255
  /// @param H degrees, above 0 to 360 for colours and exactly 0 for greys; pure red has 360
  /// @param S,brightness 0..1
  /// @return 1
  static int RGBtoHSB(int R, int G, int B, float& H, float& S, float& brightness);
  /// The inverse. H = 0 is a grey whatever S is. @return 1
  static int HSBtoRGB(float H, float S, float brightness, unsigned char& R, unsigned char& G,
                      unsigned char& B);

  /// Hue, saturation, lightness, all 0..255. Greys have hue 170. @return 1
  static int RGBtoHSL(unsigned char R, unsigned char G, unsigned char B, unsigned char& H,
                      unsigned char& S, unsigned char& L);
  static int HSLtoRGB(unsigned char H, unsigned char S, unsigned char L, unsigned char& R,
                      unsigned char& G, unsigned char& B);

  /// Hue, lightness, saturation, all 0..1.
  static void RGBtoHLS(unsigned char R, unsigned char G, unsigned char B, double& H, double& L,
                       double& S);
  static void HLStoRGB(const double& H, const double& L, const double& S, unsigned char& R,
                       unsigned char& G, unsigned char& B);
  static tagRGBQUAD HLStoRGB(const double& H, const double& L, const double& S);

  /// Hue, saturation, value, all 0..1.
  static void RGBtoHSV(unsigned char R, unsigned char G, unsigned char B, double& H, double& S,
                       double& V);
  static void HSVtoRGB(double H, double S, double V, unsigned char& R, unsigned char& G,
                       unsigned char& B);

  // Linear models, all bytes. Z is scaled so that white has 255; I, Q, U and V are offset by 128.
  // All return 1.

  static int RGBtoXYZ(unsigned char R, unsigned char G, unsigned char B, unsigned char& X,
                      unsigned char& Y, unsigned char& Z);
  static int XYZtoRGB(unsigned char X, unsigned char Y, unsigned char Z, unsigned char& R,
                      unsigned char& G, unsigned char& B);
  static int RGBtoYIQ(unsigned char R, unsigned char G, unsigned char B, unsigned char& Y,
                      unsigned char& I, unsigned char& Q);
  static int YIQtoRGB(unsigned char Y, unsigned char I, unsigned char Q, unsigned char& R,
                      unsigned char& G, unsigned char& B);
  static int RGBtoYUV(unsigned char R, unsigned char G, unsigned char B, unsigned char& Y,
                      unsigned char& U, unsigned char& V);
  static int YUVtoRGB(unsigned char Y, unsigned char U, unsigned char V, unsigned char& R,
                      unsigned char& G, unsigned char& B);

 private:
  static float HueToRGB(float m1, float m2, float hue);
  static double HLS_Value(const double& m1, const double& m2, double hue);
};

// Maps that hold a blend: what the running value becomes under a second operand.
#pragma once

#include "picture.h"

namespace tintwerk::paint {

/// A blend of one channel on values 0..1.
using Blend = double (*)(double base, double top);

double Screen(double base, double top);
double Multiply(double base, double top);
double Overlay(double base, double top);
double SoftLight(double base, double top);
double VividLight(double base, double top);
double Exclusion(double base, double top);
double SoftGlow(double base, double top);
double AgedPrint(double base, double top);
double HaloLight(double base, double top);

/// 256 x 256, neutral: row = base, column = top, each pixel the blend's result at `percent`.
struct BlendMap {
  Blend blend;
  int percent = 100;  // 0 leaves the base, 100 is the whole blend

  Picture operator()() const;
};

/// 256 x 1, neutral: the blend of each value with itself.
struct BlendStrip {
  Blend blend;
  int percent = 100;

  Picture operator()() const;
};

}  // namespace tintwerk::paint

// Strips that hold a tone curve per channel.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "picture.h"

namespace tintwerk::paint {

/// A tone and what becomes of it, both 0..255.
struct Sample {
  int in;
  int out;
};

/// The monotone cubic through the samples (slopes by Fritsch and Carlson): smooth, through every
/// sample, and between two samples never outside them. Beyond the outermost samples it is flat.
/// @param samples at least one, in strictly rising order of `in`
/// @return the output byte of each input byte
std::array<unsigned char, 256> MonotoneCurve(std::span<const Sample> samples);

/// 256 x `rows`: in each row column v holds the three curves at v. One row is a strip; three rows
/// also serve readers that take each channel from a row of its own.
struct CurveStrip {
  std::vector<Sample> red;
  std::vector<Sample> green;
  std::vector<Sample> blue;
  int rows = 1;

  Picture operator()() const;
};

}  // namespace tintwerk::paint

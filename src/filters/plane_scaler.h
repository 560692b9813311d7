// The scaling of SFDSP::BilinearReSample, row by row: for those that do not need a whole plane at
// once.
#pragma once

#include <cstddef>
#include <memory>

namespace tintwerk {

/// Scales byte planes of one size to another. An equal size gives the plane itself.
class PlaneScaler {
 public:
  /// Sizes of at least 1. @throws std::bad_alloc
  PlaneScaler(int width, int height, int newWidth, int newHeight);
  ~PlaneScaler();

  /// The two rows of the source that a row of the target lies between; the same one at the end.
  int Upper(int row) const;
  int Lower(int row) const;

  /// Floats of working memory that a row takes.
  std::size_t ScratchSize() const;

  /// A row of the target.
  /// @param upper,lower its two rows of the source
  void ScaleRow(int row, const unsigned char* upper, const unsigned char* lower, float* scratch,
                unsigned char* out) const;

 private:
  struct Plan;
  std::unique_ptr<const Plan> plan_;
};

}  // namespace tintwerk

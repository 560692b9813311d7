// The row-stepped way of reporting progress and asking whether to stop.
#pragma once

#include <algorithm>
#include <cstdint>

#include "frame/parallel.h"
#include "tintwerk/progress.h"

namespace tintwerk {

/// Serves a serial loop over rows: every twentieth of the height the host is asked whether to go
/// on, then told the position.
///
///     RowProgress rows(progress, low, high, height);
///     for (int y = 0; y < height; ++y) {
///       ...
///       if (!rows.Finished(y)) break;
///     }
class RowProgress {
 public:
  RowProgress(CObjProgress* progress, int low, int high, int height)
      : progress_(progress),
        step_(std::max(height / 20, 1)),
        scale_(static_cast<float>(std::int64_t{high} - low) / std::max(height, 1)),
        low_(low) {}

  /// Call after each row. @return false if the host wants the work stopped
  bool Finished(int row) const {
    if (!progress_ || row % step_ != 0) return true;
    if (progress_->KeepGoing() == 0) return false;
    progress_->ReportPosition(row * scale_ + low_);
    return true;
  }

  /// The first row from `row` on at whose end the host is asked.
  std::int64_t NextQuestion(std::int64_t row) const { return (row + step_ - 1) / step_ * step_; }

 private:
  CObjProgress* progress_;
  int step_;
  float scale_;  // positions per row
  int low_;
};

/// Runs body(y) for every row as a serial loop with RowProgress would, with the rows between two
/// questions to the host worked side by side: bytes, reports and the rows that are done at a stop
/// are those of the serial loop.
/// @return false if the host wants the work stopped; no row after the one that was asked at has run
template <class Body>
bool ForEachRow(CObjProgress* progress, int low, int high, int height, const Body& body) {
  if (!progress) {
    ParallelFor(height, body);
    return true;
  }
  const RowProgress rows(progress, low, high, height);
  for (std::int64_t from = 0; from < height;) {
    const std::int64_t last = std::min<std::int64_t>(rows.NextQuestion(from), height - 1);
    ParallelFor(last - from + 1, [&](std::int64_t i) { body(from + i); });
    if (!rows.Finished(static_cast<int>(last))) return false;
    from = last + 1;
  }
  return true;
}

/// The two calls of work that reports between stages. A null object is never called and always goes
/// on.
inline void Report(CObjProgress* progress, float position) {
  if (progress) progress->ReportPosition(position);
}
inline bool KeepGoing(CObjProgress* progress) {
  return !progress || progress->KeepGoing() != 0;
}

}  // namespace tintwerk

// The row-stepped way of reporting progress and asking whether to stop.
#pragma once

#include <algorithm>
#include <cstdint>

#include "frame/parallel.h"
#include "tintwerk/progress.h"

namespace tintwerk {

/// Whether a loop over rows asks the host to go on before it reports.
enum class RowQuestions { kAsked, kReportsOnly };

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
  RowProgress(CObjProgress* progress, int low, int high, int height,
              RowQuestions questions = RowQuestions::kAsked)
      : RowProgress(progress, height,
                    static_cast<float>(std::int64_t{high} - low) / std::max(height, 1), low, 0,
                    questions) {}

  /// For loops with a scale of their own: a row reports row x scale + low + offset, summed in this
  /// order.
  RowProgress(CObjProgress* progress, int height, float scale, int low, int offset = 0,
              RowQuestions questions = RowQuestions::kAsked)
      : progress_(progress),
        step_(std::max(height / 20, 1)),
        scale_(scale),
        low_(low),
        offset_(offset),
        questions_(questions) {}

  /// For loops that divide last: a row reports row x (high - low) / height + low.
  static RowProgress DividingLast(CObjProgress* progress, int low, int high, int height) {
    RowProgress rows(progress, height, static_cast<float>(std::int64_t{high} - low), low);
    rows.divisor_ = static_cast<float>(std::max(height, 1));
    return rows;
  }

  /// Call after each row. @return false if the host wants the work stopped
  bool Finished(int row) const {
    if (!progress_ || row % step_ != 0) return true;
    if (questions_ == RowQuestions::kAsked && progress_->KeepGoing() == 0) return false;
    progress_->ReportPosition(row * scale_ / divisor_ + low_ + offset_);
    return true;
  }

  /// The first row from `row` on after which the host hears of it; the last of all without a host.
  int NextReport(int row, int height) const {
    if (!progress_) return height - 1;
    return static_cast<int>(
        std::min<std::int64_t>((std::int64_t{row} + step_ - 1) / step_ * step_, height - 1));
  }

 private:
  CObjProgress* progress_;
  int step_;
  float scale_;  // positions per row, or divisor_ rows
  float divisor_ = 1;
  int low_;
  int offset_;
  RowQuestions questions_;
};

/// Runs body(y) for every row as a serial loop would, with the rows between two reports worked side
/// by side: bytes, reports and the rows that are done at a stop are those of the serial loop.
/// @return false if the host wants the work stopped; no row after the one that was asked at has run
template <class Body>
bool ForEachRow(const RowProgress& rows, int height, const Body& body) {
  for (int from = 0; from < height;) {
    const int last = rows.NextReport(from, height);
    ParallelFor(last - from + 1, [=](std::int64_t i) { body(from + i); });
    if (!rows.Finished(last)) return false;
    from = last + 1;
  }
  return true;
}

template <class Body>
bool ForEachRow(CObjProgress* progress, int low, int high, int height, const Body& body) {
  return ForEachRow(RowProgress(progress, low, high, height), height, body);
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

// The progress of a single operation.
#pragma once

#include "progress_bar.h"
#include "stop.h"
#include "tintwerk/progress.h"

/// Shows positions 0..100 on a progress bar, and stops the operation when the program is asked to
/// stop.
class StopProgress final : public CObjProgress {
 public:
  explicit StopProgress(ProgressBar& bar) : bar_(bar) {}
  void ReportPosition(float position) override { bar_.Show(position / 100); }
  int KeepGoing() override { return StopSignal() == 0; }

 private:
  ProgressBar& bar_;
};

// The progress of a single piece of work.
#pragma once

#include "progress_bar.h"
#include "stop.h"
#include "tintwerk/progress.h"

/// Shows positions 0..100 on a bar, and stops when the program is asked to.
class StopProgress final : public CObjProgress {
 public:
  explicit StopProgress(ProgressBar& bar) : bar_(bar) {}
  void ReportPosition(float position) override { bar_.Show(position / 100); }
  int KeepGoing() override { return StopSignal() == 0; }

 private:
  ProgressBar& bar_;
};

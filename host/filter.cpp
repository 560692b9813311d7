// tintwerk filter: works a picture by one operation.
#include <stdexcept>
#include <vips/vips8>

#include "batch.h"
#include "commands.h"
#include "filter_operations.h"
#include "picture_io.h"
#include "stop_progress.h"

int Filter(const FilterOptions& options) {
  BatchRules rules;
  rules.overwriteInput = options.overwriteInput;
  const Task task = PlanBatch({options.input}, options.output, rules).at(0);
  Picture picture = LoadPicture(task.input);
  ProgressBar bar(std::string(options.operation->name));
  StopProgress progress(bar);
  const bool done = options.operation->run(picture, options.values.data(), &progress);
  if (StopSignal()) return kFailed;
  if (!done)
    throw std::runtime_error(std::string(options.operation->name) + " failed on '" +
                             task.input.string() + "'");
  SavePicture(picture, task.output);
  return kDone;
}

// tintwerk scene: writes the built-in picture.
#include "scene.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "commands.h"
#include "picture_io.h"
#include "progress_bar.h"
#include "stop.h"

int Scene(const SceneOptions& options) {
  RefuseUnwritable(options.output);
  Picture picture = NewPicture(options.width, options.height);
  {
    ProgressBar bar("Scene");
    const std::vector<unsigned char> pixels =
        scene::RenderScene(options.width, options.height, [&](double done) {
          bar.Show(done);
          return StopSignal() == 0;
        });
    std::ranges::copy(pixels, picture.pixels.get());
  }
  if (StopSignal()) return kFailed;
  try {
    SavePicture(picture, options.output);
  } catch (const std::exception& error) {
    throw std::runtime_error("cannot write " + Quoted(options.output) + ": " + WordsOf(error));
  }
  return kDone;
}

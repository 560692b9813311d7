#include "paint.h"

#include <atomic>
#include <exception>
#include <thread>
#include <vector>

#include "image_writer.h"

namespace tintwerk::paint {

void PaintFiles(std::span<const File> files, const std::filesystem::path& root, int threads) {
  std::vector<std::exception_ptr> errors(files.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t i = next++; i < files.size(); i = next++) {
      try {
        const File& file = files[i];
        WriteFile(root / "Effects" / file.name, Encode(file.name, file.paint()));
      } catch (...) {
        errors[i] = std::current_exception();
      }
    }
  };
  {
    std::vector<std::jthread> helpers;
    for (int i = 1; i < threads; ++i) helpers.emplace_back(work);
    work();
  }
  for (const std::exception_ptr& error : errors)
    if (error) std::rethrow_exception(error);
}

}  // namespace tintwerk::paint

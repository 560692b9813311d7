// Writes the files that the decoder's fuzzer starts from into the folder that it is given.
#include <cstdio>
#include <string>

#include "support/image_files.h"

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: decode_seeds FOLDER\n");
    return 2;
  }
  const std::filesystem::path folder = arguments[1];
  std::filesystem::create_directories(folder);
  int number = 0;
  for (const auto& file : tintwerk::test::SmallFiles()) {
    std::ofstream stream(folder / std::to_string(number++), std::ios::binary);
    stream.write(reinterpret_cast<const char*>(file.data()), std::streamsize(file.size()));
    if (!stream.good()) return 1;
  }
  return 0;
}

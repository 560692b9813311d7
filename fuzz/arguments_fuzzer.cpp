// Feeds command lines to the parser; what they ask for is not done.
#include <exception>
#include <string>
#include <vector>
#include <vips/vips8>

#include "arguments.h"
#include "drawn.h"

extern "C" int LLVMFuzzerInitialize(int*, char*** arguments) {
  return VIPS_INIT((*arguments)[0]);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> words{"tintwerk"};
  tintwerk::fuzz::Input input(data, size);
  while (input.remaining_bytes() > 0 && words.size() < 20)
    words.push_back(input.ConsumeRandomLengthString(40).c_str());  // without zeros
  std::vector<const char*> arguments;
  for (const std::string& word : words) arguments.push_back(word.c_str());
  try {
    (void)ParseArguments(static_cast<int>(arguments.size()), arguments.data());
  } catch (const std::exception&) {
  }
  return 0;
}

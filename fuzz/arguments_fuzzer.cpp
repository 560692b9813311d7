// Feeds command lines, a word a line, to the parser; what they ask for is not done.
#include <cstdint>
#include <exception>
#include <sstream>
#include <string>
#include <vector>
#include <vips/vips8>

#include "arguments.h"

extern "C" int LLVMFuzzerInitialize(int*, char*** arguments) {
  return VIPS_INIT((*arguments)[0]);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> words{"tintwerk"};
  std::istringstream lines({reinterpret_cast<const char*>(data), size});
  for (std::string word; words.size() < 30 && std::getline(lines, word);)
    words.push_back(word.c_str());  // without zeros
  std::vector<const char*> arguments;
  for (const std::string& word : words) arguments.push_back(word.c_str());
  try {
    (void)ParseArguments(static_cast<int>(arguments.size()), arguments.data());
  } catch (const std::exception&) {
  }
  return 0;
}

// Runs looks with one of their support files damaged.
#include <omp.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "drawn.h"
#include "support/small_tree.h"

using namespace tintwerk;

namespace {

struct Look {
  EffectEntry* entry;
  std::vector<std::string> files;
};

// The looks with the files that the tree's own list tells.
std::vector<Look> ListedLooks() {
  std::map<std::string, std::vector<std::string>> files;
  std::ifstream list(std::string(TINTWERK_TREE) + "/looks.tsv");
  for (std::string line; std::getline(list, line);) {
    std::istringstream words(line);
    std::string look, file;
    if (std::getline(words, look, '\t') && std::getline(words, file, '\t'))
      files[look].push_back(file);
  }
  fuzz::Check(!files.empty());
  std::vector<Look> looks;
#define TINTWERK_EFFECT(entry, category, title, description) \
  looks.push_back({&CEffect::entry, files[#entry]});
#include "tintwerk/effect_list.h"
  return looks;
}

test::Bytes ReadWhole(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return test::Bytes(std::istreambuf_iterator<char>(file), {});
}

void WriteWhole(const std::filesystem::path& path, const test::Bytes& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}

test::Bytes Damaged(test::Bytes bytes, fuzz::Input& input) {
  if (input.ConsumeBool()) bytes.resize(input.ConsumeIntegralInRange<std::size_t>(0, bytes.size()));
  for (int changes = input.ConsumeIntegralInRange(0, 8); changes > 0 && !bytes.empty(); --changes)
    bytes[input.ConsumeIntegralInRange<std::size_t>(0, bytes.size() - 1)] =
        input.ConsumeIntegral<unsigned char>();
  if (input.ConsumeIntegralInRange(0, 7) == 0) bytes = input.ConsumeRemainingBytes<unsigned char>();
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::vector<Look> looks = ListedLooks();
  static test::ResourceRoot& root =
      test::SmallTree(std::filesystem::path(TINTWERK_TREE) / "Effects");
  static const bool one = (omp_set_num_threads(1), true);
  fuzz::Input input(data, size);
  const Look& look = looks[input.ConsumeIntegralInRange<std::size_t>(0, looks.size() - 1)];
  const int width = input.ConsumeIntegralInRange(1, 48),
            height = input.ConsumeIntegralInRange(1, 48);
  fuzz::Host host(input);
  CObjProgress* const listener = input.ConsumeBool() && one ? &host : nullptr;
  const fuzz::Block image(input, 4 * width * height);

  std::filesystem::path file;
  test::Bytes whole;
  if (!look.files.empty()) {
    const std::filesystem::path folder = std::wstring(static_cast<const wchar_t*>(root.Path()));
    file = folder / "Effects" /
           look.files[input.ConsumeIntegralInRange<std::size_t>(0, look.files.size() - 1)];
    whole = ReadWhole(file);
    if (input.ConsumeIntegralInRange(0, 7) == 0)
      std::filesystem::remove(file);
    else
      WriteWhole(file, Damaged(whole, input));
  }
  const int code = look.entry(image.Bytes(), width, height, root.Path(), listener, 0, 100);
  if (!file.empty()) WriteWhole(file, whole);
  fuzz::Check(code == 0 || code == 1);
  return 0;
}

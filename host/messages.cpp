#include "messages.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <new>
#include <numeric>
#include <system_error>
#include <utility>

std::string Quoted(const std::filesystem::path& path) {
  std::string text = "'";
  for (const char c : path.string()) {
    if (!std::iscntrl(static_cast<unsigned char>(c))) {
      text += c;
      continue;
    }
    std::array<char, 8> code;
    std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned char>(c));
    text += code.data();
  }
  return text + "'";
}

std::string WordsOf(const std::exception& error) {
  if (dynamic_cast<const std::bad_alloc*>(&error)) return "out of memory";
  const auto* const system = dynamic_cast<const std::system_error*>(&error);
  if (!system) return error.what();
  if (system->code() == std::errc::no_such_file_or_directory) return "no such file or folder";
  if (system->code() == std::errc::no_space_on_device) return "no space left on the device";
  std::string words = system->code().message();
  if (!words.empty())
    words[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(words[0])));
  return words;
}

int EditDistance(std::string_view a, std::string_view b) {
  std::vector<int> before(b.size() + 1), row(b.size() + 1), next(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    next[0] = static_cast<int>(i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      next[j] = std::min({row[j] + 1, next[j - 1] + 1, row[j - 1] + (a[i - 1] != b[j - 1])});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        next[j] = std::min(next[j], before[j - 2] + 1);
    }
    std::swap(before, row);
    std::swap(row, next);
  }
  return row[b.size()];
}

std::string NothingIsCalled(std::string_view kind, std::string_view text,
                            std::span<const std::string> names) {
  std::string message = "no " + std::string(kind) + " is called " + Quoted(text);
  const auto distance = [&](const std::string& name) { return EditDistance(text, name); };
  const auto nearest = std::ranges::min_element(names, {}, distance);
  if (nearest != names.end() &&
      distance(*nearest) <= std::max<int>(1, static_cast<int>(text.size()) / 2))
    return message + "; did you mean " + Quoted(*nearest) + "?";
  message += "; there are";
  for (const std::string& name : names) message += (&name == names.data() ? " " : ", ") + name;
  return message;
}

#include "cube.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vips/vips8>

#include "temporary_file.h"
#include "tintwerk/cube_container.h"

namespace {

namespace fs = std::filesystem;

constexpr int kLargestSize = 256;
// A cube of the largest size in generous notation.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 30;

std::string_view NextWord(std::string_view& line) {
  constexpr std::string_view blanks = " \t";
  line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
  const std::string_view word = line.substr(0, line.find_first_of(blanks));
  line.remove_prefix(word.size());
  return word;
}

std::optional<float> Number(std::string_view word) {
  if (word.starts_with('+') && !word.starts_with("+-")) word.remove_prefix(1);
  double number = std::numeric_limits<double>::infinity();  // if it is out of range
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error == std::errc::invalid_argument || end != word.data() + word.size()) return std::nullopt;
  return static_cast<float>(number);
}

// A line of a text file at work, for messages.
class Line {
 public:
  Line(int number, std::string_view text) : number_(number), text_(text) {}

  std::string_view Word() { return NextWord(text_); }

  // The rest of the line as finite numbers, as many as asked for.
  template <std::size_t N>
  std::array<float, N> Numbers() {
    std::array<float, N> numbers;
    for (float& number : numbers) {
      const auto read = Number(NextWord(text_));
      if (!read) Fail(std::to_string(N) + " numbers expected");
      if (!std::isfinite(*read)) Fail("a number is not finite");
      number = *read;
    }
    if (!NextWord(text_).empty()) Fail("more than " + std::to_string(N) + " numbers");
    return numbers;
  }

  [[noreturn]] void Fail(const std::string& reason) const {
    throw std::runtime_error("line " + std::to_string(number_) + ": " + reason);
  }

 private:
  int number_;
  std::string_view text_;
};

class TextReader {
 public:
  // Takes one line without its end.
  void Take(int number, std::string_view text) {
    std::string_view rest = text;
    const std::string_view word = NextWord(rest);
    if (word.empty() || word.starts_with('#')) return;
    if (Number(word)) return TakeNode(Line(number, text));
    TakeKeyword(word, Line(number, rest));
  }

  Cube Finish() {
    if (cube_.size == 0) throw std::runtime_error("it has no LUT_3D_SIZE");
    if (cube_.nodes.size() != Count())
      throw std::runtime_error("it has " + std::to_string(cube_.nodes.size()) + " rows of " +
                               std::to_string(Count()));
    for (int c = 0; c < 3; ++c)
      if (!(cube_.low[c] < cube_.high[c]))
        throw std::runtime_error("DOMAIN_MIN is not below DOMAIN_MAX");
    return std::move(cube_);
  }

 private:
  std::size_t Count() const { return std::size_t(cube_.size) * cube_.size * cube_.size; }

  void TakeNode(Line line) {
    if (cube_.size == 0) line.Fail("numbers before LUT_3D_SIZE");
    if (cube_.nodes.size() == Count()) line.Fail("more rows than the size has");
    cube_.nodes.push_back(line.Numbers<3>());
  }

  void TakeKeyword(std::string_view word, Line line) {
    if (word == "LUT_3D_SIZE") {
      const float size = line.Numbers<1>()[0];
      if (!(size >= 2 && size <= kLargestSize) || size != std::floor(size))
        line.Fail("the size is not 2 to " + std::to_string(kLargestSize));
      if (cube_.size != 0) line.Fail("a second size");
      cube_.size = static_cast<int>(size);
    } else if (word == "DOMAIN_MIN") {
      cube_.low = line.Numbers<3>();
    } else if (word == "DOMAIN_MAX") {
      cube_.high = line.Numbers<3>();
    } else if (word == "LUT_3D_INPUT_RANGE") {
      const auto [low, high] = line.Numbers<2>();
      cube_.low.fill(low);
      cube_.high.fill(high);
    } else if (word.starts_with("LUT_1D")) {
      line.Fail("it holds a 1-D table, which a cube cannot take; export it as a 3-D one");
    } else if (word != "TITLE" &&
               (!cube_.nodes.empty() || word.find_first_of("0123456789+-.") == 0)) {
      line.Fail("neither numbers nor a known word");
    }  // other words before the rows are notes of the program that wrote the file
  }

  Cube cube_;
};

Cube ReadText(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (text.find('\0') != text.npos) throw std::runtime_error("it is neither text nor a picture");
  TextReader reader;
  for (int number = 1; !text.empty(); ++number) {
    // Lines end in a line feed, a carriage return, or both.
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(line.size());
    text.remove_prefix(text.starts_with("\r\n") ? 2 : !text.empty());
    reader.Take(number, line);
  }
  return reader.Finish();
}

// A square picture of level^3 pixels a side that holds level^2 nodes an axis, red running fastest.
// The samples are nodes and no picture: neither a profile nor an orientation counts.
Cube ReadHald(const fs::path& path) {
  const auto picture = vips::VImage::new_from_file(path.c_str());
  const int level = static_cast<int>(std::lround(std::cbrt(picture.width())));
  if (picture.width() != picture.height() || level * level * level != picture.width() ||
      level < 2 || level > 16)
    throw std::runtime_error("the picture is no HaldCLUT: its sides are not 8, 27, 64 .. 4096");
  if (picture.bands() < 3) throw std::runtime_error("the picture has no colours");
  const float full = picture.format() == VIPS_FORMAT_USHORT ? 65535.0f : 255.0f;
  if (full == 255 && picture.format() != VIPS_FORMAT_UCHAR)
    throw std::runtime_error("the picture's samples are neither 8 nor 16 bits");
  const auto colours =
      picture.extract_band(0, vips::VImage::option()->set("n", 3)).cast(VIPS_FORMAT_FLOAT);
  std::size_t size = 0;
  const std::unique_ptr<void, decltype(&g_free)> memory(colours.write_to_memory(&size), g_free);
  const auto* sample = static_cast<const float*>(memory.get());
  Cube cube;
  cube.size = level * level;
  cube.nodes.resize(std::size_t(picture.width()) * picture.height());
  for (Colour& node : cube.nodes)
    for (float& channel : node) channel = *sample++ / full;
  return cube;
}

bool IsPicture(std::string_view start) {
  using namespace std::string_view_literals;
  return start == "\x89PNG"sv || start == "II*\0"sv || start == "MM\0*"sv;
}

}  // namespace

Colour Cube::At(const Colour& input) const {
  int from[3];
  float share[3];
  for (int c = 0; c < 3; ++c) {
    const float place = (input[c] - low[c]) / (high[c] - low[c]) * float(size - 1);
    const float held = std::clamp(place, 0.0f, float(size - 1));
    from[c] = std::min(static_cast<int>(held), size - 2);
    share[c] = held - float(from[c]);
  }
  Colour sum{};
  for (int corner = 0; corner < 8; ++corner) {
    float weight = 1;
    std::size_t at = 0;
    for (int c = 2; c >= 0; --c) {
      const int far = corner >> c & 1;
      weight *= far ? share[c] : 1 - share[c];
      at = at * size + from[c] + far;
    }
    for (int c = 0; c < 3; ++c) sum[c] += weight * nodes[at][c];
  }
  return sum;
}

Cube ReadCube(const fs::path& path) try {
  if (!fs::is_regular_file(path)) throw std::runtime_error("no such file");
  if (fs::file_size(path) > kLargestFile) throw std::runtime_error("it is larger than a gigabyte");
  std::ifstream file(path, std::ios::binary);
  std::string start(4, ' ');
  file.read(start.data(), 4);
  if (IsPicture(start)) return ReadHald(path);
  file.clear();
  file.seekg(0);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) throw std::runtime_error("it cannot be read");
  return ReadText(text);
} catch (const std::exception& error) {
  vips_error_clear();
  throw std::runtime_error("cannot take '" + path.string() + "' for a cube: " + error.what());
}

void WriteCube(const Cube& cube, const std::string& title, const fs::path& path) {
  std::string text = "TITLE \"" + title + "\"\nLUT_3D_SIZE " + std::to_string(cube.size) + "\n";
  for (const Colour& node : cube.nodes) {
    for (int c = 0; c < 3; ++c) {
      char digits[32];
      const auto end =
          std::to_chars(digits, std::end(digits), node[c], std::chars_format::fixed, 6);
      text.append(digits, end.ptr);
      text += c < 2 ? ' ' : '\n';
    }
  }
  WriteWhole(path, {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
}

std::vector<unsigned char> PackContainer(const Cube& cube, int levels, int step) {
  const int tiles = levels == 16 ? 4 : 8, side = tiles * levels;
  // What is missing at the last node is spread over the highlights, so that they stay smooth.
  const auto input = [=](int node) {
    const float share = static_cast<float>(node) / static_cast<float>(levels - 1);
    const float missing = static_cast<float>(255 - step * (levels - 1));
    return (static_cast<float>(node * step) + missing * share * share * share * share) / 255.0f;
  };
  std::vector<unsigned char> rows(std::size_t{3} * side * side);
  for (int b = 0; b < levels; ++b)
    for (int g = 0; g < levels; ++g)
      for (int r = 0; r < levels; ++r) {
        const int x = b % tiles * levels + r, y = b / tiles * levels + g;
        const Colour colour = cube.At({input(r), input(g), input(b)});
        for (int c = 0; c < 3; ++c)
          rows[3 * (std::size_t(y) * side + x) + c] =
              static_cast<unsigned char>(std::lround(std::clamp(colour[c], 0.0f, 1.0f) * 255));
      }
  const auto picture =
      vips::VImage::new_from_memory(rows.data(), rows.size(), side, side, 3, VIPS_FORMAT_UCHAR);
  VipsBlob* const blob = picture.pngsave_buffer();
  size_t size = 0;
  const auto* bytes = static_cast<const unsigned char*>(vips_blob_get(blob, &size));
  std::vector<unsigned char> container = tintwerk::PackCube({bytes, size});
  vips_area_unref(VIPS_AREA(blob));
  return container;
}

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
#include <utility>
#include <vips/vips8>

#include "messages.h"
#include "temporary_file.h"
#include "tintwerk/cube_container.h"

namespace {

namespace fs = std::filesystem;

constexpr int kLargestSize = 256;
constexpr int kLargestCurve = 65536;
// A cube of the largest size in generous notation.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 30;
// Beyond it, differences of two numbers could overflow, and their quotients be no numbers.
constexpr float kLargestNumber = 1e18f;

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
      if (std::abs(*read) > kLargestNumber) Fail("a number is too large");
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
    if (cube_.size == 0 && curveSize_ == 0)
      throw std::runtime_error("it has neither LUT_3D_SIZE nor LUT_1D_SIZE");
    if (Rows() != CurveCount() + Count())
      throw std::runtime_error("it has " + std::to_string(Rows()) + " rows of " +
                               std::to_string(CurveCount() + Count()));
    for (int c = 0; c < 3; ++c)
      if (!(cube_.low[c] < cube_.high[c]) || !(cube_.curveLow[c] < cube_.curveHigh[c]))
        throw std::runtime_error("its input range is empty");
    if (cube_.size == 0) {  // the curve alone
      cube_.curveLow = isCurveRanged_ ? cube_.curveLow : cube_.low;
      cube_.curveHigh = isCurveRanged_ ? cube_.curveHigh : cube_.high;
      const auto [least, most] = Extremes();
      cube_.low.fill(least);
      cube_.high.fill(most);
      cube_.size = 2;
      for (int i = 0; i < 8; ++i)
        cube_.nodes.push_back({i & 1 ? most : least, i & 2 ? most : least, i & 4 ? most : least});
    }
    return std::move(cube_);
  }

 private:
  std::size_t Count() const { return std::size_t(cube_.size) * cube_.size * cube_.size; }
  std::size_t CurveCount() const { return static_cast<std::size_t>(curveSize_); }
  std::size_t Rows() const { return cube_.nodes.size() + cube_.curve.size(); }

  // The range of a curve's outputs, not empty.
  std::pair<float, float> Extremes() const {
    float least = 0, most = 1;
    for (const Colour& node : cube_.curve)
      for (const float value : node) {
        least = std::min(least, value);
        most = std::max(most, value);
      }
    return {least, most};
  }

  // The rows of the curve come before those of the cube.
  void TakeNode(Line line) {
    if (cube_.size == 0 && curveSize_ == 0) line.Fail("numbers before the size");
    if (Rows() == CurveCount() + Count()) line.Fail("more rows than the size has");
    auto& rows = cube_.curve.size() < CurveCount() ? cube_.curve : cube_.nodes;
    rows.push_back(line.Numbers<3>());
  }

  static int Size(Line& line, int before, int largest) {
    const float size = line.Numbers<1>()[0];
    if (!(size >= 2 && size <= static_cast<float>(largest)) || size != std::floor(size))
      line.Fail("the size is not 2 to " + std::to_string(largest));
    if (before != 0) line.Fail("a second size");
    return static_cast<int>(size);
  }

  void TakeKeyword(std::string_view word, Line line) {
    const bool isSize = word == "LUT_3D_SIZE" || word == "LUT_1D_SIZE";
    if (isSize && Rows() > 0) line.Fail("a size after the first numbers");
    if (word == "LUT_3D_SIZE") {
      cube_.size = Size(line, cube_.size, kLargestSize);
    } else if (word == "LUT_1D_SIZE") {
      curveSize_ = Size(line, curveSize_, kLargestCurve);
    } else if (word == "DOMAIN_MIN") {
      cube_.low = line.Numbers<3>();
    } else if (word == "DOMAIN_MAX") {
      cube_.high = line.Numbers<3>();
    } else if (word == "LUT_3D_INPUT_RANGE") {
      const auto [low, high] = line.Numbers<2>();
      cube_.low.fill(low);
      cube_.high.fill(high);
    } else if (word == "LUT_1D_INPUT_RANGE") {
      const auto [low, high] = line.Numbers<2>();
      cube_.curveLow.fill(low);
      cube_.curveHigh.fill(high);
      isCurveRanged_ = true;
    } else if (word != "TITLE" && (Rows() > 0 || word.find_first_of("0123456789+-.") == 0)) {
      line.Fail("neither numbers nor a known word");
    }  // other words before the rows are notes of the program that wrote the file
  }

  Cube cube_;
  int curveSize_ = 0;
  bool isCurveRanged_ = false;
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
  const auto picture =
      vips::VImage::new_from_source(vips::VSource::new_from_file(path.c_str()), "");
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

namespace {

// Where an input lies between two nodes of an axis.
struct Place {
  Place(float input, float low, float high, int size) {
    const float last = static_cast<float>(size - 1);
    const float place = std::clamp((input - low) / (high - low) * last, 0.0f, last);
    from = std::min(static_cast<int>(place), size - 2);
    share = place - static_cast<float>(from);
  }
  int from;
  float share;
};

Colour ThroughCurve(const Cube& cube, const Colour& input) {
  Colour result;
  for (int c = 0; c < 3; ++c) {
    const auto [from, share] =
        Place(input[c], cube.curveLow[c], cube.curveHigh[c], static_cast<int>(cube.curve.size()));
    const float near = cube.curve[from][c], far = cube.curve[from + 1][c];
    result[c] = near + (far - near) * share;
  }
  return result;
}

// The value at a place: of trilinear interpolation from the eight nodes around it; of tetrahedral
// from the four on the way from the lowest node to the highest that takes the axes in the order of
// their shares, so that greys depend on greys alone.
Colour Between(const Colour* lowest, const int (&steps)[3], const float (&share)[3],
               Interpolation interpolation) {
  Colour sum{};
  const auto add = [&](const Colour& node, float weight) {
    for (int c = 0; c < 3; ++c) sum[c] += weight * node[c];
  };
  if (interpolation == Interpolation::Trilinear) {
    for (int corner = 0; corner < 8; ++corner) {
      float weight = 1;
      int at = 0;
      for (int axis = 0; axis < 3; ++axis) {
        const bool far = corner >> axis & 1;
        weight *= far ? share[axis] : 1 - share[axis];
        at += far ? steps[axis] : 0;
      }
      add(lowest[at], weight);
    }
    return sum;
  }
  int first = 0, second = 1, third = 2;
  if (share[first] < share[second]) std::swap(first, second);
  if (share[second] < share[third]) std::swap(second, third);
  if (share[first] < share[second]) std::swap(first, second);
  add(*lowest, 1 - share[first]);
  add(*(lowest += steps[first]), share[first] - share[second]);
  add(*(lowest += steps[second]), share[second] - share[third]);
  add(*(lowest += steps[third]), share[third]);
  return sum;
}

template <class Sample>
void ApplyToSamples(const Cube& cube, Picture& picture, Interpolation interpolation) {
  constexpr float full = std::numeric_limits<Sample>::max();
  auto* const samples = reinterpret_cast<Sample*>(picture.pixels.get());
#pragma omp parallel for schedule(static)
  for (int y = 0; y < picture.height; ++y) {
    Sample* pixel = samples + std::size_t{4} * picture.width * y;
    for (int x = 0; x < picture.width; ++x, pixel += 4) {
      const Colour value =
          ValueAt(cube, {float(pixel[2]) / full, float(pixel[1]) / full, float(pixel[0]) / full},
                  interpolation);
      for (int c = 0; c < 3; ++c)
        pixel[2 - c] = static_cast<Sample>(std::clamp(value[c], 0.0f, 1.0f) * full + 0.5f);
    }
  }
}

}  // namespace

Colour ValueAt(const Cube& cube, Colour input, Interpolation interpolation) {
  if (!cube.curve.empty()) input = ThroughCurve(cube, input);
  const int steps[] = {1, cube.size, cube.size * cube.size};
  int at = 0;
  float share[3];
  for (int c = 0; c < 3; ++c) {
    const Place place(input[c], cube.low[c], cube.high[c], cube.size);
    at += place.from * steps[c];
    share[c] = place.share;
  }
  return Between(&cube.nodes[at], steps, share, interpolation);
}

void ApplyCube(const Cube& cube, Picture& picture, Interpolation interpolation) {
  (picture.depth == 16 ? ApplyToSamples<std::uint16_t>
                       : ApplyToSamples<std::uint8_t>)(cube, picture, interpolation);
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
  throw std::runtime_error("cannot take " + Quoted(path) + " for a cube: " + WordsOf(error));
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
        const Colour colour =
            ValueAt(cube, {input(r), input(g), input(b)}, Interpolation::Trilinear);
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

// Looks told as recipes, and an interpreter that runs them in the plainest way: a whole picture
// for every term.
//
// A recipe is a list of terms. Each makes a picture, which is the running value `v` of the next:
//
//   B:overlayMap.png(v,a.jpg) tone(v,0/64/128/192/255) style/b.png(v,r)
//
//   v, c, k     the running value; the image as it came in; what keep(v) has set aside
//   17, r       a number; the radial key, 0 in the centre and 255 from the inscribed ellipse on
//   y(p)        the luminance of p
//   a.jpg       a picture over the image. Before its name: `90:`, `270:` turn it on a landscape
//               image, `bilinear:` scales it the other way, `needed:` fails if it is missing,
//               `fit:` keeps its proportions on a landscape image and ends in alpha 0
//   a.png(p)    a strip; with `tri:` three of them, one for each plane
//   a.png(p,q)  a square map in row p and column q. Before a map: `B:`, `G:`, `R:` read that plane
//               for every channel, `fixed:` reads the corner of a map of any size
//   a.eb#2(p,q) plane 2 of a file at [p][q]; #rgb: a plane a channel; #tones(p): curves behind them
//   tone(p,s)   a curve through samples of all channels; with three lists, of red, green and blue.
//               `less` is the curve that takes 1 from what lies above 128
//   at(10)      a report to the host; at(low), at(high): an end of its range
//   ask(v)      a question to the host; its stop gives 0 and leaves the image as it stands there
//   rows(20,80,terms)  terms as one pass over rows, which reports from 20 over 80 and may be
//               stopped: 0 if terms follow
//   |           files behind it are opened when the terms before it are done
//
// Whatever else a recipe names is a word of the table that comes with it.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <string>

#include "pixel/progress_recorder.h"
#include "support/resource_root.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {

/// The parts between separators that stand outside of brackets.
inline std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  int depth = 0;
  for (const char letter : text) {
    depth += (letter == '(') - (letter == ')');
    if (letter == separator && depth == 0)
      parts.emplace_back();
    else
      parts.back() += letter;
  }
  return parts;
}

/// The monotone cubic through samples from 0 to 255. They stand at even steps: two, five or nine;
/// ten at 0, 16, 32 and every 32. One between them is written with its place: 240=255.
inline Bytes CurveThrough(const std::string& text) {
  if (text == "less") {
    Bytes less(256);
    for (int v = 0; v < 256; ++v) less[v] = static_cast<unsigned char>(v - (v > 128));
    return less;
  }
  const auto samples = Split(text, '/');
  const auto placed = [](const std::string& sample) { return sample.find('=') < sample.size(); };
  const auto even = samples.size() - std::count_if(samples.begin(), samples.end(), placed);
  std::vector<double> x, y, slope(samples.size());
  for (unsigned k = 0; const std::string& sample : samples) {
    const auto step = even == 10 ? (k < 2 ? 16 * k : 32 * (k - 1)) : 256 * k / (even - 1);
    x.push_back(placed(sample) ? std::stod(sample) : std::min<double>(step, 255));
    y.push_back(std::stod(sample.substr(sample.find('=') + 1)));
    k += !placed(sample);
  }
  const std::size_t last = x.size() - 1;
  const auto width = [&](std::size_t i) { return x[i + 1] - x[i]; };
  const auto chord = [&](std::size_t i) { return (y[i + 1] - y[i]) / width(i); };
  const auto end = [&](std::size_t i, std::size_t next) {
    const double near = chord(i), w = width(i), v = width(next);
    const double s = ((2 * w + v) * near - w * chord(next)) / (w + v);
    return s * near <= 0 ? 0 : s * s > 9 * near * near ? 3 * near : s;
  };
  slope[0] = end(0, last > 1);
  slope[last] = end(last - 1, last > 1 ? last - 2 : 0);
  for (std::size_t i = 1; i < last; ++i) {
    const double a = 2 * width(i) + width(i - 1), b = width(i) + 2 * width(i - 1);
    if (chord(i - 1) * chord(i) > 0) slope[i] = (a + b) / (a / chord(i - 1) + b / chord(i));
  }
  Bytes table;
  for (std::size_t i = 0; i < last; ++i)
    for (int at = int(x[i]); at < x[i + 1]; ++at) {
      const double h = width(i), t = (at - x[i]) / h, u = 1 - t;
      table.push_back(static_cast<unsigned char>(
          u * u * ((1 + 2 * t) * y[i] + t * h * slope[i]) +
          t * t * ((1 + 2 * u) * y[i + 1] - u * h * slope[i + 1]) + 0.5));
    }
  table.push_back(static_cast<unsigned char>(y[last]));
  return table;
}

inline BitmapPtr Own(void* bitmap) {
  return BitmapPtr(static_cast<Gdiplus::Bitmap*>(bitmap));
}

inline Picture Scaled(const Picture& picture, int width, int height) {
  return PictureOf(Own(CPixelProcess::RampleBit(BitmapOf(picture).get(), width, height)).get());
}

/// One run of a recipe over one image. It lays out the files that it asks for.
class RecipeInterpreter {
 public:
  using Arguments = std::vector<std::string>;
  using Word = std::function<Picture(RecipeInterpreter&, const Arguments&)>;
  using Words = std::map<std::string, Word>;
  static constexpr int kLow = 7, kHigh = 93;  // the host's range

  /// How the look takes a file.
  struct Use {
    bool needed = true;
    int rows = 0;  // of a map
    bool fixed = false;
  };

  RecipeInterpreter(ResourceRoot& root, const Words& words, const Picture& image)
      : root(root), words(words), entry(image), now(image) {}

  /// @return what the look does
  int Run(const std::string& recipe) {
    const auto terms = Split(recipe, ' ');
    for (std::size_t i = 0; i < terms.size(); ++i) {
      if (terms[i].empty() || terms[i] == "|") continue;
      Picture next = Value(terms[i]);
      if (stopped) return i + 1 == terms.size() && terms[i].starts_with("rows(");
      now = std::move(next);
    }
    return 1;
  }

  Picture Value(const std::string& term);

  /// The running value with the colours body(place, channel).
  template <class Body>
  Picture Each(const Body& body) const {
    Picture result = now;
    for (std::size_t at = 0; at < result.bytes.size(); ++at)
      if (at % 4 != 3) result.bytes[at] = static_cast<unsigned char>(body(at, int(at % 4)));
    return result;
  }

  const Bytes& Raw(const std::string& name, std::size_t size = 200000) {
    uses[name] = {};
    return root.Raw(name, size);
  }

  ResourceRoot& root;
  const Words& words;
  const Picture entry;
  Picture now, kept;
  ProgressRecorder told;
  bool stopped = false;
  std::map<std::string, Use> uses;

 private:
  Picture File(const std::string& word, const Arguments& arguments);
  Picture Rows(float start, float span, const std::string& terms);
};

inline Picture RecipeInterpreter::Value(const std::string& term) {
  const std::size_t open = term.find('(');
  const std::string word = term.substr(0, open);
  Arguments a;
  if (open < term.size()) a = Split(term.substr(open + 1, term.size() - open - 2), ',');
  const auto level = [](const std::string& text) {
    return text == "low" ? kLow : text == "high" ? kHigh : std::stof(text);
  };
  if (word == "v") return now;
  if (word == "c") return entry;
  if (word == "k") return kept;
  if (word == "keep") return kept = Value(a[0]);
  if (word == "r")
    return Each([w = entry.width, h = entry.height](std::size_t at, int) {
      const float u = float(int(at / 4) / w) * float(2.0 / h) - 1;
      const float v = float(int(at / 4) % w) * float(2.0 / w) - 1;
      return int(std::min((u * u + v * v) * 255, 255.0f));
    });
  if (word == "y")
    return Each([p = Value(a[0])](std::size_t at, int c) {
      const unsigned char* const pixel = &p.bytes[at - c];
      return (306 * pixel[2] + 601 * pixel[1] + 117 * pixel[0]) >> 10;
    });
  if (word == "tone") {
    std::vector<Bytes> tables;
    for (const int c : {3, 2, 1}) tables.push_back(CurveThrough(a[a.size() == 2 ? 1 : c]));
    return Each([&, p = Value(a[0])](std::size_t at, int c) { return tables[c][p.bytes[at]]; });
  }
  if (word == "at") return told.ReportPosition(level(a[0])), now;
  if (word == "ask") {
    const Picture p = Value(a[0]);
    stopped = stopped || !told.KeepGoing();
    return p;
  }
  if (word == "rows") return Rows(level(a[0]), level(a[1]), a[2]);
  if (const auto found = words.find(word); found != words.end()) return found->second(*this, a);
  if (word.find('.') < word.size()) return File(word, a);
  return Each([number = std::stoi(word)](std::size_t, int) { return number; });
}

inline Picture RecipeInterpreter::Rows(float start, float span, const std::string& terms) {
  const Picture before = now;
  Run(terms);
  const Picture after = std::exchange(now, before);
  const int h = now.height, pitch = 4 * now.width;
  for (int y = 0; y < h && !stopped; ++y) {
    std::copy_n(&after.bytes[pitch * y], pitch, &now.bytes[pitch * y]);
    if (y % std::max(h / 20, 1) != 0) continue;
    stopped = !told.KeepGoing();
    if (!stopped) told.ReportPosition(float(y) * (span / float(h)) + start);
  }
  return now;
}

inline Picture RecipeInterpreter::File(const std::string& word, const Arguments& arguments) {
  const auto traits = Split(word, ':'), parts = Split(traits.back(), '#');
  const auto is = [&](const char* trait) { return word.find(trait) < word.size(); };
  const std::string& name = parts[0];
  const std::size_t keys = arguments.size();
  const Picture p = keys > 0 ? Value(arguments[0]) : now, q = keys > 1 ? Value(arguments[1]) : now;
  if (parts.size() == 2) {
    const Bytes& raw = Raw(name);
    return Each([&](std::size_t at, int c) {
      const int plane = is("#rgb") ? 3 - c : is("#tones") ? 3 : std::stoi(parts[1]);
      const std::size_t place = is("#tones")
                                    ? 131079u + 256 * (2 - c) + p.bytes[at]
                                    : 1u + 3 * plane + 65536 * (plane - 1) + 256 * p.bytes[at] +
                                          q.bytes[at];  // gaps of 3 bytes
      return place < raw.size() ? raw[place] : 0;
    });
  }
  const auto plane = [&](int c) { return is("B:") ? 0 : is("G:") ? 1 : is("R:") ? 2 : c; };
  if (keys > 0) {
    const int rows = keys == 2 ? 256 : is("tri:") ? 3 : 1;
    uses[name] = {true, rows, is("fixed:")};
    const Picture& map = root.Shown(name, 256, 257);
    return Each([&](std::size_t at, int c) {
      const int row = keys == 2 ? p.bytes[at] : rows == 3 ? 2 - plane(c) : 0;
      const int column = keys == 2 ? q.bytes[at] : p.bytes[at];
      return map.bytes[std::size_t{4} * (map.width * row + column) + plane(c)];
    });
  }
  uses[name] = {is("bilinear:") || is("needed:")};
  Picture over = root.Shown(name);
  if ((is("90:") || is("270:")) && entry.width > entry.height) {
    Picture upright = std::exchange(over, {over.height, over.width, over.bytes});
    for (int y = 0; y < over.height; ++y)
      for (int x = 0; x < over.width; ++x) {
        const int fromX = is("90:") ? y : upright.width - 1 - y;
        const int fromY = is("90:") ? upright.height - 1 - x : x;
        std::copy_n(upright.At(fromX, fromY), 4, over.At(x, y));
      }
  }
  if (is("fit:")) {
    int w = entry.width, h = entry.height;
    if (w > h) {
      const float scaleX = float(w) / float(over.width), scaleY = float(h) / float(over.height);
      if (over.width == 0)
        w = h = 0;
      else if (scaleX > scaleY)
        w = int(double(over.width) * scaleY);
      else
        h = int(double(over.height) * scaleX);
    }
    Picture fitted = Scaled(over, w, h);
    over = {entry.width, entry.height, Bytes(entry.bytes.size())};
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        std::copy_n(fitted.At(x, y), 3, over.At(x, y));
        over.At(x, y)[3] = 255;
      }
  } else if (!is("bilinear:")) {
    over = Scaled(over, entry.width, entry.height);
  } else if (over.width != entry.width || over.height != entry.height) {
    const Picture small = std::exchange(over, entry);
    SFDSP::BilinearReSample(small.bytes.data(), small.width, small.height, over.bytes.data(),
                            over.width, over.height, 4);
  }
  if (plane(0) == 0 && plane(1) == 1) return over;  // with its own alpha
  return Each([&](std::size_t at, int c) { return over.bytes[at - c + plane(c)]; });
}

}  // namespace tintwerk::test

#include "portrait/brush_strokes.h"

#include <cmath>

#include "portrait/line_response.h"
#include "support/operations.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk::test {
namespace {

using Engine = BrushSketchEngine;

struct Plane {
  int width, height;
  Bytes samples = Bytes(std::size_t(width) * height);

  Byte& At(int x, int y) { return samples[std::size_t(y) * width + x]; }
};

// The means of lines by integral images, which have a margin of 0 around them.
void PlainLines(Plane& plane, Plane& result, int k, int L) {
  const int w = plane.width, h = plane.height;
  std::vector<std::int32_t> integral(std::size_t(w + 3) * (h + 3));
  const auto I = [&](int x, int y) -> std::int32_t& {
    return integral[std::size_t(y + 2) * (w + 3) + x + 2];
  };
  const bool rotated = k / 2 % 2 == 1;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      I(x, y) = (rotated ? I(x - 1, y - 1) - I(x, y - 2) + I(x + 1, y - 1)
                         : I(x - 1, y) - I(x - 1, y - 1) + I(x, y - 1)) +
                plane.At(x, y);
  struct Line {
    int startX, startY, endX, endY, stepX, stepY;
  };
  const Line line = std::array<Line, 4>{{{-L, 0, L, 0, 0, -1},
                                         {-L, -L, L, L, 1, -1},
                                         {0, -L, 0, L, -1, 0},
                                         {L, -L, -L, L, -1, -1}}}[k / 2];
  for (int y = L; y < h - L; ++y)
    for (int x = L; x < w - L; ++x) {
      const int x0 = x + line.startX, y0 = y + line.startY, x1 = x + line.endX, y1 = y + line.endY;
      const int sum = I(x1, y1) - I(x1 + line.stepX, y1 + line.stepY) +
                      I(x0 + line.stepX, y0 + line.stepY) - I(x0, y0) + plane.At(x, y);
      result.At(x, y) = Byte(sum / (2 * L + 1));
    }
}

void PlainResponse(Plane& plane, Plane& result, int k, int L) {
  if (k % 2 == 0) return PlainLines(plane, result, k, L);
  const int w = plane.width, h = plane.height;
  const float t = 0.41421f;
  Plane sheared{int(float(h) * t + float(w)), int(float(w) * t + float(h))};
  Plane response{sheared.width, sheared.height};
  const auto down = [=](int x) { return int(float(w - x - 1) * t); };
  const auto offset = [&](int x, int y) -> std::int64_t {
    const int yy = y + down(x);
    const std::int64_t at = int(float(yy - down(0)) * t) + std::int64_t{yy} * sheared.width + x;
    return yy <= sheared.height && at >= 0 && at < std::int64_t(sheared.samples.size()) ? at : -1;
  };
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      if (offset(x, y) >= 0) sheared.samples[offset(x, y)] = plane.At(x, y);
  PlainLines(sheared, response, k, L);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      result.At(x, y) = offset(x, y) >= 0 ? response.samples[offset(x, y)] : 0;
}

Plane PlainGradient(Plane& plane) {
  Plane result{plane.width, plane.height};
  for (int y = 0; y < plane.height; ++y)
    for (int x = 0; x < plane.width; ++x) {
      const auto at = [&](int dx, int dy) -> int {
        return plane.At(std::clamp(x + dx, 0, plane.width - 1),
                        std::clamp(y + dy, 0, plane.height - 1));
      };
      const int gx = at(-1, -1) + 2 * at(-1, 0) + at(-1, 1) - at(1, -1) - 2 * at(1, 0) - at(1, 1);
      const int gy = at(-1, -1) + 2 * at(0, -1) + at(1, -1) - at(-1, 1) - 2 * at(0, 1) - at(1, 1);
      int root = 0;
      while ((root + 1) * (root + 1) <= std::min(gx * gx + gy * gy, 65025)) ++root;
      result.At(x, y) = Byte(root);
    }
  return result;
}

Plane PlainStrokes(Plane& gradient, int L) {
  std::vector<Plane> planes(8, Plane{gradient.width, gradient.height});
  for (int k = 0; k < 8; ++k) PlainResponse(gradient, planes[k], k, L);
  int direction = 0;
  for (std::size_t i = 0; i < gradient.samples.size(); ++i) {
    int best = 0;
    for (int k = 0; k < 8; ++k)
      if (planes[k].samples[i] > best) best = planes[direction = k].samples[i];
    for (int k = 0; k < 8; ++k) planes[k].samples[i] = k == direction ? gradient.samples[i] : 0;
  }
  Plane result{gradient.width, gradient.height};
  for (Plane& plane : planes) {
    Plane edges = plane;
    PlainResponse(edges, plane, int(&plane - planes.data()), L);
  }
  for (std::size_t i = 0; i < result.samples.size(); ++i) {
    int sum = 0;
    for (const Plane& plane : planes) sum += plane.samples[i];
    result.samples[i] = Byte(255 - (std::min(sum, 255) >> 1));
  }
  return result;
}

Plane PlainScale(const Plane& plane, int width, int height) {
  Plane result{width, height};
  if (!SFDSP::BilinearReSample(plane.samples.data(), plane.width, plane.height,
                               result.samples.data(), width, height, 1))
    result = plane;
  return result;
}

using Floats = std::vector<float>;

Floats PlainHistogram(const Plane& grey) {
  Floats bins(256);
  for (const Byte value : grey.samples) bins[value] += 1;
  for (float& bin : bins) bin /= float(grey.width * grey.height);
  return bins;
}

Floats PlainModel(const Floats& tones) {
  float bands[3] = {}, factors[3] = {20, 10, 5};
  for (int i = 0; i < 256; ++i) bands[i < 68 ? 0 : i < 192 ? 1 : 2] += tones[i];
  for (int b = 0; b < 3; ++b) bands[b] = std::min(std::max(bands[b] * factors[b], 0.5f), 2.0f);
  Floats model(256);
  for (int i = 0; i < 256; ++i) {
    const double e = std::exp(double(255 - i) / -15),
                 g = std::exp(-double((i - 70) * (i - 70)) / 242);
    const float u = bands[1] * 20 * (i >= 85 && i <= 235 ? 0.006666667f : 0);
    model[i] = float((e * (double(bands[2]) / 15) * 76 + double(u) +
                      g * (double(bands[0]) / std::sqrt(69.11504364013672)) * 4) *
                     0.01);
  }
  float sum = 0;
  for (const float p : model) sum += p;
  for (float& p : model) p /= sum;
  return model;
}

Bytes PlainMatch(const Floats& source, const Floats& target) {
  std::vector<int> table(256);
  float sourceSum = 0;
  for (int i = 0, last = 0; i < 256; ++i) {
    sourceSum += source[i];
    float best = 1;
    int result = 255;
    for (int j = last; j < 256; ++j) {
      float targetSum = 0;
      for (int n = 0; n <= j; ++n) targetSum += target[n];
      const float d = std::fabs(sourceSum - targetSum);
      if (d - best >= 1e-8f) {
        result = j - 1;
        break;
      }
      best = d;
    }
    table[i] = last = result;
    if (result == 255) {
      std::fill(table.begin() + i, table.end(), 255);
      break;
    }
  }
  for (int i = 1; i < 256; ++i) table[i] = table[i - 1] + std::min(table[i] - table[i - 1], 5);
  return Bytes(table.begin(), table.end());
}

Picture PlainSketch(const Picture& picture, int L) {
  Plane grey{picture.width, picture.height};
  for (std::size_t i = 0; i < grey.samples.size(); ++i)
    grey.samples[i] =
        Byte((picture.bytes[4 * i] + picture.bytes[4 * i + 1] + picture.bytes[4 * i + 2]) / 3);
  const float s = 800 / float(std::max(grey.width, grey.height));
  const int sw = int(float(grey.width) * s), sh = int(float(grey.height) * s);
  Plane strokes{grey.width, grey.height, Bytes(grey.samples.size(), 255)};
  if (sw > 0 && sh > 0) {
    Plane small = PlainScale(grey, sw, sh);
    Plane gradient = PlainGradient(small);
    strokes = PlainScale(PlainStrokes(gradient, L), grey.width, grey.height);
  }
  const Floats tones = PlainHistogram(grey);
  const Bytes table = PlainMatch(tones, PlainModel(tones));
  Picture result = picture;
  for (std::size_t i = 0; i < grey.samples.size(); ++i)
    for (int c = 0; c < 3; ++c)
      result.bytes[4 * i + c] = Byte(table[grey.samples[i]] * strokes.samples[i] / 255);
  return result;
}

// Mostly flat, so that there are samples without any response and ties between directions.
Plane Edges(int width, int height) {
  Plane plane{width, height, RandomBytes(std::size_t(width) * height, width)};
  for (std::size_t i = 0; i < plane.samples.size(); ++i)
    if ((i / 7 + i / 97) % 3 != 0) plane.samples[i] = i % 5 == 0 ? 20 : 0;
  return plane;
}

constexpr std::pair<int, int> kSizes[] = {{1, 1},   {2, 3},   {3, 1},    {4, 9},   {45, 45},
                                          {44, 80}, {97, 61}, {131, 50}, {50, 203}};

TEST(LineResponses, AreThoseOfIntegralImages) {
  for (auto [width, height] : kSizes)
    for (int halfLength : {0, 1, 6, 22, 127}) {
      const int w = width, h = height;
      SCOPED_TRACE(testing::Message() << w << " x " << h << ", " << halfLength);
      Plane source{w, h, RandomBytes(std::size_t(w) * h, h)};
      std::fill_n(source.samples.begin(), source.samples.size() / 2, 255);
      const Bytes blank = RandomBytes(source.samples.size(), 5);
      for (int k = 0; k < 8; ++k) {
        Plane plain{w, h, blank};
        PlainResponse(source, plain, k, halfLength);
        OnEveryMachine([&] {
          LineResponses lines(w, h, halfLength);
          const auto respond = [&](Byte* result) {
            if (k % 2 == 0)
              lines.LineResponse(source.samples.data(), result, k);
            else
              lines.SkewedLineResponse(source.samples.data(), result, k);
          };
          for (int use = 0; use < 2; ++use)
            ASSERT_EQ(Guarded(blank, respond), plain.samples) << "direction " << k;
        });
      }
    }
}

TEST(BrushSketch, DrawsGradientsAndStrokesAsPlainLoopsDo) {
  for (auto [width, height] : kSizes) {
    const int w = width, h = height;
    SCOPED_TRACE(testing::Message() << w << " x " << h);
    Plane plane = Edges(w, h);
    const Bytes gradient = PlainGradient(plane).samples;
    const Bytes strokes = PlainStrokes(plane, 6).samples;
    OnEveryMachine([&] {
      ASSERT_EQ(gradient, Guarded(Bytes(gradient.size()), [&](Byte* result) {
                  Engine::GradientMap(plane.samples.data(), w, h, result);
                }));
      ASSERT_EQ(strokes, Guarded(Bytes(strokes.size()), [&](Byte* result) {
                  Engine::StrokeMap(plane.samples.data(), w, h, result, 6);
                }));
    });
  }
}

// A smooth picture with blots in it.
Picture Photo(int width, int height) {
  Picture picture = SmoothPicture(width, height);
  const Bytes noise = RandomBytes(picture.bytes.size(), width);
  for (std::size_t i = 0; i < noise.size(); ++i)
    if (i % 4 == 3 || (i / 40 + i / (std::size_t{4} * width) / 9) % 4 == 0)
      picture.bytes[i] = noise[i];
  return picture;
}

// 97 makes a working side of 799; 800 x 41 is worked on as it is; 1700 x 1 is too thin for strokes.
TEST(BrushSketch, IsThatOfItsSteps) {
  for (auto [width, height] : {std::pair{1, 1}, {97, 61}, {800, 41}, {37, 1013}, {1700, 1}}) {
    SCOPED_TRACE(testing::Message() << width << " x " << height);
    const Picture photo = Photo(width, height);
    const Picture plain = PlainSketch(photo, 22);
    OnEveryMachine([&, w = width, h = height] {
      const Bytes drawn = Guarded(
          photo.bytes, [&](Byte* pixels) { ASSERT_TRUE(Engine::Render(pixels, w, h, 22)); });
      ASSERT_TRUE(drawn == plain.bytes);
    });
  }
  ExpectRefusals(With(Engine::Render, 22));
}

TEST(BrushSketch, MatchesTonesAsThePlainScanDoes) {
  for (const int kind : {0, 1, 2, 3, 4, 5}) {
    Plane grey{64, 41, RandomBytes(64 * 41, kind)};
    for (Byte& value : grey.samples)
      value = Byte(kind == 0   ? value
                   : kind == 1 ? value / 5
                   : kind == 2 ? 255 - value / 9
                   : kind == 3 ? 90 + value % 3
                   : kind == 4 ? 0
                               : 255);
    const Floats tones = PlainHistogram(grey), target = PlainModel(tones);
    std::int64_t counts[256] = {};
    for (const Byte value : grey.samples) ++counts[value];
    const Engine::Histogram histogram = Engine::ToneHistogram(counts, 64, 41);
    const Engine::Histogram model = Engine::ToneModel(Engine::ToneBands(histogram));
    ASSERT_EQ(Floats(histogram.begin(), histogram.end()), tones);
    ASSERT_EQ(Floats(model.begin(), model.end()), target);
    const ToneTable table = Engine::MatchTone(histogram, model);
    EXPECT_EQ(Bytes(table.begin(), table.end()), PlainMatch(tones, target)) << kind;
    for (int i = 1; i < 256; ++i) EXPECT_LE(table[i] - table[i - 1], 5);
  }
}

TEST(BrushSketch, CountsAndWeightsEndSomewhere) {
  std::int64_t counts[256] = {(1 << 24) + 5, 16};
  const Engine::Histogram shares = Engine::ToneHistogram(counts, 8192, 8192);
  EXPECT_EQ(shares[0], 0.25f);
  EXPECT_EQ(shares[1], 16 / 67108864.0f);
  // An image that is all dark: its weight ends at 2, those of the others at 0.5.
  EXPECT_EQ(Engine::ToneModel({1, 0, 0}), Engine::ToneModel({0.1f, 0.05f, 0.1f}));
  // The even part covers 85..235, and the darks have their peak at 70.
  const Engine::Histogram none = Engine::ToneModel({1, 0, 1}), even = Engine::ToneModel({1, 1, 1});
  for (auto [inside, outside] : {std::pair{85, 84}, {235, 236}})
    EXPECT_GT(even[inside] / none[inside], 1.05f * (even[outside] / none[outside]));
  EXPECT_EQ(std::max_element(none.begin(), none.begin() + 140), none.begin() + 70);
}

TEST(BrushSketch, StaysBetweenTheToneAndHalfOfIt) {
  for (int grey : {0, 77, 200, 255}) {
    Picture flat{60, 40, Bytes(60 * 40 * 4, Byte(grey))};
    const Picture plain = PlainSketch(flat, 22);
    ASSERT_TRUE(Engine::Render(flat.bytes.data(), 60, 40, 22));
    EXPECT_EQ(flat, plain);
  }
  Bytes strokes(61 * 61), gradient(61 * 61, 255);
  Engine::StrokeMap(gradient.data(), 61, 61, strokes.data(), 22);
  EXPECT_EQ(*std::min_element(strokes.begin(), strokes.end()), 128);
  Bytes pixel(4, 9);
  EXPECT_FALSE(Engine::Render(pixel.data(), 1, 1, -1));
  EXPECT_FALSE(Engine::Render(pixel.data(), 1, 1, 128));
  EXPECT_EQ(pixel, Bytes(4, 9));
}

}  // namespace
}  // namespace tintwerk::test

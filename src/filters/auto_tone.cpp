// Operations that look at the whole image before they change it: they count or sum up its values,
// make a table for each channel, and send the image through the tables.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "filters/rows.h"
#include "pixel/hls.h"
#include "pixel/truncate.h"
#include "tintwerk/color_space.h"
#include "tintwerk/pixel_process.h"

using namespace tintwerk;

namespace {

using Counters = std::int64_t[256];

// The table that stretches a channel so that about `clip` of its pixels fall off either end.
ToneTable StretchTable(const Counters& histogram, std::int64_t pixels, double clip) {
  int low = 0, high = pixels == 0 ? 0 : 255;
  if (pixels > 0) {
    const double perPixel = 1.0 / static_cast<double>(pixels);
    auto movesAway = [=](std::int64_t next, std::int64_t sum) {
      return std::abs(static_cast<double>(next + sum) * perPixel - clip) >
             std::abs(static_cast<double>(sum) * perPixel - clip);
    };
    std::int64_t sum = 0;
    for (int i = 0; i < 255;) {
      sum += histogram[i];
      ++i;
      if (movesAway(histogram[i], sum)) {
        low = i;
        break;
      }
    }
    sum = 0;
    for (int i = 255; i > 0;) {
      sum += histogram[i];
      --i;
      if (movesAway(histogram[i], sum)) {
        high = i;
        break;
      }
    }
  }
  const double scale = high == low ? 0 : 1.0 / (high - low);
  return TableOf([=](int p) {
    double v = p - low;
    if (scale != 0) v *= scale;
    v *= 255.0;
    return ClampToByte(v > 0 ? v + 0.5 : v - 0.5);
  });
}

struct Extremes {
  unsigned char min[3] = {255, 255, 255};
  unsigned char max[3] = {0, 0, 0};
};

using ToRgb = int(unsigned char, unsigned char, unsigned char, unsigned char&, unsigned char&,
                  unsigned char&);
constexpr ToRgb* kToRgb[] = {CColorSpace::HSLtoRGB, CColorSpace::YUVtoRGB, CColorSpace::YIQtoRGB,
                             CColorSpace::XYZtoRGB};

// Counts of red, green, blue and luma. Four neighbours count in tables of their own, so that of equal
// ones none waits for the one before.
class ChannelCounts {
 public:
  void Add(const unsigned char* pixels, int count) {
    int x = 0;
    for (; x + 4 <= count; x += 4, pixels += 16)
      for (int turn = 0; turn < 4; ++turn) {
        const unsigned char* const pixel = pixels + 4 * turn;
        Count(turn, pixel[2], pixel[1], pixel[0]);
      }
    for (; x < count; ++x, pixels += 4) Count(0, pixels[2], pixels[1], pixels[0]);
  }
  void AddConverted(const unsigned char* pixels, int count, ToRgb* convert) {
    for (int x = 0; x < count; ++x, pixels += 4) {
      unsigned char r, g, b;
      convert(pixels[2], pixels[1], pixels[0], r, g, b);
      Count(x % 4, r, g, b);
    }
  }
  void AddTo(int channel, std::int32_t* counters) const {
    for (int value = 0; value < 256; ++value)
      for (const auto& table : counts_) counters[value] += table[channel][value];
  }

 private:
  void Count(int turn, unsigned r, unsigned g, unsigned b) {
    auto& table = counts_[turn];
    ++table[0][r];
    ++table[1][g];
    ++table[2][b];
    ++table[3][(601 * g + 306 * r + 117 * b) >> 10];
  }

  std::int32_t counts_[4][4][256] = {};
};

ToneTable ContrastTable(int min, int max) {
  return TableOf([=](int v) {
    if (min >= max) return v;
    return (v - min) * 255 / (max - min);  // values outside do not occur
  });
}

}  // namespace

int CPixelProcess::AutoColor(unsigned char* pixels, int width, int height, int hue, int saturation,
                             CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const int degrees = (std::clamp(hue, 0, 200) - 100) * 180 / 100;
  const int shift = degrees * 255 / 360;
  const int gain = std::clamp((std::clamp(saturation, 0, 200) - 100) * 255 / 100, -255, 255);
  std::array<double, 256> hues, saturations;
  for (int i = 0; i < 256; ++i) {
    const int t = i + shift;  // the circle of hues is 255 steps here, not 256
    hues[i] = (t < 0 ? t + 255 : t >= 256 ? t - 255 : t) / 255.0;
    saturations[i] = std::clamp(i * (gain + 255) / 255, 0, 255) / 255.0;
  }
  const std::int64_t pitch = std::max(width, 0);
  ParallelFor(height, [&](std::int64_t y) {
    AdjustHls(pixels + 4 * pitch * y, pitch, [&](const unsigned char* run, HlsRun& hls) {
      RgbToHls(run, hls);
      for (double& h : hls.hue) h = hues[ClampToByte(h * 255)];
      for (double& s : hls.saturation) s = saturations[ClampToByte(s * 255)];
    });
  });
  return 1;
}

int CPixelProcess::AutoColorLevel(unsigned char* pixels, int width, int height, int mode,
                                  CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  if (mode != 1) return 1;
  const std::int64_t count = *PixelCount(width, height);
  Counters blue = {}, green = {}, red = {};
  for (std::int64_t i = 0; i < count; ++i) {
    ++blue[pixels[4 * i]];
    ++green[pixels[4 * i + 1]];
    ++red[pixels[4 * i + 2]];
  }
  constexpr double kClip = 0.006;
  RunTables(pixels, width, height,
            {StretchTable(blue, count, kClip), StretchTable(green, count, kClip),
             StretchTable(red, count, kClip)});
  return 1;
}

int CPixelProcess::AutoConstrast(unsigned char* pixels, int width, int height,
                                 CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const float span = static_cast<float>(std::int64_t{progressHigh} - progressLow) * 0.5f;
  const float scale = span / static_cast<float>(std::max(height, 1));
  const std::int64_t pitch = 4 * std::int64_t{std::max(width, 0)};
  const RowProgress scan(progress, height, scale, progressLow);
  Extremes found;
  for (int y = 0; y < height; ++y) {
    Extremes row = found;
    const unsigned char* const begin = pixels + pitch * y;
    for (const unsigned char* pixel = begin; pixel != begin + pitch; pixel += 4)
      for (int c = 0; c < 3; ++c) {
        row.min[c] = std::min(row.min[c], pixel[c]);
        row.max[c] = std::max(row.max[c], pixel[c]);
      }
    found = row;
    if (!scan.Finished(y)) return 0;
  }
  const ToneTables tables = {ContrastTable(found.min[0], found.max[0]),
                             ContrastTable(found.min[1], found.max[1]),
                             ContrastTable(found.min[2], found.max[2])};
  return RunTables(pixels, width, height, tables,
                   RowProgress(progress, height, scale, progressLow, Truncate(span)));
}

int CPixelProcess::AutoWhiteBalance(unsigned char* pixels, int width, int height, int threshold,
                                    CObjProgress*, int, int) {
  if (!IsWorkable(pixels, width, height)) return 0;
  const std::int64_t count = *PixelCount(width, height);
  double sumY = 0, sumCb = 0, sumCr = 0;
  std::int64_t nearWhite = 0;
  for (const unsigned char* pixel = pixels; pixel != pixels + 4 * count; pixel += 4) {
    const double b = pixel[0], g = pixel[1], r = pixel[2];
    const double y = 0.587 * g + 0.299 * r + 0.114 * b;
    const double cb = 0.5 * b - (0.3313 * g + 0.1687 * r);
    const double cr = 0.5 * r - 0.4187 * g - 0.0813 * b;
    if (y - std::abs(cb) - std::abs(cr) > threshold) {
      sumY += y;
      sumCb += cb;
      sumCr += cr;
      ++nearWhite;
    }
  }
  if (nearWhite == 0) return 0;
  // The gains of blue and red that make the mean of those pixels grey, with green as it is. Of the
  // mean (y, cb, cr) = (p, q, s), a is half the blue and b half the red, and
  //
  //     a blueGain + c redGain = e        so that cb = 0
  //     d blueGain + b redGain = f        so that cr = 0
  //
  // where e and f are the parts of green; the two gains are Cramer's.
  const double p = sumY / nearWhite, q = sumCb / nearWhite, s = sumCr / nearWhite;
  const double a = 0.866 * q + 0.5 * p, b = 0.701 * s + 0.5 * p;
  const double c = -0.1687 * p - 0.2365 * s, d = -0.0813 * p - 0.1441 * q;
  const double e = 0.3313 * p - 0.114 * q - 0.2366 * s, f = 0.4187 * p - 0.1441 * q - 0.299 * s;
  const double blueGain = (e * b - f * c) / (b * a - d * c);
  const double redGain = (e * d - f * a) / (d * c - b * a);
  auto scaled = [](double gain) {
    return TableOf([=](int v) { return TruncateToByte(std::min(255.0, v * gain)); });
  };
  const ToneTable same = TableOf([](int v) { return v; });
  RunTables(pixels, width, height, {scaled(blueGain), same, scaled(redGain)});
  return 1;
}

std::int32_t CPixelProcess::Histogram(const unsigned char* pixels, int width, int height,
                                      std::int32_t* red, std::int32_t* green, std::int32_t* blue,
                                      std::int32_t* gray, std::int32_t colorSpace,
                                      CObjProgress* progress, int progressLow, int progressHigh) {
  if (!IsWorkable(pixels, width, height)) return 0;
  std::int32_t* const given[] = {red, green, blue, gray};
  for (std::int32_t* counters : given)
    if (counters) std::fill_n(counters, 256, 0);
  const auto tenth = static_cast<float>(std::int64_t{progressHigh} - progressLow) * 0.1f;
  const RowProgress rows(progress, height, tenth / static_cast<float>(std::max(height, 1)),
                         progressLow);
  ChannelCounts counts;
  bool goesOn = true;
  for (int y = 0; y < height && goesOn; ++y) {
    const unsigned char* const row = pixels + 4 * std::int64_t{std::max(width, 0)} * y;
    if (colorSpace >= 1 && colorSpace <= 4)
      counts.AddConverted(row, width, kToRgb[colorSpace - 1]);
    else
      counts.Add(row, width);
    goesOn = rows.Finished(y);
  }
  for (int channel = 0; channel < 4; ++channel)
    if (given[channel]) counts.AddTo(channel, given[channel]);
  if (!goesOn) return 0;
  std::int32_t largest = 0;
  for (const std::int32_t* counters : given)
    if (counters) largest = std::max(largest, *std::max_element(counters, counters + 256));
  return largest;
}

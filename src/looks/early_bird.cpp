// The tone model of an early morning: curves, a grey lift, a colour matrix, a vignette, and a curve
// that is strongest in the middle.
#include <cmath>

#include "looks/recipe.h"
#include "pixel/truncate.h"

using namespace tintwerk;

namespace {

// The identity up to the middle, and one less from there on: the curve of red and green on the way
// in, of green on the way out, and the lift of red.
constexpr ToneTable kIn = TableOf([](int i) { return i <= 128 ? i : i - 1; });
constexpr ToneTable kInBlue = Tone({0, 51, 102, 153, 203});
constexpr ToneTables kLift = {
    .blue = Tone({0, 48, 96, 143, 190}), .green = Tone({0, 57, 114, 171, 227}), .red = kIn};
constexpr ToneTable kCentre = Tone({0, 90, 179, 217, 254});
constexpr ToneTables kOut = {
    .blue = Tone({17, 77, 137, 195, 254}), .green = kIn, .red = Tone({29, 86, 142, 198, 254})};

// Rows of output and columns of input in the order red, green, blue. Rows sum to 1: greys stay.
template <class Real>
constexpr Real kMatrix[3][3] = {{Real(1.2103), Real(-0.1761), Real(-0.0342)},
                                {Real(-0.0897), Real(1.1239), Real(-0.0342)},
                                {Real(-0.091), Real(-0.1774), Real(1.2658)}};

template <class Real>
Real Mixed(int output, Real red, Real green, Real blue) {
  const Real(&row)[3] = kMatrix<Real>[output];
  return row[0] * red + row[1] * green + row[2] * blue;
}

// How much of a value passes by the centre's curve, from t: 0 in the middle to 1 far out.
template <class Real>
Real Passing(Real t) {
  if (t <= 0) return 0;
  if (t >= Real(1.25)) return 1;
  const Real u = std::max(std::min(t / Real(1.25), Real(1)), Real(0));
  return (3 - 2 * u) * u * u;
}

// Vignette, centre curve and output curve, which depend on a channel's value and a key alone.
struct Finish {
  unsigned char table[3][256][256];  // of channel, key and value

  // @param finished gives the byte of a value after the vignette, for a key
  template <class Finished>
  Finish(const SquareMap& vignette, const Finished& finished) {
    for (int c = 0; c < 3; ++c)
      for (int key = 0; key < 256; ++key)
        for (int v = 0; v < 256; ++v)
          table[c][key][v] = kOut[c][finished(key, vignette(v, key, c))];
  }
};

// The stages up to the vignette, then the rest by table.
template <class Grey>
void EarlyBird(unsigned char* pixel, const Grey& grey, const Finish* finish, int key) {
  int r = kIn[pixel[2]], g = kIn[pixel[1]], b = kInBlue[pixel[0]];
  const int y = grey(r, g, b) & 255;
  r = (r + kLift.red[y]) >> 1;
  g = (g + kLift.green[y]) >> 1;
  b = (b + kLift.blue[y]) >> 1;
  const float fr = static_cast<float>(r), fg = static_cast<float>(g), fb = static_cast<float>(b);
  pixel[2] = finish->table[2][key][TruncateToByte(Mixed(0, fr, fg, fb))];
  pixel[1] = finish->table[1][key][TruncateToByte(Mixed(1, fr, fg, fb))];
  pixel[0] = finish->table[0][key][TruncateToByte(Mixed(2, fr, fg, fb))];
}

// The square of the distance from the centre as RadialKey has it, neither limited nor scaled.
class Distance {
 public:
  explicit Distance(const Call& call)
      : sx_(static_cast<float>(2.0 / call.width)), sy_(static_cast<float>(2.0 / call.height)) {}
  float operator()(int x, int y) const {
    const float u = static_cast<float>(y) * sy_ - 1, s = static_cast<float>(x) * sx_ - 1;
    return u * u + s * s;
  }

 private:
  float sx_, sy_;
};

}  // namespace

LOOK(Effect_174EarlyBird) {
  Files files(call);
  const auto& mask = files.Texture(L"174mask.jpg");
  const auto vignette = files.Square(L"vignetteMap.png");
  if (!files) return 0;
  const auto finish = std::make_unique<Finish>(vignette, [](int key, int v) {
    const auto w = static_cast<float>(Passing(std::pow(key * 0.0039215, 1.35) / 1.65));
    return TruncateToByte(kCentre[v] * (1 - static_cast<double>(w)) + static_cast<float>(v) * w);
  });
  return EachPixel(
      call,
      [finish = finish.get()](unsigned char* pixel, const unsigned char* m) {
        const auto grey = [](int r, int g, int b) {
          return static_cast<int>(0.3 * r + 0.59 * g + 0.1 * b);
        };
        EarlyBird(pixel, grey, finish, m[2]);
      },
      mask);
}

LOOK(Effect_EarlyBird) {
  call.Report(static_cast<float>(call.low));
  Files files(call);
  const auto vignette = files.Square(L"style\\VignetteMap.png");
  if (!files) return 0;
  const auto finish = std::make_unique<Finish>(vignette, [](int key, int v) {
    const float w = Passing(std::pow(static_cast<float>(key) * 0.003921f, 1.35f) / 1.65f);
    return TruncateToByte(static_cast<float>(kCentre[v]) * (1 - w) + static_cast<float>(v) * w);
  });
  const RadialKey radius(call.width, call.height);
  EachPixelAt(call, [radius, finish = finish.get()](unsigned char* pixel, int x, int y) {
    const auto grey = [](int r, int g, int b) { return (19595 * r + 38469 * g + 7472 * b) >> 16; };
    EarlyBird(pixel, grey, finish, radius.At(radius.Row(y), x));
  });
  call.Report(static_cast<float>(call.high));
  return 1;
}

LOOK(Effect_JiuShiGuang) {
  Files files(call);
  const auto& light = files.Picture(L"vignette640.jpg");
  const auto overlay = files.Square(L"ZVOverlay25.png", kPlaneB);
  if (!files) return 0;
  return EachPixelAt(
      call,
      [overlay, distance = Distance(call)](unsigned char* pixel, int x, int y,
                                           const unsigned char* m) {
        const int red = pixel[2], green = pixel[1], blue = kInBlue[pixel[0]];
        const int grey = ((306 * red + 601 * green + 117 * blue) >> 10) & 255;
        const double r = (grey + red) * 0.5, g = (kLift.green[grey] + green) * 0.5,
                     b = (kLift.blue[grey] + blue) * 0.5;
        const float w = Passing(std::pow(distance(x, y), 1.35f) / 1.65f);
        const double p = 1 - static_cast<double>(w);
        const auto centred = [p](double value) {
          const int v = ClampToByte(value);
          return TruncateToByte(kCentre[v] * p + v * (1 - p));
        };
        pixel[2] = overlay(kOut.red[centred(Mixed(0, r, g, b))], m[2]);
        pixel[1] = overlay(centred(Mixed(1, r, g, b)), m[1]);
        pixel[0] = overlay(kOut.blue[centred(Mixed(2, r, g, b))], m[0]);
      },
      light);
}

LOOK(Effect_KuAi) {
  Files files(call);
  const auto strip = [&files](const wchar_t* name) {
    return files.Strip(name, MapExtent::kFixedRect);
  };
  const auto first = strip(L"kujiu1.png"), centre = strip(L"kujiu3.png"),
             contrast = strip(L"kujiu4.png"), tint = strip(L"kujiu5.png"),
             last = strip(L"kujiu2.png");
  if (!files) return 0;
  return EachPixelAt(call, [=, distance = Distance(call)](unsigned char* pixel, int x, int y) {
    int v[3];
    for (int c = 0; c < 3; ++c) v[c] = first(pixel[c], c);
    v[2] = ClampToByte(1.10515 * v[2] - 0.08805 * v[1] - 0.0171 * v[0]);
    v[1] = ClampToByte(1.06195 * v[1] - 0.04485 * v[2] - 0.0171 * v[0]);
    v[0] = ClampToByte(1.1329 * v[0] - (0.046 * v[2] + 0.0892 * v[1]));
    const float q = std::min(distance(x, y), 1.0f);
    for (int c = 0; c < 3; ++c) {
      const float lifted = centre(v[c], c);
      v[c] = contrast(TruncateToByte(lifted * (1 - q) + static_cast<float>(v[c]) * q), c);
    }
    const int grey = static_cast<int>(0.3 * v[2] + 0.59 * v[1] + 0.11 * v[0]) & 255;
    for (int c = 0; c < 3; ++c) pixel[c] = last((tint(grey, c) + v[c]) >> 1, c);
  });
}

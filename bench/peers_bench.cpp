// What a user would pick instead: OpenCV's nearest operation on the same pictures, under the name
// of ours.
#include <opencv2/imgproc.hpp>

#include "bench.h"

namespace {

/// Fills `result`, which is there already: at its best, although some of ours have to hand over new
/// images.
using Peer = void (*)(const cv::Mat& image, cv::Mat& result);

constexpr double kSigma = 5.1;  // of the Gaussians with 27 taps

void Blur(const cv::Mat& image, cv::Mat& result, int taps) {
#if CV_VERSION_MAJOR * 100 + CV_VERSION_MINOR >= 407
  cv::stackBlur(image, result, {taps, taps});
#else
  cv::GaussianBlur(image, result, {taps, taps}, 0);
#endif
}

void UnsharpMask(const cv::Mat& image, cv::Mat& result, int taps, double sigma) {
  cv::Mat blurred;
  cv::GaussianBlur(image, blurred, {taps, taps}, sigma);
  cv::addWeighted(image, 1.5, blurred, -0.5, 0, result);
}

void Convolve(const cv::Mat& image, cv::Mat& result, int side) {
  cv::Mat kernel = cv::Mat::ones(side, side, CV_32F);
  kernel.at<float>(side / 2, side / 2) = 8;
  cv::filter2D(image, result, -1, kernel / (side * side + 7));
}

/// To the double of a picture of half the size.
void Enlarge(const cv::Mat& image, cv::Mat& result, int interpolation) {
  const cv::Mat half = image(cv::Rect(0, 0, image.cols / 2, image.rows / 2));
  cv::resize(half, result, image.size(), 0, 0, interpolation);
}

void HlsAndBack(const cv::Mat& image, cv::Mat& result) {
  cv::Mat hls;
  cv::cvtColor(image, hls, cv::COLOR_BGR2HLS_FULL);
  cv::cvtColor(hls, result, cv::COLOR_HLS2BGR_FULL, 4);
}

/// To three planes and back.
void LabAndBack(const cv::Mat& image, cv::Mat& result) {
  cv::Mat lab, planes[3];
  cv::cvtColor(image, lab, cv::COLOR_BGR2Lab);
  cv::split(lab, planes);
  cv::merge(planes, 3, lab);
  cv::cvtColor(lab, result, cv::COLOR_Lab2BGR, 4);
}
void YuvAndBack(const cv::Mat& image, cv::Mat& result) {
  cv::Mat yuv, planes[3];
  cv::cvtColor(image, yuv, cv::COLOR_BGR2YUV);
  cv::split(yuv, planes);
  cv::merge(planes, 3, yuv);
  cv::cvtColor(yuv, result, cv::COLOR_YUV2BGR, 4);
}

/// The guided filter of the green plane by itself, from its box filters.
void GuidedFilter(const cv::Mat& image, cv::Mat& result, int radius) {
  const auto mean = [=](const cv::Mat& plane) {
    cv::Mat means;
    cv::blur(plane, means, {2 * radius + 1, 2 * radius + 1});
    return means;
  };
  cv::Mat green, plane;
  cv::extractChannel(image, green, 1);
  green.convertTo(plane, CV_32F);
  const cv::Mat means = mean(plane);
  const cv::Mat variance = mean(plane.mul(plane)) - means.mul(means);
  const cv::Mat a = variance / (variance + 400);
  const cv::Mat b = means - a.mul(means);
  const cv::Mat smooth = mean(a).mul(plane) + mean(b);
  smooth.convertTo(result, CV_8U);
}

void Histogram(const cv::Mat& image, cv::Mat& result) {
  const int bins = 256;
  const float range[] = {0, 256}, *ranges = range;
  for (int channel = 0; channel < 3; ++channel)
    cv::calcHist(&image, 1, &channel, {}, result, 1, &bins, &ranges);
}

void Grey(const cv::Mat& image, cv::Mat& result) {
  cv::Mat grey;
  cv::cvtColor(image, grey, cv::COLOR_BGRA2GRAY);
  cv::cvtColor(grey, result, cv::COLOR_GRAY2BGRA);
}

/// Of a byte plane: the first quarter of the image's bytes.
void Erode(const cv::Mat& image, cv::Mat& result, int side) {
  const cv::Mat plane(image.size(), CV_8UC1, image.data);
  cv::Mat eroded(result.size(), CV_8UC1, result.data);
  cv::erode(plane, eroded, cv::Mat::ones(side, side, CV_8U));
}

void Rotate(const cv::Mat& image, cv::Mat& result) {
  const cv::Point2f centre(image.cols * 0.5f, image.rows * 0.5f);
  cv::warpAffine(image, result, cv::getRotationMatrix2D(centre, -20, 1), image.size(),
                 cv::INTER_LINEAR, cv::BORDER_REPLICATE);
}

void FindEdges(const cv::Mat& image, cv::Mat& result) {
  cv::Canny(image, result, bench::kLowThreshold, bench::kHighThreshold, 3, true);
}

#define TINTWERK_PEER(name, ...)                                               \
  {                                                                            \
    "OpenCV/" name, [](const cv::Mat& image, cv::Mat& result) { __VA_ARGS__; } \
  }

const struct {
  const char* name;
  Peer run;
} kPeers[] = {
    TINTWERK_PEER("MemoryCopy", image.copyTo(result)),
    TINTWERK_PEER("Strength", cv::addWeighted(image, 0.3, result, 0.7, 0, result)),
    TINTWERK_PEER("Lut", cv::LUT(image, cv::Mat(1, 256, CV_8UC4, cv::Scalar(7)), result)),
    TINTWERK_PEER("Negative", cv::bitwise_xor(image, cv::Scalar(255, 255, 255, 0), result)),
    TINTWERK_PEER("GrayScale", Grey(image, result)),
    TINTWERK_PEER("Histogram", Histogram(image, result)),
    TINTWERK_PEER("ImageToYuv", cv::cvtColor(image, result, cv::COLOR_BGR2YUV)),
    TINTWERK_PEER("AutoColor", HlsAndBack(image, result)),
    TINTWERK_PEER("ColorBalanceKeepingLightness", HlsAndBack(image, result)),
    TINTWERK_PEER("LabPlanes/ThereAndBack", LabAndBack(image, result)),
    TINTWERK_PEER("YuvPlanes", YuvAndBack(image, result)),
    TINTWERK_PEER("Warm", cv::LUT(image, cv::Mat(1, 256, CV_8UC4, cv::Scalar(7)), result)),

    TINTWERK_PEER("GuideFilter/Radius8", GuidedFilter(image, result, 8)),
    TINTWERK_PEER("GuideFilter/Radius60", GuidedFilter(image, result, 60)),
    TINTWERK_PEER("StackBlur/Radius2", Blur(image, result, 5)),
    TINTWERK_PEER("StackBlur/Radius13", Blur(image, result, 27)),
    TINTWERK_PEER("StackBlur/Radius60", cv::blur(image, result, {121, 121})),
    TINTWERK_PEER("RecursiveGaussian", cv::GaussianBlur(image, result, {27, 27}, kSigma)),
    TINTWERK_PEER("UsmSharp/5_taps", UnsharpMask(image, result, 5, 0)),
    TINTWERK_PEER("UsmSharp/7_taps", UnsharpMask(image, result, 7, 0)),
    TINTWERK_PEER("UsmSharp/27_taps", UnsharpMask(image, result, 27, kSigma)),
    TINTWERK_PEER("Convolve/3x3", Convolve(image, result, 3)),
    TINTWERK_PEER("Convolve/9x9", Convolve(image, result, 9)),
    TINTWERK_PEER("Dilate/5x5", cv::dilate(image, result, cv::Mat::ones(5, 5, CV_8U))),
    TINTWERK_PEER("WindowMinimum", Erode(image, result, 5)),

    TINTWERK_PEER("Enlarge/Bilinear", Enlarge(image, result, cv::INTER_LINEAR)),
    TINTWERK_PEER("Enlarge/Nearest", Enlarge(image, result, cv::INTER_NEAREST)),
    TINTWERK_PEER("Enlarge/Spline", Enlarge(image, result, cv::INTER_CUBIC)),
    TINTWERK_PEER("BilinearReSample/Pixels", Enlarge(image, result, cv::INTER_LINEAR)),
    TINTWERK_PEER("Rotate", Rotate(image, result)),
    TINTWERK_PEER("RotateFlip", cv::rotate(image, result, cv::ROTATE_90_CLOCKWISE)),
};
#undef TINTWERK_PEER

const bool kRegistered = [] {
  for (const auto& peer : kPeers)
    benchmark::RegisterBenchmark(peer.name, [peer](benchmark::State& state) {
      const bench::Size size(state.range(0));
      cv::setNumThreads(state.range(1) == 0 ? -1 : static_cast<int>(state.range(1)));
      auto photo = bench::PhotoLike(size);
      const cv::Mat image(size.height, size.width, CV_8UC4, photo.data());
      cv::Mat result = image.clone();
      peer.run(image, result);
      bench::Measure(state, [&] { peer.run(image, result); });
    })->Apply(bench::SizesAndThreads);
  return true;
}();

/// The same on byte planes.
const struct {
  const char* name;
  std::vector<unsigned char> (*makePlane)(bench::Size);
  Peer run;
} kPlanePeers[] = {
    {"OpenCV/CannyEdges/Shapes", bench::ShapesPlane, FindEdges},
    {"OpenCV/CannyEdges/Noise", bench::NoisePlane, FindEdges},
};

const bool kPlanesRegistered = [] {
  for (const auto& peer : kPlanePeers)
    benchmark::RegisterBenchmark(peer.name, [peer](benchmark::State& state) {
      const bench::Size size(state.range(0));
      cv::setNumThreads(state.range(1) == 0 ? -1 : static_cast<int>(state.range(1)));
      auto plane = peer.makePlane(size);
      const cv::Mat image(size.height, size.width, CV_8UC1, plane.data());
      cv::Mat result = image.clone();
      bench::Measure(
          state, [&] { peer.run(image, result); }, 1);
    })->Apply(bench::SizesAndThreads);
  return true;
}();

}  // namespace

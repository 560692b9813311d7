#include "frame/layer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "frame/image.h"

namespace tintwerk {
namespace {

class Pixels final : public Layer {
 public:
  Pixels(const unsigned char* pixels, int width) : pixels_(pixels), width_(width) {}
  std::unique_ptr<Reader> NewReader(int) const override {
    return std::make_unique<RowReader>(pixels_, width_);
  }

 private:
  class RowReader final : public Reader {
   public:
    RowReader(const unsigned char* pixels, int width) : pixels_(pixels), width_(width) {}
    const unsigned char* Rows(int from, int) override {
      return pixels_ + std::size_t{4} * width_ * from;
    }

   private:
    const unsigned char* pixels_;
    int width_;
  };
  const unsigned char* pixels_;
  int width_;
};

class Blank final : public Layer {
 public:
  explicit Blank(int width) : width_(width) {}
  std::unique_ptr<Reader> NewReader(int bandRows) const override {
    return std::make_unique<RowReader>(std::size_t{4} * width_ * bandRows);
  }

 private:
  class RowReader final : public Reader {
   public:
    explicit RowReader(std::size_t bytes) : pixels_(RequirePixels(bytes)) {
      std::memset(pixels_.get(), 0, bytes);
    }
    const unsigned char* Rows(int, int) override { return pixels_.get(); }

   private:
    PixelMemory pixels_;
  };
  int width_;
};

// Rows of another layer, moved along into rows of another width.
class MovedRows final : public Layer::Reader {
 public:
  MovedRows(std::unique_ptr<Layer::Reader> inner, int innerWidth, int left, int top, int bottom,
            int width, int bandRows)
      : inner_(std::move(inner)),
        innerPitch_(std::size_t{4} * innerWidth),
        pitch_(std::size_t{4} * width),
        left_(std::size_t{4} * left),
        top_(top),
        bottom_(bottom),
        pixels_(RequirePixels(pitch_ * bandRows)) {}

  const unsigned char* Rows(int from, int to) override {
    const int below = std::min(to, bottom_);
    if (from >= below) return pixels_.get();
    const unsigned char* row = inner_->Rows(top_ + from, top_ + below);
    for (int y = from; y < below; ++y, row += innerPitch_)
      std::memcpy(pixels_.get() + pitch_ * (y - from), row + left_, std::min(pitch_, innerPitch_));
    return pixels_.get();
  }

 private:
  std::unique_ptr<Layer::Reader> inner_;
  std::size_t innerPitch_, pitch_, left_;
  int top_, bottom_;
  PixelMemory pixels_;
};

class Crop final : public Layer {
 public:
  Crop(const Layer& layer, int layerWidth, int left, int top, int width)
      : layer_(layer), layerWidth_(layerWidth), left_(left), top_(top), width_(width) {}
  std::unique_ptr<Reader> NewReader(int bandRows) const override {
    return std::make_unique<MovedRows>(layer_.NewReader(bandRows), layerWidth_, left_, top_,
                                       std::numeric_limits<int>::max(), width_, bandRows);
  }

 private:
  const Layer& layer_;
  int layerWidth_, left_, top_, width_;
};

class Corner final : public Layer {
 public:
  Corner(std::unique_ptr<Layer> layer, int layerWidth, int layerHeight, int width)
      : layer_(std::move(layer)),
        layerWidth_(layerWidth),
        layerHeight_(layerHeight),
        width_(width) {}
  std::unique_ptr<Reader> NewReader(int bandRows) const override {
    return std::make_unique<MovedRows>(layer_->NewReader(bandRows), layerWidth_, 0, 0, layerHeight_,
                                       width_, bandRows);
  }

 private:
  std::unique_ptr<Layer> layer_;
  int layerWidth_, layerHeight_, width_;
};

}  // namespace

std::unique_ptr<Layer> PixelLayer(const unsigned char* pixels, int width) {
  return std::make_unique<Pixels>(pixels, width);
}

std::unique_ptr<Layer> BlankLayer(int width) {
  return std::make_unique<Blank>(width);
}

std::unique_ptr<Layer> CropLayer(const Layer& layer, int layerWidth, int left, int top, int width) {
  return std::make_unique<Crop>(layer, layerWidth, left, top, width);
}

std::unique_ptr<Layer> CornerLayer(std::unique_ptr<Layer> layer, int layerWidth, int layerHeight,
                                   int width) {
  return std::make_unique<Corner>(std::move(layer), layerWidth, layerHeight, width);
}

}  // namespace tintwerk

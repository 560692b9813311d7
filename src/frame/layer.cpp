#include "frame/layer.h"

#include <cstring>

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

}  // namespace

std::unique_ptr<Layer> PixelLayer(const unsigned char* pixels, int width) {
  return std::make_unique<Pixels>(pixels, width);
}

std::unique_ptr<Layer> BlankLayer(int width) {
  return std::make_unique<Blank>(width);
}

}  // namespace tintwerk

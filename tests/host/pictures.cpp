#include "pictures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <stdexcept>

#include "tintwerk/effect.h"

namespace host_test {

namespace {

using vips::VImage;

class Vips : public testing::Environment {
  void SetUp() override {
    ASSERT_EQ(VIPS_INIT("tintwerk_host_tests"), 0);
    vips_cache_set_max(0);
  }
  void TearDown() override { vips_shutdown(); }
};
[[maybe_unused]] const auto* const kVips = testing::AddGlobalTestEnvironment(new Vips);

}  // namespace

std::vector<int> Decoded::At(int x, int y) const {
  const auto from = bytes.begin() + (static_cast<std::ptrdiff_t>(y) * width + x) * bands;
  return {from, from + bands};
}

Decoded Decode(const std::string& path) {
  const VImage image =
      VImage::new_from_file(path.c_str(), VImage::option()->set("fail_on", VIPS_FAIL_ON_ERROR));
  if (image.format() != VIPS_FORMAT_UCHAR) throw std::runtime_error("not 8 bits a sample");
  std::size_t size = 0;
  auto* memory = static_cast<std::uint8_t*>(image.write_to_memory(&size));
  Decoded decoded{image.width(), image.height(), image.bands(), {memory, memory + size}};
  g_free(memory);
  return decoded;
}

VImage Waves(int width, int height, int bands) {
  std::vector<std::uint8_t> bytes;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      for (int band = 0; band < bands; ++band)
        bytes.push_back(static_cast<std::uint8_t>(
            127.5 + 127 * std::sin(x * (0.05 + 0.02 * band) + y * 0.07 * (band - 1.3) + band)));
  return VImage(vips_image_new_from_memory_copy(bytes.data(), bytes.size(), width, height, bands,
                                                VIPS_FORMAT_UCHAR))
      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

VImage Uniform(int width, int height, const std::vector<double>& colour) {
  return VImage::black(width, height)
      .new_from_image(colour)
      .cast(VIPS_FORMAT_UCHAR)
      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

Decoded LookOf(Decoded picture) {
  const std::size_t count = static_cast<std::size_t>(picture.width) * picture.height;
  const int order[] = {2, 1, 0, 3};
  std::vector<unsigned char> pixels(count * 4, 255);
  for (std::size_t i = 0; i < count; ++i)
    for (int band = 0; band < picture.bands; ++band)
      pixels[i * 4 + order[band]] = picture.bytes[i * picture.bands + band];
  std::wstring root = std::filesystem::path(TINTWERK_RESOURCE_DIR).wstring();
  EXPECT_EQ(CEffect::Effect_80S(pixels.data(), picture.width, picture.height, root.data(), nullptr,
                                0, 100),
            1);
  for (std::size_t i = 0; i < count; ++i)
    for (int band = 0; band < picture.bands; ++band)
      picture.bytes[i * picture.bands + band] = pixels[i * 4 + order[band]];
  return picture;
}

double MeanDifference(const Decoded& a, const Decoded& b) {
  if (a.bytes.size() != b.bytes.size()) return 255;
  double sum = 0;
  for (std::size_t i = 0; i < a.bytes.size(); ++i) sum += std::abs(a.bytes[i] - b.bytes[i]);
  return sum / static_cast<double>(a.bytes.size());
}

std::string SidewaysJpeg(const VImage& picture) {
  using namespace std::literals;
  // Little-endian TIFF: two directories of 12-byte records, tag, type, count and value or place.
  const std::string tiff =
      "II*\0\x08\0\0\0"
      "\2\0"
      "\x0f\1\2\0\x08\0\0\0\x50\0\0\0"  // camera, 8 letters at 80
      "\x12\1\3\0\1\0\0\0\6\0\0\0"      // orientation
      "\x26\0\0\0"
      "\3\0"
      "\3\1\3\0\1\0\0\0\6\0\0\0"
      "\1\2\4\0\1\0\0\0\x58\0\0\0"  // thumbnail, at 88
      "\2\2\4\0\1\0\0\0\x13\0\0\0"  // of 19 bytes
      "\0\0\0\0"
      "Testcam\0\xff\xd8STALE-THUMBNAIL\xff\xd9"s;
  const auto length = static_cast<char>(tiff.size() + 8);
  const std::string segment = "\xff\xe1\0"s + length + "Exif\0\0"s + tiff;

  void* memory = nullptr;
  std::size_t size = 0;
  picture.write_to_buffer(".jpg[Q=95]", &memory, &size);
  std::string jpeg(static_cast<const char*>(memory), size);
  g_free(memory);
  return jpeg.insert(2, segment);
}

}  // namespace host_test

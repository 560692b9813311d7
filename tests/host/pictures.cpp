#include "pictures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <stdexcept>
#include <string_view>

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

void Append(std::string& bytes, std::uint32_t value, int size) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<char>(value >> (8 * i)));
}

// One record of a little-endian TIFF directory.
void AppendTag(std::string& bytes, int tag, int type, std::uint32_t count, std::uint32_t value) {
  Append(bytes, tag, 2);
  Append(bytes, type, 2);
  Append(bytes, count, 4);
  Append(bytes, value, 4);
}

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
  constexpr auto camera = "Testcam\0"sv;
  constexpr auto thumbnail = "\xff\xd8STALE-THUMBNAIL\xff\xd9"sv;
  constexpr int first = 8;                        // where the first directory lies
  constexpr int second = first + 2 + 2 * 12 + 4;  // and the thumbnail's
  constexpr int data = second + 2 + 3 * 12 + 4;
  std::string tiff = "II*\0"s;
  Append(tiff, first, 4);
  Append(tiff, 2, 2);
  AppendTag(tiff, 0x010f, 2, camera.size(), data);
  AppendTag(tiff, 0x0112, 3, 1, 6);
  Append(tiff, second, 4);
  Append(tiff, 3, 2);
  AppendTag(tiff, 0x0103, 3, 1, 6);
  AppendTag(tiff, 0x0201, 4, 1, data + camera.size());
  AppendTag(tiff, 0x0202, 4, 1, thumbnail.size());
  Append(tiff, 0, 4);
  tiff.append(camera).append(thumbnail);

  std::string segment = "\xff\xe1"s;
  const std::size_t length = tiff.size() + 8;
  segment.push_back(static_cast<char>(length >> 8));
  segment.push_back(static_cast<char>(length));
  segment.append("Exif\0\0"sv).append(tiff);

  void* memory = nullptr;
  std::size_t size = 0;
  picture.write_to_buffer(".jpg[Q=95]", &memory, &size);
  std::string jpeg(static_cast<const char*>(memory), size);
  g_free(memory);
  return jpeg.insert(2, segment);
}

}  // namespace host_test

#include "frame/image_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "support/image_files.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::EncodeJpeg;
using test::EncodePng;
using test::Picture;
using test::PngChunk;
using test::PngKind;

// The pixels of a file, or nothing if it fails, in which case the picture must stay as it was.
std::optional<Picture> Decode(const Bytes& file, Gdiplus::Status* status = nullptr) {
  PixelBlock block{11, 13, nullptr};
  const Gdiplus::Status result = DecodeImage(file, block);
  if (status) *status = result;
  if (result == Gdiplus::Ok)
    return Picture{
        block.width, block.height, {block.bytes.get(), block.bytes.get() + block.Size()}};
  EXPECT_TRUE(block.width == 11 && block.height == 13 && !block.bytes);
  return std::nullopt;
}

Gdiplus::Status StatusOf(const Bytes& file) {
  Gdiplus::Status status;
  Decode(file, &status);
  return status;
}

// What a PNG of raw rows shows, worked out sample by sample.
Picture Expected(const PngKind& kind, int width, int height, const Bytes& rows) {
  Picture picture{width, height, Bytes(std::size_t{4} * width * height)};
  const int channels = kind.Channels();
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      std::array<int, 4> sample = {}, byte = {};
      for (int c = 0; c < channels; ++c) {
        const std::size_t bit = (std::size_t(x) * channels + c) * kind.depth;
        const unsigned char* const at = &rows[kind.RowSize(width) * y + bit / 8];
        const int most = (1 << kind.depth) - 1;
        sample[c] =
            kind.depth == 16 ? at[0] << 8 | at[1] : at[0] >> (8 - kind.depth - bit % 8) & most;
        byte[c] = kind.depth == 16 ? sample[c] >> 8 : sample[c] * 255 / most;
      }
      bool keyed = !kind.transparency.empty();
      for (int c = 0; c < channels && keyed; ++c)
        keyed = c < int(kind.transparency.size()) && sample[c] == kind.transparency[c];
      std::array<int, 4> rgba;
      if (kind.colour == SPNG_COLOR_TYPE_INDEXED) {
        const auto& entry = kind.palette[sample[0]];
        const bool told = sample[0] < int(kind.transparency.size());
        rgba = {entry.red, entry.green, entry.blue, told ? kind.transparency[sample[0]] : 255};
      } else if (channels < 3) {
        rgba = {byte[0], byte[0], byte[0], channels == 2 ? byte[1] : keyed ? 0 : 255};
      } else {
        rgba = {byte[0], byte[1], byte[2], channels == 4 ? byte[3] : keyed ? 0 : 255};
      }
      for (int c = 0; c < 4; ++c)
        picture.At(x, y)[c] = static_cast<unsigned char>(rgba[c == 3 ? 3 : 2 - c]);
    }
  return picture;
}

TEST(DecodePng, EveryKindGivesThePixelsItWasMadeOf) {
  std::vector<PngKind> kinds;
  for (bool interlaced : {false, true}) {
    for (int depth : {1, 2, 4, 8, 16})
      kinds.push_back({SPNG_COLOR_TYPE_GRAYSCALE, depth, interlaced});
    for (int depth : {8, 16})
      for (auto colour : {SPNG_COLOR_TYPE_TRUECOLOR, SPNG_COLOR_TYPE_GRAYSCALE_ALPHA,
                          SPNG_COLOR_TYPE_TRUECOLOR_ALPHA})
        kinds.push_back({colour, depth, interlaced});
    for (int depth : {1, 2, 4, 8}) {
      PngKind palette{SPNG_COLOR_TYPE_INDEXED, depth, interlaced};
      const Bytes random = test::RandomBytes(1024, depth);
      for (int i = 0; i < 4 << depth; i += 4)
        palette.palette.push_back({random[i], random[i + 1], random[i + 2], 0});
      kinds.push_back(palette);
      // Entries beyond the told alphas are opaque.
      for (int i = 0; i < 1 << (depth - 1); ++i) palette.transparency.push_back(random[4 * i + 3]);
      kinds.push_back(palette);
    }
  }
  for (PngKind kind : kinds)
    for (auto [width, height] : {std::pair{1, 1}, {3, 2}, {5, 1}, {1, 9}, {8, 8}, {33, 17}}) {
      SCOPED_TRACE(testing::Message() << "colour " << kind.colour << ", " << kind.depth << " bits, "
                                      << width << " x " << height << ", " << kind.interlaced);
      const Bytes rows = test::RandomBytes(kind.RowSize(width) * height, width + kind.depth);
      const auto decoded = Decode(EncodePng(kind, width, height, rows));
      ASSERT_TRUE(decoded);
      EXPECT_TRUE(*decoded == Expected(kind, width, height, rows));
    }
}

TEST(DecodePng, AKeyColourIsTransparentInAllItsBits) {
  for (auto colour : {SPNG_COLOR_TYPE_GRAYSCALE, SPNG_COLOR_TYPE_TRUECOLOR})
    for (int depth : {1, 2, 4, 8, 16}) {
      PngKind kind{colour, depth};
      if (depth < 8 && kind.Channels() > 1) continue;
      const int step = kind.Channels() * depth / 8;  // bytes of a pixel
      Bytes rows = test::RandomBytes(kind.RowSize(16) * 2, depth);
      // The second pixel is the first but for its last bit.
      if (step > 0) {
        std::copy_n(rows.begin(), step, rows.begin() + step);
        rows[2 * step - 1] ^= 1;
      }
      for (int c = 0; c < kind.Channels(); ++c)
        kind.transparency.push_back(static_cast<std::uint16_t>(
            depth == 16 ? rows[2 * c] << 8 | rows[2 * c + 1] : rows[c] >> (8 - depth)));
      const Picture expected = Expected(kind, 16, 2, rows);
      ASSERT_EQ(expected.bytes[3], 0);
      EXPECT_EQ(Decode(EncodePng(kind, 16, 2, rows)), expected) << colour << ", " << depth;
    }
}

Bytes Insert(Bytes file, std::size_t at, const Bytes& chunk) {
  file.insert(file.begin() + std::ptrdiff_t(at), chunk.begin(), chunk.end());
  return file;
}

constexpr std::size_t kAfterHeader = 8 + 25;

TEST(DecodePng, WhatMakesNoPixelsChangesNothing) {
  const Picture picture = test::RandomPicture(9, 6);
  const Bytes file = EncodePng(picture);
  Bytes badCrc = PngChunk("tEXt", test::RandomBytes(40, 1));
  badCrc.back() ^= 1;
  for (const Bytes& chunk :
       {PngChunk("gAMA", {0, 0, 0, 1}), PngChunk("sBIT", {1, 1, 1, 1}),
        PngChunk("iCCP", {'x', 0, 0, 9}), PngChunk("zTXt", {'x', 0, 0, 9, 9, 9}),
        PngChunk("tEXt", Bytes(20 << 20, 'x')), PngChunk("abCd", {1}), badCrc}) {
    EXPECT_EQ(Decode(Insert(file, kAfterHeader, chunk)), picture);
    EXPECT_EQ(Decode(Insert(file, file.size() - 12, chunk)), picture);  // before the end
  }
  EXPECT_EQ(Decode(Insert(file, file.size(), {1, 2, 3})), picture);
  EXPECT_FALSE(Decode(Insert(file, kAfterHeader, PngChunk("ABCD", {1}))));  // critical, unknown
}

TEST(DecodePng, GiganticSizesFailBeforeMemoryIsTaken) {
  const auto sized = [](std::uint32_t width, std::uint32_t height, unsigned char depth) {
    Bytes header;
    for (std::uint32_t size : {width, height})
      for (int shift : {24, 16, 8, 0}) header.push_back(static_cast<unsigned char>(size >> shift));
    header.insert(header.end(), {depth, 6, 0, 0, 0});
    Bytes file = EncodePng(test::RandomPicture(2, 2));
    const Bytes chunk = PngChunk("IHDR", header);
    std::copy(chunk.begin(), chunk.end(), file.begin() + 8);
    return file;
  };
  constexpr std::uint32_t kMost = 0x7fffffff;
  for (auto [width, height] : {std::pair<std::uint32_t, std::uint32_t>{kMost, kMost},
                               {kMost, 1},
                               {1, kMost},
                               {8193, 8192},
                               {8192, 8193},
                               {(1 << 20) + 1, 1}})
    EXPECT_EQ(StatusOf(sized(width, height, 16)), Gdiplus::OutOfMemory) << width << " x " << height;
  // Here the size may be had, but the rows are missing.
  EXPECT_EQ(StatusOf(sized(8192, 8192, 8)), Gdiplus::UnknownImageFormat);
  for (auto [width, height] : {std::pair<std::uint32_t, std::uint32_t>{0, 1}, {1, 0}, {~0u, 1}})
    EXPECT_NE(StatusOf(sized(width, height, 8)), Gdiplus::Ok);
}

TEST(DecodeJpeg, ColourAndGreyComeOutNearWhatWentIn) {
  const Picture picture = test::SmoothPicture(67, 45);
  for (auto [sampling, tolerance] : {std::pair<int, int>{TJSAMP_444, 3},
                                     {TJSAMP_422, 8},
                                     {TJSAMP_420, 10},
                                     {TJSAMP_440, 8},
                                     {TJSAMP_411, 14}}) {
    const auto baseline = Decode(EncodeJpeg(picture, sampling));
    ASSERT_TRUE(baseline);
    EXPECT_LE(test::LargestDifference(baseline->bytes, picture.bytes), tolerance) << sampling;
    for (std::size_t i = 3; i < baseline->bytes.size(); i += 4) ASSERT_EQ(baseline->bytes[i], 255);
    // The same coefficients in another order.
    EXPECT_EQ(Decode(EncodeJpeg(picture, sampling, 100, TJFLAG_PROGRESSIVE)), baseline);
  }
  for (int flags : {0, TJFLAG_PROGRESSIVE}) {
    Picture grey = picture;
    for (int y = 0; y < grey.height; ++y)
      for (int x = 0; x < grey.width; ++x) {
        unsigned char* const pixel = grey.At(x, y);
        const double luma = 0.114 * pixel[0] + 0.587 * pixel[1] + 0.299 * pixel[2];
        pixel[0] = pixel[1] = pixel[2] = static_cast<unsigned char>(luma + 0.5);
      }
    const auto decoded = Decode(EncodeJpeg(picture, TJSAMP_GRAY, 100, flags));
    ASSERT_TRUE(decoded);
    EXPECT_LE(test::LargestDifference(decoded->bytes, grey.bytes), 2);
  }
}

std::size_t Find(const Bytes& file, std::initializer_list<unsigned char> what) {
  return std::size_t(std::search(file.begin(), file.end(), what.begin(), what.end()) -
                     file.begin());
}

TEST(DecodeJpeg, InksAreMultipliedOut) {
  Picture inks = test::SmoothPicture(40, 24);
  for (int y = 0; y < inks.height; ++y)
    for (int x = 0; x < inks.width; ++x) inks.At(x, y)[3] = static_cast<unsigned char>(255 - 5 * y);
  // Compares with light(pixel's inks, channel) for red, green, blue.
  const auto expect = [&](const Bytes& file, const auto& light) {
    Picture expected = inks;
    for (std::size_t i = 0; i < expected.bytes.size(); i += 4) {
      for (int c = 0; c < 3; ++c)
        expected.bytes[i + 2 - c] = static_cast<unsigned char>(light(&inks.bytes[i], c));
      expected.bytes[i + 3] = 255;
    }
    const auto decoded = Decode(file);
    ASSERT_TRUE(decoded);
    EXPECT_LE(test::LargestDifference(decoded->bytes, expected.bytes), 3);
  };
  const auto product = [](int a, int b) { return (a * b + 127) / 255; };
  // With the marker, samples are light: 255 is no ink.
  for (int flags : {0, TJFLAG_PROGRESSIVE}) {
    const Bytes file = EncodeJpeg(inks, TJSAMP_444, 100, flags, TJPF_CMYK);
    expect(file, [&](const unsigned char* ink, int c) { return product(ink[c], ink[3]); });
  }
  // Equal inks i are stored as luma 255 - i and two chroma samples of 128. Read as plain CMYK,
  // these three are the inks.
  for (int y = 0; y < inks.height; ++y)
    for (int x = 0; x < inks.width; ++x) inks.At(x, y)[1] = inks.At(x, y)[2] = inks.At(x, y)[0];
  Bytes plain = EncodeJpeg(inks, TJSAMP_444, 100, 0, TJPF_CMYK);
  const std::size_t marker = Find(plain, {0xff, 0xee});
  ASSERT_LT(marker, plain.size());
  ASSERT_EQ(plain[marker + 15], 2);
  plain[marker + 15] = 0;  // the marker now says CMYK
  expect(plain, [&](const unsigned char* ink, int c) {
    return product(c == 0 ? 255 - ink[0] : 128, ink[3]);
  });
  plain.erase(plain.begin() + std::ptrdiff_t(marker), plain.begin() + std::ptrdiff_t(marker) + 16);
  // Without it samples are ink.
  expect(plain, [&](const unsigned char* ink, int c) {
    return product(c == 0 ? ink[0] : 127, 255 - ink[3]);
  });
}

TEST(DecodeJpeg, ProductsOfInksAreRounded) {
  Bytes file = EncodeJpeg(test::RandomPicture(64, 64), TJSAMP_444, 100, 0, TJPF_CMYK);
  for (bool marked : {true, false}) {
    if (!marked) {
      const auto marker = file.begin() + std::ptrdiff_t(Find(file, {0xff, 0xee}));
      file.erase(marker, marker + 16);
    }
    Picture expected{64, 64, Bytes(64 * 64 * 4, 255)};
    Bytes samples(expected.bytes.size());
    const tjhandle decoder = tjInitDecompress();
    ASSERT_EQ(tjDecompress2(decoder, file.data(), file.size(), samples.data(), 64, 0, 64, TJPF_CMYK,
                            TJFLAG_ACCURATEDCT),
              0);
    tjDestroy(decoder);
    if (!marked)
      for (unsigned char& sample : samples) sample = 255 - sample;
    for (std::size_t i = 0; i < samples.size(); i += 4)
      for (int c = 0; c < 3; ++c)
        expected.bytes[i + 2 - c] =
            static_cast<unsigned char>(std::lround(samples[i + c] * samples[i + 3] / 255.0));
    EXPECT_EQ(Decode(file), expected) << marked;
  }
}

TEST(DecodeJpeg, SamplingsWithoutANameAreDecoded) {
  const Picture grey{32, 16, Bytes(32 * 16 * 4, 128)};
  Bytes file = EncodeJpeg(grey);
  file[Find(file, {0xff, 0xc0}) + 11] =
      0x42;  // luma four times as wide and twice as high as chroma
  // One unit of eight luma blocks and two of chroma, all of them empty.
  file.resize(Find(file, {0xff, 0xda}) + 14);
  file.insert(file.end(), {0x28, 0xa2, 0x8a, 0x28, 0xa2, 0x8a, 0x00, 0xff, 0xd9});
  const auto decoded = Decode(file);
  ASSERT_TRUE(decoded);
  for (std::size_t i = 0; i < decoded->bytes.size(); ++i)
    ASSERT_EQ(decoded->bytes[i], i % 4 == 3 ? 255 : 128);
}

TEST(DecodeJpeg, GiganticSizesFailBeforeMemoryIsTaken) {
  const auto sized = [](int width, int height) {
    Bytes file = EncodeJpeg(test::SmoothPicture(16, 16));
    const std::size_t frame = Find(file, {0xff, 0xc0});
    for (auto [at, size] : {std::pair{5, height}, {7, width}}) {
      file[frame + at] = static_cast<unsigned char>(size >> 8);
      file[frame + at + 1] = static_cast<unsigned char>(size);
    }
    return file;
  };
  EXPECT_EQ(StatusOf(sized(65500, 65500)), Gdiplus::OutOfMemory);
  EXPECT_EQ(StatusOf(sized(8193, 8192)), Gdiplus::OutOfMemory);
  EXPECT_EQ(StatusOf(sized(8192, 8192)), Gdiplus::UnknownImageFormat);
  EXPECT_EQ(StatusOf(sized(65535, 65535)),
            Gdiplus::UnknownImageFormat);  // more than a JPEG may have
  EXPECT_EQ(StatusOf(sized(0, 8)), Gdiplus::UnknownImageFormat);
  Bytes longFile = EncodeJpeg(test::SmoothPicture(16, 16));
  longFile.resize((std::size_t{1} << 27) + 1);
  EXPECT_EQ(StatusOf(longFile), Gdiplus::OutOfMemory);
}

TEST(DecodeJpeg, TheNumberOfScansIsLimited) {
  const auto withScans = [](int scans) {
    Bytes file = {0xff, 0xd8, 0xff, 0xdb, 0, 67, 0};
    file.insert(file.end(), 64, 1);
    // Progressive, 8 x 8, grey; one code in either table.
    file.insert(file.end(), {0xff, 0xc2, 0, 11, 8, 0, 8, 0, 8, 1, 1, 0x11, 0});
    for (unsigned char table : {0x00, 0x10}) {
      file.insert(file.end(), {0xff, 0xc4, 0, 20, table, 1});
      file.insert(file.end(), 16, 0);
    }
    // Each scan adds one bit of precision to one coefficient: 14 scans, then the next coefficient.
    for (int i = 0; i < scans; ++i) {
      const auto coefficient = static_cast<unsigned char>(i / 14);
      const auto low = static_cast<unsigned char>(13 - i % 14);
      const auto high = static_cast<unsigned char>(i % 14 ? low + 1 : 0);
      const auto precision = static_cast<unsigned char>(high << 4 | low);
      file.insert(file.end(),
                  {0xff, 0xda, 0, 8, 1, 1, 0, coefficient, coefficient, precision, 0x7f});
    }
    file.insert(file.end(), {0xff, 0xd9});
    return file;
  };
  EXPECT_TRUE(Decode(withScans(64)));
  EXPECT_FALSE(Decode(withScans(65)));
  Bytes two = withScans(64);
  const Bytes second = withScans(64);
  two.insert(two.end(), {0, 2});
  two.insert(two.end(), second.begin(), second.end());
  EXPECT_TRUE(Decode(two));  // those behind the end are none of the picture's
}

TEST(DecodeDamaged, AFileThatIsCutShortAnywhereFails) {
  for (const Bytes& file : test::SmallFiles()) {
    ASSERT_TRUE(Decode(file));
    for (std::size_t size = 0; size < file.size(); ++size)
      ASSERT_EQ(StatusOf(Bytes(file.begin(), file.begin() + std::ptrdiff_t(size))),
                Gdiplus::UnknownImageFormat)
          << size << " of " << file.size();
  }
}

TEST(DecodeDamaged, AChangedByteFailsOrDoesNoHarm) {
  for (const Bytes& file : test::SmallFiles()) {
    const bool png = file[0] == 0x89;
    const auto whole = Decode(file);
    const std::size_t transparency = Find(file, {'t', 'R', 'N', 'S'});
    for (std::size_t at = 0; at < file.size(); ++at)
      for (int change : {1, 2, 4, 8, 16, 32, 64, 128, 255}) {
        Bytes damaged = file;
        damaged[at] ^= static_cast<unsigned char>(change);
        const auto decoded = Decode(damaged);
        // Every byte of a PNG that makes pixels is covered by a sum, but a transparency chunk may
        // become one of a kind that is not looked at.
        if (png && decoded && (at < transparency || at >= transparency + 4)) {
          EXPECT_EQ(decoded, whole) << at << " of " << file.size() << " by " << change;
        }
      }
  }
}

// Damage that the sums do not tell reaches the inner decoders.
TEST(DecodeDamaged, ChangedPngChunksWithValidSumsDoNoHarm) {
  std::mt19937 random(7);
  int decoded = 0;
  for (const Bytes& file : test::SmallFiles()) {
    if (file[0] != 0x89) continue;
    for (int round = 0; round < 2000; ++round) {
      Bytes damaged(file.begin(), file.begin() + 8);
      for (std::size_t at = 8; at < file.size();) {
        const std::size_t size = std::size_t(file[at + 2]) << 8 | file[at + 3];
        const std::string type(file.begin() + std::ptrdiff_t(at) + 4,
                               file.begin() + std::ptrdiff_t(at) + 8);
        Bytes data(file.begin() + std::ptrdiff_t(at) + 8,
                   file.begin() + std::ptrdiff_t(at + 8 + size));
        // Width and height keep small.
        const std::size_t first = type == "IHDR" ? 6 : 0;
        if (data.size() > first && random() % 2)
          data[first + random() % (data.size() - first)] ^=
              static_cast<unsigned char>(1 << random() % 8);
        if (random() % 16 == 0) data.resize(random() % (data.size() + 1));
        const Bytes chunk = PngChunk(type, data);
        for (int times = random() % 16 == 0 ? 2 : 1; times > 0; --times)
          damaged.insert(damaged.end(), chunk.begin(), chunk.end());
        at += size + 12;
      }
      decoded += Decode(damaged).has_value();
    }
  }
  EXPECT_GT(decoded, 100);  // the inner decoders were reached
}

TEST(DecodeImageFile, GoesByContentAndTakesOnlyRegularFiles) {
  const test::TemporaryFolder folder;
  const Picture picture = test::RandomPicture(6, 4);
  const auto status = [](const std::filesystem::path& path) {
    PixelBlock block;
    const Gdiplus::Status result = DecodeImageFile(path, block);
    EXPECT_EQ(block.bytes != nullptr, result == Gdiplus::Ok);
    return result;
  };
  PixelBlock block;
  ASSERT_EQ(DecodeImageFile(folder.Write(u8"\u753b/\u00e9t\u00e9.jpg", EncodePng(picture)), block),
            Gdiplus::Ok);
  EXPECT_EQ(Bytes(block.bytes.get(), block.bytes.get() + block.Size()), picture.bytes);
  EXPECT_EQ(status(folder.Write("lookup", EncodeJpeg(picture))), Gdiplus::Ok);

  EXPECT_EQ(status(folder.Write("text.png", Bytes(100, 'x'))), Gdiplus::UnknownImageFormat);
  EXPECT_EQ(status(folder.Write("empty.png", {})), Gdiplus::UnknownImageFormat);
  EXPECT_EQ(status(folder.Write("short.jpg", {0xff, 0xd8})), Gdiplus::UnknownImageFormat);
  EXPECT_EQ(status(folder.Path() / "missing.png"), Gdiplus::FileNotFound);
  EXPECT_EQ(status(folder.Path()), Gdiplus::FileNotFound);
  EXPECT_EQ(status({}), Gdiplus::FileNotFound);
  const auto pipe = folder.Path() / "pipe.png";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(status(pipe), Gdiplus::FileNotFound);

  const auto huge = folder.Write("huge.png", EncodePng(picture));
  std::filesystem::resize_file(huge, (std::uintmax_t{1} << 28) + 1);  // takes no room on the disk
  EXPECT_EQ(status(huge), Gdiplus::OutOfMemory);
}

}  // namespace
}  // namespace tintwerk

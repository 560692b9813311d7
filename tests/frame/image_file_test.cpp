#include "frame/image_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "support/failing_memory.h"
#include "support/image_files.h"

namespace tintwerk {
namespace {

using test::Bytes;
using test::EncodeJpeg;
using test::EncodePng;
using test::Picture;
using test::PngChunk;
using test::PngKind;

// The pixels of a file.
std::optional<Picture> Decode(const Bytes& file) {
  PixelBlock block;
  if (DecodeImage(file, block) != Gdiplus::Ok) return std::nullopt;
  return Picture{block.width, block.height, {block.bytes.get(), block.bytes.get() + block.Size()}};
}

// How a file fails; the picture must stay as it was.
Gdiplus::Status StatusOf(const Bytes& file) {
  PixelBlock block{11, 13, nullptr};
  const Gdiplus::Status status = DecodeImage(file, block);
  EXPECT_TRUE(status == Gdiplus::Ok || (block.width == 11 && block.height == 13 && !block.bytes));
  return status;
}

// What a PNG of raw rows shows, worked out sample by sample.
Picture Expected(const PngKind& kind, int width, int height, const Bytes& rows) {
  Picture picture{width, height, Bytes(std::size_t{4} * width * height)};
  const int channels = kind.Channels(), most = (1 << kind.depth) - 1;
  const std::vector<std::uint16_t>& told = kind.transparency;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      std::vector<int> sample, byte;
      for (int c = 0; c < channels; ++c) {
        const std::size_t bit = (std::size_t(x) * channels + c) * kind.depth;
        const unsigned char* const at = &rows[kind.RowSize(width) * y + bit / 8];
        const bool deep = kind.depth == 16;
        sample.push_back(deep ? at[0] << 8 | at[1] : at[0] >> (8 - kind.depth - bit % 8) & most);
        byte.push_back(deep ? sample[c] >> 8 : sample[c] * 255 / most);
      }
      const bool keyed = std::equal(sample.begin(), sample.end(), told.begin(), told.end());
      std::array<int, 4> rgba;
      if (kind.colour == SPNG_COLOR_TYPE_INDEXED) {
        const auto& entry = kind.palette[sample[0]];
        const int alpha = sample[0] < int(told.size()) ? told[sample[0]] : 255;
        rgba = {entry.red, entry.green, entry.blue, alpha};
      } else {
        const int alpha = channels % 2 == 0 ? byte.back() : keyed ? 0 : 255;
        rgba = {byte[0], byte[channels < 3 ? 0 : 1], byte[channels < 3 ? 0 : 2], alpha};
      }
      for (int c = 0; c < 4; ++c)
        picture.At(x, y)[c] = static_cast<unsigned char>(rgba[c == 3 ? 3 : 2 - c]);
    }
  return picture;
}

TEST(DecodePng, EveryKindGivesThePixelsItWasMadeOf) {
  std::vector<PngKind> kinds;
  for (bool interlaced : {false, true})
    for (int depth : {1, 2, 4, 8, 16}) {
      kinds.push_back({SPNG_COLOR_TYPE_GRAYSCALE, depth, interlaced});
      if (depth >= 8)
        for (auto colour : {SPNG_COLOR_TYPE_TRUECOLOR, SPNG_COLOR_TYPE_GRAYSCALE_ALPHA,
                            SPNG_COLOR_TYPE_TRUECOLOR_ALPHA})
          kinds.push_back({colour, depth, interlaced});
      if (depth == 16) continue;
      PngKind palette{SPNG_COLOR_TYPE_INDEXED, depth, interlaced};
      const Bytes random = test::RandomBytes(1024, depth);
      for (int i = 0; i < 4 << depth; i += 4)
        palette.palette.push_back({random[i], random[i + 1], random[i + 2], 0});
      kinds.push_back(palette);
      // Entries beyond the told alphas are opaque.
      for (int i = 0; i < 1 << (depth - 1); ++i) palette.transparency.push_back(random[4 * i + 3]);
      kinds.push_back(palette);
    }
  for (const PngKind& kind : kinds)
    for (auto [width, height] : {std::pair{1, 1}, {3, 2}, {5, 1}, {1, 9}, {8, 8}, {33, 17}}) {
      const Bytes rows = test::RandomBytes(kind.RowSize(width) * height, width + kind.depth);
      EXPECT_TRUE(Decode(EncodePng(kind, width, height, rows)) ==
                  Expected(kind, width, height, rows))
          << "colour " << kind.colour << ", " << kind.depth << " bits, " << width << " x " << height
          << ", " << kind.interlaced;
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
  Picture grey = picture;
  for (std::size_t i = 0; i < grey.bytes.size(); i += 4) {
    unsigned char* const p = &grey.bytes[i];
    std::fill_n(p, 3, static_cast<unsigned char>(0.114 * p[0] + 0.587 * p[1] + 0.299 * p[2] + 0.5));
  }
  for (auto [sampling, tolerance] : {std::pair<int, int>{TJSAMP_444, 3},
                                     {TJSAMP_422, 8},
                                     {TJSAMP_420, 10},
                                     {TJSAMP_440, 8},
                                     {TJSAMP_411, 14},
                                     {TJSAMP_GRAY, 2}}) {
    const auto baseline = Decode(EncodeJpeg(picture, sampling));
    ASSERT_TRUE(baseline);
    const Picture& expected = sampling == TJSAMP_GRAY ? grey : picture;
    EXPECT_LE(test::LargestDifference(baseline->bytes, expected.bytes), tolerance) << sampling;
    for (std::size_t i = 3; i < baseline->bytes.size(); i += 4) ASSERT_EQ(baseline->bytes[i], 255);
    // The same coefficients in another order.
    EXPECT_EQ(Decode(EncodeJpeg(picture, sampling, 100, TJFLAG_PROGRESSIVE)), baseline);
  }
}

std::size_t Find(const Bytes& file, std::initializer_list<unsigned char> what) {
  return std::size_t(std::search(file.begin(), file.end(), what.begin(), what.end()) -
                     file.begin());
}

TEST(DecodeJpeg, InksAreMultipliedOutAndRounded) {
  const Picture inks = test::RandomPicture(64, 64);
  const Bytes marked = EncodeJpeg(inks, TJSAMP_444, 100, 0, TJPF_CMYK);
  const std::size_t marker = Find(marked, {0xff, 0xee});
  ASSERT_EQ(marked.at(marker + 15), 2);
  Bytes plain = marked, bare = marked;
  plain[marker + 15] = 0;  // says that the samples are CMYK, not YCCK
  bare.erase(bare.begin() + std::ptrdiff_t(marker), bare.begin() + std::ptrdiff_t(marker) + 16);
  // With the marker, samples are light: 255 is no ink. Without it they are ink.
  for (const auto& [file, flip] :
       {std::pair{marked, 0},
        {EncodeJpeg(inks, TJSAMP_444, 100, TJFLAG_PROGRESSIVE, TJPF_CMYK), 0},
        {plain, 0},
        {bare, 255}}) {
    Picture expected{64, 64, Bytes(64 * 64 * 4, 255)};
    Bytes samples(expected.bytes.size());
    const tjhandle decoder = tjInitDecompress();
    ASSERT_EQ(tjDecompress2(decoder, file.data(), file.size(), samples.data(), 64, 0, 64, TJPF_CMYK,
                            TJFLAG_ACCURATEDCT),
              0);
    tjDestroy(decoder);
    for (std::size_t i = 0; i < samples.size(); i += 4)
      for (int c = 0; c < 3; ++c)
        expected.bytes[i + 2 - c] = static_cast<unsigned char>(
            std::lround((samples[i + c] ^ flip) * (samples[i + 3] ^ flip) / 255.0));
    EXPECT_EQ(Decode(file), expected);
  }
}

TEST(DecodeJpeg, SamplingsWithoutANameAreDecoded) {
  const Picture grey{32, 16, Bytes(32 * 16 * 4, 128)};
  Bytes file = EncodeJpeg(grey);
  // Luma four times as wide and twice as high as chroma.
  file[Find(file, {0xff, 0xc0}) + 11] = 0x42;
  // One unit of eight luma blocks and two of chroma, all of them empty.
  file.resize(Find(file, {0xff, 0xda}) + 14);
  file.insert(file.end(), {0x28, 0xa2, 0x8a, 0x28, 0xa2, 0x8a, 0x00, 0xff, 0xd9});
  Picture expected = grey;
  for (std::size_t i = 3; i < expected.bytes.size(); i += 4) expected.bytes[i] = 255;
  EXPECT_EQ(Decode(file), expected);
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
  for (auto [width, height] : {std::pair{65500, 65500}, {8193, 8192}})
    EXPECT_EQ(StatusOf(sized(width, height)), Gdiplus::OutOfMemory);
  // The last is more than a JPEG may have.
  for (auto [width, height] : {std::pair{8192, 8192}, {0, 8}, {65535, 65535}})
    EXPECT_EQ(StatusOf(sized(width, height)), Gdiplus::UnknownImageFormat);
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
  const Bytes one = withScans(64);
  Bytes two = Insert(one, one.size(), one);
  two.insert(two.begin() + std::ptrdiff_t(one.size()), {0, 2});
  EXPECT_TRUE(Decode(two));  // those behind the end are none of the picture's
}

TEST(DecodeDamaged, AFileThatIsCutShortFailsAndAChangedByteDoesNoHarm) {
  for (const Bytes& file : test::SmallFiles()) {
    const auto whole = Decode(file);
    ASSERT_TRUE(whole);
    const bool png = file[0] == 0x89;
    const std::size_t transparency = Find(file, {'t', 'R', 'N', 'S'});
    for (std::size_t at = 0; at < file.size(); ++at) {
      ASSERT_EQ(StatusOf(Bytes(file.begin(), file.begin() + std::ptrdiff_t(at))),
                Gdiplus::UnknownImageFormat)
          << at << " of " << file.size();
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
}

// Else a picture that memory does not hold would pass for one that is missing.
TEST(DecodeImage, MemoryThatRunsOutInADecoderIsToldFromDamage) {
  for (const Bytes& file : test::SmallFiles()) {
    bool failed = true;
    for (std::int64_t at = 0; failed; ++at) {
      PixelBlock block;
      Gdiplus::Status status;
      {
        const test::FailingMalloc memory(at);
        status = DecodeImage(file, block);
        failed = test::FailingMalloc::Asked() > at;
      }
      if (status != Gdiplus::Ok) {
        EXPECT_EQ(status, Gdiplus::OutOfMemory) << at << " allocations";
      }
      EXPECT_EQ(block.bytes != nullptr, status == Gdiplus::Ok);
    }
  }
}

TEST(DecodeImageFile, GoesByContentAndTakesOnlyRegularFiles) {
  const test::TemporaryFolder folder;
  const Picture picture = test::RandomPicture(6, 4);
  PixelBlock block;
  ASSERT_EQ(DecodeImageFile(folder.Write(u8"\u753b/\u00e9t\u00e9.jpg", EncodePng(picture)), block),
            Gdiplus::Ok);
  EXPECT_EQ(Bytes(block.bytes.get(), block.bytes.get() + block.Size()), picture.bytes);

  const auto huge = folder.Write("huge.png", EncodePng(picture));
  std::filesystem::resize_file(huge, (std::uintmax_t{1} << 28) + 1);  // takes no room on the disk
  const auto pipe = folder.Path() / "pipe.png";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const auto& [path, status] :
       {std::pair{folder.Write("lookup", EncodeJpeg(picture)), Gdiplus::Ok},
        {folder.Write("text.png", Bytes(100, 'x')), Gdiplus::UnknownImageFormat},
        {folder.Write("empty.png", {}), Gdiplus::UnknownImageFormat},
        {folder.Write("short.jpg", {0xff, 0xd8}), Gdiplus::UnknownImageFormat},
        {folder.Path() / "missing.png", Gdiplus::FileNotFound},
        {folder.Path(), Gdiplus::FileNotFound},
        {{}, Gdiplus::FileNotFound},
        {pipe, Gdiplus::FileNotFound},
        {huge, Gdiplus::OutOfMemory}}) {
    PixelBlock loaded;
    EXPECT_EQ(DecodeImageFile(path, loaded), status) << path;
    EXPECT_EQ(loaded.bytes != nullptr, status == Gdiplus::Ok);
  }
}

}  // namespace
}  // namespace tintwerk

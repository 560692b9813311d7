// EXIF, XMP and IPTC: what survives, what is set right, and what goes.
#include <array>
#include <exiv2/exiv2.hpp>

#include "pictures.h"
#include "program.h"

namespace host_test {
namespace {

using testing::HasSubstr;
using testing::Not;

class MetadataTest : public HostTest {};

// Records of every kind in a picture that has none so far.
void Describe(const std::string& file) {
  const auto image = Exiv2::ImageFactory::open(file);
  image->readMetadata();
  Exiv2::ExifData& exif = image->exifData();
  exif["Exif.Image.Make"] = "Testcam";
  exif["Exif.Image.Orientation"] = std::uint16_t{6};
  exif["Exif.Photo.DateTimeOriginal"] = "2020:02:20 20:20:20";
  exif["Exif.Photo.PixelXDimension"] = std::uint32_t{9999};
  exif["Exif.GPSInfo.GPSLatitudeRef"] = "N";
  exif["Exif.GPSInfo.GPSLatitude"] = "48/1 8/1 14/1";
  Exiv2::XmpData& xmp = image->xmpData();
  xmp["Xmp.dc.title"] = "Quince";
  xmp["Xmp.tiff.Orientation"] = "6";
  xmp["Xmp.exif.GPSLatitude"] = "48,8.2N";
  xmp["Xmp.xmp.Thumbnails"] = "STALE";
  if (image->checkMode(Exiv2::mdIptc) != Exiv2::amNone)
    image->iptcData()["Iptc.Application2.Caption"] = "A quince";
  image->writeMetadata();
}

struct Found {
  std::string make, time, title, caption, latitude;
  long orientation = 1, width = 0;
};

// What a file tells, as libvips or Exiv2 finds it.
Found Read(const std::string& file) {
  Exiv2::ExifData exif;
  Exiv2::XmpData xmp;
  Exiv2::IptcData iptc;
  if (file.ends_with("avif") || file.ends_with("heic")) {
    const vips::VImage image = vips::VImage::new_from_file(file.c_str());
    const auto blob = [&](const char* name) {
      std::size_t size = 0;
      if (image.get_typeof(name) == 0) return std::string();
      const auto* data = static_cast<const char*>(image.get_blob(name, &size));
      return std::string(data, size);
    };
    const std::string records = blob("exif-data").substr(6);
    Exiv2::ExifParser::decode(exif, reinterpret_cast<const Exiv2::byte*>(records.data()),
                              static_cast<std::uint32_t>(records.size()));
    Exiv2::XmpParser::decode(xmp, blob("heif-mime-1"));
  } else {
    const auto image = Exiv2::ImageFactory::open(file);
    image->readMetadata();
    exif = image->exifData();
    xmp = image->xmpData();
    iptc = image->iptcData();
  }
  Found found;
  const auto text = [](auto& data, const auto& key) {
    const auto at = data.findKey(key);
    return at == data.end() ? std::string() : at->toString();
  };
  found.make = text(exif, Exiv2::ExifKey("Exif.Image.Make"));
  found.time = text(exif, Exiv2::ExifKey("Exif.Photo.DateTimeOriginal"));
  found.latitude = text(exif, Exiv2::ExifKey("Exif.GPSInfo.GPSLatitude")) +
                   text(xmp, Exiv2::XmpKey("Xmp.exif.GPSLatitude"));
  found.title = text(xmp, Exiv2::XmpKey("Xmp.dc.title"));
  found.caption = text(iptc, Exiv2::IptcKey("Iptc.Application2.Caption"));
  const auto number = [&](const char* key, long standard) {
    const auto at = exif.findKey(Exiv2::ExifKey(key));
    return at == exif.end() ? standard : at->toLong();
  };
  found.orientation = number("Exif.Image.Orientation", 1);
  found.width = number("Exif.Photo.PixelXDimension", 0);
  EXPECT_NE(text(xmp, Exiv2::XmpKey("Xmp.tiff.Orientation")), "6") << file;
  EXPECT_EQ(text(xmp, Exiv2::XmpKey("Xmp.xmp.Thumbnails")), "") << file;
  return found;
}

TEST_F(MetadataTest, EveryFormatHandsOnWhatItHolds) {
  for (const std::string from : {"jpg", "png", "tif", "webp", "jp2"}) {
    const std::string input = "in." + from;
    Waves(60, 40).write_to_file(input.c_str());
    Describe(input);
    for (const std::string to : {"jpg", "png", "tif", "webp", "jp2", "avif", "heic"}) {
      const bool hasCaption = from != "webp", keepsCaption = to.length() == 3;
      const std::string output = "out." + to;
      const Outcome outcome = Run("apply 80s " + input + " -o " + output);
      EXPECT_EQ(outcome.code, 0) << outcome.err;
      EXPECT_EQ(outcome.err.find("IPTC") != std::string::npos, hasCaption && !keepsCaption)
          << from << " to " << to << ": " << outcome.err;
      const Found found = Read(output);
      SCOPED_TRACE(from + " to " + to);
      EXPECT_EQ(found.make, "Testcam");
      EXPECT_EQ(found.time, "2020:02:20 20:20:20");
      EXPECT_THAT(found.title, HasSubstr("Quince"));
      EXPECT_EQ(found.caption, hasCaption && keepsCaption ? "A quince" : "");
      EXPECT_THAT(found.latitude, HasSubstr("48"));
      EXPECT_EQ(found.orientation, 1);
      const int width = vips::VImage::new_from_file(output.c_str()).width();
      EXPECT_EQ(found.width, width);
    }
  }
}

TEST_F(MetadataTest, WhatAFormatCannotHoldIsTold) {
  Waves(30, 20).write_to_file("in.jpg");
  Describe("in.jpg");
  Expect(0, "apply 80s in.jpg -o out.ppm", {"EXIF", "XMP", "IPTC"});
  Expect(0, "apply 80s in.jpg -o out.ppm --strip");
}

TEST_F(MetadataTest, RecordsAndPlacesGoOnRequest) {
  Waves(30, 20).write_to_file("in.jpg");
  Describe("in.jpg");
  Expect(0, "apply 80s in.jpg -o all.jpg --strip");
  const Found none = Read("all.jpg");
  EXPECT_EQ(none.make + none.title + none.caption + none.latitude, "");
  Expect(0, "apply 80s in.jpg -o places.jpg --strip-gps");
  const Found rest = Read("places.jpg");
  EXPECT_EQ(rest.make, "Testcam");
  EXPECT_EQ(rest.latitude, "");
  EXPECT_THAT(ReadFile("places.jpg"), Not(HasSubstr("GPSLatitude")));
}

TEST_F(MetadataTest, DamagedRecordsNeverFailAPicture) {
  Waves(30, 20).write_to_file("whole.jpg");
  Describe("whole.jpg");
  const std::string whole = ReadFile("whole.jpg");
  const std::size_t exif = whole.find("Exif");
  ASSERT_NE(exif, std::string::npos);
  for (int i = 0; i < 60; ++i) {
    std::string damaged = whole;
    for (int k = 0; k < 4; ++k) damaged[exif + 6 + (i * 37 + k * 11) % 200] ^= char(1 + i * 5);
    WriteFile("in.jpg", damaged);
    const Outcome outcome = Run("apply 80s in.jpg -o out.jpg");
    EXPECT_EQ(outcome.code, 0) << i << ": " << outcome.err;
    fs::remove("out.jpg");
  }
}

}  // namespace
}  // namespace host_test

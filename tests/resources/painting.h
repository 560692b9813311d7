// What the tests of the painters share.
#pragma once

#include <gtest/gtest.h>
#include <spng.h>
#include <stdio.h>
#include <sys/wait.h>
#include <turbojpeg.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "noise.h"
#include "table.h"

namespace tintwerk::paint {

/// Runs the painter of one file of the table.
/// @tparam T Picture or Bytes, whichever the file holds
template <class T = Picture>
T Paint(std::string_view name) {
  const auto file = std::ranges::find(FileTable(), name, &File::name);
  if (file == FileTable().end()) throw std::out_of_range(std::string(name));
  return std::get<T>(file->paint());
}

/// Reads a PNG or a JPEG of full colour resolution.
inline Picture Decode(const Bytes& file) {
  if (file.at(0) == 0xff) {
    const std::unique_ptr<void, decltype(&tjDestroy)> jpeg(tjInitDecompress(), tjDestroy);
    int width = 0, height = 0, sampling = -1, space = -1;
    EXPECT_EQ(tjDecompressHeader3(jpeg.get(), file.data(), file.size(), &width, &height, &sampling,
                                  &space),
              0);
    EXPECT_EQ(sampling, TJSAMP_444);
    Picture picture(width, height);
    EXPECT_EQ(tjDecompress2(jpeg.get(), file.data(), file.size(), &picture.pixels.front().red,
                            width, 0, height, TJPF_RGBA, TJFLAG_ACCURATEDCT),
              0);
    return picture;
  }
  const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> png(spng_ctx_new(0), spng_ctx_free);
  spng_ihdr header{};
  EXPECT_EQ(spng_set_png_buffer(png.get(), file.data(), file.size()), 0);
  EXPECT_EQ(spng_get_ihdr(png.get(), &header), 0);
  Picture picture(int(header.width), int(header.height));
  EXPECT_EQ(spng_decode_image(png.get(), picture.pixels.data(), picture.pixels.size() * 4,
                              SPNG_FMT_RGBA8, 0),
            0);
  return picture;
}

/// A number that changes with any byte of a picture, alpha apart. Pinned ones are due anew whenever
/// a file is painted differently on purpose; they hold with every compiler.
inline std::uint32_t Digest(const Picture& picture) {
  std::uint32_t digest = 0;
  for (const Pixel& p : picture.pixels)
    digest = Hash(p.red + 256 * p.green + 65536 * p.blue, 0, digest);
  return digest;
}

struct Outcome {
  int exitCode;
  std::string output;
};

/// Runs the program tintwerk-paint.
inline Outcome RunPaint(const std::string& arguments) {
  const std::string command = "'" TINTWERK_PAINT "' " + arguments + " 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  std::string output;
  char chunk[4096];
  for (std::size_t n; (n = fread(chunk, 1, sizeof chunk, pipe)) > 0;) output.append(chunk, n);
  const int status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

}  // namespace tintwerk::paint

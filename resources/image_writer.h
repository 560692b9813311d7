// Encoding of pictures, and files that appear whole or not at all.
#pragma once

#include <filesystem>
#include <span>
#include <string_view>

#include "picture.h"

namespace tintwerk::paint {

/// A PNG without any date or comment: grey if the whole picture is neutral and opaque, RGB if it is
/// opaque, RGBA otherwise. Throws std::runtime_error if the encoder fails.
Bytes EncodePng(const Picture& picture);

/// A JPEG at quality 92 with full colour resolution; alpha is dropped. Throws std::runtime_error if
/// the encoder fails.
Bytes EncodeJpeg(const Picture& picture);

/// Encodes a picture by the name's extension, `.png` or `.jpg`; one without extension holds a
/// cube's picture in its container. Bytes are taken as they are. Throws std::invalid_argument for a
/// picture under any other name.
Bytes Encode(std::string_view name, const Painted& painted);

/// Writes beside `path` and renames, so that a reader never meets half a file; missing folders are
/// made. Throws std::filesystem::filesystem_error, and leaves no temporary file behind.
void WriteFile(const std::filesystem::path& path, std::span<const unsigned char> bytes);

}  // namespace tintwerk::paint

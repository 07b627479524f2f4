// ReferenceImage.h - the pixel size of the page image an OCR engine was given.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

namespace qent::bestof {

struct ImageSize {
  std::int32_t width = 0;
  std::int32_t height = 0;
};

// The width and height in a PNG or JPEG file's header; nothing when the file cannot be read
// or is neither format. Only the header is parsed, so a page scan of any size is cheap.
std::optional<ImageSize> readImageSize(const std::filesystem::path& path);
// The same for a file's bytes.
std::optional<ImageSize> imageSize(std::string_view bytes);

}  // namespace qent::bestof

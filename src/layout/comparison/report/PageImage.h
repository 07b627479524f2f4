// PageImage.h - a page image embedded in a report as a data URI, so the report is one file
// that needs nothing beside it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace qent::text::layout::comparison::report {

// Larger images are left out: a report is meant to open quickly, also for many pages.
inline constexpr std::size_t kMaxEmbeddedImageBytes = 16u << 20;

// "data:image/png;base64,...", for PNG, JPEG, GIF and WebP files (told by their first
// bytes, not their names); empty for another format, a file too large or one that cannot
// be read, which the report then shows without its image.
std::string imageDataUri(const std::filesystem::path& file);

// Base64 with padding.
std::string base64(std::string_view bytes);

}  // namespace qent::text::layout::comparison::report

// ReferenceImage.cpp - PNG and JPEG headers read with stb_image.
#include "bestof/ReferenceImage.h"

#include "base/FileIo.h"

#include <climits>
#include <exception>
#include <string>

// Only the two formats scanners and OCR engines hand over, from memory: the file is read
// by the library's own wide-path reader, so a non-ASCII path works on Windows too.
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_HDR
// GCC 12 at -O3 thinks stb's PNG decoder reads a field before setting it; the field is set
// by the header parser first. Silenced for stb's own lines only.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <stb_image.h>
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

namespace qent::bestof {

std::optional<ImageSize> readImageSize(const std::filesystem::path& path) {
  std::string bytes;
  try {
    bytes = base::readFile(path);
  } catch (const std::exception&) {
    return std::nullopt;
  }
  return imageSize(bytes);
}

std::optional<ImageSize> imageSize(std::string_view bytes) {
  if (bytes.empty() || bytes.size() > static_cast<std::size_t>(INT_MAX)) return std::nullopt;
  int width = 0;
  int height = 0;
  int components = 0;
  if (stbi_info_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()),
                            static_cast<int>(bytes.size()), &width, &height,
                            &components) == 0) {
    return std::nullopt;
  }
  return ImageSize{width, height};
}

}  // namespace qent::bestof

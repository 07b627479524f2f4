// ReferenceImage.cpp - PNG headers read with stb_image, JPEG headers by a segment walk.
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

namespace {

unsigned byteAt(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

unsigned bigEndian16(std::string_view bytes, std::size_t at) {
  return byteAt(bytes, at) << 8 | byteAt(bytes, at + 1);
}

// The size in a JPEG's frame header, found by walking the segments' lengths. stb_image's own
// header reader decodes every Huffman table on the way and reads past its table on a
// malformed one; the size needs none of them.
std::optional<ImageSize> jpegSize(std::string_view bytes) {
  std::size_t at = 2;  // after the start-of-image marker
  while (at + 4 <= bytes.size()) {
    if (byteAt(bytes, at) != 0xFF) return std::nullopt;
    const unsigned marker = byteAt(bytes, at + 1);
    if (marker == 0xFF) {  // fill byte before a marker
      ++at;
      continue;
    }
    if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {  // markers without a length
      at += 2;
      continue;
    }
    if (marker == 0xD9 || marker == 0xDA) return std::nullopt;  // end or scan before a frame
    const std::size_t length = bigEndian16(bytes, at + 2);
    if (length < 2) return std::nullopt;
    // Baseline, extended and progressive Huffman frames: the ones a decoder reads.
    if (marker == 0xC0 || marker == 0xC1 || marker == 0xC2) {
      if (length < 8 || at + 2 + length > bytes.size()) return std::nullopt;
      const int height = static_cast<int>(bigEndian16(bytes, at + 5));
      const int width = static_cast<int>(bigEndian16(bytes, at + 7));
      const unsigned components = byteAt(bytes, at + 9);
      if (width == 0 || height == 0 || (components != 1 && components != 3 && components != 4)) {
        return std::nullopt;
      }
      return ImageSize{width, height};
    }
    at += 2 + length;
  }
  return std::nullopt;
}

}  // namespace

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
  if (bytes.size() >= 2 && byteAt(bytes, 0) == 0xFF && byteAt(bytes, 1) == 0xD8) {
    return jpegSize(bytes);
  }
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

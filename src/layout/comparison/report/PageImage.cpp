// PageImage.cpp - image files sniffed and encoded for embedding.
#include "layout/comparison/report/PageImage.h"

#include "base/FileIo.h"

#include <stdexcept>
#include <system_error>

namespace qent::text::layout::comparison::report {

namespace {

std::string_view mediaType(std::string_view bytes) {
  if (bytes.substr(0, 8) == std::string_view("\x89PNG\r\n\x1a\n", 8)) return "image/png";
  if (bytes.substr(0, 3) == "\xff\xd8\xff") return "image/jpeg";
  if (bytes.substr(0, 4) == "GIF8") return "image/gif";
  if (bytes.size() >= 12 && bytes.substr(0, 4) == "RIFF" && bytes.substr(8, 4) == "WEBP") {
    return "image/webp";
  }
  return {};
}

}  // namespace

std::string base64(std::string_view bytes) {
  static constexpr char kDigits[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  std::size_t i = 0;
  for (; i + 3 <= bytes.size(); i += 3) {
    const unsigned v = static_cast<unsigned char>(bytes[i]) << 16 |
                       static_cast<unsigned char>(bytes[i + 1]) << 8 |
                       static_cast<unsigned char>(bytes[i + 2]);
    out += kDigits[v >> 18];
    out += kDigits[(v >> 12) & 63];
    out += kDigits[(v >> 6) & 63];
    out += kDigits[v & 63];
  }
  if (const std::size_t rest = bytes.size() - i; rest > 0) {
    unsigned v = static_cast<unsigned char>(bytes[i]) << 16;
    if (rest == 2) v |= static_cast<unsigned char>(bytes[i + 1]) << 8;
    out += kDigits[v >> 18];
    out += kDigits[(v >> 12) & 63];
    out += rest == 2 ? kDigits[(v >> 6) & 63] : '=';
    out += '=';
  }
  return out;
}

std::string imageDataUri(const std::filesystem::path& file) {
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  if (error || size > kMaxEmbeddedImageBytes) return {};
  std::string bytes;
  try {
    bytes = base::readFile(file);
  } catch (const std::runtime_error&) {
    return {};  // vanished or unreadable since it was found: the report goes without it
  }
  const std::string_view type = mediaType(bytes);
  if (type.empty()) return {};
  std::string uri = "data:";
  uri += type;
  uri += ";base64,";
  uri += base64(bytes);
  return uri;
}

}  // namespace qent::text::layout::comparison::report

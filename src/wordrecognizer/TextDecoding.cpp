// TextDecoding.cpp - byte encodings of plain-text inputs.
#include "wordrecognizer/TextDecoding.h"

#include "base/QentException.h"
#include "base/Unicode.h"

namespace qent::text::wordrecognizer {

namespace {

// Windows-1252 at 0x80..0x9F; the five unassigned bytes keep their C1 code points.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::u16string singleByte(std::string_view bytes, bool cp1252) {
  std::u16string text;
  text.reserve(bytes.size());
  for (char byte : bytes) {
    const auto c = static_cast<unsigned char>(byte);
    text.push_back(cp1252 && c >= 0x80 && c < 0xA0 ? kCp1252High[c - 0x80] : char16_t(c));
  }
  return text;
}

std::u16string utf16(std::string_view bytes, bool bigEndian, const std::string& name) {
  if (bytes.size() % 2 != 0) {
    throw base::QentException(base::kErrorOption,
                              "WordRecognizer: " + name + " is not UTF-16: odd number of bytes");
  }
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    const auto a = static_cast<unsigned char>(bytes[i]);
    const auto b = static_cast<unsigned char>(bytes[i + 1]);
    text.push_back(static_cast<char16_t>(bigEndian ? (a << 8) | b : (b << 8) | a));
  }
  return text;
}

std::u16string utf8(std::string_view bytes, const std::string& name) {
  const std::size_t bad = base::findInvalidUtf8(bytes);
  if (bad != std::string_view::npos) {
    throw base::QentException(base::kErrorOption, "WordRecognizer: " + name +
                                                      " is not valid UTF-8 at byte " +
                                                      std::to_string(bad));
  }
  return base::utf8ToUtf16(bytes);
}

}  // namespace

std::u16string decodeText(std::string_view bytes, TextEncoding encoding, const std::string& name) {
  switch (encoding) {
    case TextEncoding::Utf8:
      if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
      return utf8(bytes, name);
    case TextEncoding::Utf16Le:
      if (bytes.starts_with("\xFF\xFE")) bytes.remove_prefix(2);
      return utf16(bytes, false, name);
    case TextEncoding::Utf16Be:
      if (bytes.starts_with("\xFE\xFF")) bytes.remove_prefix(2);
      return utf16(bytes, true, name);
    case TextEncoding::Latin1: return singleByte(bytes, false);
    case TextEncoding::Cp1252: return singleByte(bytes, true);
    case TextEncoding::Auto: break;
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) return utf8(bytes.substr(3), name);
  if (bytes.starts_with("\xFF\xFE")) return utf16(bytes.substr(2), false, name);
  if (bytes.starts_with("\xFE\xFF")) return utf16(bytes.substr(2), true, name);
  if (base::findInvalidUtf8(bytes) == std::string_view::npos) return base::utf8ToUtf16(bytes);
  return singleByte(bytes, true);
}

}  // namespace qent::text::wordrecognizer

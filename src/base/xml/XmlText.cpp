// XmlText.cpp - dropping what XML 1.0 cannot carry.
#include "base/xml/XmlText.h"

#include "base/Unicode.h"

#include <algorithm>

namespace qent::base::xml {

namespace {

bool isForbiddenInXml(char32_t c) {
  return (c < 0x20 && c != '\t' && c != '\n' && c != '\r') || c == 0xFFFE || c == 0xFFFF;
}

}  // namespace

bool assignXmlText(std::string& out, std::u16string_view text) {
  // Printable ASCII (with tab, line feed, carriage return) is copied as it is, in one pass.
  out.resize(text.size());
  std::size_t i = 0;
  for (; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c >= 0x80 || (c < 0x20 && c != '\t' && c != '\n' && c != '\r')) break;
    out[i] = static_cast<char>(c);
  }
  if (i == text.size()) return false;
  std::u16string clean;
  clean.reserve(text.size());
  for (const char16_t c : text) {
    if (!isForbiddenInXml(c)) clean.push_back(c);
  }
  out = utf16ToUtf8Lenient(clean);
  return clean.size() != text.size() || utf8ToUtf16(out) != clean;
}

std::string xmlText(std::u16string_view text) {
  std::string out;
  assignXmlText(out, text);
  return out;
}

std::string xmlText(std::string_view utf8) {
  if (std::all_of(utf8.begin(), utf8.end(), [](char c) {
        return (c & 0x80) == 0 && (c >= 0x20 || c == '\t' || c == '\n' || c == '\r');
      })) {
    return std::string(utf8);
  }
  std::string clean;
  clean.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    if (c < 0x20 && isForbiddenInXml(c)) continue;
    // U+FFFE and U+FFFF are EF BF BE and EF BF BF.
    if (c == 0xEF && i + 2 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) == 0xBF &&
        (static_cast<unsigned char>(utf8[i + 2]) & 0xFE) == 0xBE) {
      i += 2;
      continue;
    }
    clean.push_back(static_cast<char>(c));
  }
  return base::utf16ToUtf8(utf8ToUtf16Lenient(clean));
}

}  // namespace qent::base::xml

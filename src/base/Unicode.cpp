// Unicode.cpp - UTF-8/UTF-16 conversion over utfcpp.
#include "base/Unicode.h"

#include <utf8.h>

#include <cstdint>
#include <cstring>
#include <iterator>
#include <stdexcept>

namespace qent::base {

namespace {

std::size_t invalidUtf8Offset(std::string_view text) {
  const std::size_t bad = findInvalidUtf8(text);
  return bad == std::string_view::npos ? text.size() : bad;
}

// Offset of the first lone surrogate, or the size when there is none.
std::size_t invalidUtf16Offset(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF) {
      if (i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
        ++i;
        continue;
      }
      return i;
    }
    if (c >= 0xDC00 && c <= 0xDFFF) return i;
  }
  return text.size();
}

// Most text in layouts is ASCII; it needs neither validation nor decoding.
bool isAscii(std::string_view text) {
  unsigned char any = 0;
  for (const char c : text) any |= static_cast<unsigned char>(c);
  return any < 0x80;
}

bool isAscii(std::u16string_view text) {
  char16_t any = 0;
  for (const char16_t c : text) any |= c;
  return any < 0x80;
}

}  // namespace

std::size_t findInvalidUtf8(std::string_view text) {
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  const char* p = begin;
  while (p < end) {
    // ASCII eight bytes at a time: no multi-byte sequence contains an ASCII byte, so runs of
    // other bytes can be checked on their own.
    while (end - p >= 8) {
      std::uint64_t word;
      std::memcpy(&word, p, 8);
      if ((word & 0x8080808080808080ULL) != 0) break;
      p += 8;
    }
    while (p < end && static_cast<unsigned char>(*p) < 0x80) ++p;
    const char* run = p;
    while (p < end && static_cast<unsigned char>(*p) >= 0x80) ++p;
    const char* bad = utf8::find_invalid(run, p);
    if (bad != p) return static_cast<std::size_t>(bad - begin);
  }
  return std::string_view::npos;
}

std::u16string utf8ToUtf16(std::string_view text) {
  if (isAscii(text)) return std::u16string(text.begin(), text.end());
  const std::size_t bad = invalidUtf8Offset(text);
  if (bad != text.size()) {
    throw std::invalid_argument("invalid UTF-8 at byte " + std::to_string(bad));
  }
  std::u16string out;
  out.reserve(text.size());
  utf8::unchecked::utf8to16(text.begin(), text.end(), std::back_inserter(out));
  return out;
}

std::string utf16ToUtf8(std::u16string_view text) {
  if (isAscii(text)) {
    std::string out(text.size(), '\0');
    for (std::size_t i = 0; i < text.size(); ++i) out[i] = static_cast<char>(text[i]);
    return out;
  }
  const std::size_t bad = invalidUtf16Offset(text);
  if (bad != text.size()) {
    throw std::invalid_argument("invalid UTF-16 (lone surrogate) at code unit " +
                                std::to_string(bad));
  }
  std::string out;
  out.reserve(text.size() + text.size() / 2);
  utf8::unchecked::utf16to8(text.begin(), text.end(), std::back_inserter(out));
  return out;
}

std::u16string utf8ToUtf16Lenient(std::string_view text) {
  if (invalidUtf8Offset(text) == text.size()) return utf8ToUtf16(text);
  std::string repaired;
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(repaired));
  return utf8ToUtf16(repaired);
}

std::string utf16ToUtf8Lenient(std::u16string_view text) {
  if (invalidUtf16Offset(text) == text.size()) return utf16ToUtf8(text);
  std::u16string repaired;
  repaired.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::u16string_view rest = text.substr(i);
    if (invalidUtf16Offset(rest.substr(0, 2)) == 0) {
      repaired.push_back(u'\uFFFD');
    } else {
      repaired.push_back(text[i]);
      if (text[i] >= 0xD800 && text[i] <= 0xDBFF) repaired.push_back(text[++i]);
    }
  }
  return utf16ToUtf8(repaired);
}

std::u32string utf16ToCodePoints(std::u16string_view text) {
  std::u32string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
        text[i + 1] <= 0xDFFF) {
      out.push_back(0x10000 + ((static_cast<char32_t>(c) - 0xD800) << 10) +
                    (static_cast<char32_t>(text[i + 1]) - 0xDC00));
      ++i;
    } else {
      out.push_back(c);
    }
  }
  return out;
}

std::u32string utf8ToCodePoints(std::string_view text) {
  std::string repaired;
  if (invalidUtf8Offset(text) != text.size()) {
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(repaired));
    text = repaired;
  }
  std::u32string out;
  out.reserve(text.size());
  utf8::unchecked::utf8to32(text.begin(), text.end(), std::back_inserter(out));
  return out;
}

bool equalsIgnoreAsciiCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    char x = a[i];
    char y = b[i];
    if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
    if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
    if (x != y) return false;
  }
  return true;
}

std::string toLowerAscii(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return out;
}

}  // namespace qent::base

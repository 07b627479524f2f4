// Characters.cpp - letter and case tables for the scripts the recognizer judges.
#include "wordrecognizer/Characters.h"

namespace qent::text::wordrecognizer {

namespace {

bool inRange(char16_t c, char16_t first, char16_t last) { return c >= first && c <= last; }

bool isSurrogate(char16_t c) { return inRange(c, 0xD800, 0xDFFF); }

}  // namespace

bool isLetter(char16_t c) {
  if (c < 0x80) return inRange(c, u'a', u'z') || inRange(c, u'A', u'Z');
  if (c < 0x100) return c == 0xAA || c == 0xB5 || c == 0xBA || (c >= 0xC0 && c != 0xD7 && c != 0xF7);
  if (c < 0x370) return c < 0x2B0;  // Latin extensions; spacing modifiers are not letters
  if (isSurrogate(c)) return false;
  // Symbols, punctuation and private use; everything else of the BMP is taken as letters
  // of some script, which is all the recognizer needs to tell words from numbers.
  return !(inRange(c, 0x2000, 0x2BFF) || inRange(c, 0x3000, 0x303F) ||
           inRange(c, 0xE000, 0xF8FF) || inRange(c, 0xFE00, 0xFE6F) ||
           inRange(c, 0xFF00, 0xFF20) || inRange(c, 0xFF3B, 0xFF40) ||
           inRange(c, 0xFF5B, 0xFF65) || c == 0x037E || c == 0x0387 || c == 0xFFFD);
}

bool isDigit(char16_t c) { return inRange(c, u'0', u'9'); }

char16_t toLower(char16_t c) {
  if (inRange(c, u'A', u'Z')) return c + 32;
  if (c < 0xC0) return c;
  if (c <= 0xDE) return c == 0xD7 ? c : c + 32;
  if (inRange(c, 0x100, 0x137) || inRange(c, 0x14A, 0x177) || inRange(c, 0x182, 0x185) ||
      inRange(c, 0x1A0, 0x1A5) || inRange(c, 0x1DE, 0x1EF) || inRange(c, 0x1F8, 0x24F)) {
    return (c % 2 == 0) ? c + 1 : c;
  }
  if (inRange(c, 0x139, 0x148) || inRange(c, 0x179, 0x17E) || inRange(c, 0x1CD, 0x1DC)) {
    return (c % 2 == 1) ? c + 1 : c;
  }
  if (c == 0x178) return 0xFF;
  if (inRange(c, 0x391, 0x3A9) && c != 0x3A2) return c + 32;
  if (inRange(c, 0x386, 0x38F)) {
    switch (c) {
      case 0x386: return 0x3AC;
      case 0x388: return 0x3AD;
      case 0x389: return 0x3AE;
      case 0x38A: return 0x3AF;
      case 0x38C: return 0x3CC;
      case 0x38E: return 0x3CD;
      case 0x38F: return 0x3CE;
      default: return c;
    }
  }
  if (inRange(c, 0x410, 0x42F)) return c + 32;
  if (inRange(c, 0x400, 0x40F)) return c + 80;
  if (inRange(c, 0x460, 0x4BF) || inRange(c, 0x4D0, 0x52F)) return (c % 2 == 0) ? c + 1 : c;
  if (c == 0x1E9E) return 0xDF;  // capital sharp s
  // Latin Extended Additional (Vietnamese and others) pairs upper and lower case.
  if (inRange(c, 0x1E00, 0x1E95) || inRange(c, 0x1EA0, 0x1EFF)) return (c % 2 == 0) ? c + 1 : c;
  return c;
}

bool isLowerLetter(char16_t c) { return isLetter(c) && !isUpper(c) && c < 0x530; }

bool isWhiteSpace(char16_t c) {
  return c == u' ' || inRange(c, u'\t', u'\r') || c == 0xA0 || c == 0x1680 ||
         inRange(c, 0x2000, 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F ||
         c == 0x205F || c == 0x3000 || c == 0xFEFF;
}

bool isEdgePunctuation(char16_t c) {
  static constexpr std::u16string_view kEdge =
      u" !#$&()*,-./:;<=>?@[\\]^{|}~`\"'\u201E\u201C\u201D\u201A\u2018\u2019\u00AB\u00BB\u2039\u203A";
  return kEdge.find(c) != std::u16string_view::npos;
}

bool isPunctuation(char16_t c) {
  return !isLetter(c) && !isDigit(c) && !isWhiteSpace(c) && !isSurrogate(c);
}

bool isLineHyphen(char16_t c) { return c == u'-' || c == 0xAD || c == 0x2010 || c == 0xAC; }

std::u16string toLower(std::u16string_view text) {
  std::u16string lower(text);
  for (char16_t& c : lower) c = toLower(c);
  return lower;
}

std::size_t characterCount(std::u16string_view text) {
  std::size_t count = 0;
  for (char16_t c : text) {
    if (!inRange(c, 0xDC00, 0xDFFF)) ++count;
  }
  return count;
}

}  // namespace qent::text::wordrecognizer

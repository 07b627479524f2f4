// KeywordSearch.cpp - normalised text and the boundary test of a whole-word match.
#include "dataextract/KeywordSearch.h"

#include "wordrecognizer/Characters.h"

namespace qent::dataextract {

namespace {

namespace chars = text::wordrecognizer;

bool isWordCharacter(char16_t c) { return chars::isLetter(c) || chars::isDigit(c); }

}  // namespace

std::u16string searchForm(std::u16string_view text) {
  std::u16string result;
  result.reserve(text.size());
  bool blank = false;
  for (const char16_t c : text) {
    if (chars::isWhiteSpace(c)) {
      blank = !result.empty();
      continue;
    }
    if (blank) result += u' ';
    blank = false;
    result += chars::toLower(c);
  }
  return result;
}

bool containsWholeWord(std::u16string_view text, std::u16string_view keyword) {
  if (keyword.empty()) return false;
  const bool checkBefore = isWordCharacter(keyword.front());
  const bool checkAfter = isWordCharacter(keyword.back());
  for (std::size_t at = text.find(keyword); at != std::u16string_view::npos;
       at = text.find(keyword, at + 1)) {
    const std::size_t end = at + keyword.size();
    if (checkBefore && at > 0 && isWordCharacter(text[at - 1])) continue;
    if (checkAfter && end < text.size() && isWordCharacter(text[end])) continue;
    return true;
  }
  return false;
}

}  // namespace qent::dataextract

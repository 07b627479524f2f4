// Garbage.cpp - the garbage rules, each a small test on the raw token.
#include "wordrecognizer/Garbage.h"

#include "wordrecognizer/Characters.h"

#include <algorithm>

namespace qent::text::wordrecognizer {

namespace {

bool tooLong(std::u16string_view token) { return characterCount(token) > 40; }

// Short tokens are mostly letters or digits; the allowed share of other characters
// shrinks as tokens get longer.
bool tooFewAlphanumerics(std::u16string_view token) {
  const std::size_t length = token.size();
  const double minimum = length <= 2 ? 0.0 : length == 3 ? 0.32 : length == 4 ? 0.24
                                         : length == 5 ? 0.39 : 0.49;
  const auto alphanumerics = std::count_if(token.begin(), token.end(),
                                           [](char16_t c) { return isLetter(c) || isDigit(c); });
  return static_cast<double>(alphanumerics) / static_cast<double>(length) < minimum;
}

bool repeatsCharacter(std::u16string_view token) {
  std::size_t run = 0;
  for (std::size_t i = 0; i < token.size(); ++i) {
    run = (i > 0 && token[i] == token[i - 1]) ? run + 1 : 1;
    if (run >= 4 && !isDigit(token[i])) return true;
  }
  return false;
}

bool isVowelLetter(char16_t c) {
  static constexpr std::u16string_view kVowels = u"aeiouy\u00E4\u00F6\u00FC";
  return kVowels.find(toLower(c)) != std::u16string_view::npos;
}

// Words mix vowels and consonants; a long run of only one kind is not a word.
bool badVowelRatio(std::u16string_view token) {
  if (!std::all_of(token.begin(), token.end(), isLetter)) return false;
  const auto vowels = static_cast<std::size_t>(std::count_if(token.begin(), token.end(), isVowelLetter));
  const std::size_t consonants = token.size() - vowels;
  if (vowels == 0) return consonants > 7;   // longer than "rhythms"
  if (consonants == 0) return vowels > 4;   // longer than "IEEE"
  const double ratio = static_cast<double>(vowels) / static_cast<double>(consonants);
  return ratio < 0.1 || ratio > 10;
}

bool mixedInnerPunctuation(std::u16string_view token) {
  char16_t seen = 0;
  for (std::size_t i = 1; i + 1 < token.size(); ++i) {
    if (!isPunctuation(token[i])) continue;
    if (seen != 0 && token[i] != seen) return true;
    seen = token[i];
  }
  return false;
}

bool innerCapital(std::u16string_view token) {
  if (token.size() < 3 || !isLowerLetter(token.front()) || !isLowerLetter(token.back())) {
    return false;
  }
  for (std::size_t i = 1; i + 1 < token.size(); ++i) {
    if (isLetter(token[i]) && isUpper(token[i]) && token[i - 1] != u'.') return true;
  }
  return false;
}

}  // namespace

bool isGarbage(std::u16string_view token) {
  if (token.empty()) return false;
  return tooLong(token) || tooFewAlphanumerics(token) || repeatsCharacter(token) ||
         badVowelRatio(token) || mixedInnerPunctuation(token) || innerCapital(token);
}

}  // namespace qent::text::wordrecognizer

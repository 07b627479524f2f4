// Characters.h - the character classes the recognizer needs: letters, case, vowels and the
// punctuation stripped from word forms.
//
// The recognizer judges Latin, Greek and Cyrillic texts; case is mapped for those scripts
// only, without the C library, whose answers depend on the caller's locale. Characters
// outside the BMP (two UTF-16 units) are neither letters nor punctuation and count as one
// character.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qent::text::wordrecognizer {

bool isLetter(char16_t c);
bool isDigit(char16_t c);
char16_t toLower(char16_t c);
inline bool isUpper(char16_t c) { return toLower(c) != c; }
// A letter of a cased script in its lower-case form ("ß" too).
bool isLowerLetter(char16_t c);
bool isWhiteSpace(char16_t c);
// The 28 characters that readability treats as punctuation, plus quotation marks and
// apostrophes: what is stripped from both ends of a token to get the word.
bool isEdgePunctuation(char16_t c);
// Punctuation for the garbage rules: neither letter, digit nor white space.
bool isPunctuation(char16_t c);
// A hyphen that may end a line inside a word: "-", soft hyphen, U+2010, "¬".
bool isLineHyphen(char16_t c);

std::u16string toLower(std::u16string_view text);
// Characters, counting a surrogate pair once.
std::size_t characterCount(std::u16string_view text);

}  // namespace qent::text::wordrecognizer

// Language.h - language codes of the word recognizer: every language is known by its
// ISO 639-2/T code ("deu"), whatever form a page or a caller gave it in.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qent::text::wordrecognizer {

inline constexpr std::string_view kDefaultLanguage = "deu";

// "de", "de-DE", "de_AT", "ger", "German", "DEU", "deu+eng" -> "deu"; an unknown code is returned
// lower-cased as it is, so its resources are still looked up under that name; an empty
// code gives the empty string.
std::string normaliseLanguage(std::string_view code);
// The language a text input's letter stands for (d, e, f, i, s, n, p, o; any case); the
// empty string for another letter.
std::string languageOfLetter(char16_t letter);
// The two-letter code ("de" for "deu"), or the code itself when there is none.
std::string twoLetterCode(std::string_view iso3);
// Hunspell dictionary stems to try, most common first ("de_DE", "de_AT", ..., "deu").
std::vector<std::string> dictionaryStems(std::string_view iso3);

}  // namespace qent::text::wordrecognizer

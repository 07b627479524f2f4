// Language.cpp - the table of languages the recognizer knows by name.
#include "wordrecognizer/Language.h"

#include "base/Unicode.h"

#include <array>

namespace qent::text::wordrecognizer {

namespace {

struct KnownLanguage {
  std::string_view iso3;
  std::string_view iso1;
  std::string_view bibliographic;  // ISO 639-2/B, where it differs
  std::string_view englishName;
  char letter;
  std::array<std::string_view, 3> regions;  // dictionary stems after the bare code
};

constexpr KnownLanguage kLanguages[] = {
    {"deu", "de", "ger", "german", 'd', {"de_DE", "de_AT", "de_CH"}},
    {"eng", "en", "", "english", 'e', {"en_US", "en_GB", "en_AU"}},
    {"fra", "fr", "fre", "french", 'f', {"fr_FR", "fr_CH", "fr_BE"}},
    {"ita", "it", "", "italian", 'i', {"it_IT", "it_CH", ""}},
    {"spa", "es", "", "spanish", 's', {"es_ES", "es_MX", ""}},
    {"nld", "nl", "dut", "dutch", 'n', {"nl_NL", "nl_BE", ""}},
    {"pol", "pl", "", "polish", 'p', {"pl_PL", "", ""}},
    {"por", "pt", "", "portuguese", 'o', {"pt_PT", "pt_BR", ""}},
};

const KnownLanguage* find(std::string_view iso3) {
  for (const KnownLanguage& language : kLanguages) {
    if (language.iso3 == iso3) return &language;
  }
  return nullptr;
}

}  // namespace

std::string normaliseLanguage(std::string_view code) {
  std::string lower = base::toLowerAscii(code);
  // A region or script after the language ("de-DE", "de_AT") says nothing about words; an
  // OCR engine that ran several models names them joined by "+", the main one first.
  const std::size_t cut = lower.find_first_of("-_+");
  if (cut != std::string::npos) lower.resize(cut);
  for (const KnownLanguage& language : kLanguages) {
    if (lower == language.iso3 || lower == language.iso1 ||
        (!language.bibliographic.empty() && lower == language.bibliographic) ||
        lower == language.englishName) {
      return std::string(language.iso3);
    }
  }
  return lower;
}

std::string languageOfLetter(char16_t letter) {
  const char16_t lower = (letter >= u'A' && letter <= u'Z') ? letter + 32 : letter;
  for (const KnownLanguage& language : kLanguages) {
    if (lower == static_cast<char16_t>(language.letter)) return std::string(language.iso3);
  }
  return {};
}

std::string twoLetterCode(std::string_view iso3) {
  const KnownLanguage* language = find(iso3);
  return std::string(language ? language->iso1 : iso3);
}

std::vector<std::string> dictionaryStems(std::string_view iso3) {
  std::vector<std::string> stems;
  const KnownLanguage* language = find(iso3);
  if (language != nullptr) {
    for (std::string_view region : language->regions) {
      if (!region.empty()) stems.emplace_back(region);
    }
    stems.emplace_back(language->iso1);
  }
  stems.emplace_back(iso3);
  return stems;
}

}  // namespace qent::text::wordrecognizer

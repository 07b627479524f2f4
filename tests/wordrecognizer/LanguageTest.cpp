// LanguageTest.cpp - the forms a language arrives in, and the dictionaries tried for it.
#include "wordrecognizer/Language.h"

#include <gtest/gtest.h>

namespace qent::text::wordrecognizer {
namespace {

TEST(LanguageTest, NormalisesCodesNamesAndRegions) {
  const std::pair<const char*, const char*> codes[] = {
      {"de", "deu"}, {"de-DE", "deu"}, {"de_AT", "deu"}, {"ger", "deu"}, {"German", "deu"},
      {"deu+eng", "deu"}, {"EN", "eng"}, {"dut", "nld"}, {"xyz", "xyz"}, {"", ""}};
  for (const auto& [code, iso3] : codes) EXPECT_EQ(normaliseLanguage(code), iso3) << code;
  EXPECT_EQ(languageOfLetter(u'o'), "por");
  EXPECT_EQ(languageOfLetter(u'E'), "eng");
  EXPECT_EQ(languageOfLetter(u'x'), "");
  EXPECT_EQ(dictionaryStems("deu"), (std::vector<std::string>{"de_DE", "de_AT", "de_CH", "de", "deu"}));
  EXPECT_EQ(dictionaryStems("xyz"), (std::vector<std::string>{"xyz"}));
}

}  // namespace
}  // namespace qent::text::wordrecognizer

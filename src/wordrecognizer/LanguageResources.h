// LanguageResources.h - the dictionary, stop words and digram table of each language a
// text uses, loaded on first use and kept for one execution.
//
// Lookup: the Hunspell dictionary is the first stem of the language's list with both .aff
// and .dic in a dictionary folder; a missing one is an error, since statistics without it
// would be silently wrong. The stop-word list ("deu.stop" or "stopwords-de.txt") may be
// missing (a warning and an empty list). The digram table is "deu.digram", optional, or
// the table named by the options, which must exist. "deu.user.txt" adds words.
#pragma once

#include "wordrecognizer/DigramTable.h"
#include "wordrecognizer/ResourceFolders.h"
#include "wordrecognizer/Speller.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_set>

namespace qent::text::wordrecognizer {

struct LanguageData {
  std::unique_ptr<Speller> speller;
  std::unordered_set<std::u16string> stopWords;  // lower case
  DigramTable digrams;                           // empty when the language has none
};

class LanguageResources {
public:
  // `digramTable`: a table named explicitly (resolved already), or empty.
  LanguageResources(ResourceFolders folders, std::filesystem::path digramTable);

  LanguageData& get(const std::string& language);

private:
  std::unique_ptr<LanguageData> load(const std::string& language) const;

  ResourceFolders folders_;
  std::filesystem::path digramTable_;
  std::map<std::string, std::unique_ptr<LanguageData>> languages_;
};

}  // namespace qent::text::wordrecognizer

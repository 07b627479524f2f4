// WordRecognizer.h - classifies the words of a text and keeps the statistics of every page
// and of the whole document.
//
// Per token: raw glyph and digram counts, garbage runs. Per word (a token without its edge
// punctuation, or two tokens joined across a line-end hyphen): stop word, small word,
// dictionary word (main, and large when long) or rejected; readability counts. Layout words
// are marked x_checked / x_rejected unless the settings say otherwise.
#pragma once

#include "wordrecognizer/LanguageResources.h"
#include "wordrecognizer/RecognizerSettings.h"
#include "wordrecognizer/Syllables.h"
#include "wordrecognizer/TextStatistics.h"
#include "wordrecognizer/TokenPage.h"

#include <map>
#include <string>
#include <vector>

namespace qent::text::wordrecognizer {

struct RecognitionResult {
  TextStatistics document;
  std::map<std::string, TextStatistics> pages;  // by page name, ascending
};

class WordRecognizer {
public:
  // Borrows both for its lifetime.
  WordRecognizer(const RecognizerSettings& settings, LanguageResources& resources);

  // `fallbackLanguage` applies when neither the settings nor the page name one.
  void addPage(TokenPage& page, const std::string& fallbackLanguage);
  RecognitionResult finish();

private:
  struct GarbageRun {
    std::uint64_t start = 0;
    std::vector<std::u16string> tokens;
  };
  struct WordForm {
    std::u16string word;
    bool endsSentence = false;
  };

  void addToken(const Token& token, LanguageData& data, TextStatistics& page,
                GarbageRun& pageRun);
  void closeRun(GarbageRun& run, TextStatistics& statistics);
  // The word of a token; empty when no letter is left (numbers, dashes).
  WordForm wordForm(const std::u16string& token, LanguageData& data);
  WordClass classify(const std::u16string& word, LanguageData& data, bool& large);
  bool acceptsVariant(const std::u16string& word, Speller& speller);

  const RecognizerSettings& settings_;
  LanguageResources& resources_;
  SyllableCounter syllables_;
  RecognitionResult result_;
  GarbageRun documentRun_;
  std::uint64_t tokenIndex_ = 0;
  std::map<std::string, std::uint64_t> wordsPerLanguage_;
  std::vector<std::string> languageOrder_;
};

}  // namespace qent::text::wordrecognizer

// WordRecognizer.cpp - tokens to words, words to classes, classes to statistics.
#include "wordrecognizer/WordRecognizer.h"

#include "layout/Page.h"
#include "layout/Word.h"
#include "wordrecognizer/Characters.h"
#include "wordrecognizer/Garbage.h"
#include "wordrecognizer/Language.h"

#include <algorithm>
#include <unordered_set>

namespace qent::text::wordrecognizer {

namespace {

bool hasLetter(std::u16string_view text) { return std::any_of(text.begin(), text.end(), isLetter); }

// The spelling a dictionary knows for characters that old prints and OCR engines produce:
// long s, ligatures, the typographic apostrophe, soft and line-end hyphens.
std::u16string plainVariant(const std::u16string& word) {
  std::u16string plain;
  plain.reserve(word.size() + 2);
  for (char16_t c : word) {
    switch (c) {
      case 0x017F: plain += u's'; break;
      case 0xFB00: plain += u"ff"; break;
      case 0xFB01: plain += u"fi"; break;
      case 0xFB02: plain += u"fl"; break;
      case 0xFB03: plain += u"ffi"; break;
      case 0xFB04: plain += u"ffl"; break;
      case 0x2019: plain += u'\''; break;
      case 0x00AD: break;
      default: plain += c;
    }
  }
  while (!plain.empty() && isLineHyphen(plain.back())) plain.pop_back();
  return plain;
}

std::u16string decimal(std::size_t number) {
  const std::string text = std::to_string(number);
  return std::u16string(text.begin(), text.end());
}

}  // namespace

WordRecognizer::WordRecognizer(const RecognizerSettings& settings, LanguageResources& resources)
    : settings_(settings), resources_(resources) {}

bool WordRecognizer::acceptsVariant(const std::u16string& word, Speller& speller) {
  if (speller.accepts(word)) return true;
  const std::u16string plain = plainVariant(word);
  return plain != word && !plain.empty() && speller.accepts(plain);
}

WordRecognizer::WordForm WordRecognizer::wordForm(const std::u16string& token,
                                                                 LanguageData& data) {
  std::size_t first = 0;
  std::size_t last = token.size();
  while (first < last && isEdgePunctuation(token[first])) ++first;
  while (last > first && isEdgePunctuation(token[last - 1])) --last;
  WordForm form;
  form.word = token.substr(first, last - first);
  std::u16string_view suffix = std::u16string_view(token).substr(last);
  if (!hasLetter(form.word)) {
    form.word.clear();
  } else if (suffix.starts_with(u'.') && !acceptsVariant(form.word, *data.speller) &&
             acceptsVariant(form.word + u'.', *data.speller)) {
    // "z.B.", "Nr.": the dictionary knows the word only with its dot, so the dot belongs
    // to it and ends no sentence.
    form.word += u'.';
    suffix.remove_prefix(1);
  }
  form.endsSentence = suffix.find_first_of(u".!?") != std::u16string_view::npos;
  return form;
}

WordClass WordRecognizer::classify(const std::u16string& word, LanguageData& data, bool& large) {
  large = false;
  if (data.stopWords.contains(toLower(word))) return WordClass::Stop;
  const std::size_t length = characterCount(word);
  if (length <= settings_.smallWordLimit) return WordClass::Small;
  if (!acceptsVariant(word, *data.speller)) return WordClass::Rejected;
  large = length >= settings_.largeWordLimit;
  return WordClass::Main;
}

void WordRecognizer::closeRun(GarbageRun& run, TextStatistics& statistics) {
  if (run.tokens.empty()) return;
  if (settings_.garbageThreshold > 0 && run.tokens.size() >= settings_.garbageThreshold) {
    GarbageRange range{run.start, run.start + run.tokens.size() - 1, {}};
    for (const std::u16string& token : run.tokens) {
      if (!range.text.empty()) range.text += u' ';
      range.text += token;
    }
    statistics.addGarbage(std::move(range));
  }
  run.tokens.clear();
}

void WordRecognizer::addToken(const Token& token, LanguageData& data, TextStatistics& page,
                              GarbageRun& pageRun) {
  const std::uint64_t length = characterCount(token.text);
  for (TextStatistics* statistics : {&page, &result_.document}) {
    statistics->rawGlyphCount += length;
    if (!data.digrams.empty()) addDigrams(data.digrams, token.text, statistics->rawDigrams);
  }
  if (isGarbage(token.text)) {
    for (GarbageRun* run : {&pageRun, &documentRun_}) {
      if (run->tokens.empty()) run->start = tokenIndex_;
      run->tokens.push_back(token.text);
    }
  } else {
    closeRun(pageRun, page);
    closeRun(documentRun_, result_.document);
  }
  ++tokenIndex_;
}

void WordRecognizer::addPage(TokenPage& page, const std::string& fallbackLanguage) {
  std::string language = settings_.language;
  if (language.empty()) language = normaliseLanguage(page.language);
  if (language.empty()) language = fallbackLanguage;
  if (language.empty()) language = std::string(kDefaultLanguage);
  LanguageData& data = resources_.get(language);
  if (!wordsPerLanguage_.contains(language)) {
    wordsPerLanguage_.emplace(language, 0);
    languageOrder_.push_back(language);
  }

  TextStatistics& statistics = result_.pages[page.name];
  statistics.language = language;
  GarbageRun pageRun;
  std::unordered_set<layout::Word*> checked, rejected;
  bool continuation = false;  // this token was joined to the word before it
  for (std::size_t i = 0; i < page.tokens.size(); ++i) {
    const Token& token = page.tokens[i];
    addToken(token, data, statistics, pageRun);
    if (continuation) {
      continuation = false;
      continue;
    }
    std::u16string text = token.text;
    const Token* next = i + 1 < page.tokens.size() ? &page.tokens[i + 1] : nullptr;
    if (settings_.dehyphenate && token.lineEnd && next != nullptr && isLineHyphen(text.back()) &&
        isLowerLetter(next->text.front())) {
      text.pop_back();
      text += next->text;
      continuation = true;
    }
    const WordForm form = wordForm(text, data);
    if (!form.word.empty()) {
      bool large = false;
      const WordClass wordClass = classify(form.word, data, large);
      const std::uint64_t length = characterCount(form.word);
      const std::uint32_t syllables =
          wordClass == WordClass::Rejected ? 0 : syllables_.count(form.word);
      for (TextStatistics* target : {&statistics, &result_.document}) {
        target->addWord(form.word, length, wordClass, large, syllables);
        if (wordClass == WordClass::Main || wordClass == WordClass::Stop) {
          if (!data.digrams.empty()) addDigrams(data.digrams, form.word, target->filteredDigrams);
        }
      }
      ++wordsPerLanguage_[language];
      for (const Token* part : {&token, continuation ? next : nullptr}) {
        if (part == nullptr || part->word == nullptr) continue;
        checked.insert(part->word);
        if (wordClass == WordClass::Rejected) rejected.insert(part->word);
      }
    }
    if (form.endsSentence) {
      statistics.closeSentence();
      result_.document.closeSentence();
    }
  }
  statistics.closeSentence();
  result_.document.closeSentence();
  closeRun(pageRun, statistics);

  if (settings_.markWords && page.node != nullptr) {
    for (layout::Word* word : checked) word->setXChecked(1);
    for (layout::Word* word : rejected) word->setXRejected(1);
    page.node->setAttribute(u"x_checked", decimal(checked.size()));
    page.node->setAttribute(u"x_rejected", decimal(rejected.size()));
  }
}

RecognitionResult WordRecognizer::finish() {
  closeRun(documentRun_, result_.document);
  std::string language = settings_.language;
  if (language.empty()) {
    std::uint64_t most = 0;
    for (const std::string& candidate : languageOrder_) {
      // Ties go to the language met first.
      if (language.empty() || wordsPerLanguage_[candidate] > most) {
        language = candidate;
        most = wordsPerLanguage_[candidate];
      }
    }
  }
  result_.document.language = language.empty() ? std::string(kDefaultLanguage) : language;
  result_.document.finish();
  for (auto& [name, statistics] : result_.pages) statistics.finish();
  return std::move(result_);
}

}  // namespace qent::text::wordrecognizer
